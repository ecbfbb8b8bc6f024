// What ends a run while it is planned: the pads, the pin file and the description of the chip, each at fault.
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "tests/planning/planned_chip.hh"

namespace {

// The messages, with what varies in them.
#define LIB "ERROR: (./chip.lib) "
#define FACES(pin, is, cell, declared)                                                                       \
    "ERROR: '" pin "' is " is " pin of '" cell "'.\n       But it was declared as " declared                 \
    " pin in file './chip.lib'.\n\n"
#define NOT_FOUND(what, pad, port)                                                                           \
    LIB what " specified in " pad "\n       can't be found in file './chip.c.sdb' while tracing port '" port \
             "'.\n\n"
#define UNDESCRIBED(cell, port)                                                                              \
    "FATAL: can't find the definition of buffer '" cell "' while tracing port '" port "'.\n"                 \
    "       Please specify the following in file './chip.lib'.\n              %BUFFER  " cell " {\n"         \
    "                  %INPUT\n                  %OUTPUT\n               }\n\n"
#define SAME_PLACE(one, other)                                                                               \
    "ERROR: (chip.pin) '" one "' and '" other "' need a boundary scan cell at the same place.\n"             \
    "       Please correct your SDB or specify one of them as skip signal.\n"                                \
    "       Power and ground ports belong in %SKIP_SIGNAL_NAMES of file './chip.bsc'.\n\n"
#define FLOATING(pin, cell, side)                                                                            \
    "WARNING: (./chip.lib) " pin " of %BUFFER " cell " which connects to\n"                                  \
    "         port 'b' is floating.\n         " side                                                         \
    " boundary scan cell won't be inserted on this port.\n\n"
#define MUX_LACKS(cell, pad, Pad, given, lacks)                                                              \
    LIB "'" cell "' is a " pad " because " given " signal is declared.\n       " Pad " also requires " lacks \
        " signal to be declared.\n\n"
#define NEED(keyword, need, port)                                                                            \
    "ERROR: can't find " keyword " in file './chip.bsc'.\n       Need " need " to connect to " port ".\n\n"
#define LACKS(pin, word, cell)                                                                               \
    LIB "can't find " pin " in %SCAN_CELL " cell ".\n       " word " '" cell "' should have " pin " signal." \
        "\n"
#define NO_MODES(word, cell)                                                                                 \
    "WARNING: (./chip.lib) can't find %MODE signals in " word " '" cell "'.\n"                               \
    "         %MODE signals won't be connected.\n\n"
#define UNWIRED(pin)                                                                                         \
    "WARNING: Pin '" pin "' of TAP 'TAP' is not connected in the design.\n"                                  \
    "         It won't be connected to port '" pin "'.\n"
#define TAP_UNWIRED UNWIRED("tdi") UNWIRED("tms") UNWIRED("tck") UNWIRED("tdo")

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

void expect_refusal(const planning_folder &folder, CHIP chip) {
    chip.design = whole(chip.design);
    SCOPED_TRACE(chip.design + *chip.pins + chip.library);
    run_result result = folder.plan(chip);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(messages_of(result.out), chip.message);
}

// The pin file, the port, and the cell next to it as the library describes it.
const struct {
    const char *design, *pins, *library, *message;
} PADS[] = {
    {"(input [1:0] a); GATE u(.A(a[0]), .B(a[1]));", "1 A -a *\n", "",
     "ERROR: (chip.pin) can't find port 'a' in SDB './chip.c.sdb'.\n\n"},
    {"(input a);", A, "", "ERROR: port 'a' is floating.\n\n"},
    {IN_X, A, "", UNDESCRIBED("XPAD", "a")},
    {TDI_X, TDI, "", UNDESCRIBED("XPAD", "tdi")},
    {"(input [0:0] a); IBUF p(.PAD(a[0]), .C(n));" CORE_I, "1 A a *\n2 A2 a[0] *\n", "",
     SAME_PLACE("a", "a[0]")},
    {"(input a, b); GATE p(.A(a), .B(b), .Z(n)); PLAIN u(.A(n));", "1 A a *\n2 B b *\n",
     "%BUFFER GATE { %OUTPUT Z; }", SAME_PLACE("a", "b")},
    {"(input a, output z); BSIN p(.PAD(a), .C(z));", "1 A a *\n2 Z z *\n", "", SAME_PLACE("a", "z")},
    {"(input a, output y); BSOU p(.I(a), .PAD(y));", "1 Y y *\n2 A a *\n", "", SAME_PLACE("y", "a")},
    // Pins that face another way than described, in all words.
    {IN_X, A, "%BUFFER XPAD { %OUTPUT PAD; }", FACES("PAD", "a bidirectional", "XPAD", "an output")},
    {OUT_GATE, Y, "%BUFFER GATE { %INPUT Z; }", FACES("Z", "an output", "GATE", "an input")},
    {"(inout b, c); BBUF p(.I(o), .C(i), .OEN(e), .PAD(b)); XPAD q(.A(i), .PAD(c));" CORE_IO, B,
     "%BUFFER XPAD { %FUNCTION inout; %INOUT A; }", FACES("A", "an input", "XPAD", "a bidirectional")},
    // Pins that are not described, not there or not connected.
    {IN_X, A, "%BUFFER XPAD { %INPUT A; }", LIB "can't find %OUTPUT in %BUFFER XPAD\n\n"},
    {TDI_X, TDI, "%BUFFER XPAD { %INPUT A; }", LIB "can't find %OUTPUT in %BUFFER XPAD\n\n"},
    {OUT_X, Y, "%BUFFER XPAD { %OUTPUT PAD; }", LIB "can't find %INPUT in %BUFFER  XPAD.\n\n"},
    {"(input a); IBUF p(.PAD(a));", A, "",
     "ERROR: Input Pad 'p' is floating.\n       Please correct your SDB or specify pin 'a' as skip "
     "signal.\n\n"},
    {"(output y); OBUF p(.PAD(y));", Y, "", NOT_FOUND("%INPUT I", "%BUFFER OBUF", "y")},
    {"(output tdo); OBUF p(.PAD(tdo));", TDO, "", NOT_FOUND("%INPUT I", "%BUFFER OBUF", "tdo")},
    {OUT_EN, "1 Y y * PAD_EN_H\n", "", NOT_FOUND("%EN_H EN", "%BUFFER TBUF", "y")},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %OUTPUT C; %EN_L E; }", NOT_FOUND("%OUTPUT C", "%BUFFER XPAD", "b")},
    {BI_X, B, "%BUFFER XPAD { %INOUT PAD; %EN_L E; }",
     LIB "can't find %INPUT or %OUTPUT in %BUFFER XPAD,\n       while tracing bidirectional port 'b'.\n\n"},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; }",
     LIB "can't find %EN_L or %EN_H in %BUFFER XPAD,\n       while tracing bidirectional port 'b'.\n\n"},
    {BI_NONE, B, "",
     FLOATING("%INPUT I", "BBUF", "Output") FLOATING("%OUTPUT C", "BBUF", "Input") LIB
     "%OUTPUT C and %INPUT I in %BUFFER BBUF\n       are both floating.\n"
     "       Can't insert boundary scan on port 'b'.\n\n"},
    {"(inout b); CBUF p(.PAD(b), .C(n));" CORE_I, B, "",
     "ERROR: bidir port 'b' doesn't connect to bidir pad.\n"
     "       Please setup %FUNCTION inout in %BUFFER CBUF.\n\n"},
    {BI_X, B, "%BS_BUFFER XPAD { $ %INPUT A; %EN_L E; %DATA_IN d; }",
     LACKS("%DATA_OUT", "BIDIR SCAN", "XPAD") LACKS("%UPDATE_DR", "BIDIR SCAN", "XPAD")
         LACKS("%SYS_PIN", "BIDIR SCAN", "XPAD") "\n" NO_MODES("BIDIR SCAN", "XPAD") "\n"},
    // Differential pads.
    {"(input a); DINP p(.PX(a), .C(n));" CORE_I, A, "",
     "ERROR: the PX pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER DINP\n "},
    {"(output y); DOUT p(.PX(y), .I(n));" CORE_O, Y, "",
     "ERROR: the PX pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER DOUT\n "},
    {IN_GATE, A, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %OUTPUT Z; }",
     LIB "can't find %INPUT_P or %INPUT_M in DIFFERENTIAL BUFFER GATE\n\n"},
    {IN_GATE, A, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT_P A; %INPUT_M B; }",
     LIB "can't find %OUTPUT in DIFFERENTIAL BUFFER GATE\n\n"},
    {OUT_GATE, Y, "%DIFFERENTIAL_VOLTAGE GATE { %OUTPUT_P Z; %OUTPUT_M B; }",
     LIB "can't find %INPUT in DIFFERENTIAL BUFFER GATE.\n\n"},
    {OUT_GATE, Y, "%DIFFERENTIAL_VOLTAGE GATE { %INPUT A; %OUTPUT_P Z; }",
     LIB "can't find %OUTPUT_P or %OUTPUT_M in DIFFERENTIAL BUFFER GATE. \n\n"},
    // Multiplexers that are half described.
    {IN_GATE, A, "%BUFFER GATE { %OUTPUT Z; %MUX_IN2 T; }",
     MUX_LACKS("GATE", "mux input pad", "Mux input pad", "%MUX_IN2", "%MODE_2")},
    {OUT_X, Y, "%BUFFER XPAD { %INPUT A; %MODE_1 S; }",
     MUX_LACKS("XPAD", "mux output pad", "Mux output pad", "%MODE_1", "%MUX_IN1")},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %EN_L E; %MUX_IN1 T; }",
     MUX_LACKS("XPAD", "mux bidi pad", "Mux bidi pad", "%MUX_IN1", "%MODE_1")},
    {BI_X, B, "%BUFFER XPAD { %INPUT A; %EN_L E; %MUX_IN1 T; %MODE_1 S; %MODE_2 S2; }",
     MUX_LACKS("XPAD", "mux bidi pad", "Mux bidi pad", "%MODE_2", "%MUX_IN2")},
};

