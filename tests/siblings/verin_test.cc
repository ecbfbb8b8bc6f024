// kalmverin: Verilog in, SDB files out.
#include "siblings/netlist_sdb.hh"
#include "tests/siblings/design_view.hh"
#include "tests/siblings/netlist_case.hh"

namespace {

struct {
    const char *name;    ///< or the switches, where it begins with one
    const char *verilog; ///< its top module is t
} const netlists[] = {
    {"ports of both styles and vectors both ways",
     "module t (a, b, io, y); input a; input [1:0] b; inout [0:1] io; output y; wire y;\n"
     "sub u (.p(b), .q(io), .r(y)); endmodule\n"
     "module sub (input wire [1:0] p, inout tri [0:1] q, output r); INV i (.A(p[0]), .Z(r)); endmodule\n"},
    {"connections by place and by name, open ones, and selects",
     "module t (input [7:0] a, output y, output [3:0] s);\nINV u1 (a[7], y), u2 (.Z(), .A(a[0]));\n"
     "ADD u3 (a[6:3], {a[1], a[2]}, s); ADD u4 (.B(a[1:0]), .A(), .S()); INV u5 (); endmodule\n"},
    {"single bits of a vector pin and a net that is never declared",
     "module t (); ADD u (.A({4{w}}), .\\B[1] (w)); INV v (.A(w2), .Z(w)); endmodule\n"},
    {"pins in another order, fewer, more, escaped, and as in the instance before",
     "module t (a); input a; wire [3:0] s2, s; ADD u1 (.A({4{a}}), .B({a, w}), .S(s)), u2 (.A(4'h3), .B({w, "
     "a}), .S(s2));\n"
     "ADD u3 (.B({a, w}), .A(4'h5)); ADD u4 (.B({w, w}), .A(4'hA)); INV v (.A(a), .Z(w));\n"
     "ADD u5 (.\\A (4'h6), .S(), .B(2'b01)); ADD u6 (.B(s2[1:0])); ADD u7 (); ADD u8 (4'h9, {a, w}); "
     "endmodule\n"},
    {"pins and plain nets as in the instance before, with what may stand between",
     "module t (a); input a; wire n, \\wire ; TRI u (.A(a), .E(n), .Z(\\wire ));\n"
     "TRI v (.A (a),\n .E( n ) , // x\n .Z(\\wire )), w (.A(n),.E(new), .Z(n)), x (.E(n), .A(a)); "
     "endmodule\n"},
    {"numbers", "module t (); ADD a (.A(4'b1_0xz), .B(2)); ADD b (.A({2'h2, 1'o1, 1'd0}), .B('b1)); "
                "ADD c (.A(4 'hA), .B(2'sb1)); endmodule\n"},
    {"don't-care bits, each on a net of its own",
     "module t (); ADD a (.A({2{2'bx1}}), .B({1'bx, w})); INV i [1:0] (.A(1'bx), .Z()); assign w = 1'bx;\n"
     "INV j (.A(w), .Z()); endmodule\n"},
    {"arrays of instances: slices, the right one lowest, and what all of them get",
     "module t (input [3:0] a, input c); wire [5:1] \\w.x ;\n"
     "INV \\u.v [2:3] (.A(a[2:1]), .Z(\\w.x [5:4])), \\n[0] [7:7] (c, y);\n"
     "ADD d [1:0] (.A({a, 4'b0011}), .B({c, y}), .S()); TRI e [1:0] (.A(c), .E(0), .Z()); endmodule\n"},
    {"assigns of nets, bits, concatenations and constants",
     "module t (input [1:0] a, input c, output [1:0] y, output k, z);\nwire [1:0] w; wire i = c;\n"
     "assign w[1] = a[0]; assign {y[0], w[0]} = a, y[1] = w[1]; assign k = 1'b1;\n"
     "INV u (.A(i), .Z(z)); INV v (.A(w[0]), .Z()); endmodule\n"},
    {"an assign of a narrower value is filled with zeros",
     "module t (input a, output [2:0] y); assign y = a; endmodule\n"},
    {"supplies and 3-state nets",
     "module t (inout p); supply0 g; supply1 [1:0] h; tri n;\nTRI a (.A(g), .E(h[0]), .Z(n));\n"
     "TRI b (.A(h[1]), .E(g), .Z(n)); BID c (.P(p), .I(n)); endmodule\n"},
    {"escaped names, attributes and comments",
     "(* top, src = \"f.v:1 *)\" *) module t (input \\a.b[2] , output \\module );\n"
     "(* keep *) INV /* here; endmodule */ \\u/1 (.A( \\a.b[2] ), // .Z(x)\n .Z(\\module )); endmodule\n"},
    {"macros, conditions and directives that are passed over",
     "`timescale 1ns / 1ps\n`define W 2\n`define CELL(c, n, i) c n (.A(i), .Z())\n`define LONG INV m \\\n "
     "(in[1]);\n"
     "`celldefine\nmodule t (input [`W-1:0] in);\n`ifdef NONE\n bad bad \"`else\n`elsif W\n `CELL(INV, u1, "
     "in[0]);\n"
     "`else\n bad\n`endif\n`ifndef NONE `LONG `endif\n`undef W\n`ifdef W bad `endif "
     "endmodule\n`endcelldefine\n"},
    {"an included file beside the one that names it", "`include \"part/ports.v\"\nINV u (a, y); endmodule\n"},
    {"-as_input a*,v -as_output y,a_3",
     "module t (inout a_1, a_2, inout [1:0] v, inout y, z, output a_3); BID p (.P(a_1), .I(z)); endmodule"},
    {"-D W=1 -D ONE -I none -I part",
     "module t (input [`W:0] a);\n`ifdef ONE\n`include \"inner.v\"\n`endif\nendmodule"},
    {"-power vdd,*io -power core",
     "module t (vdd, vio, a, core); inout vdd, vio, core; input a; assign core = w; assign vdd = vio; assign "
     "w = "
     "vdd; BID p (w, a); endmodule"},
    {"-drop_parameters",
     "module t;\nINV #(.A(3), .B({\"x\", 1})) u (), v ();\nTRI #3 w ();\ndefparam u.A[1] = {1, 2}, x.B = 3;\n"
     "INV x (); endmodule"},
};

/// Reads f.v in a folder with two files to include; the run, with the design that it made.
run_result read_text(const netlist_folder &scratch, const std::string &switches, const std::string &verilog) {
    std::filesystem::remove(scratch.dir / "t.sdb");
    scratch.write("f.v", verilog);
    run_result result = scratch.call("kalmverin " + switches + " f.v");
    if (scratch.has("t.sdb"))
        result.out += design_text(scratch.path("t.sdb"));
    return result;
}

TEST(Kalmverin, ReadsWhatNetlistsHoldAndSwitchesSay) {
    netlist_folder scratch(few_cells);
    scratch.write("part/ports.v", "`include \"header.v\"\ninput a; output y;\n");
    scratch.write("part/header.v", "module t (a, y);");
    scratch.write("part/inner.v", "INV u (.A(a[1]));\n");
    std::string text;
    for (const auto &row : netlists)
        text += section(row.name, read_text(scratch, *row.name == '-' ? row.name : "", row.verilog));
    expect_file("siblings/expected/verin_netlists.txt", text);
    run_result result = scratch.call("kalmverin -help");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("  -as_input NAMES "), std::string::npos) << result.out;
    scratch.write("part/cell.v",
                  "module C (`ifdef TWO v, `endif a); input [`W:0] a;\n`ifdef TWO\ninout v;\n`endif\n"
                  "endmodule");
    EXPECT_EQ(scratch.call("kalmverin -lib -D TWO -D W=0 part/cell.v").err, "");
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
    netlist_folder scratch(few_cells);
    scratch.write("lib/more.v", "module BOND (inout P); endmodule module KEEP (output Z); endmodule\n"
                                "module CLAMP (inout P, V, input E); endmodule\n"
                                "module DIODE (input D, inout V); endmodule\n");
    scratch.write("t.v",
                  "module t (inout p, q, v, input i, output y);\n"
                  "BOND b1 (p), b2 (q), b3 (i), b4 (y); DIODE d1 (p, v), d3 (i, v);\n"
                  "CLAMP c1 (p, v, 1'b0); KEEP k1 (p), tie (y);\n"
                  "BID used (.P(p), .I(n)), unused (.P(q), .I(1'bx)); INV u (i, n), w (n, m); endmodule");
    run_result result = scratch.call("kalmverin -lib lib/more.v -opath lib");
    EXPECT_EQ(result.err + scratch.call("kalmverin t.v").err, "");
    SDB_HANDLE *flat = SDB_setup(SDB_open(scratch.path("t.c.sdb").c_str(), "r", 0));
    EXPECT_EQ(walk_from_port("p") + walk_from_port("q") + walk_from_port("i") + walk_from_port("y"),
              "p: used c1 b1 d1 k1\nq: unused b2\ni: u b3 d3\ny: tie b4\n");
    SDB_close(flat, 0);
    SDB_clear_current();
}

