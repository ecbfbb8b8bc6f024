// What single values become: tokens, resolved names, joined rows, the scrambled section.
#include "dftlang/mapping.hh"
#include "tests/dftlang/dft_case.hh"
#include "tests/support/expected_file.hh"

#include <cstring>
#include <string>

namespace {

void show_partition() {
    for (const char *name : scan_names(scan_child(scan_child(DFT_OBJECT->file)))) // the only one of all
        std::printf("<%s>", name);
}

void show_legal() {
    for (const JOINED_ROW &joined : DFT_OBJECT->atpg_constraints[0].legal) {
        for (const char *port : joined.row.ports)
            std::printf("%s ", port);
        std::printf("=");
        for (const std::string &pattern : joined.row.patterns)
            std::printf(" %s", pattern.c_str());
        std::printf("\n");
    }
}

} // namespace

TEST(Tokens, OfNamesStringsAndNumbers) {
    const struct {
        const char *text;
        const char *shown; ///< what is printed, or the syntax error
    } rows[] = {
        {"%DEF_INFO { %PARTITION u1/u2.q[3] a:b, #x $y &z @w _v %; }",
         "<u1/u2.q[3]><a:b><#x><$y><&z><@w><_v><%>"},
        {"%DEF_INFO { %PARTITION \\a(b;c d ; }", "<\\a(b;c><d>"},
        {"%DEF_INFO { %PARTITION %DATA_1x MUST_SCAN(1", "near or at (."},
        {"%DEF_INFO { %PARTITION %P1500", "near or at %P1500."}, // reserved, though no statement has it
        {"%DEF_INFO { %PARTITION a 2:clk", "near or at 2."},
        {"%DEF_INFO { %PARTITION '01 X'", "near or at 01."},
        {"%DEF_INFO { %PARTITION \" a\"\"b \"", "near or at a\"b."},
        {"%DEF_INFO { %PARTITION \"a\\b\"c d\"", "near or at a\\b\"c d."},
    };
    for (const auto &row : rows) {
        scratch_folder scratch;
        scratch.write("chip.dft", row.text);
        run_result result = read_dft(scratch, show_partition);
        std::string all = result.out + result.err;
        EXPECT_NE(all.find(row.shown), std::string::npos) << row.text << "\n" << all;
    }
}

/// Rows over each port and the next, from p0 to p<count>.
std::string chain_of_rows(int count, const std::string &patterns) {
    std::string text;
    for (int i = 1; i <= count; i++)
        text +=
            "%LEGAL_INPUTS p" + std::to_string(i - 1) + ", p" + std::to_string(i) + " = " + patterns + ";\n";
    return text;
}

TEST(LegalInputs, AreJoinedUntilNoneShareAPort) {
    const std::string many = chain_of_rows(400, "'00', '11'");
    const std::string few = chain_of_rows(16, "'01', '00', '11'");
    const struct {
        std::string statements;
    } joined[] = {
        {"%ILLEGAL_INPUTS a, b = '00', '11';"},
        {"%ILLEGAL_INPUTS a = '0', '1';"},
        {"%LEGAL_INPUTS a, b = '01'; %LEGAL_INPUTS b, a = '11', '00';"},
        {"%LEGAL_INPUTS x = '1'; %LEGAL_INPUTS a, b = '01', '11'; %LEGAL_INPUTS y = '0'; %LEGAL_INPUTS b, c "
         "= '10'; "
         "%LEGAL_INPUTS c, d = '00', '01';"},
        // what is joined after fewer rounds stands first
        {"%LEGAL_INPUTS a, b = '01', '11'; %LEGAL_INPUTS x, y = '01'; %LEGAL_INPUTS b, c = '10'; "
         "%LEGAL_INPUTS c, b = '01', '10'; %LEGAL_INPUTS d, x = '00';"},
        // many rows and few values, however many the ways to them
        {many},
        {few + "%LEGAL_INPUTS p16 = '0';"},
    };
    std::string text;
    for (const auto &one : joined) {
        scratch_folder scratch;
        scratch.write("chip.dft",
                      std::string("%ATPG_CONSTRAINTS { %ATPG_MODE \"m\" { ") + one.statements + " } }");
        run_result result = read_dft(scratch, show_legal);
        size_t last = result.err.rfind("WARNING"); // of very many
        text += "==\n" + result.out + (last == result.err.npos ? "" : result.err.substr(last));
    }
    expect_file("dftlang/joined_rows.expected", text);
}

