@ 1-1
library IEEE;
use IEEE.std_logic_1164.all;
-- use IEEE.std_logic_arith.all;

entity TAP_controller is
    port (
@ 3-5
        SHIFT_IR, CLOCK_IR, UPDATE_IR: out std_logic;
        SHIFT_DR, CLOCK_DR, UPDATE_DR: out std_logic;
        SELECT_DR, ENABLE, RESET: out std_logic
    );
end TAP_controller;

architecture BEHAVIOR of TAP_controller is

    constant TEST_RESET_ST: std_logic_vector(3 downto 0) := "0100";
    constant TEST_IDLE_ST : std_logic_vector(3 downto 0) := "1100";
    constant DR_SCAN_ST   : std_logic_vector(3 downto 0) := "0000";
    constant CAPTURE_DR_ST: std_logic_vector(3 downto 0) := "0001";
    constant SHIFT_DR_ST  : std_logic_vector(3 downto 0) := "0011";
    constant EXIT1_DR_ST  : std_logic_vector(3 downto 0) := "0010";
    constant PAUSE_DR_ST  : std_logic_vector(3 downto 0) := "0110";
    constant EXIT2_DR_ST  : std_logic_vector(3 downto 0) := "0111";
    constant UPDATE_DR_ST : std_logic_vector(3 downto 0) := "0101";
    constant IR_SCAN_ST   : std_logic_vector(3 downto 0) := "1000";
    constant CAPTURE_IR_ST: std_logic_vector(3 downto 0) := "1001";
    constant SHIFT_IR_ST  : std_logic_vector(3 downto 0) := "1011";
    constant EXIT1_IR_ST  : std_logic_vector(3 downto 0) := "1010";
    constant PAUSE_IR_ST  : std_logic_vector(3 downto 0) := "1110";
    constant EXIT2_IR_ST  : std_logic_vector(3 downto 0) := "1111";
    constant UPDATE_IR_ST : std_logic_vector(3 downto 0) := "1101";
    constant TMS_INITIAL_COUNT : std_logic_vector(4 downto 0) := "11111";

    signal  STATE: std_logic_vector(3 downto 0);
    signal  tms_count: std_logic_vector(4 downto 0);
    signal  internal_TRST : std_logic;
    signal  temp_trst_d : std_logic;
    signal  temp_trst : std_logic;
    signal  EN_reg, RESET_reg, SHIFT_IR_reg, SHIFT_DR_reg: std_logic;

begin
    process (TCK)
    begin
      if (RISING_EDGE(TCK)) then
          tms_count(4 downto 1) <= tms_count(3 downto 0);
          tms_count(0) <= TMS;
     end if;
    end process;

    temp_trst <= '1' when (tms_count = TMS_INITIAL_COUNT) else '0';

    process (TCK)
    begin
      if (FALLING_EDGE(TCK)) then
          temp_trst_d <= temp_trst ;
     end if;
    end process;

    internal_TRST <= not (temp_trst and (not (temp_trst_d)));

@ 7-7
    begin
