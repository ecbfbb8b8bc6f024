// The instruction register and its decoder, in both languages.
#include "rtl/templates.hh"

// clang-format off

const TAP_PART IR_REG = {.name = "IR_reg", .verilog = {"S", "", R"(
      |
      |module IR_reg ( IR_out,
      |                INST,
    S |                <TCK>,
      |                <TDI>,
      |                SHIFT_IR,
      |                CLOCK_IR,
      |                UPDATE_IR,
      |                <RESET> );
      |
      |        output IR_out;
      |        output[<N-1>:0] INST;
      |
    S |        input <TCK>;
      |        input <TDI>;
      |        input SHIFT_IR;
      |        input UPDATE_IR;
      |        input CLOCK_IR;
      |        input <RESET>;
      |
      |        reg[<N-1>:0] CAP_IR;
      |        reg[<N-1>:0] UPD_IR;
      |
    s |        always @(posedge CLOCK_IR)
    s |            CAP_IR <= (SHIFT_IR) ? {<TDI>, CAP_IR[<N-1>:1]} : <N>'b<CAPTURE>;
    S |        always @(posedge <TCK>)
    S |        begin
    S |            if (CLOCK_IR)
    S |                CAP_IR <= (SHIFT_IR) ? {<TDI>, CAP_IR[<N-1>:1]} : <N>'b<CAPTURE>;
      |
    s |        always @(posedge UPDATE_IR or negedge <RESET>)
    s |            if (<RESET> == 0)  UPD_IR <= <N>'b<RESET_OP>;
    s |            else  UPD_IR <= CAP_IR;
    S |        end
    S |        always @(negedge <TCK> or negedge <RESET>)
    S |        begin
    S |            if (<RESET> == 0)
    S |                UPD_IR <= <N>'b<RESET_OP>;
    S |            else if (UPDATE_IR)
    S |                UPD_IR <= CAP_IR;
      |
    S |        end
      |        assign  INST   = UPD_IR;
      |        assign  IR_out = CAP_IR[0];
      |
      |endmodule
      |
)"}, .vhdl_ports = {"S", "", R"(
      |    port (
      |        <TDI>, SHIFT_IR, UPDATE_IR, CLOCK_IR, <RESET>: in std_logic;
    S |        <TCK>: in std_logic;
      |        IR_out: out std_logic;
      |        INST: out std_logic_vector(<N-1> downto 0)
      |    );
)"}, .vhdl_body = {"S", "", R"(
      |
      |architecture BEHAVIOR of IR_reg is
      |    signal CAP_IR, UPD_IR: std_logic_vector(<N-1> downto 0);
      |begin
    s |    process
    S |    process (<TCK>)
      |    begin
    s |        wait until (RISING_EDGE(CLOCK_IR));
    s |        if (SHIFT_IR = '1') then
    s |              CAP_IR <= <TDI> & CAP_IR(<N-1> downto 1);
    s |        else  CAP_IR <= "<CAPTURE>";
    s |        end if;
    S |      if(RISING_EDGE(<TCK>)) then
    S |        if (CLOCK_IR = '1') then
    S |         if (SHIFT_IR = '1') then
    S |            CAP_IR <= <TDI> & CAP_IR(<N-1> downto 1);
    S |          else  CAP_IR <= "<CAPTURE>";
    S |         end if;
    S |       end if;
    S |     end if;
      |    end process;
      |
    s |    process (UPDATE_IR, <RESET>)
    S |    process (UPDATE_IR, <RESET>, <TCK>)
      |    begin
      |        if (<RESET> = '0') then
    s |              UPD_IR <= "<RESET_OP>";
    s |        else if(RISING_EDGE(UPDATE_IR)) then
    s |          UPD_IR <= CAP_IR;
    s |             end if;
    S |            UPD_IR <= "<RESET_OP>";
    S |        else if(FALLING_EDGE(<TCK>)) then
    S |          if(UPDATE_IR = '1') then
    S |            UPD_IR <= CAP_IR;
    S |          end if;
    S |        end if;
      |        end if;
      |    end process;
      |
      |    INST   <= UPD_IR;
      |    IR_out <= CAP_IR(0);
      |
      |end BEHAVIOR;
      |
)"}};

const TAP_PART IR_DEC = {.name = "IR_dec", .verilog = {"I", "=BFQV", R"(
      |
      |module IR_dec ( DR_SELECT,
    Q |                <PORT><PORT_END>
      |
      |        output[<L-1>:0] DR_SELECT;
    V |        output<RANGE> <PORT>;
      |
      |        input[<N-1>:0] INST;
      |
    B |        `define  SEL_<REG12> <L>'b<CODE>
      |
    = |        assign  <PORT> =<TERMS>;<GAP>
      |
    F |        <LEAD>(INST == <N>'b<OPCODE>) ? `SEL_<REG><GAP>:
      |                            `SEL_BYPASS;
      |
    I |        assign  IDMODE = (<IDMODE_TERMS>) ? 1'b1 : 1'b0;
    I |
      |
      |endmodule
      |
)"}, .vhdl_ports = {"", "V", R"(
      |    port (
      |        DR_SELECT: out std_logic_vector(<L-1> downto 0);
    V |        <PORT>: out <TYPE>;
      |        INST: in std_logic_vector(<N-1> downto 0)
      |    );
)"}, .vhdl_body = {"", "=BF", R"(
      |
      |architecture BEHAVIOR of IR_dec is
    B |        constant SEL_<REG>: std_logic_vector(<L-1> downto 0) := "<CODE>";
      |begin
    = |    <PORT> <= <TERMS>;
      |
      |    process(INST)
      |    begin
      |    case INST is
    F |    when "<OPCODE>" => DR_SELECT <= SEL_<REG>;
      |    when others => DR_SELECT <= SEL_BYPASS;
      |    end case;
      |    end process;
      |end BEHAVIOR;
      |
)"}};