TEST(ScrambledSection, BecomesFoldScanBlocks) {
    // Every character is its own mask, then its code under that mask: 'p' is 112, with mask 3 that is 115.
    const std::string in_port = "220031150049", group = "015102", out_port = "79990113";
    scratch_folder scratch;
    auto show_tables = [] {
        for (SCAN_KIND kind : {CFG_FOLD_SCAN_IN_LIST_NODE, CFG_FOLD_SCAN_OUT_LIST_NODE})
            if (SCAN_AST *list = SCAN_FIND_CHILD(DFT_OBJECT->file, kind))
                SCAN_PRINT_AST(stdout, list, 0);
    };
    scratch.write("chip.dft", "%CIPHERTEXT { " + in_port + " " + group + " 9999 " + out_port + "12 }");
    const std::string both = read_dft(scratch, show_tables).out;
    scratch.write("chip.dft",
                  "%CIPHERTEXT { " + in_port + " }\n%FOLD_SCAN_OUT_1 { %PORT_NAME own; %GROUP { } }");
    expect_file("dftlang/scrambled.expected", both + read_dft(scratch, show_tables).out);
}

TEST(Files, AreFoundFromWhereTheyAreNamed) {
    const struct {
        const char *path;
        const char *top; ///< top module, or the message
    } rows[] = {
        {"chip.xyz", "in_dft"},
        {"./chip.xyz", "in_xyz"},
        {"chip", "in_dft"},
        {"none", "ERROR : Can't open input file - 'none.dft'.\n"},
    };
    for (const auto &row : rows) {
        scratch_folder scratch;
        scratch.write("chip.dft", "%TOP_MODULE = in_dft;");
        scratch.write("chip.xyz", "%TOP_MODULE = in_xyz;");
        scratch.write("sub/there", "");
        run_result result = run_child(scratch, [&] {
            scan_interface(row.path, 0, "HIER_DFT");
            std::printf("%s", DFT_OBJECT->top_module);
        });
        EXPECT_EQ(result.out + result.err, row.top);
    }
}

TEST(Cores, AreStoodInByName) {
    scratch_folder scratch;
    scratch.write("chip.dft",
                  "%TOP_MODULE = chip_top;\n%CORE { %NAME = One; %NAME = two; %DFT_FILE = \"c.dft\"; }");
    scratch.write("c.dft", "%TOP_MODULE = core_top;");
    run_result result = read_dft(scratch, [] {
        DFT_CONFIGURATION *top = DFT_OBJECT;
        EXPECT_EQ(SL_core_name_countG(), 2);
        EXPECT_STREQ(set_current_core_name(1)->name, "two");
        EXPECT_EQ(set_current_core_name(2), nullptr);
        EXPECT_EQ(current_core_name, nullptr);
        EXPECT_EQ(DFT_inst_setup("none"), 0);
        EXPECT_EQ(DFT_OBJECT, top);
        EXPECT_EQ(DFT_inst_setup("ONE"), 1);
        DFT_CONFIGURATION *core = DFT_OBJECT;
        EXPECT_STREQ(core->top_module, "core_top");
        EXPECT_EQ(DFT_inst_setup("two"), 1);
        EXPECT_EQ(DFT_OBJECT, core) << "one file, one configuration";
        DFT_TREE empty = {nullptr};
        EXPECT_EQ(DFT_setup(&empty), 0);
        EXPECT_EQ(DFT_setup(SL_TOP_DFT_TREE), 1);
        EXPECT_EQ(DFT_OBJECT, top);
        std::printf("%s", testing::Test::HasFailure() ? "failed" : "fine");
    });
    EXPECT_EQ(result.out, "fine") << result.err;
}
