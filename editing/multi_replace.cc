#include "editing/multi_replace.hh"

#include "editing/multi_modules.hh"
#include "editing/multi_ports.hh"
#include "editing/tap_top.hh"
#include "support/run_state.hh"

namespace {

void replace_child(EDIT_FILE *fp, int32_t child) {
    const char *inst = MULTI_IO_TAB[child].inst_name;
    edit_replace(fp, inst, edited_module_name(child));
    for (const char *pin : signals_into_module(child))
        edit_connect(fp, pin_of(inst, pin), tap_signal(fp, pin));
}

EDIT_OPERAND side_of(const char *inst, const char *pin) {
    return inst != nullptr ? pin_of(inst, pin) : port_net(pin);
}

void write_recorded(EDIT_FILE *fp, const MULTI_IO_ROW &module) {
    for (const ADDED_PORT &port : rows(module.added_ports))
        if (port.written != 1)
            edit_add_port(fp, port.name, port.direction == 0 ? EDIT_INPUT : EDIT_OUTPUT);
    for (const ADDED_CONN &conn : rows(module.added_conns))
        edit_connect(fp, side_of(conn.inst1, conn.pin1), side_of(conn.inst2, conn.pin2), EDIT_TRAILING_BLANK);
}

} // namespace

void hier_replace_io_module(int32_t index, const MULTI_IO_NODE *children) {
    if (index == -1)
        return;
    EDIT_FILE *&fp = IO_MODULES[index].file;
    for (const MULTI_IO_NODE &child : rows(children)) {
        hier_replace_io_module(child.row, child.children);
        replace_child(fp, child.row);
    }
    if (index == 0 && option(OPT_ADD_TAP))
        connect_standard_ports_in_top();
    write_recorded(fp, MULTI_IO_TAB[index]);
    if (index == 0)
        rwv_do_connection_table(fp);
    edit_end_file(fp);
    if (index == 0)
        TAP_FP = nullptr;
}
