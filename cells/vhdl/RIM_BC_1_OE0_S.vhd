-- BC_1. Control, between core (DI) and the enable of pads (DO). RN sets it to 0, which turns pads with %EN_H off.
-- PAD_ON tells a BC_7 whether the pad drives. For -synch.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_1_OE0_S is
  port (DI, SI, SE, TCK, CE, UE, M1, RN : in std_logic;
        DO, SO, PAD_ON : out std_logic);
end RIM_BC_1_OE0_S;

architecture rtl of RIM_BC_1_OE0_S is
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
  process (TCK, RN) begin
    if RN = '0' then held <= '0' after 1 ns;
    elsif falling_edge(TCK) and UE = '1' then held <= shifted after 1 ns;
    end if;
  end process;
  driven <= held when M1 = '1' else DI;
  DO <= driven;
  PAD_ON <= driven;
end rtl;
