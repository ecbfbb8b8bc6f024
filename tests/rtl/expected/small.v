@ 1-9
module  chip_tap ( TMS,
                   TDI,
                   TCK,
                   TDO,
                   TDO_EN,
                   first_Bcell,
                   BOUNDARY_out,
                   SHIFT_DR,
                   CLOCK_DR,
                   UPDATE_DR );

        output TDO;
        output SHIFT_DR;
        output CLOCK_DR;
        output TDO_EN;
        output UPDATE_DR;
        output first_Bcell;

        input TMS;
        input TDI;
        input TCK;
        input BOUNDARY_out;

        wire RESET;
        wire SELECT_DR;
        wire ENABLE;
        wire TDOIN;
        wire SHIFT_IR;
        wire CLOCK_IR;
        wire UPDATE_IR;
        wire IR_out;
        wire DR_out;
        wire[0:0]  DR_SELECT;
@ 11-11

@ 13-17
                            SHIFT_IR, CLOCK_IR, UPDATE_IR,
                            SHIFT_DR, CLOCK_DR, UPDATE_DR,
                            RESET, SELECT_DR, ENABLE);

        BYPASS_reg  BYP(BYPASS_out, TDI, SHIFT_DR, CLOCK_DR);

        IR_reg      IR(IR_out, INST, TDI, SHIFT_IR, CLOCK_IR,
                       UPDATE_IR, RESET);

@ 19-29

        DR_mux      Dmux(DR_out, DR_SELECT,
                         BYPASS_out, BOUNDARY_out);

        IR_DR_mux   IDMUX(IR_out, DR_out, SELECT_DR, TDOIN);

        TDO_reg     TDOreg(TDO, TDOIN, TCK);

        assign TDO_EN = ENABLE;

        assign first_Bcell = TDI;

endmodule


module  TAP_controller ( TMS,
                         TCK,
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

@ 34-34
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

@ 36-36
        begin
@ 42-48
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
@ 50-50
        assign BYPASS_in = SHIFT_DR & TDI;

        always @(posedge CLOCK_DR)
            BYPASS_cell <= BYPASS_in;

        assign BYPASS_out = BYPASS_cell;

endmodule


module IR_reg ( IR_out,
                INST,
                TDI,
                SHIFT_IR,
                CLOCK_IR,
                UPDATE_IR,
                RESET );

        output IR_out;
@ 52-52

        input TDI;
        input SHIFT_IR;
        input UPDATE_IR;
        input CLOCK_IR;
        input RESET;

@ 55-59

        always @(posedge CLOCK_IR)
            CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[2:1]} : 3'b001;

        always @(posedge UPDATE_IR or negedge RESET)
            if (RESET == 0)  UPD_IR <= 3'b111;
            else  UPD_IR <= CAP_IR;

        assign  INST   = UPD_IR;
        assign  IR_out = CAP_IR[0];

endmodule


module IR_dec ( DR_SELECT,
@ 62-62
        output[0:0] DR_SELECT;
@ 66-69
        `define  SEL_BYPASS       1'b0
        `define  SEL_boundary     1'b1

@ 74-74
@ 76-79


endmodule


module DR_mux ( DR_out,
                DR_SELECT,
                BYPASS_out,
                boundary_out );

       output DR_out;

        input BYPASS_out;
@ 81-82
        input[0:0]  DR_SELECT;

        `define  SEL_BYPASS       1'b0
        `define  SEL_boundary     1'b1

        assign  DR_out = (
                ((DR_SELECT == `SEL_BYPASS) & BYPASS_out) |
                ((DR_SELECT == `SEL_boundary) & boundary_out));

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
                  TCK);

        output TDO;

        input TDOIN;
        input TCK;

        reg TDO_cell;

        always @(negedge TCK)
            TDO_cell <= TDOIN;

        assign TDO =  TDO_cell;
@ 84-89
endmodule
