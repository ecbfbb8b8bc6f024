// How the control signals reach the cells: directly, through trees, through chains.
#include "tests/editing/chip_case.hh"

namespace {

/// Four outputs, so that small groups make trees of several levels.
CHIP_INPUT outputs(int32_t count) {
    CHIP_INPUT input;
    std::string ports, wires, gates;
    for (int32_t i = 0; i < count; i++) {
        std::string n = std::to_string(i);
        ports += "output y" + n + ", ";
        gates += "wire w" + n + "; FF f" + n + "(.CK(ck), .Q(w" + n + ")); OBUF p" + n + "(.I(w" + n +
                 "), .PAD(y" + n + "));\n";
        input.pins += std::to_string(i + 1) + " P" + n + " y" + n + " *\n";
    }
    input.design = "module chip(" + ports + "input ck);\n" + gates + "endmodule\n";
    input.pins += "90 CK ck *\n";
    return input;
}

struct WIRING {
    const char *name;
    int32_t cells;
    const char *tap_items;
    const char *options;
    const char *field;    ///< what %SHIFT_DR is written as
    const char *expected; ///< lines that name the shift signal
    const char *warning = "";
};

const WIRING WIRINGS[] = {
    {"one level, the larger group first", 3, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX;", "", "shiftDR", R"(
add shift_buf_1_1 BUFX
connect TAP{shiftDR} shift_buf_1_1{A}
add shift_buf_1_2 BUFX
connect TAP{shiftDR} shift_buf_1_2{A}
connect BCELL0{SE} shift_buf_1_1{Z}
connect BCELL1{SE} shift_buf_1_1{Z}
connect BCELL2{SE} shift_buf_1_2{Z}
)"},
    {"two levels of inverting buffers", 5, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX; %INV_BUFFER IBX;", "",
     "-shiftDR", R"(
add shift_buf_1_1 IBX
connect TAP{shiftDR} shift_buf_1_1{A}
add shift_buf_1_2 IBX
connect TAP{shiftDR} shift_buf_1_2{A}
add shift_buf_2_1 IBX
add shift_buf_2_2 IBX
add shift_buf_2_3 IBX
connect shift_buf_1_1{Z} shift_buf_2_1{A}
connect shift_buf_1_1{Z} shift_buf_2_2{A}
connect shift_buf_1_2{Z} shift_buf_2_3{A}
connect BCELL0{SE} shift_buf_2_1{Z}
connect BCELL1{SE} shift_buf_2_1{Z}
connect BCELL2{SE} shift_buf_2_2{Z}
connect BCELL3{SE} shift_buf_2_2{Z}
connect BCELL4{SE} shift_buf_2_3{Z}
)",
     "the buffer tree of active low signal 'shiftDR' has 2 inverting levels"},
    {"an inverter for a direct active-low signal", 2, "%INV_BUFFER IBX;", "", "-shiftDR", R"(
add shift_inv_buf IBX
connect shift_inv_buf{A} TAP{shiftDR}
connect BCELL0{SE} shift_inv_buf{Z}
connect BCELL1{SE} shift_inv_buf{Z}
)"},
    {"chain", 3, "%GROUP_SIZE 2; %DF_GROUP_SIZE 2; %SIGNAL_BUFFER BUFX;", "-df_speed", "shiftDR", R"(
add shift_df_buf_1 BUFX
connect TAP{shiftDR} shift_df_buf_1{A}
add shift_df_buf_2 BUFX
connect shift_df_buf_1{Z} shift_df_buf_2{A}
connect BCELL0{SE} shift_df_buf_1{Z}
connect BCELL1{SE} shift_df_buf_1{Z}
connect BCELL2{SE} shift_df_buf_2{Z}
)"},
    {"chain of inverting buffers", 3, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX; %INV_BUFFER IBX;", "-df_speed",
     "-shiftDR", R"(
add shift_df_buf_1 IBX
connect TAP{shiftDR} shift_df_buf_1{A}
add shift_df_buf_2 IBX
connect shift_df_buf_1{Z} shift_df_buf_2{A}
connect BCELL0{SE} shift_df_buf_1{Z}
connect BCELL1{SE} shift_df_buf_1{Z}
connect BCELL2{SE} shift_df_buf_2{Z}
)",
     "the chain of active low signal 'shiftDR' has 2 inverting buffers"},
    {"%DF_GROUP_SIZE alone", 2, "%DF_GROUP_SIZE 4; %SIGNAL_BUFFER BUFX;", "", "shiftDR", R"(
connect BCELL0{SE} TAP{shiftDR}
connect BCELL1{SE} TAP{shiftDR}
)"},
};

std::string lines_with(const std::string &text, const std::string &a, const std::string &b) {
    std::string found = "\n";
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.find(a) != std::string::npos || line.find(b) != std::string::npos)
            found += line + "\n";
    return found;
}

} // namespace

TEST(Wiring, ShiftReachesTheCells) {
    for (const WIRING &wiring : WIRINGS) {
        SCOPED_TRACE(wiring.name);
        CHIP_INPUT input = outputs(wiring.cells);
        input.tap_items = wiring.tap_items;
        chip_case chip(input);
        std::string library = chip.scratch.read("chip.lib");
        library.replace(library.find("%SHIFT_DR shiftDR"), 17, std::string("%SHIFT_DR ") + wiring.field);
        chip.scratch.write("chip.lib", library);
        run_result result = chip.run(std::string("-add_tap ") + wiring.options);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        EXPECT_EQ(lines_with(chip.commands({"chip_jtag"}), "shift", "{SE}"), wiring.expected);
        EXPECT_EQ(result.out.find("wrong polarity") != std::string::npos, *wiring.warning != '\0');
        EXPECT_NE(result.out.find(wiring.warning), std::string::npos);
    }
}
