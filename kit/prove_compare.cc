// Two netlists held against each other, net by net: a net of the design before the run and the net that
// stands for it now are found by what drives them, and each pin has to be on the two that belong together.
#include "kit/prove.hh"

#include "description/lookups.hh"
#include "kit/chip.hh"
#include "planning/open_design.hh"
#include "planning/tap_state.hh"
#include "sdb/navigation.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace {

constexpr size_t MOST_FAULTS = 100; ///< told one by one

/// What a pin of an object that stands in both designs may have now.
enum PIN_PART : uint8_t {
    PART_FUNCTION, ///< what it had
    PART_TEST,     ///< of the cell inside a pad: a signal of the test
    PART_MODE,     ///< the constant that leaves the pad at work
    PART_MUX,      ///< the test input of a pad's multiplexer: the output of a cell
    PART_TDO,      ///< what the TAP shows at its port
};

std::vector<PIN_PART> parts_of_class(const DESIGN_VIEW &view, int32_t class_id) {
    const WALK_CLASS &row = view.walk->classes[static_cast<size_t>(class_id)];
    std::vector<PIN_PART> parts(static_cast<size_t>(view.classes[class_id].pin_count), PART_FUNCTION);
    auto mark = [&](const char *name, PIN_PART part) {
        for (size_t i = 0; i < parts.size(); ++i)
            if (name != nullptr &&
                same_text_no_case(
                    view_pin_name(view, view.classes[class_id].first_pin + static_cast<int32_t>(i)).data(),
                    without_minus(name)))
                parts[i] = part;
    };
    if (row.buffer != nullptr) {
        for (const char *pin : {row.buffer->mux_in1, row.buffer->mux_in2, row.buffer->mux_in3})
            mark(pin, PART_MUX);
        for (const char *BUFFER_CELL::*mode : PAD_MODES)
            mark(row.buffer->*mode, PART_MODE);
    }
    if (row.cell != nullptr) {
        const SCAN_CELL &cell = *row.cell;
        for (const char *pin : {cell.tdi, cell.tdo, cell.tck, cell.clock_dr, cell.shift_dr, cell.update_dr,
                                cell.rst, cell.control_in, cell.update_dr_out, cell.mux_data_in})
            mark(pin, PART_TEST);
        for (const char *pin : rows(cell.extras))
            mark(pin, PART_TEST);
        for (const char *pin : {cell.mode_1, cell.mode_2, cell.mode_3, cell.highz, cell.oe_mode})
            mark(pin, PART_MODE);
    }
    return parts;
}

/// The names of objects with the marks of inner separators taken away: a netlist that was read once more has
/// plain names where the other has levels.
std::string plain_name(const DESIGN_VIEW &view, int32_t obj) {
    std::string name = view_obj_name(view, obj);
    std::erase(name, '\\');
    return name;
}

/// Nodes that %CONNECT puts on a pin of the TAP, which is named.
using CONNECTED_NODES = std::unordered_map<int32_t, std::string>;

/// Of the open edited design.
CONNECTED_NODES connected_nodes(const BOUNDARY_REGISTER &found) {
    CONNECTED_NODES nodes;
    for (const CONNECT_ENTRY *row = CONNECT_TABLE; row != nullptr; row = row->next) {
        int32_t node = walk_pin(found.tap_obj, row->from_port);
        for (const WALK_POINT &point : node < 0 ? std::vector<WALK_POINT>{} : walk_forward(found.walk, node))
            nodes.emplace(point.node, row->from_port);
    }
    return nodes;
}

/// What is left of a module that was opened, or a cell without a wire.
bool is_unwired(const DESIGN_VIEW &view, int32_t obj) {
    const SDB_OBJ &row = view.objs[obj];
    for (int32_t i = 0; row.class_id >= 0 && row.first_node >= 0 && i < view.classes[row.class_id].pin_count;
         ++i)
        if (view.nodes[row.first_node + i].net >= 0)
            return false;
    return true;
}

