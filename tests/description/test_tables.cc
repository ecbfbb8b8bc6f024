// What the readers leave in the tables.
#include "tests/description/reading.hh"

namespace {

TEST(LibTables, HoldTheFieldsOfEachBlock) {
    loaded_tables tables(
        "%TAP_CONTROLLER my_tap { %TDI tdi; %TRST -trst; %GROUP_SIZE 8; %INV_BUFFER INV; %EXTRA_3 foo; "
        "%EXTRA_ 1 bar; }\n"
        "%SCAN_CELL BC_1 { %TDI si; %HIGHZ hz; %STD_NAME BC_1, BC_2; %ORDER a, b; %EN_L \\oe[3]; }\n"
        "%SCAN_CELL BC_1 { %TDI other; }\n"
        "%BUFFER IBUF, *_PAD { %INPUT A; } %INV_BUFFER IV { %INPUT A; %OUTPUT Z; %WEAK_1; }\n"
        "%DIFFERENTIAL_VOLTAGE LV { %INPUT A; %INPUT_P P; %INPUT_M M; }\n"
        "%BS_BUFFER IO1, IO2 { %INOUT PAD; %MODE_1 m; %EN_H E; %OE_MODE o; %BCELL BC_1; %EXTRA_1 x; }\n");
    const TAP_CELL *tap = get_tap_cell("my_tap");
    ASSERT_NE(tap, nullptr);
    EXPECT_EQ(line(tap->tdi, tap->trst, tap->inv_buffer, tap->tdo, tap->extras),
              "tdi -trst INV - [bar,-,foo]\n");
    EXPECT_EQ(tap->group_size, 8);
    EXPECT_EQ(tap->df_group_size, -1);

    const SCAN_CELL *cell = get_scan_cell("BC_1"); // of the first block
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(line(cell->tdi, cell->highz, cell->en_l, cell->std_names, cell->order),
              "si hz \\oe[3] [BC_1,BC_2] [a,b]\n");
    EXPECT_EQ(cell->oe_mode_type, -1);
    EXPECT_EQ(cell->is_bs_buffer, 0);
    EXPECT_EQ(DYNA_count(SCAN_CELL_TAB), 4);

    EXPECT_STREQ(get_buffer("*_PAD")->input, "A");
    EXPECT_EQ(get_buffer("IV")->kind, BUFFER_PLAIN);
    EXPECT_EQ(get_buffer("IV")->weak_1, 1);
    EXPECT_STREQ(get_buffer("LV")->input, "P"); // the last of two keywords for one field
    EXPECT_EQ(get_buffer("LV")->kind, BUFFER_DIFF_VOLTAGE);
    for (const char *name : {"IO1", "IO2"}) {
        const BUFFER_CELL *pad = get_buffer(name);
        const SCAN_CELL *inside = get_scan_cell(name);
        ASSERT_NE(inside, nullptr) << name;
        EXPECT_EQ(pad->kind, BUFFER_BS);
        EXPECT_EQ(inside->is_bs_buffer, 1);
        EXPECT_EQ(line(pad->mode_1, pad->en_h, pad->bcell, inside->mode_1, inside->en_h, inside->std_names,
                       inside->extras),
                  std::string("- E BC_1 m E [") + name + "] [x]\n");
    }
}

TEST(LibTables, FlatListsAreInHashOrder) {
    // The sums of the names modulo 63 are 35, 34 and 6.
    loaded_tables tables("%SCAN_CELL b { %TDI t; } %SCAN_CELL a { %TDI t; } %SCAN_CELL ab { %TDI t; }");
    EXPECT_EQ(hash_key("ab"), (97 + 98) % 63);
    EXPECT_EQ(hash_key("\xff"), 62);
    std::vector<std::string> names;
    for (const SCAN_CELL *cell : rows(SCAN_CELL_TAB))
        names.emplace_back(cell->name);
    EXPECT_EQ(names, (std::vector<std::string>{"ab", "a", "b"}));
}

const char *const FULL_BSC = R"(
%GLOBAL_TDI tdi; %TAP_MODULE { %MODULE_NAME TAP; %INSTANCE_NAME u_tap; } %INVERTER 01ab;
%IDCODE_REGISTER 0000000000000000000000000000000x; %IDCODE_REGISTER 0000000000000000000000000000000;
%SCAN_CELLS { %INPUT_SCAN BC; %OBSERVE_ONLY_SCAN BC; }
%INSTRUCTION_TABLE {
  %INSTRUCTION IDCODE = (010, 011, 0x1) ACCESS idcode ENABLE en (101);
  %INSTRUCTION MY { %BINARY_CODE = 100; %EN_H h; %EN_L l OR o; %ENABLE e = (1); }
}
%INSTRUCTION_CAPTURE (0x1); %INSTRUCTION_PRIVATE P, Q;
%SKIP_SIGNAL_NAMES { a(1), b; } %SKIP_SIGNAL_NAMES { c; }
%UNBOUNDED_PINS { u; } %TRANSPARENT_BUFFER { T; } %SKIP_MODULE_NAMES { s; }
%CONNECTION_TABLE { %CONNECT a{b} TO c{d}; %CONNECT b TO c{d}; %CONNECT a{b} TO c; }
%MEMORY_BIST { %INSTRUCTION RUN { %CTRL_ORDER 10, 2; %CNT_FILE ../cnt/a.cnt, b; } %INSTRUCTION NONE { } }
%LOGIC_BIST { %CTRL_ORDER 3; %CNT_FILE a, A, b; %TESTS (01, 10); %DIAG_INSTRUCTION D; %DFT_FILE f.dft; }
)";

