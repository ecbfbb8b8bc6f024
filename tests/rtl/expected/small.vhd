@ 7-7
        TMS, TCK: in std_logic;
@ 61-61
    process (TCK, internal_TRST)
@ 63-63
    if (internal_TRST = '0') then
@ 170-170
    process (TCK)
@ 172-177
      if (FALLING_EDGE(TCK)) then 
@ 198-198
@ 208-208
    process(STATE, TCK)
@ 210-212
    if ((STATE = SHIFT_IR_ST or STATE = CAPTURE_IR_ST) and TCK = '0') then
          CLOCK_IR <= '0';
    else  CLOCK_IR <= '1';
@ 216-216
    process(STATE, TCK)
@ 218-220
    if ((STATE = SHIFT_DR_ST or STATE = CAPTURE_DR_ST) and TCK = '0') then
          CLOCK_DR <= '0';
    else  CLOCK_DR <= '1';
@ 224-224
    process(STATE, TCK)
@ 226-226
    if (STATE = UPDATE_IR_ST and TCK = '0') then
@ 232-232
    process(STATE, TCK)
@ 234-234
    if (STATE = UPDATE_DR_ST and TCK = '0') then
@ 248-248
@ 260-260
    process
@ 262-266
        wait until (RISING_EDGE(CLOCK_DR));
        BYPASS_cell <= BYPASS_in;
@ 276-310
@ 314-314
@ 316-316
        INST: out std_logic_vector(2 downto 0)
@ 321-321
    signal CAP_IR, UPD_IR: std_logic_vector(2 downto 0);
@ 323-323
    process
@ 325-332
        wait until (RISING_EDGE(CLOCK_IR));
        if (SHIFT_IR = '1') then
              CAP_IR <= TDI & CAP_IR(2 downto 1);
        else  CAP_IR <= "001";
        end if;
@ 335-335
    process (UPDATE_IR, RESET)
@ 338-343
              UPD_IR <= "111";
        else if(RISING_EDGE(UPDATE_IR)) then
          UPD_IR <= CAP_IR;
             end if;
@ 357-366
        DR_SELECT: out std_logic_vector(0 downto 0);
        INST: in std_logic_vector(2 downto 0)
@ 371-376
        constant SEL_BYPASS: std_logic_vector(0 downto 0) := "0";
        constant SEL_boundary: std_logic_vector(0 downto 0) := "1";
@ 378-394
@ 399-414
    when "000" => DR_SELECT <= SEL_boundary;
    when "001" => DR_SELECT <= SEL_boundary;
    when "111" => DR_SELECT <= SEL_BYPASS;
@ 426-427
        BYPASS_out, boundary_out: in std_logic;
        DR_SELECT: in std_logic_vector(0 downto 0)
@ 432-437
     constant SEL_BYPASS  : std_logic_vector(0 downto 0) := "0";
     constant SEL_boundary: std_logic_vector(0 downto 0) := "1";
@ 441-441
    process(DR_SELECT, BYPASS_out, boundary_out)
@ 446-455
        when SEL_boundary =>
             DR_out <= boundary_out;
@ 512-512
@ 514-514
@ 520-534
        UPDATE_DR: out std_logic    );
@ 540-540
        TMS, TCK: in std_logic;
@ 551-551
@ 560-560
@ 562-562
        INST: out std_logic_vector(2 downto 0)
@ 567-576
@ 579-588
        DR_SELECT: out std_logic_vector(0 downto 0);
        INST: in std_logic_vector(2 downto 0)
@ 596-597
        BYPASS_out, boundary_out: in std_logic;
        DR_SELECT: in std_logic_vector(0 downto 0)
@ 618-618
    signal  RESET, SELECT_DR, ENABLE, TDOIN: std_logic;
@ 621-626
    signal  IR_out, DR_out, BYPASS_out: std_logic;
    signal  DR_SELECT: std_logic_vector(0 downto 0);
    signal  INST: std_logic_vector(2 downto 0);
@ 634-634
@ 641-641
             RESET => RESET,
@ 651-651
@ 658-659
             RESET => RESET,
@ 670-677
@ 681-692
    U5: DR_mux
@ 695-699
             boundary_out => BOUNDARY_out,
@ 704-704
    U6: IR_DR_mux
@ 712-712
    U7: TDO_reg
@ 722-722
@ 724-731
