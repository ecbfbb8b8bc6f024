"""What a BSDL file has to say, found in the flat Verilog netlist: from the pads to the cells, and along the chain from TDO
to TDI. Shares nothing with the programs: text in, a register out."""

import fnmatch
import re
from dataclasses import dataclass, field


def strip_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)


class Library:
    """The blocks of the library file: class to its keywords and their pins."""

    def __init__(self, lib, bsc):
        text = strip_comments(lib)
        self.bsc = strip_comments(bsc)
        self.blocks, self.wild = {}, []
        for word, names, body in re.findall(r"%(\w+)\s+([^{};%]*)\{([^}]*)\}", text):
            pins = {key: value.lstrip("-") for key, value in re.findall(r"%(\w+)\s+(\S+?)\s*;", body)}
            pins["block"] = word
            for name in re.split(r"[\s,]+", names.strip()):
                (self.wild.append((name, pins)) if "*" in name else self.blocks.setdefault(name, pins))
        inverters = set(re.findall(r"%INV_BUFFER\s+(\w+)\s*;", text)) | set(re.findall(r"%INVERTER\s+(\w+)", self.bsc))
        self.inverts = lambda name: name in inverters or self.of(name).get("FUNCTION", "").lower().startswith("inv")

    def of(self, name):
        if name not in self.blocks:
            fits = [pins for pattern, pins in self.wild if fnmatch.fnmatchcase(name, pattern)]
            self.blocks[name] = fits[0] if fits else {}
        return self.blocks[name]

    def is_cell(self, name):
        return "TDI" in self.of(name) and self.of(name)["block"] != "TAP_CONTROLLER"

    def is_tap(self, name):
        return self.of(name).get("block") == "TAP_CONTROLLER"

    def passes(self, name):
        pins = self.of(name)
        stops = {"INOUT", "EN_L", "EN_H", "MUX_IN1", "MUX_IN2", "TDI"}
        return pins.get("block") in ("BUFFER", "INV_BUFFER") and {"INPUT", "OUTPUT"} <= set(pins) and not stops & set(pins)


@dataclass
class Found:
    length: int = 0
    instances: list = field(default_factory=list)
    ins: dict = field(default_factory=dict)        # port to the cells that read it
    outs: dict = field(default_factory=dict)       # port to (cell, inverted)
    enables: dict = field(default_factory=dict)    # port to [(cell or what else, value that turns off)]
    ports: dict = field(default_factory=dict)
    taps: dict = field(default_factory=dict)


