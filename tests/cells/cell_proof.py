#!/usr/bin/env python3
"""Proves the boundary cells of cells/ one by one.

    cell_proof.py --cells cells --gates examples/uart_chip/synth/gates.liberty --work DIR

  - made: the files are those that make_cells.py writes
  - captures: all cells in one bench, the same steps for the Verilog under Icarus and for the VHDL under GHDL; in each
    instruction, with each value of core, pin, enable and both stages, against capture_table.py. The pins are driven
    by what boundary_cells.lib calls them
  - races: a cell behind each one has its clock some zero-delay assignments later, and still takes the old value
  - gates: both languages mapped by Yosys: two flip-flops or one, no latch, a multiplexer alone between the data pins
"""

import argparse
import filecmp
import itertools
import json
import pathlib
import re
import shutil
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "chips"))
from capture_table import CAPTURES, FUNCTIONS, INSTRUCTIONS, SIDES, UNNAMED  # noqa: E402
from chip_files import ProofError, strip_comments  # noqa: E402
from player import run  # noqa: E402
from step_player import Player, VhdlPlayer  # noqa: E402

IDLE = {"TCK": 0, "CK": 1, "CE": 0, "UP": 0, "UE": 0, "SE": 0, "SI": 0, "RN": 1}
DATA = ("DI", "SP", "PAD_ON")
MODES = ("M1", "M2", "HZ")
INPUTS = (*IDLE, *DATA, *MODES)
OUTPUTS = ("DO", "CI", "SO", "PAD_ON")
# Of a cell without %TCK %CLOCK_DR and %UPDATE_DR are the gated clocks, of one with it enables.
ROLES = {"DATA_IN": "DI", "DATA_OUT": "DO", "SYS_PIN": "SP", "SYS_IN": "CI", "TDI": "SI", "TDO": "SO", "SHIFT_DR": "SE",
         "MODE_1": "M1", "MODE_2": "M2", "RST": "RN", "HIGHZ": "HZ", "OE_MODE": "PAD_ON"}
CLOCKS = {False: {"CLOCK_DR": "CK", "UPDATE_DR": "UP"}, True: {"TCK": "TCK", "CLOCK_DR": "CE", "UPDATE_DR": "UE"}}
LATER = 4


class Cell:
    """A block of boundary_cells.lib. The type and the function are told by the name."""

    def __init__(self, name, items):
        roles = ROLES | CLOCKS["TCK" in items]
        self.name, self.pins = name, {roles[key]: pin for key, pin in items.items() if key != "STD_NAME"}
        self.type, self.tail = re.fullmatch(r"RIM_(BC_\d+)_?(\w*?)(?:_?S)?", name).groups()
        self.function = FUNCTIONS.get(self.tail) or UNNAMED[self.type]
        self.off = re.sub(r"\D", "", self.tail)             # what a control cell's reset gives
        if items.get("STD_NAME") != self.type:
            raise ProofError(f"{name}: the library has another type")
        # a control cell says whether its pads are on, a bidirectional cell asks
        self.outputs = [pin for pin in self.pins if pin in OUTPUTS and (pin != "PAD_ON" or self.off)]

    def taken(self, instruction, values):
        """What the shift stage takes, or None where the type says nothing."""
        function = self.function
        if function == "bidir":
            function += "_out" if values["PAD_ON"] else "_in"
        row = CAPTURES[self.type, function]
        source = dict(zip(("EXTEST", "SAMPLE", "INTEST"), row)).get(instruction)
        return values["update"] if source == "UPD" else values[SIDES[function][source == "PO"]] if source else None

    def driven(self, instruction, values):
        """What the outputs show, but for SO."""
        _, pads, core = INSTRUCTIONS[instruction]
        shown = {}
        if "DO" in self.outputs:
            shown["DO"] = values["update"] if (core if self.function == "input" else pads) else values["DI"]
            if "HZ" in self.pins and instruction == "HIGHZ":
                shown["DO"] = int(self.off)
        if "CI" in self.outputs:
            shown["CI"] = values["update"] if core else values["SP"]
        if "PAD_ON" in self.outputs:
            shown["PAD_ON"] = int(shown["DO"] != int(self.off))
        return shown


def read_cells(folder):
    text = strip_comments((folder / "boundary_cells.lib").read_text())
    return [Cell(name, dict(re.findall(r"%(\w+)\s+(\S+?)\s*;", body)))
            for name, body in re.findall(r"%SCAN_CELL\s+(\S+)\s*\{([^}]*)\}", text)]


