#!/usr/bin/env python3
"""Proves a chip whose pads lie in several modules, or whose cells live in one module chip_BCM: as proof.py does,
and formally with Yosys.

    module_chips.py --chip pads_on_three_levels --bin build/bin --work DIR

The chip's folder has its netlist, its pin file and its plan; library and settings are those of the example.
"""

import argparse
import json
import pathlib
import shutil
import sys

sys.dont_write_bytecode = True
import proof  # noqa: E402
from chip_files import ProofError  # noqa: E402
from equivalence import compare_formally  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent.parent / "examples" / "uart_chip"


def gather(chip, files, folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for name in files:
        own = HERE / chip / name
        shutil.copy(own if own.exists() else EXAMPLE / name, folder)


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
