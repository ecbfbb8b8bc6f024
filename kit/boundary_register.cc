#include "kit/boundary_register.hh"

#include "description/lookups.hh"
#include "kit/chip.hh"
#include "kit/json.hh"
#include "planning/tap_needs.hh"
#include "sdb/navigation.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace {

std::string net_of(int32_t node) {
    const char *name = node < 0 || node_tab[node].net < 0 ? nullptr : SDB_net_name(sdb, node_tab[node].net);
    return name != nullptr ? name : "";
}

void add_fault(BOUNDARY_REGISTER &found, const char *rule, int32_t obj, int32_t node, int32_t port,
               const std::string &text) {
    found.faults.push_back({rule, text, obj < 0 ? "" : chip_instance_name(obj), net_of(node),
                            port < 0 ? "" : chip_port_name(port)});
}

// ---- the TAP and its ports ----------------------------------------------------------------------------

bool find_tap(BOUNDARY_REGISTER &found) {
    const char *module = TAP_MODULE_NAME != nullptr ? TAP_MODULE_NAME : "vmr_tap";
    static const TAP_CELL no_names{};
    const TAP_CELL *tap = get_tap_cell(module);
    found.tap = tap != nullptr ? tap : &no_names;
    prepare_walk(found.walk, module);
    for (int32_t obj = 0; obj < obj_count; ++obj) {
        int32_t class_id = obj_tab[obj].class_id;
        if (class_id < 0 || !found.walk.classes[static_cast<size_t>(class_id)].is_tap)
            continue;
        if (found.tap_obj >= 0)
            add_fault(found, "tap", obj, -1, -1,
                      format_text("there is a second instance of the TAP '%s'", module));
        else
            found.tap_obj = obj;
    }
    if (found.tap_obj < 0)
        add_fault(found, "tap", -1, -1, -1,
                  format_text("the netlist has no instance of the TAP '%s'; was the run one with -add_tap?",
                              module));
    return found.tap_obj >= 0;
}

/// A cell of the chip between a test pad and the TAP that can only be a buffer, by its pins and its name;
/// with `may_invert` by its pins alone. Its far side, or -1.
int32_t beyond_plain_buffer(int32_t node, bool may_invert = false) {
    int32_t obj = node < 0 ? -1 : node_tab[node].obj, class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
    if (class_id < 0 || class_tab[class_id].pin_count != 2)
        return -1;
    std::string name = lower_case(chip_class_name(class_id));
    int32_t first = obj_tab[obj].first_node, other = node == first ? first + 1 : first;
    bool turns = chip_pin_direction(node_tab[node].pin) != chip_pin_direction(node_tab[other].pin);
    bool is_buffer = name.find("buf") != name.npos && name.find("inv") == name.npos;
    return turns && (is_buffer || may_invert) ? other : -1;
}

/// The port that a walk from or to the TAP reaches, straight or through its pad; -1 for none.
int32_t port_of_end(const NETLIST_WALK &walk, const WALK_POINT &point, const char *WALK_PAD_ROW::*pin) {
    if (point.end == WALK_PORT)
        return point.row;
    if (point.end != WALK_PAD)
        return -1;
    const WALK_PAD_ROW &pad = walk.pads[static_cast<size_t>(point.row)];
    return walk_is_pin(point.node, pad.*pin) ? pad.port : -1;
}

