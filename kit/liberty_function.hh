// What a Boolean expression of a Liberty library says of its pins: a truth table, and questions to it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class LIBERTY_READ : uint8_t {
    NOTHING,  ///< an empty text
    DONE,     ///< there is a table
    TOO_WIDE, ///< more than 16 pins: their names alone are known
    BAD,      ///< no expression
};

struct LIBERTY_FUNCTION {
    LIBERTY_READ state = LIBERTY_READ::NOTHING;
    std::vector<std::string> names{}; ///< that stand there, each once, in order
    std::vector<uint64_t> table{};    ///< bit i is the value where name n has the value of bit n of i
};

/// A pin at a value.
struct LIBERTY_LITERAL {
    std::string pin;
    bool value;
};

enum class LIBERTY_WHEN : uint8_t { NEVER, ALWAYS, LITERALS, COMPLEX };

/// When something holds.
struct LIBERTY_CONDITION {
    LIBERTY_WHEN when = LIBERTY_WHEN::NEVER;
    std::vector<LIBERTY_LITERAL>
        literals{}; ///< for LITERALS; the function that gives it says if all are needed or one
    std::vector<std::string> pins{}; ///< that it depends on
};

enum class LIBERTY_SENSE : uint8_t { DIRECT, INVERTED };

/// Reads an expression: ! and ' invert, ^ binds next, then * & and a blank, then + and |.
LIBERTY_FUNCTION liberty_function(std::string_view text);

/// The names in an expression, however many.
std::vector<std::string> liberty_function_names(std::string_view text);

// The questions. Where there is no table the answers are: no pins, not equal, and COMPLEX with the names.

/// The pins that the value depends on; not A of "A*!A".
std::vector<std::string> liberty_function_pins(const LIBERTY_FUNCTION &function);

/// True when it is the pin, or its inverse, and nothing else.
bool liberty_function_is(const LIBERTY_FUNCTION &function, std::string_view pin, LIBERTY_SENSE sense);

/// The values that the other pins need, all of them, for the function to be that pin or its inverse:
/// "IE*PAD" is PAD when IE=1. NEVER for a pin that it does not depend on.
LIBERTY_CONDITION liberty_function_shows(const LIBERTY_FUNCTION &function, std::string_view pin,
                                         LIBERTY_SENSE sense);

/// The values of which any single one makes it true. Of a three_state expression: what switches the pad off.
LIBERTY_CONDITION liberty_function_true_when_any(const LIBERTY_FUNCTION &function);

/// The values that all together make it true, and nothing else does.
LIBERTY_CONDITION liberty_function_true_when_all(const LIBERTY_FUNCTION &function);
