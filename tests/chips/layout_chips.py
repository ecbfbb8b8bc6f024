#!/usr/bin/env python3
"""Makes one small chip per layout (where its pads stand, where its TAP stands), inserts the boundary register,
and proves the result as proof.py does.

    layout_chips.py --layout pads_two_down --bin build/bin --work DIR [--vhdl]

All chips hold the same core and the same pads, and a layout is no more than a few paths.
"""

import argparse
import json
import pathlib
import shutil
import sys
from dataclasses import dataclass, field

sys.dont_write_bytecode = True
import proof  # noqa: E402
from chip_files import ProofError  # noqa: E402
from pad_modules import Design  # noqa: E402
from player import run  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent.parent / "examples" / "uart_chip"
TAP_OUTPUTS = "module jtag_tap (output TDO, output TDO_EN); endmodule\n"


@dataclass
class Layout:
    pads: str = ""                  # path of the pads; "" is the top module
    tap: str = "u_tap"              # path of the TAP's instance
    exists: bool = False            # the design holds the TAP already
    options: str = ""               # besides -add_tap
    bare: bool = False              # no pads but the clock's, and no test ports; with -add_pad two ports, one read
                                    # and one driven by the core, are bidirectional
    places: dict = field(default_factory=dict)      # ports whose pads stand elsewhere
    reach: tuple = ()               # (test net, module): how far up the design leads a test pad's core side
    unwired: bool = False           # the TAP that the design holds is not joined to the test pads
    buffered: bool = False          # it is, with a buffer in the way of each signal
    tied_tdo: bool = False          # the TDO pad's pins are tied to constants beside the pad
    cells: str = ""                 # further items of the .bsc file
    bcm: tuple = ()                 # the file of the module that the cells stand in
    dotted: bool = False            # instance names as generate loops make them, with a dot and brackets inside


LAYOUTS = {
    "pads_in_module": Layout(pads="u_ring", reach=(("tdi_c", ""), ("tdo_i", ""), ("tdo_oen", ""))),
    "pads_in_module_tied": Layout(pads="u_ring", tied_tdo=True, places={"tms": ""}),
    "pads_two_down": Layout(pads="u_frame.u_ring", places={"tck": ""},
                            reach=(("tdi_c", ""), ("trst_n_c", "u_frame"), ("tdo_i", "u_frame"))),
    "pads_in_three_modules": Layout(
        pads="u_frame.u_ring", places={"clk": "", "a": "", "tdi": "", "b": "u_frame", "tck": "u_frame", "y": "u_frame",
                                       "z1": "u_shell.u_deep", "d": "u_shell.u_deep", "trst_n": "u_shell.u_deep"},
        reach=(("tdi_c", ""), ("tck_c", ""), ("tdo_i", ""))),
    "cells_in_one_module": Layout(options="-add_bcm", bcm=("chip_BCM.v",)),
    "tap_exists": Layout(exists=True),
    "tap_exists_pads_in_module": Layout(pads="u_ring", exists=True),
    "tap_exists_behind_buffers": Layout(pads="u_ring", exists=True, buffered=True),
    "tap_exists_unwired": Layout(pads="u_frame.u_ring", exists=True, unwired=True, reach=(("tdi_c", "u_frame"),)),
    "tap_path": Layout(tap="u_sys.u_debug.u_tap", options="-external_idcode"),
    "tap_path_exists": Layout(tap="u_sys.u_debug.u_tap", exists=True),
    "tap_path_beside_pads": Layout(pads="u_frame.u_ring", tap="u_sys.u_tap", reach=(("tms_c", ""),)),
    "tap_path_exists_beside_pads": Layout(pads="u_ring", tap="u_sys.u_debug.u_tap", exists=True, dotted=True),
    "tap_path_exists_unwired": Layout(pads="u_ring", tap="u_sys.u_debug.u_tap", exists=True, unwired=True),
    "tap_with_pads_unwired": Layout(pads="u_ring", tap="u_ring.u_tap", exists=True, unwired=True),
    "tap_with_pads": Layout(pads="u_frame.u_ring", tap="u_frame.u_ring.u_tap", places={"tck": "", "tdo": ""}),
    "tap_with_pads_exists": Layout(pads="u_ring", tap="u_ring.u_tap", exists=True),
    "tap_above_pads": Layout(pads="u_frame.u_ring", tap="u_frame.u_tap", reach=(("tdi_c", "u_frame"),)),
    "tap_off_the_pads_path": Layout(pads="u_frame.u_ring", tap="u_frame.u_side.u_tap", places={"tdi": ""},
                                    dotted=True),
    "ports_get_pads": Layout(bare=True, options="-add_pad",
                             cells="%INPUT_BUFFER IPAD; %OUTPUT_BUFFER TPAD; %INOUT_BUFFER BPAD;"),
    "ports_without_pads": Layout(bare=True, options="-no_pad"),
}

