// The path of a TAP that stands below the top: its text against the design.
//
// The path is split at its dots. Where the design has no instances of these names, a dot may belong to a
// name, as in the Verilog names `\core[0].u `: the one reading that the design has is taken then.
#include "planning/validation.hh"

#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr char PATH_DOT = '.';

using PATH_COMPONENTS = std::vector<std::string>;

PATH_COMPONENTS split_path(const char *text) {
    PATH_COMPONENTS components(1);
    for (; *text != '\0'; ++text) {
        if (*text == PATH_DOT)
            components.emplace_back();
        else
            components.back() += *text;
    }
    return components;
}

/// The TAP is in the design already, so that its whole path can be looked for; else that of its parent.
bool path_holds_tap() {
    return !option(OPT_ADD_TAP);
}

bool is_in_design(PATH_COMPONENTS components) {
    if (!path_holds_tap())
        components.pop_back();
    return components.empty() || SDB_path_obj(components) >= 0;
}

/// All paths that the open design has for the text.
std::vector<PATH_COMPONENTS> readings_of_path(const char *text) {
    std::string searched = text;
    std::string new_tap;
    if (!path_holds_tap()) {
        size_t dot = searched.rfind(PATH_DOT);
        new_tap = searched.substr(dot + 1);
        searched.erase(dot);
    }
    std::vector<PATH_COMPONENTS> found;
    if (SDB_search_obj(SYM_lookup(sym_tab, searched.c_str())) >= 0)
        found.push_back({searched});
    constexpr int32_t object_kind = 1;
    for (int32_t row : PREFIX_readings(prefix_tab, searched, object_kind, PATH_DOT))
        found.push_back(PREFIX_components(prefix_tab, row));
    if (!path_holds_tap())
        for (PATH_COMPONENTS &path : found)
            path.push_back(new_tap);
    return found;
}

[[noreturn]] void fail_ambiguous(const std::vector<PATH_COMPONENTS> &paths) {
    vmr_printf("ERROR: (%s) TAP %%INSTANCE_NAME '%s' is ambiguous in SDB file '%s'.\n"
               "       Please write one of:\n",
               JTAG_BSC_FILE, TAP_INSTANCE_NAME, MODULE_C_SDB);
    for (const PATH_COMPONENTS &path : paths)
        vmr_printf("           %s\n", PREFIX_join_marked(path, PATH_DOT).c_str());
    vmr_fail("\n");
}

/// The path that the design has for TAP_INSTANCE_NAME, its dots as separators first.
PATH_COMPONENTS find_path() {
    PATH_COMPONENTS exact = split_path(TAP_INSTANCE_NAME);
    if (MODULE_C_SDB == nullptr || option(OPT_ADD_BCM))
        return exact;
    PATH_COMPONENTS path = exact;
    open_sdb_file(MODULE_C_SDB);
    if (!is_in_design(exact)) {
        std::vector<PATH_COMPONENTS> readings = readings_of_path(TAP_INSTANCE_NAME);
        PATH_COMPONENTS marked = PREFIX_split_marked(TAP_INSTANCE_NAME, PATH_DOT);
        if (readings.size() > 1)
            fail_ambiguous(readings);
        if (readings.size() == 1)
            path = readings.front();
        else if (is_in_design(marked))
            path = marked;
    }
    set_sdb_file_aside();
    return path;
}

} // namespace

int32_t find_tap_instance() {
    PATH_COMPONENTS path;
    for (const TAP_PATH_ROW &row : rows(rwv_hier_tap_ctrl_name_tabG))
        path.emplace_back(row.inst);
    int32_t obj = SDB_path_obj(path);
    return obj >= 0 ? obj : SDB_instance_obj(TAP_INSTANCE_NAME);
}

void rwv_check_hier_tap_ctrl_instance() {
    rwv_hier_tap_ctrlG = 0;
    rwv_hier_tap_ctrl_name_tabG = nullptr;
    org_tap_instance_nameG =
        TAP_INSTANCE_NAME; // the connection files name the TAP by the path as it was given
    if (TAP_INSTANCE_NAME == nullptr || std::strchr(TAP_INSTANCE_NAME, PATH_DOT) == nullptr)
        return;
    PATH_COMPONENTS path = find_path();
    for (const std::string &component : path)
        if (component.empty())
            vmr_fail("ERROR: (%s) TAP %%INSTANCE_NAME '%s' has an empty component.\n\n", JTAG_BSC_FILE,
                     TAP_INSTANCE_NAME);
    TAP_INSTANCE_NAME = keep_text(path.back());
    if (path.size() == 1)
        return;
    for (const std::string &component : path)
        append_row(rwv_hier_tap_ctrl_name_tabG, TAP_PATH_ROW{keep_text(component), nullptr});
    rwv_hier_tap_ctrlG = 1;
}
