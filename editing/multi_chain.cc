// A cell's %TDI pin is fed by the %TDO pin of the cell behind it in SCAN_TAB. Where the two stand in
// different modules, each pin that has to leave its module gets a port of its name, on every level up to the
// module where both signals meet.
#include "editing/multi_chain.hh"

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
    append_row(MULTI_IO_TAB[module].added_ports, {name, which.direction, 1});
    edit_add_port(fp, name, which.direction);
    edit_connect(fp, chain_pin(index, which), port_net(name));
}

/// Leads a port of `module` up to the child of `stop`, and returns that child.
int32_t pass_up(int32_t module, const char *port, EDIT_PORT direction, int32_t stop) {
    while (MULTI_IO_TAB[module].parent != stop) {
        int32_t parent = MULTI_IO_TAB[module].parent;
        record_port(parent, port, direction);
        record_connection(parent, MULTI_IO_TAB[module].inst_name, port, nullptr, port);
        module = parent;
    }
    return module;
}

int32_t make_port_up_to(int32_t index, const CHAIN_PIN &which, EDIT_FILE *fp, int32_t stop) {
    make_port(index, which, fp);
    return pass_up(SCAN_TAB[index].io_module, chain_port_name(index, which), which.direction, stop);
}

/// The child of `ancestor` on the way down to `module`.
int32_t child_towards(int32_t ancestor, int32_t module) {
    while (MULTI_IO_TAB[module].parent != ancestor)
        module = MULTI_IO_TAB[module].parent;
    return module;
}

const char *inst_of(int32_t module) {
    return MULTI_IO_TAB[module].inst_name;
}

/// One end of the chain, at the TAP in the top module.
void connect_end(int32_t index, const CHAIN_PIN &which, const char *tap_pin, EDIT_FILE *fp) {
    const SCAN_ROW &row = SCAN_TAB[index];
    if (row.io_module == 0) {
        record_connection(0, TAP_FP->tap, tap_pin, row.inst, row.*which.pin);
        return;
    }
    int32_t child = make_port_up_to(index, which, fp, 0);
    record_connection(0, inst_of(child), chain_port_name(index, which), TAP_FP->tap, tap_pin);
}

void connect_tdi(int32_t index, EDIT_FILE *fp) {
    const SCAN_ROW &row = SCAN_TAB[index];
    if (index == DYNA_count(SCAN_TAB) - 1) {
        connect_end(index, CHAIN_TDI, TAP_CONTR->first_bcell, fp);
        return;
    }
    const SCAN_ROW &next = SCAN_TAB[index + 1];
    int32_t here = row.io_module, there = next.io_module;
    if (here == there) {
        edit_connect(fp, chain_pin(index, CHAIN_TDI), chain_pin(index + 1, CHAIN_TDO));
        return;
    }
    int32_t common = check_common_level_for_two_multi_io(here, there);
    if (here == common) {
        record_connection(here, inst_of(child_towards(common, there)), chain_port_name(index + 1, CHAIN_TDO),
                          row.inst, row.tdi_pin);
        return;
    }
    int32_t child = make_port_up_to(index, CHAIN_TDI, fp, common);
    const char *port = chain_port_name(index, CHAIN_TDI);
    if (there == common)
        record_connection(common, inst_of(child), port, next.inst, next.tdo_pin);
    else
        record_connection(common, inst_of(child), port, inst_of(child_towards(common, there)),
                          chain_port_name(index + 1, CHAIN_TDO));
}

void connect_tdo(int32_t index, EDIT_FILE *fp) {
    if (index == 0) {
        connect_end(index, CHAIN_TDO, TAP_CONTR->last_bcell, fp);
        return;
    }
    int32_t here = SCAN_TAB[index].io_module, before = SCAN_TAB[index - 1].io_module;
    if (here == before)
        return;
    // A cell in the module where the signals meet is reached there without a port.
    int32_t common = check_common_level_for_two_multi_io(here, before);
    if (here != common)
        make_port_up_to(index, CHAIN_TDO, fp, common);
}

} // namespace

int32_t check_common_level_for_two_multi_io(int32_t a, int32_t b) {
    if (a == b)
        return 0;
    for (int32_t up = a; up >= 0; up = MULTI_IO_TAB[up].parent)
        for (int32_t other = b; other >= 0; other = MULTI_IO_TAB[other].parent)
            if (up == other)
                return up;
    return 0;
}

void hier_add_and_connect_bc_serial(int32_t row, EDIT_FILE *fp) {
    connect_tdi(row, fp);
    connect_tdo(row, fp);
}
