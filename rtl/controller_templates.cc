// The TAP controller: the sixteen states of IEEE 1149.1 with their outputs, in both languages.
//
// The two texts are twins, not translations: the Verilog counts four high samples of TMS and tests the fifth
// at the edge itself, the VHDL counts five and pulses an asynchronous reset.
#include "rtl/templates.hh"

// clang-format off

const RTL_TEMPLATE TAP_CONTROLLER_LIBRARY_VHDL = {"", "", R"(
       |library IEEE;
       |use IEEE.std_logic_1164.all;
       |-- use IEEE.std_logic_arith.all;
       |
)"};

const TAP_PART TAP_CONTROLLER = {.name = "TAP_controller", .verilog = {"STU", "WXYZ", R"(
       |
       |module  TAP_controller ( <TMS>,
       |                         <TCK>,
    T  |                         <TRST>,
       |                         SHIFT_IR,
       |                         CLOCK_IR,
       |                         UPDATE_IR,
       |                         <SHIFT_DR>,
       |                         <CLOCK_DR>,
    U  |                         <UPDATE_DR>,
       |                         <RESET>,
       |                         SELECT_DR,
       |                         ENABLE );
       |
       |        output SHIFT_IR;
       |        output CLOCK_IR;
       |        output UPDATE_IR;
       |        output <SHIFT_DR>;
       |        output <CLOCK_DR>;
    U  |        output <UPDATE_DR>;
       |        output <RESET>;
       |        output SELECT_DR;
       |        output ENABLE;
       |
       |        input <TMS>;
       |        input <TCK>;
    T  |        input <TRST>;
       |
       |        reg EN_reg;
       |        reg RESET_reg;
       |        reg SHIFT_IR_reg;
       |        reg SHIFT_DR_reg;
       |        reg[3:0] tms_count;
       |        reg[3:0] STATE;
       |
    X  |        `define  <STATE18> 4'b<CODE>
       |
    Y  |        `define  <STATE18> 4'b<CODE>
       |
    Z  |        `define  <STATE18> 4'b<CODE>
       |
       |        always @(posedge <TCK>)
       |            tms_count <= {tms_count[2:0],<TMS>} ;
       |
       |        wire internal_TRST1 = (tms_count[0] == 1) &&
       |                              (tms_count[1] == 1) &&
       |                              (tms_count[2] == 1) &&
       |                              (tms_count[3] == 1);
       |
       |        wire internal_TRST = ~internal_TRST1;
       |
    T  |        always @(posedge <TCK> or negedge <TRST>)
    T  |            if (<TRST> == 0 )
    T  |              STATE <= `TEST_LOGIC_RESET;
    T  |            else if (<TMS> && internal_TRST == 0)
    T  |              STATE <= `TEST_LOGIC_RESET;
    T  |            else
    t  |        always @(posedge <TCK>)
    t  |            if (<TMS> && internal_TRST == 0)
    t  |            STATE <= `TEST_LOGIC_RESET;
    t  |          else
       |            case (STATE)
       |
    W  |            `<STATE>:
    W  |              STATE <= (<TMS>) ? `<IF1>: `<IF0>;
       |
       |            endcase
       |
    T  |        always @(negedge <TCK> or negedge <TRST>)
    t  |        always @(negedge <TCK>)
       |        begin
    T  |            if (<TRST> == 0)
    T  |            begin
    T  |                RESET_reg    <= 0;
    T  |                EN_reg       <= 0;
    T  |                SHIFT_IR_reg <= 0;
    T  |                SHIFT_DR_reg <= 0;
    T  |            end
    T  |            else begin
    T  |                RESET_reg    <= (STATE == `TEST_LOGIC_RESET) ? 0 : 1;
    T  |                EN_reg       <= (STATE == `SHIFT_DR |
    T  |                                STATE == `SHIFT_IR) ? 1 : 0;
    T  |                SHIFT_IR_reg <= (STATE == `SHIFT_IR) ? 1 : 0;
    T  |                SHIFT_DR_reg <= (STATE == `SHIFT_DR) ? 1 : 0;
    T  |            end
    t  |            RESET_reg    <= (STATE == `TEST_LOGIC_RESET) ? 0 : 1;
    t  |            EN_reg       <= (STATE == `SHIFT_DR |
    t  |                            STATE == `SHIFT_IR) ? 1 : 0;
    t  |            SHIFT_IR_reg <= (STATE == `SHIFT_IR) ? 1 : 0;
    t  |            SHIFT_DR_reg <= (STATE == `SHIFT_DR) ? 1 : 0;
       |        end
       |
       |        assign  SHIFT_IR = SHIFT_IR_reg;
       |        assign  <SHIFT_DR> = SHIFT_DR_reg;
       |        assign  <RESET> = RESET_reg;
       |        assign  ENABLE    = EN_reg;
       |        assign  SELECT_DR = (STATE < 8) ? 1 : 0;
    s  |        assign  CLOCK_IR = !(STATE == `SHIFT_IR || STATE == `CAPTURE_IR)
    s  |                           | <TCK>;
    s  |        assign  <CLOCK_DR> = !(STATE == `SHIFT_DR || STATE == `CAPTURE_DR)
    s  |                           | <TCK>;
    s  |        assign  UPDATE_IR = (STATE == `UPDATE_IR) & (~<TCK>);
    Us |        assign  <UPDATE_DR> = (STATE == `UPDATE_DR) & (~<TCK>);
    Us |
    S  |        assign  #1 CLOCK_IR = ((STATE == `SHIFT_IR) || (STATE == `CAPTURE_IR));
    S  |        assign  #1 <CLOCK_DR> = ((STATE == `SHIFT_DR) || (STATE == `CAPTURE_DR));
    S  |        assign  UPDATE_IR = (STATE == `UPDATE_IR);
    SU |        assign  <UPDATE_DR> = (STATE == `UPDATE_DR);
       |endmodule
       |
       |
)"}, .vhdl_ports = {"TU", "", R"(
       |    port (
    T  |        <TMS>, <TCK>, <TRST>: in std_logic;
    t  |        <TMS>, <TCK>: in std_logic;
       |        SHIFT_IR, CLOCK_IR, UPDATE_IR: out std_logic;
    U  |        <SHIFT_DR>, <CLOCK_DR>, <UPDATE_DR>: out std_logic;
    u  |        <SHIFT_DR>, <CLOCK_DR>: out std_logic;
       |        SELECT_DR, ENABLE, <RESET>: out std_logic
       |    );
)"}, .vhdl_body = {"STU", "W", R"(
       |
       |architecture BEHAVIOR of TAP_controller is
       |
    W  |    constant <VSTATE13>: std_logic_vector(3 downto 0) := "<CODE>";
       |    constant TMS_INITIAL_COUNT : std_logic_vector(4 downto 0) := "11111";
       |
       |    signal  STATE: std_logic_vector(3 downto 0);
       |    signal  tms_count: std_logic_vector(4 downto 0);
       |    signal  internal_TRST : std_logic;
       |    signal  temp_trst_d : std_logic;
       |    signal  temp_trst : std_logic;
       |    signal  EN_reg, RESET_reg, SHIFT_IR_reg, SHIFT_DR_reg: std_logic;
       |
       |begin
       |    process (<TCK>)
       |    begin
       |      if (RISING_EDGE(<TCK>)) then
       |          tms_count(4 downto 1) <= tms_count(3 downto 0);
       |          tms_count(0) <= <TMS>;
       |     end if;
       |    end process;
       |
       |    temp_trst <= '1' when (tms_count = TMS_INITIAL_COUNT) else '0';
       |
       |    process (<TCK>)
       |    begin
       |      if (FALLING_EDGE(<TCK>)) then
       |          temp_trst_d <= temp_trst ;
       |     end if;
       |    end process;
       |
       |    internal_TRST <= not (temp_trst and (not (temp_trst_d)));
       |
    T  |    process (<TCK>, <TRST>, internal_TRST)
    t  |    process (<TCK>, internal_TRST)
       |    begin
    T  |    if (<TRST> = '0' or internal_TRST = '0') then
    t  |    if (internal_TRST = '0') then
       |        STATE <= TEST_RESET_ST;
       |    else if RISING_EDGE(<TCK>) then
       |        case STATE is
    W  |        when <VSTATE> =>
    W  |            if (<TMS> = '1') then
    W  |                STATE <= <VIF1>;
    W  |            else
    W  |                STATE <= <VIF0>;
    W  |            end if;
       |        when others =>
       |            STATE <= TEST_RESET_ST;
       |        end case;
       |    end if;
       |    end if;
       |    end process;
       |
    T  |    process (<TCK>, <TRST>)
    t  |    process (<TCK>)
       |    begin
    T  |        if (<TRST> = '0') then
    T  |            RESET_reg    <= '0';
    T  |            EN_reg       <= '0';
    T  |            SHIFT_IR_reg <= '0';
    T  |            SHIFT_DR_reg <= '0';
    T  |      else if (FALLING_EDGE(<TCK>)) then 
    t  |      if (FALLING_EDGE(<TCK>)) then 
       |            if (STATE = TEST_RESET_ST) then
       |                  RESET_reg <= '0';
       |            else  RESET_reg <= '1';
       |            end if;
       |
       |            if (STATE = SHIFT_DR_ST or STATE = SHIFT_IR_ST) then
       |                  EN_reg <= '1';
       |            else  EN_reg <= '0';
       |            end if;
       |
       |            if (STATE = SHIFT_IR_ST) then
       |                  SHIFT_IR_reg <= '1';
       |            else  SHIFT_IR_reg <= '0';
       |            end if;
       |
       |            if (STATE = SHIFT_DR_ST) then
       |                  SHIFT_DR_reg <= '1';
       |            else  SHIFT_DR_reg <= '0';
       |            end if;
    T  |        end if;
       |        end if;
       |    end process;
       |
       |
       |    SHIFT_IR  <= SHIFT_IR_reg;
       |    <SHIFT_DR>  <= SHIFT_DR_reg;
       |    <RESET>     <= RESET_reg;
       |    ENABLE    <= EN_reg;
       |    SELECT_DR <= '1' when (STATE < "1000") else '0';
       |
    s  |    process(STATE, <TCK>)
    S  |    process(STATE)
       |    begin
    s  |    if ((STATE = SHIFT_IR_ST or STATE = CAPTURE_IR_ST) and <TCK> = '0') then
    s  |          CLOCK_IR <= '0';
    s  |    else  CLOCK_IR <= '1';
    S  |    if (STATE = SHIFT_IR_ST or STATE = CAPTURE_IR_ST) then
    S  |          CLOCK_IR <= '1';
    S  |    else  CLOCK_IR <= '0';
       |    end if;
       |    end process;
       |
    s  |    process(STATE, <TCK>)
    S  |    process(STATE)
       |    begin
    s  |    if ((STATE = SHIFT_DR_ST or STATE = CAPTURE_DR_ST) and <TCK> = '0') then
    s  |          <CLOCK_DR> <= '0';
    s  |    else  <CLOCK_DR> <= '1';
    S  |    if (STATE = SHIFT_DR_ST or STATE = CAPTURE_DR_ST) then
    S  |          <CLOCK_DR> <= '1';
    S  |    else  <CLOCK_DR> <= '0';
       |    end if;
       |    end process;
       |
    s  |    process(STATE, <TCK>)
    S  |    process(STATE)
       |    begin
    s  |    if (STATE = UPDATE_IR_ST and <TCK> = '0') then
    S  |    if (STATE = UPDATE_IR_ST) then
       |          UPDATE_IR <= '1';
       |    else  UPDATE_IR <= '0';
       |    end if;
       |    end process;
       |
    Us |    process(STATE, <TCK>)
    US |    process(STATE)
    U  |    begin
    Us |    if (STATE = UPDATE_DR_ST and <TCK> = '0') then
    US |    if (STATE = UPDATE_DR_ST) then
    U  |          <UPDATE_DR> <= '1';
    U  |    else  <UPDATE_DR> <= '0';
    U  |    end if;
    U  |    end process;
    U  |
       |end BEHAVIOR;
       |
)"}};
