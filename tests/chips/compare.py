"""Compares two structural Verilog netlists: the same instances of the same cells, the same pins on each net.

Modules are expanded down to the known cells, so that a flat netlist can be held against one with modules. Cells of
`through` count as wires from pin to pin, those of `drop` are left away. Names of nets don't matter, and a net with one
pin alone counts as an open pin. A pin that a port of the left side reaches without an assign is reached so on the right
side.
"""
import fnmatch
import re
import sys

TOKEN = re.compile(r"""(?: \s+ | //[^\n]* | /\*.*?\*/ | \(\*(?!\s*\)).*?\*\) )*
    (?: (?P<id>[A-Za-z_][\w$]*) | (?P<esc>\\\S+) | (?P<num>\d*\s*'\s*[sS]?[bodhBODH]\s*[0-9a-fA-FxXzZ?_]+ | \d+) |
    (?P<dir>`\w+) | (?P<sym>.) | $)""", re.X | re.S)
DIRECTIONS = ("input", "output", "inout")
NETS = ("wire", "tri", "supply0", "supply1")


def tokens(path, macros):
    """Kind and text of each token; conditions are carried out, other directives passed over with their line."""
    text, at, stack = open(path).read(), 0, []
    while at < len(text):
        match = TOKEN.match(text, at)
        at, kind = match.end(), match.lastgroup
        if kind == "dir":
            word, line = match[kind][1:], text[at:].split("\n", 1)[0].split()
            if word in ("ifdef", "ifndef"):
                stack.append((line[0] in macros) == (word == "ifdef"))
                at += text[at:].index(line[0]) + len(line[0])
            elif word == "else":
                stack[-1] = not stack[-1]
            elif word == "endif":
                stack.pop()
            else:
                if word == "define" and all(stack):
                    macros.add(line[0])
                at = text.find("\n", at) % (len(text) + 1)
        elif kind and all(stack):
            yield ("id", match[kind][1:], True) if kind == "esc" else (kind, match[kind], False)


class Module:
    def __init__(self):
        self.ports, self.ranges, self.supplies, self.instances, self.assigns = [], {}, {}, [], []

    def bits(self, name):
        """The bits of a declared or an undeclared name, the leftmost first."""
        if self.ranges.get(name) is None:
            return [(name, None)]
        left, right = self.ranges[name]
        return [(name, i) for i in range(left, right + (1 if right >= left else -1), 1 if right >= left else -1)]


