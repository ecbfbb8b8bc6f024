"""Readers of the files that describe a chip: what the proof knows about it, it knows from these."""

import fnmatch
import re
from dataclasses import dataclass, field


class ProofError(Exception):
    """Something that the proof holds against the tools or against the chip's own files."""


@dataclass
class Cell:
    """One cell of the boundary register. Index 0 is the cell next to TDO."""
    index: int
    kind: str                 # clock, input, output2, output3, bidir, control
    instance: str
    port: str = ""
    pad: str = ""
    control: "Cell" = None    # of an output3 or bidir cell; None when its enable is not in the register
    resets: bool = False      # a control cell that the TAP's reset turns off
    on: int = 0               # the value of the control cell that enables the pad, or one of a control cell's pads


@dataclass
class Chip:
    cells: list = field(default_factory=list)
    ports: list = field(default_factory=list)       # every port of the pin file, bit by bit, and the test port
    test_ports: dict = field(default_factory=dict)  # "tdi" and the like to the port's name
    skipped: set = field(default_factory=set)       # ports that may lack a row in the pin file
    opcodes: dict = field(default_factory=dict)
    idcode: str = None
    ir_capture: str = ""


@dataclass
class Row:
    """A port of the .bso file. Of a pair of cells instances has both, and order is the place of one of them."""
    order: str
    port: str
    pad_instance: str
    function: str
    instances: list
    pad: str = ""             # the pad's cell


@dataclass
class Control:
    """A control cell of the .bso file. first and last are the orders of the outermost rows that it serves."""
    instance: str
    net: str
    resets: bool
    first: int = -1
    last: int = -1


def strip_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)


def place_of(instance):
    """The place in the register of a cell that the insertion added."""
    found = re.match(r"BCELL(\d+)(_|$)", instance)
    if not found:
        raise ProofError(f"no place in the name of cell '{instance}'")
    return int(found[1])


def read_bso(path):
    """Gives the ports with cell or without, and the control cells, each in file order."""
    rows, controls = [], []
    for line in open(path):
        words = line.split()
        if line.startswith("//") or not words:
            continue
        if words[0] == "[CONTROL":
            controls.append(Control(words[-1], words[3], words[-2] == "controlr"))
        elif words[0] == "[OE":
            first, _, last = line.split("]")[1].split("*")[0].strip().partition(":")
            controls[-1].first, controls[-1].last = int(first), int(last or first)
        elif words[0].startswith("["):
            rows[-1].pad = words[0].partition("]")[0].strip("[")
        elif len(words) != 7:
            raise ProofError(f"{path}: cannot make columns of '{line.rstrip()}'")
        else:
            order, _, port, _, pad_instance, function, instance = words
            rows.append(Row(order, port, pad_instance, function, instance.split(",")))
    return rows, controls


def read_pad_enables(path):
    """The enable pins of a pad, as a function of the pad's cell: pin to the value that turns the pad on."""
    enables = []
    text = strip_comments(open(path).read())
    for names, body in re.findall(r"%\w*BUFFER\s+([^{};]*)\{([^}]*)\}", text):
        pins = {pin: int(level == "H") for level, pin in re.findall(r"%EN_([LH])\s+(\S+?)\s*;", body)}
        enables += [(name, pins) for name in re.split(r"[\s,]+", names.strip())]
    enables.sort(key=lambda row: "*" in row[0])         # an exact name goes before a family
    return lambda pad: next((pins for name, pins in enables if fnmatch.fnmatchcase(pad, name)), {})


def read_wires(path):
    """The cells of the insertion that are wires while the core has the pins, each with two pins; those that are
    nothing then; and the TAP's pins that take pins of a pad over."""
    text = strip_comments(open(path).read())
    through, drop, taken = [], [], set()
    for name, body in re.findall(r"%TAP_CONTROLLER\s+(\S+)\s*\{([^}]*)\}", text):
        drop.append(name)
        taken |= {(name, pin.lstrip("-")) for pin in re.findall(r"%TDO(?:_EN)?\s+(\S+?)\s*;", body)}
    for name, body in re.findall(r"%SCAN_CELL\s+(\S+)\s*\{([^}]*)\}", text):
        pins = dict(re.findall(r"%(\w+)\s+(\S+?)\s*;", body))
        drop += [name] if "DATA_OUT" not in pins else []
        through += [(name, pins[a], pins[b]) for a, b in (("DATA_IN", "DATA_OUT"), ("SYS_PIN", "SYS_IN")) if b in pins]
    for name in re.findall(r"%\w*SIGNAL_BUFFER\s+(\S+?)\s*;", text):
        body = re.search(rf"%BUFFER\s[^{{}}]*\b{name}\b[^{{}}]*\{{([^}}]*)\}}", text)
        pins = dict(re.findall(r"%(\w+)\s+(\S+?)\s*;", body[1] if body else ""))
        through += [(name, pins["INPUT"], pins["OUTPUT"])] if body else []
    return through, drop, taken


