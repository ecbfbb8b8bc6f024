#!/usr/bin/env python3
"""Writes the boundary cells: verilog/NAME.v, vhdl/NAME.vhd and boundary_cells.lib, beside this file or in --out DIR.

A cell is one row of CELLS. A new cell is a new row; a change to a stage is a change to the two texts below. The capture
tables that the cells have to keep stand in tests/cells/capture_table.py, written down apart from these rows.
"""

import argparse
import pathlib
import re
from dataclasses import dataclass, replace

# The keyword of each pin in a %SCAN_CELL block, in the order of ports and items. CK and UP are the gated clocks of the
# normal TAP; the cells for -synch have TCK and the enables CE and UE in their place.
ROLES = {"DI": "DATA_IN", "DO": "DATA_OUT", "SP": "SYS_PIN", "CI": "SYS_IN", "SI": "TDI", "SO": "TDO",
         "SE": "SHIFT_DR", "TCK": "TCK", "CK": "CLOCK_DR", "CE": "CLOCK_DR", "UP": "UPDATE_DR", "UE": "UPDATE_DR",
         "M1": "MODE_1", "M2": "MODE_2", "RN": "RST", "HZ": "HIGHZ", "PAD_ON": "OE_MODE"}
ONE_UNIT = "One time unit after its clock: the neighbour has taken the old value, whatever the order of events."


@dataclass(frozen=True)
class Cell:
    """What a cell does to its wires. An expression is of pins, held (the update stage), &, | and ~."""
    name: str
    type: str                   # of IEEE 1149.1
    text: str
    capture: tuple = ("DI",)    # source, or (condition, source, ..., else source)
    outward: tuple = ()         # DO: select, source while it is high, source while it is low
    inward: tuple = ()          # CI: the same
    reset: int = None           # what RN, low in Test-Logic-Reset, sets the update stage to
    pad_on: str = ""            # a control cell's word to a BC_7: high while the pads drive
    synch: bool = False


FROM_CORE = ("M1", "held", "DI")
ON = {0: "turns pads with %EN_H", 1: "turns pads with %EN_L"}


def control(type, reset, oe, highz, capture=("DI",)):
    """A control cell for pads that are off at the reset value. With highz HZ forces that value, for one gate more
    between the core and the enable; the cells without it have the multiplexer alone."""
    force = ("held | HZ" if reset else "held & ~HZ") if highz else "held"
    tail = "OE" if oe else "CTL"
    text = (f"Control, between core (DI) and the enable of pads (DO). RN sets it to {reset}, which {ON[reset]} off."
            + (" PAD_ON tells a BC_7 whether the pad drives." if oe else "") + (" HZ turns them off." if highz else ""))
    return Cell(f"RIM_{type}_{tail}{reset}{'Z' if highz else ''}", type, text, capture,
                ("M1 | HZ", force, "DI") if highz else FROM_CORE, reset=reset,
                pad_on=("~DO" if reset else "DO") if oe else "")


# What each instruction makes of the modes: M1 is high in EXTEST, INTEST and CLAMP, M2 in INTEST alone.
GATED = [
    Cell("RIM_BC_1_IN", "BC_1", "Input, between pad (DI) and core (DO). Takes the pad.", outward=("M2", "held", "DI")),
    Cell("RIM_BC_1_OUT", "BC_1", "Output, between core (DI) and pad (DO). Takes the core. Also a control cell without "
         "a reset, and an internal cell.", outward=FROM_CORE),
    *(control("BC_1", reset, oe, highz) for oe in (False, True) for highz in (False, True) for reset in (0, 1)),
    Cell("RIM_BC_2_IN", "BC_2", "Input, between pad (DI) and core (DO). Takes what the core sees: in INTEST the update "
         "stage.", ("DO",), ("M2", "held", "DI")),
    Cell("RIM_BC_2_OUT", "BC_2", "Output, between core (DI) and pad (DO). Takes what the pad is given: in EXTEST the "
         "update stage. In INTEST it takes the core.", ("M2", "DI", "DO"), FROM_CORE),
    *(control("BC_2", reset, False, False, ("M2", "DI", "DO")) for reset in (0, 1)),
    Cell("RIM_BC_4", "BC_4", "Clock or observe-only: looks at its wire (DI) and leaves it alone."),
    Cell("RIM_BC_7", "BC_7", "Bidirectional, both ways through the cell: core (DI) to pad (DO), pad (SP) to core (CI). "
         "Takes the core while the pad drives, else what the core sees; in EXTEST the pin. PAD_ON comes from the "
         "control cell of the pad, RIM_BC_1_OE0 or RIM_BC_1_OE1.",
         ("PAD_ON & (~M1 | M2)", "DI", "CI"), FROM_CORE, ("M2", "held", "SP")),
    Cell("RIM_BC_8", "BC_8", "Bidirectional, core (DI) to pad (DO); the core reads the pad past the cell. Takes the "
         "pin (SP). Not for INTEST.", ("SP",), FROM_CORE),
    Cell("RIM_BC_9", "BC_9", "Output that watches its pin, core (DI) to pad (DO). In EXTEST takes the pin (SP), by the "
         "receiver that a bidirectional pad has; else the core.", ("M1 & ~M2", "SP", "DI"), FROM_CORE),
    Cell("RIM_BC_10", "BC_10", "Output that watches its pin, core (DI) to pad (DO). Takes the pin (SP), by the "
         "receiver that a bidirectional pad has. Not for INTEST.", ("SP",), FROM_CORE),
]
CELLS = GATED + [replace(cell, name=cell.name + "_S", text=cell.text + " For -synch.", synch=True) for cell in GATED]
BUFFERS = {"RIM_BUF": ("Buffer for the trees of the control signals.", "A", "%BUFFER", "BUF"),
           "RIM_INV": ("Inverter, and inverting buffer for the trees.", "~A", "%INV_BUFFER", "INV")}


