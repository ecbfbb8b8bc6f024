#include "kit/rest_view.hh"

#include "planning/tap_needs.hh"
#include "sdb/navigation.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

constexpr int32_t DEEPEST = 100; // cells whose modes hang on cells

std::string_view text_of(const DESIGN_VIEW &view, int32_t symbol) {
    const char *text = SYM_get(view.handle->symbols, symbol);
    return text != nullptr ? text : "";
}

SDB_DIRECTION direction_of(const DESIGN_VIEW &view, int32_t node) {
    return static_cast<SDB_DIRECTION>(view.pins[view.nodes[node].pin].direction & SDB_DIRECTION_MASK);
}

bool is_pin(const DESIGN_VIEW &view, int32_t node, const char *pin) {
    return pin != nullptr && node >= 0 && view_pin_node(view, view.nodes[node].obj, pin) == node;
}

} // namespace

DESIGN_VIEW view_design(const NETLIST_WALK &walk) {
    return {sdb,         class_tab,  port_tab,  pin_tab,   obj_tab,    node_tab,
            class_count, port_count, obj_count, net_count, node_count, &walk};
}

std::string view_obj_name(const DESIGN_VIEW &view, int32_t obj) {
    const char *name = SDB_obj_name(view.handle, obj);
    return name != nullptr ? name : "";
}

std::string_view view_class_name(const DESIGN_VIEW &view, int32_t class_id) {
    return class_id < 0 ? "" : text_of(view, view.classes[class_id].name);
}

std::string_view view_pin_name(const DESIGN_VIEW &view, int32_t pin) {
    return text_of(view, view.pins[pin].name);
}

std::string_view view_port_name(const DESIGN_VIEW &view, int32_t port) {
    return text_of(view, view.ports[port].name);
}

std::string view_node_text(const DESIGN_VIEW &view, int32_t node) {
    const SDB_NODE &row = view.nodes[node];
    if (row.obj < 0)
        return "port " + std::string(view_port_name(view, row.pin));
    return view_obj_name(view, row.obj) + "{" + std::string(view_pin_name(view, row.pin)) + "}";
}

int32_t view_pin_node(const DESIGN_VIEW &view, int32_t obj, const char *pin) {
    int32_t class_id = pin == nullptr || obj < 0 ? -1 : view.objs[obj].class_id;
    if (class_id < 0)
        return -1;
    const SDB_CLASS &row = view.classes[class_id];
    for (int32_t i = 0; i < row.pin_count; ++i)
        if (same_text_no_case(view_pin_name(view, row.first_pin + i).data(), without_minus(pin)))
            return view.objs[obj].first_node + i;
    return -1;
}

REST_VALUES declared_rest_values(const TAP_CELL &tap) {
    REST_VALUES values;
    for (const char *TAP_CELL::*field :
         {&TAP_CELL::mode_1, &TAP_CELL::mode_2, &TAP_CELL::mode_3, &TAP_CELL::highz_command})
        if (std::string pin = tap_pin_name(tap, field); !pin.empty())
            values[pin] = is_active_low(tap.*field);
    return values;
}

REST_VIEW::REST_VIEW(const DESIGN_VIEW &design, std::vector<REST_ROLE> of_objects, const REST_VALUES &at_rest)
    : view(design), roles(std::move(of_objects)), values(at_rest),
      of_net(static_cast<size_t>(design.net_count)), rest_of_obj(static_cast<size_t>(design.obj_count)),
      pad_of_port(static_cast<size_t>(design.port_count), -1) {
    for (int32_t net : {SDB_NET_GND, SDB_NET_VCC})
        if (net < view.net_count)
            of_net[static_cast<size_t>(net)] = {net, false};
    for (size_t pad = 0; pad < view.walk->pads.size(); ++pad)
        if (const WALK_PAD_ROW &row = view.walk->pads[pad]; row.port >= 0 && role(row.obj) == REST_PAD)
            pad_of_port[static_cast<size_t>(row.port)] = static_cast<int32_t>(pad);
}

bool REST_VIEW::is_test(const REST_SOURCE &source) const {
    if (source.id < view.net_count)
        return false;
    int32_t node = node_of(source), obj = view.nodes[node].obj;
    return obj >= 0 && role(obj) != REST_KEPT && direction_of(view, node) == SDB_OUTPUT;
}

/// True when the pad's enables let it drive at rest.
bool REST_VIEW::drives(const WALK_PAD_ROW &pad) {
    for (bool low : {true, false}) {
        int32_t node = view_pin_node(view, pad.obj, low ? pad.buffer->en_l : pad.buffer->en_h);
        if (node >= 0 && source(node) != REST_SOURCE{low ? SDB_NET_GND : SDB_NET_VCC, false})
            return false;
    }
    return pad.core_in != nullptr;
}

