// Bidirectional ports: which of the two sides live, and one cell for both or a cell for each.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The core nets of a port: `out` drives the pad, `in` is driven by it. Null for a side that does not live.
struct SIDES {
    const char *out = nullptr;
    const char *in = nullptr;
    int32_t in_node = -1; ///< node of the pad's output pin
};

void check_pad_is_complete(const OPIN_ROW &row) {
    const BUFFER_CELL *pad = row.pad;
    const char *missing = nullptr;
    if (pad->input == nullptr && pad->output == nullptr)
        missing = "%INPUT or %OUTPUT";
    else if (pad->en_l == nullptr && pad->en_h == nullptr)
        missing = "%EN_L or %EN_H";
    if (missing != nullptr)
        vmr_fail(
            "ERROR: (%s) can't find %s in %%BUFFER %s,\n       while tracing bidirectional port '%s'.\n\n",
            JTAG_LIB_FILE, missing, row.pad_class, row.port_name);
}

void warn_floating(const OPIN_ROW &row, const char *keyword, const char *pin, const char *cell) {
    vmr_printf("WARNING: (%s) %s %s of %%BUFFER %s which connects to\n"
               "         port '%s' is floating.\n"
               "         %s boundary scan cell won't be inserted on this port.\n\n",
               JTAG_LIB_FILE, keyword, pin, row.pad_class, row.port_name, cell);
}

SIDES find_sides(OPIN_ROW &row) {
    const BUFFER_CELL *pad = row.pad;
    SIDES sides;
    if (pad->input != nullptr) {
        sides.out = keep_text_or_null(verify_obj_pin_name(row.pad_obj, pad->input, SDB_INPUT));
        if (sides.out == nullptr)
            warn_floating(row, "%INPUT", pad->input, "Output");
        else
            row.pad_input = pad->input;
    }
    if (pad->output != nullptr && PIN_TABLE[row.pin_index]->bsc_kind != BSC_I_ONLY) {
        sides.in_node = pad_output_node(row);
        if (node_tab[sides.in_node].net < 0) {
            warn_floating(row, "%OUTPUT", pad->output, "Input");
        } else {
            sides.in = keep_text_or_null(SDB_net_name(sdb, node_tab[sides.in_node].net));
            row.pad_output = pad->output;
        }
    }
    return sides;
}

void trace_mux_pins(OPIN_ROW &row) {
    // The second multiplexer of a pad without a first one still serves an input side that stands alone.
    if (row.pad->mux_in2 != nullptr)
        trace_mux(row, PAD_MUX_2);
    if (!has_mux(row, PAD_MUX_1, "bidi"))
        return;
    trace_mux(row, PAD_MUX_1);
    has_mux(row, PAD_MUX_2, "bidi");
    if (row.pad->mux_out != nullptr)
        row.mux_out_net = search_inet_connected_to_obj(row.pad_obj, row.pad->mux_out, SDB_OUTPUT);
}

/// The cell that a role declares. Ends the run when it declares none; `keyword` is that of the message.
CHOSEN_CELL needed_cell(const OPIN_ROW &row, CELL_COUNTER role, const char *keyword) {
    const char *need = role == COUNT_BIDIR_MUX ? "BIDIR_MUX_SCAN" : keyword + 1;
    return required_cell(row, declared_cell(role), {keyword, need, "bidir"});
}

CHOSEN_CELL checked_builtin_cell(const OPIN_ROW &row) {
    checked_cell(builtin_cell_name(row), COUNT_BIDIR);
    return {builtin_cell(row), COUNT_BIDIR};
}

void take_one_sided_cell(OPIN_ROW &row, bool is_input) {
    bool is_mux = (is_input ? row.pad->mux_in2 : row.pad->mux_in1) != nullptr;
    if (!is_mux && is_bs_buffer(row.pad))
        take_cell(row, CELL_BIDIR, checked_builtin_cell(row));
    else if (is_input && is_mux)
        take_cell(row, CELL_MUX_INPUT, needed_cell(row, COUNT_INPUT_MUX, "%INPUT_MUX_SCAN"));
    else if (is_input)
        take_cell(row, CELL_INPUT, needed_cell(row, COUNT_INPUT, "%INPUT_SCAN"));
    else if (is_mux)
        take_cell(row, CELL_MUX_OUTPUT3, needed_cell(row, COUNT_OUTPUT_MUX, "%OUTPUT_MUX_SCAN"));
    else
        take_cell(row, CELL_OUTPUT3, needed_cell(row, COUNT_OUTPUT, "%OUTPUT_SCAN"));
}

