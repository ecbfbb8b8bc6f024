#include "kit/liberty.hh"

#include "kit/liberty_function.hh"
#include "kit/liberty_reading.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include "liberty_parser.hh"

#include <algorithm>
#include <charconv>
#include <unordered_set>

namespace {

// Limits of what one statement may make of a few bytes.
constexpr size_t LONGEST_STATEMENT = 1 << 16; // characters of a kept one
constexpr int64_t WIDEST_BUS = 1 << 14;
constexpr size_t MOST_MEMORY = 1U << 29; // of all pins
constexpr size_t DEEPEST_INCLUDE = 16;
constexpr int32_t MOST_INCLUDES = 1000;

constexpr uint32_t in(std::initializer_list<LIBERTY_GROUP> groups) {
    uint32_t bits = 0;
    for (LIBERTY_GROUP group : groups)
        bits |= 1U << group;
    return bits;
}

using TOKEN = liberty_yy::parser::token;
constexpr uint32_t EVERYWHERE = ~0U;
constexpr uint32_t OF_PINS = in({IN_PIN, IN_BUS, IN_BUNDLE});

const LIBERTY_WORD WORDS[] = {
    {"include_file", EVERYWHERE, COMPLEX, 0, INCLUDE_FILE},
    {"library", in({IN_FILE}), GROUP, TOKEN::LIBERTY_LIBRARY, NO_KEY, IN_LIBRARY},
    {"cell", in({IN_LIBRARY}), GROUP, TOKEN::LIBERTY_CELL, NO_KEY, IN_CELL},
    {"type", in({IN_LIBRARY, IN_CELL}), GROUP, TOKEN::LIBERTY_TYPE, NO_KEY, IN_TYPE},
    {"bit_width", in({IN_TYPE}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, BIT_WIDTH},
    {"bit_from", in({IN_TYPE}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, BIT_FROM},
    {"bit_to", in({IN_TYPE}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, BIT_TO},
    {"pad_cell", in({IN_CELL}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, PAD_CELL},
    {"pin", in({IN_CELL, IN_BUS, IN_BUNDLE}), GROUP, TOKEN::LIBERTY_PIN, NO_KEY, IN_PIN},
    {"bus", in({IN_CELL}), GROUP, TOKEN::LIBERTY_BUS, NO_KEY, IN_BUS},
    {"bundle", in({IN_CELL}), GROUP, TOKEN::LIBERTY_BUNDLE, NO_KEY, IN_BUNDLE},
    {"bus_type", in({IN_BUS}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, BUS_TYPE},
    {"members", in({IN_BUNDLE}), COMPLEX, TOKEN::LIBERTY_ATTRIBUTE, MEMBERS},
    {"pg_pin", in({IN_CELL}), GROUP, TOKEN::LIBERTY_POWER_PIN, NO_KEY, IN_POWER_PIN},
    {"ff", in({IN_CELL}), GROUP, TOKEN::LIBERTY_SEQUENTIAL, NO_KEY, IN_SEQUENTIAL},
    {"ff_bank", in({IN_CELL}), GROUP, TOKEN::LIBERTY_SEQUENTIAL, NO_KEY, IN_SEQUENTIAL},
    {"latch", in({IN_CELL}), GROUP, TOKEN::LIBERTY_SEQUENTIAL, NO_KEY, IN_SEQUENTIAL},
    {"latch_bank", in({IN_CELL}), GROUP, TOKEN::LIBERTY_SEQUENTIAL, NO_KEY, IN_SEQUENTIAL},
    {"clocked_on", in({IN_SEQUENTIAL}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, CLOCKED_ON},
    {"clocked_on_also", in({IN_SEQUENTIAL}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, CLOCKED_ON},
    {"enable", in({IN_SEQUENTIAL}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, CLOCKED_ON},
    {"enable_also", in({IN_SEQUENTIAL}), SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, CLOCKED_ON},
    {"direction", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, DIRECTION},
    {"function", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, FUNCTION},
    {"three_state", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, THREE_STATE},
    {"is_pad", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, IS_PAD},
    {"clock", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, CLOCK},
    {"complementary_pin", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, COMPLEMENTARY},
    {"driver_type", OF_PINS, SIMPLE, TOKEN::LIBERTY_ATTRIBUTE, DRIVER_TYPE},
};

const std::string &file_of(const LIBERTY_READING &reading, int32_t file) {
    return reading.library.files[static_cast<size_t>(file)];
}

/// The words of a statement as one text.
std::string joined(const LIBERTY_STATEMENT &statement) {
    std::string text;
    for (const std::string &word : statement.words)
        text += text.empty() ? word : " " + word;
    return text;
}

/// The names in a list, whose commas and blanks may stand within quotes too.
std::vector<std::string> names_in(const std::vector<std::string> &words) {
    constexpr const char *between = ", \t\n\r";
    std::vector<std::string> names;
    for (const std::string &word : words)
        for (size_t at = 0, end = 0; (at = word.find_first_not_of(between, end)) != std::string::npos;) {
            end = std::min(word.find_first_of(between, at), word.size());
            names.push_back(word.substr(at, end - at));
        }
    return names;
}

bool is_true(const LIBERTY_STATEMENT &statement) {
    std::string text = lower_case(joined(statement));
    return text == "true" || text == "1";
}

/// One statement may name thousands of pins, each of which has its own texts.
void charge(LIBERTY_READING &reading, size_t memory) {
    reading.expanded += memory;
    if (reading.expanded > MOST_MEMORY)
        liberty_fail(reading, "the pins of this library take more memory than 512 MB.");
}

size_t memory_of(const LIBERTY_PIN &pin) {
    return sizeof pin + pin.name.size() + pin.function.size() + pin.three_state.size() +
           pin.complementary.size() + pin.driver_types.size() * sizeof(std::string);
}

std::string bit_name(const std::string &bus, int64_t bit) {
    return bus + "[" + std::to_string(bit) + "]";
}

/// `from` to `to`, either of which may be the greater one.
void add_bits(LIBERTY_READING &reading, std::vector<std::string> &names, const std::string &bus, int64_t from,
              int64_t to, int32_t line) {
    if (std::max(from, to) - std::min(from, to) >= WIDEST_BUS)
        liberty_fail(reading,
                     format_text("the bus '%s' has more than %d bits.", bus.c_str(), int(WIDEST_BUS)), line);
    for (int64_t bit = from;; bit += from < to ? 1 : -1) {
        charge(reading, sizeof(LIBERTY_PIN) + bus.size());
        names.push_back(bit_name(bus, bit));
        if (bit == to)
            return;
    }
}

bool is_number(std::string_view text, int32_t &number) {
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size();
}

/// `A[3:0]` names its bits.
std::vector<std::string> pin_names(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    std::vector<std::string> names;
    for (std::string &name : names_in(statement.words)) {
        if (std::count(name.begin(), name.end(), '[') != std::count(name.begin(), name.end(), ']'))
            liberty_fail(reading, format_text("'%s' is no name of a pin.", name.c_str()), statement.line);
        size_t open = name.rfind('['), colon = name.rfind(':');
        int32_t from = 0, to = 0;
        if (open < colon && colon != std::string::npos && name.back() == ']' &&
            is_number(std::string_view(name).substr(open + 1, colon - open - 1), from) &&
            is_number(std::string_view(name).substr(colon + 1, name.size() - colon - 2), to))
            add_bits(reading, names, name.substr(0, open), from, to, statement.line);
        else
            names.push_back(std::move(name));
    }
    return names;
}

/// What a pin does not say itself, its bus may.
void take_from_bus(LIBERTY_PIN &pin, const LIBERTY_PIN &bus) {
    if (pin.direction == LIBERTY_DIRECTION::UNKNOWN)
        pin.direction = bus.direction;
    for (auto text : {&LIBERTY_PIN::function, &LIBERTY_PIN::three_state, &LIBERTY_PIN::complementary})
        if ((pin.*text).empty())
            pin.*text = bus.*text;
    pin.is_pad = pin.is_pad || bus.is_pad;
    pin.is_clock = pin.is_clock || bus.is_clock;
    if (pin.driver_types.empty())
        pin.driver_types = bus.driver_types;
}

void add_pin(LIBERTY_READING &reading, std::vector<LIBERTY_PIN> &to, LIBERTY_PIN pin) {
    charge(reading, memory_of(pin));
    to.push_back(std::move(pin));
}

const LIBERTY_TYPE *find_type(const LIBERTY_READING &reading, const std::string &name) {
    for (const auto *types : {&reading.cell_types, &reading.library_types})
        if (auto found = types->find(name); found != types->end())
            return &found->second;
    return nullptr;
}

/// The names that a bus or a bundle stands for.
std::vector<std::string> bus_bits(LIBERTY_READING &reading) {
    const LIBERTY_BUS &bus = reading.bus;
    std::vector<std::string> names = names_in(bus.members);
    const LIBERTY_TYPE *type = find_type(reading, bus.type);
    if (type == nullptr) {
        if (!bus.type.empty() && bus.own_pins.empty())
            liberty_fail(reading, format_text("there is no type '%s'.", bus.type.c_str()), bus.common.line);
        return names;
    }
    bool has_ends = type->from >= 0 && type->to >= 0;
    if (!has_ends && type->width < 1)
        liberty_fail(reading, format_text("the type '%s' gives no bits.", bus.type.c_str()), bus.common.line);
    for (const std::string &name : bus.names)
        add_bits(reading, names, name, has_ends ? type->from : 0, has_ends ? type->to : type->width - 1,
                 bus.common.line);
    return names;
}

/// The pins in the order of the bits; groups of pins beside these come behind.
void end_bus(LIBERTY_READING &reading, std::vector<LIBERTY_PIN> &to) {
    LIBERTY_BUS &bus = reading.bus;
    std::unordered_map<std::string_view, LIBERTY_PIN *> own;
    for (LIBERTY_PIN &pin : bus.own_pins) {
        take_from_bus(pin, bus.common);
        charge(reading, memory_of(bus.common));
        own.emplace(pin.name, &pin);
    }
    std::unordered_set<const LIBERTY_PIN *> taken;
    std::vector<std::string> names = bus_bits(reading);
    for (std::string &name : names) {
        auto found = own.find(name);
        LIBERTY_PIN pin = found != own.end() ? *found->second : bus.common;
        if (found != own.end())
            taken.insert(found->second);
        pin.name = std::move(name);
        add_pin(reading, to, std::move(pin));
    }
    for (LIBERTY_PIN &pin : bus.own_pins)
        if (!taken.contains(&pin))
            to.push_back(std::move(pin));
    // Neither members nor a type: a pin by another name.
    for (const std::string &name : bus.names)
        if (names.empty() && bus.own_pins.empty()) {
            bus.common.name = name;
            add_pin(reading, to, bus.common);
        }
}

/// A name that comes twice is one pin.
void merge_pins(std::vector<LIBERTY_PIN> &pins) {
    std::unordered_map<std::string, size_t> rows;
    size_t kept = 0;
    for (size_t row = 0; row < pins.size(); ++row) {
        auto [found, is_new] = rows.emplace(pins[row].name, kept);
        if (!is_new)
            take_from_bus(pins[found->second], pins[row]);
        else if (kept++ != row)
            pins[kept - 1] = std::move(pins[row]);
    }
    pins.resize(kept);
}

void mark_clocks(LIBERTY_READING &reading) {
    std::unordered_set<std::string> names;
    for (const std::string &clock : reading.clocks)
        for (std::string &name : liberty_function_names(clock))
            names.insert(std::move(name));
    if (!names.empty())
        for (LIBERTY_PIN &pin : reading.cell.pins)
            pin.is_clock = pin.is_clock || names.contains(pin.name);
}

LIBERTY_DIRECTION direction_named(const LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    constexpr struct {
        const char *name;
        LIBERTY_DIRECTION direction;
    } names[] = {{"input", LIBERTY_DIRECTION::INPUT},
                 {"output", LIBERTY_DIRECTION::OUTPUT},
                 {"inout", LIBERTY_DIRECTION::INOUT},
                 {"internal", LIBERTY_DIRECTION::INTERNAL}};
    std::string text = joined(statement);
    for (const auto &row : names)
        if (text == row.name)
            return row.direction;
    liberty_fail(reading, format_text("there is no direction '%s'.", text.c_str()), statement.line);
}

void set_attribute(const LIBERTY_READING &reading, LIBERTY_PIN &pin, const LIBERTY_STATEMENT &statement) {
    switch (statement.key) {
    case DIRECTION:
        pin.direction = direction_named(reading, statement);
        break;
    case FUNCTION:
        pin.function = joined(statement);
        break;
    case THREE_STATE:
        pin.three_state = joined(statement);
        break;
    case IS_PAD:
        pin.is_pad = is_true(statement);
        break;
    case CLOCK:
        pin.is_clock = is_true(statement);
        break;
    case COMPLEMENTARY:
        pin.complementary = joined(statement);
        break;
    case DRIVER_TYPE:
        pin.driver_types = names_in(statement.words);
        break;
    default:
        break;
    }
}

int64_t number_of(const LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    std::string text = joined(statement);
    int32_t number = -1;
    if (!is_number(text, number) || number < 0)
        liberty_fail(reading, format_text("'%s' is no number of a bit.", text.c_str()), statement.line);
    return number;
}

void open_source(LIBERTY_READING &reading, std::unique_ptr<BYTE_SOURCE> bytes) {
    std::vector<std::string> &files = reading.library.files;
    auto row = std::find(files.begin(), files.end(), bytes->path) - files.begin();
    if (row == static_cast<std::ptrdiff_t>(files.size()))
        files.push_back(bytes->path);
    reading.sources.push_back({std::move(bytes), static_cast<int32_t>(row)});
}

} // namespace

void liberty_fail(const LIBERTY_READING &reading, const std::string &text, int32_t line) {
    const LIBERTY_SOURCE &source = reading.sources.back();
    TOOL_fail(file_of(reading, source.file), line > 0 ? line : source.line, "%s", text.c_str());
}

const LIBERTY_WORD *liberty_word(const LIBERTY_READING &reading, std::string_view name) {
    uint32_t group = 1U << (reading.open.empty() ? IN_FILE : reading.open.back().group);
    for (const LIBERTY_WORD &word : WORDS)
        if ((word.groups & group) != 0 && name == word.name)
            return &word;
    return nullptr;
}

void liberty_take_shape(LIBERTY_READING &reading, LIBERTY_SHAPE shape) {
    if (reading.word != nullptr && (reading.word->shape == SIMPLE) != (shape == SIMPLE))
        reading.word = nullptr;
    reading.depth = 1;
    reading.has_value = reading.is_unfinished = false;
}

void liberty_add_word(LIBERTY_READING &reading, std::string_view word) {
    reading.has_value = true;
    reading.is_unfinished = word.find_last_of("+-*/") == word.size() - 1;
    if (reading.word == nullptr)
        return;
    reading.size += word.size() + 1;
    if (reading.size > LONGEST_STATEMENT)
        liberty_fail(reading, "this statement is too long.", reading.start_line);
    reading.statement.words.emplace_back(word);
}

void liberty_add_string(LIBERTY_READING &reading, std::string_view string) {
    reading.has_value = true;
    reading.is_unfinished = false;
    if (reading.word == nullptr)
        return;
    std::string text;
    for (size_t at = 1; at + 1 < string.size(); ++at) {
        if (string[at] == '\\' && string[at + 1] == '\n')
            ++at; // goes on in the next line
        else if (string[at] == '\\' && string.substr(at + 1, 2) == "\r\n")
            at += 2;
        else if (string[at] == '\\' && (string[at + 1] == '"' || string[at + 1] == '\\'))
            text += string[++at];
        else
            text += string[at] == '\n' ? ' ' : string[at];
    }
    size_t first = text.find_first_not_of(" \t\r"), last = text.find_last_not_of(" \t\r");
    text = first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
    liberty_add_word(reading, text);
    reading.is_unfinished = false;
}

void liberty_include(LIBERTY_READING &reading) {
    std::string name;
    for (const std::string &word : reading.statement.words)
        name += word;
    std::string from = file_of(reading, reading.sources.back().file);
    int32_t line = reading.start_line;
    if (name.empty())
        liberty_fail(reading, "no file is named here.", line);
    if (reading.sources.size() >= DEEPEST_INCLUDE || ++reading.included > MOST_INCLUDES)
        liberty_fail(reading, "too many files are included.", line);
    std::string path = name.front() == '/' ? name : TOOL_join(TOOL_directory(from), name);
    auto bytes = std::make_unique<BYTE_SOURCE>(path, from, line);
    for (const LIBERTY_SOURCE &source : reading.sources)
        if (source.bytes->device == bytes->device && source.bytes->inode == bytes->inode)
            liberty_fail(reading, format_text("the file '%s' includes itself.", path.c_str()), line);
    open_source(reading, std::move(bytes));
}

void liberty_check_end(const LIBERTY_READING &reading) {
    if (reading.open.empty())
        return;
    const LIBERTY_OPEN &last = reading.open.back();
    TOOL_fail(file_of(reading, last.file), last.line, "the file ends within the group of this line.");
}

std::string liberty_stray(std::string_view text) {
    unsigned char character = static_cast<unsigned char>(text.front());
    if (character < 0x20 || character >= 0x7F)
        return format_text("a character of the value %d can't stand here.", character);
    return format_text("a '%c' can't stand here.", character);
}

void liberty_begin_cell(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    reading.cell = {};
    reading.cell.name = joined(statement);
    if (reading.cell.name.empty())
        liberty_fail(reading, "this cell has no name.", statement.line);
    reading.cell.file = reading.sources.back().file;
    reading.cell.line = statement.line;
    reading.cell_types.clear();
    reading.clocks.clear();
}

void liberty_end_cell(LIBERTY_READING &reading) {
    merge_pins(reading.cell.pins);
    mark_clocks(reading);
    std::string name = reading.cell.name;
    reading.library.cells.emplace(std::move(name), std::move(reading.cell));
}

void liberty_add_power_pins(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    for (std::string &name : names_in(statement.words))
        reading.cell.power_pins.push_back(std::move(name));
}

void liberty_begin_pin(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    reading.pins.clear();
    for (std::string &name : pin_names(reading, statement)) {
        reading.pins.emplace_back().name = std::move(name);
        reading.pins.back().line = statement.line;
    }
    if (reading.pins.empty())
        liberty_fail(reading, "this pin has no name.", statement.line);
}

void liberty_end_pin(LIBERTY_READING &reading) {
    const LIBERTY_PIN first = reading.pins.front(); // the one that the attributes were given to
    for (LIBERTY_PIN &pin : reading.pins) {
        take_from_bus(pin, first);
        add_pin(reading, reading.in_bus ? reading.bus.own_pins : reading.cell.pins, std::move(pin));
    }
}

void liberty_begin_bus(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    reading.in_bus = true;
    reading.bus = {};
    reading.bus.common.line = statement.line;
    reading.bus.names = names_in(statement.words);
    if (reading.bus.names.empty())
        liberty_fail(reading, "this bus has no name.", statement.line);
}

void liberty_end_bus(LIBERTY_READING &reading) {
    reading.in_bus = false;
    end_bus(reading, reading.cell.pins);
}

void liberty_begin_type(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement, bool in_cell) {
    reading.type_name = joined(statement);
    (in_cell ? reading.cell_types : reading.library_types)[reading.type_name] = {};
}

void liberty_cell_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    if (statement.key == PAD_CELL)
        reading.cell.is_pad_cell = is_true(statement);
    else
        reading.clocks.push_back(joined(statement));
}

void liberty_pin_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    set_attribute(reading, reading.pins.front(), statement);
}

void liberty_bus_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement) {
    if (statement.key == BUS_TYPE)
        reading.bus.type = joined(statement);
    else if (statement.key == MEMBERS)
        reading.bus.members = statement.words;
    else
        set_attribute(reading, reading.bus.common, statement);
}

void liberty_type_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement, bool in_cell) {
    LIBERTY_TYPE &type = (in_cell ? reading.cell_types : reading.library_types)[reading.type_name];
    int64_t number = number_of(reading, statement);
    (statement.key == BIT_WIDTH ? type.width : statement.key == BIT_FROM ? type.from : type.to) = number;
}

void liberty_read(LIBERTY &library, const std::string &path) {
    LIBERTY_READING reading(library);
    open_source(reading, std::make_unique<BYTE_SOURCE>(path));
    liberty_parse(reading);
}
