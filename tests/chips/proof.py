#!/usr/bin/env python3
"""Builds a chip, inserts its boundary register and TAP, and proves the result in simulation.

    proof.py --bin build/bin --plan tests/chips/uart_chip/plan.json --work DIR

The plan names the chip's files. What is proven comes from the .bso, .bsc and .lib files:

  - five ones on TMS and TRST reset the TAP from anywhere; IDCODE is then selected
  - IDCODE, BYPASS, an opcode that is not listed, the capture value of the instruction register
  - the length of the boundary register, with a stop in Pause-DR
  - SAMPLE takes every pin, every core output and every enable
  - EXTEST drives every output and every enable, releases buses, and takes every input
  - CLAMP holds the pins, HIGHZ releases them, INTEST runs the core on shifted data, where they exist
  - in all other time the chip does, step by step, what it did before the insertion
  - Yosys and Verilator accept the netlist
  - with the boundary cells as wires the netlist is that of the chip, pin by pin and name by name
  - the flat netlist is the one with modules, which is simulated, pin by pin and name by name

Ends with status 0 and a line of counts, or with status 1 and the first faults.
"""

import argparse
import json
import os
import pathlib
import random
import shutil
import sys

sys.dont_write_bytecode = True
import checks  # noqa: E402
import compare  # noqa: E402
from chip_files import ProofError, read_chip, read_wires  # noqa: E402
from player import Player, run  # noqa: E402
from tap_driver import Session  # noqa: E402
from vhdl_player import VhdlPlayer  # noqa: E402

FAULTS_SHOWN = 12
FILES = ("cells", "netlist", "files")


def read_plan(path):
    """The plan, with its files as paths in "sources" and their names as they stand in the scratch folder."""
    plan = json.loads(path.read_text())
    folder = path.resolve().parent / plan.get("folder", ".")
    plan["sources"] = [folder / name for kind in FILES for name in plan[kind]]
    plan.update({kind: [pathlib.Path(name).name for name in plan[kind]] for kind in FILES})
    return plan


def empty_folder(work):
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    return work.resolve()


def build(plan, bin_dir, work):
    """Runs the tools as a user would, in the scratch folder."""
    (empty_folder(work) / "lib").mkdir()
    for file in plan["sources"]:
        shutil.copy(file, work)
    run([str(bin_dir / "kalmverin"), "-lib", *plan["cells"], "-opath", "lib"], work, "reading the cells")
    run([str(bin_dir / "kalmverin"), *plan.get("read", []), *plan["netlist"]], work, "reading the chip")
    insert = [str(bin_dir / "rimweave"), plan["design"], *plan.get("options", ["-add_tap"])]
    if plan.get("vhdl_too"):
        (work / "vhdl").mkdir()
        run([*insert, "-vhdl", "-opath", "vhdl"], work, "inserting, in VHDL")
        run(["ghdl", "-a", "-fexplicit", f"{plan['design']}_TAP.vhd", f"{plan['design']}_jtag.vhd"], work / "vhdl",
            "ghdl")
    (work / "rimweave.out").write_text(run(insert, work, "inserting"))


def accept(plan, netlists, work):
    """Yosys and Verilator read each netlist; every cell of it must be known to them."""
    top = f"{plan['design']}_jtag"
    for netlist in netlists:
        sources = [netlist, f"{plan['design']}_TAP.v", *plan["cells"]]
        run(["yosys", "-q", "-p", f"read_verilog {' '.join(sources)}; hierarchy -check -top {top}; proc; check"],
            work, "yosys")
        run(["verilator", "--lint-only", "--no-timing", "-Wno-lint", "-Wno-style", "-Wno-TIMESCALEMOD",
             "-Wno-ASSIGNIN", "--top-module", top, *sources], work, "verilator")


def known_cells(plan):
    return *plan["cells"], f"{plan['design']}_TAP_empty.v"


def check_flat(plan, netlists, work, macros=()):
    """The flat netlist, where it is another file, is the same as the one with modules, which is simulated."""
    sides = [compare.Side(work, (name,), known_cells(plan), macros) for name in netlists]
    for side in sides[1:]:
        yield from (f"flat: {fault}" for fault in compare.differences(sides[0], side, ()))


def check_structure(chip, plan, netlists, work, macros=()):
    """With the boundary cells as wires the netlists are that of the plan, but for a test port that is new."""
    through, drop, taken = read_wires(work / f"{plan['design']}.lib")
    for cell, wires in plan.get("wires", {}).items():
        through += [(cell, *wire) for wire in wires]
        taken |= {(cell, "BCM_TDO"), (cell, "BCM_TDO_EN")}
    old, *new = (compare.Side(work, names, known_cells(plan), macros, through, drop)
                 for names in (tuple(plan["netlist"]), *((name,) for name in netlists)))
    added = set(chip.test_ports.values()) - {name for name, _ in old.ports}
    for name, side in zip(netlists, new):
        yield from (f"{name}: {fault}" for fault in compare.differences(old, side, added, taken))


