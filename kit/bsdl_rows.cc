// The rows of the boundary register: what each cell is called, and which values are safe.
#include "kit/bsdl_file.hh"
#include "kit/cell_types.hh"

#include "support/text.hh"

#include <algorithm>
#include <set>

namespace {

struct ROW_MAKER {
    BSDL_FILE &file;
    BOUNDARY_REGISTER &found;
    const CELL_TYPES &types;
    bool with_intest;
    std::vector<int8_t> safe_of_cell;             ///< of a control cell, else -1
    std::set<std::string> told;                   ///< comments that stand there already
    std::map<std::string, std::string> own_types; ///< captures, as text, to the name of an own type
};

void say(ROW_MAKER &maker, const std::string &comment) {
    if (maker.told.insert(comment).second)
        maker.file.comments.push_back(comment);
}

/// The value of a pad that is off: what its own resistors make of the pin.
const char *result_of(const BUFFER_CELL *pad) {
    if (pad == nullptr)
        return "Z";
    return pad->pull_0 != 0   ? "PULL0"
           : pad->pull_1 != 0 ? "PULL1"
           : pad->weak_0 != 0 ? "WEAK0"
           : pad->weak_1 != 0 ? "WEAK1"
           : pad->keeper != 0 ? "KEEPER"
                              : "Z";
}

/// An open drain pulls down by 0 and is pulled up while the cell has 1; an open source the other way.
const char *open_result(const BUFFER_CELL &pad, int8_t disable) {
    bool strong = disable != 0 ? pad.pull_1 != 0 : pad.pull_0 != 0;
    return disable != 0 ? strong ? "PULL1" : "WEAK1" : strong ? "PULL0" : "WEAK0";
}

/// The pad's own resistor, or a tied data pin, tells drain from source; the cell has to say so by its value.
bool is_open_inverted(const BOUNDARY_REGISTER &found, const REGISTER_ROW &row) {
    const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(row.pad)];
    WALK_POINT data = walk_back(found.walk, walk_pin(pad.obj, pad.core_in));
    bool pulls_up = pad.buffer->pull_1 != 0 || pad.buffer->weak_1 != 0, drives_1 = data.end == WALK_ONE;
    bool pulls_down = pad.buffer->pull_0 != 0 || pad.buffer->weak_0 != 0, drives_0 = data.end == WALK_ZERO;
    return row.disable != 0 ? drives_1 || (pulls_down && !drives_0) : drives_0 || (pulls_up && !drives_1);
}

/// The value of each control cell that turns off most of its pads.
void find_safe_values(ROW_MAKER &maker) {
    struct VOTES {
        int32_t at[2] = {0, 0};
        std::string word[2];
    };
    std::map<int32_t, VOTES> votes;
    for (const REGISTER_ROW &row : maker.found.rows)
        if (row.control >= 0) {
            VOTES &vote = votes[row.control];
            ++vote.at[row.disable];
            vote.word[row.disable] = maker.file.word_of_port[static_cast<size_t>(row.port)];
        }
    maker.safe_of_cell.assign(maker.found.cells.size(), -1);
    for (const auto &[cell, vote] : votes) {
        maker.safe_of_cell[static_cast<size_t>(cell)] = vote.at[1] >= vote.at[0] ? 1 : 0;
        if (vote.at[0] > 0 && vote.at[1] > 0)
            maker.file.warnings.push_back(
                format_text("Control cell %d turns port %s off by 0 and port %s off by 1: one "
                            "of them is on at any value.",
                            cell, vote.word[0].c_str(), vote.word[1].c_str()));
    }
}

/// What the cell was seen to do, or null.
const CELL_TYPES::MEASURED *measured_of(const CELL_TYPES &types, int32_t cell) {
    auto number = static_cast<size_t>(cell);
    auto found = number < types.kind_of_cell.size() ? types.of_kind.find(types.kind_of_cell[number])
                                                    : types.of_kind.end();
    return found != types.of_kind.end() ? &found->second : nullptr;
}

/// A control cell that Test-Logic-Reset sets to its safe value.
bool resets_to_safe(const ROW_MAKER &maker, int32_t cell) {
    const REGISTER_CELL &row = maker.found.cells[static_cast<size_t>(cell)];
    const CELL_TYPES::MEASURED *measured = measured_of(maker.types, cell);
    const REGISTER_SIGNAL &reset = row.signals[SIG_RST];
    return measured != nullptr && reset.source.end == WALK_TAP &&
           reset.tap_pin == tap_pin_name(*maker.found.tap, &TAP_CELL::tap_reset) &&
           measured->reset_value == maker.safe_of_cell[static_cast<size_t>(cell)];
}

