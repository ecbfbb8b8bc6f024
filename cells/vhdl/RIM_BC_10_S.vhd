-- BC_10. Output that watches its pin, core (DI) to pad (DO). Takes the pin (SP), by the receiver that a
-- bidirectional pad has. Not for INTEST. For -synch.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_10_S is
  port (DI, SP, SI, SE, TCK, CE, UE, M1 : in std_logic;
        DO, SO : out std_logic);
end RIM_BC_10_S;

architecture rtl of RIM_BC_10_S is
  signal taken, shifted, held, driven : std_logic;
begin
  taken <= SP;
  -- One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
  process (TCK) begin
    if rising_edge(TCK) and CE = '1' then
      if SE = '1' then shifted <= SI after 1 ns; else shifted <= taken after 1 ns; end if;
    end if;
  end process;
  SO <= shifted;
  process (TCK) begin
    if falling_edge(TCK) and UE = '1' then held <= shifted after 1 ns; end if;
  end process;
  driven <= held when M1 = '1' else DI;
  DO <= driven;
end rtl;
