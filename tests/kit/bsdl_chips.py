#!/usr/bin/env python3
"""What `rimkit bsdl` writes for whole chips: read strictly, analysed by GHDL, held against the netlist; and chips with one
wrong wire, of which it has to write nothing.

    bsdl_chips.py --chip uart|drafts|ring|names|registers|cells:SET|kinds:VARIANT|real:NAME|faults --bin build/bin --work DIR [--chips DIR]
"""

import argparse
import json
import pathlib
import re
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path[:0] = [str(HERE), str(HERE.parent / "chips"), str(HERE.parent / "chips" / "kinds_chip")]
import bsdl_netlist  # noqa: E402
import bsdl_reader  # noqa: E402
import kinds_variants  # noqa: E402

EXAMPLE = ROOT / "examples" / "uart_chip"
REAL = {"as2650": ("chip_top", ["-as_input", "clk_PAD,rst_n_PAD", "chip_top.pnl.v"]),
        "trc": ("chip_top", ["-as_input", "clk_PAD,rst_n_PAD,input_PAD", "chip_top.pnl.v"]),
        "caravel": ("caravel", ["caravel.v", "chip_io.v", "constant_block.v"])}


class Failed(Exception):
    pass


class Bench:
    def __init__(self, bin_dir, work):
        self.bin, self.work = bin_dir, work

    def run(self, *words, status=0):
        done = subprocess.run([str(self.bin / words[0]) if (self.bin / words[0]).exists() else words[0], *words[1:]],
                              cwd=self.work, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != status:
            raise Failed(f"status {done.returncode}, not {status}, of {' '.join(words)}\n{done.stdout[-2000:]}")
        return done.stdout

    def insert(self, design, cells, netlist, *options):
        self.run("kalmverin", "-lib", *cells, "-opath", "lib")
        self.run("kalmverin", *netlist)
        self.run("rimweave", design, "-add_tap", *options)

    def ghdl(self, name):
        """As VHDL; a name of a package is visible to a BSDL reader as it stands, here by a clause in front."""
        text = (self.work / f"{name}.bsd").read_text()
        (self.work / f"{name}.vhd").write_text(re.sub(r"^(entity|package)\b", r"use work.all;\n\1", text, flags=re.M))
        self.run("ghdl", "-a", "-frelaxed", f"{name}.vhd")

    def judge(self, design, *options):
        """The file for this chip; tells what is in it."""
        output = self.run("rimkit", "bsdl", *options, design)
        bsdl = bsdl_reader.read(self.work / f"{design}.bsd")
        found = bsdl_netlist.extract(*[(self.work / f"{design}{ending}").read_text() for ending in ("_jtag_flat.v", ".lib", ".bsc")])
        wrong = list(bsdl_netlist.compare(bsdl, found))
        if wrong:
            raise Failed("\n".join(wrong))
        if shutil.which("ghdl"):
            self.run("ghdl", "-a", "-frelaxed", str(HERE / "std_1149_1_2001.vhd"))
            for name in [*bsdl.packages, design]:
                self.ghdl(name)
        return bsdl, output


def uart(bench):
    for path in [*EXAMPLE.glob("chip.*"), EXAMPLE / "cells.v"]:
        shutil.copy(path, bench.work)
    bench.insert("chip", ["cells.v"], ["chip.v"])
    return bench.judge("chip", "--cells", "cells.v")


def rows_of(bsdl, port):
    return [(row.type, row.function, row.safe, row.disable, row.result) for row in bsdl.rows if row.port == port]


def expect(found, wanted):
    if found != wanted:
        raise Failed(f"{found}, not {wanted}")


def test_uart(bench, given):
    bsdl, _ = uart(bench)
    expect(rows_of(bsdl, "gpio(0)"), [("CELL_BC_BID", "bidir", "X", "1", "Z")])
    expect(rows_of(bsdl, "clk"), [("BC_4", "clock", "X", None, None)])
    expect({row.function for row in bsdl.rows if row.port == "*"}, {"controlr"})
    basic, _ = bench.judge("chip", "--basic", "--cells", "cells.v", "--frequency", "2.5e6")
    expect(rows_of(basic, "gpio(0)"), [("BC_0", "bidir", "X", "1", "Z")])
    expect("(2.5e6, BOTH)" in (bench.work / "chip.bsd").read_text(), True)
    expect("DESIGN_WARNING" in basic.attributes or "INTEST_EXECUTION" in basic.attributes, False)


def test_drafts(bench, given):
    for name in ("cells.v", "chip.v", "pads.liberty"):
        shutil.copy(EXAMPLE / name, bench.work)
    shutil.copy(EXAMPLE / "synth" / "gates.liberty", bench.work)
    bench.run("rimkit", "run", "--liberty", "pads.liberty", "--liberty", "gates.liberty", "--cells", "cells.v", "--idcode",
              "1,0x2650,0x2aa", "chip")
    bsdl, _ = bench.judge("chip")
    expect({row.type for row in bsdl.rows}, {"BC_1", "BC_4"})
    expect("assumed" in (bench.work / "chip.bsd").read_text(), False)


def test_ring(bench, given):
    folder = HERE.parent / "chips" / "ring_chip"
    plan = json.loads((folder / "plan.json").read_text())
    for name in plan["cells"] + plan["netlist"] + plan["files"]:
        shutil.copy(folder / name, bench.work)
    cells = [pathlib.Path(name).name for name in plan["cells"]]
    bench.insert(plan["design"], cells, plan["read"] + plan["netlist"])
    bench.judge(plan["design"], *[word for name in cells for word in ("--cells", name)])


def test_kinds(bench, given):
    name = given.chip.partition(":")[2]
    variant = kinds_variants.named_variant(re.sub(r"^random(?=\d)", "random:", name))
    kinds_variants.build(variant, given.bin.resolve(), bench.work)
    bsdl, _ = bench.judge("kinds", "--cells", "pads.v", "--cells", "gated.v")
    if name == "highz":
        good = (bench.work / "kinds_jtag_flat.v").read_text()
        expect(bsdl.private, {"HIGHZ"})
        (bench.work / "wrong.v").write_text(set_pin(good, "p_tk", "OEN", ("u_tap", "MODE_1")))
        bench.run("kalmverin", "wrong.v", "-top", "kinds_jtag")
        bench.run("rimkit", "bsdl", "kinds", status=1)
    if not variant.rng:
        expect([row[3:] for row in rows_of(bsdl, "od") + rows_of(bsdl, "os")], [("1", "WEAK1"), ("0", "WEAK0")])
        expect([bsdl.ports[port] for port in ("tk", "iog", "iof", "dom", "dn")],
               ["buffer", "in", "out", "buffer", "linkage"])


OWN_TYPES = {"bc_1": {"BC_1 controlr", "BC_1 input", "BC_1 output2", "BC_1 output3", "BC_4 clock", "BC_7 bidir"},
             "bc_2_synch": {"BC_1 controlr", "BC_2 controlr", "BC_2 input", "BC_2 output2", "BC_2 output3", "BC_4 clock", "BC_7 bidir"},
             "bc_8_synch": {"BC_1 controlr", "BC_1 input", "BC_2 output2", "BC_2 output3", "BC_4 clock", "BC_8 bidir"},
             "bc_10": {"BC_1 controlr", "BC_2 input", "BC_1 output2", "BC_1 output3", "BC_10 output3", "BC_4 clock"}}


def test_cells(bench, given):
    """The types that are measured, with %STD_NAME taken away, are those that the cells were made as."""
    name = given.chip.partition(":")[2]
    bench.run("python3", str(ROOT / "tests" / "cells" / "cells_in_chip.py"), "--set", name, "--bin", str(bench.bin), "--cells",
              str(ROOT / "cells"), "--work", str(bench.work))
    lib = (bench.work / "chip.lib").read_text()
    if name != "bc_10":     # which stays an output for what its name says
        (bench.work / "chip.lib").write_text(re.sub(r"%STD_NAME +\w+;", "", lib))
    bsdl, _ = bench.judge("chip", "--cells", "cells.v", "--cells", "boundary_cells.v")
    expect({f"{row.type} {row.function}" for row in bsdl.rows}, OWN_TYPES[name])


def test_real(bench, given):
    name = given.chip.partition(":")[2]
    if not (given.chips / "unpack").exists():
        return 77
    bench.run(str((given.chips / "unpack").resolve()), ".")
    bench.work = bench.work / name
    design, words = REAL[name]
    bench.insert(design, (["-D", "USE_POWER_PINS"] if name == "caravel" else []) + ["cells.v", "bscells.v"], words)
    bench.judge(design, "--cells", "bscells.v")
    return 0


LONG = "a" * 70
NAMES_CHIP = f"""module names (clk, Q, q, a__b, x_, buffer_, in_out, {LONG}, {LONG}b, te, tdi, tms, tck, trst_n, tdo, xtal, v, sig);
    input clk, a__b, x_, buffer_, {LONG}, {LONG}b, te, tdi, tms, tck, trst_n, xtal; input [0:2] v; output Q, q, in_out, tdo, sig;
    wire [0:2] w; wire k, a, b, c, d, e, s, t, m, tk, r;
    CKPAD p0 (.PAD(clk), .C(k)); IPAD p1 (.PAD(a__b), .C(a)); IPAD p2 (.PAD(x_), .C(b)); IPAD p3 (.PAD(buffer_), .C(c));
    IPAD p4 (.PAD({LONG}), .C(d)); IPAD p5 (.PAD({LONG}b), .C(e)); IPAD pv0 (.PAD(v[0]), .C(w[0])); IPAD pv1 (.PAD(v[1]), .C(w[1]));
    IPAD pv2 (.PAD(v[2]), .C(w[2])); IPAD pt (.PAD(te), .C()); IPAD i (.PAD(tdi), .C(t)); IPAD n (.PAD(tms), .C(m));
    IPAD j (.PAD(tck), .C(tk)); IPAD l (.PAD(trst_n), .C(r));
    OPAD o0 (.I(s), .PAD(Q)); TPAD o1 (.I(a), .OEN(b), .PAD(q)); OPAD o2 (.I(w[0]), .PAD(in_out));
    TPAD o3 (.I(1'b0), .OEN(1'b0), .PAD(tdo));  OPAD o4 (.I(w[2]), .PAD(sig));
    DFFR f (.D(d), .CK(k), .RN(e), .Q(s)); NAND2 g (.A(c), .B(w[1]), .Z());
endmodule
"""


def test_names(bench, given):
    """Names that BSDL does not take, a compliance pin, opcodes with X, HIGHZ that leaves outputs on, private instructions."""
    for name in ("cells.v", "chip.lib", "chip.bsc"):
        text = (EXAMPLE / name).read_text()
        (bench.work / name.replace("chip", "names")).write_text(text.replace("chip.pin", "names.pin"))
    (bench.work / "names.v").write_text(NAMES_CHIP)
    bsc = (bench.work / "names.bsc").read_text().replace("tdi, tms, tck, trst_n, tdo;", "tdi, tms, tck, trst_n, tdo, te(1), xtal;")
    bsc = bsc.replace("= (1111)", "= (1111, 10X0)").replace("%INSTRUCTION  BYPASS", "%INSTRUCTION HIGHZ = (0110) ACCESS BYPASS;\n"
                      "    %INSTRUCTION  MY_IDCODE = (0111) ACCESS IDCODE;\n    %INSTRUCTION  BYPASS")
    (bench.work / "names.bsc").write_text(bsc + "\n%INSTRUCTION_PRIVATE MY_IDCODE;\n")
    lib = (bench.work / "names.lib").read_text().replace("%BUFFER         TPAD\n {", "%BUFFER         TPAD\n {  %PULL_1;")
    (bench.work / "names.lib").write_text(lib.replace("%MODE_1       MODE_1;", "%MODE_1 MODE_1; %HIGHZ_COMMAND HIGHZ;"))
    ports = f"clk Q q a__b x_ buffer_ in_out {LONG} {LONG}b te tdi tms tck trst_n tdo xtal v[0] v[1] v[2] sig".split()
    rows = [f"{i} P{i} {port} IN" for i, port in enumerate(ports)]
    (bench.work / "names.pin").write_text("%PACKAGE_TYPE Body 24;\n%ALLOWED_MULTIPLE { VDD; }\n" + "\n".join(rows) + "\n90 VDD * *\n91 VDD * *\n")
    bench.insert("names", ["cells.v"], ["names.v"])
    output = bench.run("rimkit", "bsdl", "names")
    bsdl = bsdl_reader.read(bench.work / "names.bsd")
    expect(list(bsdl.vectors), ["clk", "Q", "q_2", "a_b", "x_p", "buffer_p", "in_out", "a" * 60, "a" * 58 + "_2", "te", "tdi", "tms", "tck",
                                "trst_n", "tdo", "xtal", "v", "sig", "VDD"])
    expect(bsdl.vectors["v"], ["v(0)", "v(1)", "v(2)"])
    expect(bsdl.attributes["PIN_MAP"], "Body_p")
    expect(bsdl.attributes["COMPLIANCE_PATTERNS"], "(te) (1)")
    expect(bsdl.private, {"HIGHZ", "MY_IDCODE"})
    expect(bsdl.opcodes["BYPASS"], ["1111"])
    expect([row[3:] for row in rows_of(bsdl, "q_2")], [("1", "PULL1")])
    for words in ("q is q_2", "Opcode 10X0 of instruction BYPASS", "HIGHZ leaves"):
        expect(words in output, True)


def test_registers(bench, given):
    """A register of the user's own in the core, RUNBIST with its signature, and an IDCODE that comes from outside."""
    for path in [*EXAMPLE.glob("chip.*"), EXAMPLE / "cells.v"]:
        shutil.copy(path, bench.work)
    bits = "".join(f"  DFFR my_{i} (.D({f'my[{i}]' if i else ''}), .CK(), .RN(1'b1), .Q({f'my[{i + 1}]' if i < 2 else ''}));\n" for i in range(3))
    text = (bench.work / "chip.v").read_text()
    at = text.index("endmodule", text.index("module chip"))
    (bench.work / "chip.v").write_text(text[:at] + "  wire [2:0] my;\n" + bits + text[at:])
    bsc = (bench.work / "chip.bsc").read_text()
    rows = "%INSTRUCTION  MYREG = (0110)  ACCESS  MYDR[3];\n%INSTRUCTION  RUNBIST = (0111)  ACCESS  MYDR[3];\n"
    bsc = bsc.replace("%INSTRUCTION  BYPASS", rows + "%INSTRUCTION  BYPASS")
    (bench.work / "chip.bsc").write_text(bsc)
    bench.insert("chip", ["cells.v"], ["chip.v"], "-external_idcode")
    bsdl, _ = bench.judge("chip", "--cells", "cells.v")
    expect(bsdl.private, {"MYREG", "RUNBIST"})     # nobody drives the register's way back
    wires = ["MYDR_in} TO my_0{D", "MYDR_out} TO my_2{Q", *(f"CLOCK_DR}} TO my_{i}{{CK" for i in range(3))]
    (bench.work / "chip.bsc").write_text(bsc + "%CONNECTION_TABLE { " + " ".join(f"%CONNECT u_tap{{{wire}}};" for wire in wires) + " }\n")
    bench.run("rimweave", "chip", "-add_tap", "-external_idcode")
    bench.run("rimkit", "bsdl", "--runbist", "100,0110", "chip", status=1)
    bench.run("rimkit", "bsdl", "--runbist", "100", "chip", status=2)
    bench.run("rimkit", "bsdl", "--runbist", "100,011", "--cells", "cells.v", "chip")
    bsdl = bsdl_reader.read(bench.work / "chip.bsd")
    expect("MYDR[3] (MYREG, RUNBIST)" in bsdl.attributes["REGISTER_ACCESS"], True)
    expect(bsdl.attributes["RUNBIST_EXECUTION"], "WAIT_DURATION (tck 100),OBSERVING BOUNDARY AT_PINS,EXPECT_DATA 011")
    expect(bsdl.attributes["IDCODE_REGISTER"], bsc.split("%IDCODE_REGISTER")[1].split(";")[0].replace(" ", ""))
    expect("BENCH PASS" in bench.run("rimkit", "patterns", "--cells", "cells.v", "chip"), True)
    (bench.work / "chip.bsc").write_text((bench.work / "chip.bsc").read_text().replace("MYDR[3]", "MYDR[4]"))
    expect("BENCH FAIL" in bench.run("rimkit", "patterns", "--cells", "cells.v", "chip", status=1), True)


def set_pin(text, instance, pin, net):
    """The netlist with one pin on another net; `net` may be (instance, pin)."""
    def find(name):
        return re.search(rf"^\s*\w+ {name} \((.*?)\);", text, re.S | re.M)
    if isinstance(net, tuple):
        net = re.search(rf"\.{net[1]}\(([^()]*)\)", find(net[0])[1])[1]
    place = find(instance)
    changed = re.sub(rf"\.{pin}\([^()]*\)", f".{pin}({net})", place[1], count=1)
    assert changed != place[1], (instance, pin)
    return text[:place.start(1)] + changed + text[place.end(1):]


# One wrong wire, or two pins that changed places, in the inserted example.
WRONG = {"cells swapped in the chain": [("BCELL24_IN", "SI", ("BCELL25_IN", "SI")), ("BCELL25_IN", "SI", ("BCELL24_IN", "SO")),
                                        ("BCELL23_IN", "SI", ("BCELL25_IN", "SO"))],
         "cell left out of the chain": [("BCELL23_IN", "SI", ("BCELL25_IN", "SO"))],
         "enable of another pad": [("pad_gpio0", "OEN", "BCELL12_BI_DO")],
         "enable on the core": [("pad_gpio0", "OEN", ("BCELL10_BI", "DI"))],
         "enable tied off": [("pad_gpio0", "OEN", "1'b1")],
         "output past its cell": [("pad_txd", "I", ("BCELL32_OUT", "DI"))],
         "output of another cell": [("pad_txd", "I", "BCELL33_OUT_DO")],
         "input of another pad": [("BCELL24_IN", "DI", ("BCELL25_IN", "DI"))],
         "outputs swapped at the core": [("BCELL32_OUT", "DI", ("BCELL33_OUT", "DI"))],
         "enable swapped at the core": [("BCELL10_BI", "DI", ("BCELL12_BI", "DI"))],
         "core reads past the cell": [("BCELL24_IN", "DO", "BCELL24_IN_DI")],
         "wrong mode": [("BCELL32_OUT", "MODE", ("u_tap", "MODE_2"))],
         "mode on the core": [("BCELL32_OUT", "MODE", ("pad_tms", "C"))],
         "clock tied": [("BCELL32_OUT", "CK", "1'b0")], "update on the clock": [("BCELL33_OUT", "UP", ("u_tap", "CLOCK_DR"))],
         "shift inverted": [("BCELL24_IN", "SE", "not_shift")],
         "shift open": [("BCELL24_IN", "SE", "")],
         "way in of another pad": [("BCELL9_BI", "SP", ("BCELL11_BI", "SP"))],
         "TAP ports swapped": [("u_tap", "TMS", ("pad_tdi", "C"))],
         "chain past the TAP": [("u_tap", "BSR_SO", ("u_tap", "BSR_SI"))],
         "first cell on the port": [("BCELL45_OUT", "SI", ("pad_tms", "C"))],
         "TDO turned on by the core": [("pad_tdo", "OEN", ("BCELL10_BI", "DI"))],
         "way in open": [("BCELL9_BI", "SP", "")], "pad tied on": [("pad_rdata5", "OEN", "1'b0")],
         "way in of the pad open": [("pad_gpio4", "C", "")], "cell that drives nothing": [("BCELL21_BI", "DO", "")],
         "TDO always on": [("pad_tdo", "OEN", "1'b0")],
         "cell that reads itself": [("BCELL32_OUT", "DI", "BCELL32_OUT_DO")],
         "input cell that reads itself": [("BCELL24_IN", "DI", ("BCELL24_IN", "DO"))],
         "TDO on the core": [("pad_tdo", "I", ("BCELL32_OUT", "DI"))]}


def test_faults(bench, given):
    uart(bench)
    good = (bench.work / "chip_jtag_flat.v").read_text()
    (bench.work / "as_made.v").write_text(good)
    bench.run("kalmverin", "as_made.v", "-top", "chip_jtag")
    bench.judge("chip", "--cells", "cells.v")
    inverted = good.replace("OPAD pad_txd (.I(BCELL32_OUT_DO)", "INV u_wrong (.A(BCELL32_OUT_DO), .Z(wrong));\n  OPAD pad_txd (.I(wrong)")
    chips = {"inverter before a pad": inverted}
    good = good.replace("  TBUF shift_buf_1_1 ", "  INV u_not (.A(u_tap_SHIFT_DR), .Z(not_shift));\n  TBUF shift_buf_1_1 ")
    for name, wires in WRONG.items():
        chips[name] = good
        for wire in wires:
            chips[name] = set_pin(chips[name], *wire)
    missed = []
    for name, text in chips.items():
        (bench.work / "wrong.v").write_text(text)
        bench.run("kalmverin", "wrong.v", "-top", "chip_jtag")
        try:
            output = bench.run("rimkit", "bsdl", "chip", status=1)
            if "ERROR: " not in output or (bench.work / "chip.bsd").exists():
                missed.append(f"{name}: no finding, or a file\n{output}")
        except Failed as fault:
            missed.append(f"{name}: {fault}")
    bench.run("kalmverin", "as_made.v", "-top", "chip_jtag")
    bsc = (bench.work / "chip.bsc").read_text()
    for old, new in (("= (0100)", "= (1000)"), ("= (0010)  ACCESS  IDCODE", "= (0110)  ACCESS  IDCODE"), ("(0101);", "(1101);"), ("REGISTER  0001", "REGISTER  1001")):
        if old in bsc:      # the description says what the TAP is not
            (bench.work / "chip.bsc").write_text(bsc.replace(old, new))
            bench.run("rimkit", "bsdl", "--cells", "cells.v", "chip", status=1)
    if missed:
        raise Failed("\n".join(missed))


def main(tests=globals()):
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    for name in ("--chip", "--bin", "--work", "--chips"):
        options.add_argument(name, type=str if name == "--chip" else pathlib.Path, required=name != "--chips", default=HERE)
    given = options.parse_args()
    shutil.rmtree(given.work, ignore_errors=True)
    given.work.mkdir(parents=True)
    try:
        return tests["test_" + given.chip.partition(":")[0]](Bench(given.bin.resolve(), given.work.resolve()), given) or 0
    except (Failed, bsdl_reader.BsdlError) as fault:
        sys.exit(f"FAILED: {given.chip}: {fault}")


if __name__ == "__main__":
    sys.exit(main())
