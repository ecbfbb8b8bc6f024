// The runs of the tools: their command lines, what is printed beside them, and what a failure leaves.
#include "support/text.hh"
#include "tests/editing/chip_case.hh"

namespace {

const CHIP SMALL = {
    .design =
        "module pads(input a, output a_c); IBUF pa(.PAD(a), .C(a_c)); endmodule\n"
        "module chip(input a, input ck); wire w; pads p(.a(a), .a_c(w)); FF f(.D(w), .CK(ck)); endmodule\n",
    .pins = "1 PA a *\n2 CK ck *\n"};

/// The TAP goes into module B, which stands in A.
const CHIP TAP_PATH = {
    .design = "tap_down_a_path",
    .pins = "1 A a *\n2 Y y *\n6 TDI tdi *\n7 TMS tms *\n8 TCK tck *\n9 CK ck *\n10 TDO tdo *\n",
    .tap = "top_a.b.tap"};

/// What a tool does when a case lets it do its work: the editor and those behind it leave all as it is.
std::string work_of(const std::string &tool) {
    return tool == "mv" || tool == "cp" ? "exec /bin/" + tool + " \"$@\"" : "exit 0";
}

std::string after(const std::string &text, const std::string &mark) {
    size_t at = text.find(mark);
    return at == std::string::npos ? "'" + mark + "' is missing in:\n" + text : text.substr(at);
}

} // namespace

TEST(Runs, CommandLinesAndWhatIsPrinted) {
    std::string text;
    for (const std::string options :
         {"-add_tap", "-add_tap -no_expand", "-add_tap -opath out/deep", "-add_tap -vhdl"}) {
        chip_case chip(SMALL);
        chip.scratch.write("out/deep/kept", "");
        chip.scratch.write("pads.inf", "");
        // Each tool notes how it was called and what it read on standard input.
        for (const std::string tool : {"kalmedit", "kalmlist", "kalmflat", "mv", "cp"})
            chip.make_tool(tool, "echo $(basename $0) \"$@\" $(cat) >>calls\n" + work_of(tool));
        std::string out = succeed(chip.run(options, "an answer that no tool may take\n"));
        out = after(out, " - Synthesizing Boundary");
        text += "== " + options + "\n" + out.substr(0, out.find("====")) +
                after(chip.scratch.read("calls"), "cp ./chip.sdb") + "-- chip.f\n" +
                chip.scratch.read(options.ends_with("deep") ? "out/deep/chip.f" : "chip.f");
        EXPECT_FALSE(chip.scratch.has("bs_kalmlist.log"));
    }
    expect_file("editing/expected/runs.txt", text);
}

TEST(Runs, AListOfFilesThatTheUserHasWrittenStays) {
    chip_case chip(SMALL);
    chip.scratch.write("chip.f", "-y own\n");
    expect_part(succeed(chip.run("-add_tap")),
                "WARNING: file './chip.f' is none that rimweave has written. It stays as it is.\n");
    EXPECT_EQ(chip.scratch.read("chip.f"), "-y own\n");
}

TEST(Runs, AFailureEndsTheRunAndTheNextOneWorks) {
    struct FAILURE {
        const char *tool, *when;
        bool tap_path = false;
        const char *options = "-add_tap";
    };
    const FAILURE failures[] = {
        {"kalmverin", "true"},
        {"kalmedit", "true"},
        {"mv", "true"},
        {"cp", "[ $2 = chip_jtag.sdb ]"},
        {"cp", "[ $2 = pads_bs.sdb ]"},
        {"cp", "[ $2 = ./rimweave_lib/pads_bs.inf ]", false, "-add_tap -vhdl"},
        {"kalmedit", "[ $3 = ./rimweave_lib/B_bs ]", true},
        {"mv", "[ $1 = B_bs.sdb ]", true},
        {"cp", "[ $2 = B_bs.sdb ]", true},
        {"kalmlist", "true"},
        {"kalmflat", "true"},
    };
    std::string said;
    for (const FAILURE &failure : failures) {
        SCOPED_TRACE(std::string(failure.tool) + " when " + failure.when);
        chip_case chip(failure.tap_path ? TAP_PATH : SMALL);
        chip.scratch.write("pads.inf", "");
        std::string before = chip.scratch.read("chip.sdb");
        std::string tool = failure.tool;
        chip.make_tool(tool, std::string("if ") + failure.when + "; then exit 3; fi\n" + work_of(tool));
        run_result result = chip.run(failure.options);
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(result.out.find("END TIME"), std::string::npos);
        said += section(tool + " when " + failure.when, {255, messages_of(result.out), ""});
        EXPECT_EQ(chip.scratch.read("chip.sdb"), before);
        chip.make_tool(tool, work_of(tool));
        succeed(chip.run(failure.options));
    }
    expect_file("editing/expected/said_of_failures.txt", said);
}

