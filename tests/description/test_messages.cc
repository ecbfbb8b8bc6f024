// Every message of the readers: its words, stream, line and status.
#include "tests/description/reading.hh"

namespace {

struct MESSAGE_CASE {
    const char *title;
    std::string lib;
    std::string bsc;
    std::string pin; // chip.pin, written when not empty
    int status;
    std::string out;
    std::string err;
};

void PrintTo(const MESSAGE_CASE &shown_case, std::ostream *stream) {
    *stream << shown_case.title;
}

class ReaderMessages : public testing::TestWithParam<MESSAGE_CASE> {};

TEST_P(ReaderMessages, AreExact) {
    const MESSAGE_CASE &test = GetParam();
    scratch_folder scratch;
    scratch.write("chip.lib", test.lib);
    scratch.write("chip.bsc", test.bsc);
    if (!test.pin.empty())
        scratch.write("chip.pin", test.pin);
    run_result result = read_in_child(scratch);
    EXPECT_EQ(result.status, test.status);
    EXPECT_EQ(result.out, test.out);
    EXPECT_EQ(result.err, test.err);
}

std::string lib_error(int line, const std::string &token) {
    return "\"chip.lib\", line " + std::to_string(line) + ": Syntax Error at '" + token + "'\n";
}

MESSAGE_CASE lib_case(const char *title, const std::string &lib, int line, const std::string &token) {
    return {title, lib, SHORT_BSC, "", 255, lib_error(line, token), ""};
}

INSTANTIATE_TEST_SUITE_P(
    LibSyntax, ReaderMessages,
    testing::Values(lib_case("empty file", "", 1, ""), lib_case("only a comment", "// nothing\n", 2, ""),
                    lib_case("end of file", "%BUFFER B {\n %INPUT A;\n", 3, ""),
                    lib_case("no semicolon before the brace", "%BUFFER B { %INPUT A }", 1, "}"),
                    lib_case("keyword in lower case", "%SCAN_CELL C { %tdi a; }", 1, "%tdi"),
                    lib_case("unknown keyword", "%FOO C { %TDI a; }", 1, "%FOO"),
                    lib_case("NUL byte", std::string("%BUFFER B\0", 10), 1, "\\0"),
                    MESSAGE_CASE{"two lists", "%BUFFER A, , B", SHORT_BSC, "", 255, lib_error(1, ","), ""}));

INSTANTIATE_TEST_SUITE_P(
    LibMeaning, ReaderMessages,
    testing::Values(
        MESSAGE_CASE{"comment in a comment", "/* a\n /* b */", SHORT_BSC, "", 255,
                     "'chip.lib' line 2: Missing '*/'.\n", ""},
        MESSAGE_CASE{
            "exclusive attributes", "%BUFFER B {\n %PULL_0; %WEAK_1;\n %INPUT A; }", SHORT_BSC, "", 255,
            "Error: chip.lib file 'WEAK_1','PULL_0', Should be mutually exclusive in %BUFFER B\n", ""},
        MESSAGE_CASE{"keeper goes with a pull", "%BUFFER B { %PULL_0; %KEEPER; }", SHORT_BSC, "", 0, "", ""},
        MESSAGE_CASE{"extra 0", "%TAP_CONTROLLER T {\n %EXTRA_0 a; }", SHORT_BSC, "", 255,
                     "\"chip.lib\", line 2: Number '0' of %EXTRA_ is not in 1 to 1024\n", ""},
        MESSAGE_CASE{"size above 32 bits", "%TAP_CONTROLLER T { %GROUP_SIZE 99999999999; }", SHORT_BSC, "",
                     255, "\"chip.lib\", line 1: Number '99999999999' is too large\n", ""},
        MESSAGE_CASE{"token of the greatest length", "%BUFFER " + std::string(8191, 'a') + " { %INPUT A; }",
                     SHORT_BSC, "", 0, "", ""},
        MESSAGE_CASE{"token too long", "%BUFFER " + std::string(8192, 'a') + " { %INPUT A; }", SHORT_BSC, "",
                     2, "", "token too large, exceeds YYLMAX\n"},
        MESSAGE_CASE{"long comments and blanks are no tokens",
                     "//" + std::string(40000, 'x') + "\n/*" + std::string(40000, '*') + "*/" +
                         std::string(40000, ' ') + "%BUFFER B { %INPUT A; } // no line end",
                     SHORT_BSC, "", 0, "", ""}));

MESSAGE_CASE bsc_case(const char *title, const std::string &bsc, int line, const std::string &token) {
    return {title, SHORT_LIB,
            bsc,   "",
            255,   "\"chip.bsc\", line " + std::to_string(line) + ": Syntax Error at '" + token + "'\n",
            ""};
}

INSTANTIATE_TEST_SUITE_P(
    BscSyntax, ReaderMessages,
    testing::Values(bsc_case("only a comment", "/* nothing */", 1, ""), bsc_case("first token", "{", 1, "{"),
                    bsc_case("last token", "%SCAN_CELLS { %INPUT_SCAN BC;\n", 2, ""),
                    bsc_case("no semicolon", "%GLOBAL_TDI tdi\n%GLOBAL_TDO tdo;", 2, "%GLOBAL_TDO"),
                    bsc_case("empty instruction", "%INSTRUCTION_TABLE { %INSTRUCTION X { } }", 1, "}")));

INSTANTIATE_TEST_SUITE_P(
    BscMeaning, ReaderMessages,
    testing::Values(
        MESSAGE_CASE{"unknown cell in a role", SHORT_LIB, "%SCAN_CELLS {\n%INPUT_SCAN nosuch; }", "", 255,
                     "'chip.bsc' line 2: Can't find Cell nosuch.\n", ""},
        MESSAGE_CASE{"unknown TAP cell", SHORT_LIB, "%TAP_MODULE { %MODULE_NAME BC; }", "", 255,
                     "'chip.bsc' line 1: Can't find Cell BC.\n", ""},
        MESSAGE_CASE{"bad pattern and bad length", SHORT_LIB, "%IDCODE_REGISTER\n12;", "", 0,
                     "\"chip.bsc\", line 2: Syntax Error at '12'\n"
                     "\"chip.bsc\", line 2: Pattern '12' is not 32 bits\n",
                     ""},
        MESSAGE_CASE{"colliding captures", SHORT_LIB, "%INSTRUCTION_CAPTURE (0X,\n01);", "", 0, "",
                     "\"chip.bsc\", line 2: Pattern '01' has been appeared previous\n"},
        MESSAGE_CASE{"captures of two lengths", SHORT_LIB, "%INSTRUCTION_CAPTURE (01, 011);", "", 0, "",
                     "\"chip.bsc\", line 1: Size of '011' and '01' are not equivalence\n"},
        MESSAGE_CASE{"illegal skip value", SHORT_LIB, "%SKIP_SIGNAL_NAMES { a(11), b(x); }", "", 0,
                     "WARNING: '11' is illegal value of \"a\" pin in %SKIP_SIGNAL_NAME, ignored\n", ""},
        MESSAGE_CASE{"enable without a level", SHORT_LIB,
                     "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(1X); }", "", 255,
                     "\"chip.bsc\", line 1: Enable pattern '1X' of 'e' may hold 0 and 1 only\n", ""},
        MESSAGE_CASE{"enable that is no pattern", SHORT_LIB,
                     "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(2);\n"
                     "%INSTRUCTION B { %ENABLE e = X2; } }",
                     "", 0,
                     "\"chip.bsc\", line 1: Syntax Error at '2'\n"
                     "\"chip.bsc\", line 2: Syntax Error at 'X2'\n",
                     ""},
        MESSAGE_CASE{
            "pins in the bsc file", SHORT_LIB, "%PIN_LIST {\n 1 tdi 2 tdo }", "", 255,
            "\"chip.bsc\", line 2: Pins cannot be listed inside %PIN_LIST. Write them to a pin file and "
            "name it with %FILE_NAME <file>;\n",
            ""},
        MESSAGE_CASE{"comment opener before a path", SHORT_LIB, "//abc {\n/*def } { */ word", "", 0, "", ""},
        MESSAGE_CASE{"no pin file", SHORT_LIB, "%PIN_LIST { %FILE_NAME ./no.pin; }", "", 255,
                     "Error: (chip.bsc) can't open pin file './no.pin' in default searching path.\n\n", ""},
        MESSAGE_CASE{"pin file is a directory", SHORT_LIB,
                     "%PACKAGE_LIST { %FILE_NAME ./; %FILE_NAME /tmp; }", "", 255,
                     "\"chip.bsc\", line 1: Syntax Error at '.'\n", ""}));

const std::string PIN_BSC = "%PIN_LIST { %FILE_NAME ./chip.pin; }\n";

MESSAGE_CASE pin_case(const char *title, const std::string &pin, int status, const std::string &out,
                      const std::string &err = "") {
    return {title, SHORT_LIB, PIN_BSC, pin, status, out, err};
}

INSTANTIATE_TEST_SUITE_P(
    Pins, ReaderMessages,
    testing::Values(
        pin_case("empty file", " ", 255, "\"chip.pin\", line 1: Syntax Error at ''\n"),
        pin_case("keyword as direction", "%PACKAGE_TYPE p 1;\n1 a b I", 255,
                 "\"chip.pin\", line 2: Syntax Error at 'I'\n"),
        pin_case("enough package pins", "%PACKAGE_TYPE x 2; 1 a b * 2 c d *", 0, ""),
        pin_case("too few package pins", "%PACKAGE_TYPE x 1; 1 a b * 2 c d *", 255,
                 "\"chip.pin\", package pin number '1' is less than total pin count '2'\n"),
        pin_case("number twice stops at once", "1 a b *\n1 a\nb *", 255,
                 "'chip.pin' line 2: pin number 1 mutiple defined.\n"),
        pin_case("names twice are all listed", "%PACKAGE_TYPE x 9;\n1 a b *\n2 a c *\n3 d b *\n4 a b *", 255,
                 "'chip.pin' line 3: pin name a mutiple defined.\n"
                 "'chip.pin' line 4: pin name b mutiple defined.\n"
                 "'chip.pin' line 5: pin name a mutiple defined.\n"
                 "'chip.pin' line 5: pin name b mutiple defined.\n"),
        pin_case("allowed names protect later rows",
                 "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { VDD ; }\n"
                 "1 VDD p * 2 VDD p * 3 VDD * *",
                 0, ""),
        pin_case("allowed too late", "%PACKAGE_TYPE x 9; 1 VDD * * 2 VDD * *\n%ALLOWED_MULTIPLE { VDD ; }",
                 255, "'chip.pin' line 1: pin name VDD mutiple defined.\n"),
        pin_case("allowed for the package name, not the top name",
                 "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { p ; }\n1 p q * 2 r p * 3 s p *", 255,
                 "'chip.pin' line 2: pin name p mutiple defined.\n"),
        pin_case("internal rows repeat",
                 "%PACKAGE_TYPE x 9; 1 INTERNAL a * 2 INTERNAL b *\n3 OBSERVE c * 4 OBSERVE "
                 "d * 5 OBSERVE_ONLY e * 6 OBSERVE_ONLY f *",
                 0, ""),
        pin_case("unused allowed name", "%PACKAGE_TYPE x 1; %ALLOWED_MULTIPLE { VDD, a ; } 1 a VDD *", 0, "",
                 "WARNING : %ALLOWED_MULTIPLE 'VDD' was not declared in \"chip.pin\".\n"),
        pin_case("second list of allowed names replaces the first",
                 "%PACKAGE_TYPE x 2; %ALLOWED_MULTIPLE { a ; } %ALLOWED_MULTIPLE { b ; } 1 a * * 2 a * *",
                 255, "'chip.pin' line 1: pin name a mutiple defined.\n",
                 "WARNING : %ALLOWED_MULTIPLE 'b' was not declared in \"chip.pin\".\n"),
        pin_case("index is no number", "1 a b *\n2\nD[3a] e *", 255, "",
                 "\"chip.pin\", line 3: Syntax error at D[3a]\n"),
        pin_case("one bracket", "%PACKAGE_TYPE x 1; 1 D[3 D]3 IN[0]", 0, "")));

TEST(ReaderFiles, AreOpenedBeforeTheFirstIsParsed) {
    struct {
        const char *lib, *bsc, *err;
    } cases[] = {
        {nullptr, "chip.bsc", "Error: lib file is a null string\n"},
        {"chip.lib", nullptr, "Error: dft file is a null string\n"},
        {"no.lib", "no.bsc", "Error: Can't open lib file no.lib\n"},
        {"chip.lib", "no.bsc", "Error: Can't open dft file no.bsc\n"},
        {"folder", "chip.bsc", "Error: Can't open lib file folder\n"},
        {"chip.lib", "/dev/null", "Error: Can't open dft file /dev/null\n"},
    };
    scratch_folder scratch;
    scratch.write("chip.lib", "{ not parsed");
    scratch.write("chip.bsc", SHORT_BSC);
    std::filesystem::create_directory(scratch.dir / "folder");
    for (const auto &test : cases) {
        run_result result = run_child(scratch, [&] { get_bs_dft_file(test.lib, test.bsc, 0); });
        EXPECT_EQ(result.status, 255) << test.err;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, test.err);
    }
}

