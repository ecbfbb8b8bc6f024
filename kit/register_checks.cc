// The register that was found, held against the boundary order file and against the design before the run. A
// wire that is wrong makes a netlist that is another chip, and as such can be described: what it should have
// been stands in these two alone.
#include "kit/boundary_register.hh"

#include "kit/chip.hh"
#include "planning/open_design.hh"
#include "sdb/navigation.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <unordered_map>

namespace {

// ---- the boundary order file --------------------------------------------------------------------------

struct ORDER_ROW {
    int32_t place = -1;
    std::string port;
    bool drives = false; ///< by its function
    std::vector<std::string> instances;
};
struct ORDER_CONTROL {
    std::string instance;
    int32_t first = -1, last = -1;
};
struct ORDER_FILE {
    std::vector<ORDER_ROW> rows;
    std::vector<ORDER_CONTROL> controls;
};

std::vector<std::string> words_of(const std::string &line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// "[OE RANGE]   0:  8    *" and "[OE RANGE]   9    *".
void read_range(const std::string &line, ORDER_CONTROL &control) {
    size_t at = line.find(']'), colon = line.find(':');
    if (at == line.npos)
        return;
    control.first = control.last = std::atoi(line.c_str() + at + 1);
    if (colon != line.npos)
        control.last = std::atoi(line.c_str() + colon + 1);
}

bool read_order(const std::string &path, ORDER_FILE &order) {
    if (!TOOL_exists(path))
        return false;
    std::istringstream text(TOOL_read_file(path));
    for (std::string line; std::getline(text, line);) {
        std::vector<std::string> words = words_of(line);
        if (words.empty() || words[0].compare(0, 2, "//") == 0)
            continue;
        if (words[0] == "[CONTROL") {
            order.controls.push_back({words.back(), -1, -1});
        } else if (words[0] == "[OE" && !order.controls.empty()) {
            read_range(line, order.controls.back());
        } else if (words[0][0] != '[' && words.size() == 7) {
            ORDER_ROW row{words[0] == "*" ? -1 : std::atoi(words[0].c_str()),
                          words[2],
                          words[5].compare(0, 6, "output") == 0 || words[5] == "bidir",
                          {}};
            std::istringstream list(words[6]);
            for (std::string name; std::getline(list, name, ',');)
                if (name != "*")
                    row.instances.push_back(name);
            order.rows.push_back(std::move(row));
        }
    }
    return true;
}

std::string last_component(const std::string &instance) {
    return instance.substr(instance.rfind('.') + 1);
}

void order_fault(BOUNDARY_REGISTER &found, const std::string &text, const std::string &instance,
                 const std::string &port) {
    found.faults.push_back({"order", text, instance, "", port});
}

/// The cells of the walk by what the order file calls them.
struct WALKED_CELLS {
    std::unordered_map<std::string, int32_t> number; ///< -2 for a name that two of them have
    std::unordered_map<std::string, std::vector<int32_t>> of_port;
    std::set<std::string> driven; ///< ports
    std::unordered_map<int32_t, std::vector<std::string>> ports_of_control;
};

WALKED_CELLS walked_cells(const BOUNDARY_REGISTER &found) {
    WALKED_CELLS cells;
    for (size_t i = 0; i < found.cells.size(); ++i) {
        auto [place, is_new] =
            cells.number.emplace(last_component(found.cells[i].instance), static_cast<int32_t>(i));
        place->second = is_new ? place->second : -2;
    }
    for (const REGISTER_ROW &row : found.rows)
        if (row.port >= 0) {
            cells.of_port[chip_port_name(row.port)].push_back(row.cell);
            if (row.kind >= ROW_OUTPUT2 && row.kind <= ROW_BIDIR)
                cells.driven.insert(chip_port_name(row.port));
            if (row.control >= 0)
                cells.ports_of_control[row.control].push_back(chip_port_name(row.port));
        }
    return cells;
}

/// The place that a cell's own name tells: 12 of "BCELL12_OUT"; -1 for a cell of the design.
int32_t place_in_name(const std::string &instance) {
    std::string name = last_component(instance);
    size_t end = 5;
    while (end < name.size() && name[end] >= '0' && name[end] <= '9')
        ++end;
    bool has_form = name.compare(0, 5, "BCELL") == 0 && end > 5 && (end == name.size() || name[end] == '_');
    return has_form ? std::atoi(name.c_str() + 5) : -1;
}

/// True for a port whose pad the walk found to be turned on and off by others; whether it should be is asked
/// of the design before the run.
bool stays_with_core(const BOUNDARY_REGISTER &found, const std::string &name) {
    int32_t port = SDB_nl_search_port(name.c_str());
    return port >= 0 && (found.ports[static_cast<size_t>(port)].follows_core ||
                         found.ports[static_cast<size_t>(port)].is_off);
}

void compare_row(BOUNDARY_REGISTER &found, const WALKED_CELLS &cells, const ORDER_ROW &row) {
    auto walked = cells.of_port.find(row.port);
    bool stands_there = row.instances.empty();
    for (const std::string &instance : row.instances) {
        auto number = cells.number.find(instance);
        if (number == cells.number.end()) {
            order_fault(found, "the order file has a cell that the chain does not reach", instance, row.port);
            return;
        }
        stands_there = stands_there || number->second == row.place || number->second == -2;
        bool serves = walked != cells.of_port.end() && std::find(walked->second.begin(), walked->second.end(),
                                                                 number->second) != walked->second.end();
        // What is inside the core has no port, and a pad that stays with the core no row.
        bool is_free =
            number->second == -2 || row.port.find('{') != row.port.npos || stays_with_core(found, row.port);
        if (!serves && !is_free)
            order_fault(found, "the cell does not serve the port that the order file gives it", instance,
                        row.port);
    }
    if (row.drives && !row.instances.empty() && !cells.driven.contains(row.port) &&
        !stays_with_core(found, row.port) && row.port.find('{') == row.port.npos)
        order_fault(found, "no cell drives the port, which is an output in the order file", row.instances[0],
                    row.port);
    if (!stands_there)
        order_fault(found, format_text("the order file has the cell at %d, the chain elsewhere", row.place),
                    row.instances[0], row.port);
}

void compare_controls(BOUNDARY_REGISTER &found, const WALKED_CELLS &cells, const ORDER_FILE &order) {
    std::unordered_map<std::string, int32_t> place_of_port;
    for (const ORDER_ROW &row : order.rows)
        place_of_port.emplace(row.port, row.place);
    for (const ORDER_CONTROL &control : order.controls) {
        auto number = cells.number.find(control.instance);
        if (number == cells.number.end() || number->second < 0 || control.first < 0)
            continue;
        auto ports = cells.ports_of_control.find(number->second);
        if (ports == cells.ports_of_control.end())
            order_fault(found, "the control cell of the order file holds no pad", control.instance, "");
        for (const std::string &port :
             ports != cells.ports_of_control.end() ? ports->second : std::vector<std::string>{}) {
            auto place = place_of_port.find(port);
            if (place != place_of_port.end() && place->second >= 0 &&
                (place->second < control.first || place->second > control.last))
                order_fault(found,
                            "the control cell turns a port off that is outside its range in the order file",
                            control.instance, port);
        }
    }
}

// ---- the design before the run ------------------------------------------------------------------------

/// A pin of the core, and whether it sees the inverse.
std::string core_pin(const NETLIST_WALK &walk, const WALK_POINT &point, bool inverted) {
    const char *sign = inverted ? "~" : "";
    // A pad is its port: with -no_pad the cell stands between them.
    if (point.end == WALK_PAD && walk.pads[static_cast<size_t>(point.row)].port >= 0)
        return sign + chip_port_name(walk.pads[static_cast<size_t>(point.row)].port);
    if (point.end == WALK_PORT)
        return sign + chip_port_name(point.row);
    if (point.end == WALK_ZERO || point.end == WALK_ONE)
        return (point.end == WALK_ONE) != inverted ? "1" : "0";
    if (point.end == WALK_OPEN || point.end == WALK_NONE || point.end == WALK_MANY)
        return point.end == WALK_MANY ? "several drivers" : "nothing";
    return sign + chip_instance_name(node_tab[point.node].obj) + "{" +
           chip_pin_name(node_tab[point.node].pin) + "}";
}

const SCAN_CELL *cell_at(const NETLIST_WALK &walk, const WALK_POINT &point) {
    bool is_own = point.end == WALK_CELL && walk.pad_of_obj[static_cast<size_t>(point.row)] < 0;
    return is_own ? walk.classes[static_cast<size_t>(obj_tab[point.row].class_id)].cell : nullptr;
}

constexpr int32_t MOST_CELLS = 1000; ///< one behind the other; more is a ring of them

/// What drives the node while the boundary cells on the way are wires.
std::string source_in_mission(const NETLIST_WALK &walk, int32_t node, bool inverted) {
    WALK_POINT point = walk_back(walk, node);
    if (const WALK_PAD_ROW *pad =
            point.end == WALK_PAD ? &walk.pads[static_cast<size_t>(point.row)] : nullptr;
        pad != nullptr && walk_is_pin(point.node, pad->pin)) { // asked of a port: what its pad is driven by
        inverted = inverted != (point.inverters % 2 != 0);
        point = walk_back(walk, walk_pin(pad->obj, pad->core_in));
    }
    const SCAN_CELL *cell = cell_at(walk, point);
    for (int32_t step = 0; cell != nullptr; cell = cell_at(walk, point), ++step) {
        if (step > MOST_CELLS)
            return "a ring of cells";
        inverted = inverted != (point.inverters % 2 != 0);
        bool is_way_in = walk_is_pin(point.node, cell->sys_in);
        node = walk_pin(point.row, is_way_in ? cell->sys_pin : cell->data_in);
        point = walk_back(walk, node);
    }
    return core_pin(walk, point, inverted != (point.inverters % 2 != 0));
}

/// The pins of the core that the node drives while the boundary cells on the way are wires, sorted.
std::vector<std::string> loads_in_mission(const NETLIST_WALK &walk, int32_t node) {
    std::vector<std::string> pins;
    std::vector<std::pair<int32_t, bool>> open = {{node, false}};
    std::set<std::pair<int32_t, bool>> met;
    while (!open.empty()) {
        if (!met.insert(open.back()).second) {
            open.pop_back();
            continue;
        }
        auto [from, inverted] = open.back();
        open.pop_back();
        for (const WALK_POINT &point : walk_forward(walk, from)) {
            bool turned = inverted != (point.inverters % 2 != 0);
            const WALK_PAD_ROW *pad =
                point.end == WALK_PAD ? &walk.pads[static_cast<size_t>(point.row)] : nullptr;
            if (const SCAN_CELL *cell = cell_at(walk, point); cell == nullptr) {
                if (pad != nullptr && walk_is_pin(point.node, pad->pin))
                    open.emplace_back(walk_pin(pad->obj, pad->core_out), turned);
                if (point.end == WALK_CORE)
                    pins.push_back(core_pin(walk, point, turned));
            } else if (walk_is_pin(point.node, cell->data_in)) {
                open.emplace_back(walk_pin(point.row, cell->data_out), turned);
            } else if (walk_is_pin(point.node, cell->sys_pin)) {
                open.emplace_back(walk_pin(point.row, cell->sys_in), turned);
            }
        }
    }
    std::sort(pins.begin(), pins.end());
    return pins;
}

/// What a pin of a pad, or a port, has on the side of the core; taken from one design, asked of the other.
struct MISSION_PIN {
    std::string pad, pin, port; ///< `pad` empty for a port without one
    bool reads;                 ///< the core reads it
    bool enables;               ///< it turns the pad on or off
    std::vector<std::string> ends;
    int32_t cell; ///< for the message
};

void add_pin(const BOUNDARY_REGISTER &found, std::vector<MISSION_PIN> &pins, const REGISTER_ROW &row,
             const char *pin, bool reads, bool enables) {
    const WALK_PAD_ROW *pad = row.pad < 0 ? nullptr : &found.walk.pads[static_cast<size_t>(row.pad)];
    int32_t node = pad != nullptr ? walk_pin(pad->obj, pin) : port_tab[row.port].node;
    if (node < 0 || (pad != nullptr && pin == nullptr))
        return;
    MISSION_PIN row_of_pin{pad != nullptr ? chip_instance_name(pad->obj) : "",
                           pad != nullptr ? pin : "",
                           chip_port_name(row.port),
                           reads,
                           enables,
                           {},
                           row.cell};
    if (reads)
        row_of_pin.ends = loads_in_mission(found.walk, node);
    else
        row_of_pin.ends = {source_in_mission(found.walk, node, false)};
    pins.push_back(std::move(row_of_pin));
}

/// A multiplexer in the pad leaves the core's wires as they were: its cell has to look at the same ones.
void add_mux_pin(const BOUNDARY_REGISTER &found, std::vector<MISSION_PIN> &pins, const REGISTER_ROW &row) {
    const REGISTER_CELL &cell = found.cells[static_cast<size_t>(row.cell)];
    const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(row.pad)];
    if (cell.cell->update_dr_out == nullptr || cell.cell->data_in == nullptr || row.kind == ROW_INPUT)
        return;
    const char *enable = pad.buffer->en_l != nullptr ? pad.buffer->en_l : pad.buffer->en_h;
    const char *pin = pad.core_in != nullptr ? pad.core_in : enable;
    if (pin != nullptr)
        pins.push_back({chip_instance_name(pad.obj),
                        pin,
                        chip_port_name(row.port),
                        false,
                        pad.core_in == nullptr,
                        {source_in_mission(found.walk, walk_pin(cell.obj, cell.cell->data_in), false)},
                        row.cell});
}

/// The enables of pads that have no control cell have to be as they were.
void add_free_enables(const BOUNDARY_REGISTER &found, std::vector<MISSION_PIN> &pins) {
    for (const WALK_PAD_ROW &pad : found.walk.pads) {
        if (pad.port < 0 || !(found.ports[static_cast<size_t>(pad.port)].follows_core ||
                              found.ports[static_cast<size_t>(pad.port)].is_off))
            continue;
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
            if (int32_t node = walk_pin(pad.obj, pin); node >= 0)
                pins.push_back({chip_instance_name(pad.obj),
                                pin,
                                chip_port_name(pad.port),
                                false,
                                true,
                                {source_in_mission(found.walk, node, false)},
                                -1});
    }
}

/// A TDO pad that is on for good was so before.
void add_tdo_enables(const BOUNDARY_REGISTER &found, std::vector<MISSION_PIN> &pins) {
    int32_t port = found.test_ports[PORT_TDO];
    for (int32_t number : port < 0 ? std::vector<int32_t>{} : found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(number)];
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h}) {
            WALK_POINT source = walk_back(found.walk, walk_pin(pad.obj, pin));
            if (source.end == WALK_ZERO || source.end == WALK_ONE)
                pins.push_back({chip_instance_name(pad.obj),
                                pin,
                                chip_port_name(port),
                                false,
                                true,
                                {core_pin(found.walk, source, source.inverters % 2 != 0)},
                                -1});
        }
    }
}