/// The ports of the TAP by its wires, held against the names that the BSC file gives.
void find_test_ports(BOUNDARY_REGISTER &found) {
    const struct {
        STANDARD_PORT port;
        const char *TAP_CELL::*field;
        const char *word, *declared;
    } pins[] = {{PORT_TDI, &TAP_CELL::tdi, "TDI", GLOBAL_TDI},
                {PORT_TMS, &TAP_CELL::tms, "TMS", GLOBAL_TMS},
                {PORT_TCK, &TAP_CELL::tck, "TCK", GLOBAL_TCK},
                {PORT_TRST, &TAP_CELL::trst, "TRST", GLOBAL_TRST},
                {PORT_TDO, &TAP_CELL::tdo, "TDO", GLOBAL_TDO}};
    for (const auto &pin : pins) {
        int32_t node = walk_pin(found.tap_obj, tap_pin_name(*found.tap, pin.field).c_str());
        int32_t port = -1, inverters = 0;
        if (pin.port != PORT_TDO) {
            WALK_POINT point = walk_back(found.walk, node);
            for (int32_t next; point.end == WALK_CORE && (next = beyond_plain_buffer(point.node)) >= 0;)
                point = walk_back(found.walk, next);
            port = port_of_end(found.walk, point, &WALK_PAD_ROW::core_out);
            inverters = point.inverters;
        } else {
            std::vector<WALK_POINT> ends = walk_forward(found.walk, node);
            for (size_t i = 0; i < ends.size(); ++i) { // the list grows behind a buffer
                if (int32_t at = port_of_end(found.walk, ends[i], &WALK_PAD_ROW::core_in); at >= 0) {
                    port = at;
                    inverters = ends[i].inverters;
                } else if (int32_t next = ends[i].end == WALK_CORE ? beyond_plain_buffer(ends[i].node) : -1;
                           next >= 0) {
                    std::vector<WALK_POINT> more = walk_forward(found.walk, next);
                    ends.insert(ends.end(), more.begin(), more.end());
                }
            }
        }
        found.test_ports[pin.port] = port;
        if (port >= 0)
            found.ports[static_cast<size_t>(port)].tap_port = static_cast<int8_t>(pin.port);
        bool is_wrong = port < 0
                            ? pin.port != PORT_TRST || pin.declared != nullptr
                            : pin.declared != nullptr && chip_port_name(port) != without_minus(pin.declared);
        if (is_wrong)
            add_fault(found, "tap", found.tap_obj, node, port,
                      format_text("%s of the TAP is not wired to the port '%s'", pin.word,
                                  pin.declared != nullptr ? without_minus(pin.declared) : pin.word));
        if (inverters % 2 != 0)
            add_fault(found, "tap", found.tap_obj, node, port,
                      format_text("%s reaches the TAP inverted", pin.word));
    }
}

/// The TDO pad is turned on by the TAP, or for good as it was before the run.
void check_tdo_enable(BOUNDARY_REGISTER &found) {
    int32_t port = found.test_ports[PORT_TDO];
    std::string expected = tap_pin_name(*found.tap, &TAP_CELL::tdo_en);
    for (int32_t number : port < 0 ? std::vector<int32_t>{} : found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(number)];
        for (bool low : {true, false}) {
            int32_t node = walk_pin(pad.obj, low ? pad.buffer->en_l : pad.buffer->en_h);
            WALK_POINT source = walk_back(found.walk, node);
            for (int32_t next;
                 source.end == WALK_CORE && (next = beyond_plain_buffer(source.node, true)) >= 0;)
                source = walk_back(found.walk, next);
            bool from_tap = source.end == WALK_TAP && walk_is_pin(source.node, expected.c_str());
            bool is_on = source.end == (low != (source.inverters % 2 != 0) ? WALK_ZERO : WALK_ONE);
            if (node >= 0 && !from_tap && !is_on)
                add_fault(found, "tap", pad.obj, node, port,
                          "the enable of the TDO pad is not driven by the TAP");
        }
    }
}

// ---- the chain ----------------------------------------------------------------------------------------

/// The next end of the chain behind a node: a cell's %TDI or the TAP's last-cell pin.
WALK_POINT chain_end(BOUNDARY_REGISTER &found, int32_t node, const std::string &last_pin, int32_t obj) {
    WALK_POINT next;
    int32_t count = 0;
    for (const WALK_POINT &point : walk_forward(found.walk, node)) {
        bool is_cell = point.end == WALK_CELL;
        const SCAN_CELL *cell =
            is_cell ? found.walk.classes[static_cast<size_t>(obj_tab[point.row].class_id)].cell : nullptr;
        if (!(is_cell && walk_is_pin(point.node, cell->tdi)) &&
            !(point.end == WALK_TAP && walk_is_pin(point.node, last_pin.c_str())))
            continue;
        next = point;
        ++count;
    }
    if (count == 1 && next.inverters % 2 == 0)
        return next;
    add_fault(found, "chain", obj, node, -1,
              count == 0  ? "the chain ends here: neither a cell nor the TAP's last-cell pin follows"
              : count > 1 ? "the chain forks here"
                          : "the chain is inverted here");
    return {};
}

