#include "editing/tap_hierarchy.hh"

#include "editing/existing_tap.hh"
#include "editing/module_border.hh"
#include "editing/module_copies.hh"
#include "editing/tap_top.hh"
#include "editing/tool_runs.hh"
#include "planning/open_design.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// Modules of the path: its rows but the last, which is the TAP.
int32_t modules_of_path() {
    return DYNA_count(rwv_hier_tap_ctrl_name_tabG) - 1;
}

/// Fills the modules of the path.
void rwv_hier_find_tap_instance() {
    TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    for (int32_t i = 0; i < modules_of_path(); i++) {
        const char *parent = i == 0 ? TOP_MODULE : path[i - 1].module;
        OPEN_DESIGN design(found_module_file(parent));
        int32_t obj = SDB_instance_obj(path[i].inst);
        if (obj < 0)
            vmr_fail("ERROR: can not find the instance %s in %s.sdb file.\n", path[i].inst, parent);
        path[i].module = keep_text(object_class_name(obj));
    }
}

/// Gives the edited module a port for each port of a new TAP.
void rwv_added_tap_ctrl_ports_into_parent(EDIT_FILE *fp) {
    // The order of the tables, and the direction that the names of each have on the parent.
    struct PORT_GROUP {
        int32_t table;
        EDIT_PORT direction;
    };
    constexpr PORT_GROUP groups[TAP_PORT_TABLES] = {{0, EDIT_INPUT}, {1, EDIT_OUTPUT}, {2, EDIT_OUTPUT},
                                                    {3, EDIT_INPUT}, {4, EDIT_OUTPUT}, {6, EDIT_INPUT},
                                                    {5, EDIT_OUTPUT}};
    for (const PORT_GROUP &group : groups)
        for (const char *name : rows(rwv_hier_tap_port_tabG[group.table]))
            lift_tap_pin(fp, name, group.direction);
}

void write_path_file(int32_t row) {
    const char *module = rwv_hier_tap_ctrl_name_tabG[row].module;
    EDIT_FILE *fp = begin_module_file(std::string(module) + "_bs");
    if (place_tap(fp, row + 1))
        write_idcode_lines(fp);
    OPEN_DESIGN design(found_module_file(module));
    if (option(OPT_ADD_TAP))
        rwv_added_tap_ctrl_ports_into_parent(fp);
    else
        lift_existing_tap_ports(fp);
    edit_end_file(fp);
}

} // namespace

PAD_PATH path_of_pads() {
    const OPIN_ROW &row = OPIN_TAB[first_row_with_cells()];
    const TAP_PATH_ROW *tap = rwv_hier_tap_ctrl_name_tabG;
    int32_t levels = multi_io_module_flagG != 0 ? 0 : DYNA_count(row.hier_instances);
    int32_t shared = 0;
    while (shared < levels && shared < modules_of_path() &&
           same_text(tap[shared].inst, row.hier_instances[levels - 1 - shared]))
        shared++;
    return {&row, levels, levels - shared};
}

void edit_tap_path(const PAD_PATH &pads) {
    if (rwv_hier_tap_ctrlG == 0)
        return;
    rwv_hier_find_tap_instance();
    int32_t first = pads.levels - pads.tap_level;
    if (first == modules_of_path())
        return;
    for (int32_t i = first; i < modules_of_path(); i++) {
        const char *module = rwv_hier_tap_ctrl_name_tabG[i].module;
        copy_module(found_module_file(module), std::string(module) + "_bs");
    }
    for (int32_t i = modules_of_path() - 1; i >= first; i--)
        write_path_file(i);
    rwv_hier_do_kalmedit_for_tap_instance(first);
}

bool place_tap(EDIT_FILE *fp, int32_t depth) {
    bool is_path = depth < modules_of_path();
    const TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    fp->tap = is_path ? path[depth].inst : TAP_INSTANCE_NAME;
    if (is_path)
        edit_replace(fp, fp->tap, std::string(path[depth].module) + "_bs");
    else if (option(OPT_ADD_TAP))
        edit_add_instance(fp, fp->tap, TAP_MODULE_NAME);
    else
        free_existing_tap(fp);
    return !is_path && option(OPT_ADD_TAP);
}

void write_idcode_lines(EDIT_FILE *fp) {
    if (!option(OPT_EXTERNAL_IDCODE) || IDCODE_REG == nullptr)
        return;
    for (int32_t bit = 31; bit >= 0; bit--) {
        char value = IDCODE_REG[31 - bit];
        EDIT_OPERAND net = value == '1' ? constant_one() : value == '0' ? constant_zero() : free_net();
        edit_connect(fp, pin_of(fp->tap, format_text("IDCODE[%d]", bit).c_str()), net);
    }
}