std::vector<MISSION_PIN> mission_pins(const BOUNDARY_REGISTER &found) {
    std::vector<MISSION_PIN> pins;
    for (const REGISTER_ROW &row : found.rows) {
        if (row.port < 0 || found.ports[static_cast<size_t>(row.port)].is_declared_inverted)
            continue;
        bool drives = row.kind == ROW_OUTPUT2 || row.kind == ROW_OUTPUT3 || row.kind == ROW_OPEN;
        if (row.pad < 0) {
            add_pin(found, pins, row, nullptr, !drives, false);
            continue;
        }
        const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(row.pad)];
        if (drives || pad.buffer->inout != nullptr) { // one that is off for good was so before
            add_pin(found, pins, row, pad.core_in, false, false);
            add_mux_pin(found, pins, row);
            for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
                if (walk_back(found.walk, walk_pin(pad.obj, pin)).end != WALK_TAP) // HIGHZ came with the run
                    add_pin(found, pins, row, pin, false, true);
        }
        add_pin(found, pins, row, pad.core_out, true, false);
    }
    add_free_enables(found, pins);
    add_tdo_enables(found, pins);
    return pins;
}

/// The pin's node in the design before the run; the port's for a pad that the run added. -1 for what can't be
/// compared: with -no_pad a cell stands before a pad that has an enable or goes both ways.
int32_t source_node(const NETLIST_WALK &walk, const MISSION_PIN &pin) {
    int32_t obj = pin.pad.empty() ? -1 : SDB_lookup_obj(pin.pad.c_str());
    if (obj >= 0)
        return chip_pin_node(obj, pin.pin);
    int32_t port = SDB_nl_search_port(pin.port.c_str());
    // The run gives a pad of its own the enable and the data that the bare port's direction asks for.
    if (!pin.pad.empty() && (pin.enables || (port >= 0 && chip_port_direction(port) == SDB_BIDIRECTIONAL)))
        return -1;
    for (const WALK_PAD_ROW &pad : walk.pads)
        if (pad.port == port && pin.pad.empty() &&
            (pad.buffer->kind != BUFFER_PLAIN || pad.buffer->inout != nullptr ||
             pad.buffer->en_l != nullptr || pad.buffer->en_h != nullptr))
            return -1;
    return port < 0 ? -1 : port_tab[port].node;
}

