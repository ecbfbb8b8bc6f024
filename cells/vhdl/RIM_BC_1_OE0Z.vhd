-- BC_1. Control, between core (DI) and the enable of pads (DO). RN sets it to 0, which turns pads with %EN_H off.
-- PAD_ON tells a BC_7 whether the pad drives. HZ turns them off.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_1_OE0Z is
  port (DI, SI, SE, CK, UP, M1, RN, HZ : in std_logic;
        DO, SO, PAD_ON : out std_logic);
end RIM_BC_1_OE0Z;

architecture rtl of RIM_BC_1_OE0Z is
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
  process (UP, RN) begin
    if RN = '0' then held <= '0' after 1 ns;
    elsif rising_edge(UP) then held <= shifted after 1 ns;
    end if;
  end process;
  driven <= held and not HZ when M1 = '1' or HZ = '1' else DI;
  DO <= driven;
  PAD_ON <= driven;
end rtl;
