#include "planning/skip_signals.hh"

#include "description/lookups.hh"
#include "planning/planning.hh"
#include "planning/port_pad.hh"
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

void take_input_side(OPIN_ROW &row, int32_t port, bool is_bidir) {
    if (row.pad != nullptr) {
        take_pad_output(row);
        return;
    }
    bool is_bare = !is_bidir && option(OPT_NO_PAD);
    bool is_padded = INPUT_BUFFER != nullptr && (is_bidir || option(OPT_ADD_PAD));
    if (!is_bare && !is_padded)
        fail_add_pad("%INPUT_BUFFER");
    take_own_net(row, port);
}

void take_output_side(OPIN_ROW &row, bool is_bidir) {
    BUFFER_CELL *pad = row.pad;
    if (pad == nullptr) {
        if (OUTPUT_BUFFER == nullptr && (is_bidir || option(OPT_ADD_PAD)))
            fail_add_pad("%OUTPUT_BUFFER");
        return;
    }
    const char *data_pin = pad->input != nullptr ? pad->input : pad->en_l != nullptr ? pad->en_l : pad->en_h;
    if (data_pin == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT in %%BUFFER  %s.\n\n", JTAG_LIB_FILE, row.pad_class);
    clear_false_enables(pad, -1, pad->input);
    take_pad_input(row, data_pin);
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
void look_at_tdo_feed(OPIN_ROW &row, int32_t port) {
    int32_t own_net = node_tab[port_tab[port].node].net;
    int32_t pad_net = search_inet_connected_to_obj(row.pad_obj, row.pad_input, SDB_INPUT);
    bool by_port = option(OPT_ADD_PAD) || option(OPT_NO_PAD);
    int32_t named_net = by_port ? own_net : pad_net;
    // The net that counts is the one on the pad's data pin, also where the options name the port's own net.
    int32_t feed = row.pad != nullptr ? pad_net : own_net;
    int32_t constant = constant_behind_expansion(feed, row.pad_obj);
    if (constant < 0 && is_constant_net(feed))
        constant = feed;
    if (named_net >= 0)
        row.net_name = keep_text_or_null(SDB_net_name(sdb, named_net));
    if (constant < 0)
        return;
    vmr_printf("WARNING: Pin %%TDO '%s' was connected to GND or VCC.\n", GLOBAL_TDO);
    vmr_printf("         %s of %s will be disconnected.\n", text_or_undefined(row.pad_input),
               text_or_undefined(row.pad_instance));
    TAP_FLAG.tdo = constant;
}

void look_at_tdo_enable(const OPIN_ROW &row) {
    if (TAP_TDO_EN_PIN == nullptr || row.pad == nullptr)
        return;
    const char *enable = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], nullptr);
    int32_t net = search_inet_connected_to_obj(row.pad_obj, enable, SDB_INPUT);
    int32_t constant = constant_behind_expansion(net, row.pad_obj);
    TAP_FLAG.tdo_en = constant >= 0 ? constant : net;
}

} // namespace

void bs_save_OPIN_TAB_for_standard_port_of_TAP(OPIN_ROW &row, const char *name) {
    STANDARD_PORT_STATE *state = nullptr;
    for (STANDARD_PORT candidate : STANDARD_PORT_ORDER)
        if (state == nullptr && *TAP_PORT[candidate].global_name != nullptr &&
            same_text(name, *TAP_PORT[candidate].global_name))
            state = &TAP_PORT[candidate];
    if (state == nullptr)
        return;
    bool is_tdo = state == &TAP_PORT[PORT_TDO];
    row.kind = is_tdo ? CELL_OUTPUT3 : CELL_INPUT;
    state->pin_index = static_cast<int32_t>(&row - OPIN_TAB);
    int32_t port = SDB_nl_search_port(row.port_name);
    if (port < 0)
        return; // the port is added with the TAP
    state->row = &row;

    take_pad(row, port, true);
    int32_t direction = port_tab[port].flags & SDB_DIRECTION_MASK;
    bool is_bidir = direction == SDB_BIDIRECTIONAL;
    if (direction == SDB_OUTPUT || (is_bidir && is_tdo))
        take_output_side(row, is_bidir);
    else if (direction == SDB_INPUT || is_bidir)
        take_input_side(row, port, is_bidir);
    else
        vmr_fail("FATAL: can't identify function of port '%s'.\n\n", row.port_name);
    if (is_tdo) {
        look_at_tdo_feed(row, port);
        look_at_tdo_enable(row);
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