bool REST_VIEW::is_at_rest(int32_t obj) {
    int8_t &known = rest_of_obj[static_cast<size_t>(obj)];
    if (known > 0 || depth > DEEPEST)
        return known == 3;
    known = 1;
    ++depth;
    const SCAN_CELL &cell = *view.walk->classes[static_cast<size_t>(view.objs[obj].class_id)].cell;
    bool is_constant = true;
    for (const char *pin : {cell.mode_1, cell.mode_2, cell.mode_3, cell.highz, cell.oe_mode}) {
        int32_t node = view_pin_node(view, obj, pin);
        if (node >= 0 && direction_of(view, node) != SDB_OUTPUT)
            is_constant = is_constant && source(node).id <= SDB_NET_VCC;
    }
    --depth;
    known = is_constant ? 3 : 2;
    return is_constant;
}

int32_t REST_VIEW::behind_cell(int32_t obj, int32_t driver) {
    const SCAN_CELL &cell = *view.walk->classes[static_cast<size_t>(view.objs[obj].class_id)].cell;
    const std::pair<const char *, const char *> ways[] = {
        {cell.data_out, cell.data_in}, {cell.sys_in, cell.sys_pin}, {cell.oe_mode, cell.mode_1}};
    for (const auto &[out, in] : ways)
        if (is_pin(view, driver, out))
            return is_at_rest(obj) ? view_pin_node(view, obj, in) : -1;
    return -1;
}

int32_t REST_VIEW::behind_pad(int32_t obj, int32_t driver) {
    const WALK_PAD_ROW &pad =
        view.walk->pads[static_cast<size_t>(view.walk->pad_of_obj[static_cast<size_t>(obj)])];
    bool is_way_in = is_pin(view, driver, pad.core_out);
    if (is_way_in)
        return view_pin_node(view, obj, pad.pin);
    return drives(pad) ? view_pin_node(view, obj, pad.core_in) : -1;
}

int32_t REST_VIEW::behind(int32_t driver, bool &inverts, REST_SOURCE &end) {
    int32_t obj = view.nodes[driver].obj, class_id = obj < 0 ? -1 : view.objs[obj].class_id;
    REST_ROLE what = obj < 0 ? REST_KEPT : role(obj);
    end = {view.nodes[driver].net, false};
    if (what == REST_KEPT || what == REST_ALIEN)
        return -1;
    end = node_source(driver);
    int32_t node = -1;
    if (what == REST_BUFFER) {
        const WALK_CLASS &row = view.walk->classes[static_cast<size_t>(class_id)];
        node = view.objs[obj].first_node + row.input;
        inverts = inverts != row.inverts;
    } else if (what == REST_CELL) {
        node = behind_cell(obj, driver);
    } else if (what == REST_PAD) {
        node = behind_pad(obj, driver);
    } else if (auto value = values.find(std::string(view_pin_name(view, view.nodes[driver].pin)));
               value != values.end()) {
        end = {value->second ? SDB_NET_VCC : SDB_NET_GND, false};
    }
    return node;
}

REST_SOURCE REST_VIEW::net_source(int32_t net) {
    std::vector<std::pair<int32_t, bool>> way; // nets, and whether what they carry is turned up to here
    REST_SOURCE found;
    bool inverts = false;
    while (found.id < 0) {
        REST_SOURCE &known = of_net[static_cast<size_t>(net)];
        if (known.id >= 0) {
            found = known;
            break;
        }
        known = {net, false}; // a ring of cells ends where it was entered
        way.emplace_back(net, inverts);
        int32_t driver = view.walk->driver_of_net[static_cast<size_t>(net)];
        int32_t node = -1;
        REST_SOURCE end{net, false};
        if (driver >= 0 && view.nodes[driver].obj < 0) {
            int32_t pad = pad_of_port[static_cast<size_t>(view.nodes[driver].pin)];
            // A bidirectional port counts as a driver; its inserted pad may drive it.
            if (const WALK_PAD_ROW *row = pad < 0 ? nullptr : &view.walk->pads[static_cast<size_t>(pad)];
                row != nullptr && drives(*row))
                node = view_pin_node(view, row->obj, row->core_in);
        } else if (driver >= 0) {
            node = behind(driver, inverts, end);
        }
        if (node < 0)
            found = end;
        else if (view.nodes[node].net < 0)
            found = node_source(node);
        else
            net = view.nodes[node].net;
    }
    bool whole = inverts != found.is_inverted;
    for (const auto &[at, turned] : way) {
        bool is_inverted = whole != turned;
        bool is_constant = found.id <= SDB_NET_VCC;
        of_net[static_cast<size_t>(at)] = {is_constant ? (found.id != 0) != is_inverted : found.id,
                                           !is_constant && is_inverted};
    }
    return way.empty() ? found : of_net[static_cast<size_t>(way.front().first)];
}

REST_SOURCE REST_VIEW::source(int32_t node) {
    int32_t net = view.nodes[node].net;
    return net < 0 ? node_source(node) : net_source(net);
}

REST_SOURCE REST_VIEW::port_source(int32_t port) {
    int32_t node = view.ports[port].node;
    return node < 0 ? REST_SOURCE{} : source(node);
}