def check_made(folder, work):
    run([sys.executable, str(folder / "make_cells.py"), "--out", str(work / "made")], work, "making the cells")
    for made in sorted((work / "made").rglob("*.*")):
        file = folder / made.relative_to(work / "made")
        if not file.exists() or not filecmp.cmp(made, file, shallow=False):
            yield f"{file}: not what make_cells.py writes"


# ---- captures ----------------------------------------------------------------------------------------

def write_tops(cells, work):
    """One module with all cells side by side, and behind each one another with a later clock, in both languages."""
    outputs = [f"{cell.name}_{pin}" for cell in cells for pin in (*cell.outputs, "LATE")]
    def joined(form, cell):
        return ", ".join(form.format(port, f"{cell.name}_{pin}" if pin in cell.outputs else pin)
                         for pin, port in cell.pins.items())
    def late(form, cell):
        nets = {"SI": f"{cell.name}_SO", "SO": f"{cell.name}_LATE", "CK": f"CK_{LATER}", "TCK": f"TCK_{LATER}"}
        return ", ".join(form.format(port, nets.get(pin, pin)) for pin, port in cell.pins.items()
                         if pin in nets or pin not in cell.outputs)
    steps = [(clock, f"{clock}_{step - 1}" if step > 1 else clock, f"{clock}_{step}")
             for clock in ("CK", "TCK") for step in range(1, LATER + 1)]
    (work / "tops.v").write_text(
        f"module tops ({', '.join(['input ' + pin for pin in INPUTS] + ['output ' + pin for pin in outputs])});\n"
        + "".join(f"    reg {later};\n    always @({clock}) {later} <= {clock};\n" for _, clock, later in steps)
        + "".join(f"    {cell.name} u_{cell.name} ({joined('.{}({})', cell)});\n"
                  f"    {cell.name} late_{cell.name} ({late('.{}({})', cell)});\n" for cell in cells) + "endmodule\n")
    ports = [f"{pin} : in std_logic" for pin in INPUTS] + [f"{pin} : inout std_logic" for pin in outputs]
    (work / "tops.vhd").write_text(
        f"library ieee; use ieee.std_logic_1164.all;\nentity tops is port ({'; '.join(ports)}); end tops;\n"
        "architecture all_cells of tops is\n"
        + "".join(f"  signal {later} : std_logic;\n" for _, _, later in steps) + "begin\n"
        + "".join(f"  {later} <= {clock};\n" for _, clock, later in steps)
        + "".join(f"  u_{cell.name} : entity work.{cell.name} port map ({joined('{} => {}', cell)});\n"
                  f"  late_{cell.name} : entity work.{cell.name} port map ({late('{} => {}', cell)});\n"
                  for cell in cells) + "end all_cells;\n")
    return outputs


class Steps:
    """The steps of the bench, and what has to be seen at the end of some of them."""

    def __init__(self, cells):
        self.cells, self.steps, self.expect = cells, [], []
        self.now = {**dict.fromkeys(INPUTS, 0), **IDLE}

    def step(self, **changes):
        self.now.update(changes)
        self.steps.append({pin: str(value) for pin, value in self.now.items()})

    def scan(self, shift, data):
        """The clock of Shift-DR, or of Capture-DR, as the TAP gives it in both forms; ends with TCK high."""
        self.step(TCK=1, CE=1)
        self.step(TCK=0, CK=0, SE=shift, SI=data)
        self.step(TCK=1, CK=1)
        self.step(CE=0)
        self.step(SE=0)

    def update(self):
        self.step(TCK=1, UE=1)
        self.step(TCK=0, UP=1)
        self.step(TCK=1, UP=0, UE=0)

    def idle(self):
        self.step(TCK=0)
        self.step(TCK=1)

    def see(self, label, shows):
        """shows gives a cell's pins with what they show."""
        for cell in self.cells:
            self.expect += [(len(self.steps) - 1, f"{cell.name}_{pin}", value, label)
                            for pin, value in shows(cell).items() if value is not None]

    def case(self, instruction, values, stage):
        label = f"{instruction} with {values}"
        self.scan(1, values["update"])
        self.update()
        self.scan(1, stage)
        self.step(**INSTRUCTIONS[instruction][0], **{pin: values[pin] for pin in DATA})
        self.idle()
        self.see(label, lambda cell: {"SO": stage, "LATE": values["update"], **cell.driven(instruction, values)})
        self.scan(0, 1 - stage)
        self.see(label + ", taken", lambda cell: {"SO": cell.taken(instruction, values),
                                                  **cell.driven(instruction, values)})

    def reset(self, update):
        """The reset of the update stage, in EXTEST; a cell without one keeps what it has."""
        self.scan(1, update)
        self.update()
        self.step(**INSTRUCTIONS["EXTEST"][0])
        for level in (0, 1):
            self.step(RN=level)
            self.see(f"reset from {update}, RN {level}", lambda cell: {} if cell.function in ("input", "observe") else
                     {"DO": int(cell.off) if "RN" in cell.pins else update})


