// rimkit prove: the chip with its boundary register, at rest, is the chip from before the run.
//
// At rest each output of the TAP that decides what a cell shows has its system value. Three things make the
// proof: the TAP gives these values in Test-Logic-Reset and under each instruction that must not disturb
// (prove_tap), each kind of boundary cell is a wire then (prove_cells), and with the cells as wires the
// netlist is that of the design before the run, pin by pin (compare_chips). The first two are Yosys' work;
// without it, or without the models of the cells, they are assumed, and the proof says so.
#pragma once

#include "kit/rest_view.hh"

#include <string>
#include <vector>

/// Cells of one class with the same constants at their pins.
struct REST_KIND {
    std::string class_name, instance;                   ///< of the first of them
    std::vector<std::pair<std::string, int8_t>> inputs; ///< pins and their constants; -1 for what may move
    bool is_pad = false;                                ///< a pad of the chip that holds the cell
    int32_t count = 0;
};

struct CHIP_COMPARISON {
    int32_t objects = 0, pins = 0, nets = 0, ports = 0; ///< equal in both designs
    std::vector<REST_KIND> kinds;
    std::vector<std::string> assumed;
    std::vector<REGISTER_FAULT> faults; ///< rule "wire"
};

/// Holds the open edited design against that in `source_file`, in time linear in their size. Allowed
/// differences:
///   - objects: boundary cells, buffers and inverters of the library file, the TAP, pads of ports that had
///   none;
///   - ports of the TAP, and what drives the data and the enables of the TDO pad;
///   - a pin of a pad that belongs to the test (of its multiplexer, or of the cell inside) and was open or
///   constant;
///   - readers of any net that belong to the objects above.
CHIP_COMPARISON compare_chips(const BOUNDARY_REGISTER &found, const std::string &source_file,
                              const REST_VALUES &values);
