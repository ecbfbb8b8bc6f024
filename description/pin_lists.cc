// %PIN_LIST and %PACKAGE_LIST: the pin files they name are read here, in the midst of the .bsc file's save
// step.
#include "description/pin_rows.hh"
#include "description/save_tables.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <string_view>

namespace {

// Messages and the guide speak of the file without a leading "./".
const char *without_here(const char *name) {
    return std::string_view(name).starts_with("./") ? name + 2 : name;
}

int first_lineL = 1; // of each pin file of the reading under way

// Reads the file; the caller says in the reading what it knows before, and has the message for a missing
// file.
void parse_pin_file(PIN_READING &reading, std::FILE *file) {
    pin_yylineno = first_lineL;
    begin_file(reading.file, file, pin_yyrestart, pin_yylineno);
    pin_yyparse(reading);
    std::fclose(file);
}

void check_package_pin_number(int32_t declared, int32_t count) {
    if (count > declared)
        console_fail("\"%s\", package pin number '%d' is less than total pin count '%d'\n", current_file,
                     declared, count);
}

// Warns of each name that may repeat and that no row has as its package name.
void exist_multiple_pin() {
    NAME_SET package_names;
    for (const PIN_ENTRY *pin : rows(PIN_TABLE)) {
        if (pin->package_name != nullptr)
            package_names.insert(pin->package_name);
    }
    for (const char *name : rows(ALLOWED_MULTIPLE_LIST)) {
        if (!package_names.contains(name))
            error_printf("WARNING : %%ALLOWED_MULTIPLE '%s' was not declared in \"%s\".\n", name, PIN_FILE);
    }
}

// The first entry without a pin count; a new one at the end when every entry has one.
PACKAGE_ENTRY *free_package_entry() {
    PACKAGE_ENTRY **entry = &PACKAGE_TABLE;
    while (*entry != nullptr && (*entry)->pin_count != 0)
        entry = &(*entry)->next;
    if (*entry == nullptr)
        *entry = new_record<PACKAGE_ENTRY>();
    return *entry;
}

bool in_package_table(const char *file) {
    for (const PACKAGE_ENTRY *entry = PACKAGE_TABLE; entry != nullptr; entry = entry->next) {
        if (same_text_no_case(entry->file, file))
            return true;
    }
    return false;
}

void read_package(const char *name) {
    std::FILE *file = FNM_open(name);
    if (file == nullptr)
        console_fail("Error: can't open pin file '%s' in default searching path.\n\n", name);
    name = without_here(name);
    if (in_package_table(name))
        console_printf("Warning: (%s) was redefined in package list and will skip it.\n\n", name);
    PACKAGE_ENTRY &entry = *free_package_entry();
    entry.file = name;
    PIN_READING reading{.file = name, .package = &entry, .package_type = entry.type};
    parse_pin_file(reading, file);
    DYNA_free(&reading.allowed);
    entry.type = reading.package_type;
    entry.pin_count = reading.package_pins;
    PACKAGE_PIN **end = &entry.pins;
    for (const PIN_ROW &row : reading.rows) {
        const PIN_ENTRY &pin = *row.pin;
        *end = new_record<PACKAGE_PIN>();
        **end = {pin.number, pin.package_name, pin.top_name, pin.direction,  row.bsc_text, pin.pad_name,
                 pin.pad_c,  pin.pad_i,        pin.pad_o,    pin.pad_enable, pin.line,     nullptr};
        end = &(*end)->next;
    }
    check_package_pin_number(entry.pin_count, static_cast<int32_t>(reading.rows.size()));
}

} // namespace

void begin_pin_files() {
    first_lineL = pin_yylineno;
}

void save_pin_list(const AST_NODE &node) {
    const char *name = first_text(*node.first_child);
    std::FILE *file = FNM_open(name);
    if (file == nullptr)
        console_fail("Error: (%s) can't open pin file '%s' in default searching path.\n\n", BSC_FILE, name);
    PIN_FILE = without_here(name);
    // A second %PIN_LIST adds its rows to those of the first.
    PIN_READING reading{.file = PIN_FILE,
                        .package_type = PACKAGE_TYPE,
                        .package_pins = PACKAGE_PIN_NUMBER,
                        .allowed = ALLOWED_MULTIPLE_LIST};
    for (const PIN_ENTRY *pin : rows(PIN_TABLE))
        reading.numbers.insert(pin->number);
    parse_pin_file(reading, file);
    for (const PIN_ROW &row : reading.rows)
        append_row(PIN_TABLE, row.pin);
    BS_PIN_COUNT = DYNA_count(PIN_TABLE);
    PACKAGE_TYPE = reading.package_type;
    PACKAGE_PIN_NUMBER = reading.package_pins;
    ALLOWED_MULTIPLE_LIST = reading.allowed;
    check_package_pin_number(PACKAGE_PIN_NUMBER, BS_PIN_COUNT);
    exist_multiple_pin();
}

void save_package_list(const AST_NODE &node) {
    PACKAGE_TABLE = new_record<PACKAGE_ENTRY>();
    for (const AST_NODE &file_name : children(node))
        read_package(first_text(file_name));
    // No %PIN_LIST has named a file yet: the run speaks of the last one that was read.
    if (PIN_FILE == nullptr)
        PIN_FILE = current_file;
}
