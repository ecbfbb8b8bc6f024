// kalmverin: Verilog in, SDB files out.
#include "tests/siblings/design_view.hh"

namespace {

struct {
    const char *name, *verilog;
    const char *expected; ///< of the top module t
} const netlists[] = {
    {"ports of both styles and vectors both ways",
     "module t (a, b, io, y); input a; input [1:0] b; inout [0:1] io; output y; wire y;\n"
     "sub u (.p(b), .q(io), .r(y)); endmodule\n"
     "module sub (input wire [1:0] p, inout tri [0:1] q, output r); INV i (.A(p[0]), .Z(r)); endmodule\n",
     "input a a\ninput b[1] b[1]\ninput b[0] b[0]\ninout io[0] io[0]\ninout io[1] io[1]\noutput y y\n"
     "u sub p[1]=b[1] p[0]=b[0] q[0]=io[0] q[1]=io[1] r=y\n"},
    {"connections by place and by name, open ones, and selects",
     "module t (input [7:0] a, output y, output [3:0] s);\nINV u1 (a[7], y), u2 (.Z(), .A(a[0]));\n"
     "ADD u3 (a[6:3], {a[1], a[2]}, s); ADD u4 (.B(a[1:0]), .A(), .S()); INV u5 (); endmodule\n",
     "input a[7] a[7]\ninput a[6] a[6]\ninput a[5] a[5]\ninput a[4] a[4]\ninput a[3] a[3]\ninput a[2] a[2]\n"
     "input a[1] a[1]\ninput a[0] a[0]\noutput y y\n"
     "output s[3] s[3]\noutput s[2] s[2]\noutput s[1] s[1]\noutput s[0] s[0]\n"
     "u1 INV A=a[7] Z=y\nu2 INV A=a[0] Z=-\n"
     "u3 ADD A[3]=a[6] A[2]=a[5] A[1]=a[4] A[0]=a[3] B[0]=a[1] B[1]=a[2] S[3]=s[3] S[2]=s[2] S[1]=s[1] "
     "S[0]=s[0]\n"
     "u4 ADD A[3]=- A[2]=- A[1]=- A[0]=- B[0]=a[1] B[1]=a[0] S[3]=- S[2]=- S[1]=- S[0]=-\nu5 INV A=- Z=-\n"},
    {"single bits of a vector pin and a net that is never declared",
     "module t (); ADD u (.A({4{w}}), .\\B[1] (w)); INV v (.A(w2), .Z(w)); endmodule\n",
     "u ADD A[3]=w A[2]=w A[1]=w A[0]=w B[0]=- B[1]=w S[3]=- S[2]=- S[1]=- S[0]=-\nv INV A=w2 Z=w\n"},
    {"numbers",
     "module t (); ADD a (.A(4'b1_0xz), .B(2)); ADD b (.A({2'h2, 1'o1, 1'd0}), .B('b1)); "
     "ADD c (.A(4 'hA), .B(2'sb1)); endmodule\n",
     "a ADD A[3]=VCC A[2]=GND A[1]=X_NET_n1 A[0]=- B[0]=VCC B[1]=GND S[3]=- S[2]=- S[1]=- S[0]=-\n"
     "b ADD A[3]=VCC A[2]=GND A[1]=VCC A[0]=GND B[0]=GND B[1]=VCC S[3]=- S[2]=- S[1]=- S[0]=-\n"
     "c ADD A[3]=VCC A[2]=GND A[1]=VCC A[0]=GND B[0]=GND B[1]=VCC S[3]=- S[2]=- S[1]=- S[0]=-\n"},
    {"don't-care bits, each on a net of its own",
     "module t (); ADD a (.A({2{2'bx1}}), .B({1'bx, w})); INV i [1:0] (.A(1'bx), .Z()); assign w = 1'bx;\n"
     "INV j (.A(w), .Z()); endmodule\n",
     "a ADD A[3]=X_NET_n1 A[2]=VCC A[1]=X_NET_n2 A[0]=VCC B[0]=X_NET_n3 B[1]=w S[3]=- S[2]=- S[1]=- "
     "S[0]=-\n"
     "i[1] INV A=X_NET_n5 Z=-\ni[0] INV A=X_NET_n4 Z=-\nj INV A=w Z=-\n"},
    {"arrays of instances: slices, the right one lowest, and what all of them get",
     "module t (input [3:0] a, input c); wire [5:1] \\w.x ;\n"
     "INV \\u.v [2:3] (.A(a[2:1]), .Z(\\w.x [5:4])), \\n[0] [7:7] (c, y);\n"
     "ADD d [1:0] (.A({a, 4'b0011}), .B({c, y}), .S()); TRI e [1:0] (.A(c), .E(0), .Z()); endmodule\n",
     "input a[3] a[3]\ninput a[2] a[2]\ninput a[1] a[1]\ninput a[0] a[0]\ninput c c\n"
     "u.v[2] INV A=a[2] Z=w.x[5]\nu.v[3] INV A=a[1] Z=w.x[4]\nn[0][7] INV A=c Z=y\n"
     "d[1] ADD A[3]=a[3] A[2]=a[2] A[1]=a[1] A[0]=a[0] B[0]=c B[1]=y S[3]=- S[2]=- S[1]=- S[0]=-\n"
     "d[0] ADD A[3]=GND A[2]=GND A[1]=VCC A[0]=VCC B[0]=c B[1]=y S[3]=- S[2]=- S[1]=- S[0]=-\n"
     "e[1] TRI A=c E=GND Z=-\ne[0] TRI A=c E=GND Z=-\n"},
    {"assigns of nets, bits, concatenations and constants",
     "module t (input [1:0] a, input c, output [1:0] y, output k, z);\nwire [1:0] w; wire i = c;\n"
     "assign w[1] = a[0]; assign {y[0], w[0]} = a, y[1] = w[1]; assign k = 1'b1;\n"
     "INV u (.A(i), .Z(z)); INV v (.A(w[0]), .Z()); endmodule\n",
     "input a[1] a[1]\ninput a[0] a[0]\ninput c c\noutput y[1] a[0]\noutput y[0] a[1]\noutput k VCC\noutput "
     "z z\n"
     "u INV A=c Z=z\nv INV A=a[0] Z=-\n"},
    {"an assign of a narrower value is filled with zeros",
     "module t (input a, output [2:0] y); assign y = a; endmodule\n",
     "input a a\noutput y[2] GND\noutput y[1] GND\noutput y[0] a\n"},
    {"supplies and 3-state nets",
     "module t (inout p); supply0 g; supply1 [1:0] h; tri n;\nTRI a (.A(g), .E(h[0]), .Z(n));\n"
     "TRI b (.A(h[1]), .E(g), .Z(n)); BID c (.P(p), .I(n)); endmodule\n",
     "inout p p\na TRI A=GND E=VCC Z=n\nb TRI A=VCC E=GND Z=n\nc BID P=p I=n\n"},
    {"escaped names, attributes and comments",
     "(* top, src = \"f.v:1 *)\" *) module t (input \\a.b[2] , output \\module );\n"
     "(* keep *) INV /* here; endmodule */ \\u/1 (.A( \\a.b[2] ), // .Z(x)\n .Z(\\module )); endmodule\n",
     "input a.b[2] a.b[2]\noutput module module\nu/1 INV A=a.b[2] Z=module\n"},
    {"macros, conditions and directives that are passed over",
     "`timescale 1ns / 1ps\n`define W 2\n`define CELL(c, n, i) c n (.A(i), .Z())\n`define LONG INV m \\\n "
     "(in[1]);\n"
     "`celldefine\nmodule t (input [`W-1:0] in);\n`ifdef NONE\n bad bad \"`else\n`elsif W\n `CELL(INV, u1, "
     "in[0]);\n"
     "`else\n bad\n`endif\n`ifndef NONE `LONG `endif\n`undef W\n`ifdef W bad `endif "
     "endmodule\n`endcelldefine\n",
     "input in[1] in[1]\ninput in[0] in[0]\nu1 INV A=in[0] Z=-\nm INV A=in[1] Z=-\n"},
    {"an included file beside the one that names it", "`include \"part/ports.v\"\nINV u (a, y); endmodule\n",
     "input a a\noutput y y\nu INV A=a Z=y\n"},
};

run_result read_verilog(const scratch_folder &scratch, const std::string &arguments) {
    return scratch.run(plain_search() + program("kalmverin") + " " + arguments);
}

TEST(Kalmverin, ReadsWhatNetlistsHold) {
    for (const auto &row : netlists) {
        SCOPED_TRACE(row.name);
        scratch_folder scratch;
        make_cells(scratch);
        scratch.write("f.v", row.verilog);
        scratch.write("part/ports.v", "`include \"header.v\"\ninput a; output y;\n");
        scratch.write("part/header.v", "module t (a, y);");
        run_result result = read_verilog(scratch, "f.v");
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_EQ(design_text(scratch.path("t.sdb")), row.expected);
    }
}

struct {
    const char *switches, *verilog;
    const char *warning; ///< all of the error stream
    const char *expected;
} const switched[] = {
    {"-as_input a*,v -as_output y,a_3",
     "module t (inout a_1, a_2, inout [1:0] v, inout y, z, output a_3); BID p (.P(a_1), .I(z)); endmodule",
     "",
     "input a_1 a_1\ninput a_2 a_2\ninput v[1] v[1]\ninput v[0] v[0]\noutput y y\ninout z z\noutput a_3 a_3\n"
     "p BID P=a_1 I=z\n"},
    {"-D W=1 -D ONE -I none -I part",
     "module t (input [`W:0] a);\n`ifdef ONE\n`include \"inner.v\"\n`endif\nendmodule", "",
     "input a[1] a[1]\ninput a[0] a[0]\nu INV A=a[1] Z=-\n"},
    {"-power vdd,*io -power core",
     "module t (vdd, vio, a, core); inout vdd, vio, core; input a; assign core = w; assign vdd = vio; assign "
     "w = "
     "vdd; BID p (w, a); endmodule",
     "", "inout vdd vdd\ninout vio vio\ninput a a\ninout core core\np BID P=core I=a\n"},
    {"-drop_parameters",
     "module t;\nINV #(.A(3), .B({\"x\", 1})) u (), v ();\nTRI #3 w ();\ndefparam u.A[1] = {1, 2}, x.B = 3;\n"
     "INV x (); endmodule",
     "WARNING: f.v:2: the parameters of the instances of 'INV' are left away.\n"
     "WARNING: f.v:3: the parameters of the instances of 'TRI' are left away.\n",
     "u INV A=- Z=-\nv INV A=- Z=-\nw TRI A=- E=- Z=-\nx INV A=- Z=-\n"},
};

TEST(Kalmverin, TakesWhatTheSwitchesSay) {
    scratch_folder scratch;
    make_cells(scratch);
    scratch.write("part/inner.v", "INV u (.A(a[1]));\n");
    for (const auto &row : switched) {
        scratch.write("f.v", row.verilog);
        run_result result = read_verilog(scratch, std::string(row.switches) + " f.v");
        EXPECT_EQ(result.status, 0) << row.switches;
        EXPECT_EQ(result.err, row.warning);
        EXPECT_EQ(design_text(scratch.path("t.sdb")), row.expected) << row.switches;
    }
    run_result result = read_verilog(scratch, "-help");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("  -as_input NAMES "), std::string::npos) << result.out;
    scratch.write("part/cell.v",
                  "module C (`ifdef TWO v, `endif a); input [`W:0] a;\n`ifdef TWO\ninout v;\n`endif\n"
                  "endmodule");
    EXPECT_EQ(read_verilog(scratch, "-lib -D TWO -D W=0 part/cell.v").err, "");
    EXPECT_EQ(design_text(scratch.path("C.sdb")), "inout v -\ninput a[0] -\n");
}

