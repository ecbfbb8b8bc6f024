// Identifiers of VHDL: basic where that is possible, else extended.
#pragma once

#include <string>
#include <string_view>

/// `text` in small letters, as basic identifiers are compared.
std::string VHDL_folded(std::string_view text);

/// True when `text` can be a basic identifier: its characters are right, and it is neither a reserved word of
/// IEEE 1076 nor a name that each netlist needs with its own meaning.
bool VHDL_is_basic(std::string_view text);

/// `text` as an extended identifier; empty when it holds a character that VHDL has none for.
std::string VHDL_extended(std::string_view text);
