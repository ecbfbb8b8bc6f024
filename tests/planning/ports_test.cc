// What becomes of each port: one case per decision, as the user sees it.
#include "tests/planning/planned_chip.hh"

namespace {

const CHIP PORTS[] = {
    {.name = "input_and_clock",
     .design = R"(module chip(input a, ck, ap, am, output y);
IBUF pa(.PAD(a), .C(n_a)); CBUF pc(.PAD(ck), .C(n_ck)); DINP pd(.PP(ap), .PM(am), .C(n_d));
GATE u(.A(n_a), .B(n_ck), .Z(n_y)); GATE v(.A(n_d), .B(n_a)); OBUF py(.I(n_y), .PAD(y)); endmodule)",
     .pins = "1 A a IN\n2 CK ck IN\n3 AP ap *\n4 AM am *\n5 VDD * *\n6 Y y OUT\n",
     .options = "-add_tap -synch",
     .shows = WHOLE_REPORT | WHOLE_CMD},
    {.name = "clock_cell_for_an_input",
     .design = "module chip(input a); A_PAD_OF_24_CHARACTERS_X pa(.PAD(a), .C(n)); PLAIN u(.A(n)); GATE "
               "v(.A(n)); endmodule",
     .pins = "1 A a *\n",
     .roles = "%CLOCK_SCAN BC_CLK;",
     .library = "%BUFFER A_PAD_OF_24_CHARACTERS_X { %INPUT PAD; %OUTPUT C; }"},
    // Cells named for the pin, an input cell alone in a list, and a list that leaves the input to the roles.
    // Each counts as the cell that it is.
    {.name = "cells_of_the_pin_file",
     .design = R"(module chip(input a, b, ck, c, output y);
IBUF pa(.PAD(a), .C(n_a)); IBUF pb(.PAD(b), .C(n_b)); CBUF pc(.PAD(ck), .C(n_ck)); OBUF py(.I(n_y), .PAD(y));
CBUF pd(.PAD(c), .C(n_c)); GATE u(.A(n_a), .B(n_b), .Z(n_y)); GATE v(.A(n_ck), .B(n_c)); endmodule)",
     .pins = "1 A a * BSC(BC_CLK)\n2 B b * BSC(I:BC_OUT)\n3 Y y * BSC(BC_OUT)\n4 CK ck * BSC(I_ONLY:BC_IN)\n"
             "5 C0 c * BSC(BC_IN)\n",
     .roles = "%CLOCK_SCAN BC_CLK; %INPUT_SCAN BC_IN; %BIDIR_SCAN BC_BI;",
     .shows = NO_CMD},
    {.name = "output_states",
     .design =
         R"(module chip(output y, z, s, e, d); OBUF py(.I(n_y), .PAD(y)); TBUF pz(.I(n_z), .OEN(n_e), .PAD(z));
SAME ps(.I(n_s), .PAD(s)); EBUF pe(.OEN(n_e), .PAD(e)); TIEX pd(.A(n_d), .Z(d)); GATE u(.A(n_s), .Z(n_y));
GATE v(.Z(n_z)); GATE w(.Z(n_e)); GATE x(.Z(n_s)); GATE g(.Z(n_d)); endmodule)",
     .pins = "1 Y y OUT\n2 Z z OUT\n3 S s OUT\n4 E e OUT\n5 D d *\n",
     .library = "%DIFFERENTIAL_VOLTAGE TIEX { %INPUT A; %OUTPUT_P Z; %OUTPUT_M Z; %EN_L Z; }"},
    {.name = "differential_outputs_with_an_enable",
     .design = R"(module chip(output yp, ym, zp, zm); DOUT py(.I(n_y), .OEN(n_e), .PP(yp), .PM(ym));
DOUT pz(.I(n_z), .OEN(n_e), .PP(zp), .PM(zm)); GATE u(.Z(n_y)); GATE v(.Z(n_z)); GATE w(.Z(n_e)); endmodule)",
     .pins = "1 YP yp *\n2 YM ym *\n3 ZP zp *\n4 ZM zm *\n"},
    {.name = "pin_chooses_the_enable",
     .design = R"(module chip(output a, b, c);
TBUF pa(.I(n_a), .OEN(n_l), .EN(n_h), .PAD(a)); TBUF pb(.I(n_b), .OEN(n_l), .EN(n_h), .PAD(b));
TBUF pc(.I(n_c), .OEN(n_l), .EN(n_h), .PAD(c)); GATE l(.Z(n_l)); GATE h(.Z(n_h)); GATE u(.Z(n_a)); GATE v(.Z(n_b));
GATE w(.Z(n_c)); endmodule)",
     .pins = "1 A a * PAD_EN_H\n2 B b * PAD_EN_L\n3 C0 c *\n"},
    {.name = "bidirectional_as_one_cell",
     .design =
         R"(module chip(inout b); BBUF pb(.I(n_o), .OEN(n_e), .PAD(b), .C(n_i)); PLAIN p(.A(n_i), .Z(n_p));
GATE u(.A(n_p), .Z(n_o)); GATE e(.Z(n_e)); endmodule)",
     .pins = "1 B b *\n"},
    {.name = "bidirectional_with_one_side",
     .design = R"(module chip(inout b, c, d);
BBUF pb(.OEN(n_e), .PAD(b), .C(n_i)); BBUF pc(.I(n_o), .OEN(n_e), .PAD(c));
BBUF pd(.I(n_d), .OEN(n_e), .PAD(d), .C(n_x)); GATE u(.A(n_i), .B(n_x), .Z(n_o)); GATE v(.Z(n_d)); GATE e(.Z(n_e));
endmodule)",
     .pins = "1 B b *\n2 C0 c *\n3 D d * BSC(I_ONLY:BC_IN)\n"},
    {.name = "cells_inside_the_pads",
     .design = R"(module chip(input a, inout b, c, output y, z);
BSIN pa(.PAD(a), .C(z)); BSIO pb(.I(n_o), .OEN(n_e), .PAD(b), .C(n_i)); BSIO pc(.OEN(n_e), .PAD(c), .C(n_c));
BSOE py(.I(n_y), .OEN(n_e), .PAD(y)); GATE u(.A(n_i), .B(n_c), .Z(n_o)); GATE e(.Z(n_e)); GATE v(.Z(n_y)); endmodule)",
     .pins = "1 A a *\n2 B b *\n3 C0 c * BSC(BC_BI)\n4 Y y *\n",
     .shows = WHOLE_CMD},
    {.name = "mux_pads",
     .design = R"(module chip(input a, c, output y, z, e);
MUXI pa(.PAD(a), .C(n_a), .T(1'b1), .S(n_s)); MUXC pc(.PAD(c), .C(n_c)); MUXO py(.I(n_y), .T(1'b0), .S(1'b1), .PAD(y));
MUXT pz(.I(n_z), .OEN(n_e), .PAD(z)); MUXE pe(.OEN(n_e), .PAD(e)); GATE u(.A(n_a), .B(n_c), .Z(n_y));
GATE v(.Z(n_s)); GATE w(.Z(n_z)); GATE x(.Z(n_e)); endmodule)",
     .pins = "1 A a *\n2 C0 c *\n3 Y y *\n4 Z z *\n5 E e *\n"},
    {.name = "mux_bidirectional_pads",
     .design = R"(module chip(inout a, b, c, d);
MXB1 pa(.I(o1), .OEN(n_e), .PAD(a), .C(i1), .S(1'b0), .M(n_m)); MXB2 pb(.I(o2), .OEN(n_e), .PAD(b), .C(i2));
MXB2 pc(.OEN(n_e), .PAD(c), .C(i3), .S2(1'b1)); MXB1 pd(.I(o4), .OEN(n_e), .PAD(d)); GATE u(.A(i1), .B(i2), .Z(o1));
GATE v(.A(i3), .B(n_m), .Z(o2)); GATE w(.Z(n_e)); GATE x(.Z(o4)); endmodule)",
     .pins = "1 A a * BSC(BC_MB)\n2 B b *\n3 C0 c *\n4 D d *\n"},
    // An input that runs to a port, through a plain buffer, and the input end of a bidirectional port.
    {.name = "merged_cells",
     .design = R"(module chip(input a, b, s, output y, z, v, skip, hold, inout c, d, e, f);
IBUF pa(.PAD(a), .C(y)); IBUF pb(.PAD(b), .C(n_b)); PLAIN pz(.A(n_b), .Z(z)); IBUF ps(.PAD(s), .C(skip));
BBUF pc(.I(n_c), .OEN(n_e), .PAD(c), .C(hold));
BBUF pf(.I(n_f), .OEN(n_e), .PAD(f), .C(n_v)); PLAIN pv(.A(n_v), .Z(v)); GATE h(.Z(n_f));
BBUF pd(.I(n_d), .OEN(n_e), .PAD(d), .C(n_x)); BBUF pe(.I(n_x), .OEN(n_e), .PAD(e));
GATE u(.Z(n_c)); GATE f(.Z(n_d)); GATE g(.Z(n_e)); endmodule)",
     .pins = "1 A a *\n2 B b *\n3 S s *\n4 C0 c *\n5 D d *\n6 Y skip *\n7 E e *\n8 F f *\n"},
    // Each class is warned of once; what is left of such a cell is wired.
    {.name = "chain_cells_that_lack_pins",
     .design = R"(module chip(input a, b); BS_1 pa(.PAD(a), .C(n_a)); BS_1 pb(.PAD(b), .C(n_b));
GATE u(.A(n_a), .Z(n_z)); GATE v(.A(n_b), .B(n_z)); endmodule)",
     .pins = "1 A a *\n2 B b *\n3 INTERNAL u{A} *\n4 OBSERVE u{Z} *\n5 OBSERVE v{B} *\n",
     .options = "-add_tap -synch",
     .roles = "%INTERNAL_SCAN BC_1; %OBSERVE_ONLY_SCAN BC_2;",
     .library = "%SCAN_CELL BC_1 { %TDI si; %TDO so; %SHIFT_DR sh; %TCK tk; %DATA_IN di; %DATA_OUT do; }\n"
                "%SCAN_CELL BC_2 { %TDI si; %TDO so; %CLOCK_DR ck; %TCK tk; %DATA_IN di; }\n"
                "%BS_BUFFER BS_1 { %TDI si; %TDO so; %INPUT PAD; %OUTPUT C; }\n",
     .shows = WHOLE_CMD},
    {.name = "buses_of_one_bit_and_inverted_pins",
     .design =
         R"(module chip(input [0:0] a, input b, output y); IBUF pa(.PAD(a[0]), .C(n_a)); IBUF pb(.PAD(b), .C(n_b));
OBUF py(.I(n_y), .PAD(y)); GATE u(.A(n_a), .B(n_b), .Z(n_y)); endmodule)",
     .pins = "1 A a *\n2 B -b *\n3 Y -y *\n",
     .settings = "%INVERTER PLAIN;"},
    {.name = "pads_to_be_added",
     .design = "module chip(input a, inout b, output y); GATE u(.A(a), .B(b), .Z(y)); endmodule",
     .pins = "1 A -a *\n2 B b *\n3 Y y *\n",
     .options = "-add_tap -add_pad",
     .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF; %INOUT_BUFFER BBUF; %INVERTER PLAIN;"},
    {.name = "tdo_fed_by_a_constant_behind_an_added_cell",
     .design = R"(module chip(input a, output tdo); OBUF po(.I(VELMORA_EXP_ADDED_NET7), .PAD(tdo));
TIEX x(.Z(VELMORA_EXP_ADDED_NET7), .A(1'b1)); IBUF pa(.PAD(a), .C(n)); GATE u(.A(n)); endmodule)",
     .pins = "1 DO tdo *\n2 A a *\n",
     .shows = WHOLE_CMD},
};

TEST(Ports, GetTheirCellsAsPlanned) {
    planning_folder().expect_outcomes(PORTS);
}

} // namespace