@ 9-9
        STATE <= TEST_RESET_ST;
    else if RISING_EDGE(TCK) then
        case STATE is
        when TEST_RESET_ST =>
            if (TMS = '1') then
                STATE <= TEST_RESET_ST;
            else
                STATE <= TEST_IDLE_ST;
            end if;
        when TEST_IDLE_ST =>
            if (TMS = '1') then
                STATE <= DR_SCAN_ST;
            else
                STATE <= TEST_IDLE_ST;
            end if;
        when DR_SCAN_ST =>
            if (TMS = '1') then
                STATE <= IR_SCAN_ST;
            else
                STATE <= CAPTURE_DR_ST;
            end if;
        when CAPTURE_DR_ST =>
            if (TMS = '1') then
                STATE <= EXIT1_DR_ST;
            else
                STATE <= SHIFT_DR_ST;
            end if;
        when SHIFT_DR_ST =>
            if (TMS = '1') then
                STATE <= EXIT1_DR_ST;
            else
                STATE <= SHIFT_DR_ST;
            end if;
        when EXIT1_DR_ST =>
            if (TMS = '1') then
                STATE <= UPDATE_DR_ST;
            else
                STATE <= PAUSE_DR_ST;
            end if;
        when PAUSE_DR_ST =>
            if (TMS = '1') then
                STATE <= EXIT2_DR_ST;
            else
                STATE <= PAUSE_DR_ST;
            end if;
        when EXIT2_DR_ST =>
            if (TMS = '1') then
                STATE <= UPDATE_DR_ST;
            else
                STATE <= SHIFT_DR_ST;
            end if;
        when UPDATE_DR_ST =>
            if (TMS = '1') then
                STATE <= DR_SCAN_ST;
            else
                STATE <= TEST_IDLE_ST;
            end if;
        when IR_SCAN_ST =>
            if (TMS = '1') then
                STATE <= TEST_RESET_ST;
            else
                STATE <= CAPTURE_IR_ST;
            end if;
        when CAPTURE_IR_ST =>
            if (TMS = '1') then
                STATE <= EXIT1_IR_ST;
            else
                STATE <= SHIFT_IR_ST;
            end if;
        when SHIFT_IR_ST =>
            if (TMS = '1') then
                STATE <= EXIT1_IR_ST;
            else
                STATE <= SHIFT_IR_ST;
            end if;
        when EXIT1_IR_ST =>
            if (TMS = '1') then
                STATE <= UPDATE_IR_ST;
            else
                STATE <= PAUSE_IR_ST;
            end if;
        when PAUSE_IR_ST =>
            if (TMS = '1') then
                STATE <= EXIT2_IR_ST;
            else
                STATE <= PAUSE_IR_ST;
            end if;
        when EXIT2_IR_ST =>
            if (TMS = '1') then
                STATE <= UPDATE_IR_ST;
            else
                STATE <= SHIFT_IR_ST;
            end if;
        when UPDATE_IR_ST =>
            if (TMS = '1') then
                STATE <= DR_SCAN_ST;
            else
                STATE <= TEST_IDLE_ST;
            end if;
        when others =>
            STATE <= TEST_RESET_ST;
        end case;
    end if;
    end if;
    end process;

@ 11-11
    begin
@ 13-15
            if (STATE = TEST_RESET_ST) then
                  RESET_reg <= '0';
            else  RESET_reg <= '1';
            end if;

            if (STATE = SHIFT_DR_ST or STATE = SHIFT_IR_ST) then
                  EN_reg <= '1';
            else  EN_reg <= '0';
            end if;

            if (STATE = SHIFT_IR_ST) then
                  SHIFT_IR_reg <= '1';
            else  SHIFT_IR_reg <= '0';
            end if;

            if (STATE = SHIFT_DR_ST) then
                  SHIFT_DR_reg <= '1';
            else  SHIFT_DR_reg <= '0';
            end if;
        end if;
    end process;


    SHIFT_IR  <= SHIFT_IR_reg;
    SHIFT_DR  <= SHIFT_DR_reg;
    RESET     <= RESET_reg;
    ENABLE    <= EN_reg;
    SELECT_DR <= '1' when (STATE < "1000") else '0';

    process(STATE, TCK)
    begin
    if ((STATE = SHIFT_IR_ST or STATE = CAPTURE_IR_ST) and TCK = '0') then
          CLOCK_IR <= '0';
    else  CLOCK_IR <= '1';
    end if;
    end process;

    process(STATE, TCK)
    begin
    if ((STATE = SHIFT_DR_ST or STATE = CAPTURE_DR_ST) and TCK = '0') then
          CLOCK_DR <= '0';
    else  CLOCK_DR <= '1';
    end if;
    end process;

    process(STATE, TCK)
    begin
    if (STATE = UPDATE_IR_ST and TCK = '0') then
          UPDATE_IR <= '1';
    else  UPDATE_IR <= '0';
    end if;
    end process;

    process(STATE, TCK)
    begin
    if (STATE = UPDATE_DR_ST and TCK = '0') then
          UPDATE_DR <= '1';
    else  UPDATE_DR <= '0';
    end if;
    end process;

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity BYPASS_reg is
    port (
@ 17-20
        BYPASS_out: out std_logic
    );
