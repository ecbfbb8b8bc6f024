#!/usr/bin/env python3
"""What `rimkit prove` says of whole chips: proven as they were made, refused with one wrong wire.

    prove_chips.py --chip uart|drafts|ring|kinds:VARIANT|layouts|real:NAME|faults|random:CHIP:SEED:COUNT --bin build/bin --work DIR
"""

import json
import os
import pathlib
import random
import re
import shutil
import sys

sys.dont_write_bytecode = True
import bsdl_chips  # noqa: E402
from bsdl_chips import Failed, expect, set_pin  # noqa: E402


class Judged(Exception):
    pass


class Bench(bsdl_chips.Bench):
    """Makes the chips of the BSDL tests, and proves each where these describe it."""
    points = {"chip": True, "kinds": True, "ring_chip": True, "chip_top": False, "caravel": True, "names": False}

    def prove(self, design, *options, status=0):
        return json.loads(self.run("rimkit", "prove", "--json", *options, design, status=status))

    def judge(self, design, *options):
        proof = self.prove(design, *options)
        expect((proof["proven"], proof["findings"]), (True, []))
        said = "\n".join(proof["proofs"])
        expect(bool(re.search(r"Comparison: \d+ nets, .*, equal", said)), True)
        if design == "kinds" and not shutil.which("yosys"):
            return
        if design == "kinds":       # nothing is assumed where all models are there
            expect(proof["assumed"], [])
            expect(bool(re.search(r"Yosys: (\d+) of \1 points", said)) or "pads of their own" in said, True)
        raise Judged


def read(bench, design, text):
    (bench.work / "wrong.v").write_text(text)
    bench.run("kalmverin", "wrong.v", "-top", f"{design}_jtag")


# Wires that are wrong in the core and beside it; those of the pads and cells are planted by the BSDL tests' list.
WRONG = {"flop on TCK": [("FLOP", "CK", "tck_c")], "flop on the other side of a cell": [("FLOP", "CK", "BCELL24_IN_DI")],
         "reset of a flop on TRST": [("FLOP", "RN", "trst_n_c")], "pin tied": [("FLOP", "D", "1'b1")], "pin open": [("FLOP", "D", "")],
         "core reads the test logic": [("FLOP", "D", ("BCELL32_OUT", "SO"))], "core reads a mode": [("FLOP", "D", ("u_tap", "MODE_1"))],
         "control cell fed from another net": [("BCELL12_BI", "DI", ("BCELL32_OUT", "DI"))],
         "leaf of a tree open": [("shift_buf_1_1", "A", "")],
         "test logic drives a core net": [("FLOP", "Q", ("BCELL32_OUT", "SO"))]}


def test_faults(bench, given):
    try:
        bsdl_chips.uart(bench)
    except Judged:
        pass
    good = (bench.work / "chip_jtag_flat.v").read_text()
    read(bench, "chip", good)
    expect(bench.prove("chip", "--cells", "cells.v")["proven"], True)
    flop = re.search(r"^\s*DFFR (\\?\S+) ", good, re.M)[1]
    gate = re.search(r"^\s*(?:NAND2|NOR2|XOR2) (\\\S+) .*?;\n", good, re.M)
    swapped = re.sub(r"\.A\((.*?)\), \.B\((.*?)\)", r".A(\2), .B(\1)", gate[0])
    second = {"gate with its inputs swapped": good.replace(gate[0], swapped), "deleted gate": good.replace(gate[0], ""),
              "another gate": good.replace(gate[0], gate[0].replace("NAND2", "NOR2") if "NAND2" in gate[0] else gate[0].replace("NOR2", "NAND2")
                                           .replace("XOR2", "NAND2")),
              "inverted path": good.replace("OPAD pad_txd (.I(BCELL32_OUT_DO)", "INV u_wrong (.A(BCELL32_OUT_DO), .Z(wrong));\n  OPAD pad_txd (.I(wrong)"),
              "gate too many": good.replace("endmodule", "NAND2 u_more (.A(tck_c), .B(tms_c), .Z(txd_c2));\nendmodule", 1)}
    for name, wires in (bsdl_chips.WRONG | WRONG).items():
        text = good
        for instance, pin, net in wires:
            text = set_pin(text, re.escape(flop) + " " if instance == "FLOP" else instance, pin, net)
        second[name] = text.replace("  TBUF shift_buf_1_1 ", "  INV u_not (.A(u_tap_SHIFT_DR), .Z(not_shift));\n  TBUF shift_buf_1_1 ") \
            if "not_shift" in text else text
    missed = []
    for name, text in second.items():
        read(bench, "chip", text)
        asks_yosys = name not in bsdl_chips.WRONG
        options = ["--cells", "cells.v"] if asks_yosys else ["--no-yosys"]
        try:
            found = {row["rule"] for row in bench.prove("chip", *options, status=1)["findings"]}
        except Failed as fault:
            missed.append(f"{name}: {fault}")
            continue
        if asks_yosys and ("wire" in found) != ("yosys" in found) and name not in ("gate too many", "shift inverted"):   # nobody reads it
            missed.append(f"{name}: found by {sorted(found)} alone")
    read(bench, "chip", good)
    cells, tap = (bench.work / "cells.v").read_text(), (bench.work / "chip_TAP.v").read_text()
    changes = [("cells.v", cells, "assign DO = MODE ? held : DI;", "assign DO = MODE ? DI : held;", "cell", {20, 21, 22}),
               ("cells.v", cells, "assign DO = MODE ? held : DI;", "assign DO = DI;", None, {20}),
               ("chip_TAP.v", tap, "MODE_1 = ( INST == 4'b0000 )", "MODE_1 = ( INST == 4'b0001 ) | ( INST == 4'b0000 )", "tap", {21}),
               ("chip_TAP.v", tap, "MODE_1 = ( INST == 4'b0000 )", "MODE_1 = ( INST == 4'b0010 ) | ( INST == 4'b0000 )", "tap", {21, 22}),
               ("chip_TAP.v", tap, "UPD_IR <= 4'b0010", "UPD_IR <= 4'b0000", "tap", {22}),
               ("chip_TAP.v", tap, "RESET_reg    <= (STATE == `TEST_LOGIC_RESET)", "RESET_reg    <= (STATE == `RUN_TEST_IDLE)", "tap", {22})]
    for file, text, old, new, rule, rules in changes:
        expect(old in text, True)
        (bench.work / file).write_text(text.replace(old, new))
        found = {row["rule"] for row in bench.prove("chip", "--cells", "cells.v", status=1 if rule else 0)["findings"]}
        checked = json.loads(bench.run("rimkit", "check", "--json", "--cells", "cells.v", "chip", status=1))
        said = {row["number"] for row in checked["findings"] if row["severity"] == "error"} & {20, 21, 22}
        if (rule and rule not in found) or said != rules:
            missed.append(f"{file}: {new}: {found} {said}")
        (bench.work / file).write_text(text)
    path, os.environ["PATH"] = os.environ["PATH"], str(bench.bin)     # without Yosys it is told what is assumed
    proof = bench.prove("chip", "--cells", "cells.v")
    os.environ["PATH"] = path
    expect(len([line for line in proof["assumed"] if "Debian package yosys" in line]), 2)
    if missed:
        raise Failed("\n".join(missed))


