// What the picture shows, from the final netlist.
#include "kit/picture.hh"

#include "description/hash_tables.hh"
#include "description/lookups.hh"
#include "kit/chip.hh"
#include "kit/files.hh"
#include "kit/names.hh"
#include "planning/tap_state.hh"
#include "sdb/navigation.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

namespace {

/// Bytes of the UTF-8 character at `at`, or 0 for what is none.
size_t utf8_length(const std::string &text, size_t at) {
    auto byte = static_cast<unsigned char>(text[at]);
    size_t length = byte < 0x80 ? 1 : byte >= 0xc2 && byte < 0xe0 ? 2 : byte >= 0xe0 && byte < 0xf0 ? 3 : 0;
    if (length == 0 || at + length > text.size() || (length == 1 && (byte < ' ' || byte == 0x7f)))
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[at + i]) & 0xc0) != 0x80)
            return 0;
    unsigned second = length == 3 ? static_cast<unsigned char>(text[at + 1]) : 0;
    // Overlong forms, surrogates and the last codes of the plane are no characters of XML.
    bool is_bad = (byte == 0xe0 && second < 0xa0) || (byte == 0xed && second > 0x9f) ||
                  (byte == 0xef && second == 0xbf && static_cast<unsigned char>(text[at + 2]) > 0xbd);
    return is_bad ? 0 : length;
}

std::string clean(const std::string &text) {
    return clean_text(text);
}

std::string clean(const char *text) {
    return clean_text(text_or_empty(text));
}

// ---- pads ---------------------------------------------------------------------------------------------

/// A row of the pin file that stands for a pin of the package.
bool is_package_pin(const PIN_ENTRY &row) {
    return !bs_internal_word(row.package_name);
}

struct PICTURE_READER {
    PICTURE &picture;
    BOUNDARY_REGISTER found{};
    std::vector<int32_t> pad_of_port{};
    std::vector<int32_t> port_of_pad{};
    std::unordered_map<std::string, int32_t> port_of_name{};
    std::unordered_map<int32_t, int32_t> cell_of_obj{}, plus_of_minus{}; ///< the second by ports
};

/// A port has one pad that its cells stand at, the first row of the pin file that names it.
void add_pad(PICTURE_READER &reader, PICTURE_PAD pad, int32_t port) {
    if (port >= 0 && reader.pad_of_port[static_cast<size_t>(port)] < 0)
        reader.pad_of_port[static_cast<size_t>(port)] = static_cast<int32_t>(reader.picture.pads.size());
    reader.port_of_pad.push_back(port);
    reader.picture.pads.push_back(std::move(pad));
}

void take_pads(PICTURE_READER &reader) {
    reader.pad_of_port.assign(static_cast<size_t>(port_count), -1);
    for (int32_t port = port_count - 1; port >= 0; --port)
        reader.port_of_name[chip_port_name(port)] = port;
    for (const PIN_ENTRY *row : rows(PIN_TABLE)) {
        if (!is_package_pin(*row))
            continue;
        auto at = reader.port_of_name.find(row->top_name != nullptr ? without_minus(row->top_name) : "");
        PICTURE_PAD pad{.port = clean(row->top_name != nullptr ? without_minus(row->top_name) : nullptr),
                        .pin = clean(row->number),
                        .package_name = clean(row->package_name),
                        .direction = clean(row->direction),
                        .row = row->line};
        if (row->top_name == nullptr)
            pad.reason = "no port of the chip, as power and ground";
        else if (at == reader.port_of_name.end())
            pad.reason = "the netlist has no such port";
        add_pad(reader, pad, at == reader.port_of_name.end() ? -1 : at->second);
    }
    for (int32_t port = 0; port < port_count; ++port)
        if (reader.pad_of_port[static_cast<size_t>(port)] < 0)
            add_pad(reader,
                    {.port = clean(chip_port_name(port)), .pin = "", .package_name = "", .direction = ""},
                    port);
}

