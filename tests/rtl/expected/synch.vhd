@ 7-7
        TMS, TCK: in std_logic;
@ 9-9
        SHIFT_DR, CLOCK_DR: out std_logic;
@ 61-61
    process (TCK, internal_TRST)
@ 63-63
    if (internal_TRST = '0') then
@ 170-170
    process (TCK)
@ 172-177
      if (FALLING_EDGE(TCK)) then 
@ 198-198
@ 232-239
@ 278-278
        TDI, SHIFT_DR, CLOCK_DR: in std_logic;
@ 295-296
@ 298-298
            ID_cell <= IDCODE;
@ 316-316
        INST: out std_logic_vector(2 downto 0)
@ 321-321
    signal CAP_IR, UPD_IR: std_logic_vector(2 downto 0);
@ 328-329
            CAP_IR <= TDI & CAP_IR(2 downto 1);
          else  CAP_IR <= "001";
@ 338-338
            UPD_IR <= "010";
@ 357-366
        DR_SELECT: out std_logic_vector(1 downto 0);
        INST: in std_logic_vector(2 downto 0)
@ 371-376
        constant SEL_BYPASS: std_logic_vector(1 downto 0) := "00";
        constant SEL_boundary: std_logic_vector(1 downto 0) := "01";
        constant SEL_idcode: std_logic_vector(1 downto 0) := "10";
@ 378-394
@ 399-414
    when "000" => DR_SELECT <= SEL_boundary;
    when "001" => DR_SELECT <= SEL_boundary;
    when "111" => DR_SELECT <= SEL_BYPASS;
    when "010" => DR_SELECT <= SEL_idcode;
@ 426-427
        BYPASS_out, boundary_out, idcode_out: in std_logic;
        DR_SELECT: in std_logic_vector(1 downto 0)
@ 432-437
     constant SEL_BYPASS  : std_logic_vector(1 downto 0) := "00";
     constant SEL_boundary: std_logic_vector(1 downto 0) := "01";
     constant SEL_idcode  : std_logic_vector(1 downto 0) := "10";
@ 441-441
    process(DR_SELECT, BYPASS_out, boundary_out, idcode_out)
@ 446-455
        when SEL_boundary =>
             DR_out <= boundary_out;
        when SEL_idcode =>
             DR_out <= idcode_out;
@ 512-512
@ 520-534
        BCELL_TCK: out std_logic    );
@ 540-540
        TMS, TCK: in std_logic;
@ 542-542
        SHIFT_DR, CLOCK_DR: out std_logic;
@ 562-562
        INST: out std_logic_vector(2 downto 0)
@ 569-569
        TDI, SHIFT_DR, CLOCK_DR: in std_logic;
@ 579-588
        DR_SELECT: out std_logic_vector(1 downto 0);
        INST: in std_logic_vector(2 downto 0)
@ 596-597
        BYPASS_out, boundary_out, idcode_out: in std_logic;
        DR_SELECT: in std_logic_vector(1 downto 0)
@ 618-618
    signal  RESET, SELECT_DR, ENABLE, TDOIN: std_logic;
@ 621-626
    signal  IR_out, DR_out, BYPASS_out, IDCODE_out: std_logic;
    signal  DR_SELECT: std_logic_vector(1 downto 0);
    signal  INST: std_logic_vector(2 downto 0);
@ 634-634
@ 640-641
             RESET => RESET,
@ 658-658
             RESET => RESET,
@ 670-677
@ 688-688
@ 695-699
             boundary_out => BOUNDARY_out,
             idcode_out => IDCODE_out,
@ 722-723
    TDO_EN <= not ENABLE;
@ 725-731
