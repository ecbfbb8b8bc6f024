// The messages of the readers: their words, stream, line and status.
#include "tests/description/reading.hh"

namespace {

struct MESSAGE_CASE {
    const char *title;
    std::string text; ///< of the file that is at fault
    std::string out;
    int status = 255;
    std::string err = "";
};

std::string lib_error(int line, const std::string &token) {
    return "\"chip.lib\", line " + std::to_string(line) + ": Syntax Error at '" + token + "'\n";
}

const MESSAGE_CASE LIB_CASES[] = {
    {"only a comment", "// nothing\n", lib_error(2, "")},
    {"end of file", "%BUFFER B {\n %INPUT A;\n", lib_error(3, "")},
    {"no semicolon before the brace", "%BUFFER B { %INPUT A }", lib_error(1, "}")},
    {"keyword in lower case", "%SCAN_CELL C { %tdi a; }", lib_error(1, "%tdi")},
    {"NUL byte", std::string("%BUFFER B\0", 10), lib_error(1, "\\0")},
    {"two lists", "%BUFFER A, , B", lib_error(1, ",")},
    {"comment in a comment", "/* a\n /* b */", "'chip.lib' line 2: Missing '*/'.\n"},
    {"exclusive attributes", "%BUFFER B {\n %PULL_0; %WEAK_1;\n %INPUT A; }",
     "Error: chip.lib file 'WEAK_1','PULL_0', Should be mutually exclusive in %BUFFER B\n"},
    {"keeper goes with a pull", "%BUFFER B { %PULL_0; %KEEPER; }", "", 0},
    {"extra 0", "%TAP_CONTROLLER T {\n %EXTRA_0 a; }",
     "\"chip.lib\", line 2: Number '0' of %EXTRA_ is not in 1 to 1024\n"},
    {"size above 32 bits", "%TAP_CONTROLLER T { %GROUP_SIZE 99999999999; }",
     "\"chip.lib\", line 1: Number '99999999999' is too large\n"},
    {"token of the greatest length", "%BUFFER " + std::string(8191, 'a') + " { %INPUT A; }", "", 0},
    {"token too long", "%BUFFER " + std::string(8192, 'a') + " { %INPUT A; }", "", 2,
     "token too large, exceeds YYLMAX\n"},
    {"long comments and blanks are no tokens",
     "//" + std::string(40000, 'x') + "\n/*" + std::string(40000, '*') + "*/" + std::string(40000, ' ') +
         "%BUFFER B { %INPUT A; } // no line end",
     "", 0},
};

const MESSAGE_CASE BSC_CASES[] = {
    {"only a comment", "/* nothing */", "\"chip.bsc\", line 1: Syntax Error at ''\n"},
    {"last token", "%SCAN_CELLS { %INPUT_SCAN BC;\n", "\"chip.bsc\", line 2: Syntax Error at ''\n"},
    {"empty instruction", "%INSTRUCTION_TABLE { %INSTRUCTION X { } }",
     "\"chip.bsc\", line 1: Syntax Error at '}'\n"},
    {"unknown cell in a role", "%SCAN_CELLS {\n%INPUT_SCAN nosuch; }",
     "'chip.bsc' line 2: Can't find Cell nosuch.\n"},
    {"unknown TAP cell", "%TAP_MODULE { %MODULE_NAME BC; }", "'chip.bsc' line 1: Can't find Cell BC.\n"},
    {"bad pattern and bad length", "%IDCODE_REGISTER\n12;",
     "\"chip.bsc\", line 2: Syntax Error at '12'\n"
     "\"chip.bsc\", line 2: Pattern '12' is not 32 bits\n",
     0},
    {"colliding captures", "%INSTRUCTION_CAPTURE (0X,\n01);", "", 0,
     "\"chip.bsc\", line 2: Pattern '01' has been appeared previous\n"},
    {"captures of two lengths", "%INSTRUCTION_CAPTURE (01, 011);", "", 0,
     "\"chip.bsc\", line 1: Size of '011' and '01' are not equivalence\n"},
    {"illegal skip value", "%SKIP_SIGNAL_NAMES { a(11), b(x); }",
     "WARNING: '11' is illegal value of \"a\" pin in %SKIP_SIGNAL_NAME, ignored\n", 0},
    {"enable without a level", "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(1X); }",
     "\"chip.bsc\", line 1: Enable pattern '1X' of 'e' may hold 0 and 1 only\n"},
    {"enable that is no pattern",
     "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(2);\n"
     "%INSTRUCTION B { %ENABLE e = X2; } }",
     "\"chip.bsc\", line 1: Syntax Error at '2'\n\"chip.bsc\", line 2: Syntax Error at 'X2'\n", 0},
    {"pins in the bsc file", "%PIN_LIST {\n 1 tdi 2 tdo }",
     "\"chip.bsc\", line 2: Pins cannot be listed inside %PIN_LIST. Write them to a pin file and "
     "name it with %FILE_NAME <file>;\n"},
    {"comment opener before a path", "//abc {\n/*def } { */ word", "", 0},
    {"no pin file", "%PIN_LIST { %FILE_NAME ./no.pin; }",
     "Error: (chip.bsc) can't open pin file './no.pin' in default searching path.\n\n"},
    {"pin file is a directory", "%PACKAGE_LIST { %FILE_NAME ./; %FILE_NAME /tmp; }",
     "\"chip.bsc\", line 1: Syntax Error at '.'\n"},
    {"two packages", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME ./q.pin; }", "", 0},
    {"one type twice", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME P.pin; }",
     "Error : The same package type name(P) in (chip.pin) and (P.pin).\n"},
    {"one file twice", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME chip.pin; }",
     "Warning: (chip.pin) was redefined in package list and will skip it.\n\n"
     "Error : The same package type name(p) in (chip.pin) and (chip.pin).\n"},
    {"too few pins of a package", "%PACKAGE_LIST { %FILE_NAME few.pin; }",
     "\"few.pin\", package pin number '1' is less than total pin count '2'\n"},
};

