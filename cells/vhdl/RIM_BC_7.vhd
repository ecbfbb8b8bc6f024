-- BC_7. Bidirectional, both ways through the cell: core (DI) to pad (DO), pad (SP) to core (CI). Takes the core
-- while the pad drives, else what the core sees; in EXTEST the pin. PAD_ON comes from the control cell of the
-- pad, RIM_BC_1_OE0 or RIM_BC_1_OE1.
-- Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BC_7 is
  port (DI, SP, SI, SE, CK, UP, M1, M2, PAD_ON : in std_logic;
        DO, CI, SO : out std_logic);
end RIM_BC_7;

architecture rtl of RIM_BC_7 is
  signal taken, shifted, held, driven, inward : std_logic;
begin
  taken <= DI when PAD_ON = '1' and (M1 = '0' or M2 = '1') else inward;
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
  inward <= held when M2 = '1' else SP;
  CI <= inward;
end rtl;
