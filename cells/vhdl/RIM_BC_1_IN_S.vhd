-- BC_1. Input, between pad (DI) and core (DO). Takes the pad. For -synch.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_1_IN_S is
  port (DI, SI, SE, TCK, CE, UE, M2 : in std_logic;
        DO, SO : out std_logic);
end RIM_BC_1_IN_S;

architecture rtl of RIM_BC_1_IN_S is
  signal taken, shifted, held, driven : std_logic;
begin
  taken <= DI;
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
  driven <= held when M2 = '1' else DI;
  DO <= driven;
end rtl;