class Netlist:
    def __init__(self, text, library):
        self.library, self.instances, self.ports, self.driver = library, {}, {}, {}
        text = strip_comments(text)
        head, body = re.search(r"\bmodule\s+(?:\\\S+|\w+)\s*\((.*?)\);(.*?)\bendmodule", text, re.S).groups()
        for way, left, right, name in re.findall(r"(input|output|inout)\s+(?:\[(\d+):(\d+)\]\s*)?(\\\S+|\w+)", head):
            name = name.lstrip("\\")
            step = 1 if left and int(left) <= int(right) else -1
            bits = [f"{name}[{i}]" for i in range(int(left), int(right) + step, step)] if left else [name]
            self.ports.update({bit: way for bit in bits})
        item = re.compile(r"(\\\S+\s|\w+)\s+(\\\S+\s|\w+)\s*\(\s*(\.[^;]*)\)\s*$", re.S)
        for statement in body.split(";"):
            found = item.match(statement.strip())
            if found and found[1].strip() not in ("wire", "assign"):
                pins = {pin.strip().lstrip("\\"): self.net(net)
                        for pin, net in re.findall(r"\.(\\\S+\s|\w+)\s*\(\s*((?:\\\S+\s|[^()])*?)\s*\)", found[3])}
                self.instances[found[2].strip().lstrip("\\")] = (found[1].strip().lstrip("\\"), pins)
        self.find_pads()
        self.find_drivers()

    @staticmethod
    def net(text):
        return re.sub(r"\\(\S+) ?", r"\1", text.strip()).replace(" ", "")

    def find_pads(self):
        """Pads by port: (instance, pins by part). A pad stands on a port by its outer pin."""
        self.pads, self.is_pad = {}, set()
        for name, (cell, pins) in self.instances.items():
            block = self.library.of(cell)
            for outer in ("INOUT", "OUTPUT", "OUTPUT_P", "OUTPUT_M", "INPUT", "INPUT_P", "INPUT_M"):
                port = pins.get(block.get(outer))
                way = self.ports.get(port)
                if way and block["block"] != "SCAN_CELL" and (outer == "INOUT" or (way != "input" if "OUTPUT" in outer else way != "output")):
                    self.is_pad.add(name)
                    self.pads.setdefault(port, []).append((name, outer))

    def find_drivers(self):
        """Of each net what the library knows as its driver."""
        for name, (cell, pins) in self.instances.items():
            block = self.library.of(cell)
            if self.library.is_tap(cell):
                outs = [pin for key, pin in block.items() if key not in ("TDI", "TMS", "TCK", "TRST", "LAST_BCELL")]
            elif self.library.is_cell(cell):
                outs = [block.get(key) for key in ("DATA_OUT", "SYS_IN", "UPDATE_DR_OUT", "TDO", "OE_MODE", "OUTPUT")]
            else:
                outs = [block.get("OUTPUT")]
            for pin in outs:
                if pin in pins and self.ports.get(pins[pin], "output") == "output":
                    self.driver[pins[pin]] = (name, pin)
        for port, way in self.ports.items():
            if way != "output":
                self.driver[port] = (port, None)

    def back(self, net):
        """(instance, pin, inverted) of the driver behind buffers; the instance is a constant, a port or None."""
        inverted = False
        while net not in (None, ""):
            if re.match(r"1'b[01]$", net):
                return net[3], None, inverted
            if net not in self.driver:
                return None, None, inverted
            name, pin = self.driver[net]
            cell = self.instances[name][0] if pin else ""
            if not pin or name in self.is_pad or not self.library.passes(cell):
                return name, pin, inverted
            inverted ^= self.library.inverts(cell)
            net = self.instances[name][1].get(self.library.of(cell)["INPUT"])
        return None, None, inverted

    def pin(self, name, key):
        cell, pins = self.instances[name]
        return pins.get(self.library.of(cell).get(key))


def walk(netlist, found):
    library = netlist.library
    tap = next(name for name, (cell, _) in netlist.instances.items() if library.is_tap(cell))
    name, pin, _ = netlist.back(netlist.pin(tap, "LAST_BCELL"))
    while name != tap:
        assert name not in found.instances and pin == library.of(netlist.instances[name][0])["TDO"], name
        found.instances.append(name)
        name, pin, _ = netlist.back(netlist.pin(name, "TDI"))
    found.length = len(found.instances)
    for key in ("TDI", "TMS", "TCK", "TRST"):
        name, _, _ = netlist.back(netlist.pin(tap, key))
        found.taps[key] = next((port for port, pads in netlist.pads.items() if name in [pad for pad, _ in pads]), name)
    return tap


def extract(verilog, lib, bsc):
    library = Library(lib, bsc)
    netlist, found = Netlist(verilog, library), Found()
    found.ports = netlist.ports
    tap = walk(netlist, found)
    number = {name: i for i, name in enumerate(found.instances)}
    readers = {}       # what a cell reads to the cells
    for name in found.instances:
        for key in ("DATA_IN", "SYS_PIN"):
            source, pin, inverted = netlist.back(netlist.pin(name, key))
            if source is not None:
                readers.setdefault((source, pin), []).append((number[name], inverted))

    def driver(net):
        name, pin, inverted = netlist.back(net)
        if name in number and pin in [library.of(netlist.instances[name][0]).get(key) for key in ("DATA_OUT", "UPDATE_DR_OUT")]:
            return number[name], inverted
        return ("tap" if name == tap else name if name in ("0", "1") else "core"), inverted

    for port, way in netlist.ports.items():
        pads = netlist.pads.get(port, [])
        if way != "output":
            found.ins[port] = readers.get((port, None), [])
        elif isinstance(driver(port)[0], int):
            found.outs[port] = driver(port)
        for pad, outer in pads:
            cell, pins = netlist.instances[pad]
            block = library.of(cell)
            inside = {block.get(key): key for key in ("DATA_IN", "DATA_OUT")}.get(block[outer]) if pad in number else None
            if outer.startswith("IN") and not outer.endswith("_M"):
                own = [(number[pad], False)] if inside == "DATA_IN" or (pad in number and "SYS_PIN" in block) else []
                found.ins[port] = found.ins.get(port, []) + own + readers.get((pad, block.get("OUTPUT")), [])
            if outer == "INOUT" or (outer.startswith("OUTPUT") and not outer.endswith("_M")):
                candidates = [driver(pins[block[key]]) for key in ("INPUT", "MUX_IN1")
                              if key in block and block[key] in pins and not (key == "MUX_IN1" and "INPUT" not in block)]
                candidates += [(number[pad], False)] if inside == "DATA_OUT" else []
                for candidate in candidates:
                    if isinstance(candidate[0], int):
                        found.outs[port] = candidate
                found.enables[port] = [(*driver(pins.get(block[key])), key) for key in ("EN_L", "EN_H") if key in block]
    return found


