#!/usr/bin/env python3
"""What `rimkit check` says of whole chips that work: no errors but those that are true of them. And faults of an inserted
chip that its simulation and the proofs about its TAP have to find, each as the rule that it breaks.

    check_chips.py --chip uart|drafts|ring|kinds:VARIANT|real:NAME|planted --bin build/bin --work DIR [--chips DIR]
"""

import json
import os
import re
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True
import bsdl_chips  # noqa: E402
from bsdl_chips import EXAMPLE, Failed  # noqa: E402

# Pads that the insertion has no cells for, two that some variants leave to the core, and enables that are on at 1, where
# all control cells are reset to 1.
KINDS, SOME_KINDS = {(15, "mxe"), (15, "bf")}, {(15, "mck"), (17, "dup"), (18, "th"), (18, "tp"), (18, "ioh")}


class Judged(Exception):
    pass


class Bench(bsdl_chips.Bench):
    """Makes the chips of the BSDL tests, and checks each where these describe it."""

    def judge(self, design, *words):
        for ending in (".lib", ".bsc"):         # some tests change them behind the run
            os.utime(self.work / (design + ending), (0, 0))
        wanted, allowed = (KINDS, SOME_KINDS) if design == "kinds" else (set(), set())
        found = json.loads(self.run("rimkit", "check", "--json", *words, design, status=1 if wanted else 0))
        errors = {(row["number"], row["port"]) for row in found["findings"] if row["severity"] == "error"}
        if errors - allowed != wanted:
            raise Failed(json.dumps([row for row in found["findings"] if row["severity"] == "error"], indent=1))
        if [row["severity"] for row in found["findings"] if row["number"] == 14] != ["warning"]:
            raise Failed("rule 14: a scan elsewhere loses what was preloaded")
        has_engines = all(map(shutil.which, ("iverilog", "yosys")))
        left = [row for row in found["not_checked"] if row["applies"] and not any(
            words in row["why"] for words in ("private", "the core is not simulated", "pads with a cell"))]
        if has_engines and left:
            raise Failed(json.dumps(left, indent=1))
        is_public = not any(row["number"] == 24 for row in found["findings"] + found["not_checked"])
        if has_engines and is_public and " HIGHZ =( INST" in (self.work / f"{design}_TAP.v").read_text():
            self.plant_highz(design, words)
        raise Judged

    def plant_highz(self, design, words):
        tap = self.work / f"{design}_TAP.v"
        tap.write_text(re.sub(r" HIGHZ =\(.*?\);", " HIGHZ = 1'b0;", tap.read_text()))
        found = json.loads(self.run("rimkit", "check", "--json", "--rule", "24", *words, design, status=1))["findings"]
        if not any(row["number"] == 24 and row["severity"] == "error" for row in found):
            raise Failed(f"HIGHZ that does nothing: {found}")


# Each with the file, what stands there and what is put there, and the findings: severity and number, and a place or word.
TAP, NETLIST, CELLS = "chip_TAP.v", "chip_jtag.v", "cells.v"
PLANTED = [
    (TAP, "`UPDATE_DR: `PAUSE_DR;", "`UPDATE_DR: `SHIFT_DR;", "error 1", "does not follow the state diagram"),
    (TAP, "`EXIT2_IR: `PAUSE_IR;", "`UPDATE_IR: `PAUSE_IR;", "error 1", "does not follow the state diagram"),
    (TAP, "if (TMS && internal_TRST == 0)", "if (STATE == 4'b0110)\n STATE <= STATE; else if (TMS && internal_TRST == 0)",
     "error 2", "five TCK with TMS at 1"),
    (TAP, "posedge TCK or negedge TRST_N", "posedge TCK", "error 3", "behind TRST with TCK low"),
    (TAP, "if (TRST_N == 0 )", "if (TRST_N == 0 && TCK == 0)", "error 3", "behind TRST with TCK high"),
    (CELLS, "tri1 PAD;", "tri0 PAD;", "error 5", '"port": "tms"'),
    (CELLS, "tri1 PAD;", "", "warning 5", "nothing tells of a pull-up at the pad of tdi"),
    (TAP, "CAP_IR[3:1]} : 4'b0101", "CAP_IR[3:1]} : 4'b0110", "error 6", "load BYPASS: bit 0"),
    (TAP, "UPDATE_IR = (STATE == `UPDATE_IR) & (~TCK)", "UPDATE_IR = (STATE == `UPDATE_IR)", "error 6", "changes at another time"),
    (TAP, "posedge UPDATE_IR or", "negedge UPDATE_IR or", "error 6", "changes at another time"),
    (TAP, "UPD_IR <= 4'b0010", "UPD_IR <= 4'b1111", "error 7", "IDCODE after reset"),
    (TAP, "SHIFT_DR & TDI", "TDI", "error 8", "bypass register: bit 0"),
    (TAP, "                            `SEL_BYPASS;", "                            `SEL_IDCODE;", "error 9", "not select BYPASS: "),
    (TAP, "( INST == 4'b0011 );", "INST[3] ^ INST[2] ^ ( INST == 4'b0011 );", "error 9", "not select BYPASS: "),
    (TAP, "32'b0001", "32'b1001", "error 10", "bit 31"),
    ("chip.bsc", "111111111101;", "000011111111;", "error 10", "manufacturer 00001111111"),
    (TAP, "TDO =  TDO_cell", "TDO = TCK ? TDOIN : TDO_cell", "error 11", "pin tdo changes at another time"),
    (TAP, "EN_reg       <= (", "EN_reg       <= (STATE == `PAUSE_DR | ", "error 11", "TDO is driven outside the shift states"),
    (TAP, "BSR_SI = TDI", "BSR_SI = ~TDI", "error 12", "boundary register: bit"),
    (TAP, "UPDATE_DR = ~( INST", "UPDATE_DR = (DR_SELECT == 2'b01) & ~( INST", "", "14"),     # a TAP that keeps what is preloaded
    (CELLS, "held <= #1 1'b1", "held <= #1 1'b0", "error 18", "EXTEST right behind a reset"),
    (NETLIST, ".I(BCELL32_OUT_DO)", ".I(BCELL31_OUT_DO)", "error 19", "pin rts_n"),
    (NETLIST, ".OEN(BCELL10_BI_DO)", ".OEN(1'b0)", "error 19", "pin gpio[0]"),
    (NETLIST, "pad_rxd (.PAD(rxd)", "pad_rxd (.PAD(~rxd)", "error 19", "cell 30 (BCELL30_IN"),
    (TAP, "tap_UPDATE_DR;\nendmodule", "(tap_UPDATE_DR | TCK & CLOCK_DR & ~SHIFT_DR);\nendmodule", "error 19", "changes at another time"),
    (TAP, "MODE_1 = ", "MODE_1 = ( INST == 4'b0001 ) | ", "error 21", "SAMPLE"),
    (TAP, "| ( INST == 4'b0100 )", "", "error 23", "CLAMP holds the pins"),
    (TAP, "~( INST == 4'b0100 ) &", "", "error 23", "CLAMP holds the pins over a scan"),
    (TAP, "MODE_2 =( INST == 4'b0011 )", "MODE_2 = 1'b0", "error 25", "the core has not seen the pins"),
    (TAP, "| ( INST == 4'b0110 )", "", "warning 26", "RUNBIST holds the pins"),
]