def pins_of(cell):
    """Inputs and outputs, in the order of ROLES."""
    stages = "SI SE " + ("TCK CE" if cell.synch else "CK")
    if cell.outward:
        stages += " UE" if cell.synch else " UP"
    words = set(re.findall(r"\w+", " ".join((stages, *cell.capture, *cell.outward, *cell.inward))))
    words |= {"RN"} if cell.reset is not None else set()
    outputs = ["SO"] + ["DO"] * bool(cell.outward) + ["CI"] * bool(cell.inward) + ["PAD_ON"] * bool(cell.pad_on)
    return ([pin for pin in ROLES if pin in words - set(outputs)], [pin for pin in ROLES if pin in outputs])


def comment(text, mark, width=110):
    """The text in lines of the width, the mark before each."""
    lines = [""]
    for word in text.split():
        if len(lines[-1]) + len(word) > width:
            lines.append("")
        lines[-1] += (" " if lines[-1] else "") + word
    return "".join(f"{mark}{line}\n" for line in lines)


def head(cell, mark):
    return comment(f"{cell.type}. {cell.text}", mark + " ") + comment("Made by make_cells.py.", mark + " ")


# ---- Verilog -----------------------------------------------------------------------------------------

def verilog_choice(parts):
    *choices, last = parts
    return "".join(f"({when}) ? {take} : " if " " in when else f"{when} ? {take} : "
                   for when, take in zip(choices[::2], choices[1::2])) + last


def verilog(cell):
    inputs, outputs = pins_of(cell)
    ports = [f"input {', '.join(inputs)}", "output reg SO"]
    others = ", ".join(pin for pin in outputs if pin != "SO")
    ports += [f"output {others}"] if others else []
    capture, update, enable_shift, enable_update = "posedge CK", "posedge UP", "", ""
    if cell.synch:
        capture, update, enable_shift, enable_update = "posedge TCK", "negedge TCK", "if (CE) ", "if (UE) "
    text = f"`timescale 1ns / 1ps\n\n`celldefine\nmodule {cell.name} ({', '.join(ports)});\n"
    text += "    reg held;\n" if cell.outward else ""
    text += f"    wire taken = {verilog_choice(cell.capture)};\n{comment(ONE_UNIT, '    // ')}"
    text += f"    always @({capture}) {enable_shift}SO <= #1 SE ? SI : taken;\n"
    if cell.reset is not None:
        text += (f"    always @({update} or negedge RN)\n        if (!RN) held <= #1 1'b{cell.reset};\n"
                 f"        else {enable_update}held <= #1 SO;\n")
    elif cell.outward:
        text += f"    always @({update}) {enable_update}held <= #1 SO;\n"
    text += f"    assign DO = {verilog_choice(cell.outward)};\n" if cell.outward else ""
    text += f"    assign CI = {verilog_choice(cell.inward)};\n" if cell.inward else ""
    text += f"    assign PAD_ON = {cell.pad_on};\n" if cell.pad_on else ""
    return head(cell, "//") + text + "endmodule\n`endcelldefine\n"


# ---- VHDL --------------------------------------------------------------------------------------------

INSIDE = {"DO": "driven", "CI": "inward"}      # an output can't be read back


def vhdl_value(text):
    text = re.sub(r"\b(DO|CI)\b", lambda found: INSIDE[found[0]], text)
    return text.replace("~", "not ").replace("&", "and").replace("|", "or")


def vhdl_test(text):
    text = re.sub(r"(~?)(\w+)", lambda found: f"{found[2]} = '{'0' if found[1] else '1'}'", text)
    return text.replace("&", "and").replace("|", "or")


