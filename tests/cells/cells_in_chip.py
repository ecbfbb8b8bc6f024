#!/usr/bin/env python3
"""Puts the boundary cells of cells/ into a chip, with the programs, and proves the chip as tests/chips/proof.py does.

    cells_in_chip.py --set bc_2_synch --bin build/bin --cells cells --work DIR [--vhdl]

The chip is the example, with pads that are on at 0; with --vhdl a small one, in VHDL, with pads that are on at 1.
"""

import argparse
import pathlib
import re
import shutil
import sys

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "chips"))
import layout_chips  # noqa: E402
import proof  # noqa: E402
from chip_files import ProofError  # noqa: E402

# Name: the cells of inputs, of outputs, of bidirectional pads, of enables without their reset value. A set with a Z has
# the instruction HIGHZ and no INTEST, which its bidirectional cell is not for.
SETS = {
    "bc_1": ("BC_1_IN", "BC_1_OUT", "BC_7", "BC_1_CTL{}"),
    "bc_2": ("BC_2_IN", "BC_2_OUT", "BC_7", "BC_2_CTL{}"),
    "bc_8": ("BC_1_IN", "BC_2_OUT", "BC_8", "BC_1_CTL{}Z"),
    "bc_10": ("BC_2_IN", "BC_1_OUT", "BC_10", "BC_1_CTL{}Z"),
}


def change(path, *changes):
    text = path.read_text()
    for pattern, other in changes:
        text, count = re.subn(pattern, lambda _: other, text, flags=re.S)
        if not count:
            raise ProofError(f"{path}: no {pattern}")
    path.write_text(text)


def change_files(name, synch, cells, work):
    """The chip of the scratch folder with the cells of the set in the place of its own."""
    in_vhdl = (work / "cells.vhd").exists()
    text = re.sub(r"%SCAN_CELL\s[^}]*\}", "", (work / "chip.lib").read_text())
    (work / "chip.lib").write_text(text + (cells / "boundary_cells.lib").read_text())
    for folder, form, file in (("verilog", "v", "boundary_cells.v"), ("vhdl", "vhd", "cells.vhd"))[:1 + in_vhdl]:
        with open(work / file, "a") as out:
            out.writelines(source.read_text() for source in sorted((cells / folder).glob("*." + form)))

    off = 0 if in_vhdl else 1
    reader, writer, both, enable = SETS[name]
    chosen = {"INPUT": reader, "CLOCK": "BC_4", "OUTPUT": writer, "BIDIR": both, "CONTROL": enable.format(off),
              "CONTROL_OE": f"BC_1_OE{off}"}
    roles = "".join(f" %{role}_SCAN RIM_{cell}{'_S' * synch};" for role, cell in chosen.items())
    change(work / "chip.bsc", (r"%SCAN_CELLS\s*\{[^}]*\}", f"%SCAN_CELLS\n {{{roles} }}"))
    change(work / "chip.lib", (r"%SIGNAL_BUFFER +TBUF;", "%SIGNAL_BUFFER RIM_BUF;"))
    if "Z" in enable:
        change(work / "chip.lib", ("%SIGNAL_BUFFER", "%HIGHZ_COMMAND HIGHZ; %SIGNAL_BUFFER"))
        change(work / "chip.bsc", (r"%INSTRUCTION\s+INTEST\s*=", "%INSTRUCTION HIGHZ ="),
               (r"(?<=HIGHZ = \(0011\)  ACCESS  )BOUNDARY", "BYPASS"))
    if "Z" in enable and off == 1:      # HIGHZ is public where it releases all pads
        text = (work / "chip.v").read_text()
        (work / "chip.v").write_text(re.sub(r"\bOPAD\b([^(]*)\(", r"TPAD\1(.OEN(1'b0), ", text))
    if off == 0:
        change(work / "chip.lib", ("%EN_L", "%EN_H"))
        change(work / "cells.v", (r"OEN \? 1'bz : I", "OEN ? I : 1'bz"))
        change(work / "cells.vhd", ("'Z' when OEN = '1' else I when OEN = '0'",
                                    "'Z' when OEN = '0' else I when OEN = '1'"))


def prove(given, work):
    synch = given.set.endswith("_synch")
    name, options = given.set.removesuffix("_synch"), ["-add_tap"] + ["-synch"] * synch
    if given.vhdl:
        layout = layout_chips.LAYOUTS["pads_in_module"]
        plan = layout_chips.plan_of(layout, True)
        layout_chips.write_files(layout, layout_chips.make_design(layout), work)
    else:
        plan = proof.read_plan(HERE.parent / "chips" / "uart_chip" / "plan.json")
        plan["cycles"] = 1200
        (proof.empty_folder(work) / "lib").mkdir()
        for file in plan["sources"]:
            shutil.copy(file, work)
    change_files(name, synch, given.cells.resolve(), work)
    plan["cells"].append("boundary_cells.v")
    plan["structure"] = given.vhdl or "Z" not in SETS[name][3]      # HIGHZ takes over enables that were tied
    bin_dir = given.bin.resolve()
    proof.run([str(bin_dir / "kalmverin"), "-lib", *plan["cells"], "-opath", "lib"], work, "reading the cells")
    proof.run([str(bin_dir / "kalmverin"), "chip.v"], work, "reading the chip")
    for form in [["-vhdl"]] * given.vhdl + [[]]:
        (work / "rimweave.out").write_text(proof.run([str(bin_dir / "rimweave"), "chip", *options, *form], work, "inserting"))
    return proof.prove(plan, work, bin_dir)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--set", required=True, choices=[name + end for name in SETS for end in ("", "_synch")])
    options.add_argument("--bin", required=True, type=pathlib.Path, help="folder of the programs")
    options.add_argument("--cells", required=True, type=pathlib.Path, help="folder of the cells")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    options.add_argument("--vhdl", action="store_true", help="write VHDL, and play it under GHDL")
    given = options.parse_args()
    try:
        cells, faults, counts = prove(given, given.work.resolve())
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {given.set}: {fault}")
    if faults:
        sys.exit("\n".join(faults[:proof.FAULTS_SHOWN]) + f"\nPROOF FAILED: {given.set}: {len(faults)} faults")
    print(f"{counts}\nPROOF PASSED: {given.set}, {cells} boundary cells")


if __name__ == "__main__":
    main()