void take_plain_cell(OPIN_ROW &row) {
    CHOSEN_CELL named = named_cell(row, COUNT_BIDIR);
    if (named.cell != nullptr)
        take_cell(row, CELL_BIDIR, named);
    else if (is_bs_buffer(row.pad))
        take_cell(row, CELL_BIDIR, checked_builtin_cell(row));
    else if (BIDIR_SCAN == nullptr && INPUT_SCAN != nullptr && OUTPUT_SCAN != nullptr)
        take_pair(row, CELL_INOUT, declared_cell(COUNT_OUTPUT), declared_cell(COUNT_INPUT));
    else
        take_cell(row, CELL_BIDIR, needed_cell(row, COUNT_BIDIR, "%BIDIR_SCAN"));
}

void take_mux_cell(OPIN_ROW &row) {
    bool two = row.pad->mux_in2 != nullptr;
    int32_t kind = two ? CELL_MUX2_BIDIR : CELL_MUX_BIDIR;
    CHOSEN_CELL named = named_cell(row, COUNT_BIDIR_MUX);
    CHOSEN_CELL input = declared_cell(two ? COUNT_INPUT_MUX : COUNT_INPUT);
    if (named.cell != nullptr)
        take_cell(row, kind, named);
    else if (BIDIR_MUX_SCAN == nullptr && OUTPUT_MUX_SCAN != nullptr && input.cell != nullptr)
        take_pair(row, two ? CELL_MUX2_INOUT : CELL_MUX_INOUT, declared_cell(COUNT_OUTPUT_MUX), input);
    else
        take_cell(row, kind, needed_cell(row, COUNT_BIDIR_MUX, "%BIDI_MUX_SCAN"));
}

void take_cell_of_sides(OPIN_ROW &row, const SIDES &sides) {
    if (sides.in != nullptr && sides.out != nullptr) {
        if (row.pad->mux_in1 != nullptr)
            take_mux_cell(row);
        else
            take_plain_cell(row);
    } else if (sides.in != nullptr || sides.out != nullptr) {
        take_one_sided_cell(row, sides.in != nullptr);
    }
}

} // namespace

void save_bidir_scan_tab(OPIN_ROW &row) {
    BUFFER_CELL *pad = row.pad;
    if (pad == nullptr) { // a pad will be added, with an input and an output cell
        take_pair(row, CELL_INOUT, needed_cell(row, COUNT_OUTPUT, "%OUTPUT_SCAN"),
                  declared_cell(COUNT_INPUT, COUNT_CLOCK));
        return;
    }
    if (pad->function == nullptr)
        pad->function = "inout";
    if (!has_function(pad, "inout"))
        vmr_fail("ERROR: bidir port '%s' doesn't connect to bidir pad.\n"
                 "       Please setup %%FUNCTION inout in %%BUFFER %s.\n\n",
                 row.port_name, row.pad_class);
    check_pad_is_complete(row);
    SIDES sides = find_sides(row);
    if (sides.out == nullptr && sides.in == nullptr)
        vmr_fail("ERROR: (%s) %%OUTPUT %s and %%INPUT %s in %%BUFFER %s\n"
                 "       are both floating.\n"
                 "       Can't insert boundary scan on port '%s'.\n\n",
                 JTAG_LIB_FILE, text_or_undefined(pad->output), text_or_undefined(pad->input), row.pad_class,
                 row.port_name);
    if (sides.out != nullptr && sides.in != nullptr)
        row.net_name = keep_format("%s,%s", sides.out, sides.in);
    else
        row.net_name = sides.out != nullptr ? sides.out : sides.in;
    if (is_merged(row, sides.in_node, true))
        sides.in = nullptr;
    trace_mux_pins(row);
    take_cell_of_sides(row, sides);
    bool enable_is_data =
        same_text_no_case(pad->en_l, pad->input) || same_text_no_case(pad->en_h, pad->input);
    if (sides.out != nullptr && !enable_is_data)
        save_enable_control(row);
}
