-- BC_1. Output, between core (DI) and pad (DO). Takes the core. Also a control cell without a reset, and an
-- internal cell.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_1_OUT is
  port (DI, SI, SE, CK, UP, M1 : in std_logic;
        DO, SO : out std_logic);
end RIM_BC_1_OUT;

architecture rtl of RIM_BC_1_OUT is
  signal taken, shifted, held, driven : std_logic;
begin
  taken <= DI;
  -- One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
  process (CK) begin
    if rising_edge(CK) then
      if SE = '1' then shifted <= SI after 1 ns; else shifted <= taken after 1 ns; end if;
    end if;
  end process;
  SO <= shifted;
  process (UP) begin
    if rising_edge(UP) then held <= shifted after 1 ns; end if;
  end process;
  driven <= held when M1 = '1' else DI;
  DO <= driven;
end rtl;