TEST(Refusals, Pads) {
    planning_folder folder;
    for (const auto &each : PADS)
        expect_refusal(
            folder,
            {.design = each.design, .pins = each.pins, .message = each.message, .library = each.library});
}

// The cells that planning looks for: not declared, or of the pin file and at fault.
#define NAMED(port) "1 P " port " * BSC(BC_BAD)\n"
const struct {
    const char *design, *pins;
    given_text roles;
    const char *message;
} CELLS[] = {
    {IN, A, "%OUTPUT_SCAN BC_OUT;", NEED("%INPUT_SCAN", "INPUT SCAN", "input port 'a'")},
    {CLOCK_MUX, A, "%INPUT_SCAN BC_IN;", NEED("%INPUT_MUX_SCAN", "INPUT_MUX_SCAN", "input port 'a'")},
    {OUT, Y, "%INPUT_SCAN BC_IN;", NEED("%OUTPUT_SCAN", "OUTPUT SCAN", "output port 'y'")},
    {OUT_MUX, Y, "%OUTPUT_SCAN BC_OUT;", NEED("%OUTPUT_MUX_SCAN", "OUTPUT_MUX_SCAN", "output port 'y'")},
    {OUT_EN, Y, "%OUTPUT_SCAN BC_OUT;", "ERROR: can't find %CONTROL_SCAN in file './chip.bsc'.\n\n"},
    {OUT_EN, Y, "%OUTPUT_SCAN BC_OE;", "ERROR: Please specify %CONTROL_OE_SCAN in file './chip.bsc'.\n\n"},
    {BI, B, "%INPUT_SCAN BC_IN;", NEED("%BIDIR_SCAN", "BIDIR_SCAN", "bidir port 'b'")},
    {BI_MUX, B, "%INPUT_SCAN BC_IN;", NEED("%BIDI_MUX_SCAN", "BIDIR_MUX_SCAN", "bidir port 'b'")},
    {BI_IN, B, "%OUTPUT_SCAN BC_OUT;",
     FLOATING("%INPUT I", "BBUF", "Output") NEED("%INPUT_SCAN", "INPUT_SCAN", "bidir port 'b'")},
    {BI_MUX_OUT, B, "%OUTPUT_SCAN BC_OUT;",
     FLOATING("%OUTPUT C", "MXB2", "Input") NEED("%OUTPUT_MUX_SCAN", "OUTPUT_MUX_SCAN", "bidir port 'b'")},
    {CORE, "1 INTERNAL u{A} *\n", "%OBSERVE_ONLY_SCAN BC_CLK;",
     NEED("%INTERNAL_SCAN", "INTERNAL SCAN", "internal port 'u{A}'")},
    {CORE, "1 OBSERVE u{A} *\n", "%INTERNAL_SCAN BC_IN;",
     NEED("%OBSERVE_ONLY_SCAN", "OBSERVE_ONLY SCAN", "internal port 'u{A}'")},
    {CORE, "1 INTERNAL u{} *\n", {}, "ERROR: can not get instance name or pin name in 'u{}' of pin file.\n"},
    {CORE, "1 INTERNAL w{A} *\n", {}, "ERROR: can not find instance 'w' in './chip.c.sdb' file.\n"},
    {TWO_PATHS,
     "1 INTERNAL a.b.c{A} *\n",
     {},
     "ERROR: instance 'a.b.c' of pin file is ambiguous in './chip.c.sdb' file.\n       Please write one of:\n"
     "           a.b\\.c\n           a\\.b.c\n\n"},
    {CORE, "1 OBSERVE u{Q} *\n", {}, "ERROR: can not find port 'Q' in instance 'u'.\n"},
    {CORE, "1 OBSERVE x{PAD} *\n", {}, "ERROR: can't support inout port 'x{PAD}' now.\n"},
    {IN, NAMED("a"), {}, LACKS("%DATA_IN", "INPUT SCAN", "BC_BAD") "\n\n"},
    {CLOCK_MUX,
     NAMED("a"),
     {},
     LACKS("%DATA_IN", "CLOCK MUX SCAN", "BC_BAD") LACKS("%UPDATE_DR_OUT", "CLOCK MUX SCAN", "BC_BAD")
         LACKS("%UPDATE_DR", "CLOCK MUX SCAN", "BC_BAD") "\n\n"},
    {OUT,
     NAMED("y"),
     {},
     LACKS("%DATA_IN", "OUTPUT SCAN", "BC_BAD") LACKS("%DATA_OUT", "OUTPUT SCAN", "BC_BAD")
         LACKS("%UPDATE_DR", "OUTPUT SCAN", "BC_BAD") "\n" NO_MODES("OUTPUT SCAN", "BC_BAD") "\n"},
    {BI,
     NAMED("b"),
     {},
     LACKS("%DATA_IN", "BIDIR SCAN", "BC_BAD") LACKS("%DATA_OUT", "BIDIR SCAN", "BC_BAD")
         LACKS("%UPDATE_DR", "BIDIR SCAN", "BC_BAD")
             LACKS("%SYS_PIN", "BIDIR SCAN", "BC_BAD") "\n" NO_MODES("BIDIR SCAN", "BC_BAD") "\n"},
    {BI_MUX,
     NAMED("b"),
     {},
     LACKS("%SYS_PIN", "BIDIR MUX SCAN", "BC_BAD") LACKS("%UPDATE_DR", "BIDIR MUX SCAN", "BC_BAD")
         LACKS("%UPDATE_DR_OUT", "BIDIR MUX SCAN", "BC_BAD") "\n\n"},
    // Declared roles that no port takes are checked too, all of them before the run ends.
    {IN, A,
     "%CONTROL_SCAN BC_BAD; %CLOCK_MUX_SCAN BC_BAD; %CONTROL_MUX_SCAN BC_BAD; %CONTROL_OE_LOW_SCAN BC_CTL; "
     "%CONTROL_OE_HIGH_SCAN BC_BAD;",
     LACKS("%DATA_IN", "CONTROL SCAN", "BC_BAD") LACKS("%DATA_OUT", "CONTROL SCAN", "BC_BAD")
         LACKS("%UPDATE_DR", "CONTROL SCAN", "BC_BAD") "\n" NO_MODES("CONTORL SCAN", "BC_BAD")
             LACKS("%DATA_IN", "CLOCK MUX SCAN", "BC_BAD") LACKS("%UPDATE_DR_OUT", "CLOCK MUX SCAN", "BC_BAD")
                 LACKS("%UPDATE_DR", "CLOCK MUX SCAN", "BC_BAD") "\n" LACKS("%DATA_IN", "CONTROL MUX SCAN",
                                                                            "BC_BAD")
                     LACKS("%UPDATE_DR", "CONTROL MUX SCAN", "BC_BAD")
                         LACKS("%UPDATE_DR_OUT", "CONTROL MUX SCAN",
                               "BC_BAD") "\n" LIB
                                         "can't find %OE_MODE in %CONRTOL_OE_LOW_SCAN BC_CTL.\n\n" LACKS(
                                             "%DATA_IN", "CONTROL OE HIGH SCAN", "BC_BAD")
                                             LACKS("%UPDATE_DR", "CONTROL OE HIGH SCAN", "BC_BAD")
                                                 LACKS("%DATA_OUT", "CONTROL OE HIGH SCAN", "BC_BAD") LIB
     "can't find %OE_MODE in %CONRTOL_OE_HIGH_SCAN BC_BAD.\n\n\n"},
};

