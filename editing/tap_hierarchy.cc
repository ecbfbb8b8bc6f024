#include "editing/tap_hierarchy.hh"

#include "editing/existing_tap.hh"
#include "editing/tap_place.hh"
#include "editing/tap_top.hh"
#include "editing/tool_runs.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

const char *found_module_file(const char *module) {
    std::string file = std::string(module) + ".sdb";
    const char *found = find_design_file(file);
    if (found == nullptr)
        console_fail("ERROR: Can not find \"%s\" file.\n\n", file.c_str());
    return found;
}

void copy_module(const char *module) {
    const char *found = found_module_file(module);
    std::string copy = std::string(module) + "_bs.sdb";
    if (copy_file(found, copy) != 0)
        vmr_fail("\nERROR: can not copy file \"%s\" to file \"%s\".\n       Perhaps permission deny ...\n\n",
                 found, copy.c_str());
}

void write_path_file(int32_t level, bool holds_tap) {
    const TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    std::string module = std::string(path[level].module) + "_bs";
    std::string file = std::string(RIMWEAVE_OPATH) + "/" + module + ".cmd";
    EDIT_FILE *fp = edit_begin_file(file, module, true);
    if (fp == nullptr)
        vmr_fail("ERROR: can't open command file \"%s\" to update SDB.\n", file.c_str());
    if (!holds_tap) {
        edit_replace(fp, path[level + 1].inst, std::string(path[level + 1].module) + "_bs");
        TAP_INSTANCE_NAME = path[level + 1].inst;
    } else if (option(OPT_ADD_TAP)) {
        edit_add_instance(fp, TAP_INSTANCE_NAME, TAP_MODULE_NAME);
        write_idcode_lines(fp);
    } else {
        free_existing_tap(fp);
    }
    open_sdb_file(found_module_file(path[level].module));
    if (option(OPT_ADD_TAP))
        rwv_added_tap_ctrl_ports_into_parent(fp, TAP_INSTANCE_NAME);
    else
        lift_existing_tap_ports(fp, TAP_INSTANCE_NAME);
    close_sdb_file();
    edit_end_file(fp);
}

} // namespace

void rwv_check_hier_inst_tap_iopad(int32_t row) {
    const char **pads = OPIN_TAB[row].hier_instances;
    const TAP_PATH_ROW *tap = rwv_hier_tap_ctrl_name_tabG;
    int32_t levels = DYNA_count(pads);
    int32_t shared = 0;
    while (shared < levels && shared < DYNA_count(tap) - 1 &&
           same_text(tap[shared].inst, pads[levels - 1 - shared]))
        shared++;
    rwv_hier_same_instance_tapG = shared - 1;
    rwv_hier_same_instance_iopadG = shared == 0 ? -1 : levels - shared;
}

void rwv_hier_find_tap_instance() {
    TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    for (int32_t i = 0; i < DYNA_count(path) - 1; i++) {
        const char *parent = i == 0 ? TOP_MODULE : path[i - 1].module;
        open_sdb_file(found_module_file(parent));
        int32_t obj = SDB_instance_obj(path[i].inst);
        if (obj < 0)
            vmr_fail("ERROR: can not find the instance %s in %s.sdb file.\n", path[i].inst, parent);
        path[i].module = keep_text(object_class_name(obj));
        close_sdb_file();
    }
}

void rwv_hier_replace_tap_instance(int32_t first) {
    const TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    int32_t last = DYNA_count(path) - 2;
    for (int32_t i = first; i <= last; i++)
        copy_module(path[i].module);
    for (int32_t i = last; i >= first; i--)
        write_path_file(i, i == last);
    TAP_INSTANCE_NAME = path[first].inst;
    rwv_hier_do_kalmedit_for_tap_instance(first);
}

void rwv_added_tap_ctrl_ports_into_parent(EDIT_FILE *fp, const char *inst) {
    // The order of the tables, and the direction that the names of each have on the parent.
    struct PORT_GROUP {
        int32_t table;
        EDIT_PORT direction;
    };
    constexpr PORT_GROUP groups[TAP_PORT_TABLES] = {{0, EDIT_INPUT}, {1, EDIT_OUTPUT}, {2, EDIT_OUTPUT},
                                                    {3, EDIT_INPUT}, {4, EDIT_OUTPUT}, {6, EDIT_INPUT},
                                                    {5, EDIT_OUTPUT}};
    for (const PORT_GROUP &group : groups)
        for (const char *name : rows(rwv_hier_tap_port_tabG[group.table])) {
            add_new_port(fp, name, group.direction);
            edit_connect(fp, pin_of(inst, name), port_net(name));
        }
}
