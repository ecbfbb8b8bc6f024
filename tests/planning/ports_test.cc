// What becomes of each port: one case per decision.
#include "support/run_state.hh"
#include "tests/planning/planning_case.hh"

namespace {

class PortTest : public testing::TestWithParam<PLANNING_CASE> {};

TEST_P(PortTest, GetsItsKindNetAndCell) {
    planning_result result = run_planning(GetParam(), PLANNING_STAGE::ROWS);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.rows, GetParam().expected);
    EXPECT_EQ(result.console, GetParam().console);
}

// Nets count from 2 in the order in which a netlist first names them.
const PLANNING_CASE PORTS[] = {
    {"input_and_clock", "in a\n in ck\n IBUF pa PAD=a C=n_a\n CBUF pc PAD=ck C=n_ck\n GATE u A=n_a B=n_ck",
     "1 A a IN\n 2 CK ck IN\n",
     "a kind 1 BC_IN net n_a pins -/C\n"
     "ck kind 0 BC_CLK net n_ck pins -/C\n"},
    {"clock_cell_stands_in_for_input_cell",
     "in a\n IBUF pa PAD=a C=n_a",
     "1 A a *\n",
     "a kind 1 BC_CLK net n_a pins -/C\n",
     "",
     {},
     "%CLOCK_SCAN BC_CLK;"},
    {"input_cell_stands_in_for_clock_cell",
     "in a\n CBUF pa PAD=a C=n_a",
     "1 A a *\n",
     "a kind 0 BC_IN net n_a pins -/C\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"named_cells_go_first",
     "in a\n in b\n out y\n IBUF pa PAD=a C=n_a\n IBUF pb PAD=b C=n_b\n OBUF py I=n_y PAD=y",
     "1 A a * BSC(BC_IN)\n 2 B b * BSC(I:BC_OUT)\n 3 Y y * BSC(BC_HZ)\n",
     "a kind 1 BC_IN net n_a pins -/C\n"
     "b kind 1 BC_OUT net n_b pins -/C\n"
     "y kind 2 BC_HZ net n_y pins I/-\n",
     "",
     {},
     "%CLOCK_SCAN BC_CLK;"},
    {"bsc_list_with_more_than_an_input", "in a\n CBUF pa PAD=a C=n_a", "1 A a * BSC(IO:BC_OUT)\n",
     "a kind 0 BC_IN net n_a pins -/C\n"},
    {"output_states",
     "out y\n out z\n out s\n out e\n OBUF py I=n_y PAD=y\n TBUF pz I=n_z OEN=n_e PAD=z\n SAME ps I=n_s "
     "EN=n_x PAD=s\n"
     "EBUF pe OEN=n_e PAD=e",
     "1 Y y OUT\n 2 Z z OUT\n 3 S s OUT\n 4 E e OUT\n",
     "y kind 2 BC_OUT net n_y pins I/-\n"
     "z kind 3 BC_OUT net n_z pins i/- control 1\n"
     "s kind 2 BC_OUT net n_s pins I/-\n"
     "e kind 4 BC_OUT net n_e pins OEN/-\n"},
    {"pin_chooses_the_enable",
     "out a\n out b\n TBUF pa I=n_a OEN=n_l EN=n_h PAD=a\n TBUF pb I=n_b OEN=n_l EN=n_h PAD=b\n",
     "1 A a * PAD_EN_H\n 2 B b * PAD_EN_L\n",
     "a kind 3 BC_OUT net n_a pins i/- control 1\n"
     "b kind 3 BC_OUT net n_b pins i/- control 2\n"},
    {"differential_legs",
     "in ap\n in am\n out yp\n out ym\n DINP pa PP=ap PM=am C=n_a\n DOUT py I=n_y PP=yp PM=ym",
     "1 AP ap *\n 2 AM am *\n 3 YP yp *\n 4 YM ym *\n",
     "ap kind 1 BC_IN net n_a pins -/C\n"
     "am kind -1 - net - pins -/-\n"
     "yp kind 2 BC_OUT net n_y pins I/-\n"
     "ym kind -1 - net - pins -/-\n"},
    {"bidirectional_as_one_cell", "io b\n BBUF pb I=n_o OEN=n_e PAD=b C=n_i\n GATE u A=n_i Z=n_o",
     "1 B b *\n", "b kind 5 BC_BI net n_o,n_i pins I/C control 1\n"},
    {"bidirectional_as_a_pair",
     "io b\n BBUF pb I=n_o OEN=n_e PAD=b C=n_i\n GATE u A=n_i Z=n_o",
     "1 B b *\n",
     "b kind 6 BC_OUT net n_o,n_i pins I/C control 1\n",
     "",
     {},
     "%INPUT_SCAN BC_IN; %OUTPUT_SCAN BC_OUT; %CONTROL_SCAN BC_CTL;"},
    {"bidirectional_with_one_side",
     "io b\n io c\n io d\n BBUF pb OEN=n_e PAD=b C=n_i\n BBUF pc I=n_o OEN=n_e PAD=c\n BBUF pd I=n_d OEN=n_e "
     "PAD=d C=n_x",
     "1 B b *\n 2 C0 c *\n 3 D d * BSC(I_ONLY:BC_IN)\n",
     "b kind 1 BC_IN net n_i pins -/C\n"
     "c kind 3 BC_OUT net n_o pins I/- control 1\n"
     "d kind 3 BC_OUT net n_d pins I/- control 1\n",
     "WARNING: (chip.lib) %INPUT I of %BUFFER BBUF which connects to\n"
     "         port 'b' is floating.\n"
     "         Output boundary scan cell won't be inserted on this port.\n\n"
     "WARNING: (chip.lib) %OUTPUT C of %BUFFER BBUF which connects to\n"
     "         port 'c' is floating.\n"
     "         Input boundary scan cell won't be inserted on this port.\n\n"},
    {"cells_inside_the_pads",
     "in a\n io b\n out y\n BSIN pa PAD=a C=y\n BSIO pb I=n_o OEN=n_e PAD=b C=n_i\n GATE u A=n_i",
     "1 A a *\n 2 B b *\n",
     "a kind 1 BSIN net y pins -/C\n"
     "b kind 5 BSIO net n_o,n_i pins I/C control 1\n",
     "WARNING: (chip.pin) can't find port 'y' in the pin list.\n"
     "         Boundary scan cell won't be inserted on this port.\n\n"},
    {"mux_pads",
     "in a\n in c\n out y\n out z\n out e\n MUXI pa PAD=a C=n_a T=1 S=n_s\n MUXC pc PAD=c C=n_c\n"
     "MUXO py I=n_y T=0 S=1 PAD=y\n MUXT pz I=n_z OEN=n_e PAD=z\n MUXE pe OEN=n_e PAD=e",
     "1 A a *\n 2 C0 c *\n 3 Y y *\n 4 Z z *\n 5 E e *\n",
     "a kind 9 BC_MI net n_a pins -/C mode2 8 mux2 1\n"
     "c kind 8 BC_MI net n_c pins -/C\n"
     "y kind 10 BC_MO net n_y pins I/- mode1 1 mux1 0\n"
     "z kind 11 BC_MO net n_z pins I/- control 1\n"
     "e kind 12 BC_MO net n_e pins OEN/-\n"},
    {"mux_bidirectional_pads",
     "io a\n io b\n io c\n MXB1 pa I=o1 OEN=n_e PAD=a C=i1 S=0\n MXB2 pb I=o2 OEN=n_e PAD=b C=i2\n"
     "MXB2 pc OEN=n_e PAD=c C=i3 S2=1",
     "1 A a *\n 2 B b *\n 3 C0 c *\n",
     "a kind 13 BC_MB net o1,i1 pins I/C control 1 mode1 0\n"
     "b kind 14 BC_MB net o2,i2 pins I/C control 1\n"
     "c kind 9 BC_MI net i3 pins -/C mode2 1\n",
     "WARNING: (chip.lib) %INPUT I of %BUFFER MXB2 which connects to\n"
     "         port 'c' is floating.\n"
     "         Output boundary scan cell won't be inserted on this port.\n\n"},
    {"mux_bidirectional_pairs",
     "io a\n io b\n MXB1 pa I=o1 OEN=n_e PAD=a C=i1\n MXB2 pb I=o2 OEN=n_e PAD=b C=i2",
     "1 A a *\n 2 B b *\n",
     "a kind 15 BC_MO net o1,i1 pins I/C control 1\n"
     "b kind 16 BC_MO net o2,i2 pins I/C control 1\n",
     "",
     {},
     "%INPUT_SCAN BC_IN; %INPUT_MUX_SCAN BC_MI; %OUTPUT_MUX_SCAN BC_MO; %CONTROL_SCAN BC_CTL;"},
    {"merged_cells",
     "in a\n out y\n in b\n out z\n io c\n out w\n IBUF pa PAD=a C=y\n IBUF pb PAD=b C=n_b\n PLAIN pz A=n_b "
     "Z=z\n"
     "BBUF pc I=n_c OEN=n_e PAD=c C=w",
     "1 A a *\n 2 B b *\n 3 C0 c *\n 4 Y skip *\n",
     "a kind -1 - net y pins -/C\n"
     "b kind -1 - net n_b pins -/C\n"
     "c kind 3 BC_OUT net n_c,w pins I/C control 1\n"
     "skip kind -1 - net - pins -/-\n",
     "WARNING: input port 'a' connects to output port 'y' directly.\n"
     "         A merged cell will be introduced.\n\n"
     "WARNING: input port 'b' connects to port 'z' directly.\n"
     "         A merged cell will be introduced.\n\n"
     "WARNING: input port 'c' connects to output port 'w' directly.\n"
     "         A merged cell will be introduced.\n\n"
     "WARNING: (chip.pin) can't find port 'y' in the pin list.\n"
     "         Boundary scan cell won't be inserted on this port.\n\n"
     "WARNING: (chip.pin) can't find port 'z' in the pin list.\n"
     "         Boundary scan cell won't be inserted on this port.\n\n"
     "WARNING: (chip.pin) can't find port 'w' in the pin list.\n"
     "         Boundary scan cell won't be inserted on this port.\n\n"},
    {"internal_and_observed_pins", "GATE u1 A=n_a Z=n_z\n GATE m:M.u2 B=n_b",
     "1 INTERNAL u1{Z} *\n 2 INTERNAL u1{a} *\n 3 OBSERVE_ONLY m.u2{B} *\n",
     "u1{Z} kind 7 BC_IN net n_z pins -/Z\n"
     "u1{a} kind 7 BC_IN net n_a pins a/-\n"
     "m.u2{B} kind 7 BC_CLK net n_b pins B/-\n"},
    {"buses_of_one_bit_and_inverted_pins",
     "in a[0]\n in b\n in b[1]\n IBUF pa PAD=a[0] C=n_a\n IBUF pb PAD=b C=n_b\n IBUF pc PAD=b[1] C=n_c",
     "1 A a *\n 2 B -b *\n 3 C0 b[1] *\n",
     "a kind 1 BC_IN net n_a pins -/C\n"
     "b kind 1 BC_IN net n_b pins -/C inverted\n"
     "b[1] kind 1 BC_IN net n_c pins -/C\n",
     "",
     {},
     nullptr,
     "%INVERTER PLAIN;"},
    {"ports_without_pads",
     "in a\n out y\n GATE u A=a Z=y",
     "1 A a *\n 2 Y y *\n",
     "a kind 1 BC_IN net a pins -/-\n"
     "y kind 2 BC_OUT net - pins -/-\n",
     "",
     {OPT_NO_PAD}},
    {"pads_to_be_added",
     "in a\n io b\n out y\n GATE u A=a B=b Z=y",
     "1 A a *\n 2 B b *\n 3 Y y *\n",
     "a kind 1 BC_IN net a pins -/-\n"
     "b kind 6 BC_OUT net - pins -/-\n"
     "y kind 2 BC_OUT net - pins -/-\n",
     "",
     {OPT_ADD_PAD},
     nullptr,
     "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF;"},
    {"standard_ports", "in tdi\n out tdo\n IBUF pi PAD=tdi C=n_i\n TBUF po I=0 OEN=n_e PAD=tdo",
     "1 DI tdi *\n 2 DO tdo *\n",
     "tdi kind 1 - net n_i pins -/C\n"
     "tdo kind 3 - net GND pins i/-\n",
     "WARNING: Pin %TDO 'tdo' was connected to GND or VCC.\n"
     "         i of po will be disconnected.\n"},
    {"tdo_fed_by_a_constant_behind_an_added_cell",
     "out tdo\n OBUF po I=VELMORA_EXP_ADDED_NET7 PAD=tdo\n TIEX x Z=VELMORA_EXP_ADDED_NET7 A=1",
     "1 DO tdo *\n", "tdo kind 3 - net VELMORA_EXP_ADDED_NET7 pins I/-\n",
     "WARNING: Pin %TDO 'tdo' was connected to GND or VCC.\n"
     "         I of po will be disconnected.\n"},
    {"tied_mode_of_an_existing_tap", "in a\n BSIN pa PAD=a C=n\n GATE u A=n\n TAPC u_tap mode2=0",
     "1 A a *\n", "a kind 1 BSIN net n pins -/C\n",
     "WARNING: Pin %MODE_2 'mode2' of TAP 'u_tap' was connected to GND.\n"
     "         %MODE_2 'mode2' will be disconnected.\n"},
    {"plain_buffer_next_to_a_port", "in a\n FEED p A=a Z=n\n", "1 A a *\n", "a kind 7 - net - pins -/-\n"},
};

