// A BSDL file in memory: what the steps of `bsdl` fill in, and the text is made from.
#pragma once

#include "kit/boundary_register.hh"
#include "kit/bsdl_names.hh"

#include <string>
#include <unordered_map>
#include <vector>

enum BSDL_MODE : uint8_t { MODE_IN, MODE_OUT, MODE_INOUT, MODE_BUFFER, MODE_LINKAGE };

/// A port of the entity, or a vector of them.
struct BSDL_PORT {
    std::string name;
    BSDL_MODE mode;
    bool is_vector = false;
    int32_t left = 0, right = 0;
    std::vector<std::string> pins; ///< as many as it has bits, in declared order
};

/// An instruction of the file; `opcodes` are not empty.
struct BSDL_INSTRUCTION {
    std::string name;
    std::vector<std::string> opcodes;
    std::string access; ///< BOUNDARY, BYPASS, DEVICE_ID, or a register of the user's own
    bool is_private = false;
    int32_t length = 0; ///< of a user's register, as the BSC file gives it behind its name
};

/// A row of the boundary register, its words as they are written.
struct BSDL_ROW {
    int32_t number;
    std::string type, port, function, safe;
    int32_t control = -1;
    std::string disable, result;
};

/// What a class captures where no standard type fits.
struct BSDL_CELL_INFO {
    std::string name;
    std::vector<std::string> captures; ///< "BIDIR_IN, EXTEST, PI"
};

struct BSDL_FILE {
    std::string design, entity, package;
    std::string cell_package; ///< holds the chip's own cell types
    double frequency = 10e6;
    bool basic = false;
    BSDL_NAMES names;
    std::vector<BSDL_PORT> ports;
    std::vector<std::string> word_of_port;                 ///< by port id: "addr(3)"
    std::vector<BSDL_MODE> mode_of_port;                   ///< by port id
    std::vector<std::string> voltage_pairs, current_pairs; ///< "(p, m)"
    std::vector<std::string> compliance_ports;
    std::string compliance_values;
    int32_t instruction_length = 0;
    std::vector<BSDL_INSTRUCTION> instructions;
    std::string capture, idcode;
    int32_t runbist_cycles = 0;    ///< of TCK in Run-Test/Idle
    std::string runbist_signature; ///< what RUNBIST's register holds then; empty when nobody gives it
    std::vector<std::string> usercodes;
    std::vector<BSDL_ROW> rows;
    std::vector<BSDL_CELL_INFO> own_cells;
    std::vector<std::string> comments; ///< lines ahead of the entity
    std::vector<std::string> warnings; ///< sentences of DESIGN_WARNING
};

/// The instruction of that name, or null.
const BSDL_INSTRUCTION *bsdl_instruction(const BSDL_FILE &file, const char *name);

// The steps, in this order. What can't be described is a fault of the register.

/// Names, modes and pins of the ports, in the order of the open design's netlist. Rows that can't be told to
/// a tester become internal ones, and their ports linkage.
void bsdl_take_ports(BSDL_FILE &file, BOUNDARY_REGISTER &found);
/// Instructions, codes and registers.
void bsdl_take_instructions(BSDL_FILE &file, BOUNDARY_REGISTER &found);
/// The rows with their cell types.
struct CELL_TYPES;
void bsdl_take_rows(BSDL_FILE &file, BOUNDARY_REGISTER &found, const CELL_TYPES &types);
/// The whole file, and the package of its own cells.
std::string bsdl_text(const BSDL_FILE &file, const BOUNDARY_REGISTER &found);
std::string bsdl_package_text(const BSDL_FILE &file);
