#include "kit/pads.hh"

#include "kit/chip.hh"
#include "kit/liberty_function.hh"
#include "kit/names.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

std::string listed(const std::vector<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

bool is_supply(const LIBERTY_CELL &cell, const std::string &pin) {
    return kit_is_power_name(pin) ||
           std::find(cell.power_pins.begin(), cell.power_pins.end(), pin) != cell.power_pins.end();
}

const LIBERTY_PIN *find_pin(const LIBERTY_CELL &cell, const std::string &name) {
    auto found = std::find_if(cell.pins.begin(), cell.pins.end(),
                              [&name](const LIBERTY_PIN &pin) { return pin.name == name; });
    return found != cell.pins.end() ? &*found : nullptr;
}

/// The single pin that a function shows, and under which values of the others. Several that do are a doubt.
struct SHOWN_PIN {
    std::string pin;
    bool inverted = false;
    std::vector<LIBERTY_LITERAL> gates;
    std::vector<std::string> condition; ///< pins of a condition that is no list of values
};

/// Looks for `wanted`, or for any pin when it is null, in the function. A pin that stands there ungated wins.
bool find_shown(const LIBERTY_FUNCTION &function, const std::string *wanted, SHOWN_PIN &shown) {
    bool found = false;
    for (const std::string &pin :
         wanted != nullptr ? std::vector<std::string>{*wanted} : liberty_function_pins(function))
        for (LIBERTY_SENSE sense : {LIBERTY_SENSE::DIRECT, LIBERTY_SENSE::INVERTED}) {
            LIBERTY_CONDITION condition = liberty_function_shows(function, pin, sense);
            if (condition.when == LIBERTY_WHEN::NEVER || function.state != LIBERTY_READ::DONE)
                continue;
            int rank_new = 0, rank_old = 0;
            bool better = !found || (kit_pin_habit(pin, false, rank_new) == HABIT_INPUT &&
                                     kit_pin_habit(shown.pin, false, rank_old) != HABIT_INPUT);
            if (!better)
                continue;
            shown = {pin, sense == LIBERTY_SENSE::INVERTED, condition.literals,
                     condition.when == LIBERTY_WHEN::COMPLEX ? condition.pins : std::vector<std::string>{}};
            found = true;
        }
    return found;
}

void add_gates(PAD_KIND &kind, const std::vector<LIBERTY_LITERAL> &gates, bool for_reading) {
    for (const LIBERTY_LITERAL &gate : gates)
        if (!kit_is_power_name(gate.pin))
            kind.gates.push_back({gate.pin, gate.value, for_reading});
}

/// Which core pin shows the pad.
void take_reading_pin(PAD_KIND &kind, const LIBERTY_CELL &cell, const LIBERTY_PIN &pad) {
    std::vector<std::string> others;
    for (const LIBERTY_PIN &pin : cell.pins) {
        if (pin.direction != LIBERTY_DIRECTION::OUTPUT || pin.is_pad || is_supply(cell, pin.name))
            continue;
        SHOWN_PIN shown;
        LIBERTY_FUNCTION function = liberty_function(pin.function);
        bool shows = find_shown(function, &pad.name, shown);
        if (!shows && function.state != LIBERTY_READ::NOTHING)
            continue;
        if (!kind.output.empty()) {
            others.push_back(pin.name);
            continue;
        }
        kind.output = pin.name;
        kind.output_inverted = shown.inverted;
        add_gates(kind, shown.gates, true);
        if (!shown.condition.empty())
            kind.doubts.push_back("the pad is read while " + listed(shown.condition) + " let it: \"" +
                                  pin.function + "\"");
        if (!shows)
            kind.doubts.push_back(pin.name + " has no function in Liberty: is it what the pad reads?");
    }
    if (!others.empty())
        kind.doubts.push_back("the pad is read by " + listed(others) + " as well as by " + kind.output);
    if (kind.output_inverted)
        kind.doubts.push_back(kind.output +
                              " is the inverse of the pad: the register sees the inverse of the pin");
}

/// True when the function is true wherever its name `name` has that value, whatever the others are.
bool is_true_by(const LIBERTY_FUNCTION &function, size_t name, bool value) {
    for (size_t i = 0; i < size_t{1} << function.names.size(); ++i)
        if ((i >> name & 1) == (value ? 1 : 0) && (function.table[i / 64] >> (i % 64) & 1) == 0)
            return false;
    return true;
}

/// The enables in the expression that releases the pad: pins that can switch it off alone. The one that is
/// called like an enable is what a control cell holds; of any others, the first.
void take_enables(PAD_KIND &kind, const LIBERTY_PIN &pad) {
    LIBERTY_FUNCTION off = liberty_function(pad.three_state);
    std::vector<std::string> pins = liberty_function_pins(off);
    if (pins.empty()) {
        if (liberty_function_true_when_any(off).when == LIBERTY_WHEN::ALWAYS)
            kind.doubts.emplace_back("Liberty says that the pad never drives");
        return;
    }
    std::vector<LIBERTY_LITERAL> literals;
    for (size_t name = 0; off.state == LIBERTY_READ::DONE && name < off.names.size(); ++name)
        for (bool value : {false, true})
            if (is_true_by(off, name, value))
                literals.push_back({off.names[name], value});
    if (literals.empty()) {
        kind.doubts.push_back("its enable is an expression of " + listed(pins) + ": \"" + pad.three_state +
                              "\"; a control cell can hold one pin");
        return;
    }
    std::stable_partition(literals.begin(), literals.end(), [](const LIBERTY_LITERAL &literal) {
        int rank = 0;
        return kit_pin_habit(literal.pin, false, rank) == (literal.value ? HABIT_EN_LOW : HABIT_EN_HIGH);
    });
    for (const LIBERTY_LITERAL &literal : literals) {
        std::string &enable = literal.value ? kind.enable_low : kind.enable_high;
        if (enable.empty())
            enable = literal.pin;
        else
            kind.gates.push_back({literal.pin, !literal.value, false});
    }
    if (pins.size() > 1)
        kind.doubts.push_back("the pad is off when \"" + pad.three_state + "\" is true: the pins beside " +
                              literals[0].pin + " have to let it drive in test");
}

/// Which core pin drives the pad.
void take_driving_pin(PAD_KIND &kind, const LIBERTY_PIN &pad) {
    LIBERTY_FUNCTION function = liberty_function(pad.function);
    if (function.state == LIBERTY_READ::BAD || function.state == LIBERTY_READ::TOO_WIDE) {
        kind.doubts.push_back("its function can't be read: \"" + pad.function + "\"");
        return;
    }
    SHOWN_PIN shown;
    if (find_shown(function, nullptr, shown)) {
        kind.input = shown.pin;
        kind.input_inverted = shown.inverted;
        add_gates(kind, shown.gates, false);
        if (!shown.condition.empty())
            kind.doubts.push_back("it drives " + kind.input + " while " + listed(shown.condition) +
                                  " let it: \"" + pad.function + "\"");
        if (kind.input_inverted)
            kind.doubts.push_back("the pad drives the inverse of " + kind.input +
                                  ", and so does the register");
    } else if (!liberty_function_pins(function).empty()) {
        kind.doubts.push_back("what it drives is an expression: \"" + pad.function + "\"");
    }
    take_enables(kind, pad);
}

/// The other leg of a differential pad: the one that Liberty names, or a second pad pin that shows or drives
/// the inverse of what the first does.
const LIBERTY_PIN *minus_leg(const LIBERTY_CELL &cell, const LIBERTY_PIN &plus) {
    if (const LIBERTY_PIN *named = find_pin(cell, plus.complementary); named != nullptr)
        return named;
    SHOWN_PIN plus_shows, minus_shows;
    for (const LIBERTY_PIN &pin : cell.pins) {
        if (!pin.is_pad || pin.name == plus.name)
            continue;
        bool both_drive = find_shown(liberty_function(plus.function), nullptr, plus_shows) &&
                          find_shown(liberty_function(pin.function), nullptr, minus_shows);
        if (both_drive && plus_shows.pin == minus_shows.pin && plus_shows.inverted != minus_shows.inverted)
            return &pin;
        for (const LIBERTY_PIN &out : cell.pins) {
            LIBERTY_FUNCTION function = liberty_function(out.function);
            if (out.direction == LIBERTY_DIRECTION::OUTPUT && find_shown(function, &plus.name, plus_shows) &&
                find_shown(function, &pin.name, minus_shows) && plus_shows.inverted != minus_shows.inverted)
                return &pin;
        }
    }
    return nullptr;
}

bool is_constant(const std::string &function) {
    LIBERTY_FUNCTION read = liberty_function(function);
    return read.state == LIBERTY_READ::DONE && liberty_function_pins(read).empty();
}

bool has_core_pin(const LIBERTY_CELL &cell) {
    return std::any_of(cell.pins.begin(), cell.pins.end(), [&cell](const LIBERTY_PIN &pin) {
        return !pin.is_pad && !is_supply(cell, pin.name) &&
               (pin.direction == LIBERTY_DIRECTION::INPUT || pin.direction == LIBERTY_DIRECTION::OUTPUT);
    });
}

PAD_USE use_of(const PAD_KIND &kind, bool drives) {
    bool has_enable = !kind.enable_low.empty() || !kind.enable_high.empty();
    if (drives && !kind.output.empty())
        return USE_BIDIRECTIONAL;
    return !drives ? USE_INPUT : has_enable ? USE_THREE_STATE : USE_OUTPUT;
}

void take_other_pins(PAD_KIND &kind, const std::vector<std::string> &inputs) {
    for (const std::string &pin : inputs)
        if (pin != kind.input && pin != kind.enable_low && pin != kind.enable_high && pin != kind.pad &&
            pin != kind.pad_minus)
            kind.others.push_back(pin);
}

} // namespace

