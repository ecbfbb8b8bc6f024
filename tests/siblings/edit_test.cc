// kalmedit: edit command files carried out on an SDB file.
#include "tests/siblings/design_view.hh"
#include "tests/siblings/netlist_case.hh"

#include <sstream>

namespace {

constexpr const char *edited_design = R"(
module d (input a, input [1:0] v, output y, output z, inout b);
  wire n, m;
  INV u1 (.A(a), .Z(n)); INV u2 (.A(n), .Z(y)); INV u3 (.A(n), .Z(z));
  TRI t1 (.A(v[1]), .E(v[0]), .Z(m)); TRI t2 (.A(v[0]), .E(v[1]), .Z(m)); BID p (.P(b), .I(m));
  box k (.i(a), .o()); INV \x[0].u (.A(1'bx), .Z()), \x[1].u{1} (.A(1'bx), .Z());
endmodule
module box (input i, output o); INV u (i, o); endmodule
)";
// Modules that `replace` may put in the place of box, in a folder that a `path` names.
constexpr const char *more_modules = R"(
module box_bs (input i, output o, input si, output so); INV u (i, o); INV w (si, so); endmodule
module less (output o, input x); INV u (x, o); endmodule
)";

struct edit_folder : netlist_folder {
    edit_folder() : netlist_folder(few_cells) {
        take("d", edited_design);
        write("more/more.v", more_modules);
        tool("kalmverin more/more.v -top less -opath more");
    }
    run_result edit(const std::string &commands) const {
        write("cmd/d.cmd", commands);
        return call("kalmedit -nologo -b cmd/d");
    }
};

struct {
    const char *name;
    const char *commands; ///< between `edit d` and `save`
} const edits[] = {
    {"an instance, its pins on nets of other pins and on ports",
     "add c1 INV\nconnect c1{A} u2{Z}\nconnect v[0] c1{Z}\n"},
    {"a cut wire: the sinks stay together, a new driver joins one of them",
     "add c1 INV\ndisconnect u1{Z}\nconnect u1{Z} c1{A}\nconnect c1{Z} u3{A}\n"},
    {"constants and don't-care bits",
     "add c1 ADD\nconnect c1{A[3]} VCC\nconnect GND c1{A[2]}\nconnect c1{A[1]} X_NET\nconnect X_NET "
     "c1{A[0]}\n"
     "connect c1{B[0]} c1{A[3]}\n"},
    {"a don't-care bit gets a driver, and names with separators",
     "disconnect x[0].u{A}\nconnect x[1].u{1}{A} u1{Z}\nadd a.b[3] INV\nconnect X_NET a.b[3]{A}\n"},
    {"ports, and odd blanks in the lines",
     " add   si\tinput \nadd so output\r\n\n   \nadd c1 INV\n connect  si   c1{A} \nconnect c1{Z} so\n"},
    {"a port leaves its net, and takes its name along",
     "add c1 INV\ndisconnect  y\nconnect u2{Z} c1{A}\nconnect c1{Z} y\n"},
    {"two nets become one", "disconnect u2{Z}\nconnect y n\n"},
    {"a bus takes another driver", "add c1 TRI\nconnect c1{Z} t1{Z}\n"},
    {"replace keeps pins of the same name",
     "path more \nconnect k{o} X_NET\nreplace k box_bs\nconnect k{si} v[1]\n"},
    {"replace drops the others", "path none\npath more\nreplace k less\n"},
    {"a pin in another case, as a library may write it", "disconnect u2{z}\ndisconnect u2{a}\n"},
};

/// The lines of a design that the one before does not have.
std::string new_lines(const std::string &text, const std::string &before) {
    std::istringstream lines(text);
    std::string found;
    for (std::string line; std::getline(lines, line);)
        if (("\n" + before).find("\n" + line + "\n") == std::string::npos)
            found += line + "\n";
    return found;
}

TEST(Kalmedit, CarriesOutCommands) {
    std::string text;
    for (const auto &row : edits) {
        edit_folder scratch;
        std::string before = design_text(scratch.path("d.sdb"));
        run_result result = scratch.edit("edit d\n" + std::string(row.commands) + "save\nquit\n");
        std::string after = design_text(scratch.path("d.sdb"));
        text += section(row.name, result) + new_lines(after, before);
    }
    expect_file("siblings/expected/edits.txt", text);
}

const char *const refusals[] = {
    "",
    "edit d\n",
    "edit none\n",
    "add c1 INV\nquit\n",
    "edit d\nconnect a\n",
    "edit d\nadd c1 NONE\nsave\nquit\n",
    "edit d\nadd u1 INV\nsave\nquit\n",
    "edit d\nadd y output\nsave\nquit\n",
    "edit d\nadd c1 d\nsave\nquit\n",
    "edit d\n\ndisconnect u9{A}\nsave\nquit\n",
    "edit d\ndisconnect u1{Q}\nsave\nquit\n",
    "edit d\ndisconnect n\nsave\nquit\n",
    "edit d\nconnect u1{A} nowhere\nsave\nquit\n",
    "edit d\nconnect u1{A} *UNDEF*\nsave\nquit\n",
    "edit d\nconnect u1{Z} u2{Z}\nsave\nquit\n",
    "edit d\nconnect u1{Z} VCC\nsave\nquit\n",
    "edit d\nconnect VCC GND\nsave\nquit\n",
    "edit d\nreplace k ../lib/INV\nsave\nquit\n",
    "edit d\nadd c1 INV\nquit\n",
};

TEST(Kalmedit, RefusesWithTheLineAndChangesNothing) {
    edit_folder scratch;
    std::string bytes = scratch.read("d.sdb");
    std::string text;
    for (const char *commands : refusals) {
        text += section(commands, scratch.edit(commands));
        EXPECT_EQ(scratch.read("d.sdb"), bytes) << commands;
    }
    expect_file("siblings/expected/edit_refusals.txt", text);
    // What stands behind a save is refused as well, though the file is written by then.
    for (const char *behind : {"add c1 INV", "save"})
        EXPECT_NE(scratch.edit(std::string("edit d\nsave\n") + behind + "\nquit\n")
                      .err.find(":3: the design has been saved"),
                  std::string::npos);
    EXPECT_EQ(scratch.edit("edit d\nsave\nquit\nno command\n").status, 0);
    EXPECT_EQ(scratch.call("kalmedit -nologo -b cmd/none").status, 255);
    EXPECT_EQ(scratch.call("kalmedit -nologo").status, 255);
    scratch.write("d.sdb", bytes.substr(0, bytes.size() / 2));
    EXPECT_EQ(scratch.edit("edit d\nsave\nquit\n").status, 255);
    EXPECT_EQ(scratch.read("d.sdb").size(), bytes.size() / 2);
}

} // namespace
