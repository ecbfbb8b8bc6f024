// The life of the planning tables: empty at the start of a run, released at its end.
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

void release_trees(CONTROL_TREES &trees) {
    for (BUFFER_TREE &tree : trees.signals)
        release(tree.group);
    for (BUFFER_TREE &tree : rows(trees.extras))
        release(tree.group);
    release(trees.extras);
}

} // namespace

void free_planning_tables() {
    for (OPIN_ROW &row : rows(OPIN_TAB)) {
        release(row.hier_classes);
        release(row.hier_instances);
    }
    for (SCAN_ROW &row : rows(SCAN_TAB))
        release(row.extra_pins);
    release(OPIN_TAB);
    release(CONTROL_TAB);
    release(CONTROL_OE_TAB);
    release(SCAN_TAB);
    release(BUFFER_REPORT);
    release(TAP_FLAG.extras);
    for (STANDARD_PORT_STATE &port : TAP_PORT)
        port.row = nullptr;
    for (MULTI_IO_ROW &row : rows(MULTI_IO_TAB))
        release_trees(row.trees);
    release(MULTI_IO_TAB);
    forget_control_sharing();
    forget_io_modules();
}

void rimweave_init() {
    free_planning_tables();
    MULTI_IO_ROW top = {};
    top.class_name = top.inst_name = TOP_MODULE;
    top.parent = -1;
    append_row(MULTI_IO_TAB, top);
    std::fill(std::begin(SCAN_COUNT), std::end(SCAN_COUNT), 0);
    HIGHZ_CNT = 0;
    TAP_FLAG = NO_TAP_NETS;
    multi_io_module_flagG = 0;
}
