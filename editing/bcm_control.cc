// Control cells in <top>_BCM. Rows on one enable share a cell as in the other flows; who shares it reaches it
// through its port.
#include "editing/bcm_cells.hh"

#include "description/lookups.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <map>

namespace {

/// The blanks in the `connect` lines of a cell.
constexpr EDIT_BLANKS BLANKS[CONTROL_KIND_COUNT] = {EDIT_PLAIN, EDIT_WIDE_SECOND};

/// The cells in <top>_BCM by their row of a control table.
std::map<const CONTROL_ROW *, std::string> bcm_controls;

bool ties_oe_mode(const OPIN_ROW &row, CONTROL_KIND_ID kind) {
    return kind == CONTROL_OE && row.scan_cell->oe_mode_type != 0;
}

void make_cell(EDIT_FILE *fp, int32_t index, const char *enable, CONTROL_KIND_ID kind, CONTROL_ROW &entry) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = entry.scan_cell;
    const char *name = add_scan_tab(cell, index, false, true);
    SCAN_COUNT[CONTROL_KINDS[kind].counter]++;
    std::string data_cell = last_bcm_cell();
    std::string control = next_bcm_cell();
    EDIT_OPERAND data_in = bcm_port(control, "IN");
    // The first other node of the net is the source, a reader too: it is on the same net.
    EDIT_OPERAND source = enable_source(row, enable, true);
    cut_pin(fp, row.pad_instance, enable, data_in);
    edit_connect(fp, data_in, source, BLANKS[kind]);
    edit_connect(fp, bcm_port(control, "OUT"), pin_of(row.pad_instance, enable), BLANKS[kind]);
    if (ties_oe_mode(row, kind) && cell->oe_mode_type != 2)
        edit_connect(fp, bcm_port(control, "OUT"), bcm_port(data_cell, "OE"), EDIT_WIDE_SECOND);
    entry.inst = kind == CONTROL_OE ? keep_text(control) : name;
    entry.data_out = cell->data_out;
    bcm_controls[&entry] = control;
    count_bcm_cell();
}

void share_cell(EDIT_FILE *fp, const OPIN_ROW &row, const char *enable, CONTROL_KIND_ID kind,
                const CONTROL_ROW &entry) {
    auto known = bcm_controls.find(&entry);
    if (known == bcm_controls.end()) {
        cut_pin(fp, row.pad_instance, enable, pin_of(entry.inst, entry.scan_cell->data_in));
        edit_connect(fp, pin_of(entry.inst, entry.data_out), pin_of(row.pad_instance, enable));
        return;
    }
    const std::string &control = known->second;
    cut_pin(fp, row.pad_instance, enable, bcm_port(control, "IN"));
    edit_connect(fp, bcm_port(control, "OUT"), pin_of(row.pad_instance, enable));
    if (ties_oe_mode(row, kind))
        edit_connect(fp, bcm_port(control, "OUT"), bcm_port(last_bcm_cell(), "OE"));
}

/// The enable pin of the row's pad that gets a control cell: %EN_L, else %EN_H; null for none. Warns when the
/// pin list chooses the other one.
const char *bcm_enable(const OPIN_ROW &row) {
    const char *enable = row.pad->en_l != nullptr ? row.pad->en_l : row.pad->en_h;
    const char *chosen = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], nullptr);
    if (chosen != nullptr && !same_text(enable, chosen))
        vmr_printf("WARNING: the pin list chooses enable '%s' of pad '%s' of port '%s'.\n"
                   "         Option -add_bcm drives its enable '%s' all the same.\n"
                   "         Please use a pad cell with one enable.\n\n",
                   chosen, row.pad_instance, row.port_name, enable);
    return enable;
}

void drive_enable(EDIT_FILE *fp, int32_t index, CONTROL_KIND_ID kind) {
    OPIN_ROW &row = OPIN_TAB[index];
    int32_t control = row.*CONTROL_KINDS[kind].field;
    if (control == 0 || row.pad == nullptr)
        return;
    const char *enable = bcm_enable(row);
    if (control < 0) {
        drive_by_highz(fp, row, enable);
        return;
    }
    CONTROL_ROW &entry = (*CONTROL_KINDS[kind].table)[control - 1];
    if (entry.inst == nullptr)
        make_cell(fp, index, enable, kind, entry);
    else
        share_cell(fp, row, enable, kind, entry);
}

} // namespace

void make_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    const OPIN_ROW &row = OPIN_TAB[index];
    // A cell inside the pad holds the enable itself.
    if (row.pad == nullptr || row.pad->control_bcell != nullptr)
        return;
    if (!leaves_shared_enable(row))
        drive_enable(fp, index, CONTROL_PLAIN);
}

void make_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    drive_enable(fp, index, CONTROL_OE);
}

void add_control_beside_bcm(EDIT_FILE *fp, int32_t index, const char *name, bool may_be_oe) {
    const OPIN_ROW &row = OPIN_TAB[index];
    bool is_oe = may_be_oe && row.scan_cell->oe_mode != nullptr;
    CONTROL_KIND_ID kind = is_oe ? CONTROL_OE : CONTROL_PLAIN;
    int32_t control = row.*CONTROL_KINDS[kind].field;
    if (control > 0 && bcm_controls.contains(&(*CONTROL_KINDS[kind].table)[control - 1]))
        drive_enable(fp, index, kind);
    else if (is_oe)
        add_oe_control_scan_cell_in_cmd(fp, index, name);
    else
        add_control_scan_cell_in_cmd(fp, index);
}
