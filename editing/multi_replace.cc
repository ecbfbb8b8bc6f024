// The tree of modules put together again: each parent takes the edited copies of its children.
#include "editing/multi_modules.hh"

#include "editing/tap_top.hh"
#include "support/run_state.hh"

namespace {

void replace_child(EDIT_FILE *fp, int32_t child) {
    const char *inst = MULTI_IO_TAB[child].inst_name;
    edit_replace(fp, inst, edited_module_name(child));
    for (const char *pin : signals_into_module(child))
        edit_connect(fp, pin_of(inst, pin), tap_signal(fp, pin));
}

void write_recorded(EDIT_FILE *fp, const MULTI_IO_ROW &module) {
    for (const ADDED_PORT &port : rows(module.added_ports))
        if (port.written != 1)
            edit_add_port(fp, port.name, port.direction == 0 ? EDIT_INPUT : EDIT_OUTPUT);
    for (const ADDED_CONN &conn : rows(module.added_conns))
        edit_connect(fp, place_operand({conn.inst1, conn.pin1}), place_operand({conn.inst2, conn.pin2}),
                     EDIT_TRAILING_BLANK);
}

} // namespace

void hier_replace_io_modules() {
    for (int32_t module = 1; module < DYNA_count(MULTI_IO_TAB); module++)
        replace_child(IO_MODULES[MULTI_IO_TAB[module].parent].file, module);
    if (option(OPT_ADD_TAP))
        connect_standard_ports_in_top();
    for (int32_t module = 0; module < DYNA_count(MULTI_IO_TAB); module++)
        write_recorded(IO_MODULES[module].file, MULTI_IO_TAB[module]);
    rwv_do_connection_table(TAP_FP);
    for (IO_MODULE &module : IO_MODULES)
        edit_end_file(module.file);
    TAP_FP = nullptr;
}