// What stands on the net of a port, in the order in which a walk from the port meets it.
std::string walk_from_port(const char *name) {
    std::string text = std::string(name) + ":";
    for (int32_t node = net_tab[node_tab[port_tab[SDB_nl_search_port(name)].node].net].first_node; node >= 0;
         node = node_tab[node].next)
        if (node_tab[node].obj >= 0)
            text += std::string(" ") + SDB_obj_name(sdb, node_tab[node].obj);
    return text + "\n";
}

TEST(Kalmverin, WalksFromAPortMeetThePadFirst) {
    scratch_folder scratch;
    make_cells(scratch);
    scratch.write("lib/more.v", "module BOND (inout P); endmodule module KEEP (output Z); endmodule\n"
                                "module CLAMP (inout P, V, input E); endmodule\n"
                                "module DIODE (input D, inout V); endmodule\n");
    scratch.write("t.v",
                  "module t (inout p, q, v, input i, output y);\n"
                  "BOND b1 (p), b2 (q), b3 (i), b4 (y); DIODE d1 (p, v), d3 (i, v);\n"
                  "CLAMP c1 (p, v, 1'b0); KEEP k1 (p), tie (y);\n"
                  "BID used (.P(p), .I(n)), unused (.P(q), .I(1'bx)); INV u (i, n), w (n, m); endmodule");
    run_result result = read_verilog(scratch, "-lib lib/more.v -opath lib");
    EXPECT_EQ(result.err + read_verilog(scratch, "t.v").err, "");
    SDB_HANDLE *flat = SDB_setup(SDB_open(scratch.path("t.c.sdb").c_str(), "r", 0));
    EXPECT_EQ(walk_from_port("p") + walk_from_port("q") + walk_from_port("i") + walk_from_port("y"),
              "p: used c1 b1 d1 k1\nq: unused b2\ni: u b3 d3\ny: tie b4\n");
    SDB_close(flat, 0);
    SDB_clear_current();
}

