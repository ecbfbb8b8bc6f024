// What the instruction decoder writes behind each of its outputs, from the instruction table.
#pragma once

#include "rtl/tap_ports.hh"
#include "support/template_text.hh"

#include <unordered_map>

/// Adds the decoder's names and lists to `values`; `ports` are those of the language, in header order.
void add_decoder_values(TEMPLATE_VALUES &values, RTL_LANGUAGE language,
                        const std::vector<TAP_MODULE_PORT> &ports);

/// An instruction that names an enable pin, by its row, with the value that it gives the pin.
struct ENABLE_USE {
    int32_t instruction;
    const char *value;
};
/// The uses of each enable pin, by the exact name, in table order. An instruction uses a pin once.
using ENABLE_USES = std::unordered_map<std::string_view, std::vector<ENABLE_USE>>;
ENABLE_USES enable_uses();

/// The value of an enable pin of several bits while no instruction names it: the first pattern, counted up
/// with its left bit first, that no instruction uses; the last one tried when all are used.
std::string enable_default(const ENABLE_PIN &pin, const ENABLE_USES &uses);

/// An opcode or pattern as the language writes it: VHDL knows only a capital X.
std::string pattern_text(const std::string &pattern, RTL_LANGUAGE language);
