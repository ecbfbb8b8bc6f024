#!/usr/bin/env python3
"""Test patterns of inserted chips: the bench passes on chips that are right and finds the faults planted in one, under
Icarus and Verilator; OpenOCD plays the SVF on the simulated chip and stops at a wrong bit.

    patterns_test.py --bin build/bin --work DIR faults|kinds|grade|compiled|svf
"""

import argparse
import json
import os
import pathlib
import re
import shutil
import socket
import subprocess
import sys

sys.dont_write_bytecode = True
CHIPS = pathlib.Path(__file__).resolve().parent.parent / "chips"
sys.path[:0] = [str(CHIPS), str(CHIPS / "kinds_chip"), str(CHIPS.parent / "real")]
import layout_chips  # noqa: E402
import proof  # noqa: E402
import real_chips  # noqa: E402
from chip_files import Chip as ChipFiles, ProofError, read_bsc, read_chip  # noqa: E402
from kinds_variants import build as build_kinds, named_variant  # noqa: E402
from player import run  # noqa: E402
from stil_reader import check_stil  # noqa: E402

EXAMPLE = CHIPS.parent.parent / "examples" / "uart_chip"


class Chip:
    """A folder of a finished run, with its patterns."""

    def __init__(self, work, design, cells, bin_dir, *words, simulate=True):
        self.work, self.design, self.cells, self.bin = work, design, cells, bin_dir
        self.tool("patterns", *(word for cell in cells * simulate for word in ("--cells", cell)), *words, design)
        self.netlist = (work / f"{design}_jtag.v").read_text()
        self.tap = (work / f"{design}_TAP.v").read_text()

    def tool(self, verb, *words):
        return run([str(self.bin / "rimkit"), verb, *words], self.work, f"rimkit {verb}")

    def bench(self, netlist=None, tap=None):
        """The last line of the bench, on a netlist or TAP that differs from the chip's."""
        (self.work / "planted.v").write_text((netlist or self.netlist) + (tap or self.tap))
        sources = [f"{self.design}_bench.v", "planted.v", *self.cells]
        run(["iverilog", "-g2005", "-s", "bench", "-o", "planted.vvp", *sources], self.work, "iverilog")
        return run(["vvp", "-n", "planted.vvp"], self.work, "vvp")


def build_example(work, bin_dir, drafted=False):
    plan = proof.read_plan(CHIPS / "uart_chip" / "plan.json")
    if not drafted:
        proof.build(plan, bin_dir, work)
        return Chip(work, "chip", ["cells.v"], bin_dir)
    proof.empty_folder(work)
    for name in ("chip.v", "cells.v", "pads.liberty"):
        shutil.copy(EXAMPLE / name, work)
    run([str(bin_dir / "rimkit"), "run", "--liberty", "pads.liberty", "--cells", "cells.v", "--idcode", "1,0x5c3,0x7e",
         "chip"], work, "rimkit run")
    return Chip(work, "chip", ["cells.v", "chip_cells.v"], bin_dir)


def build_ring(work, bin_dir):
    proof.build(proof.read_plan(CHIPS / "ring_chip" / "plan.json"), bin_dir, work)
    return Chip(work, "ring_chip", ["cells.v", "gated.v"], bin_dir)


# ---- planted faults ----------------------------------------------------------------------------------------------

def instance(netlist, name):
    """Where the instance's connections stand."""
    found = re.search(rf"^\s*\w+ {re.escape(name)} \((.*?)\);", netlist, flags=re.M | re.S)
    return found.start(1), found.end(1)


def connect(netlist, name, pin, net):
    """The pin on another net; "~" in front inverts what it has, "" leaves it open."""
    start, end = instance(netlist, name)
    text, count = re.subn(rf"\.{pin}\(([^)]*)\)", lambda m: f".{pin}({'~' + m[1] if net == '~' else net})",
                          netlist[start:end])
    assert count == 1, f"{name} has no pin {pin}"
    return netlist[:start] + text + netlist[end:]


