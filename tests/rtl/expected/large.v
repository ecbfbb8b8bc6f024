@ 1-1
module  chip_tap ( TMS,
@ 4-4
@ 6-6
@ 15-14
                   MODE2,
@ 16-16
                   HIGHZ,
@ 18-17
                   EXTRA1,
                   EXTRA2,
@ 31-31
@ 36-35
        output MODE2;
@ 37-36
        output HIGHZ;
@ 38-38
        output EXTRA1;
        output EXTRA2;
@ 47-47
@ 75-75
        BYPASS_reg  BYP(BYPASS_out, TDI, SHIFT_DR, CLOCK_DR);
@ 77-77
        ID_reg      ID(IDCODE_out, TDI, SHIFT_DR, CLOCK_DR, IDMODE);
@ 79-79
        IR_reg      IR(IR_out, INST, TDI, SHIFT_IR, CLOCK_IR,
@ 82-82
        IR_dec      IRdec(DR_SELECT, INST, CHIP_TEST, HIGHZ, MODE1, MODE2, MODE3, IDMODE,
@ 90-92
        TDO_reg     TDOreg(TDO, TDOIN, TCK, ENABLE);
@ 104-105
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
@ 277-279
module ID_reg ( IDCODE_out,
@ 287-287
@ 292-293
@ 297-304
        always @(posedge CLOCK_DR)
            if (SHIFT_DR == 1)  ID_cell <= {TDI, ID_cell[31:1]};
            else if (IDMODE == 1) ID_cell <= 32'b00010010001101000101011001111001;
            else  ID_cell <= 32'b11001010111111101011101010111110;
@ 312-312
@ 322-322
@ 332-335
        always @(posedge CLOCK_IR)
            CAP_IR <= (SHIFT_IR) ? {TDI, CAP_IR[3:1]} : 4'b0001;
@ 337-343
        always @(posedge UPDATE_IR or negedge RESET)
            if (RESET == 0)  UPD_IR <= 4'b0011;
            else  UPD_IR <= CAP_IR;
@ 345-345
@ 355-354
                HIGHZ,
@ 356-355
                MODE2,
@ 365-364
        output HIGHZ;
@ 367-366
        output MODE2;
@ 382-382
        assign  MODE1 = ( INST == 4'b0000 ) | ( INST == 4'b1000 ) | ( INST == 4'b0010 ) | ( INST == 4'b0110 ) | ( INST == 4'b0111 );
        assign  MODE2 =( INST == 4'b0010 );
@ 384-383
        assign  HIGHZ =( INST == 4'b0101 );
@ 472-472
                  TCK,
                  ENABLE);
@ 478-477
        input ENABLE;
@ 484-484
        assign TDO = (ENABLE) ?  TDO_cell : 1'bz;