class Reader:
    """Modules of the files of one side."""

    def __init__(self, paths, macros, bodies=True):
        self.modules, self.bodies, self.unknown = {}, bodies, 0
        for path in paths:
            self.stream = tokens(path, macros)
            self.next()
            while self.kind:
                if self.take() in ("module", "macromodule"):
                    self.module()

    def next(self):
        self.kind, self.text, self.escaped = next(self.stream, (None, None, False))

    def take(self, wanted=None):
        text = self.text
        if wanted and (text != wanted or self.escaped):
            sys.exit(f"found {text!r} where {wanted!r} was expected")
        self.next()
        return text

    def have(self, text):
        found = self.text == text and not self.escaped
        if found:
            self.next()
        return found

    def range(self):
        if not self.have("["):
            return None
        left = int(self.take())
        self.take(":")
        right = int(self.take())
        self.take("]")
        return left, right

    def names(self, module, port):
        """One declaration behind its first word; ports of a header go on with a direction."""
        while self.text in ("wire", "reg", "tri", "signed", "logic"):
            self.next()
        span, names = self.range(), []
        while True:
            name = self.take()
            names.append(name)
            module.ranges[name] = span
            if port:
                module.ports.append(name)
            if self.have("="):
                module.assigns.append((module.bits(name), self.expression(module)))
            if not self.have(",") or self.text in DIRECTIONS:
                return names

    def module(self):
        module = self.modules[self.take()] = Module()
        if self.have("("):
            while not self.have(")"):
                if self.text in DIRECTIONS:
                    self.next()
                    self.names(module, True)
                else:
                    module.ports.append(self.take())
                    self.have(",")
        self.take(";")
        while not self.have("endmodule"):
            word, escaped = self.text, self.escaped
            self.next()
            if not escaped and word in (DIRECTIONS + NETS if self.bodies else DIRECTIONS):
                for name in self.names(module, False):
                    if word.startswith("supply"):
                        module.supplies[name] = word[-1]
                self.take(";")
            elif not self.bodies or (word == ";" and not escaped):
                continue
            elif word == "assign" and not escaped:
                while True:
                    left = self.expression(module)
                    self.take("=")
                    module.assigns.append((left, self.expression(module)))
                    if not self.have(","):
                        break
                self.take(";")
            else:
                self.instance(module, word)

    def instance(self, module, cell):
        while True:
            name, span, pins = self.take(), self.range(), []
            self.take("(")
            while not self.have(")"):
                pin = None
                if self.have("."):
                    pin = self.take()
                    self.take("(")
                pins.append((pin, [] if self.text in (")", ",") else self.expression(module)))
                if pin is not None:
                    self.take(")")
                self.have(",")
            module.instances.append((name, span, cell, pins))
            if not self.have(","):
                break
        self.take(";")

    def expression(self, module):
        if self.have("{"):
            bits = []
            while True:
                bits += self.expression(module)
                if not self.have(","):
                    break
            self.take("}")
            return bits
        if self.kind == "num":
            text = re.sub(r"[\s_]", "", self.take()).lower()
            if self.have("{"):
                bits = self.expression(module)
                while self.have(","):
                    bits += self.expression(module)
                self.take("}")
                return bits * int(text)
            return self.number(text)
        name, escaped = self.text, self.escaped
        self.next()
        if not (self.text == "[" and not self.escaped) or (escaped and name not in module.ranges):
            return module.bits(name)
        bits, places = module.bits(name), {bit[1]: i for i, bit in enumerate(module.bits(name))}
        self.take("[")
        first = last = int(self.take())
        if self.have(":"):
            last = int(self.take())
        self.take("]")
        return bits[places[first]:places[last] + 1]

    def number(self, text):
        size, _, value = text.rpartition("'")
        base, digits = (value.lstrip("s")[0], value.lstrip("s")[1:]) if "'" in text else ("d", value)
        if base == "d":
            found = bin(int(digits))[2:]
        else:
            step = {"b": 1, "o": 3, "h": 4}[base]
            found = "".join(d * step if d in "xz?" else bin(int(d, 16))[2:].zfill(step) for d in digits)
        width = int(size or 32)
        found = (found[0] if found[0] in "xz?" else "0") * (width - len(found)) + found
        bits = []
        for digit in found[-width:]:
            self.unknown += 1
            bits.append((digit,) if digit in "01" else ("unknown", self.unknown, None))
        return bits


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