def net_at(netlist, name, pin):
    start, end = instance(netlist, name)
    return re.search(rf"\.{pin}\(([^)]*)\)", netlist[start:end])[1]


def stuck(netlist, name, pin, value):
    """An input at a constant, or the wire that an output drove."""
    net = net_at(netlist, name, pin)
    if pin not in ("DO", "SO", "CI", "C", "Z"):
        return connect(netlist, name, pin, f"1'b{value}")
    head, tail = connect(netlist, name, pin, "").rsplit("endmodule", 1)
    return f"{head}assign {net} = 1'b{value};\nendmodule{tail}"


def swapped(netlist, one, other, pin):
    nets = net_at(netlist, one, pin), net_at(netlist, other, pin)
    return connect(connect(netlist, one, pin, nets[1]), other, pin, nets[0])


def reworded(text, word, other):
    assert word in text, word
    return text.replace(word, other, 1)


# Beside those of --grade. Of the example 0 is a 3-state output, 1 the control of rdata, 9 bidirectional with its control
# 10, 22 the clock, 30 an input, 45 an output.
NETLIST_FAULTS = [
    (connect, "BCELL5_OUT", "MODE", "1'bz"), (connect, "BCELL5_OUT", "UP", ""),
    (connect, "pad_gpio0", "OEN", "~"), (connect, "pad_rdata0", "OEN", "~"), (connect, "pad_rdata0", "I", "~"),
    (connect, "BCELL9_BI", "SP", "~"), (connect, "BCELL30_IN", "DI", "~"), (connect, "BCELL20_BI", "SI", "~"),
    (connect, "pad_gpio0", "OEN", "BCELL12_BI_DO"), (connect, "pad_gpio4", "OEN", "BCELL16_BI_DO"),
    (connect, "BCELL7_OUT", "MODE", "u_tap_MODE_2"), (connect, "BCELL17_BI", "MODE1", "u_tap_MODE_2"),
    (connect, "BCELL4_OUT", "UP", "BCELL0_OUT_CK"), (connect, "BCELL4_OUT", "CK", "tck_c"),
    (connect, "BCELL25_IN", "DI", "BCELL26_IN_DI"), (connect, "BCELL22_CLK", "DI", "rst_n_c"),
    (connect, "u_tap", "TRST_N", "1'b1"), (connect, "u_tap", "TMS", "tdi_c"), (connect, "pad_tdo", "OEN", "1'b0"),
    (connect, "pad_tdo", "I", "1'b1"), (connect, "pad_tdo", "I", "1'b0"), (connect, "pad_tdo", "I", "~"),
    (connect, "pad_tdo", "OEN", "~"), (connect, "u_tap", "BSR_SO", "BCELL0_OUT_SI"),
    (swapped, "pad_rdata0", "pad_rdata1", "I"), (swapped, "pad_gpio0", "pad_gpio1", "OEN"),
    (swapped, "pad_rxd", "pad_cts_n", "C"), (swapped, "BCELL2_OUT", "BCELL3_OUT", "DO"),
    (swapped, "pad_txd", "pad_irq", "I"), (connect, "BCELL9_BI", "MODE1", "1'b0")]
TAP_FAULTS = [(reworded, word, other) for word, other in (
    ("assign BSR_SI = TDI", "assign BSR_SI = ~TDI"), ("TDO_EN = ~ENABLE", "TDO_EN = ENABLE"),
    ("INST == 4'b0000 ) |", "INST == 4'b1000 ) |"), ("| ( INST == 4'b0100 )", ""), ("| ( INST == 4'b0011 )", ""),
    ("~( INST == 4'b0100 ) & tap_UPDATE_DR", "tap_UPDATE_DR"), ("TDO =  TDO_cell", "TDO = ~TDO_cell"),
    ("BYPASS_in = SHIFT_DR & TDI", "BYPASS_in = TDI"), ("IR_out = CAP_IR[0]", "IR_out = CAP_IR[1]"),
    ("(INST == 4'b0000) ? `SEL_BOUNDARY", "(INST == 4'b0000) ? `SEL_BYPASS"),
    ("IDCODE_out = ID_cell[0]", "IDCODE_out = ID_cell[1]"))]