REGISTER_FAULT reader_fault(int32_t node, int32_t port, const std::string &text) {
    const char *net = SDB_net_name(sdb, node_tab[node].net);
    std::string reader = chip_instance_name(node_tab[node].obj);
    return {"wire", text, reader, net != nullptr ? net : "", port < 0 ? "" : chip_port_name(port)};
}

/// At rest both sides of a cell are one net. In a test they are not, and the core stands on its own side. Of
/// the open edited design.
void add_readers_past_cells(const BOUNDARY_REGISTER &found, std::vector<REGISTER_FAULT> &faults) {
    for (const REGISTER_ROW &row : found.rows) {
        const REGISTER_CELL &cell = found.cells[static_cast<size_t>(row.cell)];
        const WALK_PAD_ROW *pad = row.pad < 0 ? nullptr : &found.walk.pads[static_cast<size_t>(row.pad)];
        // A pad with the cell, or the multiplexer that the cell feeds, inside reaches the core behind it.
        bool is_inside =
            pad != nullptr && (pad->buffer->kind == BUFFER_BS || pad->buffer->mux_in2 != nullptr);
        const REGISTER_PORT *port = row.port < 0 ? nullptr : &found.ports[static_cast<size_t>(row.port)];
        if (!row.cuts || is_inside || (port != nullptr && (port->tap_port >= 0 || port->same_net >= 0)))
            continue;
        bool reads = row.kind == ROW_INPUT || (row.kind == ROW_BIDIR && cell.cell->sys_in != nullptr);
        bool drives = row.kind >= ROW_OUTPUT2 && row.kind <= ROW_CONTROL;
        int32_t before = pad != nullptr    ? walk_pin(pad->obj, pad->core_out)
                         : port != nullptr ? port_tab[row.port].node
                                           : -1;
        if (int32_t node = reads ? first_core_reader(found.walk, before) : -1; node >= 0)
            faults.push_back(reader_fault(
                node, row.port,
                format_text("the core reads the port past boundary cell '%s'", cell.instance.c_str())));
        int32_t behind = drives ? walk_pin(cell.obj, cell.cell->data_out) : -1;
        if (int32_t node = first_core_reader(found.walk, behind); node >= 0)
            faults.push_back(reader_fault(
                node, row.port,
                format_text("the core reads what boundary cell '%s' gives the pad", cell.instance.c_str())));
    }
}

class CHIP_COMPARER {
  public:
    CHIP_COMPARER(const BOUNDARY_REGISTER &reg, const DESIGN_VIEW &source, const DESIGN_VIEW &edited,
                  const REST_VALUES &values, const CONNECTED_NODES &declared);
    CHIP_COMPARISON compare();

  private:
    std::vector<REST_ROLE> match_objects();
    void match(int32_t old, int32_t obj);
    REST_ROLE role_of_new(int32_t obj) const;
    void match_pins();
    void compare_ports();
    void compare_pins(bool drivers);
    void compare_pin(int32_t obj, int32_t node, int32_t new_node, PIN_PART part);
    bool may_differ(int32_t node, PIN_PART part, const REST_SOURCE &was, const REST_SOURCE &is);
    bool is_update_output(const REST_SOURCE &source) const;
    bool join(const REST_SOURCE &was, const REST_SOURCE &is);
    void look_at_inserted();
    bool is_tied_off(int32_t obj);
    void look_for_second_way(int32_t obj, int32_t node);
    void look_at_cell(int32_t obj, const std::vector<PIN_PART> &parts_of_obj);
    int8_t part_in_proof(int32_t node, PIN_PART part, bool is_pad);
    void look_at_mux_cells();
    void note_lost();

    std::string source_text(const DESIGN_VIEW &view, const REST_VIEW &rest, const REST_SOURCE &source) const;
    void fault(int32_t obj, int32_t node, int32_t port, const std::string &text);
    std::string difference(const REST_SOURCE &was, const REST_SOURCE &is);

