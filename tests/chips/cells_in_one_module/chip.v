// All pads in the top module; the boundary cells live in chip_BCM.v.

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

module chip (input clk, rst_n, a, b, e, tdi, tms, tck, trst_n, output y0, y1, z0, z1, tdo, inout d0, d1);
    wire clk_c, rst_n_c, a_c, b_c, e_c, d0_c, d1_c, y0_i, y1_i, z0_i, z1_i, z_oen, d0_o, d0_oen, d1_o, d1_oen;
    CKPAD pad_clk (.PAD(clk), .C(clk_c));
    IPAD pad_rst_n (.PAD(rst_n), .C(rst_n_c));
    IPAD pad_a (.PAD(a), .C(a_c));
    IPAD pad_b (.PAD(b), .C(b_c));
    IPAD pad_e (.PAD(e), .C(e_c));
    OPAD pad_y0 (.I(y0_i), .PAD(y0));
    OPAD pad_y1 (.I(y1_i), .PAD(y1));
    TPAD pad_z0 (.I(z0_i), .OEN(z_oen), .PAD(z0));
    TPAD pad_z1 (.I(z1_i), .OEN(z_oen), .PAD(z1));
    BPAD pad_d0 (.I(d0_o), .OEN(d0_oen), .C(d0_c), .PAD(d0));
    BPAD pad_d1 (.I(d1_o), .OEN(d1_oen), .C(d1_c), .PAD(d1));
    IPADU pad_tdi (.PAD(tdi));
    IPADU pad_tms (.PAD(tms));
    IPAD pad_tck (.PAD(tck));
    IPADU pad_trst_n (.PAD(trst_n));
    TPAD pad_tdo (.I(1'b0), .OEN(1'b1), .PAD(tdo));
    core u_core (.clk(clk_c), .rst_n(rst_n_c), .a(a_c), .b(b_c), .c(e_c), .d0_c(d0_c), .d1_c(d1_c),
                 .y0(y0_i), .y1(y1_i), .z0(z0_i), .z1(z1_i), .z_oen(z_oen),
                 .d0_o(d0_o), .d0_oen(d0_oen), .d1_o(d1_o), .d1_oen(d1_oen));
endmodule
