// Every diagnostic of the reader, with its text, its stream and the status of the run.
#include "tests/dftlang/dft_case.hh"
#include "tests/support/expected_file.hh"

#include <vector>

namespace {

struct diagnostic {
    const char *name;
    std::string text;                                              ///< of chip.dft
    std::vector<std::pair<const char *, const char *>> files = {}; ///< beside it, with their texts
};

std::string repeated(std::string_view part, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; i++)
        text += part;
    return text;
}

const diagnostic diagnostics[] = {
    // what is no statement
    {"bad token", "%TOP_MODULE = chip\n%CORE"},
    {"reserved word as name", "%TOP_MODULE = CLOCK;"},
    {"unterminated string", "%GUI { %DRC = \"a\n\"; }"},
    {"unterminated comment", "%TOP_MODULE = a;\n/* x\n\n"},
    {"line comment at the end", "%TOP_MODULE = a;\n// x"},
    {"number too large", "%REGISTER_LENGTH\n 99999999999;"},
    {"only comments", "/* a */ // b\n"},

    // what statements may not say
    {"repeated twice",
     "%SELECT_SCAN {\n%SCAN_INIT 1;%SCAN_INIT 2;\n%SCAN_INIT 3;\n%SCAN_INCR 1;%SCAN_MAX 1;\n"
     "%DONT_SCAN_TYPE a;}"},
    {"forms of a statement are counted apart",
     "%SCAN_DECODER { %SCAN_MODE { %POLARITY; %POLARITY = ACTIVE_LOW; }\n%SCAN_MODE = a;\n%SCAN_MODE = b; }\n"
     "%CLOCK_PERIOD { %CLOCK a = 1; %CLOCK a = 1.5;\n%CLOCK b = 2.5; }\n"
     "%CONNECT_SCAN a b { %SCAN_PORT { %SCAN_IN = x; }\n%SCAN_PORT p { %SCAN_IN = x; }\n"
     "%SCAN_PORT q { %SCAN_IN = x; } %SCAN_INSTRUCTION { %INSTRUCTION = i; } }"},
    {"nested clocks repeat, a scan clock's own clock does not",
     "%CONNECT_SCAN a b { %SCAN_INSTRUCTION { %INSTRUCTION = i; } %SCAN_CLOCK {\n"
     "%CLOCK { %CLOCK { %NAME = x; } %CLOCK { %NAME = y; } %CLOCK = z; }\n"
     "%CLOCK = c; %GLOBAL_CLOCK = g; %GLOBAL_CLOCK = g { h };\n"
     "%CLOCK { %NAME = d; }\n%GLOBAL_CLOCK = g { h }; } }"},
    {"missing", "%SELECT_SCAN {\n}\n%SEQUENCE s { %FORCE_CLOCK c;\n}"},
    {"neither", "%CONNECT_BIST a b { %BIST_PORT { %SCAN_IN = a; } }"},
    {"names in another spelling",
     "%WRAPPER { %FOLDSCAN { %WRAPPER_CHAIN c { } } }\n%DEEP_SCAN_INFO { %SPEED_RATIO 2; }"},
    {"empty body", "%GUI {\n}"},
    {"modes of one name", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {}\n%ATPG_MODE \"m\" {} }"},
    {"undefined instruction",
     "%INSTRUCTION i { }\n%CONNECT_SCAN a b { %SCAN_INSTRUCTION {\n%INSTRUCTION = I; } }"},
    {"undefined sequence", "%SEQUENCE s { %FORCE a = '1'; }\n%INSTRUCTION i { %PREAMBLE = s,\n t; }"},
    {"pattern length", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%GRAY_CODE a, b, c = '01'; } }"},
    {"illegal pattern", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%ILLEGAL_INPUTS a, b = '0X'; } }"},
    {"rows that do not match",
     "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%LEGAL_INPUTS a, b = '01';\n%LEGAL_INPUTS a, b, c = '001', "
     "'111'; } }"},

    // what records are made of
    {"port type", "%PORT_INFO { %PORT a { %TYPE clk; } }"},
    {"cycle", "%MULTICYCLE_PATH { %PATH {\n%CYCLE = 0; } }"},
    {"cycle of a false path", "%FALSE_PATH { %PATH { %CYCLE = 2; } }"},
    {"file in a path file",
     "%MULTICYCLE_PATH { %PATH { %FILE_NAME = \"p\"; } }",
     {{"p", "%PATH {\n%FILE_NAME = \"p\"; }"}}},
    {"block in a path file",
     "%MULTICYCLE_PATH { %PATH { %FILE_NAME = \"p\"; } }",
     {{"p", "%MULTICYCLE_PATH { }"}}},
    {"pad without its output", "%SCAN_DECODER { %TEST_MODE {\n%PAD_NAME = p; } }"},
    {"polarity", "%SCAN_DECODER { %SCAN_MODE { %POLARITY = high; } }"},
    {"timing type", "%SEQUENCE s { %FORCE a = '1'; %SET_TIMING { %TYPE OTHER; } }"},
    {"timing in a shift", "%SEQUENCE s { %FORCE a = '1'; %SET_TIMING { %TYPE LAUNCH; } }\n"
                          "%INSTRUCTION i { %CAPTURE = s; }\n%INSTRUCTION j { %SHIFT = s; }"},
    {"core without a file", "%CORE { %NAME = c; }"},
    {"core preamble", "%CORE { %NAME = c; %PREAMBLE = s; }"},
    {"violation", "%CONNECT_SCAN a b { %MS_VIOLATION -1; %SCAN_INSTRUCTION { %INSTRUCTION = i; } }"},
    {"clock polarity", "%CONNECT_SCAN a b { %SCAN_INSTRUCTION { %INSTRUCTION = i; }\n"
                       "%SCAN_CLOCK { %CLOCK_POLARITY = up; } }"},
    {"pin format", "%MBIST_CONSTRAINTS { %MBIST_CONTROL 1 { %BISTFAIL = a_x.b; } }"},
    {"mode active",
     "%READ_MAP { %FILE_NAME = \"m\"; }",
     {{"m", "%MAP_SCAN s { %MAP_CELL a => b { %SCAN_PORT %SCAN_IN => si; %SCAN_CLOCK_1 %CLOCK => ck;\n"
            "%SCAN_MODE_ACTIVE = up; } }"}}},
    {"map cell", "%READ_MAP { %FILE_NAME = \"m\"; }", {{"m", "%MAP_SCAN s { %MAP_CELL a => b { } }"}}},
    {"missing map file", "%READ_MAP { %FILE_NAME = \"m\"; }"},
    {"fault files",
     "%SELECT_FAULT { %DONT_FAULT_FILE = \"a\"; %MUST_FAULT_FILE = \"b\"; }",
     {{"b", " ,;\n"}}},
    {"wrong side file", "%READ_MAP { %FILE_NAME = \"chip.dft\"; }"},
    {"empty core file", "%CORE { %NAME = c; %DFT_FILE = \"c.dft\"; }", {{"c.dft", "// nothing\n"}}},
    {"cyclic cores",
     "%CORE { %NAME = c; %DFT_FILE = \"d/c.dft\"; }",
     {{"d/c.dft", "%CORE { %NAME = top; %DFT_FILE = \"../chip.dft\"; }"}}},

    // inputs that would cost a careless reader its stack or its memory
    {"deep nesting", "%HOOKUP {" + repeated("%CLOCK {", 100000)},
    {"illegal values of many ports", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" { %ILLEGAL_INPUTS " +
                                         repeated("a ", 60) + "= '" + std::string(60, '0') + "'; } }"},
    {"files that may have no end",
     "%SELECT_FAULT { %DONT_FAULT_FILE = \"/dev/zero\"; %MUST_FAULT_FILE = \".\"; }"},
};

TEST(Diagnostics, ArePrintedOnTheirStreams) {
    std::string said;
    for (const diagnostic &row : diagnostics) {
        SCOPED_TRACE(row.name);
        scratch_folder scratch;
        scratch.write("chip.dft", row.text);
        scratch.write("chip.dft_map.log", "left over");
        for (const auto &[name, text] : row.files)
            scratch.write(name, text);
        said += section(row.name, read_dft(scratch));
        EXPECT_FALSE(scratch.has("chip.dft_map.log"));
    }
    expect_file("dftlang/diagnostics.expected", said);
}

} // namespace