TEST(Runs, ANameIsNeverAShellCommandOrASwitch) {
    struct NAMES {
        const char *design, *module, *folder; // as Verilog and the command line have them
        int status;
        const char *message;
        const char *argument = ""; // the design's, where it is not the name itself
    };
    const NAMES names[] = {
        {"a;touch$IFS+pwned", "p;touch$IFS+pwned", "o;touch pwned", 0, "END TIME"},
        {"-f", "-i", "-v", 0, "END TIME", "./-f"},
        // The edit language parts its words at blanks.
        {"a;touch pwned", "p", "o", 255, "ERROR: the name 'a;touch pwned_jtag' can't stand in command file"},
    };
    for (const NAMES &each : names) {
        for (std::string language : {"v", "vhd"}) {
            SCOPED_TRACE(each.design + std::string(" in ") + language);
            chip_case chip({.design = format_text(
                                "module \\%s (input a, output a_c); IBUF pa(.PAD(a), .C(a_c)); endmodule\n"
                                "module chip(input a, input ck); wire w; \\%s p(.a(a), .a_c(w));\n"
                                "FF f(.D(w), .CK(ck)); endmodule\n",
                                each.module, each.module),
                            .pins = SMALL.pins});
            std::filesystem::remove_all(chip.scratch.dir / "tools");
            std::filesystem::create_directory(chip.scratch.dir / each.folder);
            for (const char *ext : {".sdb", ".c.sdb", ".lib", ".bsc"})
                std::filesystem::rename(chip.scratch.path(std::string("chip") + ext),
                                        chip.scratch.path(std::string(each.design) + ext));
            run_result result =
                chip.scratch.run(format_text(RW_BIN_DIR "/rimweave '%s' -add_tap -opath '%s'%s",
                                             *each.argument ? each.argument : each.design, each.folder,
                                             language == "vhd" ? " -vhdl" : ""));
            EXPECT_EQ(result.status, each.status) << result.out << result.err;
            expect_part(result.out, each.message);
            EXPECT_FALSE(chip.scratch.has("pwned") || chip.scratch.has("+pwned"));
            EXPECT_EQ(
                chip.scratch.has(format_text("%s/%s_jtag.%s", each.folder, each.design, language.c_str())),
                each.status == 0);
            EXPECT_EQ(chip.scratch.has(format_text("rimweave_lib/%s_bs.sdb", each.module)), each.status == 0);
        }
    }
}

TEST(Runs, ASecondRunIsRefusedBeforeItTouchesAnything) {
    chip_case chip(SMALL);
    chip.make_tool("kalmedit", "tools/again >second; echo $? >>second; exec " RW_BIN_DIR "/kalmedit \"$@\"");
    chip.make_tool("again", "exec " RW_BIN_DIR "/rimweave chip");
    chip.make_tool("first", "echo $$ >pid; exec " RW_BIN_DIR "/rimweave chip -add_tap");
    const std::string first = "PATH=$PWD/tools:$PATH; tools/first; exit $?";
    std::string out = succeed(chip.scratch.run(first));
    EXPECT_EQ(chip.scratch.read("chip.rwv.rpt"), out);
    std::string pid = chip.scratch.read("pid");
    EXPECT_EQ(after(chip.scratch.read("second"), "ERROR"),
              "ERROR: ./rimweave_lib is used by another run, process " + pid.substr(0, pid.size() - 1) +
                  ".\n\n255\n");

    // A tool that outlives a killed run does not hold the lock.
    chip.make_tool("kalmedit", "kill -9 $(cat pid); echo $$ >left; exec sleep 100");
    EXPECT_EQ(chip.scratch.run(first).status, 137);
    chip.make_tool("kalmedit", "exit 0");
    succeed(chip.run("-add_tap"));
    chip.scratch.run("kill $(cat left)");
}

TEST(Runs, OfTwoAtOnceEachEndsRightOrIsRefused) {
    chip_case chip(SMALL);
    std::filesystem::remove_all(chip.scratch.dir / "tools");
    chip.scratch.write("pairs", R"(RANDOM=12
run() { $1/rimweave $3 -add_tap -no_expand >$2.out 2>&1; echo $? >$2.status; }
for file in chip.sdb chip.c.sdb chip.lib chip.bsc; do cp $file other${file#chip}; done
for design in chip other; do
    run $1 alone $design
    cp rimweave_lib/${design}_jtag.sdb $design.alone
done
for pair in {1..40}; do
    rm -rf rimweave_lib
    designs=(chip chip)
    [ $((pair % 2)) = 0 ] || designs[1]=other
    run $1 0 chip &
    sleep 0.0$((RANDOM % 90 + 10))
    run $1 1 ${designs[1]}
    wait
    done=0
    for i in 0 1; do
        if [ $(cat $i.status) = 0 ]; then
            done=1
            cmp rimweave_lib/${designs[i]}_jtag.sdb ${designs[i]}.alone
        else
            refused=1
            grep -q 'ERROR: ./rimweave_lib is used by another run' $i.out || cat $i.out
        fi
    done
    [ $done = 1 ] || echo "pair $pair: both are refused"
done
[ "$refused" = 1 ] || echo "none is refused"
)");
    EXPECT_EQ(succeed(chip.scratch.run("bash pairs " RW_BIN_DIR)), "");
}