PAD_KIND pad_kind_of_liberty(const LIBERTY &library, const LIBERTY_CELL &cell) {
    PAD_KIND kind;
    kind.cell = cell.name;
    kind.source = format_text("%s:%d", library.files[static_cast<size_t>(cell.file)].c_str(), cell.line);
    auto pad =
        std::find_if(cell.pins.begin(), cell.pins.end(), [](const LIBERTY_PIN &pin) { return pin.is_pad; });
    if (pad == cell.pins.end())
        return kind;
    kind.pad = pad->name;
    if (!has_core_pin(cell)) {
        bool is_power = kit_is_power_name(pad->name) || is_constant(pad->function);
        kind.use = is_power ? USE_POWER : USE_ANALOG;
        return kind;
    }
    if (const LIBERTY_PIN *minus = minus_leg(cell, *pad); minus != nullptr)
        kind.pad_minus = minus->name;
    bool drives =
        pad->direction != LIBERTY_DIRECTION::INPUT &&
        (!pad->function.empty() || !pad->three_state.empty() || pad->direction == LIBERTY_DIRECTION::OUTPUT);
    if (pad->direction != LIBERTY_DIRECTION::OUTPUT)
        take_reading_pin(kind, cell, *pad);
    if (drives)
        take_driving_pin(kind, *pad);
    kind.use = use_of(kind, drives);
    if (kind.use == USE_INPUT && kind.output.empty())
        kind.use = USE_ANALOG; // neither read nor driven
    std::vector<std::string> inputs;
    for (const LIBERTY_PIN &pin : cell.pins)
        if (pin.direction == LIBERTY_DIRECTION::INPUT && !is_supply(cell, pin.name))
            inputs.push_back(pin.name);
    take_other_pins(kind, inputs);
    return kind;
}

