// The data registers and the multiplexers between them and TDO, in both languages.
#include "rtl/templates.hh"

// clang-format off

const RTL_TEMPLATE LIBRARY_VHDL = {"", "", R"(
      |library IEEE;
      |use IEEE.std_logic_1164.all;
      |
)"};

const TAP_PART BYPASS_REG = {.name = "BYPASS_reg", .verilog = {"S", "", R"(
      |module BYPASS_reg ( BYPASS_out,
    S |                    <TCK>,
      |                    <TDI>,
      |                    <SHIFT_DR>,
      |                    <CLOCK_DR> );
      |
      |        output BYPASS_out;
      |
    S |        input <TCK>;
      |        input <TDI>;
      |        input <SHIFT_DR>;
      |        input <CLOCK_DR>;
      |
      |        wire BYPASS_in;
      |        reg BYPASS_cell;
      |
      |        assign BYPASS_in = <SHIFT_DR> & <TDI>;
      |
    s |        always @(posedge <CLOCK_DR>)
    s |            BYPASS_cell <= BYPASS_in;
    S |        always @(posedge <TCK>)
    S |        begin
    S |            if (<CLOCK_DR>)
    S |                BYPASS_cell <= BYPASS_in;
    S |        end
      |
      |        assign BYPASS_out = BYPASS_cell;
      |
      |endmodule
      |
)"}, .vhdl_ports = {"S", "", R"(
      |    port (
      |        <TDI>, <SHIFT_DR>, <CLOCK_DR>: in std_logic;
    S |        <TCK>: in std_logic;
      |        BYPASS_out: out std_logic
      |    );
)"}, .vhdl_body = {"S", "", R"(
      |
      |architecture BEHAVIOR of BYPASS_reg is
      |    signal BYPASS_in, BYPASS_cell: std_logic;
      |
      |begin
      |
      |    BYPASS_in <= <SHIFT_DR> and <TDI>;
      |
    s |    process
    S |    process (<TCK>)
      |    begin
    s |        wait until (RISING_EDGE(<CLOCK_DR>));
    s |        BYPASS_cell <= BYPASS_in;
    S |        if (RISING_EDGE(<TCK>)) then
    S |          if (<CLOCK_DR> = '1') then
    S |            BYPASS_cell <= BYPASS_in;
    S |          end if;
    S |        end if;
      |    end process;
      |
      |    BYPASS_out <= BYPASS_cell;
      |
      |end BEHAVIOR;
      |
)"}};

const TAP_PART ID_REG = {.name = "ID_reg", .verilog = {"EIS", "", R"(
        |
    e   |module ID_reg ( IDCODE_out,
    E   |module ID_reg ( IDCODE,
    E   |                IDCODE_out,
    S   |                <TCK>,
        |                <TDI>,
        |                <SHIFT_DR>,
    i   |                <CLOCK_DR> );
    I   |                <CLOCK_DR>,
    I   |                 IDMODE );
        |
        |        output IDCODE_out;
        |
    S   |        input <TCK>;
        |        input <TDI>;
        |        input <SHIFT_DR>;
        |        input <CLOCK_DR>;
    I   |        input IDMODE;
    E   |        input[31:0] IDCODE;
    E   |
        |
        |        reg[31:0] ID_cell;
        |
    s   |        always @(posedge <CLOCK_DR>)
    is  |            ID_cell <= (<SHIFT_DR>) ? {<TDI>, ID_cell[31:1]} :
    eis |                       32'b<IDCODE_REG>;
    Eis |                       IDCODE;
    is  |
    Is  |            if (<SHIFT_DR> == 1)  ID_cell <= {<TDI>, ID_cell[31:1]};
    Ies |            else if (IDMODE == 1) ID_cell <= 32'b<IDCODE_REG>;
    IEs |            else if (IDMODE == 1) ID_cell <= IDCODE;
    Is  |            else  ID_cell <= 32'b<USERCODE_REG>;
    S   |        always @(posedge <TCK>)
    S   |        begin
    S   |            if (<CLOCK_DR>)
    iS  |                ID_cell <= (<SHIFT_DR>) ? {<TDI>, ID_cell[31:1]} :
    eiS |                           32'b<IDCODE_REG>;
    EiS |                           IDCODE;
    iS  |
    IS  |                if (<SHIFT_DR> == 1)  ID_cell <= {<TDI>, ID_cell[31:1]};
    IeS |                else if (IDMODE == 1) ID_cell <= 32'b<IDCODE_REG>;
    IES |                else if (IDMODE == 1) ID_cell <= IDCODE;
    IS  |                else  ID_cell <= 32'b<USERCODE_REG>;
    S   |        end
    S   |
        |        assign IDCODE_out = ID_cell[0];
        |
        |endmodule
        |
)"}, .vhdl_ports = {"EIS", "", R"(
        |    port (
    i   |        <TDI>, <SHIFT_DR>, <CLOCK_DR>: in std_logic;
    I   |        <TDI>, <SHIFT_DR>, <CLOCK_DR>, IDMODE: in std_logic;
    S   |        <TCK>: in std_logic;
    E   |        IDCODE: in std_logic_vector(31 downto 0);
        |        IDCODE_out: out std_logic
        |    );
)"}, .vhdl_body = {"EIS", "", R"(
        |
        |architecture BEHAVIOR of ID_reg is
        |    signal ID_cell: std_logic_vector(31 downto 0);
        |
        |begin
    s   |    process
    S   |    process (<TCK>)
        |    begin
    s   |        wait until (RISING_EDGE(<CLOCK_DR>));
    s   |        if (<SHIFT_DR> = '1') then
    S   |      if (RISING_EDGE(<TCK>)) then
    S   |        if (<CLOCK_DR> = '1') then
    S   |          if (<SHIFT_DR> = '1') then
        |            ID_cell <= <TDI> & ID_cell(31 downto 1);
    I   |        elsif (IDMODE = '1') then
    Ie  |            ID_cell <= "<IDCODE_REG>";
    IE  |            ID_cell <= IDCODE;
        |        else
    ie  |            ID_cell <= "<IDCODE_REG>";
    iE  |            ID_cell <= IDCODE;
    I   |            ID_cell <= "<USERCODE_REG>";
        |        end if;
    S   |      end if;
    S   |    end if;
        |    end process;
        |
        |    IDCODE_out <= ID_cell(0);
        |
        |end BEHAVIOR;
        |
)"}};

const TAP_PART DR_MUX = {.name = "DR_mux", .verilog = {"", "B", R"(
      |
      |module DR_mux ( DR_out,
      |                DR_SELECT,
    B |                <REG_OUT><PORT_END>
      |
      |       output DR_out;
      |
    B |        input <REG_OUT>;
      |        input[<L-1>:0]  DR_SELECT;
      |
    B |        `define  SEL_<REG12> <L>'b<CODE>
      |
      |        assign  DR_out = (
    B |                ((DR_SELECT == `SEL_<REG>) & <REG_OUT>)<TERM_END>
      |
      |endmodule
)"}, .vhdl_ports = {"", "", R"(
      |    port (
      |        DR_out: out std_logic;
      |        <REGISTER_OUTS>: in std_logic;
      |        DR_SELECT: in std_logic_vector(<L-1> downto 0)
      |    );
)"}, .vhdl_body = {"", "B", R"(
      |
      |architecture BEHAVIOR of DR_mux is
    B |     constant SEL_<REG8>: std_logic_vector(<L-1> downto 0) := "<CODE>";
      |
      |begin
      |
      |    process(DR_SELECT, <REGISTER_OUTS>)
      |    begin
      |        case DR_SELECT is
    B |        when SEL_<REG> =>
    B |             DR_out <= <REG_OUT>;
      |        when others =>
      |             DR_out <= '0';
      |        end case;
      |    end process;
      |
      |end BEHAVIOR;
      |
)"}};

const TAP_PART IR_DR_MUX = {.name = "IR_DR_mux", .verilog = {"", "", R"(
      |
      |module IR_DR_mux ( IR_out,
      |                   DR_out,
      |                   SELECT_DR,
      |                   TDOIN );
      |
      |        output TDOIN;
      |
      |        input IR_out;
      |        input DR_out;
      |        input SELECT_DR;
      |        assign  TDOIN = (SELECT_DR) ? DR_out : IR_out;
      |
      |endmodule
      |
)"}, .vhdl_ports = {"", "", R"(
      |    port (
      |        TDOIN:  out std_logic;
      |        IR_out, DR_out, SELECT_DR: in std_logic
      |    );
)"}, .vhdl_body = {"", "", R"(
      |
      |architecture BEHAVIOR of IR_DR_mux is
      |
      |begin
      |        TDOIN <= DR_out when (SELECT_DR = '1') else IR_out;
      |
      |end BEHAVIOR;
      |
)"}};

const TAP_PART TDO_REG = {.name = "TDO_reg", .verilog = {"D", "", R"(
      |
      |module  TDO_reg ( <TDO>,
      |                  TDOIN,
    d |                  <TCK>,
    d |                  ENABLE);
    D |                  <TCK>);
      |
      |        output <TDO>;
      |
      |        input TDOIN;
      |        input <TCK>;
    d |        input ENABLE;
      |
      |        reg TDO_cell;
      |
      |        always @(negedge <TCK>)
      |            TDO_cell <= TDOIN;
      |
    d |        assign <TDO> = (ENABLE) ?  TDO_cell : 1'bz;
    D |        assign <TDO> =  TDO_cell;
      |
      |endmodule
)"}, .vhdl_ports = {"D", "", R"(
      |    port (
      |        <TDO>: out std_logic;
    d |        TDOIN, <TCK>, ENABLE: in std_logic
    D |        TDOIN, <TCK> : in std_logic
      |    );
)"}, .vhdl_body = {"D", "", R"(
      |
      |architecture BEHAVIOR of TDO_reg is
      |        signal  TDO_cell: std_logic;
      |
      |begin
      |    process
      |    begin
      |        wait until (FALLING_EDGE(<TCK>));
      |        TDO_cell <= TDOIN;
      |    end process;
      |
    d |    <TDO> <= TDO_cell when (ENABLE = '1') else 'Z';
    D |    <TDO> <= TDO_cell ;
      |
      |end BEHAVIOR;
      |
)"}};
