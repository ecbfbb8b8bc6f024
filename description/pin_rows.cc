#include "description/pin_rows.hh"

#include "description/lookups.hh"
#include "description/syntax_tree.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>

int32_t PIN_FLAG = PIN_IDLE;
PACKAGE_ENTRY *current_packageL = nullptr;

namespace {

/// What one reading remembers of its rows.
struct PIN_READING {
    std::unordered_set<std::string_view> numbers;       // of all %PIN_LIST files since bsdft_init
    std::unordered_set<std::string_view> package_names; // of this file
    std::unordered_set<std::string_view> top_names;     // of this file
    PIN_ENTRY *row;                                     // the row under construction
    // The cells of the BSC list, one slot per letter; cleared after each row.
    const char *bsc_c, *bsc_i, *bsc_o, *bsc_io, *bsc_i_only, *bsc_o_only;
    std::string bsc_text;  // the BSC clause, as a package's row keeps it
    PACKAGE_PIN *last_pin; // last row of the current package, null before its first
};
PIN_READING readingL;

struct BSC_SLOT {
    const char *key;
    const char *PIN_READING::*slot;
};
constexpr BSC_SLOT bsc_slots[] = {
    {"C", &PIN_READING::bsc_c},   {"I", &PIN_READING::bsc_i},           {"O", &PIN_READING::bsc_o},
    {"IO", &PIN_READING::bsc_io}, {"I_ONLY", &PIN_READING::bsc_i_only}, {"O_ONLY", &PIN_READING::bsc_o_only},
};

struct PAD_SLOT {
    const char *key;
    const char *PIN_ENTRY::*port;
};
constexpr PAD_SLOT pad_slots[] = {
    {"C", &PIN_ENTRY::pad_c}, {"I", &PIN_ENTRY::pad_i}, {"O", &PIN_ENTRY::pad_o}};

int32_t seen_before(std::unordered_set<std::string_view> &names, const char *name) {
    return names.insert(name).second ? 0 : 1;
}

// A repeated name is reported and the reading goes on, so that one run shows all of them.
void report_repeated_name(const char *name) {
    error_msg(PIN_FILE, readingL.row->line, PIN_NAME_REPEATED, name);
    GLOBAL_EXIT = 1;
}

// What the BSC list holds; later lines overrule earlier ones.
void take_bsc_list(PIN_ENTRY &row) {
    const PIN_READING &slots = readingL;
    bool control = slots.bsc_c != nullptr;
    bool input = slots.bsc_i != nullptr;
    if (input) {
        row.bsc_i = slots.bsc_i;
        row.bsc_kind = BSC_I;
    }
    if (control) {
        row.bsc_c = slots.bsc_c;
        row.bsc_kind = BSC_C;
    }
    if (slots.bsc_o != nullptr) {
        row.bsc_o = slots.bsc_o;
        row.bsc_kind = control ? (input ? BSC_I_O_C : BSC_O_C) : (input ? BSC_I_O : BSC_O);
    }
    if (slots.bsc_io != nullptr) {
        row.bsc_io = slots.bsc_io;
        row.bsc_kind = control ? BSC_IO_C : BSC_IO;
    }
    if (slots.bsc_i_only != nullptr) {
        row.bsc_i = slots.bsc_i_only;
        row.bsc_kind = BSC_I_ONLY;
    }
    if (slots.bsc_o_only != nullptr) {
        row.bsc_o = slots.bsc_o_only;
        row.bsc_kind = control ? BSC_O_ONLY_C : BSC_O_ONLY;
    }
}

// Appends the finished row to the current package's list.
void store_package_pin(const PIN_ENTRY &row) {
    auto *pin = new_record<PACKAGE_PIN>();
    const char *bsc = readingL.bsc_text.empty() ? nullptr : keep_text(readingL.bsc_text);
    *pin = {row.number, row.package_name, row.top_name, row.direction,  bsc,      row.pad_name,
            row.pad_c,  row.pad_i,        row.pad_o,    row.pad_enable, row.line, nullptr};
    (readingL.last_pin != nullptr ? readingL.last_pin->next : current_packageL->pins) = pin;
    readingL.last_pin = pin;
}

} // namespace

void clear_pin_numbers() {
    readingL.numbers.clear();
}

void clear_pin_names() {
    readingL.package_names.clear();
    readingL.top_names.clear();
    readingL.last_pin = nullptr;
}

PIN_ENTRY *save_pin(const char *number, int32_t line) {
    if (seen_before(readingL.numbers, number) != 0) {
        error_msg(PIN_FILE, line, PIN_NUMBER_REPEATED, number);
        end_run();
    }
    auto *pin = new_record<PIN_ENTRY>();
    pin->number = number;
    PIN_ENTRY **bucket = DYNA_init<PIN_ENTRY *>(1);
    append_row(bucket, pin);
    append_row(PIN_HASH_TAB, bucket);
    return pin;
}

