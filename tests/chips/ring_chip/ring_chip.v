// A chip as a layout tool leaves it: names of generate loops, power pins on every cell, layout cells without a
// function, nets that go nowhere, arrays of instances. input_PAD is declared inout and stands on input pads.

`timescale 1ns / 1ps

module ring_chip (clk_PAD, rst_n_PAD, input_PAD, out_PAD, bidir_PAD, analog_PAD, tdi, tms, tck, trst_n, tdo,
    IOVDD, IOVSS, VDD, VSS);
 inout clk_PAD, rst_n_PAD;
 inout [1:0] input_PAD;
 output [1:0] out_PAD;
 inout [5:0] bidir_PAD;
 inout [1:0] analog_PAD;
 input tdi, tms, tck, trst_n;
 output tdo;
 inout IOVDD, IOVSS, VDD, VSS;

 wire clk, \clk_buf[0].leaf , rst_n;
 wire [4:0] pin, \u_core.next ;
 wire \u_core.cnt[0] , \u_core.cnt[1] , \u_core.cnt[2] , \u_core.cnt[3] , \u_core.cnt[4] , \u_core.cnt[5] ;
 wire \u_core.last_n , \bias[0].core , zero;
 wire [3:0] one;
 wire out_net, \u_cfg.on ;

 assign IOVSS = VSS;
 assign out_net = \u_core.cnt[5] ;

 BOND \g_bond[0].bond (.PAD(bidir_PAD[0]));
 BOND \g_bond[1].bond (.PAD(input_PAD[0]));

 CORNER corner [3:0] (.DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 FILL FILLER_0_1 (.VDD(VDD), .VSS(VSS));
 FILL FILLER_0_2 (.VDD(VDD), .VSS(VSS));
 TIEL \tie[0].lo (.Z(zero), .VDD(VDD), .VSS(VSS));
 TIEH tie_hi [3:0] (.Z(one), .VDD(VDD), .VSS(VSS));
 DFFR \u_cfg.on_reg (.D(one[3]), .CK(\clk_buf[0].leaf ), .RN(rst_n), .Q(\u_cfg.on ), .VDD(VDD), .VSS(VSS));
 BUF \clk_buf[0].u (.A(clk), .Z(\clk_buf[0].leaf ), .VDD(VDD), .VSS(VSS));

 mixer \u_core.g[0].mix (.a({\u_core.cnt[3] , \u_core.cnt[2] , \u_core.cnt[1] , \u_core.cnt[0] , \u_core.cnt[5] }),
    .b(pin), .z(\u_core.next ), .VDD(VDD), .VSS(VSS));
 DFFR \u_core.cnt_reg [4:0] (.D(\u_core.next ), .CK(\clk_buf[0].leaf ), .RN(rst_n),
    .Q({\u_core.cnt[4] , \u_core.cnt[3] , \u_core.cnt[2] , \u_core.cnt[1] , \u_core.cnt[0] }),
    .VDD(VDD), .VSS(VSS));
 DFFR \u_core.cnt_reg[5] (.D(\u_core.cnt[4] ), .CK(\clk_buf[0].leaf ), .RN(rst_n), .Q(\u_core.cnt[5] ),
    .QN(\u_core.last_n ), .VDD(VDD), .VSS(VSS));

 pad_ring \g_ring[0].ring (.clk_PAD(clk_PAD), .rst_n_PAD(rst_n_PAD), .input_PAD(input_PAD), .out_PAD(out_PAD),
    .bidir_PAD(bidir_PAD), .analog_PAD(analog_PAD), .tdi(tdi), .tms(tms), .tck(tck), .trst_n(trst_n), .tdo(tdo),
    .clk(clk), .rst_n(rst_n), .y(pin), .out({out_net, \u_core.cnt[0] }),
    .a({1'bx, \u_core.cnt[5] , \u_core.cnt[4] , \u_core.cnt[3] , \u_core.cnt[2] , \u_core.cnt[1] }),
    .oe({zero, \u_core.cnt[0] , \u_core.cnt[4] , \u_core.cnt[3] , \u_core.cnt[2] , \u_core.cnt[2] }),
    .ie(one[0]), .cfg_ie(\u_cfg.on ), .cfg_dm({\u_cfg.on , one[1]}), .bias(\bias[0].core ),
    .IOVDD(IOVDD), .IOVSS(IOVSS), .VDD(VDD), .VSS(VSS));
endmodule

module mixer (a, b, z, VDD, VSS);
 input [4:0] a, b;
 output [4:0] z;
 inout VDD, VSS;
 wire \spare[0] ;

 XOR2 \m.x [4:0] (.A(a), .B(b), .Z(z), .VDD(VDD), .VSS(VSS));
 XOR2 \spare.x[0] (.A(a[0]), .B(1'b0), .Z(\spare[0] ), .VDD(VDD), .VSS(VSS));
endmodule

module pad_ring (clk_PAD, rst_n_PAD, input_PAD, out_PAD, bidir_PAD, analog_PAD, tdi, tms, tck, trst_n, tdo,
    clk, rst_n, y, out, a, oe, ie, cfg_ie, cfg_dm, pads_on, bias, IOVDD, IOVSS, VDD, VSS);
 inout clk_PAD, rst_n_PAD;
 inout [1:0] input_PAD;
 output [1:0] out_PAD;
 inout [5:0] bidir_PAD;
 inout [1:0] analog_PAD;
 input tdi, tms, tck, trst_n;
 output tdo, clk, rst_n;
 output [4:0] y;
 input [1:0] out;
 input [5:0] a, oe;
 input ie, cfg_ie;
 input [1:0] cfg_dm;
 input pads_on;
 inout bias, IOVDD, IOVSS, VDD, VSS;

 wire \bidir2CORE[4] , \bidir2CORE[5] , unused_Y, \jtag.tdi_Y , \jtag.tms_Y , \jtag.tck_Y , \jtag.trst_n_Y ;

 BOND \bond[1] (.PAD(bidir_PAD[1]));
 IN_CK \clk_pad[0].pad (.PAD(clk_PAD), .Y(clk), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C rst_n_pad (.PAD(rst_n_PAD), .Y(rst_n), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \inputs[0].pad (.PAD(input_PAD[0]), .Y(y[0]), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \inputs[1].pad (.PAD(input_PAD[1]), .Y(unused_Y), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 OUT_8 \outputs.pad [1:0] (.A(out), .PAD(out_PAD), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_IE \bidir[0].pad (.A(a[0]), .OE(oe[0]), .IE(ie), .PAD(bidir_PAD[0]), .Y(y[1]),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_IE \bidir[1].pad (.A(a[1]), .OE(oe[1]), .IE(ie), .PAD(bidir_PAD[1]), .Y(y[2]),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_IE_TEST \bidir[2].pad (.A(a[2]), .OE(oe[2]), .IE(cfg_ie), .ON(pads_on), .PAD(bidir_PAD[2]), .Y(y[3]),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_DM_TEST \bidir[3].pad (.A(a[3]), .OE(oe[3]), .DM(cfg_dm), .ON(pads_on), .PAD(bidir_PAD[3]), .Y(y[4]),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_DM \bidir[4].pad (.A(a[4]), .OE(oe[4]), .DM(2'b11), .PAD(bidir_PAD[4]), .Y(\bidir2CORE[4] ),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_IE \bidir[5].pad (.A(a[5]), .OE(oe[5]), .IE(1'b1), .PAD(bidir_PAD[5]), .Y(\bidir2CORE[5] ),
    .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 ANA \analog[0].pad (.PAD(analog_PAD[0]), .CORE(bias), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 ANA \analog[1].pad (.PAD(analog_PAD[1]), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \jtag[0].pad (.PAD(tdi), .Y(\jtag.tdi_Y ), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \jtag[1].pad (.PAD(tms), .Y(\jtag.tms_Y ), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \jtag[2].pad (.PAD(tck), .Y(\jtag.tck_Y ), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 IN_C \jtag[3].pad (.PAD(trst_n), .Y(\jtag.trst_n_Y ), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
 BI_IE \jtag[4].pad (.A(1'bx), .OE(1'bx), .IE(1'b0), .PAD(tdo), .DVDD(IOVDD), .DVSS(IOVSS), .VDD(VDD), .VSS(VSS));
endmodule