def name_of(fault):
    return " ".join(str(word) for word in (fault[0].__name__, *fault[1:]))


def passes(said):
    return said.rstrip().splitlines()[-1].startswith("BENCH PASS") if said.strip() else False


def must(right, what):
    if not right:
        raise ProofError(what)


def try_faults(given, work):
    chip = build_example(work / "example", given.bin.resolve())
    missed = []
    for fault in NETLIST_FAULTS + TAP_FAULTS:
        in_tap = fault in TAP_FAULTS
        try:
            text = fault[0](chip.tap if in_tap else chip.netlist, *fault[1:])
        except (AssertionError, TypeError) as reason:
            raise ProofError(f"{name_of(fault)} can't be planted: {reason}")
        said = chip.bench(**{"tap" if in_tap else "netlist": text})
        if passes(said) or "BENCH FAIL" not in said or "FAULT: step" not in said:
            missed.append(name_of(fault))
    must(not missed, "not found: " + "; ".join(missed))
    said = chip.bench(stuck(chip.netlist, "pad_rdata3", "OEN", 1))
    must("pin rdata[3] reads 0 against a weak 0 and 1 against a weak 1" in said and "EXTEST, pads on" in said, said)
    said = chip.bench(connect(chip.netlist, "BCELL30_IN", "DI", "~"))
    must("cell 30 (BCELL30_IN, rxd) came out as" in said, said)
    refuses_a_wrong_register(chip)
    return f"{len(NETLIST_FAULTS + TAP_FAULTS)} planted faults found"


def refuses_a_wrong_register(chip):
    """The faults are told, and no file is left that could prove another netlist."""
    (chip.work / "chip.bsc").write_text(reworded((chip.work / "chip.bsc").read_text(), "GLOBAL_TDI      tdi", "GLOBAL_TDI rxd"))
    done = subprocess.run([str(chip.bin / "rimkit"), "patterns", "chip"], cwd=chip.work, capture_output=True, text=True)
    files = [name for name in ("chip.svf", "chip_bench.v", "chip.cov") if (chip.work / name).exists()]
    must(done.returncode == 1 and not files and "TDI of the TAP is not wired to the port 'rxd'" in done.stdout,
         f"status {done.returncode}, {files}: {done.stdout}{done.stderr}")


# '0' to '7' are TCK, TMS and TDI, 'R' asks for TDO, 'r' to 'u' drive the reset, 'Q' ends.
BENCH = """`timescale 1ns/1ns
module bench;
    reg tck = 0, tms = 1, tdi = 0, trst = 1;
    wire tdo;
    integer c;
    {design}_jtag dut (.{tck}(tck), .{tms}(tms), .{tdi}(tdi), .{trst}(trst), .{tdo}(tdo));
    initial begin
        c = 0;
        while (c != "Q" && c != -1) begin
            c = $fgetc(32'h8000_0000);
            if (c >= "0" && c <= "7") {{tck, tms, tdi}} = c;
            if (c >= "r" && c <= "u") trst = c < "t";
            if (c == "R") begin
                $write("%0d", tdo === 1'b1);
                $fflush;
            end
            #100;
        end
        $finish;
    end
endmodule
"""

SVF_SCRIPT = """adapter driver remote_bitbang
remote_bitbang port 0
remote_bitbang host jtag.sock
reset_config trst_only
jtag newtap chip tap -irlen {irlen} -ircapture 0x1 -irmask 0x3 -expected-id 0x{idcode:08x}
init
svf -tap chip.tap played.svf
echo "SVF PLAYED"
shutdown
"""


