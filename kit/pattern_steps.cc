// The session: what is loaded, what the pins get, and what has to come out of it, from parts that each
// promise what every type of cell does.
#include "kit/pattern_maker.hh"

#include "kit/chip.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

constexpr int SAMPLE_ROUNDS = 12, SAMPLE_CHANGES = 6; // scans, and new values on the pins ahead of each
constexpr size_t MARKER = 16; // bits behind a register's own, which come out again and prove its length

/// Letters for the cells that read pins: into `tdo` what the chip itself makes of the pin, into `driven` all.
void expect_reading(const STEP_MAKER &maker, const std::string &shown, std::string &tdo,
                    std::string &driven) {
    for (const REGISTER_ROW &row : maker.found.rows) {
        if (!reads(maker, row))
            continue;
        auto port = static_cast<size_t>(row.port), cell = static_cast<size_t>(row.cell);
        PATTERN_ROLE role = maker.list.pins[port].role;
        bool turn = row.inverters % 2 != 0;
        if (role != PIN_DRIVEN && (shown[port] == '0' || shown[port] == '1'))
            tdo[cell] = driven[cell] = turned(shown[port], turn);
        else if (role == PIN_DRIVEN ||
                 (role == PIN_BOTH && is_released(shown[port]) && is_driven(maker.drive[port])))
            driven[cell] = turned(maker.drive[port], turn);
        else if (role == PIN_SEEN || role == PIN_BOTH)
            driven[cell] = 'p';
    }
}

struct NAMED_PATTERN {
    std::string name, bits;
};

/// The walking patterns over some cells: each alone, the others at `rest`.
void add_walk(std::vector<NAMED_PATTERN> &patterns, const STEP_MAKER &maker, const std::string &start,
              const std::vector<int32_t> &numbers, const std::string &what) {
    for (size_t i = 0; i < numbers.size() && i < maker.list.walk_limit; ++i) {
        auto cell = static_cast<size_t>(numbers[i]);
        std::string bits = start;
        bits[cell] = turned(bits[cell]);
        patterns.push_back({what + ", " + maker.list.cells[cell].name, bits});
    }
}

/// Bit after bit of a count over the cells, and its complement: tells any two apart, in 2 log n patterns.
void add_counts(std::vector<NAMED_PATTERN> &patterns, const std::string &start,
                const std::vector<int32_t> &numbers, const std::string &what) {
    for (size_t bit = 0; (numbers.size() + 1) >> bit != 0; ++bit)
        for (bool turn : {false, true}) {
            std::string bits = start;
            for (size_t i = 0; i < numbers.size(); ++i)
                bits[static_cast<size_t>(numbers[i])] = digit((((i + 1) >> bit & 1) != 0) != turn);
            patterns.push_back(
                {format_text("%s, bit %zu of a count%s", what.c_str(), bit, turn ? ", turned" : ""), bits});
        }
}

/// The patterns of EXTEST, in their order.
std::vector<NAMED_PATTERN> extest_patterns(const STEP_MAKER &maker) {
    std::string off = safe_pattern(maker), on[2] = {off, off};
    for (int32_t cell : maker.controls)
        for (std::string &bits : on)
            bits[static_cast<size_t>(cell)] = turned(off[static_cast<size_t>(cell)]);
    std::vector<int32_t> data; // outputs that are no enable
    for (int32_t cell : maker.outputs)
        if (std::find(maker.controls.begin(), maker.controls.end(), cell) == maker.controls.end()) {
            data.push_back(cell);
            on[0][static_cast<size_t>(cell)] = '0';
            on[1][static_cast<size_t>(cell)] = '1';
        }
    std::vector<NAMED_PATTERN> patterns = {
        {"pads off", off}, {"pads on, all 0", on[0]}, {"pads on, all 1", on[1]}};
    patterns.push_back({"every cell 0", std::string(maker.cells(), '0')});
    patterns.push_back({"every cell 1", std::string(maker.cells(), '1')});
    add_counts(patterns, on[0], data, "data");
    add_walk(patterns, maker, on[0], data, "walking 1");
    add_walk(patterns, maker, on[1], data, "walking 0");
    for (bool value : {false, true}) {
        std::string alone = on[value];
        for (int32_t cell : maker.controls)
            alone[static_cast<size_t>(cell)] = off[static_cast<size_t>(cell)];
        std::string what = value ? ", data 1" : ", data 0";
        add_counts(patterns, on[value], maker.controls, "enables" + what);
        add_walk(patterns, maker, alone, maker.controls, "one enable on" + what);
        add_walk(patterns, maker, on[value], maker.controls, "one enable off" + what);
    }
    return patterns;
}

