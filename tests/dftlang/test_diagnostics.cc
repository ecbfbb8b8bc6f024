// Every diagnostic of the reader, with its text, its stream and the status of the run.
#include "tests/dftlang/dft_case.hh"

#include <vector>

namespace {

struct diagnostic {
    const char *name;
    std::string text; ///< of chip.dft
    const char *err;
    const char *out = "";
    int status = 255;
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
    {"bad token", "%TOP_MODULE = chip\n%CORE",
     "ERROR : 'chip.dft', line-2, syntax error near or at %CORE.\n"},
    {"reserved word as name", "%TOP_MODULE = CLOCK;",
     "ERROR : 'chip.dft', line-1, syntax error near or at CLOCK.\n"},
    {"unterminated string", "%GUI { %DRC = \"a\n\"; }",
     "ERROR : 'chip.dft', line-1, bad string is encountered.\n"},
    {"unterminated comment", "%TOP_MODULE = a;\n/* x\n\n",
     "ERROR : 'chip.dft', line-2, unterminated comment is encountered.\n"},
    {"line comment at the end", "%TOP_MODULE = a;\n// x", "Bad string is encountered at line 2.\n", "", 0},
    {"number too large", "%REGISTER_LENGTH\n 99999999999;",
     "ERROR : 'chip.dft', line-2, the number 99999999999 is out of range.\n"},
    {"only comments", "/* a */ // b\n", "", "ERROR : The dft file 'chip.dft' is empty.\n"},