/// A pad of the design before the run stands for its port.
std::string as_port(const NETLIST_WALK &walk, const std::string &end) {
    size_t sign = end[0] == '~' ? 1 : 0, brace = end.rfind('{');
    int32_t obj = brace == end.npos ? -1 : SDB_lookup_obj(end.substr(sign, brace - sign).c_str());
    int32_t pad = obj < 0 ? -1 : walk.pad_of_obj[static_cast<size_t>(obj)];
    bool is_way_in = pad >= 0 && walk.pads[static_cast<size_t>(pad)].port >= 0 &&
                     same_text_no_case(walk.pads[static_cast<size_t>(pad)].core_out,
                                       end.substr(brace + 1, end.size() - brace - 2).c_str());
    return is_way_in ? end.substr(0, sign) + chip_port_name(walk.pads[static_cast<size_t>(pad)].port) : end;
}

std::string first_difference(const std::vector<std::string> &before, const std::vector<std::string> &after) {
    std::vector<std::string> lost, added;
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(lost));
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(added));
    return "before the run " + (lost.empty() ? "it was not on " + added[0] : "it was on " + lost[0]) +
           (!lost.empty() && !added.empty() ? ", now it is on " + added[0] : "");
}

} // namespace

void compare_boundary_order(BOUNDARY_REGISTER &found, const std::string &bso_file) {
    if (found.cells.empty())
        return;
    ORDER_FILE order;
    if (!read_order(bso_file, order)) {
        order_fault(found, "there is no order file '" + bso_file + "'", "", "");
        return;
    }
    WALKED_CELLS cells = walked_cells(found);
    for (size_t i = 0; i < found.cells.size(); ++i)
        if (int32_t place = place_in_name(found.cells[i].instance);
            place >= 0 && place != static_cast<int32_t>(i))
            order_fault(found, format_text("the chain has this cell at %zu, its name says %d", i, place),
                        found.cells[i].instance, "");
    for (const ORDER_ROW &row : order.rows)
        compare_row(found, cells, row);
    compare_controls(found, cells, order);
}

void compare_with_source(BOUNDARY_REGISTER &found, const std::string &source_file) {
    if (found.cells.empty())
        return;
    std::vector<MISSION_PIN> pins = mission_pins(found);
    OPEN_DESIGN source(source_file.c_str());
    NETLIST_WALK walk;
    prepare_walk(walk, found.tap->name != nullptr ? found.tap->name : "");
    for (MISSION_PIN &pin : pins) {
        if (!pin.reads)
            pin.ends[0] = as_port(walk, pin.ends[0]);
        int32_t node = source_node(walk, pin);
        if (node < 0)
            continue;
        std::vector<std::string> before =
            pin.reads ? loads_in_mission(walk, node)
                      : std::vector<std::string>{as_port(walk, source_in_mission(walk, node, false))};
        if (before != pin.ends)
            found.faults.push_back(
                {"wire",
                 (pin.reads ? "the core does not read the port as before: "
                            : "the core does not drive the port as before: ") +
                     first_difference(before, pin.ends),
                 pin.cell < 0 ? pin.pad : found.cells[static_cast<size_t>(pin.cell)].instance, "", pin.port});
    }
}
