"""Are two structural Verilog netlists the same, as Yosys reads them? The same instances of the same cells, and each pin and
port on the nets that belong together. Names of nets don't matter, and a net with one pin alone counts as an open pin."""

import json

from player import run


def read(work, files, cells, macros):
    """The top module without its levels: cells by instance, and the net of each bit of a pin or port."""
    defines = " ".join(f"-D{macro}" for macro in macros)
    run(["yosys", "-q", "-p", f"read_verilog {defines} -lib {' '.join(cells)}; read_verilog {defines} {' '.join(files)}; "
         "hierarchy -check -auto-top; setattr -mod -unset keep_hierarchy; flatten; write_json netlist.json"], work, "flattening")
    modules = json.loads((work / "netlist.json").read_text())["modules"]
    top = next(module for module in modules.values() if "top" in module["attributes"])
    bits = {("port", name, i): bit for name, port in top["ports"].items()
            for i, bit in enumerate(reversed(port["bits"]) if "upto" in port else port["bits"], port.get("offset", 0))}
    for name, cell in top["cells"].items():
        bits.update({(name, pin, i): bit for pin, nets in cell["connections"].items() for i, bit in enumerate(nets)
                     if bit not in ("x", "z")})
    count = {}
    for bit in bits.values():
        count[bit] = count.get(bit, 0) + 1
    cells = {name: cell["type"] for name, cell in top["cells"].items()}
    return cells, {place: bit for place, bit in bits.items() if bit in ("0", "1") or count[bit] > 1}


def differences(work, left, right, cells, macros):
    (cells_1, nets_1), (cells_2, nets_2) = (read(work, files, cells, macros) for files in (left, right))
    yield from (f"instance {name}: {cells_1.get(name)} and {cells_2.get(name)}" for name in cells_1.keys() | cells_2.keys()
                if cells_1.get(name) != cells_2.get(name))
    there, back = {"0": "0", "1": "1"}, {"0": "0", "1": "1"}
    for place in sorted(nets_1.keys() | nets_2.keys(), key=str):
        pair = nets_1.get(place), nets_2.get(place)
        if None in pair or there.setdefault(pair[0], pair[1]) != pair[1] or back.setdefault(pair[1], pair[0]) != pair[0]:
            yield f"{place} is on another net"
