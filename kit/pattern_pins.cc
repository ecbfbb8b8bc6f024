// The pins and cells of the patterns: which pins are driven, seen or left, and which cells drive them.
#include "kit/pattern_maker.hh"

#include "kit/chip.hh"
#include "support/text.hh"

#include <unordered_map>

namespace {

PATTERN_ROLE role_of(const STEP_MAKER &maker, int32_t port) {
    const REGISTER_PORT &row = maker.found.ports[static_cast<size_t>(port)];
    if (row.tap_port >= 0)
        return PIN_TEST;
    if (row.same_net >= 0)
        return PIN_LEFT;
    SDB_DIRECTION direction = chip_port_direction(port);
    if (direction == SDB_INPUT)
        return PIN_DRIVEN;
    if (direction == SDB_OUTPUT)
        return PIN_SEEN;
    if (maker.has_control[static_cast<size_t>(port)])
        return PIN_BOTH;
    bool is_known = maker.has_row[static_cast<size_t>(port)] || !row.pads.empty();
    return row.is_off ? PIN_DRIVEN : is_known ? PIN_SEEN : PIN_LEFT;
}

/// True when a pad on the port can let go of it: a weak driver on a wire that is always driven is not
/// resolved by every simulator.
bool may_release(const STEP_MAKER &maker, int32_t port) {
    if (chip_port_direction(port) == SDB_BIDIRECTIONAL)
        return true;
    for (int32_t pad : maker.found.ports[static_cast<size_t>(port)].pads) {
        const BUFFER_CELL &buffer = *maker.found.walk.pads[static_cast<size_t>(pad)].buffer;
        if (buffer.en_l != nullptr || buffer.en_h != nullptr)
            return true;
    }
    return false;
}

} // namespace

void take_pins(STEP_MAKER &maker) {
    std::unordered_map<std::string, const char *> skips;
    for (const SKIP_SIGNAL *skip : rows(SKIP_SIGNAL_TAB))
        skips.emplace(skip->name, skip->value);
    maker.list.pins.resize(maker.found.ports.size());
    maker.has_row.assign(maker.list.pins.size(), false);
    maker.has_control.assign(maker.list.pins.size(), false);
    for (const REGISTER_ROW &row : maker.found.rows)
        if (row.port >= 0) {
            auto port = static_cast<size_t>(row.port);
            maker.has_row[port] = true;
            maker.has_control[port] = maker.has_control[port] || (drives(row) && row.control >= 0);
        }
    for (size_t i = 0; i < maker.list.pins.size(); ++i) {
        PATTERN_PIN &pin = maker.list.pins[i];
        pin.name = chip_port_name(static_cast<int32_t>(i));
        pin.role = role_of(maker, static_cast<int32_t>(i));
        auto skip = skips.find(pin.name);
        if (skip != skips.end() && (same_text(skip->second, "0") || same_text(skip->second, "1")))
            pin.held = *skip->second;
        else if (skip != skips.end() && chip_port_direction(static_cast<int32_t>(i)) == SDB_BIDIRECTIONAL)
            pin.role = maker.found.ports[i].tap_port >= 0 ? PIN_TEST : PIN_LEFT;
    }
    for (const WALK_PAD_ROW &pad : maker.found.walk.pads) {
        if (pad.port >= 0 && pad.minus_port >= 0)
            pin_of(maker, pad.minus_port).minus_of = pad.port;
        const BUFFER_CELL &buffer = *pad.buffer;
        bool up = buffer.pull_1 != 0 || buffer.weak_1 != 0, down = buffer.pull_0 != 0 || buffer.weak_0 != 0;
        if (pad.port >= 0)
            pin_of(maker, pad.port).pull = buffer.keeper != 0 || (up && down) ? '-'
                                           : up                               ? '1'
                                           : down                             ? '0'
                                                                              : 'z';
    }
    for (PATTERN_PIN &pin : maker.list.pins)
        if (pin.minus_of >= 0 && pin.role != PIN_TEST)
            pin.role = pin_of(maker, pin.minus_of).role;
    for (size_t i = 0; i < maker.list.pins.size(); ++i) {
        PATTERN_PIN &pin = maker.list.pins[i];
        pin.is_pulled = pin.role == PIN_BOTH || ((pin.role == PIN_SEEN || pin.role == PIN_TEST) &&
                                                 may_release(maker, static_cast<int32_t>(i)));
    }
}

void take_cells(STEP_MAKER &maker) {
    maker.list.cells.resize(maker.cells());
    maker.straight.assign(maker.cells(), false);
    std::vector<int32_t> in(maker.cells(), -1), out(maker.cells(), -1);
    for (const REGISTER_ROW &row : maker.found.rows) {
        auto number = static_cast<size_t>(row.cell);
        PATTERN_CELL &cell = maker.list.cells[number];
        if (row.port < 0)
            continue;
        int32_t &side = drives(row) ? out[number] : in[number];
        side = side < 0 ? row.port : side;
        if (out[number] >= 0 && in[number] >= 0 && out[number] != in[number])
            maker.straight[number] = true;
        if (cell.pin >= 0 && !drives(row))
            continue;
        cell.pin = row.port;
        cell.inverted = row.inverters % 2 != 0;
        if (row.kind == ROW_OUTPUT3 || row.kind == ROW_BIDIR) {
            cell.control = row.control;
            cell.disable = row.disable;
        }
    }
    for (size_t i = 0; i < maker.cells(); ++i) {
        PATTERN_CELL &cell = maker.list.cells[i];
        cell.name = format_text("cell %zu (%s, %s)", i, maker.found.cells[i].instance.c_str(),
                                cell.pin < 0 ? "no port" : pin_of(maker, cell.pin).name.c_str());
    }
}

void sort_cells(STEP_MAKER &maker) {
    std::vector<bool> is_known(maker.cells(), false); // among the controls
    for (const REGISTER_ROW &row : maker.found.rows) {
        if (!drives(row))
            continue;
        if (maker.outputs.empty() || maker.outputs.back() != row.cell)
            maker.outputs.push_back(row.cell); // rows stand by cell
        if (row.control >= 0 && !is_known[static_cast<size_t>(row.control)]) {
            is_known[static_cast<size_t>(row.control)] = true;
            maker.controls.push_back(row.control);
        }
    }
    maker.code_of_port.assign(maker.list.pins.size(), -1);
    int32_t next = 0;
    for (size_t i = 0; i < maker.list.pins.size(); ++i) {
        const PATTERN_PIN &pin = maker.list.pins[i];
        if ((pin.role == PIN_DRIVEN || pin.role == PIN_BOTH) && pin.minus_of < 0)
            maker.code_of_port[i] = next++;
    }
    while ((size_t{1} << maker.code_bits) < static_cast<size_t>(next) + 2)
        ++maker.code_bits;
}
