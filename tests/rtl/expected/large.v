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

        wire RESET;
        wire SELECT_DR;
        wire ENABLE;
        wire TDOIN;
        wire SHIFT_IR;
        wire CLOCK_IR;
        wire UPDATE_IR;
        wire IR_out;
        wire DR_out;
        wire IDMODE;
        wire tap_UPDATE_DR;
        wire[2:0]  DR_SELECT;
        wire[3:0] INST;

        TAP_controller  TAP(TMS, TCK, TRST,
                            SHIFT_IR, CLOCK_IR, UPDATE_IR,
                            SHIFT_DR, CLOCK_DR, tap_UPDATE_DR,
                            RESET, SELECT_DR, ENABLE);

        BYPASS_reg  BYP(BYPASS_out, TDI, SHIFT_DR, CLOCK_DR);

        ID_reg      ID(IDCODE_out, TDI, SHIFT_DR, CLOCK_DR, IDMODE);

        IR_reg      IR(IR_out, INST, TDI, SHIFT_IR, CLOCK_IR,
                       UPDATE_IR, RESET);

        IR_dec      IRdec(DR_SELECT, INST, CHIP_TEST, HIGHZ, MODE1, MODE2, MODE3, IDMODE,
                          en_a, en_b, en_c_wire, velmora_test_mode);

        DR_mux      Dmux(DR_out, DR_SELECT,
                         BYPASS_out, BOUNDARY_out, IDCODE_out, USERCODE_out, MYREG_out, USERDR_out);

        IR_DR_mux   IDMUX(IR_out, DR_out, SELECT_DR, TDOIN);

        TDO_reg     TDOreg(TDO, TDOIN, TCK, ENABLE);

        assign first_Bcell = TDI;

        assign MYREG_in = TDI;

        assign USERDR_in = TDI;

        assign USERCODE_out = 1'b0;

        assign velmora_scan_mode = velmora_test_mode & TMS;

        assign UPDATE_DR = ~( INST == 4'b0110 ) & tap_UPDATE_DR;
        assign en_c = en_c_wire & SHIFT_DR;

endmodule


module  TAP_controller ( TMS,
                         TCK,
                         TRST,
                         SHIFT_IR,
                         CLOCK_IR,
                         UPDATE_IR,
                         SHIFT_DR,
                         CLOCK_DR,
                         UPDATE_DR,
                         RESET,
                         SELECT_DR,
                         ENABLE );

        output SHIFT_IR;
        output CLOCK_IR;
        output UPDATE_IR;
        output SHIFT_DR;
        output CLOCK_DR;
        output UPDATE_DR;
        output RESET;
        output SELECT_DR;
        output ENABLE;

        input TMS;
        input TCK;
        input TRST;

        reg EN_reg;
        reg RESET_reg;
        reg SHIFT_IR_reg;
        reg SHIFT_DR_reg;
        reg[3:0] tms_count;
        reg[3:0] STATE;

        `define  TEST_LOGIC_RESET   4'b0100
        `define  RUN_TEST_IDLE      4'b1100

        `define  SELECT_DR_SCAN     4'b0000
        `define  CAPTURE_DR         4'b0001
        `define  SHIFT_DR           4'b0011
        `define  EXIT1_DR           4'b0010
        `define  PAUSE_DR           4'b0110
        `define  EXIT2_DR           4'b0111
        `define  UPDATE_DR          4'b0101

        `define  SELECT_IR_SCAN     4'b1000
        `define  CAPTURE_IR         4'b1001
        `define  SHIFT_IR           4'b1011
        `define  EXIT1_IR           4'b1010
        `define  PAUSE_IR           4'b1110
        `define  EXIT2_IR           4'b1111
        `define  UPDATE_IR          4'b1101

        always @(posedge TCK)
            tms_count <= {tms_count[2:0],TMS} ;

        wire internal_TRST1 = (tms_count[0] == 1) &&
                              (tms_count[1] == 1) &&
                              (tms_count[2] == 1) &&
                              (tms_count[3] == 1);

        wire internal_TRST = ~internal_TRST1;

        always @(posedge TCK or negedge TRST)
            if (TRST == 0 )
              STATE <= `TEST_LOGIC_RESET;
            else if (TMS && internal_TRST == 0)
              STATE <= `TEST_LOGIC_RESET;
            else
            case (STATE)

            `TEST_LOGIC_RESET:
              STATE <= (TMS) ? `TEST_LOGIC_RESET: `RUN_TEST_IDLE;
            `RUN_TEST_IDLE:
              STATE <= (TMS) ? `SELECT_DR_SCAN: `RUN_TEST_IDLE;
            `SELECT_DR_SCAN:
              STATE <= (TMS) ? `SELECT_IR_SCAN: `CAPTURE_DR;
            `CAPTURE_DR:
              STATE <= (TMS) ? `EXIT1_DR: `SHIFT_DR;
            `SHIFT_DR:
              STATE <= (TMS) ? `EXIT1_DR: `SHIFT_DR;
            `EXIT1_DR:
              STATE <= (TMS) ? `UPDATE_DR: `PAUSE_DR;
            `PAUSE_DR:
              STATE <= (TMS) ? `EXIT2_DR: `PAUSE_DR;
            `EXIT2_DR:
              STATE <= (TMS) ? `UPDATE_DR: `SHIFT_DR;
            `UPDATE_DR:
              STATE <= (TMS) ? `SELECT_DR_SCAN: `RUN_TEST_IDLE;
            `SELECT_IR_SCAN:
              STATE <= (TMS) ? `TEST_LOGIC_RESET: `CAPTURE_IR;
            `CAPTURE_IR:
              STATE <= (TMS) ? `EXIT1_IR: `SHIFT_IR;
            `SHIFT_IR:
              STATE <= (TMS) ? `EXIT1_IR: `SHIFT_IR;
            `EXIT1_IR:
              STATE <= (TMS) ? `UPDATE_IR: `PAUSE_IR;
            `PAUSE_IR:
              STATE <= (TMS) ? `EXIT2_IR: `PAUSE_IR;
            `EXIT2_IR:
              STATE <= (TMS) ? `UPDATE_IR: `SHIFT_IR;
            `UPDATE_IR:
              STATE <= (TMS) ? `SELECT_DR_SCAN: `RUN_TEST_IDLE;

            endcase

        always @(negedge TCK or negedge TRST)
        begin
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
        end

        assign  SHIFT_IR = SHIFT_IR_reg;
        assign  SHIFT_DR = SHIFT_DR_reg;
        assign  RESET = RESET_reg;
        assign  ENABLE    = EN_reg;
        assign  SELECT_DR = (STATE < 8) ? 1 : 0;
        assign  CLOCK_IR = !(STATE == `SHIFT_IR || STATE == `CAPTURE_IR)
                           | TCK;
        assign  CLOCK_DR = !(STATE == `SHIFT_DR || STATE == `CAPTURE_DR)
                           | TCK;
        assign  UPDATE_IR = (STATE == `UPDATE_IR) & (~TCK);
        assign  UPDATE_DR = (STATE == `UPDATE_DR) & (~TCK);

endmodule


module BYPASS_reg ( BYPASS_out,
                    TDI,
                    SHIFT_DR,
                    CLOCK_DR );

        output BYPASS_out;

        input TDI;
        input SHIFT_DR;
        input CLOCK_DR;

        wire BYPASS_in;
        reg BYPASS_cell;

        assign BYPASS_in = SHIFT_DR & TDI;

        always @(posedge CLOCK_DR)
            BYPASS_cell <= BYPASS_in;

        assign BYPASS_out = BYPASS_cell;

endmodule


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


module IR_reg ( IR_out,
                INST,
                TDI,
                SHIFT_IR,
                CLOCK_IR,
                UPDATE_IR,
                RESET );

        output IR_out;
        output[3:0] INST;

        input TDI;
        input SHIFT_IR;
        input UPDATE_IR;
        input CLOCK_IR;
        input RESET;

        reg[3:0] CAP_IR;
        reg[3:0] UPD_IR;

        always @(posedge CLOCK_IR)
            CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[3:1]} : 4'b0001;

        always @(posedge UPDATE_IR or negedge RESET)
            if (RESET == 0)  UPD_IR <= 4'b0011;
            else  UPD_IR <= CAP_IR;

        assign  INST   = UPD_IR;
        assign  IR_out = CAP_IR[0];

