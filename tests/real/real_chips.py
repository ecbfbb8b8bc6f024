#!/usr/bin/env python3
"""Takes a published chip from its maker's netlist through the programs, as a user does, and proves the result.

    real_chips.py --chip trc --chips ../shared/real --bin build/bin --work DIR [--drafted]

With --drafted the descriptions and boundary cells that lie beside the netlist are put away, and rimkit writes its own.

Proven: the length of the boundary register and the IDCODE; the ports; by Yosys that
kalmverin has read the netlist as it stands; by `rimkit prove` that the design, the netlist with
modules and the flat one are at rest the chip from before; that the bench of `rimkit patterns` passes, where the core is a black box and each pad what the .lib file says. Yosys,
Icarus Verilog and GHDL accept what is written. Ends with status 77 where the chips are not.
"""

import argparse
import pathlib
import re
import subprocess
import sys
from types import SimpleNamespace

HERE = pathlib.Path(__file__).resolve().parent
sys.dont_write_bytecode = True
sys.path[:0] = [str(HERE), str(HERE.parent / "chips")]
import proof  # noqa: E402
from chip_files import ProofError, read_chip, read_ports, strip_comments  # noqa: E402
from player import run  # noqa: E402
from same_netlist import differences  # noqa: E402

PADS = "../pads/gf180mcu_fd_io__tt_025C_5v00.lib"
PLACED = ["clk_PAD", "rst_n_PAD", *(f"bidir_PAD[{i}]" for i in range(54))]     # as2650, counter-clockwise
CHIPS = {
    "as2650": SimpleNamespace(top="chip_top", cells=162, netlist=["chip_top.pnl.v"], macros=(),
                              read=["-as_input", "clk_PAD,rst_n_PAD"], drafts=["--liberty", PADS, "--def", "chip_top.def"]),
    "trc": SimpleNamespace(top="chip_top", cells=81, netlist=["chip_top.pnl.v"], macros=(),
                           read=["-as_input", "clk_PAD,rst_n_PAD,input_PAD"], drafts=["--liberty", PADS]),
    "caravel": SimpleNamespace(top="caravel", cells=129, netlist=["caravel.v", "chip_io.v", "constant_block.v"],
                               macros=("USE_POWER_PINS",), read=[], drafts=["--def", "chip_io.def"]),
}
IDCODE = 0x12650555
TEST_PORTS = {"tdi": "input", "tms": "input", "tck": "input", "trst_n": "input", "tdo": "output"}


def draft_and_insert(chip, tool, work):
    """What the maker delivers, and one command for each language."""
    for name in ("bscells.v", *(f"{chip.top}.{kind}" for kind in ("lib", "bsc", "pin"))):
        (work / name).rename(work / f"{name}.by_hand")
    words = [*chip.drafts, "--cells", "cells.v", "--idcode", "1,0x2650,0x2aa",
             *[word for macro in chip.macros for word in ("--define", macro)],
             *[word for name in chip.netlist for word in ("--netlist", name)], chip.top]
    if proof.programs_alone():
        tool("rimkit", "run", "--no-delivery", *words)
    else:
        check_summary(chip, subprocess.run([str(chip.bin / "rimkit"), "run", *words], cwd=work, capture_output=True, text=True))
    (work / "vhdl").mkdir()
    tool("rimkit", "run", *words, "--no-delivery", "-vhdl", "-opath", "vhdl")


def check_summary(chip, done):
    """A line of each verb. The core of as2650 drives pins of its pads that turn the way in off, which Liberty tells: an error."""
    status, errors = (1, "1 error,") if chip.netlist == ["chip_top.pnl.v"] and "--def" in chip.drafts else (0, "0 errors,")
    lines = [rf"check: {errors} .* 3 do not apply, 0 not or not whole", rf"bsdl: {chip.top}.bsd: {chip.cells} boundary cells",
             rf"patterns: .* steps for {chip.cells} boundary cells", rf"prove: {chip.top} is, at rest, the chip from before the run"]
    if done.returncode != status or any(not re.search(f"^{line}", done.stdout, flags=re.M) for line in lines):
        raise ProofError(f"rimkit run: status {done.returncode}\n{done.stdout}{done.stderr[-2000:]}")


def check_order(work):
    """The rows of the pin file follow the pads round the die."""
    rows = [line.split()[2] for line in (work / "chip_top.pin").read_text().splitlines() if line[:1].isdigit()]
    if [port for port in rows if port in PLACED] != PLACED:
        yield f"order of the pins: {rows}"


def insert(chip, tool, work):
    """The calls of the user, with the VHDL and the list of the design as it was read in folders of their own."""
    for folder in ("lib", "vhdl"):
        (work / folder).mkdir()
    tool("kalmverin", "-lib", *[word for macro in chip.macros for word in ("-D", macro)], *chip.files, "-opath", "lib")
    tool("kalmverin", *chip.read, *chip.netlist)
    tool("rimweave", chip.top, "-add_tap", "-vhdl", "-opath", "vhdl")
    tool("rimweave", chip.top, "-add_tap")
    tool("kalmlist", "-verilog", "-hierarchy", "-o", "as_read.v", f"{chip.top}.sdb")


def check_ports(chip, work):
    """The ports are those of the netlist, and the test port; -as_input makes inputs of some."""
    old = read_ports([work / name for name in chip.netlist], chip.top)
    made = chip.read[1].split(",") if chip.read else []
    old.update({name: ("input", *old[name][1:]) for name in made})
    new = read_ports([work / f"{chip.top}_jtag.v"], f"{chip.top}_jtag")
    expected = old | {name: (direction, None, None) for name, direction in TEST_PORTS.items()}
    if new != expected:
        yield f"ports: {sorted(set(new.items()) ^ set(expected.items()))}"


