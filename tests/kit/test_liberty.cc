// What the Liberty reader keeps of libraries as they are found, what it refuses, and what expressions say.
#include "kit/liberty.hh"
#include "kit/liberty_function.hh"
#include "siblings/tool.hh"
#include "tests/support/scratch.hh"

#include <algorithm>
#include <sys/resource.h>

namespace {

/// name:direction, then what else is known of the pin.
std::string shown(const LIBERTY_PIN &pin) {
    constexpr const char *directions[] = {"?", "in", "out", "inout", "internal"};
    std::string text = pin.name + ":" + directions[static_cast<int>(pin.direction)];
    for (const auto &[mark, value] :
         {std::pair("=", pin.function), {" z=", pin.three_state}, {" pair=", pin.complementary}})
        text += value.empty() ? "" : mark + value;
    for (const std::string &type : pin.driver_types)
        text += " " + type;
    return text + (pin.is_pad ? " is_pad" : "") + (pin.is_clock ? " clock" : "");
}

/// A line per cell in the order of names: its place and marks, and its pins.
std::string shown(const LIBERTY &library) {
    std::vector<std::string> cells;
    for (const auto &[name, cell] : library.cells) {
        std::string text = name + " " + TOOL_base_name(library.files[static_cast<size_t>(cell.file)]) + ":" +
                           std::to_string(cell.line) + (cell.is_pad_cell ? " pad" : "") +
                           (cell.is_sequential ? " ff" : "");
        for (const LIBERTY_PIN &pin : cell.pins)
            text += ", " + shown(pin);
        for (const std::string &pin : cell.power_pins)
            text += ", " + pin + ":power";
        cells.push_back(text + "\n");
    }
    std::sort(cells.begin(), cells.end());
    std::string all;
    for (const std::string &cell : cells)
        all += cell;
    return all;
}

run_result read_library(const scratch_folder &scratch, const char *name = "a.lib") {
    return run_child(scratch, [&] {
        LIBERTY library;
        liberty_read(library, name);
        std::fputs(shown(library).c_str(), stdout);
    });
}

std::string in_library(const std::string &text) {
    return "library (l) {\n" + text + "\n}\n";
}

struct KEPT_CASE {
    const char *title;
    std::string text;
    std::string shown;
};

const KEPT_CASE KEPT[] = {
    {"names with and without quotes, values without semicolons",
     "cell (\"A\") { pad_cell : \"true\"\n area : 1.0 + \n 2.0\n pin(P) { direction : \"inout\"\n is_pad : "
     "true }\n"
     "pin (\"Q\") { direction\n : output; function : (P + !R)*Q } }",
     "A a.lib:2 pad, P:inout is_pad, Q:out=( P + !R ) *Q\n"},
    {"lines that go on, strings over lines, comments",
     "cell (A) { /* pin (X) { */ // cell (B) {\n pin (P) { function : \"A \\\n + B\n C\"; three_state \\\n : "
     "\"!E\" ; } }",
     "A a.lib:2, P:?=A  + B  C z=!E\n"},
    {"braces and quotes in what is passed over",
     "define (x, cell, string);\n lu_table_template (t) { index_1 (\"1, 2}\"); }\n"
     "cell (A) { leakage_power () { when : \"!A \\\" }\"; value : 1; /* } */ }\n x_attribute : \"{\";\n"
     "pin (P) { timing () { cell_rise (t) { values (\"1, 2\", \\\n\"3,\n 4}\"); } } direction : input; } }",
     "A a.lib:4, P:in\n"},
    {"buses take their bits from types, pins within them tell more",
     "type (t) { bit_width : 3; bit_from : 2; bit_to : 0; }\n"
     "cell (A) { bus (D) { bus_type : t; pin (D[1]) { direction : output; } pin (D[2:1]) { function : \"X\"; "
     "}\n"
     "direction : input; } }\n"
     "cell (B) { type (t) { bit_width : 2; } bus (D) { bus_type : \"t\"; } pin (E[0:1], F) { clock : true; } "
     "}",
     "A a.lib:3, D[2]:in=X, D[1]:out=X, D[0]:in\nB a.lib:5, D[0]:?, D[1]:?, E[0]:? clock, E[1]:? clock, F:? "
     "clock\n"},
    {"bundles",
     "cell (A) { bundle (Q) { members (\"Q0, Q1\", Q2); direction : output; pin (Q1) { function : \"I\"; } } "
     "}",
     "A a.lib:2, Q0:out, Q1:out=I, Q2:out\n"},
    {"clocks are marked, or named by flip-flops and latches; test cells do not count",
     "cell (A) { ff (IQ, IQN) { clocked_on : \"(CK & !EN)\"; next_state : \"D\"; }\n pin (CK, EN, D) { "
     "direction : input; }\n"
     "test_cell () { pin (SI) { direction : input; } } }\n"
     "cell (B) { latch (IQ) { enable : G; } pin (G) { } pin (C) { clock : true; } }",
     "A a.lib:2 ff, CK:in clock, EN:in clock, D:in\nB a.lib:5 ff, G:? clock, C:? clock\n"},
    {"pads",
     "cell (A) { pg_pin (VDD) { pg_type : primary_power; } pin (P) { complementary_pin : \"N\"; "
     "driver_type : \"pull_up, open_drain\"; } }",
     "A a.lib:2, P:? pair=N pull_up open_drain, VDD:power\n"},
    {"the first of two cells stays",
     "cell (A) { pin (P) { } }\ncell (A) { pin (Q) { } }\n} library (m) { cell (B) { }",
     "A a.lib:2, P:?\nB a.lib:4\n"},
    {"included files stand where they are named, twice too",
     "include_file (\"sub/b.lib\");\ncell (C) { include_file (pins.inc) }", "B b.lib:2\nC a.lib:3, P:in\n"},
};

TEST(Liberty, KeepsWhatPinsAre) {
    for (const KEPT_CASE &test : KEPT) {
        SCOPED_TRACE(test.title);
        scratch_folder scratch;
        scratch.write("sub/b.lib", "\ncell (B) { include_file (../none.inc) }");
        scratch.write("none.inc", "area : 1");
        scratch.write("pins.inc", "pin (P) { direction : input; }");
        scratch.write("a.lib", in_library(test.text));
        EXPECT_EQ(succeed(read_library(scratch)), test.shown);
        scratch.run("gzip a.lib; mv a.lib.gz a.lib");
        EXPECT_EQ(succeed(read_library(scratch)), test.shown);
    }
}

const KEPT_CASE REFUSED[] = {
    {"nothing", "", "a.lib:1: there is no library in this file."},
    {"Verilog", "module x (a);\nendmodule", "a.lib:1: a ':' or '(' is missing behind this name."},
    {"open group", "library (l) {\n cell (A) {\n pin (P) {\n } \n",
     "a.lib:2: the file ends within the group of this line."},
    {"open group that is passed over", "library (l) {\n x () {\n y () { } ",
     "a.lib:2: the file ends within the group of this line."},
    {"open comment", "library (l) {\n /* \n } ", "a.lib:2: this comment is not closed."},
    {"open string", in_library("cell (A) { pin (P) { function : \"X; } }"),
     "a.lib:2: this string is not closed."},
    {"open parenthesis", in_library("cell (A {\n pin (P) { } }"),
     "a.lib:2: the ')' of this statement is missing."},
    {"one brace too many", in_library("}"), "a.lib:3: there is nothing that this '}' closes."},
    {"direction", in_library("cell (A) {\n pin (P) { direction : up; } }"),
     "a.lib:3: there is no direction 'up'."},
    {"type", in_library("cell (A) {\n bus (P) { bus_type : t; } }"), "a.lib:3: there is no type 't'."},
    {"bus of all bits there are", in_library("cell (A) { pin (P[2147483647:0]) { } }"),
     "a.lib:2: the bus 'P' has more than 16384 bits."},
    {"bits in parentheses", in_library("cell (A) { pin (P(0)) { } }"), "a.lib:2: a '(' can't stand here."},
    {"blanks in a range", in_library("cell (A) { pin (\"P[1 : 0]\") { } }"),
     "a.lib:2: 'P[1' is no name of a pin."},
    {"NUL", std::string("library (l) {\n \0 }", 18), "a.lib:2: a ':' or '(' is missing behind this name."},
    {"a file that includes itself", in_library("include_file (b.lib);"),
     "b.lib:1: the file './a.lib' includes itself."},
    {"no such file", in_library("include_file (c.lib);"),
     "a.lib:2: can't open file 'c.lib': No such file or directory."},
    {"a folder", in_library("include_file (.);"), "a.lib:2: can't read file '.': it is a directory."},
    {"a long name", in_library(std::string(3 << 20, 'x')),
     "a.lib:2: a name, a string or a line is longer than a million characters."},
};

TEST(Liberty, RefusesWithFileAndLine) {
    for (const KEPT_CASE &test : REFUSED) {
        SCOPED_TRACE(test.title);
        scratch_folder scratch;
        scratch.write("b.lib", "include_file(./a.lib)");
        scratch.write("a.lib", test.text);
        run_result result = read_library(scratch);
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(result.err, "ERROR: " + test.shown + "\n");
    }
}

TEST(Liberty, CompressedFilesMayBeDamagedOrHuge) {
    scratch_folder scratch;
    scratch.write("a.lib", in_library("cell (A) { }") + std::string(100000, ' '));
    ASSERT_EQ(
        scratch
            .run("gzip -c a.lib >whole; (cat whole; printf '\\0\\0') >padded; cat whole whole >twice\n"
                 "head -c 60 whole >short; (head -c 40 whole; printf 'xxxxxxxx'; tail -c +49 whole) >bad\n"
                 "(cat whole; echo x) >longer\n"
                 "(printf 'library (l) { x () { y (\"'; head -c 60000000 /dev/zero | tr '\\0' '1' | fold -w "
                 "100000;"
                 "printf '\"); } }') | gzip -1 >bomb")
            .status,
        0);
    for (const char *name : {"whole", "padded", "twice"})
        EXPECT_EQ(succeed(read_library(scratch, name)), std::string("A ") + name + ":2\n") << name;
    for (const char *name : {"short", "bad", "longer"}) {
        run_result result = read_library(scratch, name);
        EXPECT_EQ(result.status, 255);
        expect_part(result.err, std::string("ERROR: ") + name + ": this file is damaged: ");
    }
    run_result result = run_child(scratch, [] {
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        LIBERTY library;
        liberty_read(library, "bomb");
        getrusage(RUSAGE_SELF, &after);
        std::printf("%s", after.ru_maxrss - before.ru_maxrss < 20000 ? "small" : "large");
    });
    EXPECT_EQ(succeed(result), "small");
}

// --- expressions

std::string shown(const LIBERTY_CONDITION &condition) {
    constexpr const char *names[] = {"never", "always", "", "complex"};
    std::string text = names[static_cast<int>(condition.when)];
    for (const LIBERTY_LITERAL &literal : condition.literals)
        text += (text.empty() ? "" : " ") + literal.pin + "=" + (literal.value ? "1" : "0");
    if (condition.when == LIBERTY_WHEN::COMPLEX)
        for (const std::string &pin : condition.pins)
            text += " " + pin;
    return text;
}

TEST(LibertyFunction, BindsAsLibertyDoes) {
    // Each is true in exactly the rows whose number is given, A counting 1, B 2, C 4.
    const std::pair<const char *, unsigned> cases[] = {
        {"A+B C", 0b11101010},         {"(A+B)*C", 0b11100000},     {"A^B&C", 0b01100000},
        {"A B^C", 0b00101000},         {"!A'+B*0+C*0", 0b10101010}, {"(A+B)' C", 0b00010000},
        {"!(A*B)|C&&0", 0b01110111},   {"A B'C", 0b00100000},       {"A*(B|!B)*(C+C')", 0b10101010},
        {"\\\"A\\\" B C", 0b10000000},
    };
    for (const auto &[text, rows] : cases) {
        LIBERTY_FUNCTION function = liberty_function("0*A*B*C+(" + std::string(text) + ")");
        ASSERT_EQ(function.state, LIBERTY_READ::DONE) << text;
        EXPECT_EQ(function.table[0] & 0xFF, rows) << text;
    }
    for (const char *text : {"A+", "(A", "A)", "!", "A ^ * B", "'", "()"})
        EXPECT_EQ(liberty_function(text).state, LIBERTY_READ::BAD) << text;
    EXPECT_EQ(liberty_function(" ").state, LIBERTY_READ::NOTHING);
    EXPECT_EQ(liberty_function(std::string(100000, '(')).state, LIBERTY_READ::BAD);
    EXPECT_EQ(liberty_function_pins(liberty_function("A*!A + D[3] + 0*E")), std::vector<std::string>{"D[3]"});
}

TEST(LibertyFunction, TellsWhenAPadShowsAndReleases) {
    struct {
        const char *text, *direct, *inverted, *off;
    } const cases[] = {
        {"((PAD))", "always", "never", "PAD=1"},
        {"!PAD", "never", "always", "PAD=0"},
        {"IE*PAD", "IE=1", "never", "complex IE PAD"},
        {"!(IE & PAD) ", "never", "IE=1", "IE=0 PAD=0"},
        {"PAD ^ INV", "INV=0", "INV=1", "complex PAD INV"},
        {"(A+B) PAD", "complex A B", "never", "complex A B PAD"},
        {"!OE + PD", "never", "never", "OE=0 PD=1"},
        {"!OE E2", "never", "never", "complex OE E2"},
        {"0", "never", "never", "never"},
        {"1", "never", "never", "always"},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.text);
        LIBERTY_FUNCTION function = liberty_function(test.text);
        EXPECT_EQ(shown(liberty_function_shows(function, "PAD", LIBERTY_SENSE::DIRECT)), test.direct);
        EXPECT_EQ(shown(liberty_function_shows(function, "PAD", LIBERTY_SENSE::INVERTED)), test.inverted);
        EXPECT_EQ(shown(liberty_function_true_when_any(function)), test.off);
        EXPECT_EQ(liberty_function_is(function, "PAD", LIBERTY_SENSE::DIRECT),
                  std::string(test.direct) == "always");
    }
}

TEST(LibertyFunction, SixteenPinsAreTheMost) {
    std::string text = "P0";
    for (int pin = 1; pin < 16; ++pin)
        text += " P" + std::to_string(pin) + (pin % 2 == 1 ? "'" : "");
    LIBERTY_CONDITION all = liberty_function_shows(liberty_function(text), "P15", LIBERTY_SENSE::INVERTED);
    EXPECT_EQ(shown(all), "P0=1 P1=0 P2=1 P3=0 P4=1 P5=0 P6=1 P7=0 P8=1 P9=0 P10=1 P11=0 P12=1 P13=0 P14=1");
    LIBERTY_FUNCTION wide = liberty_function(text + " X");
    EXPECT_EQ(wide.state, LIBERTY_READ::TOO_WIDE);
    EXPECT_EQ(liberty_function_true_when_any(wide).pins.size(), 17U);
}

} // namespace
