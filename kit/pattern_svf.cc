// SVF of the steps, for a tester that has the test port alone.
#include "kit/patterns.hh"

#include "support/text.hh"

#include <algorithm>

namespace {

constexpr size_t LINE_DIGITS = 64;

/// The bits as a hexadecimal number whose lowest digit is shifted first, in lines.
std::string hex_lines(const std::string &bits, const std::string &ones) {
    std::string digits;
    for (size_t at = 0; at < bits.size(); at += 4) {
        int value = 0;
        for (size_t i = 0; i < 4 && at + i < bits.size(); ++i)
            value |= ones.find(bits[at + i]) != ones.npos ? 1 << i : 0;
        digits += "0123456789ABCDEF"[value];
    }
    std::reverse(digits.begin(), digits.end());
    std::string text;
    for (size_t at = 0; at < digits.size(); at += LINE_DIGITS)
        text += (at == 0 ? "" : "\n        ") + digits.substr(at, LINE_DIGITS);
    return text;
}

std::string scan_text(const PATTERN_STEP &step) {
    std::string text = format_text("%s %zu TDI (%s)", step.kind == STEP_IR ? "SIR" : "SDR", step.tdi.size(),
                                   hex_lines(step.tdi, "1").c_str());
    if (step.tdo.find_first_of("01") != step.tdo.npos)
        text += format_text("\n    TDO (%s)\n    MASK (%s)", hex_lines(step.tdo, "1").c_str(),
                            hex_lines(step.tdo, "01").c_str());
    return text + ";\n";
}

std::string step_text(const PATTERN_LIST &list, const PATTERN_STEP &step) {
    switch (step.kind) {
    case STEP_RESET:
        return "STATE RESET;\nSTATE IDLE;\n";
    case STEP_TRST:
        return "TRST ON;\nTRST OFF;\nSTATE RESET;\nSTATE IDLE;\n";
    case STEP_IR:
    case STEP_DR:
        return scan_text(step);
    case STEP_PINS:
    case STEP_WALK:
    case STEP_OPEN:
        break;
    }
    (void)list;
    return "";
}

} // namespace

std::string pattern_svf(const PATTERN_LIST &list, std::vector<int32_t> &line_of_step) {
    std::string text = "! Test patterns of " + list.design +
                       ", made by rimkit from the final netlist.\n"
                       "! The chip stands alone: pads are turned on all at once, and inputs are left open.\n";
    text += list.test_ports[PORT_TRST] >= 0 ? "TRST OFF;\n" : "TRST ABSENT;\n";
    text += format_text("FREQUENCY %.3E HZ;\n", list.frequency);
    text += "HIR 0;\nTIR 0;\nHDR 0;\nTDR 0;\nENDIR IDLE;\nENDDR IDLE;\nSTATE RESET;\nSTATE IDLE;\n";
    auto line = static_cast<int32_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    line_of_step.assign(list.steps.size(), 0);
    for (size_t i = 0; i < list.steps.size(); ++i) {
        const PATTERN_STEP &step = list.steps[i];
        if (step.needs_pins)
            continue;
        std::string piece = format_text("! step %zu: %s\n", i, step.reason.c_str()) + step_text(list, step);
        line_of_step[i] = line + 1;
        line += static_cast<int32_t>(std::count(piece.begin(), piece.end(), '\n'));
        text += piece;
    }
    return text;
}