const MESSAGE_CASE PIN_CASES[] = {
    {"empty file", " ", "\"chip.pin\", line 1: Syntax Error at ''\n"},
    {"keyword as direction", "%PACKAGE_TYPE p 1;\n1 a b I", "\"chip.pin\", line 2: Syntax Error at 'I'\n"},
    {"too few package pins", "%PACKAGE_TYPE x 1; 1 a b * 2 c d *",
     "\"chip.pin\", package pin number '1' is less than total pin count '2'\n"},
    {"number twice stops at once", "1 a b *\n1 a\nb *", "'chip.pin' line 2: pin number 1 mutiple defined.\n"},
    {"names twice are all listed", "%PACKAGE_TYPE x 9;\n1 a b *\n2 a c *\n3 d b *\n4 a b *",
     "'chip.pin' line 3: pin name a mutiple defined.\n'chip.pin' line 4: pin name b mutiple defined.\n"
     "'chip.pin' line 5: pin name a mutiple defined.\n'chip.pin' line 5: pin name b mutiple defined.\n"},
    {"allowed names protect later rows",
     "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { VDD ; }\n1 VDD p * 2 VDD p * 3 VDD * *", "", 0},
    {"allowed too late", "%PACKAGE_TYPE x 9; 1 VDD * * 2 VDD * *\n%ALLOWED_MULTIPLE { VDD ; }",
     "'chip.pin' line 1: pin name VDD mutiple defined.\n"},
    {"allowed for the package name, not the top name",
     "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { p ; }\n1 p q * 2 r p * 3 s p *",
     "'chip.pin' line 2: pin name p mutiple defined.\n"},
    {"internal rows repeat",
     "%PACKAGE_TYPE x 9; 1 INTERNAL a * 2 INTERNAL b *\n3 OBSERVE c * 4 OBSERVE d * 5 OBSERVE_ONLY e * "
     "6 OBSERVE_ONLY f *",
     "", 0},
    {"second list of allowed names replaces the first",
     "%PACKAGE_TYPE x 2; %ALLOWED_MULTIPLE { a ; } %ALLOWED_MULTIPLE { b ; } 1 a * * 2 a * *",
     "'chip.pin' line 1: pin name a mutiple defined.\n", 255,
     "WARNING : %ALLOWED_MULTIPLE 'b' was not declared in \"chip.pin\".\n"},
    {"index is no number", "1 a b *\n2\nD[3a] e *", "", 255, "\"chip.pin\", line 3: Syntax error at D[3a]\n"},
    {"one bracket", "%PACKAGE_TYPE x 1; 1 D[3 D]3 IN[0]", "", 0},
};

void check(const MESSAGE_CASE &test, const std::string &lib, const std::string &bsc, const std::string &pin) {
    scratch_folder scratch;
    scratch.write("chip.lib", lib);
    scratch.write("chip.bsc", bsc);
    scratch.write("chip.pin", pin);
    scratch.write("q.pin", "%PACKAGE_TYPE q 1; 1 a b *");
    scratch.write("P.pin", "%PACKAGE_TYPE P 1; 1 a b *");
    scratch.write("few.pin", "%PACKAGE_TYPE x 1; 1 a b * 2 c d *");
    run_result result = read_in_child(scratch);
    EXPECT_EQ(result.status, test.status) << test.title;
    EXPECT_EQ(result.out, test.out) << test.title;
    EXPECT_EQ(result.err, test.err) << test.title;
}

TEST(ReaderMessages, AreExact) {
    const std::string pin = "%PACKAGE_TYPE p 2; 1 a b *";
    for (const MESSAGE_CASE &test : LIB_CASES)
        check(test, test.text, SHORT_BSC, pin);
    for (const MESSAGE_CASE &test : BSC_CASES)
        check(test, SHORT_LIB, test.text, pin);
    for (const MESSAGE_CASE &test : PIN_CASES)
        check(test, SHORT_LIB, "%PIN_LIST { %FILE_NAME ./chip.pin; }\n", test.text);
}

TEST(ReaderFiles, AreOpenedBeforeTheFirstIsParsed) {
    struct {
        const char *lib, *bsc, *err;
    } cases[] = {
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

} // namespace
