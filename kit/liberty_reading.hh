// What the scanner, the parser and the records of a Liberty reading share; kit/liberty.hh is the way in.
//
// The scanner knows in which group it stands and takes each statement there as one token, with its words.
// What it does not know there it passes over to its end, a whole group included, without telling the parser.
#pragma once

#include "kit/byte_source.hh"
#include "kit/liberty.hh"

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The groups that statements stand in.
enum LIBERTY_GROUP : uint8_t {
    IN_FILE,
    IN_LIBRARY,
    IN_CELL,
    IN_PIN,
    IN_BUS,
    IN_BUNDLE,
    IN_SEQUENTIAL,
    IN_TYPE,
    IN_POWER_PIN
};

/// What attributes of a group are called once they are read.
enum LIBERTY_KEY : uint8_t {
    NO_KEY,
    PAD_CELL,
    DIRECTION,
    FUNCTION,
    THREE_STATE,
    IS_PAD,
    CLOCK,
    COMPLEMENTARY,
    DRIVER_TYPE,
    BUS_TYPE,
    MEMBERS,
    CLOCKED_ON,
    BIT_WIDTH,
    BIT_FROM,
    BIT_TO,
    INCLUDE_FILE
};

/// How a statement looks: `name : value ;`, `name (words) ;` or `name (words) { ... }`.
enum LIBERTY_SHAPE : uint8_t { SIMPLE, COMPLEX, GROUP };

/// A statement that is kept.
struct LIBERTY_WORD {
    const char *name;
    uint32_t groups; ///< it stands in: bits of LIBERTY_GROUP
    LIBERTY_SHAPE shape;
    int token;
    LIBERTY_KEY key;       ///< of an attribute
    LIBERTY_GROUP opens{}; ///< of a group
};

struct LIBERTY_STATEMENT {
    LIBERTY_KEY key = NO_KEY;
    std::vector<std::string> words{}; ///< the value, or what the parentheses hold; quotes are gone
    int32_t line = 0;
};

struct LIBERTY_SOURCE {
    std::unique_ptr<BYTE_SOURCE> bytes;
    int32_t file = 0; ///< row of LIBERTY::files
    int32_t line = 1;
};

/// A group that is open.
struct LIBERTY_OPEN {
    LIBERTY_GROUP group;
    int32_t file, line;
};

/// Bounds of a bus.
struct LIBERTY_TYPE {
    int64_t width = -1, from = -1, to = -1; ///< -1: not given
};

/// Attributes of one of these hold for the bits: a bus or a bundle in the making.
struct LIBERTY_BUS {
    LIBERTY_PIN common{};
    std::vector<std::string> names{};
    std::string type{};
    std::vector<std::string> members{};
    std::vector<LIBERTY_PIN> own_pins{}; ///< groups within it
};

struct LIBERTY_READING {
    explicit LIBERTY_READING(LIBERTY &to) : library(to) {}
    LIBERTY &library;

    // The scanner's.
    std::deque<LIBERTY_SOURCE> sources{}; ///< the file, and behind it those that are being included
    int32_t included = 0;
    std::vector<LIBERTY_OPEN> open{};
    const LIBERTY_WORD *word = nullptr; ///< of the statement being read; null when it is passed over
    LIBERTY_STATEMENT statement{};
    size_t size = 0;            ///< of its words
    int64_t depth = 0;          ///< of parentheses, or of groups that are passed over
    int32_t start_line = 0;     ///< of the statement
    int32_t inner_line = 0;     ///< of a comment, or of a string that is passed over
    int outer_state = 0;        ///< behind a comment
    bool has_value = false;     ///< a value has begun: it may end with its line,
    bool is_unfinished = false; ///< unless an operator stands there

    // The parser's.
    LIBERTY_CELL cell{};
    std::vector<LIBERTY_PIN> pins{}; ///< of the pin group being read, one for each of its names
    bool in_bus = false;
    LIBERTY_BUS bus{};
    std::string type_name{};
    std::unordered_map<std::string, LIBERTY_TYPE> library_types{}, cell_types{};
    std::vector<std::string> clocks{}; ///< expressions of the cell's flip-flops and latches
    size_t expanded = 0;               ///< memory of the pins so far
};

/// Ends the program with a message that names the place of the scanner, or a line of its file.
[[noreturn]] void liberty_fail(const LIBERTY_READING &reading, const std::string &text, int32_t line = 0);

// The scanner's questions.

/// Null for a statement that is passed over in the group that is open.
const LIBERTY_WORD *liberty_word(const LIBERTY_READING &reading, std::string_view name);
/// Keeps a word of the statement, when that is kept.
void liberty_add_word(LIBERTY_READING &reading, std::string_view word);
/// The same for a string with its quotes.
void liberty_add_string(LIBERTY_READING &reading, std::string_view string);
/// Drops the statement when it should look otherwise: `name :` is no group, `name (` no simple attribute.
void liberty_take_shape(LIBERTY_READING &reading, LIBERTY_SHAPE shape);
/// Opens the file that the statement names, beside the one that is being read.
void liberty_include(LIBERTY_READING &reading);
/// Fails when a group is open at the end of the file.
void liberty_check_end(const LIBERTY_READING &reading);
/// The message on a character that can't stand where it does.
std::string liberty_stray(std::string_view text);

/// Reads the sources to the end.
void liberty_parse(LIBERTY_READING &reading);

// The parser's actions.
void liberty_begin_cell(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_end_cell(LIBERTY_READING &reading);
void liberty_add_power_pins(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_begin_pin(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_end_pin(LIBERTY_READING &reading);
void liberty_begin_bus(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_end_bus(LIBERTY_READING &reading);
void liberty_begin_type(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement, bool in_cell);
void liberty_cell_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_pin_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_bus_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement);
void liberty_type_attribute(LIBERTY_READING &reading, const LIBERTY_STATEMENT &statement, bool in_cell);
