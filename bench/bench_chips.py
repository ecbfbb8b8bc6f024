"""Chips of any size as Verilog with their descriptions, and the timing of commands: what the benchmarks share.

A chip has N pads (inputs, 2-state and 3-state outputs, bidirectional pads; 16 to 32 of them share an enable) around M
random gates, with the cells and the `.lib` and `.bsc` files of examples/uart_chip. The gates stand in one of three shapes:

  - `unique`: in one module, where each net and gate has a name of its own;
  - `blocks`: in modules of 10,000 gates, which all use the same names, as synthesis leaves a large chip;
  - `flat`: in the top module, beside the pads.
"""
import collections
import os
import random
import shutil
import statistics
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
EXAMPLE = os.path.join(ROOT, "examples", "uart_chip")
SHAPES = ("unique", "blocks", "flat")
BLOCK_GATES = 10000
TEST_PORTS = [("tdi", "IPADU"), ("tms", "IPADU"), ("tck", "CKPAD"), ("trst_n", "IPADU")]
GATES = [("INV", "A"), ("NAND2", "AB"), ("NOR2", "AB"), ("XOR2", "AB"), ("MUX2", ("D0", "D1", "S"))]
CLOCKS = ["clk_c", "rst_c"]


def pad_kinds(pads):
    """Inputs, 2-state and 3-state outputs and bidirectional pads in turn; 16 pads share an enable."""
    kinds = ["IPAD", "OPAD", "TPAD", "BPAD"]
    return [("p%d" % i, kinds[i % 4]) for i in range(pads)]