// What stands in the bodies of library cells is no concern, but its words may not end a cell too early.
TEST(Kalmverin, PassesOverTheBodiesOfCells) {
    netlist_folder scratch(few_cells);
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
    run_result result = scratch.call("kalmverin -lib cells.v -opath out"); // which makes the folder
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
    netlist_folder scratch(few_cells);
    scratch.write("d.v", two_levels);
    std::filesystem::create_directory(scratch.path("o"));
    run_result result = scratch.call("kalmverin d.v");
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(result.err.find("'top' and 'other'"), std::string::npos) << result.err;
    result = scratch.call("kalmverin d.v -top top -opath o");
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char *file : {"o/low.sdb", "o/mid.sdb", "o/top.sdb", "o/other.sdb", "o/top.c.sdb"})
        EXPECT_TRUE(scratch.has(file)) << file;
    EXPECT_FALSE(scratch.has("o/mid.c.sdb"));
    expect_file("siblings/expected/verin_flat.txt",
                design_text(scratch.path("o/top.sdb")) + "--\n" + design_text(scratch.path("o/top.c.sdb")));
}

// Sizes are those of the files that would be written; the names of the writer's own are names here as well.
TEST(Kalmverin, RefusesAFileBeyondTheLimit) {
    netlist_folder scratch(few_cells);
    NL_DESIGN design;
    auto name = [&](const char *text) { return NL_name(design.names, text); };
    NL_MODULE &cell = design.modules[static_cast<size_t>(NL_module(design, name("Q")))];
    cell.is_cell = cell.defined = true;
    cell.ports = {{name("*UNDEF*"), NL_INPUT, NL_NONE}, {name("Z"), NL_OUTPUT, NL_NONE}};
    NL_MODULE &top = design.modules[static_cast<size_t>(NL_module(design, name("FORCED_1_CLASS")))];
    top.ports = {{name("y"), NL_OUTPUT, NL_add_net(top, name("y"))}};
    top.instances = {{name("_FORCED_0"), NL_NONE, 0, 0}, {name("u"), NL_NONE, 0, 2}};
    top.pins = {NL_VCC, NL_NONE, NL_GND, top.ports[0].net};
    for (const NL_MODULE *module : {&cell, &top}) {
        std::string path = scratch.path("t.sdb");
        NL_write_sdb(design, *module, path);
        uint64_t size = NL_sdb_size(design, *module);
        EXPECT_EQ(size, std::filesystem::file_size(path));
        NL_check_sdb_size(design, *module, path, size);
        EXPECT_EXIT(NL_check_sdb_size(design, *module, "t.sdb", size - 1), testing::ExitedWithCode(255),
                    "ERROR: t.sdb: this file would have " + std::to_string(size) + " bytes; " +
                        std::to_string(size - 1) +
                        " are possible. Keep the core as a cell: read it with "
                        "kalmverin -lib and leave its netlist out.\n$");
    }
    EXPECT_EQ(design_text(scratch.path("t.sdb")),
              "output y y\n_FORCED_0 Q *UNDEF*=VCC Z=-\nu Q *UNDEF*=GND Z=y\n");
}

