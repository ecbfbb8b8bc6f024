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

void parse_pin_file(std::FILE *file) {
    clear_pin_names();
    make_pin_keyword_hash();
    pin_yylineno = first_lineL;
    current_line = &pin_yylineno;
    pin_yyrestart(file);
    pin_yyparse();
    std::fclose(file);
}

void check_package_pin_number(int32_t declared, int32_t count) {
    if (count > declared)
        console_fail("\"%s\", package pin number '%d' is less than total pin count '%d'\n", PIN_FILE,
                     declared, count);
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
    PIN_FILE = name;
    std::FILE *file = FNM_open(name);
    if (file == nullptr)
        console_fail("Error: can't open pin file '%s' in default searching path.\n\n", name);
    PIN_FILE = without_here(PIN_FILE);
    if (in_package_table(PIN_FILE))
        console_printf("Warning: (%s) was redefined in package list and will skip it.\n\n", PIN_FILE);
    current_packageL = free_package_entry();
    current_packageL->file = PIN_FILE;
    parse_pin_file(file);
    int32_t count = 0;
    for (const PACKAGE_PIN *pin = current_packageL->pins; pin != nullptr; pin = pin->next)
        ++count;
    check_package_pin_number(current_packageL->pin_count, count);
    clear_pin_names();
}

} // namespace

void begin_pin_files() {
    first_lineL = pin_yylineno;
}

void save_pin_list(const AST_NODE &node) {
    const char *name = first_text(*node.first_child);
    PIN_FLAG = PIN_OF_LIST;
    PIN_FILE = name;
    std::FILE *file = FNM_open(name);
    if (file == nullptr)
        console_fail("Error: (%s) can't open pin file '%s' in default searching path.\n\n", DFT_FILE, name);
    PIN_FILE = without_here(PIN_FILE);
    parse_pin_file(file);
    // A second %PIN_LIST adds its rows to those of the first.
    for (int32_t i = BS_PIN_COUNT; i < DYNA_count(PIN_HASH_TAB); ++i)
        append_row(PIN_TABLE, PIN_HASH_TAB[i][0]);
    BS_PIN_COUNT = DYNA_count(PIN_TABLE);
    check_package_pin_number(PACKAGE_PIN_NUMBER, BS_PIN_COUNT);
    exist_multiple_pin();
    clear_pin_names();
}

void save_package_list(const AST_NODE &node) {
    // What a %PIN_LIST has left stays: the rest of the run speaks of that file and of its allowed names.
    const char *list_file = PIN_FILE;
    const char **list_allowed = ALLOWED_MULTIPLE_LIST;
    PIN_FLAG = PIN_OF_PACKAGE;
    PACKAGE_TABLE = new_record<PACKAGE_ENTRY>();
    for (const AST_NODE &file_name : children(node)) {
        ALLOWED_MULTIPLE_LIST = nullptr;
        read_package(first_text(file_name));
        DYNA_free(&ALLOWED_MULTIPLE_LIST);
    }
    ALLOWED_MULTIPLE_LIST = list_allowed;
    if (list_file != nullptr)
        PIN_FILE = list_file;
    current_packageL = nullptr;
}
