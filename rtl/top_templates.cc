// The inside of the TAP module: the instances of its parts and the assignments beside them, in both
// languages.
//
// The header, the declarations and the port clause before it are walked from the table of ports
// (tap_ports.hh).
#include "rtl/templates.hh"

const RTL_TEMPLATE TOP_V = {"ACDEGIMSTU", "LPR", R"(
          |        wire <RESET>;
          |        wire SELECT_DR;
          |        wire ENABLE;
          |        wire TDOIN;
          |        wire SHIFT_IR;
          |        wire CLOCK_IR;
          |        wire UPDATE_IR;
          |        wire IR_out;
          |        wire DR_out;
    I     |        wire IDMODE;
    C     |        wire tap_UPDATE_DR;
          |        wire[<L-1>:0]  DR_SELECT;
          |        wire[<N-1>:0] INST;
          |
    t     |        TAP_controller  TAP(<TMS>, <TCK>,
    T     |        TAP_controller  TAP(<TMS>, <TCK>, <TRST>,
          |                            SHIFT_IR, CLOCK_IR, UPDATE_IR,
    u     |                            <SHIFT_DR>, <CLOCK_DR>,
    Uc    |                            <SHIFT_DR>, <CLOCK_DR>, <UPDATE_DR>,
    UC    |                            <SHIFT_DR>, <CLOCK_DR>, tap_UPDATE_DR,
          |                            <RESET>, SELECT_DR, ENABLE);
          |
    s     |        BYPASS_reg  BYP(BYPASS_out, <TDI>, <SHIFT_DR>, <CLOCK_DR>);
    S     |        BYPASS_reg  BYP(BYPASS_out, <TCK>, <TDI>, <SHIFT_DR>, <CLOCK_DR>);
          |
    Ges   |        ID_reg      ID(IDCODE_out, <TDI>, <SHIFT_DR>, <CLOCK_DR><IDMODE_PORT>);
    GeS   |        ID_reg      ID(IDCODE_out, <TCK>, <TDI>, <SHIFT_DR>, <CLOCK_DR><IDMODE_PORT>);
    GEs   |        ID_reg      ID(IDCODE, IDCODE_out, <TDI>, <SHIFT_DR>, <CLOCK_DR><IDMODE_PORT>);
    GES   |        ID_reg      ID(IDCODE, IDCODE_out, <TCK>, <TDI>, <SHIFT_DR>, <CLOCK_DR><IDMODE_PORT>);
    G     |
    s     |        IR_reg      IR(IR_out, INST, <TDI>, SHIFT_IR, CLOCK_IR,
    S     |        IR_reg      IR(IR_out, INST, <TCK>, <TDI>, SHIFT_IR, CLOCK_IR,
          |                       UPDATE_IR, <RESET>);
          |
          |        IR_dec      IRdec(<DECODER_NETS>);
          |
          |        DR_mux      Dmux(DR_out, DR_SELECT,
          |                         <REGISTER_WIRES>);
          |
          |        IR_DR_mux   IDMUX(IR_out, DR_out, SELECT_DR, TDOIN);
          |
    d     |        TDO_reg     TDOreg(<TDO>, TDOIN, <TCK>, ENABLE);
    D     |        TDO_reg     TDOreg(<TDO>, TDOIN, <TCK>);
          |
    Da    |        assign <TDO_EN> = ENABLE;
    DA    |        assign <TDO_EN> = ~ENABLE;
    D     |
          |        assign <FIRST_BCELL> = <TDI>;
          |
    R     |        assign <REG_IN> = <TDI>;
    R     |
    L     |        assign <WIRE> = 1'b0;
    L     |
    M     |        assign velmora_scan_mode = velmora_test_mode & <TMS>;
    M     |
    S     |        assign BCELL_TCK = <TCK>;
    S     |
    UC    |        assign <UPDATE_DR> = ~<CLAMP_TERMS> & tap_UPDATE_DR;
    P     |        assign <PIN> = <GATED>;
    P     |
          |endmodule
          |
)"};

const RTL_TEMPLATE TOP_VHDL = {"ADEGIMOSTU", "BJLPRV", R"(
      |    signal  <RESET_NET>, SELECT_DR, ENABLE, TDOIN: std_logic;
      |    signal  <SHIFT_DR>_net, <CLOCK_DR>_net: std_logic;
      |    signal  SHIFT_IR, CLOCK_IR, UPDATE_IR: std_logic;
      |    signal  IR_out, DR_out<INNER_WIRES>: std_logic;
    I |    signal  IDMODE: std_logic;
    M |    signal  velmora_atpg_mode: std_logic;
    P |    signal  <PIN>_net: std_logic;
    J |    signal  <PORT>_net: std_logic;
      |    signal  DR_SELECT: std_logic_vector(<L-1> downto 0);
      |    signal  INST: std_logic_vector(<N-1> downto 0);
      |
      |begin
      |
      |    U1: TAP_controller
      |        port map (
      |             <TMS> => <TMS>,
      |             <TCK> => <TCK>,
    T |             <TRST> => <TRST>,
      |             SHIFT_IR  => SHIFT_IR,
      |             CLOCK_IR  => CLOCK_IR,
      |             UPDATE_IR => UPDATE_IR,
      |             <SHIFT_DR> => <SHIFT_DR>_net,
      |             <CLOCK_DR> => <CLOCK_DR>_net,
    U |             <UPDATE_DR> => <UPDATE_NET>,
      |             <RESET> => <RESET_NET>,
      |             SELECT_DR => SELECT_DR,
      |             ENABLE => ENABLE
      |        );
      |
      |    U2: BYPASS_reg
      |        port map (
      |             <TDI> => <TDI>,
      |             <SHIFT_DR> => <SHIFT_DR>_net,
      |             <CLOCK_DR> => <CLOCK_DR>_net,
    S |             <TCK> => <TCK>,
      |             BYPASS_out => BYPASS_out
      |        );
      |
      |    U3: IR_reg
      |        port map (
      |             <TDI> => <TDI>,
      |             <RESET> => <RESET_NET>,
    S |             <TCK> => <TCK>,
      |             INST => INST,
      |             SHIFT_IR  => SHIFT_IR,
      |             CLOCK_IR  => CLOCK_IR,
      |             UPDATE_IR => UPDATE_IR,
      |             IR_out => IR_out
      |        );
      |
      |    U4: IR_dec
      |        port map (
      |             INST => INST,
    V |             <PORT> => <NET>,
      |             DR_SELECT => DR_SELECT
      |        );
      |
    G |    U5: ID_reg
    G |        port map (
    G |             <TDI> => <TDI>,
    GS|             <TCK> => <TCK>,
    G |             <SHIFT_DR> => <SHIFT_DR>_net,
    G |             <CLOCK_DR> => <CLOCK_DR>_net,
    GE|             IDCODE => IDCODE,
    GI|             IDMODE => IDMODE,
    G |             IDCODE_out => IDCODE_out
    G |        );
    G |
    G |    U6: DR_mux
    g |    U5: DR_mux
      |        port map (
    B |             <REG_OUT> => <WIRE>,
      |             DR_SELECT => DR_SELECT,
      |             DR_out => DR_out
      |        );
      |
    G |    U7: IR_DR_mux
    g |    U6: IR_DR_mux
      |        port map (
      |             IR_out => IR_out,
      |             DR_out => DR_out,
      |             SELECT_DR => SELECT_DR,
      |             TDOIN => TDOIN
      |        );
      |
    G |    U8: TDO_reg
    g |    U7: TDO_reg
      |        port map (
      |             <TDO> => <TDO>,
      |             <TCK> => <TCK>,
    d |             TDOIN => TDOIN,
    d |             ENABLE => ENABLE
    D |             TDOIN => TDOIN
      |        );
      |
      |    <FIRST_BCELL> <= <TDI>;
      |    <SHIFT_DR> <= <SHIFT_DR>_net;
      |    <CLOCK_DR> <= <CLOCK_DR>_net;
    O |    <RESET> <= <RESET>_net;
    J |    <PORT> <= <PORT>_net;
    Da|    <TDO_EN> <= ENABLE;
    DA|    <TDO_EN> <= not ENABLE;
    S |    BCELL_TCK <= <TCK>;
    M |    velmora_test_mode <= velmora_atpg_mode;
    M |    velmora_scan_mode <= velmora_atpg_mode and <TMS>;
    L |    <WIRE> <= '0';
    R |    <REG_IN> <= <TDI>;
    P |    <PIN> <= <GATED>;
    P |
      |
      |end STRUCTURE;
)"};
