"""Moves the pads of a flat chip into modules of their own, so that one chip proves every place of its pads."""

import re

from chip_files import ProofError, strip_comments

INSTANCE = re.compile(r"^ *(\w+) (\w+) \((\..*)\);$", re.M)
PIN = re.compile(r"\.(\w+) \(([^()]*)\)|\.(\w+)\(([^()]*)\)")


def pin_directions(text):
    """Direction of each pin, by cell and pin."""
    cells = {}
    for name, body in re.findall(r"\bmodule (\w+) ?\((.*?)\bendmodule", strip_comments(text), re.S):
        cells[name] = {pin.strip(): direction for direction, pins in re.findall(
            r"\b(input|output|inout) (?:reg )?(.*?)\)?(?:;|, *(?=input|output|inout))", body, re.S)
                       for pin in pins.split(",")}
    return cells


def connections(pins):
    return [(match[1] or match[3], match[2] or match[4]) for match in PIN.finditer(pins)]


def port_name(net):
    return re.sub(r"\[(\d+)\]", r"_\1", net)


def module_text(name, instances, outside, cells):
    """The module that holds the instances, and the line that puts it into the chip. A net becomes a port when
    something outside is on it."""
    directions, lines = {}, []
    for cell, instance, pins in instances:
        written = []
        for pin, net in connections(pins):
            written.append(f".{pin}({port_name(net)})")
            if net and "'" not in net:
                directions.setdefault(net, set()).add(cells[cell][pin])
        lines.append(f"    {cell} {instance} ({', '.join(written)});")
    ports = [net for net in directions if net in outside]
    head = [f"module {name} ({', '.join(map(port_name, ports))});"]
    for net in ports:
        word = next(word for word in ("inout", "output", "input") if word in directions[net])
        head.append(f"    {word} {port_name(net)};")
    head += [f"    wire {port_name(net)};" for net in directions if net not in outside]
    place = f"    {name} u_{name} ({', '.join(f'.{port_name(net)}({net})' for net in ports)});"
    return "\n".join(head + lines + ["endmodule"]), place


def pads_in_modules(chip_text, chip, cell_text, module_of):
    """chip_text with the instances for which module_of(instance) gives a name moved into that module."""
    cells = pin_directions(cell_text)
    start = re.search(rf"^module {chip} ", chip_text, re.M)
    if not start:
        raise ProofError(f"no module {chip}")
    before, body = chip_text[:start.start()], chip_text[start.start():]
    found = [match.groups() for match in INSTANCE.finditer(body)]
    groups = {}
    for cell, instance, pins in found:
        groups.setdefault(module_of(instance), []).append((cell, instance, pins))
    header = re.search(r"\((.*?)\);", body, re.S)[1]
    ports = {port.strip() for port in header.split(",")}
    modules, places = [], []
    for name, instances in groups.items():
        if name is None:
            continue
        own = {instance for _, instance, _ in instances}
        outside = ports | {net for _, instance, pins in found if instance not in own for _, net in connections(pins)}
        # A vector that is connected whole stands for each of its bits.
        outside |= {net for _, _, pins in instances for _, net in connections(pins) if net.split("[")[0] in outside}
        text, place = module_text(name, instances, outside, cells)
        modules.append(text)
        places.append(place)
    keep = INSTANCE.sub(lambda match: match[0] if module_of(match[2]) is None else "", body)
    keep = keep.replace("endmodule", "\n".join(places) + "\nendmodule", 1)
    return before + "\n\n".join(modules) + "\n\n" + keep
