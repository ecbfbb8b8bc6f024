// The report and the boundary order file, to the blank.
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/port_table.hh"
#include "planning/report.hh"
#include "planning/tap_state.hh"
#include "support/run_state.hh"
#include "tests/support/scratch.hh"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

SCAN_CELL cell_named(const char *name) {
    SCAN_CELL cell{};
    cell.name = name;
    cell.data_in = "DI";
    cell.data_out = "DO";
    cell.tdi = "SI";
    cell.tdo = "SO";
    cell.shift_dr = "SE";
    cell.clock_dr = "CK";
    cell.update_dr = "UP";
    cell.mode_1 = "MD";
    return cell;
}

void add_scan_row(const char *inst) {
    SCAN_ROW row{};
    row.inst = inst;
    append_row(SCAN_TAB, row);
}

OPIN_ROW port_row(int32_t order, const char *number, const char *port, int32_t kind, SCAN_CELL *cell) {
    OPIN_ROW row{};
    row.order = order;
    row.pin_num = number;
    row.port_name = port;
    take_cell(row, kind, {cell, COUNT_OUTPUT});
    return row;
}

// A chain of two 3-state outputs on one control cell, an input, a pair, and ports without a cell.
class ReportTest : public testing::Test {
  protected:
    SCAN_CELL out = cell_named("BC_OUT"), control = cell_named("BC_CTL"), in = cell_named("BC_IN");

    void SetUp() override {
        rimweave_init();
        TOP_MODULE = "chip";
        OPIN_ROW tdo = port_row(-1, "2", "tdo", CELL_OUTPUT3, nullptr);
        tdo.pad_instance = "po";
        tdo.pad_class = "TBUF";
        tdo.net_name = "n_tdo";
        append_row(OPIN_TAB, tdo);
        for (int32_t i = 0; i < 2; ++i) {
            OPIN_ROW row =
                port_row(i == 0 ? 0 : 2, i == 0 ? "3" : "4", i == 0 ? "z0" : "z1", CELL_OUTPUT3, &out);
            row.control = 1;
            row.control_driver = i == 0;
            row.net_name = i == 0 ? "d0" : "d1";
            row.pad_instance = i == 0 ? "pz0" : "pz1";
            row.pad_class = "a_pad_class_of_23_chars";
            row.scan_cell_name = i == 0 ? "BCELL0_OUT" : "BCELL2_OUT";
            append_row(OPIN_TAB, row);
        }
        OPIN_ROW pair = port_row(3, "5", "b", CELL_INOUT, &out);
        pair.input_cell = {&in, COUNT_INPUT};
        pair.net_name = "bo,bi";
        pair.pad_instance = "pb";
        pair.pad_class = "BBUF";
        pair.scan_cell_name = "BCELL4,BCELL3";
        append_row(OPIN_TAB, pair);
        append_row(OPIN_TAB, port_row(10000, "6", "test_en", CELL_NONE, nullptr));
        for (const char *inst : {"BCELL0_OUT", "BCELL1_OUT", "BCELL2_OUT", "BCELL3", "BCELL4"})
            add_scan_row(inst);
        CONTROL_ROW row{};
        row.net_name = "oe_n";
        row.bsdl_type = "control";
        row.scan_cell = &control;
        append_row(CONTROL_TAB, row);
    }
    void TearDown() override {
        free_planning_tables();
    }
};

TEST_F(ReportTest, BoundaryOrderFile) {
    scratch_folder scratch;
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.dir);
    print_bso_file();
    std::filesystem::current_path(before);
    EXPECT_STREQ(BSO_FILE, "chip.bso");
    EXPECT_EQ(scratch.read("chip.bso"),
              "// ---------------------------------------------------------------------------\n"
              "//SCAN  Pin Signal Name   Signal Name          IO BUF    SIGNAL      SCAN CELL\n"
              "//ORDER Num at the Pin    at the Core          NAME      FUNCTION    NAME\n"
              "//                                            [TYPE]                [TYPE]\n"
              "// ---------------------------------------------------------------------------\n"
              "    *     2 tdo           n_tdo                po        output3       *        \n"
              "                                              [TBUF]                [*]\n"
              "    0     3 z0            d0                   pz0       output3     BCELL0_OUT \n"
              "                                              [a_pad_class_of_23_chars][BC_OUT]\n"
              "    2     4 z1            d1                   pz1       output3     BCELL2_OUT \n"
              "                                              [a_pad_class_of_23_chars][BC_OUT]\n"
              "   [CONTROL SCAN CELL]    oe_n                   *       control     BCELL1_OUT \n"
              "   [OE RANGE]   0:  2                            *                  [BC_CTL]\n"
              "    3     5 b             bo,bi                pb        inout       BCELL4,BCELL3\n"
              "                                              [BBUF]                [BC_IN,BC_OUT]\n"
              "    *     6 test_en       *                      *         *           *        \n");
    EXPECT_EQ(CONTR_PIN, nullptr);
}

TEST_F(ReportTest, ReportOfTheCellsAndTrees) {
    OUTPUT_SCAN = nullptr; // the cells were named in the pin file: the report shows the one that was used
    SCAN_COUNT[COUNT_OUTPUT] = 3;
    append_row(BUFFER_REPORT, static_cast<const char *>("  ** a line of a tree\n"));
    const char *extras[] = {"X0"};
    out.extras = DYNA_init<const char *>();
    append_row(out.extras, extras[0]);
    testing::internal::CaptureStdout();
    print_report();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\n\n====================================================\n"
              "                 RIMWEAVE   Report\n"
              "====================================================\n"
              "\n  ** Add total   5 Boundary Scan Cells:\n"
              "  ---------------------------------------\n"
              "  ** Add 3 OUTPUT SCAN Cells: BC_OUT\n"
              "  .......................................\n"
              "    %DATA_IN        : DI\n"
              "    %DATA_OUT       : DO\n"
              "    %TDI            : SI\n"
              "    %TDO            : SO\n"
              "    %SHIFT_DR       : SE\n"
              "    %CLOCK_DR       : CK\n"
              "    %UPDATE_DR      : UP\n"
              "    %MODE_1         : MD\n"
              "    %EXTRA_PIN_0    : X0\n"
              "\n  -----------------------------------------------\n"
              "  ** a line of a tree\n"
              "====================================================\n\n");
    DYNA_free(&out.extras);
}

} // namespace
