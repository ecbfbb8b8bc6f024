// The modules that hold the pads: which there are, how they stand in each other, and in which of them each
// port has its cell.
#include "planning/io_modules.hh"

#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/text.hh"

#include <string>
#include <unordered_map>

namespace {

/// The modules met so far.
struct IO_MODULES {
    int32_t reference_row = -1; // OPIN_TAB row that the next hierarchical pad is compared with
    std::unordered_map<std::string, int32_t> rows;   // of MULTI_IO_TAB, by parent, class and instance
    std::unordered_map<std::string, int32_t> copies; // rows of each class
};
IO_MODULES io_modules;

/// The row of a module below that of row `parent`, made when it is new.
///
/// The parent belongs to the key: two modules of one class may carry one instance name below different
/// parents, and their cells must not be mixed.
int32_t enter_module(int32_t parent, const char *class_name, const char *inst_name) {
    std::string key = std::to_string(parent) + '\0' + class_name + '\0' + inst_name;
    auto [known, is_new] = io_modules.rows.try_emplace(key, DYNA_count(MULTI_IO_TAB));
    if (is_new)
        append_row(
            MULTI_IO_TAB,
            MULTI_IO_ROW{class_name, inst_name, io_modules.copies[class_name]++, parent, {}, false, nullptr});
    return known->second;
}

/// Fills the hierarchy fields of a row from the parents of its cell's name, innermost first.
void take_parents(OPIN_ROW &row, int32_t prefix_row) {
    auto kept = [](const char *name) { return keep_text(text_or_undefined(name)); };
    row.pad_instance = kept(SDB_prefix_instance_name(sdb, prefix_row));
    for (int32_t up = prefix_tab[prefix_row].parent; up >= 0; up = prefix_tab[up].parent) {
        append_row(row.hier_classes, kept(SDB_prefix_class_name(sdb, up)));
        append_row(row.hier_instances, kept(SDB_prefix_instance_name(sdb, up)));
    }
}

bool in_same_module(const OPIN_ROW &a, const OPIN_ROW &b) {
    int32_t depth = DYNA_count(a.hier_classes);
    if (depth != DYNA_count(b.hier_classes))
        return false;
    for (int32_t i = 0; i < depth; ++i)
        if (!same_text(a.hier_classes[i], b.hier_classes[i]) ||
            !same_text(a.hier_instances[i], b.hier_instances[i]))
            return false;
    return true;
}

} // namespace

void get_hier_class_and_inst_name(OPIN_ROW &row, int32_t obj) {
    if (io_modules.reference_row < 0)
        io_modules.reference_row = static_cast<int32_t>(&row - OPIN_TAB);
    int32_t prefix_row = SDB_obj_prefix_row(sdb, obj);
    if (prefix_row < 0) {
        row.pad_instance = keep_text(text_or_undefined(SDB_obj_name(sdb, obj)));
        io_modules.reference_row = -1;
        return;
    }
    take_parents(row, prefix_row);
    if (!in_same_module(row, OPIN_TAB[io_modules.reference_row]))
        multi_io_module_flagG = 1;
    for (int32_t i = DYNA_count(row.hier_classes) - 1; i >= 0; --i)
        row.io_module = enter_module(row.io_module, row.hier_classes[i], row.hier_instances[i]);
}

void settle_io_modules() {
    int32_t first = first_row_with_cells();
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (row_gets_cells(row) && row.io_module != OPIN_TAB[first].io_module)
            multi_io_module_flagG = 1;
    if (multi_io_module_flagG == 0)
        for (OPIN_ROW &row : rows(OPIN_TAB))
            row.io_module = 0;
}

void forget_io_modules() {
    io_modules = {};
}
