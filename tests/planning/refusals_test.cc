// What ends a run while it is planned: the pads, the pin file and the description of the chip, each at fault.
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "tests/planning/planned_chip.hh"

namespace {

// Designs, without the words around them.
#define CORE_I " GATE u(.A(n));"
#define CORE_O " GATE u(.Z(n));"
#define CORE_OE " GATE u(.Z(n)); GATE v(.Z(e));"
#define CORE_IO " GATE u(.A(i), .Z(o)); GATE v(.Z(e));"
constexpr const char *IN = "(input a); IBUF p(.PAD(a), .C(n));" CORE_I;
constexpr const char *IN_X = "(input a); XPAD p(.A(a), .PAD(n));" CORE_I;
constexpr const char *IN_GATE = "(input a); GATE p(.A(a), .Z(n));" CORE_I;
constexpr const char *CLOCK_MUX = "(input a); MUXC p(.PAD(a), .C(n));" CORE_I;
constexpr const char *TDI_X = "(input tdi); XPAD p(.A(tdi));";
constexpr const char *OUT = "(output y); OBUF p(.I(n), .PAD(y));" CORE_O;
constexpr const char *OUT_X = "(output y); XPAD p(.A(n), .PAD(y));" CORE_O;
constexpr const char *OUT_GATE = "(output y); GATE p(.A(n), .Z(y));" CORE_O;
constexpr const char *OUT_EN = "(output y); TBUF p(.I(n), .OEN(e), .PAD(y));" CORE_OE;
constexpr const char *OUT_MUX = "(output y); MUXO p(.I(n), .PAD(y));" CORE_O;
constexpr const char *BI = "(inout b); BBUF p(.I(o), .C(i), .OEN(e), .PAD(b));" CORE_IO;
constexpr const char *BI_X = "(inout b); XPAD p(.A(n), .PAD(b));" CORE_O;
constexpr const char *BI_IN = "(inout b); BBUF p(.C(i), .OEN(e), .PAD(b));" CORE_IO;
constexpr const char *BI_NONE = "(inout b); BBUF p(.OEN(e), .PAD(b));" CORE_IO;
constexpr const char *BI_MUX = "(inout b); MXB1 p(.I(o), .C(i), .OEN(e), .PAD(b));" CORE_IO;
constexpr const char *BI_MUX_OUT = "(inout b); MXB2 p(.I(o), .OEN(e), .PAD(b));" CORE_IO;
/// The modules stand behind the chip, whose end the test adds.
constexpr const char *TWO_PATHS = "(input a); M a(.i(n)); N \\a.b (.i(n)); endmodule\n"
                                  "module M(input i); GATE \\b.c (.A(i)); endmodule\n"
                                  "module N(input i); GATE c(.A(i));";
constexpr const char *CORE = "(input a); GATE u(.A(n)); GATE v(.Z(n)); XPAD x(.PAD(m));";
constexpr const char *A = "1 A a *\n", *B = "1 B b *\n", *Y = "1 Y y *\n";
constexpr const char *TDI = "1 DI tdi *\n", *TDO = "1 DO tdo *\n";

std::string whole(const std::string &design) {
    return "module chip" + design + " endmodule";
}

/// What the run says, below the chip.
std::string refusal(const planning_folder &folder, CHIP chip) {
    std::string text = "== " + chip.design + "\n" + *chip.pins + chip.roles.value_or("") + chip.library +
                       chip.tap_items.value_or("") + "\n--\n";
    chip.design = whole(chip.design);
    run_result result = folder.plan(chip);
    EXPECT_EQ(result.status, 255) << text;
    return text + messages_of(result.out);
}

// The pin file, the port, and the cell next to it as the library describes it.
const struct {
    const char *design, *pins, *library;
} PADS[] = {
    {"(input [1:0] a); GATE u(.A(a[0]), .B(a[1]));", "1 A -a *\n", ""},
    {"(input a);", A, ""},
    {IN_X, A, ""},
    {TDI_X, TDI, ""},
    {"(input [0:0] a); IBUF p(.PAD(a[0]), .C(n));" CORE_I, "1 A a *\n2 A2 a[0] *\n", ""},
    {"(input a, b); GATE p(.A(a), .B(b), .Z(n)); PLAIN u(.A(n));", "1 A a *\n2 B b *\n",
     "%BUFFER GATE { %OUTPUT Z; }"},
    {"(input a, output z); BSIN p(.PAD(a), .C(z));", "1 A a *\n2 Z z *\n", ""},
    {"(input a, output y); BSOU p(.I(a), .PAD(y));", "1 Y y *\n2 A a *\n", ""},
    // Pins that face another way than described, in all words.
    {IN_X, A, "%BUFFER XPAD { %OUTPUT PAD; }"},
    {OUT_GATE, Y, "%BUFFER GATE { %INPUT Z; }"},
    {"(inout b, c); BBUF p(.I(o), .C(i), .OEN(e), .PAD(b)); XPAD q(.A(i), .PAD(c));" CORE_IO, B,
     "%BUFFER XPAD { %FUNCTION inout; %INOUT A; }"},
    // Pins that are not described, not there or not connected.
    {IN_X, A, "%BUFFER XPAD { %INPUT A; }"},
    {TDI_X, TDI, "%BUFFER XPAD { %INPUT A; }"},
    {OUT_X, Y, "%BUFFER XPAD { %OUTPUT PAD; }"},
    {"(input a); IBUF p(.PAD(a));", A, ""},
    {"(output y); OBUF p(.PAD(y));", Y, ""},
    {"(output tdo); OBUF p(.PAD(tdo));", TDO, ""},
    {OUT_EN, "1 Y y * PAD_EN_H\n", ""},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %OUTPUT C; %EN_L E; }"},
    {BI_X, B, "%BUFFER XPAD { %INOUT PAD; %EN_L E; }"},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; }"},
    {BI_NONE, B, ""},
    {"(inout b); CBUF p(.PAD(b), .C(n));" CORE_I, B, ""},
    {BI_X, B, "%BS_BUFFER XPAD { $ %INPUT A; %EN_L E; %DATA_IN d; }"},
    // Differential pads.
    {"(input a); DINP p(.PX(a), .C(n));" CORE_I, A, ""},
    {"(output y); DOUT p(.PX(y), .I(n));" CORE_O, Y, ""},
    {IN_GATE, A, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %OUTPUT Z; }"},
    {IN_GATE, A, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %INPUT_M B; }"},
    {OUT_GATE, Y, "%DIFFERENTIAL_VOLTAGE GATE { %OUTPUT_P Z; %OUTPUT_M B; }"},
    {OUT_GATE, Y, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT A; %OUTPUT_P Z; }"},
    // Multiplexers that are half described.
    {IN_GATE, A, "%BUFFER GATE { %OUTPUT Z; %MUX_IN2 T; }"},
    {OUT_X, Y, "%BUFFER XPAD { %INPUT A; %MODE_1 S; }"},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %EN_L E; %MUX_IN1 T; }"},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %EN_L E; %MUX_IN1 T; %MODE_1 S; %MODE_2 S2; }"},
};