const char *const errors[] = {
    "module t (a);\n\ninput a;\n",
    "module t;\nNONE u (a); endmodule",
    "module t;\n\nalways @(a) b = c; endmodule",
    "module t; assign a = b & c; endmodule",
    "module t; INV #(3) u (a, b); endmodule",
    "module t; ADD u [1:0] (.A(3)); endmodule",
    "module t; INV u [1:0] (),\n\\u[1] (); endmodule",
    "module t;\n INV u (.A(a),\n .Y(b)); endmodule",
    "module t; INV u (.A(a), .A(b)); endmodule",
    "module t; INV u (.A(a), .Z(b));\nINV v (.A(a), .Z(c)), w (.A(a), .ZZ(b)); endmodule",
    "module t; INV u (.A(a), .Z(b)); INV v (.A(a), .Z(c));\nINV w (.A(a), .A(b)); endmodule",
    "module t; wire a, b; INV u (.A(a), .Z(b));\nINV v (.A(a),\n.Z(b) .A(a)); endmodule",
    "module t; wire a, \\wire ; INV u (.A(a), .Z(\\wire ));\nINV v (.A(a),\n.Z(wire)); endmodule",
    "module t; wire [2:0] w; ADD u (.A(w)); endmodule",
    "module t; INV u (.Z(1'b0)); endmodule",
    "module t; wire [1:0] w; assign w = 3'b000; endmodule",
    "module t; wire [1:0] w; INV u (w[2], a); endmodule",
    "module t; wire [1:0] w; ADD u (.B(w[0:1])); endmodule",
    "module t; assign a = b; assign a = c; endmodule",
    "module t; INV u (.A({99999999{a}})); endmodule",
    "module t (a); endmodule",
    "module t (a); input a; input b; endmodule",
    "module t (input a, b); assign a = b; endmodule",
    "module t (inout p, q, input a);\nwire w = p, v;\nassign {v, x} = {w, a};\n\nassign q =\nv; endmodule",
    "module t (inout p);\nsupply0 p; endmodule",
    "module t; assign 1'bx = a; endmodule",
    "module t; assign w = 1'b0; assign v = 1'b1; assign w2 = w; assign {x} = w2; supply1 x; endmodule",
    "module t; endmodule\nmodule t; endmodule",
    "module a; b u (); endmodule module b; a u (); endmodule",
    "module t; \\t.c u (); endmodule\nmodule \\t.c ; endmodule",
    "module \\a/b ; endmodule",
    "`include \"none.v\"\n",
    "\n`include \"f.v\"\n",
    "`define A `A\nmodule t; `A endmodule",
    "`define M(a) a\n`M(1, 2)",
    "`default_nettype none\nmodule t; INV u (a, b); endmodule",
    "module t; /* \n never",
    "module t; INV u (a, b, c); endmodule",
    "module t; wire w; wire [1:0] w; endmodule",
    "/*\n*/ `NONE\n",
    "\n`endif",
    "module t;\n\x7f endmodule",
};