void note_cover(STEP_MAKER &maker, const std::string &shown, const std::string &tdo,
                const std::string &driven, int32_t pins_step, int32_t scan_step) {
    auto first = [](int32_t &at, int32_t step) { at = at < 0 ? step : at; };
    for (size_t i = 0; i < shown.size(); ++i)
        if (size_t place = std::string("01z").find(is_released(shown[i]) ? 'z' : shown[i]);
            place != std::string::npos)
            first(maker.list.cover[i].drives[place], pins_step);
    for (const REGISTER_ROW &row : maker.found.rows) {
        if (!reads(maker, row))
            continue;
        PATTERN_COVER &cover = maker.list.cover[static_cast<size_t>(row.port)];
        char looped = tdo[static_cast<size_t>(row.cell)], taken = driven[static_cast<size_t>(row.cell)];
        if (looped != '-')
            first(cover.drives_looped, scan_step);
        if (taken == '0' || taken == '1')
            first(cover.captures[turned(taken, row.inverters % 2 != 0) - '0'], scan_step);
    }
}

/// A marker ahead of the pattern: it comes out behind the register's own bits, and the pattern stays.
void add_marker(STEP_MAKER &maker, PATTERN_STEP &step) {
    std::string marker = maker.random_bits(MARKER);
    step.tdi = marker + step.tdi;
    step.tdo += marker;
    step.driven += step.driven.empty() ? "" : marker;
}

/// Plays patterns in EXTEST, whose first is preloaded. The last one stays in the register.
void play_extest(STEP_MAKER &maker, const std::vector<NAMED_PATTERN> &patterns) {
    maker.rule = RULE_EXTEST;
    scan(maker, "PRELOAD, " + patterns[0].name, patterns[0].bits, std::string(maker.cells(), '-'));
    load(maker, "EXTEST");
    for (size_t i = 0; i < patterns.size(); ++i) {
        std::string shown = shown_by(maker, patterns[i].bits);
        count_pins(maker, i, shown);
        set_pins(maker, "EXTEST, " + patterns[i].name, shown);
        std::string tdo(maker.cells(), '-'), driven = tdo;
        expect_reading(maker, shown, tdo, driven);
        auto number = static_cast<int32_t>(maker.list.steps.size());
        note_cover(maker, shown, tdo, driven, number - 1, number);
        const std::string &next = patterns[std::min(i + 1, patterns.size() - 1)].bits;
        PATTERN_STEP &step = scan(maker, "EXTEST captures with " + patterns[i].name, next, tdo);
        step.driven = driven;
        if (i == 0)
            add_marker(maker, step);
    }
}

// ---- the parts of the session -------------------------------------------------------------------------

/// A scan that proves the length of a register: what goes in comes out behind what was captured.
void flush(STEP_MAKER &maker, const std::string &reason, const std::string &captured,
           const std::string &stays) {
    std::string marker = maker.random_bits(MARKER + 8);
    PATTERN_STEP &step = scan(maker, reason, marker + stays, captured + marker);
    step.pause = 5;
}