bool looks_like_pad(int32_t class_id, const std::string &pin) {
    std::string cell = lower_case(chip_class_name(class_id)), low = lower_case(pin);
    if (low.find("pad") != low.npos)
        return true;
    for (std::string_view word : {"pad", "_io_", "iobuf", "ibuf", "obuf"})
        if (cell.find(word) != cell.npos)
            return true;
    return false;
}

namespace {

/// The pins of a class, of which the supplies and other pins of both directions say nothing.
struct CLASS_PINS {
    std::vector<std::string> inputs, outputs;
    SDB_DIRECTION pad_direction = SDB_INPUT;
};

CLASS_PINS pins_of_class(int32_t class_id, const std::string &pad_pin) {
    CLASS_PINS pins;
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        std::string name = chip_pin_name(pin);
        SDB_DIRECTION direction = chip_pin_direction(pin);
        if (name == pad_pin)
            pins.pad_direction = direction;
        else if (!kit_is_power_name(name) && direction != SDB_BIDIRECTIONAL)
            (direction == SDB_OUTPUT ? pins.outputs : pins.inputs).push_back(name);
    }
    return pins;
}

/// Takes the pins with the surest names.
void take_named_pins(PAD_KIND &kind, const CLASS_PINS &pins) {
    int best[HABIT_EN_HIGH + 1];
    std::fill(std::begin(best), std::end(best), INT32_MAX);
    std::string found[HABIT_EN_HIGH + 1];
    for (bool is_output : {false, true})
        for (const std::string &name : is_output ? pins.outputs : pins.inputs) {
            int rank = 0;
            PIN_HABIT habit = kit_pin_habit(name, is_output, rank);
            if (habit != HABIT_NONE && rank < best[habit]) {
                best[habit] = rank;
                found[habit] = name;
            }
        }
    kind.input = found[HABIT_INPUT];
    kind.output = found[HABIT_OUTPUT];
    kind.enable_low = found[HABIT_EN_LOW];
    kind.enable_high = kind.enable_low.empty() ? found[HABIT_EN_HIGH] : "";
    bool is_tie = true;
    for (size_t i = 0; kind.output.empty() && is_tie && i < pins.outputs.size(); ++i) {
        is_tie = lower_case(pins.outputs[i]).compare(0, 3, "tie") == 0;
        kind.output = is_tie ? "" : pins.outputs[i];
    }
    if (pins.pad_direction == SDB_INPUT || kind.input.empty())
        kind.input = kind.enable_low = kind.enable_high = "";
    if (pins.pad_direction == SDB_OUTPUT)
        kind.output.clear();
}