// The cells that planning looks for: not declared, or of the pin file and at fault.
#define NAMED(port) "1 P " port " * BSC(BC_BAD)\n"
const struct {
    const char *design, *pins;
    given_text roles;
} CELLS[] = {
    {IN, A, "%OUTPUT_SCAN BC_OUT;"},
    {CLOCK_MUX, A, "%INPUT_SCAN BC_IN;"},
    {OUT, Y, "%INPUT_SCAN BC_IN;"},
    {OUT_MUX, Y, "%OUTPUT_SCAN BC_OUT;"},
    {OUT_EN, Y, "%OUTPUT_SCAN BC_OUT;"},
    {OUT_EN, Y, "%OUTPUT_SCAN BC_OE;"},
    {BI, B, "%INPUT_SCAN BC_IN;"},
    {BI_MUX, B, "%INPUT_SCAN BC_IN;"},
    {BI_IN, B, "%OUTPUT_SCAN BC_OUT;"},
    {BI_MUX_OUT, B, "%OUTPUT_SCAN BC_OUT;"},
    {CORE, "1 INTERNAL u{A} *\n", "%OBSERVE_ONLY_SCAN BC_CLK;"},
    {CORE, "1 OBSERVE u{A} *\n", "%INTERNAL_SCAN BC_IN;"},
    {CORE, "1 INTERNAL u{} *\n", {}},
    {CORE, "1 INTERNAL w{A} *\n", {}},
    {TWO_PATHS, "1 INTERNAL a.b.c{A} *\n", {}},
    {CORE, "1 OBSERVE u{Q} *\n", {}},
    {CORE, "1 OBSERVE x{PAD} *\n", {}},
    {IN, NAMED("a"), {}},
    {CLOCK_MUX, NAMED("a"), {}},
    {OUT, NAMED("y"), {}},
    {BI, NAMED("b"), {}},
    {BI_MUX, NAMED("b"), {}},
    // Declared roles that no port takes are checked too, all of them before the run ends.
    {IN, A,
     "%CONTROL_SCAN BC_BAD; %CLOCK_MUX_SCAN BC_BAD; %CONTROL_MUX_SCAN BC_BAD; %CONTROL_OE_LOW_SCAN BC_CTL; "
     "%CONTROL_OE_HIGH_SCAN BC_BAD;"},
};

