"""A strict reader of BSDL (IEEE 1149.1-2001): grammar, order and the agreement of all attributes.

    bsdl_reader.py FILE.bsd

It takes no more than the grammar gives, in the narrow form that every public reader understands: lower case keywords,
strings that end on their line, a default for the generic, reals with an exponent, one name for one thing.
"""

import re
import sys
from dataclasses import dataclass, field

TOKEN = re.compile(r'--[^\n]*|"[^"\n]*"|[A-Za-z][A-Za-z0-9_]*|[0-9]+\.[0-9]+e[0-9]+|[0-9]+|:=|[;:(),.&*]|\s+')
NAME = re.compile(r"[A-Za-z](_?[A-Za-z0-9])*$")
KEYWORDS = {"entity", "is", "generic", "string", "port", "bit", "bit_vector", "use", "all", "attribute", "of", "constant",
            "signal", "end", "to", "downto", "in", "out", "inout", "buffer", "linkage", "true"}
RESERVED = KEYWORDS | {"abs", "and", "array", "begin", "body", "bus", "case", "else", "file", "for", "if", "label", "map", "mod",
                       "new", "next", "not", "null", "on", "open", "or", "package", "range", "record", "register", "select",
                       "then", "type", "units", "wait", "when", "with", "xor", "clock", "input", "internal", "control"}
ENTITY_ATTRIBUTES = ["COMPONENT_CONFORMANCE", "PIN_MAP", "PORT_GROUPING", "COMPLIANCE_PATTERNS", "INSTRUCTION_LENGTH",
                     "INSTRUCTION_OPCODE", "INSTRUCTION_CAPTURE", "INSTRUCTION_PRIVATE", "IDCODE_REGISTER",
                     "USERCODE_REGISTER", "REGISTER_ACCESS", "BOUNDARY_LENGTH", "BOUNDARY_REGISTER",
                     "RUNBIST_EXECUTION", "INTEST_EXECUTION", "DESIGN_WARNING"]
TAP_ATTRIBUTES = ["TAP_SCAN_IN", "TAP_SCAN_MODE", "TAP_SCAN_OUT", "TAP_SCAN_CLOCK", "TAP_SCAN_RESET"]
ORDER = ENTITY_ATTRIBUTES[:3] + ["TAP"] + ENTITY_ATTRIBUTES[3:]
NEEDED = {"COMPONENT_CONFORMANCE", "PIN_MAP", "INSTRUCTION_LENGTH", "INSTRUCTION_OPCODE", "INSTRUCTION_CAPTURE",
          "BOUNDARY_LENGTH", "BOUNDARY_REGISTER"}
RESULTS = {"Z", "WEAK0", "WEAK1", "PULL0", "PULL1", "KEEPER"}
# What a type captures, of the functions that it may have; BC_0 and own types have any.
FUNCTIONS = {"BC_1": "input output2 output3 control controlr internal", "BC_2": "input output2 output3 control controlr internal",
             "BC_3": "input internal", "BC_4": "input clock observe_only", "BC_5": "input control", "BC_7": "bidir", "BC_8": "bidir",
             "BC_9": "output2 output3", "BC_10": "output2 output3"}
WITHOUT_INTEST = {("BC_4", "input"), ("BC_8", "bidir"), ("BC_10", "output2"), ("BC_10", "output3")}
MODES = {"input": {"in", "inout"}, "clock": {"in"}, "output2": {"buffer", "out", "inout"}, "output3": {"out", "inout"},
         "bidir": {"inout"}, "observe_only": {"in", "out", "inout", "buffer", "linkage"}}


class BsdlError(Exception):
    pass


@dataclass
class Row:
    number: int
    type: str
    port: str
    function: str
    safe: str
    control: int = None
    disable: str = None
    result: str = None


@dataclass
class Bsdl:
    entity: str = ""
    ports: dict = field(default_factory=dict)      # "a" or "a(3)" to the mode
    vectors: dict = field(default_factory=dict)    # name to its bits in order
    pins: dict = field(default_factory=dict)       # bit to the pin
    taps: dict = field(default_factory=dict)
    attributes: dict = field(default_factory=dict)
    packages: list = field(default_factory=list)
    opcodes: dict = field(default_factory=dict)
    rows: list = field(default_factory=list)
    private: set = field(default_factory=set)


def need(holds, text):
    if not holds:
        raise BsdlError(text)