endmodule


module IR_dec ( DR_SELECT,
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

        assign  IDMODE = (INST == 4'b0011 ||
                          INST == 4'b1011 ) ? 1'b1 : 1'b0;


endmodule


module DR_mux ( DR_out,
                DR_SELECT,
                BYPASS_out,
                BOUNDARY_out,
                IDCODE_out,
                USERCODE_out,
                MYREG_out,
                USERDR_out );

       output DR_out;

        input BYPASS_out;
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

        assign  DR_out = (
                ((DR_SELECT == `SEL_BYPASS) & BYPASS_out) |
                ((DR_SELECT == `SEL_BOUNDARY) & BOUNDARY_out) |
                ((DR_SELECT == `SEL_IDCODE) & IDCODE_out) |
                ((DR_SELECT == `SEL_USERCODE) & USERCODE_out) |
                ((DR_SELECT == `SEL_MYREG) & MYREG_out) |
                ((DR_SELECT == `SEL_USERDR) & USERDR_out));

endmodule

module IR_DR_mux ( IR_out,
                   DR_out,
                   SELECT_DR,
                   TDOIN );

        output TDOIN;

        input IR_out;
        input DR_out;
        input SELECT_DR;
        assign  TDOIN = (SELECT_DR) ? DR_out : IR_out;

endmodule


module  TDO_reg ( TDO,
                  TDOIN,
                  TCK,
                  ENABLE);

        output TDO;

        input TDOIN;
        input TCK;
        input ENABLE;

        reg TDO_cell;

        always @(negedge TCK)
            TDO_cell <= TDOIN;

        assign TDO = (ENABLE) ?  TDO_cell : 1'bz;

endmodule
