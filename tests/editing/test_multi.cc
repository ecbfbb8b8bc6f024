// Pads in several modules: the pad of TDO among them, and pads that hold cells.
#include "tests/editing/chip_case.hh"

TEST(Multi, TheTdoPadIsReachedAndFreed) {
    // What stands on the pad's pins, in the ring; how the frame's and the top's instance is joined.
    struct DRIVEN {
        const char *what, *data, *enable, *frame_pin, *top_pin;
        bool warned;
    };
    const DRIVEN cases[] = {
        {"nothing", "n", "m", "", "", false},
        {"constants", "1'b0", "1'b1", "", "", false},
        {"ports to the top", "d", "1'b0", "d", "", false},
        {"a constant in the top", "d", "1'b0", "d", "1'b1", false},
        {"a gate in the top", "d", "1'b0", "d", "v", true},
        {"a constant in the frame", "d", "1'b0", "1'b1", "", false},
    };
    std::string text, first;
    for (const DRIVEN &each : cases) {
        SCOPED_TRACE(each.what);
        chip_case chip({.design = "tdo_in_frame",
                        .roles = "%INPUT_SCAN BC_S;",
                        .changes = {{"chip.v", "DATA", each.data},
                                    {"chip.v", "ENABLE", each.enable},
                                    {"chip.v", "FRAME_PIN", each.frame_pin},
                                    {"chip.v", "TOP_PIN", each.top_pin}}});
        std::string out = succeed(chip.run("-add_tap"));
        EXPECT_EQ(out.find("is driven by the design") != std::string::npos, each.warned) << out;
        std::string files = chip.command_files_of({"ring_bs0", "frame_bs0", "chip_jtag"});
        first = first.empty() ? files : first;
        chip.scratch.write("first", first);
        chip.scratch.write("files", files);
        text += std::string("==== ") + each.what + "\n" +
                (text.empty() ? files : chip.scratch.run("diff first files").out);
        chip.run_in_own_folder("-add_tap");
    }
    expect_commands("multi_tdo", text);
}

TEST(Multi, ChainPortsOfCellsInPadsDiffer) {
    chip_case chip(
        {.design =
             "module low(input p, output k); BSS pad(.PAD(p), .C(k)); endmodule\n"
             "module mid(input p, r, output k, l); low u(.p(p), .k(k)); low v(.p(r), .k(l)); endmodule\n"
             "module chip(input a, b, e, ck); wire v, w, x; mid m(.p(a), .r(b), .k(v), .l(w));\n"
             "IBUF i(.PAD(e), .C(x)); FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); FF h(.D(x), .CK(ck)); "
             "endmodule\n",
         .pins = "1 PA a *\n2 PE e *\n3 PB b *\n4 CK ck *\n",
         .roles = "%INPUT_SCAN BC_S;"});
    succeed(chip.run("-add_tap"));
    expect_part(chip.commands("mid_bs0"), "connect u{pad_SI} pad_SI \n");
    expect_part(chip.commands("mid_bs0"), "connect v{pad_SI_2} pad_SI_2 \n");
    chip.run_in_own_folder("-add_tap");
}