def check_captures(cells, folder, work):
    outputs, trial = write_tops(cells, work), Steps(cells)
    for instruction, *values, stage in itertools.product(INSTRUCTIONS, *[(0, 1)] * 5):
        trial.case(instruction, dict(zip((*DATA, "update"), values)), stage)
    trial.reset(0)
    trial.reset(1)
    pins = [*INPUTS, *outputs]
    files = {form: [str(file) for file in sorted((folder / name).glob("*." + form))]
             for name, form in (("verilog", "v"), ("vhdl", "vhd"))}
    players = {"Verilog": Player(work, "verilog", [*files["v"], "tops.v"], "tops", pins),
               "VHDL": VhdlPlayer(work, "vhdl", [*files["vhd"], "tops.vhd"], "tops", pins)}
    place = {pin: index for index, pin in enumerate(pins)}
    for language, player in players.items():
        answers = player.play(trial.steps)
        for step, pin, value, label in trial.expect:
            if answers[step][place[pin]] != str(value):
                yield f"{language}: {label}: {pin} is {answers[step][place[pin]]}, not {value}"


# ---- gates -------------------------------------------------------------------------------------------

def check_gates(cells, folder, gates, work):
    """From VHDL the gates come by way of GHDL's own synthesis."""
    run(["ghdl", "-a", *[str(file) for file in sorted((folder / "vhdl").glob("*.vhd"))]], work, "analysing the VHDL")
    (work / "from_vhdl.v").write_text("".join(
        run(["ghdl", "--synth", "--out=verilog", cell.name], work, "synthesising the VHDL") for cell in cells))
    sources = {"Verilog": " ".join(str(folder / "verilog" / f"{cell.name}.v") for cell in cells), "VHDL": "from_vhdl.v"}
    for language, files in sources.items():
        run(["yosys", "-q", "-p", f"read_liberty -lib {gates}; read_verilog {files}; proc; opt; techmap; opt; "
             f"dfflibmap -liberty {gates}; abc -liberty {gates}; opt_clean; check -assert -mapped; "
             f"write_json {language}.json"], work, "yosys")
        modules = json.loads((work / f"{language}.json").read_text())["modules"]
        for cell in cells:
            yield from (f"{language}: {cell.name}: {fault}" for fault in gate_faults(cell, modules[cell.name]))


def gate_faults(cell, module):
    nets = {pin: port["bits"] for pin, port in module["ports"].items()}
    gates = list(module["cells"].values())
    stages = sorted(gate["type"] for gate in gates if gate["type"].startswith("DFF"))
    wanted = ["DFFR"] + (["DFFS" if cell.off == "1" else "DFFR"] if "DO" in cell.outputs else [])
    if stages != wanted:            # the library has no flip-flop without a reset, so a DFFR may be one
        yield f"its stages are {stages}, not {wanted}"
    drivers = {gate["connections"]["Z"][0]: gate for gate in gates if "Z" in gate["connections"]}
    for source, target in (("DI", "DO"), ("SP", "CI")):
        if target in cell.outputs:
            path = path_gates(drivers, nets[source][0], nets[target][0])
            # What HIGHZ forces costs a gate beside the multiplexer, in the enable of pads alone.
            if path.count("MUX2") != 1 or len(path) > 1 + ("HZ" in cell.pins):
                yield f"from {source} to {target} stand {path}"


def path_gates(drivers, source, net):
    """The gates between two nets."""
    gate = drivers.get(net)
    inputs = [bits[0] for pin, bits in gate["connections"].items() if pin != "Z"] if gate else []
    behind = [path_gates(drivers, source, other) for other in inputs if other != source]
    behind = [gate for path in behind for gate in path]
    return behind + [gate["type"]] if behind or source in inputs else []


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--cells", required=True, type=pathlib.Path, help="folder of the cells")
    options.add_argument("--gates", required=True, type=pathlib.Path, help="Liberty library to map to")
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    folder, work = given.cells.resolve(), given.work.resolve()
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    try:
        cells = read_cells(folder)
        faults = [*check_made(folder, work), *check_captures(cells, folder, work),
                  *check_gates(cells, folder, given.gates.resolve(), work)]
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    print("\n".join(faults[:12]))
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"PROOF PASSED: {len(cells)} cells")


if __name__ == "__main__":
    main()
