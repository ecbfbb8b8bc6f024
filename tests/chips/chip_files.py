"""Readers of the files that describe a chip: what the proof knows about it, it knows from these."""

import re
from dataclasses import dataclass, field


class ProofError(Exception):
    """Something that the proof holds against the tools or against the chip's own files."""


@dataclass
class Cell:
    """One cell of the boundary register. Number 0 is the cell next to TDO."""
    reader: str = ""          # plain name of the port whose pin it gives to the core
    writer: str = ""          # of the one that shows what it holds
    control: int = -1         # of a writer: the cell of its enable,
    off: int = 0              # at this value off


@dataclass
class Chip:
    cells: list = field(default_factory=list)
    clocks: list = field(default_factory=list)
    test_ports: dict = field(default_factory=dict)  # "tdi" and the like to the port's name
    skipped: set = field(default_factory=set)       # ports that may be no pins
    opcodes: dict = field(default_factory=dict)
    idcode: str = None
    ir_capture: str = ""


def strip_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)


def plain(name):
    """A port's name in letters that BSDL takes too."""
    return re.sub(r"\W+", "_", name).strip("_")


def read_bsd(path, chip):
    """The rows of the register and the clock ports; a cell that goes from an input straight to an output is neither."""
    rows = [(int(number), plain(name), function, rest.split(", "))
            for number, name, function, rest in re.findall(r'"(\d+) \(\w+, (\S+), (\w+), (.*)\),?"', path.read_text())]
    chip.cells = [Cell() for _ in range(1 + max(row[0] for row in rows))]
    for number, name, function, rest in rows:
        cell = chip.cells[number]
        if function == "clock":
            chip.clocks.append(name)
        if function in ("input", "bidir"):
            cell.reader = name
        elif function.startswith("output"):
            cell.writer = name
            cell.control, cell.off = (int(rest[1]), int(rest[2])) if len(rest) > 2 else (-1, 0)
    for cell in chip.cells:
        if cell.reader and cell.writer:
            cell.reader = cell.writer = ""


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


def read_chip(work, design):
    """What the files of a finished run and of `rimkit bsdl` tell of the design."""
    chip = Chip()
    read_bsc(work / f"{design}.bsc", chip)
    read_bsd(work / f"{design}.bsd", chip)
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
