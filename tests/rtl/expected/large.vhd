@ 1-1
@ 8-8
        TMS, TCK, TRST: in std_logic;
@ 62-62
    process (TCK, TRST, internal_TRST)
@ 64-64
    if (TRST = '0' or internal_TRST = '0') then
@ 171-171
    process (TCK, TRST)
@ 173-173
        if (TRST = '0') then
            RESET_reg    <= '0';
            EN_reg       <= '0';
            SHIFT_IR_reg <= '0';
            SHIFT_DR_reg <= '0';
      else if (FALLING_EDGE(TCK)) then 
@ 194-193
        end if;
@ 242-242
        TDI, SHIFT_DR, CLOCK_DR: in std_logic;
@ 267-266
entity ID_reg is
    port (
        TDI, SHIFT_DR, CLOCK_DR, IDMODE: in std_logic;
        IDCODE_out: out std_logic
    );
end ID_reg;

architecture BEHAVIOR of ID_reg is
    signal ID_cell: std_logic_vector(31 downto 0);

begin
    process
    begin
        wait until (RISING_EDGE(CLOCK_DR));
        if (SHIFT_DR = '1') then
            ID_cell <= TDI & ID_cell(31 downto 1);
        elsif (IDMODE = '1') then
            ID_cell <= "00010010001101000101011001111001";
        else
            ID_cell <= "11001010111111101011101010111110";
        end if;
    end process;

    IDCODE_out <= ID_cell(0);

end BEHAVIOR;

library IEEE;
use IEEE.std_logic_1164.all;

@ 271-271
        INST: out std_logic_vector(3 downto 0)
@ 276-276
    signal CAP_IR, UPD_IR: std_logic_vector(3 downto 0);
@ 282-283
              CAP_IR <= TDI & CAP_IR(3 downto 1);
        else  CAP_IR <= "0001";
@ 290-290
              UPD_IR <= "0011";
@ 307-308
        DR_SELECT: out std_logic_vector(2 downto 0);
        CHIP_TEST: out std_logic;
        HIGHZ: out std_logic;
        IDMODE: out std_logic;
        MODE1: out std_logic;
        MODE2: out std_logic;
        MODE3: out std_logic;
        velmora_atpg_mode: out std_logic;
        en_a: out std_logic;
        en_b: out std_logic_vector(2 downto 0);
        en_c: out std_logic;
        INST: in std_logic_vector(3 downto 0)
@ 313-314
        constant SEL_BYPASS: std_logic_vector(2 downto 0) := "000";
        constant SEL_BOUNDARY: std_logic_vector(2 downto 0) := "001";
        constant SEL_IDCODE: std_logic_vector(2 downto 0) := "010";
        constant SEL_USERCODE: std_logic_vector(2 downto 0) := "011";
        constant SEL_MYREG: std_logic_vector(2 downto 0) := "100";
        constant SEL_USERDR: std_logic_vector(2 downto 0) := "101";
@ 316-315
    MODE1 <= '1' when ( INST = "0000" ) or ( INST = "1000" ) or ( INST = "0010" ) or ( INST = "0110" ) or ( INST = "0111" )
                else '0';
    MODE2 <= '1' when ( INST = "0010" )
                else '0';
    MODE3 <= '1' when ( INST = "0000" ) or ( INST = "1000" ) or ( INST = "0001" ) or ( INST = "0110" )
                else '0';
    IDMODE <= '1' when ( INST = "0011" ) or ( INST = "1011" )
                else '0';
    HIGHZ <= '1' when ( INST = "0101" )
                else '0';
    CHIP_TEST <= '1' when ( INST = "1001" )
                else '0';
    velmora_atpg_mode <= '1' when ( INST = "1010" )
                else '0';
    en_a <= '1' when ( INST = "1100" ) or ( INST = "1101" )
                else '0';
    en_b <=   "101" when  INST = "1100" else
                "010" when  INST = "1101" else
               "000";
    en_c <= '1' when ( INST = "1100" )
                else '0';
@ 320-320
    when "0000" => DR_SELECT <= SEL_BOUNDARY;
    when "1000" => DR_SELECT <= SEL_BOUNDARY;
    when "0001" => DR_SELECT <= SEL_BOUNDARY;
    when "0010" => DR_SELECT <= SEL_BOUNDARY;
    when "0011" => DR_SELECT <= SEL_IDCODE;
    when "1011" => DR_SELECT <= SEL_IDCODE;
    when "0100" => DR_SELECT <= SEL_USERCODE;
    when "1111" => DR_SELECT <= SEL_BYPASS;
    when "1110" => DR_SELECT <= SEL_BYPASS;
    when "0101" => DR_SELECT <= SEL_BYPASS;
    when "0110" => DR_SELECT <= SEL_BYPASS;
    when "0111" => DR_SELECT <= SEL_MYREG;
    when "1001" => DR_SELECT <= SEL_MYREG;
    when "1010" => DR_SELECT <= SEL_BYPASS;
    when "1100" => DR_SELECT <= SEL_USERDR;
    when "1101" => DR_SELECT <= SEL_USERDR;
@ 332-333
        BYPASS_out, BOUNDARY_out, IDCODE_out, USERCODE_out, MYREG_out, USERDR_out: in std_logic;
        DR_SELECT: in std_logic_vector(2 downto 0)