/// "driven by A, read by Y, on while high: OE".
std::string parts_of(const PAD_KIND &kind) {
    std::string text;
    for (const auto &[words, pin] :
         {std::pair{"driven by ", kind.input}, std::pair{"read by ", kind.output},
          std::pair{"on while low: ", kind.enable_low}, std::pair{"on while high: ", kind.enable_high}})
        text += pin.empty() ? "" : (text.empty() ? "" : ", ") + std::string(words) + pin;
    return text;
}

/// The class as a Liberty cell without functions.
LIBERTY_CELL cell_of_class(int32_t class_id, const std::string &pad_pin) {
    LIBERTY_CELL cell;
    cell.name = chip_class_name(class_id);
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        LIBERTY_PIN row;
        row.name = chip_pin_name(pin);
        SDB_DIRECTION direction = chip_pin_direction(pin);
        row.direction = direction == SDB_INPUT    ? LIBERTY_DIRECTION::INPUT
                        : direction == SDB_OUTPUT ? LIBERTY_DIRECTION::OUTPUT
                                                  : LIBERTY_DIRECTION::INOUT;
        row.is_pad = row.name == pad_pin;
        cell.pins.push_back(row);
    }
    return cell;
}

bool is_complete(const PAD_KIND &kind) {
    bool has_enable = !kind.enable_low.empty() || !kind.enable_high.empty();
    return kind.use == USE_BIDIRECTIONAL ? !kind.input.empty() && !kind.output.empty() && has_enable
                                         : !kind.input.empty() || !kind.output.empty();
}

} // namespace

PAD_KIND guessed_pad_kind(int32_t class_id, const std::string &pad_pin,
                          const std::unordered_map<std::string, VERILOG_MODEL> &models) {
    PAD_KIND kind;
    kind.cell = chip_class_name(class_id);
    kind.pad = pad_pin;
    CLASS_PINS pins = pins_of_class(class_id, pad_pin);
    if (kit_is_power_name(pad_pin) || (pins.inputs.empty() && pins.outputs.empty())) {
        kind.use = kit_is_power_name(pad_pin) || kit_is_power_name(kind.cell) ? USE_POWER : USE_ANALOG;
        return kind;
    }
    LIBERTY_CELL cell = cell_of_class(class_id, pad_pin);
    auto model = models.find(kind.cell);
    if (model != models.end() && take_verilog_model(cell, model->second)) {
        LIBERTY library;
        library.files.push_back(model->second.file);
        PAD_KIND shown = pad_kind_of_liberty(library, cell);
        if (is_complete(shown)) {
            shown.source = "no Liberty file describes this cell: guessed from its Verilog model in " +
                           model->second.file;
            shown.doubts.insert(shown.doubts.begin(), "is the pad " + parts_of(shown) + "?");
            return shown;
        }
    }
    take_named_pins(kind, pins);
    kind.use = use_of(kind, !kind.input.empty());
    kind.source = "no Liberty file describes this cell: guessed from the directions and names of its pins";
    kind.doubts.push_back("is the pad " + parts_of(kind) + "?");
    take_other_pins(kind, pins.inputs);
    return kind;
}

bool pad_describes(const BUFFER_CELL &pad, const std::string &pin) {
    for (const char *named :
         {pad.input, pad.output, pad.inout, pad.input_m, pad.output_m, pad.en_l, pad.en_h, pad.mux_in1,
          pad.mux_in2, pad.mux_in3, pad.mux_out, pad.mode_1, pad.mode_2, pad.mode_3})
        if (same_text_no_case(named, pin.c_str()))
            return true;
    return false;
}

const PAD_KIND *known_pad_kind(KNOWN_PADS &kinds, const LIBERTY &library, const std::string &cell) {
    auto entry = library.cells.find(cell);
    if (entry == library.cells.end())
        return nullptr;
    auto [place, is_new] = kinds.try_emplace(cell);
    if (is_new)
        place->second = pad_kind_of_liberty(library, entry->second);
    return &place->second;
}
