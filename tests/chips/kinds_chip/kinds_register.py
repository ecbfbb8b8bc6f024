"""The boundary register of the kinds chip, as the files of a run tell it."""

import re

from chip_files import ProofError
from kinds_pads import INSIDE, INVERTED, LOW, MINUS_LEGS, OUTPUTS, PORT_OF_PAD, WITHOUT_CELL


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
