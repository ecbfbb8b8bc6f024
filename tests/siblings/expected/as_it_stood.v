module top (
    input a,
    inout p,
    inout vdd,
    inout vio,
    output c,
    input i,
    output j,
    input k,
    output \o[1] ,
    output \o[0] 
);
  wire \n[0] ;
  wire GND;
  assign vdd = vio;
  assign GND = 1'b0;
  BPAD u1 (.I(a), .OEN(a), .C(c), .PAD(p));
  BPAD \r[2].pad  (.I(a), .OEN(1'b1), .C(i), .PAD(k));
  BPAD u3 (.I(vdd), .OEN(vio), .C(j), .PAD(GND));
  INV \g[0].u  (.A(\n[0] ), .Z(\o[1] ));
  INV \g[1].u  (.A(1'bx), .Z(\o[0] ));
  NAND2 u4 (.A(1'bx), .B(1'bx), .Z(\n[0] ));
endmodule
