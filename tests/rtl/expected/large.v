@ 1-1
@ 6-6
                   TRST,
@ 11-11
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
@ 16-16
@ 19-18
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
@ 24-23
        input TRST;
        input  MYREG_out;
        input  USERDR_out;
@ 34-35
        wire IDMODE;
        wire tap_UPDATE_DR;
        wire[2:0]  DR_SELECT;
        wire[3:0] INST;
@ 37-37
        TAP_controller  TAP(TMS, TCK, TRST,
@ 39-39
                            SHIFT_DR, CLOCK_DR, tap_UPDATE_DR,
@ 44-43
        ID_reg      ID(IDCODE_out, TDI, SHIFT_DR, CLOCK_DR, IDMODE);

@ 47-47
        IR_dec      IRdec(DR_SELECT, INST, CHIP_TEST, HIGHZ, MODE1, MODE2, MODE3, IDMODE,
                          en_a, en_b, en_c_wire, velmora_test_mode);
@ 50-50
                         BYPASS_out, BOUNDARY_out, IDCODE_out, USERCODE_out, MYREG_out, USERDR_out);
@ 54-56
        TDO_reg     TDOreg(TDO, TDOIN, TCK, ENABLE);
@ 60-59
        assign MYREG_in = TDI;

        assign USERDR_in = TDI;

        assign USERCODE_out = 1'b0;

        assign velmora_scan_mode = velmora_test_mode & TMS;

        assign UPDATE_DR = ~( INST == 4'b0110 ) & tap_UPDATE_DR;
        assign en_c = en_c_wire & SHIFT_DR;

@ 65-64
                         TRST,
@ 87-86
        input TRST;
@ 124-124
        always @(posedge TCK or negedge TRST)
            if (TRST == 0 )
              STATE <= `TEST_LOGIC_RESET;
            else if (TMS && internal_TRST == 0)
              STATE <= `TEST_LOGIC_RESET;
            else
@ 162-162
        always @(negedge TCK or negedge TRST)
@ 164-164
            if (TRST == 0)
            begin
                RESET_reg    <= 0;
                EN_reg       <= 0;
                SHIFT_IR_reg <= 0;
                SHIFT_DR_reg <= 0;
            end
            else begin
                RESET_reg    <= (STATE == `TEST_LOGIC_RESET) ? 0 : 1;
                EN_reg       <= (STATE == `SHIFT_DR |
                                STATE == `SHIFT_IR) ? 1 : 0;
                SHIFT_IR_reg <= (STATE == `SHIFT_IR) ? 1 : 0;
                SHIFT_DR_reg <= (STATE == `SHIFT_DR) ? 1 : 0;
            end
@ 195-195

@ 206-205
module ID_reg ( IDCODE_out,
                TDI,
                SHIFT_DR,
                CLOCK_DR,
                 IDMODE );

        output IDCODE_out;

        input TDI;
        input SHIFT_DR;
        input CLOCK_DR;
        input IDMODE;

        reg[31:0] ID_cell;

        always @(posedge CLOCK_DR)
            if (SHIFT_DR == 1)  ID_cell <= {TDI, ID_cell[31:1]};
            else if (IDMODE == 1) ID_cell <= 32'b00010010001101000101011001111001;
            else  ID_cell <= 32'b11001010111111101011101010111110;
        assign IDCODE_out = ID_cell[0];

endmodule


@ 215-215
        output[3:0] INST;
@ 223-223
        reg[3:0] CAP_IR;
        reg[3:0] UPD_IR;
@ 226-226
            CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[3:1]} : 4'b0001;
@ 229-229
            if (RESET == 0)  UPD_IR <= 4'b0011;
@ 239-243
                INST,
                CHIP_TEST,
                HIGHZ,
                MODE1,
                MODE2,
                MODE3,
                IDMODE,
                en_a,
                en_b,
                en_c,
                velmora_test_mode );

        output[2:0] DR_SELECT;
        output CHIP_TEST;
        output HIGHZ;
        output IDMODE;
        output MODE1;
        output MODE2;
        output MODE3;
        output en_a;
        output[2:0] en_b;
        output en_c;
        output velmora_test_mode;

        input[3:0] INST;

        `define  SEL_BYPASS       3'b000
        `define  SEL_BOUNDARY     3'b001
        `define  SEL_IDCODE       3'b010
        `define  SEL_USERCODE     3'b011
        `define  SEL_MYREG        3'b100
        `define  SEL_USERDR       3'b101

        assign  MODE1 = ( INST == 4'b0000 ) | ( INST == 4'b1000 ) | ( INST == 4'b0010 ) | ( INST == 4'b0110 ) | ( INST == 4'b0111 );
        assign  MODE2 =( INST == 4'b0010 );
        assign  MODE3 = ( INST == 4'b0000 )| ( INST == 4'b1000 ) | ( INST == 4'b0001 ) | ( INST == 4'b0110 );
        assign  HIGHZ =( INST == 4'b0101 );
        assign  CHIP_TEST =( INST == 4'b1001 );
        assign  en_a = ( INST == 4'b1100 ) ||
                       ( INST == 4'b1101 );
        assign  en_b = (INST == 4'b1100) ? 3'b101 :
                       (INST == 4'b1101) ? 3'b010 :
                       3'b000;

        assign  en_c = ( INST == 4'b1100 );
        assign  velmora_test_mode =( INST == 4'b1010 );

        assign  DR_SELECT = (INST == 4'b0000) ? `SEL_BOUNDARY :
                            (INST == 4'b1000) ? `SEL_BOUNDARY :
                            (INST == 4'b0001) ? `SEL_BOUNDARY:
                            (INST == 4'b0010) ? `SEL_BOUNDARY:
                            (INST == 4'b0011) ? `SEL_IDCODE:
                            (INST == 4'b1011) ? `SEL_IDCODE:
                            (INST == 4'b0100) ? `SEL_USERCODE:
                            (INST == 4'b1111) ? `SEL_BYPASS:
                            (INST == 4'b1110) ? `SEL_BYPASS:
                            (INST == 4'b0101) ? `SEL_BYPASS:
                            (INST == 4'b0110) ? `SEL_BYPASS:
                            (INST == 4'b0111) ? `SEL_MYREG:
                            (INST == 4'b1001) ? `SEL_MYREG:
                            (INST == 4'b1010) ? `SEL_BYPASS:
                            (INST == 4'b1100) ? `SEL_USERDR:
                            (INST == 4'b1101) ? `SEL_USERDR:
                            `SEL_BYPASS;
@ 245-246
        assign  IDMODE = (INST == 4'b0011 ||
                          INST == 4'b1011 ) ? 1'b1 : 1'b0;
@ 255-255
                BOUNDARY_out,
                IDCODE_out,
                USERCODE_out,
                MYREG_out,
                USERDR_out );
@ 260-264
        input BOUNDARY_out;
        input IDCODE_out;
        input USERCODE_out;
        input MYREG_out;
        input USERDR_out;
        input[2:0]  DR_SELECT;

        `define  SEL_BYPASS       3'b000
        `define  SEL_BOUNDARY     3'b001
        `define  SEL_IDCODE       3'b010
        `define  SEL_USERCODE     3'b011
        `define  SEL_MYREG        3'b100
        `define  SEL_USERDR       3'b101
@ 268-268
                ((DR_SELECT == `SEL_BOUNDARY) & BOUNDARY_out) |
                ((DR_SELECT == `SEL_IDCODE) & IDCODE_out) |
                ((DR_SELECT == `SEL_USERCODE) & USERCODE_out) |
                ((DR_SELECT == `SEL_MYREG) & MYREG_out) |
                ((DR_SELECT == `SEL_USERDR) & USERDR_out));
@ 289-289
                  TCK,
                  ENABLE);
@ 295-294
        input ENABLE;
@ 301-302
        assign TDO = (ENABLE) ?  TDO_cell : 1'bz;

