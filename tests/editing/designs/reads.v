// 1 B b *
// 9 CK ck *
module chip(inout b, input ck); INV g(.A(b)); endmodule