def write_ring(pads):
    """The pads of the top module: the nets that come from them, those that the core drives, and the lines."""
    from_pads, to_pads, lines = [], [], []
    for number, (name, kind) in enumerate(pads):
        pins = [".PAD(%s)" % name]
        if kind in ("IPAD", "BPAD"):
            pins.append(".C(%s_c)" % name)
            from_pads.append(name + "_c")
        if kind != "IPAD":
            pins.append(".I(%s_i)" % name)
            to_pads.append(name + "_i")
        if kind in ("TPAD", "BPAD"):
            enable = "oen_%d" % (number // 64)
            pins.append(".OEN(%s)" % enable)
            if enable not in to_pads[-200:]:
                to_pads.append(enable)
        lines.append("  %s pad_%s (%s);\n" % (kind, name, ", ".join(pins)))
    return from_pads, to_pads, lines


def write_gates(out, count, inputs, outputs, chance):
    """A random netlist: the first gates read each an input, so that none floats, the others gates up to 500 places before
    them; the last ones drive the outputs."""
    out.write("".join("  wire n%d;\n" % i for i in range(count - len(outputs))))
    drivers = list(inputs)
    for i in range(count):
        left = count - 1 - i
        net = outputs[left] if left < len(outputs) else "n%d" % i
        if i < len(inputs):
            out.write("  NAND2 U%d (.A(%s), .B(%s), .Z(%s));\n" % (i, inputs[i], drivers[-1], net))
        elif i % 5 == 4:
            out.write("  DFFR U%d (.D(%s), .CK(clk_c), .RN(rst_c), .Q(%s));\n" % (i, drivers[-1], net))
        else:
            cell, pins = GATES[chance.randrange(len(GATES))]
            near = min(len(drivers), 500)
            nets = ", ".join(".%s(%s)" % (pin, drivers[-1 - chance.randrange(near)]) for pin in pins)
            out.write("  %s U%d (%s, .Z(%s));\n" % (cell, i, nets, net))
        drivers.append(net)
        if len(drivers) > 4000:
            del drivers[:2000]


def write_module(out, name, ports, contents):
    """A module of (name, direction) ports; `contents` writes what stands in it."""
    out.write("module %s (%s);\n" % (name, ", ".join(port for port, _ in ports)))
    out.write("".join("  %s %s;\n" % (way, port) for port, way in ports))
    contents()
    out.write("endmodule\n")


def inward(names):
    return [(name, "input") for name in names]


def outward(names):
    return [(name, "output") for name in names]


def write_blocks(out, count, inputs, outputs, chance):
    """Blocks of gates and the contents of the core that joins them: each takes its share of inputs and outputs and what the
    block before it gives."""
    blocks = max(count // BLOCK_GATES, 1)
    lines = []
    for number in range(blocks):
        ins, outs = inputs[number::blocks], outputs[number::blocks]
        links = ["z%d" % i for i in range(32)]
        ports = inward(CLOCKS + ["a%d" % i for i in range(len(ins) + 32)]) + outward(links + ["q%d" % i for i in range(len(outs))])
        names = [name for name, _ in ports]
        gates = count // blocks + (count % blocks if number == 0 else 0)
        write_module(out, "block_%d" % number, ports, lambda: write_gates(
            out, gates, [name for name, way in ports if way == "input"], [name for name, way in ports if way == "output"], chance))
        nets = CLOCKS + ins + ["link_%d_%d" % (number, i) for i in range(32)]
        nets += ["link_%d_%d" % ((number + 1) % blocks, i) for i in range(32)] + outs
        lines.append("".join("  wire link_%d_%d;\n" % (number, i) for i in range(32)))
        lines.append("  block_%d u_%d (%s);\n" % (number, number, ", ".join(".%s(%s)" % pair for pair in zip(names, nets))))
    return lines


def write_chip(folder, pads, instances, shape):
    """chip.v in the folder, the same for the same arguments."""
    chance = random.Random(1149)
    from_pads, to_pads, ring = write_ring(pads)
    inputs = CLOCKS + from_pads
    ways = {"IPAD": "input", "OPAD": "output", "TPAD": "output", "BPAD": "inout"}
    ports = [("clk", "input"), ("rst_n", "input"), ("tdo", "output")] + inward(name for name, _ in TEST_PORTS)
    ports += [(name, ways[kind]) for name, kind in pads]
    with open(os.path.join(folder, "chip.v"), "w") as out:

        def top():
            out.write("".join("  wire %s;\n" % name for name in inputs + to_pads))
            out.write("  CKPAD pad_clk (.PAD(clk), .C(clk_c));\n  IPAD pad_rst_n (.PAD(rst_n), .C(rst_c));\n")
            out.write("".join("  %s pad_%s (.PAD(%s), .C());\n" % (cell, name, name) for name, cell in TEST_PORTS))
            out.write("  TPAD pad_tdo (.PAD(tdo), .I(1'b0), .OEN(1'b1));\n")
            out.writelines(ring)
            if shape == "flat":
                write_gates(out, instances, inputs, to_pads, chance)
            else:
                out.write("  core u_core (%s);\n" % ", ".join(".%s(%s)" % (n, n) for n in inputs + to_pads))

        core_ports = inward(inputs) + outward(to_pads)
        if shape == "unique":
            write_module(out, "core", core_ports, lambda: write_gates(out, instances, inputs, to_pads, chance))
        elif shape == "blocks":
            lines = write_blocks(out, instances, from_pads, to_pads, chance)
            write_module(out, "core", core_ports, lambda: out.writelines(lines))
        write_module(out, "chip", ports, top)


def write_descriptions(folder, pads):
    """Cells, `.lib`, `.bsc` and pin file of such a chip."""
    for name in ("cells.v", "chip.lib", "chip.bsc"):
        shutil.copy(os.path.join(EXAMPLE, name), folder)
    pins = [("clk", "IN"), ("rst_n", "IN")] + [(name, "IN") for name, _ in TEST_PORTS] + [("tdo", "OUT")]
    pins += [(name, "IN" if kind == "IPAD" else "OUT") for name, kind in pads]
    with open(os.path.join(folder, "chip.pin"), "w") as out:
        out.write("%%PACKAGE_TYPE ANY%d %d;\n" % (len(pins), len(pins)))
        for number, (name, way) in enumerate(pins, 1):
            out.write("%d %s %s %s\n" % (number, name.upper(), name, way))


def make_chip(folder, bin_dir, pads, instances, shape):
    """A chip with its descriptions and its library cells in `lib`, ready for kalmverin."""
    os.makedirs(os.path.join(folder, "lib"), exist_ok=True)
    kinds = pad_kinds(pads)
    write_chip(folder, kinds, instances, shape)
    write_descriptions(folder, kinds)
    run([os.path.join(bin_dir, "kalmverin"), "-lib", "cells.v", "-opath", "lib"], folder)


# What a command took: processor time (user and system) and user time alone in seconds, largest resident size in MB.
COST = collections.namedtuple("COST", "seconds user megabytes")


def run(command, folder, path=None):
    """The COST of a command; a failure ends the benchmark."""
    environment = dict(os.environ, PATH=path or os.environ["PATH"])
    with open(os.path.join(folder, "bench.log"), "w+") as log:
        child = subprocess.Popen(command, cwd=folder, stdout=log, stderr=log, env=environment)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        if child.returncode != 0:
            log.seek(0)
            sys.exit("%s: %s failed:\n%s" % (os.path.basename(sys.argv[0]), " ".join(command), log.read()[-2000:]))
    return COST(usage.ru_utime + usage.ru_stime, usage.ru_utime, usage.ru_maxrss / 1024)


def measure(kinds, runs):
    """Runs each (name, command, folder, path) in turn, so that a busy machine matters little; prints and gives the median
    COST by name."""
    results = {name: [] for name, *_ in kinds}
    for turn in range(runs + 1):
        for name, command, folder, path in kinds:
            result = run(command, folder, path)
            if turn > 0:  # the first turn brings the files into the cache
                results[name].append(result)
    medians = {name: COST(*(statistics.median(column) for column in zip(*rows))) for name, rows in results.items()}
    for name, cost in medians.items():
        print("  %-34s %8.3f s   %7.0f MB" % (name, cost.seconds, cost.megabytes), flush=True)
    return medians


def quiet_tools(folder):
    """A PATH on which the sibling tools do nothing, so that rimweave's own work is timed."""
    tools = os.path.join(folder, "quiet_tools")
    os.makedirs(tools, exist_ok=True)
    for name in ("kalmedit", "kalmlist", "kalmflat", "kalmverin", "mv"):
        with open(os.path.join(tools, name), "w") as out:
            out.write("#!/bin/sh\nexit 0\n")
        os.chmod(os.path.join(tools, name), 0o755)
    return tools + ":" + os.environ["PATH"]