    const BOUNDARY_REGISTER &found;
    const DESIGN_VIEW &before, &after;
    const CONNECTED_NODES &connected;
    CHIP_COMPARISON result;
    std::vector<int32_t> old_of_obj; ///< by object of the edited design; -1 new
    std::vector<int32_t> new_of_obj; ///< by object of the design before
    REST_VIEW rest_before, rest_after;
    std::vector<std::vector<PIN_PART>> parts;  ///< by class of the design before
    std::vector<int32_t> new_class;            ///< the class of that name in the edited one, or -1
    std::vector<std::vector<int32_t>> new_pin; ///< by class and pin: the pin's number there, or -1
    std::vector<int32_t> to_after, to_before;  ///< by REST_SOURCE::id; -1 not met yet
    std::unordered_set<int32_t> tdo_nodes;     ///< of the edited design
    std::map<std::string, size_t> kind_of_key;
    size_t untold = 0;
};

std::vector<REST_ROLE> roles_before(const DESIGN_VIEW &view) {
    std::vector<REST_ROLE> roles(static_cast<size_t>(view.obj_count), REST_KEPT);
    for (int32_t obj = 0; obj < view.obj_count; ++obj)
        if (int32_t class_id = view.objs[obj].class_id;
            class_id >= 0 && view.walk->classes[static_cast<size_t>(class_id)].is_tap)
            roles[static_cast<size_t>(obj)] = REST_TAP;
    return roles;
}

CHIP_COMPARER::CHIP_COMPARER(const BOUNDARY_REGISTER &reg, const DESIGN_VIEW &source,
                             const DESIGN_VIEW &edited, const REST_VALUES &values,
                             const CONNECTED_NODES &declared)
    : found(reg), before(source), after(edited), connected(declared),
      rest_before(source, roles_before(source), values), rest_after(edited, match_objects(), values),
      to_after(static_cast<size_t>(source.net_count + source.node_count), -1),
      to_before(static_cast<size_t>(edited.net_count + edited.node_count), -1) {
    for (int32_t net : {SDB_NET_GND, SDB_NET_VCC})
        to_after[static_cast<size_t>(net)] = to_before[static_cast<size_t>(net)] = net;
    match_pins();
}

// ---- what belongs together ----------------------------------------------------------------------------

REST_ROLE CHIP_COMPARER::role_of_new(int32_t obj) const {
    int32_t class_id = after.objs[obj].class_id;
    if (class_id < 0)
        return REST_ALIEN;
    const WALK_CLASS &row = after.walk->classes[static_cast<size_t>(class_id)];
    int32_t pad = after.walk->pad_of_obj[static_cast<size_t>(obj)];
    return row.is_tap                                                         ? REST_TAP
           : row.cell != nullptr                                              ? REST_CELL
           : pad >= 0 && after.walk->pads[static_cast<size_t>(pad)].port >= 0 ? REST_PAD
           : row.passes                                                       ? REST_BUFFER
                                                                              : REST_ALIEN;
}

void CHIP_COMPARER::match(int32_t old, int32_t obj) {
    new_of_obj[static_cast<size_t>(old)] = obj;
    old_of_obj[static_cast<size_t>(obj)] = old;
}

/// By their names. Most stand in the same order in both designs, and need no search.
std::vector<REST_ROLE> CHIP_COMPARER::match_objects() {
    old_of_obj.assign(static_cast<size_t>(after.obj_count), -1);
    new_of_obj.assign(static_cast<size_t>(before.obj_count), -1);
    std::string next = before.obj_count > 0 ? plain_name(before, 0) : "";
    for (int32_t obj = 0, old = 0; obj < after.obj_count && old < before.obj_count; ++obj)
        if (plain_name(after, obj) == next) {
            match(old, obj);
            next = ++old < before.obj_count ? plain_name(before, old) : "";
        }
    std::unordered_map<std::string, int32_t> obj_of_name;
    for (int32_t old = 0; old < before.obj_count; ++old)
        if (new_of_obj[static_cast<size_t>(old)] < 0)
            obj_of_name.emplace(plain_name(before, old), old);
    std::vector<REST_ROLE> roles(static_cast<size_t>(after.obj_count), REST_KEPT);
    for (int32_t obj = 0; obj < after.obj_count; ++obj) {
        bool is_known = old_of_obj[static_cast<size_t>(obj)] >= 0;
        auto place =
            is_known || obj_of_name.empty() ? obj_of_name.end() : obj_of_name.find(plain_name(after, obj));
        if (place != obj_of_name.end()) {
            match(place->second, obj);
            obj_of_name.erase(place);
            is_known = true;
        }
        int32_t class_id = after.objs[obj].class_id;
        bool is_tap = class_id >= 0 && after.walk->classes[static_cast<size_t>(class_id)].is_tap;
        roles[static_cast<size_t>(obj)] = !is_known ? role_of_new(obj) : is_tap ? REST_TAP : REST_KEPT;
    }
    return roles;
}