/// Why no cell serves the port.
std::string reason_of(const PICTURE_READER &reader, int32_t port) {
    const REGISTER_PORT &known = reader.found.ports[static_cast<size_t>(port)];
    std::string name = chip_port_name(port);
    if (known.tap_port >= 0)
        return format_text("%s of the TAP", PICTURE_TEST_WORDS[known.tap_port]);
    if (const SKIP_SIGNAL *skip = find_record(SKIP_SIGNAL_HASH_TAB, name.c_str()))
        return skip->value == nullptr
                   ? "in %SKIP_SIGNAL_NAMES"
                   : format_text("in %%SKIP_SIGNAL_NAMES, held at %s", clean(skip->value).c_str());
    if (!reader.picture.is_whole)
        return "not known: the chain is broken";
    if (known.same_net >= 0)
        return "on the net of port " + clean(chip_port_name(known.same_net));
    if (auto plus = reader.plus_of_minus.find(port); plus != reader.plus_of_minus.end())
        return "minus leg of port " + clean(chip_port_name(plus->second));
    return kit_is_power_name(name) ? "power or ground" : "no boundary cell serves it";
}

void describe_pads(PICTURE_READER &reader) {
    if (reader.found.ports.empty())
        return;
    for (const WALK_PAD_ROW &pad : reader.found.walk.pads)
        if (pad.minus_port >= 0 && pad.port >= 0)
            reader.plus_of_minus.emplace(pad.minus_port, pad.port);
    for (size_t i = 0; i < reader.picture.pads.size(); ++i) {
        PICTURE_PAD &pad = reader.picture.pads[i];
        int32_t port = reader.port_of_pad[i];
        if (port < 0)
            continue;
        const REGISTER_PORT &known = reader.found.ports[static_cast<size_t>(port)];
        pad.tap_port = known.tap_port;
        if (!known.pads.empty()) {
            int32_t obj = reader.found.walk.pads[static_cast<size_t>(known.pads[0])].obj;
            pad.instance = clean(chip_instance_name(obj));
            pad.class_name = clean(chip_class_name(obj_tab[obj].class_id));
        }
        if (known.tap_port >= 0)
            pad.kind = PICTURE_TAP;
        if (reader.pad_of_port[static_cast<size_t>(port)] != static_cast<int32_t>(i))
            pad.reason = "a second pin of the port";
        else if (pad.cells.empty())
            pad.reason = reason_of(reader, port);
    }
}

// ---- cells --------------------------------------------------------------------------------------------

constexpr struct {
    PICTURE_KIND kind;
    const char *word;
} ROW_KINDS[] = {{PICTURE_INPUT, "input"},    {PICTURE_CLOCK, "clock"},     {PICTURE_OBSERVE, "observe"},
                 {PICTURE_OUTPUT, "output2"}, {PICTURE_OUTPUT, "output3"},  {PICTURE_OUTPUT, "open"},
                 {PICTURE_BIDIR, "bidir"},    {PICTURE_CONTROL, "control"}, {PICTURE_INTERNAL, "internal"}};

/// A pad takes the kind of the cells that drive it, or else of the first that watches it.
PICTURE_KIND joined_kind(PICTURE_KIND known, PICTURE_KIND added) {
    bool reads = known == PICTURE_INPUT || known == PICTURE_CLOCK;
    if (known == PICTURE_SKIPPED)
        return added;
    if ((reads && added == PICTURE_OUTPUT) || (known == PICTURE_OUTPUT && added == PICTURE_INPUT))
        return PICTURE_BIDIR;
    return known == PICTURE_OBSERVE || added == PICTURE_BIDIR ? added : known;
}

void add_once(std::vector<int32_t> &list, int32_t id) {
    if (std::find(list.begin(), list.end(), id) == list.end())
        list.push_back(id);
}