def check_tdo(trials, value):
    return [f"step {step} ({trials.session.labels[step]}): TDO is {value(step, trials.tdo)}, not {expected}"
            for step, expected in trials.session.expect.items() if value(step, trials.tdo) != expected]


def judge(make_trials, before, after, pins):
    """Plays one session on the chip before the insertion and on that after it. The two runs must agree in every step in which the core owns the pins. The test port may be new. A comparison of
    pins that never move proves nothing, so each output has to be seen at 0 and at 1."""
    trials = make_trials()
    trials.whole()
    session = trials.session
    ports = [pin for pin in trials.chip.ports if pin not in trials.chip.test_ports.values()]
    theirs = [step for step, diverges in enumerate(session.diverges) if not diverges]
    old = checks.values(before.play(session.steps), pins)
    new = checks.values(after.play(session.steps), pins)
    faults = check_tdo(trials, new)
    for check in trials.found:
        faults += check(new, old)
    faults += [f"step {step} ({session.labels[step]}): {pin} was {old(step, pin)}, is {new(step, pin)}"
               for step in theirs for pin in ports if old(step, pin) != new(step, pin)]
    if "INTEST" in trials.chip.opcodes:
        faults += checks.intest(make_trials, lambda steps: checks.values(before.play(steps), pins),
                                lambda steps: checks.values(after.play(steps), pins))
    faults += [f"stimulus: {pin} never moves while the core has the pins" for pin in trials.moving
               if not {"0", "1"} <= {old(step, pin) for step in theirs}]
    return faults, (f"{len(session.steps)} steps, {len(session.expect)} TDO bits, {len(trials.found)} captures and pin "
                    f"states, {len(theirs) * len(ports)} pin values compared")


def programs_alone():
    """True in a round that watches the programs at their work and leaves the proofs to another."""
    return "RW_PROGRAMS_ALONE" in os.environ


def prove(plan, work, simulate_only):
    design = plan["design"]
    if programs_alone():
        return 0, [], "the programs ran to their end"
    chip = read_chip(work / f"{design}.bso", work / f"{design}.bsc", work / f"{design}.lib")
    pins = chip.ports
    vhdl = plan.get("vhdl", False)
    netlists = [f"{design}_jtag.vhd"] if vhdl else [f"{design}_jtag.v", f"{design}_jtag_flat.v"]
    if not simulate_only and not vhdl:
        accept(plan, netlists, work)
    structure = list(check_structure(chip, plan, netlists, work)) if plan.get("structure", not vhdl) else []
    structure += [] if vhdl else check_flat(plan, netlists, work)
    if vhdl:
        after = VhdlPlayer(work, "after", ["cells.vhd", f"{design}_TAP.vhd", *netlists], f"{design}_jtag", pins)
    else:
        after = Player(work, "after", [netlists[0], f"{design}_TAP.v", *plan["cells"]], f"{design}_jtag", pins,
                       chip.skipped)

    def make_trials():
        return checks.Trials(chip, Session(chip, plan.get("tdo_always_driven", False)), plan, random.Random(1))

    before = Player(work, "before", plan["netlist"] + plan.get("before", []) + plan["cells"], design, pins,
                    chip.skipped)
    faults, counts = judge(make_trials, before, after, pins)
    return len(chip.cells), structure + faults, counts


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", type=pathlib.Path, help="folder of the programs, to build with")
    options.add_argument("--plan", required=True, type=pathlib.Path, help="plan.json of the chip")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    options.add_argument("--built", action="store_true", help="prove what stands in the scratch folder")
    options.add_argument("--simulate-only", action="store_true", help="leave Yosys and Verilator out")
    given = options.parse_args()
    if not given.built and not given.bin:
        options.error("give --bin, or --built")
    plan = read_plan(given.plan)
    try:
        if not given.built:
            build(plan, given.bin.resolve(), given.work)
        cells, faults, counts = prove(plan, given.work.resolve(), given.simulate_only)
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    for fault in faults[:FAULTS_SHOWN]:
        print(fault)
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults, {min(len(faults), FAULTS_SHOWN)} shown")
    print(counts)
    print(f"PROOF PASSED: {plan['design']}, {cells} boundary cells")


if __name__ == "__main__":
    main()
