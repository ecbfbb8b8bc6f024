#include "guide/save.hh"

#include "description/tables.hh"
#include "guide/earlier_file.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

namespace {

void write_file(const char *path, const std::string &text) {
    keep_earlier_file(path);
    if (!write_text_file(path, text))
        console_fail("Can't open %s to write\n", path);
}

const char *const missing = "*"; ///< a column that is not given

const char *column(const char *text) {
    return text == nullptr ? missing : text;
}

} // namespace

std::string pin_text() {
    std::string text = format_text("%%PACKAGE_TYPE My_Chip %d;\n", DYNA_count(PIN_TABLE));
    for (const PIN_ENTRY *pin : rows(PIN_TABLE))
        text += format_text("%s  %s  %s  %s\n", pin->number, column(pin->package_name), column(pin->top_name),
                            column(pin->direction));
    return text;
}

void save_bsc_lib() {
    if (JTAG_BSC_FILE == nullptr)
        JTAG_BSC_FILE = keep_format("%s.bsc", TOP_MODULE);
    write_file(JTAG_BSC_FILE, bsc_text());
    console_printf("File was written to %s\n", JTAG_BSC_FILE);
    if (JTAG_LIB_FILE == nullptr)
        JTAG_LIB_FILE = keep_format("%s.lib", TOP_MODULE);
    write_file(JTAG_LIB_FILE, lib_text());
    console_printf("File was written to %s\n", JTAG_LIB_FILE);
    if (PIN_FILE == nullptr)
        return;
    if (DYNA_count(PIN_TABLE) > 0)
        write_file(PIN_FILE, pin_text());
    console_printf("File was written to %s\n", PIN_FILE);
}
