#include "siblings/flatten.hh"

#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"

#include <algorithm>

namespace {

// What the main program can ask for: a name, its separators included.
constexpr size_t FULL_NAME_LIMIT = 4000;

// Ids are 32 bits wide; a few modules that hold each other ten times would pass that.
constexpr double SIZE_LIMIT = 300e6;

// A node for each pin fits in no file of a design beyond this.
constexpr auto PIN_LIMIT = static_cast<double>(SDB_FILE_LIMIT / sizeof(SDB_NODE));

constexpr double SIZE_UNKNOWN = -1;
constexpr double SIZE_OPEN = -2; // the module is being counted

// What a module is when it is flat.
struct FLAT_SIZE {
    double instances = 0; // or SIZE_UNKNOWN or SIZE_OPEN
    double nets = 0;      // those of ports as well
    double pins = 0;
};

struct FLATTENER {
    NL_DESIGN &design;
    NL_MODULE flat{};
    NL_UNION sets{};
    std::vector<FLAT_SIZE> sizes{}; // of each module
    size_t longest_name = 0;        // of the design
};

int32_t new_net(FLATTENER &work, const NL_NET &net, int32_t scope) {
    int32_t copy = NL_add_net(work.flat, net.name, scope, net.marks);
    work.sets.parent.push_back(copy);
    return copy;
}

// Flat nets of a module's nets. Two ports of the module on one net join the nets outside of it.
std::vector<int32_t> place_nets(FLATTENER &work, const NL_MODULE &module, const int32_t *outside,
                                int32_t scope) {
    std::vector<int32_t> place(module.nets.size(), NL_NONE);
    place[NL_GND] = NL_GND;
    place[NL_VCC] = NL_VCC;
    for (size_t i = 0; outside != nullptr && i < module.ports.size(); i++) {
        if (outside[i] == NL_NONE || module.ports[i].net == NL_NONE)
            continue;
        int32_t &net = place[static_cast<size_t>(module.ports[i].net)];
        if (net == NL_NONE) {
            net = outside[i];
            continue;
        }
        NL_union_join(work.sets, net, outside[i]);
    }
    for (size_t i = 0; i < place.size(); i++)
        if (place[i] == NL_NONE)
            place[i] = new_net(work, module.nets[i], scope);
    for (const NL_ASSIGN &assign : module.assigns)
        work.flat.assigns.push_back(
            {place[static_cast<size_t>(assign.left)], place[static_cast<size_t>(assign.right)]});
    return place;
}

size_t scope_length(const FLATTENER &work, int32_t scope) {
    size_t length = 0;
    for (; scope != NL_NONE; scope = work.flat.scopes[static_cast<size_t>(scope)].parent)
        length += NL_text(work.design.names, work.flat.scopes[static_cast<size_t>(scope)].name).size() + 1;
    return length;
}

// What is below a module, counted before anything is made of it.
FLAT_SIZE flat_size(FLATTENER &work, int32_t index, size_t depth) {
    const NL_MODULE &module = work.design.modules[static_cast<size_t>(index)];
    FLAT_SIZE &known = work.sizes[static_cast<size_t>(index)];
    if (known.instances == SIZE_OPEN)
        TOOL_fail("", 0, "the module '%s' contains itself.",
                  NL_string(work.design.names, module.name).c_str());
    if (depth > FULL_NAME_LIMIT)
        TOOL_fail("", 0, "the hierarchy is more than %zu levels deep.", FULL_NAME_LIMIT);
    if (known.instances != SIZE_UNKNOWN)
        return known;
    known.instances = SIZE_OPEN;
    FLAT_SIZE size = {static_cast<double>(module.instances.size()), static_cast<double>(module.nets.size()),
                      static_cast<double>(module.pins.size())};
    for (const NL_INSTANCE &instance : module.instances) {
        if (work.design.modules[static_cast<size_t>(instance.def)].is_cell)
            continue;
        FLAT_SIZE below = flat_size(work, instance.def, depth + 1);
        size.instances += below.instances;
        size.nets += below.nets;
        size.pins += below.pins;
    }
    return known = size;
}

// Refuses what is too large, and makes room for the rest.
void check_size(FLATTENER &work, int32_t top) {
    work.sizes.assign(work.design.modules.size(), {SIZE_UNKNOWN, 0, 0});
    FLAT_SIZE size = flat_size(work, top, 0);
    double things = size.instances + size.nets;
    if (things > SIZE_LIMIT)
        TOOL_fail("", 0, "the flat design would have %.3g instances and nets; %.3g are possible.", things,
                  SIZE_LIMIT);
    if (size.pins > PIN_LIMIT)
        TOOL_fail("", 0, "the flat design would have %.3g pins; %.3g are possible. %s", size.pins, PIN_LIMIT,
                  NL_SMALLER_DESIGN);
    work.flat.instances.reserve(static_cast<size_t>(size.instances));
    work.flat.nets.reserve(static_cast<size_t>(size.nets));
    work.flat.pins.reserve(static_cast<size_t>(size.pins));
    work.sets.parent.reserve(work.flat.nets.capacity());
}

void expand(FLATTENER &work, int32_t index, const int32_t *outside, int32_t scope) {
    const NL_MODULE &module = work.design.modules[static_cast<size_t>(index)];
    const NL_NAMES &names = work.design.names;
    size_t path_length = scope_length(work, scope);
    bool paths_fit = path_length + work.longest_name <= FULL_NAME_LIMIT;
    std::vector<int32_t> place = place_nets(work, module, outside, scope);
    auto flat_net = [&](int32_t net) { return net == NL_NONE ? NL_NONE : place[static_cast<size_t>(net)]; };
    if (scope == NL_NONE) {
        work.flat.ports = module.ports;
        for (NL_PORT &port : work.flat.ports)
            port.net = flat_net(port.net);
    }
    for (const NL_INSTANCE &instance : module.instances) {
        const NL_MODULE &def = work.design.modules[static_cast<size_t>(instance.def)];
        if (!paths_fit && path_length + NL_text(names, instance.name).size() > FULL_NAME_LIMIT)
            TOOL_fail("", 0, "the name of the instance '%s' in module '%s' is too long with its path.",
                      NL_string(names, instance.name).c_str(), NL_string(names, module.name).c_str());
        const int32_t *nets = module.pins.data() + instance.first_pin;
        auto copy = static_cast<int32_t>(work.flat.instances.size());
        auto first_pin = static_cast<int32_t>(work.flat.pins.size());
        work.flat.instances.push_back(
            {instance.name, scope, instance.def, def.is_cell ? first_pin : NL_NONE});
        if (def.is_cell) {
            for (size_t i = 0; i < def.ports.size(); i++)
                work.flat.pins.push_back(flat_net(nets[i]));
            continue;
        }
        work.flat.scopes.push_back({instance.name, scope, copy});
        std::vector<int32_t> connected(def.ports.size());
        std::transform(nets, nets + connected.size(), connected.begin(), flat_net);
        expand(work, instance.def, connected.data(), static_cast<int32_t>(work.flat.scopes.size()) - 1);
    }
}

void check_joined(FLATTENER &work) {
    if (NL_union_find(work.sets, NL_VCC) == NL_GND)
        TOOL_fail("", 0, "the design joins the constants 0 and 1.");
}

} // namespace

