// kalmlist: what its netlists say, that their readers take them, and what it refuses.
#include "tests/siblings/netlist_case.hh"

TEST(List, RoundTrip) {
    struct {
        const char *what;
        std::string_view verilog;
    } const cases[] = {
        {"a hierarchy", netlist_design},
        {"vectors that are not whole, single bits, indexes from above zero",
         "module top (input [7:4] a, input [2:2] b, output [0:1] y, output \\q[3] , output \\q[1] );\n"
         "wire \\n[0] , \\n[2] , m;\n"
         "INV u1 (a[4], \\n[0] ); INV u2 (a[6], \\n[2] ); NAND2 u3 (\\n[0] , \\n[2] , y[0]);\n"
         "NAND2 u4 (b[2], a[7], y[1]); INV u5 (a[5], \\q[3] ); INV u6 (b[2], \\q[1] ); endmodule"},
        {"a vector and a net of its base name",
         "module top (input a, output y); wire n, \\n[0] , \\n[1] ; INV u1 (a, n);\n"
         "INV u2 (n, \\n[0] ); INV u3 (\\n[0] , \\n[1] ); INV u4 (\\n[1] , y); endmodule"},
        {"names of every kind",
         "module \\top (input \\reg , input \\2nd , input \\a+b , output \\always , output \\logic );\n"
         "NAND2 \\x/y (\\reg , \\2nd , \\always ); INV \\begin (\\a+b , \\logic ); endmodule"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.what);
        netlist_folder folder;
        folder.take("top", one.verilog);
        folder.tool("kalmlist -verilog -hierarchy -o first.v top.sdb");
        folder.accepted("first.v", "top");
        folder.equivalent("top.v", "first.v", "top");
        folder.tool("kalmverin first.v");
        folder.tool("kalmlist -verilog -hierarchy -o second.v top.sdb");
        EXPECT_EQ(folder.read("second.v"), folder.read("first.v"));
    }
}

// A port on a pad's pin, whatever the directions; single names with brackets and dots; don't-care bits; power
// under two names; a pin of both directions, which takes no constant.
TEST(List, WritesWhatStood) {
    const std::string expected = RW_SOURCE_DIR "/tests/siblings/expected/";
    const std::string as_it_stood = read_whole(expected + "as_it_stood.v");
    const std::string levels_as_they_stood = read_whole(expected + "levels_as_they_stood.v");
    netlist_folder folder;
    folder.write("top.v", as_it_stood);
    folder.tool("kalmverin -power v* top.v");
    folder.tool("kalmlist -verilog -hierarchy -o out.v top.sdb");
    EXPECT_EQ(folder.read("out.v"), as_it_stood);
    folder.tool("kalmflat -cellonly top");
    EXPECT_EQ(folder.read("top_flat.v"), as_it_stood);
    folder.accepted("out.v", "top", false);
    folder.tool("kalmlist -vhdl -hierarchy -o out.vhd top.sdb"); // VHDL takes no input there
    EXPECT_EQ(count_of(folder.read("out.vhd"), "  k_n1 <= k;\n"), 1u) << folder.read("out.vhd");
    folder.take("top", levels_as_they_stood);
    folder.tool("kalmlist -verilog -hierarchy -o out.v top.sdb");
    EXPECT_EQ(folder.read("out.v"), levels_as_they_stood);
    folder.take("pair", "module pair (inout p, inout q, input a); BPAD u (a, a, , p); endmodule");
    folder.write("lib/pair.cmd", "edit pair\nconnect p q\nsave\nquit\n");
    folder.tool("kalmedit -nologo -b lib/pair");
    folder.refused("kalmlist -verilog -hierarchy -o pair_out.v pair.sdb",
                   "the bidirectional ports 'p' and 'q' of module 'pair' are one net");
    EXPECT_FALSE(folder.has("pair_out.v"));
}