def netlist_pins(text):
    """(instance, pin, net, start, end) of each connection."""
    pins = []
    for cell in re.finditer(r"^\s*(?:\\\S+|\w+)\s+(\\\S+ |\w+)\s*\((\.[^;]*)\);", text, re.M):
        pins += [(cell[1], pin[1], pin[2].strip(), cell.start(2) + pin.start(2), cell.start(2) + pin.end(2))
                 for pin in re.finditer(r"\.(\\\S+ |\w+)\s*\(([^()]*)\)", cell[2])]
    return pins


def is_same_tree(text, old, new):
    """Two nets of one signal of the TAP, through buffers of its trees: any leaf does for any cell."""
    above = {net: driver for driver, net in re.findall(r"^\s*[TC]BUF \w+buf_\S+ +\(\.A\((\S+?)\), \.Z\((\S+?)\)\);", text, re.M)}

    def root(net):
        while net in above:
            net = above[net]
        return net
    return root(old) == root(new)


def test_random(bench, given):
    """One random wire put elsewhere: neither a proof nor a description, but where a tree's leaves change places."""
    _, chip, seed, count = given.chip.split(":")
    try:
        bsdl_chips.uart(bench) if chip == "uart" else bsdl_chips.test_kinds(bench, type("given", (), {"chip": f"kinds:{chip}", "bin": given.bin}))
    except Judged:
        pass
    design = "chip" if chip == "uart" else "kinds"
    good = (bench.work / f"{design}_jtag_flat.v").read_text()
    pins = netlist_pins(good)
    nets = sorted({pin[2] for pin in pins if pin[2]}) + ["1'b0", "1'b1", ""]
    rng, missed = random.Random(int(seed)), []
    for _ in range(int(count)):
        instance, pin, old, start, end = rng.choice(pins)
        new = rng.choice(nets)
        if new == old or is_same_tree(good, old, new):
            continue
        try:
            read(bench, design, good[:start] + new + (" " if new[:1] == "\\" else "") + good[end:])
        except Failed:      # a constant at an output
            continue
        for verb in ("prove --no-yosys", "bsdl"):
            try:
                bench.run("rimkit", *verb.split(), design, status=1)
            except Failed as fault:
                missed.append(f"{verb}: {instance}.{pin}: {old} -> {new}: {fault}")
    if missed:
        raise Failed("\n".join(missed))


def test_layouts(bench, given):
    import layout_chips
    for name, layout in layout_chips.LAYOUTS.items():
        if layout.bcm:      # the register is in a module that nobody looks into
            continue
        work = bench.work / name
        layout_chips.write_files(layout, layout_chips.make_design(layout), work)
        layout_chips.insert(layout, work, bench.bin, False)
        try:
            Bench(bench.bin, work).judge("chip", "--cells", "cells.v")
        except Judged:
            pass


if __name__ == "__main__":
    bsdl_chips.Bench, bsdl_chips.test_faults = Bench, test_faults
    bsdl_chips.test_random, bsdl_chips.test_layouts = test_random, test_layouts
    try:
        sys.exit(bsdl_chips.main())
    except Judged:
        print("PASSED")
