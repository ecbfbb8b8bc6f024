// The boundary register of the layout cells_in_one_module and its TAP, written by hand as a user of -add_bcm does.
// s[0] leaves the cell next to TDO.
module chip_BCM (
    input BCM_TDI, BCM_TMS, BCM_TCK, BCM_TRST_N, output BCM_TDO, BCM_TDO_EN,
    input BCELL0_CLK_IN, BCELL1_IN, BCELL2_IN, BCELL3_IN, output BCELL1_OUT, BCELL2_OUT, BCELL3_OUT,
    input BCELL4_IN, BCELL5_IN, BCELL6_IN, BCELL7_IN, output BCELL4_OUT, BCELL5_OUT, BCELL6_OUT, BCELL7_OUT,
    input BCELL8_DATA_IN, BCELL8_PAD_IN, BCELL9_IN, output BCELL8_DATA_OUT, BCELL8_PAD_OUT, BCELL9_OUT
);
    wire se, ck, up, rn, mode_1, mode_2;
    wire [10:0] s;
    jtag_tap u_tap (.TDI(BCM_TDI), .TMS(BCM_TMS), .TCK(BCM_TCK), .TRST_N(BCM_TRST_N), .TDO(BCM_TDO),
                    .TDO_EN(BCM_TDO_EN), .BSR_SI(s[10]), .BSR_SO(s[0]), .SHIFT_DR(se), .CLOCK_DR(ck),
                    .UPDATE_DR(up), .RESET_N(rn), .MODE_1(mode_1), .MODE_2(mode_2));
    BC_CLK BCELL0_CLK (BCELL0_CLK_IN, s[1], s[0], se, ck);
    BC_IN BCELL1 (BCELL1_IN, BCELL1_OUT, s[2], s[1], se, ck, up, mode_2);
    BC_IN BCELL2 (BCELL2_IN, BCELL2_OUT, s[3], s[2], se, ck, up, mode_2);
    BC_IN BCELL3 (BCELL3_IN, BCELL3_OUT, s[4], s[3], se, ck, up, mode_2);
    BC_OUT BCELL4 (BCELL4_IN, BCELL4_OUT, s[5], s[4], se, ck, up, mode_1);
    BC_OUT BCELL5 (BCELL5_IN, BCELL5_OUT, s[6], s[5], se, ck, up, mode_1);
    BC_CTL BCELL6 (BCELL6_IN, BCELL6_OUT, s[7], s[6], se, ck, up, mode_1, rn);
    BC_OUT BCELL7 (BCELL7_IN, BCELL7_OUT, s[8], s[7], se, ck, up, mode_1);
    BC_BID BCELL8 (BCELL8_DATA_IN, BCELL8_PAD_OUT, BCELL8_PAD_IN, BCELL8_DATA_OUT, s[9], s[8], se, ck, up,
                   mode_1, mode_2);
    BC_CTL BCELL9 (BCELL9_IN, BCELL9_OUT, s[10], s[9], se, ck, up, mode_1, rn);
endmodule
