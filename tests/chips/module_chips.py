#!/usr/bin/env python3
"""Proves a chip whose pads lie in several modules, or whose cells live in one module chip_BCM: as proof.py does,
and formally with Yosys.

    module_chips.py --chip pads_in_halves --bin build/bin --work DIR

The chip's folder has its netlist, its pin file and its plan; library and settings are those of the example.
Formally, the edited chip with the TAP held in reset is compared with the chip as it was: every pin of every pad
but TDO's, and so every enable, must be driven by the same function of the same state.
"""

import argparse
import json
import pathlib
import re
import shutil
import sys

sys.dont_write_bytecode = True
import proof  # noqa: E402
from chip_files import ProofError  # noqa: E402
from player import run  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent.parent / "examples" / "uart_chip"
PADS = ["IPAD", "IPADU", "CKPAD", "OPAD", "TPAD", "BPAD"]


def gather(chip, files, folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for name in files:
        own = HERE / chip / name
        shutil.copy(own if own.exists() else EXAMPLE / name, folder)


def strip_pads(work):
    """The library without its pads: their place is taken by bare borders."""
    text = (work / "cells.v").read_text()
    for pad in PADS:
        start = text.index(f"module {pad} (")
        text = text[:start] + text[text.index("endmodule", start) + len("endmodule"):]
    (work / "formal_cells.v").write_text(text)
    shutil.copy(HERE / "formal_pads.v", work)


# The TRST pad is taken away, so that its core side reads 0; the TDO pad is taken away, since its pins differ.
def side_script(top, netlist, extra, name):
    pads = " ".join(f"t:{pad}" for pad in PADS)
    return f"""
read_verilog {netlist} {extra} formal_cells.v formal_pads.v
hierarchy -check -top {top}
proc
flatten
delete {top}/c:*pad_tdo {top}/c:*pad_trst_n
expose -evert {pads}
setundef -undriven -zero
opt -full
clean -purge
delete -output {top}/w:tdo
rename {top} {name}
design -stash {name}
"""


def compare_formally(plan, work):
    strip_pads(work)
    script = side_script("chip", "chip.v", "", "gold")
    script += side_script("chip_jtag", "chip_jtag.v", " ".join(["chip_TAP.v"] + plan["cells"][1:]), "gate")
    script += """
design -copy-from gold -as gold gold
design -copy-from gate -as gate gate
equiv_make gold gate equiv
hierarchy -top equiv
async2sync
equiv_simple -undef
equiv_induct -undef
equiv_status -assert
"""
    (work / "equivalence.ys").write_text(script)
    output = run(["yosys", "-s", "equivalence.ys"], work, "formal comparison")
    return re.search(r"Found \d+ \$equiv cells.*?proven!", output, re.S)[0].replace("\n", " ")


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--chip", required=True)
    options.add_argument("--bin", required=True, type=pathlib.Path, help="folder of the programs")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    plan = json.loads((HERE / given.chip / "plan.json").read_text())
    work = given.work.resolve()
    plan["folder"] = work.with_name(work.name + "_files")
    try:
        gather(given.chip, plan["cells"] + plan["netlist"] + plan["files"], plan["folder"])
        proof.build(plan, given.bin.resolve(), work)
        cells, faults, counts = proof.prove(plan, work, simulate_only=False)
        if not faults:
            counts.append(compare_formally(plan, work))
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {given.chip}: {fault}")
    if faults:
        sys.exit("\n".join(faults[:proof.FAULTS_SHOWN]) + f"\nPROOF FAILED: {given.chip}: {len(faults)} faults")
    print("\n".join(counts))
    print(f"PROOF PASSED: {given.chip}, {cells} boundary cells")


if __name__ == "__main__":
    main()