#define WITH_TAP " oldtap TAP();"
const CHIP TAPS_AND_OPTIONS[] = {
    {.design = BI_X, .pins = B, .options = "-add_tap -no_pad"},
    {.design = "(inout tdi); XPAD p(.A(tdi));", .pins = TDI, .options = "-add_tap -no_pad"},
    {.design = "(inout tdo); XPAD p(.PAD(tdo));", .pins = TDO, .options = "-add_tap -no_pad"},
    // A cell of a pin in the core that the editor can't wire.
    {.design = CORE,
     .pins = "1 OBSERVE u{A} *\n",
     .roles = "%OBSERVE_ONLY_SCAN BC_2;",
     .settings = "%SKIP_SIGNAL_NAMES { a; }",
     .library = "%SCAN_CELL BC_2 { %SHIFT_DR si; %CLOCK_DR ck; }\n"},
    // An existing TAP without a pin that a pad needs.
    {.design = "(output y); BSOE p(.PAD(y), .I(n), .OEN(e));" CORE_OE WITH_TAP,
     .pins = Y,
     .options = "",
     .roles = "%INPUT_SCAN BC_IN;",
     .tap_pins = ""},
    {.design = "(output y); MUXO p(.PAD(y), .I(n), .S(1'b0));" CORE_O WITH_TAP,
     .pins = Y,
     .options = "",
     .roles = "%OUTPUT_MUX_SCAN BC_MO;",
     .tap_pins = "%UPDATE_DR update;"},
    {.design = "(output y); TBUF p(.PAD(y), .I(n), .OEN(1'b1));" CORE_O,
     .pins = Y,
     .tap_items = "%HIGHZ_COMMAND hz;"},
    {.design = IN,
     .pins = A,
     .library = "%BUFFER GATE { %FUNCTION none; }",
     .tap_items = "%DF_GROUP_SIZE 8; %DF_SIGNAL_BUFFER GATE;"},
    // Inverted pins.
    {.design = IN, .pins = "1 A -a *\n", .settings = "%INVERTER NOPE;"},
    {.design = IN, .pins = "1 A -a *\n"},
    {.design = IN,
     .pins = "1 A -a *\n",
     .settings = "%INVERTER GATE;",
     .library = "%BUFFER GATE { %OUTPUT Z; }"},
    {.design = IN,
     .pins = "1 A -a *\n",
     .settings = "%INVERTER GATE;",
     .library = "%BUFFER GATE { %INPUT A; }"},
};