std::vector<REGISTER_SIGNAL> extra_signals(const SCAN_CELL &cell, size_t count) {
    return std::vector<REGISTER_SIGNAL>(cell.extras == nullptr ? 0 : count);
}

REGISTER_SIGNAL signal_at(const BOUNDARY_REGISTER &found, int32_t obj, const char *pin) {
    REGISTER_SIGNAL signal;
    int32_t node = walk_pin(obj, pin);
    if (node < 0 || chip_pin_direction(node_tab[node].pin) == SDB_OUTPUT)
        return signal;
    signal.source = walk_back(found.walk, node);
    signal.is_inverted = signal.source.inverters % 2 != 0;
    if (signal.source.end == WALK_TAP)
        signal.tap_pin = chip_pin_name(node_tab[signal.source.node].pin);
    return signal;
}

REGISTER_CELL read_cell(const BOUNDARY_REGISTER &found, int32_t obj) {
    const SCAN_CELL *cell = found.walk.classes[static_cast<size_t>(obj_tab[obj].class_id)].cell;
    REGISTER_CELL row{obj, cell, chip_class_name(obj_tab[obj].class_id), chip_instance_name(obj), {}, {}, {}};
    for (int32_t signal = 0; signal < SIGNAL_COUNT; ++signal)
        row.signals[signal] = signal_at(found, obj, cell->*CONTROL_SIGNALS[signal].cell_pin);
    row.extras = extra_signals(*cell, rows(cell->extras).size());
    for (size_t i = 0; i < row.extras.size(); ++i)
        row.extras[i] = signal_at(found, obj, cell->extras[i]);
    row.oe_mode = signal_at(found, obj, cell->oe_mode);
    return row;
}

/// From TDI to TDO, then turned round, so that cell 0 stands next to TDO.
bool walk_chain(BOUNDARY_REGISTER &found) {
    std::string last_pin = tap_pin_name(*found.tap, &TAP_CELL::last_bcell);
    int32_t obj = found.tap_obj;
    int32_t node = walk_pin(obj, tap_pin_name(*found.tap, &TAP_CELL::first_bcell).c_str());
    std::unordered_set<int32_t> met;
    for (;;) {
        WALK_POINT next = chain_end(found, node, last_pin, obj);
        if (next.end == WALK_TAP)
            break;
        if (next.end != WALK_CELL)
            return false;
        obj = next.row;
        if (!met.insert(obj).second) {
            add_fault(found, "chain", obj, next.node, -1, "the chain comes to this cell twice");
            return false;
        }
        found.cells.push_back(read_cell(found, obj));
        node = walk_pin(obj, found.cells.back().cell->tdo);
    }
    std::reverse(found.cells.begin(), found.cells.end());
    for (int32_t i = 0; i < obj_count; ++i)
        if (obj_tab[i].class_id >= 0 && !met.contains(i) &&
            found.walk.classes[static_cast<size_t>(obj_tab[i].class_id)].cell != nullptr)
            add_fault(found, "chain", i, -1, -1, "this boundary cell is not in the chain");
    return !found.cells.empty();
}

// ---- what each cell does ------------------------------------------------------------------------------

/// The ends of a cell's data pins, sorted by what they mean.
struct CELL_ENDS {
    struct AT_PAD {
        int32_t pad = -1, port = -1; ///< pad -1: straight at the port
        WALK_POINT way{};
        bool enable_low = false; ///< for an enable
    };
    AT_PAD read;              ///< the pad or port that drives %DATA_IN; port -1 for none
    AT_PAD sensed;            ///< the same for %SYS_PIN
    std::vector<AT_PAD> data; ///< driven by the cell
    std::vector<AT_PAD> enables;
    bool cuts = false; ///< something hangs on what the cell gives out
};

CELL_ENDS::AT_PAD source_of(const BOUNDARY_REGISTER &found, int32_t obj, const char *pin) {
    int32_t node = walk_pin(obj, pin), own = found.walk.pad_of_obj[static_cast<size_t>(obj)];
    if (own >= 0 && walk_is_pin(node, found.walk.pads[static_cast<size_t>(own)].pin))
        return {own, found.walk.pads[static_cast<size_t>(own)].port, {}};
    WALK_POINT point = walk_back(found.walk, node);
    int32_t port = port_of_end(found.walk, point, &WALK_PAD_ROW::core_out);
    return {point.end == WALK_PAD ? point.row : -1, port, point};
}

