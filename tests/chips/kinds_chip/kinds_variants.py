"""The ways in which the kinds chip is made, and the run of the tools on it."""

import dataclasses
import pathlib
import random
import re
import shutil

from chip_files import ProofError
from kinds_pads import INPUT_NETS, OUTPUTS, PORT_OF_PAD
from pad_modules import pads_in_modules
from player import run

HERE = pathlib.Path(__file__).resolve().parent
CELLS = ["pads.v", "gated.v"]

ONE_CELL = "%BIDIR_SCAN BC_BID; %BIDIR_MUX_SCAN BC_MUXB;"
GROUPS_OF_3 = "%GROUP_SIZE 3;"
CHAINS = "%GROUP_SIZE 4; %DF_GROUP_SIZE 5; %DF_SIGNAL_BUFFER CBUF;"
OE_CONTROLS = ONE_CELL + " %CONTROL_OE_SCAN BC_CTLX;"
HIGHZ_CELLS = ONE_CELL + " %OUTPUT_SCAN BC_OUTZ; %CONTROL_SCAN BC_CTLZ;"
VARIANTS = {  # group items of the TAP, items of the cell roles, options, expected in the report
    "three_levels": (GROUPS_OF_3, ONE_CELL, "", "     Level 4:  15 buffers    drive  45 scan cells"),
    "pairs": (GROUPS_OF_3, "", "", "     Level 4:  17 buffers    drive  50 scan cells"),
    "no_trees": ("", ONE_CELL, "", "  ** Add total  45 Boundary Scan Cells:"),
    "synch": (GROUPS_OF_3, ONE_CELL, "-synch", "     Level 4:  15 buffers    drive  45 scan cells"),
    "synch_df_speed": (CHAINS, "", "-synch -df_speed",
                       "     Using   13 buffers to drives   50 signals"),
    "own_controls_pairs": (GROUPS_OF_3, "", "-dont_share_control", "  ** Add 15 CONTROL SCAN Cells: BC_CTL"),
    "oe_controls": (GROUPS_OF_3, OE_CONTROLS, "", "  ** Add total  46 Boundary Scan Cells:"),
    "inverting": ("%GROUP_SIZE 3; %INV_BUFFER INV;", ONE_CELL, "",
                  "  ** Using buffer 'INV' for signal 'CLOCK_DR'"),
    "highz": (GROUPS_OF_3, ONE_CELL, "", "     TAP highz       : HIGHZ"),
    "highz_cells": (GROUPS_OF_3, HIGHZ_CELLS, "", "  ** Using buffer 'TBUF' for signal 'X1'"),
    "in_halves_highz": (GROUPS_OF_3, HIGHZ_CELLS, "", "  ** Add total  50 Boundary Scan Cells:"),
    "in_halves_synch": (GROUPS_OF_3, ONE_CELL, "-synch -dont_share_control",
                        "  ** Using buffer 'TBUF' for signal 'BCELL_TCK'"),
    "in_halves_df_speed": (CHAINS, ONE_CELL, "-synch -df_speed",
                           "  ** Using buffer 'CBUF' for signal 'BCELL_TCK'"),
    "in_halves_inverting": ("%GROUP_SIZE 12; %INV_BUFFER INV;", ONE_CELL, "",
                            "  ** Using buffer 'INV' for signal 'CLOCK_DR'"),
    "in_ring_df_speed": (CHAINS, "", "-synch -df_speed", "  ** Using buffer 'CBUF' for signal 'BCELL_TCK'"),
    "in_ring_inverting": ("%GROUP_SIZE 3; %INV_BUFFER INV;", ONE_CELL, "",
                          "  ** Using buffer 'INV' for signal 'CLOCK_DR'"),
    "in_ring_highz": (GROUPS_OF_3, HIGHZ_CELLS, "", "  ** Add total  42 Boundary Scan Cells:"),
}