void try_resets(STEP_MAKER &maker) {
    const BSDL_INSTRUCTION &selected = reset_instruction(maker);
    std::string captured = captured_code(maker, selected);
    bool has_trst = maker.found.test_ports[PORT_TRST] >= 0;
    for (PATTERN_KIND kind : {STEP_RESET, STEP_TRST, STEP_RESET}) {
        if (kind == STEP_TRST && !has_trst)
            continue;
        std::string word = kind == STEP_TRST ? "TRST" : "five TMS of 1";
        maker.rule = RULE_RESET;
        add_step(maker, kind, "reset by " + word);
        flush(maker, selected.name + " after reset by " + word, captured, std::string(captured.size(), '0'));
        load(maker, kind == STEP_RESET ? "BYPASS" : "SAMPLE");
        maker.rule = kind == STEP_RESET ? RULE_BYPASS : RULE_FLUSH;
        flush(maker, kind == STEP_RESET ? "bypass register" : "boundary register",
              kind == STEP_RESET ? "0" : std::string(maker.cells(), '-'),
              kind == STEP_RESET ? "1" : safe_pattern(maker));
    }
}

bool moves_pins(const std::string &name) {
    for (const char *word : {"EXTEST", "INTEST", "RUNBIST", "CLAMP", "HIGHZ"})
        if (name == word)
            return true;
    return false;
}

void try_registers(STEP_MAKER &maker) {
    for (const BSDL_INSTRUCTION &row : maker.table.instructions) {
        std::string captured = captured_code(maker, row);
        if (row.is_private || moves_pins(row.name) || captured.empty()) {
            if (row.is_private || captured.empty())
                maker.list.notes.push_back("Instruction " + row.name +
                                           " is private: it and its register are not tried.");
            continue;
        }
        maker.rule = row.name == "BYPASS" ? RULE_BYPASS : row.name == "IDCODE" ? RULE_IDCODE : RULE_FLUSH;
        for (const std::string &opcode : row.opcodes) {
            load_code(maker, row.name, opcode);
            bool is_boundary = row.access == "BOUNDARY";
            flush(maker, row.name + " selects " + row.access + ", its length", captured,
                  is_boundary ? safe_pattern(maker) : std::string(captured.size(), '1'));
        }
    }
}

/// New values on all pins that the chip does not drive, and weak ones on the others.
void shake_pins(STEP_MAKER &maker, const std::string &reason) {
    for (size_t i = 0; i < maker.drive.size(); ++i) {
        const PATTERN_PIN &pin = maker.list.pins[i];
        char value = digit(maker.random_bit());
        char weak = value == '1' ? 'u' : 'z';
        maker.drive[i] = pin.held != '-' ? pin.held : pin.role == PIN_DRIVEN ? value : weak;
    }
    set_pins(maker, reason, "");
}

/// True when the pad on a port has an input of its own that the core drives: an enable of the way in, say. In
/// EXTEST that must not matter, in SAMPLE it does.
bool has_core_input(const STEP_MAKER &maker, int32_t port) {
    for (int32_t row : maker.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = maker.found.walk.pads[static_cast<size_t>(row)];
        const BUFFER_CELL &buffer = *pad.buffer;
        const SDB_OBJ &obj = obj_tab[pad.obj];
        for (int32_t i = 0; i < class_tab[obj.class_id].pin_count; ++i) {
            int32_t node = obj.first_node + i;
            bool is_known = chip_pin_direction(node_tab[node].pin) != SDB_INPUT || walk_is_pin(node, pad.pin);
            for (const char *pin :
                 {buffer.input, buffer.input_m, buffer.en_l, buffer.en_h, buffer.mux_in1, buffer.mux_in2,
                  buffer.mux_in3, buffer.mode_1, buffer.mode_2, buffer.mode_3})
                is_known = is_known || walk_is_pin(node, pin);
            WALK_END end = is_known ? WALK_NONE : walk_back(maker.found.walk, node).end;
            if (end == WALK_CORE || end == WALK_CELL || end == WALK_PAD || end == WALK_PORT)
                return true;
        }
    }
    return false;
}

