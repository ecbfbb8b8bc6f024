// Rows of the tables: turned, added, compacted and deleted, as the saved files show them.
#include "tests/guide/guide_run.hh"

#include <regex>

namespace {

/// A session from nothing, and a file that it saves.
struct TABLE_CASE {
    const char *what, *answers, *file;
};

constexpr TABLE_CASE table_cases[] = {
    {"an unnamed page in the middle goes, and so does row 0 when others stay",
     "2\n1\n4\nlost\n21\n1\nA\n4\nsh\n21\n4\nlost\n21\n1\nB\n4\nsb\n22\n4\n", "chip.lib"},
    {"turning pages comes back to row 0", "2\n1\n1\nA\n21\n1\nB\n20\n15\nof_a\n20\n15\nof_b\n22\n4\n",
     "chip.lib"},
    {"the last row is kept, so that it can be named later", "2\n1\n15\nsi\n22\n1\n1\nA\n22\n4\n", "chip.lib"},
    {"naming the blank row makes it a row of the kind, each kind its own",
     "5\n1\n4\nI\n5\nPAD\n1\n5\n4\nN\n5\nA\n1\n6\n", "chip.lib"},
    {"a blank row that was filled but never named is not met again", "5\n1\n5\nPAD\n1\n2\n4\nT\n6\nZ\n1\n6\n",
     "chip.lib"},
    {"an item without a name goes", "5\n1\n4\nA\n3\n5\nlost\n3\n4\nB\n2\n5\nof_a\n2\n2\n5\nof_b\n1\n6\n",
     "chip.lib"},
    {"every opcode is refused while the length is 0", "3\n2\nA\n0\n\n2\nB\n\n7\n", "chip.bsc"},
    {"a row that got no opcode is asked nothing further",
     "3\n1\n2\n2\nA\n00\nra\n2\nB\n0\n\nC\n\nD\n11\nrd\n\n7\n", "chip.bsc"},
    {"an instruction is found whatever its case; opcodes are added, and an empty register keeps the old one",
     "3\n1\n2\n2\nA\n00\nra\n2\na\n01;x1,1\n\n\n\n7\n", "chip.bsc"},
    {"an empty opcode deletes the instruction", "3\n1\n2\n2\nA\n00\nra\n2\nB\n01\nrb\nA\n\n\n7\n",
     "chip.bsc"},
    {"good tokens among bad ones stay, and lists grow", "3\n1\n2\n3\n01,0,1x 222\n\n\n3\n11\n7\n",
     "chip.bsc"},
    {"an empty answer empties a list and clears a field",
     "3\n1\n2\n3\n01\n3\n\n6\nP\n6\n\n4\nD\n4\n\n7\n4\n3\n01010101010101010101010101010101\n3\n\n5\n",
     "chip.bsc"},
    {"a skipped signal is deleted whatever its case", "7\n1\na\n1\nb\n1\nc\n2\nB\n3\n", "chip.bsc"},
    {"pins keep their order when they are edited, and go when nothing is known of them",
     "6\n1\np\n2\n9\nA\na\nIN\n2\n5\nB\nb\nIN\n7\nC\nc\nIN\n9\nA2\n\nOUT\n5\n\n\n\n1\n\n\nX\n\n3\n", "p"},
    {"a pin number is compared exactly", "6\n1\np\n2\n01\nA\n\n\n2\n1\nB\n\n\n\n3\n", "p"},
    {"the only TAP with a name is the one to use", "2\n1\n1\nA\n21\n22\n4\n", "chip.bsc"},
    {"of two TAPs none is chosen", "2\n1\n1\nA\n21\n1\nB\n22\n4\n", "chip.bsc"},
    {"keys and control characters are no part of a value",
     "1\n1\n\x1b[200~t\x1b[1;5Dd\x1bOA\x1b]0;title\ai\x7f\xc2\x9b\x1b(B\x1b=\x1bP\x1b[201~"
     "\r\n6\n7\n1\na\tb\n3\n",
     "chip.bsc"},
    {"a line of keys alone is no empty answer",
     "1\n1\nA\n1\n\x1b[A\nB\n6\n3\n1\n2\n2\nA\n00\n\n2\n\x1b\n\n7\n", "chip.bsc"},
    {"TAP names that are missing follow from the design", "", "chip.bsc"},
};

std::string pin_answers(int count) {
    std::string answers = "6\n1\np\n2\n";
    for (int i = 1; i <= count; ++i)
        answers += std::to_string(i) + "\nP" + std::to_string(i) + "\n\n\n" + (i == 1 ? "2\n" : "");
    return answers;
}

} // namespace

TEST(GuideTables, WhatASessionLeaves) {
    std::string saved;
    for (const TABLE_CASE &one : table_cases) {
        guide_folder guide;
        run_result result = guide.session(std::string(one.answers) + "9\n");
        EXPECT_EQ(result.status, 0) << one.what << screens(result);
        saved += std::string("== ") + one.what + "\n" +
                 std::regex_replace(guide.scratch.read(one.file), std::regex("(/\\*[^\n]*)?\n+"), "\n");
    }
    expect_file("guide/sessions/saved_tables.expected", saved);
}

TEST(GuideTables, PinPages) {
    struct {
        int pins;
        const char *then, *first_of_page;
    } const cases[] = {
        {20, "0\n", "  1        P1 "},
        {21, "0\n", "  21       P21 "},
        {21, "0\n0\n", "  1        P1 "},
        {41, "0\n0\n", "  41       P41 "},
        {40, "0\n0\n", "  1        P1 "},
        {21, "0\n21\n\n\n\n", "  1        P1 "}, // the page of the deleted pin is gone
    };
    for (const auto &one : cases) {
        guide_folder guide;
        std::string out = guide.session(pin_answers(one.pins) + one.then).out;
        size_t screen = out.rfind("PIN   LIST   TABLE");
        size_t row = out.find("---\n", screen) + 4;
        EXPECT_EQ(out.substr(row, std::string(one.first_of_page).size()), one.first_of_page)
            << one.pins << " " << one.then;
        EXPECT_EQ(out.find("  21       P21 ", screen) < out.find("  20       P20 ", screen),
                  one.first_of_page[2] == '2');
    }
}
