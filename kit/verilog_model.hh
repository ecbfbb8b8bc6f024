// What the Verilog model of a pad shows of its function, for cells that no Liberty file describes: continuous
// assignments and gates. The rest of a model is passed over.
#pragma once

#include "kit/liberty.hh"

#include <string>
#include <unordered_map>
#include <vector>

/// What drives a net in a model, in the words of Liberty.
struct MODEL_DRIVER {
    std::string function;
    std::string three_state; ///< empty for a driver that is always on
    int32_t line = 0;
    bool is_single = true; ///< nothing else drives the net
};

/// Of one module: its drivers by net, and its file.
struct VERILOG_MODEL {
    std::string file;
    std::unordered_map<std::string, MODEL_DRIVER> drivers;
};

/// The models of the cells in the files. A fault of form ends the program with its line.
std::unordered_map<std::string, VERILOG_MODEL> read_verilog_models(const std::vector<std::string> &files,
                                                                   const std::vector<std::string> &macros,
                                                                   const std::vector<std::string> &folders);

/// Gives the pins of `cell`, which have names and directions, the functions that the model shows, in terms of
/// the cell's other pins. True when it shows any.
bool take_verilog_model(LIBERTY_CELL &cell, const VERILOG_MODEL &model);
