"""Compares structural Verilog netlists, expanded by Yosys down to their cells: the same instances of the same cells,
the same pins on each net. Names of nets don't matter, and a net with one pin alone counts as an open pin."""

import fnmatch
import json
import pathlib
import re

from chip_files import read_ports, strip_comments
from player import run


class Flat:
    """One side. through counts the cells of a pattern as wires from pin to pin, drop leaves them away."""

    def __init__(self, work, netlist, top, cells, macros, through=(), drop=()):
        self.parent, self.instances, self.nets = {}, {}, {}
        out = f"{pathlib.Path(netlist[0]).stem}.json"
        defines = " ".join(f"-D{macro}" for macro in macros)
        run(["yosys", "-q", "-p", f"read_verilog -lib {defines} {' '.join(cells)}; read_verilog {' '.join(netlist)}; "
             f"hierarchy -check -top {top}; flatten; write_json {out}"], work, "yosys")
        module = json.loads((work / out).read_text())["modules"][top]
        self.ports = sorted(read_ports([work / name for name in netlist], top))
        pins = [(("port", port), bit) for port, row in module["ports"].items() for bit in enumerate(row["bits"])]
        for name, row in module["cells"].items():
            ways = [pins_of for pattern, *pins_of in through if fnmatch.fnmatchcase(row["type"], pattern)]
            if ways:
                first, last = (row["connections"][pin][0] for pin in ways[0])
                self.parent[self.find(first)] = self.find(last)
            elif not any(fnmatch.fnmatchcase(row["type"], pattern) for pattern in drop):
                self.instances[name] = row["type"]
                pins += [((name, pin), bit) for pin, bits in row["connections"].items() for bit in enumerate(bits)]
        for one, (place, net) in pins:
            if net not in ("x", "z"):
                self.nets.setdefault(self.find(net), set()).add((*one, place))
        self.assigned = assigned_ports(work, netlist, top, self.ports)

    def find(self, net):
        while net in self.parent:
            net = self.parent[net]
        return net

    def groups(self, instances, ports):
        """Of each pin and port what is on its net, where that is more than itself."""
        found = {}
        for net, members in self.nets.items():
            group = {one for one in members if one[0] in instances or one[0] == "port" and one[1] in ports}
            group |= {("constant", net)} if net in ("0", "1") and group else set()
            found |= {one: group for one in group if len(group) > 1}
        return found


def assigned_ports(work, netlist, top, ports):
    """The ports that an assign of the top module names: it parts an inout from the pins behind it."""
    text = strip_comments("".join((work / name).read_text() for name in netlist))
    body = re.search(rf"\bmodule\s+{top}\b(.*?)\bendmodule\b", text, re.S)[1]
    return set(ports) & set(re.findall(r"[^\s\[\]{},=]+", " ".join(re.findall(r"\bassign\b([^;]*);", body))))


def differences(left, right, extra):
    for name in left.instances.keys() | right.instances.keys():
        pair = left.instances.get(name), right.instances.get(name)
        if pair[0] != pair[1]:
            yield f"instance {name}: {pair[0]} and {pair[1]}"
    if set(right.ports) - set(extra) != set(left.ports):
        yield f"ports: {sorted(set(left.ports) ^ set(right.ports))}"
    instances = left.instances.keys() & right.instances.keys()
    one, other = left.groups(instances, left.ports), right.groups(instances, left.ports)
    pairs = {}
    for pin in one.keys() | other.keys():       # a net of many pins is looked at once
        pair = one.get(pin, {pin}), other.get(pin, {pin})
        pairs[tuple(map(id, pair)) if min(map(len, pair)) > 1 else pin] = pin, pair
    for pin, (old, new) in pairs.values():
        if old != new:
            yield f"the net on {pin}: not on both sides {sorted(map(str, old ^ new))[:4]}"
    for port in sorted(right.assigned - left.assigned - set(extra)):
        yield f"the port {port} no longer stands directly on its pins"
