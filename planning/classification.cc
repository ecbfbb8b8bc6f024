// The walk through the pin list: a row per pin, and for each port the decision how it is handled, from what
// the pin list says, what the library says of the cell next to the port, and the port's direction in the
// design.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/io_modules.hh"
#include "planning/skip_signals.hh"
#include "planning/tap_needs.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

const char *INVERTER_INPUT = nullptr;
const char *INVERTER_OUTPUT = nullptr;

namespace {

void save_OPIN_TAB_for_adding_scan_cell(OPIN_ROW &row) {
    int32_t port = find_iport(row.port_name);
    int32_t direction = port_tab[port].flags & SDB_DIRECTION_MASK;
    take_pad(row, port, direction != SDB_BIDIRECTIONAL);
    row.direction = bs_pin_direction(row.pin_index);
    if (has_function(row.pad, "BUF")) { // no pad: nothing is inserted at this port
        row.kind = CELL_INTERNAL;
        return;
    }
    if (direction == SDB_INPUT)
        save_input_clock_tab(row, port);
    else if (direction == SDB_OUTPUT)
        save_output_scan_tab(row, port);
    else if (direction == SDB_BIDIRECTIONAL)
        save_bidir_scan_tab(row);
    else
        vmr_fail("FATAL: can't identify function of port '%s'.\n\n", row.port_name);
    resolve_modes_of_port(row);
}

void take_internal_cell(OPIN_ROW &row) {
    bool observes = bs_observe_word(PIN_TABLE[row.pin_index]->package_name);
    CHOSEN_CELL chosen = {get_scan_cell(observes ? OBSERVE_ONLY_SCAN : INTERNAL_SCAN), COUNT_INTERNAL};
    constexpr CELL_WORDS OBSERVE = {"%OBSERVE_ONLY_SCAN", "OBSERVE_ONLY SCAN", "internal"};
    constexpr CELL_WORDS INTERNAL = {"%INTERNAL_SCAN", "INTERNAL SCAN", "internal"};
    take_cell(row, CELL_INTERNAL, required_cell(row, chosen, observes ? OBSERVE : INTERNAL));
}

[[noreturn]] void fail_unknown_instance(const std::string &instance) {
    std::vector<std::string> readings = SDB_obj_readings(instance.c_str());
    if (readings.size() < 2)
        vmr_fail("ERROR: can not find instance '%s' in '%s' file.\n", instance.c_str(), MODULE_C_SDB);
    vmr_printf("ERROR: instance '%s' of pin file is ambiguous in '%s' file.\n       Please write one of:\n",
               instance.c_str(), MODULE_C_SDB);
    for (const std::string &reading : readings)
        vmr_printf("           %s\n", reading.c_str());
    vmr_fail("\n");
}

void save_OPIN_TAB_for_adding_scan_cell_internal(OPIN_ROW &row) {
    std::string_view name = row.port_name;
    size_t open = name.find('{');
    size_t close = open == name.npos ? name.npos : name.find('}', open);
    if (open == name.npos || open == 0 || close == open + 1)
        vmr_fail("ERROR: can not get instance name or pin name in '%s' of pin file.\n", row.port_name);
    std::string instance(name.substr(0, open));
    const char *pin_name = keep_text(name.substr(open + 1, close == name.npos ? close : close - open - 1));
    if (*pin_name == '\0')
        vmr_fail("ERROR: can not get instance name or pin name in '%s' of pin file.\n", row.port_name);

    row.pad_obj = SDB_lookup_obj(instance.c_str());
    if (row.pad_obj < 0)
        fail_unknown_instance(instance);
    row.pad_class = keep_text(object_class_name(row.pad_obj));
    int32_t node = find_pin_node(row.pad_obj, pin_name);
    if (node < 0)
        vmr_fail("ERROR: can not find port '%s' in instance '%s'.\n", pin_name, instance.c_str());
    get_hier_class_and_inst_name(row, row.pad_obj);
    row.direction = bs_pin_direction(row.pin_index);
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    switch (pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK) {
    case SDB_INPUT:
        row.pad_input = pin_name;
        break;
    case SDB_OUTPUT:
        row.pad_output = pin_name;
        break;
    default:
        vmr_fail("ERROR: can't support inout port '%s' now.\n", row.port_name);
    }
    take_internal_cell(row);
}

/// Two rows that would cut one wire spoil each other's cell: two ports on one pad, or one port under two
/// names. The cell inside a pad serves one port, although it cuts no wire.
void check_no_wire_is_cut_twice() {
    std::unordered_map<int32_t, const OPIN_ROW *> cuts, pads; // by node; by the object of such a pad
    auto take = [](auto &places, int32_t place, const OPIN_ROW &row) {
        auto [known, is_new] = places.try_emplace(place, &row);
        if (!is_new && known->second != &row)
            vmr_fail("ERROR: (%s) '%s' and '%s' need a boundary scan cell at the same place.\n"
                     "       Please correct your SDB or specify one of them as skip signal.\n"
                     "       Power and ground ports belong in %%SKIP_SIGNAL_NAMES of file '%s'.\n\n",
                     PIN_FILE, known->second->port_name, row.port_name, JTAG_BSC_FILE);
    };
    each_apart(rows(OPIN_TAB), [&](const OPIN_ROW &row) {
        bool is_internal = row.kind == CELL_INTERNAL;
        if (row.scan_cell == nullptr || (is_internal && row.scan_cell->data_out == nullptr))
            return; // a cell that only observes cuts nothing
        if (row.pad == nullptr && !is_internal)
            take(cuts, port_tab[find_iport(row.port_name)].node, row);
        if (is_bs_buffer(row.pad))
            take(pads, row.pad_obj, row);
        for (const char *pin : {row.pad_input, row.pad_output})
            if (pin != nullptr)
                take(cuts, find_pin_node(row.pad_obj, pin), row);
    });
}

bool is_standard_port(const char *name) {
    return std::any_of(std::begin(TAP_PORT), std::end(TAP_PORT), [name](const STANDARD_PORT_STATE &state) {
        return same_text(without_minus(*state.global_name), name);
    });
}

/// Says which ports of the design the pin list forgets: nothing else would show that they have no cell.
void warn_of_unlisted_ports() {
    std::vector<char> is_listed(port_count);
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        const PIN_ENTRY *pin = PIN_TABLE[row.pin_index];
        int32_t port = SDB_nl_search_port(row.port_name);
        if (port < 0 && !skip_signal(pin->top_name) && !bs_internal_word(pin->package_name))
            try_step([&port, &row] { port = find_iport(row.port_name); });
        if (port >= 0)
            is_listed[port] = 1;
    }
    for (int32_t port = 0; port < port_count; ++port) {
        const char *name = SYM_get(sym_tab, port_tab[port].name);
        if (is_listed[port] == 0 && name != nullptr && !skip_signal(name) && !is_standard_port(name))
            vmr_printf("WARNING: (%s) can't find port '%s' in the pin list.\n"
                       "         Boundary scan cell won't be inserted on this port.\n\n",
                       PIN_FILE, name);
    }
}