class Parser:
    def __init__(self, text):
        need(text.isascii() and "\t" not in text, "characters beyond ASCII, or tabulators")
        self.tokens, at = [], 0
        while at < len(text):
            found = TOKEN.match(text, at)
            need(found, f"line {text.count(chr(10), 0, at) + 1}: no token at '{text[at:at + 20]}'")
            at = found.end()
            if not found[0].isspace() and not found[0].startswith("--"):
                self.tokens.append(found[0])
        self.at = 0

    def take(self, *expected):
        for word in expected:
            need(self.at < len(self.tokens) and self.tokens[self.at] == word,
                 f"'{word}' expected at '{' '.join(self.tokens[self.at:self.at + 6])}'")
            self.at += 1

    def has(self, word):
        if self.at < len(self.tokens) and self.tokens[self.at] == word:
            self.at += 1
            return True
        return False

    def word(self):
        self.at += 1
        need(self.at <= len(self.tokens), "the text ends too early")
        return self.tokens[self.at - 1]

    def name(self):
        word = self.word()
        need(NAME.match(word) and len(word) <= 64 and word.lower() not in RESERVED, f"'{word}' is no name")
        return word

    def number(self):
        word = self.word()
        need(word.isdigit(), f"'{word}' is no number")
        return int(word)

    def string(self):
        text = ""
        while True:
            word = self.word()
            need(word[0] == '"', f"'{word}' is no string")
            text += word[1:-1]
            if not self.has("&"):
                return text


def items(text):
    """Splits at the commas outside parentheses."""
    depth, parts, part = 0, [], ""
    for c in text:
        depth += (c == "(") - (c == ")")
        need(depth >= 0, f"parentheses of '{text}'")
        if c == "," and depth == 0:
            parts.append(part.strip())
            part = ""
        else:
            part += c
    need(depth == 0, f"parentheses of '{text}'")
    return parts + [part.strip()]


def once(words, what):
    lower = [word.lower() for word in words]
    need(len(set(lower)) == len(lower), f"{what} twice: {sorted(word for word in lower if lower.count(word) > 1)}")


def parse_ports(parser, bsdl):
    parser.take("port", "(")
    while True:
        name = parser.name()
        parser.take(":")
        mode = parser.word()
        need(mode in ("in", "out", "inout", "buffer", "linkage"), f"mode '{mode}'")
        bits = [name]
        if not parser.has("bit"):
            parser.take("bit_vector", "(")
            left, way, right = parser.number(), parser.word(), parser.number()
            need((way == "to" and left <= right) or (way == "downto" and left >= right), f"range of {name}")
            step = 1 if left <= right else -1
            bits = [f"{name}({i})" for i in range(left, right + step, step)]
            parser.take(")")
        bsdl.vectors[name] = bits
        bsdl.ports.update({bit: mode for bit in bits})
        if not parser.has(";"):
            break
    parser.take(")", ";")
    once(bsdl.vectors, "ports")


def parse_attribute(parser, bsdl):
    """One attribute; returns its place in the order."""
    name = parser.word()
    parser.take("of")
    of = parser.word()
    if parser.has("("):
        of += f"({parser.number()})"
        parser.take(")")
    parser.take(":")
    if name in TAP_ATTRIBUTES:
        parser.take("signal", "is")
        need(name not in bsdl.taps, f"{name} twice")
        bsdl.taps[name] = of
        if name == "TAP_SCAN_CLOCK":
            parser.take("(")
            need(re.match(r"[0-9]+\.[0-9]+e[0-9]+$", parser.word()), "the frequency is no real with an exponent")
            parser.take(",")
            need(parser.word() in ("BOTH", "LOW"), "the level of TAP_SCAN_CLOCK")
            parser.take(")", ";")
        else:
            parser.take("true", ";")
        return "TAP"
    need(name in ENTITY_ATTRIBUTES and of == bsdl.entity, f"attribute {name} of {of}")
    need(name not in bsdl.attributes, f"{name} twice")
    parser.take("entity", "is")
    if name == "PIN_MAP":
        parser.take("PHYSICAL_PIN_MAP", ";", "constant")
        bsdl.attributes[name] = parser.name()
        parser.take(":", "PIN_MAP_STRING", ":=")
        parse_pin_map(parser.string(), bsdl)
    elif name.endswith("_LENGTH"):
        bsdl.attributes[name] = parser.number()
    else:
        bsdl.attributes[name] = parser.string()
    parser.take(";")
    return name


def parse_pin_map(text, bsdl):
    for item in items(text):
        name, _, pins = (part.strip() for part in item.partition(":"))
        need(name in bsdl.vectors, f"the pin map has {name}, which is no port")
        bits = bsdl.vectors[name]
        is_list = pins.startswith("(")
        need(is_list == (bits[0] != name), f"pins of {name}")
        pins = items(pins[1:-1]) if is_list else [pins]
        need(len(pins) == len(bits) and bits[0] not in bsdl.pins, f"pins of {name}: {pins}")
        need(all(re.match(r"[A-Za-z0-9](_?[A-Za-z0-9])*$", pin) for pin in pins), f"pins of {name}: {pins}")
        bsdl.pins.update(zip(bits, pins))
    need(list(bsdl.pins) == list(bsdl.ports), "the pin map does not follow the ports")
    once(bsdl.pins.values(), "pins")


