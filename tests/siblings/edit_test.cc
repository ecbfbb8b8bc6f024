// kalmedit: edit command files carried out on an SDB file.
#include "tests/siblings/design_view.hh"

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

struct edit_scratch : scratch_folder {
    edit_scratch() {
        make_cells(*this);
        write("d.v", edited_design);
        write("more/more.v", more_modules);
        run_result made =
            run(plain_search() + program("kalmverin") + " d.v && cd more && VELMORA_DIRS=../lib " +
                program("kalmverin") + " more.v -top less");
        EXPECT_EQ(made.status, 0) << made.err;
    }
    run_result edit(const std::string &commands) const {
        write("cmd/d.cmd", commands);
        return run(plain_search() + program("kalmedit") + " -nologo -b cmd/d");
    }
};

struct {
    const char *name;
    const char *commands; ///< between `edit d` and `save`
    const char *changed;  ///< lines of the design that the commands make; the others stay
} const edits[] = {
    {"an instance, its pins on nets of other pins and on ports",
     "add c1 INV\nconnect c1{A} u2{Z}\nconnect v[0] c1{Z}\n", nullptr},
    {"a cut wire: the sinks stay together, a new driver joins one of them",
     "add c1 INV\ndisconnect u1{Z}\nconnect u1{Z} c1{A}\nconnect c1{Z} u3{A}\n",
     "u1 INV A=a Z=u1_Z\nu2 INV A=n Z=y\nu3 INV A=n Z=z\nc1 INV A=u1_Z Z=n\n"},
    {"constants and don't-care bits",
     "add c1 ADD\nconnect c1{A[3]} VCC\nconnect GND c1{A[2]}\nconnect c1{A[1]} X_NET\nconnect X_NET "
     "c1{A[0]}\n"
     "connect c1{B[0]} c1{A[3]}\n",
     "c1 ADD A[3]=VCC A[2]=GND A[1]=X_NET A[0]=X_NET B[0]=VCC B[1]=- S[3]=- S[2]=- S[1]=- S[0]=-\n"},
    {"a don't-care bit gets a driver, and names with separators",
     "disconnect x[0].u{A}\nconnect x[1].u{1}{A} u1{Z}\nadd a.b[3] INV\nconnect X_NET a.b[3]{A}\n",
     "x[0].u INV A=- Z=-\nx[1].u{1} INV A=n Z=-\na.b[3] INV A=X_NET Z=-\n"},
    {"ports, and odd blanks in the lines",
     " add   si\tinput \nadd so output\r\n\n   \nadd c1 INV\n connect  si   c1{A} \nconnect c1{Z} so\n",
     "input si si\noutput so so\nc1 INV A=si Z=so\n"},
    {"a port leaves its net, and takes its name along",
     "add c1 INV\ndisconnect  y\nconnect u2{Z} c1{A}\nconnect c1{Z} y\n",
     "output y y\nu2 INV A=n Z=y_n1\nc1 INV A=y_n1 Z=y\n"},
    {"two nets become one", "disconnect u2{Z}\nconnect y n\n",
     "output y y\nu1 INV A=a Z=y\nu2 INV A=y Z=-\n"
     "u3 INV A=y Z=z\n"},
    {"a bus takes another driver", "add c1 TRI\nconnect c1{Z} t1{Z}\n", "c1 TRI A=- E=- Z=m\n"},
    {"replace keeps pins of the same name",
     "path more \nconnect k{o} X_NET\nreplace k box_bs\nconnect k{si} v[1]\n",
     "k box_bs i=a o=X_NET si=v[1] so=-\n"},
    {"replace drops the others", "path none\npath more\nreplace k less\n", "k less o=- x=-\n"},
    {"a pin in another case, as a library may write it", "disconnect u2{z}\ndisconnect u2{a}\n",
     "output y y\nu2 INV A=- Z=-\n"},
};

// The design's lines with those of `changed` put in the place of lines that begin with the same word or
// words.
std::string with_changes(std::string text, const std::string &changed) {
    for (size_t at = 0; at < changed.size();) {
        size_t end = changed.find('\n', at) + 1;
        std::string line = changed.substr(at, end - at);
        at = end;
        bool port = line.rfind("input ", 0) == 0 || line.rfind("output ", 0) == 0;
        size_t key = line.find(' ', port ? line.find(' ') + 1 : 0) + 1;
        size_t found = ("\n" + text).find("\n" + line.substr(0, key));
        if (found != std::string::npos)
            text.replace(found, text.find('\n', found) + 1 - found, line);
        else if (port)
            text.insert(text.find("u1 "), line);
        else
            text += line;
    }
    return text;
}

