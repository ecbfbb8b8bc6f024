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
@ 279-280
@ 289-289
    process
@ 291-293
        wait until (RISING_EDGE(CLOCK_DR));
        if (SHIFT_DR = '1') then
@ 296-296
            ID_cell <= "00010010001101000101011001111001";
@ 300-301
@ 314-314
@ 323-323
    process
@ 325-332
        wait until (RISING_EDGE(CLOCK_IR));
        if (SHIFT_IR = '1') then
              CAP_IR <= TDI & CAP_IR(3 downto 1);
        else  CAP_IR <= "0001";
        end if;
@ 335-335
    process (UPDATE_IR, RESET)
@ 338-343
              UPD_IR <= "0011";
        else if(RISING_EDGE(UPDATE_IR)) then
          UPD_IR <= CAP_IR;
             end if;
@ 359-358
        HIGHZ: out std_logic;
@ 361-360
        MODE2: out std_logic;
@ 378-378
    MODE1 <= '1' when ( INST = "0000" ) or ( INST = "1000" ) or ( INST = "0010" ) or ( INST = "0110" ) or ( INST = "0111" )
                else '0';
    MODE2 <= '1' when ( INST = "0010" )
@ 384-383
    HIGHZ <= '1' when ( INST = "0101" )
                else '0';
@ 486-486
        TDOIN, TCK, ENABLE: in std_logic
@ 500-500
    TDO <= TDO_cell when (ENABLE = '1') else 'Z';
@ 514-514
@ 517-517
@ 520-520
@ 524-523
        MODE2: out std_logic;
@ 527-526
        HIGHZ: out std_logic;
@ 528-527
        EXTRA1: out std_logic;
        EXTRA2: out std_logic;
@ 551-551
@ 560-560
@ 570-571
@ 581-580
        HIGHZ: out std_logic;
@ 583-582
        MODE2: out std_logic;
@ 613-613
        TDOIN, TCK, ENABLE: in std_logic
@ 651-651
@ 659-659
@ 671-670
             HIGHZ => HIGHZ,
@ 673-672
             MODE2 => MODE2,
@ 684-684
@ 687-687
@ 716-716
             TDOIN => TDOIN,
             ENABLE => ENABLE
@ 723-724
