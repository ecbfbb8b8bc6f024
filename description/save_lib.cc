// From the tree of the .lib file to the library tables.
#include "description/save_tables.hh"

#include "support/console.hh"

#include <cstring>
#include <string>

namespace {

constexpr TEXT_FIELD<TAP_CELL> tap_fields[] = {
    {INSTANCE_NAME_NODE, &TAP_CELL::instance_name},
    {HIGHZ_COMMAND_NODE, &TAP_CELL::highz_command},
    {GROUP_METHOD_NODE, &TAP_CELL::group_method},
    {SIGNAL_BUFFER_NODE, &TAP_CELL::signal_buffer},
    {DF_SIGNAL_BUFFER_NODE, &TAP_CELL::df_signal_buffer},
    {INV_BUFFER_NODE, &TAP_CELL::inv_buffer},
    {TDI_NODE, &TAP_CELL::tdi},
    {TDO_NODE, &TAP_CELL::tdo},
    {TDO_EN_NODE, &TAP_CELL::tdo_en},
    {TMS_NODE, &TAP_CELL::tms},
    {TCK_NODE, &TAP_CELL::tck},
    {TRST_NODE, &TAP_CELL::trst},
    {LASTTDO_NODE, &TAP_CELL::lasttdo},
    {CLOCK_DR_NODE, &TAP_CELL::clock_dr},
    {SHIFT_DR_NODE, &TAP_CELL::shift_dr},
    {UPDATE_DR_NODE, &TAP_CELL::update_dr},
    {MODE_1_NODE, &TAP_CELL::mode_1},
    {MODE_2_NODE, &TAP_CELL::mode_2},
    {MODE_3_NODE, &TAP_CELL::mode_3},
    {FIRST_BCELL_NODE, &TAP_CELL::first_bcell},
    {LAST_BCELL_NODE, &TAP_CELL::last_bcell},
    {TAP_RESET_NODE, &TAP_CELL::tap_reset},
};

constexpr TEXT_FIELD<SCAN_CELL> scan_fields[] = {
    {DATA_IN_NODE, &SCAN_CELL::data_in},
    {DATA_OUT_NODE, &SCAN_CELL::data_out},
    {SYS_IN_NODE, &SCAN_CELL::sys_in},
    {SYS_PIN_NODE, &SCAN_CELL::sys_pin},
    {TDI_NODE, &SCAN_CELL::tdi},
    {TDO_NODE, &SCAN_CELL::tdo},
    {TCK_NODE, &SCAN_CELL::tck},
    {BS_HIGHZ_NODE, &SCAN_CELL::highz},
    {CLOCK_DR_NODE, &SCAN_CELL::clock_dr},
    {SHIFT_DR_NODE, &SCAN_CELL::shift_dr},
    {UPDATE_DR_NODE, &SCAN_CELL::update_dr},
    {RST_NODE, &SCAN_CELL::rst},
    {MODE_1_NODE, &SCAN_CELL::mode_1},
    {MODE_2_NODE, &SCAN_CELL::mode_2},
    {MODE_3_NODE, &SCAN_CELL::mode_3},
    {CONTROL_IN_NODE, &SCAN_CELL::control_in},
    {UPDATE_DR_OUT_NODE, &SCAN_CELL::update_dr_out},
    {MUX_DATA_IN_NODE, &SCAN_CELL::mux_data_in},
    {OE_MODE_NODE, &SCAN_CELL::oe_mode},
    {EN_L_NODE, &SCAN_CELL::en_l},
    {EN_H_NODE, &SCAN_CELL::en_h},
};

constexpr TEXT_FIELD<BUFFER_CELL> buffer_fields[] = {
    {FUNCTION_NODE, &BUFFER_CELL::function},
    {INOUT_NODE, &BUFFER_CELL::inout},
    {INPUT_NODE, &BUFFER_CELL::input},
    {OUTPUT_NODE, &BUFFER_CELL::output},
    {INPUT_M_NODE, &BUFFER_CELL::input_m},
    {OUTPUT_M_NODE, &BUFFER_CELL::output_m},
    {EN_L_NODE, &BUFFER_CELL::en_l},
    {EN_H_NODE, &BUFFER_CELL::en_h},
    {MUX_IN1_NODE, &BUFFER_CELL::mux_in1},
    {MUX_IN2_NODE, &BUFFER_CELL::mux_in2},
    {MUX_IN3_NODE, &BUFFER_CELL::mux_in3},
    {MUX_OUT_NODE, &BUFFER_CELL::mux_out},
    {MODE_1_NODE, &BUFFER_CELL::mode_1},
    {MODE_2_NODE, &BUFFER_CELL::mode_2},
    {MODE_3_NODE, &BUFFER_CELL::mode_3},
    {BCELL_NODE, &BUFFER_CELL::bcell},
    {IN_BCELL_NODE, &BUFFER_CELL::in_bcell},
    {OUT_BCELL_NODE, &BUFFER_CELL::out_bcell},
    {CONTROL_BCELL_NODE, &BUFFER_CELL::control_bcell},
};

struct BUFFER_FLAG {
    NODE_KIND kind;
    int32_t BUFFER_CELL::*field;
    const char *exclusive_name; // as the message shows it; null when the flag goes with any other
};
constexpr BUFFER_FLAG buffer_flags[] = {
    {WEAK_0_NODE, &BUFFER_CELL::weak_0, "'WEAK_0',"}, {WEAK_1_NODE, &BUFFER_CELL::weak_1, "'WEAK_1',"},
    {PULL_0_NODE, &BUFFER_CELL::pull_0, "'PULL_0',"}, {PULL_1_NODE, &BUFFER_CELL::pull_1, "'PULL_1',"},
    {KEEPER_NODE, &BUFFER_CELL::keeper, nullptr},
};

struct BUFFER_HEAD {
    NODE_KIND kind;
    BUFFER_KIND buffer_kind;
};
constexpr BUFFER_HEAD buffer_heads[] = {
    {BUFFER_CELL_NODE, BUFFER_PLAIN},
    {DIFF_V_BUFFER_CELL_NODE, BUFFER_DIFF_VOLTAGE},
    {DIFF_I_BUFFER_CELL_NODE, BUFFER_DIFF_CURRENT},
    {BS_BUFFER_NODE, BUFFER_BS},
};

/// The highest number of an extra pin: a table has a row for each number up to the highest one in use.
constexpr int32_t MAX_EXTRA = 1024;

// %EXTRA_<n> name: the children are the name and the number.
void save_extra(const AST_NODE &node, const char **&extras) {
    const AST_NODE &number = *node.first_child->next_sibling;
    int32_t n = number_value(LIB_FILE, number.line, number.text);
    if (n < 1 || n > MAX_EXTRA)
        console_fail("\"%s\", line %d: Number '%s' of %%EXTRA_ is not in 1 to %d\n", LIB_FILE, number.line,
                     number.text, MAX_EXTRA);
    while (DYNA_count(extras) < n)
        append_row(extras, static_cast<const char *>(nullptr));
    extras[n - 1] = first_text(node);
}

// A pad holds its level in one way only.
void check_exclusive_flags(const BUFFER_CELL &cell) {
    std::string names;
    int32_t count = 0;
    for (const BUFFER_FLAG &flag : buffer_flags) {
        if (flag.exclusive_name != nullptr && cell.*flag.field != 0) {
            names += flag.exclusive_name;
            ++count;
        }
    }
    if (count > 1)
        console_fail("Error: %s file %s Should be mutually exclusive in %%BUFFER %s\n", LIB_FILE,
                     names.c_str(), cell.name);
}

void save_buffer_item(BUFFER_CELL &cell, const AST_NODE &item) {
    if (save_text_field(cell, item, buffer_fields))
        return;
    for (const BUFFER_FLAG &flag : buffer_flags) {
        if (flag.kind == item.kind)
            cell.*flag.field = 1;
    }
}

// The cell of one name of the head. All names of a head have the same attributes.
void save_named_buffer(const char *name, BUFFER_KIND kind, const AST_NODE *items) {
    auto *cell = new_record<BUFFER_CELL>();
    cell->name = name;
    cell->kind = kind;
    if (std::strchr(name, '*') != nullptr)
        append_row(WILD_CARD_BUF_TAB, name);
    for (; items != nullptr; items = items->next_sibling)
        save_buffer_item(*cell, *items);
    // The modes of a buffer with a scan cell inside belong to the scan cell of the same name.
    if (kind == BUFFER_BS)
        cell->mode_1 = cell->mode_2 = cell->mode_3 = nullptr;
    check_exclusive_flags(*cell);
    add_record(BUFFER_HASH_TAB, cell);
}

void save_scan_item(SCAN_CELL &cell, const AST_NODE &item) {
    if (item.kind == EXTRA_NODE)
        save_extra(item, cell.extras);
    else if (item.kind == STD_NAME_LIST_NODE)
        append_texts(item, cell.std_names);
    else if (item.kind == ORDER_LIST_NODE)
        append_texts(item, cell.order);
    else
        save_text_field(cell, item, scan_fields);
}

void save_named_scan_cell(const char *name, bool is_bs_buffer, const AST_NODE *items) {
    auto *cell = new_record<SCAN_CELL>();
    cell->name = name;
    cell->oe_mode_type = -1;
    cell->is_bs_buffer = is_bs_buffer ? 1 : 0;
    cell->std_names = DYNA_init<const char *>();
    cell->order = DYNA_init<const char *>();
    cell->extras = DYNA_init<const char *>();
    for (; items != nullptr; items = items->next_sibling)
        save_scan_item(*cell, *items);
    if (DYNA_count(cell->std_names) == 0)
        append_row(cell->std_names, name);
    add_record(SCAN_CELL_HASH_TAB, cell);
}

} // namespace

