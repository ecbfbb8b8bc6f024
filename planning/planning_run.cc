// The life of the planning tables: made empty at the start of a run, released at its end.
#include "planning/planning.hh"

#include "planning/io_modules.hh"
#include "planning/tap_state.hh"
#include "support/run_state.hh"

#include <algorithm>

namespace {

template <class T> void release(T *&tab) {
    DYNA_free(&tab);
    tab = nullptr;
}

/// A fresh empty table in place of whatever the handle held.
template <class T> void renew(T *&tab) {
    release(tab);
    tab = DYNA_init<T>();
}

void release_node(MULTI_IO_NODE &node) {
    for (MULTI_IO_NODE &child : rows(node.children))
        release_node(child);
    release(node.children);
}

void release_tree(BUFFER_TREE &tree) {
    release(tree.group);
    tree = {};
}

void release_rows() {
    for (OPIN_ROW &row : rows(OPIN_TAB)) {
        release(row.hier_classes);
        release(row.hier_instances);
    }
    for (SCAN_ROW &row : rows(SCAN_TAB))
        release(row.extra_pins);
    for (BUFFER_TREE &tree : rows(EXTRA_TREES))
        release(tree.group);
    for (BUFFER_TREE &tree : TREES)
        release_tree(tree);
}

} // namespace

void rimweave_init() {
    release_rows();
    renew(BUFFER_REPORT);
    renew(EXTRA_TREES);
    renew(OPIN_TAB);
    renew(CONTROL_TAB);
    renew(CONTROL_OE_TAB);
    renew(SCAN_TAB);
    std::fill(std::begin(SCAN_COUNT), std::end(SCAN_COUNT), 0);
    HIGHZ_CNT = 0;

    std::fill(std::begin(TAP_FLAG.control), std::end(TAP_FLAG.control), -1);
    TAP_FLAG.first_bcell = TAP_FLAG.last_bcell = TAP_FLAG.hiz = TAP_FLAG.tdo = TAP_FLAG.tdo_en = -1;
    renew(TAP_FLAG.extras);
    multi_io_module_flagG = 0;
    current_multi_io_indexG = -1;
    forget_control_sharing();
    forget_io_modules();
}

void init_multi_io_tables() {
    MULTI_IO_ROW top = {};
    top.class_name = top.inst_name = TOP_MODULE;
    top.parent = -1;
    top.added_conns = DYNA_init<ADDED_CONN>();
    MULTI_IO_TAB = nullptr;
    append_row(MULTI_IO_TAB, top);
    MULTI_IO_HIER = {0, nullptr};
}

void free_planning_tables() {
    release_rows();
    release(OPIN_TAB);
    release(CONTROL_TAB);
    release(CONTROL_OE_TAB);
    release(SCAN_TAB);
    release(BUFFER_REPORT);
    release(EXTRA_TREES);
    release(TAP_FLAG.extras);
    for (MULTI_IO_ROW &row : rows(MULTI_IO_TAB)) {
        release(row.added_ports);
        release(row.added_conns);
    }
    release(MULTI_IO_TAB);
    release_node(MULTI_IO_HIER);
    for (STANDARD_PORT_STATE &port : TAP_PORT)
        port.row = nullptr;
    forget_control_sharing();
    forget_io_modules();
}
