// kalmflat: the flat design as a netlist and as an SDB file, and what it refuses.
#include "tests/siblings/netlist_case.hh"

TEST(Flat, NetlistIsTheSameDesign) {
    netlist_folder folder;
    folder.run("mkdir parts out");
    folder.write("top.v", netlist_design);
    folder.tool("kalmverin top.v -opath parts");
    folder.tool("kalmflat -cellonly -keepempty parts/top -opath out");
    folder.accepted("out/top_flat.v", "top");
    folder.equivalent("top.v", "out/top_flat.v", "top");
    std::string text = folder.read("out/top_flat.v");
    expect_parts(text, {"  INV \\s0.u[2]  (.A(y[0]), .Z(y[2]));\n", "  wire [3:0] \\s0.n ;\n",
                        ".S({\\s1.carry , \\s1.n })", "  assign o[2] = 1'b0;\n", "  assign o[3] = 1'b1;\n"});
    EXPECT_EQ(text.find("leaf"), std::string::npos) << text;
    // The reader of the Verilog netlist flattens it as well.
    EXPECT_EQ(folder.read("out/top.c.sdb"), folder.read("parts/top.c.sdb"));
    EXPECT_EQ(folder.run("ls out").out, "top.c.sdb\ntop_flat.v\n");
}

// A cell whose contents come later, and a module without contents, stay as they are.
TEST(Flat, KeepsWhatIsEmpty) {
    netlist_folder folder;
    folder.write("tap.v", "module tap (input tck, output [1:0] state); endmodule");
    folder.tool("kalmverin -lib tap.v -opath lib");
    folder.take("top", "module later (input a, output y); endmodule\n"
                       "module wires (input a, output y); assign y = a; endmodule\n"
                       "module mid (input a, output y, output z);\n"
                       "  later l (a, y); wires w (a, b); tap t (b, {z, n}); endmodule\n"
                       "module top (input a, output y, output z); mid m (a, y, z); endmodule");
    folder.tool("kalmflat -cellonly -keepempty top");
    EXPECT_EQ(folder.read("top_flat.v"), "module top (\n    input a,\n    output y,\n    output z\n);\n"
                                         "  wire \\m.n ;\n"
                                         "  later \\m.l  (.a(a), .y(y));\n"
                                         "  tap \\m.t  (.tck(a), .state({z, \\m.n }));\nendmodule\n");
    folder.tool("kalmflat -cellonly top");
    EXPECT_EQ(folder.read("top_flat.v").find("later"), std::string::npos) << folder.read("top_flat.v");
}

// A module that an earlier run of the reader left is expanded like one of the same run.
TEST(Flat, ModulesOfAnEarlierRun) {
    netlist_folder folder;
    folder.take("leaf", "module leaf (input a, output y); INV i (a, y); endmodule");
    folder.take("mid", "module mid (input a, output y); leaf l (a, y); endmodule");
    folder.take("top", "module top (input a, output y); mid m (a, y); endmodule");
    std::string flat = folder.read("top.c.sdb");
    folder.tool("kalmflat -cellonly -keepempty top");
    EXPECT_EQ(folder.read("top.c.sdb"), flat);
    EXPECT_EQ(folder.read("top_flat.v"), "module top (\n    input a,\n    output y\n);\n"
                                         "  INV \\m.l.i  (.A(a), .Z(y));\nendmodule\n");
}

// Names that are the same once the levels are gone, and names that only look like a level: those of the top
// itself stay.
TEST(Flat, NamesStayApart) {
    netlist_folder folder;
    folder.take("top", "module leaf (input a, output y); wire n; INV i (a, n); INV n2 (n, y); endmodule\n"
                       "module top (input a, output y, output z); wire \\u.n , \\u.i ;\n"
                       "leaf u (a, y); INV \\u.n2 (a, \\u.n ); NAND2 x (\\u.n , a, \\u.i );\n"
                       "INV w (\\u.i , z); endmodule");
    folder.tool("kalmflat -cellonly -keepempty top");
    folder.accepted("top_flat.v", "top");
    folder.equivalent("top.v", "top_flat.v", "top");
    std::string text = folder.read("top_flat.v");
    expect_parts(text, {"  INV \\u.n2  (.A(a), ", "  INV \\u.n2_n1  (.A(", "  INV \\u.i  (.A(a), "});
}