def planted(bench, _):
    """The example with RUNBIST and a compliance pin, of which all rules but that on HIGHZ can be tried."""
    if not all(map(shutil.which, ("iverilog", "yosys"))):
        return 77
    for path in [*EXAMPLE.glob("chip.*"), EXAMPLE / "cells.v"]:
        shutil.copy(path, bench.work)
    bsc = (bench.work / "chip.bsc").read_text().replace("trst_n, tdo;", "trst_n, tdo, cts_n(1);")
    (bench.work / "chip.bsc").write_text(
        bsc.replace("    %INSTRUCTION  BYPASS", "    %INSTRUCTION  RUNBIST = (0110)  ACCESS  BOUNDARY;\n    %INSTRUCTION  BYPASS"))
    bench.insert("chip", ["cells.v"], ["chip.v"])
    clean = check(bench, 0)
    if sorted((row["severity"], row["number"]) for row in clean["findings"]) != [("note", 33), ("warning", 14)]:
        raise Failed(f"clean: {json.dumps(clean, indent=1)}")
    missed = []
    for name, old, new, found, words in PLANTED:
        shutil.copy2(bench.work / name, bench.work / "kept")        # with its age, which is looked at, too
        text = (bench.work / name).read_text()
        if text.count(old) == 0:
            raise Failed(f"nothing to plant at: {old}")
        (bench.work / name).write_text(text.replace(old, new, 1))
        said = check(bench, 1 if found.startswith("error") else 0, "--rule", found.partition(" ")[2] or words)
        told = [json.dumps(row) for row in said["findings"] if f"{row['severity']} {row['number']}" == found]
        if not any(words in row for row in told) if found else any(row["number"] == 14 for row in said["findings"]):
            missed.append(f"{found} '{words}' of {new}: " + json.dumps(said["findings"], indent=1))
        shutil.copy2(bench.work / "kept", bench.work / name)
    if missed:
        raise Failed("\n".join(missed))
    without_engines(bench)
    without_core(bench)
    check(bench, 1, "--strict")
    return 0


def check(bench, status, *words, path=None, cells="cells.v"):
    done = subprocess.run([str(bench.bin / "rimkit"), "check", "--json", "--cells", cells, *words, "chip"], cwd=bench.work,
                          capture_output=True, text=True, env=dict(os.environ, PATH=path or os.environ["PATH"]))
    if done.returncode != status:
        raise Failed(f"status {done.returncode}: {done.stdout}{done.stderr}")
    return json.loads(done.stdout)


def without_engines(bench):
    """What is missing is told with its package, and what could not be checked is not passed."""
    left = check(bench, 0, path=str(bench.bin))["not_checked"]
    for number, package in (2, "yosys"), (19, "iverilog"):
        if not any(row["number"] == number and f"(Debian package {package})" in row["why"] for row in left):
            raise Failed(f"without {package}: {left}")


def without_core(bench):
    """With models of the boundary cells alone the test logic is played, and its faults are found."""
    models = re.findall(r"^module BC_.*?^endmodule\n", (bench.work / "cells.v").read_text(), flags=re.M | re.S)
    (bench.work / "bc.v").write_text("".join(models))
    said = check(bench, 0, cells="bc.v")
    found, left = ({row["number"] for row in said[name]} for name in ("findings", "not_checked"))
    if (found, left) != ({5, 14, 33}, {24, 25, 26}):
        raise Failed(f"without the core: {json.dumps(said, indent=1)}")
    tap = (bench.work / TAP).read_text()
    (bench.work / TAP).write_text(tap.replace("| ( INST == 4'b0100 )", ""))
    if 23 not in {row["number"] for row in check(bench, 1, cells="bc.v")["findings"]}:
        raise Failed("without the core CLAMP is not tried")
    (bench.work / TAP).write_text(tap)


if __name__ == "__main__":
    bsdl_chips.Bench, bsdl_chips.test_planted = Bench, planted
    try:
        sys.exit(bsdl_chips.main())
    except Judged:
        print("PASSED")