TEST(Refusals, Cells) {
    planning_folder folder;
    for (const auto &each : CELLS)
        expect_refusal(
            folder, {.design = each.design, .pins = each.pins, .message = each.message, .roles = each.roles});
}

#define WITH_TAP " oldtap TAP();"
const CHIP TAPS_AND_OPTIONS[] = {
    {"", BI_X, B, UNDESCRIBED("XPAD", "b"), "-add_tap -no_pad"},
    {"", "(inout tdi); XPAD p(.A(tdi));", TDI,
     "ERROR: option -add_pad requires to declare %INPUT_BUFFER\n       in file './chip.bsc'.\n\n",
     "-add_tap -no_pad"},
    {"", "(inout tdo); XPAD p(.PAD(tdo));", TDO,
     "ERROR: option -add_pad requires to declare %OUTPUT_BUFFER\n       in file './chip.bsc'.\n\n",
     "-add_tap -no_pad"},
    // A cell of a pin in the core that the editor can't wire.
    {.design = CORE,
     .pins = "1 OBSERVE u{A} *\n",
     .message = "WARNING: (./chip.lib) can't find %TDI in %SCAN_CELL BC_2.\n"
                "WARNING: (./chip.lib) can't find %TDO in %SCAN_CELL BC_2.\n"
                "WARNING: (./chip.lib) can't find %DATA_IN in %SCAN_CELL BC_2.\n"
                "         OBSERVE_ONLY SCAN 'BC_2' should have %DATA_IN signal.\n\n",
     .roles = "%OBSERVE_ONLY_SCAN BC_2;",
     .settings = "%SKIP_SIGNAL_NAMES { a; }",
     .library = "%SCAN_CELL BC_2 { %SHIFT_DR si; %CLOCK_DR ck; }\n"},
    // An existing TAP without a pin that a pad needs.
    {.design = "(output y); BSOE p(.PAD(y), .I(n), .OEN(e));" CORE_OE WITH_TAP,
     .pins = Y,
     .message = LIB "can't find %UPDATE_DR in %TAP_CONTROLLER oldtap.\n       %BS_BUFFER BSOE needs it.\n\n",
     .options = "",
     .roles = "%INPUT_SCAN BC_IN;",
     .tap_pins = ""},
    {.design = "(output y); MUXO p(.PAD(y), .I(n), .S(1'b0));" CORE_O WITH_TAP,
     .pins = Y,
     .message = TAP_UNWIRED LIB "can't find %MODE_1 in %TAP_CONTROLLER oldtap.\n"
                                "       Please define %MODE_1 to connectmux pad p.\n\n",
     .options = "",
     .roles = "%OUTPUT_MUX_SCAN BC_MO;",
     .tap_pins = "%UPDATE_DR update;"},
    {.design = "(output y); TBUF p(.PAD(y), .I(n), .OEN(1'b1));" CORE_O,
     .pins = Y,
     .message = LIB "can't find %SIGNAL_BUFFER in %TAP_CONTROLLER.\n"
                    "       Need it to connect %HIGHZ_COMMAND to the enable of port 'y'.\n\n",
     .tap_items = "%HIGHZ_COMMAND hz;"},
    {.design = IN,
     .pins = A,
     .message = LIB "can't find %INPUT in %BUFFER GATE.\n\n" LIB "can't find %OUTPUT in %BUFFER GATE.\n\n\n",
     .library = "%BUFFER GATE { %FUNCTION none; }",
     .tap_items = "%DF_GROUP_SIZE 8; %DF_SIGNAL_BUFFER GATE;"},
    // Inverted pins.
    {.design = IN,
     .pins = "1 A -a *\n",
     .message = "ERROR: can't find the definition of buffer 'NOPE' in file './chip.lib'.\n\n",
     .settings = "%INVERTER NOPE;"},
    {"", IN, "1 A -a *\n",
     "ERROR: can't find %INV_BUFFER of %TAP_CONTROLLER in file './chip.lib'\n"
     "       or %INVERTER in file './chip.bsc' for pin '-a'.\n\n"},
    {.design = IN,
     .pins = "1 A -a *\n",
     .message = LIB "can't find %INPUT in %BUFFER GATE.\n\n",
     .settings = "%INVERTER GATE;",
     .library = "%BUFFER GATE { %OUTPUT Z; }"},
    {.design = IN,
     .pins = "1 A -a *\n",
     .message = LIB "can't find %OUTPUT in %BUFFER GATE.\n\n",
     .settings = "%INVERTER GATE;",
     .library = "%BUFFER GATE { %INPUT A; }"},
};

