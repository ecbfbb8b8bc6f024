#include "support/dyna.hh"
#include "support/fnm.hh"
#include "support/settings.hh"
#include "support/system_info.hh"
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>
#include <string>

namespace {

/// Reads `text` as a settings file and answers each question in the form "value value" or "-". The table
/// lives as long as its process, so that each reading takes a child of its own.
std::string answers(const std::string &text, std::initializer_list<const char *> patterns,
                    const char *section = nullptr, const char *file = ".velmora.def") {
    scratch_folder scratch;
    scratch.write(file, text);
    run_result result = run_child(scratch, [&] {
        CMD_set_path(nullptr, ".", nullptr);
        std::string out = RC_load("velmora", section) == 0 ? "" : "unread ";
        for (const char *pattern : patterns) {
            const char **values = RC_search(pattern);
            out += values == nullptr ? "[-" : "[";
            for (const char *value : rows(values))
                out += std::string(value) + "|";
            out += "]";
        }
        std::fputs(out.c_str(), stdout);
    });
    return result.status == 0 ? result.out : "died";
}

} // namespace

TEST(Settings, Statements) {
    struct {
        const char *text;
        const char *values; ///< of the pattern hier_dot*
    } const cases[] = {
        {"Hier_Dot\t=:= /;\r\n", "[/|]"},
        {"# a\nhier_dot = /\n",
         "WARNING: (./.velmora.def) line 2: setting 'hier_dot' doesn't end with ';' and is ignored.\n\n[-]"},
        {"hier_dot = /\na = 1;\n",
         "WARNING: (./.velmora.def) line 1: setting 'hier_dot' doesn't end with ';' and "
         "takes the next line into its value.\n\n[\na = 1|]"},
        {"hier_dot =\n# gone\n x;", "[x|]"}, // also inside a statement
        {"hier_dot = '/';", "['/'|]"},       // quotes mean something in lists alone
        {"hier_dot = ('a b' \"c;d\" (e f) g);", "[a b|c;d|(e f)|g|]"},
        {"hier_dot = ('a\\'b' c);", "[a\\|c|]"},
        {"hier_dot = ;", "[-]"},
        {"HIER_DOT = /;\nHIER_DOT = -;", "[/|-|]"},    // adds behind the first
        {"hier_dot = /;\nhier_dot = -;", "[/|]"},      // a second entry that is never reached
        {"hier_dot = abX\ncdX\nef;", "[ab\ncd\nef|]"}, // each line but the last loses its last character
    };
    for (const auto &one : cases)
        EXPECT_EQ(answers(one.text, {"hier_dot*"}), one.values) << one.text;
}

TEST(Settings, LongLinesAndManyKeys) {
    // A line longer than the buffer comes in pieces, and a piece that does not end the statement loses a
    // character.
    std::string text = "key = " + std::string(600, 'v') + ";\n";
    EXPECT_EQ(answers(text, {"KEY"}), "[" + std::string(504, 'v') + "\n" + std::string(95, 'v') + "|]");
    std::string many;
    for (int i = 0; i < 20000; i++)
        many += "key" + std::to_string(i) + " = " + std::to_string(i) + ";\n";
    EXPECT_EQ(answers(many, {"key19999", "KEY1?", "nothing"}), "[19999|][10|][-]");
}

TEST(Settings, Sections) {
    const char *text = "chip.a = 1;\nother.b = 2;\n.c.d = 3;\ne = 4;\n";
    EXPECT_EQ(answers(text, {"A", "B", "OTHER.B", "C.D", "E"}, "chip"), "[1|][-][-][3|][4|]");
    EXPECT_EQ(answers(text, {"CHIP.A", "OTHER.B"}), "[1|][2|]");
}

TEST(Settings, WhichFile) {
    EXPECT_EQ(answers("hier_dot = /;", {"hier_dot*"}, nullptr, "velmora.def"), "[/|]");
    EXPECT_EQ(answers("hier_dot = /;", {"hier_dot*"}, nullptr, "velmora.rc"), "unread [-]");
    EXPECT_EQ(answers("", {"hier_dot*"}, nullptr, ".velmora.def/inside"),
              "unread [-]"); // a directory of that name
}

TEST(Settings, Match) {
    struct {
        const char *pattern, *text;
        bool matches;
    } const cases[] = {
        {"HIER_DOT*", "HIER", false},
        {"a*b*c", "a--b--c", true},
        {"a*b*c", "a--c--b", false},
        {"*", "a>b", false},
        {"a?b", "a>b", true},
        {"*?*b", "x>yb", true}, // the first run must give way to the single character
        {"a.c", "abc", false},
        {"[a]$^{1}(b)", "[a]$^{1}(b)", true},
    };
    for (const auto &one : cases)
        EXPECT_EQ(STR_match(one.pattern, one.text) == 0, one.matches) << one.pattern << " on " << one.text;
    EXPECT_NE(STR_match(std::string(2000, 'a').c_str(), std::string(2000, 'a').c_str()), 0);
    std::string runs; // would take for ever with a matcher that tries each split
    for (int i = 0; i < 60; i++)
        runs += "*a";
    EXPECT_NE(STR_match((runs + "b").c_str(), std::string(5000, 'a').c_str()), 0);
}

TEST(SystemInfo, FormatK) {
    for (auto [kilobytes, text] : std::initializer_list<std::pair<int64_t, const char *>>{
             {9999, "9999K"}, {10000, "10M"}, {10239487, "9999M"}, {10239488, "10G"}, {2147483647, "2048G"}})
        EXPECT_STREQ(format_k(kilobytes), text);
}
