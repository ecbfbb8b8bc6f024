#include "kit/order.hh"

#include "kit/names.hh"
#include "kit/package_list.hh"
#include "kit/placement.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <unordered_map>
#include <unordered_set>

namespace {

/// The rows in the making.
struct PIN_ROWS {
    CHIP_PLAN &plan;
    std::unordered_set<std::string> ports;   ///< that have a row
    std::unordered_set<std::string> numbers; ///< in use
    size_t next_number = 1;
};

/// A word that the pin file can hold.
std::string pin_file_word(const std::string &name) {
    std::string word = name;
    for (char &c : word)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 &&
            std::string_view("_.[]").find(c) == std::string_view::npos)
            c = '_';
    bool is_mark = word == "INTERNAL" || word == "OBSERVE" || word == "OBSERVE_ONLY";
    return kit_port_name_fits(word) && !is_mark ? word : "p_" + word;
}

bool is_number(const std::string &text) {
    return !text.empty() && text.size() < 10 &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::string free_number(PIN_ROWS &rows) {
    while (rows.numbers.contains(std::to_string(rows.next_number)))
        ++rows.next_number;
    return std::to_string(rows.next_number);
}

void add_row(PIN_ROWS &rows, const std::string &number, const std::string &package_name,
             const std::string &port, const char *direction) {
    std::string pin = is_number(number) ? number : number.empty() ? free_number(rows) : pin_file_word(number);
    rows.numbers.insert(pin);
    rows.plan.pins.push_back({pin, pin_file_word(package_name), port, direction});
    if (!port.empty())
        rows.ports.insert(port);
}

void add_port(PIN_ROWS &rows, const PORT_PLAN &port) {
    if (kit_port_name_fits(port.name) && !rows.ports.contains(port.name))
        add_row(rows, "", port.name, port.name, port.direction);
}

/// Test ports: those without a pad, or all.
void add_test_ports(PIN_ROWS &rows, bool with_pads) {
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i) {
        const TEST_PORT_PLAN &test = rows.plan.tests[i];
        if (!test.name.empty() && (test.is_added || with_pads) && !rows.ports.contains(test.name))
            add_row(rows, "", test.name, test.name, i == TEST_TDO ? "OUT" : "IN");
    }
}

/// Ports in the order of the netlist: each vector at the place of its first pad, its bits counted upward.
/// What has no pad, power for instance, comes last.
std::vector<const PORT_PLAN *> ports_in_netlist_order(const CHIP_PLAN &plan) {
    constexpr int32_t NO_PAD = INT32_MAX;
    std::vector<const PORT_PLAN *> ports;
    std::unordered_map<std::string, int32_t> first_pad;
    for (const PORT_PLAN &port : plan.ports) {
        int32_t pad = port.pad_obj >= 0 ? port.pad_obj : NO_PAD;
        int32_t &first = first_pad.try_emplace(kit_bit(port.name).base, pad).first->second;
        first = std::min(first, pad);
        ports.push_back(&port);
    }
    std::sort(ports.begin(), ports.end(), [&first_pad](const PORT_PLAN *a, const PORT_PLAN *b) {
        int32_t x = first_pad[kit_bit(a->name).base], y = first_pad[kit_bit(b->name).base];
        return x != y ? x < y : kit_counts_before(a->name, b->name);
    });
    return ports;
}

void add_remaining_ports(PIN_ROWS &rows, const std::string &doubt) {
    for (const PORT_PLAN *port : ports_in_netlist_order(rows.plan)) {
        if (rows.ports.contains(port->name))
            continue;
        if (port->use == PORT_SCANNED && !doubt.empty())
            find_port_plan(rows.plan, port->name)->doubt = doubt;
        add_port(rows, *port);
    }
}

/// Where the ports' pads lie.
void find_places(const CHIP_PLAN &plan, const PLACEMENT &placement, std::vector<PLACEMENT_COMPONENT> &pads,
                 std::vector<const PORT_PLAN *> &ports) {
    std::vector<std::string> instances;
    std::vector<const PORT_PLAN *> asked;
    for (const PORT_PLAN &port : plan.ports)
        if (port.pad_obj >= 0) {
            instances.push_back(port.pad_instance);
            asked.push_back(&port);
        }
    std::vector<int32_t> rows = placement_rows(placement, instances);
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i] >= 0) {
            pads.push_back(placement.components[static_cast<size_t>(rows[i])]);
            ports.push_back(asked[i]);
        }
}

