-- Buffer for the trees of the control signals. Made by make_cells.py.
library ieee; use ieee.std_logic_1164.all;

entity RIM_BUF is
  port (A : in std_logic;
        Z : out std_logic);
end RIM_BUF;

architecture rtl of RIM_BUF is
begin
  Z <= A;
end rtl;
