// Names as BSDL takes them.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Longest name that is written: a public reader cuts elements at 64 characters.
constexpr size_t BSDL_NAME_LENGTH = 60;

/// The names of one file, which differ without regard to case.
struct BSDL_NAMES {
    std::unordered_set<std::string> taken; ///< in lower case
    struct RENAMED {
        std::string from, to;
    };
    std::vector<RENAMED> renamed;
};

/// The text as a name: letters, digits and single '_', a letter first, no '_' last, no reserved word of VHDL
/// or BSDL. Not yet held against other names.
std::string bsdl_legal_name(std::string_view text);

/// The same, told from all names taken before; a name that is not `text` itself is noted.
std::string bsdl_take_name(BSDL_NAMES &names, const std::string &text);

/// A pin of the package: the same letters, but a digit may stand first.
std::string bsdl_pin_name(std::string_view text);

/// True for a name of an instruction that the standard defines, in any case; `name` then takes its form.
bool bsdl_standard_instruction(std::string &name);
