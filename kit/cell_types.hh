// The standard cell types of BSDL, and which one a cell of the register is.
#pragma once

#include "kit/boundary_register.hh"

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Instructions under which a type says what its cell captures.
enum CAPTURE_INSTRUCTION : uint8_t { IN_EXTEST, IN_SAMPLE, IN_INTEST, CAPTURE_INSTRUCTIONS };

/// What a cell can capture, as bits: several fit where no trial told them apart.
enum CAPTURE_SOURCE : uint8_t {
    FROM_PI = 1,
    FROM_PO = 2,
    FROM_UPD = 4,
    FROM_CAP = 8,
    FROM_ZERO = 16,
    FROM_ONE = 32,
    FROM_ANY = 63,
};
constexpr std::string_view CAPTURE_WORDS[] = {"PI", "PO", "UPD", "CAP", "ZERO", "ONE"};

/// The sources under each instruction.
using CAPTURES = std::array<uint8_t, CAPTURE_INSTRUCTIONS>;

/// The context of a row in CELL_INFO: its function, or one of the two of a bidir cell.
enum CELL_CONTEXT : uint8_t {
    AS_INPUT,
    AS_OUTPUT2,
    AS_OUTPUT3,
    AS_CONTROL,
    AS_CONTROLR,
    AS_INTERNAL,
    AS_CLOCK,
    AS_OBSERVE_ONLY,
    AS_BIDIR_IN,
    AS_BIDIR_OUT,
    CELL_CONTEXTS
};
constexpr std::string_view CONTEXT_WORDS[] = {"INPUT",    "OUTPUT2", "OUTPUT3",      "CONTROL",  "CONTROLR",
                                              "INTERNAL", "CLOCK",   "OBSERVE_ONLY", "BIDIR_IN", "BIDIR_OUT"};

/// The contexts of a row: one, or the two of a bidir cell.
std::vector<CELL_CONTEXT> contexts_of(ROW_KIND kind, bool resets);

/// What was measured, by class, wiring of the control pins, and context.
struct CELL_TYPES {
    struct MEASURED {
        std::map<CELL_CONTEXT, CAPTURES> captures{};
        int8_t reset_value = -1; ///< of the update stage; -1 for none
    };
    std::map<std::string, MEASURED> of_kind{};
    std::vector<std::string> kind_of_cell{}; ///< by number; empty for a cell that was not tried
    std::string why_not{};                   ///< why nothing was measured
};

/// True when the standard type takes these captures in this context; INTEST counts where `with_intest`.
bool type_fits(std::string_view type, CELL_CONTEXT context, const CAPTURES &captures, bool with_intest);
/// True when the standard type has this context at all.
bool type_has(std::string_view type, CELL_CONTEXT context, bool with_intest);
/// The first type that takes all of them, or an empty text.
std::string first_fit(const std::map<CELL_CONTEXT, CAPTURES> &captures, bool with_intest);