end BYPASS_reg;

architecture BEHAVIOR of BYPASS_reg is
    signal BYPASS_in, BYPASS_cell: std_logic;

begin

    BYPASS_in <= SHIFT_DR and TDI;

    process
    begin
        wait until (RISING_EDGE(CLOCK_DR));
        BYPASS_cell <= BYPASS_in;
    end process;

    BYPASS_out <= BYPASS_cell;

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity IR_reg is
    port (
        TDI, SHIFT_IR, UPDATE_IR, CLOCK_IR, RESET: in std_logic;
        IR_out: out std_logic;
@ 22-22
    );
end IR_reg;

architecture BEHAVIOR of IR_reg is
@ 24-30
begin
    process
    begin
        wait until (RISING_EDGE(CLOCK_IR));
        if (SHIFT_IR = '1') then
              CAP_IR <= TDI & CAP_IR(2 downto 1);
        else  CAP_IR <= "001";
        end if;
    end process;

    process (UPDATE_IR, RESET)
    begin
        if (RESET = '0') then
              UPD_IR <= "111";
        else if(RISING_EDGE(UPDATE_IR)) then
          UPD_IR <= CAP_IR;
             end if;
        end if;
    end process;

    INST   <= UPD_IR;
    IR_out <= CAP_IR(0);

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity IR_dec is
    port (
        DR_SELECT: out std_logic_vector(0 downto 0);
@ 32-37
    );
end IR_dec;

architecture BEHAVIOR of IR_dec is
        constant SEL_BYPASS: std_logic_vector(0 downto 0) := "0";
        constant SEL_boundary: std_logic_vector(0 downto 0) := "1";
begin

    process(INST)
    begin
    case INST is
@ 41-51
    when others => DR_SELECT <= SEL_BYPASS;
    end case;
    end process;
end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity DR_mux is
    port (
        DR_out: out std_logic;
        BYPASS_out, boundary_out: in std_logic;
        DR_SELECT: in std_logic_vector(0 downto 0)
    );
end DR_mux;

architecture BEHAVIOR of DR_mux is
     constant SEL_BYPASS  : std_logic_vector(0 downto 0) := "0";
     constant SEL_boundary: std_logic_vector(0 downto 0) := "1";

begin

    process(DR_SELECT, BYPASS_out, boundary_out)
    begin
        case DR_SELECT is
        when SEL_BYPASS =>
             DR_out <= BYPASS_out;
@ 54-59
        when others =>
             DR_out <= '0';
        end case;
    end process;

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity IR_DR_mux is
    port (
        TDOIN:  out std_logic;
        IR_out, DR_out, SELECT_DR: in std_logic
    );
end IR_DR_mux;

architecture BEHAVIOR of IR_DR_mux is

begin
        TDOIN <= DR_out when (SELECT_DR = '1') else IR_out;

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity TDO_reg is
    port (
        TDO: out std_logic;
        TDOIN, TCK : in std_logic
    );
end TDO_reg;

architecture BEHAVIOR of TDO_reg is
        signal  TDO_cell: std_logic;

begin
    process
    begin
        wait until (FALLING_EDGE(TCK));
        TDO_cell <= TDOIN;
    end process;

    TDO <= TDO_cell ;

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

entity chip_tap is
    port (
        TMS: in std_logic;
        TDI: in std_logic;
        TCK: in std_logic;
        BOUNDARY_out: in std_logic;
        first_Bcell: out std_logic;
        TDO: out std_logic;
        TDO_EN: out std_logic;
        SHIFT_DR: out std_logic;
        CLOCK_DR: out std_logic;
        UPDATE_DR: out std_logic    );