/// Which part of a pad the pin at the node is. The third multiplexer input belongs to neither way.
enum PAD_PART { PART_NONE, PART_DATA, PART_ENABLE, PART_READING };
PAD_PART part_of_pad(const NETLIST_WALK &walk, const WALK_PAD_ROW &pad, int32_t node, bool &enable_low) {
    const BUFFER_CELL &buffer = *pad.buffer;
    // Where a cell has the multiplexer, the pin beside it stays with the core.
    bool has_mux = walk_back(walk, walk_pin(pad.obj, buffer.mux_in1)).end == WALK_CELL;
    enable_low = walk_is_pin(node, buffer.en_l);
    if (enable_low || walk_is_pin(node, buffer.en_h))
        return has_mux && pad.core_in == nullptr ? PART_NONE : PART_ENABLE;
    if (walk_is_pin(node, buffer.mux_in2))
        return PART_READING;
    if (walk_is_pin(node, buffer.mux_in1)) {
        // A pad without a data pin has its multiplexer in the enable.
        enable_low = buffer.en_l != nullptr;
        return pad.core_in == nullptr ? PART_ENABLE : PART_DATA;
    }
    return walk_is_pin(node, pad.core_in) && !has_mux ? PART_DATA : PART_NONE;
}

void take_loads(const BOUNDARY_REGISTER &found, int32_t node, CELL_ENDS &ends) {
    for (const WALK_POINT &point : walk_forward(found.walk, node)) {
        ends.cuts = true;
        int32_t obj = node_tab[point.node].obj;
        int32_t pad = obj < 0 ? -1 : found.walk.pad_of_obj[static_cast<size_t>(obj)];
        if (point.end == WALK_PORT) {
            ends.data.push_back({-1, point.row, point});
        } else if (pad >= 0) {
            const WALK_PAD_ROW &row = found.walk.pads[static_cast<size_t>(pad)];
            bool low = false;
            PAD_PART part = part_of_pad(found.walk, row, point.node, low);
            bool has_own_cell = point.end == WALK_CELL; // which stands between this pin and the port
            if (part == PART_DATA && !has_own_cell)
                ends.data.push_back({pad, row.port, point});
            else if (part == PART_ENABLE)
                ends.enables.push_back({pad, row.port, point, low});
        }
    }
}

CELL_ENDS ends_of(const BOUNDARY_REGISTER &found, const REGISTER_CELL &row) {
    CELL_ENDS ends;
    const SCAN_CELL &cell = *row.cell;
    int32_t own = found.walk.pad_of_obj[static_cast<size_t>(row.obj)];
    ends.read = source_of(found, row.obj, cell.data_in);
    ends.sensed = source_of(found, row.obj, cell.sys_pin);
    if (own >= 0) {
        const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(own)];
        ends.cuts = cell.data_out != nullptr;
        if (walk_is_pin(walk_pin(row.obj, cell.data_out), pad.pin))
            ends.data.push_back({own, pad.port, {}});
        return ends;
    }
    for (const char *pin : {cell.data_out, cell.sys_in, cell.update_dr_out})
        take_loads(found, walk_pin(row.obj, pin), ends);
    return ends;
}

/// How the enables of a pad are held.
struct PAD_ENABLE {
    int32_t control = -1; ///< cell, or -1
    int8_t disable = -1;
    bool follows_core = false, is_off = false;
};

