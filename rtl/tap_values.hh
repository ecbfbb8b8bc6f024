// What the TAP's templates are expanded with: condition letters, names and lists, from the resolved tables.
// rtl/templates.hh tells what the letters and lists stand for.
#pragma once

#include "rtl/decode_terms.hh"

TEMPLATE_VALUES tap_values(RTL_LANGUAGE language);

/// Every condition letter that the values may hold; a template with another one would have a line that never
/// comes.
std::string tap_letters();

/// Adds the lists of the controller's states.
void add_state_values(TEMPLATE_VALUES &values);

/// True for an identification or user code register that the TAP does not hold and nothing drives.
bool is_undriven_register(int32_t row);

/// The enable pins whose gate names a signal that can't be read in the top module of that language.
std::vector<const ENABLE_PIN *> pins_of_unknown_gates(RTL_LANGUAGE language);