def netlists_of(chip, work):
    """The netlist with modules, and the flat one where it is another."""
    netlists = [f"{chip.top}_jtag.v", f"{chip.top}_jtag_flat.v"]
    return netlists[:len({(work / name).read_text() for name in netlists})]


def accept(chip, netlist, work):
    """Icarus Verilog takes the square of the pins on a power net; it reads them here, and leaves them open."""
    files = [netlist, f"{chip.top}_TAP.v", *chip.files]
    macros = [f"-D{macro}" for macro in chip.macros]
    run(["yosys", "-q", "-p", f"read_verilog {' '.join(macros + files)}; hierarchy -check -top {chip.top}_jtag"], work, "yosys")
    run(["iverilog", "-g2001", "-t", "null", "-s", chip.buffer, *macros, *files], work, "iverilog")


def write_models(chip, work):
    """The cells with their ports alone; a pad does what its %BUFFER block says, its other pins do nothing."""
    text = "".join(f"`define {macro}\n" for macro in chip.macros) + (work / "cells.v").read_text()
    library = strip_comments((work / f"{chip.top}.lib").read_text())
    for name, body in re.findall(r"%BUFFER\s+(\w+)\s*\{([^}]*)\}", library):
        pins = dict(re.findall(r"%(\w+)\s+(\w+)\s*;", body))
        pad = pins.get("INOUT", pins["INPUT"])
        model = f"assign {pins['OUTPUT']} = {pad};"
        if "INOUT" in pins:
            enable = pins["EN_H"] if "EN_H" in pins else f"!{pins['EN_L']}"
            model += f" assign {pad} = {enable} ? {pins['INPUT']} : 1'bz;"
        text = re.sub(rf"(\bmodule {name}\b.*?)\bendmodule", rf"\1{model}\nendmodule", text, count=1, flags=re.S)
    (work / "models.v").write_text(text)


def open_power_pins(register, netlist, work):
    """The name of a file with the netlist whose pins on power nets are open."""
    power = "|".join(map(re.escape, register.skipped - set(TEST_PORTS)))
    (work / f"open_{netlist}").write_text(re.sub(rf"\(\s*(?:{power})\s*\)", "()", (work / netlist).read_text()))
    return f"open_{netlist}"


def check_bench(chip, register, netlist, tool, work):
    """The bench of rimkit passes. What the core does is unknown there, so its SAMPLE tells of the inputs alone."""
    tool("rimkit", "patterns", chip.top)
    run(["iverilog", "-g2005", "-s", "bench", "-o", "bench.vvp", f"{chip.top}_bench.v", open_power_pins(register, netlist, work),
         f"{chip.top}_TAP.v", "models.v", chip.files[1]], work, "the bench")
    said = run(["vvp", "-n", "bench.vvp"], work, "the bench")
    return [] if "BENCH PASS" in said else said.splitlines()


def prove(chip, bin_dir, work, drafted):
    def tool(name, *words):
        return run([str(bin_dir / name), *words], work, name)
    chip.bin = bin_dir
    chip.files = ["cells.v", f"{chip.top}_cells.v" if drafted else "bscells.v"]
    chip.buffer = "RIM_BUF" if drafted else "BS_BUF"
    (draft_and_insert if drafted else insert)(chip, tool, work)
    if proof.programs_alone():
        return []
    tool("rimkit", "bsdl", chip.top)
    register = read_chip(work, chip.top)
    netlists = netlists_of(chip, work)
    plan = {"design": chip.top, "cells": chip.files, "netlist": chip.netlist}
    faults = list(check_ports(chip, work))
    if drafted and "chip_top.def" in chip.drafts:
        faults += check_order(work)
    if not drafted:     # how netlists are written; the run with drafts has its own proof and simulation
        faults += [f"as read: {fault}" for fault in differences(work, chip.netlist, ["as_read.v"], chip.files, chip.macros)]
        faults += proof.check_equal(plan, netlists, work, bin_dir)
        write_models(chip, work)
        for netlist in netlists:
            accept(chip, netlist, work)
        faults += check_bench(chip, register, netlists[0], tool, work)
    if len(register.cells) != chip.cells or int(register.idcode, 2) != IDCODE:
        faults.append(f"{len(register.cells)} cells, IDCODE {register.idcode}")
    run(["ghdl", "-a", "-fexplicit", f"{chip.top}_TAP.vhd", f"{chip.top}_jtag.vhd"], work / "vhdl", "ghdl")
    return faults


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--chip", required=True, choices=CHIPS)
    options.add_argument("--chips", required=True, type=pathlib.Path, help="folder of the chips")
    options.add_argument("--bin", required=True, type=pathlib.Path, help="folder of the programs")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    options.add_argument("--drafted", action="store_true", help="with descriptions by rimkit")
    given = options.parse_args()
    if not (given.chips / "unpack").exists():
        print(f"skipped: no chips in {given.chips}")
        return 77
    work = proof.empty_folder(given.work) / given.chip
    try:
        run([str((given.chips / "unpack").resolve()), "."], work.parent, "unpacking")
        faults = prove(CHIPS[given.chip], given.bin.resolve(), work, given.drafted)
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    print("\n".join(faults[:proof.FAULTS_SHOWN]))
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"PROOF PASSED: {given.chip}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