/// SAMPLE takes what the core gives to an output and its enable: the pin shows both.
char sampled_output(const STEP_MAKER &maker, const REGISTER_ROW &row, char otherwise) {
    const PATTERN_PIN &pin = maker.list.pins[static_cast<size_t>(row.port)];
    bool is_own = maker.list.cells[static_cast<size_t>(row.cell)].pin == row.port;
    if (!drives(row) || !is_own || pin.role == PIN_LEFT ||
        maker.found.ports[static_cast<size_t>(row.port)].follows_core)
        return otherwise;
    if (row.kind == ROW_OUTPUT2)
        return 'p';
    if (row.kind == ROW_OUTPUT3)
        return pin.pull == 'z' ? 'c' : 'o';
    return row.kind == ROW_BIDIR && otherwise == 'p' && pin.pull == 'z' ? 'b' : otherwise;
}

/// The core runs on what the pins get. Its outputs are held against what their cells capture; what is in the
/// update stages meanwhile must not show.
void try_sample(STEP_MAKER &maker) {
    std::string shown(maker.list.pins.size(), '-'), none(maker.cells(), '-');
    std::vector<bool> is_gated(maker.list.pins.size(), false); // ports whose way in the core may shut
    for (const REGISTER_ROW &row : maker.found.rows)
        if (reads(maker, row))
            is_gated[static_cast<size_t>(row.port)] = has_core_input(maker, row.port);
    maker.rule = RULE_SAMPLE;
    load(maker, "SAMPLE");
    for (int round = 0; round < SAMPLE_ROUNDS; ++round) {
        for (int change = 0; change < SAMPLE_CHANGES; ++change)
            shake_pins(maker, format_text("SAMPLE %d", round));
        std::string tdo = none, driven = none;
        expect_reading(maker, shown, tdo, driven);
        for (const REGISTER_ROW &row : maker.found.rows) {
            if (row.port < 0)
                continue;
            char &letter = driven[static_cast<size_t>(row.cell)];
            if (reads(maker, row) && is_gated[static_cast<size_t>(row.port)])
                letter = '-';
            letter = sampled_output(maker, row, letter);
        }
        PATTERN_STEP &step = scan(maker, format_text("SAMPLE %d captures", round),
                                  round == 0 ? safe_pattern(maker) : maker.random_bits(maker.cells()), tdo);
        step.driven = driven;
        step.needs_pins = round > 0;
    }
}

/// True when what the cell takes in comes from inside.
bool is_of_core(const STEP_MAKER &maker, int32_t number) {
    const REGISTER_CELL &cell = maker.found.cells[static_cast<size_t>(number)];
    WALK_END end = walk_back(maker.found.walk, walk_pin(cell.obj, cell.cell->data_in)).end;
    return end != WALK_PAD && end != WALK_PORT;
}

/// What the core gives stays while its pins do, whatever is shifted: a cell that shifts where it should
/// capture has the complement of what it had. Both scans follow a capture of SAMPLE.
void repeat_sample(STEP_MAKER &maker) {
    std::string next = maker.random_bits(maker.cells()), none(maker.cells(), '-');
    for (int round = 0; round < 3; ++round) {
        for (char &bit : next)
            bit = turned(bit);
        PATTERN_STEP &step = scan(maker, "SAMPLE, the core stands still", next, none);
        step.driven = none;
        step.needs_pins = true;
        for (const REGISTER_ROW &row : maker.found.rows)
            if (round > 0 &&
                (row.kind == ROW_OUTPUT2 || row.kind == ROW_OUTPUT3 || row.kind == ROW_CONTROL) &&
                is_of_core(maker, row.cell))
                step.driven[static_cast<size_t>(row.cell)] = '=';
    }
}

