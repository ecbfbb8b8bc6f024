"""Readers of the files that describe a chip: what the proof knows about it, it knows from these."""

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
    on: int = 0               # the value of a control cell that enables its pads


@dataclass
class Chip:
    cells: list = field(default_factory=list)
    ports: list = field(default_factory=list)       # every signal port, bit by bit
    test_ports: dict = field(default_factory=dict)  # "tdi" and the like to the port's name
    opcodes: dict = field(default_factory=dict)
    idcode: str = None
    ir_capture: str = ""


def strip_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)


def read_bso(path):
    """Gives the ports with cell or without, in file order, and the cells of the register by index."""
    ports, cells, control = [], {}, None

    def add(cell):
        if cell.index in cells:
            raise ProofError(f"{path}: two cells at {cell.index}: {cells[cell.index].instance}, {cell.instance}")
        cells[cell.index] = cell

    for line in open(path):
        if line.startswith("//") or not line.strip():
            continue
        words = line.split()
        if words[0] == "[CONTROL":
            control = Cell(-1, "control", words[-1], resets=words[-2] == "controlr")
        elif words[0] == "[OE":
            first, _, last = line.split("]")[1].split("*")[0].strip().partition(":")
            control.index = int(first) + 1
            if control.instance != "*" and not re.match(rf"BCELL{control.index}(_|$)", control.instance):
                raise ProofError(f"{path}: control cell {control.instance} is listed at {control.index}")
            add(control)
            for index in range(int(first), int(last or first) + 1):
                data = cells.get(index)
                if data and data.kind in ("output3", "bidir"):
                    if data.control:
                        raise ProofError(f"{path}: {data.port} lies in the range of two control cells")
                    data.control = control
        elif words[0].startswith("["):
            if ports[-1][1]:
                ports[-1][1].pad = words[0].strip("[]")
        else:
            if len(words) != 7:
                raise ProofError(f"{path}: cannot make columns of '{line.rstrip()}'")
            order, _, port, _, _, function, instance = words
            cell = None
            if function == "inout":     # on an added pad: output cell, input cell, control cell
                place = int(order)
                cell = Cell(place - 1, "output3", instance.split(",")[1], port, control=Cell(place + 1, "control", "*"))
                for part in (cell, Cell(place, "input", instance.split(",")[0], port), cell.control):
                    add(part)
            elif instance != "*":
                cell = Cell(int(order), function, instance, port)
                add(cell)
            ports.append((port, cell))
    chain = [cells.get(i) for i in range(len(cells))]
    if None in chain:
        raise ProofError(f"{path}: no cell at {chain.index(None)}")
    return [port for port, _ in ports], chain


def read_pad_enables(path):
    """Pad cell to the value of the enable that turns it on. Families (IOBUF*) stand as they are written."""
    enables = {}
    text = strip_comments(open(path).read())
    for names, body in re.findall(r"%BUFFER\s+([^{]*)\{([^}]*)\}", text):
        for name in re.split(r"[\s,]+", names.strip()):
            if "%EN_L" in body or "%EN_H" in body:
                enables[name] = 0 if "%EN_L" in body else 1
    return enables


def read_bsc(path, chip):
    text = strip_comments(open(path).read())
    for key in ("TDI", "TDO", "TMS", "TCK", "TRST"):
        found = re.search(rf"%GLOBAL_{key}\s+(\S+?)\s*;", text)
        if found:
            chip.test_ports[key.lower()] = found[1].lstrip("-")
    for name, codes in re.findall(r"%INSTRUCTION\s+(\w+)\s*=\s*\(([^)]*)\)", text):
        chip.opcodes[name.upper()] = re.split(r"[\s,]+", codes.strip())[0]
    found = re.search(r"%IDCODE_REGISTER\s+([01xX]+)", text)
    chip.idcode = found[1] if found else None
    chip.ir_capture = re.search(r"%INSTRUCTION_CAPTURE\s*\(\s*([01xX]+)", text)[1]


def read_chip(bso, bsc, lib):
    chip = Chip()
    chip.ports, chip.cells = read_bso(bso)
    read_bsc(bsc, chip)
    enables = read_pad_enables(lib)
    for cell in chip.cells:
        if cell.control:
            cell.control.on = enables.get(cell.pad, 0)      # added pads are turned on by a 0
    return chip


def read_top_ports(path, top=None):
    """The ports of a module (the last of the file when no name is given): name to (direction, msb, lsb),
    None for the range of a scalar. Takes port lists with and without declarations in the header."""
    text = strip_comments(open(path).read())
    text = re.sub(r"\(\*.*?\*\)", " ", text, flags=re.S)
    modules = re.findall(r"\bmodule\s+(\\\S+\s|\w+)(.*?)\bendmodule\b", text, flags=re.S)
    for name, body in reversed(modules):
        if top is None or name.strip() == top:
            break
    else:
        raise ProofError(f"{path}: no module {top}")
    ports, current = {}, None
    for word in re.findall(r"\\\S+|[A-Za-z_]\w*|\[\s*\d+\s*:\s*\d+\s*\]|.", body, flags=re.S):
        if word in ("input", "output", "inout"):
            current = [word, None, None]
        elif word in ";)":
            current = None
        elif current and word.startswith("[") and ":" in word:
            current[1:] = [int(number) for number in re.findall(r"\d+", word)]
        elif current and word not in ("wire", "reg", "tri") and re.match(r"\\|\w", word):
            ports[word.lstrip("\\")] = tuple(current)
    return name.strip(), ports
