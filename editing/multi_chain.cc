// A cell's %TDI pin is fed by the %TDO pin of the cell behind it in SCAN_TAB. Where the two stand in
// different modules, each pin that has to leave its module gets a port of its name, on every level up to the
// module where both signals meet.
#include "editing/multi_modules.hh"

#include "planning/tap_state.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <string>
#include <unordered_map>

namespace {

/// Both chain pins of a cell. The direction is that of the port that carries the pin's signal.
struct CHAIN_PIN {
    const char *SCAN_ROW::*pin;
    EDIT_PORT direction;
};
constexpr CHAIN_PIN CHAIN_TDI = {&SCAN_ROW::tdi_pin, EDIT_INPUT};
constexpr CHAIN_PIN CHAIN_TDO = {&SCAN_ROW::tdo_pin, EDIT_OUTPUT};

/// The port that carries a chain pin. A cell inside a pad has the pad's name, which pads in other modules may
/// have too; the later ones get a number, so that ports which meet in one module differ.
const char *chain_port_name(int32_t index, const CHAIN_PIN &which) {
    static std::unordered_map<std::string, int32_t> owners;
    const SCAN_ROW &row = SCAN_TAB[index];
    std::string name = format_text("%s_%s", row.inst, row.*which.pin);
    if (owners.try_emplace(name, index).first->second != index)
        name += format_text("_%d", index);
    return keep_text(name);
}

EDIT_OPERAND chain_pin(int32_t index, const CHAIN_PIN &which) {
    return pin_of(SCAN_TAB[index].inst, SCAN_TAB[index].*which.pin);
}

/// Gives the cell's pin a port of its own module.
void make_port(int32_t index, const CHAIN_PIN &which, EDIT_FILE *fp) {
    const char *name = chain_port_name(index, which);
    int32_t module = SCAN_TAB[index].io_module;
    take_port_name(module, name);
    edit_add_port(fp, name, which.direction);
    edit_connect(fp, chain_pin(index, which), port_net(name));
}

/// Leads a pin of a cell up to the module `stop`, through a new port on each level below that.
void lead_up(int32_t index, const CHAIN_PIN &which, EDIT_FILE *fp, int32_t stop) {
    int32_t module = SCAN_TAB[index].io_module;
    if (module == stop)
        return;
    make_port(index, which, fp);
    const char *port = chain_port_name(index, which);
    for (; MULTI_IO_TAB[module].parent != stop; module = MULTI_IO_TAB[module].parent) {
        record_port(MULTI_IO_TAB[module].parent, port, which.direction);
        record_connection(MULTI_IO_TAB[module].parent, {MULTI_IO_TAB[module].inst_name, port},
                          {nullptr, port});
    }
}

/// Where the pin of a cell is reached in `module`, which holds the cell or the way down to it.
SIGNAL_PLACE place_in(int32_t module, int32_t index, const CHAIN_PIN &which) {
    int32_t child = SCAN_TAB[index].io_module;
    if (child == module)
        return {SCAN_TAB[index].inst, SCAN_TAB[index].*which.pin};
    while (MULTI_IO_TAB[child].parent != module)
        child = MULTI_IO_TAB[child].parent;
    return {MULTI_IO_TAB[child].inst_name, chain_port_name(index, which)};
}

/// One end of the chain, at the TAP in the top module.
void connect_end(int32_t index, const CHAIN_PIN &which, const char *tap_pin, EDIT_FILE *fp) {
    SIGNAL_PLACE tap = {MULTI_IO_TAB[0].file->tap, tap_pin};
    lead_up(index, which, fp, 0);
    SIGNAL_PLACE cell = place_in(0, index, which);
    if (SCAN_TAB[index].io_module == 0)
        record_connection(0, tap, cell);
    else
        record_connection(0, cell, tap);
}

/// The nearest common ancestor of two rows of MULTI_IO_TAB, a row counting as its own; 0 for equal rows.
int32_t check_common_level_for_two_multi_io(int32_t a, int32_t b) {
    if (a == b)
        return 0;
    for (int32_t up = a; up >= 0; up = MULTI_IO_TAB[up].parent)
        for (int32_t other = b; other >= 0; other = MULTI_IO_TAB[other].parent)
            if (up == other)
                return up;
    return 0;
}

void connect_tdi(int32_t index, EDIT_FILE *fp) {
    if (index == DYNA_count(SCAN_TAB) - 1) {
        connect_end(index, CHAIN_TDI, TAP_CONTR->first_bcell, fp);
        return;
    }
    int32_t here = SCAN_TAB[index].io_module, there = SCAN_TAB[index + 1].io_module;
    if (here == there) {
        edit_connect(fp, chain_pin(index, CHAIN_TDI), chain_pin(index + 1, CHAIN_TDO));
        return;
    }
    int32_t common = check_common_level_for_two_multi_io(here, there);
    lead_up(index, CHAIN_TDI, fp, common);
    SIGNAL_PLACE own = place_in(common, index, CHAIN_TDI);
    SIGNAL_PLACE next = place_in(common, index + 1, CHAIN_TDO);
    // The signal that comes up into the module stands first in the line.
    if (here == common)
        record_connection(common, next, own);
    else
        record_connection(common, own, next);
}

void connect_tdo(int32_t index, EDIT_FILE *fp) {
    if (index == 0) {
        connect_end(index, CHAIN_TDO, TAP_CONTR->last_bcell, fp);
        return;
    }
    // The cell before has reached a pin in its own module, or in the one where the signals meet, without a
    // port.
    int32_t here = SCAN_TAB[index].io_module, before = SCAN_TAB[index - 1].io_module;
    if (here != before)
        lead_up(index, CHAIN_TDO, fp, check_common_level_for_two_multi_io(here, before));
}

} // namespace

void hier_add_and_connect_bc_serial(int32_t row, EDIT_FILE *fp) {
    connect_tdi(row, fp);
    connect_tdo(row, fp);
}