class Flat:
    """One side expanded to its cells."""

    def __init__(self, reader, cells, through, drop):
        self.nets, self.direct = Union(), Union()
        self.reader, self.cells, self.through, self.drop = reader, cells, through, drop
        self.instances, self.pins, self.dropped = {}, {}, []
        used = {cell for module in reader.modules.values() for _, _, cell, _ in module.instances}
        tops = [name for name in reader.modules if name not in used]
        if len(tops) != 1:
            sys.exit(f"not one top, but {tops}")
        self.top = reader.modules[tops[0]]
        self.expand(self.top, ())

    def node(self, path, bit):
        return bit if len(bit) == 1 else (path,) + bit

    def expand(self, module, path):
        for left, right in module.assigns:
            for a, b in zip(reversed(left), reversed(right)):
                self.nets.join(self.node(path, a), self.node(path, b))
        for name, value in module.supplies.items():
            for bit in module.bits(name):
                self.nets.join(self.node(path, bit), (value,))
        for name, span, cell, pins in module.instances:
            inner = self.reader.modules.get(cell)
            known = inner or self.cells.get(cell)
            if known is None:
                sys.exit(f"the cell {cell} is unknown")
            pins = [(pin if pin is not None else known.ports[place], bits) for place, (pin, bits) in enumerate(pins)]
            if span:        # an array: each gets its part of a vector, and all of what is as wide as the pin
                last, step = span[1], 1 if span[0] >= span[1] else -1
                for i in range((span[0] - last) * step + 1):
                    self.instance(f"{name}[{last + i * step}]", cell, inner, known, path, [
                        (pin, bits if len(bits) <= len(known.bits(pin)) else
                         bits[len(bits) - (i + 1) * len(known.bits(pin)):len(bits) - i * len(known.bits(pin))])
                        for pin, bits in pins])
            else:
                self.instance(name, cell, inner, known, path, pins)

    def instance(self, name, cell, inner, known, path, pins):
        nodes = {}
        for pin, bits in pins:
            for bit, net in zip(reversed(known.bits(pin)), reversed(bits)):
                nodes[bit] = self.node(path, net)
        if inner:
            for bit, node in nodes.items():
                for union in (self.nets, self.direct):
                    union.join((path + (name,),) + bit, node)
            self.expand(inner, path + (name,))
        else:
            self.leaf(".".join(path + (name,)), cell, nodes)

    def leaf(self, name, cell, nodes):
        wires = [((a, None), (b, None)) for pattern, a, b in self.through if fnmatch.fnmatchcase(cell, pattern)]
        for a, b in wires:
            if a in nodes and b in nodes:
                self.nets.join(nodes[a], nodes[b])
        if wires or any(fnmatch.fnmatchcase(cell, pattern) for pattern in self.drop):
            self.dropped += [((cell, bit[0]), node) for bit, node in nodes.items()]
            return
        while name in self.instances:
            name += "'"
        self.instances[name] = cell
        for bit, node in nodes.items():
            self.pins[name, bit] = node

    def beside(self, pins):
        """The pins that share a net with some pins of cells that are left away."""
        nets = {self.nets.find(node) for pin, node in self.dropped if pin in pins}
        return {pin for pin, node in self.pins.items() if self.nets.find(node) in nets}

    def ports(self):
        return [bit for port in self.top.ports for bit in self.top.bits(port)]

    def groups(self, union, instances, ports, taken):
        """Of each pin and port what is on its net, where that is more than itself."""
        members = {}
        for port in ports:
            members.setdefault(union.find(((),) + port), set()).add(("port", port))
        for (name, bit), node in self.pins.items():
            if name in instances and (name, bit) not in taken:
                members.setdefault(union.find(node), set()).add((name, bit))
        for value in "01":
            if union.find((value,)) in members:
                members[union.find((value,))].add(("constant", value))
        return {one: group for group in members.values() if len(group) > 1 for one in group}


def differences(left, right, extra, taken=()):
    """Lines on what is not the same. extra are ports of the right side alone; pins of it on the net of a pin of taken,
    which are pairs of a dropped cell and its pin, may be elsewhere on the left."""
    taken = right.beside(taken)
    for name in left.instances.keys() | right.instances.keys():
        pair = left.instances.get(name), right.instances.get(name)
        if pair[0] != pair[1]:
            yield f"instance {name}: {pair[0]} and {pair[1]}"
    ports = [port for port in right.ports() if port[0] not in extra]
    if sorted(map(str, left.ports())) != sorted(map(str, ports)):
        yield f"ports: {sorted(set(map(str, left.ports())) ^ set(map(str, ports)))}"
        return
    instances = left.instances.keys() & right.instances.keys()
    one, other = (side.groups(side.nets, instances, ports, taken) for side in (left, right))
    seen = set()
    for pin in one.keys() | other.keys():
        pair = one.get(pin), other.get(pin)
        if None not in pair and tuple(map(id, pair)) in seen:
            continue
        seen.add(tuple(map(id, pair)))
        if pair[0] != pair[1]:
            odd = sorted(map(str, (pair[0] or {pin}) ^ (pair[1] or {pin})))
            yield f"the net on {pin}: not on both sides {odd[:4]}"
    one, other = (side.groups(side.direct, instances, ports, taken) for side in (left, right))
    for port in ports:
        gone = one.get(("port", port), set()) - other.get(("port", port), set())
        if gone:
            yield f"the port {port} no longer stands directly on {sorted(map(str, gone))[:4]}"
