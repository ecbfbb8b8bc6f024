// What the cells next to the ports do: input, output, enable and the rest, by their Liberty entries, else by
// the directions and names of their pins.
#pragma once

#include "description/tables.hh"
#include "kit/chip_plan.hh"
#include "kit/liberty.hh"
#include "kit/verilog_model.hh"

#include <map>
#include <string>

/// The pad kind of a cell that Liberty describes; its use is USE_UNKNOWN when the entry shows no pad.
PAD_KIND pad_kind_of_liberty(const LIBERTY &library, const LIBERTY_CELL &cell);

/// A guess for a cell that Liberty does not describe: from its Verilog model where that shows enough
/// (`models` by cell), else from the directions and names of its pins in the open design. `pad_pin` is the
/// pin that stands on a port. A doubt says what was guessed.
PAD_KIND guessed_pad_kind(int32_t class_id, const std::string &pad_pin,
                          const std::unordered_map<std::string, VERILOG_MODEL> &models);

/// True when a cell without a Liberty entry looks like a pad to whom its pin `pin` is shown.
bool looks_like_pad(int32_t class_id, const std::string &pin);

/// True when the library file says what the pad's pin is.
bool pad_describes(const BUFFER_CELL &pad, const std::string &pin);

/// What Liberty says of a pad cell, looked up once and kept in `kinds`; null for nothing.
using KNOWN_PADS = std::map<std::string, PAD_KIND>;
const PAD_KIND *known_pad_kind(KNOWN_PADS &kinds, const LIBERTY &library, const std::string &cell);
