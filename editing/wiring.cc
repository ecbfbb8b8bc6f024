#include "editing/wiring.hh"

#include "description/lookups.hh"
#include "editing/buffer_trees.hh"
#include "editing/cell_routines.hh"
#include "planning/port_pad.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// One signal to be wired: a control signal or an extra pin.
struct WIRED_SIGNAL {
    std::string prefix; ///< word in the names of its buffers
    BUFFER_TREE *tree;
    const char *tap_pin; ///< pin of the TAP without '-'; null when no declared cell needs the signal
    bool active_low;     ///< the TAP gives it inverted
};

/// What the cells of a signal hang on.
enum WIRE_FORM { WIRE_DIRECT, WIRE_TREE, WIRE_CHAIN };

// The trees stand in the file in one order, a cell's wires in another; the extra pins follow in both.
constexpr CONTROL_SIGNAL TREE_ORDER[SIGNAL_COUNT] = {SIG_BCLK, SIG_SHIFT, SIG_CLOCK, SIG_UPDATE, SIG_HIGHZ,
                                                     SIG_RST,  SIG_MODE1, SIG_MODE2, SIG_MODE3};
constexpr CONTROL_SIGNAL WIRE_ORDER[SIGNAL_COUNT] = {SIG_CLOCK, SIG_BCLK,  SIG_SHIFT, SIG_UPDATE, SIG_HIGHZ,
                                                     SIG_RST,   SIG_MODE1, SIG_MODE2, SIG_MODE3};

constexpr const char *TREE_RULE = "  -----------------------------------------------\n";
constexpr const char *EXTRA_RULE = "  -------------------------------------\n";

/// The pin of the TAP for the mode signals of mux pads is known even when no cell has the mode pin.
WIRED_SIGNAL control_signal(CONTROL_TREES &trees, CONTROL_SIGNAL signal) {
    const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
    if (signal == SIG_BCLK)
        return {info.prefix, &trees.signals[signal], BCELL_TCK, false};
    const char *field = TAP_CONTR->*info.tap_field;
    return {info.prefix, &trees.signals[signal], TAP_PIN[signal], is_active_low(field)};
}

WIRED_SIGNAL extra_signal(CONTROL_TREES &trees, int32_t position) {
    const char *field = position < DYNA_count(TAP_CONTR->extras) ? TAP_CONTR->extras[position] : nullptr;
    const char *pin = position < DYNA_count(TAP_EXTRA_PIN) ? TAP_EXTRA_PIN[position] : without_minus(field);
    return {format_text("extra%d", position + 1), &trees.extras[position], pin, is_active_low(field)};
}

/// A mode that a cell inside a pad wants and the TAP does not have: the user has been told, and the pins stay
/// open.
bool tap_lacks_mode(CONTROL_SIGNAL signal) {
    return (signal == SIG_MODE2 || signal == SIG_MODE3) && TAP_PIN[signal] == nullptr;
}

/// A signal without groups is wired directly, whatever the sizes of the other signals' groups.
WIRE_FORM wire_form(const BUFFER_TREE &tree) {
    if (tree.group == nullptr)
        return WIRE_DIRECT;
    if (option(OPT_DF_SPEED))
        return WIRE_CHAIN;
    return TAP_CONTR->group_size >= 1 ? WIRE_TREE : WIRE_DIRECT;
}

std::string inverter_name(const WIRED_SIGNAL &signal) {
    return signal.prefix + "_inv_buf";
}

const BUFFER_CELL *inverting_buffer(const WIRED_SIGNAL &signal) {
    const BUFFER_CELL *buffer = get_buffer(TAP_CONTR->inv_buffer);
    if (buffer == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INV_BUFFER in %%TAP_CONTROLLER\n"
                 "       to bring the active low signal '%s' to the boundary cells.\n\n",
                 JTAG_LIB_FILE == nullptr ? "" : JTAG_LIB_FILE, signal.tap_pin);
    return buffer;
}

