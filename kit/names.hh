// What names tell: the forms that the description files can hold, and the habits of pad libraries.
#pragma once

#include <string>
#include <string_view>

/// True when a pin file and a BSC file can hold the port's name as it is.
bool kit_port_name_fits(std::string_view name);
/// True when a library file can hold the name of a cell or pin.
bool kit_cell_name_fits(std::string_view name);

/// True for what power and ground are called: VDD, DVSS, vccd1, VGND, ...
bool kit_is_power_name(std::string_view name);
/// True for the clock pin of a register or block: CK, CLK, CP, clk_i, ...
bool kit_is_clock_pin_name(std::string_view name);

/// What a pad's pin is by its name.
enum PIN_HABIT { HABIT_NONE, HABIT_INPUT, HABIT_OUTPUT, HABIT_EN_LOW, HABIT_EN_HIGH };
/// The habit of a pin that the core drives (`is_output` false) or reads. `rank` is 0 for the surest name.
PIN_HABIT kit_pin_habit(std::string_view pin, bool is_output, int &rank);

/// A vector's name, and a bit's index or -1: "a[3]" is "a" and 3.
struct KIT_BIT {
    std::string base;
    long index;
};
KIT_BIT kit_bit(const std::string &name);
/// True when `a` comes before `b` in the order in which people count: a[2] before a[10].
bool kit_counts_before(const std::string &a, const std::string &b);
