// Bidirectional ports: which of the two sides live, and one cell for both or a cell for each.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <strings.h>

namespace {

constexpr MUX_PIN_PAIR BIDIR_MUX_1 = {"%MODE_1", "%MUX_IN1", "mux bidi pad", "Mux bidi pad"};
constexpr MUX_PIN_PAIR BIDIR_MUX_2 = {"%MODE_2", "%MUX_IN2", "mux bidi pad", "Mux bidi pad"};

/// The core nets of a port: `out` drives the pad, `in` is driven by it. Null for a side that does not live.
struct SIDES {
    const char *out = nullptr;
    const char *in = nullptr;
    int32_t in_node = -1; ///< node of the pad's output pin
};

void check_pad_is_complete(const OPIN_ROW &row, const BUFFER_CELL *pad) {
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

SIDES find_sides(OPIN_ROW &row, const BUFFER_CELL *pad) {
    SIDES sides;
    if (pad->input != nullptr) {
        sides.out = keep_text_or_null(verify_obj_pin_name(row.pad_obj, pad->input, DIR_INPUT));
        if (sides.out == nullptr)
            warn_floating(row, "%INPUT", pad->input, "Output");
        else
            row.pad_input = pad->input;
    }
    if (pad->output != nullptr && PIN_TABLE[row.pin_index]->bsc_kind != BSC_I_ONLY) {
        sides.in_node = search_inode_connected_to_obj(row.pad_obj, pad->output, DIR_OUTPUT);
        if (sides.in_node < 0)
            vmr_fail("ERROR: (%s) %%OUTPUT %s specified in %%BUFFER %s\n"
                     "       can't be found in file '%s' while tracing port '%s'.\n\n",
                     JTAG_LIB_FILE, pad->output, row.pad_class, MODULE_C_SDB, row.port_name);
        if (node_tab[sides.in_node].net < 0) {
            warn_floating(row, "%OUTPUT", pad->output, "Input");
        } else {
            sides.in = keep_text_or_null(SDB_net_name(sdb, node_tab[sides.in_node].net));
            row.pad_output = pad->output;
        }
    }
    return sides;
}

/// True, with a warning, when the pad's input side runs straight to another port, whose cell then serves
/// both.
bool is_input_side_merged(const OPIN_ROW &row, int32_t in_node) {
    int32_t adjacent = find_adjacent_node(in_node);
    if (adjacent < 0)
        return false;
    const char *side = "input port", *far = "output port";
    if (!is_port_node(adjacent)) {
        int32_t obj = node_tab[adjacent].obj;
        const BUFFER_CELL *buffer = get_buffer(object_class_name(obj));
        if (buffer == nullptr)
            return false;
        bool is_inout = buffer->function != nullptr && strcasecmp(buffer->function, "inout") == 0;
        adjacent =
            find_adjacent_node(is_inout ? search_inode_connected_to_obj(obj, buffer->inout, DIR_BIDIR)
                                        : search_inode_connected_to_obj(obj, buffer->output, DIR_OUTPUT));
        if (adjacent < 0 || !is_port_node(adjacent))
            return false;
        side = "input end of bidir port";
        far = "port";
    }
    vmr_printf("WARNING: %s '%s' connects to %s '%s' directly.\n"
               "         A merged cell will be introduced.\n\n",
               side, row.port_name, far, node_pin_name(adjacent));
    return true;
}

void trace_mux_pins(OPIN_ROW &row, const BUFFER_CELL *pad) {
    auto trace = [&](const char *pin, int32_t direction) {
        return search_inet_connected_to_obj(row.pad_obj, pin, direction);
    };
    // The second multiplexer of a pad without a first one still serves an input side that stands alone.
    if (pad->mux_in2 != nullptr) {
        row.mode_net[1] = trace(pad->mode_2, DIR_INPUT);
        row.mux_in2_net = trace(pad->mux_in2, DIR_INPUT);
    }
    if (!has_mux(row, pad->mode_1, pad->mux_in1, BIDIR_MUX_1))
        return;
    row.mode_net[0] = trace(pad->mode_1, DIR_INPUT);
    row.mux_in1_net = trace(pad->mux_in1, DIR_INPUT);
    has_mux(row, pad->mode_2, pad->mux_in2, BIDIR_MUX_2);
    if (pad->mux_out != nullptr)
        row.mux_out_net = trace(pad->mux_out, DIR_OUTPUT);
}

/// The cell of a role. Ends the run when the role is not declared; the two words are those of the message.
CHOSEN_CELL needed_cell(const OPIN_ROW &row, CELL_COUNTER role, const char *keyword, const char *need) {
    CHOSEN_CELL chosen = declared_cell(role);
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %s in file '%s'.\n       Need %s to connect to bidir port '%s'.\n\n",
                 keyword, JTAG_BSC_FILE, need, row.port_name);
    return chosen;
}

CHOSEN_CELL needed_output_cell(const OPIN_ROW &row) {
    return needed_cell(row, COUNT_OUTPUT, "%OUTPUT_SCAN", "OUTPUT_SCAN");
}

CHOSEN_CELL needed_mux_output_cell(const OPIN_ROW &row) {
    return needed_cell(row, COUNT_OUTPUT_MUX, "%OUTPUT_MUX_SCAN", "OUTPUT_MUX_SCAN");
}

void take_builtin_cell(OPIN_ROW &row) {
    if (check_bidir_scan_cell_after_open_sdb(builtin_cell_name(row)))
        vmr_fail("\n");
    take_cell(row, CELL_BIDIR, {builtin_cell(row), COUNT_BIDIR});
}

void take_one_sided_cell(OPIN_ROW &row, const BUFFER_CELL *pad, bool is_input) {
    bool is_mux = (is_input ? pad->mux_in2 : pad->mux_in1) != nullptr;
    if (!is_mux && is_bs_buffer(pad))
        take_builtin_cell(row);
    else if (is_input && is_mux)
        take_cell(row, CELL_MUX_INPUT,
                  needed_cell(row, COUNT_INPUT_MUX, "%INPUT_MUX_SCAN", "INPUT_MUX_SCAN"));
    else if (is_input)
        take_cell(row, CELL_INPUT, needed_cell(row, COUNT_INPUT, "%INPUT_SCAN", "INPUT_SCAN"));
    else if (is_mux)
        take_cell(row, CELL_MUX_OUTPUT3, needed_mux_output_cell(row));
    else
        take_cell(row, CELL_OUTPUT3, needed_output_cell(row));
}

void take_plain_cell(OPIN_ROW &row, const BUFFER_CELL *pad) {
    CHOSEN_CELL named = named_cell(row, COUNT_BIDIR);
    if (named.cell != nullptr)
        take_cell(row, CELL_BIDIR, named);
    else if (is_bs_buffer(pad))
        take_builtin_cell(row);
    else if (BIDIR_SCAN == nullptr && INPUT_SCAN != nullptr && OUTPUT_SCAN != nullptr)
        take_pair(row, CELL_INOUT, declared_cell(COUNT_OUTPUT), declared_cell(COUNT_INPUT));
    else
        take_cell(row, CELL_BIDIR, needed_cell(row, COUNT_BIDIR, "%BIDIR_SCAN", "BIDIR_SCAN"));
}

void take_mux_cell(OPIN_ROW &row, const BUFFER_CELL *pad) {
    bool two = pad->mux_in2 != nullptr;
    int32_t kind = two ? CELL_MUX2_BIDIR : CELL_MUX_BIDIR;
    CHOSEN_CELL named = named_cell(row, COUNT_BIDIR_MUX);
    CHOSEN_CELL input = declared_cell(two ? COUNT_INPUT_MUX : COUNT_INPUT);
    if (named.cell != nullptr)
        take_cell(row, kind, named);
    else if (BIDIR_MUX_SCAN == nullptr && OUTPUT_MUX_SCAN != nullptr && input.cell != nullptr)
        take_pair(row, two ? CELL_MUX2_INOUT : CELL_MUX_INOUT, declared_cell(COUNT_OUTPUT_MUX), input);
    else
        take_cell(row, kind, needed_cell(row, COUNT_BIDIR_MUX, "%BIDI_MUX_SCAN", "BIDIR_MUX_SCAN"));
}

void take_cell_of_sides(OPIN_ROW &row, const BUFFER_CELL *pad, const SIDES &sides) {
    if (sides.in != nullptr && sides.out != nullptr) {
        if (pad->mux_in1 != nullptr)
            take_mux_cell(row, pad);
        else
            take_plain_cell(row, pad);
    } else if (sides.in != nullptr || sides.out != nullptr) {
        take_one_sided_cell(row, pad, sides.in != nullptr);
    }
}

} // namespace

void save_bidir_scan_tab(BUFFER_CELL *pad, int32_t row_index, int32_t) {
    OPIN_ROW &row = OPIN_TAB[row_index];
    if (pad == nullptr) { // a pad will be added, with an input and an output cell
        take_pair(row, CELL_INOUT, needed_output_cell(row), declared_cell(COUNT_INPUT, COUNT_CLOCK));
        return;
    }
    check_pad_is_complete(row, pad);
    SIDES sides = find_sides(row, pad);
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
    if (is_input_side_merged(row, sides.in_node))
        sides.in = nullptr;
    trace_mux_pins(row, pad);
    take_cell_of_sides(row, pad, sides);
    bool enable_is_data =
        same_text_no_case(pad->en_l, pad->input) || same_text_no_case(pad->en_h, pad->input);
    if (sides.out != nullptr && !enable_is_data)
        save_enable_control(pad, row_index);
}