// What stands in the bodies of library cells is no concern, but its words may not end a cell too early.
TEST(Kalmverin, PassesOverTheBodiesOfCells) {
    scratch_folder scratch;
    scratch.write("cells.v", R"(
`timescale 1ns/10ps
primitive udp (q, d); output q; reg q; input d; table 0 : ? : 0; (01) : 1 : -; *: ? : -; endtable endprimitive
`celldefine
module FF #(parameter W = 4, N = "x") (output reg [W-1:0] Q = 0, input [W-1:0] D, input CK, input wire RN);
  reg [7:0] input_count; integer i; real r = 1.5e-3;
  initial begin : block $display("endmodule %d", i); for (i = 0; i < 4; i = i + 1) begin Q[i] <= 1'b0; end end
  always @(*) if (RN) begin if (D) Q = 4'b?; else begin end end
  always @(posedge CK or negedge RN) #1 Q <= ~RN ? 'bx : D;
  function [3:0] f; input [3:0] x, D; f = x; endfunction
  task show; input x; output y; begin $display("endtask"); end endtask
  generate genvar g; for (g = 0; g < 2; g = g + 1) begin : gen udp u (Q[g], D[g]); end endgenerate
  specify specparam t = 1; (CK => Q) = (t, 1.2:2.1:3); $setup(posedge D, CK &&& RN, 0.1, n); endspecify
endmodule
`endcelldefine
module \odd+name (p); parameter M = 3; inout [0:M] p; tri1 [0:M] p; pullup (p[0]); endmodule
module EMPTY; endmodule
)");
    run_result result = read_verilog(scratch, "-lib cells.v -opath out"); // which makes the folder
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(design_text(scratch.path("out/FF.sdb")),
              "output Q[3] -\noutput Q[2] -\noutput Q[1] -\noutput Q[0] -\n"
              "input D[3] -\ninput D[2] -\ninput D[1] -\ninput D[0] -\ninput CK -\ninput RN -\n");
    EXPECT_EQ(design_text(scratch.path("out/odd+name.sdb")),
              "inout p[0] -\ninout p[1] -\ninout p[2] -\ninout p[3] -\n");
    EXPECT_EQ(design_text(scratch.path("out/EMPTY.sdb")), "");
    EXPECT_NE(scratch.read("cells.kalmverin.log").find("library cells       3\nports               14\n"),
              std::string::npos);
}

constexpr const char *two_levels = R"(
module low (input [1:0] p, output q, output k, output f, inout b);
  wire n; INV i1 (p[1], n); INV i2 (n, q); assign k = 1'b0; assign f = p[0]; BID pad (b, n); INV i3 (k, );
endmodule
module mid (input a, output y, inout b); low l (.p({a, a}), .q(y), .k(z), .f(w), .b(b)); INV m (z, ); INV o (w, );
endmodule
module top (input a, output y, y2, inout b); mid u1 (a, y, b); mid u2 (.a(1'b1), .y(y2)); endmodule
module other (input a); endmodule
)";

TEST(Kalmverin, FlattensTheTopModule) {
    scratch_folder scratch;
    make_cells(scratch);
    scratch.write("d.v", two_levels);
    std::filesystem::create_directory(scratch.path("o"));
    run_result result = read_verilog(scratch, "d.v");
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(result.err.find("'top' and 'other'"), std::string::npos) << result.err;
    result = read_verilog(scratch, "d.v -top top -opath o");
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char *file : {"o/low.sdb", "o/mid.sdb", "o/top.sdb", "o/other.sdb", "o/top.c.sdb"})
        EXPECT_TRUE(scratch.has(file)) << file;
    EXPECT_FALSE(scratch.has("o/mid.c.sdb"));
    EXPECT_EQ(design_text(scratch.path("o/top.sdb")), "input a a\noutput y y\noutput y2 y2\ninout b b\n"
                                                      "u1 mid a=a y=y b=b\nu2 mid a=VCC y=y2 b=-\n");
    EXPECT_EQ(
        design_text(scratch.path("o/top.c.sdb")),
        "input a a\noutput y y\noutput y2 y2\ninout b b\nu1 mid a=- y=- b=-\nu1.l low p[1]=- p[0]=- q=- k=- "
        "f=- b=-\n"
        "u1.l.i1 INV A=a Z=u1.l.n\nu1.l.i2 INV A=u1.l.n Z=y\nu1.l.pad BID P=b I=u1.l.n\nu1.l.i3 INV "
        "A=GND Z=-\n"
        "u1.m INV A=GND Z=-\nu1.o INV A=a Z=-\nu2 mid a=- y=- b=-\nu2.l low p[1]=- p[0]=- q=- k=- f=- b=-\n"
        "u2.l.i1 INV A=VCC Z=u2.l.n\nu2.l.i2 INV A=u2.l.n Z=y2\nu2.l.pad BID P=- I=u2.l.n\n"
        "u2.l.i3 INV A=GND Z=-\nu2.m INV A=GND Z=-\nu2.o INV A=VCC Z=-\n");
    SDB_HANDLE *flat = SDB_setup(SDB_open(scratch.path("o/top.c.sdb").c_str(), "r", 0));
    int32_t pad = SDB_lookup_obj("u2.l.pad");
    int32_t row = prefix_tab[SDB_obj_prefix_row(flat, pad)].parent;
    EXPECT_STREQ(SDB_prefix_class_name(flat, row), "low");
    EXPECT_STREQ(SDB_prefix_class_name(flat, prefix_tab[row].parent), "mid");
    SDB_close(flat, 0);
    SDB_clear_current();
    std::string log = scratch.read("d.kalmverin.log");
    for (const char *line :
         {"modules             4\n", "flat instances      12\n", "  mid                            2\n"})
        EXPECT_NE(log.find(line), std::string::npos) << log;
}

struct {
    const char *verilog, *error; ///< which begins so, behind "ERROR: "
} const errors[] = {
    {"module t (a);\n\ninput a;\n", "f.v:4: the file ends within module 't', which begins on line 1."},
    {"module t; /* \n never", "f.v:1: a comment is not closed."},
    {"module t;\nNONE u (a); endmodule", "f.v:2: the cell 'NONE' of instance 'u' is unknown"},
    {"module t;\n\nalways @(a) b = c; endmodule", "f.v:3: 'always' has no place in a netlist"},
    {"module t; assign a = b & c; endmodule", "f.v:1: the operator '&' has no place"},
    {"module t; INV #(3) u (a, b); endmodule",
     "f.v:1: an instance of 'INV' has parameters, which a netlist can't hold; -drop_parameters leaves"},
    {"module t; ADD u [1:0] (.A(3)); endmodule",
     "f.v:1: the pin 'A' of instance 'u[1]' (ADD) has 4 bits, its connection 32."},
    {"module t; INV u [1:0] (),\n\\u[1] (); endmodule", "f.v:2: two instances have the name 'u[1]'."},
    {"module t;\n INV u (.A(a),\n .Y(b)); endmodule", "f.v:2: there is no pin 'Y' of instance 'u' (INV)."},
    {"module t; INV u (a, b, c); endmodule", "f.v:1: there are more connections than ports"},
    {"module t; INV u (.A(a), .A(b)); endmodule",
     "f.v:1: the pin 'A' of instance 'u' (INV) is connected twice."},
    {"module t; wire [2:0] w; ADD u (.A(w)); endmodule",
     "f.v:1: the pin 'A' of instance 'u' (ADD) has 4 bits, its connection 3."},
    {"module t; INV u (.Z(1'b0)); endmodule",
     "f.v:1: the output 'Z' of instance 'u' (INV) is connected to a"},
    {"module t; wire [1:0] w; assign w = 3'b000; endmodule", "f.v:1: an assign of 3 bits to 2 bits."},
    {"module t; wire [1:0] w; INV u (w[2], a); endmodule", "f.v:1: 'w' has no bit 2."},
    {"module t; wire [1:0] w; ADD u (.B(w[0:1])); endmodule", "f.v:1: the part select of 'w' runs against"},
    {"module t; assign a = b; assign a = c; endmodule", "f.v:1: the net 'a' is assigned twice."},
    {"module t; wire w; wire [1:0] w; endmodule",
     "f.v:1: 'w' is declared or used twice, with different bounds."},
    {"module t; INV u (.A({99999999{a}})); endmodule", "f.v:1: '99999999' is no count for a replication."},
    {"module t (a); endmodule", "f.v:1: the port 'a' of module 't' has no direction."},
    {"module t (a); input a; input b; endmodule", "f.v:1: 'b' is not in the list of ports."},
    {"module t (input a, b); assign a = b; endmodule",
     "f.v:1: the assigns of module 't' join two inputs, 'a' and 'b'."},
    {"module t (inout p, q, input a);\nwire w = p, v;\nassign {v, x} = {w, a};\n\nassign q =\nv; endmodule",
     "f.v:5: the assigns of module 't' join two inouts, 'q' and 'p'. If both are power: -power q,p."},
    {"module t (inout p);\nsupply0 p; endmodule",
     "f.v:2: the assigns of module 't' join an inout with a constant, 'p'."},
    {"module t; assign 1'bx = a; endmodule", "f.v:1: the left side of an assign is no net."},
    {"module t; assign w = 1'b0; assign v = 1'b1; assign w2 = w; assign {x} = w2; supply1 x; endmodule",
     "f.v:1: the assigns of module 't' join the constants 0 and 1."},
    {"module t; endmodule\nmodule t; endmodule", "f.v:2: module 't' is defined twice."},
    {"module a; b u (); endmodule module b; a u (); endmodule", "f.v: there is no top module"},
    {"module t; \\t.c u (); endmodule\nmodule \\t.c ; endmodule",
     "f.v:2: the module 't.c' would have the file of the flat design."},
    {"module \\a/b ; endmodule", "f.v:1: the module name 'a/b' can't be the name of a file."},
    {"`include \"none.v\"\n", "f.v:1: can't open file 'none.v'"},
    {"\n`include \"f.v\"\n", "f.v:2: files that include each other are nested too deep."},
    {"`define A `A\nmodule t; `A endmodule", "f.v:2: the macro `A stands for itself or for too much."},
    {"`NONE\n", "f.v:1: the macro `NONE is not defined."},
    {"`define M(a) a\n`M(1, 2)", "f.v:2: the macro `M takes 1 arguments, not 2."},
    {"\n`endif", "f.v:2: `endif without `ifdef."},
    {"`default_nettype none\nmodule t; INV u (a, b); endmodule", "f.v:2: the net 'a' is not declared."},
    {"module t;\n\x01 endmodule", "f.v:2: the character with the code 1 has no place here."},
};

