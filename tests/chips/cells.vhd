-- Models of the example's cells for VHDL simulation; cells.v of the example tells what each one does.

library ieee; use ieee.std_logic_1164.all;
entity IPAD is port (PAD : in std_logic; C : out std_logic); end IPAD;
architecture model of IPAD is begin C <= to_x01(PAD); end model;

library ieee; use ieee.std_logic_1164.all;
entity IPADU is port (PAD : in std_logic; C : out std_logic); end IPADU;
architecture model of IPADU is begin C <= '1' when PAD = 'Z' else to_x01(PAD); end model;

library ieee; use ieee.std_logic_1164.all;
entity CKPAD is port (PAD : in std_logic; C : out std_logic); end CKPAD;
architecture model of CKPAD is begin C <= to_x01(PAD); end model;

library ieee; use ieee.std_logic_1164.all;
entity OPAD is port (I : in std_logic; PAD : out std_logic); end OPAD;
architecture model of OPAD is begin PAD <= I; end model;

library ieee; use ieee.std_logic_1164.all;
entity TPAD is port (I, OEN : in std_logic; PAD : out std_logic); end TPAD;
architecture model of TPAD is begin PAD <= 'Z' when OEN = '1' else I when OEN = '0' else 'X'; end model;

library ieee; use ieee.std_logic_1164.all;
entity BPAD is port (I, OEN : in std_logic; C : out std_logic; PAD : inout std_logic); end BPAD;
architecture model of BPAD is
begin
  PAD <= 'Z' when OEN = '1' else I when OEN = '0' else 'X';
  C <= to_x01(PAD);
end model;

library ieee; use ieee.std_logic_1164.all;
entity BC_IN is port (DI, SI, SE, CK, UP, MODE : in std_logic; DO, SO : out std_logic); end BC_IN;
architecture model of BC_IN is
  signal shifted, held : std_logic;
begin
  process (CK) begin
    if rising_edge(CK) then
      if SE = '1' then shifted <= SI after 1 ns; else shifted <= DI after 1 ns; end if;
    end if;
  end process;
  process (UP) begin if rising_edge(UP) then held <= shifted after 1 ns; end if; end process;
  SO <= shifted;
  DO <= held when MODE = '1' else DI;
end model;

library ieee; use ieee.std_logic_1164.all;
entity BC_OUT is port (DI, SI, SE, CK, UP, MODE : in std_logic; DO, SO : out std_logic); end BC_OUT;
architecture model of BC_OUT is
  component BC_IN port (DI, SI, SE, CK, UP, MODE : in std_logic; DO, SO : out std_logic); end component;
begin
  same : BC_IN port map (DI => DI, SI => SI, SE => SE, CK => CK, UP => UP, MODE => MODE, DO => DO, SO => SO);
end model;

library ieee; use ieee.std_logic_1164.all;
entity BC_CLK is port (DI, SI, SE, CK : in std_logic; SO : out std_logic); end BC_CLK;
architecture model of BC_CLK is
begin
  process (CK) begin
    if rising_edge(CK) then
      if SE = '1' then SO <= SI after 1 ns; else SO <= DI after 1 ns; end if;
    end if;
  end process;
end model;

library ieee; use ieee.std_logic_1164.all;
entity BC_CTL is port (DI, SI, SE, CK, UP, MODE, RN : in std_logic; DO, SO : out std_logic); end BC_CTL;
architecture model of BC_CTL is
  signal shifted, held : std_logic;
begin
  process (CK) begin
    if rising_edge(CK) then
      if SE = '1' then shifted <= SI after 1 ns; else shifted <= DI after 1 ns; end if;
    end if;
  end process;
  process (UP, RN) begin
    if RN = '0' then held <= '1' after 1 ns;
    elsif rising_edge(UP) then held <= shifted after 1 ns;
    end if;
  end process;
  SO <= shifted;
  DO <= held when MODE = '1' else DI;
end model;

library ieee; use ieee.std_logic_1164.all;
entity BC_BID is
  port (DI, SP, SI, SE, CK, UP, MODE1, MODE2 : in std_logic; DO, CI, SO : out std_logic);
end BC_BID;
architecture model of BC_BID is
  signal shifted, held : std_logic;
begin
  process (CK) begin
    if rising_edge(CK) then
      if SE = '1' then shifted <= SI after 1 ns;
      elsif MODE2 = '1' then shifted <= DI after 1 ns;
      else shifted <= SP after 1 ns;
      end if;
    end if;
  end process;
  process (UP) begin if rising_edge(UP) then held <= shifted after 1 ns; end if; end process;
  SO <= shifted;
  DO <= held when MODE1 = '1' else DI;
  CI <= held when MODE2 = '1' else SP;
end model;

library ieee; use ieee.std_logic_1164.all;
entity BUF is port (A : in std_logic; Z : out std_logic); end BUF;
architecture model of BUF is begin Z <= A; end model;

library ieee; use ieee.std_logic_1164.all;
entity TBUF is port (A : in std_logic; Z : out std_logic); end TBUF;
architecture model of TBUF is begin Z <= A; end model;

library ieee; use ieee.std_logic_1164.all;
entity INV is port (A : in std_logic; Z : out std_logic); end INV;
architecture model of INV is begin Z <= not A; end model;

library ieee; use ieee.std_logic_1164.all;
entity AND2 is port (A, B : in std_logic; Z : out std_logic); end AND2;
architecture model of AND2 is begin Z <= A and B; end model;

library ieee; use ieee.std_logic_1164.all;
entity XOR2 is port (A, B : in std_logic; Z : out std_logic); end XOR2;
architecture model of XOR2 is begin Z <= A xor B; end model;

library ieee; use ieee.std_logic_1164.all;
entity DFFR is port (D, CK, RN : in std_logic; Q : out std_logic); end DFFR;
architecture model of DFFR is
begin
  process (CK, RN) begin
    if RN = '0' then Q <= '0' after 1 ns;
    elsif rising_edge(CK) then Q <= D after 1 ns;
    end if;
  end process;
end model;
