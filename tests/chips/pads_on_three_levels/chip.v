// Pads in the top module, in a module below it, in that one's child, and below a module that has none.

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

// Its TDO pad takes data from outside; TMS and the enable of TDO have no ports.
module ring (input rst_n, tms, inout d0, output z0, tdo,
             output rst_n_c, d0_c, input z0_i, z_oen, d0_o, d0_oen, tdo_i);
    IPAD pad_rst_n (.PAD(rst_n), .C(rst_n_c));
    IPADU pad_tms (.PAD(tms));
    TPAD pad_z0 (.I(z0_i), .OEN(z_oen), .PAD(z0));
    BPAD pad_d0 (.I(d0_o), .OEN(d0_oen), .C(d0_c), .PAD(d0));
    TPAD pad_tdo (.I(tdo_i), .OEN(1'b1), .PAD(tdo));
endmodule

module frame (input rst_n, tms, b, tck, inout d0, output z0, tdo, y0,
              output rst_n_c, d0_c, b_c, tck_c, input z0_i, z_oen, d0_o, d0_oen, tdo_i, y0_i);
    IPAD pad_b (.PAD(b), .C(b_c));
    IPAD pad_tck (.PAD(tck), .C(tck_c));
    OPAD pad_y0 (.I(y0_i), .PAD(y0));
    ring u_ring (.rst_n(rst_n), .tms(tms), .d0(d0), .z0(z0), .tdo(tdo), .rst_n_c(rst_n_c), .d0_c(d0_c),
                 .z0_i(z0_i), .z_oen(z_oen), .d0_o(d0_o), .d0_oen(d0_oen), .tdo_i(tdo_i));
endmodule

module deep (input c, trst_n, inout d1, output z1, y1,
             output c_c, d1_c, input z1_i, z_oen, d1_o, d1_oen, y1_i);
    IPAD pad_c (.PAD(c), .C(c_c));
    IPADU pad_trst_n (.PAD(trst_n));
    TPAD pad_z1 (.I(z1_i), .OEN(z_oen), .PAD(z1));
    OPAD pad_y1 (.I(y1_i), .PAD(y1));
    BPAD pad_d1 (.I(d1_o), .OEN(d1_oen), .C(d1_c), .PAD(d1));
endmodule

module shell (input c, trst_n, inout d1, output z1, y1,
              output c_c, d1_c, input z1_i, z_oen, d1_o, d1_oen, y1_i);
    deep u_deep (.c(c), .trst_n(trst_n), .d1(d1), .z1(z1), .y1(y1), .c_c(c_c), .d1_c(d1_c),
                 .z1_i(z1_i), .z_oen(z_oen), .d1_o(d1_o), .d1_oen(d1_oen), .y1_i(y1_i));
endmodule

module chip (input clk, rst_n, a, b, e, tdi, tms, tck, trst_n, output y0, y1, z0, z1, tdo, inout d0, d1);
    wire clk_c, rst_n_c, a_c, b_c, c_c, d0_c, d1_c, y0_i, y1_i, z0_i, z1_i, z_oen, d0_o, d0_oen, d1_o, d1_oen;
    wire tdi_c, tck_c;
    CKPAD pad_clk (.PAD(clk), .C(clk_c));
    IPAD pad_a (.PAD(a), .C(a_c));
    IPADU pad_tdi (.PAD(tdi), .C(tdi_c));
    frame u_frame (.rst_n(rst_n), .tms(tms), .b(b), .tck(tck), .d0(d0), .z0(z0), .tdo(tdo), .y0(y0),
                   .rst_n_c(rst_n_c), .d0_c(d0_c), .b_c(b_c), .tck_c(tck_c), .z0_i(z0_i), .z_oen(z_oen),
                   .d0_o(d0_o), .d0_oen(d0_oen), .tdo_i(1'b0), .y0_i(y0_i));
    shell u_shell (.c(e), .trst_n(trst_n), .d1(d1), .z1(z1), .y1(y1), .c_c(c_c), .d1_c(d1_c),
                   .z1_i(z1_i), .z_oen(z_oen), .d1_o(d1_o), .d1_oen(d1_oen), .y1_i(y1_i));
    core u_core (.clk(clk_c), .rst_n(rst_n_c), .a(a_c), .b(b_c), .c(c_c), .d0_c(d0_c), .d1_c(d1_c),
                 .y0(y0_i), .y1(y1_i), .z0(z0_i), .z1(z1_i), .z_oen(z_oen),
                 .d0_o(d0_o), .d0_oen(d0_oen), .d1_o(d1_o), .d1_oen(d1_oen));
endmodule
