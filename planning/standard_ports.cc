#include "planning/standard_ports.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/io_modules.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cstring>
#include <string_view>

namespace {

/// How the netlist expansion names the nets that it adds.
constexpr std::string_view EXPANSION_NET = "VELMORA_EXP_ADDED_NET";

const char *own_net_name(int32_t port) {
    return keep_text_or_null(SDB_net_name(sdb, node_tab[port_tab[port].node].net));
}

void take_input_side(OPIN_ROW &row, const BUFFER_CELL *pad, int32_t port, bool is_bidir) {
    if (pad == nullptr) {
        bool is_bare = !is_bidir && option(OPT_NO_PAD);
        bool is_padded = INPUT_BUFFER != nullptr && (is_bidir || option(OPT_ADD_PAD));
        if (!is_bare && !is_padded)
            vmr_fail("ERROR: option -add_pad requires to declare %%INPUT_BUFFER\n       in file '%s'.\n\n",
                     JTAG_BSC_FILE);
        row.net_name = own_net_name(port);
        return;
    }
    if (pad->output == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT in %%BUFFER %s\n\n", JTAG_LIB_FILE, row.pad_class);
    int32_t node = search_inode_connected_to_obj(row.pad_obj, pad->output, DIR_OUTPUT);
    if (node < 0)
        vmr_fail("ERROR: (%s) %%OUTPUT %s specified in %%BUFFER %s\n"
                 "       can't be found in file '%s' while tracing port '%s'.\n\n",
                 JTAG_LIB_FILE, pad->output, row.pad_class, MODULE_C_SDB, row.port_name);
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    row.pad_output = pad->output;
}

void take_output_side(OPIN_ROW &row, BUFFER_CELL *pad, bool is_bidir) {
    if (pad == nullptr) {
        if (OUTPUT_BUFFER == nullptr && (is_bidir || option(OPT_ADD_PAD)))
            vmr_fail("ERROR: option -add_pad requires to declare %%OUTPUT_BUFFER\n       in file '%s'.\n\n",
                     JTAG_BSC_FILE);
        return;
    }
    const char *data_pin = pad->input != nullptr ? pad->input : pad->en_l != nullptr ? pad->en_l : pad->en_h;
    if (data_pin == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT in %%BUFFER  %s.\n\n", JTAG_LIB_FILE, row.pad_class);
    if (pad->input != nullptr) {
        PIN_ENTRY both = {};
        both.pad_enable = -1;
        clear_false_enables(pad, &both, pad->input);
    }
    const char *net = verify_obj_pin_name(row.pad_obj, data_pin, DIR_INPUT);
    if (net == nullptr)
        vmr_fail("ERROR: (%s) %%INPUT %s specified in %%BUFFER %s\n"
                 "       can't be found in file '%s' while tracing port '%s'.\n\n",
                 JTAG_LIB_FILE, data_pin, row.pad_class, MODULE_C_SDB, row.port_name);
    row.net_name = keep_text(net);
    row.pad_input = data_pin;
}

/// The constant that really feeds a net which the expansion put between a constant and the pad, or -1: the
/// cell that the expansion added is no plain buffer and the node behind its output stands on the constant.
int32_t constant_behind_expansion(int32_t net, int32_t pad_obj) {
    const char *name = net < 0 ? nullptr : SDB_net_name(sdb, net);
    if (name == nullptr || std::string_view(name).substr(0, EXPANSION_NET.size()) != EXPANSION_NET)
        return -1;
    int32_t node = net_tab[net].first_node;
    while (node >= 0 && (node_tab[node].obj < 0 || node_tab[node].obj == pad_obj))
        node = node_tab[node].next;
    if (node < 0)
        return -1;
    int32_t obj = node_tab[node].obj;
    const char *class_name = object_class_name(obj);
    bool is_buffer = std::strspn(class_name, "BUF") == std::strlen(class_name);
    bool has_next = node_tab[node + 1].obj == obj;
    return !is_buffer && has_next && is_constant_net(node_tab[node + 1].net) ? node_tab[node + 1].net : -1;
}

/// Looks at what feeds the TDO pad now: a constant there is taken away when the TAP is connected.
void look_at_tdo_feed(OPIN_ROW &row, const BUFFER_CELL *pad, int32_t port) {
    int32_t own_net = node_tab[port_tab[port].node].net;
    int32_t pad_net = search_inet_connected_to_obj(row.pad_obj, row.pad_input, DIR_INPUT);
    bool by_port = option(OPT_ADD_PAD) || option(OPT_NO_PAD);
    int32_t named_net = by_port ? own_net : pad_net;
    // The net that counts is the one on the pad's data pin, also where the options name the port's own net.
    int32_t feed = pad != nullptr ? pad_net : own_net;
    int32_t constant = constant_behind_expansion(feed, row.pad_obj);
    if (constant < 0 && is_constant_net(feed))
        constant = feed;
    if (named_net >= 0)
        row.net_name = keep_text_or_null(SDB_net_name(sdb, named_net));
    row.direction = row.pad_instance;
    if (constant < 0)
        return;
    vmr_printf("WARNING: Pin %%TDO '%s' was connected to GND or VCC.\n", GLOBAL_TDO);
    vmr_printf("         %s of %s will be disconnected.\n", text_or_undefined(row.pad_input),
               text_or_undefined(row.pad_instance));
    TAP_FLAG.tdo = constant;
}

void look_at_tdo_enable(const OPIN_ROW &row, const BUFFER_CELL *pad) {
    if (TAP_TDO_EN_PIN == nullptr || pad == nullptr)
        return;
    const char *enable = chosen_enable_pin(pad, PIN_TABLE[row.pin_index], nullptr);
    int32_t net = search_inet_connected_to_obj(row.pad_obj, enable, DIR_INPUT);
    int32_t constant = constant_behind_expansion(net, row.pad_obj);
    TAP_FLAG.tdo_en = constant >= 0 ? constant : net;
}

} // namespace

void fail_undescribed_cell(const char *class_name, const char *port_name) {
    vmr_fail("FATAL: can't find the definition of buffer '%s' while tracing port '%s'.\n"
             "       Please specify the following in file '%s'.\n"
             "              %%BUFFER  %s {\n"
             "                  %%INPUT\n"
             "                  %%OUTPUT\n"
             "               }\n\n",
             class_name, port_name, JTAG_LIB_FILE, class_name);
}

void bs_save_OPIN_TAB_for_standard_port_of_TAP(int32_t row_index, const char *name) {
    STANDARD_PORT_STATE *state = nullptr;
    for (STANDARD_PORT candidate : STANDARD_PORT_ORDER)
        if (state == nullptr && *TAP_PORT[candidate].global_name != nullptr &&
            same_text(name, *TAP_PORT[candidate].global_name))
            state = &TAP_PORT[candidate];
    if (state == nullptr)
        return;
    OPIN_ROW &row = OPIN_TAB[row_index];
    bool is_tdo = state == &TAP_PORT[PORT_TDO];
    row.kind = is_tdo ? CELL_OUTPUT3 : CELL_INPUT;
    state->pin_index = row_index;
    int32_t port = SDB_nl_search_port(row.port_name);
    if (port < 0)
        return; // the port is added with the TAP
    state->row = &row;

    row.pad_obj = node_tab[get_node_connected_to_portnode(port)].obj;
    row.pad_class = keep_text(object_class_name(row.pad_obj));
    BUFFER_CELL *pad = get_buffer(row.pad_class);
    if (pad == nullptr && !option(OPT_ADD_PAD) && !option(OPT_NO_PAD))
        fail_undescribed_cell(row.pad_class, row.port_name);
    if (pad != nullptr) {
        row.pad = pad;
        get_hier_class_and_inst_name(row_index, row.pad_obj);
    }
    int32_t direction = port_tab[port].flags & SDB_DIRECTION_MASK;
    bool is_bidir = direction == DIR_BIDIR;
    if (direction == DIR_OUTPUT || (is_bidir && is_tdo))
        take_output_side(row, pad, is_bidir);
    else if (direction == DIR_INPUT || is_bidir)
        take_input_side(row, pad, port, is_bidir);
    else
        vmr_fail("FATAL: can't identify function of port '%s'.\n\n", row.port_name);
    if (is_tdo) {
        look_at_tdo_feed(row, pad, port);
        look_at_tdo_enable(row, pad);
    }
}

void point_standard_ports_at_rows() {
    for (STANDARD_PORT_STATE &state : TAP_PORT)
        if (state.row != nullptr)
            state.row = &OPIN_TAB[state.pin_index];
}

void bs_reset_standard_port_ptr_of_TAP() {
    // A port declared with its '-' has lost it in the row.
    auto is_declared = [](const OPIN_ROW &row, const char *global_name) {
        return same_text(row.port_name, global_name) ||
               (row.inverted != 0 && is_active_low(global_name) &&
                same_text(row.port_name, without_minus(global_name)));
    };
    for (int32_t i = 0; i < DYNA_count(OPIN_TAB); ++i) {
        for (STANDARD_PORT candidate : STANDARD_PORT_ORDER) {
            STANDARD_PORT_STATE &state = TAP_PORT[candidate];
            if (*state.global_name == nullptr || !is_declared(OPIN_TAB[i], *state.global_name))
                continue;
            state.pin_index = i;
            if (state.row != nullptr)
                state.row = &OPIN_TAB[i];
            break;
        }
    }
}
