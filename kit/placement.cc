#include "kit/placement.hh"

#include "kit/byte_source.hh"
#include "siblings/tool.hh"

#include <algorithm>
#include <array>
#include <charconv>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace {

constexpr size_t LONGEST_WORD = 1 << 16;

/// The words of a DEF file, between blanks; a string with its quotes is one. `#` begins a comment.
struct DEF_READING {
    explicit DEF_READING(const std::string &path) : bytes(path) {}
    BYTE_SOURCE bytes;
    std::array<char, 1 << 16> buffer{};
    size_t at = 0, end = 0;
    int32_t line = 1;
    std::string word{}; ///< the current one; empty at the end of the file
};

[[noreturn]] void fail(const DEF_READING &reading, const char *text) {
    TOOL_fail(reading.bytes.path, reading.line, "%s", text);
}

/// False at the end of the file.
bool refill(DEF_READING &reading) {
    if (reading.at == reading.end) {
        reading.at = 0;
        reading.end = bytes_read(reading.bytes, reading.buffer.data(), reading.buffer.size());
    }
    return reading.end > 0;
}

bool is_blank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Goes on behind the next `closing`.
void skip_to(DEF_READING &reading, char closing) {
    while (refill(reading)) {
        char character = reading.buffer[reading.at++];
        reading.line += character == '\n' ? 1 : 0;
        if (character == closing)
            return;
    }
}

bool next(DEF_READING &reading) {
    reading.word.clear();
    while (refill(reading)) {
        char character = reading.buffer[reading.at];
        bool starts = reading.word.empty();
        if (is_blank(character)) {
            if (!starts)
                return true;
            reading.line += character == '\n' ? 1 : 0;
        } else if (starts && character == '#') {
            skip_to(reading, '\n');
            continue;
        } else if (starts && character == '"') {
            ++reading.at;
            skip_to(reading, '"');
            reading.word = "\"\"";
            return true;
        } else if (reading.word.size() == LONGEST_WORD) {
            fail(reading, "a word is too long.");
        } else {
            reading.word += character;
        }
        ++reading.at;
    }
    return !reading.word.empty();
}

/// The next word, which has to be there.
const std::string &take(DEF_READING &reading) {
    if (!next(reading))
        fail(reading, "the file ends within a statement.");
    return reading.word;
}

void expect(DEF_READING &reading, std::string_view word) {
    if (take(reading) != word)
        TOOL_fail(reading.bytes.path, reading.line, "'%s' stands where '%.*s' is expected.",
                  reading.word.c_str(), static_cast<int>(word.size()), word.data());
}

int64_t take_number(DEF_READING &reading) {
    const std::string &word = take(reading);
    double number = 0; // some writers give a fraction
    auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (fault != std::errc() || end != word.data() + word.size() || !(number > -1e15 && number < 1e15))
        TOOL_fail(reading.bytes.path, reading.line, "'%s' is no number.", word.c_str());
    return static_cast<int64_t>(number);
}

void skip_statement(DEF_READING &reading) {
    while (reading.word != ";")
        take(reading);
}

/// Names are those of the netlist, where nothing has to be escaped.
std::string unescaped(const std::string &word) {
    std::string name;
    for (size_t at = 0; at < word.size(); ++at)
        if (word[at] != '\\' || ++at < word.size())
            name += word[at];
    return name;
}

void read_die(DEF_READING &reading, PLACEMENT &placement) {
    bool is_first = true;
    for (take(reading); reading.word != ";"; take(reading)) {
        if (reading.word != "(")
            fail(reading, "a '(' is missing.");
        int64_t x = take_number(reading), y = take_number(reading);
        expect(reading, ")");
        placement.die_left = is_first ? x : std::min(placement.die_left, x);
        placement.die_right = is_first ? x : std::max(placement.die_right, x);
        placement.die_bottom = is_first ? y : std::min(placement.die_bottom, y);
        placement.die_top = is_first ? y : std::max(placement.die_top, y);
        is_first = false;
    }
}

