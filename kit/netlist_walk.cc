#include "kit/netlist_walk.hh"

#include "description/lookups.hh"
#include "kit/chip.hh"
#include "planning/tap_state.hh"
#include "support/text.hh"

namespace {

constexpr int32_t NO_DRIVER = -1, SEVERAL_DRIVERS = -2;
constexpr size_t LONGEST_WAY = 10000; // buffers; more is a ring of them

bool has_function(const BUFFER_CELL &buffer, const char *word) {
    return buffer.function != nullptr && lower_case(buffer.function).compare(0, 3, word) == 0;
}

/// The inverting buffers are known by the roles that they are given, or by %FUNCTION.
bool is_inverting(const BUFFER_CELL &buffer) {
    if (same_text(buffer.name, INVERTER) || has_function(buffer, "inv"))
        return true;
    for (const TAP_CELL *tap : rows(TAP_CELL_TAB))
        if (same_text(buffer.name, tap->inv_buffer))
            return true;
    return false;
}

/// One way in, one way out, and nothing that could stop it.
bool is_passing(const BUFFER_CELL &buffer) {
    return buffer.kind == BUFFER_PLAIN && buffer.input != nullptr && buffer.output != nullptr &&
           buffer.inout == nullptr && buffer.en_l == nullptr && buffer.en_h == nullptr &&
           buffer.mux_in1 == nullptr && buffer.mux_in2 == nullptr && buffer.mux_in3 == nullptr;
}

int32_t pin_number(int32_t class_id, const char *pin) {
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i)
        if (same_text_no_case(chip_pin_name(class_tab[class_id].first_pin + i).c_str(), pin))
            return i;
    return -1;
}

WALK_CLASS look_at_class(int32_t class_id, const char *tap_class) {
    std::string name = chip_class_name(class_id);
    WALK_CLASS row;
    row.is_tap = name == tap_class;
    row.cell = get_scan_cell(name.c_str());
    row.buffer = get_buffer(name.c_str());
    if (row.buffer == nullptr || row.cell != nullptr || !is_passing(*row.buffer))
        return row;
    row.input = pin_number(class_id, row.buffer->input);
    row.output = pin_number(class_id, row.buffer->output);
    row.passes = row.input >= 0 && row.output >= 0;
    row.inverts = is_inverting(*row.buffer);
    return row;
}

/// Takes the pad whose pin `node` is on a port.
void take_pad(NETLIST_WALK &walk, int32_t node, int32_t port) {
    int32_t obj = node_tab[node].obj;
    const BUFFER_CELL *buffer = walk.classes[static_cast<size_t>(obj_tab[obj].class_id)].buffer;
    if (buffer == nullptr)
        return;
    bool is_minus = walk_is_pin(node, buffer->input_m) || walk_is_pin(node, buffer->output_m);
    bool both = walk_is_pin(node, buffer->inout);
    bool out = walk_is_pin(node, buffer->output) || walk_is_pin(node, buffer->output_m);
    bool in = walk_is_pin(node, buffer->input) || walk_is_pin(node, buffer->input_m);
    // A buffer whose other side is on the port of an input or output is its pad too.
    SDB_DIRECTION direction = chip_port_direction(port);
    if (!both && !(out && direction != SDB_INPUT) && !(in && direction != SDB_OUTPUT))
        return;
    int32_t &place = walk.pad_of_obj[static_cast<size_t>(obj)];
    if (place < 0) {
        place = static_cast<int32_t>(walk.pads.size());
        walk.pads.push_back({.obj = obj, .buffer = buffer});
    }
    WALK_PAD_ROW &pad = walk.pads[static_cast<size_t>(place)];
    int32_t &leg = is_minus ? pad.minus_port : pad.port;
    if (leg >= 0)
        return;
    leg = port;
    if (is_minus)
        return;
    pad.pin = both ? buffer->inout : out ? buffer->output : buffer->input;
    pad.core_in = both || out ? buffer->input : nullptr;
    pad.core_out = both || !out ? buffer->output : nullptr;
}

WALK_POINT end_at(const NETLIST_WALK &walk, int32_t node, WALK_POINT so_far) {
    so_far.node = node;
    int32_t obj = node_tab[node].obj;
    if (obj < 0) {
        so_far.end = WALK_PORT;
        so_far.row = node_tab[node].pin;
        return so_far;
    }
    int32_t class_id = obj_tab[obj].class_id;
    static const WALK_CLASS no_class;
    const WALK_CLASS &row = class_id < 0 ? no_class : walk.classes[static_cast<size_t>(class_id)];
    int32_t pad = walk.pad_of_obj[static_cast<size_t>(obj)];
    so_far.end = row.is_tap ? WALK_TAP : row.cell != nullptr ? WALK_CELL : pad >= 0 ? WALK_PAD : WALK_CORE;
    so_far.row = so_far.end == WALK_PAD ? pad : obj;
    return so_far;
}

