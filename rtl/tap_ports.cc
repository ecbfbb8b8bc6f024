#include "rtl/tap_ports.hh"

#include "planning/tap_state.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_set>

namespace {

/// Rows of rwv_hier_tap_port_tabG.
enum HIER_TABLE : int32_t {
    HIER_NONE = -1,
    HIER_STANDARD_IN = 0,
    HIER_TDO = 1,
    HIER_ENABLE = 2,
    HIER_CHAIN_IN = 3,
    HIER_CHAIN_OUT = 4,
    HIER_CONTROL = 5
};

constexpr bool OUT = true;
constexpr bool IN = false;
constexpr bool FIXED_NAME = true;

/// A family of ports, in header order. `names` gives its ports; an absent port gives none.
struct PORT_FAMILY {
    std::vector<std::string> (*names)();
    bool is_output;
    HIER_TABLE hier_table;
    int32_t declare_place, vhdl_place;
    TAP_PORT_ROLE role = ROLE_PLAIN;
    INNER_SIGNAL signal = NO_SIGNAL;
    bool is_fixed = false;
};

using NAMES = std::vector<std::string>;

NAMES given(bool exists, const char *name) {
    return exists && name != nullptr ? NAMES{name} : NAMES{};
}

template <STANDARD_PORT port> NAMES standard() {
    return given(true, TAP_PORT[port].tap_pin);
}

template <CONTROL_SIGNAL signal> NAMES control() {
    return given(signal == SIG_SHIFT || signal == SIG_CLOCK || BCELL_HAS[signal], TAP_PIN[signal]);
}

NAMES extra_pins() {
    NAMES names;
    for (const char *name : rows(TAP_EXTRA_PIN))
        names.emplace_back(name);
    return names;
}

bool has_atpg() {
    return has_instruction(KNOWN_VELMORA_ATPG);
}

const PORT_FAMILY FAMILIES_BEFORE_REGISTERS[] = {
    {standard<PORT_TMS>, IN, HIER_STANDARD_IN, 21, 1},
    {standard<PORT_TDI>, IN, HIER_STANDARD_IN, 22, 2},
    {standard<PORT_TCK>, IN, HIER_STANDARD_IN, 23, 3},
    {[] { return given(option(OPT_SYNCH), BCELL_TCK); }, OUT, HIER_CONTROL, 14, 12, ROLE_PLAIN, NO_SIGNAL,
     FIXED_NAME},
    {standard<PORT_TDO>, OUT, HIER_TDO, 1, 8},
    {[] { return given(true, TAP_TDO_EN_PIN); }, OUT, HIER_ENABLE, 4, 9},
    {standard<PORT_TRST>, IN, HIER_STANDARD_IN, 25, 4},
    {[] { return given(true, TAP_CONTR->first_bcell); }, OUT, HIER_CHAIN_OUT, 6, 7},
    {[] { return given(true, TAP_CONTR->last_bcell); }, IN, HIER_CHAIN_IN, 24, 5},
    {control<SIG_SHIFT>, OUT, HIER_CONTROL, 2, 10, ROLE_PLAIN, OWN_SIGNAL},
    {control<SIG_CLOCK>, OUT, HIER_CONTROL, 3, 11, ROLE_PLAIN, OWN_SIGNAL},
    {control<SIG_UPDATE>, OUT, HIER_CONTROL, 5, 13, ROLE_PLAIN, SIGNAL_FOR_GATES},
    {control<SIG_RST>, OUT, HIER_CONTROL, 7, 14, ROLE_PLAIN, OWN_SIGNAL},
    {control<SIG_MODE1>, OUT, HIER_CONTROL, 8, 15, ROLE_MODE1, SIGNAL_FOR_GATES},
    {control<SIG_MODE2>, OUT, HIER_CONTROL, 9, 16, ROLE_MODE2, SIGNAL_FOR_GATES},
    {control<SIG_MODE3>, OUT, HIER_CONTROL, 10, 17, ROLE_MODE3, SIGNAL_FOR_GATES},
    {[] { return given(option(OPT_EXTERNAL_IDCODE) && IDCODE_REG, "IDCODE"); }, IN, HIER_NONE, 20, 6,
     ROLE_PLAIN, NO_SIGNAL, FIXED_NAME},
    {[] { return given(has_highz_port(), TAP_HIZ_PIN); }, OUT, HIER_CONTROL, 11, 20, ROLE_HIGHZ,
     SIGNAL_FOR_GATES},
    {[] { return given(has_instruction(KNOWN_CHIP_TEST), "CHIP_TEST"); }, OUT, HIER_CONTROL, 12, 21,
     ROLE_CHIP_TEST, SIGNAL_FOR_GATES, FIXED_NAME},
    {extra_pins, OUT, HIER_CONTROL, 13, 22},
};

const PORT_FAMILY FAMILIES_BEHIND_ENABLES[] = {
    {[] { return given(has_atpg(), "velmora_test_mode"); }, OUT, HIER_CONTROL, 16, 18, ROLE_ATPG, NO_SIGNAL,
     FIXED_NAME},
    {[] { return given(has_atpg(), "velmora_scan_mode"); }, OUT, HIER_CONTROL, 17, 19, ROLE_PLAIN, NO_SIGNAL,
     FIXED_NAME},
};

constexpr int32_t ENABLE_DECLARE_PLACE = 15, ENABLE_VHDL_PLACE = 24;
constexpr int32_t REGISTER_OUT_PLACE = 18, REGISTER_IN_PLACE = 26, REGISTER_VHDL_PLACE = 23;
constexpr int32_t IDCODE_WIDTH = 32;

template <size_t count>
void append_families(std::vector<TAP_MODULE_PORT> &ports, const PORT_FAMILY (&families)[count]) {
    for (const PORT_FAMILY &family : families)
        for (const std::string &name : family.names())
            ports.push_back({name, family.is_output, family.hier_table == HIER_NONE ? IDCODE_WIDTH : 0,
                             family.hier_table, family.declare_place, family.vhdl_place, family.role,
                             family.signal, family.is_fixed});
}

/// Gives each port the name by which the inside reads it.
void name_inner_signals(std::vector<TAP_MODULE_PORT> &ports, RTL_LANGUAGE language) {
    std::unordered_set<std::string> read_by_gates; // in lower case, as VHDL does not tell case
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (pin.gate_kind != GATE_NONE)
            read_by_gates.insert(lower_case(pin.gate_signal));
    for (TAP_MODULE_PORT &port : ports) {
        bool has_signal = port.signal == OWN_SIGNAL ||
                          (port.signal == SIGNAL_FOR_GATES && read_by_gates.contains(lower_case(port.name)));
        port.inner = port.name;
        if (language == VHDL && has_signal)
            port.inner += "_net";
        if (language == VHDL && port.role == ROLE_ATPG)
            port.inner = "velmora_atpg_mode";
    }
}

} // namespace

