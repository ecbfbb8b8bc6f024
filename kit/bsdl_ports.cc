// The ports of the entity: which names, which modes, which pins of the package.
#include "kit/bsdl_file.hh"

#include "description/hash_tables.hh"
#include "description/lookups.hh"
#include "kit/chip.hh"
#include "kit/names.hh"
#include "kit/pads.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>

namespace {

bool is_output(ROW_KIND kind) {
    return kind == ROW_OUTPUT2 || kind == ROW_OUTPUT3 || kind == ROW_OPEN;
}

/// What the rows of a port say together.
struct PORT_USES {
    bool reads = false, drives2 = false, drives3 = false, both = false, watched = false;
};

void fault(BOUNDARY_REGISTER &found, int32_t port, const std::string &text) {
    found.faults.push_back({"port", text, "", "", port < 0 ? "" : chip_port_name(port)});
}

/// Takes a port out of the register: its rows serve nobody.
void release_rows(BOUNDARY_REGISTER &found, int32_t port) {
    found.ports[static_cast<size_t>(port)].is_released = true;
    for (REGISTER_ROW &row : found.rows)
        if (row.port == port) {
            row = {row.cell, ROW_INTERNAL};
            row.cuts = true;
        }
}

/// Rows that the standard has no words for become internal cells, and their ports linkage.
void release_strange_ports(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    std::vector<bool> controlled(found.ports.size()), inverted(found.ports.size());
    for (const REGISTER_ROW &row : found.rows)
        if (row.port >= 0) {
            auto port = static_cast<size_t>(row.port);
            controlled[port] = controlled[port] || row.control >= 0;
            inverted[port] = inverted[port] || row.inverters % 2 != 0;
        }
    for (size_t port = 0; port < found.ports.size(); ++port) {
        auto id = static_cast<int32_t>(port);
        std::string name = file.word_of_port[port];
        if (found.ports[port].follows_core && controlled[port]) {
            file.warnings.push_back("A second enable of port " + name + " follows the core.");
        } else if (found.ports[port].follows_core) {
            release_rows(found, id);
            file.warnings.push_back("The enable of port " + name +
                                    " follows the core in every instruction, so the port is linkage.");
        } else if (inverted[port]) {
            release_rows(found, id);
            file.warnings.push_back(
                "The boundary cell of port " + name +
                " stands behind an inverter and sees the inverted pin, so the port is linkage.");
        } else if (found.ports[port].same_net >= 0) {
            release_rows(found, id);
            file.warnings.push_back("Port " + name + " is on the net of port " +
                                    file.word_of_port[static_cast<size_t>(found.ports[port].same_net)] +
                                    ", so it is linkage.");
        }
    }
    // A cell needs one internal row at most, and none beside a row for a port.
    std::vector<bool> serves(found.cells.size());
    for (const REGISTER_ROW &row : found.rows)
        if (row.kind != ROW_INTERNAL)
            serves[static_cast<size_t>(row.cell)] = true;
    std::erase_if(found.rows, [&serves](const REGISTER_ROW &row) {
        bool goes = row.kind == ROW_INTERNAL && serves[static_cast<size_t>(row.cell)];
        serves[static_cast<size_t>(row.cell)] =
            serves[static_cast<size_t>(row.cell)] || row.kind == ROW_INTERNAL;
        return goes;
    });
}

/// On a pin that the chip drives at all times an input cell watches what it drives.
void watch_driven_pins(BOUNDARY_REGISTER &found) {
    std::vector<int32_t> driver(found.ports.size(), -1);
    for (const REGISTER_ROW &row : found.rows)
        if (row.kind == ROW_OUTPUT2)
            driver[static_cast<size_t>(row.port)] = row.cell;
    std::erase_if(found.rows, [&driver](const REGISTER_ROW &row) {
        return row.kind == ROW_INPUT && driver[static_cast<size_t>(row.port)] == row.cell;
    });
    for (REGISTER_ROW &row : found.rows)
        if (row.kind == ROW_INPUT && driver[static_cast<size_t>(row.port)] >= 0)
            row.kind = ROW_OBSERVE;
}

/// Cells of bidirectional pads that leave the way in to the core alone are outputs: BC_9 and BC_10.
void settle_output_cells(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    std::string ports;
    for (REGISTER_ROW &row : found.rows) {
        const SCAN_CELL &cell = *found.cells[static_cast<size_t>(row.cell)].cell;
        bool is_output = false;
        for (const char *type : rows(cell.std_names))
            is_output = is_output || same_text(type, "BC_9") || same_text(type, "BC_10");
        if (row.kind != ROW_BIDIR || cell.sys_in != nullptr || !is_output)
            continue;
        row.kind = ROW_OUTPUT3;
        ports += (ports.empty() ? "" : ", ") + file.word_of_port[static_cast<size_t>(row.port)];
    }
    if (!ports.empty())
        file.warnings.push_back("The core reads these bidirectional pins past the register: " + ports + ".");
}

/// Other pins of the pads that the core drives (drive strength, enable of the way in): they decide in a test
/// whether and how the pad works.
void warn_of_pad_pins(BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    std::map<std::string, std::vector<int32_t>> ports; // by pin
    for (const WALK_PAD_ROW &pad : found.walk.pads) {
        int32_t class_id = obj_tab[pad.obj].class_id;
        for (int32_t i = 0; pad.port >= 0 && i < class_tab[class_id].pin_count; ++i) {
            int32_t node = obj_tab[pad.obj].first_node + i;
            std::string pin = chip_pin_name(node_tab[node].pin);
            if (chip_pin_direction(node_tab[node].pin) == SDB_INPUT && !kit_is_power_name(pin) &&
                !pad_describes(*pad.buffer, pin) && walk_back(found.walk, node).end == WALK_CORE &&
                chip_source(node) == SOURCE_CORE)
                ports[kit_bit(pin).base].push_back(pad.port);
        }
    }
    for (const auto &[pin, of_pin] : ports)
        file.warnings.push_back(
            format_text("Pin %s follows the core at %zu pads, that of port %s among them.", pin.c_str(),
                        of_pin.size(), file.word_of_port[static_cast<size_t>(of_pin[0])].c_str()));
}

std::vector<PORT_USES> uses_of_ports(const BOUNDARY_REGISTER &found) {
    std::vector<PORT_USES> uses(found.ports.size());
    for (const REGISTER_ROW &row : found.rows) {
        if (row.port < 0)
            continue;
        PORT_USES &use = uses[static_cast<size_t>(row.port)];
        use.reads |= row.kind == ROW_INPUT || row.kind == ROW_CLOCK;
        use.both |= row.kind == ROW_BIDIR;
        use.drives2 |= row.kind == ROW_OUTPUT2;
        use.drives3 |= is_output(row.kind) && row.kind != ROW_OUTPUT2;
        use.watched |= row.kind == ROW_OBSERVE;
    }
    return uses;
}

BSDL_MODE mode_of_uses(const PORT_USES &use) {
    if (use.both || (use.reads && use.drives3))
        return MODE_INOUT;
    if (use.drives3)
        return MODE_OUT;
    return use.drives2 ? MODE_BUFFER : use.reads ? MODE_IN : MODE_LINKAGE;
}

/// A port of the compliance pattern, or none.
void take_port_without_cell(BSDL_FILE &file, const BOUNDARY_REGISTER &found, int32_t port) {
    const SKIP_SIGNAL *skip = find_record(SKIP_SIGNAL_HASH_TAB, chip_port_name(port).c_str());
    BSDL_MODE &mode = file.mode_of_port[static_cast<size_t>(port)];
    if (skip == nullptr && !found.ports[static_cast<size_t>(port)].is_released) {
        file.warnings.push_back("Port " + file.word_of_port[static_cast<size_t>(port)] +
                                " has no boundary cell.");
    } else if (skip != nullptr && skip->value != nullptr && chip_port_direction(port) == SDB_INPUT &&
               (same_text(skip->value, "0") || same_text(skip->value, "1"))) {
        mode = MODE_IN;
        file.compliance_ports.push_back(file.word_of_port[static_cast<size_t>(port)]);
        file.compliance_values += skip->value;
    }
}

void find_modes(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    std::vector<PORT_USES> uses = uses_of_ports(found);
    std::vector<int32_t> plus_of(found.ports.size(), -1);
    for (const WALK_PAD_ROW &pad : found.walk.pads)
        if (pad.minus_port >= 0)
            plus_of[static_cast<size_t>(pad.minus_port)] = pad.port;
    file.mode_of_port.assign(found.ports.size(), MODE_LINKAGE);
    for (size_t port = 0; port < uses.size(); ++port) {
        int8_t tap = found.ports[port].tap_port;
        file.mode_of_port[port] =
            tap >= 0 ? (tap == PORT_TDO ? MODE_OUT : MODE_IN) : mode_of_uses(uses[port]);
        if (tap >= 0 && (uses[port].reads || uses[port].drives2 || uses[port].drives3 || uses[port].both))
            fault(found, static_cast<int32_t>(port), "a port of the TAP has a boundary cell");
    }
    for (size_t port = 0; port < uses.size(); ++port) {
        if (plus_of[port] >= 0)
            file.mode_of_port[port] = file.mode_of_port[static_cast<size_t>(plus_of[port])];
        else if (file.mode_of_port[port] == MODE_LINKAGE)
            take_port_without_cell(file, found, static_cast<int32_t>(port));
    }
}

void find_pairs(BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    for (const WALK_PAD_ROW &pad : found.walk.pads) {
        if (pad.port < 0 || pad.minus_port < 0 ||
            file.mode_of_port[static_cast<size_t>(pad.port)] == MODE_LINKAGE)
            continue;
        (pad.buffer->kind == BUFFER_DIFF_CURRENT ? file.current_pairs : file.voltage_pairs)
            .push_back("(" + file.word_of_port[static_cast<size_t>(pad.port)] + ", " +
                       file.word_of_port[static_cast<size_t>(pad.minus_port)] + ")");
    }
}

// ---- pins of the package ------------------------------------------------------------------------------

/// The pins of each port by its name, and the pins that are no signals by their package name.
struct PACKAGE_PINS {
    std::unordered_map<std::string, std::vector<std::string>> of_port;
    std::vector<std::pair<std::string, std::vector<std::string>>> others;
};

PACKAGE_PINS package_pins(BOUNDARY_REGISTER &found) {
    PACKAGE_PINS pins;
    std::unordered_map<std::string, size_t> group;
    std::unordered_map<std::string, std::string> taken;
    for (const PIN_ENTRY *pin : rows(PIN_TABLE)) {
        if (bs_internal_word(pin->package_name) || pin->number == nullptr)
            continue;
        std::string name = bsdl_pin_name(pin->number);
        auto [place, is_new] = taken.emplace(lower_case(name), pin->number);
        if (!is_new || name.empty())
            found.faults.push_back({"pin",
                                    format_text("pin '%s' of the package can't be told from '%s'",
                                                pin->number, place->second.c_str()),
                                    "", "", ""});
        if (pin->top_name != nullptr) {
            pins.of_port[without_minus(pin->top_name)].push_back(name);
            continue;
        }
        std::string word = pin->package_name != nullptr ? pin->package_name : "NC";
        auto [at, is_first] = group.emplace(word, pins.others.size());
        if (is_first)
            pins.others.push_back({word, {}});
        pins.others[at->second].second.push_back(name);
    }
    return pins;
}

void refuse_pins(BOUNDARY_REGISTER &found, int32_t port, size_t count) {
    if (count == 0)
        fault(found, port, "the port has no row in the pin file, and a port of a BSDL file needs a pin");
    else
        fault(found, port, "the port stands on several pins, and a signal of a BSDL file has one");
}

/// True when the bits can stand in one vector of the entity.
bool is_uniform(const BSDL_FILE &file, const PACKAGE_PINS &pins, const CHIP_PORT_GROUP &group) {
    for (int32_t port : group.ports) {
        auto row = pins.of_port.find(chip_port_name(port));
        if (row == pins.of_port.end() || row->second.size() != 1 ||
            file.mode_of_port[static_cast<size_t>(port)] !=
                file.mode_of_port[static_cast<size_t>(group.ports[0])])
            return false;
    }
    return true;
}

void name_ports(BSDL_FILE &file, const std::vector<CHIP_PORT_GROUP> &groups,
                std::vector<std::string> &group_names) {
    file.word_of_port.assign(static_cast<size_t>(port_count), "");
    for (const CHIP_PORT_GROUP &group : groups) {
        group_names.push_back(bsdl_take_name(file.names, group.name));
        for (size_t i = 0; i < group.ports.size(); ++i) {
            int32_t bit = group.left + (group.left <= group.right ? 1 : -1) * static_cast<int32_t>(i);
            file.word_of_port[static_cast<size_t>(group.ports[i])] =
                group.is_vector ? format_text("%s(%d)", group_names.back().c_str(), bit) : group_names.back();
        }
    }
}

void add_scalar(BSDL_FILE &file, BOUNDARY_REGISTER &found, const PACKAGE_PINS &pins, int32_t port) {
    auto row = pins.of_port.find(chip_port_name(port));
    size_t count = row == pins.of_port.end() ? 0 : row->second.size();
    BSDL_MODE mode = file.mode_of_port[static_cast<size_t>(port)];
    if (count == 0 && mode == MODE_LINKAGE) {
        file.comments.push_back("Port " + file.word_of_port[static_cast<size_t>(port)] +
                                " has no row in the pin file and no part in a test: left out.");
        return;
    }
    if (count == 0 || (count > 1 && mode != MODE_LINKAGE)) {
        refuse_pins(found, port, count);
        return;
    }
    BSDL_PORT entry{file.word_of_port[static_cast<size_t>(port)],
                    mode,
                    count > 1,
                    1,
                    static_cast<int32_t>(count),
                    row->second};
    file.ports.push_back(entry);
}

/// Vectors whose bits differ become scalars, named before anything speaks of them.
void split_vectors(BSDL_FILE &file, const PACKAGE_PINS &pins, std::vector<CHIP_PORT_GROUP> &groups,
                   std::vector<bool> &is_split) {
    for (const CHIP_PORT_GROUP &group : groups) {
        is_split.push_back(group.is_vector && !is_uniform(file, pins, group));
        if (is_split.back())
            for (int32_t port : group.ports)
                file.word_of_port[static_cast<size_t>(port)] =
                    bsdl_take_name(file.names, chip_port_name(port));
    }
}

} // namespace