def serve(work):
    """The simulation with one client's connection as its standard streams, and the process that waits for it."""
    listener = socket.socket(socket.AF_UNIX)
    (work / "jtag.sock").unlink(missing_ok=True)
    listener.bind(str(work / "jtag.sock"))
    listener.listen(1)
    client = subprocess.Popen(["timeout", "120", "openocd", "-f", "chip.cfg"], cwd=work, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    listener.settimeout(30)
    connection, _ = listener.accept()
    simulation = subprocess.Popen(["vvp", "-n", "openocd.vvp"], cwd=work, stdin=connection, stdout=connection)
    connection.close()
    said, _ = client.communicate()
    simulation.kill()
    simulation.wait()
    return client.returncode, said


def play_svf(chip, svf):
    (chip.work / "played.svf").write_text(svf)
    status, said = serve(chip.work)
    return status == 0 and "SVF PLAYED" in said and "tap/device found" in said, said


def prepare_svf(chip, netlist, idcode):
    """The simulation that OpenOCD plays on, and OpenOCD's script."""
    table = ChipFiles()
    read_bsc(chip.work / f"{chip.design}.bsc", table)
    (chip.work / "openocd.v").write_text(BENCH.format(design=chip.design, **table.test_ports))
    (chip.work / "chip.cfg").write_text(SVF_SCRIPT.format(irlen=len(table.ir_capture), idcode=idcode or int(table.idcode, 2)))
    run(["iverilog", "-g2005", "-o", "openocd.vvp", "-s", "bench", "openocd.v", netlist, f"{chip.design}_TAP.v",
         *chip.cells], chip.work, "iverilog")


def real_chip(given, work):
    """The chip as the tests of the published chips make it, or nothing where these are not."""
    if not (given.chips / "unpack").exists():
        return None, ""
    run([str((given.chips / "unpack").resolve()), "."], work, "unpacking")
    row, folder = real_chips.CHIPS["as2650"], work / "as2650"
    def tool(name, *words):
        return run([str(given.bin.resolve() / name), *words], folder, name)
    row.files = ["cells.v", "bscells.v"]
    real_chips.insert(row, tool, folder)
    tool("rimkit", "bsdl", row.top)
    real_chips.write_models(row, folder)
    netlist = real_chips.open_power_pins(read_chip(folder, row.top), f"{row.top}_jtag.v", folder)
    return Chip(folder, row.top, ["models.v", "bscells.v"], given.bin.resolve(), "--walk", "2", simulate=False), netlist


def try_svf(given, work):
    if shutil.which("openocd") is None:
        return None
    chip = build_example(work / "example", given.bin.resolve())
    prepare_svf(chip, "chip_jtag.v", None)
    svf = (chip.work / "chip.svf").read_text()
    played, said = play_svf(chip, svf)
    must(played, said)
    # A wrong bit among those that count stops it: in the first scan, in one of EXTEST, in the last one.
    scans = list(re.finditer(r"TDO \(([0-9A-F]+)\)\s+MASK \(([0-9A-F]+)\)", svf))
    for scan in (scans[0], next(scan for scan in scans if "EXTEST captures" in svf[:scan.start()].splitlines()[-3]),
                 scans[-1]):
        digit = next(i for i, mask in enumerate(scan[2]) if mask != "0")
        mask = int(scan[2][digit], 16)
        place = scan.start(1) + digit
        wrong = svf[:place] + format(int(svf[place], 16) ^ (mask & -mask), "X") + svf[place + 1:]
        played, said = play_svf(chip, wrong)
        must(not played and "tdo check error" in said, f"not stopped at {svf[scan.start():scan.end()]}:\n{said}")
    names = ["example", "kinds"]
    build_kinds(named_variant("three_levels"), given.bin.resolve(), work / "kinds")
    kinds = Chip(work / "kinds", "kinds", ["pads.v", "gated.v"], given.bin.resolve())
    real, netlist = real_chip(given, work)
    for other, file in [(kinds, "kinds_jtag.v")] + [(real, netlist)] * (real is not None):
        prepare_svf(other, file, None)
        played, said = play_svf(other, (other.work / f"{other.design}.svf").read_text())
        must(played, f"{other.design}: {said}")
    return f"SVF of {len(svf.splitlines())} lines played, {len(scans)} scans compared; " + " ".join(names + ["as2650"] * bool(real))


def try_compiled(given, work):
    if shutil.which("verilator") is None:
        return None
    chip = build_example(work / "example", given.bin.resolve())
    design = chip.design
    flags = ["-CFLAGS", "-O0", "-MAKEFLAGS", "OPT_FAST=-O0", "-MAKEFLAGS", "OPT_GLOBAL=-O0"]     # it runs for milliseconds
    run(["verilator", "--binary", "--timing", "-Wno-fatal", "-Wno-lint", "-Wno-ASSIGNIN", *flags, "--top-module", "bench", "-o", "bench",
         f"{design}_bench.v", f"{design}_jtag.v", f"{design}_TAP.v", *chip.cells], chip.work, "verilator")
    said = next(line for line in run(["obj_dir/bench"], chip.work, "the bench").splitlines() if line.startswith("BENCH"))
    must("BENCH PASS" in said, said)
    return said


def try_kinds(given, work):
    """Chips that are right pass, and STIL says what the bench does."""
    bin_dir = given.bin.resolve()
    chips = [build_example(work / "drafted", bin_dir, drafted=True), build_ring(work / "ring", bin_dir)]
    for chip in chips:
        said = chip.bench()
        must(passes(said), said)
        check_stil(chip.work, chip.design)
    return f"{len(chips)} chips pass"


def try_grade(given, work):
    """All faults are found, but for those that a bench can't see."""
    layout = layout_chips.LAYOUTS["pads_two_down"]
    layout_chips.write_files(layout, layout_chips.make_design(layout), work / "layout")
    layout_chips.insert(layout, work / "layout", given.bin.resolve(), False)
    said = []
    for chip in [Chip(work / "layout", "chip", ["cells.v"], given.bin.resolve())]:
        words = [word for cell in chip.cells for word in ("--cells", cell)]
        text = chip.tool("patterns", "--grade", "--json", *words, chip.design)
        grade = json.loads(next(line for line in text.splitlines() if line.startswith("{")))["grade"]
        missed = [row["fault"] for row in grade["missed"] if row["reason"] is None]
        must(grade["planted"] > 200 and not missed, f"of {grade['planted']} not found: {missed}")
        must(len(grade["missed"]) < .25 * grade["planted"], f"{len(grade['missed'])} of {grade['planted']} not found")
        rows = (chip.work / f"{chip.design}.grade").read_text().splitlines()
        must(len(rows) == grade["planted"] + 2, f"{len(rows)} rows for {grade['planted']} faults")
        said.append(f"{grade['planted'] - len(grade['missed'])} of {grade['planted']}")
    env = dict(os.environ, PATH="/nowhere")
    done = subprocess.run([str(chip.bin / "rimkit"), "patterns", "--grade", "--cells", "cells.v", chip.design], cwd=chip.work,
                          capture_output=True, text=True, env=env)
    must(done.returncode == 255 and "package iverilog" in done.stderr, f"status {done.returncode}: {done.stderr}")
    return "found: " + ", ".join(said)


def main():
    tasks = {"faults": try_faults, "kinds": try_kinds, "svf": try_svf, "compiled": try_compiled, "grade": try_grade}
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("task", choices=tasks)
    options.add_argument("--bin", required=True, type=pathlib.Path)
    options.add_argument("--work", required=True, type=pathlib.Path)
    options.add_argument("--chips", type=pathlib.Path, default=pathlib.Path("nowhere"), help="folder of the published chips")
    given = options.parse_args()
    work = given.work.resolve() / given.task
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    try:
        said = tasks[given.task](given, work)
    except ProofError as fault:
        sys.exit(f"PATTERNS FAILED: {fault}")
    print(said or "passed over: a program is not installed")
    sys.exit(0 if said else 77)


if __name__ == "__main__":
    main()
