"""Chips whose instances stand in modules, each in the one that its path names. A net that is used in several modules
gets the ports that it needs on the way, so that one chip proves every place of its pads."""

import re

from chip_files import strip_comments

INSTANCE = re.compile(r"^ *(\w+) (\w+) \((\..*)\);$", re.M)
PIN = re.compile(r"\.(\w+) ?\(([^()]*)\)")


def pin_directions(text):
    """Direction of each pin, by cell and pin."""
    cells = {}
    for name, body in re.findall(r"\bmodule (\w+) ?\((.*?)\bendmodule", strip_comments(text), re.S):
        cells[name] = {pin.strip(): direction for direction, pins in re.findall(
            r"\b(input|output|inout) (?:reg )?(.*?)\)?(?:;|, *(?=input|output|inout))", body, re.S)
                       for pin in pins.split(",")}
    return cells


def port_name(net):
    return re.sub(r"\[(\d+)\]", r"_\1", net)


class Design:
    """Instances by path; "" is the top module, and module `ring` stands there as `u_ring`."""

    def __init__(self, cell_text, written=str):
        self.cells, self.written = pin_directions(cell_text), written
        self.instances, self.ports = [], {}     # the chip's ports, with the direction of each
        self.reach = []                         # (path, net): a module that has a net without use for it

    def add(self, path, cell, name, **pins):
        self.instances.append((path, cell, name, pins))

    def paths(self):
        """Of all modules, bottom up."""
        found = {""}
        for path in [row[0] for row in self.instances] + [path for path, _ in self.reach]:
            while path:
                found.add(path)
                path = path.rpartition(".")[0]
        return sorted(found, key=lambda path: (-path.count(".") - (path != ""), path))

    def crossing(self, path):
        """The nets that cross the border of a module, with the direction of each. A vector that is connected whole on
        the other side stands for each of its bits."""
        uses = [(place, net, self.cells.get(cell, {}).get(pin, "input"))
                for place, cell, _, pins in self.instances for pin, net in pins.items() if net and "'" not in net]
        uses += [(place, net, "input") for place, net in self.reach]
        inside = [use for use in uses if use[0] == path or use[0].startswith(path + ".")]
        outside = {use[1] for use in uses if use not in inside} | set(self.ports)
        found = {}
        for _, net, direction in inside:
            if net in outside or net.split("[")[0] in outside:
                found.setdefault(net, set()).add(direction)
        return {net: next(word for word in ("inout", "output", "input") if word in directions)
                for net, directions in found.items()}

    def places(self, path):
        """The lines that put the modules below into one."""
        name_of = port_name if path else str
        return [f"    {child.rpartition('.')[2][2:]} {self.written(child.rpartition('.')[2])} "
                f"({', '.join(f'.{port_name(net)}({name_of(net)})' for net in self.crossing(child))});\n"
                for child in self.paths() if child and child.rpartition(".")[0] == path]

    def module(self, path):
        name = path.rpartition(".")[2][2:] if path else "chip"
        ports = {port_name(net): way for net, way in (self.crossing(path) if path else self.ports).items()}
        body = [f"    {cell} {self.written(instance)} "
                f"({', '.join(f'.{pin}({port_name(net)})' for pin, net in pins.items())});\n"
                for place, cell, instance, pins in self.instances if place == path] + self.places(path)
        declared = ", ".join(f"{direction} {net}" for net, direction in ports.items())
        wires = sorted(set(re.findall(r"\.\w+\((\w+)\)", "".join(body))) - set(ports))
        return (f"module {name} ({declared});\n" +
                "".join(f"    wire {wire};\n" for wire in wires) + "".join(body) + "endmodule\n\n")


def pads_in_modules(chip_text, chip, cell_text, path_of):
    """chip_text with each instance in the module whose path path_of(instance) gives."""
    start = re.search(rf"^module {chip} \((.*?)\);", chip_text, re.M | re.S)
    before, body = chip_text[:start.start()], chip_text[start.start():]
    design = Design(cell_text)
    design.ports = dict.fromkeys(port.strip() for port in start[1].split(","))
    for cell, instance, pins in INSTANCE.findall(body):
        design.add(path_of(instance), cell, instance, **dict(PIN.findall(pins)))
    keep = INSTANCE.sub(lambda match: "" if path_of(match[2]) else match[0], body)
    keep = keep.replace("endmodule", "".join(design.places("")) + "endmodule", 1)
    return before + "".join(design.module(path) for path in design.paths() if path) + keep
