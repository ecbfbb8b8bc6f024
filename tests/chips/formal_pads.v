// The pads as bare borders, for the formal comparison: what stands on their pins is compared, what they do with
// it is not.
(* blackbox *) module IPAD (input PAD, output C); endmodule
(* blackbox *) module IPADU (input PAD, output C); endmodule
(* blackbox *) module CKPAD (input PAD, output C); endmodule
(* blackbox *) module OPAD (input I, output PAD); endmodule
(* blackbox *) module TPAD (input I, OEN, output PAD); endmodule
(* blackbox *) module BPAD (input I, OEN, output C, PAD); endmodule
