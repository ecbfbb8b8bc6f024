#include "description/pin_rows.hh"

#include "description/hash_tables.hh"
#include "description/lookups.hh"
#include "description/reading.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>

namespace {

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

PIN_ENTRY &current_row(PIN_READING &reading) {
    return *reading.rows.back().pin;
}

// The index of a name with brackets is a number.
void check_index(const PIN_READING &reading, const char *name, int32_t line) {
    const char *open = std::strchr(name, '[');
    const char *close = open != nullptr ? std::strchr(open, ']') : nullptr;
    if (close == nullptr)
        return;
    const char *index = open + 1;
    if (index == close || index + std::strspn(index, "0123456789") != close)
        error_fail("\"%s\", line %d: Syntax error at %s\n", reading.file, line, name);
}

// A name that comes again must be one of those that may: for a port, which may stand on several package pins,
// the name of its package pin. A repeat is reported and the reading goes on, so that one run shows all of
// them.
void check_repeat(PIN_READING &reading, NAME_SET &seen, const char *name, const char *allowed_name) {
    if (seen.insert(name))
        return;
    auto allowed = rows(reading.allowed);
    if (allowed_name != nullptr && std::any_of(allowed.begin(), allowed.end(), [&](const char *entry) {
            return std::strcmp(entry, allowed_name) == 0;
        }))
        return;
    error_msg(reading.file, current_row(reading).line, PIN_NAME_REPEATED, name);
    GLOBAL_EXIT = 1;
}

// What the BSC list holds; later lines overrule earlier ones.
void take_bsc_list(PIN_ENTRY &row, const PIN_READING &slots) {
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

} // namespace

size_t NAME_SET::TRAITS::hash_of(const char *name) {
    return reinterpret_cast<uintptr_t>(name) * 0x9E3779B97F4A7C15ULL >> 32;
}

bool NAME_SET::contains(const char *name) const {
    const char *const *row =
        names.find(TRAITS::hash_of(name), [=](const char *known) { return known == name; });
    return row != nullptr && *row != nullptr;
}

bool NAME_SET::insert(const char *name) {
    size_t before = names.size();
    names.add(
        TRAITS::hash_of(name), [=](const char *known) { return known == name; }, [=] { return name; });
    return names.size() > before;
}

void pin_begin_row(PIN_READING &reading, const char *number, int32_t line) {
    if (reading.package == nullptr && !reading.numbers.insert(number)) {
        error_msg(reading.file, line, PIN_NUMBER_REPEATED, number);
        end_run();
    }
    auto *row = new_record<PIN_ENTRY>();
    row->number = number;
    row->line = line;
    row->bsc_kind = BSC_NO_LIST;
    row->pad_enable = -1;
    reading.rows.push_back({row, nullptr});
    reading.bsc_text.clear();
    for (const BSC_SLOT &slot : bsc_slots)
        reading.*slot.slot = nullptr;
}

void pin_package_column(PIN_READING &reading, const char *name) {
    if (name == nullptr)
        return;
    check_index(reading, name, current_row(reading).line);
    current_row(reading).package_name = name;
    // The words that mark the rows of internal cells are no names.
    if (!bs_internal_word(name))
        check_repeat(reading, reading.package_names, name, name);
}

void pin_top_column(PIN_READING &reading, const char *name) {
    if (name == nullptr)
        return;
    check_index(reading, name, current_row(reading).line);
    current_row(reading).top_name = name;
    check_repeat(reading, reading.top_names, name, current_row(reading).package_name);
}

void pin_direction_column(PIN_READING &reading, const char *name) {
    if (name != nullptr)
        check_index(reading, name, current_row(reading).line);
    current_row(reading).direction = name;
}

void pin_bsc_name(PIN_READING &reading, const char *name) {
    current_row(reading).bsc_name = name;
    reading.bsc_text = name;
}

void pin_bsc_item(PIN_READING &reading, const char *key, const char *cell) {
    for (const BSC_SLOT &slot : bsc_slots) {
        if (std::strcmp(slot.key, key) == 0)
            reading.*slot.slot = cell;
    }
    std::string &text = reading.bsc_text;
    if (!text.empty())
        text += ',';
    text.append(key).append(":").append(cell);
}

void pin_pad_name(PIN_READING &reading, const char *name) {
    current_row(reading).pad_name = name;
}

void pin_pad_item(PIN_READING &reading, const char *key, const char *port) {
    for (const PAD_SLOT &slot : pad_slots) {
        if (std::strcmp(slot.key, key) == 0)
            current_row(reading).*slot.port = port;
    }
}

void pin_pad_enable(PIN_READING &reading, int32_t level) {
    current_row(reading).pad_enable = level;
}

void pin_end_row(PIN_READING &reading) {
    take_bsc_list(current_row(reading), reading);
    if (reading.package != nullptr && !reading.bsc_text.empty())
        reading.rows.back().bsc_text = keep_text(reading.bsc_text);
}

void pin_package_type(PIN_READING &reading, const char *name, int32_t count) {
    const PACKAGE_ENTRY *earlier = reading.package != nullptr ? PACKAGE_TABLE : nullptr;
    for (; earlier != reading.package; earlier = earlier->next) {
        if (same_text_no_case(earlier->type, name))
            console_fail("Error : The same package type name(%s) in (%s) and (%s).\n", name, earlier->file,
                         reading.file);
    }
    reading.package_type = name;
    reading.package_pins = count;
}

void pin_clear_allowed(PIN_READING &reading) {
    DYNA_free(&reading.allowed);
    reading.allowed = nullptr;
}

void pin_allow(PIN_READING &reading, const char *name) {
    append_row(reading.allowed, name);
}