void CHIP_COMPARER::match_pins() {
    std::unordered_map<std::string_view, int32_t> class_of_name;
    for (int32_t i = 0; i < after.class_count; ++i)
        class_of_name.emplace(view_class_name(after, i), i);
    for (int32_t i = 0; i < before.class_count; ++i) {
        auto place = class_of_name.find(view_class_name(before, i));
        new_class.push_back(place == class_of_name.end() ? -1 : place->second);
        parts.push_back(parts_of_class(before, i));
        std::unordered_map<std::string_view, int32_t> pin_of_name;
        for (int32_t pin = 0; new_class.back() >= 0 && pin < after.classes[new_class.back()].pin_count; ++pin)
            pin_of_name.emplace(view_pin_name(after, after.classes[new_class.back()].first_pin + pin), pin);
        std::vector<int32_t> &pins = new_pin.emplace_back();
        for (int32_t pin = 0; pin < before.classes[i].pin_count; ++pin) {
            auto at = pin_of_name.find(view_pin_name(before, before.classes[i].first_pin + pin));
            pins.push_back(at == pin_of_name.end() ? -1 : at->second);
        }
    }
    int32_t tdo = found.test_ports[PORT_TDO];
    for (int32_t number : tdo < 0 ? std::vector<int32_t>{} : found.ports[static_cast<size_t>(tdo)].pads) {
        const WALK_PAD_ROW &pad = after.walk->pads[static_cast<size_t>(number)];
        for (const char *pin : {pad.core_in, pad.buffer->en_l, pad.buffer->en_h})
            tdo_nodes.insert(view_pin_node(after, pad.obj, pin));
    }
}

/// True when the two stand for each other, which from now on they do.
bool CHIP_COMPARER::join(const REST_SOURCE &was, const REST_SOURCE &is) {
    if (was.is_inverted != is.is_inverted)
        return false;
    int32_t &now = to_after[static_cast<size_t>(was.id)], &then = to_before[static_cast<size_t>(is.id)];
    if (now < 0 && then < 0) {
        now = is.id;
        then = was.id;
        ++result.nets;
    }
    return now == is.id && then == was.id;
}

// ---- faults -------------------------------------------------------------------------------------------

void CHIP_COMPARER::fault(int32_t obj, int32_t node, int32_t port, const std::string &text) {
    if (result.faults.size() >= MOST_FAULTS) {
        ++untold;
        return;
    }
    const char *net =
        node < 0 || after.nodes[node].net < 0 ? nullptr : SDB_net_name(after.handle, after.nodes[node].net);
    int32_t pad = obj < 0 ? -1 : after.walk->pad_of_obj[static_cast<size_t>(obj)];
    if (port < 0 && pad >= 0)
        port = after.walk->pads[static_cast<size_t>(pad)].port;
    result.faults.push_back({"wire", text, obj < 0 ? "" : view_obj_name(after, obj),
                             net != nullptr ? net : "",
                             port < 0 ? "" : std::string(view_port_name(after, port))});
}

