-- BC_4. Clock or observe-only: looks at its wire (DI) and leaves it alone. For -synch.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_4_S is
  port (DI, SI, SE, TCK, CE : in std_logic;
        SO : out std_logic);
end RIM_BC_4_S;

architecture rtl of RIM_BC_4_S is
  signal taken, shifted : std_logic;
begin
  taken <= DI;
  -- One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
  process (TCK) begin
    if rising_edge(TCK) and CE = '1' then
      if SE = '1' then shifted <= SI after 1 ns; else shifted <= taken after 1 ns; end if;
    end if;
  end process;
  SO <= shifted;
end rtl;