int32_t enable_width(const char *value) {
    auto width = static_cast<int32_t>(std::string_view(value).size());
    return width < 2 ? 0 : width;
}

std::vector<TAP_MODULE_PORT> tap_ports(RTL_LANGUAGE language) {
    std::vector<TAP_MODULE_PORT> ports;
    append_families(ports, FAMILIES_BEFORE_REGISTERS);
    for (int32_t row = 0; row < DYNA_count(ACCESS_REG); ++row) {
        if (!is_user_register(row))
            continue;
        std::string name = ACCESS_REG[row];
        ports.push_back({name + "_in", OUT, 0, HIER_CHAIN_OUT, REGISTER_OUT_PLACE, REGISTER_VHDL_PLACE,
                         ROLE_USER_REGISTER, NO_SIGNAL});
        ports.push_back({name + "_out", IN, 0, HIER_CHAIN_IN, REGISTER_IN_PLACE, REGISTER_VHDL_PLACE,
                         ROLE_USER_REGISTER, NO_SIGNAL});
    }
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN)) {
        int32_t width = enable_width(pin.value);
        bool can_be_read = pin.gate_kind == GATE_NONE && width == 0;
        ports.push_back({pin.name, OUT, width, HIER_ENABLE, ENABLE_DECLARE_PLACE, ENABLE_VHDL_PLACE,
                         ROLE_ENABLE, can_be_read ? SIGNAL_FOR_GATES : NO_SIGNAL});
    }
    append_families(ports, FAMILIES_BEHIND_ENABLES);
    name_inner_signals(ports, language);
    return ports;
}

std::vector<TAP_MODULE_PORT> sorted_ports(int32_t TAP_MODULE_PORT::*place, RTL_LANGUAGE language) {
    std::vector<TAP_MODULE_PORT> ports = tap_ports(language);
    std::stable_sort(ports.begin(), ports.end(),
                     [place](const auto &a, const auto &b) { return a.*place < b.*place; });
    return ports;
}

void save_hier_tap_ports() {
    if (!rwv_hier_tap_ctrlG)
        return;
    for (const char **&table : rwv_hier_tap_port_tabG) {
        DYNA_free(&table);
        table = DYNA_init<const char *>();
    }
    for (const TAP_MODULE_PORT &port : sorted_ports(&TAP_MODULE_PORT::declare_place, VERILOG)) {
        if (port.hier_table < 0)
            continue;
        const char **&table = rwv_hier_tap_port_tabG[port.hier_table];
        if (port.width == 0)
            append_row(table, keep_text(port.name));
        // The netlist side knows a vector by its bits.
        for (int32_t bit = port.width - 1; bit >= 0; --bit)
            append_row(table, keep_format("%s[%d]", port.name.c_str(), bit));
    }
}