void take_orientation(DEF_READING &reading, PLACEMENT_COMPONENT &component) {
    std::string_view word = take(reading);
    component.is_mirrored = word.size() == 2 && word.front() == 'F';
    if (component.is_mirrored)
        word.remove_prefix(1);
    size_t up = std::string_view("NWSE").find(word);
    if (word.size() != 1 || up == std::string_view::npos)
        TOOL_fail(reading.bytes.path, reading.line, "there is no orientation '%s'.", reading.word.c_str());
    // FN is turned over about its upright axis; FW is FS, upside down, turned as W is, so that its top is in
    // the east.
    if (component.is_mirrored && up % 2 == 1)
        up = 4 - up;
    component.up = static_cast<PLACEMENT_UP>(up);
}

/// `- instance cell + ... + PLACED ( x y ) N ... ;`
void read_component(DEF_READING &reading, PLACEMENT &placement) {
    PLACEMENT_COMPONENT component;
    component.line = reading.line;
    component.instance = unescaped(take(reading));
    component.cell = unescaped(take(reading));
    bool is_placed = false;
    while (take(reading) != ";") {
        if (reading.word != "+")
            continue;
        take(reading);
        if (reading.word == ";")
            return;
        if (reading.word != "PLACED" && reading.word != "FIXED" && reading.word != "COVER")
            continue;
        is_placed = true;
        expect(reading, "(");
        component.x = take_number(reading);
        component.y = take_number(reading);
        expect(reading, ")");
        take_orientation(reading, component);
    }
    if (is_placed)
        placement.components.push_back(std::move(component));
}

void read_components(DEF_READING &reading, PLACEMENT &placement) {
    skip_statement(reading); // their count
    while (take(reading) != "END") {
        if (reading.word != "-")
            TOOL_fail(reading.bytes.path, reading.line, "'%s' stands where a component begins.",
                      reading.word.c_str());
        read_component(reading, placement);
    }
}

// --- the ring

PLACEMENT_SIDE nearest_side(const PLACEMENT_COMPONENT &pad, const PLACEMENT &box) {
    const int64_t distance[] = {pad.y - box.die_bottom, box.die_right - pad.x, box.die_top - pad.y,
                                pad.x - box.die_left};
    return static_cast<PLACEMENT_SIDE>(std::min_element(distance, distance + 4) - distance);
}

/// Grows counter-clockwise along a side.
int64_t place_along(PLACEMENT_SIDE side, const PLACEMENT_COMPONENT &pad) {
    switch (side) {
    case PLACEMENT_SIDE::BOTTOM:
        return pad.x;
    case PLACEMENT_SIDE::RIGHT:
        return pad.y;
    case PLACEMENT_SIDE::TOP:
        return -pad.x;
    default:
        return -pad.y;
    }
}

} // namespace

PLACEMENT placement_read(const std::string &path) {
    PLACEMENT placement;
    DEF_READING reading(path);
    bool has_components = false;
    while (!has_components && next(reading)) {
        if (reading.word == "DESIGN") {
            placement.design = unescaped(take(reading));
        } else if (reading.word == "UNITS") {
            expect(reading, "DISTANCE");
            expect(reading, "MICRONS");
            placement.units = take_number(reading);
        } else if (reading.word == "DIEAREA") {
            read_die(reading, placement);
        } else if (reading.word == "COMPONENTS") {
            read_components(reading, placement);
            has_components = true;
        } else if (reading.word == "PROPERTYDEFINITIONS" || reading.word == "BEGINEXT") {
            // Statements that look like others stand in these.
            const char *last = reading.word == "BEGINEXT" ? "ENDEXT" : "END";
            while (take(reading) != last) {
            }
            if (reading.word == "END")
                take(reading);
            continue;
        } else if (reading.word == "END") {
            take(reading);
            continue;
        }
        if (!has_components)
            skip_statement(reading);
    }
    if (!has_components)
        fail(reading, "there are no COMPONENTS in this file.");
    return placement;
}

