// DESIGN.lib: the TAP, the boundary cells, the pads.
#include "kit/drafts.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

std::string item(const char *keyword, const std::string &value, const std::string &comment = {}) {
    if (value.empty())
        return "";
    std::string line = format_text("  %-15s %s;", keyword, value.c_str());
    return comment.empty() ? line + "\n" : format_text("%-34s // %s\n", line.c_str(), comment.c_str());
}

std::string tap_block(const CHIP_PLAN &plan, const CELL_CHOICE &cells) {
    bool has_reset = !plan.tests[TEST_TRST].name.empty();
    const PORT_PLAN *tdo = find_port_plan(plan, plan.tests[TEST_TDO].name);
    bool tdo_has_enable = tdo != nullptr && tdo->pad != nullptr &&
                          (!tdo->pad->enable_low.empty() || !tdo->pad->enable_high.empty());
    std::string text =
        "// The TAP. It is generated, so the names of its ports are free.\n%TAP_CONTROLLER jtag_tap\n{\n";
    text += item("%TDI", "TDI") + item("%TDO", "TDO");
    text += item("%TDO_EN", "TDO_EN",
                 tdo_has_enable ? "to the enable of the TDO pad" : "for a TDO pad with an enable");
    text += item("%TMS", "TMS") + item("%TCK", "TCK");
    if (has_reset)
        text += item("%TRST", "TRST_N", "low resets the TAP");
    text += item("%FIRST_BCELL", "BSR_SI") + item("%LAST_BCELL", "BSR_SO");
    text += item("%SHIFT_DR", "SHIFT_DR") + item("%CLOCK_DR", "CLOCK_DR") + item("%UPDATE_DR", "UPDATE_DR");
    text += item("%TAP_RESET", cells.has_reset ? "RESET_N" : "",
                 "low in Test-Logic-Reset: control cells turn their pads off");
    text += item("%MODE_1", "MODE_1", "high where the register drives the pads: EXTEST, CLAMP, INTEST");
    text += item("%MODE_2", "MODE_2", "high where the register drives the core: INTEST alone");
    if (cells.has_highz)
        text += item("%HIGHZ_COMMAND", "HIGHZ", "releases every output");
    if (!cells.tree_buffer.empty())
        text += item("%SIGNAL_BUFFER", cells.tree_buffer) +
                item("%GROUP_SIZE", "16", "no output drives more cells than this");
    return text + "}\n\n";
}

std::string ports_in_short(const std::vector<std::string> &ports) {
    std::string text;
    for (size_t i = 0; i < std::min<size_t>(ports.size(), 3); ++i)
        text += (i > 0 ? ", " : "") + ports[i];
    return ports.size() > 3 ? text + format_text(" and %zu more", ports.size() - 3) : text;
}

std::string pads_in_words(int32_t count) {
    return count == 1 ? "1 pad" : format_text("%d pads", count);
}

/// What a value that the pad needs on this pin means where it has it not; empty for a pin without such a
/// value.
std::string gate_comment(const PAD_KIND &pad, const PIN_STATE &state) {
    auto gate = std::find_if(pad.gates.begin(), pad.gates.end(),
                             [&state](const PIN_VALUE &value) { return value.pin == state.pin; });
    if (gate == pad.gates.end())
        return "";
    const char *does = gate->for_reading ? "is not read" : "does not drive";
    int32_t off = gate->value ? state.zero : state.one;
    if (!state.driven.empty())
        return format_text("  // please check: without %s = %d the pad %s, in EXTEST too; see \"Pads that "
                           "the core turns on\" in"
                           " users_guide.md\n",
                           state.pin.c_str(), gate->value ? 1 : 0, does);
    return off == 0 ? ""
                    : format_text("  // please check: without %s = %d the pad %s: %s for good\n",
                                  state.pin.c_str(), gate->value ? 1 : 0, does, pads_in_words(off).c_str());
}

/// What the netlist does with the pins that the boundary register does not reach.
std::string pin_comments(const CHIP_PLAN &plan, const PAD_KIND &pad) {
    auto states = plan.pin_states.find(pad.cell);
    std::string text;
    for (const PIN_STATE &state :
         states != plan.pin_states.end() ? states->second : std::vector<PIN_STATE>{}) {
        std::string line = "  // " + state.pin + ":";
        const char *comma = "";
        for (auto [count, words] : {std::pair{state.zero, "0"}, std::pair{state.one, "1"},
                                    std::pair{state.open, "open"}, std::pair{state.tied, "a tie cell"}})
            if (count > 0) {
                line += format_text("%s %s at %s", comma, words, pads_in_words(count).c_str());
                comma = ",";
            }
        if (!state.driven.empty())
            line += format_text("%s follows the core at %s", comma, ports_in_short(state.driven).c_str());
        text += line + "\n" + gate_comment(pad, state);
    }
    return text;
}