def parse(text):
    parser, bsdl = Parser(text), Bsdl()
    parser.take("entity")
    bsdl.entity = parser.name()
    parser.take("is", "generic", "(", "PHYSICAL_PIN_MAP", ":", "string", ":=")
    default = parser.string()
    parser.take(")", ";")
    parse_ports(parser, bsdl)
    parser.take("use", "STD_1149_1_2001", ".", "all", ";")
    while parser.has("use"):
        bsdl.packages.append(parser.name())
        parser.take(".", "all", ";")
    place = 0
    while parser.has("attribute"):
        name = parse_attribute(parser, bsdl)
        need(ORDER.index(name) >= place, f"{name} is out of order")
        place = ORDER.index(name)
    parser.take("end", bsdl.entity, ";")
    need(parser.at == len(parser.tokens), "text behind the end")
    need(NEEDED <= set(bsdl.attributes) and set(TAP_ATTRIBUTES[:4]) <= set(bsdl.taps), "attributes are missing")
    need(bsdl.attributes["PIN_MAP"] == default, "the generic's default is no pin map")
    need(bsdl.attributes["COMPONENT_CONFORMANCE"] == "STD_1149_1_2001", "conformance")
    once([bsdl.entity, default, *bsdl.packages, *bsdl.vectors], "names")
    return bsdl


def check_instructions(bsdl):
    values, length = bsdl.attributes, bsdl.attributes["INSTRUCTION_LENGTH"]
    for item in items(values["INSTRUCTION_OPCODE"]):
        found = re.match(r"([A-Za-z]\w*) \(([01X, ]+)\)$", item)
        need(found and NAME.match(found[1]), f"instruction '{item}'")
        bsdl.opcodes[found[1]] = items(found[2])
        need(all(len(code) == length for code in bsdl.opcodes[found[1]]), f"opcodes of {item}")
    once(bsdl.opcodes, "instructions")
    bsdl.private = set(items(values["INSTRUCTION_PRIVATE"])) if "INSTRUCTION_PRIVATE" in values else set()
    need(bsdl.private <= set(bsdl.opcodes), "a private instruction without opcode")
    need({"EXTEST", "SAMPLE", "PRELOAD", "BYPASS"} <= set(bsdl.opcodes) - bsdl.private, "instructions are missing")
    need("1" * length in bsdl.opcodes["BYPASS"], "BYPASS has not all ones")
    codes = [code for name, codes in bsdl.opcodes.items() for code in codes
             if name != "PRELOAD" or code not in bsdl.opcodes["SAMPLE"]]
    once(codes, "opcodes")
    capture = values["INSTRUCTION_CAPTURE"]
    need(len(capture) == length and re.match(r"[01X]*01$", capture), f"capture {capture}")
    names = list(bsdl.opcodes)
    need("IDCODE" not in names or all("IDCODE" not in name for name in names[:names.index("IDCODE")]), "IDCODE stands behind its like")
    need(("IDCODE" in set(names) - bsdl.private) == ("IDCODE_REGISTER" in values), "IDCODE without its register")
    for code in re.findall(".{32}", values.get("IDCODE_REGISTER", "")):
        need(re.match(r"[01X]{4}[01]{27}1$", code) and code[20:31] != "00001111111", f"IDCODE {code}")
    need(len(values.get("IDCODE_REGISTER", "")) in (0, 32), "length of IDCODE")
    accessed = {}
    for item in items(values.get("REGISTER_ACCESS", "BYPASS (BYPASS)")):
        found = re.match(r"(\w+)(?:\[\d+\])? \((.*)\)$", item)
        need(found, f"register access '{item}'")
        accessed.update({name: found[1] for name in items(found[2])})
    need(set(accessed) <= set(bsdl.opcodes), "a register of an unknown instruction")
    for name, register in {"EXTEST": "BOUNDARY", "SAMPLE": "BOUNDARY", "PRELOAD": "BOUNDARY", "INTEST": "BOUNDARY",
                           "CLAMP": "BYPASS", "HIGHZ": "BYPASS", "IDCODE": "DEVICE_ID"}.items():
        need(name not in set(bsdl.opcodes) - bsdl.private or accessed.get(name) == register, f"register of {name}")