TEST(Refusals, TapsAndOptions) {
    planning_folder folder;
    for (const CHIP &chip : TAPS_AND_OPTIONS)
        expect_refusal(folder, chip);
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
              "SDB FATAL: (FA-02-0008) Encountered an illegal object id.\n" LIB
              "%EN_L OEN specified in %BUFFER TBUF\n"
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
         .message = "WARNING: (./chip.lib) can't find %SHIFT_DR in %SCAN_CELL BC_TK.\n"
                    "WARNING: (./chip.lib) can't find %CLOCK_DR in %SCAN_CELL BC_TK.\n\n",
         .options = "-add_tap -df_speed -synch",
         .roles = "%OBSERVE_ONLY_SCAN BC_TK;",
         .settings = "%SKIP_SIGNAL_NAMES { a; }",
         .library = "%SCAN_CELL BC_TK { %TDI si; %TDO so; %TCK tk; %DATA_IN di; }",
         .tap_items = few},
    };
    for (const CHIP &chip : chips) {
        run_result result = folder.plan(chip);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(messages_of(result.out),
                  chip.message + std::string("ERROR: Can't group 1 with max size 1 !\n"));
        EXPECT_EQ(folder.scratch.read("chip.rwv.rpt").find("group"), std::string::npos);
    }
}

} // namespace
