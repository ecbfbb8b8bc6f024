// 1 PA a *
// 2 PY y *
// 9 CK ck *
/* A transparent buffer stands behind the input pad and one before the output pad. */
module chip(input a, output y, input ck); wire c, t, q, u; IBUF pa(.PAD(a), .C(t)); TRB ta(.A(t), .Z(c));
FF f(.D(c), .CK(ck), .Q(q)); TRB ty(.A(q), .Z(u)); OBUF py(.I(u), .PAD(y)); endmodule