// ---- types --------------------------------------------------------------------------------------------

/// The type that the library file gives and that takes all contexts, or an empty text.
std::string declared_type(const SCAN_CELL &cell, const std::vector<CELL_CONTEXT> &contexts,
                          bool with_intest) {
    for (const char *name : rows(cell.std_names)) {
        bool has_all = true;
        for (CELL_CONTEXT context : contexts)
            has_all = has_all && type_has(name, context, with_intest);
        if (has_all)
            return name;
    }
    return "";
}

/// What the pins let suppose.
std::string supposed_type(const SCAN_CELL &cell, CELL_CONTEXT context) {
    if (context == AS_BIDIR_IN)
        return "BC_7";
    bool looks_on = context == AS_CLOCK || context == AS_OBSERVE_ONLY ||
                    (context == AS_INPUT && (cell.update_dr == nullptr || cell.data_out == nullptr));
    return looks_on && cell.update_dr_out == nullptr ? "BC_4" : "BC_1";
}

std::string words_of(const std::map<CELL_CONTEXT, CAPTURES> &captures, bool with_intest,
                     std::vector<std::string> &lines, bool &is_whole) {
    constexpr const char *INSTRUCTION_WORDS[] = {"EXTEST", "SAMPLE", "INTEST"};
    std::string key;
    for (const auto &[context, sources] : captures)
        for (size_t i = 0; i < (with_intest ? 3U : 2U); ++i) {
            size_t source = 0;
            while (source < std::size(CAPTURE_WORDS) && (sources[i] >> source & 1) == 0)
                ++source;
            std::string word = source < std::size(CAPTURE_WORDS) ? std::string(CAPTURE_WORDS[source]) : "X";
            is_whole = is_whole && (source < std::size(CAPTURE_WORDS) || i == IN_INTEST);
            lines.push_back(std::string(CONTEXT_WORDS[context]) + ", " + INSTRUCTION_WORDS[i] + ", " + word);
            key += lines.back() + "; ";
        }
    return key;
}

/// A type of the chip's own package, or BC_0 for readers that know none.
std::string own_type(ROW_MAKER &maker, const std::map<CELL_CONTEXT, CAPTURES> &captures,
                     const REGISTER_CELL &cell) {
    std::vector<std::string> lines;
    bool is_whole = true;
    std::string key = words_of(captures, maker.with_intest, lines, is_whole);
    if (maker.file.basic || !is_whole) {
        say(maker,
            "Type BC_0 for cells of class " + cell.class_name + ": no other fits what they capture: " + key);
        return "BC_0";
    }
    auto [place, is_new] = maker.own_types.emplace(key, "");
    if (is_new) {
        place->second = bsdl_take_name(maker.file.names, "CELL_" + cell.class_name);
        maker.file.own_cells.push_back({place->second, lines});
    }
    return place->second;
}

/// A tester reads the pins by EXTEST and SAMPLE: a cell on the way in that takes anything else is broken.
void refuse_blind_cell(ROW_MAKER &maker, const std::map<CELL_CONTEXT, CAPTURES> &captures,
                       const REGISTER_CELL &cell) {
    for (const auto &[context, sources] : captures) {
        bool reads = context == AS_INPUT || context == AS_CLOCK || context == AS_OBSERVE_ONLY ||
                     context == AS_BIDIR_IN;
        if (reads && ((sources[IN_EXTEST] & sources[IN_SAMPLE]) & FROM_PI) == 0)
            maker.found.faults.push_back(
                {"cell", "the cell does not capture its pin in EXTEST or SAMPLE", cell.instance, "", ""});
    }
}