void take_placement(PIN_ROWS &rows, const std::string &path) {
    std::vector<PLACEMENT_COMPONENT> pads;
    std::vector<const PORT_PLAN *> ports;
    find_places(rows.plan, placement_read(path), pads, ports);
    int32_t behind = -1;
    for (size_t i = 0; i < ports.size(); ++i)
        if (ports[i]->name == rows.plan.tests[TEST_TDO].name)
            behind = static_cast<int32_t>(i);
    add_test_ports(rows, false);
    for (int32_t i : placement_ring(pads, behind))
        add_port(rows, *ports[static_cast<size_t>(i)]);
    add_remaining_ports(rows, "its pad is not in " + path);
    rows.plan.order_source = format_text(
        "counter-clockwise round the die as %s places the pads, from %s on, %zu of them", path.c_str(),
        behind >= 0 ? "the pad behind TDO" : "the left end of the lower side", pads.size());
}

/// The port that a row of the package's list means.
const PORT_PLAN *port_of_row(const CHIP_PLAN &plan,
                             const std::unordered_map<std::string, const PORT_PLAN *> &by_pad,
                             const PACKAGE_LIST_ROW &row) {
    for (const std::string &name : {row.target, row.name}) {
        if (const PORT_PLAN *port = find_port_plan(plan, name); port != nullptr)
            return port;
        if (auto found = by_pad.find(name); found != by_pad.end())
            return found->second;
    }
    return nullptr;
}

void take_package_list(PIN_ROWS &rows, const std::string &path) {
    CHIP_PLAN &plan = rows.plan;
    std::vector<PACKAGE_LIST_ROW> list = package_list_read(path);
    std::unordered_map<std::string, const PORT_PLAN *> by_pad;
    for (const PORT_PLAN &port : plan.ports)
        if (!port.pad_instance.empty())
            by_pad.emplace(port.pad_instance, &port);
    for (const PACKAGE_LIST_ROW &row : list)
        rows.numbers.insert(row.number);
    auto added_test = [&plan](const PACKAGE_LIST_ROW &row) {
        return std::find_if(plan.tests.begin(), plan.tests.end(), [&row](const TEST_PORT_PLAN &test) {
            return test.is_added && (test.name == row.target || test.name == row.name);
        });
    };
    bool lists_tests = std::any_of(list.begin(), list.end(), [&](const PACKAGE_LIST_ROW &row) {
        return added_test(row) != plan.tests.end();
    });
    if (!lists_tests)
        add_test_ports(rows, false);
    for (const PACKAGE_LIST_ROW &row : list) {
        const PORT_PLAN *port = port_of_row(plan, by_pad, row);
        auto test = added_test(row);
        std::string name = port != nullptr ? port->name : test != plan.tests.end() ? test->name : "";
        std::string shown = !row.name.empty()    ? row.name
                            : !name.empty()      ? name
                            : row.target.empty() ? "NC"
                                                 : row.target;
        bool first = !name.empty() && kit_port_name_fits(name) && !rows.ports.contains(name);
        const char *direction = port != nullptr                         ? port->direction
                                : test == plan.tests.begin() + TEST_TDO ? "OUT"
                                                                        : "IN";
        add_row(rows, row.number, shown, first ? name : "", first ? direction : "*");
    }
    add_test_ports(rows, false);
    add_remaining_ports(rows, "it has no row in " + path);
    plan.order_source = "as the package's pins stand in " + path;
}

} // namespace

void plan_order(CHIP_PLAN &plan, const std::string &package_list, const std::string &placement) {
    plan.pins.clear();
    PIN_ROWS rows = {plan, {}, {}};
    if (!package_list.empty()) {
        take_package_list(rows, package_list);
    } else if (!placement.empty()) {
        take_placement(rows, placement);
    } else {
        add_test_ports(rows, true);
        add_remaining_ports(rows, "");
        plan.order_source = "as the pads stand in the netlist";
    }
}
