library ieee;
use ieee.std_logic_1164.all;
use work.all;

entity LEAF is
  port (
    \iNV\ : in std_logic;
    \nand2\ : in std_logic;
    \Out\ : out std_logic;
    \out\ : out std_logic);
end LEAF;

architecture netlist of LEAF is
  component \INV\
    port (
      A : in std_logic;
      Z : out std_logic);
  end component;
  component \inv\
    port (
      a : in std_logic;
      z : out std_logic);
  end component;
  component NAND2
    port (
      A : in std_logic;
      B : in std_logic;
      Z : out std_logic);
  end component;
  signal \INV_n1\ : std_logic;
begin
  u : \INV\
    port map (
      A => \iNV\,
      Z => \Out\);
  \U\ : \inv\
    port map (
      a => \nand2\,
      z => \out\);
  \nAND2\ : NAND2
    port map (
      A => \iNV\,
      B => \nand2\,
      Z => \INV_n1\);
end netlist;

library ieee;
use ieee.std_logic_1164.all;
use work.all;

entity top is
  port (
    i : in std_logic;
    \leaf\ : out std_logic);
end top;

architecture netlist of top is
  component LEAF
    port (
      \iNV\ : in std_logic;
      \nand2\ : in std_logic;
      \Out\ : out std_logic;
      \out\ : out std_logic);
  end component;
  for all : LEAF use entity work.LEAF;
begin
  u : LEAF
    port map (
      \iNV\ => i,
      \nand2\ => i,
      \Out\ => \leaf\,
      \out\ => open);
end netlist;
