"""The boundary register of the kinds chip, as the files of a run tell it."""

import re

from chip_files import ProofError, place_of, read_bso, read_joins
from kinds_pads import INSIDE, INVERTED, LOW, MINUS_LEGS, OUTPUTS, PORT_OF_PAD, WITHOUT_CELL


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
        self.driver = {PORT_OF_PAD.get(pad[2:], pad[2:]): place_of(cell)
                       for (cell, pad), pins in read_joins(path.parent).items()
                       if cell.startswith("BCELL") and pins & {"OE", "OEN"} and pad not in ("p_od", "p_os")}
        rows, controls = read_bso(path)
        for control in controls:
            self.add_control(path, control)
        for row in rows:
            self.add_port(path, row)
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

    def add_control(self, path, control):
        if control.net == OUTPUTS["bsb"][2] and "bsb" in self.inside:
            return                      # it follows the place that the file has
        first, last = control.first, control.last
        index = place_of(control.instance)
        if index != first + 1 and first >= 0:
            raise ProofError(f"{path}: control cell {control.instance} does not follow the cell at {first}")
        self.add(path, index, "control", f"{control.net} {first}:{last}")
        self.controls[index] = (control.net, first, last)

    def add_port(self, path, row):
        port = row.port
        if "{" in port:
            self.add(path, place_of(row.instances[0]), "internal", port)
            return
        self.ports.append(port)
        if port in WITHOUT_CELL | self.merged:
            if row.instances != ["*"]:
                raise ProofError(f"{path}: {port} has a cell")
            return
        order = self.inside.get(port, int(row.order))
        if port in INSIDE:
            self.add(path, order, INSIDE[port], port)
        elif len(row.instances) == 2:
            for role, place in zip(("out", "in"), sorted(map(place_of, row.instances))):
                self.add(path, place, role, port)
            if order not in self.of_port[port].values():
                raise ProofError(f"{path}: {port} is at {order}, its cells are {row.instances}")
        else:
            role = "both" if row.function == "bidir" else "out" if row.function.startswith("output") else "in"
            self.add(path, order, role, port)
            if place_of(row.instances[0]) != order:
                raise ProofError(f"{path}: {row.instances[0]} is listed at {order}")

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
