#!/usr/bin/env python3
"""Inserts the boundary register into a chip with one pad of each kind, and proves the result as proof.py does.

    kinds_proof.py --variant three_levels --bin build/bin --work DIR
"""

import argparse
import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import proof  # noqa: E402
from chip_files import ProofError  # noqa: E402
from kinds_variants import CELLS, VARIANTS, build, named_variant  # noqa: E402


def plan_of(variant, tap, still):
    """dn and, of a pair, mxb are read at the pin in INTEST, and two cells inside the core feed q2. `still` are
    ports that the core holds."""
    return {"design": "kinds", "cells": CELLS, "netlist": ["kinds.v"], "before": tap, "resets": {"rst_n": "0"}, "cycles": 300,
            "clocks": ["clk"], "direct": ["dn", "mxb"], "intest_hold": ["dim"],
            "unanswered": ["q2"], "still": still}


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    options.add_argument("--variant", required=True, help="random:N, or one of: " + " ".join(VARIANTS))
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    variant = named_variant(given.variant)
    try:
        tap, still = build(variant, given.bin.resolve(), given.work)
        count, faults, said = proof.prove(plan_of(variant, tap, still), given.work.resolve(), given.bin.resolve())
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    for fault in faults[:proof.FAULTS_SHOWN]:
        print(fault)
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"{said}\nPROOF PASSED: kinds, {given.variant}: {count} boundary cells")


if __name__ == "__main__":
    main()
