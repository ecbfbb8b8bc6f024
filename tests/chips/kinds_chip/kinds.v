// One pad of each kind round a small core: sixteen flip-flops in a ring, with the inputs mixed in. Every
// output and every enable takes a bit of the ring, so that all of them move as soon as the inputs do.

`timescale 1ns / 1ps

module kinds_core (input clk, rst_n, input [13:0] x, output [15:0] s);
    wire [13:0] m;
    XOR2 mix [13:0] (.A({s[12:0], s[15]}), .B(x), .Z(m));
    DFFR bits [15:0] (.D({s[14:13], m}), .CK(clk), .RN(rst_n), .Q(s));
endmodule

module kinds (clk, rst_n, d0, d1, dn, bf, fti, dip, dim, bsi, mxi, mck, q0, q1, q2, t0, t1, th, tp, tk,
              od, os, io0, io1, ioh, iof, iog, dop, dom, dtp, dtm, dup, dum, bst, mxo, mxt, mxe, fto,
              mxb, mxc, bsb, tdi, tms, tck, trst_n, tdo);
    input clk, rst_n, d0, d1, dn, bf, fti, dip, dim, bsi, mxi, mck, tdi, tms, tck, trst_n;
    output q0, q1, q2, t0, t1, th, tp, tk, od, os, dop, dom, dtp, dtm, dup, dum, bst, mxo, mxt, mxe, fto, tdo;
    inout io0, io1, ioh, iof, iog, mxb, mxc, bsb;
    wire tdi_c, tms_c, tck_c, trst_n_c, clk_c, rst_n_c, d0_p, d1_c, bf_c, ft, q1_p, glue, q2_i;
    wire [13:0] x;
    wire [15:0] s;

    kinds_core u_core (.clk(clk_c), .rst_n(rst_n_c), .x(x), .s(s));
    NAND2 u_glue (.A(s[3]), .B(s[5]), .Z(glue));
    XOR2 u_mix (.A(glue), .B(s[14]), .Z(q2_i));

    // inputs
    CKPAD p_clk (.PAD(clk), .C(clk_c));
    IPAD p_rst_n (.PAD(rst_n), .C(rst_n_c));
    IPAD p_d0 (.PAD(d0), .C(d0_p));
    TRBUF b_d0 (.A(d0_p), .Z(x[0]));
    IPAD p_d1 (.PAD(d1), .C(d1_c));
    TBUF p_bf (.A(bf), .Z(bf_c));
    XOR2 u_bf (.A(d1_c), .B(bf_c), .Z(x[1]));
    IPAD p_dn (.PAD(dn), .C(x[2]));
    DIPAD p_di (.PP(dip), .PM(dim), .C(x[3]));
    BSIPAD p_bsi (.PAD(bsi), .C(x[4]));
    MIPAD p_mxi (.PAD(mxi), .T(1'b0), .S(1'b0), .C(x[5]));
    MCKPAD p_mck (.PAD(mck), .C(x[11]));

    // outputs: 2-state, 3-state with each kind of enable, an enable alone
    OPAD p_q0 (.I(s[0]), .PAD(q0));
    TRBUF b_q1 (.A(s[1]), .Z(q1_p));
    OPAD p_q1 (.I(q1_p), .PAD(q1));
    OPAD p_q2 (.I(q2_i), .PAD(q2));
    TPAD p_t0 (.I(s[2]), .OEN(s[8]), .PAD(t0));
    TPAD p_t1 (.I(s[3]), .OEN(s[8]), .PAD(t1));
    TPADH p_th (.I(s[4]), .OE(s[9]), .PAD(th));
    TPAD2 p_tp (.I(s[12]), .OEN(1'b0), .OE(s[10]), .PAD(tp));
    TPAD p_tk (.I(s[5]), .OEN(1'b0), .PAD(tk));
    ODPAD p_od (.OEN(s[6]), .PAD(od));
    OSPAD p_os (.OE(s[7]), .PAD(os));

    // bidirectional; iof has no way in, iog no way out
    BPAD p_io0 (.I(s[0]), .OEN(s[11]), .C(x[6]), .PAD(io0));
    BPAD p_io1 (.I(s[1]), .OEN(s[11]), .C(x[7]), .PAD(io1));
    BPADH p_ioh (.I(s[2]), .OE(s[12]), .C(x[8]), .PAD(ioh));
    BPAD p_iof (.I(s[3]), .OEN(s[11]), .PAD(iof));
    BPAD p_iog (.OEN(1'b1), .C(x[10]), .PAD(iog));

    // differential outputs, and pads with their cell inside
    DOPAD p_do (.I(s[4]), .PP(dop), .PM(dom));
    DTPAD p_dt (.I(s[5]), .OEN(s[13]), .PP(dtp), .PM(dtm));
    DTPAD p_du (.I(s[6]), .OEN(s[13]), .PP(dup), .PM(dum));
    BSTPAD p_bst (.I(s[6]), .OEN(s[14]), .PAD(bst));
    BSBPAD p_bsb (.I(s[7]), .OEN(s[1]), .C(x[13]), .PAD(bsb));

    // pads with a mux: th's enable serves mxt with the other polarity
    MOPAD p_mxo (.I(s[7]), .PAD(mxo));
    MTPAD p_mxt (.I(s[8]), .T(1'b1), .S(1'b0), .OEN(s[9]), .PAD(mxt));
    MBPAD p_mxb (.I(s[9]), .OEN(s[15]), .C(x[9]), .PAD(mxb));
    MBPAD2 p_mxc (.I(s[10]), .S(1'b0), .OEN(s[15]), .C(x[12]), .PAD(mxc));

    MEPAD p_mxe (.OEN(s[9]), .PAD(mxe));

    // an input that only feeds an output: one cell serves both
    IPAD p_fti (.PAD(fti), .C(ft));
    OPAD p_fto (.I(ft), .PAD(fto));

    // the test port
    IPAD p_tdi (.PAD(tdi), .C(tdi_c));
    IPAD p_tms (.PAD(tms), .C(tms_c));
    IPAD p_tck (.PAD(tck), .C(tck_c));
    IPAD p_trst_n (.PAD(trst_n), .C(trst_n_c));
    TPAD p_tdo (.I(1'b0), .OEN(1'b1), .PAD(tdo));
endmodule