bool load_public(STEP_MAKER &maker, const char *name) {
    const BSDL_INSTRUCTION *row = bsdl_instruction(maker.table, name);
    return row != nullptr && !row->is_private && load(maker, name);
}

/// CLAMP holds what EXTEST left on the pins; HIGHZ, which is public only where it reaches all pads, releases
/// it.
void try_clamp_and_highz(STEP_MAKER &maker, const std::string &pattern) {
    std::string shown = shown_by(maker, pattern);
    maker.rule = RULE_CLAMP;
    if (load_public(maker, "CLAMP")) {
        set_pins(maker, "CLAMP holds the pins", shown);
        flush(maker, "CLAMP selects BYPASS", "0", "1");
        set_pins(maker, "CLAMP holds the pins over a scan", shown);
    }
    maker.rule = RULE_HIGHZ;
    if (!load_public(maker, "HIGHZ"))
        return;
    std::string off(shown.size(), '-');
    for (const REGISTER_ROW &row : maker.found.rows)
        if (drives(row))
            off[static_cast<size_t>(row.port)] = released(maker.list.pins[static_cast<size_t>(row.port)]);
    complete_minus_legs(maker, off);
    set_pins(maker, "HIGHZ releases the pins", off);
    flush(maker, "HIGHZ selects BYPASS", "0", "1");
}

/// True when nothing but boundary cells reads the pin: what it has can't reach the core past the register.
bool is_behind_cells(const STEP_MAKER &maker, int32_t port) {
    std::vector<int32_t> nodes = {port_tab[port].node};
    for (int32_t pad : maker.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &row = maker.found.walk.pads[static_cast<size_t>(pad)];
        nodes.push_back(walk_pin(row.obj, row.core_out));
    }
    for (int32_t node : nodes)
        for (const WALK_POINT &end : walk_forward(maker.found.walk, node))
            if (end.end == WALK_CORE ||
                (end.end == WALK_PAD &&
                 !walk_is_pin(end.node, maker.found.walk.pads[static_cast<size_t>(end.row)].pin)))
                return false;
    return true;
}

/// Pins show the register, and what the core gives stays when pins behind cells change.
void try_intest(STEP_MAKER &maker) {
    const BSDL_INSTRUCTION *intest = bsdl_instruction(maker.table, "INTEST");
    if (intest == nullptr || intest->is_private)
        return;
    std::vector<bool> cut(maker.list.pins.size());
    for (const REGISTER_ROW &row : maker.found.rows)
        if (row.kind == ROW_INPUT && row.cuts && row.port >= 0 && is_behind_cells(maker, row.port))
            cut[static_cast<size_t>(row.port)] = true;
    for (const REGISTER_ROW &row : maker.found.rows)
        if (row.port >= 0 && (row.kind == ROW_CLOCK || (row.kind == ROW_OBSERVE && row.cuts)))
            cut[static_cast<size_t>(row.port)] = false;
    std::string pattern = safe_pattern(maker), shown = shown_by(maker, pattern), none(maker.cells(), '-');
    maker.rule = RULE_INTEST;
    load(maker, "SAMPLE");
    scan(maker, "PRELOAD for INTEST", pattern, none);
    load(maker, "INTEST");
    set_pins(maker, "INTEST, pads off", shown);
    scan(maker, "INTEST, a first capture", pattern, none).driven = none;
    add_marker(maker, maker.list.steps.back());
    for (int round = 0; round < 2; ++round) {
        for (size_t i = 0; i < cut.size(); ++i)
            if (cut[i] && maker.list.pins[i].role == PIN_DRIVEN && maker.list.pins[i].held == '-')
                maker.drive[i] = turned(maker.drive[i]);
        set_pins(maker, "INTEST, other values on the pins", shown);
        PATTERN_STEP &step = scan(maker, "INTEST, the core has not seen the pins", pattern, none);
        step.driven = none;
        for (const REGISTER_ROW &row : maker.found.rows)
            if ((row.kind == ROW_OUTPUT2 || row.kind == ROW_OUTPUT3 || row.kind == ROW_CONTROL) &&
                is_of_core(maker, row.cell))
                step.driven[static_cast<size_t>(row.cell)] = '=';
        for (const REGISTER_ROW &row : maker.found.rows) // what looks at pins follows them
            if (row.port >= 0 && !drives(row))
                step.driven[static_cast<size_t>(row.cell)] = '-';
    }
}