TEST(Kalmverin, NamesFileAndLineOfWhatItCannotRead) {
    scratch_folder scratch;
    make_cells(scratch);
    for (const auto &row : errors) {
        SCOPED_TRACE(row.verilog);
        scratch.write("f.v", row.verilog);
        run_result result = read_verilog(scratch, "f.v");
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(result.err.rfind(std::string("ERROR: ") + row.error, 0), 0u) << result.err;
        EXPECT_EQ(result.out, "");
        EXPECT_FALSE(scratch.has("t.sdb"));
    }
}

TEST(Kalmverin, RefusesWhatIsNoFileToReadOrWrite) {
    scratch_folder scratch;
    make_cells(scratch);
    scratch.write("good.v", "module t (input a); endmodule\n");
    scratch.write("ports.v", "module t (inout [1:0] v, output y, inout p); s #(3) u (); endmodule module s; "
                             "endmodule\n");
    scratch.write("cycle.v",
                  "module t; a u (); endmodule module a; b u (); endmodule module b; a u (); endmodule");
    std::filesystem::create_directory(scratch.path("t.sdb"));
    std::string macros = "`define M0 ;\n",
                modules = "module m0; wire w; endmodule\n"; // they grow without bound
    for (int i = 1; i < 50; i++) {
        std::string below = std::to_string(i - 1), name = std::to_string(i);
        macros += "`define M" + name + " `M" + below + " `M" + below + "\n";
        modules += "module m" + name + "; m" + below + " a (), b (), c (), d (); endmodule\n";
    }
    scratch.write("modules.v", modules);
    scratch.write("cells.v", macros + "module t; `M49 endmodule\n");
    scratch.write("minus.v", "module t; wire [" + std::string(1 << 20, '-') + "1:0] w; endmodule");
    struct {
        const char *arguments;
        const char *error;
    } const rows[] = {
        {"", "ERROR: usage"},
        {"-top", "ERROR: nothing stands behind the switch '-top'."},
        {"-what good.v", "ERROR: unknown switch '-what'."},
        {"-D 1x good.v", "ERROR: '1x' behind '-D' is no name of a macro."},
        {"-as_input p,,v ports.v", "ERROR: a name is missing in the list behind '-as_input'."},
        {"-as_input v[0] ports.v -drop_parameters", "ERROR: -as_input: 'v[0]' is a bit of a vector"},
        {"-as_input y ports.v -drop_parameters", "ERROR: -as_input: the port 'y' of module 't' is no inout."},
        {"-as_output n* ports.v -drop_parameters", "ERROR: -as_output: the module 't' has no port 'n*'."},
        {"-power p,r ports.v -drop_parameters", "ERROR: -power: no module has a port 'r'."},
        {"ports.v -drop_parameters",
         "ERROR: ports.v:1: the parameters of instance 'u' (s) can't be left away"},
        {"-lib -power p ports.v", "ERROR: '-power' has no meaning with '-lib'."},
        {"lib", "ERROR: can't read file 'lib': it is a directory."},
        {"/dev/zero", "ERROR: can't read file '/dev/zero': it is a device."},
        {"good.v -top u", "ERROR: good.v: there is no module 'u' for -top."},
        {"good.v -opath none/deep", "ERROR: none/deep/t.sdb: this file can't be written"},
        {"good.v", "ERROR: t.sdb: this file can't be written"},
        {"cycle.v -top a", "ERROR: the module 'a' contains itself."},
        {"cells.v", "ERROR: cells.v:51: the macro `M"},
        {"modules.v", "ERROR: the flat design would have"},
        {"minus.v", "ERROR: minus.v:1: an expression is nested too deep."},
    };
    for (const auto &row : rows) {
        run_result result = read_verilog(scratch, row.arguments);
        EXPECT_EQ(result.status, 255) << row.arguments;
        EXPECT_EQ(result.err.rfind(row.error, 0), 0u) << row.arguments << ": " << result.err;
    }
}

} // namespace