TEST(Kalmverin, NamesFileAndLineOfWhatItCannotRead) {
    netlist_folder scratch(few_cells);
    using namespace std::string_literals;
    run_result with_nul = read_text(scratch, "", "module t (input a);\nINV \\u\0v (.A(a)); endmodule"s);
    EXPECT_EQ(with_nul.err, "ERROR: f.v:2: an escaped name holds a NUL character.\n");
    std::string text;
    for (const char *verilog : errors) {
        text += section(verilog, read_text(scratch, "", verilog));
        EXPECT_FALSE(scratch.has("t.sdb")) << verilog;
    }
    expect_file("siblings/expected/verin_errors.txt", text);
}

const char *const WRONG_ARGUMENTS[] = {"",
                                       "-top",
                                       "-what good.v",
                                       "-D 1x good.v",
                                       "-as_input p,,v ports.v",
                                       "-as_input v[0] ports.v -drop_parameters",
                                       "-as_input y ports.v -drop_parameters",
                                       "-as_output n* ports.v -drop_parameters",
                                       "-power p,r ports.v -drop_parameters",
                                       "ports.v -drop_parameters",
                                       "-lib -power p ports.v",
                                       "lib",
                                       "/dev/zero",
                                       "good.v -top u",
                                       "good.v -opath none/deep",
                                       "good.v",
                                       "cycle.v -top a",
                                       "cells.v",
                                       "modules.v",
                                       "minus.v"};

TEST(Kalmverin, RefusesWhatIsNoFileToReadOrWrite) {
    netlist_folder scratch(few_cells);
    scratch.write("good.v", "module t (input a); endmodule\n");
    scratch.write("ports.v", "module t (inout [1:0] v, output y, inout p); s #(3) u (); endmodule module s; "
                             "endmodule\n");
    scratch.write("cycle.v",
                  "module t; a u (); endmodule module a; b u (); endmodule module b; a u (); endmodule");
    std::filesystem::create_directory(scratch.path("t.sdb"));
    // What grows without bound: macros, the first of them long, so that it grows fast, and modules.
    std::string macros = "`define M0 ;" + std::string(1 << 20, ' ') + ";\n",
                modules = "module m0; wire w; endmodule\n";
    for (int i = 1; i < 50; i++) {
        std::string below = std::to_string(i - 1), name = std::to_string(i);
        macros += "`define M" + name + " `M" + below + " `M" + below + "\n";
        modules += "module m" + name + "; m" + below + " a (), b (), c (), d (); endmodule\n";
    }
    scratch.write("modules.v", modules);
    scratch.write("cells.v", macros + "module t; `M49 endmodule\n");
    scratch.write("minus.v", "module t; wire [" + std::string(1 << 20, '-') + "1:0] w; endmodule");
    std::string text;
    for (const char *arguments : WRONG_ARGUMENTS)
        text += section(arguments, scratch.call(std::string("kalmverin ") + arguments));
    expect_file("siblings/expected/verin_refusals.txt", text);
}

} // namespace