/// A pad's pin, or a line for the engineer to fill in.
std::string needed_item(const char *keyword, const std::string &pin) {
    return pin.empty() ? format_text("  %-15s ;  // please check: which pin?\n", keyword)
                       : item(keyword, pin);
}

/// True when all of the pad's scanned ports are clocks.
bool serves_clocks_alone(const CHIP_PLAN &plan, const PAD_KIND &pad) {
    bool clocks = false;
    for (const PORT_PLAN &port : plan.ports)
        if (port.pad == &pad && port.use == PORT_SCANNED) {
            if (!port.is_clock)
                return false;
            clocks = true;
        }
    return clocks;
}

std::string pad_block(const CHIP_PLAN &plan, const PAD_KIND &pad) {
    bool is_pair = !pad.pad_minus.empty();
    std::string text = "// " + pad.source + "\n";
    for (const std::string &doubt : pad.doubts)
        text += "// please check: " + doubt + "\n";
    text += std::string(is_pair ? "%DIFFERENTIAL_VOLTAGE " : "%BUFFER ") + pad.cell + "\n{\n";
    switch (pad.use) {
    case USE_INPUT:
        if (serves_clocks_alone(plan, pad))
            text += item("%FUNCTION", "CLOCK", "its ports are clocks: their cells only observe");
        text += needed_item(is_pair ? "%INPUT_P" : "%INPUT", pad.pad);
        text += item("%INPUT_M", pad.pad_minus) + needed_item("%OUTPUT", pad.output);
        break;
    case USE_BIDIRECTIONAL:
        text += item("%FUNCTION", "inout") + needed_item("%INOUT", pad.pad) +
                needed_item("%INPUT", pad.input) + needed_item("%OUTPUT", pad.output);
        break;
    default:
        text += item("%INPUT", pad.input);
        text += needed_item(is_pair ? "%OUTPUT_P" : "%OUTPUT", pad.pad) + item("%OUTPUT_M", pad.pad_minus);
    }
    text += item("%EN_L", pad.enable_low, "drives at 0") + item("%EN_H", pad.enable_high, "drives at 1");
    if ((pad.use == USE_BIDIRECTIONAL || pad.use == USE_THREE_STATE) && pad.enable_low.empty() &&
        pad.enable_high.empty())
        text += needed_item("%EN_H", "");
    return text + pin_comments(plan, pad) + "}\n\n";
}

bool is_in_use(const CHIP_PLAN &plan, const PAD_KIND &pad) {
    return std::any_of(plan.ports.begin(), plan.ports.end(), [&pad](const PORT_PLAN &port) {
        return port.pad == &pad && port.use != PORT_SKIPPED;
    });
}

} // namespace

bool plan_releases_all(const CHIP_PLAN &plan) {
    bool outputs = false;
    for (const PORT_PLAN &port : plan.ports) {
        if (port.use != PORT_SCANNED || std::string_view(port.direction) == "IN" || port.is_clock)
            continue;
        outputs = true;
        if (!port.enable_works)
            return false;
    }
    return outputs;
}

int plan_off_value(const CHIP_PLAN &plan, bool &mixed) {
    int off_at_1 = 0, off_at_0 = 0;
    for (const PORT_PLAN &port : plan.ports)
        if (port.use == PORT_SCANNED && port.pad != nullptr && port.enable_works)
            ++(port.pad->enable_low.empty() || port.pad_word == "PAD_EN_H" ? off_at_0 : off_at_1);
    mixed = off_at_0 > 0 && off_at_1 > 0;
    return off_at_0 + off_at_1 == 0 ? -1 : off_at_1 > off_at_0 ? 1 : 0;
}

std::string draft_lib(const CHIP_PLAN &plan, const CELL_CHOICE &cells) {
    std::string text = "// Library file of " + plan.design +
                       ", drafted by rimkit: which pin of which cell plays which part.\n\n";
    text += tap_block(plan, cells);
    text += "// Boundary cells, from " + cells.source + ".\n";
    if (!cells.doubt.empty())
        text += "// please check: " + cells.doubt + "\n";
    text += cells.blocks + "\n";
    text += "// Pads. Pins that the register does not reach stand as comments, with what the netlist does "
            "with them.\n";
    for (const PAD_KIND &pad : plan.pads)
        if (is_in_use(plan, pad))
            text += pad_block(plan, pad);
    return text;
}