std::string CHIP_COMPARER::source_text(const DESIGN_VIEW &view, const REST_VIEW &rest,
                                       const REST_SOURCE &source) const {
    if (source.id == SDB_NET_GND || source.id == SDB_NET_VCC)
        return source.id == SDB_NET_GND ? "a constant 0" : "a constant 1";
    std::string inverse = source.is_inverted ? "the inverse of " : "";
    if (source.id >= view.net_count)
        return rest.is_test(source)
                   ? inverse + "the test logic, " + view_node_text(view, rest.node_of(source))
                   : "nothing";
    int32_t driver = view.walk->driver_of_net[static_cast<size_t>(source.id)];
    return driver >= 0    ? inverse + view_node_text(view, driver)
           : driver == -1 ? "a net that nothing drives"
                          : "a net that several pins drive";
}

std::string CHIP_COMPARER::difference(const REST_SOURCE &was, const REST_SOURCE &is) {
    std::string then = source_text(before, rest_before, was), now = source_text(after, rest_after, is);
    return "before the run it was on " + then + ", now it is on " + (then == now ? "another net of " : "") +
           now;
}

// ---- pins and ports -----------------------------------------------------------------------------------

/// True for what a cell gives the multiplexer of a pad.
bool CHIP_COMPARER::is_update_output(const REST_SOURCE &source) const {
    if (!rest_after.is_test(source) ||
        rest_after.role(after.nodes[rest_after.node_of(source)].obj) != REST_CELL)
        return false;
    int32_t node = rest_after.node_of(source), obj = after.nodes[node].obj;
    const SCAN_CELL &cell = *after.walk->classes[static_cast<size_t>(after.objs[obj].class_id)].cell;
    return view_pin_node(after, obj, cell.update_dr_out) == node;
}

/// What the run may have put on a pin in place of what was there.
bool CHIP_COMPARER::may_differ(int32_t node, PIN_PART part, const REST_SOURCE &was, const REST_SOURCE &is) {
    if (tdo_nodes.contains(node))
        return rest_after.is_test(is);
    bool was_free = was.id <= SDB_NET_VCC || was.id >= before.net_count ||
                    before.walk->driver_of_net[static_cast<size_t>(was.id)] == -1;
    if (!was_free)
        return false;
    if (auto place = connected.find(node); was.id > SDB_NET_VCC && place != connected.end()) {
        result.assumed.push_back(
            format_text("%s, open before the run, leaves the chip at work with the TAP's %s %s",
                        view_node_text(after, node).c_str(), place->second.c_str(),
                        is.id == SDB_NET_GND   ? "at 0"
                        : is.id == SDB_NET_VCC ? "at 1"
                                               : "moving"));
        return true;
    }
    if (part == PART_FUNCTION)
        return false;
    if (part == PART_MODE)
        return is.id <= SDB_NET_VCC && (was.id > SDB_NET_VCC || was.id == is.id);
    return part == PART_TEST || is_update_output(is);
}

void CHIP_COMPARER::compare_pin(int32_t obj, int32_t node, int32_t new_node, PIN_PART part) {
    REST_SOURCE was = rest_before.source(node), is = rest_after.source(new_node);
    ++result.pins;
    if (may_differ(new_node, part, was, is)) {
        std::string name = view_node_text(after, new_node);
        std::erase(name, '\\');
        result.let_pass.insert(name);
        return;
    }
    // An output of the TAP has nothing else that would tell it from another.
    bool was_test = rest_before.is_test(was), is_test = rest_after.is_test(is);
    bool is_same = was_test != is_test ? false
                   : was_test          ? view_pin_name(before, before.nodes[rest_before.node_of(was)].pin) ==
                                        view_pin_name(after, after.nodes[rest_after.node_of(is)].pin) &&
                                    rest_after.role(after.nodes[rest_after.node_of(is)].obj) == REST_TAP &&
                                    was.is_inverted == is.is_inverted
                              : join(was, is);
    if (!is_same)
        fault(obj, new_node, -1,
              format_text("pin %s: ", std::string(view_pin_name(after, after.nodes[new_node].pin)).c_str()) +
                  difference(was, is));
}