/// A cell pin can't be joined to an inverted pin, so an active-low signal gets one inverter for all its
/// cells.
void add_signal_inverter(EDIT_FILE *fp, const WIRED_SIGNAL &signal) {
    const BUFFER_CELL *buffer = inverting_buffer(signal);
    std::string name = inverter_name(signal);
    edit_add_instance(fp, name, TAP_CONTR->inv_buffer);
    edit_connect(fp, pin_of(name, buffer->input), tap_signal(fp, signal.tap_pin));
}

/// Each level of an inverting tree turns the signal over, and in a chain each buffer does.
void warn_of_polarity(const WIRED_SIGNAL &signal, WIRE_FORM form) {
    if (!signal.active_low)
        return;
    int32_t groups = DYNA_count(signal.tree->group);
    if (form == WIRE_TREE && signal.tree->level % 2 == 0)
        vmr_printf(
            "WARNING: the buffer tree of active low signal '%s' has %d inverting levels, an even number:\n"
            "         the boundary cells get the signal in the wrong polarity.\n"
            "         Please change %%GROUP_SIZE for a tree of an odd depth, or use an active high pin.\n\n",
            signal.tap_pin, signal.tree->level);
    if (form == WIRE_CHAIN && groups > 1)
        vmr_printf("WARNING: the chain of active low signal '%s' has %d inverting buffers in a row:\n"
                   "         every second group of boundary cells gets the signal in the wrong polarity.\n"
                   "         Please enlarge the group size to %d, or use an active high pin.\n\n",
                   signal.tap_pin, groups, signal.tree->need);
}

void build_tree(EDIT_FILE *fp, const WIRED_SIGNAL &signal) {
    BUFFER_TREE &tree = *signal.tree;
    auto build = option(OPT_DF_SPEED) ? build_dfspeed_buffer_balance_tree : build_buffer_balance_tree;
    tree.level = build(fp, tree.group, signal.tap_pin, signal.prefix.c_str(), tree.buffer);
    WIRE_FORM form = wire_form(tree);
    if (form != WIRE_DIRECT)
        warn_of_polarity(signal, form);
    else if (signal.active_low && tree.need > 0)
        add_signal_inverter(fp, signal);
}

void report_leaves(const BUFFER_TREE &tree) {
    report_buffer_line(keep_format("     Level %d: %3d buffers    drive %3d scan cells\n", tree.level + 1,
                                   DYNA_count(tree.group), tree.need));
}

/// The operand that feeds the next cell of the signal; counts the cell where groups are counted.
EDIT_OPERAND next_source(const EDIT_FILE *fp, const WIRED_SIGNAL &signal) {
    BUFFER_TREE &tree = *signal.tree;
    WIRE_FORM form = wire_form(tree);
    if (signal.tap_pin == nullptr)
        vmr_fail("ERROR: (%s) %%TAP_CONTROLLER has no pin for the %s signal of the boundary cells.\n\n",
                 JTAG_LIB_FILE == nullptr ? "" : JTAG_LIB_FILE, signal.prefix.c_str());
    if (form == WIRE_DIRECT)
        return signal.active_low ? pin_of(inverter_name(signal), inverting_buffer(signal)->output)
                                 : tap_signal(fp, signal.tap_pin);
    int32_t number = tree.index + 1;
    tree.cnt++;
    if (tree.index < DYNA_count(tree.group) && tree.cnt == tree.group[tree.index]) {
        tree.index++;
        tree.cnt = 0;
    }
    std::string buffer = form == WIRE_CHAIN ? chain_buffer_name(signal.prefix.c_str(), number)
                                            : tree_buffer_name(signal.prefix.c_str(), tree.level, number);
    return pin_of(buffer, tree.buffer->output);
}

