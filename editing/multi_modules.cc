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

#include <algorithm>

std::vector<IO_MODULE> IO_MODULES;

namespace {

void note_ports(IO_MODULE &module) {
    OPEN_DESIGN design(module.sdb_path);
    for (int32_t port = 0; port < port_count; port++)
        if (const char *name = SYM_get(sym_tab, port_tab[port].name); name != nullptr)
            module.ports.insert(name);
}

void begin_module(int32_t index) {
    IO_MODULE &module = IO_MODULES[index];
    const char *class_name = MULTI_IO_TAB[index].class_name;
    std::string edited = edited_module_name(index);
    module.sdb_path = index == 0 ? MODULE_SDB : found_module_file(class_name);
    copy_module(module.sdb_path, edited);
    module.file = begin_module_file(edited);
    // The port warnings of the cell lines are those of a top module.
    module.file->warns_of_ports = true;
    module.added_ports.path = module.added_conns.path = module.file->path;
    note_ports(module);
}

void begin_top() {
    begin_module(0);
    TAP_FP = IO_MODULES[0].file;
    if (place_tap(TAP_FP, 0))
        write_idcode_lines(TAP_FP);
    else
        warn_of_unwired_ports();
}

void note_highz_buffers() {
    for (const auto &[module, group] : emission.highz_buffers)
        IO_MODULES[std::max(module, 0)].highz_buffer = true;
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
    IO_MODULES[parent].highz_buffer |= IO_MODULES[child].highz_buffer;
}

void replace_child(EDIT_FILE *fp, int32_t child) {
    const char *inst = MULTI_IO_TAB[child].inst_name;
    edit_replace(fp, inst, edited_module_name(child));
    for (const char *pin : signals_into_module(child))
        edit_connect(fp, pin_of(inst, pin), tap_signal(fp, pin));
}

} // namespace

void open_multi_io_modules() {
    IO_MODULES.assign(DYNA_count(MULTI_IO_TAB), {});
    for (int32_t module = 1; module < DYNA_count(MULTI_IO_TAB); module++)
        begin_module(module);
    begin_top();
}

void emit_multi_io_cells() {
    // Neighbours in the ring may stand in different modules: each module is opened once, for all its cells.
    std::vector<SDB_HANDLE *> designs(IO_MODULES.size());
    for (int32_t index = 0; index < DYNA_count(OPIN_TAB); index++) {
        if (OPIN_TAB[index].scan_cell == nullptr)
            continue;
        current_multi_io_indexG = OPIN_TAB[index].io_module;
        IO_MODULE &module = IO_MODULES[current_multi_io_indexG];
        SDB_HANDLE *&design = designs[current_multi_io_indexG];
        if (design == nullptr) {
            open_sdb_file(module.sdb_path);
            design = sdb;
        } else if (design != sdb) {
            SDB_setup(design);
        }
        PAD_FP = module.file;
        add_scan_cells_in_cmd_file(PAD_FP, index);
    }
    for (SDB_HANDLE *design : designs)
        SDB_close(design, 0);
    SDB_clear_current();
    note_highz_buffers();
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
        if (signal == SIG_HIGHZ && IO_MODULES[module].highz_buffer)
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
    if (!IO_MODULES[module].ports.insert(name).second)
        fail_taken_port(MULTI_IO_TAB[module].class_name, name.c_str());
}

void record_port(int32_t module, const char *name, EDIT_PORT direction) {
    take_port_name(module, name);
    edit_add_port(&IO_MODULES[module].added_ports, name, direction);
}

void record_connection(int32_t module, const SIGNAL_PLACE &a, const SIGNAL_PLACE &b) {
    edit_connect(&IO_MODULES[module].added_conns, place_operand(a), place_operand(b), EDIT_TRAILING_BLANK);
}

void hier_replace_io_module(int32_t index, const MULTI_IO_NODE *children) {
    IO_MODULE &module = IO_MODULES[index];
    for (const MULTI_IO_NODE &child : rows(children)) {
        hier_replace_io_module(child.row, child.children);
        replace_child(module.file, child.row);
    }
    if (index == 0 && option(OPT_ADD_TAP))
        connect_standard_ports_in_top();
    module.file->text += module.added_ports.text + module.added_conns.text;
    if (index == 0)
        rwv_do_connection_table(module.file);
    edit_end_file(module.file);
    if (index == 0)
        TAP_FP = nullptr;
}
