// 1 B b *
// 9 CK ck *
module chip(inout b, input ck); FF f(.CK(ck), .Q(b)); endmodule