std::string type_of(ROW_MAKER &maker, int32_t number, const std::vector<CELL_CONTEXT> &contexts) {
    std::map<CELL_CONTEXT, CAPTURES> captures;
    const REGISTER_CELL &cell = maker.found.cells[static_cast<size_t>(number)];
    if (const CELL_TYPES::MEASURED *measured = measured_of(maker.types, number); measured != nullptr)
        for (CELL_CONTEXT context : contexts) {
            auto at = measured->captures.find(context == AS_CONTROLR ? AS_CONTROL : context);
            if (at != measured->captures.end())
                captures[context] = at->second;
        }
    if (captures.size() == contexts.size()) {
        refuse_blind_cell(maker, captures, cell);
        // Of several types that fit, the one that the library file names.
        for (const char *name : rows(cell.cell->std_names)) {
            bool fits = true;
            for (const auto &[context, sources] : captures)
                fits = fits && type_fits(name, context, sources, maker.with_intest);
            if (fits)
                return name;
        }
        std::string type = first_fit(captures, maker.with_intest);
        return type.empty() ? own_type(maker, captures, cell) : type;
    }
    std::string function(CONTEXT_WORDS[contexts[0]]);
    std::string type = declared_type(*cell.cell, contexts, maker.with_intest);
    if (!type.empty()) {
        say(maker, "Type " + type + " of cell " + cell.class_name + " is that of its library file.");
        return type;
    }
    type = supposed_type(*cell.cell, contexts[0]);
    say(maker, "Type " + type + " of cell " + cell.class_name + " as " + lower_case(function) +
                   " is assumed from its pins.");
    return type;
}

// ---- rows ---------------------------------------------------------------------------------------------

void add_row(ROW_MAKER &maker, const REGISTER_ROW &row) {
    constexpr const char *FUNCTIONS[] = {"input",   "clock", "observe_only", "output2", "output3",
                                         "output2", "bidir", "control",      "internal"};
    const REGISTER_CELL &cell = maker.found.cells[static_cast<size_t>(row.cell)];
    BSDL_ROW line;
    line.number = row.cell;
    ROW_KIND kind = row.kind;
    bool resets = kind == ROW_CONTROL && resets_to_safe(maker, row.cell);
    line.function = resets ? "controlr" : FUNCTIONS[kind];
    line.type = type_of(maker, row.cell, contexts_of(kind, resets));
    line.port = row.port < 0 ? "*" : maker.file.word_of_port[static_cast<size_t>(row.port)];
    line.safe = "X";
    if (kind == ROW_CONTROL)
        line.safe = std::to_string(maker.safe_of_cell[static_cast<size_t>(row.cell)]);
    if (row.control >= 0) {
        const BUFFER_CELL *pad =
            row.pad < 0 ? nullptr : maker.found.walk.pads[static_cast<size_t>(row.pad)].buffer;
        line.control = row.control;
        line.disable = std::to_string(row.disable);
        line.result = kind == ROW_OPEN ? open_result(*pad, row.disable) : result_of(pad);
    }
    if (kind == ROW_OPEN) {
        line.safe = line.disable;
        if (is_open_inverted(maker.found, row))
            maker.found.faults.push_back({"pad",
                                          "an open pad drives the inverse of its cell, which BSDL can't say",
                                          cell.instance, "", line.port});
    }
    maker.file.rows.push_back(std::move(line));
}

/// A control cell whose pads all became linkage holds nothing that a tester knows.
void release_idle_controls(BOUNDARY_REGISTER &found) {
    std::set<int32_t> used;
    for (const REGISTER_ROW &row : found.rows)
        used.insert(row.control);
    for (REGISTER_ROW &row : found.rows)
        if (row.kind == ROW_CONTROL && !used.contains(row.cell))
            row.kind = ROW_INTERNAL;
}

/// Sentences that follow from the rows as a whole.
void add_warnings(ROW_MAKER &maker) {
    std::string clocks;
    for (const REGISTER_ROW &row : maker.found.rows) {
        const std::string word = row.port < 0 ? "" : maker.file.word_of_port[static_cast<size_t>(row.port)];
        if (row.kind == ROW_CLOCK)
            clocks += (clocks.empty() ? "" : ", ") + word;
    }
    if (!clocks.empty() && maker.with_intest)
        maker.file.warnings.push_back("INTEST does not drive the clock pins: " + clocks + ".");
    maker.file.warnings.emplace_back(
        "PRELOAD is lost by a scan of a data register under another instruction: load "
        "EXTEST or INTEST right after it.");
}

} // namespace

void bsdl_take_rows(BSDL_FILE &file, BOUNDARY_REGISTER &found, const CELL_TYPES &types) {
    const BSDL_INSTRUCTION *intest = bsdl_instruction(file, "INTEST");
    ROW_MAKER maker{file, found, types, intest != nullptr && !intest->is_private, {}, {}, {}};
    release_idle_controls(found);
    find_safe_values(maker);
    if (!types.why_not.empty())
        say(maker, "Cell types were not measured: " + types.why_not + ".");
    for (const REGISTER_ROW &row : found.rows)
        add_row(maker, row);
    add_warnings(maker);
}