int32_t exist_io_pin(const char *name) {
    if (bs_internal_word(name) || bs_observe_word(name))
        return 0;
    return seen_before(readingL.package_names, name);
}

int32_t exist_v_pin(const char *name) {
    return seen_before(readingL.top_names, name);
}

void parse_pin_name(const char *name, int32_t line) {
    const char *open = std::strchr(name, '[');
    const char *close = open != nullptr ? std::strchr(open, ']') : nullptr;
    if (close == nullptr)
        return;
    const char *index = open + 1;
    if (index == close || index + std::strspn(index, "0123456789") != close)
        error_fail("\"%s\", line %d: Syntax error at %s\n", PIN_FILE, line, name);
}

void exist_multiple_pin() {
    std::unordered_set<std::string_view> package_names;
    for (const PIN_ENTRY *pin : rows(PIN_TABLE)) {
        if (pin->package_name != nullptr)
            package_names.insert(pin->package_name);
    }
    for (const char *name : rows(ALLOWED_MULTIPLE_LIST)) {
        if (!package_names.contains(name))
            error_printf("WARNING : %%ALLOWED_MULTIPLE '%s' was not declared in \"%s\".\n", name, PIN_FILE);
    }
}

void pin_begin_row(const char *number, int32_t line) {
    PIN_ENTRY *row = PIN_FLAG == PIN_OF_LIST ? save_pin(number, line) : new_record<PIN_ENTRY>();
    row->number = number;
    row->line = line;
    row->bsc_kind = BSC_NO_LIST;
    row->pad_enable = -1;
    readingL.row = row;
}

void pin_package_column(const char *name) {
    if (name == nullptr)
        return;
    parse_pin_name(name, readingL.row->line);
    readingL.row->package_name = name;
    if (exist_io_pin(name) != 0 && in_allowed_list(name) == 0)
        report_repeated_name(name);
}

void pin_top_column(const char *name) {
    if (name == nullptr)
        return;
    parse_pin_name(name, readingL.row->line);
    readingL.row->top_name = name;
    // One port may stand on several package pins when the package name is one that may repeat.
    if (exist_v_pin(name) != 0 && in_allowed_list(readingL.row->package_name) == 0)
        report_repeated_name(name);
}

void pin_direction_column(const char *name) {
    if (name != nullptr)
        parse_pin_name(name, readingL.row->line);
    readingL.row->direction = name;
}

void pin_bsc_name(const char *name) {
    readingL.row->bsc_name = name;
    readingL.bsc_text = name;
}

void pin_bsc_item(const char *key, const char *cell) {
    for (const BSC_SLOT &slot : bsc_slots) {
        if (std::strcmp(slot.key, key) == 0)
            readingL.*slot.slot = cell;
    }
    if (!readingL.bsc_text.empty())
        readingL.bsc_text += ',';
    readingL.bsc_text.append(key).append(":").append(cell);
}

void pin_pad_name(const char *name) {
    readingL.row->pad_name = name;
}

void pin_pad_item(const char *key, const char *port) {
    for (const PAD_SLOT &slot : pad_slots) {
        if (std::strcmp(slot.key, key) == 0)
            readingL.row->*slot.port = port;
    }
}

void pin_pad_enable(int32_t level) {
    readingL.row->pad_enable = level;
}

void pin_end_row() {
    take_bsc_list(*readingL.row);
    if (PIN_FLAG == PIN_OF_PACKAGE)
        store_package_pin(*readingL.row);
    readingL.row = nullptr;
    for (const BSC_SLOT &slot : bsc_slots)
        readingL.*slot.slot = nullptr;
    readingL.bsc_text.clear();
}

void pin_package_type(const char *name, int32_t count) {
    if (PIN_FLAG == PIN_OF_LIST) {
        PACKAGE_TYPE = name;
        PACKAGE_PIN_NUMBER = count;
        return;
    }
    for (const PACKAGE_ENTRY *package = PACKAGE_TABLE; package != current_packageL; package = package->next) {
        if (same_text_no_case(package->type, name))
            console_fail("Error : The same package type name(%s) in (%s) and (%s).\n", name, package->file,
                         PIN_FILE);
    }
    current_packageL->type = name;
    current_packageL->pin_count = count;
}

void pin_clear_allowed() {
    DYNA_free(&ALLOWED_MULTIPLE_LIST);
    ALLOWED_MULTIPLE_LIST = nullptr;
}

void pin_allow(const char *name) {
    append_row(ALLOWED_MULTIPLE_LIST, name);
}
