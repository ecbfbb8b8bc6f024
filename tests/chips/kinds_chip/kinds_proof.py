#!/usr/bin/env python3
"""Inserts the boundary register into a chip with one pad of each kind, and proves the result in simulation.

    kinds_proof.py --variant three_levels --bin build/bin --work DIR

What each pad does stands in the tables below, by port; where its cells stand in the register comes from the
.bso file. The values inside the core come from the chip before the insertion, which plays the same steps: the
flip-flops of both take the same values as long as the clock pins do.

Proven per variant: resets, IDCODE, BYPASS, the length of the register; in SAMPLE and EXTEST every cell
captures what its place in the chip has; EXTEST and CLAMP drive every pad as the register says; INTEST runs
the core on the register; in all other time the chip does, step by step, what it did before.
"""

import argparse
import dataclasses
import pathlib
import random
import re
import shutil
import sys

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
import checks  # noqa: E402
import proof  # noqa: E402
from chip_files import Cell, Chip, ProofError, read_bsc  # noqa: E402
from pad_modules import pads_in_modules  # noqa: E402
from player import Player, run  # noqa: E402
from tap_driver import Session  # noqa: E402

ONE_CELL = "%BIDIR_SCAN BC_BID; %BIDIR_MUX_SCAN BC_MUXB;"
GROUPS_OF_3 = "%GROUP_SIZE 3;"
CHAINS = "%GROUP_SIZE 4; %DF_GROUP_SIZE 5; %DF_SIGNAL_BUFFER CBUF;"
OE_CONTROLS = ONE_CELL + " %CONTROL_OE_SCAN BC_CTLX;"
HIGHZ_CELLS = ONE_CELL + " %OUTPUT_SCAN BC_OUTZ; %CONTROL_SCAN BC_CTLZ;"
VARIANTS = {  # group items of the TAP, items of the cell roles, options, expected in the report
    "one_level": ("%GROUP_SIZE 64;", ONE_CELL, "", "     Level 2:   1 buffers    drive  45 scan cells"),
    "three_levels": (GROUPS_OF_3, ONE_CELL, "", "     Level 4:  15 buffers    drive  45 scan cells"),
    "pairs": (GROUPS_OF_3, "", "", "     Level 4:  17 buffers    drive  50 scan cells"),
    "no_trees": ("", ONE_CELL, "", "  ** Add total  45 Boundary Scan Cells:"),
    "synch": (GROUPS_OF_3, ONE_CELL, "-synch", "     Level 4:  15 buffers    drive  45 scan cells"),
    "df_speed": (CHAINS, ONE_CELL, "-df_speed", "     Using    9 buffers to drives   45 signals"),
    "synch_df_speed": (CHAINS, "", "-synch -df_speed",
                       "     Using   13 buffers to drives   50 signals"),
    "own_controls": (GROUPS_OF_3, ONE_CELL, "-dont_share_control",
                     "  ** Add 15 CONTROL SCAN Cells: BC_CTL"),
    "own_controls_pairs": (GROUPS_OF_3, "", "-dont_share_control", "  ** Add 15 CONTROL SCAN Cells: BC_CTL"),
    "oe_controls": (GROUPS_OF_3, OE_CONTROLS, "", "  ** Add total  46 Boundary Scan Cells:"),
    "inverting": ("%GROUP_SIZE 3; %INV_BUFFER INV;", ONE_CELL, "",
                  "  ** Using buffer 'INV' for signal 'CLOCK_DR'"),
    "highz": (GROUPS_OF_3, ONE_CELL, "", "     TAP highz       : HIGHZ"),
    "highz_cells": (GROUPS_OF_3, HIGHZ_CELLS, "", "  ** Using buffer 'TBUF' for signal 'X1'"),
    "in_halves": (GROUPS_OF_3, ONE_CELL, "", "  ** Add total  50 Boundary Scan Cells:"),
    "in_halves_pairs": (GROUPS_OF_3, "", "", "  ** Add total  55 Boundary Scan Cells:"),
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
    "in_ring": (GROUPS_OF_3, ONE_CELL, "", "  ** Add total  42 Boundary Scan Cells:"),
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

# Output pads: what a pad shows for data d and enable e, then the nets that feed both before the insertion.
TWO = lambda d, e: d                                # noqa: E731
LOW = lambda d, e: d if e == "0" else "z"           # noqa: E731
HIGH = lambda d, e: d if e == "1" else "z"          # noqa: E731
INVERTED = {"0": "1", "1": "0", "z": "z"}
OUTPUTS = {
    "q0": (TWO, "s[0]", None), "q1": (TWO, "s[1]", None), "q2": (TWO, "q2_i", None),
    "t0": (LOW, "s[2]", "s[8]"), "t1": (LOW, "s[3]", "s[8]"), "th": (HIGH, "s[4]", "s[9]"),
    "tp": (HIGH, "s[12]", "s[10]"), "tk": (TWO, "s[5]", None),
    "od": (lambda d, e: "0" if d == "0" else "z", "s[6]", None),
    "os": (lambda d, e: "1" if d == "1" else "z", "s[7]", None),
    "io0": (LOW, "s[0]", "s[11]"), "io1": (LOW, "s[1]", "s[11]"), "ioh": (HIGH, "s[2]", "s[12]"),
    "iof": (LOW, "s[3]", "s[11]"), "dop": (TWO, "s[4]", None), "dtp": (LOW, "s[5]", "s[13]"),
    "bst": (LOW, "s[6]", "s[14]"), "mxo": (TWO, "s[7]", None), "mxt": (LOW, "s[8]", "s[9]"),
    "fto": (TWO, "fti", None), "dup": (LOW, "s[6]", "s[13]"), "mxb": (LOW, "s[9]", "s[15]"),
    "mxc": (LOW, "s[10]", "s[15]"), "bsb": (LOW, "s[7]", "s[1]"),
}
OF_OUTPUT_SCAN = ["q0", "q1", "q2", "t0", "t1", "th", "tp", "tk", "fto", "dop"]
PORT_OF_PAD = {"do": "dop", "dt": "dtp", "du": "dup"}
MINUS_LEGS = {"dom": "dop", "dtm": "dtp", "dum": "dup"}
INPUTS = ["d0", "d1", "dn", "bf", "fti", "dip", "bsi", "mxi", "mck"]
INSIDE = {"bst": "out", "bsb": "both", "bsi": "in"}
BOTH_WAYS = ["io0", "io1", "ioh", "mxb", "mxc", "bsb"]
WEAK = [port for port in OUTPUTS] + ["iog", "dom", "dtm", "dum"]
INTERNALS = {"u_glue{Z}": "glue", "u_mix{B}": "s[14]", "u_glue{A}": "s[3]"}
INPUT_NETS = ["x[0]", "x[1]", "x[2]", "x[3]", "x[4]", "x[5]", "x[11]"]     # the core sides of input pads
WITHOUT_CELL = {"mck", "mxe", "bf", "fti", "dim", "dom", "dtm", "dum", "tdi", "tms", "tck", "trst_n", "tdo"}
RESETS = {"rst_n": "0"}


# ---- the register, from the .bso file -------------------------------------------------------------------

def instance_index(path, instance):
    found = re.match(r"BCELL(\d+)(_|$)", instance)
    if not found:
        raise ProofError(f"{path}: no cell number in '{instance}'")
    return int(found[1])


class Register:
    """cells[i] is (role, port or enable net); roles are in, out, both, control, internal. Which control cell
    drives which pad comes from the edit commands, and has to be in the range that the .bso file tells."""

    def __init__(self, path, output):
        self.cells, self.of_port, self.controls, self.ports = {}, {}, {}, []
        # Differential pads on a shared enable, which stays with the core for all but the first of them.
        self.left = {leg for pad in re.findall(r"the enable of differential pad 'p_(\w+)' is shared", output)
                     for leg in (pad + "p", pad + "m")}
        # Inputs that feed an output pad first of all: its cell serves both.
        self.merged = set(re.findall(r"input port '(\w+)' connects to (?:output )?port", output))
        # Of a cell inside its pad the file gives no place; the warnings do.
        self.inside = {port: int(place) for port, place in
                       re.findall(r"scan cell of port '(\w+)' is inside .*?place in the chain is (\d+)", output, re.S)}
        commands = "".join(file.read_text() for file in (path.parent / "rimweave_lib").glob("*.cmd"))
        joined = re.findall(r"^connect BCELL(\d+)\w*\{DO\} p_(\w+)\{OEN?\}$", commands, re.M)
        self.driver = {PORT_OF_PAD.get(pad, pad): int(index) for index, pad in joined if pad not in ("od", "os")}
        for line in open(path):
            words = line.split()
            if line.startswith("//") or not words:
                continue
            if words[0] == "[CONTROL":
                block = [words[-1], words[3], None]
            elif words[0] == "[OE":
                first, _, last = line.split("]")[1].split("*")[0].strip().partition(":")
                self.add_control(path, block[0], block[1], int(first), int(last or first))
            elif not words[0].startswith("["):
                self.add_port(path, words)
        if "bsb" in self.inside:
            place = self.inside["bsb"]
            self.add(path, place + 1, "control", f"{OUTPUTS['bsb'][2]} {place}:{place}")
            self.controls[place + 1] = (OUTPUTS["bsb"][2], place, place)
        self.check_controls(path)
        if sorted(self.cells) != list(range(len(self.cells))):
            raise ProofError(f"{path}: the register has gaps: {sorted(self.cells)}")

    def add(self, path, index, role, name):
        if index in self.cells:
            raise ProofError(f"{path}: two cells at {index}: {self.cells[index]}, {name}")
        self.cells[index] = (role, name)
        self.of_port.setdefault(name, {})[role] = index

    def add_control(self, path, instance, net, first, last):
        if net == OUTPUTS["bsb"][2] and "bsb" in self.inside:
            return                      # it follows the place that the file has
        index = instance_index(path, instance)
        if index != first + 1 and first >= 0:
            raise ProofError(f"{path}: control cell {instance} does not follow the cell at {first}")
        self.add(path, index, "control", f"{net} {first}:{last}")
        self.controls[index] = (net, first, last)

    def add_port(self, path, words):
        order, _, port, _, pad, function, instance = words
        if "{" in port:
            self.add(path, instance_index(path, instance), "internal", port)
            return
        self.ports.append(port)
        if port in WITHOUT_CELL | self.merged and instance != "*":
            raise ProofError(f"{path}: {port} has a cell")
        if port in WITHOUT_CELL | self.merged:
            return
        if port in self.inside:
            order = self.inside[port]
        if port in INSIDE:
            self.add(path, int(order), INSIDE[port], port)
        elif function == "inout":
            names = instance.split(",")
            if port in ("mxb", "mxc"):
                names.reverse()                     # pads with a mux: output cell first
            self.add(path, instance_index(path, names[0]), "in", port)
            self.add(path, instance_index(path, names[1]), "out", port)
            if int(order) not in self.of_port[port].values():
                raise ProofError(f"{path}: {port} is at {order}, its cells are {instance}")
        else:
            role = "both" if function == "bidir" else "out" if function.startswith("output") else "in"
            self.add(path, int(order), role, port)
            if instance_index(path, instance) != int(order):
                raise ProofError(f"{path}: {instance} is listed at {order}")

    def check_controls(self, path):
        for port, index in self.driver.items():
            net, first, last = self.controls[index]
            places = self.of_port[port].values()
            if net != OUTPUTS[port][2] or not any(first <= place <= last for place in places):
                raise ProofError(f"{path}: the enable of {port} hangs on {index}, its cells are at {list(places)}")

    def data(self, port):
        cells = self.of_port[port]
        return cells.get("out", cells.get("both"))

    def control(self, port):
        if port not in self.driver and OUTPUTS[port][2] and port not in self.left:
            raise ProofError(f"no control cell drives the enable of {port}")
        return self.driver.get(port)

    def off_values(self, value_of_free="0"):
        """A pattern that turns all pads off that can be turned off."""
        bits = [value_of_free] * len(self.cells)
        for port, (shows, _, net) in OUTPUTS.items():
            if net and port not in self.left:
                bits[self.control(port)] = "1" if shows is LOW else "0"
        bits[self.data("od")], bits[self.data("os")] = "1", "0"
        return bits

    def shown(self, port, pattern):
        if port in MINUS_LEGS:
            return INVERTED[self.shown(MINUS_LEGS[port], pattern)]
        if port == "iog":
            return "z"
        control = self.control(port)
        return OUTPUTS[port][0](pattern[self.data(port)], pattern[control] if control is not None else None)


# ---- the trials -----------------------------------------------------------------------------------------

class Trials:
    def __init__(self, chip, register, session, rng):
        self.chip, self.register, self.session, self.rng = chip, register, session, rng
        self.found = []             # functions of the answers of the new and the old chip that give faults
        self.pins = chip.ports

    def set_pins(self):
        for pin in INPUTS + WEAK + ["mxe"]:
            self.session.pins[pin] = self.rng.choice("01")
        self.session.pins["dim"] = INVERTED[self.session.pins["dip"]]

    def clock(self):
        for value in "10":
            self.session.pins["clk"] = value
            self.session.step()

    def reset(self):
        self.session.pins["rst_n"] = "0"
        self.set_pins()
        self.clock()
        self.session.pins["rst_n"] = "1"

    def run_core(self, cycles):
        for _ in range(cycles):
            self.set_pins()
            self.session.step()
            self.clock()

    def random_bits(self):
        return [self.rng.choice("01") for _ in self.register.cells]

    def probe(self):
        steps = []
        for value in "01":
            self.session.pins.update({pin: value for pin in WEAK + ["mxe"]})
            steps.append(self.session.step())
        return steps

    def expect_pins(self, pattern, label):
        steps = self.probe()
        def check(new, _old):
            for port in [port for port in WEAK if port not in self.register.left]:
                seen = new(steps[0], port) + new(steps[1], port)
                shown = self.register.shown(port, pattern)
                want = "01" if shown == "z" else 2 * shown
                if seen != want:
                    yield f"{label}: {port} reads {seen} against a weak 0 and 1, should be {want}"
        self.found.append(check)

    def expect_capture(self, scanned, label, pattern=None):
        """pattern is what the register holds while it has the pins."""
        captured, where = scanned
        inside = [self.register.of_port[name]["internal"] for name in ("u_glue{Z}", "u_mix{B}")
                  if name in self.register.of_port]
        inner = pattern and inside and str(int(pattern[inside[0]]) ^ int(pattern[inside[1]]))
        def check(new, old):
            for index, (role, name) in self.register.cells.items():
                if role in ("in", "both"):
                    want = new(captured, name)
                    want = INVERTED[want] if name == "dn" else want
                elif role == "control":
                    want = old(captured, name.split()[0])
                elif role == "internal":
                    want = old(captured, INTERNALS[name])
                else:
                    want = inner if inner and OUTPUTS[name][1] == "q2_i" else old(captured, OUTPUTS[name][1])
                got = new(where[index], "tdo")
                if got != want:
                    yield f"{label}: cell {index} ({role} {name}) captured {got}, should be {want}"
        self.found.append(check)

    def sample(self, rounds):
        for number in range(rounds):
            self.session.label = f"SAMPLE {number}"
            self.run_core(9)
            self.session.load("SAMPLE")
            self.set_pins()
            self.session.step()
            self.expect_capture(self.session.scan(self.random_bits()), self.session.label)

    def extest(self, rounds):
        session = self.session
        size = len(self.register.cells)
        patterns = [["0"] * size, ["1"] * size, self.register.off_values("0"), self.register.off_values("1")]
        patterns += [self.random_bits() for _ in range(rounds)]
        session.label = "EXTEST without a preload"
        session.load("SAMPLE")
        session.scan(patterns[0])
        session.reset_by_tms()
        session.diverging = True
        session.load("EXTEST")                      # the reset has set the control cells
        self.expect_pins([str(int(self.register.cells[index][0] == "control")) for index in range(size)],
                         session.label)
        session.label = "PRELOAD"
        session.load("SAMPLE")
        session.scan(patterns[0])
        session.load("EXTEST")
        for pattern, following in zip(patterns, patterns[1:] + patterns[:1]):
            session.label = f"EXTEST of {''.join(pattern)}"
            self.set_pins()
            self.expect_pins(pattern, session.label)
            self.set_pins()
            session.step()
            self.expect_capture(session.scan(following), session.label, pattern)
        for name in ("CLAMP", "EXTEST"):
            session.label = name
            session.scan(patterns[1])
            session.load(name)
            self.expect_pins(patterns[1], name)
            if name == "CLAMP":
                session.scan("0110100", list("0011010"))
                self.expect_pins(patterns[1], name)
                session.load("EXTEST")
        if "HIGHZ" in self.chip.opcodes:
            session.label = "HIGHZ"
            session.load("HIGHZ")
            steps = self.probe()
            def check(new, _old):
                for port, want in self.released().items():
                    if new(steps[0], port) + new(steps[1], port) != want:
                        yield f"HIGHZ: {port} reads not {want} against a weak 0 and 1"
            self.found.append(check)
        session.reset_by_tms()
        session.diverging = False

    def released(self):
        """What HIGHZ does: the pad without an enable hangs on it, and cells with a pin for it go to rest."""
        if not self.register.highz_cells:
            return {"tk": "01"}
        at_rest = {port: "00" for port in OF_OUTPUT_SCAN}
        return at_rest | {port: "01" for port, (shows, _, net) in OUTPUTS.items()
                          if port == "tk" or (shows is LOW and net and port not in self.register.left)}

    def whole(self):
        session = self.session
        session.diverging = True
        session.reset_by_tms()
        self.reset()
        session.diverging = False
        self.run_core(300)
        checks.try_resets(self.chip, session)
        checks.try_registers(self.chip, session, self.rng)
        self.sample(16)
        self.extest(24)
        self.run_core(100)


# ---- the core on the register ---------------------------------------------------------------------------

def fresh(chip, register, rng):
    session = Session(chip)
    trials = Trials(chip, register, session, rng)
    session.reset_by_tms()
    trials.reset()
    return trials


def intest(chip, register, rng, look_before, play_new):
    """The old chip goes first. What its pins show before each clock goes into the register of the new one."""
    old = fresh(chip, register, rng)
    seen = []
    for _ in range(30):
        old.set_pins()
        before = old.session.step()
        old.clock()
        seen.append((before, old.session.step()))
    answers = look_before(old.session.steps)

    new = fresh(chip, register, rng)
    direct = ["dn", "mck", "bf", "fti", *register.merged] + (["mxb"] if "in" in register.of_port["mxb"] else [])
    new.session.load("SAMPLE")
    new.session.label = "INTEST"
    scans = []
    def load(step):
        pattern = register.off_values(rng.choice("01"))
        for port in INPUTS + BOTH_WAYS + ["iog", "rst_n"]:
            cells = register.of_port.get(port, {})
            place = cells.get("in", cells.get("both"))
            if place is not None:
                pattern[place] = answers(step, port) if port != "rst_n" else "1"
        scans.append((new.session.scan(pattern), pattern))
    load(seen[0][0])
    new.session.load("INTEST")
    for number, (before, _) in enumerate(seen):
        if number:
            load(before)
        new.set_pins()
        new.session.pins.update({port: answers(before, port) for port in direct})
        new.session.step()
        new.clock()
        new.session.step()
    load(seen[0][0])
    found = play_new(new.session.steps)

    inside = [register.of_port.get(name, {}).get("internal") for name in ("u_glue{Z}", "u_mix{B}")]
    for (_, rest), ((_, where), _), (_, pattern) in zip(seen, scans[1:], scans):
        for index, (role, name) in register.cells.items():
            if role == "in":
                continue
            if role == "control":
                want = answers(rest, name.split()[0])
            elif role == "internal":
                want = answers(rest, INTERNALS[name])
            elif OUTPUTS[name][1] == "q2_i" and inside[0] is not None:
                want = str(int(pattern[inside[0]]) ^ int(pattern[inside[1]]))
            else:
                want = answers(rest, OUTPUTS[name][1])
            got = found(where[index], "tdo")
            if got != want:
                yield f"INTEST: cell {index} ({role} {name}) captured {got}, should be {want}"


# ---- building and proving -------------------------------------------------------------------------------

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

    def highz(self):
        return "highz" in self.name or self.items == HIGHZ_CELLS

    def cell_files(self):
        more = ["oe_cells.v"] if "CTLX" in self.items else ["highz_cells.v"] if self.items == HIGHZ_CELLS else []
        return ["pads.v", "gated.v"] + more

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
    return variant


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


def join_pads(text, rng):
    """Lets some output pads take their data or enable straight from an input pad, or a constant for data."""
    for port, (shows, data, enable) in OUTPUTS.items():
        if port == "bsb":       # the file shows its control cell nowhere, its net tells which it is
            continue
        pad = next((pad for pad, name in PORT_OF_PAD.items() if name == port), port)
        row = next(row for row in text.splitlines() if f" p_{pad} (" in row)
        changed = row
        data_pin = re.search(rf"\.(I|OEN?)\({re.escape(data)}\)", row)
        if data_pin and rng.random() < .25:
            data = rng.choice(INPUT_NETS + ["1'b0", "1'b1"])
            changed = changed.replace(data_pin[0], f".{data_pin[1]}({data})")
        enable_pin = enable and re.search(rf"\.(OEN?)\({re.escape(enable)}\)", row)
        if enable_pin and rng.random() < .25:
            enable = rng.choice(INPUT_NETS)
            changed = changed.replace(enable_pin[0], f".{enable_pin[1]}({enable})")
        OUTPUTS[port] = (shows, data, enable)
        text = text.replace(row, changed)
    # The TAP takes over what the design has on the TDO pad.
    nets = ["1'b0", "1'b1", "s[3]", "s[8]", "glue", *INPUT_NETS]
    data, enable = rng.choice(nets), rng.choice(nets + [""])
    return text.replace("p_tdo (.I(1'b0), .OEN(1'b1)", f"p_tdo (.I({data}), .OEN({enable})")


def write_chip(variant, work):
    """The chip with its pads in their modules; a module may stand in another one of no cells of its own."""
    cells = "".join((work / name).read_text() for name in variant.cell_files())
    text = (HERE / "kinds.v").read_text()
    if variant.joins:
        text = join_pads(text, variant.rng)
    text = pads_in_modules(text, "kinds", cells, variant.module)
    if variant.frame:
        text = pads_in_modules(text, "kinds", cells + text,
                               lambda instance: "frame" if instance in ("u_west", "u_ring") else None)
    (work / "kinds.v").write_text(text)


def build(variant, bin_dir, work):
    shutil.rmtree(work, ignore_errors=True)
    (work / "lib").mkdir(parents=True)
    cells = variant.cell_files()
    for name in cells:
        shutil.copy(HERE / name, work)
    change_file(work / "gated.v", SYNCH_CELLS if "-synch" in variant.options
                else INVERTED_CELLS if "inverting" in variant.name else {})
    write_chip(variant, work)
    describe(variant, work)
    run([str(bin_dir / "kalmverin"), "-lib", *cells, "-opath", "lib"], work, "reading the cells")
    run([str(bin_dir / "kalmverin"), "kinds.v"], work, "reading the chip")
    output = run([str(bin_dir / "rimweave"), "kinds", "-add_tap", *variant.options.split()], work, "inserting")
    (work / "rimweave.out").write_text(output)
    if variant.items == HIGHZ_CELLS:    # the user's own logic drives an extra pin; here it is the mode
        head, rest = (work / "kinds_TAP.v").read_text().split("endmodule", 1)
        (work / "kinds_TAP.v").write_text(head + "assign X1 = MODE_1;\nendmodule" + rest)
    if variant.expected not in output:
        raise ProofError(f"the report does not say '{variant.expected}'")
    shared = "-dont_share_control" not in variant.options and variant.module("p_dt") == variant.module("p_du")
    if not variant.joins and shared != ("is shared with another pad" in output):
        raise ProofError("no warning, or a needless one, of a differential pad on a shared enable")
    return cells, output


def values(answers, place):
    return lambda step, name: name[-1] if name.startswith("1'b") else answers[step][place[name]]


def prove(work, cells, output):
    register = Register(work / "kinds.bso", output)
    register.highz_cells = "highz_cells.v" in cells
    kinds = {"in": "input", "out": "output2", "both": "bidir", "control": "control", "internal": "internal"}
    chip = Chip(cells=[Cell(i, kinds[register.cells[i][0]], "", register.cells[i][1])
                       for i in range(len(register.cells))])
    chip.ports = register.ports
    read_bsc(work / "kinds.bsc", chip)
    nets = [f"s[{i}]" for i in range(16)] + INPUT_NETS + ["glue", "q2_i"]
    pins = chip.ports + nets
    place = {pin: index for index, pin in enumerate(pins)}
    plan = {"design": "kinds", "cells": cells}
    netlists = ["kinds_jtag.v", "kinds_jtag_flat.v"]
    proof.accept(plan, netlists, work)

    session = Session(chip)
    trials = Trials(chip, register, session, random.Random(1))
    trials.whole()
    before = Player(work, "before", ["kinds.v", *cells], "kinds.v", pins, {net: f"dut.{net}" for net in nets})
    old = before.play(session.steps)
    faults = []
    for netlist in netlists:
        player = Player(work, pathlib.Path(netlist).stem, [netlist, "kinds_TAP.v", *cells], netlist, pins)
        new = player.play(session.steps)
        found = proof.check_tdo(session, new, place["tdo"])
        for check in trials.found:
            found += check(values(new, place), values(old, place))
        found += [f"step {step} ({session.labels[step]}): {pin} was {values(old, place)(step, pin)}, "
                  f"is {values(new, place)(step, pin)}"
                  for step, diverges in enumerate(session.diverges) if not diverges
                  for pin in chip.ports if pin != "tdo" and old[step][place[pin]] != new[step][place[pin]]]
        found += intest(chip, register, random.Random(2), lambda steps: values(before.play(steps), place),
                        lambda steps: values(player.play(steps), place))
        faults += [f"{netlist}: {fault}" for fault in found]
    still = [pin for pin in OUTPUTS if not OUTPUTS[pin][1].startswith("1'b") and not
             {"0", "1"} <= {answer[place[pin]] for answer, diverges in zip(old, session.diverges) if not diverges}]
    return faults + [f"stimulus: {pin} never moves" for pin in still], len(register.cells), len(session.steps)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    options.add_argument("--variant", required=True, help="random:N, or one of: " + " ".join(VARIANTS))
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    name, _, seed = given.variant.partition(":")
    variant = random_variant(int(seed)) if seed else Variant(name, *VARIANTS[name], internals="in_ring" not in name)
    try:
        cells, output = build(variant, given.bin.resolve(), given.work)
        faults, count, steps = prove(given.work.resolve(), cells, output)
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    for fault in faults[:proof.FAULTS_SHOWN]:
        print(fault)
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"PROOF PASSED: kinds, {given.variant}: {count} boundary cells, {steps} steps")


if __name__ == "__main__":
    main()