std::vector<int32_t> placement_rows(const PLACEMENT &placement, const std::vector<std::string> &instances) {
    std::unordered_map<std::string, int32_t> by_name;
    for (size_t row = 0; row < placement.components.size(); ++row) {
        std::string name = placement.components[row].instance;
        by_name.emplace(name, static_cast<int32_t>(row));
        std::replace(name.begin(), name.end(), '/', '.');
        by_name.emplace(name, static_cast<int32_t>(row));
    }
    std::vector<bool> is_taken(placement.components.size());
    std::vector<int32_t> rows;
    for (std::string name : instances) {
        int32_t found = -1;
        while (found < 0) {
            auto at = by_name.find(name);
            if (at != by_name.end() && !is_taken[static_cast<size_t>(at->second)])
                is_taken[static_cast<size_t>(found = at->second)] = true;
            size_t dot = name.find('.');
            if (dot == name.npos)
                break;
            name.erase(0, dot + 1);
        }
        rows.push_back(found);
    }
    return rows;
}

// Where the pads of one orientation lie on one side mostly, and each orientation on
// another one, this is the side of all of them: near a corner the place of a pad in a second row tells less.
// Where cells are made for their sides and not turned, the nearest edge tells.
std::vector<PLACEMENT_SIDE> placement_sides(const std::vector<PLACEMENT_COMPONENT> &pads) {
    PLACEMENT box;
    box.die_left = box.die_bottom = INT64_MAX;
    box.die_right = box.die_top = INT64_MIN;
    for (const PLACEMENT_COMPONENT &pad : pads) {
        box.die_left = std::min(box.die_left, pad.x);
        box.die_right = std::max(box.die_right, pad.x);
        box.die_bottom = std::min(box.die_bottom, pad.y);
        box.die_top = std::max(box.die_top, pad.y);
    }
    std::vector<PLACEMENT_SIDE> sides;
    size_t votes[4][4] = {}; // of an orientation for a side
    for (const PLACEMENT_COMPONENT &pad : pads) {
        sides.push_back(nearest_side(pad, box));
        ++votes[static_cast<size_t>(pad.up)][static_cast<size_t>(sides.back())];
    }
    PLACEMENT_SIDE side_of[4] = {};
    bool is_taken[4] = {};
    for (size_t up = 0; up < 4; ++up) {
        const size_t *most = std::max_element(votes[up], votes[up] + 4);
        size_t all = votes[up][0] + votes[up][1] + votes[up][2] + votes[up][3];
        side_of[up] = static_cast<PLACEMENT_SIDE>(most - votes[up]);
        if (all == 0)
            continue;
        if (*most * 3 < all * 2 || std::exchange(is_taken[static_cast<size_t>(side_of[up])], true))
            return sides;
    }
    for (size_t row = 0; row < pads.size(); ++row)
        sides[row] = side_of[static_cast<size_t>(pads[row].up)];
    return sides;
}

std::vector<int32_t> placement_ring(const std::vector<PLACEMENT_COMPONENT> &pads, int32_t behind) {
    const std::vector<PLACEMENT_SIDE> sides = placement_sides(pads);
    std::vector<int32_t> order(pads.size());
    for (size_t row = 0; row < order.size(); ++row)
        order[row] = static_cast<int32_t>(row);
    auto key = [&](int32_t row) {
        const PLACEMENT_COMPONENT &pad = pads[static_cast<size_t>(row)];
        PLACEMENT_SIDE side = sides[static_cast<size_t>(row)];
        return std::tuple<PLACEMENT_SIDE, int64_t, const std::string &, int32_t>(side, place_along(side, pad),
                                                                                 pad.instance, row);
    };
    std::sort(order.begin(), order.end(), [&](int32_t a, int32_t b) { return key(a) < key(b); });
    auto last = std::find(order.begin(), order.end(), behind);
    if (last != order.end())
        std::rotate(order.begin(), last + 1, order.end());
    return order;
}
