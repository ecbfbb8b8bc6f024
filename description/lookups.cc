#include "description/lookups.hh"

#include "description/hash_tables.hh"
#include "support/text.hh"

SCAN_CELL *get_scan_cell(const char *name) {
    return find_record(SCAN_CELL_HASH_TAB, name);
}

TAP_CELL *get_tap_cell(const char *name) {
    return find_record(TAP_CELL_HASH_TAB, name);
}

BUFFER_CELL *get_buffer(const char *name) {
    if (name == nullptr)
        return nullptr;
    if (BUFFER_CELL *exact = find_record(BUFFER_HASH_TAB, name); exact != nullptr)
        return exact;
    // The wild-card name is itself the name of a record.
    return find_record(BUFFER_HASH_TAB, bs_name_transfer_wild_card_name(name));
}

bool skip_signal(const char *name) {
    return find_record(SKIP_SIGNAL_HASH_TAB, name) != nullptr;
}

bool trans_buffer(const char *name) {
    return find_record(TRANS_BUF_HASH_TAB, name) != nullptr;
}

const char *bs_pin_name(int32_t row) {
    return PIN_TABLE[row]->top_name;
}

const char *bs_pin_direction(int32_t row) {
    return PIN_TABLE[row]->direction;
}

bool bs_internal_word(const char *package_name) {
    return same_text(package_name, "INTERNAL") || bs_observe_word(package_name);
}

bool bs_observe_word(const char *package_name) {
    return same_text(package_name, "OBSERVE") || same_text(package_name, "OBSERVE_ONLY");
}
