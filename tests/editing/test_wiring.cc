// How the control signals reach the cells: directly, through trees, through chains.
#include "tests/editing/chip_case.hh"

#include <sstream>

namespace {

/// A number of outputs, so that small groups make trees of several levels.
CHIP outputs(int32_t count) {
    CHIP chip = {.pins = ""};
    std::string ports, gates;
    for (int32_t i = 0; i < count; i++) {
        std::string n = std::to_string(i);
        ports += "output y" + n + ", ";
        gates += "wire w" + n + "; FF f" + n + "(.CK(ck), .Q(w" + n + ")); OBUF p" + n + "(.I(w" + n +
                 "), .PAD(y" + n + "));\n";
        *chip.pins += std::to_string(i + 1) + " P" + n + " y" + n + " *\n";
    }
    *chip.pins += "90 CK ck *\n";
    chip.design = "module chip(" + ports + "input ck);\n" + gates + "endmodule\n";
    return chip;
}

const struct {
    const char *name;
    int32_t cells;
    const char *tap_items, *options;
    const char *field; ///< what %SHIFT_DR is written as
    const char *warning = "";
} WIRINGS[] = {
    {"one level, the larger group first", 3, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX;", "", "shiftDR"},
    {"two levels of inverting buffers", 5, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX; %INV_BUFFER IBX;", "",
     "-shiftDR", "the buffer tree of active low signal 'shiftDR' has 2 inverting levels"},
    {"an inverter for a direct active-low signal", 2, "%INV_BUFFER IBX;", "", "-shiftDR"},
    {"chain", 3, "%GROUP_SIZE 2; %DF_GROUP_SIZE 2; %SIGNAL_BUFFER BUFX;", "-df_speed", "shiftDR"},
    {"chain of inverting buffers", 3, "%GROUP_SIZE 2; %SIGNAL_BUFFER BUFX; %INV_BUFFER IBX;", "-df_speed",
     "-shiftDR", "the chain of active low signal 'shiftDR' has 2 inverting buffers"},
    {"%DF_GROUP_SIZE alone", 2, "%DF_GROUP_SIZE 4; %SIGNAL_BUFFER BUFX;", "", "shiftDR"},
};

/// The lines that name the shift signal.
std::string shift_lines(const std::string &text) {
    std::string found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.find("shift") != std::string::npos || line.find("{SE}") != std::string::npos)
            found += line + "\n";
    return found;
}

} // namespace

TEST(Wiring, ShiftReachesTheCells) {
    std::string all;
    for (const auto &wiring : WIRINGS) {
        SCOPED_TRACE(wiring.name);
        CHIP input = outputs(wiring.cells);
        const std::string field = std::string("%SHIFT_DR ") + wiring.field;
        input.tap_items = wiring.tap_items;
        input.changes = {{"chip.lib", "%SHIFT_DR shiftDR", field.c_str()}};
        chip_case chip(input);
        std::string out = succeed(chip.run(std::string("-add_tap ") + wiring.options));
        EXPECT_EQ(out.find("wrong polarity") != std::string::npos, *wiring.warning != '\0');
        expect_part(out, wiring.warning);
        all += std::string("== ") + wiring.name + "\n" + shift_lines(chip.commands("chip_jtag"));
    }
    expect_commands("wiring", all);
}