# Of the variant inverting: TAP pins that reach the cells inverted, and what makes the cells fit for that.
INVERTING_PINS = ["SHIFT_DR", "CLOCK_DR", "UPDATE_DR", "RESET_N"]
INVERTED_CELLS = {"SE ?": "!SE ?", "posedge CK": "negedge CK", "posedge UP": "negedge UP",
                  "negedge RN": "posedge RN", "if (!RN)": "if (RN)"}
# Of -synch: cells that are all clocked by TCK, the shift stage at the rising edge, the update stage at the
# falling one; CK and UP are enables.
SYNCH_CELLS = {"posedge CK) ": "posedge TCK) if (CK) ", "posedge UP) ": "negedge TCK) if (UP) ",
               "posedge UP or": "negedge TCK or", "else     held": "else if (UP) held"}
OE_CELLS = {"t0": "BC_OUTX", "t1": "BC_OUTX", "io0": "BC_BIDX"}     # of the variant oe_controls


def change_file(path, changes):
    text = path.read_text()
    for word, other in changes.items():
        text = text.replace(word, other)
    path.write_text(text)


@dataclasses.dataclass
class Variant:
    name: str
    group: str              # items of the TAP cell for the trees
    items: str              # items of the cell roles
    options: str
    expected: str = ""      # in the report
    rng: random.Random = None
    joins: bool = False     # some output pads hang on input pads
    places: tuple = ()      # of a random one: the modules of the pads, None for the top
    frame: bool = False     # one of them stands in a module of its own
    internals: bool = True  # cells in the core too; with pads in a module they make it two modules
    tap: str = "u_tap"
    exists: bool = False    # the TAP stands in the design, joined to the test pads
    bare: tuple = ()        # ports without their pads

    def highz(self):
        return "highz" in self.name or self.items == HIGHZ_CELLS

    def path(self, instance):
        """Of an instance's module, which may stand in another one of no cells of its own."""
        module = self.module(instance)
        frame = "u_frame." if self.frame and module in ("west", "ring") else ""
        return f"{frame}u_{module}" if module else ""

    def module(self, instance):
        """The module of a pad, with the buffer that belongs to it: none, one of two in turn, or one for all."""
        if not instance.startswith(("p_", "b_")):
            return None
        if self.rng:
            return random.Random(f"{self.name} {instance[2:]}").choice(self.places)
        return "ring" if "in_ring" in self.name else ("west", "east")[sum(instance[2:].encode()) % 2] \
            if "in_halves" in self.name else None


def random_variant(seed):
    """Pads in any order and in any module of a tree, cells and options as they come."""
    rng = random.Random(seed)
    items = rng.choice([ONE_CELL, "", HIGHZ_CELLS, OE_CONTROLS])
    options = "".join(rng.choice(["", word]) for word in (" -df_speed", " -dont_share_control"))
    options += rng.choice(["", " -synch"]) if items in (ONE_CELL, "") else ""
    sizes = [f"%GROUP_SIZE {rng.randint(2, 12)};"]
    sizes += [f"%DF_GROUP_SIZE {rng.randint(2, 9)}; %DF_SIGNAL_BUFFER CBUF;"] if rng.random() < .5 else []
    sizes = sizes if items == HIGHZ_CELLS or rng.random() < .8 else []
    variant = Variant(f"random {seed}", " ".join(sizes), items, options, "", rng)
    variant.joins = rng.random() < .6
    variant.frame = rng.random() < .5
    variant.places = rng.choice([[None], ["ring"], ["ring"], ["west", "east"], [None, "west", "east"],
                                 ["west", "south", None]])
    if variant.places == ["ring"]:      # one module: the TAP may stand anywhere
        variant.internals = rng.random() < .3
        ring = "u_frame.u_ring" if variant.frame else "u_ring"
        paths = ["u_tap"] if variant.internals else ["u_tap", "u_core.u_tap", f"{ring}.u_tap", "u_frame.u_tap"]
        variant.tap = rng.choice(paths[:None if variant.frame else 3])
    elif variant.places == [None]:
        variant.tap = rng.choice(["u_tap", "u_core.u_tap"])
    variant.exists = variant.tap == "u_tap" and rng.random() < .3
    if rng.random() < .3:
        variant.options += rng.choice([" -add_pad", " -no_pad"])
        variant.bare = [port for port in BARE_PORTS if rng.random() < .6]
        # Cells at bare ports are in the top: several modules take no TAP down a path.
        variant.tap = "u_tap" if variant.bare and variant.places == ["ring"] else variant.tap
    return variant