PAD_ENABLE enable_of(BOUNDARY_REGISTER &found, const WALK_PAD_ROW &pad,
                     const std::unordered_map<int32_t, int32_t> &number_of_obj) {
    PAD_ENABLE enable;
    for (bool low : {true, false}) {
        const char *pin = low ? pad.buffer->en_l : pad.buffer->en_h;
        int32_t node = walk_pin(pad.obj, pin);
        WALK_POINT source = walk_back(found.walk, node);
        bool inverted = source.inverters % 2 != 0, off_at = low != inverted;
        auto number = source.end == WALK_CELL ? number_of_obj.find(source.row) : number_of_obj.end();
        if (pin == nullptr)
            continue;
        if (source.end == WALK_TAP) {
            // The command of HIGHZ turns it off under that instruction alone.
            bool is_command =
                walk_is_pin(source.node, tap_pin_name(*found.tap, &TAP_CELL::highz_command).c_str()) &&
                off_at != is_active_low(found.tap->highz_command);
            if (!is_command)
                add_fault(found, "enable", pad.obj, node, pad.port,
                          "the enable hangs on the TAP, and not on what %HIGHZ_COMMAND names");
        } else if (number != number_of_obj.end()) {
            const SCAN_CELL &cell = *found.cells[static_cast<size_t>(number->second)].cell;
            if (enable.control >= 0 && enable.control != number->second)
                add_fault(found, "enable", pad.obj, node, pad.port, "two control cells hold this pad");
            if (!walk_is_pin(source.node, cell.data_out) && !walk_is_pin(source.node, cell.update_dr_out))
                add_fault(found, "enable", pad.obj, node, pad.port,
                          "the enable hangs on a pin of its control cell that is not %DATA_OUT");
            enable.control = number->second;
            enable.disable = off_at ? 1 : 0;
        } else if (source.end == WALK_ZERO || source.end == WALK_ONE) {
            enable.is_off |= ((source.end == WALK_ONE) != inverted) == low;
        } else if (source.end == WALK_MANY) {
            add_fault(found, "enable", pad.obj, node, pad.port, "the enable has two drivers");
        } else {
            enable.follows_core = true;
        }
    }
    return enable;
}

/// All of it by cell, and what the rows are made from.
struct REGISTER_MAKER {
    BOUNDARY_REGISTER &found;
    std::vector<CELL_ENDS> ends;
    std::unordered_map<int32_t, int32_t> number_of_obj;
    std::vector<int32_t> server; ///< by port: the cell that stands in its way in, or -1
    std::vector<int32_t> first_watcher;
    std::vector<int32_t> data_of_pad; ///< by pad: the cell that drives its data

    void add_row(int32_t cell, ROW_KIND kind, const CELL_ENDS::AT_PAD &at, bool cuts) {
        REGISTER_ROW row{cell, kind};
        row.port = at.port;
        row.pad = at.pad;
        row.buffers = at.way.buffers;
        row.inverters = at.way.inverters;
        row.cuts = cuts;
        found.rows.push_back(row);
    }
    void add_output(int32_t cell, const CELL_ENDS::AT_PAD &at);
    void add_enable_rows(int32_t cell);
    void add_reading_row(int32_t cell);
    void add_rows(int32_t cell);
};

void REGISTER_MAKER::add_output(int32_t cell, const CELL_ENDS::AT_PAD &at) {
    const CELL_ENDS &end = ends[static_cast<size_t>(cell)];
    PAD_ENABLE enable;
    if (at.pad >= 0)
        enable = enable_of(found, found.walk.pads[static_cast<size_t>(at.pad)], number_of_obj);
    bool senses = at.pad >= 0 && end.sensed.pad == at.pad;
    const REGISTER_CELL &own = found.cells[static_cast<size_t>(cell)];
    const WALK_PAD_ROW *pad = at.pad < 0 ? nullptr : &found.walk.pads[static_cast<size_t>(at.pad)];
    if (own.cell->sys_pin != nullptr && !senses && pad != nullptr && pad->obj != own.obj &&
        !chip_is_alone(walk_pin(pad->obj, pad->core_out)))
        add_fault(found, "pad", own.obj, walk_pin(own.obj, own.cell->sys_pin), at.port,
                  "the cell's %SYS_PIN does not see the pad that it drives");
    ROW_KIND kind = enable.control < 0 ? ROW_OUTPUT2 : senses ? ROW_BIDIR : ROW_OUTPUT3;
    REGISTER_PORT &port = found.ports[static_cast<size_t>(at.port)];
    port.follows_core |= enable.follows_core;
    port.is_off |= enable.is_off;
    // Of differential pads on one enable the run gives the cell to the first; any other pad has to have one.
    if (enable.follows_core && enable.control < 0 &&
        found.walk.pads[static_cast<size_t>(at.pad)].minus_port < 0)
        add_fault(found, "enable", found.walk.pads[static_cast<size_t>(at.pad)].obj, -1, at.port,
                  "the enable follows the core: no control cell holds it");
    // A pad that the register can't turn on or off belongs to the chip: its cell serves nobody.
    if (enable.is_off || (enable.follows_core && enable.control < 0)) {
        if (senses)
            add_row(cell, ROW_INPUT, end.sensed, true);
        else
            add_row(cell, ROW_INTERNAL, {}, true);
        return;
    }
    add_row(cell, kind, at, true);
    found.rows.back().control = enable.control;
    found.rows.back().disable = enable.disable;
    if (kind == ROW_OUTPUT2 && senses)
        add_row(cell, ROW_INPUT, end.sensed, true);
}

