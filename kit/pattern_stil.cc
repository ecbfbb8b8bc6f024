// STIL of the steps, IEEE 1450, for a tester that has all pins: flat vectors, of which each names the signals
// that change. Pins change at the start of a period, outputs are looked at just before TCK rises in its
// middle.
//
// A released pin is compared with the tester's own middle level. What a weak value on it would tell stays
// with the bench, and so do bits that are compared with what a pin has at Capture-DR.
#include "kit/patterns.hh"

#include "support/text.hh"

#include <algorithm>

namespace {

constexpr STANDARD_PORT TEST_GROUP[] = {PORT_TCK, PORT_TMS, PORT_TDI, PORT_TDO}; // group t, in this order

struct STIL_WRITER {
    const PATTERN_LIST &list;
    std::string text{};
    std::string pins{}; ///< what group p has now: a letter per pin id

    const PATTERN_PIN &test_pin(STANDARD_PORT port) const {
        return list.pins[static_cast<size_t>(list.test_ports[port])];
    }
};

std::string stil_name(const std::string &name) {
    return "\"" + name + "\"";
}

bool is_in_group(const PATTERN_PIN &pin) {
    return pin.role != PIN_LEFT && pin.role != PIN_TEST;
}

std::string group_letters(const STIL_WRITER &writer) {
    std::string letters;
    for (size_t i = 0; i < writer.pins.size(); ++i)
        if (is_in_group(writer.list.pins[i]))
            letters += writer.pins[i];
    return letters;
}

void add_vector(STIL_WRITER &writer, char tck, char tms, char tdi, char tdo, bool with_pins = false) {
    writer.text += "V{t=";
    writer.text += {tck, tms, tdi, tdo};
    writer.text += with_pins ? ";p=" + group_letters(writer) + ";}\n" : ";}\n";
}

/// Pins that the update may turn on are let go behind Capture-DR.
void release_pins(STIL_WRITER &writer) {
    for (size_t i = 0; i < writer.pins.size(); ++i)
        if (writer.list.pins[i].role == PIN_BOTH)
            writer.pins[i] = 'X';
}

/// From Run-Test/Idle and back, with a stop in Pause-DR where the step has one.
void add_scan(STIL_WRITER &writer, const PATTERN_STEP &step) {
    const std::string &right = step.driven.empty() ? step.tdo : step.driven;
    add_vector(writer, 'P', '1', '1', 'X');
    if (step.kind == STEP_IR)
        add_vector(writer, 'P', '1', '1', 'X');
    add_vector(writer, 'P', '0', '1', 'X');
    release_pins(writer);
    add_vector(writer, 'P', '0', '1', 'X', true);
    for (size_t i = 0; i < step.tdi.size(); ++i) {
        bool stops = static_cast<int32_t>(i) + 1 == step.pause && i + 1 < step.tdi.size();
        char seen = right[i] == '0' ? 'L' : right[i] == '1' ? 'H' : 'X';
        add_vector(writer, 'P', i + 1 == step.tdi.size() || stops ? '1' : '0', step.tdi[i], seen);
        for (size_t k = 0; stops && k < 3; ++k) // to Pause-DR, on to Exit2-DR, and back
            add_vector(writer, 'P', "010"[k], '1', 'X');
    }
    add_vector(writer, 'P', '1', '1', 'X');
    add_vector(writer, 'P', '0', '1', 'X');
    add_vector(writer, '0', '0', '1', 'X');
}

/// What a pin shows, and what is driven where nothing is to be seen.
char letter_of(const PATTERN_PIN &pin, char drive, char shown, bool is_held) {
    bool drives = drive == '0' || drive == '1';
    if (pin.role == PIN_DRIVEN)
        return drives ? drive : 'X';
    if (pin.role == PIN_BOTH && is_held && drives)
        return drive;
    switch (shown) {
    case '0':
    case 'l':
        return 'L';
    case '1':
    case 'h':
        return 'H';
    case 'z':
        return 'T';
    }
    return 'X';
}

/// Once with the pins that the chip may drive left alone, once with what they get.
void add_pins(STIL_WRITER &writer, const PATTERN_STEP &step) {
    for (bool is_held : {false, true}) {
        for (size_t i = 0; i < writer.pins.size(); ++i)
            writer.pins[i] = letter_of(writer.list.pins[i], step.drive[i],
                                       step.shown.empty() ? '-' : step.shown[i], is_held);
        add_vector(writer, '0', '0', '1', 'X', true);
    }
}

void add_reset(STIL_WRITER &writer, const PATTERN_STEP &step) {
    if (step.kind == STEP_TRST)
        for (char value : {'0', '1'})
            writer.text += "V{t=011X;" + stil_name(writer.test_pin(PORT_TRST).name) + "=" + value + ";}\n";
    else
        for (int i = 0; i < 5; ++i)
            add_vector(writer, 'P', '1', '1', 'X');
    add_vector(writer, 'P', '0', '1', 'X');
    add_vector(writer, '0', '0', '1', 'X');
}

std::string sum_of(const std::vector<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : "+") + stil_name(name);
    return "'" + text + "'";
}

