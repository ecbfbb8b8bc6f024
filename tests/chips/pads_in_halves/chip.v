// Pads in two instances of one module, test pads in a third module: the boundary register goes from one half
// to the other with nearly every cell.

// A shift register that the inputs are mixed into; the outputs take bits of it. What a shared pin drives itself
// the core does not look at.
module core (input clk, rst_n, a, b, c, d0_c, d1_c, output y0, y1, z0, z1, z_oen, d0_o, d0_oen, d1_o, d1_oen);
    wire m0, m2, m4, m6, g0, g1;
    XOR2 mix_a (.A(a), .B(d0_oen), .Z(m0));
    XOR2 mix_b (.A(b), .B(y0), .Z(m2));
    AND2 gate_0 (.A(d0_c), .B(d0_oen), .Z(g0));
    XOR2 mix_0 (.A(g0), .B(d0_o), .Z(m4));
    AND2 gate_1 (.A(d1_c), .B(d1_oen), .Z(g1));
    NAND2 mix_1 (.A(g1), .B(c), .Z(m6));
    DFFR bit0 (.D(m0), .CK(clk), .RN(rst_n), .Q(y0));
    DFFR bit1 (.D(y0), .CK(clk), .RN(rst_n), .Q(y1));
    DFFR bit2 (.D(m2), .CK(clk), .RN(rst_n), .Q(z0));
    DFFR bit3 (.D(z0), .CK(clk), .RN(rst_n), .Q(d0_o));
    DFFR bit4 (.D(m4), .CK(clk), .RN(rst_n), .Q(z_oen));
    DFFR bit5 (.D(z_oen), .CK(clk), .RN(rst_n), .Q(d0_oen));
    DFFR bit6 (.D(m6), .CK(clk), .RN(rst_n), .Q(d1_oen));
    DFFR bit7 (.D(d1_oen), .CK(clk), .RN(rst_n), .Q(d1_o));
    XOR2 out_z (.A(d1_o), .B(y1), .Z(z1));
endmodule

module half (input i0, i1, output o, t, inout b,
             output i0_c, i1_c, b_c, input o_i, t_i, t_oen, b_o, b_oen);
    IPAD pad_i0 (.PAD(i0), .C(i0_c));
    IPAD pad_i1 (.PAD(i1), .C(i1_c));
    OPAD pad_o (.I(o_i), .PAD(o));
    TPAD pad_t (.I(t_i), .OEN(t_oen), .PAD(t));
    BPAD pad_b (.I(b_o), .OEN(b_oen), .C(b_c), .PAD(b));
endmodule

// TDI leaves the module; the other test pads have no ports for their core sides.
module test_pads (input tdi, tms, tck, trst_n, output tdo, output tdi_c);
    IPADU pad_tdi (.PAD(tdi), .C(tdi_c));
    IPADU pad_tms (.PAD(tms));
    IPAD pad_tck (.PAD(tck));
    IPADU pad_trst_n (.PAD(trst_n));
    TPAD pad_tdo (.I(1'b0), .OEN(1'b1), .PAD(tdo));
endmodule

module chip (input clk, rst_n, a, b, e, tdi, tms, tck, trst_n, output y0, y1, z0, z1, tdo, inout d0, d1);
    wire clk_c, rst_n_c, a_c, b_c, c_c, d0_c, d1_c, y0_i, y1_i, z0_i, z1_i, z_oen, d0_o, d0_oen, d1_o, d1_oen;
    wire tdi_c;
    CKPAD pad_clk (.PAD(clk), .C(clk_c));
    half u_west (.i0(a), .i1(rst_n), .o(y0), .t(z0), .b(d0), .i0_c(a_c), .i1_c(rst_n_c), .b_c(d0_c),
                 .o_i(y0_i), .t_i(z0_i), .t_oen(z_oen), .b_o(d0_o), .b_oen(d0_oen));
    half u_east (.i0(b), .i1(e), .o(y1), .t(z1), .b(d1), .i0_c(b_c), .i1_c(c_c), .b_c(d1_c),
                 .o_i(y1_i), .t_i(z1_i), .t_oen(z_oen), .b_o(d1_o), .b_oen(d1_oen));
    test_pads u_test (.tdi(tdi), .tms(tms), .tck(tck), .trst_n(trst_n), .tdo(tdo), .tdi_c(tdi_c));
    core u_core (.clk(clk_c), .rst_n(rst_n_c), .a(a_c), .b(b_c), .c(c_c), .d0_c(d0_c), .d1_c(d1_c),
                 .y0(y0_i), .y1(y1_i), .z0(z0_i), .z1(z1_i), .z_oen(z_oen),
                 .d0_o(d0_o), .d0_oen(d0_oen), .d1_o(d1_o), .d1_oen(d1_oen));
endmodule