/// A pad whose data no cell gives has the cell in its enable.
void REGISTER_MAKER::add_enable_rows(int32_t cell) {
    const CELL_ENDS &end = ends[static_cast<size_t>(cell)];
    bool controls = false;
    for (const CELL_ENDS::AT_PAD &at : end.enables) {
        const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(at.pad)];
        if (pad.port < 0)
            continue;
        WALK_POINT data = walk_back(found.walk, walk_pin(pad.obj, pad.core_in));
        bool has_mux = walk_back(found.walk, walk_pin(pad.obj, pad.buffer->mux_in1)).end == WALK_CELL;
        bool has_own_cell =
            found.walk.classes[static_cast<size_t>(obj_tab[pad.obj].class_id)].cell != nullptr;
        bool is_open = pad.core_in == nullptr ||
                       (!has_mux && !has_own_cell && (data.end == WALK_ZERO || data.end == WALK_ONE));
        if (!is_open) {
            controls = true;
            continue;
        }
        add_row(cell, ROW_OPEN, at, true);
        found.rows.back().control = cell;
        found.rows.back().disable = at.enable_low != (at.way.inverters % 2 != 0) ? 1 : 0;
        found.rows.back().inverters = 0; // they are in the disabling value
    }
    if (!controls)
        return;
    if (!found.rows.empty() && found.rows.back().cell == cell)
        add_fault(found, "enable", found.cells[static_cast<size_t>(cell)].obj, -1, -1,
                  "one cell is the control of a pad and the data of an open-drain pad");
    add_row(cell, ROW_CONTROL, {}, true);
}

void REGISTER_MAKER::add_reading_row(int32_t cell) {
    const CELL_ENDS &end = ends[static_cast<size_t>(cell)];
    const CELL_ENDS::AT_PAD &at = end.read.port >= 0 ? end.read : end.sensed;
    auto port = static_cast<size_t>(at.port);
    bool watches = server[port] != cell;
    bool is_second = watches && (server[port] >= 0 || first_watcher[port] != cell);
    const BUFFER_CELL *pad = at.pad < 0 ? nullptr : found.walk.pads[static_cast<size_t>(at.pad)].buffer;
    bool is_clock = pad != nullptr && same_text_no_case(pad->function, "CLOCK");
    add_row(cell, is_second ? ROW_OBSERVE : watches && is_clock ? ROW_CLOCK : ROW_INPUT, at, !watches);
}

void REGISTER_MAKER::add_rows(int32_t cell) {
    const CELL_ENDS &end = ends[static_cast<size_t>(cell)];
    bool reads = end.read.port >= 0 || end.sensed.port >= 0;
    bool drives = false;
    for (const CELL_ENDS::AT_PAD &at : end.data)
        if (at.port >= 0) {
            add_output(cell, at);
            drives = true;
        }
    if (drives) {
        // An input that leads straight to the output and has no cell of its own.
        if (end.read.port >= 0 && server[static_cast<size_t>(end.read.port)] == cell)
            add_row(cell, ROW_INPUT, end.read, true);
    } else if (!end.enables.empty()) {
        add_enable_rows(cell);
    } else if (reads) {
        add_reading_row(cell);
    } else {
        add_row(cell, ROW_INTERNAL, {}, end.cuts);
    }
}

