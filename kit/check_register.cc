// Rules about the boundary register and its pads: the chain, a cell for each port, the wires in between, the
// enables.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "support/text.hh"

#include <algorithm>
#include <set>

namespace {

bool is_exempt(const CHECK_CHIP &chip, int32_t port) {
    return port < 0 || chip.ports[static_cast<size_t>(port)].is_exempt;
}

const WALK_PAD_ROW &pad_row(const CHECK_CHIP &chip, int32_t pad) {
    return chip.found.walk.pads[static_cast<size_t>(pad)];
}

/// A gate of the core right before a pad, and the pad's pin.
struct PAD_GATE {
    int32_t pad, node;
};
using PAD_GATES = std::unordered_map<int32_t, PAD_GATE>; // by the gate's object

PAD_GATES find_gates(const CHECK_CHIP &chip, bool enables) {
    PAD_GATES gates;
    for (size_t i = 0; i < chip.found.walk.pads.size(); ++i) {
        const WALK_PAD_ROW &pad = chip.found.walk.pads[i];
        const BUFFER_CELL &buffer = *pad.buffer;
        for (const char *pin :
             {enables ? buffer.en_l : pad.core_in, enables ? buffer.en_h : buffer.mux_in1}) {
            int32_t node = is_exempt(chip, pad.port) ? -1 : walk_pin(pad.obj, pin);
            WALK_POINT source = walk_back(chip.found.walk, node);
            if (source.end == WALK_CORE)
                gates.emplace(source.row, PAD_GATE{static_cast<int32_t>(i), node});
        }
    }
    return gates;
}

/// True for a row that stands before the core.
bool is_reading(const REGISTER_ROW &row) {
    return row.kind == ROW_INPUT || row.kind == ROW_CLOCK || row.kind == ROW_OBSERVE;
}

/// Logic behind cells that should stand right before their pads. Gives the pads' pins that it drives.
std::set<int32_t> find_logic_before_pads(CHECK_CHIP &chip, bool enables) {
    PAD_GATES gates = find_gates(chip, enables);
    std::set<int32_t> told;
    for (const REGISTER_ROW &row : chip.found.rows) {
        const REGISTER_CELL &cell = chip.found.cells[static_cast<size_t>(row.cell)];
        int32_t node = is_reading(row) || gates.empty() ? -1 : walk_pin(cell.obj, cell.cell->data_out);
        for (const WALK_POINT &point : walk_forward(chip.found.walk, node)) {
            auto gate = point.end == WALK_CORE ? gates.find(point.row) : gates.end();
            if (gate == gates.end() || !told.insert(gate->second.node).second)
                continue;
            const WALK_PAD_ROW &pad = pad_row(chip, gate->second.pad);
            add_check(chip, enables ? 17 : 16, {point.row, gate->second.node, pad.port},
                      format_text("%s stands between boundary cell '%s' and the %s of pad '%s'",
                                  chip_class_name(obj_tab[point.row].class_id).c_str(), cell.instance.c_str(),
                                  enables ? "enable" : "data pin", chip_instance_name(pad.obj).c_str()));
        }
    }
    return told;
}

/// The pad that a gate reads, or -1.
int32_t pad_before(const CHECK_CHIP &chip, int32_t gate) {
    int32_t class_id = obj_tab[gate].class_id;
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
        int32_t node = obj_tab[gate].first_node + i;
        if (chip_pin_direction(node_tab[node].pin) != SDB_INPUT)
            continue;
        WALK_POINT point = walk_back(chip.found.walk, node);
        if (point.end == WALK_PAD && walk_is_pin(point.node, pad_row(chip, point.row).core_out))
            return point.row;
    }
    return -1;
}

/// Logic before cells that serve no port, where it reads a pad that no cell reads.
void find_logic_behind_pads(CHECK_CHIP &chip) {
    std::set<int32_t> told;
    for (const REGISTER_ROW &row : chip.found.rows) {
        const REGISTER_CELL &cell = chip.found.cells[static_cast<size_t>(row.cell)];
        int32_t node = row.kind == ROW_INTERNAL ? walk_pin(cell.obj, cell.cell->data_in) : -1;
        WALK_POINT source = node < 0 ? WALK_POINT{} : walk_back(chip.found.walk, node);
        if (source.end != WALK_CORE || !told.insert(source.row).second)
            continue;
        int32_t pad = pad_before(chip, source.row), port = pad < 0 ? -1 : pad_row(chip, pad).port;
        if (!is_exempt(chip, port) && !chip.ports[static_cast<size_t>(port)].is_read)
            add_check(chip, 16, {source.row, node, port},
                      format_text("%s stands between pad '%s' and boundary cell '%s'",
                                  chip_class_name(obj_tab[source.row].class_id).c_str(),
                                  chip_instance_name(pad_row(chip, pad).obj).c_str(), cell.instance.c_str()));
    }
}

