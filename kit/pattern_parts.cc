// The parts of which a session is made: single steps, and what the pins and cells have to show.
//
// A row promises what every type of cell for its function does: an input captures its pin, an output shows
// its update stage while EXTEST has the pins, SAMPLE takes what the core gives. What types differ in (an
// output's capture in EXTEST, say) is not looked at. Pins that the register holds off are driven, all others
// pulled.
#include "kit/pattern_maker.hh"

#include "kit/chip.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

// ---- what to expect -----------------------------------------------------------------------------------

/// What an open drain or source shows while it is on.
char open_value(const STEP_MAKER &maker, const REGISTER_ROW &row) {
    const WALK_PAD_ROW &pad = maker.found.walk.pads[static_cast<size_t>(row.pad)];
    WALK_POINT data = walk_back(maker.found.walk, walk_pin(pad.obj, pad.core_in));
    if (data.end == WALK_ZERO || data.end == WALK_ONE)
        return digit((data.end == WALK_ONE) != (data.inverters % 2 != 0));
    return 'd';
}

} // namespace

void complete_minus_legs(const STEP_MAKER &maker, std::string &pins) {
    for (size_t i = 0; i < pins.size(); ++i)
        if (int32_t plus = maker.list.pins[i].minus_of; plus >= 0)
            pins[i] = turned(pins[static_cast<size_t>(plus)]);
}

/// What the pins show while the register has them and holds `pattern`.
std::string shown_by(const STEP_MAKER &maker, const std::string &pattern) {
    std::string shown(maker.list.pins.size(), '-');
    for (const REGISTER_ROW &row : maker.found.rows) {
        if (!drives(row))
            continue;
        const PATTERN_PIN &pin = maker.list.pins[static_cast<size_t>(row.port)];
        char &at = shown[static_cast<size_t>(row.port)];
        char value = turned(pattern[static_cast<size_t>(row.cell)], row.inverters % 2 != 0);
        if (row.control >= 0 && pattern[static_cast<size_t>(row.control)] == digit(row.disable != 0))
            at = released(pin);
        else if (maker.found.ports[static_cast<size_t>(row.port)].follows_core || pin.role == PIN_LEFT)
            at = '-';
        else
            at = row.kind == ROW_OPEN ? open_value(maker, row) : value;
    }
    complete_minus_legs(maker, shown);
    return shown;
}

// ---- single steps -------------------------------------------------------------------------------------

PATTERN_STEP &add_step(STEP_MAKER &maker, PATTERN_KIND kind, const std::string &reason) {
    maker.list.steps.push_back({kind, reason, {}, {}, {}, {}, {}});
    maker.list.steps.back().rule = kind == STEP_IR ? RULE_INSTRUCTION : maker.rule;
    return maker.list.steps.back();
}

void load_code(STEP_MAKER &maker, const std::string &name, const std::string &opcode) {
    PATTERN_STEP &step = add_step(maker, STEP_IR, "load " + name);
    step.tdi.assign(opcode.rbegin(), opcode.rend());
    step.tdo.assign(maker.table.capture.rbegin(), maker.table.capture.rend());
    std::replace(step.tdo.begin(), step.tdo.end(), 'X', '-');
}

bool load(STEP_MAKER &maker, const char *name) {
    const BSDL_INSTRUCTION *row = bsdl_instruction(maker.table, name);
    if (row == nullptr)
        return false;
    load_code(maker, name, row->opcodes[0]);
    return true;
}

PATTERN_STEP &scan(STEP_MAKER &maker, const std::string &reason, const std::string &tdi,
                   const std::string &tdo) {
    PATTERN_STEP &step = add_step(maker, STEP_DR, reason);
    step.tdi = tdi;
    step.tdo = tdo;
    return step;
}

/// Sets the pins and looks at them. The complement of each differential pin follows.
void set_pins(STEP_MAKER &maker, const std::string &reason, const std::string &shown) {
    complete_minus_legs(maker, maker.drive);
    PATTERN_STEP &step = add_step(maker, STEP_PINS, reason);
    step.drive = maker.drive;
    step.shown = shown;
    step.needs_pins = true;
}

/// New values on the pins: the bit `number` of a count over them, so that no two stay equal for long.
void count_pins(STEP_MAKER &maker, size_t number, const std::string &shown) {
    for (size_t i = 0; i < maker.drive.size(); ++i) {
        const PATTERN_PIN &pin = maker.list.pins[i];
        maker.drive[i] = 'z';
        if (pin.held != '-') {
            maker.drive[i] = pin.held;
        } else if (maker.code_of_port[i] >= 0 && (pin.role == PIN_DRIVEN || is_released(shown[i]))) {
            size_t code = static_cast<size_t>(maker.code_of_port[i]) + 1;
            bool turn = (number / maker.code_bits) % 2 != 0;
            maker.drive[i] = digit(((code >> (number % maker.code_bits) & 1) != 0) != turn);
        }
    }
}

// ---- the register under test --------------------------------------------------------------------------

std::string safe_pattern(const STEP_MAKER &maker) {
    std::string pattern(maker.cells(), '0');
    std::vector<int32_t> votes(maker.cells());
    for (const REGISTER_ROW &row : maker.found.rows)
        if (row.control >= 0)
            votes[static_cast<size_t>(row.control)] += row.disable != 0 ? 1 : -1;
    for (int32_t cell : maker.controls)
        pattern[static_cast<size_t>(cell)] = digit(votes[static_cast<size_t>(cell)] >= 0);
    return pattern;
}

// ---- the registers ------------------------------------------------------------------------------------

namespace {

std::string code_bits(const std::string &code) {
    std::string bits(code.rbegin(), code.rend());
    std::replace(bits.begin(), bits.end(), 'X', '-');
    return bits;
}

} // namespace

std::string captured_code(const STEP_MAKER &maker, const BSDL_INSTRUCTION &row) {
    if (row.access == "BYPASS")
        return "0";
    if (row.access == "BOUNDARY")
        return std::string(maker.cells(), '-');
    if (row.access != "DEVICE_ID")
        return std::string(static_cast<size_t>(row.length), '-');
    if (row.name == "IDCODE")
        return code_bits(maker.table.idcode);
    return maker.table.usercodes.size() == 1 ? code_bits(maker.table.usercodes[0]) : std::string(32, '-');
}

const BSDL_INSTRUCTION &reset_instruction(const STEP_MAKER &maker) {
    for (const char *word : {"IDCODE", "USERCODE"})
        if (const BSDL_INSTRUCTION *row = bsdl_instruction(maker.table, word);
            row != nullptr && row->access == "DEVICE_ID")
            return *row;
    return *bsdl_instruction(maker.table, "BYPASS");
}