@ 338-339
     constant SEL_BYPASS  : std_logic_vector(2 downto 0) := "000";
     constant SEL_BOUNDARY: std_logic_vector(2 downto 0) := "001";
     constant SEL_IDCODE  : std_logic_vector(2 downto 0) := "010";
     constant SEL_USERCODE: std_logic_vector(2 downto 0) := "011";
     constant SEL_MYREG   : std_logic_vector(2 downto 0) := "100";
     constant SEL_USERDR  : std_logic_vector(2 downto 0) := "101";
@ 343-343
    process(DR_SELECT, BYPASS_out, BOUNDARY_out, IDCODE_out, USERCODE_out, MYREG_out, USERDR_out)
@ 348-348
        when SEL_BOUNDARY =>
             DR_out <= BOUNDARY_out;
        when SEL_IDCODE =>
             DR_out <= IDCODE_out;
        when SEL_USERCODE =>
             DR_out <= USERCODE_out;
        when SEL_MYREG =>
             DR_out <= MYREG_out;
        when SEL_USERDR =>
             DR_out <= USERDR_out;
@ 379-379
        TDOIN, TCK, ENABLE: in std_logic
@ 393-393
    TDO <= TDO_cell when (ENABLE = '1') else 'Z';
@ 405-404
        TRST: in std_logic;
@ 408-408
@ 411-411
        UPDATE_DR: out std_logic;
        RESET: out std_logic;
        MODE1: out std_logic;
        MODE2: out std_logic;
        MODE3: out std_logic;
        velmora_test_mode: out std_logic;
        velmora_scan_mode: out std_logic;
        HIGHZ: out std_logic;
        CHIP_TEST: out std_logic;
        EXTRA1: out std_logic;
        EXTRA2: out std_logic;
        MYREG_in: out std_logic;
        MYREG_out: in std_logic;
        USERDR_in: out std_logic;
        USERDR_out: in std_logic;
        en_a: out std_logic;
        en_b: out std_logic_vector(2 downto 0);
        en_c: out std_logic    );
@ 417-417
        TMS, TCK, TRST: in std_logic;
@ 427-427
        TDI, SHIFT_DR, CLOCK_DR: in std_logic;
@ 437-437
        INST: out std_logic_vector(3 downto 0)
@ 442-441
    component  ID_reg
    port (
        TDI, SHIFT_DR, CLOCK_DR, IDMODE: in std_logic;
        IDCODE_out: out std_logic
    );
    end component;
    for all: ID_reg use entity work.ID_reg(BEHAVIOR);

@ 444-445
        DR_SELECT: out std_logic_vector(2 downto 0);
        CHIP_TEST: out std_logic;
        HIGHZ: out std_logic;
        IDMODE: out std_logic;
        MODE1: out std_logic;
        MODE2: out std_logic;
        MODE3: out std_logic;
        velmora_atpg_mode: out std_logic;
        en_a: out std_logic;
        en_b: out std_logic_vector(2 downto 0);
        en_c: out std_logic;
        INST: in std_logic_vector(3 downto 0)
@ 453-454
        BYPASS_out, BOUNDARY_out, IDCODE_out, USERCODE_out, MYREG_out, USERDR_out: in std_logic;
        DR_SELECT: in std_logic_vector(2 downto 0)
@ 470-470
        TDOIN, TCK, ENABLE: in std_logic
@ 475-475
    signal  RESET_net, SELECT_DR, ENABLE, TDOIN: std_logic;
@ 478-480
    signal  IR_out, DR_out, BYPASS_out, IDCODE_out, USERCODE_out: std_logic;
    signal  IDMODE: std_logic;
    signal  velmora_atpg_mode: std_logic;
    signal  en_c_net: std_logic;
    signal  DR_SELECT: std_logic_vector(2 downto 0);
    signal  INST: std_logic_vector(3 downto 0);
@ 488-487
             TRST => TRST,
@ 494-494
             RESET => RESET_net,
@ 510-510
             RESET => RESET_net,
@ 521-520
             CHIP_TEST => CHIP_TEST,
             HIGHZ => HIGHZ,
             IDMODE => IDMODE,
             MODE1 => MODE1,
             MODE2 => MODE2,
             MODE3 => MODE3,
             velmora_atpg_mode => velmora_atpg_mode,
             en_a => en_a,
             en_b => en_b,
             en_c => en_c_net,
@ 524-524
    U5: ID_reg
        port map (
             TDI => TDI,
             SHIFT_DR => SHIFT_DR_net,
             CLOCK_DR => CLOCK_DR_net,
             IDMODE => IDMODE,
             IDCODE_out => IDCODE_out
        );

    U6: DR_mux
@ 527-527
             BOUNDARY_out => BOUNDARY_out,
             IDCODE_out => IDCODE_out,
             USERCODE_out => USERCODE_out,
             MYREG_out => MYREG_out,
             USERDR_out => USERDR_out,
@ 532-532
    U7: IR_DR_mux
@ 540-540
    U8: TDO_reg
@ 544-544
             TDOIN => TDOIN,
             ENABLE => ENABLE
@ 550-550
    RESET <= RESET_net;
    velmora_test_mode <= velmora_atpg_mode;
    velmora_scan_mode <= velmora_atpg_mode and TMS;
    USERCODE_out <= '0';
    MYREG_in <= TDI;
    USERDR_in <= TDI;
    en_c <= en_c_net and SHIFT_DR_net;

