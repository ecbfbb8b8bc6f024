// Enables: which control cell holds one, which pads share it, and which row makes it.
//
// A control cell serves the enable net that it stands on, so pads share one exactly when their enables are
// one net. An enable that is tied to a constant needs no cell: where the TAP has a high-impedance command,
// that command takes the constant's place through a buffer for a group of pads.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/balance_groups.hh"
#include "planning/cell_choice.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace {

/// Row of each table that stands on a net, the first one where enables are not shared.
std::unordered_map<int32_t, int32_t> row_of_net[CONTROL_KIND_COUNT];

[[noreturn]] void fail_enable(const OPIN_ROW &row, const char *fault) {
    bool is_low = false;
    const char *pin = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], &is_low);
    vmr_fail(
        "ERROR: (%s) %s %s specified in %%BUFFER %s\n       %s in file '%s' while tracing port '%s'.\n\n",
        JTAG_LIB_FILE, is_low ? "%EN_L" : "%EN_H", text_or_undefined(pin), row.pad_class, fault, MODULE_C_SDB,
        row.port_name);
}

/// What the user must know of a pad with two enables of which the pin list chooses none: %EN_L gets the
/// control cell, and the pad may follow the core by the other one in test mode.
void check_other_enable(const OPIN_ROW &row) {
    const BUFFER_CELL *pad = row.pad;
    const char *other = pad->en_l != nullptr ? pad->en_h : nullptr;
    if (PIN_TABLE[row.pin_index]->pad_enable >= 0 || other == nullptr ||
        same_text_no_case(other, pad->en_l) || same_text_no_case(other, pad->input))
        return;
    int32_t node = find_pin_node(row.pad_obj, other);
    int32_t net = node < 0 ? -1 : node_tab[node].net;
    if (net < 0 || is_constant_net(net))
        return;
    vmr_printf("WARNING: enable '%s' of pad '%s' of port '%s' stays on net '%s':\n"
               "         only its enable '%s' gets a control scan cell.\n"
               "         Please choose one by PAD_EN_L or PAD_EN_H in the pin list.\n\n",
               other, text_or_undefined(row.pad_instance), row.port_name,
               text_or_undefined(SDB_net_name(sdb, net)), pad->en_l);
}

/// True when the high-impedance signal drives the enable of a row. A cell inside the pad holds the enable
/// itself.
bool is_driven_by_highz(const OPIN_ROW &row) {
    return row.oe_control == -1 ||
           (row.control == -1 && (row.pad == nullptr || row.pad->control_bcell == nullptr));
}

/// What the user must know of an enable that the high-impedance signal drives: the signal is raised for high
/// impedance, and a buffer that was not told to invert it keeps an active-high enable on.
void check_highz_enable(const OPIN_ROW &row) {
    bool is_low = false;
    const char *enable = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], &is_low);
    bool is_inverted = is_active_low(TAP_CONTR->highz_command);
    if (HIZ_BUF == nullptr)
        vmr_fail("ERROR: (%s) can't find %s in %%TAP_CONTROLLER.\n"
                 "       Need it to connect %%HIGHZ_COMMAND to the enable of port '%s'.\n\n",
                 JTAG_LIB_FILE, is_inverted ? "%INV_BUFFER" : "%SIGNAL_BUFFER", row.port_name);
    if (!is_low && !is_inverted)
        vmr_printf("WARNING: %%EN_H %s of pad '%s'(%s) is driven by %%HIGHZ_COMMAND '%s'.\n"
                   "         The pad of port '%s' will be enabled when the command is active.\n"
                   "         Please use an inverted %%HIGHZ_COMMAND for an active high enable.\n\n",
                   text_or_undefined(enable), text_or_undefined(row.pad_instance), row.pad_class,
                   TAP_CONTR->highz_command, row.port_name);
}

/// Finds or makes the control cell of a row's enable: table index plus one, or -1 for a constant enable.
int32_t save_contr_tab(CONTROL_KIND_ID which, const OPIN_ROW &row) {
    const CONTROL_KIND &kind = CONTROL_KINDS[which];
    const char *enable = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], nullptr);
    SCAN_CELL *cell = declared_cell(kind.counter).cell;
    if (cell == nullptr)
        vmr_fail(which == CONTROL_OE ? "ERROR: Please specify %%CONTROL_OE_SCAN in file '%s'.\n\n"
                                     : "ERROR: can't find %%CONTROL_SCAN in file '%s'.\n\n",
                 JTAG_BSC_FILE);
    int32_t net = search_inet_connected_to_obj(row.pad_obj, enable, SDB_INPUT);
    if (net < 0)
        fail_enable(row, "can't be found");
    if (is_constant_net(net))
        return -1;
    const char *net_name = SDB_net_name(sdb, net);
    if (net_name == nullptr)
        fail_enable(row, "is floating");

    auto [known, is_new] = row_of_net[which].try_emplace(net, DYNA_count(*kind.table));
    if (!is_new && !option(OPT_DONT_SHARE_CONTROL))
        return known->second + 1;
    CONTROL_ROW control = {};
    control.net_name = keep_text(net_name);
    control.bsdl_type = cell->rst != nullptr ? "controlr" : "control";
    control.scan_cell = cell;
    append_row(*kind.table, control);
    return DYNA_count(*kind.table);
}