void check_inv_signal() {
    auto table = rows(OPIN_TAB);
    auto first =
        std::find_if(table.begin(), table.end(), [](const OPIN_ROW &row) { return row.inverted != 0; });
    if (first == table.end())
        return;
    if (INVERTER == nullptr && TAP_CONTR != nullptr)
        INVERTER = TAP_CONTR->inv_buffer;
    if (INVERTER == nullptr)
        vmr_fail("ERROR: can't find %%INV_BUFFER of %%TAP_CONTROLLER in file '%s'\n"
                 "       or %%INVERTER in file '%s' for pin '-%s'.\n\n",
                 JTAG_LIB_FILE, JTAG_BSC_FILE, first->port_name);
    const BUFFER_CELL *inverter = get_buffer(INVERTER);
    if (inverter == nullptr)
        vmr_fail("ERROR: can't find the definition of buffer '%s' in file '%s'.\n\n", INVERTER,
                 JTAG_LIB_FILE);
    INVERTER_INPUT = inverter->input;
    INVERTER_OUTPUT = inverter->output;
    if (INVERTER_INPUT == nullptr || INVERTER_OUTPUT == nullptr)
        vmr_fail("ERROR: (%s) can't find %s in %%BUFFER %s.\n\n", JTAG_LIB_FILE,
                 INVERTER_INPUT == nullptr ? "%INPUT" : "%OUTPUT", INVERTER);
}

void make_rows() {
    for (STANDARD_PORT_STATE &state : TAP_PORT)
        state.pin_index = -1;
    each_number_apart(DYNA_count(PIN_TABLE), [](int32_t pin) {
        const char *name = bs_pin_name(pin);
        if (name == nullptr)
            return;
        OPIN_ROW &row = create_an_entry_of_OPIN_TAB(pin, name);
        if (skip_signal(name))
            bs_save_OPIN_TAB_for_standard_port_of_TAP(row, name);
        else if (bs_internal_word(PIN_TABLE[pin]->package_name))
            save_OPIN_TAB_for_adding_scan_cell_internal(row);
        else
            save_OPIN_TAB_for_adding_scan_cell(row);
    });
}

} // namespace

void produce_opin_control_tab() {
    each_apart({make_rows, point_standard_ports_at_rows, check_no_wire_is_cut_twice, warn_of_missing_pins,
                warn_of_unlisted_ports});
    settle_io_modules();
    if (multi_io_module_flagG != 0)
        split_control_cells_by_module();
    close_sdb_file();
    check_inv_signal();
}
