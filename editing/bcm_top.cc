#include "editing/bcm_cells.hh"

#include "editing/cells.hh"
#include "editing/standard_ports.hh"
#include "editing/tap_top.hh"
#include "planning/port_table.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

void check_pad_in_top(const OPIN_ROW &row) {
    if (DYNA_count(row.hier_classes) > 0)
        vmr_fail("ERROR: the pad of port '%s' lies in module '%s'.\n"
                 "       Option -add_bcm needs all pads in the top module.\n\n",
                 row.port_name, row.hier_classes[0]);
}

/// Port BCM_<pin> of the instance.
EDIT_OPERAND tap_port(const char *pin) {
    return pin_of(TAP_INSTANCE_NAME, (std::string("BCM_") + (pin == nullptr ? "" : pin)).c_str());
}

void connect_port(STANDARD_PORT port) {
    const char *tap_pin = TAP_PORT[port].tap_pin;
    if (TAP_PORT[port].row != nullptr) {
        edit_connect(TAP_FP, row_operand(port), tap_port(tap_pin));
        return;
    }
    const char *name = chip_port_name(port);
    edit_add_port(TAP_FP, name, port == PORT_TDO ? EDIT_OUTPUT : EDIT_INPUT);
    edit_connect(TAP_FP, port_net(name), tap_port(tap_pin));
}

/// The TDO pad is freed of what the design has on it.
void connect_tdo() {
    const OPIN_ROW *row = TAP_PORT[PORT_TDO].row;
    if (row == nullptr || row->pad_instance == nullptr) {
        connect_port(PORT_TDO);
        return;
    }
    int32_t node = find_place_node(row->pad_instance, row->pad_input);
    bool tied = is_constant_net(TAP_FLAG.tdo);
    bool driven = !tied && node >= 0 && pin_is_driven(node);
    if (driven)
        warn_of_cut({row->pad_instance, row->pad_input});
    if (tied || driven)
        take_pin_for_tap(TAP_FP, -1, row->pad_instance, row->pad_input);
    connect_port(PORT_TDO);
    const char *enable = TAP_TDO_EN_PIN == nullptr ? nullptr : tdo_enable_pin();
    if (enable == nullptr)
        return;
    if (TAP_FLAG.tdo_en != -1)
        take_pin_for_tap(TAP_FP, -1, row->pad_instance, enable);
    edit_connect(TAP_FP, pin_of(row->pad_instance, enable), tap_port(TAP_TDO_EN_PIN));
}

} // namespace

void check_bcm_design() {
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (!row_gets_cells(row))
            continue;
        check_pad_in_top(row);
        if (row.pad_instance == nullptr)
            vmr_fail("ERROR: port '%s' has no pad. Option -add_bcm needs a pad at each port with a cell.\n\n",
                     row.port_name);
    }
    for (const STANDARD_PORT_STATE &port : TAP_PORT)
        if (port.row != nullptr)
            check_pad_in_top(*port.row);
    if (multi_io_module_flagG != 0)
        vmr_fail("ERROR: Option -add_bcm can not support multiple IO-PAD modules.\n\n");
    if (CONNECT_TABLE != nullptr)
        vmr_printf("WARNING: option -add_bcm does not carry out %%CONNECTION_TABLE.\n\n");
}

void make_top_sdb() {
    TAP_INSTANCE_NAME = keep_text(bcm_name());
    begin_top_file(false);
    edit_add_instance(TAP_FP, TAP_INSTANCE_NAME, TAP_INSTANCE_NAME);
    for (STANDARD_PORT port : {PORT_TDI, PORT_TMS, PORT_TCK})
        connect_port(port);
    connect_tdo();
    if (GLOBAL_TRST != nullptr)
        connect_port(PORT_TRST);
    write_idcode_lines(TAP_FP);
}