/// With `drivers` the pins that tell the nets: outputs, and those that go both ways.
void CHIP_COMPARER::compare_pins(bool drivers) {
    for (int32_t old = 0; old < before.obj_count; ++old) {
        int32_t obj = new_of_obj[static_cast<size_t>(old)], class_id = before.objs[old].class_id;
        if (obj < 0 || class_id < 0 || rest_after.role(obj) == REST_TAP || before.objs[old].first_node < 0 ||
            after.objs[obj].first_node < 0 ||
            new_class[static_cast<size_t>(class_id)] != after.objs[obj].class_id)
            continue;
        const SDB_CLASS &row = before.classes[class_id];
        for (int32_t i = 0; i < row.pin_count; ++i) {
            bool is_driver = (before.pins[row.first_pin + i].direction & SDB_DIRECTION_MASK) != SDB_INPUT;
            int32_t pin = new_pin[static_cast<size_t>(class_id)][static_cast<size_t>(i)];
            if (is_driver == drivers && pin >= 0)
                compare_pin(obj, before.objs[old].first_node + i, after.objs[obj].first_node + pin,
                            parts[static_cast<size_t>(class_id)][static_cast<size_t>(i)]);
        }
    }
}

void CHIP_COMPARER::compare_ports() {
    std::unordered_map<std::string_view, int32_t> port_of_name;
    for (int32_t port = 0; port < after.port_count; ++port)
        port_of_name.emplace(view_port_name(after, port), port);
    std::unordered_set<int32_t> met;
    for (int32_t old = 0; old < before.port_count; ++old) {
        auto place = port_of_name.find(view_port_name(before, old));
        if (place == port_of_name.end()) {
            fault(-1, -1, -1,
                  "the chip before the run has a port '" + std::string(view_port_name(before, old)) +
                      "', this one has not");
            continue;
        }
        int32_t port = place->second;
        met.insert(port);
        ++result.ports;
        if (((before.ports[old].flags ^ after.ports[port].flags) & SDB_DIRECTION_MASK) != 0)
            fault(-1, after.ports[port].node, port, "the port has another direction than before the run");
        REST_SOURCE was = rest_before.port_source(old), is = rest_after.port_source(port);
        bool is_tdo = port == found.test_ports[PORT_TDO] && rest_after.is_test(is);
        if (is_tdo)
            result.let_pass.insert("port " + std::string(view_port_name(after, port)));
        else if (was.id >= 0 && is.id >= 0 && !join(was, is))
            fault(-1, after.ports[port].node, port, difference(was, is));
    }
    for (int32_t port = 0; port < after.port_count; ++port)
        if (!met.contains(port) && found.ports[static_cast<size_t>(port)].tap_port < 0)
            fault(-1, after.ports[port].node, port, "the chip before the run has no such port");
}

// ---- objects of one design alone ------------------------------------------------------------------------

void CHIP_COMPARER::note_lost() {
    for (int32_t old = 0; old < before.obj_count; ++old) {
        int32_t obj = new_of_obj[static_cast<size_t>(old)], class_id = before.objs[old].class_id;
        if (is_unwired(before, old) && (obj < 0 || is_unwired(after, obj)))
            continue;
        std::string_view was = view_class_name(before, class_id);
        std::string_view is = obj < 0 ? "" : view_class_name(after, after.objs[obj].class_id);
        if (obj < 0)
            fault(-1, -1, -1,
                  "the chip before the run has an instance '" + view_obj_name(before, old) +
                      "', this one has not");
        else if (was != is)
            fault(obj, -1, -1,
                  "before the run it was a " + std::string(was) + ", now it is a " + std::string(is));
        else
            ++result.objects;
    }
}

int8_t CHIP_COMPARER::part_in_proof(int32_t node, PIN_PART part, bool is_pad) {
    const SDB_NODE &row = after.nodes[node];
    bool is_input = (after.pins[row.pin].direction & SDB_DIRECTION_MASK) == SDB_INPUT;
    if (!is_input)
        return part == PART_TEST ? REST_HIDDEN : REST_OUTPUT;
    REST_SOURCE source = rest_after.source(node);
    if (source.id <= SDB_NET_VCC && part != PART_FUNCTION)
        return static_cast<int8_t>(source.id);
    // What a pad had before, and be it nothing, is no part of the test.
    bool is_test = is_pad ? rest_after.is_test(source) : part != PART_FUNCTION;
    return is_test ? REST_FREE : REST_DATA;
}

