// Single lines of the generated text: the rules that depend on the instruction table, case by case.
#include "rtl/tap_values.hh"
#include "rtl/templates.hh"
#include "tests/rtl/tap_case.hh"

#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

namespace {

const std::string BASE = "EXTEST 000 boundary\nSAMPLE 001,101 boundary\nBYPASS 111 bypass\n";

TEST(tap_rtl, lines_that_follow_from_the_instruction_table) {
    const struct {
        std::string table;
        const char *needs, *expected; ///< the last must stand in the text
    } cases[] = {
        // modes: HIGHZ joins the mode whose pin it shares, and the third mode has its own spacing
        {BASE, "mode2", "assign  MODE2 = 1'b0;\n"},
        {BASE + "HIGHZ 010 bypass\n", "mode2 shared_highz2", "assign  MODE2 =( INST == 3'b010 );\n"},
        {BASE + "HIGHZ 010 bypass\nCLAMP 011,100 bypass\n", "mode3 shared_highz3",
         "assign  MODE3 = ( INST == 3'b000 ) | ( INST == 3'b001 )| ( INST == 3'b101 ) | ( INST == 3'b010 ) | "
         "( INST == 3'b011 ) | ( INST == 3'b100 );\n"},
        // CLAMP with several opcodes
        {BASE + "CLAMP 011,100 bypass\n", "update",
         "        assign UPDATE_DR = ~( ( INST == 3'b011 ) | ( INST == 3'b100 ) ) & "
         "tap_UPDATE_DR;\nendmodule\n"},
        // enable pins: active low, shared by instructions, more than four, defaults
        {BASE + "M 010,011 r a=0\nN 100 r a\n", "",
         "        assign  a = ~( ( INST == 3'b010 ) || ( INST == 3'b011 ) ||\n"
         "                    ( INST == 3'b100 ) );\n"},
        {BASE + "M 010 r a=0\n", "vhdl", "    a <= '0' when ( INST = \"010\" )\n                else '1';\n"},
        {BASE + "M 010 r a b c d e f\n", "",
         "DR_SELECT, INST,\n                          a, b, c, d,\n                          e, f);\n"},
        {BASE + "M 010 r a=00\nN 011 r a=10\nO 100 r a=01\nP 110 r a=11\n", "",
         "                    2'b11;\n\n"},
        {BASE + "M 010 r a=00\nN 011 r a=10\n", "vhdl",
         "    a <=   \"00\" when  INST = \"010\" else\n             \"10\" when  INST = \"011\" else\n"
         "            \"01\";\n"},
        // gates
        {BASE + "M 010 r a:XNOR:b b\n", "vhdl", "    a <= not (a_net xor b_net);\n\n"},
        {BASE + "M 010 r a:NOR:clock_dr\n", "vhdl", "    a <= not (a_net or clock_dr_net);\n\n"},
        // one spelling per register, one wire per register module, one choice per opcode
        {BASE + "IDCODE 010 IdCode\nM 011 myReg[3]\nN 100 MYREG\n", "idcode",
         "(INST == 3'b100) ? `SEL_myReg:\n"},
        {BASE + "M 001 r\nN 110 r\n", "vhdl",
         "    when \"111\" => DR_SELECT <= SEL_BYPASS;\n    when \"110\" => DR_SELECT <= SEL_r;\n"},
        {"EXTEST x00 boundary\nSAMPLE 001 boundary\nBYPASS 111 bypass\n", "vhdl mode1", "( INST = \"X00\" )"},
        {BASE + "IDCODE 010 idcode\nUSERCODE 011 usercode\n", "idcode",
         "else  ID_cell <= 32'b00000000000000000000000000000000;\n"},
        // the instruction register
        {BASE + "USERCODE 010 usercode\n", "", "UPD_IR <= 3'b010;\n"},
    };
    for (const auto &one : cases) {
        std::string text = quiet_rtl_of({"", one.table, one.needs});
        EXPECT_NE(text.find(one.expected), std::string::npos) << one.table << one.needs << "\n"
                                                              << one.expected;
    }
}

/// What stands in the margins and between the brackets of a template.
struct TEMPLATE_USE {
    std::set<char> letters, rows;
    std::set<std::string> names;
};

TEMPLATE_USE use_of(const RTL_TEMPLATE &one) {
    TEMPLATE_USE use;
    std::istringstream lines(one.text);
    for (std::string line; std::getline(lines, line);) {
        size_t bar = line.find('|');
        if (bar == std::string::npos)
            continue;
        for (char mark : line.substr(0, bar))
            if (mark != ' ')
                (std::strchr(one.rows, mark) ? use.rows : use.letters)
                    .insert(static_cast<char>(std::toupper(mark)));
        static const std::regex name("<([A-Z][A-Z0-9_]*(-1)?)>");
        for (std::sregex_iterator at(line.begin() + static_cast<long>(bar), line.end(), name), end; at != end;
             ++at)
            use.names.insert((*at)[1]);
    }
    return use;
}

void expect_known(const RTL_TEMPLATE &one, const std::string &letters, const TEMPLATE_VALUES &values) {
    TEMPLATE_USE use = use_of(one);
    const std::string told = one.letters, rows = one.rows;
    EXPECT_EQ(use.letters, std::set<char>(told.begin(), told.end())) << one.text;
    EXPECT_EQ(use.rows, std::set<char>(rows.begin(), rows.end())) << one.text;
    EXPECT_EQ(told.find_first_not_of(letters), std::string::npos) << told << one.text;
    for (const std::string &name : use.names) {
        bool known = values.names.find(name) != nullptr;
        for (char list : rows)
            for (const TEMPLATE_NAMES &row : values.lists.at(list))
                known = known || row.find(name) != nullptr;
        EXPECT_TRUE(known) << name << one.text;
    }
}

// A letter that nobody gives leaves its line out for ever, and a name that nobody gives is written as it
// stands.
TEST(tap_rtl, templates_use_the_letters_rows_and_names_that_they_tell_and_no_others) {
    quiet_rtl_of({"", std::string(LARGE_TABLE) + "GATED 1101 USERDR x:AND:MODE1\n",
                  "highz update mode1 mode2 mode3 usercode"});
    for (const RTL_TEMPLATE &one : tap_templates())
        expect_known(one, tap_letters(), tap_values(VHDL));
    TEMPLATE_VALUES script_values;
    script_values.names = {{"NAME", ""}, {"TAP_MODULE", ""}, {"TCK", ""}, {"DATE", ""}};
    for (const SCRIPT_TEMPLATE &one : SCRIPT_TEMPLATES)
        expect_known(one.script, "V", script_values);
}

} // namespace
