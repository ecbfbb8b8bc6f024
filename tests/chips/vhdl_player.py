"""Plays steps on a VHDL netlist under GHDL, as player.py does on a Verilog one. The ports must be scalars."""

import re

from chip_files import ProofError
from player import Player, run

BENCH = """library ieee;
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
        return BENCH.format(
            count=len(self.pins), top=top, steps=f"{self.tag}.steps", answers=f"{self.tag}.answers",
            signals="\n".join(f"  signal p_{name} : std_logic;" for name, _ in ports), drivers="\n".join(drivers),
            connections=", ".join(f"{name} => p_{name}" for name, _ in ports),
            samples="\n".join(f"      seen({place[name]}) := shown(p_{name});" for name, _ in ports))