def parse_rows(bsdl):
    for item in items(bsdl.attributes["BOUNDARY_REGISTER"]):
        found = re.match(r"(\d+) \((.*)\)$", item)
        words = items(found[2]) if found else []
        need(len(words) in (4, 7), f"row '{item}'")
        row = Row(int(found[1]), *words[:4])
        if len(words) == 7:
            row.control, row.disable, row.result = int(words[4]), words[5], words[6]
        bsdl.rows.append(row)


def check_row(bsdl, row, of_number):
    what = f"row {row}"
    need(row.type in FUNCTIONS or row.type == "BC_0" or bsdl.packages, what)
    need(row.type not in FUNCTIONS or row.function in FUNCTIONS[row.type].split(), what)
    public_intest = "INTEST" in set(bsdl.opcodes) - bsdl.private
    need(not public_intest or (row.type, row.function) not in WITHOUT_INTEST, f"{what} and INTEST")
    need((row.port == "*") == (row.function in ("control", "controlr", "internal")), what)
    need(row.port == "*" or bsdl.ports.get(row.port) in MODES[row.function], f"{what}: mode {bsdl.ports.get(row.port)}")
    need(row.safe in ("0", "1", "X") and (row.safe != "X" or not row.function.startswith("control")), what)
    need(row.function not in ("output3", "bidir") or row.control is not None, what)
    if row.control is None:
        return
    need(row.function in ("output2", "output3", "bidir") and row.disable in ("0", "1") and row.result in RESULTS, what)
    controls = [other.function for other in of_number[row.control]]
    if row.control == row.number:
        need(row.function == "output2" and row.safe == row.disable and row.result[-1] == row.disable, what)
    else:
        need(set(controls) <= {"control", "controlr"}, f"{what}: its control is {controls}")


def check_register(bsdl):
    parse_rows(bsdl)
    length = bsdl.attributes["BOUNDARY_LENGTH"]
    of_number = {i: [row for row in bsdl.rows if row.number == i] for i in range(length)}
    need(all(of_number.values()) and {row.number for row in bsdl.rows} == set(of_number), "numbers of the rows")
    need([row.number for row in bsdl.rows] == sorted(row.number for row in bsdl.rows), "order of the rows")
    for row in bsdl.rows:
        check_row(bsdl, row, of_number)
    for number, rows in of_number.items():
        disables = [row.disable for row in bsdl.rows if row.control == number and row.number != number]
        if rows[0].function.startswith("control"):
            need(len(rows) == 1 and disables and rows[0].safe in disables, f"control cell {number}")
            need(disables.count(rows[0].safe) * 2 >= len(disables), f"safe bit of {number} is not that of most")
    taps = set(bsdl.taps.values())
    need(len(taps) == len(bsdl.taps) and taps <= set(bsdl.ports), "TAP ports")
    need(all(bsdl.ports[port] == ("out" if name == "TAP_SCAN_OUT" else "in") for name, port in bsdl.taps.items()), "TAP modes")
    used = {}
    for row in bsdl.rows:
        used.setdefault(row.port, []).append(row.function)
    grouped = set(re.findall(r"\(([\w()]+?), ([\w()]+?)\)(?=[,)])", bsdl.attributes.get("PORT_GROUPING", "")[0:]))
    minus = {pair[1] for pair in grouped}
    patterns = re.findall(r"[\w()]+?(?=,|\) \()", bsdl.attributes.get("COMPLIANCE_PATTERNS", ""))
    compliance = {word.lstrip("(").strip() for word in patterns}
    for port, mode in bsdl.ports.items():
        functions = set(used.get(port, []))
        drivers = functions & {"output2", "output3", "bidir"}
        need(port not in taps or not functions, f"{port} of the TAP has cells {functions}")
        if port in taps | minus | compliance or mode == "linkage":
            need(not drivers, f"{port} with mode {mode} has cells {functions}")
            continue
        need(mode not in ("in", "inout") or functions & {"input", "clock", "bidir"}, f"{mode} {port}: {functions}")
        need(mode in ("in", "linkage") or drivers, f"{mode} {port}: {functions}")
        need(sum(name in drivers for name in used[port]) <= 1, f"{port} has two drivers")


def read(path):
    with open(path) as file:
        bsdl = parse(file.read())
    check_instructions(bsdl)
    check_register(bsdl)
    need(("INTEST_EXECUTION" not in bsdl.attributes) or "INTEST" in bsdl.opcodes, "INTEST_EXECUTION without INTEST")
    return bsdl


if __name__ == "__main__":
    try:
        print(f"{sys.argv[1]}: {len(read(sys.argv[1]).rows)} rows")
    except BsdlError as fault:
        sys.exit(f"{sys.argv[1]}: {fault}")