/// Which cell stands between each port and the core; of several, one that does nothing else.
void find_servers(REGISTER_MAKER &maker) {
    for (bool reads_alone : {true, false})
        for (size_t i = 0; i < maker.ends.size(); ++i) {
            const CELL_ENDS &end = maker.ends[i];
            for (const CELL_ENDS::AT_PAD *at : {&end.sensed, &end.read}) {
                if (at->port < 0 || (end.data.empty() && end.enables.empty()) != reads_alone)
                    continue;
                auto port = static_cast<size_t>(at->port);
                std::vector<int32_t> &list = end.cuts ? maker.server : maker.first_watcher;
                // What an output watches is its own pad: %SYS_PIN alone makes it no input.
                if (list[port] < 0 && !(at == &end.read && !end.cuts && !reads_alone))
                    list[port] = static_cast<int32_t>(i);
            }
        }
    // An output that watches a served input is no second server of it.
    for (size_t port = 0; port < maker.server.size(); ++port)
        if (int32_t cell = maker.server[port];
            cell >= 0 && maker.first_watcher[port] >= 0 &&
            !maker.ends[static_cast<size_t>(cell)].data.empty() &&
            maker.ends[static_cast<size_t>(cell)].sensed.port != static_cast<int32_t>(port))
            maker.server[port] = -1;
}

void note_inversions(BOUNDARY_REGISTER &found) {
    for (const REGISTER_ROW &row : found.rows)
        if (row.port >= 0 && row.inverters % 2 != 0 &&
            !found.ports[static_cast<size_t>(row.port)].is_declared_inverted)
            add_fault(found, "pad", found.cells[static_cast<size_t>(row.cell)].obj, -1, row.port,
                      "an inverter stands between the cell and its pad; a '-' before the port in the pin "
                      "file declares it");
}

void note_double_drivers(BOUNDARY_REGISTER &found) {
    std::unordered_map<int32_t, int32_t> driver;
    for (const REGISTER_ROW &row : found.rows) {
        if (row.port < 0 || (row.kind != ROW_OUTPUT2 && row.kind != ROW_OUTPUT3 && row.kind != ROW_BIDIR &&
                             row.kind != ROW_OPEN))
            continue;
        auto [place, is_new] = driver.emplace(row.port, row.cell);
        if (!is_new)
            add_fault(found, "pad", found.cells[static_cast<size_t>(row.cell)].obj, -1, row.port,
                      "two cells drive this port");
    }
}

/// A control pin hangs on the TAP's pin of its signal, with the polarity that the library file gives the
/// latter. Pads with a cell inside may leave a pin open.
void check_control_pin(BOUNDARY_REGISTER &found, const REGISTER_CELL &row, int32_t signal) {
    const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
    const REGISTER_SIGNAL &at = row.signals[signal];
    const char *pin = without_minus(row.cell->*info.cell_pin);
    bool is_clock = signal == SIG_BCLK; // of -synch alone
    if (pin == nullptr || at.source.end == WALK_NONE || (is_clock && walk_pin(found.tap_obj, BCELL_TCK) < 0))
        return;
    std::string expected = is_clock ? BCELL_TCK : tap_pin_name(*found.tap, info.tap_field);
    bool is_inverted = !is_clock && is_active_low(found.tap->*info.tap_field);
    if (at.source.end != WALK_TAP || lower_case(at.tap_pin) != lower_case(expected))
        add_fault(found, "cell", row.obj, walk_pin(row.obj, pin), -1,
                  format_text("the cell's pin %s is not on the TAP's pin %s", pin, expected.c_str()));
    else if (at.is_inverted != is_inverted)
        add_fault(found, "cell", row.obj, walk_pin(row.obj, pin), -1,
                  format_text("the cell's pin %s has the TAP's pin %s with the wrong polarity", pin,
                              expected.c_str()));
}

/// The multiplexer of a pad that a cell feeds is switched by the TAP's mode.
void check_mux_pad(BOUNDARY_REGISTER &found, const WALK_PAD_ROW &pad) {
    for (int32_t i = 0; i < 3; ++i) {
        const char *pin = pad.buffer->*PAD_MODES[i];
        const char *muxes[] = {pad.buffer->mux_in1, pad.buffer->mux_in2, pad.buffer->mux_in3};
        bool is_fed = false;
        for (const char *mux : muxes)
            is_fed = is_fed || walk_back(found.walk, walk_pin(pad.obj, mux)).end == WALK_CELL;
        int32_t node = walk_pin(pad.obj, pin);
        if (pin == nullptr || !is_fed)
            continue;
        WALK_POINT source = walk_back(found.walk, node);
        std::string expected = tap_pin_name(*found.tap, CONTROL_SIGNALS[MODE_SIGNALS[i]].tap_field);
        if (source.end != WALK_TAP || !walk_is_pin(source.node, expected.c_str()))
            add_fault(
                found, "pad", pad.obj, node, pad.port,
                format_text("the mode pin %s of the pad is not on the TAP's pin %s", pin, expected.c_str()));
    }
}

