// What the user sees: every menu with all its fields set and with none, and what is said about a wrong
// answer.
#include "tests/guide/guide_run.hh"

TEST(GuideScreens, EveryMenuWithNothingSet) {
    guide_folder guide;
    run_result result = guide.session(beside_the_tests("every_menu.in") + "10\n");
    EXPECT_EQ(result.status, 255);
    expect_file("guide/sessions/every_menu_empty.expected", screens(result),
                "guide/sessions/every_menu.expected");
    EXPECT_EQ(result.err, "");
}

// The first session sets every field that the guide has; the files of it are read, shown and written again.
TEST(GuideScreens, EveryFieldIsWrittenReadShownAndWrittenAgain) {
    guide_folder guide;
    EXPECT_EQ(guide.session(beside_the_tests("all_fields.in")).status, 0);
    auto expect_files = [&] {
        for (const char *ending : {"bsc", "lib", "pin"})
            EXPECT_EQ(guide.scratch.read(std::string("chip.") + ending),
                      beside_the_tests(std::string("all_fields.") + ending));
    };
    expect_files();
    run_result result = guide.session(beside_the_tests("every_menu.in") + "9\n");
    EXPECT_EQ(result.status, 0);
    // Files that were found keep the names under which they were found.
    expect_file("guide/sessions/every_menu.expected", screens(result));
    expect_files();
}

TEST(GuideScreens, WrongAnswers) {
    struct {
        const char *answers, *says;
        bool waits; ///< for Enter: the answer behind it is thrown away
    } const cases[] = {
        {"2\n1\n14\n8x\n", "     Enter group size :      group size must be an integer", true},
        {"2\n1\n14\n2147483648\n", "     group size must be an integer", true},
        {"2\n1\n14\n\n", "     Enter group size : ----- clear\n", false},
        {"3\n1\n3.\n", "          Enter instruction length :           Instruction length must be an integer",
         true},
        {"3\n1\n3\n3\n01\n",
         "          Enter INSTRUCTION_CAPTURE :                invalid instruction '01'\n", true},
        {"3\n2\nA\n0\n", "               Enter Instruction opcode :       invalid instruction '0'\n", true},
        {"3\n1\n2\n2\nA\n00\n\n2\nB\n02\n", "    Enter Instruction opcode :       invalid instruction '02'\n",
         true},
        {"4\n3\n01z\n", "           Enter IDCODE REGISTER :            Invalid bit value 'z' in \"01z\"\n",
         true},
        {"4\n3\n01\n", "           Enter IDCODE REGISTER :            The length of data must be 32.\n",
         true},
        {"4\n4\n 2,\n", "           Enter USERCODE REGISTER :            Invalid bit value '2' in \"2\"\n",
         true},
        {"7\n1\nSig\n1\nsIG\n", "             Enter Signal name :       Signal 'sIG' is already in list.",
         true},
        {"7\n2\nnone\n", "             Enter Signal name :       Signal 'none' is not in list.", true},
        {"7\n1\n\n2\n\n", "             Enter Signal name : ----- clear\n", false},
    };
    for (const auto &one : cases) {
        guide_folder guide;
        run_result result = guide.session(one.answers);
        EXPECT_TRUE(holds(result.out, one.says)) << one.answers << screens(result);
        // A command behind the wrong answer is swallowed by the wait; the one behind it is carried out.
        run_result before = guide.session(std::string(one.answers) + "1\n");
        size_t more = before.out.size() - result.out.size();
        EXPECT_EQ(one.waits, more == 0) << one.answers << screens(before);
    }
}

// Only whole lines are commands; at a field prompt nothing is one.
TEST(GuideScreens, CommandsAndData) {
    guide_folder guide;
    run_result result = guide.answer({" 1", "1 ", "", "11", "x", "10"});
    EXPECT_EQ(result.status, 255);
    EXPECT_FALSE(holds(result.out, "Global Port Menu"));

    std::string name(100000, 'n'); // a line of any length
    EXPECT_EQ(
        guide.answer({"1", "1", "6", "2", name.c_str(), "6", "2", "1", "14", "20", "1", "22", "22", "4", "9"})
            .status,
        0);
    std::string bsc = guide.scratch.read("chip.bsc");
    expect_part(bsc, "%GLOBAL_TDI      6;\n%GLOBAL_TDO      " + name + ";\n");
    EXPECT_FALSE(holds(bsc, "%GLOBAL_TMS"));
}
