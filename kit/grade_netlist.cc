// The netlist with a switch at each pin that a fault is planted at.
//
// A switch stands between the pin and its net. A pin that takes a value gets one that may be another, a pin
// that gives one drives a net of its own, from which the switch makes the old one.
#include "kit/chip.hh"
#include "kit/grade.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/verilog_writer.hh"
#include "support/text.hh"

#include <algorithm>
#include <deque>
#include <unordered_map>

namespace {

constexpr const char *CORE_ALONE =
    "it reaches the core alone: rimkit prove holds the core to the chip before";
constexpr const char *PIN_AGREES = "pin and cell agree on it: rimkit prove holds the core to the chip before";
constexpr const char *CORE_DIFFERS =
    "it shows only where the core gives the pad another value than the register in SAMPLE";
constexpr const char *NO_CELL = "no boundary cell stands at it";
constexpr const char *NO_PORT = "the cell serves no port";

/// One switched pin. `net` is what the switch takes: the old net of an input, the new one of an output.
struct SITE {
    size_t number;
    int32_t net;
    std::string name;
    const char *reason;
    std::string cases{}; ///< of the switch, "bench.planted == 7 ? 1'b0 : ..."
};

struct PLANTER {
    const BOUNDARY_REGISTER &found;
    NL_DESIGN design{};
    int32_t top = NL_NONE;
    std::unordered_map<std::string, int32_t> instance_of_name{};
    std::deque<SITE> sites{};
    std::unordered_map<uint64_t, SITE *> site_of_pin{};
    std::vector<GRADE_FAULT> faults{{"none"}};