// An edited design has what no netlist brings: names used twice, cut ports, don't-care bits, pins open in
// part.
TEST(List, EditedDesign) {
    netlist_folder folder;
    folder.take("top", "module top (input a, input b, output y, output z); wire n;\n"
                       "INV u1 (a, n); INV u2 (n, y); INV u3 (b, z); endmodule");
    folder.write("lib/top.cmd", "edit top\nadd n INV\nadd sum ADD4\ndisconnect b\nconnect sum{A[3]} X_NET\n"
                                "connect sum{A[2]} VCC\nconnect sum{A[1]} GND\nconnect sum{A[0]} u1{Z}\n"
                                "connect sum{B[0]} u1{Z}\nconnect n{A} b\nsave\nquit\n");
    folder.tool("kalmedit -nologo -b lib/top");
    folder.tool("kalmlist -verilog -hierarchy -o out.v top.sdb");
    folder.accepted("out.v", "top");
    folder.tool("kalmlist -vhdl -hierarchy -o out.vhd top.sdb");
    expect_file("siblings/expected/list_edited.txt", folder.read("out.v") + folder.read("out.vhd"));
}

TEST(List, ModulesAreSearchedInOrder) {
    netlist_folder folder;
    auto leaf = [&](const std::string &directory, const std::string &cell) {
        folder.write(directory + "/leaf.v",
                     "module leaf (input a, output y); INV " + cell + " (a, y); endmodule");
        folder.tool("kalmverin " + directory + "/leaf.v -opath " + directory);
    };
    for (const char *directory : {"own", "added", "designs"})
        leaf(directory, std::string("of_") + directory);
    folder.write("top.v", "module top (input a, output y); leaf u (a, y); endmodule");
    folder.tool("kalmverin top.v -opath own");
    struct {
        const char *remove;
        const char *arguments;
        const char *found;
    } const steps[] = {
        {"true", "own/top.sdb -add_path added", "of_own"},
        {"mv own/top.sdb added; rm own/leaf.sdb", "top.sdb -add_path added", "of_added"},
        {"mv added/top.sdb own", "-add_path added own/top.sdb", "of_added"},
        {"rm added/leaf.sdb", "own/top.sdb -add_path added", "of_designs"},
    };
    for (const auto &step : steps) {
        folder.run(step.remove);
        for (const char *language : {"-verilog", "-vhdl"}) {
            folder.tool(std::string("kalmlist ") + language + " -hierarchy -o out " + step.arguments);
            EXPECT_EQ(count_of(folder.read("out"), step.found), 1u) << step.arguments << folder.read("out");
        }
    }
    folder.run("rm designs/leaf.sdb");
    folder.refused("kalmlist -verilog -hierarchy -o other own/top.sdb", "'leaf' has no SDB file");
}

TEST(List, Vhdl) {
    netlist_folder folder;
    folder.take("top", netlist_design);
    folder.tool("kalmlist -vhdl -hierarchy -o out.vhd top.sdb");
    expect_file("siblings/expected/list.vhd", folder.read("out.vhd"));
    // GHDL makes Verilog of it, with names that Verilog does not know and with the cells as empty modules.
    folder.write("names.pl", R"(undef $/; $_ = <STDIN>; s/^module (INV|NAND2|ADD4)\b.*?^endmodule\n//msg;
s/\\([^\\\n]*)\\/($n = $1) =~ s|\W|_|g; "of_vhdl_$n"/ge; print;)");
    for (const std::string standard : {"93", "08"}) {
        succeed(folder.run("ghdl --synth --out=verilog --std=" + standard +
                           " out.vhd -e top | perl names.pl >from_vhdl.v"));
        folder.equivalent("top.v", "from_vhdl.v", "top");
    }
}

TEST(List, VhdlNamesThatDifferByCase) {
    netlist_folder folder;
    folder.write("more.v", "module inv (input a, output z); endmodule");
    folder.tool("kalmverin -lib more.v -opath lib");
    folder.take("top",
                "module LEAF (input iNV, input nand2, output Out, output out);\n"
                "INV u (iNV, Out); inv U (nand2, out); NAND2 nAND2 (iNV, nand2, INV); endmodule\n"
                "module top (input i, output leaf); LEAF u (.iNV(i), .nand2(i), .Out(leaf)); endmodule");
    folder.tool("kalmlist -vhdl -hierarchy -o out.vhd top.sdb");
    std::string text = folder.read("out.vhd");
    expect_file("siblings/expected/list_names.vhd", text);
    for (const char *standard : {"93", "08"}) {
        run_result result = folder.run(std::string("rm -f *.cf; ghdl -a --std=") + standard + " out.vhd");
        EXPECT_EQ(result.status, 0) << result.err << text;
    }
    folder.take("port", "module port (input inv, output z); INV u (inv, z); inv v (z, y); endmodule");
    folder.refused("kalmlist -vhdl -hierarchy -o port.vhd port.sdb", "the port 'inv' of module 'port'");
}