    // what statements may not say
    {"repeated twice",
     "%SELECT_SCAN {\n%SCAN_INIT 1;%SCAN_INIT 2;\n%SCAN_INIT 3;\n%SCAN_INCR 1;%SCAN_MAX 1;\n"
     "%DONT_SCAN_TYPE a;}",
     "WARNING : 'chip.dft', line-2, 'SCAN_INIT' is multiple defined.\n"
     "WARNING : 'chip.dft', line-3, 'SCAN_INIT' is multiple defined.\n",
     "", 0},
    {"forms of a statement are counted apart",
     "%SCAN_DECODER { %SCAN_MODE { %POLARITY; %POLARITY = ACTIVE_LOW; }\n%SCAN_MODE = a;\n%SCAN_MODE = b; }\n"
     "%CLOCK_PERIOD { %CLOCK a = 1; %CLOCK a = 1.5;\n%CLOCK b = 2.5; }\n"
     "%CONNECT_SCAN a b { %SCAN_PORT { %SCAN_IN = x; }\n%SCAN_PORT p { %SCAN_IN = x; }\n"
     "%SCAN_PORT q { %SCAN_IN = x; } %SCAN_INSTRUCTION { %INSTRUCTION = i; } }",
     "WARNING : 'chip.dft', line-3, 'SCAN_MODE' is multiple defined.\n"
     "WARNING : 'chip.dft', line-5, 'CLOCK' is multiple defined.\n"
     "WARNING : 'chip.dft', line-8, 'SCAN_PORT' is multiple defined.\n",
     "", 0},
    {"nested clocks repeat, a scan clock's own clock does not",
     "%CONNECT_SCAN a b { %SCAN_INSTRUCTION { %INSTRUCTION = i; } %SCAN_CLOCK {\n"
     "%CLOCK { %CLOCK { %NAME = x; } %CLOCK { %NAME = y; } %CLOCK = z; }\n"
     "%CLOCK = c; %GLOBAL_CLOCK = g; %GLOBAL_CLOCK = g { h };\n"
     "%CLOCK { %NAME = d; }\n%GLOBAL_CLOCK = g { h }; } }",
     "WARNING : 'chip.dft', line-4, 'CLOCK' is multiple defined.\n"
     "WARNING : 'chip.dft', line-5, 'GLOBAL_CLOCK' is multiple defined.\n",
     "", 0},
    {"missing", "%SELECT_SCAN {\n}\n%SEQUENCE s { %FORCE_CLOCK c;\n}",
     "WARNING : 'chip.dft', line-2, '%SCAN_INIT' statement is missing.\n"
     "WARNING : 'chip.dft', line-2, '%SCAN_INCR' statement is missing.\n"
     "WARNING : 'chip.dft', line-2, '%SCAN_MAX' statement is missing.\n"
     "WARNING : 'chip.dft', line-2, '%DONT_SCAN_TYPE' statement is missing.\n"
     "WARNING : 'chip.dft', line-4, '%FORCE' statement is missing.\n",
     "", 0},
    {"neither", "%CONNECT_BIST a b { %BIST_PORT { %SCAN_IN = a; } }",
     "WARNING : 'chip.dft', line-1, '%SCAN_OUT' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%BIST_TYPE' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%BIST_SELECT' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%BIST_CLOCK' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%BIST_INSTRUCTION' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, either '%BIST_INSTANCES' or '%BIST_INSTANCES_FILE' statement is "
     "missing.\n",
     "", 0},
    {"names in another spelling",
     "%WRAPPER { %FOLDSCAN { %WRAPPER_CHAIN c { } } }\n%DEEP_SCAN_INFO { %SPEED_RATIO 2; }",
     "WARNING : 'chip.dft', line-1, '%CLK' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%SCAN_IN' statement is missing.\n"
     "WARNING : 'chip.dft', line-1, '%SCAN_OUT' statement is missing.\n"
     "WARNING : 'chip.dft', line-2, '%TDDM_TDM_INFO' statement is missing.\n"
     "WARNING : 'chip.dft', line-2, 'TOP_MODULE' statement is missing.\n",
     "", 0},
    {"empty body", "%GUI {\n}", "WARNING : 'chip.dft', line-2, '%GUI' has empty body.\n", "", 0},
    {"modes of one name", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {}\n%ATPG_MODE \"m\" {} }",
     "WARNING : 'chip.dft', line-2, '%ATPG_MODE' has empty body.\n"
     "WARNING : 'chip.dft', line-4, '%ATPG_MODE' has empty body.\n"
     "WARNING : 'chip.dft', line-3, '%ATPG_MODE m' is multiple defined.\n",
     "", 0},
    {"undefined instruction",
     "%INSTRUCTION i { }\n%CONNECT_SCAN a b { %SCAN_INSTRUCTION {\n%INSTRUCTION = I; } }",
     "WARNING : 'chip.dft', line-1, '%INSTRUCTION' has empty body.\n"
     "ERROR : 'chip.dft', line-3, INSTRUCTION name - 'I' is undefined.\n"},
    {"undefined sequence", "%SEQUENCE s { %FORCE a = '1'; }\n%INSTRUCTION i { %PREAMBLE = s,\n t; }",
     "ERROR : 'chip.dft', line-3, SEQUENCE name - 't' is undefined.\n"},
    {"pattern length", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%GRAY_CODE a, b, c = '01'; } }",
     "ERROR : 'chip.dft', line-3, pattern length (01) is inconsistent with port number.\n"},
    {"illegal pattern", "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%ILLEGAL_INPUTS a, b = '0X'; } }",
     "ERROR: 'chip.dft', line-3, syntax error at '0X'.\n       ILLEGAL_INPUTS can't accept 'X' or 'Z' in "
     "pattern.\n"},
    {"rows that do not match",
     "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" {\n%LEGAL_INPUTS a, b = '01';\n%LEGAL_INPUTS a, b, c = '001', "
     "'111'; } }",
     "WARNING: the port 'b' in LEGAL_INPUT doesn't match.\n"
     "WARNING : the LEGAL_INPUTS as following don't match:\n"
     "          line-3 a, b;\n          =  01;\n          line-4 a, b, c;\n          =  001, 111;\n",
     "", 0},

    // what records are made of
    {"port type", "%PORT_INFO { %PORT a { %TYPE clk; } }", "", "ERROR : Unknown port type 'clk'.\n"},
    {"cycle", "%MULTICYCLE_PATH { %PATH {\n%CYCLE = 0; } }",
     "ERROR: line 2, the CYCLE must be greater than 0.\n"},
    {"cycle of a false path", "%FALSE_PATH { %PATH { %CYCLE = 2; } }",
     "ERROR: line 1, the CYCLE can not be supported in FALSE_PATH.\n"},
    {"file in a path file",
     "%MULTICYCLE_PATH { %PATH { %FILE_NAME = \"p\"; } }",
     "ERROR: line 2, the FILE_NAME  can not  be accepted in the path file again .\n",
     "",
     255,
     {{"p", "%PATH {\n%FILE_NAME = \"p\"; }"}}},
    {"block in a path file",
     "%MULTICYCLE_PATH { %PATH { %FILE_NAME = \"p\"; } }",
     "",
     "In multicycle path file , should just exist the PATH list!\n",
     255,
     {{"p", "%MULTICYCLE_PATH { }"}}},
    {"pad without its output", "%SCAN_DECODER { %TEST_MODE {\n%PAD_NAME = p; } }",
     "ERROR : 'chip.dft', line-3, '%PAD_OUT' wasn't defined.\n"},
    {"polarity", "%SCAN_DECODER { %SCAN_MODE { %POLARITY = high; } }",
     "ERROR : 'chip.dft', line-1, POLARITY can only be ACTIVE_HIGH or ACTIVE_LOW.\n"},
    {"timing type", "%SEQUENCE s { %FORCE a = '1'; %SET_TIMING { %TYPE OTHER; } }", "",
     "Error: the %TYPE must be LAUNCH or CAPTURE in the set timing block in the dft file !\n"},
    {"timing in a shift",
     "%SEQUENCE s { %FORCE a = '1'; %SET_TIMING { %TYPE LAUNCH; } }\n"
     "%INSTRUCTION i { %CAPTURE = s; }\n%INSTRUCTION j { %SHIFT = s; }",
     "", "ERROR: LAUNCH/CAPTURE type timing block only can exist in the capture sequence!\n"},
    {"core without a file", "%CORE { %NAME = c; }", "",
     "ERROR: Please specify dft file of core 'c' in top module dft file.\n"},
    {"core preamble", "%CORE { %NAME = c; %PREAMBLE = s; }", "",
     "ERROR: Can not find preamble sequence 's' of the core 'c'.\n"},
    {"violation", "%CONNECT_SCAN a b { %MS_VIOLATION -1; %SCAN_INSTRUCTION { %INSTRUCTION = i; } }", "",
     "MS_VIOLATION value must be 1 or 0 in dft file!\n "},
    {"clock polarity",
     "%CONNECT_SCAN a b { %SCAN_INSTRUCTION { %INSTRUCTION = i; }\n"
     "%SCAN_CLOCK { %CLOCK_POLARITY = up; } }",
     "ERROR : 'chip.dft', line-2, CLOCK_POLARITY can only be POSITIVE and NEGATIVE\n"},
    {"pin format", "%MBIST_CONSTRAINTS { %MBIST_CONTROL 1 { %BISTFAIL = a_x.b; } }",
     "ERROR : BISTFAIL pin format error !\n"},
    {"mode active",
     "%READ_MAP { %FILE_NAME = \"m\"; }",
     "ERROR : 'm', line-2, SCAN_MODE_ACTIVE can only be HIGH or LOW.\n",
     "",
     255,
     {{"m", "%MAP_SCAN s { %MAP_CELL a => b { %SCAN_PORT %SCAN_IN => si; %SCAN_CLOCK_1 %CLOCK => ck;\n"
            "%SCAN_MODE_ACTIVE = up; } }"}}},
    {"map cell",
     "%READ_MAP { %FILE_NAME = \"m\"; }",
     "WARNING : 'm', line-1, '%SCAN_PORT %SCAN_IN' statement is missing.\n"
     "WARNING : 'm', line-1, either '%SCAN_SELECT_#' or '%SCAN_CLOCK_#' statement is missing.\n",
     "",
     0,
     {{"m", "%MAP_SCAN s { %MAP_CELL a => b { } }"}}},
    {"missing map file", "%READ_MAP { %FILE_NAME = \"m\"; }", "ERROR : Can't open input file - 'm'.\n"},
    {"fault files",
     "%SELECT_FAULT { %DONT_FAULT_FILE = \"a\"; %MUST_FAULT_FILE = \"b\"; }",
     "WARNING : Can not open input file - 'a'.\nWARNING : 'b' file is empty file.\n",
     "",
     0,
     {{"b", " ,;\n"}}},
    {"wrong side file", "%READ_MAP { %FILE_NAME = \"chip.dft\"; }",
     "ERROR : One of the input files is not map file format.\n"},
    {"empty core file",
     "%CORE { %NAME = c; %DFT_FILE = \"c.dft\"; }",
     "",
     "ERROR : The dft file 'c.dft' is empty.\n",
     255,
     {{"c.dft", "// nothing\n"}}},
    {"cyclic cores",
     "%CORE { %NAME = c; %DFT_FILE = \"d/c.dft\"; }",
     "ERROR : The DFT file 'chip.dft' contains itself through its core 'top'.\n",
     "",
     255,
     {{"d/c.dft", "%CORE { %NAME = top; %DFT_FILE = \"../chip.dft\"; }"}}},

    // inputs that would cost a careless reader its stack or its memory
    {"deep nesting", "%HOOKUP {" + repeated("%CLOCK {", 100000),
     "ERROR : 'chip.dft', line-1, the blocks are nested too deep.\n"},
    {"illegal values of many ports",
     "%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" { %ILLEGAL_INPUTS " + repeated("a ", 60) + "= '" +
         std::string(60, '0') + "'; } }",
     "ERROR : 'chip.dft', line-2, the inputs give more combinations of patterns than can be held.\n"},
    {"files that may have no end",
     "%SELECT_FAULT { %DONT_FAULT_FILE = \"/dev/zero\"; %MUST_FAULT_FILE = \".\"; }",
     "WARNING : Can not open input file - '/dev/zero'.\nWARNING : Can not open input file - '.'.\n", "", 0},
};

TEST(Diagnostics, ArePrintedOnTheirStreams) {
    for (const diagnostic &row : diagnostics) {
        SCOPED_TRACE(row.name);
        scratch_folder scratch;
        scratch.write("chip.dft", row.text);
        scratch.write("chip.dft_map.log", "left over");
        for (const auto &[name, text] : row.files)
            scratch.write(name, text);
        run_result result = read_dft(scratch);
        EXPECT_EQ(result.err, row.err);
        EXPECT_EQ(result.out, row.out);
        EXPECT_EQ(result.status, row.status);
        EXPECT_FALSE(scratch.has("chip.dft_map.log"));
    }
}

} // namespace
