#include "editing/bcm_cells.hh"

#include "editing/module_copies.hh"
#include "editing/tap_top.hh"
#include "planning/port_table.hh"
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
    begin_top_file(false);
    TAP_FP->holds_cells = TAP_FP->warns_of_ports = true;
    TAP_FP->tap = keep_text(bcm_name());
    edit_add_instance(TAP_FP, TAP_FP->tap, TAP_FP->tap);
    write_standard_ports(true);
    write_idcode_lines(TAP_FP);
}
