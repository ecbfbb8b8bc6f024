"""Compares two structural Verilog netlists: the same instances of the same cells, the same pins on each net.

Yosys reads them and expands modules down to the known cells, so that a flat netlist can be held against one with
modules. Cells of `through` count as wires from pin to pin, those of `drop` are left away. Names of nets don't matter,
and a net with one pin alone counts as an open pin. A pin that a port of the left side reaches without an assign is
reached so on the right side.
"""
import fnmatch
import functools
import json
import re

from player import run


@functools.cache
def flatten(work, files, cells, macros):
    """The top module of the files, as Yosys writes it in JSON: each bit of a net has a number of its own."""
    read = " ".join(["read_verilog", *(f"-D{macro}" for macro in macros)])
    run(["yosys", "-q", "-p", f"{read} -lib {' '.join(cells)}; {read} {' '.join(files)}; hierarchy -check -auto-top; "
         "setattr -mod -unset keep_hierarchy; flatten; write_json netlist.json"], work, "flattening")
    modules = json.loads((work / "netlist.json").read_text())["modules"]
    return next(module for module in modules.values() if "top" in module["attributes"])


def without_assigns(work, name):
    """The name of a file that holds what the given one holds but for assigns."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", "", (work / name).read_text(), flags=re.S)
    text, count = re.subn(r"(?<!\\)\bassign\b[^;]*;", "", text)
    if count:
        name = f"no_assign_{name}"
        (work / name).write_text(text)
    return name


class Union:
    def __init__(self):
        self.parent = {}

    def find(self, key):
        parent = self.parent
        while parent.setdefault(key, key) != key:
            parent[key] = parent[parent[key]]
            key = parent[key]
        return key

    def join(self, a, b):
        self.parent[self.find(a)] = self.find(b)


class Side:
    """One netlist: its instances, and of each pin and each port, bit by bit, the net. A bit of no value is open."""

    def __init__(self, work, files, cells, macros=(), through=(), drop=()):
        plain = tuple(without_assigns(work, name) for name in files)
        self.direct = self.read(flatten(work, plain, cells, macros), (), ())
        self.pins, self.ports = self.read(flatten(work, files, cells, macros), through, drop)

    def read(self, top, through, drop):
        self.nets, self.instances, self.dropped = Union(), {}, []
        pins, ports = {}, {}
        for name, port in top["ports"].items():
            order = reversed if "upto" in port else list
            ports.update({(name, port.get("offset", 0) + i): bit for i, bit in enumerate(order(port["bits"]))})
        for name, instance in top["cells"].items():
            cell, bits = instance["type"], {(pin, i): bit for pin, bits in instance["connections"].items()
                                            for i, bit in enumerate(bits) if bit not in ("x", "z")}
            wires = [((a, 0), (b, 0)) for pattern, a, b in through if fnmatch.fnmatchcase(cell, pattern)]
            for a, b in wires:
                if a in bits and b in bits:
                    self.nets.join(bits[a], bits[b])
            if wires or any(fnmatch.fnmatchcase(cell, pattern) for pattern in drop):
                self.dropped += [((cell, pin), bit) for (pin, _), bit in bits.items()]
                continue
            self.instances[name] = cell
            pins.update({(name, pin): bit for pin, bit in bits.items()})
        return pins, ports

    def beside(self, pins):
        """The pins that share a net with some pins of cells that are left away."""
        nets = {self.nets.find(bit) for pin, bit in self.dropped if pin in pins}
        return {pin for pin, bit in self.pins.items() if self.nets.find(bit) in nets}

    def groups(self, instances, ports, taken, direct=False):
        """Of each pin and port what is on its net, where that is more than itself."""
        of_pins, of_ports = self.direct if direct else (self.pins, self.ports)
        net, members = (lambda bit: bit) if direct else self.nets.find, {}
        for port in ports:
            members.setdefault(net(of_ports[port]), set()).add(("port", port))
        for (name, pin), bit in of_pins.items():
            if name in instances and (name, pin) not in taken:
                members.setdefault(net(bit), set()).add((name, pin))
        for value in "01":
            if net(value) in members:
                members[net(value)].add(("constant", value))
        return {one: group for group in members.values() if len(group) > 1 for one in group}


def differences(left, right, extra, taken=()):
    """Lines on what is not the same. extra are ports of the right side alone; pins of it on the net of a pin of taken,
    which are pairs of a dropped cell and its pin, may be elsewhere on the left."""
    taken = right.beside(taken)
    for name in left.instances.keys() | right.instances.keys():
        pair = left.instances.get(name), right.instances.get(name)
        if pair[0] != pair[1]:
            yield f"instance {name}: {pair[0]} and {pair[1]}"
    ports = [port for port in right.ports if port[0] not in extra]
    if left.ports.keys() != set(ports):
        yield f"ports: {sorted(left.ports.keys() ^ set(ports))}"
        return
    instances = left.instances.keys() & right.instances.keys()
    one, other = (side.groups(instances, ports, taken) for side in (left, right))
    seen = set()
    for pin in one.keys() | other.keys():
        pair = one.get(pin), other.get(pin)
        if None not in pair and tuple(map(id, pair)) in seen:
            continue
        seen.add(tuple(map(id, pair)))
        if pair[0] != pair[1]:
            odd = sorted(map(str, (pair[0] or {pin}) ^ (pair[1] or {pin})))
            yield f"the net on {pin}: not on both sides {odd[:4]}"
    one, other = (side.groups(instances, ports, taken, direct=True) for side in (left, right))
    for port in ports:
        gone = one.get(("port", port), set()) - other.get(("port", port), set())
        if gone:
            yield f"the port {port} no longer stands directly on {sorted(map(str, gone))[:4]}"