void take_row(PICTURE_READER &reader, const REGISTER_ROW &row) {
    PICTURE_CELL &cell = reader.picture.cells[static_cast<size_t>(row.cell)];
    cell.kind = cell.function.empty() ? ROW_KINDS[row.kind].kind : cell.kind;
    cell.function += (cell.function.empty() ? "" : ", ") + std::string(ROW_KINDS[row.kind].word);
    if (row.control >= 0) {
        cell.control = row.control;
        cell.disable = row.disable;
    }
    int32_t pad = row.port < 0 ? -1 : reader.pad_of_port[static_cast<size_t>(row.port)];
    if (pad < 0)
        return;
    PICTURE_PAD &at = reader.picture.pads[static_cast<size_t>(pad)];
    add_once(cell.pads, pad);
    add_once(at.cells, row.cell);
    at.kind = joined_kind(at.kind, ROW_KINDS[row.kind].kind);
    if (row.control >= 0 && static_cast<size_t>(row.control) < reader.picture.cells.size())
        add_once(reader.picture.cells[static_cast<size_t>(row.control)].held, pad);
}

std::string net_name(int32_t net) {
    const char *name = net < 0 ? nullptr : SDB_net_name(sdb, net);
    return clean(name);
}

void take_cells(PICTURE_READER &reader) {
    for (const REGISTER_CELL &cell : reader.found.cells) {
        reader.cell_of_obj[cell.obj] = static_cast<int32_t>(reader.picture.cells.size());
        PICTURE_CELL row{.instance = clean(cell.instance), .class_name = clean(cell.class_name)};
        int32_t pins = class_tab[obj_tab[cell.obj].class_id].pin_count;
        for (int32_t node = obj_tab[cell.obj].first_node, i = 0; i < pins; ++i, ++node)
            row.nets.emplace_back(clean(chip_pin_name(node_tab[node].pin)), net_name(node_tab[node].net));
        reader.picture.cells.push_back(std::move(row));
    }
    for (const REGISTER_ROW &row : reader.found.rows)
        take_row(reader, row);
    for (PICTURE_CELL &cell : reader.picture.cells)
        cell.function = reader.picture.is_whole ? cell.function : "not known: the chain is broken";
}

/// The rows that a written description has: `"12 (BC_1, txd, output2, X)," &`.
void take_bsdl_rows(PICTURE_READER &reader, const FINISHED_RUN &run) {
    std::string file = run.design + ".bsd";
    if (!TOOL_exists(file) || is_outdated(file, {run_file(run, "_jtag.c.sdb")}))
        return;
    std::string text = TOOL_read_file(file);
    size_t at = text.find("attribute BOUNDARY_REGISTER");
    for (size_t open; at != text.npos && (open = text.find('"', at)) != text.npos;) {
        size_t close = text.find('"', open + 1);
        if (close == text.npos || text.substr(at, open - at).find(';') != std::string::npos)
            return;
        std::string row = text.substr(open + 1, close - open - 1);
        auto number = static_cast<size_t>(std::atoi(row.c_str()));
        row.resize(row.rfind(')') == row.npos ? row.size() : row.rfind(')') + 1);
        if (number < reader.picture.cells.size())
            reader.picture.cells[number].bsdl_rows.push_back(clean(row));
        at = close + 1;
    }
}

// ---- buffer trees -------------------------------------------------------------------------------------

/// What hangs on the net of a branch: further branches go to the end of the tree.
void read_branch(const PICTURE_READER &reader, PICTURE_TREE &tree, size_t at, int32_t node,
                 std::vector<int32_t> &outputs, std::unordered_set<int32_t> &seen) {
    const NETLIST_WALK &walk = reader.found.walk;
    int32_t net = node_tab[node].net;
    for (int32_t next : net <= SDB_NET_VCC ? std::vector<int32_t>{} : chip_net_nodes(net)) {
        int32_t obj = node_tab[next].obj, class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
        if (next == node)
            continue;
        const WALK_CLASS none, &row = class_id < 0 ? none : walk.classes[static_cast<size_t>(class_id)];
        bool is_buffer = row.passes && walk.pad_of_obj[static_cast<size_t>(obj)] < 0;
        if (is_buffer && next == obj_tab[obj].first_node + row.input && seen.insert(obj).second) {
            tree.branches.push_back({clean(chip_instance_name(obj)),
                                     clean(chip_class_name(class_id)),
                                     static_cast<int32_t>(at),
                                     tree.branches[at].level + 1,
                                     {},
                                     0});
            outputs.push_back(obj_tab[obj].first_node + row.output);
            tree.levels = std::max(tree.levels, tree.branches.back().level);
        } else if (auto cell = reader.cell_of_obj.find(obj); cell != reader.cell_of_obj.end()) {
            tree.branches[at].cells.push_back(cell->second);
            ++tree.loads;
        } else if (!is_buffer) {
            ++tree.branches[at].others;
            ++tree.loads;
        }
    }
    std::sort(tree.branches[at].cells.begin(), tree.branches[at].cells.end());
}

