#!/usr/bin/env python3
"""Test patterns of inserted chips: the bench passes on chips that are right and finds the faults planted in one, under
Icarus and Verilator; OpenOCD plays the SVF on the simulated chip and stops at a wrong bit.

    patterns_test.py --bin build/bin --work DIR faults|kinds|compiled|svf
"""

import argparse
import pathlib
import re
import shutil
import socket
import subprocess
import sys

sys.dont_write_bytecode = True
CHIPS = pathlib.Path(__file__).resolve().parent.parent / "chips"
sys.path[:0] = [str(CHIPS), str(CHIPS / "kinds_chip")]
import proof  # noqa: E402
from chip_files import Chip as ChipFiles, ProofError, read_bsc  # noqa: E402
from kinds_variants import build as build_kinds, named_variant  # noqa: E402
from player import run  # noqa: E402

KINDS = ["three_levels", "pairs", "synch_df_speed", "own_controls_pairs", "oe_controls", "inverting", "highz_cells",
         "in_halves_synch", "in_ring_inverting"]
EXAMPLE = CHIPS.parent.parent / "examples" / "uart_chip"


class Chip:
    """A folder of a finished run, with its patterns."""

    def __init__(self, work, design, cells, bin_dir):
        self.work, self.design, self.cells, self.bin = work, design, cells, bin_dir
        self.tool("patterns", *(word for cell in cells for word in ("--cells", cell)), design)
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


# Of the example: a mode pin at 1 shows where the core gives another value than the register while SAMPLE is on, which
# the core of gpio never does; a data pin that is cut off from the core shows nowhere, since pin and cell agree. 0 is a 3-state output, 1 the control of rdata, 9 bidirectional with its control 10, 22 the clock, 30
# an input, 45 an output.
NETLIST_FAULTS = [(stuck, name, pin, value) for name, pins in {
    "BCELL0_OUT": ("SI", "SO", "DO", "CK", "UP", "MODE"), "BCELL1_OUT": ("SI", "SO", "DO", "UP", "MODE"),
    "BCELL9_BI": ("SI", "SO", "DO", "SP", "UP"), "BCELL30_IN": ("SI", "SO", "SE", "CK"),
    "pad_rdata3": ("I", "OEN"), "pad_gpio2": ("I", "OEN", "C"), "pad_txd": ("I",),
    "u_tap": ("BSR_SO",)}.items() for pin in pins for value in (0, 1)] + [
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


def try_faults(work, bin_dir):
    chip = build_example(work / "example", bin_dir)
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
svf -tap chip.tap chip.svf
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
    (chip.work / "chip.svf").write_text(svf)
    status, said = serve(chip.work)
    return status == 0 and "SVF PLAYED" in said, said


def try_svf(work, bin_dir):
    if shutil.which("openocd") is None:
        return None
    chip = build_example(work / "example", bin_dir)
    table = ChipFiles()
    read_bsc(chip.work / "chip.bsc", table)
    (chip.work / "openocd.v").write_text(BENCH.format(design="chip", **table.test_ports))
    (chip.work / "chip.cfg").write_text(SVF_SCRIPT.format(irlen=len(table.ir_capture), idcode=int(table.idcode, 2)))
    run(["iverilog", "-g2005", "-o", "openocd.vvp", "-s", "bench", "openocd.v", "chip_jtag.v", "chip_TAP.v", "cells.v"],
        chip.work, "iverilog")
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
    return f"SVF of {len(svf.splitlines())} lines played, {len(scans)} scans compared"


def try_compiled(work, bin_dir):
    if shutil.which("verilator") is None:
        return None
    chip = build_example(work / "example", bin_dir)
    run(["verilator", "--binary", "--timing", "-Wno-fatal", "-Wno-lint", "-CFLAGS", "-O0", "--top-module", "bench",
         "-o", "bench", "chip_bench.v", "chip_jtag.v", "chip_TAP.v", "cells.v"], chip.work, "verilator")
    said = run(["obj_dir/bench"], chip.work, "the bench")
    must("BENCH PASS" in said, said)
    return said.splitlines()[0]


def try_kinds(work, bin_dir):
    """Chips that are right pass."""
    said = [build_example(work / "drafted", bin_dir, drafted=True).bench(), build_ring(work / "ring", bin_dir).bench()]
    for name in KINDS:
        build_kinds(named_variant(name), bin_dir, work / name)
        said.append(Chip(work / name, "kinds", ["pads.v", "gated.v"], bin_dir).bench())
    for text in said:
        must(passes(text), text)
    return f"{len(said)} chips pass"


def main():
    tasks = {"faults": try_faults, "kinds": try_kinds, "svf": try_svf, "compiled": try_compiled}
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("task", choices=tasks)
    options.add_argument("--bin", required=True, type=pathlib.Path)
    options.add_argument("--work", required=True, type=pathlib.Path)
    given = options.parse_args()
    work = given.work.resolve() / given.task
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    try:
        said = tasks[given.task](work, given.bin.resolve())
    except ProofError as fault:
        sys.exit(f"PATTERNS FAILED: {fault}")
    print(said or "passed over: a program is not installed")
    sys.exit(0 if said else 77)


if __name__ == "__main__":
    main()