def read_joins(folder):
    """The pins of pads that a boundary cell drives by the edit commands of a run: (cell, instance) to the pins.
    Of the pads in the range of a control cell in the .bso file some may hang on another one, or on none."""
    joins = {}
    for file in (folder / "rimweave_lib").glob("*.cmd"):
        for words in re.findall(r"^connect (\S+)\{(\S+)\} (\S+)\{(\S+)\}", file.read_text(), re.M):
            for cell, cell_pin, pad, pin in (words, words[2:] + words[:2]):
                for name in (cell, cell_pin.removesuffix("_OUT")):     # the second of cells in a module of the user's
                    joins.setdefault((name, pad), set()).add(pin)
    return joins


def make_register(path, rows, controls, enables_of):
    """The cells of the register by index."""
    cells = {}

    def add(cell):
        if cell.index in cells:
            raise ProofError(f"{path}: two cells at {cell.index}: {cells[cell.index].instance}, {cell.instance}")
        cells[cell.index] = cell
        return cell

    joins = read_joins(path.parent)
    def listed(place, kind, instance, *more, **others):
        if instance.startswith("BCELL") and place_of(instance) != place:
            raise ProofError(f"{path}: {instance} is listed at {place}")
        return add(Cell(place, kind, instance, *more, **others))

    of_control = [(control, listed(control.first + 1, "control", control.instance, resets=control.resets))
                  for control in controls]
    for row in rows:
        if len(row.instances) == 2:
            # The data cell, the control cell when this is the first pad that it serves, the input cell.
            out, into = sorted(row.instances, key=place_of)
            data = add(Cell(place_of(out), "output3", out, row.port, row.pad))
            add(Cell(place_of(into), "input", into, row.port, row.pad))
            if row.pad_instance == "*":                 # an added pad is turned on by a 0, and has no control line
                data.control = add(Cell(place_of(into) + 1, "control", "*"))
        elif row.instances != ["*"]:
            data = listed(int(row.order), row.function, row.instances[0], row.port, row.pad)
        else:
            continue
        for control, cell in of_control:
            for pin, level in enables_of(row.pad).items():
                if pin in joins.get((control.instance, row.pad_instance), ()) and data.kind in ("output3", "bidir"):
                    if not control.first <= int(row.order) <= control.last:
                        raise ProofError(f"{path}: {row.port} is not in the range of {control.instance}")
                    data.control, data.on, cell.on = cell, level, level
    chain = [cells.get(i) for i in range(len(cells))]
    if None in chain:
        raise ProofError(f"{path}: no cell at {chain.index(None)}")
    return chain


def read_bsc(path, chip):
    text = strip_comments(open(path).read())
    for key in ("TDI", "TDO", "TMS", "TCK", "TRST"):
        found = re.search(rf"%GLOBAL_{key}\s+(\S+?)\s*;", text)
        if found:
            chip.test_ports[key.lower()] = found[1].lstrip("-")
    for names in re.findall(r"%SKIP_SIGNAL_NAMES\s*\{([^;}]*)", text):
        chip.skipped |= {name.split("(")[0].lstrip("-") for name in re.split(r"[\s,]+", names.strip())}
    for name, codes in re.findall(r"%INSTRUCTION\s+(\w+)\s*=\s*\(([^)]*)\)", text):
        chip.opcodes[name.upper()] = re.split(r"[\s,]+", codes.strip())[0]
    found = re.search(r"%IDCODE_REGISTER\s+([01xX]+)", text)
    chip.idcode = found[1] if found else None
    chip.ir_capture = re.search(r"%INSTRUCTION_CAPTURE\s*\(\s*([01xX]+)", text)[1]


def read_chip(bso, bsc, lib):
    rows, controls = read_bso(bso)
    chip = Chip(cells=make_register(bso, rows, controls, read_pad_enables(lib)), ports=[row.port for row in rows if "{" not in row.port])
    read_bsc(bsc, chip)
    chip.ports += [port for port in chip.test_ports.values() if port not in chip.ports]
    return chip


def read_ports(paths, top):
    """The ports of a module that stands in one of the files: name to (direction, msb, lsb), None for the range
    of a scalar. Takes port lists with and without declarations in the header."""
    for path in paths:
        text = re.sub(r"\(\*.*?\*\)", " ", strip_comments(open(path).read()), flags=re.S)
        found = re.search(rf"\bmodule\s+\\?{re.escape(top)}(?=[\s(;])(.*?)\bendmodule\b", text, flags=re.S)
        if found:
            break
    else:
        raise ProofError(f"no module {top} in {' '.join(map(str, paths))}")
    ports, current = {}, None
    for word in re.findall(r"\\\S+|[A-Za-z_]\w*|\[\s*\d+\s*:\s*\d+\s*\]|.", found[1], flags=re.S):
        if word in ("input", "output", "inout"):
            current = [word, None, None]
        elif word in ";)":
            current = None
        elif current and word.startswith("[") and ":" in word:
            current[1:] = [int(number) for number in re.findall(r"\d+", word)]
        elif current and word not in ("wire", "reg", "tri") and re.match(r"\\|\w", word):
            ports[word.lstrip("\\")] = tuple(current)
    return ports