/// The mode pins of a mux pad hang on the signals of the cells. A pin on a working net is left as it is.
void connect_pad_modes(EDIT_FILE *fp, CONTROL_TREES &trees, const OPIN_ROW &row) {
    for (int32_t i = 0; i < 3; i++) {
        if (!mode_hangs_on_tap(row, i))
            continue;
        free_pad_mode(fp, row, i);
        edit_connect(fp, pin_of(row.pad_instance, row.pad->*PAD_MODES[i]),
                     next_source(fp, control_signal(trees, MODE_SIGNALS[i])));
    }
}

/// One end of the chain, where it meets the TAP or leaves the module.
void connect_chain_end(EDIT_FILE *fp, const char *inst, const char *pin, const char *tap_pin,
                       const char *port) {
    edit_connect(fp, pin_of(inst, pin), fp->tap != nullptr ? pin_of(fp->tap, tap_pin) : port_net(port));
}

} // namespace

void build_control_trees(EDIT_FILE *fp, CONTROL_TREES &trees, bool with_report) {
    for (CONTROL_SIGNAL id : TREE_ORDER) {
        WIRED_SIGNAL signal = control_signal(trees, id);
        if (signal.tap_pin == nullptr || (id == SIG_BCLK && !option(OPT_SYNCH)))
            continue;
        build_tree(fp, signal);
        if (!with_report || signal.tree->level == 0 || DYNA_count(signal.tree->group) == 0)
            continue;
        bool is_clock = id == SIG_CLOCK || id == SIG_BCLK;
        if (!is_clock || !option(OPT_DF_SPEED))
            report_leaves(*signal.tree);
        report_buffer_line(TREE_RULE);
    }
    for (int32_t i = 0; i < DYNA_count(trees.extras); i++) {
        WIRED_SIGNAL signal = extra_signal(trees, i);
        if (signal.tree->need == 0)
            continue;
        build_tree(fp, signal);
        if (!with_report || wire_form(*signal.tree) == WIRE_DIRECT)
            continue;
        report_leaves(*signal.tree);
        report_buffer_line(EXTRA_RULE);
    }
}

void connect_control_signal(EDIT_FILE *fp, CONTROL_TREES &trees, int32_t index) {
    const SCAN_ROW &row = SCAN_TAB[index];
    for (CONTROL_SIGNAL id : WIRE_ORDER) {
        const char *pin = row.pins[id];
        if (pin == nullptr || (id == SIG_BCLK && !option(OPT_SYNCH)) || tap_lacks_mode(id))
            continue;
        edit_connect(fp, pin_of(row.inst, pin), next_source(fp, control_signal(trees, id)));
    }
    for (int32_t i = 0; i < DYNA_count(row.extra_pins); i++)
        if (row.extra_pins[i] != nullptr)
            edit_connect(fp, pin_of(row.inst, row.extra_pins[i]), next_source(fp, extra_signal(trees, i)));
    if (row.mux_pad != nullptr)
        connect_pad_modes(fp, trees, *row.mux_pad);
}

void connect_scan_cell_in_cmd(EDIT_FILE *fp) {
    CONTROL_TREES &trees = MULTI_IO_TAB[0].trees;
    build_control_trees(fp, trees, true);
    int32_t last = DYNA_count(SCAN_TAB) - 1;
    connect_chain_end(fp, SCAN_TAB[0].inst, SCAN_TAB[0].tdo_pin, TAP_CONTR->last_bcell, "chain_out");
    for (int32_t i = 0; i < last; i++) {
        connect_control_signal(fp, trees, i);
        edit_connect(fp, pin_of(SCAN_TAB[i].inst, SCAN_TAB[i].tdi_pin),
                     pin_of(SCAN_TAB[i + 1].inst, SCAN_TAB[i + 1].tdo_pin));
    }
    connect_control_signal(fp, trees, last);
    connect_chain_end(fp, SCAN_TAB[last].inst, SCAN_TAB[last].tdi_pin, TAP_CONTR->first_bcell, "chain_in");
    edit_end_file(fp);
}