TEST(Refusals, OfPadsCellsAndTaps) {
    planning_folder folder;
    std::string text;
    for (const auto &each : PADS)
        text += refusal(folder, {.design = each.design, .pins = each.pins, .library = each.library});
    for (const auto &each : CELLS)
        text += refusal(folder, {.design = each.design, .pins = each.pins, .roles = each.roles});
    for (const CHIP &chip : TAPS_AND_OPTIONS)
        text += refusal(folder, chip);
    expect_file("planning/expected/refusals.txt", text);
}

// Files that are no designs: the TAP's buffer, the chip, a cell whose ports are looked at.
TEST(Refusals, DesignFilesThatCantBeOpened) {
    planning_folder folder;
    CHIP chip = {.design = whole(IN),
                 .pins = A,
                 .roles = "%OUTPUT_SCAN BC_OE;",
                 .tap_items = "%GROUP_SIZE 4; %SIGNAL_BUFFER PLAIN;"};
    for (const std::string file : {"PLAIN.sdb", "chip.c.sdb", "BC_OE.sdb"}) {
        folder.lay_out(chip);
        folder.scratch.write(file, "no design");
        run_result result = folder.insert(chip);
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(messages_of(result.out),
                  "SDB ERROR: (FA-01-0008) The size of the sdb file './" + file +
                      "' is smaller than the minimum size. Please check the sdb file.\nERROR: can't open SDB "
                      "file './" +
                      file + "'.\n       Permission denied, probably.\n\n");
    }
}

// What no netlist tells but a design file of another origin may hold: a net without a name on an enable.
TEST(Refusals, EnableOnANamelessNet) {
    planning_folder folder;
    CHIP chip = {.design = whole(OUT_EN), .pins = Y};
    folder.lay_out(chip);
    std::string path = folder.scratch.path("chip.c.sdb");
    SDB_HANDLE *handle = SDB_setup(SDB_open(path.c_str(), "r", 0));
    ASSERT_NE(handle, nullptr);
    auto place = static_cast<std::streamoff>(handle->tables[SDB_SNET_TAB].offset) +
                 4 * SDB_search_net(SYM_lookup(sym_tab, "e"));
    SDB_close(handle, 0);
    SDB_clear_current();
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary)
        .seekp(place)
        .write("\xff\xff\xff\xff", 4);
    run_result result = folder.insert(chip);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(messages_of(result.out),
              "SDB FATAL: (FA-02-0008) Encountered an illegal object id.\n"
              "ERROR: (./chip.lib) %EN_L OEN specified in %BUFFER TBUF\n"
              "       is floating in file './chip.c.sdb' while tracing port 'y'.\n\n");
}

// The message of a group size below two goes to the console alone, and the status is 0.
TEST(Refusals, GroupSizesBelowTwo) {
    planning_folder folder;
    const char *few = "%DF_GROUP_SIZE 1; %SIGNAL_BUFFER PLAIN;";
    const CHIP chips[] = {
        {.design = whole(IN), .pins = A, .tap_items = "%GROUP_SIZE 1; %SIGNAL_BUFFER PLAIN;"},
        {.design = whole(IN), .pins = A, .options = "-add_tap -df_speed", .tap_items = few},
        // A cell that has the boundary clock alone.
        {.design = whole(CORE),
         .pins = "1 OBSERVE u{A} *\n",
         .options = "-add_tap -df_speed -synch",
         .roles = "%OBSERVE_ONLY_SCAN BC_TK;",
         .settings = "%SKIP_SIGNAL_NAMES { a; }",
         .library = "%SCAN_CELL BC_TK { %TDI si; %TDO so; %TCK tk; %DATA_IN di; }",
         .tap_items = few},
    };
    for (const CHIP &chip : chips) {
        run_result result = folder.plan(chip);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(messages_of(result.out).ends_with("ERROR: Can't group 1 with max size 1 !\n"))
            << result.out;
        EXPECT_EQ(folder.scratch.read("chip.rwv.rpt").find("group"), std::string::npos);
    }
}

} // namespace