def vhdl_choice(parts):
    *choices, last = parts
    return "".join(f"{vhdl_value(take)} when {vhdl_test(when)} else "
                   for when, take in zip(choices[::2], choices[1::2])) + vhdl_value(last)


def vhdl(cell):
    inputs, outputs = pins_of(cell)
    signals = ["taken", "shifted"] + ["held", "driven"] * bool(cell.outward) + ["inward"] * bool(cell.inward)
    capture, update, clocks = "rising_edge(CK)", "rising_edge(UP)", ("CK", "UP")
    if cell.synch:
        capture, update, clocks = "rising_edge(TCK) and CE = '1'", "falling_edge(TCK) and UE = '1'", ("TCK", "TCK")
    text = head(cell, "--") + (
        "library ieee; use ieee.std_logic_1164.all;\n\n"
        f"entity {cell.name} is\n  port ({', '.join(inputs)} : in std_logic;\n"
        f"        {', '.join(outputs)} : out std_logic);\nend {cell.name};\n\n"
        f"architecture rtl of {cell.name} is\n  signal {', '.join(signals)} : std_logic;\nbegin\n"
        f"  taken <= {vhdl_choice(cell.capture)};\n{comment(ONE_UNIT, '  -- ')}"
        f"  process ({clocks[0]}) begin\n    if {capture} then\n"
        "      if SE = '1' then shifted <= SI after 1 ns; else shifted <= taken after 1 ns; end if;\n"
        "    end if;\n  end process;\n  SO <= shifted;\n")
    if cell.reset is not None:
        text += (f"  process ({clocks[1]}, RN) begin\n    if RN = '0' then held <= '{cell.reset}' after 1 ns;\n"
                 f"    elsif {update} then held <= shifted after 1 ns;\n    end if;\n  end process;\n")
    elif cell.outward:
        text += (f"  process ({clocks[1]}) begin\n    if {update} then held <= shifted after 1 ns; end if;\n"
                 "  end process;\n")
    text += f"  driven <= {vhdl_choice(cell.outward)};\n  DO <= driven;\n" if cell.outward else ""
    text += f"  inward <= {vhdl_choice(cell.inward)};\n  CI <= inward;\n" if cell.inward else ""
    text += f"  PAD_ON <= {vhdl_value(cell.pad_on)};\n" if cell.pad_on else ""
    return text + "end rtl;\n"


def buffers(folder):
    for name, (text, value, _, _) in BUFFERS.items():
        (folder / "verilog" / f"{name}.v").write_text(
            f"// {text} Made by make_cells.py.\n`timescale 1ns / 1ps\n\n`celldefine\n"
            f"module {name} (input A, output Z);\n    assign Z = {value};\nendmodule\n`endcelldefine\n")
        (folder / "vhdl" / f"{name}.vhd").write_text(
            f"-- {text} Made by make_cells.py.\nlibrary ieee; use ieee.std_logic_1164.all;\n\n"
            f"entity {name} is\n  port (A : in std_logic;\n        Z : out std_logic);\nend {name};\n\n"
            f"architecture rtl of {name} is\nbegin\n  Z <= {vhdl_value(value)};\nend rtl;\n")


# ---- boundary_cells.lib ------------------------------------------------------------------------------

LIBRARY_HEAD = """\
/* Boundary cells ready to use, made by make_cells.py: README.md tells which one to take. Each block is the cell of
   that name in verilog/ and vhdl/; %STD_NAME is its type. Cells whose name ends in _S are for -synch. */
"""


def block(cell):
    items = [("STD_NAME", cell.type)] + [(ROLES[pin], pin) for pin in ROLES if pin in sum(pins_of(cell), [])]
    return (comment(f"{cell.type}. {cell.text}", "// ")
            + f"%SCAN_CELL      {cell.name}\n {{\n" + "".join(f"  %{key:13}{pin};\n" for key, pin in items) + " }\n")


def library():
    blocks = [block(cell) for cell in CELLS]
    blocks += [f"// {text}\n{keyword:15} {name}\n {{\n  %FUNCTION     {word};\n  %INPUT        A;\n"
               "  %OUTPUT       Z;\n }\n" for name, (text, _, keyword, word) in BUFFERS.items()]
    return LIBRARY_HEAD + "".join("\n" + text for text in blocks)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--out", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent)
    folder = options.parse_args().out
    for name in ("verilog", "vhdl"):
        (folder / name).mkdir(parents=True, exist_ok=True)
    for cell in CELLS:
        (folder / "verilog" / f"{cell.name}.v").write_text(verilog(cell))
        (folder / "vhdl" / f"{cell.name}.vhd").write_text(vhdl(cell))
    buffers(folder)
    (folder / "boundary_cells.lib").write_text(library())


if __name__ == "__main__":
    main()