void bsdl_take_ports(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    std::vector<CHIP_PORT_GROUP> groups = chip_port_groups();
    PACKAGE_PINS pins = package_pins(found);
    std::vector<std::string> group_names;
    name_ports(file, groups, group_names);
    // A first look at the modes tells which vectors stay whole; the texts of the second have the final names.
    BSDL_FILE trial = file;
    BOUNDARY_REGISTER before = found;
    release_strange_ports(trial, before);
    watch_driven_pins(before);
    settle_output_cells(trial, before);
    find_modes(trial, before);
    std::vector<bool> is_split;
    file.mode_of_port = trial.mode_of_port;
    split_vectors(file, pins, groups, is_split);
    release_strange_ports(file, found);
    watch_driven_pins(found);
    settle_output_cells(file, found);
    warn_of_pad_pins(file, found);
    find_modes(file, found);
    find_pairs(file, found);
    for (size_t i = 0; i < groups.size(); ++i) {
        const CHIP_PORT_GROUP &group = groups[i];
        if (!group.is_vector || is_split[i]) {
            for (int32_t port : group.ports)
                add_scalar(file, found, pins, port);
            continue;
        }
        BSDL_PORT entry{group_names[i], file.mode_of_port[static_cast<size_t>(group.ports[0])],
                        true,           group.left,
                        group.right,    {}};
        for (int32_t port : group.ports)
            entry.pins.push_back(pins.of_port[chip_port_name(port)][0]);
        file.ports.push_back(std::move(entry));
    }
    for (const auto &[word, numbers] : pins.others)
        file.ports.push_back({bsdl_take_name(file.names, word), MODE_LINKAGE, numbers.size() > 1, 1,
                              static_cast<int32_t>(numbers.size()), numbers});
}