TEST(List, Refusals) {
    netlist_folder folder;
    folder.take("top", netlist_design);
    // Files that fitted each other when they were made, and do so no more.
    folder.run("mkdir loop less");
    folder.write("ring.v",
                 "module ring (input a); link l (a); endmodule module link (input a); INV i (a); endmodule");
    folder.tool("kalmverin ring.v -opath loop");
    folder.write("link.v", "module link (input a); ring r (a); endmodule");
    folder.tool("kalmverin -lib ring.v -opath lib");
    folder.tool("kalmverin link.v");
    folder.run("rm lib/ring.sdb lib/link.sdb; mv link.sdb loop");
    folder.write("user.v", "module user (input a); part p (a, a); endmodule\n"
                           "module part (input a, input b); NAND2 n (a, b); endmodule");
    folder.tool("kalmverin user.v -opath less");
    folder.write("part.v", "module part (input a); INV i (a); endmodule");
    folder.tool("kalmverin part.v -opath less");
    folder.write("out.v", "kept");
    folder.refuses("kalmlist", {"", "-verilog -vhdl -o out.v top.sdb", "-verilog -o out.v top.v",
                                "-verilog -o out.v none.sdb", "-verilog -o out.v top.c.sdb",
                                "-verilog -o out.v lib/INV.sdb", "-verilog -o out.v loop/ring.sdb",
                                "-verilog -o out.v less/user.sdb", "-verilog -o none/out.v top.sdb",
                                "-verilog -o lib top.sdb", "-verilog -o /dev/full top.sdb"});
    EXPECT_EQ(folder.read("out.v"), "kept");
}

// A text of several pieces: it is the same in a file, which gets it piece by piece, and in a pipe, which gets
// it at the end; what goes wrong on the way leaves the earlier file and nothing beside it.
TEST(List, LongTextIsSavedWhole) {
    netlist_folder folder;
    std::string inner = "module inner (inout p, inout q, input a);\n  BPAD b (a, a, , p);\n";
    for (int i = 0; i < 1500; i++)
        inner += "  INV u" + std::to_string(i) + std::string(1500, 'u') + " (a);\n";
    folder.take("top",
                inner + "endmodule\nmodule top (inout p, inout q, input a); inner i (p, q, a); endmodule\n");
    const std::string line = RW_BIN_DIR "/kalmlist -verilog -hierarchy -o ";
    folder.tool("kalmlist -verilog -hierarchy -o out.v top.sdb");
    std::string text = folder.read("out.v");
    EXPECT_GT(text.size(), size_t{2} << 20);
    folder.run("mkfifo pipe; cat pipe >copy & unset VELMORA VELMORA_DIRS; " + line +
               "pipe top.sdb; wait; rm pipe");
    EXPECT_TRUE(folder.read("copy") == text);

    std::string files = folder.run("ls -A").out;
    EXPECT_EQ(folder.run("unset VELMORA VELMORA_DIRS; ulimit -f 2000; " + line + "out.v top.sdb").err,
              "ERROR: out.v: this file can't be written: File too large.\n");
    // The top, which is written last, can't be said in a netlist.
    folder.write("lib/top.cmd", "edit top\nconnect p q\nsave\nquit\n");
    folder.tool("kalmedit -nologo -b lib/top");
    folder.refused("kalmlist -verilog -hierarchy -o out.v top.sdb", "are one net");
    EXPECT_TRUE(folder.read("out.v") == text);
    EXPECT_EQ(folder.run("ls -A").out, files);
}