INPUTS = ["clk", "rst_n", "a", "b"]
TEST_INPUTS = ["tdi", "tms", "tck", "trst_n"]


def dotted(name):
    return f"{name}.x[0]"


def escaped(name):
    return f"\\{dotted(name)} "


def add_core(design, path, bare):
    """A shift register that the inputs are mixed into; each output takes a bit of it."""
    def net(port):
        return port if bare and port != "clk" else port + "_c"
    design.add("u_core", "XOR2", "mix_a", A=net("a"), B="q5", Z="d0")
    design.add("u_core", "XOR2", "mix_b", A=net("b"), B="q1", Z="d2")
    for bit in range(6):
        design.add("u_core", "DFFR", f"bit{bit}", D=f"d{bit}" if bit in (0, 2, 4) else f"q{bit - 1}",
                   CK=net("clk"), RN=net("rst_n"), Q=f"q{bit}")
    design.add("u_core", "XOR2", "mix_d", A=net("w") if bare else "d_in", B="q3", Z="d4")
    if not bare:                        # what the chip drives itself it does not look at
        design.add("u_core", "AND2", "gate_d", A="d_c", B="q5", Z="d_in")
    # A module that a TAP may stand in holds logic of its own.
    design.add(path, "INV", "keep", A="q2", Z="y_i" if not bare else "y")


def add_pads(design, layout):
    def place(port):
        return layout.places.get(port, layout.pads)
    for port in INPUTS + TEST_INPUTS:
        cell = "CKPAD" if port == "clk" else "IPADU" if port in ("tdi", "tms", "trst_n") else "IPAD"
        design.add(place(port), cell, "pad_" + port, PAD=port, C=port + "_c")
    design.add(place("y"), "OPAD", "pad_y", I="y_i", PAD="y")
    design.add(place("z0"), "TPAD", "pad_z0", I="q0", OEN="q4", PAD="z0")
    design.add(place("z1"), "TPAD", "pad_z1", I="q1", OEN="q4", PAD="z1")
    design.add(place("d"), "BPAD", "pad_d", I="q3", OEN="q5", C="d_c", PAD="d")
    data = "1'b0" if layout.tied_tdo else "tdo_i"
    enable = "1'b1" if layout.tied_tdo else "1'b0" if layout.unwired else "tdo_oen"
    design.add(place("tdo"), "TPAD", "pad_tdo", I=data, OEN=enable, PAD="tdo")
    design.ports = {port: "input" for port in INPUTS + TEST_INPUTS}
    design.ports.update(y="output", z0="output", z1="output", d="inout", tdo="output")


def add_tap(design, layout, path):
    """The TAP is written without the design beside it and knows no pad: its TDO enable is high active. Of an
    unwired one the enable is not joined to the pad either, which then drives always."""
    wires = {"TDI": "tdi_c", "TMS": "tms_c", "TCK": "tck_c", "TRST_N": "trst_n_c", "TDO": "tdo_i"}
    if layout.unwired:
        design.add(path, "jtag_tap", "u_tap", TMS="1'b1", TCK="1'b0", BSR_SO="1'b0")
        return
    if layout.buffered:
        for pin, net in wires.items():
            data = {"A": net, "Z": pin.lower() + "_t"} if pin != "TDO" else {"A": "tdo_t", "Z": net}
            design.add(path, "BUF", "via_" + pin.lower(), **data)
            wires[pin] = pin.lower() + "_t"
    design.add(path, "jtag_tap", "u_tap", **wires, TDO_EN="tdo_en", BSR_SO="1'b0")
    design.add(path, "INV", "tdo_off", A="tdo_en", Z="tdo_oen")