NL_MODULE NL_flatten(NL_DESIGN &design, int32_t top) {
    FLATTENER work{design};
    check_size(work, top);
    for (std::string_view name : design.names.texts)
        work.longest_name = std::max(work.longest_name, name.size());
    const NL_MODULE &module = design.modules[static_cast<size_t>(top)];
    work.flat.name = module.name;
    work.flat.defined = true;
    NL_add_net(work.flat, module.nets[NL_GND].name);
    NL_add_net(work.flat, module.nets[NL_VCC].name);
    NL_union_init(work.sets, work.flat.nets.size());
    expand(work, top, nullptr, NL_NONE);
    NL_join_constants(work.flat, work.sets);
    check_joined(work);
    NL_merge_nets(work.flat, work.sets);
    NL_name_port_nets(design, work.flat);
    int32_t twice = NL_NONE;
    NL_close_ports(design, work.flat, twice);
    return std::move(work.flat);
}

namespace {

// What stands on a net of a flat design: pins alone, or a port of that direction as well.
enum NET_COMPANY : uint8_t { NO_PIN, ONE_PIN, SEVERAL_PINS, WITH_OUTPUT, WITH_INOUT, WITH_INPUT };

std::vector<uint8_t> company_of_nets(const NL_MODULE &flat) {
    static constexpr uint8_t of_direction[] = {WITH_OUTPUT, WITH_INOUT, WITH_INPUT};
    std::vector<uint8_t> company(flat.nets.size(), NO_PIN);
    company[NL_GND] = company[NL_VCC] = SEVERAL_PINS;
    for (const NL_ASSIGN &assign : flat.assigns)
        for (int32_t net : {assign.left, assign.right})
            company[static_cast<size_t>(net)] = SEVERAL_PINS;
    for (const NL_PORT &port : flat.ports)
        if (port.net > NL_VCC)
            company[static_cast<size_t>(port.net)] = of_direction[port.direction];
    for (int32_t net : flat.pins)
        if (net != NL_NONE && company[static_cast<size_t>(net)] < SEVERAL_PINS)
            company[static_cast<size_t>(net)]++;
    return company;
}

// How an instance stands between the ports and the core.
struct SURROUNDINGS {
    bool reads_port = false;  // it may be the pad of an input
    bool drives_port = false; // it may be the pad of an output, or of both directions
    bool feeds_core = false;  // an output has company
};

SURROUNDINGS surroundings(const std::vector<NL_PORT> &ports, const int32_t *nets,
                          const std::vector<uint8_t> &company) {
    SURROUNDINGS around;
    for (size_t i = 0; i < ports.size(); i++) {
        uint8_t found = nets[i] > NL_VCC ? company[static_cast<size_t>(nets[i])] : uint8_t{NO_PIN};
        around.reads_port |= found == WITH_INPUT && ports[i].direction != NL_OUTPUT;
        around.drives_port |= (found == WITH_OUTPUT || found == WITH_INOUT) && ports[i].direction != NL_INPUT;
        around.feeds_core |= found == SEVERAL_PINS && ports[i].direction == NL_OUTPUT;
    }
    return around;
}

// A pad of one direction that leads nowhere waits for the TAP: its pins stay on their nets, whose names are
// those that the user knows. So does a don't-care bit of a cell in the core.
bool waits_for_driver(const SURROUNDINGS &around, int32_t direction, bool dont_care) {
    if (direction != NL_INPUT)
        return direction == NL_OUTPUT && around.reads_port && !around.feeds_core;
    return around.drives_port ? !around.feeds_core : dont_care;
}

} // namespace

void NL_open_lone_pins(const NL_DESIGN &design, NL_MODULE &flat) {
    std::vector<uint8_t> company = company_of_nets(flat);
    for (const NL_INSTANCE &instance : flat.instances) {
        if (instance.first_pin == NL_NONE)
            continue;
        const auto &ports = design.modules[static_cast<size_t>(instance.def)].ports;
        int32_t *nets = flat.pins.data() + instance.first_pin;
        auto is_alone = [&](int32_t net) {
            return net != NL_NONE && company[static_cast<size_t>(net)] == ONE_PIN;
        };
        if (std::none_of(nets, nets + ports.size(), is_alone))
            continue;
        SURROUNDINGS around = surroundings(ports, nets, company);
        for (size_t i = 0; i < ports.size(); i++) {
            if (!is_alone(nets[i]))
                continue;
            bool dont_care = (flat.nets[static_cast<size_t>(nets[i])].marks & NL_MARK_DONT_CARE) != 0;
            if (!waits_for_driver(around, ports[i].direction, dont_care))
                nets[i] = NL_NONE;
        }
    }
}
