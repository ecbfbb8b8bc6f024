"""Plays a list of steps on a netlist under Icarus Verilog.

A step gives every pin of the chip a value (0, 1, or z for "left alone"); the answer is what all pins
read just before the next step. The test bench knows nothing else, so that the same steps can be played
on a chip before and after insertion and the answers compared.

Pins that the chip may drive are driven through a weak driver: the chip wins while it drives, and a
released pin follows the test bench.
"""

import re
import subprocess

from chip_files import ProofError, read_ports

BENCH = """`timescale 1ns / 1ps
module bench;
    reg [{last}:0] drive;
    integer steps, answers, got;
{wires}
    {top} dut ({connections});
    initial begin
        steps = $fopen("{steps}", "r");
        answers = $fopen("{answers}", "w");
        got = $fscanf(steps, "%b", drive);
        while (got == 1) begin
            #50 $fdisplay(answers, "%b", {{{sampled}}});
            got = $fscanf(steps, "%b", drive);
        end
        $finish;
    end
endmodule
"""


def run(command, directory, what):
    done = subprocess.run(command, cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode:
        raise ProofError(f"{what}: status {done.returncode} of: {' '.join(command)}\n{done.stdout}")
    return done.stdout


def bits_of(name, port):
    direction, msb, lsb = port
    if msb is None:
        return [name]
    step = 1 if msb >= lsb else -1
    return [f"{name}[{i}]" for i in range(msb, lsb - step, -step)]


class Player:
    """One netlist under test. pins is the order of values in a step; a pin that this netlist does not
    have (a test port that the insertion adds) is ignored on the way in and reads z. Ports that are skipped
    may be no pins: they stay open. probes gives values inside the netlist, as the bench reaches them, that
    stand among the pins."""

    def __init__(self, work, tag, sources, top, pins, skipped=(), probes=None):
        self.work, self.tag, self.top, self.pins, self.probes = work, tag, top, pins, probes or {}
        self.write_bench(read_ports([work / source for source in sources], top), skipped)
        self.simulate = ["vvp", "-n", f"{tag}.vvp"]
        run(["iverilog", "-g2001", "-o", f"{tag}.vvp", f"{tag}_bench.v"] + sources, work, f"compiling {tag}")

    def write_bench(self, ports, skipped):
        wires, connections, known = [], [], {}
        for number, (name, port) in enumerate(ports.items()):
            bits = bits_of(name, port)
            wires.append(f"    wire [{len(bits) - 1}:0] p{number};")
            connections.append(f".{name if re.fullmatch(r'[A-Za-z_][A-Za-z0-9_]*', name) else chr(92) + name + ' '}"
                               f"(p{number})")
            for place, bit in enumerate(reversed(bits)):
                known[bit] = (f"p{number}[{place}]", port[0])
        unknown = [bit for bit in known if bit not in self.pins and bit not in skipped]
        if unknown:
            raise ProofError(f"{self.tag}: ports without a pin: {' '.join(unknown)}")
        sampled = []
        for index, pin in enumerate(self.pins):
            signal, direction = known.get(pin, (self.probes.get(pin, "1'bz"), None))
            sampled.append(signal)
            if direction:
                strength = "" if direction == "input" else "(weak1, weak0) "
                wires.append(f"    assign {strength}{signal} = drive[{len(self.pins) - 1 - index}];")
        text = BENCH.format(last=len(self.pins) - 1, wires="\n".join(wires), top=self.top,
                            connections=", ".join(connections), sampled=", ".join(sampled),
                            steps=f"{self.tag}.steps", answers=f"{self.tag}.answers")
        (self.work / f"{self.tag}_bench.v").write_text(text)

    def play(self, steps):
        """Steps are dictionaries pin to value; a pin that is not there is left alone. Gives dictionaries."""
        text = "\n".join("".join(step.get(pin, "z") for pin in self.pins) for step in steps)
        (self.work / f"{self.tag}.steps").write_text(text + "\n")
        run(self.simulate, self.work, f"simulating {self.tag}")
        answers = [line.strip() for line in open(self.work / f"{self.tag}.answers")]
        if len(answers) != len(steps):
            raise ProofError(f"{self.tag}: {len(answers)} answers to {len(steps)} steps")
        return answers
