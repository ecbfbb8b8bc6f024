"""Plays a list of steps on a Verilog module under Icarus Verilog, or on a VHDL entity under GHDL, whose ports are scalars.

A step gives every pin a value (0, 1, or z for "left alone"); the answer is what all pins read just before the next
step. Pins that the module may drive are driven through a weak driver: it wins while it drives.
"""

import re

from chip_files import ProofError, read_ports
from player import run

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


VHDL_BENCH = """library ieee;
use ieee.std_logic_1164.all;
use std.textio.all;

entity bench is end bench;

architecture play of bench is
  signal drive : string(1 to {count}) := (others => 'z');
{signals}
  function strong(c : character) return std_logic is
  begin
    case c is
      when '0' => return '0';
      when '1' => return '1';
      when others => return 'Z';
    end case;
  end strong;

  function weak(c : character) return std_logic is
  begin
    case c is
      when '0' => return 'L';
      when '1' => return 'H';
      when others => return 'Z';
    end case;
  end weak;

  function shown(s : std_logic) return character is
  begin
    case s is
      when '0' | 'L' => return '0';
      when '1' | 'H' => return '1';
      when 'Z' => return 'z';
      when others => return 'x';
    end case;
  end shown;
begin
{drivers}
  dut : entity work.{top} port map ({connections});

  process
    file steps : text open read_mode is "{steps}";
    file answers : text open write_mode is "{answers}";
    variable row, answer : line;
    variable values : string(1 to {count});
    variable seen : string(1 to {count});
  begin
    while not endfile(steps) loop
      readline(steps, row);
      read(row, values);
      drive <= values;
      wait for 50 ns;
      seen := (others => 'z');
{samples}
      write(answer, seen);
      writeline(answers, answer);
    end loop;
    wait;
  end process;
end play;
"""


class Player:
    def __init__(self, work, tag, sources, top, pins):
        self.work, self.tag, self.top, self.pins = work, tag, top, pins
        self.write_bench(read_ports([work / source for source in sources], top))
        self.simulate = ["vvp", "-n", f"{tag}.vvp"]
        run(["iverilog", "-g2001", "-o", f"{tag}.vvp", f"{tag}_bench.v"] + sources, work, f"compiling {tag}")

    def write_bench(self, ports):
        wires, connections, sampled = [], [], []
        for index, pin in enumerate(self.pins):
            wires.append(f"    wire p{index};")
            connections.append(f".{pin}(p{index})")
            sampled.append(f"p{index}")
            strength = "" if ports[pin][0] == "input" else "(weak1, weak0) "
            wires.append(f"    assign {strength}p{index} = drive[{len(self.pins) - 1 - index}];")
        text = BENCH.format(last=len(self.pins) - 1, wires="\n".join(wires), top=self.top,
                            connections=", ".join(connections), sampled=", ".join(sampled),
                            steps=f"{self.tag}.steps", answers=f"{self.tag}.answers")
        (self.work / f"{self.tag}_bench.v").write_text(text)

    def play(self, steps):
        """Steps are dictionaries pin to value; a pin that is not there is left alone."""
        text = "\n".join("".join(step.get(pin, "z") for pin in self.pins) for step in steps)
        (self.work / f"{self.tag}.steps").write_text(text + "\n")
        run(self.simulate, self.work, f"simulating {self.tag}")
        answers = [line.strip() for line in open(self.work / f"{self.tag}.answers")]
        if len(answers) != len(steps):
            raise ProofError(f"{self.tag}: {len(answers)} answers to {len(steps)} steps")
        return answers


class VhdlPlayer(Player):
    def __init__(self, work, tag, sources, top, pins):
        self.work, self.tag, self.pins = work, tag, pins
        self.simulate = ["ghdl", "-r", "bench", "--ieee-asserts=disable"]
        (work / f"{tag}_bench.vhd").write_text(self.bench(work / sources[-1], top))
        run(["ghdl", "-a", "-fexplicit", *sources, f"{tag}_bench.vhd"], work, f"analysing {tag}")
        run(["ghdl", "-e", "-fexplicit", "bench"], work, f"elaborating {tag}")

    def bench(self, path, top):
        entity = re.search(rf"\bentity\s+{top}\s+is\s+port\s*\((.*?)\);\s*end\b", path.read_text(), re.S | re.I)
        if not entity:
            raise ProofError(f"{path}: no entity {top}")
        ports = re.findall(r"(\w+)\s*:\s*(in|out|inout)\s+std_logic\b(?!_)", entity[1], re.I)
        place = {name: self.pins.index(name) + 1 for name, _ in ports}
        drivers = [f"  p_{name} <= {'strong' if direction.lower() == 'in' else 'weak'}(drive({place[name]}));"
                   for name, direction in ports]
        return VHDL_BENCH.format(
            count=len(self.pins), top=top, steps=f"{self.tag}.steps", answers=f"{self.tag}.answers",
            signals="\n".join(f"  signal p_{name} : std_logic;" for name, _ in ports), drivers="\n".join(drivers),
            connections=", ".join(f"{name} => p_{name}" for name, _ in ports),
            samples="\n".join(f"      seen({place[name]}) := shown(p_{name});" for name, _ in ports))