/// Gives each row of a control table one row per module of its ports, in the order of the first port of each.
void split_table(const CONTROL_KIND &kind) {
    CONTROL_ROW *whole = *kind.table;
    CONTROL_ROW *split = DYNA_init<CONTROL_ROW>();
    std::map<std::pair<int32_t, int32_t>, int32_t> new_index; // by old index and module
    for (OPIN_ROW &row : rows(OPIN_TAB)) {
        int32_t &control = row.*kind.field;
        if (control <= 0)
            continue;
        auto [known, is_new] = new_index.try_emplace({control, row.io_module}, DYNA_count(split) + 1);
        if (is_new)
            append_row(split, whole[control - 1]);
        control = known->second;
    }
    DYNA_free(&whole);
    *kind.table = split;
}

/// Numbers the high-impedance group of each row in one of the two passes. `group` and `filled` go on from
/// pass to pass. A number beyond the last group is the last group.
struct HIGHZ_GROUPS {
    const int32_t *sizes; ///< null without counted loads: one group takes all
    int32_t filled = 0;

    void number_rows(const CONTROL_KIND &kind, int32_t group) {
        int32_t last = DYNA_count(sizes) - 1;
        for (OPIN_ROW &row : rows(OPIN_TAB)) {
            if (row.*kind.field != -1)
                continue;
            ++filled;
            if (sizes == nullptr)
                continue;
            row.highz_group = std::min(group, last);
            if (filled >= sizes[row.highz_group]) {
                filled = 0;
                ++group;
            }
        }
    }
};

/// The first row in chain order for each control cell makes it, so that the later ones find it, and the first
/// row of each high-impedance group that needs the buffer makes that. Every I/O module has buffers of its
/// own.
void mark_drivers() {
    constexpr int32_t HIGHZ = CONTROL_KIND_COUNT;
    std::set<std::tuple<int32_t, int32_t, int32_t>> made; // kind, and cell or group and module
    for (OPIN_ROW &row : rows(OPIN_TAB)) {
        for (int32_t kind = 0; kind < CONTROL_KIND_COUNT; ++kind)
            if (int32_t control = row.*CONTROL_KINDS[kind].field; control > 0)
                row.control_driver |= made.insert({kind, control, 0}).second;
        if (is_driven_by_highz(row))
            row.control_driver |= made.insert({HIGHZ, row.highz_group, row.io_module}).second;
    }
}

} // namespace

void save_enable_control(OPIN_ROW &row) {
    CONTROL_KIND_ID which = row.scan_cell->oe_mode != nullptr ? CONTROL_OE : CONTROL_PLAIN;
    int32_t &control = row.*CONTROL_KINDS[which].field;
    control = row.pad->control_bcell == nullptr ? save_contr_tab(which, row) : -1;
    if (control != -1) {
        check_other_enable(row);
        return;
    }
    if (TAP_CONTR->highz_command == nullptr) {
        control = 0;
        return;
    }
    if (row.scan_cell->highz != nullptr)
        ++HIGHZ_CNT;
    if (is_driven_by_highz(row))
        check_highz_enable(row);
}

void split_control_cells_by_module() {
    for (const CONTROL_KIND &kind : CONTROL_KINDS)
        split_table(kind);
    forget_control_sharing();
}

void forget_control_sharing() {
    for (auto &nets : row_of_net)
        nets.clear();
}

void setup_driving_control_cell_and_highz_buf() {
    int32_t *sizes = nullptr;
    if (HIGHZ_CNT != 0) {
        int32_t limit = TAP_CONTR->group_size > 0 ? TAP_CONTR->group_size : HIGHZ_CNT;
        sizes = split_into_groups(HIGHZ_CNT, limit);
    }
    HIGHZ_GROUPS groups = {sizes};
    groups.number_rows(CONTROL_KINDS[CONTROL_PLAIN], 0);
    groups.number_rows(CONTROL_KINDS[CONTROL_OE], 1);
    mark_drivers();
    DYNA_free(&sizes);
}

int32_t check_hiz_signal() {
    const char *command = without_minus(TAP_CONTR->highz_command);
    if (command == nullptr)
        return 0;
    for (int32_t i = 0; i < 3; ++i)
        if (same_text_no_case(command, without_minus(TAP_CONTR->*CONTROL_SIGNALS[MODE_SIGNALS[i]].tap_field)))
            return i + 1;
    return 0;
}
