// The order of pads from a placement, and lists of package pins.
#include "kit/package_list.hh"
#include "kit/placement.hh"
#include "tests/support/scratch.hh"

namespace {

std::string ring(const PLACEMENT &placement, int32_t behind = -1) {
    std::string text;
    for (int32_t row : placement_ring(placement.components, behind))
        text += (text.empty() ? "" : " ") + placement.components[static_cast<size_t>(row)].instance;
    return text;
}

constexpr const char *HEAD =
    "VERSION 5.8 ;\nPROPERTYDEFINITIONS\n DESIGN x REAL 0.0 ;\nEND PROPERTYDEFINITIONS\n"
    "DESIGN chip ; # DESIGN other ;\nUNITS DISTANCE MICRONS 2000 ;\n"
    "DIEAREA ( 0 0 ) ( 0 900 ) ( 1000 900 ) ( 1000 10 ) ;\n";

TEST(Placement, ReadsComponentsWhereverLinesBreak) {
    scratch_folder scratch;
    scratch.write("a.def", std::string(HEAD) +
                               "COMPONENTS 3 ;\n- a\\[3\\].pad PAD + SOURCE DIST\n + FIXED\n ( -1 2.0 )\nFW"
                               " + PROPERTY p \"; END\" ;\n - b C + UNPLACED ;\n- c C + PLACED ( 3 4 ) FN ;\n"
                               "END COMPONENTS\nNETS 1 ;\n - x ( PIN x ) ;\n");
    PLACEMENT placement = placement_read(scratch.path("a.def"));
    EXPECT_EQ(placement.design, "chip");
    EXPECT_EQ(placement.units, 2000);
    EXPECT_EQ(placement.die_right, 1000);
    EXPECT_EQ(placement.die_bottom, 0);
    ASSERT_EQ(placement.components.size(), 2U);
    const PLACEMENT_COMPONENT &pad = placement.components[0];
    EXPECT_EQ(pad.instance, "a[3].pad");
    EXPECT_EQ(pad.x, -1);
    EXPECT_EQ(pad.up, PLACEMENT_UP::EAST);
    EXPECT_EQ(placement.components[1].instance, "c");
    EXPECT_EQ(placement.components[1].line, 14);
}

TEST(Placement, RingRunsCounterClockwise) {
    struct {
        const char *title, *pads, *order;
    } const cases[] = {
        {"origins lie inside on the right and at the top",
         "- t1 P + FIXED ( 600 790 ) FS ; - t2 P + FIXED ( 120 790 ) FS ; - r1 P + FIXED ( 890 120 ) W ; "
         "- r2 P + FIXED ( 890 700 ) W ; - b1 P + FIXED ( 120 10 ) N ; - b2 P + FIXED ( 800 10 ) N ; "
         "- l1 P + FIXED ( 10 700 ) FW ; - l2 P + FIXED ( 10 120 ) FW ; ",
         "b1 b2 r1 r2 t1 t2 l1 l2"},
        {"two rows, near a corner too; pads at one place by name",
         "- b3 P + FIXED ( 500 10 ) N ; - b2 P + FIXED ( 300 110 ) N ; - b1 P + FIXED ( 100 110 ) N ; "
         "- b4 P + FIXED ( 700 110 ) N ; - rb P + FIXED ( 890 500 ) W ; - ra P + FIXED ( 790 500 ) W ; "
         "- r0 P + FIXED ( 790 210 ) W ; - t P + FIXED ( 500 790 ) S ; - l P + FIXED ( 10 500 ) E ; ",
         "b1 b2 b3 b4 r0 ra rb t l"},
        {"cells of two kinds that are not turned",
         "- t H + FIXED ( 300 790 ) N ; - r V + FIXED ( 890 500 ) FN ; - b H + FIXED ( 500 10 ) N ; "
         "- l V + FIXED ( 10 600 ) N ; ",
         "b r t l"},
    };
    for (const auto &test : cases) {
        scratch_folder scratch;
        scratch.write("a.def",
                      std::string(HEAD) + "COMPONENTS 9 ; " + std::string(test.pads) + "END COMPONENTS");
        EXPECT_EQ(ring(placement_read(scratch.path("a.def"))), test.order) << test.title;
    }
}

TEST(Placement, RingStartsBehindAPad) {
    PLACEMENT placement;
    placement.components = {{"a", "P", 0, 0}, {"b", "P", 5, 0}, {"c", "P", 9, 0}};
    EXPECT_EQ(ring(placement, 1), "c a b");
    EXPECT_EQ(ring(placement, 2), "a b c");
    placement.components.clear();
    EXPECT_EQ(ring(placement, 2), "");
}

struct LIST_CASE {
    const char *title, *text, *shown;
};

std::string shown(const std::vector<PACKAGE_LIST_ROW> &pins) {
    std::string text;
    for (const PACKAGE_LIST_ROW &pin : pins)
        text += pin.number + "|" + pin.target + "|" + pin.name + "@" + std::to_string(pin.line) + " ";
    return text;
}

TEST(PackageList, TakesTheDialectsOfSpreadsheets) {
    const LIST_CASE cases[] = {
        {"plain", "1,clk,CLK\n2, rst ,\n\n# 3,x\n4,\n", "1|clk|CLK@1 2|rst|@2 4||@5 "},
        {"titles, CR LF", "Pin Name,Ball,Signal\r\nCLK,A1,clk\r\nRST,A2,rst\r\n",
         "A1|clk|CLK@2 A2|rst|RST@3 "},
        {"quotes", "1,\"d[3]\",\"a \"\"b\"\",\nc\"\n2,\"e\" ,f", "1|d[3]|a \"b\",\nc@1 2|e|f@3 "},
        {"semicolons, mark of UTF-8", "\xEF\xBB\xBFNo.;Pad;Comment\n1;p,1;x\n", "1|p,1|@2 "},
        {"tabs, names like titles", "# list\n1\tport_a\tname\n2\tpad\tpin\n", "1|port_a|name@2 2|pad|pin@3 "},
    };
    for (const LIST_CASE &test : cases) {
        scratch_folder scratch;
        EXPECT_EQ(shown(package_list_read(scratch.write("a.csv", test.text))), test.shown) << test.title;
    }
}

TEST(Lists, FaultsHaveFileAndLine) {
    const LIST_CASE cases[] = {
        {"a.csv", "1,a\n2,b\n1,c\n", "a.csv:3: the pin number '1' stands in line 1 too."},
        {"a.csv", "number,name\n1,a\n", "a.csv:1: the column 'port or pad' is missing."},
        {"a.csv", "1,a\n2\n", "a.csv:2: the column 'port or pad' is missing."},
        {"a.csv", "1,a\n,b\n", "a.csv:2: this pin has no number."},
        {"a.csv", "1,\"a\n\n", "a.csv:1: this quote is not closed."},
        {"a.csv", "1,\"a\"b\n", "a.csv:1: text stands behind the closing quote of a field."},
        {"a.csv", "# none\n", "a.csv: there are no pins in this file."},
        {"a.def", "DESIGN c ;\n", "a.def:2: there are no COMPONENTS in this file."},
        {"a.def", "COMPONENTS 1 ;\n- a P + PLACED ( 1 x ) N ;", "a.def:2: 'x' is no number."},
        {"a.def", "COMPONENTS 1 ;\n- a P + PLACED ( 1 1 ) Q ;", "a.def:2: there is no orientation 'Q'."},
        {"a.def", "COMPONENTS 1 ;\n- a P + PLACED", "a.def:2: the file ends within a statement."},
        {"a.def", "COMPONENTS 1 ;\na P ;", "a.def:2: 'a' stands where a component begins."},
    };
    for (const LIST_CASE &test : cases) {
        SCOPED_TRACE(test.text);
        scratch_folder scratch;
        scratch.write(test.title, test.text);
        run_result result = run_child(scratch, [&] {
            if (std::string(test.title) == "a.csv")
                package_list_read("a.csv");
            else
                placement_read("a.def");
        });
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(result.err, std::string("ERROR: ") + test.shown + "\n");
    }
}

} // namespace
