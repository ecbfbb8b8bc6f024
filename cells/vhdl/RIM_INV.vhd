-- Inverter, and inverting buffer for the trees. Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_INV is
  port (A : in std_logic;
        Z : out std_logic);
end RIM_INV;

architecture rtl of RIM_INV is
begin
  Z <= not A;
end rtl;
