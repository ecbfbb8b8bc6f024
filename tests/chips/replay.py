"""What the bench does to the pins of the Verilog netlist is done to those of the VHDL netlist, under GHDL, and has to show
the same at each step."""

import re

from player import run
from step_player import VhdlPlayer

RECORDER = """module record;
    initial begin
        $dumpfile("bench.vcd");
        $dumpvars(1, bench);
    end
endmodule
"""
SETTLED, WIDEST = 10_000, 999     # in ps; digits of a vector
WORDS = {"tck": "tck", "tms": "tms", "tdi": "tdi_bit", "trst": "trst"}


def read_moments(path):
    """The values of the bench's signals, by name, whenever they have stood for a while."""
    names, now, moments, last = {}, {}, [], 0
    for line in open(path):
        if line.startswith("$var"):
            _, _, _, code, name, *_ = line.split()
            names.setdefault(code, []).append(name)
        elif line.startswith("#"):
            if int(line[1:]) > last + SETTLED:
                moments.append(dict(now))
            last = int(line[1:])
        elif line[0] in "01xzb":
            value, code = line[1:].split() if line[0] == "b" else (line[0], line[1:].strip())
            value = value.rjust(WIDEST, "0" if value[0] == "1" else value[0]) if line[0] == "b" else value
            now.update(dict.fromkeys(names[code], value))
    return moments


def comparable_steps(bench):
    """The TAP in VHDL does not hold the update stages in CLAMP: what the pins show behind a scan there is left out. Pads in
    VHDL pull nothing, so an open input shows nothing."""
    reasons = re.findall(r"reason\[\d+\] = \"(.*?)\"", bench)
    start = reasons.index("CLAMP selects BYPASS") if "CLAMP selects BYPASS" in reasons else len(reasons)
    stop = next((i for i in range(start + 1, len(reasons)) if reasons[i].startswith("INTEST, pads")), len(reasons))
    is_open = {int(step) for step in re.findall(r"kind\[(\d+)\] = 6;", bench)}
    return {step for step in range(len(reasons)) if not start <= step < stop and step not in is_open}


def replay_in_vhdl(chip, plan, work):
    """The clock pins stand still, since a core whose data and clock change at once may take either."""
    design = plan["design"]
    bench = (work / f"{design}_bench.v").read_text()
    pins = re.findall(r"^    wire p\d+; // (\S+)$", bench, flags=re.M)
    clocks = sum(1 << pins.index(name) for name in plan["clocks"])
    (work / "record.v").write_text(bench.replace("drive = value[step];", f"drive = value[step] & ~{clocks};") + RECORDER)
    run(["iverilog", "-g2005", "-s", "bench", "-s", "record", "-o", "record.vvp", "record.v", f"{design}_jtag.v",
         f"{design}_TAP.v", *plan["cells"]], work, "the bench")
    run(["vvp", "-n", "record.vvp"], work, "the bench")
    moments = read_moments(work / "bench.vcd")
    tests = {port: WORDS[role] for role, port in chip.test_ports.items() if role in WORDS}

    def driven(now, place, pin):
        if pin in tests:
            return now[tests[pin]]
        source = "drive" if f"assign p{place} = drive" in bench or now["on"][-1 - place] == "1" else "pull"
        return now[source][-1 - place]

    steps = [{pin: driven(now, place, pin) for place, pin in enumerate(pins)} for now in moments]
    player = VhdlPlayer(work, "vhdl", ["cells.vhd", f"{design}_TAP.vhd", f"{design}_jtag.vhd"], f"{design}_jtag", pins)
    compared = comparable_steps(bench)
    for now, seen in zip(moments, player.play(steps)):
        step = int(now["step"], 2) if set(now["step"]) <= {"0", "1"} else 0
        for place, pin in enumerate(pins):
            if step in compared and now[f"p{place}"] not in ("x", seen[place]):
                yield f"VHDL: step {step}: {pin} is {seen[place]}, in Verilog {now[f'p{place}']}"