TEST(Kalmedit, CarriesOutCommands) {
    for (const auto &row : edits) {
        SCOPED_TRACE(row.name);
        edit_scratch scratch;
        std::string before = design_text(scratch.path("d.sdb"));
        std::string bytes = scratch.read("d.sdb");
        run_result result = scratch.edit("edit d\n" + std::string(row.commands) + "save\nquit\n");
        if (row.changed == nullptr) { // two drivers: nothing is written
            EXPECT_EQ(result.status, 255);
            EXPECT_EQ(scratch.read("d.sdb"), bytes);
            continue;
        }
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_EQ(design_text(scratch.path("d.sdb")), with_changes(before, row.changed));
    }
}

struct {
    const char *commands;
    const char *error; ///< behind "ERROR: cmd/d.cmd"
} const refusals[] = {
    {"", ""},
    {"edit d\n", ":1: the file ends without 'quit'."},
    {"edit none\n", ":1: there is no file 'none.sdb' to edit."},
    {"add c1 INV\nquit\n", ":1: no design is being edited"},
    {"edit d\nconnect a\n", ":2: 'connect' takes 2 operands."},
    {"edit d\nadd c1 NONE\nsave\nquit\n", ":2: the cell or module 'NONE' is unknown"},
    {"edit d\nadd u1 INV\nsave\nquit\n", ":2: the design has an instance 'u1' already."},
    {"edit d\nadd y output\nsave\nquit\n", ":2: the design has a port 'y' already."},
    {"edit d\nadd c1 d\nsave\nquit\n", ":2: the module 'd' can't contain itself."},
    {"edit d\n\ndisconnect u9{A}\nsave\nquit\n", ":3: the design has no instance 'u9'."},
    {"edit d\ndisconnect u1{Q}\nsave\nquit\n", ":2: the instance 'u1' has no pin 'Q'."},
    {"edit d\ndisconnect n\nsave\nquit\n", ":2: 'n' is a net"},
    {"edit d\nconnect u1{A} nowhere\nsave\nquit\n", ":2: the design has no port or net 'nowhere'."},
    {"edit d\nconnect u1{A} *UNDEF*\nsave\nquit\n", ":2: '*UNDEF*' names nothing."},
    {"edit d\nconnect u1{Z} u2{Z}\nsave\nquit\n", ":2: 'u1{Z}' and 'u2{Z}': this joins two drivers."},
    {"edit d\nconnect u1{Z} VCC\nsave\nquit\n", ":2: 'u1{Z}' and 'VCC': this joins two drivers."},
    {"edit d\nconnect VCC GND\nsave\nquit\n", ":2: 'VCC' and 'GND': this joins the constants 0 and 1."},
    {"edit d\nreplace k ../lib/INV\nsave\nquit\n", ":2: the cell or module '../lib/INV' is unknown"},
    {"edit d\nadd c1 INV\nquit\n", ":3: the changes have not been saved."},
};

TEST(Kalmedit, RefusesWithTheLineAndChangesNothing) {
    edit_scratch scratch;
    std::string bytes = scratch.read("d.sdb");
    for (const auto &row : refusals) {
        SCOPED_TRACE(row.commands);
        run_result result = scratch.edit(row.commands);
        EXPECT_EQ(result.status, 255);
        EXPECT_TRUE(result.err.starts_with(std::string("ERROR: cmd/d.cmd") + row.error)) << result.err;
        EXPECT_EQ(scratch.read("d.sdb"), bytes);
    }
    // What stands behind a save is refused as well, though the file is written by then.
    for (const char *behind : {"add c1 INV", "save"})
        EXPECT_NE(scratch.edit(std::string("edit d\nsave\n") + behind + "\nquit\n")
                      .err.find(":3: the design has been saved"),
                  std::string::npos);
    EXPECT_EQ(scratch.edit("edit d\nsave\nquit\nno command\n").status, 0);
    EXPECT_EQ(scratch.run(program("kalmedit") + " -nologo -b cmd/none").status, 255);
    EXPECT_EQ(scratch.run(program("kalmedit") + " -nologo").status, 255);
    scratch.write("d.sdb", bytes.substr(0, bytes.size() / 2));
    EXPECT_EQ(scratch.edit("edit d\nsave\nquit\n").status, 255);
    EXPECT_EQ(scratch.read("d.sdb").size(), bytes.size() / 2);
}

} // namespace
