module  chip_tap ( TMS,
                   TDI,
                   TCK,
                   TDO,
                   TRST,
                   first_Bcell,
                   BOUNDARY_out,
                   SHIFT_DR,
                   CLOCK_DR,
                   UPDATE_DR,
                   RESET,
                   MODE1,
                   MODE2,
                   MODE3,
                   HIGHZ,
                  CHIP_TEST,
                   EXTRA1,
                   EXTRA2,
                   MYREG_in,
                   MYREG_out,
                   USERDR_in,
                   USERDR_out,
                   en_a,
                   en_b,
                   en_c,
                   velmora_test_mode,
                   velmora_scan_mode );

        output TDO;
        output SHIFT_DR;
        output CLOCK_DR;
        output UPDATE_DR;
        output first_Bcell;
        output RESET;
        output MODE1;
        output MODE2;
        output MODE3;
        output HIGHZ;
        output CHIP_TEST;
        output EXTRA1;
        output EXTRA2;
        output en_a;
        output[2:0] en_b;
        output en_c;
        output velmora_test_mode;
        output velmora_scan_mode;
        output MYREG_in;
        output USERDR_in;

        input TMS;
        input TDI;
        input TCK;
        input BOUNDARY_out;
        input TRST;
        input  MYREG_out;
        input  USERDR_out;


endmodule
