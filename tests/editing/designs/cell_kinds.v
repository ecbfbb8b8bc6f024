// 1 CLK clk *
// 2 PA a *
// 3 INV -inv *
// 4 OBS obs * BSC(BC_OBS)
// 5 MI mi *
// 6 THRU thru *
// 7 BSI bsi *
// 8 Y y LEFT
// 9 P0 t0 *
// 10 T1 t1 *
// 11 HZ0 hz0 *
// 12 HZ1 hz1 *
// 13 EN_O en_o *
// 14 MO mo *
// 15 MT mt *
// 16 BSO bso *
// 17 FEED feed *
// 18 PIO io *
// 19 MB mb *
// 20 INTERNAL g0{Q} *
// 21 OBSERVE g1{D} *
// 30 TDI tdi *
// 31 TMS tms *
// 32 TCK tck *
// 33 TDO tdo *
module chip(input clk, input a, input inv, input obs, input mi, input thru, input bsi, input d_p, input d_m,
            output y, output t0, output t1, output hz0, output hz1, output en_o, output mo, output mt, output bso,
            output feed, inout io, inout mb, input tdi, tms, tck, output tdo);
wire clk_c, a_c, inv_c, obs_c, mi_c, thru_c, thru_b, bsi_c, dif_c;
wire y_i, t0_i, t1_i, en, h0_i, h1_i, en_i, mo_i, mt_i, bso_i, io_i, io_c, mb_i, mb_c, tdi_c, tms_c, tck_c, tdo_i, q;
IBUF pclk(.PAD(clk), .C(clk_c));
IBUF pa(.PAD(a), .C(a_c));
IBUF pinv(.PAD(inv), .C(inv_c));
IBUF pobs(.PAD(obs), .C(obs_c));
MUXI pmi(.PAD(mi), .T(1'b0), .C(mi_c));
IBUF pthru(.PAD(thru), .C(thru_c)); TRB tr(.A(thru_c), .Z(thru_b));
BSIN pbsi(.PAD(bsi), .C(bsi_c));
FF g0(.D(a_c), .CK(clk_c), .Q(y_i)); FF g1(.D(inv_c), .CK(clk_c), .Q(t0_i)); FF g2(.D(obs_c), .CK(clk_c), .Q(t1_i));
FF g3(.D(mi_c), .CK(clk_c), .Q(en)); FF g4(.D(thru_b), .CK(clk_c), .Q(h0_i)); FF g5(.D(bsi_c), .CK(clk_c), .Q(h1_i));
FF g6(.D(io_c), .CK(clk_c), .Q(io_i)); FF g7(.D(mb_c), .CK(clk_c), .Q(mb_i));
OBUF py(.I(y_i), .PAD(y));
TBUF pt0(.I(t0_i), .OEN(en), .PAD(t0));
TBUF pt1(.I(t1_i), .OEN(en), .PAD(t1));
TBUF phz0(.I(h0_i), .OEN(1'b0), .PAD(hz0));
TBUF phz1(.I(h1_i), .OEN(1'b0), .PAD(hz1));
EBUF pen(.EN(y_i), .PAD(en_o));
MUXO pmo(.I(t0_i), .T(1'b1), .PAD(mo));
MUXT pmt(.I(t1_i), .OEN(en), .PAD(mt));
BSOUT pbso(.I(h0_i), .PAD(bso));
OBUF pfeed(.I(a_c), .PAD(feed));
BBUF pio(.I(io_i), .OEN(en), .PAD(io), .C(io_c));
IBUF pi(.PAD(tdi), .C(tdi_c)); IBUF pm(.PAD(tms), .C(tms_c)); IBUF pc(.PAD(tck), .C(tck_c));
TBUF po(.I(tdo_i), .OEN(1'b0), .PAD(tdo));
MXB pmb(.I(mb_i), .OEN(en), .PAD(mb), .C(mb_c));
endmodule
