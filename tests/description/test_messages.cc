// The messages of the readers: their words, stream, line and status.
#include "tests/description/reading.hh"
#include "tests/support/expected_file.hh"

namespace {

struct MESSAGE_CASE {
    const char *title;
    std::string text; ///< of the file that is at fault
};

const MESSAGE_CASE LIB_CASES[] = {
    {"only a comment", "// nothing\n"},
    {"end of file", "%BUFFER B {\n %INPUT A;\n"},
    {"no semicolon before the brace", "%BUFFER B { %INPUT A }"},
    {"keyword in lower case", "%SCAN_CELL C { %tdi a; }"},
    {"NUL byte", std::string("%BUFFER B\0", 10)},
    {"two lists", "%BUFFER A, , B"},
    {"comment in a comment", "/* a\n /* b */"},
    {"exclusive attributes", "%BUFFER B {\n %PULL_0; %WEAK_1;\n %INPUT A; }"},
    {"keeper goes with a pull", "%BUFFER B { %PULL_0; %KEEPER; }"},
    {"extra 0", "%TAP_CONTROLLER T {\n %EXTRA_0 a; }"},
    {"size above 32 bits", "%TAP_CONTROLLER T { %GROUP_SIZE 99999999999; }"},
    {"token of the greatest length", "%BUFFER " + std::string(8191, 'a') + " { %INPUT A; }"},
    {"token too long", "%BUFFER " + std::string(8192, 'a') + " { %INPUT A; }"},
    {"long comments and blanks are no tokens", "//" + std::string(40000, 'x') + "\n/*" +
                                                   std::string(40000, '*') + "*/" + std::string(40000, ' ') +
                                                   "%BUFFER B { %INPUT A; } // no line end"},
};

const MESSAGE_CASE BSC_CASES[] = {
    {"only a comment", "/* nothing */"},
    {"last token", "%SCAN_CELLS { %INPUT_SCAN BC;\n"},
    {"empty instruction", "%INSTRUCTION_TABLE { %INSTRUCTION X { } }"},
    {"unknown cell in a role", "%SCAN_CELLS {\n%INPUT_SCAN nosuch; }"},
    {"unknown TAP cell", "%TAP_MODULE { %MODULE_NAME BC; }"},
    {"bad pattern and bad length", "%IDCODE_REGISTER\n12;"},
    {"colliding captures", "%INSTRUCTION_CAPTURE (0X,\n01);"},
    {"captures of two lengths", "%INSTRUCTION_CAPTURE (01, 011);"},
    {"illegal skip value", "%SKIP_SIGNAL_NAMES { a(11), b(x); }"},
    {"enable without a level", "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(1X); }"},
    {"enable that is no pattern", "%INSTRUCTION_TABLE { %INSTRUCTION A = (00) ACCESS r ENABLE e(2);\n"
                                  "%INSTRUCTION B { %ENABLE e = X2; } }"},
    {"pins in the bsc file", "%PIN_LIST {\n 1 tdi 2 tdo }"},
    {"comment opener before a path", "//abc {\n/*def } { */ word"},
    {"no pin file", "%PIN_LIST { %FILE_NAME ./no.pin; }"},
    {"pin file is a directory", "%PACKAGE_LIST { %FILE_NAME ./; %FILE_NAME /tmp; }"},
    {"two packages", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME ./q.pin; }"},
    {"one type twice", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME P.pin; }"},
    {"one file twice", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME chip.pin; }"},
    {"too few pins of a package", "%PACKAGE_LIST { %FILE_NAME few.pin; }"},
};

const MESSAGE_CASE PIN_CASES[] = {
    {"empty file", " "},
    {"keyword as direction", "%PACKAGE_TYPE p 1;\n1 a b I"},
    {"too few package pins", "%PACKAGE_TYPE x 1; 1 a b * 2 c d *"},
    {"number twice stops at once", "1 a b *\n1 a\nb *"},
    {"names twice are all listed", "%PACKAGE_TYPE x 9;\n1 a b *\n2 a c *\n3 d b *\n4 a b *"},
    {"allowed names protect later rows",
     "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { VDD ; }\n1 VDD p * 2 VDD p * 3 VDD * *"},
    {"allowed too late", "%PACKAGE_TYPE x 9; 1 VDD * * 2 VDD * *\n%ALLOWED_MULTIPLE { VDD ; }"},
    {"allowed for the package name, not the top name",
     "%PACKAGE_TYPE x 9; %ALLOWED_MULTIPLE { p ; }\n1 p q * 2 r p * 3 s p *"},
    {"internal rows repeat",
     "%PACKAGE_TYPE x 9; 1 INTERNAL a * 2 INTERNAL b *\n3 OBSERVE c * 4 OBSERVE d * 5 OBSERVE_ONLY e * "
     "6 OBSERVE_ONLY f *"},
    {"second list of allowed names replaces the first",
     "%PACKAGE_TYPE x 2; %ALLOWED_MULTIPLE { a ; } %ALLOWED_MULTIPLE { b ; } 1 a * * 2 a * *"},
    {"index is no number", "1 a b *\n2\nD[3a] e *"},
    {"one bracket", "%PACKAGE_TYPE x 1; 1 D[3 D]3 IN[0]"},
};

std::string said(const MESSAGE_CASE &test, const std::string &lib, const std::string &bsc,
                 const std::string &pin) {
    scratch_folder scratch;
    scratch.write("chip.lib", lib);
    scratch.write("chip.bsc", bsc);
    scratch.write("chip.pin", pin);
    scratch.write("q.pin", "%PACKAGE_TYPE q 1; 1 a b *");
    scratch.write("P.pin", "%PACKAGE_TYPE P 1; 1 a b *");
    scratch.write("few.pin", "%PACKAGE_TYPE x 1; 1 a b * 2 c d *");
    return section(test.title, read_in_child(scratch));
}

TEST(ReaderMessages, AreExact) {
    const std::string pin = "%PACKAGE_TYPE p 2; 1 a b *";
    std::string text;
    for (const MESSAGE_CASE &test : LIB_CASES)
        text += said(test, test.text, SHORT_BSC, pin);
    for (const MESSAGE_CASE &test : BSC_CASES)
        text += said(test, SHORT_LIB, test.text, pin);
    for (const MESSAGE_CASE &test : PIN_CASES)
        text += said(test, SHORT_LIB, "%PIN_LIST { %FILE_NAME ./chip.pin; }\n", test.text);
    expect_file("description/messages.expected", text);
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
