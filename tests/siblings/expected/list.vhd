library ieee;
use ieee.std_logic_1164.all;
use work.all;

entity leaf is
  port (
    a : in std_logic_vector(3 downto 0);
    b : in std_logic_vector(0 to 3);
    y : out std_logic_vector(3 downto 0);
    z : out std_logic;
    zz : out std_logic;
    k0 : out std_logic;
    k1 : out std_logic;
    thru : out std_logic;
    unused : in std_logic;
    nc : out std_logic);
end leaf;

architecture netlist of leaf is
  component INV
    port (
      A : in std_logic;
      Z : out std_logic);
  end component;
  component NAND2
    port (
      A : in std_logic;
      B : in std_logic;
      Z : out std_logic);
  end component;
  component ADD4
    port (
      A : in std_logic_vector(3 downto 0);
      B : in std_logic_vector(0 to 3);
      S : out std_logic_vector(4 downto 0));
  end component;
  signal n : std_logic_vector(3 downto 0);
  signal \y_0__n1\ : std_logic;
  signal z_n1 : std_logic;
  signal \signal\ : std_logic;
  signal \u.v[3]\ : std_logic;
  signal \Y_\ : std_logic;
  signal \y_\ : std_logic;
  signal carry : std_logic;
begin
  y(0) <= \y_0__n1\;
  z <= z_n1;
  zz <= z_n1;
  k0 <= '0';
  k1 <= '1';
  thru <= b(0);
  u0 : INV
    port map (
      A => a(0),
      Z => \y_0__n1\);
  u1 : INV
    port map (
      A => a(1),
      Z => y(1));
  \u[2]\ : INV
    port map (
      A => \y_0__n1\,
      Z => y(2));
  u3 : INV
    port map (
      A => '0',
      Z => y(3));
  \register\ : NAND2
    port map (
      A => b(0),
      B => a(2),
      Z => z_n1);
  \entity\ : NAND2
    port map (
      A => \signal\,
      B => \u.v[3]\,
      Z => \Y_\);
  u5 : INV
    port map (
      A => n(1),
      Z => \y_\);
  \U5\ : INV
    port map (
      A => \y_\,
      Z => \signal\);
  \wait\ : INV
    port map (
      A => n(2),
      Z => \u.v[3]\);
  add : ADD4
    port map (
      A(3) => a(2),
      A(2) => a(1),
      A(1) => b(3),
      A(0) => '1',
      B => b,
      S(4) => carry,
      S(3) => n(3),
      S(2) => n(2),
      S(1) => n(1),
      S(0) => n(0));
  add2 : ADD4
    port map (
      A => (others => 'Z'),
      B(0) => n(0),
      B(1) => \Y_\,
      B(2) => '1',
      B(3) => '0',
      S => open);
end netlist;

library ieee;
use ieee.std_logic_1164.all;
use work.all;

entity top is
  port (
    a : in std_logic_vector(3 downto 0);
    b : in std_logic_vector(3 downto 0);
    o : out std_logic_vector(12 downto 0);
    y : out std_logic_vector(3 downto 0));
end top;

architecture netlist of top is
  component leaf
    port (
      a : in std_logic_vector(3 downto 0);
      b : in std_logic_vector(0 to 3);
      y : out std_logic_vector(3 downto 0);
      z : out std_logic;
      zz : out std_logic;
      k0 : out std_logic;
      k1 : out std_logic;
      thru : out std_logic;
      unused : in std_logic;
      nc : out std_logic);
  end component;
  for all : leaf use entity work.leaf;
  component NAND2
    port (
      A : in std_logic;
      B : in std_logic;
      Z : out std_logic);
  end component;
  component ADD4
    port (
      A : in std_logic_vector(3 downto 0);
      B : in std_logic_vector(0 to 3);
      S : out std_logic_vector(4 downto 0));
  end component;
  signal q3 : std_logic;
  signal q2 : std_logic;
  signal x1 : std_logic;
  signal x2 : std_logic;
begin
  s0 : leaf
    port map (
      a => a,
      b => b,
      y => y,
      z => o(0),
      zz => o(1),
      k0 => o(2),
      k1 => o(3),
      thru => o(4),
      unused => '0',
      nc => open);
  s1 : leaf
    port map (
      a(3) => b(3),
      a(2) => b(2),
      a(1) => a(1),
      a(0) => a(0),
      b(0) => a(0),
      b(1) => '1',
      b(2) => '0',
      b(3) => b(1),
      y(3) => q3,
      y(2) => q2,
      y(1) => o(8),
      y(0) => o(7),
      z => o(5),
      zz => o(6),
      k0 => open,
      k1 => open,
      thru => open,
      unused => 'Z',
      nc => open);
  i : NAND2
    port map (
      A => q3,
      B => q2,
      Z => o(9));
  last : ADD4
    port map (
      A => a,
      B(0) => b(1),
      B(1) => b(0),
      B(2) => '0',
      B(3) => '1',
      S(4) => o(10),
      S(3) => o(11),
      S(2) => o(12),
      S(1) => x1,
      S(0) => x2);
end netlist;
