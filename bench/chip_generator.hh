// A chip of any size for benchmarks: N pads around M gates, as the two design files that a run reads.
//
// chip.sdb is the top module with its pads and one core instance; chip.c.sdb is the design flattened, in
// which each gate has a hierarchical name below u_core. Pads alternate between inputs and outputs. The gates
// form a random netlist: each input is driven by one of the gates a few hundred places before it, or by a
// pad.
#pragma once

#include "tests/support/sdb_writer.hh"

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

struct chip_size {
    int32_t pads;
    int32_t instances;
    bool in_module; ///< the gates lie in a module of their own
};

namespace chip_generator {

struct chip_cells {
    int32_t tie, input_pad, output_pad, inverter, nand, mux, flip_flop, module;
};

inline chip_cells add_cells(SDB_HANDLE *design) {
    auto cell = [&](const char *name, std::initializer_list<SDB_NEW_PIN> pins) {
        return SDB_add_class(design, name, SDB_KIND_CELL, pins);
    };
    chip_cells cells{};
    cells.tie = cell("TIE", {{"Z", SDB_OUTPUT}});
    cells.input_pad = cell("PADI", {{"PAD", SDB_INPUT}, {"Y", SDB_OUTPUT}});
    cells.output_pad = cell("PADO", {{"A", SDB_INPUT}, {"PAD", SDB_OUTPUT}});
    cells.inverter = cell("INV", {{"A", SDB_INPUT}, {"Z", SDB_OUTPUT}});
    cells.nand = cell("ND2", {{"A", SDB_INPUT}, {"B", SDB_INPUT}, {"Z", SDB_OUTPUT}});
    cells.mux = cell("MUX2", {{"A", SDB_INPUT}, {"B", SDB_INPUT}, {"S", SDB_INPUT}, {"Z", SDB_OUTPUT}});
    cells.flip_flop = cell("DFF", {{"D", SDB_INPUT}, {"CK", SDB_INPUT}, {"Q", SDB_OUTPUT}});
    return cells;
}

/// Nets 0 and 1 with their sources, as every design has them.
inline void add_constants(SDB_HANDLE *design, const chip_cells &cells) {
    for (const char *name : {"GND", "VCC"}) {
        int32_t net = SDB_add_net(design, SDB_plain_name(design, name));
        int32_t source =
            SDB_add_obj(design, SDB_plain_name(design, std::string(name) + "_source"), cells.tie);
        SDB_connect(design, SDB_obj_node(design, source, 0), net);
    }
}

/// Ports and pads. Gives the core side nets of the input pads, the clock first, and of the output pads.
inline void add_pads(SDB_HANDLE *design, const chip_cells &cells, int32_t pads, std::vector<int32_t> &inputs,
                     std::vector<int32_t> &outputs) {
    for (int32_t i = 0; i < pads; i++) {
        bool input = i % 2 == 0;
        std::string port_name = (input ? "in" : "out") + std::to_string(i);
        int32_t port = SDB_add_port(design, port_name, input ? SDB_INPUT : SDB_OUTPUT);
        int32_t outer = SDB_add_net(design, SDB_plain_name(design, port_name));
        int32_t inner = SDB_add_net(design, SDB_plain_name(design, "core_" + port_name));
        int32_t pad = SDB_add_obj(design, SDB_plain_name(design, "pad_" + port_name),
                                  input ? cells.input_pad : cells.output_pad);
        SDB_connect(design, SDB_port_node(design, port), outer);
        SDB_connect(design, SDB_obj_node(design, pad, input ? 0 : 1), outer);
        SDB_connect(design, SDB_obj_node(design, pad, input ? 1 : 0), inner);
        (input ? inputs : outputs).push_back(inner);
    }
}

/// A name below the row of the core, or a plain one when that is -1.
inline int32_t gate_name(SDB_HANDLE *design, int32_t core_row, const std::string &name) {
    return core_row < 0 ? SDB_plain_name(design, name)
                        : SDB_prefix_name(SDB_add_prefix(design, name, core_row));
}

/// The gates below the row of the core. Each output is a net of its own; `outputs` are driven by the last
/// gates.
inline void add_gates(SDB_HANDLE *design, const chip_cells &cells, int32_t instances, int32_t core_row,
                      const std::vector<int32_t> &inputs, const std::vector<int32_t> &outputs) {
    std::mt19937 random(1149);
    const int32_t kinds[] = {cells.inverter, cells.nand, cells.nand, cells.mux, cells.flip_flop};
    const int32_t pin_counts[] = {2, 3, 3, 4, 3};
    std::vector<int32_t> drivers(inputs);
    drivers.reserve(inputs.size() + static_cast<size_t>(instances));
    for (int32_t i = 0; i < instances; i++) {
        size_t kind = random() % std::size(kinds);
        int32_t gate = SDB_add_obj(design, gate_name(design, core_row, "U" + std::to_string(i)), kinds[kind]);
        size_t near = std::min<size_t>(drivers.size(), 500);
        for (int32_t pin = 0; pin + 1 < pin_counts[kind]; pin++) {
            bool clock = kinds[kind] == cells.flip_flop && pin == 1;
            int32_t net = clock ? inputs[0] : drivers[drivers.size() - 1 - random() % near];
            SDB_connect(design, SDB_obj_node(design, gate, pin), net);
        }
        int32_t left = instances - 1 - i;
        bool drives_pad = static_cast<size_t>(left) < outputs.size();
        int32_t net = drives_pad ? outputs[static_cast<size_t>(left)]
                                 : SDB_add_net(design, gate_name(design, core_row, "n" + std::to_string(i)));
        SDB_connect(design, SDB_obj_node(design, gate, pin_counts[kind] - 1), net);
        drivers.push_back(net);
    }
}

} // namespace chip_generator

