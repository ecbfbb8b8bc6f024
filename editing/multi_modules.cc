#include "editing/multi_modules.hh"

#include "editing/cells.hh"
#include "editing/existing_tap.hh"
#include "editing/module_border.hh"
#include "editing/module_copies.hh"
#include "editing/pad_sides.hh"
#include "editing/tap_hierarchy.hh"
#include "editing/tap_top.hh"
#include "planning/open_design.hh"
#include "planning/tracing.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

void begin_module(int32_t index) {
    const char *class_name = MULTI_IO_TAB[index].class_name;
    std::string edited = edited_module_name(index);
    const char *sdb_path = index == 0 ? MODULE_SDB : found_module_file(class_name);
    copy_module(sdb_path, edited);
    EDIT_FILE *file = MULTI_IO_TAB[index].file = begin_module_file(edited);
    file->sdb_path = sdb_path;
    // The port warnings of the cell lines are those of a top module.
    file->warns_of_ports = true;
    OPEN_DESIGN design(sdb_path);
    for (int32_t port = 0; port < port_count; port++)
        if (const char *name = SYM_get(sym_tab, port_tab[port].name); name != nullptr)
            file->ports.insert(name);
}

void add_needs_of_child(int32_t parent, int32_t child) {
    CONTROL_TREES &to = MULTI_IO_TAB[parent].trees;
    const CONTROL_TREES &from = MULTI_IO_TAB[child].trees;
    for (int32_t signal = 0; signal < SIGNAL_COUNT; signal++)
        to.signals[signal].need += from.signals[signal].need > 0 ? 1 : 0;
    while (DYNA_count(to.extras) < DYNA_count(from.extras))
        append_row(to.extras);
    for (int32_t i = 0; i < DYNA_count(from.extras); i++)
        to.extras[i].need += from.extras[i].need > 0 ? 1 : 0;
    MULTI_IO_TAB[parent].highz_buffer |= MULTI_IO_TAB[child].highz_buffer;
}

void replace_child(EDIT_FILE *fp, int32_t child) {
    const char *inst = MULTI_IO_TAB[child].inst_name;
    edit_replace(fp, inst, edited_module_name(child));
    for (const char *pin : signals_into_module(child))
        edit_connect(fp, pin_of(inst, pin), tap_signal(fp, pin));
}

} // namespace

void open_multi_io_modules() {
    for (int32_t module = 1; module < DYNA_count(MULTI_IO_TAB); module++)
        begin_module(module);
    begin_module(0);
    EDIT_FILE *top = MULTI_IO_TAB[0].file;
    if (place_tap(top, 0))
        write_idcode_lines(top);
    else
        warn_of_unwired_ports();
}

void emit_multi_io_cells() {
    // Neighbours in the ring may stand in different modules: each module is opened once, for all its cells.
    std::vector<SDB_HANDLE *> designs(DYNA_count(MULTI_IO_TAB));
    for (OPIN_ROW &row : rows(OPIN_TAB)) {
        if (row.scan_cell == nullptr)
            continue;
        MULTI_IO_ROW &module = MULTI_IO_TAB[row.io_module];
        SDB_HANDLE *&design = designs[row.io_module];
        if (design == nullptr) {
            open_sdb_file(module.file->sdb_path);
            design = sdb;
        } else if (design != sdb) {
            SDB_setup(design);
        }
        add_scan_cells_in_cmd_file(module.file, row);
        module.highz_buffer = !module.file->highz_buffers.empty();
    }
    for (SDB_HANDLE *design : designs)
        SDB_close(design, 0);
    SDB_clear_current();
}

void set_hier_common_net() {
    // A module's row stands behind that of its parent.
    for (int32_t module = DYNA_count(MULTI_IO_TAB) - 1; module > 0; module--)
        add_needs_of_child(MULTI_IO_TAB[module].parent, module);
}

std::vector<const char *> signals_into_module(int32_t module) {
    const CONTROL_TREES &trees = MULTI_IO_TAB[module].trees;
    std::vector<const char *> names;
    auto add = [&names](const char *name) { add_crossing_pin(names, name); };
    for (int32_t signal = 0; signal < SIG_BCLK; signal++) {
        if (trees.signals[signal].need > 0)
            add(TAP_PIN[signal]);
        if (signal == SIG_HIGHZ && MULTI_IO_TAB[module].highz_buffer)
            add(TAP_HIZ_PIN);
    }
    if (trees.signals[SIG_BCLK].need > 0 && option(OPT_SYNCH))
        add(BCELL_TCK);
    for (int32_t i = 0; i < DYNA_count(TAP_EXTRA_PIN) && i < DYNA_count(trees.extras); i++)
        if (trees.extras[i].need > 0)
            add(TAP_EXTRA_PIN[i]);
    return names;
}

void take_port_name(int32_t module, const std::string &name) {
    if (!MULTI_IO_TAB[module].file->ports.insert(name).second)
        fail_taken_port(MULTI_IO_TAB[module].class_name, name.c_str());
}

void record_port(int32_t module, const char *name, EDIT_PORT direction) {
    take_port_name(module, name);
    EDIT_FILE *file = MULTI_IO_TAB[module].file;
    EDIT_FILE line = {file->path, {}};
    edit_add_port(&line, name, direction);
    file->added_ports += line.text;
}

void record_connection(int32_t module, const SIGNAL_PLACE &a, const SIGNAL_PLACE &b) {
    EDIT_FILE *file = MULTI_IO_TAB[module].file;
    EDIT_FILE line = {file->path, {}};
    edit_connect(&line, place_operand(a), place_operand(b), EDIT_TRAILING_BLANK);
    file->added_conns += line.text;
}

void hier_replace_io_modules() {
    for (int32_t index : modules_children_first()) {
        EDIT_FILE *&file = MULTI_IO_TAB[index].file;
        if (index == 0 && option(OPT_ADD_TAP))
            connect_standard_ports_in_top(file);
        file->text += file->added_ports + file->added_conns;
        if (index == 0)
            rwv_do_connection_table(file);
        edit_end_file(file);
        if (index != 0)
            replace_child(MULTI_IO_TAB[MULTI_IO_TAB[index].parent].file, index);
    }
}
