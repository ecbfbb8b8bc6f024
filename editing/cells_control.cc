// The cells and buffers that drive the enables of pads.
//
// Rows on one enable net share a control cell; the first of them in the chain adds it. Enables that the
// design ties to a constant, or that need no cell, may hang on the TAP's high-impedance command through a
// buffer that several pads share in the same way.
#include "description/lookups.hh"
#include "editing/bcm_cells.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

std::string highz_buffer_name(int32_t group) {
    return format_text("highz_buf%d", group);
}

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

/// What drives the enable pin in the design: with `first_node` the first other node of the net, else the
/// first that does not just read it. Ends the run when nothing does.
EDIT_OPERAND enable_source(const EDIT_FILE *fp, const OPIN_ROW &row, const char *enable, bool first_node) {
    int32_t node = far_end(fp, row.pad_instance, enable, SDB_INPUT);
    if (node < 0)
        fail_no_source(row);
    if (first_node || is_constant_net(node))
        return node_operand(fp, node);
    int32_t net = node_tab[node].net;
    if ((net_tab[net].flags & SUPPLY_NET_BITS) != 0)
        return design_net(net);
    int32_t obj = SDB_instance_obj(row.pad_instance);
    while (node >= 0 && (node_tab[node].obj == obj || reads_its_net(node)))
        node = node_tab[node].next;
    // Readers alone drive nothing.
    if (node < 0)
        fail_no_source(row);
    return node_operand(fp, node);
}

/// True for a differential pad that is not the first on its enable: its enable stays as it is. The user is
/// told.
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

/// The enable hangs on the high-impedance command, through the buffer of the row's group.
void drive_by_highz(EDIT_FILE *fp, const OPIN_ROW &row, const char *enable) {
    const BUFFER_CELL *buffer = highz_buffer(row);
    std::string name = highz_buffer_name(row.highz_group);
    EDIT_OPERAND output = pin_of(name, buffer->output);
    // The row marked as the driver is the first; should it have written nothing, the next one adds the
    // buffer.
    bool is_new = fp->highz_buffers.insert(row.highz_group).second;
    if (is_new)
        edit_add_instance(fp, name, HIZ_BUF_NAME);
    cut_pin(fp, row.pad_instance, enable, output);
    edit_connect(fp, output, pin_of(row.pad_instance, enable));
    // With pads in several modules, a module below the top has no port for the signal yet: the wiring step
    // adds it and joins the buffer.
    if (is_new && row.io_module == 0)
        edit_connect(fp, pin_of(name, buffer->input), tap_signal(fp, TAP_HIZ_PIN));
}

/// Ties the %OE_MODE pins of the control cell and of the row's cell together. In <top>_BCM that is the last
/// one that was counted.
void tie_oe_mode(EDIT_FILE *fp, const OPIN_ROW &row, const char *enable, const PLACED_CELL &control,
                 const std::string &bcm_cell) {
    const char *own = row.scan_cell->oe_mode;
    const char *control_pin = control.cell->oe_mode;
    if (row.scan_cell->oe_mode_type == 0)
        return;
    if (!control.bcm.empty())
        join(fp, control, PIN_DATA_OUT, bcm_port(bcm_cell, "OE"));
    else if (!lives_in_bcm(row) && control_pin != nullptr && enable != nullptr && own != nullptr &&
             !same_text(enable, own))
        edit_connect(fp, pin_of(control.name, control_pin), pin_of(SCAN_TAB[row.chain_place].inst, own));
}

void add_control_cell(EDIT_FILE *fp, OPIN_ROW &row, const char *enable, CONTROL_KIND_ID kind,
                      CONTROL_ROW &entry) {
    bool in_bcm = lives_in_bcm(row);
    bool is_oe = kind == CONTROL_OE;
    std::string data_cell = last_bcm_cell();
    EDIT_BLANKS blanks = in_bcm && is_oe ? EDIT_WIDE_SECOND : EDIT_PLAIN;
    PLACED_CELL control = {entry.scan_cell, add_scan_tab(entry.scan_cell, row, false, true),
                           in_bcm ? next_bcm_cell() : "", blanks, blanks};
    SCAN_COUNT[CONTROL_KINDS[kind].counter]++;
    if (!in_bcm)
        edit_add_instance(fp, control.name, control.cell->name);
    EDIT_OPERAND source = enable_source(fp, row, enable, in_bcm || is_oe);
    cut_pin(fp, row.pad_instance, enable, cell_pin(control, PIN_DATA_IN));
    join(fp, control, PIN_DATA_IN, source);
    join(fp, control, PIN_DATA_OUT, pin_of(row.pad_instance, enable));
    if (is_oe && control.cell->oe_mode_type != 2)
        tie_oe_mode(fp, row, enable, control, data_cell);
    entry.inst = in_bcm && is_oe ? keep_text(control.bcm) : control.name;
    entry.data_out = control.cell->data_out;
    bcm_control(entry) = control.bcm;
    count_bcm_cell(control, true);
}

void drive_enable(EDIT_FILE *fp, OPIN_ROW &row, CONTROL_KIND_ID kind) {
    int32_t number = row.*CONTROL_KINDS[kind].field;
    if (number == 0 || row.pad == nullptr)
        return;
    CONTROL_ROW *entry = number > 0 ? &(*CONTROL_KINDS[kind].table)[number - 1] : nullptr;
    std::string bcm = entry != nullptr ? bcm_control(*entry) : "";
    const char *enable = lives_in_bcm(row) || !bcm.empty()
                             ? bcm_enable(row)
                             : chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], nullptr);
    if (entry == nullptr) {
        drive_by_highz(fp, row, enable);
        return;
    }
    if (entry->inst == nullptr) {
        add_control_cell(fp, row, enable, kind, *entry);
        return;
    }
    // The net of the enable, should others still hang on it, is reached through the control cell's own input.
    PLACED_CELL control = {entry->scan_cell, entry->inst, bcm};
    cut_pin(fp, row.pad_instance, enable, cell_pin(control, PIN_DATA_IN));
    join(fp, control, PIN_DATA_OUT, pin_of(row.pad_instance, enable));
    if (kind == CONTROL_OE)
        tie_oe_mode(fp, row, enable, control, last_bcm_cell());
}

} // namespace

void add_control_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    if (row.pad == nullptr || row.pad->control_bcell != nullptr)
        return;
    if (!leaves_shared_enable(row))
        drive_enable(fp, row, CONTROL_PLAIN);
}

void add_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    drive_enable(fp, row, CONTROL_OE);
}
