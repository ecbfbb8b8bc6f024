#include "tests/siblings/netlist_case.hh"

const std::string_view netlist_cells = R"(
module INV (A, Z); input A; output Z; assign Z = ~A; endmodule
module NAND2 (A, B, Z); input A, B; output Z; assign Z = ~(A & B); endmodule
module ADD4 (A, B, S); input [3:0] A; input [0:3] B; output [4:0] S; assign S = A + B; endmodule
module BPAD (I, OEN, C, PAD); input I, OEN; output C; inout PAD;
  assign PAD = OEN ? 1'bz : I; assign C = PAD; endmodule
)";

const std::string_view few_cells = R"(
module INV (A, Z); input A; output Z; assign Z = ~A; endmodule
module TRI (A, E, Z); input A, E; output Z; assign Z = E ? A : 1'bz; endmodule
module BID (P, I); inout P; input I; assign P = I; endmodule
module ADD (A, B, S); input [3:0] A; input [0:1] B; output [3:0] S; endmodule
)";

const std::string_view netlist_design = R"(
module leaf (input [3:0] a, input [0:3] b, output [3:0] y, output z, output zz, output k0, output k1,
             output thru, input unused, output nc);
  wire \signal ; wire [3:0] n; wire \u.v[3] ; wire Y_; wire y_; wire carry;
  assign zz = z;
  assign k0 = 1'b0;
  assign k1 = 1'b1;
  assign thru = b[0];
  INV u0 (.A(a[0]), .Z(y[0]));
  INV u1 (a[1], y[1]);
  INV \u[2] (.A(y[0]), .Z(y[2]));
  INV u3 (.A(1'b0), .Z(y[3]));
  NAND2 \register (.A(b[0]), .B(a[2]), .Z(z));
  NAND2 entity (.A(\signal ), .B(\u.v[3] ), .Z(Y_));
  INV u5 (.A(n[1]), .Z(y_));
  INV U5 (.A(y_), .Z(\signal ));
  INV \wait (.A(n[2]), .Z(\u.v[3] ));
  ADD4 add (.A({a[2:1], b[3], 1'b1}), .B(b), .S({carry, n[3:1], n[0]}));
  ADD4 add2 (.A(), .B({n[0], Y_, 2'b10}), .S());
endmodule
module top (input [3:0] a, input [3:0] b, output [12:0] o, output [3:0] y);
  wire q3, q2;
  leaf s0 (.a(a), .b(b), .y(y), .z(o[0]), .zz(o[1]), .k0(o[2]), .k1(o[3]), .thru(o[4]), .unused(1'b0), .nc());
  leaf s1 (.a({b[3:2], a[1:0]}), .b({a[0], 2'b10, b[1]}), .z(o[5]), .zz(o[6]), .y({q3, q2, o[8:7]}));
  NAND2 i (.A(q3), .B(q2), .Z(o[9]));
  ADD4 last (.A(a), .B({b[1:0], 2'b01}), .S({o[10], o[11], o[12]  , x1, x2}));
endmodule
)";

netlist_folder::netlist_folder(std::string_view cells) {
    write("cells.v", cells);
    std::filesystem::create_directories(dir / "lib");
    tool("kalmverin -lib cells.v -opath lib");
}

run_result netlist_folder::call(const std::string &line) const {
    return run("unset VELMORA VELMORA_DIRS; " RW_BIN_DIR "/" + line);
}

void netlist_folder::tool(const std::string &line) const {
    run_result result = call(line);
    EXPECT_EQ(result.status, 0) << line;
    EXPECT_EQ(result.out + result.err, "") << line;
}

void netlist_folder::take(const std::string &name, std::string_view verilog) const {
    write(name + ".v", verilog);
    tool("kalmverin " + name + ".v");
}

void netlist_folder::refused(const std::string &line, const std::string &text) const {
    run_result result = call(line);
    EXPECT_EQ(result.status, 255) << line;
    // The reader of damaged files has words of its own, which the error stream gets too.
    EXPECT_TRUE(result.out.empty() || result.out.starts_with("SDB ERROR: ")) << line << "\n" << result.out;
    EXPECT_TRUE(result.err.starts_with(result.out + "ERROR: ")) << line << "\n" << result.err;
    EXPECT_NE(result.err.find(text), std::string::npos) << line << "\n" << result.err;
}

void netlist_folder::refuses(const std::string &tool, std::initializer_list<const char *> arguments) const {
    std::string said;
    for (const std::string one : arguments) {
        refused(tool + " " + one, "");
        said += section(one, call(tool + " " + one));
    }
    expect_file("siblings/expected/" + tool + "_refusals.txt", said);
}

void netlist_folder::accepted(const std::string &file, const std::string &top, bool by_verilator) const {
    std::vector<std::string> readers = {
        "iverilog -g2001 -o /dev/null -s " + top + " " + file + " cells.v",
        "yosys -q -p 'read_verilog " + file + " cells.v; hierarchy -check -top " + top + "'",
    };
    if (by_verilator)
        readers.push_back("verilator --lint-only -Wno-fatal --top-module " + top + " " + file + " cells.v");
    for (const std::string &reader : readers) {
        run_result result = run(reader);
        EXPECT_EQ(result.status, 0) << reader << "\n" << result.out << result.err << read(file);
    }
}

void netlist_folder::equivalent(const std::string &one, const std::string &other,
                                const std::string &top) const {
    auto load = [&](const std::string &file, const char *name) {
        return "read_verilog " + file + " cells.v; hierarchy -top " + top +
               "; proc; flatten; opt_clean; rename " + top + " " + name + "; design -stash " + name + "; ";
    };
    std::string script = load(one, "gold") + load(other, "gate") +
                         "design -copy-from gold -as gold gold; design -copy-from gate -as gate gate; "
                         "miter -equiv -flatten gold gate miter; sat -verify -prove trigger 0 miter";
    run_result result = run("yosys -q -p '" + script + "'");
    EXPECT_EQ(result.status, 0) << one << " and " << other << "\n" << result.err << read(one) << read(other);
}

void expect_parts(const std::string &text, std::initializer_list<const char *> parts) {
    for (const char *part : parts)
        expect_part(text, part);
}

size_t count_of(const std::string &text, const std::string &part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        count++;
    return count;
}