/// Remembers the kind of the cell, or of the pad with something of the test inside, for the proof of its
/// class.
void CHIP_COMPARER::look_at_cell(int32_t obj, const std::vector<PIN_PART> &parts_of_obj) {
    int32_t class_id = after.objs[obj].class_id;
    REST_KIND kind{std::string(view_class_name(after, class_id)), view_obj_name(after, obj), {}, false, 1};
    kind.is_pad = rest_after.role(obj) == REST_KEPT;
    std::string key = kind.class_name;
    for (int32_t i = 0; i < after.classes[class_id].pin_count; ++i) {
        int32_t node = after.objs[obj].first_node + i;
        int8_t part = part_in_proof(node, parts_of_obj[static_cast<size_t>(i)], kind.is_pad);
        kind.pins.emplace_back(view_pin_name(after, after.nodes[node].pin), part);
        key += format_text(",%d", part);
    }
    auto [place, is_new] = kind_of_key.emplace(key, result.kinds.size());
    result.kind_of_cell[obj] = place->second;
    if (is_new)
        result.kinds.push_back(std::move(kind));
    else
        ++result.kinds[place->second].count;
    if (rest_after.role(obj) == REST_CELL && !rest_after.is_at_rest(obj))
        fault(obj, -1, -1,
              "a mode pin of the cell does not rest: it hangs on neither the TAP nor a constant");
}

/// True for a pad that an enable turns off for good.
bool CHIP_COMPARER::is_tied_off(int32_t obj) {
    int32_t class_id = after.objs[obj].class_id;
    const BUFFER_CELL *buffer =
        class_id < 0 ? nullptr : after.walk->classes[static_cast<size_t>(class_id)].buffer;
    if (buffer == nullptr)
        return false;
    int32_t low = view_pin_node(after, obj, buffer->en_l), high = view_pin_node(after, obj, buffer->en_h);
    return (low >= 0 && rest_after.source(low) == REST_SOURCE{SDB_NET_VCC, false}) ||
           (high >= 0 && rest_after.source(high) == REST_SOURCE{SDB_NET_GND, false});
}

/// What the test logic drives at `node` must not be driven by a pin of the chip that goes both ways: the cell
/// or buffer lets nothing through in that direction.
void CHIP_COMPARER::look_for_second_way(int32_t obj, int32_t node) {
    const auto *nets = SDB_table<SDB_NET>(after.handle, SDB_NET_TAB);
    for (int32_t at = nets[after.nodes[node].net].first_node; at >= 0; at = after.nodes[at].next) {
        const SDB_NODE &row = after.nodes[at];
        bool goes_both_ways = row.obj >= 0 && rest_after.role(row.obj) == REST_KEPT &&
                              (after.pins[row.pin].direction & SDB_DIRECTION_MASK) == SDB_BIDIRECTIONAL;
        if (!goes_both_ways)
            continue;
        std::string name = view_node_text(after, at);
        if (is_tied_off(row.obj)) {
            std::erase(name, '\\');
            result.reading.insert(name);
        } else if (after.walk->pad_of_obj[static_cast<size_t>(row.obj)] >= 0 ||
                   after.walk->classes[static_cast<size_t>(after.objs[row.obj].class_id)].buffer != nullptr) {
            fault(obj, node, -1, "it stands in one direction before " + name + ", which drives as well");
        }
    }
}

