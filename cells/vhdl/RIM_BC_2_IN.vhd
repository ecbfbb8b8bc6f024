-- BC_2. Input, between pad (DI) and core (DO). Takes what the core sees: in INTEST the update stage.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_2_IN is
  port (DI, SI, SE, CK, UP, M2 : in std_logic;
        DO, SO : out std_logic);
end RIM_BC_2_IN;

architecture rtl of RIM_BC_2_IN is
  signal taken, shifted, held, driven : std_logic;
begin
  taken <= driven;
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
  driven <= held when M2 = '1' else DI;
  DO <= driven;
end rtl;
