"""Proves with Yosys that the edited chip with its TAP held in reset is the chip as it was: every pin of every pad
but those of the test port, and so every enable, is driven by the same function of the same state."""

import pathlib
import re
import shutil

from player import run

HERE = pathlib.Path(__file__).resolve().parent
PADS = ["IPAD", "IPADU", "CKPAD", "OPAD", "TPAD", "BPAD"]


def strip_pads(work):
    """The library without its pads: their place is taken by bare borders."""
    text = (work / "cells.v").read_text()
    for pad in PADS:
        start = text.index(f"module {pad} (")
        text = text[:start] + text[text.index("endmodule", start) + len("endmodule"):]
    (work / "formal_cells.v").write_text(text)
    shutil.copy(HERE / "formal_pads.v", work)


# The TRST pad is taken away, so that its core side reads 0; the TDO pad is taken away, since its pins differ.
def side_script(top, sources, name):
    pads = " ".join(f"t:{pad}" for pad in PADS)
    return f"""
read_verilog {' '.join(sources)} formal_cells.v formal_pads.v
hierarchy -check -top {top}
proc
flatten
delete {top}/c:*pad_tdo* {top}/c:*pad_trst_n*
expose -evert {pads}
setundef -undriven -zero
opt -full
clean -purge
delete -output {top}/w:tdo
rename {top} {name}
design -stash {name}
"""


def compare_formally(plan, work):
    """Gives Yosys's line of counts; raises ProofError with its words when the two differ."""
    strip_pads(work)
    before = plan["netlist"] + plan.get("before", [])
    after = [f"{plan['design']}_jtag.v", f"{plan['design']}_TAP.v"] + plan["cells"][1:]
    script = side_script(plan["design"], before, "gold") + side_script(plan["design"] + "_jtag", after, "gate")
    script += """
design -copy-from gold -as gold gold
design -copy-from gate -as gate gate
equiv_make gold gate equiv
hierarchy -top equiv
async2sync
equiv_simple -undef
equiv_induct -undef
equiv_status -assert
"""
    (work / "equivalence.ys").write_text(script)
    output = run(["yosys", "-s", "equivalence.ys"], work, "formal comparison")
    return re.search(r"Found \d+ \$equiv cells.*?proven!", output, re.S)[0].replace("\n", " ")