TEST(BscTables, HoldTheStatements) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    loaded_tables tables(SHORT_LIB, FULL_BSC);
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(line(GLOBAL_TDI, TAP_MODULE_NAME, TAP_INSTANCE_NAME, INVERTER, INPUT_SCAN, OBSERVE_ONLY_SCAN,
                   INST_CAPTURE, INST_PRIVATE),
              "tdi TAP u_tap 01ab BC BC [0x1] [P,Q]\n");
    EXPECT_STREQ(IDCODE_REG, "0000000000000000000000000000000x"); // a pattern of 31 leaves it
    std::string instructions;
    for (const INSTRUCTION &row : rows(INSTRUCTIONS))
        instructions += line(row.name, row.patterns, row.register_name, row.enable_pins, row.enable_values,
                             row.gate_signals);
    EXPECT_EQ(instructions, "IDCODE [010,011] idcode [en] [101] [-]\n" // 0x1 covers 011
                            "MY [100] bypass [h,l,e] [1,0,1] [-,o,-]\n");
    EXPECT_EQ(INSTRUCTIONS[1].gate_kinds[0], GATE_NONE);
    EXPECT_EQ(INSTRUCTIONS[1].gate_kinds[1], GATE_OR);

    EXPECT_TRUE(skip_signal("a"));
    EXPECT_FALSE(skip_signal("a[3]"));
    EXPECT_TRUE(trans_buffer("T"));
    EXPECT_EQ(DYNA_count(SKIP_SIGNAL_TAB), 5); // the second statement lists the rows of the first again
    EXPECT_EQ(line(SKIP_SIGNAL_TAB[0]->value, SKIP_SIGNAL_TAB[1]->value), "1 -\n");
    std::string wires;
    for (const CONNECT_ENTRY *entry = CONNECT_TABLE; entry != nullptr; entry = entry->next)
        wires += line(entry->from_instance, entry->from_port, entry->to_instance, entry->to_port);
    EXPECT_EQ(wires, "a b c d\n- b c d\na b - c\n");
}