std::string head_text(const STIL_WRITER &writer) {
    const PATTERN_LIST &list = writer.list;
    std::vector<std::string> tests, others;
    for (STANDARD_PORT port : TEST_GROUP)
        tests.push_back(writer.test_pin(port).name);
    std::string signals;
    for (size_t i = 0; i < list.pins.size(); ++i) {
        const PATTERN_PIN &pin = list.pins[i];
        bool is_output = pin.role == PIN_SEEN || list.test_ports[PORT_TDO] == static_cast<int32_t>(i);
        if (pin.role == PIN_LEFT)
            continue;
        signals += "    " + stil_name(pin.name) +
                   (is_output              ? " Out;\n"
                    : pin.role == PIN_BOTH ? " InOut;\n"
                                           : " In;\n");
        if (is_in_group(pin))
            others.push_back(pin.name);
    }
    std::vector<std::string> all = tests;
    if (list.test_ports[PORT_TRST] >= 0)
        all.push_back(writer.test_pin(PORT_TRST).name);
    all.insert(all.end(), others.begin(), others.end());
    auto at = [&list](double part) { return format_text("'%.3fns'", 1e9 / list.frequency * part); };
    return "STIL 1.0;\nHeader { Title \"Test patterns of " + list.design +
           "\"; Source \"rimkit, from the final netlist\"; }\nSignals {\n" + signals +
           "}\nSignalGroups {\n    t = " + sum_of(tests) + ";\n    p = " + sum_of(others) +
           ";\n    all = " + sum_of(all) + ";\n}\nTiming { WaveformTable wave {\n    Period " + at(1) +
           ";\n    Waveforms {\n        all { 01 { '0ns' D/U; } }\n        all { LHTX { '0ns' Z; " +
           at(0.45) + " L/H/T/X; } }\n        " + stil_name(tests[0]) + " { P { '0ns' D; " + at(0.5) +
           " U; } }\n    }\n} }\nPatternBurst burst { PatList { tests; } }\nPatternExec { PatternBurst "
           "burst; }\n";
}

} // namespace

std::string pattern_stil(const PATTERN_LIST &list) {
    STIL_WRITER writer{.list = list};
    for (const PATTERN_PIN &pin : list.pins)
        writer.pins += pin.role == PIN_DRIVEN ? (pin.held != '-' ? pin.held : '0') : 'X';
    writer.text = head_text(writer) + "Pattern tests {\nW wave;\n";
    if (list.test_ports[PORT_TRST] >= 0)
        writer.text +=
            "V{" + stil_name(writer.test_pin(PORT_TRST).name) + "=1;t=011X;p=" + group_letters(writer) + ";}\n";
    else
        add_vector(writer, '0', '1', '1', 'X', true);
    for (size_t i = 0; i < list.steps.size(); ++i) {
        const PATTERN_STEP &step = list.steps[i];
        writer.text += format_text("Ann {* step %zu: %s *}\n", i, step.reason.c_str());
        switch (step.kind) {
        case STEP_RESET:
        case STEP_TRST:
            add_reset(writer, step);
            break;
        case STEP_IR:
        case STEP_DR:
            add_scan(writer, step);
            break;
        case STEP_PINS:
            if (!step.is_note) // a chip that is otherwise is no bad chip
                add_pins(writer, step);
            break;
        case STEP_WALK: // both end where they began
        case STEP_OPEN:
            break;
        }
    }
    return writer.text + "}\n";
}