def check_outputs(bsdl, found, port, word, rows):
    controls = [(cell, (key == "EN_L") != inverted) for cell, inverted, key in found.enables.get(port, []) if isinstance(cell, int)]
    ties = [(cell, key) for cell, _, key in found.enables.get(port, []) if not isinstance(cell, int)]
    is_off = any(cell == "01"[key == "EN_L"] for cell, key in ties)
    follows = any(cell == "core" for cell, _ in ties) and not controls
    drivers = [row for row in rows if row.function in ("output2", "output3", "bidir")]
    if port in found.outs and not is_off and not follows and not found.outs[port][1]:
        if [row.number for row in drivers] != [found.outs[port][0]]:
            yield f"{port} is driven by cell {found.outs[port][0]}, and has {drivers}"
        for row in drivers:
            expected = [(cell, str(int(off))) for cell, off in controls]
            if ([(row.control, row.disable)] if row.control is not None else []) != expected:
                yield f"{port}: control {expected}, and has {row}"
    elif drivers and not (len(drivers) == 1 and drivers[0].control == drivers[0].number and
                          (drivers[0].number, drivers[0].disable) in [(cell, str(int(off))) for cell, off in controls]):
        yield f"{port} has {drivers}, and nothing that drives it"


def compare(bsdl, found):
    """Where the file and the netlist disagree."""
    if bsdl.attributes["BOUNDARY_LENGTH"] != found.length:
        yield f"length {found.length}"
    renamed = {}
    for port in found.ports:
        base = re.sub(r"\[(\d+)\]$", r"(\1)", port)
        renamed[port] = next((word for word in (base, re.sub(r"\W+", "_", port).strip("_"), port + "_p") if word in bsdl.ports), None)
    served = set()
    for port, word in renamed.items():
        if word is None:
            if found.ins.get(port) or port in found.outs:
                yield f"{port} is not in the file"
            continue
        rows = [row for row in bsdl.rows if row.port == word]
        served |= {row.number for row in rows} | {row.control for row in rows}
        if bsdl.ports[word] == "linkage":
            continue
        yield from check_outputs(bsdl, found, port, word, rows)
        readers = {cell for cell, inverted in found.ins.get(port, []) if not inverted}
        listed = {row.number for row in rows if row.function in ("input", "clock", "observe_only", "bidir")}
        both = {row.number for row in rows if row.function == "bidir" or row.function.startswith("output")}
        outs = {cell for cell, _ in found.outs.values()} | {cell for row in found.enables.values() for cell, *_ in row}
        if not listed - both <= readers or not readers - both - outs <= listed:
            yield f"{port} is read by {readers}, and has {listed}"
    for row in bsdl.rows:
        if row.port != "*" and row.port not in renamed.values():
            yield f"{row} has no port in the netlist"
        if row.function == "internal" and row.number in {cell for port, (cell, inverted) in found.outs.items()
                                                         if renamed[port] and bsdl.ports[renamed[port]] != "linkage"
                                                         and not any(c == "01"[k == "EN_L"] for c, _, k in found.enables.get(port, []))}:
            yield f"{row} drives a port"
    for attribute, key in (("TAP_SCAN_IN", "TDI"), ("TAP_SCAN_MODE", "TMS"), ("TAP_SCAN_CLOCK", "TCK"), ("TAP_SCAN_RESET", "TRST")):
        if found.taps[key] is not None and renamed.get(found.taps[key]) != bsdl.taps.get(attribute):
            yield f"{attribute} is {found.taps[key]}"
