@ 1-1
module  chip_tap ( TMS,
@ 4-4
@ 7-7
@ 12-26
                   UPDATE_DR );
@ 34-45
@ 47-47
@ 52-54
@ 65-68
        wire[0:0]  DR_SELECT;
        wire[2:0] INST;
@ 70-70
        TAP_controller  TAP(TMS, TCK,
@ 72-72
                            SHIFT_DR, CLOCK_DR, UPDATE_DR,
@ 75-77
        BYPASS_reg  BYP(BYPASS_out, TDI, SHIFT_DR, CLOCK_DR);
@ 79-79
        IR_reg      IR(IR_out, INST, TDI, SHIFT_IR, CLOCK_IR,
@ 82-83
        IR_dec      IRdec(DR_SELECT, INST);
@ 86-86
                         BYPASS_out, BOUNDARY_out);
@ 96-108
@ 114-114
@ 137-137
@ 175-180
        always @(posedge TCK)
            if (TMS && internal_TRST == 0)
            STATE <= `TEST_LOGIC_RESET;
          else
@ 218-218
        always @(negedge TCK)
@ 220-233
            RESET_reg    <= (STATE == `TEST_LOGIC_RESET) ? 0 : 1;
            EN_reg       <= (STATE == `SHIFT_DR |
                            STATE == `SHIFT_IR) ? 1 : 0;
            SHIFT_IR_reg <= (STATE == `SHIFT_IR) ? 1 : 0;
            SHIFT_DR_reg <= (STATE == `SHIFT_DR) ? 1 : 0;
@ 241-244
        assign  CLOCK_IR = !(STATE == `SHIFT_IR || STATE == `CAPTURE_IR)
                           | TCK;
        assign  CLOCK_DR = !(STATE == `SHIFT_DR || STATE == `CAPTURE_DR)
                           | TCK;
        assign  UPDATE_IR = (STATE == `UPDATE_IR) & (~TCK);
        assign  UPDATE_DR = (STATE == `UPDATE_DR) & (~TCK);

@ 249-249
@ 256-256
@ 266-270
        always @(posedge CLOCK_DR)
            BYPASS_cell <= BYPASS_in;
@ 277-309
@ 312-312
@ 320-320
        output[2:0] INST;
@ 322-322
@ 329-330
        reg[2:0] CAP_IR;
        reg[2:0] UPD_IR;
@ 332-335
        always @(posedge CLOCK_IR)
            CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[2:1]} : 3'b001;
@ 337-343
        always @(posedge UPDATE_IR or negedge RESET)
            if (RESET == 0)  UPD_IR <= 3'b111;
            else  UPD_IR <= CAP_IR;
@ 345-345
@ 353-410
                INST );

        output[0:0] DR_SELECT;

        input[2:0] INST;
@ 412-413
        `define  SEL_BYPASS       1'b0
        `define  SEL_boundary     1'b1


        assign  DR_SELECT = (INST == 3'b000) ? `SEL_boundary :
                            (INST == 3'b001) ? `SEL_boundary:
                            (INST == 3'b111) ? `SEL_BYPASS:
                            `SEL_BYPASS;
@ 422-426
                boundary_out );
@ 431-443
        input boundary_out;
        input[0:0]  DR_SELECT;

        `define  SEL_BYPASS       1'b0
        `define  SEL_boundary     1'b1
@ 447-451
                ((DR_SELECT == `SEL_boundary) & boundary_out));