// Without a separator in a name, paths are told apart by their parts; names at the top still may be taken
// twice, and a vector of a scope has the name of nothing else there.
TEST(Flat, PathsOfPlainNames) {
    netlist_folder folder;
    folder.take("top",
                "module leaf (input a, output y); wire [1:0] n; INV i (a, n[0]), \\k[0] (n[0], n[1]);\n"
                "  INV o (n[1], y); endmodule\n"
                "module top (input a, output y, output z); wire n;\n"
                "  leaf u (a, n), v (n, y); INV i (n, z); endmodule");
    auto parts_of_flat = [&](std::initializer_list<const char *> parts) {
        folder.tool("kalmflat -cellonly -keepempty top");
        expect_parts(folder.read("top_flat.v"), parts);
    };
    parts_of_flat(
        {"  wire [1:0] \\u.n ;\n", "  wire [1:0] \\v.n ;\n", "  INV i (", "  INV \\u.k[0]  (.A(\\u.n [0])"});
    // The file of the module gets one name twice: as that of an instance and as the vector's.
    folder.run("sed -i 's/\\x02\\x00\\x00\\x00i\\x00/\\x02\\x00\\x00\\x00n\\x00/' leaf.sdb");
    parts_of_flat({"  INV \\u.n  (", "  wire \\u.n[0] ;\n", "  wire \\v.n[1] ;\n"});
}

// Power ports that a module below joins keep their own pins in the flat design, and the assign between them.
TEST(Flat, PowerPortsJoinedBelow) {
    netlist_folder folder;
    folder.write(
        "top.v",
        "module ring (inout p, q, input a); assign q = p; BPAD u (a, a, , q); BPAD w (a, a, , p); endmodule\n"
        "module top (inout vdd, vio, input a); ring r (vio, vdd, a), s (vio, vdd, a); endmodule");
    folder.tool("kalmverin -power p,q top.v");
    folder.tool("kalmflat -cellonly top");
    std::string text = folder.read("top_flat.v");
    for (const char *line : {"  assign vdd = vio;\n", "\\r.u  (.I(a), .OEN(a), .C(), .PAD(vdd));",
                             "\\s.w  (.I(a), .OEN(a), .C(), .PAD(vio));"})
        EXPECT_EQ(count_of(text, line), 1u) << line << "\n" << text;
    folder.accepted("top_flat.v", "top");

    folder.write("tied.v",
                 "module ring (inout p, q, input a); assign q = p; BPAD u (a, a, , q); endmodule\n"
                 "module tied (input a, output y); wire w; ring r (1'b0, w, a); INV i (w, y); endmodule");
    folder.tool("kalmverin -power p,q tied.v");
    folder.tool("kalmflat -cellonly tied");
    EXPECT_EQ(count_of(folder.read("tied_flat.v"), "INV i (.A(1'b0), "), 1u) << folder.read("tied_flat.v");
}

TEST(Flat, Refusals) {
    netlist_folder folder;
    folder.take("top", netlist_design);
    folder.run("mkdir cut; head -c 300 top.sdb > cut/top.sdb; mkdir alone; cp top.sdb alone/solo.sdb; "
               "cp leaf.sdb alone; sed -i s/leaf/gone/ alone/solo.sdb");
    std::string flat = folder.read("top.c.sdb");
    folder.refuses("kalmflat", {"", "none", "alone/solo -opath .", "cut/top -opath .", "top -opath none"});
    EXPECT_EQ(folder.read("top.c.sdb"), flat);
    EXPECT_FALSE(folder.has("top_flat.v"));
    std::filesystem::create_directory(folder.path("top_flat.v"));
    folder.refused("kalmflat top", "top_flat.v: this file can't be written: Is a directory");
    EXPECT_FALSE(folder.has("solo_flat.v"));
}
