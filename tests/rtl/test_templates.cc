// What the templates ask for is what the values know: a letter or name that nobody gives would leave out a
// line, or stand in the chip's text as it is.
#include "rtl/tap_values.hh"
#include "rtl/templates.hh"
#include "support/text.hh"
#include "tests/rtl/tap_case.hh"

#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace {

constexpr const char *TEMPLATES[] = {TAP_CONTROLLER_V,
                                     TAP_CONTROLLER_PORTS_VHDL,
                                     TAP_CONTROLLER_BODY_VHDL,
                                     TAP_CONTROLLER_LIBRARY_VHDL,
                                     BYPASS_REG_V,
                                     BYPASS_REG_PORTS_VHDL,
                                     BYPASS_REG_BODY_VHDL,
                                     LIBRARY_VHDL,
                                     ID_REG_V,
                                     ID_REG_PORTS_VHDL,
                                     ID_REG_BODY_VHDL,
                                     IR_REG_V,
                                     IR_REG_PORTS_VHDL,
                                     IR_REG_BODY_VHDL,
                                     IR_DEC_V,
                                     IR_DEC_PORTS_VHDL,
                                     IR_DEC_BODY_VHDL,
                                     DR_MUX_V,
                                     DR_MUX_PORTS_VHDL,
                                     DR_MUX_BODY_VHDL,
                                     IR_DR_MUX_V,
                                     IR_DR_MUX_PORTS_VHDL,
                                     IR_DR_MUX_BODY_VHDL,
                                     TDO_REG_V,
                                     TDO_REG_PORTS_VHDL,
                                     TDO_REG_BODY_VHDL,
                                     TOP_V,
                                     TOP_VHDL};

/// The letters and names of one line that are unknown.
std::string unknown(const std::string &line, const TEMPLATE_VALUES &values) {
    std::string found;
    size_t bar = line.find('|');
    TEMPLATE_NAMES known = values.names;
    for (char letter : line.substr(0, bar)) {
        if (auto list = values.lists.find(letter); list != values.lists.end()) {
            for (const TEMPLATE_NAMES &row : list->second)
                known.insert(row.begin(), row.end());
        } else if (letter != ' ' &&
                   tap_letters().find(static_cast<char>(std::toupper(letter))) == std::string::npos) {
            found += letter;
        }
    }
    std::regex name("<([A-Z][A-Z0-9_-]*)>");
    for (std::sregex_iterator at(line.begin(), line.end(), name), end; at != end; ++at)
        if (!known.contains((*at)[1].str()))
            found += at->str();
    return found;
}

TEST(tap_rtl, templates_ask_for_nothing_unknown) {
    quiet_rtl_of({"all", std::string(LARGE_TABLE) + "GATED 1101 USERDR[8] g:AND:MODE1\n",
                  "trst rst highz update mode1 mode2 mode3 idcode usercode"});
    for (RTL_LANGUAGE language : {VERILOG, VHDL}) {
        TEMPLATE_VALUES values = tap_values(language);
        for (const char *text : TEMPLATES) {
            std::istringstream lines(text);
            for (std::string line; std::getline(lines, line);) {
                if (line.find('|') != std::string::npos) {
                    EXPECT_EQ(unknown(line, values), "") << line;
                }
            }
        }
    }
    EXPECT_EQ(unknown("  k |<TDI> <TDX>", tap_values(VERILOG)), "k<TDX>");
}

} // namespace