/// Control cells with a reset turn their pads the same way behind one, whatever was loaded before. What that
/// is the library file does not tell.
void try_reset_values(STEP_MAKER &maker) {
    std::string shown(maker.list.pins.size(), '-'), none(maker.cells(), '-');
    bool any = false;
    for (const REGISTER_ROW &row : maker.found.rows)
        if (drives(row) && row.control >= 0 &&
            maker.found.cells[static_cast<size_t>(row.control)].signals[SIG_RST].source.end == WALK_TAP)
            any = (shown[static_cast<size_t>(row.port)] = 's') == 's';
    if (!any)
        return;
    std::string pattern(maker.cells(), '0');
    count_pins(maker, 0, shown);
    for (char value : {'0', '1'}) {
        for (int32_t cell : maker.controls)
            pattern[static_cast<size_t>(cell)] = value;
        size_t first = maker.list.steps.size();
        load(maker, "SAMPLE");
        scan(maker, "PRELOAD for a reset", pattern, none);
        add_step(maker, STEP_RESET, "reset of the enables");
        load(maker, "EXTEST");
        set_pins(maker, "EXTEST behind a reset", shown);
        for (size_t i = first; i < maker.list.steps.size(); ++i)
            maker.list.steps[i].needs_pins = true; // pads come on as the reset leaves them
    }
}

void note_limits(STEP_MAKER &maker) {
    for (const auto &[numbers, what] :
         {std::pair{&maker.outputs, "outputs"}, std::pair{&maker.controls, "enables"}})
        if (numbers->size() > maker.list.walk_limit)
            maker.list.notes.push_back(
                format_text("Walking patterns stand for the first %zu of %zu %s alone; "
                            "counting patterns tell all of them apart.",
                            maker.list.walk_limit, numbers->size(), what));
}

} // namespace

void make_patterns(PATTERN_LIST &list, const BOUNDARY_REGISTER &found, const BSDL_FILE &instructions) {
    STEP_MAKER maker{.list = list, .found = found, .table = instructions};
    std::copy(std::begin(found.test_ports), std::end(found.test_ports), std::begin(list.test_ports));
    take_pins(maker);
    take_cells(maker);
    sort_cells(maker);
    list.cover.resize(list.pins.size());
    for (int32_t pad : found.ports[static_cast<size_t>(found.test_ports[PORT_TDO])].pads)
        for (const char *pin : {found.walk.pads[static_cast<size_t>(pad)].buffer->en_l,
                                found.walk.pads[static_cast<size_t>(pad)].buffer->en_h})
            if (walk_back(found.walk, walk_pin(found.walk.pads[static_cast<size_t>(pad)].obj, pin)).end ==
                WALK_TAP)
                list.tdo_releases = true;
    std::string nothing(list.pins.size(), '-');
    maker.drive.assign(list.pins.size(), 'z');
    count_pins(maker, 0, nothing);
    set_pins(maker, "power up", "");
    try_resets(maker);
    try_registers(maker);
    try_sample(maker);
    repeat_sample(maker);
    std::vector<NAMED_PATTERN> patterns = extest_patterns(maker);
    patterns.push_back(patterns[2]); // for CLAMP and HIGHZ: all pads on, at 1
    play_extest(maker, patterns);
    try_clamp_and_highz(maker, patterns.back().bits);
    try_intest(maker);
    try_reset_values(maker);
    try_rules(maker, patterns.back().bits);
    add_step(maker, STEP_RESET, "reset at the end");
    note_limits(maker);
}