end chip_tap;
architecture STRUCTURE of chip_tap is

    component  TAP_controller
    port (
@ 61-65
        SHIFT_IR, CLOCK_IR, UPDATE_IR: out std_logic;
        SHIFT_DR, CLOCK_DR, UPDATE_DR: out std_logic;
        SELECT_DR, ENABLE, RESET: out std_logic
    );
    end component;
    for all: TAP_controller use entity work.TAP_controller(BEHAVIOR);

    component  BYPASS_reg
    port (
@ 67-68
        BYPASS_out: out std_logic
    );
    end component;
    for all: BYPASS_reg use entity work.BYPASS_reg(BEHAVIOR);

    component  IR_reg
    port (
        TDI, SHIFT_IR, UPDATE_IR, CLOCK_IR, RESET: in std_logic;
        IR_out: out std_logic;
        INST: out std_logic_vector(2 downto 0)
    );
    end component;
    for all: IR_reg use entity work.IR_reg(BEHAVIOR);

    component  IR_dec
    port (
        DR_SELECT: out std_logic_vector(0 downto 0);
@ 70-73
    );
    end component;
    for all: IR_dec use entity work.IR_dec(BEHAVIOR);

    component  DR_mux
    port (
        DR_out: out std_logic;
        BYPASS_out, boundary_out: in std_logic;
        DR_SELECT: in std_logic_vector(0 downto 0)
    );
    end component;
    for all: DR_mux use entity work.DR_mux(BEHAVIOR);

    component  IR_DR_mux
    port (
        TDOIN:  out std_logic;
        IR_out, DR_out, SELECT_DR: in std_logic
    );
    end component;
    for all: IR_DR_mux use entity work.IR_DR_mux(BEHAVIOR);

    component  TDO_reg
    port (
        TDO: out std_logic;
        TDOIN, TCK : in std_logic
    );
    end component;
    for all: TDO_reg use entity work.TDO_reg(BEHAVIOR);

@ 75-77
    signal  SHIFT_DR_net, CLOCK_DR_net: std_logic;
    signal  SHIFT_IR, CLOCK_IR, UPDATE_IR: std_logic;
    signal  IR_out, DR_out, BYPASS_out: std_logic;
    signal  DR_SELECT: std_logic_vector(0 downto 0);
@ 79-80

begin

    U1: TAP_controller
        port map (
             TMS => TMS,
             TCK => TCK,
             SHIFT_IR  => SHIFT_IR,
             CLOCK_IR  => CLOCK_IR,
             UPDATE_IR => UPDATE_IR,
             SHIFT_DR => SHIFT_DR_net,
             CLOCK_DR => CLOCK_DR_net,
             UPDATE_DR => UPDATE_DR,
@ 82-82
             SELECT_DR => SELECT_DR,
             ENABLE => ENABLE
        );

    U2: BYPASS_reg
        port map (
             TDI => TDI,
             SHIFT_DR => SHIFT_DR_net,
             CLOCK_DR => CLOCK_DR_net,
             BYPASS_out => BYPASS_out
        );

    U3: IR_reg
        port map (
             TDI => TDI,
@ 84-86
             INST => INST,
             SHIFT_IR  => SHIFT_IR,
             CLOCK_IR  => CLOCK_IR,
             UPDATE_IR => UPDATE_IR,
             IR_out => IR_out
        );

    U4: IR_dec
        port map (
             INST => INST,
             DR_SELECT => DR_SELECT
        );

    U5: DR_mux
        port map (
             BYPASS_out => BYPASS_out,
@ 88-91
             DR_SELECT => DR_SELECT,
             DR_out => DR_out
        );

    U6: IR_DR_mux
        port map (
             IR_out => IR_out,
             DR_out => DR_out,
             SELECT_DR => SELECT_DR,
             TDOIN => TDOIN
        );

    U7: TDO_reg
        port map (
             TDO => TDO,
             TCK => TCK,
             TDOIN => TDOIN
        );

    first_Bcell <= TDI;
    SHIFT_DR <= SHIFT_DR_net;
    CLOCK_DR <= CLOCK_DR_net;
    TDO_EN <= ENABLE;

end STRUCTURE;
