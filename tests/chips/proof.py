#!/usr/bin/env python3
"""Builds a chip, inserts its boundary register and TAP, and proves the result.

    proof.py --bin build/bin --plan tests/chips/uart_chip/plan.json --work DIR

The plan names the chip's files. Proven is:

  - the bench of `rimkit patterns` passes: all of the test logic, and each pin in EXTEST
  - while the core has the pins the chip does what it did before the insertion, and in INTEST its core does; player.py
  - Yosys and Verilator accept the netlist
  - at rest the chip, its netlist with modules and its flat netlist are the chip from before the run (rimkit prove)

Ends with status 0 and a line of counts, or with status 1 and the first faults.
"""

import argparse
import json
import os
import pathlib
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True
from chip_files import ProofError, read_chip  # noqa: E402
from player import play_both, run  # noqa: E402
from replay import replay_in_vhdl  # noqa: E402

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


def check_equal(plan, netlists, work, bin_dir):
    """The design of the run and each netlist of it, read once more, are at rest the chip from before (`rimkit prove`)."""
    design = plan["design"]
    databases = [work / f"{design}_jtag{ending}" for ending in (".sdb", ".c.sdb")]
    kept = {path: path.read_bytes() for path in databases if path.exists()}
    read = plan.get("read", [])
    power = read[read.index("-power"):][:2] if "-power" in read else []
    for netlist in [None, *netlists]:
        if netlist:
            run([str(bin_dir / "kalmverin"), *power, netlist, "-top", f"{design}_jtag"], work, netlist)
        said = subprocess.run([str(bin_dir / "rimkit"), "prove", "--no-yosys", design], cwd=work, stdout=subprocess.PIPE, text=True)
        if said.returncode:
            yield from (f"{netlist or 'the design'}: {line}" for line in said.stdout.splitlines() or ["no proof"])
    for path in databases:
        path.write_bytes(kept[path]) if path in kept else path.unlink(missing_ok=True)


def simulate(chip, plan, work):
    """Faults, and a line of what was compared."""
    design, cells = plan["design"], plan["cells"]
    new = [f"{design}_jtag.v", f"{design}_TAP.v"]
    run(["iverilog", "-g2005", "-s", "bench", "-o", "bench.vvp", f"{plan.get('like', '.')}/{design}_bench.v",
         *new, *cells], work, "the bench")
    said = [run(["vvp", "-n", "bench.vvp"], work, "the bench"),
            play_both(work, chip, plan, plan["netlist"], new, sorted({*plan.get("before", []), *cells} - {*new}))]
    faults = [line for text, good in zip(said, ("BENCH PASS ", "SAME ")) if good not in text
              for line in text.splitlines() or ["nothing was said"]]
    return faults, " ".join(" ".join(said).split("\n"))


def programs_alone():
    """True in a round that watches the programs at their work and leaves the proofs to another."""
    return "RW_PROGRAMS_ALONE" in os.environ


def prove(plan, work, bin_dir):
    """The number of cells, the faults, and a line of counts."""
    design = plan["design"]
    like = plan.get("like", ".")        # folder of a chip with the same register, of which rimkit can tell more
    for verb in ("patterns", "bsdl"):
        run([str(bin_dir / "rimkit"), verb, design], work / like, f"rimkit {verb}")
    chip = read_chip(work / like, design)
    if programs_alone():
        return len(chip.cells), [], "the programs ran to their end"
    netlists = [f"{design}_jtag.v", f"{design}_jtag_flat.v"]
    accept(plan, netlists, work)
    structure = list(check_equal(plan, netlists, work, bin_dir)) if plan.get("structure", True) else []
    faults, counts = simulate(chip, plan, work)
    if plan.get("vhdl"):
        faults += replay_in_vhdl(chip, plan, work)
    return len(chip.cells), structure + faults, counts


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", required=True, type=pathlib.Path, help="folder of the programs")
    options.add_argument("--plan", required=True, type=pathlib.Path, help="plan.json of the chip")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    plan = read_plan(given.plan)
    try:
        build(plan, given.bin.resolve(), given.work)
        cells, faults, counts = prove(plan, given.work.resolve(), given.bin.resolve())
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
