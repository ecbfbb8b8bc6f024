// A small cell library and designs over it, taken through the tools as a user would.
#pragma once

#include "tests/support/expected_file.hh"

#include <string>
#include <string_view>

/// Cells with scalar and vector pins of every direction, with their behaviour for simulators.
extern const std::string_view netlist_cells;

/// A few cells in short, as readers and editors of designs need them.
extern const std::string_view few_cells;

/// A hierarchy with most of what netlists hold: vectors of both directions, taken apart and put together,
/// names that need care, constants, open pins, outputs that share nets with other ports. All outputs of `top`
/// follow from its inputs.
extern const std::string_view netlist_design;

/// A scratch folder that has the cells in lib/ as SDB files and in cells.v.
struct netlist_folder : scratch_folder {
    explicit netlist_folder(std::string_view cells = netlist_cells);

    /// Runs one of the tools with its arguments, without the search path of the machine that tests.
    run_result call(const std::string &line) const;
    /// The same; expects it to succeed without a word.
    void tool(const std::string &line) const;
    /// Writes `<name>.v` and reads it with kalmverin.
    void take(const std::string &name, std::string_view verilog) const;
    /// Expects the text in the error of a tool: status 255, "ERROR: " on the error stream, nothing on the
    /// console that is not there too.
    void refused(const std::string &line, const std::string &text) const;
    /// The same for several arguments of a tool; the errors stand in siblings/expected/<tool>_refusals.txt.
    void refuses(const std::string &tool, std::initializer_list<const char *> arguments) const;
    /// Expects that Icarus Verilog, Yosys and Verilator take the file, together with cells.v. Verilator
    /// wants a wire between an input and a pin of both directions.
    void accepted(const std::string &file, const std::string &top, bool by_verilator = true) const;
    /// Expects that both files describe the same behaviour, which Yosys proves.
    void equivalent(const std::string &one, const std::string &other, const std::string &top) const;
};

/// Expects a text to hold each part.
void expect_parts(const std::string &text, std::initializer_list<const char *> parts);

/// How often a text holds a part.
size_t count_of(const std::string &text, const std::string &part);
