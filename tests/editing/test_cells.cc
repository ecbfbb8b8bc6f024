// The lines of the cell kinds, and of cells whose pads stand on one net.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *PINS = R"(
1 CLK clk *
2 PA a *
3 INV -inv *
4 OBS obs * BSC(BC_OBS)
5 MI mi *
6 THRU thru *
7 BSI bsi *
8 Y y LEFT
9 P0 t0 *
10 T1 t1 *
11 HZ0 hz0 *
12 HZ1 hz1 *
13 EN_O en_o *
14 MO mo *
15 MT mt *
16 BSO bso *
17 FEED feed *
18 PIO io *
19 MB mb *
20 INTERNAL g0{Q} *
21 OBSERVE g1{D} *
30 TDI tdi *
31 TMS tms *
32 TCK tck *
33 TDO tdo *
)";

const CHIP KINDS = {
    .design = "cell_kinds",
    .pins = PINS,
    .roles = "%INPUT_MUX_SCAN BC_MI; %OUTPUT_MUX_SCAN BC_MI; %BIDIR_MUX_SCAN BC_MB; %INTERNAL_SCAN BC_IN; "
             "%OBSERVE_ONLY_SCAN BC_OBS;",
    .settings = "%TRANSPARENT_BUFFER { TRB; } %INVERTER IBX;",
    .tap_items = "%MODE_2 mode2; %HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; ",
    .instructions = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;"};

} // namespace

TEST(Cells, EachKindWritesItsLines) {
    chip_case chip(KINDS);
    succeed(chip.run("-add_tap"));
    expect_commands("cell_kinds", chip.command_files_of({"chip_jtag"}));
    expect_file("editing/expected/cell_kinds.bso", chip.scratch.read("chip.bso"));
    // The bundled editor takes every line.
    std::filesystem::remove_all(chip.scratch.dir / "tools");
    succeed(chip.run("-add_tap"));
}

TEST(Cells, MuxPadsAndPadsWithCellsInsideWithAllOtherCellsInOneModule) {
    chip_case chip(KINDS);
    std::string out = succeed(chip.run("-add_bcm"));
    for (const std::string cell :
         {"'pbsi' of port 'bsi'", "'BCELL15' of port 'mt'", "'BCELL20' of port 'g0{Q}'"})
        expect_part(out, "WARNING: cell " + cell +
                             " does not stand in chip_BCM:\n         option -add_bcm leaves its chain and "
                             "control pins unconnected.\n\n");
    expect_commands("cell_kinds_bcm", chip.commands("chip_jtag"));
}