def make_design(layout):
    cells = (EXAMPLE / "cells.v").read_text() + TAP_OUTPUTS
    design = Design(cells, escaped if layout.dotted else str)
    tap_parent = layout.tap.rpartition(".")[0]
    add_core(design, tap_parent or "u_core", layout.bare)
    if layout.bare:
        design.ports = {port: "input" for port in INPUTS + ["w"]}
        design.ports.update(y="output", v="output")
        design.add("", "CKPAD", "pad_clk", PAD="clk", C="clk_c")
        design.add("u_core", "XOR2", "out_v", A="q3", B="q5", Z="v")
        if "-add_pad" in layout.options:
            design.ports.update(w="inout", u="inout")
            design.add("u_core", "XOR2", "out_u", A="q2", B="q4", Z="u")
    else:
        add_pads(design, layout)
    design.reach = [(path, net) for net, path in layout.reach]
    if layout.exists:
        add_tap(design, layout, tap_parent)
    return design


def write_files(layout, design, work):
    shutil.rmtree(work, ignore_errors=True)
    (work / "lib").mkdir(parents=True)
    for file in (EXAMPLE / "cells.v", EXAMPLE / "chip.lib", *map(HERE.joinpath, ("cells.vhd", *layout.bcm))):
        shutil.copy(file, work)
    (work / "chip.v").write_text("".join(map(design.module, design.paths())))
    bsc = (EXAMPLE / "chip.bsc").read_text()
    path = layout.tap.split(".")
    if layout.dotted:                   # the name of a new TAP is the user's
        path = [dotted(name) for name in path[:-1]] + [dotted(path[-1]) if layout.exists else path[-1]]
    bsc = bsc.replace("%INSTANCE_NAME    u_tap;", f"%INSTANCE_NAME    {'.'.join(path)};")
    bsc = bsc.replace("%SCAN_CELLS", layout.cells + "\n%SCAN_CELLS", 1)
    (work / "chip.bsc").write_text(bsc)
    pins = list(design.ports) + [port for port in TEST_INPUTS + ["tdo"] if port not in design.ports]
    rows = [f"{number} {port.upper()} {port} {'CLK' if port == 'clk' else '*'}\n"
            for number, port in enumerate(pins, 1)]
    (work / "chip.pin").write_text("%PACKAGE_TYPE QFP32 32;\n" + "".join(rows))


def plan_of(layout, vhdl):
    return {"design": "chip", "cells": ["cells.v", *layout.bcm], "netlist": ["chip.v"], "resets": {"rst_n": "0"}, "vhdl": vhdl,
            "before": ["chip_TAP.v"] if layout.exists or layout.bcm else [], "cycles": 400,
            "structure": not layout.bcm,       # in a module of the user's nobody looks
            "clocks": ["clk"], "like": "plain" if layout.bcm else "."}


def insert(layout, work, bin_dir, vhdl):
    def tool(name, *words, what):
        return run([str(bin_dir / name), *words], work, what)
    tool("kalmverin", "-lib", "cells.v", *layout.bcm, "-opath", "lib", what="reading the cells")
    if layout.exists:
        tool("rimweave", "chip", "-add_tap_only", what="writing the TAP")
        if vhdl:
            tool("rimweave", "chip", "-add_tap_only", "-vhdl", what="writing the TAP in VHDL")
        tool("kalmverin", "-lib", "chip_TAP.v", "-opath", "lib", what="reading the TAP")
    tool("kalmverin", "chip.v", what="reading the chip")
    words = ([] if layout.exists else ["-add_tap"]) + layout.options.split()
    for form in [["-vhdl"]] * vhdl + [[]]:
        (work / "rimweave.out").write_text(tool("rimweave", "chip", *words, *form, what="inserting"))


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--layout", required=True, choices=LAYOUTS)
    options.add_argument("--bin", required=True, type=pathlib.Path, help="folder of the programs")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    options.add_argument("--vhdl", action="store_true", help="write VHDL too, and play it under GHDL")
    given = options.parse_args()
    layout, work = LAYOUTS[given.layout], given.work.resolve()
    try:
        write_files(layout, make_design(layout), work)
        insert(layout, work, given.bin.resolve(), given.vhdl)
        if layout.bcm:      # the walk of rimkit does not go into the module of the cells
            write_files(Layout(), make_design(Layout()), work / "plain")
            insert(Layout(), work / "plain", given.bin.resolve(), False)
        plan = plan_of(layout, given.vhdl)
        (work / "plan.json").write_text(json.dumps(plan, indent=4) + "\n")
        cells, faults, counts = proof.prove(plan, work, given.bin.resolve())
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {given.layout}: {fault}")
    if faults:
        sys.exit("\n".join(faults[:proof.FAULTS_SHOWN]) + f"\nPROOF FAILED: {given.layout}: {len(faults)} faults")
    print(counts)
    print(f"PROOF PASSED: {given.layout}, {cells} boundary cells")


if __name__ == "__main__":
    main()