void take_tree(PICTURE_READER &reader, const std::string &signal, const std::string &pin) {
    int32_t root = walk_pin(reader.found.tap_obj, pin.c_str());
    if (root < 0)
        return;
    PICTURE_TREE tree{.signal = clean(signal), .pin = clean(pin)};
    tree.branches.push_back({clean(chip_instance_name(reader.found.tap_obj)), clean(pin), -1, 0, {}, 0});
    std::vector<int32_t> outputs = {root};
    std::unordered_set<int32_t> seen;
    for (size_t at = 0; at < outputs.size(); ++at)
        read_branch(reader, tree, at, outputs[at], outputs, seen);
    if (tree.loads > 0)
        reader.picture.trees.push_back(std::move(tree));
}

void take_trees(PICTURE_READER &reader) {
    const TAP_CELL &tap = *reader.found.tap;
    for (const CONTROL_SIGNAL_INFO &info : CONTROL_SIGNALS)
        take_tree(reader, info.prefix,
                  info.tap_field == nullptr ? BCELL_TCK : tap_pin_name(tap, info.tap_field));
    int32_t number = 0;
    for (const char *pin : rows(tap.extras))
        if (++number; pin != nullptr)
            take_tree(reader, "extra" + std::to_string(number), without_minus(pin));
}

} // namespace

const PICTURE_KIND_INFO PICTURE_KINDS[PICTURE_KIND_COUNT] = {
    {"input", "input", "I", "#56b4e9", "#000"},
    {"clock", "clock", "K", "#f0e442", "#000"},
    {"observe", "observe only", "W", "#cc79a7", "#000"},
    {"output", "output", "O", "#e69f00", "#000"},
    {"bidir", "bidirectional", "B", "#009e73", "#fff"},
    {"control", "control", "C", "#b34700", "#fff"},
    {"internal", "internal", "N", "#ffffff", "#000"},
    {"tap", "TAP", "T", "#0b4f8a", "#fff"},
    {"skipped", "no cell", "\xc3\x97", "#c4c4c4", "#000"},
};

std::string clean_text(const std::string &text) {
    std::string good;
    for (size_t at = 0; at < text.size();) {
        size_t length = utf8_length(text, at);
        good += length == 0 ? "\xef\xbf\xbd" : text.substr(at, length);
        at += std::max<size_t>(length, 1);
    }
    return good;
}

void read_picture(PICTURE &picture, const FINISHED_RUN &run) {
    PICTURE_READER reader{.picture = picture};
    picture.design = clean(TOOL_base_name(run.design));
    picture.package = clean(PACKAGE_TYPE);
    read_boundary_register(reader.found);
    if (reader.found.tap_obj >= 0) {
        picture.tap_instance = clean(chip_instance_name(reader.found.tap_obj));
        picture.tap_class = clean(chip_class_name(obj_tab[reader.found.tap_obj].class_id));
    }
    picture.is_whole = !reader.found.rows.empty();
    take_pads(reader);
    take_cells(reader);
    describe_pads(reader);
    take_bsdl_rows(reader, run);
    take_trees(reader);
    for (size_t pad = 0; pad < picture.pads.size(); ++pad)
        picture.ring.push_back(static_cast<int32_t>(pad));
}
