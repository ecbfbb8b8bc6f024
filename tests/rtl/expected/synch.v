@ 7-7
@ 12-26
                   IDCODE );
@ 32-32
@ 34-37
@ 39-45
@ 52-54
@ 65-68
        wire[1:0]  DR_SELECT;
        wire[2:0] INST;
@ 70-70
        TAP_controller  TAP(TMS, TCK,
@ 72-72
                            SHIFT_DR, CLOCK_DR,
@ 77-77
        ID_reg      ID(IDCODE, IDCODE_out, TCK, TDI, SHIFT_DR, CLOCK_DR);
@ 82-83
        IR_dec      IRdec(DR_SELECT, INST);
@ 86-86
                         BYPASS_out, BOUNDARY_out, IDCODE_out);
@ 92-92
        assign TDO_EN = ~ENABLE;
@ 96-103
@ 106-108
@ 114-114
@ 120-120
@ 130-130
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
@ 244-244
@ 282-283
                CLOCK_DR );
@ 291-291
@ 300-302
                ID_cell <= (SHIFT_DR) ? {TDI, ID_cell[31:1]} :
                           IDCODE;

@ 320-320
        output[2:0] INST;
@ 329-330
        reg[2:0] CAP_IR;
        reg[2:0] UPD_IR;
@ 335-335
                CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[2:1]} : 3'b001;
@ 341-341
                UPD_IR <= 3'b010;
@ 353-410
                INST );

        output[1:0] DR_SELECT;

        input[2:0] INST;

        `define  SEL_BYPASS       2'b00
        `define  SEL_boundary     2'b01
        `define  SEL_idcode       2'b10
@ 412-413

        assign  DR_SELECT = (INST == 3'b000) ? `SEL_boundary :
                            (INST == 3'b001) ? `SEL_boundary:
                            (INST == 3'b111) ? `SEL_BYPASS:
                            (INST == 3'b010) ? `SEL_idcode:
                            `SEL_BYPASS;
@ 422-426
                boundary_out,
                idcode_out );
@ 431-443
        input boundary_out;
        input idcode_out;
        input[1:0]  DR_SELECT;

        `define  SEL_BYPASS       2'b00
        `define  SEL_boundary     2'b01
        `define  SEL_idcode       2'b10
@ 447-451
                ((DR_SELECT == `SEL_boundary) & boundary_out) |
                ((DR_SELECT == `SEL_idcode) & idcode_out));
