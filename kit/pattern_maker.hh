// What the making of the steps works with: the register's pins and cells, sorted once. Private to
// kit/pattern_*.cc.
#pragma once

#include "kit/patterns.hh"

#include <string>
#include <vector>

struct STEP_MAKER {
    PATTERN_LIST &list;
    const BOUNDARY_REGISTER &found;
    const BSDL_FILE &table;
    std::vector<int32_t> outputs{}, controls{}; ///< cells
    std::vector<bool> straight{};               ///< by cell: reads one port and drives another
    std::vector<bool> has_row{},
        has_control{};                   ///< by port: a row of the register, one that a control cell holds
    std::vector<int32_t> code_of_port{}; ///< number among the pins that are driven, or -1
    size_t code_bits = 1;
    std::string drive{}; ///< what the pins have now
    uint32_t seed = 1;
    int32_t rule = 0; ///< of the steps that are made now

    bool random_bit() {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        return (seed >> 7 & 1) != 0;
    }
    std::string random_bits(size_t count) {
        std::string bits;
        while (bits.size() < count)
            bits += random_bit() ? '1' : '0';
        return bits;
    }
    size_t cells() const {
        return found.cells.size();
    }
};

inline char turned(char value, bool turn = true) {
    return turn && value == '0' ? '1' : turn && value == '1' ? '0' : value;
}

inline char digit(bool value) {
    return value ? '1' : '0';
}

inline bool is_driven(char drive) {
    return drive == '0' || drive == '1';
}

/// A pad's own resistor may win against the bench, or not be modelled: only its own value is sure then.
inline char released(const PATTERN_PIN &pin) {
    return pin.pull == '1' ? 'h' : pin.pull == '0' ? 'l' : pin.pull;
}

inline bool is_released(char shown) {
    return shown == 'z' || shown == 'h' || shown == 'l';
}

inline bool drives(const REGISTER_ROW &row) {
    return row.port >= 0 && (row.kind == ROW_OUTPUT2 || row.kind == ROW_OUTPUT3 || row.kind == ROW_BIDIR ||
                             row.kind == ROW_OPEN);
}

/// True when the cell captures the pin in every type that the row can have.
inline bool reads(const STEP_MAKER &maker, const REGISTER_ROW &row) {
    bool has_way = row.kind == ROW_INPUT || row.kind == ROW_CLOCK || row.kind == ROW_OBSERVE ||
                   (row.kind == ROW_BIDIR && row.inverters % 2 == 0);
    return row.port >= 0 && has_way && !maker.straight[static_cast<size_t>(row.cell)];
}

inline PATTERN_PIN &pin_of(STEP_MAKER &maker, int32_t port) {
    return maker.list.pins[static_cast<size_t>(port)];
}

/// Fill list.pins, list.cells, and the maker's own lists, in this order.
void take_pins(STEP_MAKER &maker);
void take_cells(STEP_MAKER &maker);
void sort_cells(STEP_MAKER &maker);

// The steps. Each adds to list.steps, with the maker's rule; a step of the instruction register has its own.
PATTERN_STEP &add_step(STEP_MAKER &maker, PATTERN_KIND kind, const std::string &reason);
/// Loads an instruction of the table by its first opcode; false when there is none.
bool load(STEP_MAKER &maker, const char *name);
/// Loads the opcode under that name.
void load_code(STEP_MAKER &maker, const std::string &name, const std::string &opcode);
PATTERN_STEP &scan(STEP_MAKER &maker, const std::string &reason, const std::string &tdi,
                   const std::string &tdo);
/// Sets the pins to what the maker has for them, and looks at them.
void set_pins(STEP_MAKER &maker, const std::string &reason, const std::string &shown);
/// New values for the pins: bit `number` of a count over them.
void count_pins(STEP_MAKER &maker, size_t number, const std::string &shown);

/// What the pins show while the register has them and holds `pattern`.
std::string shown_by(const STEP_MAKER &maker, const std::string &pattern);
/// Gives the minus legs the complement of their plus legs.
void complete_minus_legs(const STEP_MAKER &maker, std::string &pins);
/// The pattern with all pads off.
std::string safe_pattern(const STEP_MAKER &maker);
/// What the register of an instruction captures; empty for one whose length nobody knows.
std::string captured_code(const STEP_MAKER &maker, const BSDL_INSTRUCTION &row);
/// The instruction that a reset selects.
const BSDL_INSTRUCTION &reset_instruction(const STEP_MAKER &maker);

/// Steps for rules that the patterns of a tester leave open: all arcs of the TAP, TRST with TCK stopped, what
/// reset makes of the control cells, a scan between PRELOAD and EXTEST, RUNBIST, open inputs. For the bench
/// alone.
void try_rules(STEP_MAKER &maker, const std::string &pads_on);
