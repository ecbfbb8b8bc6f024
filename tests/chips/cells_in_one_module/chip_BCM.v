// The boundary register of chip.v and its TAP, written by hand as a user of -add_bcm does. s0 leaves the cell
// next to TDO.

module chip_BCM (
    input BCM_TDI, BCM_TMS, BCM_TCK, BCM_TRST_N, output BCM_TDO, BCM_TDO_EN,
    input BCELL0_DATA_IN, BCELL0_PAD_IN, output BCELL0_DATA_OUT, BCELL0_PAD_OUT,
    input BCELL1_IN, output BCELL1_OUT,
    input BCELL2_DATA_IN, BCELL2_PAD_IN, output BCELL2_DATA_OUT, BCELL2_PAD_OUT,
    input BCELL3_IN, output BCELL3_OUT,
    input BCELL4_CLK_IN,
    input BCELL5_IN, output BCELL5_OUT,
    input BCELL6_IN, output BCELL6_OUT,
    input BCELL7_IN, output BCELL7_OUT,
    input BCELL8_IN, output BCELL8_OUT,
    input BCELL9_IN, output BCELL9_OUT,
    input BCELL10_IN, output BCELL10_OUT,
    input BCELL11_IN, output BCELL11_OUT,
    input BCELL12_IN, output BCELL12_OUT,
    input BCELL13_IN, output BCELL13_OUT
);
    wire shift, clock, update, reset_n, mode_1, mode_2, from_tap;
    wire s0, s1, s2, s3, s4, s5, s6, s7, s8, s9, s10, s11, s12, s13;
    jtag_tap u_tap (.TDI(BCM_TDI), .TMS(BCM_TMS), .TCK(BCM_TCK), .TRST_N(BCM_TRST_N), .TDO(BCM_TDO),
                    .TDO_EN(BCM_TDO_EN), .BSR_SI(from_tap), .BSR_SO(s0), .SHIFT_DR(shift), .CLOCK_DR(clock),
                    .UPDATE_DR(update), .RESET_N(reset_n), .MODE_1(mode_1), .MODE_2(mode_2));
    BC_BID BCELL0 (.DI(BCELL0_DATA_IN), .DO(BCELL0_PAD_OUT), .SP(BCELL0_PAD_IN), .CI(BCELL0_DATA_OUT),
                   .SI(s1), .SO(s0), .SE(shift), .CK(clock), .UP(update), .MODE1(mode_1), .MODE2(mode_2));
    BC_CTL BCELL1 (.DI(BCELL1_IN), .DO(BCELL1_OUT), .SI(s2), .SO(s1), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1), .RN(reset_n));
    BC_BID BCELL2 (.DI(BCELL2_DATA_IN), .DO(BCELL2_PAD_OUT), .SP(BCELL2_PAD_IN), .CI(BCELL2_DATA_OUT),
                   .SI(s3), .SO(s2), .SE(shift), .CK(clock), .UP(update), .MODE1(mode_1), .MODE2(mode_2));
    BC_CTL BCELL3 (.DI(BCELL3_IN), .DO(BCELL3_OUT), .SI(s4), .SO(s3), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1), .RN(reset_n));
    BC_CLK BCELL4_CLK (.DI(BCELL4_CLK_IN), .SI(s5), .SO(s4), .SE(shift), .CK(clock));
    BC_IN BCELL5 (.DI(BCELL5_IN), .DO(BCELL5_OUT), .SI(s6), .SO(s5), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_2));
    BC_IN BCELL6 (.DI(BCELL6_IN), .DO(BCELL6_OUT), .SI(s7), .SO(s6), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_2));
    BC_IN BCELL7 (.DI(BCELL7_IN), .DO(BCELL7_OUT), .SI(s8), .SO(s7), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_2));
    BC_IN BCELL8 (.DI(BCELL8_IN), .DO(BCELL8_OUT), .SI(s9), .SO(s8), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_2));
    BC_OUT BCELL9 (.DI(BCELL9_IN), .DO(BCELL9_OUT), .SI(s10), .SO(s9), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1));
    BC_OUT BCELL10 (.DI(BCELL10_IN), .DO(BCELL10_OUT), .SI(s11), .SO(s10), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1));
    BC_OUT BCELL11 (.DI(BCELL11_IN), .DO(BCELL11_OUT), .SI(s12), .SO(s11), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1));
    BC_CTL BCELL12 (.DI(BCELL12_IN), .DO(BCELL12_OUT), .SI(s13), .SO(s12), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1), .RN(reset_n));
    BC_OUT BCELL13 (.DI(BCELL13_IN), .DO(BCELL13_OUT), .SI(from_tap), .SO(s13), .SE(shift), .CK(clock),
                   .UP(update), .MODE(mode_1));
endmodule