def named_variant(name):
    """Of "random:N", or of a row of VARIANTS."""
    kind, _, seed = name.partition(":")
    return random_variant(int(seed)) if seed else Variant(name, *VARIANTS[name], internals="in_ring" not in name)


def describe(variant, work):
    """The description files of a variant, in the scratch folder."""
    extra = " %EXTRA_1 X1;" if variant.items == HIGHZ_CELLS else ""
    command = f"%HIGHZ_COMMAND HIGHZ;{extra}" if variant.highz() else ""
    instruction = "%INSTRUCTION HIGHZ = (0101) ACCESS BYPASS;" if variant.highz() else ""
    for name, fill in (("kinds.lib", {"@GROUP": variant.group, "@HIGHZ": command}),
                       ("kinds.bsc", {"@BIDIR": variant.items, "@HIGHZ": instruction,
                                      "%INSTANCE_NAME u_tap": f"%INSTANCE_NAME {variant.tap}"})):
        (work / name).write_text((HERE / name).read_text().split("*/", 1)[1])
        change_file(work / name, fill)
    if "inverting" in variant.name:
        change_file(work / "kinds.lib", {f" {pin};": f" -{pin};" for pin in INVERTING_PINS})
    head, pins = re.split(r"\n\n(?=1 )", (HERE / "kinds.pin").read_text())
    if variant.items == OE_CONTROLS:
        for port, cell in OE_CELLS.items():
            pins = re.sub(rf"( {port} .*)", rf"\1  BSC({cell})", pins)
    if not variant.internals:
        pins = re.sub(r"^\w+ +(INTERNAL|OBSERVE) .*\n", "", pins, flags=re.M)
    if variant.rng:
        rows = pins.splitlines()
        variant.rng.shuffle(rows)
        pins = "\n".join(rows) + "\n"
    (work / "kinds.pin").write_text(head + "\n\n" + pins)


# Ports that may stand without their pads, by what is left of these.
BARE_PORTS = {"d1": "assign d1_c = d1;", "q0": "assign q0 = s[0];", "q2": "assign q2 = q2_i;"}


def take_pads_away(text, ports):
    for port in ports:
        text = re.sub(rf"^    [IO]PAD p_{port} \(.*$", "    " + BARE_PORTS[port], text, flags=re.M)
    return text


def join_pads(text, rng):
    """Lets some output pads take their data or enable straight from an input pad, or a constant for data."""
    for port, (data, enable) in OUTPUTS.items():
        if port == "bsb":       # the file shows its control cell nowhere, its net tells which it is
            continue
        pad = next((pad for pad, name in PORT_OF_PAD.items() if name == port), port)
        row = next((row for row in text.splitlines() if f" p_{pad} (" in row), "")
        changed = row
        data_pin = re.search(rf"\.(I|OEN?)\({re.escape(data)}\)", row)
        if data_pin and rng.random() < .25:
            data = rng.choice(INPUT_NETS + ["1'b0", "1'b1"])
            changed = changed.replace(data_pin[0], f".{data_pin[1]}({data})")
        enable_pin = enable and re.search(rf"\.(OEN?)\({re.escape(enable)}\)", row)
        if enable_pin and rng.random() < .25:
            enable = rng.choice(INPUT_NETS)
            changed = changed.replace(enable_pin[0], f".{enable_pin[1]}({enable})")
        OUTPUTS[port] = (data, enable)
        text = text.replace(row, changed) if row else text
    return text