TEST(ReaderFiles, LineNumbersGoOnInASecondReading) {
    scratch_folder scratch;
    scratch.write("chip.lib", std::string(SHORT_LIB) + "\n\n");
    scratch.write("one.pin", "%PACKAGE_TYPE x 9;\n1 a b *\n\n");
    scratch.write("two.pin", "2 c d *\n");
    scratch.write("chip.bsc", "%PIN_LIST { %FILE_NAME one.pin; } %PIN_LIST { %FILE_NAME two.pin; }\n");
    scratch.write("bad.bsc", "word\n{");
    run_result result = run_child(scratch, [] {
        restart_line_counters();
        for (const char *bsc : {"chip.bsc", "chip.bsc", "bad.bsc"}) {
            bsdft_init();
            get_bs_dft_file("chip.lib", bsc, 0);
            std::printf("pins at %d and %d\n", PIN_TABLE[0]->line, PIN_TABLE[1]->line);
        }
    });
    EXPECT_EQ(result.status, 255);
    // Two files of one reading start at one line.
    EXPECT_EQ(result.out, "pins at 2 and 1\npins at 3 and 2\n\"bad.bsc\", line 4: Syntax Error at '{'\n");
}

TEST(PackageLists, CheckTheirFiles) {
    struct {
        const char *title, *second, *bsc;
        int status;
        std::string out;
    } cases[] = {
        {"two packages", "%PACKAGE_TYPE q 1; 1 a b *", "%FILE_NAME one.pin; %FILE_NAME ./two.pin;", 0, ""},
        {"one type twice", "%PACKAGE_TYPE P 1; 1 a b *", "%FILE_NAME one.pin; %FILE_NAME two.pin;", 255,
         "Error : The same package type name(P) in (one.pin) and (two.pin).\n"},
        {"one file twice", "", "%FILE_NAME one.pin; %FILE_NAME one.pin;", 255,
         "Warning: (one.pin) was redefined in package list and will skip it.\n\n"
         "Error : The same package type name(p) in (one.pin) and (one.pin).\n"},
        {"too few pins", "%PACKAGE_TYPE q 1; 1 a b * 2 c d *", "%FILE_NAME two.pin;", 255,
         "\"two.pin\", package pin number '1' is less than total pin count '2'\n"},
        {"names twice", "%PACKAGE_TYPE q 2; 1 a b * 2 a d *", "%FILE_NAME two.pin;", 255,
         "'two.pin' line 1: pin name a mutiple defined.\n"},
    };
    for (const auto &test : cases) {
        scratch_folder scratch;
        scratch.write("chip.lib", SHORT_LIB);
        scratch.write("one.pin", "%PACKAGE_TYPE p 2; 1 a b *");
        scratch.write("two.pin", test.second);
        scratch.write("chip.bsc", std::string("%PACKAGE_LIST { ") + test.bsc + " }");
        run_result result = read_in_child(scratch);
        EXPECT_EQ(result.status, test.status) << test.title;
        EXPECT_EQ(result.out, test.out) << test.title;
    }
}

} // namespace
