#!/usr/bin/env python3
"""Inserts the boundary register into a chip with one pad of each kind, and proves the result in simulation.

    kinds_proof.py --variant three_levels --bin build/bin --work DIR

What each pad does stands in kinds_pads.py; where its cells stand in the register comes from the .bso file. The values
inside the core come from the chip before the insertion, which plays the same steps: the flip-flops of both take the
same values as long as the clock pins do. So every cell is held against what its place in the chip has.
"""

import argparse
import pathlib
import random
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import checks  # noqa: E402
import proof  # noqa: E402
from chip_files import Cell, Chip, ProofError, read_bsc  # noqa: E402
from kinds_pads import (INPUT_NETS, INPUTS, INTERNALS, INVERTED, LOW, OF_OUTPUT_SCAN, OUTPUTS, WEAK)  # noqa: E402
from kinds_register import Register  # noqa: E402
from kinds_variants import CELLS, HIGHZ_CELLS, VARIANTS, Variant, build, random_variant  # noqa: E402
from player import Player  # noqa: E402
from tap_driver import Session  # noqa: E402

NETS = [f"s[{i}]" for i in range(16)] + INPUT_NETS + ["glue", "q2_i"]
KINDS = {"in": "input", "out": "output2", "both": "bidir", "control": "control", "internal": "internal"}
PLAN = {"resets": {"rst_n": "0"}, "cycles": 300}


class KindsTrials(checks.Trials):
    """The trials of a chip whose nets are known. The roles of the cells are those of the register."""

    def __init__(self, chip, register):
        super().__init__(chip, Session(chip), PLAN, random.Random(1))
        self.register = register
        self.inputs, self.clocks, self.weak = INPUTS, ["clk"], WEAK + ["mxe"]
        self.moving = [port for port in OUTPUTS if not OUTPUTS[port][1].startswith("1'b")]
        self.direct = ["dn", "dim", "mck", "bf", "fti", *register.merged]
        self.direct += ["mxb"] if "in" in register.of_port["mxb"] else []

    def set_pins(self):
        super().set_pins()
        self.session.pins["dim"] = INVERTED[self.session.pins["dip"]]

    def of_core(self, cell, step, old, pattern):
        """What the core gives to a cell. The pad of q2 hangs on the cells of two internal signals, if there are any."""
        role, name = self.register.cells[cell.index]
        inside = [self.register.of_port[pin]["internal"] for pin in ("u_glue{Z}", "u_mix{B}")
                  if pin in self.register.of_port]
        if role == "control":
            return old(step, name.split()[0])
        if role == "internal":
            return old(step, INTERNALS[name])
        if OUTPUTS[name][1] == "q2_i" and inside and pattern:
            return str(int(pattern[inside[0]]) ^ int(pattern[inside[1]]))
        return old(step, OUTPUTS[name][1])

    def captured(self, cell, step, probed, new, old, pattern):
        role, name = self.register.cells[cell.index]
        if role not in ("in", "both"):
            return self.of_core(cell, step, old, pattern)
        value = new(step, name)
        return INVERTED[value] if name == "dn" and self.register.inverts else value

    def answered(self, cell, step, probed, old, pattern):
        return None if cell.kind == "input" else self.of_core(cell, step, old, pattern)

    def shown(self, pattern):
        reads = {port: self.register.shown(port, pattern) for port in WEAK if port not in self.register.left}
        return {port: "01" if value == "z" else 2 * value for port, value in reads.items()}

    def shown_after_reset(self):
        return self.shown([str(int(cell.kind == "control")) for cell in self.chip.cells])

    def shown_in_highz(self):
        """The pad without an enable hangs on the TAP's signal, and cells with a pin for it go to rest."""
        if not self.register.highz_cells:
            return {"tk": "01"}
        at_rest = {port: "00" for port in OF_OUTPUT_SCAN}
        return at_rest | {port: "01" for port, (shows, _, net) in OUTPUTS.items()
                          if port == "tk" or (shows is LOW and net and port not in self.register.left)}

    def patterns(self):
        size = len(self.chip.cells)
        return [["0"] * size, ["1"] * size, self.register.off_values("0"), self.register.off_values("1")]

    def released(self):
        return self.register.off_values(self.rng.choice("01"))


def prove(variant, work, output, tap):
    if proof.programs_alone():
        return 0, []
    register = Register(work / "kinds.bso", output)
    register.highz_cells = variant.items == HIGHZ_CELLS
    register.inverts = "-no_pad" not in variant.options      # a cell at the port itself gets no inverter
    chip = Chip(cells=[Cell(i, KINDS[register.cells[i][0]], "", register.cells[i][1])
                       for i in range(len(register.cells))], ports=register.ports)
    read_bsc(work / "kinds.bsc", chip)
    pins = chip.ports + NETS
    netlists = ["kinds_jtag.v", "kinds_jtag_flat.v"]
    plan = {"design": "kinds", "cells": CELLS}
    proof.accept(plan, netlists, work)
    before = Player(work, "before", ["kinds.v", *tap, *CELLS], "kinds", pins,
                    probes={net: f"dut.{net}" for net in NETS})
    after = Player(work, "after", [netlists[0], "kinds_TAP.v", *CELLS], "kinds_jtag", pins)
    faults, _ = proof.judge(lambda: KindsTrials(chip, register), before, after, pins)
    return len(chip.cells), faults + list(proof.check_flat(plan, netlists, work))


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    options.add_argument("--variant", required=True, help="random:N, or one of: " + " ".join(VARIANTS))
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    name, _, seed = given.variant.partition(":")
    variant = random_variant(int(seed)) if seed else Variant(name, *VARIANTS[name], internals="in_ring" not in name)
    try:
        output, tap = build(variant, given.bin.resolve(), given.work)
        count, faults = prove(variant, given.work.resolve(), output, tap)
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    for fault in faults[:proof.FAULTS_SHOWN]:
        print(fault)
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"PROOF PASSED: kinds, {given.variant}: {count} boundary cells")


if __name__ == "__main__":
    main()
