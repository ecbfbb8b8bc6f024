#include "planning/port_pad.hh"

#include "description/lookups.hh"
#include "planning/io_modules.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

struct MUX_PINS {
    const char *BUFFER_CELL::*input;
    int32_t PORT_FACTS::*input_net;
    const char *mode_keyword, *input_keyword;
};
constexpr MUX_PINS MUXES[] = {{&BUFFER_CELL::mux_in1, &PORT_FACTS::mux_in1_net, "%MODE_1", "%MUX_IN1"},
                              {&BUFFER_CELL::mux_in2, &PORT_FACTS::mux_in2_net, "%MODE_2", "%MUX_IN2"}};

[[noreturn]] void fail_pin(const OPIN_ROW &row, const char *keyword, const char *pin, const char *words) {
    vmr_fail("ERROR: (%s) %s %s specified in %s %s\n"
             "       can't be found in file '%s' while tracing port '%s'.\n\n",
             JTAG_LIB_FILE, keyword, text_or_undefined(pin), words, row.pad_class, MODULE_C_SDB,
             row.port_name);
}

} // namespace

bool has_function(const BUFFER_CELL *pad, const char *word) {
    return pad != nullptr && same_text_no_case(pad->function, word);
}

void take_pad(OPIN_ROW &row, int32_t port, bool bare_is_allowed) {
    row.pad_obj = node_tab[get_node_connected_to_portnode(port)].obj;
    row.pad_class = keep_text(object_class_name(row.pad_obj));
    row.pad = get_buffer(row.pad_class);
    if (row.pad != nullptr)
        get_hier_class_and_inst_name(row, row.pad_obj);
    else if (!option(OPT_ADD_PAD) && !(option(OPT_NO_PAD) && bare_is_allowed))
        vmr_fail("FATAL: can't find the definition of buffer '%s' while tracing port '%s'.\n"
                 "       Please specify the following in file '%s'.\n"
                 "              %%BUFFER  %s {\n"
                 "                  %%INPUT\n"
                 "                  %%OUTPUT\n"
                 "               }\n\n",
                 row.pad_class, row.port_name, JTAG_LIB_FILE, row.pad_class);
}

int32_t pad_output_node(const OPIN_ROW &row, const char *words) {
    if (row.pad->output == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT in %s %s\n\n", JTAG_LIB_FILE, words, row.pad_class);
    int32_t node = search_inode_connected_to_obj(row.pad_obj, row.pad->output, SDB_OUTPUT);
    if (node < 0)
        fail_pin(row, "%OUTPUT", row.pad->output, words);
    return node;
}

int32_t take_pad_output(OPIN_ROW &row, const char *words) {
    int32_t node = pad_output_node(row, words);
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    row.pad_output = row.pad->output;
    return node;
}

void take_pad_input(OPIN_ROW &row, const char *data_pin, const char *words) {
    const char *net = verify_obj_pin_name(row.pad_obj, data_pin, SDB_INPUT);
    if (net == nullptr)
        fail_pin(row, "%INPUT", data_pin, words);
    row.net_name = keep_text(net);
    row.pad_input = data_pin;
}

int32_t take_own_net(OPIN_ROW &row, int32_t port) {
    int32_t node = port_tab[port].node;
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    return node;
}

void fail_add_pad(const char *keyword) {
    vmr_fail("ERROR: option -add_pad requires to declare %s\n       in file '%s'.\n\n", keyword,
             JTAG_BSC_FILE);
}

bool is_plus_leg(const OPIN_ROW &row, int32_t port, const char *plus, const char *minus) {
    int32_t node = get_node_connected_to_portnode(port);
    const char *leg = node_pin_name(node);
    if (is_port_node(node) || same_text(leg, UNDEFINED))
        vmr_fail("ERROR: can not get pin name while tracing port '%s'.\n", row.port_name);
    if (!same_text_no_case(leg, plus) && !same_text_no_case(leg, minus))
        vmr_fail("ERROR: the %s pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER %s\n ",
                 leg, row.pad_class);
    return same_text_no_case(leg, plus);
}

bool has_mux(const OPIN_ROW &row, PAD_MUX which, const char *direction) {
    const MUX_PINS &mux = MUXES[which];
    bool mode = row.pad->*PAD_MODES[which] != nullptr, input = row.pad->*mux.input != nullptr;
    if (mode != input)
        vmr_fail("ERROR: (%s) '%s' is a mux %s pad because %s signal is declared.\n"
                 "       Mux %s pad also requires %s signal to be declared.\n\n",
                 JTAG_LIB_FILE, row.pad_class, direction, mode ? mux.mode_keyword : mux.input_keyword,
                 direction, mode ? mux.input_keyword : mux.mode_keyword);
    return mode;
}

void trace_mux(OPIN_ROW &row, PAD_MUX which) {
    const MUX_PINS &mux = MUXES[which];
    row.mode_net[which] = search_inet_connected_to_obj(row.pad_obj, row.pad->*PAD_MODES[which], SDB_INPUT);
    row.*mux.input_net = search_inet_connected_to_obj(row.pad_obj, row.pad->*mux.input, SDB_INPUT);
}

bool mode_hangs_on_tap(const OPIN_ROW &row, int32_t mode) {
    return row.pad != nullptr && row.pad->*PAD_MODES[mode] != nullptr && row.mode_net[mode] < 2;
}

bool clear_false_enables(BUFFER_CELL *pad, int32_t pad_enable, const char *data_pin) {
    bool cleared = false;
    auto clear = [&](const char *&enable) {
        if (enable == nullptr || !same_text_no_case(enable, data_pin))
            return;
        enable = nullptr;
        cleared = true;
    };
    if (pad_enable != 1)
        clear(pad->en_l);
    if (pad_enable != 0)
        clear(pad->en_h);
    return cleared;
}