def change_tdo_pad(text, rng):
    """What the TAP takes over: anything may be on the TDO pad."""
    nets = ["1'b0", "1'b1", "s[3]", "s[8]", "glue", *INPUT_NETS]
    data, enable = rng.choice(nets), rng.choice(nets + [""])
    return text.replace("p_tdo (.I(1'b0), .OEN(1'b1)", f"p_tdo (.I({data}), .OEN({enable})")


EXISTING_TAP = """    wire tdo_i, tdo_en, tdo_oen;
    kinds_tap u_tap (.TDI(tdi_c), .TMS(tms_c), .TCK(tck_c), .TRST_N(trst_n_c), .TDO(tdo_i), .TDO_EN(tdo_en), .BSR_SO(1'b0));
    INV tdo_off (.A(tdo_en), .Z(tdo_oen));
"""


def write_chip(variant, work):
    """The chip with its pads in their modules."""
    cells = "".join((work / name).read_text() for name in CELLS)
    text = (HERE / "kinds.v").read_text()
    text = take_pads_away(text, variant.bare)
    if variant.joins:
        text = join_pads(text, variant.rng)
    if variant.exists:
        text = text.replace("p_tdo (.I(1'b0), .OEN(1'b1)", "p_tdo (.I(tdo_i), .OEN(tdo_oen)")
        head, tail = text.rsplit("endmodule", 1)
        text = head + EXISTING_TAP + "endmodule" + tail
    elif variant.rng:
        text = change_tdo_pad(text, variant.rng)
    (work / "kinds.v").write_text(pads_in_modules(text, "kinds", cells, variant.path))


def build(variant, bin_dir, work):
    """Runs the tools. Gives the file of a TAP that stands in the chip, in a list, and the ports whose data stand still."""
    shutil.rmtree(work, ignore_errors=True)
    (work / "lib").mkdir(parents=True)
    for name in CELLS:
        shutil.copy(HERE / name, work)
    change_file(work / "gated.v", SYNCH_CELLS if "-synch" in variant.options
                else INVERTED_CELLS if "inverting" in variant.name else {})
    write_chip(variant, work)
    describe(variant, work)
    options = variant.options.split()
    run([str(bin_dir / "kalmverin"), "-lib", *CELLS, "-opath", "lib"], work, "reading the cells")
    if variant.exists:
        run([str(bin_dir / "rimweave"), "kinds", "-add_tap_only", *options], work, "writing the TAP")
        run([str(bin_dir / "kalmverin"), "-lib", "kinds_TAP.v", "-opath", "lib"], work, "reading the TAP")
    else:
        options.insert(0, "-add_tap")
    run([str(bin_dir / "kalmverin"), "kinds.v"], work, "reading the chip")
    output = run([str(bin_dir / "rimweave"), "kinds", *options], work, "inserting")
    (work / "rimweave.out").write_text(output)
    if variant.items == HIGHZ_CELLS:    # the user's own logic drives an extra pin; here it is the mode
        head, rest = (work / "kinds_TAP.v").read_text().split("endmodule", 1)
        (work / "kinds_TAP.v").write_text(head + "assign X1 = MODE_1;\nendmodule" + rest)
    if variant.expected not in output:
        raise ProofError(f"the report does not say '{variant.expected}'")
    shared = "-dont_share_control" not in variant.options and variant.module("p_dt") == variant.module("p_du")
    if not variant.joins and shared != ("is shared with another pad" in output):
        raise ProofError("no warning, or a needless one, of a differential pad on a shared enable")
    return ["kinds_TAP.v"] if variant.exists else [], [port for port, nets in OUTPUTS.items() if nets[0].startswith("1'b")]
