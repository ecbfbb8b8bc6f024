// The cells and buffers that drive the enables of pads.
//
// Rows on one enable net share a control cell; the first of them in the chain adds it. Enables that the
// design ties to a constant, or that need no cell, may hang on the TAP's high-impedance command through a
// buffer that several pads share in the same way.
#include "description/lookups.hh"
#include "editing/cell_routines.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// Bits of a net's flag word that mark a net driven by a supply.
constexpr int32_t SUPPLY_NET_BITS = 0x30000000;

[[noreturn]] void fail_no_source(const OPIN_ROW &row) {
    vmr_fail("ERROR: Can not find the source of enable pin '%s' to connect to BCELL.\n", row.port_name);
}

bool reads_its_net(int32_t node) {
    return !is_port_node(node) && (pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK) == SDB_INPUT;
}

/// The buffer's cell, which planning has made sure of. Ends the run when the generated TAP has no such
/// command.
const BUFFER_CELL *highz_buffer(const OPIN_ROW &row) {
    bool has_instruction = std::ranges::any_of(rows(INSTRUCTIONS), [](const INSTRUCTION &instruction) {
        return same_text_no_case(instruction.name, "HIGHZ");
    });
    if (option(OPT_ADD_TAP) && !has_instruction && check_hiz_signal() == 0)
        vmr_fail("ERROR: (%s) pad '%s' needs the high impedance command of the TAP,\n"
                 "       which the TAP has only with an instruction HIGHZ in %%INSTRUCTION_TABLE.\n\n",
                 JTAG_BSC_FILE == nullptr ? "" : JTAG_BSC_FILE, row.pad_instance);
    return HIZ_BUF;
}

} // namespace

EDIT_OPERAND enable_source(const OPIN_ROW &row, const char *enable, bool is_oe) {
    int32_t node = far_end(row.pad_instance, enable, SDB_INPUT);
    if (node < 0)
        fail_no_source(row);
    if (is_oe || is_constant_net(node))
        return node_operand(node);
    int32_t net = node_tab[node].net;
    if ((net_tab[net].flags & SUPPLY_NET_BITS) != 0)
        return design_net(net);
    int32_t obj = SDB_instance_obj(row.pad_instance);
    while (node >= 0 && (node_tab[node].obj == obj || reads_its_net(node)))
        node = node_tab[node].next;
    // Readers alone drive nothing.
    if (node < 0)
        fail_no_source(row);
    return node_operand(node);
}

bool leaves_shared_enable(const OPIN_ROW &row) {
    if (!is_differential(row.pad) || row.control_driver != 0)
        return false;
    // The register would seem to hold the pad, which follows the core.
    if (row.control > 0)
        vmr_printf("WARNING: the enable of differential pad '%s' is shared with another pad:\n"
                   "         it won't be connected to the control scan cell.\n"
                   "         Please use option -dont_share_control, or an enable net of its own.\n\n",
                   row.pad_instance);
    else if (row.control < 0)
        vmr_printf("WARNING: the enable of differential pad '%s' won't be connected\n"
                   "         to the high impedance command of the TAP.\n\n",
                   row.pad_instance);
    return true;
}

std::string highz_buffer_name(int32_t group) {
    return format_text("highz_buf%d", group);
}

void drive_by_highz(EDIT_FILE *fp, OPIN_ROW &row, const char *enable) {
    const BUFFER_CELL *buffer = highz_buffer(row);
    std::string name = highz_buffer_name(row.highz_group);
    EDIT_OPERAND output = pin_of(name, buffer->output);
    // The row marked as the driver is the first; should it have written nothing, the next one adds the
    // buffer.
    bool is_new = emission.highz_buffers.insert({current_multi_io_indexG, row.highz_group}).second;
    if (is_new)
        edit_add_instance(fp, name, HIZ_BUF_NAME);
    cut_pin(fp, row.pad_instance, enable, output);
    edit_connect(fp, output, pin_of(row.pad_instance, enable));
    // With pads in several modules, a module below the top has no port for the signal yet: the wiring step
    // adds it and joins the buffer.
    if (is_new && current_multi_io_indexG <= 0)
        edit_connect(fp, pin_of(name, buffer->input), tap_signal(fp, TAP_HIZ_PIN));
}

namespace {

/// Ties the %OE_MODE pins of the control cell and of the row's cell together.
void tie_oe_mode(EDIT_FILE *fp, const OPIN_ROW &row, const char *enable, const char *control,
                 const char *control_pin, const char *name) {
    const char *own = row.scan_cell->oe_mode;
    if (row.scan_cell->oe_mode_type == 0 || control_pin == nullptr || enable == nullptr || own == nullptr ||
        same_text(enable, own))
        return;
    edit_connect(fp, pin_of(control, control_pin), pin_of(name, own));
}

void add_control_cell(EDIT_FILE *fp, int32_t index, const char *enable, CONTROL_KIND_ID kind,
                      CONTROL_ROW &entry, const char *own_name) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = entry.scan_cell;
    const char *name = add_scan_tab(cell, index, false, true);
    SCAN_COUNT[CONTROL_KINDS[kind].counter]++;
    edit_add_instance(fp, name, cell->name);
    EDIT_OPERAND data_in = pin_of(name, cell->data_in);
    EDIT_OPERAND source = enable_source(row, enable, kind == CONTROL_OE);
    cut_pin(fp, row.pad_instance, enable, data_in);
    edit_connect(fp, data_in, source);
    edit_connect(fp, pin_of(name, cell->data_out), pin_of(row.pad_instance, enable));
    if (kind == CONTROL_OE && cell->oe_mode_type != 2)
        tie_oe_mode(fp, row, enable, name, cell->oe_mode, own_name);
    entry.inst = name;
    entry.data_out = cell->data_out;
}

void drive_enable(EDIT_FILE *fp, int32_t index, CONTROL_KIND_ID kind, const char *own_name) {
    OPIN_ROW &row = OPIN_TAB[index];
    int32_t control = row.*CONTROL_KINDS[kind].field;
    if (control == 0 || row.pad == nullptr)
        return;
    bool is_low;
    const char *enable = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], &is_low);
    if (control < 0) {
        drive_by_highz(fp, row, enable);
        return;
    }
    CONTROL_ROW &entry = (*CONTROL_KINDS[kind].table)[control - 1];
    if (entry.inst == nullptr) {
        add_control_cell(fp, index, enable, kind, entry, own_name);
        return;
    }
    // The net of the enable, should others still hang on it, is reached through the control cell's own input.
    cut_pin(fp, row.pad_instance, enable, pin_of(entry.inst, entry.scan_cell->data_in));
    edit_connect(fp, pin_of(entry.inst, entry.data_out), pin_of(row.pad_instance, enable));
    if (kind == CONTROL_OE)
        tie_oe_mode(fp, row, enable, entry.inst, entry.scan_cell->oe_mode, own_name);
}

} // namespace

void add_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    const OPIN_ROW &row = OPIN_TAB[index];
    if (row.pad == nullptr || row.pad->control_bcell != nullptr)
        return;
    if (!leaves_shared_enable(row))
        drive_enable(fp, index, CONTROL_PLAIN, nullptr);
}

void add_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index, const char *name) {
    drive_enable(fp, index, CONTROL_OE, name);
}