void CHIP_COMPARER::look_at_inserted() {
    std::vector<std::vector<PIN_PART>> of_class;
    for (int32_t i = 0; i < after.class_count; ++i)
        of_class.push_back(parts_of_class(after, i));
    for (int32_t obj = 0; obj < after.obj_count; ++obj) {
        int32_t class_id = after.objs[obj].class_id;
        REST_ROLE role = rest_after.role(obj);
        if (is_unwired(after, obj))
            continue;
        if (role == REST_ALIEN)
            fault(obj, -1, -1,
                  "the chip before the run has no such instance, and it is neither a boundary cell nor a "
                  "buffer "
                  "that the library file declares");
        const std::vector<PIN_PART> &own = of_class[static_cast<size_t>(class_id)];
        if (role == REST_CELL || (role == REST_KEPT && std::any_of(own.begin(), own.end(), [](PIN_PART part) {
                                      return part != PART_FUNCTION;
                                  })))
            look_at_cell(obj, own);
        if (role == REST_KEPT)
            continue;
        for (int32_t i = 0; i < after.classes[class_id].pin_count; ++i) {
            int32_t node = after.objs[obj].first_node + i, net = after.nodes[node].net;
            if ((after.pins[after.nodes[node].pin].direction & SDB_DIRECTION_MASK) == SDB_OUTPUT &&
                net >= 0 &&
                (net <= SDB_NET_VCC || after.walk->driver_of_net[static_cast<size_t>(net)] != node))
                fault(obj, node, -1,
                      format_text("pin %s of the test logic drives a net that something else drives",
                                  std::string(view_pin_name(after, after.nodes[node].pin)).c_str()));
            else if (net > SDB_NET_VCC &&
                     (after.pins[after.nodes[node].pin].direction & SDB_DIRECTION_MASK) == SDB_OUTPUT)
                look_for_second_way(obj, node);
        }
    }
}

/// A multiplexer in the pad leaves the core's wires as they were: its cell has to look at the same ones.
void CHIP_COMPARER::look_at_mux_cells() {
    for (const REGISTER_ROW &row : found.rows) {
        const REGISTER_CELL &cell = found.cells[static_cast<size_t>(row.cell)];
        if (row.pad < 0 || cell.cell->update_dr_out == nullptr || cell.cell->data_in == nullptr ||
            row.kind < ROW_OUTPUT2 || row.kind > ROW_BIDIR)
            continue;
        const WALK_PAD_ROW &pad = after.walk->pads[static_cast<size_t>(row.pad)];
        const char *enable = pad.buffer->en_l != nullptr ? pad.buffer->en_l : pad.buffer->en_h;
        int32_t node = view_pin_node(after, pad.obj, pad.core_in != nullptr ? pad.core_in : enable);
        int32_t own = view_pin_node(after, cell.obj, cell.cell->data_in);
        if (node >= 0 && own >= 0 && rest_after.source(node) != rest_after.source(own))
            fault(cell.obj, own, row.port,
                  "the cell of a pad's multiplexer does not look at what the core gives the pad");
    }
}

CHIP_COMPARISON CHIP_COMPARER::compare() {
    note_lost();
    look_at_inserted();
    compare_pins(true);
    compare_ports();
    compare_pins(false);
    look_at_mux_cells();
    if (untold > 0)
        result.faults.push_back({"wire", format_text("and %zu more differences", untold), "", "", ""});
    result.roles_before = rest_before.all_roles();
    result.roles_after = rest_after.all_roles();
    return std::move(result);
}

} // namespace

CHIP_COMPARISON compare_chips(const BOUNDARY_REGISTER &found, const std::string &source_file,
                              const REST_VALUES &values) {
    DESIGN_VIEW after = view_design(found.walk);
    CONNECTED_NODES connected = connected_nodes(found);
    std::vector<REGISTER_FAULT> readers;
    add_readers_past_cells(found, readers);
    OPEN_DESIGN source(source_file.c_str());
    NETLIST_WALK walk;
    prepare_walk(walk, std::string(view_class_name(after, after.objs[found.tap_obj].class_id)).c_str());
    DESIGN_VIEW before = view_design(walk);
    CHIP_COMPARISON result = CHIP_COMPARER(found, before, after, values, connected).compare();
    result.faults.insert(result.faults.end(), readers.begin(), readers.end());
    return result;
}

void compare_with_source(BOUNDARY_REGISTER &found, const std::string &source_file) {
    if (found.cells.empty())
        return;
    CHIP_COMPARISON result = compare_chips(found, source_file, declared_rest_values(*found.tap));
    found.faults.insert(found.faults.end(), result.faults.begin(), result.faults.end());
}