/// Writes the flat design. `size` has at least two pads and more instances than pads. 0, or 1 on a fault.
inline int write_flat_chip(const std::string &path, chip_size size) {
    namespace gen = chip_generator;
    SDB_HANDLE *design = SDB_open(path.c_str(), "w", 0);
    if (design == nullptr)
        return 1;
    gen::chip_cells cells = gen::add_cells(design);
    std::vector<int32_t> inputs, outputs;
    gen::add_constants(design, cells);
    gen::add_pads(design, cells, size.pads, inputs, outputs);
    int32_t core_row = -1;
    if (size.in_module) {
        int32_t core_class = SDB_add_class(design, "core", SDB_KIND_DESIGN, {});
        core_row = SDB_add_prefix(design, "u_core", -1);
        SDB_add_obj(design, SDB_prefix_name(core_row), core_class);
    }
    gen::add_gates(design, cells, size.instances, core_row, inputs, outputs);
    return SDB_close(design, 1);
}

/// Writes the top module: pads, and the gates or the core as one instance.
inline int write_top_chip(const std::string &path, chip_size size) {
    if (!size.in_module)
        return write_flat_chip(path, size);
    namespace gen = chip_generator;
    SDB_HANDLE *design = SDB_open(path.c_str(), "w", 0);
    if (design == nullptr)
        return 1;
    gen::chip_cells cells = gen::add_cells(design);
    std::vector<int32_t> inputs, outputs;
    gen::add_constants(design, cells);
    gen::add_pads(design, cells, size.pads, inputs, outputs);
    std::vector<std::string> names;
    for (size_t i = 0; i < inputs.size() + outputs.size(); i++)
        names.push_back("p" + std::to_string(i));
    std::vector<SDB_NEW_PIN> pins;
    for (size_t i = 0; i < names.size(); i++)
        pins.push_back({names[i], i < inputs.size() ? SDB_INPUT : SDB_OUTPUT});
    int32_t core = SDB_add_class(design, "core", SDB_KIND_DESIGN, pins);
    int32_t instance = SDB_add_obj(design, SDB_plain_name(design, "u_core"), core);
    for (size_t i = 0; i < names.size(); i++) {
        int32_t net = i < inputs.size() ? inputs[i] : outputs[i - inputs.size()];
        SDB_connect(design, SDB_obj_node(design, instance, static_cast<int32_t>(i)), net);
    }
    return SDB_close(design, 1);
}
