module IBUF(input PAD, output C); endmodule
module OBUF(input I, output PAD); endmodule
module TBUF(input I, input OEN, output PAD); endmodule
module BBUF(input I, input OEN, inout PAD, output C); endmodule
module INV(input A, output Z); endmodule
module BUFX(input A, output Z); endmodule
module IBX(input A, output Z); endmodule
module FF(input D, input CK, output Q); endmodule
module TIE0(output Z); endmodule
module BC_IN(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_OUT(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_CTL(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_BI(input DI, SI, SP, SE, CK, TK, UP, MD, output DO, SYS, SO); endmodule