INSTANTIATE_TEST_SUITE_P(Decisions, PortTest, testing::ValuesIn(PORTS),
                         [](const auto &each) { return each.param.name; });

class RefusalTest : public testing::TestWithParam<PLANNING_CASE> {};

TEST_P(RefusalTest, EndsTheRunWithItsMessage) {
    planning_result result = run_planning(GetParam(), PLANNING_STAGE::ROWS);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.console, GetParam().expected);
}

const PLANNING_CASE REFUSALS[] = {
    {"unknown_port", "in a[0]\n in a[1]\n", "1 A -a *\n",
     "ERROR: (chip.pin) can't find port 'a' in SDB 'chip.c.sdb'.\n\n"},
    {"floating_port", "in a\n", "1 A a *\n", "ERROR: port 'a' is floating.\n\n"},
    {"undescribed_cell", "in a\n XPAD p A=a\n", "1 A a *\n",
     "FATAL: can't find the definition of buffer 'XPAD' while tracing port 'a'.\n"
     "       Please specify the following in file 'chip.lib'.\n"
     "              %BUFFER  XPAD {\n"
     "                  %INPUT\n"
     "                  %OUTPUT\n"
     "               }\n\n"},
    {"bidirectional_port_without_pads",
     "io a\n XPAD p PAD=a\n",
     "1 A a *\n",
     "FATAL: can't find the definition of buffer 'XPAD' while tracing port 'a'.\n"
     "       Please specify the following in file 'chip.lib'.\n"
     "              %BUFFER  XPAD {\n"
     "                  %INPUT\n"
     "                  %OUTPUT\n"
     "               }\n\n",
     "",
     {OPT_NO_PAD}},
    {"pin_of_the_other_direction",
     "in a\n XPAD p A=a\n",
     "1 A a *\n",
     "ERROR: 'PAD' is a bidirectional pin of 'XPAD'.\n"
     "       But it was declared as an output pin in file 'chip.lib'.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER XPAD { %OUTPUT PAD; }"},
    {"missing_output_pin",
     "in a\n XPAD p A=a\n",
     "1 A a *\n",
     "ERROR: (chip.lib) %OUTPUT Q specified in %BUFFER XPAD\n"
     "       can't be found in file 'chip.c.sdb' while tracing port 'a'.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER XPAD { %OUTPUT Q; }"},
    {"undeclared_output_pin",
     "in a\n XPAD p A=a\n",
     "1 A a *\n",
     "ERROR: (chip.lib) can't find %OUTPUT in %BUFFER XPAD\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER XPAD { %INPUT A; }"},
    {"no_input_cell",
     "in a\n IBUF p PAD=a C=n\n",
     "1 A a *\n",
     "ERROR: can't find %INPUT_SCAN in file 'chip.bsc'.\n"
     "       Need INPUT SCAN to connect to input port 'a'.\n\n",
     "",
     {},
     "%OUTPUT_SCAN BC_OUT;"},
    {"third_leg_of_a_differential_pad", "in a\n DINP p PX=a C=n\n", "1 A a *\n",
     "ERROR: the PX pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER DINP\n "},
    {"floating_output_pad", "out y\n OBUF p PAD=y\n", "1 Y y *\n",
     "ERROR: (chip.lib) %INPUT I specified in %BUFFER OBUF\n"
     "       can't be found in file 'chip.c.sdb' while tracing port 'y'.\n\n"},
    {"mux_pad_without_its_mode",
     "out y\n GATE p Z=y A=n\n",
     "1 Y y *\n",
     "ERROR: (chip.lib) 'GATE' is a mux output pad because %MUX_IN1 signal is declared.\n"
     "       Mux output pad also requires %MODE_1 signal to be declared.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER GATE { %INPUT A; %MUX_IN1 B; }"},
    {"no_output_cell",
     "out y\n OBUF p PAD=y I=n\n",
     "1 Y y *\n",
     "ERROR: can't find %OUTPUT_SCAN in file 'chip.bsc'.\n"
     "       Need OUTPUT SCAN to connect to output port 'y'.\n\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"no_control_cell",
     "out y\n TBUF p PAD=y I=n OEN=e\n",
     "1 Y y *\n",
     "ERROR: can't find %CONTROL_SCAN in file 'chip.bsc'.\n\n",
     "",
     {},
     "%OUTPUT_SCAN BC_OUT;"},
    {"no_oe_control_cell",
     "out y\n TBUF p PAD=y I=n OEN=e\n",
     "1 Y y *\n",
     "ERROR: Please specify %CONTROL_OE_SCAN in file 'chip.bsc'.\n\n",
     "",
     {},
     "%OUTPUT_SCAN BC_OE;"},
    {"floating_enable", "out y\n TBUF p PAD=y I=n\n", "1 Y y * PAD_EN_H\n",
     "ERROR: (chip.lib) %EN_H EN specified in %BUFFER TBUF\n"
     "       can't be found in file 'chip.c.sdb' while tracing port 'y'.\n\n"},
    {"bidirectional_port_on_an_input_pad", "io b\n CBUF p PAD=b C=n\n", "1 B b *\n",
     "ERROR: bidir port 'b' doesn't connect to bidir pad.\n"
     "       Please setup %FUNCTION inout in %BUFFER CBUF.\n\n"},
    {"bidirectional_pad_without_enable",
     "io b\n XPAD p PAD=b\n",
     "1 B b *\n",
     "ERROR: (chip.lib) can't find %EN_L or %EN_H in %BUFFER XPAD,\n"
     "       while tracing bidirectional port 'b'.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER XPAD { %INPUT A; }"},
    {"bidirectional_pad_with_no_live_side", "io b\n BBUF p PAD=b OEN=e\n", "1 B b *\n",
     "WARNING: (chip.lib) %INPUT I of %BUFFER BBUF which connects to\n"
     "         port 'b' is floating.\n"
     "         Output boundary scan cell won't be inserted on this port.\n\n"
     "WARNING: (chip.lib) %OUTPUT C of %BUFFER BBUF which connects to\n"
     "         port 'b' is floating.\n"
     "         Input boundary scan cell won't be inserted on this port.\n\n"
     "ERROR: (chip.lib) %OUTPUT C and %INPUT I in %BUFFER BBUF\n"
     "       are both floating.\n"
     "       Can't insert boundary scan on port 'b'.\n\n"},
    {"no_bidirectional_cell",
     "io b\n BBUF p PAD=b I=o C=i OEN=e\n",
     "1 B b *\n",
     "ERROR: can't find %BIDIR_SCAN in file 'chip.bsc'.\n"
     "       Need BIDIR_SCAN to connect to bidir port 'b'.\n\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"no_mux_bidirectional_cell",
     "io b\n MXB1 p PAD=b I=o C=i OEN=e\n",
     "1 B b *\n",
     "ERROR: can't find %BIDI_MUX_SCAN in file 'chip.bsc'.\n"
     "       Need BIDIR_MUX_SCAN to connect to bidir port 'b'.\n\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"internal_name_without_a_pin", "GATE u A=n\n", "1 INTERNAL u{} *\n",
     "ERROR: can not get instance name or pin name in 'u{}' of pin file.\n"},
    {"unknown_instance", "GATE u A=n\n", "1 INTERNAL v{A} *\n",
     "ERROR: can not find instance 'v' in 'chip.c.sdb' file.\n"},
    {"unknown_internal_pin", "GATE u A=n\n", "1 OBSERVE u{Q} *\n",
     "ERROR: can not find port 'Q' in instance 'u'.\n"},
    {"bidirectional_internal_pin", "XPAD u PAD=n\n", "1 OBSERVE u{PAD} *\n",
     "ERROR: can't support inout port 'u{PAD}' now.\n"},
    {"no_observe_cell",
     "GATE u A=n\n",
     "1 OBSERVE u{A} *\n",
     "ERROR: can't find %OBSERVE_ONLY_SCAN in file 'chip.bsc'.\n"
     "       Need OBSERVE_ONLY SCAN to connect to internal port 'u{A}'.\n\n",
     "",
     {},
     "%INTERNAL_SCAN BC_IN;"},
    {"no_inverter", "in a\n IBUF p PAD=a C=n\n", "1 A -a *\n",
     "ERROR: can't find %INV_BUFFER of %TAP_CONTROLLER in file 'chip.lib'\n"
     "       or %INVERTER in file 'chip.bsc' for pin '-a'.\n\n"},
    {"no_input_mux_cell",
     "in a\n MUXC p PAD=a C=n\n",
     "1 A a *\n",
     "ERROR: can't find %INPUT_MUX_SCAN in file 'chip.bsc'.\n"
     "       Need INPUT_MUX_SCAN to connect to input port 'a'.\n\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"no_output_mux_cell",
     "out y\n MUXO p PAD=y I=n\n",
     "1 Y y *\n",
     "ERROR: can't find %OUTPUT_MUX_SCAN in file 'chip.bsc'.\n"
     "       Need OUTPUT_MUX_SCAN to connect to output port 'y'.\n\n",
     "",
     {},
     "%OUTPUT_SCAN BC_OUT;"},
    {"no_mux_input_cell_for_one_side",
     "io b\n MXB2 p PAD=b C=n OEN=e\n",
     "1 B b *\n",
     "WARNING: (chip.lib) %INPUT I of %BUFFER MXB2 which connects to\n"
     "         port 'b' is floating.\n"
     "         Output boundary scan cell won't be inserted on this port.\n\n"
     "ERROR: can't find %INPUT_MUX_SCAN in file 'chip.bsc'.\n"
     "       Need INPUT_MUX_SCAN to connect to bidir port 'b'.\n\n",
     "",
     {},
     "%INPUT_SCAN BC_IN;"},
    {"differential_input_without_a_leg",
     "in a\n GATE p A=a Z=n\n",
     "1 A a *\n",
     "ERROR: (chip.lib) can't find %INPUT_P or %INPUT_M in DIFFERENTIAL BUFFER GATE\n\n",
     "",
     {},
     nullptr,
     "",
     "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %OUTPUT Z; }"},
    {"differential_input_without_output",
     "in a\n GATE p A=a Z=n\n",
     "1 A a *\n",
     "ERROR: (chip.lib) can't find %OUTPUT in DIFFERENTIAL BUFFER GATE\n\n",
     "",
     {},
     nullptr,
     "",
     "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %INPUT_M B; }"},
    {"differential_output_without_input",
     "out y\n GATE p A=n Z=y\n",
     "1 Y y *\n",
     "ERROR: (chip.lib) can't find %INPUT in DIFFERENTIAL BUFFER GATE.\n\n",
     "",
     {},
     nullptr,
     "",
     "%DIFFERENTIAL_VOLTAGE GATE { %OUTPUT_P Z; %OUTPUT_M B; }"},
    {"differential_output_without_a_leg",
     "out y\n GATE p A=n Z=y\n",
     "1 Y y *\n",
     "ERROR: (chip.lib) can't find %OUTPUT_P or %OUTPUT_M in DIFFERENTIAL BUFFER GATE. \n\n",
     "",
     {},
     nullptr,
     "",
     "%DIFFERENTIAL_VOLTAGE GATE { %INPUT A; %OUTPUT_P Z; }"},
    {"added_input_pad_without_its_cell",
     "in a\n GATE u A=a\n",
     "1 A a *\n",
     "ERROR: option -add_pad requires to declare %INPUT_BUFFER\n       in file 'chip.bsc'.\n\n",
     "",
     {OPT_ADD_PAD}},
    {"added_output_pad_without_its_cell",
     "out y\n GATE u Z=y\n",
     "1 Y y *\n",
     "ERROR: option -add_pad requires to declare %OUTPUT_BUFFER\n       in file 'chip.bsc'.\n\n",
     "",
     {OPT_ADD_PAD}},
    {"added_output_pad_of_tdo",
     "out tdo\n GATE u Z=tdo\n",
     "1 DO tdo *\n",
     "ERROR: option -add_pad requires to declare %OUTPUT_BUFFER\n       in file 'chip.bsc'.\n\n",
     "",
     {OPT_ADD_PAD}},
    {"output_pad_without_any_input",
     "out y\n GATE p Z=y\n",
     "1 Y y *\n",
     "ERROR: (chip.lib) can't find %INPUT in %BUFFER  GATE.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER GATE { %OUTPUT Z; }"},
    {"mode_of_a_bidirectional_mux_pad",
     "io b\n XPAD p PAD=b A=n\n",
     "1 B b *\n",
     "ERROR: (chip.lib) 'XPAD' is a mux bidi pad because %MODE_1 signal is declared.\n"
     "       Mux bidi pad also requires %MUX_IN1 signal to be declared.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER XPAD { %INPUT A; %EN_L E; %MODE_1 M; }"},
    {"named_cell_with_a_fault", "in a\n IBUF p PAD=a C=n\n", "1 A a * BSC(BC_MO)\n",
     "ERROR: (chip.lib) can't find %DATA_IN in %SCAN_CELL BC_MO.\n"
     "       INPUT SCAN 'BC_MO' should have %DATA_IN signal.\n\n\n"},
    {"two_ports_on_one_pad",
     "in a\n in b\n GATE p A=a B=b Z=n\n",
     "1 A a *\n 2 B b *\n",
     "ERROR: (chip.pin) 'a' and 'b' need a boundary scan cell at the same place.\n"
     "       Please correct your SDB or specify one of them as skip signal.\n\n",
     "",
     {},
     nullptr,
     "",
     "%BUFFER GATE { %OUTPUT Z; }"},
};

INSTANTIATE_TEST_SUITE_P(Faults, RefusalTest, testing::ValuesIn(REFUSALS),
                         [](const auto &each) { return each.param.name; });

} // namespace
