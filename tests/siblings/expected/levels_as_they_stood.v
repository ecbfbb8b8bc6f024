module leaf (
    input [3:0] a,
    input [0:3] b,
    output [3:0] y,
    output z,
    input unused_in_here,
    output not_connected
);
  wire [3:0] n;
  wire carry;
  assign y[0] = b[0];
  INV u0 (.A(a[0]), .Z(y[1]));
  ADD4 add (.A({a[2:1], b[3], 1'b1}), .B(b), .S({carry, n}));
  ADD4 add2 (.A(), .B({n[0], carry, 2'b10}), .S());
endmodule

module top (
    input a
);
  wire [1:0] q;
  wire s;
  wire t;
  leaf l (
    .a({a, a, 2'b01}),
    .b({q, a, 1'b0}),
    .y({q[0], s, q[1], t}),
    .z(),
    .unused_in_here(1'b0),
    .not_connected()
  );
endmodule