    NL_MODULE &module() {
        return design.modules[static_cast<size_t>(top)];
    }
};

void read_netlist(PLANTER &planter, const std::string &name) {
    planter.top = NL_module(planter.design, NL_name(planter.design.names, name));
    NL_read_sdb(planter.design, planter.module(), name + ".c.sdb",
                [&planter](int32_t def) { return NL_module(planter.design, def); });
    // A level of the hierarchy stands among the instances without its pins.
    NL_MODULE &module = planter.module();
    std::erase_if(module.instances, [&planter, &module](const NL_INSTANCE &row) {
        auto pins = module.pins.begin() + row.first_pin;
        size_t count = planter.design.modules[static_cast<size_t>(row.def)].ports.size();
        return row.first_pin == NL_NONE || std::all_of(pins, pins + static_cast<std::ptrdiff_t>(count),
                                                       [](int32_t net) { return net == NL_NONE; });
    });
    for (size_t i = 0; i < module.instances.size(); ++i)
        if (const NL_INSTANCE &row = module.instances[i]; row.first_pin != NL_NONE)
            planter.instance_of_name.emplace(NL_full_name(planter.design, module, row.name, row.scope),
                                             static_cast<int32_t>(i));
}

int32_t &net_of(PLANTER &planter, int32_t instance, int32_t port) {
    NL_MODULE &module = planter.module();
    return module.pins[static_cast<size_t>(module.instances[static_cast<size_t>(instance)].first_pin + port)];
}

const NL_MODULE &class_of(PLANTER &planter, int32_t instance) {
    return planter.design
        .modules[static_cast<size_t>(planter.module().instances[static_cast<size_t>(instance)].def)];
}

/// Puts a switch between a pin and its net, which goes on as `fresh` at an input and comes as that from an
/// output.
void add_switch(PLANTER &planter, size_t number, int32_t from, int32_t to) {
    NL_NAMES &names = planter.design.names;
    int32_t def = NL_module(planter.design, NL_name(names, format_text("rim_switch_%zu", number)));
    NL_MODULE &made = planter.design.modules[static_cast<size_t>(def)];
    made.ports = {{NL_name(names, "a"), NL_INPUT, NL_NONE}, {NL_name(names, "z"), NL_OUTPUT, NL_NONE}};
    made.defined = made.is_cell = true;
    if (int32_t twice = NL_NONE; made.groups.empty())
        NL_close_ports(planter.design, made, twice);
    NL_MODULE &module = planter.module();
    auto first = static_cast<int32_t>(module.pins.size());
    module.instances.push_back({NL_name(names, format_text("rim_at_%zu", number)), NL_NONE, def, first});
    module.pins.insert(module.pins.end(), {from, to});
}

/// The site of the pin, made when it is new; null for a pin that is not there, is open or goes both ways.
SITE *site_at(PLANTER &planter, const std::string &owner, const char *pin, const char *reason = nullptr) {
    auto at = planter.instance_of_name.find(owner);
    if (at == planter.instance_of_name.end() || pin == nullptr)
        return nullptr;
    const std::vector<NL_PORT> &ports = class_of(planter, at->second).ports;
    size_t port = 0;
    while (port < ports.size() && NL_text(planter.design.names, ports[port].name) != pin + (*pin == '-'))
        ++port;
    if (port == ports.size() || ports[port].direction == NL_BIDI)
        return nullptr;
    int32_t &pin_net = net_of(planter, at->second, static_cast<int32_t>(port)), net = pin_net;
    uint64_t key = static_cast<uint64_t>(at->second) << 32 | port;
    if (auto known = planter.site_of_pin.find(key); known != planter.site_of_pin.end())
        return known->second;
    if (net == NL_NONE)
        return nullptr;
    bool is_input = ports[port].direction == NL_INPUT;
    size_t number = planter.sites.size();
    int32_t fresh =
        NL_add_net(planter.module(), NL_name(planter.design.names, format_text("rim_net_%zu", number)));
    pin_net = fresh;
    add_switch(planter, number, is_input ? net : fresh, is_input ? fresh : net);
    SITE &site = planter.sites.emplace_back(
        SITE{number, is_input ? net : fresh, owner + "." + (pin + (*pin == '-')), reason});
    return planter.site_of_pin[key] = &site;
}

void add_fault(PLANTER &planter, SITE &site, const std::string &what, const std::string &value) {
    site.cases += format_text("bench.planted == %zu ? %s : ", planter.faults.size(), value.c_str());
    planter.faults.push_back({site.name + " " + what, site.reason});
}

/// Once for each site.
void add_stuck(PLANTER &planter, SITE *site) {
    if (site == nullptr || !site->cases.empty())
        return;
    for (int value : {0, 1})
        if (site->net != (value == 0 ? NL_GND : NL_VCC))
            add_fault(planter, *site, format_text("stuck at %d", value), format_text("1'b%d", value));
}

/// A switch looks past the border of its module at what the other one takes.
void add_swap(PLANTER &planter, SITE *one, SITE *other) {
    if (one == nullptr || other == nullptr || one->net == other->net)
        return;
    for (auto [site, partner] : {std::pair{one, other}, {other, one}})
        site->cases += format_text("bench.planted == %zu ? bench.dut.rim_at_%zu.a : ", planter.faults.size(),
                                   partner->number);
    bool is_known = one->reason != nullptr && other->reason != nullptr;
    planter.faults.push_back(
        {one->name + " and " + other->name + " swapped", is_known ? one->reason : nullptr});
}

bool is_reader(const REGISTER_ROW &row) {
    return row.kind == ROW_INPUT || row.kind == ROW_CLOCK || row.kind == ROW_OBSERVE || row.kind == ROW_BIDIR;
}

/// Why a bench may not see what is wrong at this pin of a cell, which gives values to the core, to a pad,
/// both or neither. `core_out` is the core's side of a pad that the cell stands in, or null.
const char *reason_at(const SCAN_CELL &cell, const std::string &pin, const char *core_out, bool reads,
                      bool writes) {
    auto is = [&pin](const char *name) { return name != nullptr && name + (*name == '-') == pin; };
    if (!reads && !writes)
        return NO_PORT;
    bool has_way_in = cell.sys_in != nullptr || core_out != nullptr;
    if (is(cell.sys_in) || is(core_out) || (is(cell.mode_2) && has_way_in))
        return CORE_ALONE;
    for (const char *name : {cell.data_out, cell.update_dr_out, cell.mode_1, cell.mode_2, cell.update_dr})
        if (!writes && is(name))
            return CORE_ALONE;
    if (writes && is(cell.mode_1))
        return CORE_DIFFERS;
    return is(cell.data_in) && writes ? PIN_AGREES : nullptr;
}

void plant_in_cells(PLANTER &planter) {
    std::vector<bool> reads(planter.found.cells.size()), writes = reads;
    for (const REGISTER_ROW &row : planter.found.rows)
        if (row.port >= 0 || row.kind == ROW_CONTROL) {
            auto number = static_cast<size_t>(row.cell);
            reads[number] = reads[number] || is_reader(row);
            writes[number] = writes[number] || !is_reader(row) || row.kind == ROW_BIDIR;
        }
    for (size_t i = 0; i < planter.found.cells.size(); ++i) {
        const REGISTER_CELL &cell = planter.found.cells[i];
        auto at = planter.instance_of_name.find(cell.instance);
        if (at == planter.instance_of_name.end())
            continue;
        int32_t pad = planter.found.walk.pad_of_obj[static_cast<size_t>(cell.obj)];
        const char *core_out =
            pad >= 0 ? planter.found.walk.pads[static_cast<size_t>(pad)].core_out : nullptr;
        for (const NL_PORT &port : class_of(planter, at->second).ports) {
            std::string pin = NL_string(planter.design.names, port.name);
            add_stuck(planter, site_at(planter, cell.instance, pin.c_str(),
                                       reason_at(*cell.cell, pin, core_out, reads[i], writes[i])));
        }
        if (i == 0)
            continue;
        const REGISTER_CELL &before = planter.found.cells[i - 1];
        for (auto member : {&SCAN_CELL::data_in, &SCAN_CELL::data_out})
            add_swap(planter, site_at(planter, before.instance, before.cell->*member),
                     site_at(planter, cell.instance, cell.cell->*member));
    }
}

/// True when a cell or the TAP stands at the pad's pin.
bool is_held(const NETLIST_WALK &walk, int32_t node) {
    auto is_test = [](const WALK_POINT &point) { return point.end == WALK_CELL || point.end == WALK_TAP; };
    std::vector<WALK_POINT> loads = walk_forward(walk, node);
    return is_test(walk_back(walk, node)) || std::any_of(loads.begin(), loads.end(), is_test);
}

void plant_in_pads(PLANTER &planter) {
    const NETLIST_WALK &walk = planter.found.walk;
    for (const WALK_PAD_ROW &pad : walk.pads) {
        if (pad.port < 0)
            continue;
        std::string owner = chip_instance_name(pad.obj);
        for (const char *pin : {pad.core_in, pad.core_out, pad.buffer->en_l, pad.buffer->en_h})
            if (int32_t node = walk_pin(pad.obj, pin); node >= 0)
                add_stuck(planter, site_at(planter, owner, pin, is_held(walk, node) ? nullptr : NO_CELL));
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
            if (SITE *site = site_at(planter, owner, pin))
                add_fault(planter, *site, "inverted", "~a");
    }
}

void plant_in_tap(PLANTER &planter) {
    const TAP_CELL &tap = *planter.found.tap;
    std::string owner = chip_instance_name(planter.found.tap_obj),
                mode_2 = tap_pin_name(tap, &TAP_CELL::mode_2);
    auto at = planter.instance_of_name.find(owner);
    if (at == planter.instance_of_name.end())
        return;
    for (const NL_PORT &port : class_of(planter, at->second).ports) {
        std::string pin = NL_string(planter.design.names, port.name);
        add_stuck(planter, site_at(planter, owner, pin.c_str(), pin == mode_2 ? CORE_ALONE : nullptr));
    }
}

} // namespace

GRADE_NETLIST grade_netlist(const BOUNDARY_REGISTER &found, const std::string &design, double delay) {
    PLANTER planter{.found = found};
    read_netlist(planter, design + "_jtag");
    plant_in_tap(planter);
    plant_in_cells(planter);
    plant_in_pads(planter);
    GRADE_NETLIST made;
    TEXT_SINK text = TEXT_open();
    VLOG_write_modules(text, planter.design, {&planter.module()});
    made.text = TEXT_take(text);
    // The delay is a small part of a period: a loop that a swap closes lets the time pass.
    made.text += "\n`timescale 1ns / 1ps\n";
    for (const SITE &site : planter.sites)
        made.text +=
            format_text("module rim_switch_%zu (input a, output z);\n    assign #%.3f z = %sa;\nendmodule\n",
                        site.number, delay, site.cases.c_str());
    made.faults = std::move(planter.faults);
    return made;
}