void check_pins_of_cells(BOUNDARY_REGISTER &found) {
    for (const WALK_PAD_ROW &pad : found.walk.pads)
        check_mux_pad(found, pad);
    for (const REGISTER_CELL &row : found.cells) {
        for (int32_t signal = 0; signal < SIGNAL_COUNT; ++signal)
            check_control_pin(found, row, signal);
        int32_t node = walk_pin(row.obj, row.cell->data_in);
        if (walk_back(found.walk, node).end == WALK_MANY)
            add_fault(found, "cell", row.obj, node, -1, "what the cell reads has two drivers");
    }
}

void make_rows(BOUNDARY_REGISTER &found) {
    auto ports = static_cast<size_t>(port_count);
    REGISTER_MAKER maker{found, {}, {}, std::vector<int32_t>(ports, -1), std::vector<int32_t>(ports, -1), {}};
    for (size_t i = 0; i < found.cells.size(); ++i) {
        maker.number_of_obj[found.cells[i].obj] = static_cast<int32_t>(i);
        maker.ends.push_back(ends_of(found, found.cells[i]));
    }
    find_servers(maker);
    for (size_t i = 0; i < found.cells.size(); ++i)
        maker.add_rows(static_cast<int32_t>(i));
    note_inversions(found);
    note_double_drivers(found);
    check_pins_of_cells(found);
}

void look_at_ports(BOUNDARY_REGISTER &found) {
    found.ports.resize(static_cast<size_t>(port_count));
    for (size_t pad = 0; pad < found.walk.pads.size(); ++pad)
        for (int32_t port : {found.walk.pads[pad].port, found.walk.pads[pad].minus_port})
            if (port >= 0)
                found.ports[static_cast<size_t>(port)].pads.push_back(static_cast<int32_t>(pad));
    std::unordered_map<int32_t, int32_t> port_of_net;
    for (int32_t port = 0; port < port_count; ++port) {
        int32_t node = port_tab[port].node, net = node < 0 ? -1 : node_tab[node].net;
        auto [place, is_new] = port_of_net.emplace(net, port);
        if (!is_new && net > SDB_NET_VCC)
            found.ports[static_cast<size_t>(port)].same_net = place->second;
    }
    std::unordered_set<std::string> inverted;
    for (const PIN_ENTRY *pin : rows(PIN_TABLE))
        if (is_active_low(pin->top_name))
            inverted.insert(without_minus(pin->top_name));
    for (int32_t port = 0; port < port_count && !inverted.empty(); ++port)
        found.ports[static_cast<size_t>(port)].is_declared_inverted = inverted.contains(chip_port_name(port));
}

} // namespace

std::string tap_pin_name(const TAP_CELL &tap, const char *TAP_CELL::*field) {
    if (tap.*field != nullptr)
        return without_minus(tap.*field);
    for (const TAP_PIN_ROW &row : TAP_PIN_ROWS)
        if (row.field == field && row.fallback != nullptr)
            return row.fallback;
    return "";
}

std::string register_fault_text(const REGISTER_FAULT &fault) {
    std::string line = format_text("ERROR: %s: %s", fault.rule, fault.text.c_str());
    for (const auto &[word, text] : {std::pair{"instance", &fault.instance}, std::pair{"net", &fault.net},
                                     std::pair{"port", &fault.port}})
        if (!text->empty())
            line += format_text("; %s '%s'", word, text->c_str());
    return line;
}

std::string register_fault_json(const REGISTER_FAULT &fault) {
    return format_text("{\"rule\": %s, \"text\": %s, \"instance\": %s, \"net\": %s, \"port\": %s}",
                       json_text(fault.rule).c_str(), json_text(fault.text).c_str(),
                       json_text(fault.instance).c_str(), json_text(fault.net).c_str(),
                       json_text(fault.port).c_str());
}

void read_boundary_register(BOUNDARY_REGISTER &found) {
    if (!find_tap(found))
        return;
    look_at_ports(found);
    find_test_ports(found);
    check_tdo_enable(found);
    if (walk_chain(found))
        make_rows(found);
}
