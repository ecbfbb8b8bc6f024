// The lines of the cell kinds, and of cells whose pads stand on one net.
#include "tests/editing/chip_case.hh"

namespace {

const CHIP KINDS = {
    .design = "cell_kinds",
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