/// Pads that the core reads past a cell which has no pin to it, as BC_8; the comparison refuses other ways
/// past cells.
void find_ways_past_cells(CHECK_CHIP &chip) {
    for (const REGISTER_ROW &row : chip.found.rows) {
        const REGISTER_CELL &cell = chip.found.cells[static_cast<size_t>(row.cell)];
        if (!row.cuts || row.kind != ROW_BIDIR || row.pad < 0 || cell.cell->sys_in != nullptr ||
            pad_row(chip, row.pad).buffer->kind == BUFFER_BS || is_exempt(chip, row.port))
            continue;
        int32_t node = walk_pin(pad_row(chip, row.pad).obj, pad_row(chip, row.pad).core_out);
        if (int32_t reader = first_core_reader(chip.found.walk, node); reader >= 0)
            add_check(chip, 16, {node_tab[reader].obj, reader, row.port},
                      format_text("the core reads the port past boundary cell '%s', which has no pin to it",
                                  cell.instance.c_str()),
                      FINDING_WARNING);
    }
}

/// A cell for both ways of a pad that reads something else than the pad it drives.
void find_strange_readings(CHECK_CHIP &chip) {
    for (const REGISTER_ROW &row : chip.found.rows) {
        const REGISTER_CELL &cell = chip.found.cells[static_cast<size_t>(row.cell)];
        const WALK_PAD_ROW *pad = row.pad < 0 || is_reading(row) ? nullptr : &pad_row(chip, row.pad);
        int32_t node = walk_pin(cell.obj, cell.cell->sys_pin), way_in = walk_pin(cell.obj, cell.cell->sys_in);
        if (pad == nullptr || pad->core_out == nullptr || node < 0 || pad->obj == cell.obj ||
            chip_is_alone(way_in))
            continue;
        WALK_POINT source = walk_back(chip.found.walk, node);
        if (source.end != WALK_PAD || source.row != row.pad || !walk_is_pin(source.node, pad->core_out))
            add_check(
                chip, 16, {cell.obj, node, row.port},
                format_text("pin %s of the boundary cell hangs on %s, not on the pad that the cell drives",
                            cell.cell->sys_pin, end_text(chip, source).c_str()));
    }
}

/// What a port without cells would need them for.
struct PORT_WANTS {
    bool read = false, driven = false;
    int32_t node = -1;
};

PORT_WANTS wants_of_pad(CHECK_CHIP &chip, const WALK_PAD_ROW &pad) {
    PORT_WANTS wants;
    int32_t out = walk_pin(pad.obj, pad.core_out), in = walk_pin(pad.obj, pad.core_in);
    wants.read = !chip_is_alone(out);
    bool has_data = in >= 0 && !is_fixed(chip, walk_back(chip.found.walk, in));
    bool is_held = false, is_lost = false;
    for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h}) {
        WALK_POINT enable = walk_back(chip.found.walk, walk_pin(pad.obj, pin));
        is_held |= pin != nullptr && pad.pin != pad.buffer->input && !is_fixed(chip, enable);
        is_lost |= enable.end == WALK_CORE && pad.core_in != nullptr;
    }
    // A pad that the core alone can turn on, or nobody, is told by its enable.
    wants.driven =
        (has_data || is_held) && !is_lost && !chip.found.ports[static_cast<size_t>(pad.port)].is_off;
    wants.node = wants.read ? out : in;
    return wants;
}

PORT_WANTS wants_of_port(CHECK_CHIP &chip, int32_t port) {
    int32_t node = port_tab[port].node;
    PORT_WANTS wants;
    for (int32_t pad : chip.found.ports[static_cast<size_t>(port)].pads) {
        PORT_WANTS more = wants_of_pad(chip, pad_row(chip, pad));
        wants = {wants.read || more.read, wants.driven || more.driven, more.node};
    }
    if (!chip.found.ports[static_cast<size_t>(port)].pads.empty() || chip_is_alone(node))
        return wants;
    SDB_DIRECTION direction = chip_port_direction(port);
    if (direction != SDB_INPUT && direction != SDB_OUTPUT) { // one cell for either way is enough to be sought
        const CHECKED_PORT &served = chip.ports[static_cast<size_t>(port)];
        return {!served.is_driven, false, node};
    }
    bool has_source = direction == SDB_OUTPUT && !is_fixed(chip, walk_back(chip.found.walk, node));
    return {direction == SDB_INPUT, has_source, node};
}