/// The other side of the buffer at the node; -1 when what is there is no buffer.
int32_t beyond(const NETLIST_WALK &walk, int32_t node, bool forward, WALK_POINT &so_far) {
    int32_t obj = node_tab[node].obj;
    int32_t class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
    if (class_id < 0 || walk.pad_of_obj[static_cast<size_t>(obj)] >= 0)
        return -1;
    const WALK_CLASS &row = walk.classes[static_cast<size_t>(class_id)];
    int32_t near = forward ? row.input : row.output, far = forward ? row.output : row.input;
    if (!row.passes || node != obj_tab[obj].first_node + near)
        return -1;
    ++(row.inverts ? so_far.inverters : so_far.buffers);
    return obj_tab[obj].first_node + far;
}

} // namespace

int32_t first_core_reader(const NETLIST_WALK &walk, int32_t node) {
    for (const WALK_POINT &point : node < 0 ? std::vector<WALK_POINT>{} : walk_forward(walk, node))
        if (point.end == WALK_CORE && chip_has_output(point.row))
            return point.node;
    return -1;
}

int32_t walk_pin(int32_t obj, const char *pin) {
    return pin == nullptr || obj < 0 ? -1 : chip_pin_node(obj, without_minus(pin));
}

bool walk_is_pin(int32_t node, const char *pin) {
    return pin != nullptr && node >= 0 && node_tab[node].obj >= 0 &&
           same_text_no_case(chip_pin_name(node_tab[node].pin).c_str(), without_minus(pin));
}

void prepare_walk(NETLIST_WALK &walk, const char *tap_class) {
    for (int32_t i = 0; i < class_count; ++i)
        walk.classes.push_back(look_at_class(i, tap_class));
    walk.pad_of_obj.assign(static_cast<size_t>(obj_count), -1);
    walk.driver_of_net.assign(static_cast<size_t>(net_count), NO_DRIVER);
    for (int32_t port = 0; port < port_count; ++port) {
        int32_t node = port_tab[port].node, net = node < 0 ? -1 : node_tab[node].net;
        for (int32_t at : net > SDB_NET_VCC ? chip_net_nodes(net) : std::vector<int32_t>{})
            if (int32_t obj = node_tab[at].obj; obj >= 0 && obj_tab[obj].class_id >= 0)
                take_pad(walk, at, port);
    }
    for (int32_t node = 0; node < node_count; ++node) {
        int32_t net = node_tab[node].net, obj = node_tab[node].obj;
        if (net <= SDB_NET_VCC)
            continue;
        bool drives = obj < 0 ? port_tab[node_tab[node].pin].node == node &&
                                    chip_port_direction(node_tab[node].pin) == SDB_INPUT
                              : chip_pin_direction(node_tab[node].pin) == SDB_OUTPUT;
        int32_t &driver = walk.driver_of_net[static_cast<size_t>(net)];
        if (drives)
            driver = driver == NO_DRIVER ? node : SEVERAL_DRIVERS;
    }
    // What hangs right on a bidirectional port reads the pin.
    for (int32_t port = 0; port < port_count; ++port) {
        int32_t node = port_tab[port].node, net = node < 0 ? -1 : node_tab[node].net;
        if (net > SDB_NET_VCC && chip_port_direction(port) == SDB_BIDIRECTIONAL &&
            walk.driver_of_net[static_cast<size_t>(net)] == NO_DRIVER)
            walk.driver_of_net[static_cast<size_t>(net)] = node;
    }
}

WALK_POINT walk_back(const NETLIST_WALK &walk, int32_t node) {
    WALK_POINT point;
    for (size_t step = 0; node >= 0 && step < LONGEST_WAY; ++step) {
        point.node = node;
        int32_t net = node_tab[node].net;
        if (net == SDB_NET_GND || net == SDB_NET_VCC) {
            point.end = net == SDB_NET_GND ? WALK_ZERO : WALK_ONE;
            return point;
        }
        int32_t driver = net < 0 ? NO_DRIVER : walk.driver_of_net[static_cast<size_t>(net)];
        if (driver < 0) {
            point.end = driver == NO_DRIVER ? WALK_OPEN : WALK_MANY;
            return point;
        }
        int32_t next = beyond(walk, driver, false, point);
        if (next < 0)
            return end_at(walk, driver, point);
        node = next;
    }
    return point;
}

std::vector<WALK_POINT> walk_forward(const NETLIST_WALK &walk, int32_t node) {
    std::vector<WALK_POINT> ends;
    std::vector<WALK_POINT> open = {{.node = node}};
    while (!open.empty()) {
        WALK_POINT from = open.back();
        open.pop_back();
        int32_t net = from.node < 0 ? -1 : node_tab[from.node].net;
        if (net <= SDB_NET_VCC || static_cast<size_t>(from.buffers + from.inverters) > LONGEST_WAY)
            continue;
        for (int32_t at = net_tab[net].first_node; at >= 0; at = node_tab[at].next) {
            if (at == from.node || at == walk.driver_of_net[static_cast<size_t>(net)])
                continue;
            WALK_POINT point = from;
            int32_t next = beyond(walk, at, true, point);
            point.node = next;
            if (next >= 0)
                open.push_back(point);
            else
                ends.push_back(end_at(walk, at, from));
        }
    }
    return ends;
}