void save_tap_cell(const AST_NODE &node) {
    auto *cell = new_record<TAP_CELL>();
    cell->name = first_text(node);
    cell->group_size = -1;
    cell->df_group_size = -1;
    cell->extras = DYNA_init<const char *>();
    for (const AST_NODE *item = node.first_child->next_sibling; item != nullptr; item = item->next_sibling) {
        if (item->kind == EXTRA_NODE)
            save_extra(*item, cell->extras);
        else if (item->kind == GROUP_SIZE_NODE)
            cell->group_size = number_value(LIB_FILE, item->first_child->line, first_text(*item));
        else if (item->kind == DF_GROUP_SIZE_NODE)
            cell->df_group_size = number_value(LIB_FILE, item->first_child->line, first_text(*item));
        else
            save_text_field(*cell, *item, tap_fields);
    }
    add_record(TAP_CELL_HASH_TAB, cell);
}

void save_scan_cell(const AST_NODE &node) {
    const AST_NODE &head = *node.first_child;
    const AST_NODE *items = head.next_sibling;
    if (node.kind != BS_BUFFER_NODE) {
        save_named_scan_cell(head.text, false, items);
        return;
    }
    for (const AST_NODE &name : children(head))
        save_named_scan_cell(name.text, true, items);
}

void save_buffer_cell(const AST_NODE &node) {
    BUFFER_KIND kind = BUFFER_PLAIN;
    for (const BUFFER_HEAD &head : buffer_heads) {
        if (head.kind == node.kind)
            kind = head.buffer_kind;
    }
    const AST_NODE &names = *node.first_child;
    for (const AST_NODE &name : children(names))
        save_named_buffer(name.text, kind, names.next_sibling);
}

void save_lib_tab() {
    for (const AST_NODE &node : children(*theAST)) {
        if (node.kind == TAP_CELL_NODE) {
            save_tap_cell(node);
            continue;
        }
        if (node.kind != SCAN_CELL_NODE)
            save_buffer_cell(node);
        if (node.kind == SCAN_CELL_NODE || node.kind == BS_BUFFER_NODE)
            save_scan_cell(node);
    }
    append_all_records(TAP_CELL_HASH_TAB, TAP_CELL_TAB);
    append_all_records(SCAN_CELL_HASH_TAB, SCAN_CELL_TAB);
    append_all_records(BUFFER_HASH_TAB, BUFFER_TAB);
}