/// One enable of a pad that the register should hold.
void check_enable(CHECK_CHIP &chip, const WALK_PAD_ROW &pad, const char *pin) {
    int32_t node = walk_pin(pad.obj, pin);
    WALK_POINT source = walk_back(chip.found.walk, node);
    bool is_constant = is_fixed(chip, source); // through gates: what it holds the pad at is not known
    bool has_data = !is_fixed(chip, walk_back(chip.found.walk, walk_pin(pad.obj, pad.core_in)));
    if (source.end == WALK_CELL || source.end == WALK_TAP ||
        (is_constant && (source.end != WALK_CORE || !has_data)))
        return;
    add_check(chip, 17, {pad.obj, node, pad.port},
              format_text("enable %s of the pad hangs on %s, not on a control cell", pin,
                          end_text(chip, source).c_str()),
              is_constant ? FINDING_WARNING : FINDING_ERROR);
}

} // namespace

void check_chain(CHECK_CHIP &chip) {
    compare_boundary_order(chip.found, chip.run.design + ".bso");
    add_faults(chip, 13, {"chain", "order"});
}

void check_cell_of_each_port(CHECK_CHIP &chip) {
    for (int32_t port = 0; port < port_count; ++port) {
        const CHECKED_PORT &served = chip.ports[static_cast<size_t>(port)];
        if (served.is_exempt)
            continue;
        PORT_WANTS wants = wants_of_port(chip, port);
        const std::vector<int32_t> &pads = chip.found.ports[static_cast<size_t>(port)].pads;
        int32_t obj = pads.empty() ? -1 : pad_row(chip, pads[0]).obj;
        for (bool reads : {true, false})
            if (reads ? wants.read && !served.is_read : wants.driven && !served.is_driven)
                add_check(chip, 15, {obj, wants.node, port},
                          format_text("no boundary cell %s port '%s'", reads ? "captures" : "drives",
                                      chip_port_name(port).c_str()));
    }
}

void check_wires_to_pads(CHECK_CHIP &chip) {
    for (const REGISTER_ROW &row : chip.found.rows)
        if (row.port >= 0 && row.inverters % 2 != 0 &&
            !chip.found.ports[static_cast<size_t>(row.port)].is_declared_inverted)
            add_check(chip, 16, {chip.found.cells[static_cast<size_t>(row.cell)].obj, -1, row.port},
                      "an inverter stands between the cell and its pad", FINDING_WARNING);
    find_logic_before_pads(chip, false);
    find_logic_behind_pads(chip);
    find_ways_past_cells(chip);
    find_strange_readings(chip);
    compare_with_source(chip.found, chip.run.design + ".c.sdb");
    add_faults(chip, 16, {"wire"});
}

void check_enables(CHECK_CHIP &chip) {
    std::set<int32_t> told = find_logic_before_pads(chip, true);
    for (const WALK_PAD_ROW &pad : chip.found.walk.pads) {
        // A multiplexer in the enable takes it over; the enable of a pad with a cell inside may be inside,
        // too.
        bool has_own =
            pad.buffer->kind == BUFFER_BS || (pad.core_in == nullptr && pad.buffer->mux_in1 != nullptr);
        if (is_exempt(chip, pad.port) || has_own)
            continue;
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
            if (pin != nullptr && !told.contains(walk_pin(pad.obj, pin)))
                check_enable(chip, pad, pin);
        int32_t data = walk_pin(pad.obj, pad.core_in);
        if (data >= 0 && walk_back(chip.found.walk, data).end == WALK_MANY)
            add_check(chip, 17, {pad.obj, data, pad.port}, "the pad's data pin has two drivers");
    }
    add_faults(chip, 17, {"enable", "two cells drive"});
}

void check_off_values(CHECK_CHIP &chip) {
    // The ports of each control cell by the value that turns their pads off.
    std::unordered_map<int32_t, std::vector<std::string>> off_at[2];
    std::vector<int32_t> controls;
    for (const REGISTER_ROW &row : chip.found.rows) {
        if (row.control < 0 || row.disable < 0)
            continue;
        off_at[row.disable][row.control].push_back(chip_port_name(row.port));
        controls.push_back(row.control);
    }
    std::sort(controls.begin(), controls.end());
    controls.erase(std::unique(controls.begin(), controls.end()), controls.end());
    for (int32_t control : controls)
        if (off_at[0].contains(control) && off_at[1].contains(control))
            add_check(chip, 18, {chip.found.cells[static_cast<size_t>(control)].obj, -1, -1},
                      format_text("0 turns off %s, 1 turns off %s", few_of(off_at[0][control]).c_str(),
                                  few_of(off_at[1][control]).c_str()),
                      FINDING_WARNING);
}