TEST(PinTables, HoldTheRowsInFileOrder) {
    scratch_folder scratch;
    std::string pin = scratch.write("chip.pin", R"(/* layout of the guide */
%PACKAGE_TYPE My_Chip 10;
%ALLOWED_MULTIPLE { VDD, VSS ; }
1  TDI     tdi     IN
6  DOUT    d_out   OUT   BSC(O:BC_1, C:BC_1)  PAD(OBUF, I:A, O:Z)  PAD_EN_L
7  VDD     *       *     BSC(BC_2) PAD_EN_H
A9
   RAM[3]  ram[3]  BI    BSC(IO:BC_1, C:BC_1, C:BC_3)
)");
    testing::internal::CaptureStderr();
    loaded_tables tables(SHORT_LIB, "%PIN_LIST { %FILE_NAME " + pin + "; }");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("'VSS'"), std::string::npos);
    EXPECT_STREQ(PACKAGE_TYPE, "My_Chip");
    EXPECT_EQ(PACKAGE_PIN_NUMBER, 10);
    ASSERT_EQ(BS_PIN_COUNT, 4);
    EXPECT_EQ(line(bs_pin_name(0), bs_pin_direction(0)), "tdi IN\n");
    std::string pins; // nothing stays from the row before
    for (const PIN_ENTRY *row : rows(PIN_TABLE))
        pins += line(row->number, row->package_name, row->top_name, row->direction, row->bsc_name, row->bsc_i,
                     row->bsc_o, row->bsc_c, row->bsc_io, row->pad_name, row->pad_i, row->pad_o, row->pad_c);
    EXPECT_EQ(pins, "1 TDI tdi IN - - - - - - - - -\n"
                    "6 DOUT d_out OUT - - BC_1 BC_1 - OBUF A Z -\n"
                    "7 VDD - - BC_2 - - - - - - - -\n"
                    "A9 RAM[3] ram[3] BI - - - BC_3 BC_1 - - - -\n");
    const std::pair<int32_t, int32_t> kinds[] = {{BSC_O_C, 0}, {BSC_NO_LIST, 1}, {BSC_IO_C, -1}};
    for (int32_t i : {1, 2, 3}) {
        EXPECT_EQ(PIN_TABLE[i]->bsc_kind, kinds[i - 1].first) << i;
        EXPECT_EQ(PIN_TABLE[i]->pad_enable, kinds[i - 1].second) << i;
    }
    EXPECT_EQ(PIN_TABLE[3]->line, 8); // of the second column
}

TEST(WildCards, HighestScoreWinsAndADrawStops) {
    scratch_folder scratch;
    scratch.write("chip.lib",
                  "%BUFFER A*, *B, *_X, *Y_X, IBUF_*, IBUF_A*, IBUF_A1, a*bb*b, ab*bc { %INPUT I; }");
    scratch.write("chip.bsc", SHORT_BSC);
    auto look_up = [&](const char *name) {
        return run_child(scratch, [&] {
            bsdft_init();
            get_bs_dft_file("chip.lib", "chip.bsc", 0);
            const BUFFER_CELL *buffer = get_buffer(name);
            std::printf("%s", buffer != nullptr ? buffer->name : "none");
        });
    };
    for (auto [name, found] : {std::pair("AB", "A*"),
                               {"IBUF_A2", "IBUF_A*"},
                               {"IBUF_A1", "IBUF_A1"},
                               {"C_X", "*_X"},
                               {"abbb", "a*bb*b"},
                               {"abb", "none"},
                               {"abc", "none"}})
        EXPECT_EQ(look_up(name).out, found) << name;
    run_result draw = look_up("QY_X");
    EXPECT_EQ(draw.status, 255);
    EXPECT_EQ(draw.out, "ERROR: BUFFER, *_X, *Y_X, in \"chip.lib\" can match iopad 'QY_X'.\n"
                        "Please give a more specific name in \"chip.lib\" to avoid ambiguous.\n");
}

} // namespace
