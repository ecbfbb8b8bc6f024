#include "kit/order.hh"

#include "kit/names.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_map>

namespace {

/// Ports that stand in the register, and the test ports that have pads, in the order of the netlist: each
/// vector at the place of its first pad, its bits counted upward.
std::vector<const PORT_PLAN *> ports_in_netlist_order(const CHIP_PLAN &plan) {
    std::vector<const PORT_PLAN *> ports;
    std::unordered_map<std::string, int32_t> first_pad;
    for (const PORT_PLAN &port : plan.ports)
        if (port.pad != nullptr && (port.use != PORT_SKIPPED || port.pad->use != PAD_POWER)) {
            ports.push_back(&port);
            int32_t &first = first_pad.try_emplace(kit_bit(port.name).base, port.pad_obj).first->second;
            first = std::min(first, port.pad_obj);
        }
    std::sort(ports.begin(), ports.end(), [&first_pad](const PORT_PLAN *a, const PORT_PLAN *b) {
        int32_t x = first_pad[kit_bit(a->name).base], y = first_pad[kit_bit(b->name).base];
        return x != y ? x < y : kit_counts_before(a->name, b->name);
    });
    return ports;
}

void add_row(CHIP_PLAN &plan, const std::string &port, const char *direction) {
    plan.pins.push_back({std::to_string(plan.pins.size() + 1), port, port, direction});
}

/// Test ports that no row names yet come first, so that the register begins behind TDO.
void add_test_ports(CHIP_PLAN &plan) {
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i)
        if (plan.tests[i].is_added)
            add_row(plan, plan.tests[i].name, i == TEST_TDO ? "OUT" : "IN");
}

} // namespace

void plan_order(CHIP_PLAN &plan, const std::string &package_list, const std::string &placement) {
    (void)package_list;
    (void)placement;
    plan.pins.clear();
    add_test_ports(plan);
    for (const PORT_PLAN *port : ports_in_netlist_order(plan))
        if (kit_port_name_fits(port->name))
            add_row(plan, port->name, port->direction);
    plan.order_source = "as the pads stand in the netlist";
}
