// rimkit prove: the chip with its boundary register, at rest, is the chip from before the run.
//
// At rest each output of the TAP that decides what a cell shows has its system value. Three things make the
// proof: the TAP gives these values in Test-Logic-Reset and under each instruction that must not disturb
// (prove_tap), each kind of boundary cell is a wire then (prove_cells), and with the cells as wires the
// netlist is that of the design before the run, pin by pin (compare_chips). The first two are Yosys' work;
// without it, or without the models of the cells, they are assumed, and the proof says so.
#pragma once

#include "kit/rest_view.hh"

#include <set>
#include <string>
#include <vector>

/// What a pin that is not constant is to the proof of its cell.
enum REST_PIN : int8_t {
    REST_FREE = -1,   ///< an input of the test
    REST_DATA = -2,   ///< an input of the chip's function
    REST_OUTPUT = -3, ///< of the function; pins that go both ways are in it
    REST_HIDDEN = -4, ///< an output of the test
};

/// Cells of one class with the same constants at their pins.
struct REST_KIND {
    std::string class_name, instance;                 ///< of the first of them
    std::vector<std::pair<std::string, int8_t>> pins; ///< their constants, or a REST_PIN
    bool is_pad = false; ///< a pad of the chip with a cell or a multiplexer inside
    int32_t count = 0;
};

struct CHIP_COMPARISON {
    int32_t objects = 0, pins = 0, nets = 0, ports = 0; ///< equal in both designs
    std::vector<REST_KIND> kinds;
    std::unordered_map<int32_t, size_t> kind_of_cell; ///< by object
    std::vector<std::string> assumed;
    std::vector<REGISTER_FAULT> faults; ///< rule "wire"
    std::vector<REST_ROLE> roles_before, roles_after;
    /// Pins and ports that may be on something else, without the marks of their names.
    std::set<std::string> let_pass;
    /// Pins of both ways of pads that are tied off, the same: they drive nothing.
    std::set<std::string> reading;
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

/// What the TAP's RTL gives at an output, proven.
struct TAP_OUTPUT {
    std::string pin;
    int8_t at_rest = -1; ///< its system value: as the library file declares it, else that of Test-Logic-Reset
    int8_t in_reset = -1; ///< in Test-Logic-Reset; -1 for what is not constant
    int8_t in_extest = -1;
    std::vector<std::string> disturbing; ///< instructions that must not disturb, under which it may not rest
};

struct PROVEN_TAP {
    std::string why_not; ///< why nothing was proven; empty when all was asked
    std::vector<TAP_OUTPUT> outputs;
    std::vector<std::string> quiet; ///< the instructions that must not disturb
    bool reset_holds = false; ///< the state Test-Logic-Reset leads to the reset of the instruction register
};

/// Asks Yosys about the TAP of the open edited design. `tap_file` is its Verilog as the run wrote it.
PROVEN_TAP prove_tap(const BOUNDARY_REGISTER &found, const std::string &tap_file);
/// The values of the outputs at rest.
REST_VALUES proven_rest_values(const PROVEN_TAP &tap);

/// What Yosys says of the kinds of cells, in the order of `kinds`.
struct PROVEN_CELLS {
    std::string why_not; ///< why nothing was asked
    struct ANSWER {
        bool held = false;
        std::string why_not; ///< why this one was not asked, or not answered
    };
    std::vector<ANSWER> of_kind;
};

/// Asks whether each kind is a wire from its core side to its pad side and back, whatever its registers hold
/// and its other pins do; of a pad with a cell or a multiplexer inside, whether these can't be seen.
PROVEN_CELLS prove_cells(const std::vector<REST_KIND> &kinds, const std::vector<std::string> &models);
/// Asks whether what each kind of cell gives out can't see what the core gives the cell. Pads are not asked
/// about.
PROVEN_CELLS prove_isolation(const std::vector<REST_KIND> &kinds, const std::vector<std::string> &models);

/// What Yosys says of the pins and ports that read something, one by one.
struct POINT_PROOF {
    std::string why_not; ///< why nothing was asked
    int32_t points = 0;
    std::vector<std::string> unproven;
};

/// Asks Yosys what `compared` has found without it: each pin that reads has the value of before the run.
POINT_PROOF prove_points(const BOUNDARY_REGISTER &found, const std::string &source_file,
                         const REST_VALUES &values, const CHIP_COMPARISON &compared,
                         const std::vector<std::string> &models);
/// The kinds without an answer, "NAME (COUNT)" each, by the reason why.
std::vector<std::pair<std::string, std::vector<std::string>>>
unanswered_kinds(const std::vector<REST_KIND> &kinds, const PROVEN_CELLS &proven);
