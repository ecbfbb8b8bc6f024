// The doctor's looks at the flat design: names in another case, test ports, power, and the pads.
#include "description/lookups.hh"
#include "kit/chip.hh"
#include "kit/doctor_checks.hh"
#include "kit/doctor_rules.hh"
#include "kit/names.hh"
#include "kit/pads.hh"
#include "planning/port_pad.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace {

/// The port whose name differs from `name` in case alone; empty for none, and where the name itself is one.
/// The index is that of the one design that a doctor looks at.
std::string port_in_other_case(const std::string &name) {
    static const std::unordered_map<std::string, std::string> ports = [] {
        std::unordered_map<std::string, std::string> names;
        for (int32_t port = 0; port < port_count; ++port)
            names.try_emplace(lower_case(chip_port_name(port)), chip_port_name(port));
        return names;
    }();
    auto found = ports.find(lower_case(name));
    return found == ports.end() || SDB_nl_search_port(name.c_str()) >= 0 ? "" : found->second;
}

/// Names in the .bsc file that would be taken for those of new ports, or for none.
void check_names(std::vector<FINDING> &findings) {
    std::string bsc = doctor_bsc_file();
    auto check = [&](const char *given, const char *statement) {
        std::string name = text_or_empty(without_minus(given));
        std::string port = port_in_other_case(name);
        if (port.empty())
            return;
        FINDING finding = make_finding(
            "name-case", name, bsc, line_of_name(bsc, name),
            format_text("%s has '%s', and the design a port '%s'", statement, name.c_str(), port.c_str()));
        finding.severity = FINDING_WARNING;
        finding.cure = "write " + port;
        findings.push_back(finding);
    };
    for (const STANDARD_PORT_STATE &port : TAP_PORT)
        check(*port.global_name, "a %GLOBAL_ statement");
    for (const SKIP_SIGNAL *skipped : rows(SKIP_SIGNAL_TAB))
        check(skipped->name, "%SKIP_SIGNAL_NAMES");
}

void check_test_ports(std::vector<FINDING> &findings) {
    for (const STANDARD_PORT_STATE &state : TAP_PORT) {
        std::string name = text_or_empty(without_minus(*state.global_name));
        if (name.empty() || SDB_nl_search_port(name.c_str()) < 0)
            continue;
        auto pins = rows(PIN_TABLE);
        auto row = std::find_if(pins.begin(), pins.end(), [&name](const PIN_ENTRY *pin) {
            return pin->top_name != nullptr && name == without_minus(pin->top_name);
        });
        std::string pin_file = doctor_pin_file();
        if (row == pins.end())
            findings.push_back(
                make_finding("unlisted-test-port", name, pin_file, 0,
                             "test port '" + name + "' of the design has no row in the pin file"));
        else if (!skip_signal((*row)->top_name))
            findings.push_back(make_finding("test-port-in-chain", name, pin_file, (*row)->line,
                                            "test port '" + name + "' is not skipped"));
    }
}

void check_power(std::vector<FINDING> &findings) {
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (row_gets_cells(row) && kit_is_power_name(row.port_name))
            findings.push_back(make_finding(
                "power-in-chain", row.port_name, doctor_pin_file(), PIN_TABLE[row.pin_index]->line,
                format_text("'%s' has the name of a supply, and gets a boundary cell", row.port_name)));
}

// Pads.

/// What is the matter with pins of a pad cell, and at the pads of which ports.
struct PAD_PIN_STATE {
    const char *rule = nullptr, *words = "";
    std::string cell{};
    std::vector<std::string> ports{};
    auto operator<=>(const PAD_PIN_STATE &other) const = default;
};
using PAD_PIN_PORTS = std::map<std::pair<std::string, std::string>, PAD_PIN_STATE>; // by cell and pin

/// The value without which the pad does not work; null when Liberty tells of none.
const PIN_VALUE *needed_value(const PAD_KIND *kind, const std::string &pin) {
    if (kind == nullptr)
        return nullptr;
    auto found = std::find_if(kind->gates.begin(), kind->gates.end(),
                              [&pin](const PIN_VALUE &gate) { return gate.pin == pin; });
    return found != kind->gates.end() ? &*found : nullptr;
}

void look_at_pin(const OPIN_ROW &row, const PAD_KIND *kind, const std::string &pin, PAD_PIN_PORTS &ports) {
    const char *rule = nullptr, *words = "";
    CHIP_SOURCE source = chip_source(chip_pin_node(row.pad_obj, pin));
    const PIN_VALUE *needed = needed_value(kind, pin);
    bool is_enable =
        kind != nullptr && row.pad_input != nullptr && (pin == kind->enable_low || pin == kind->enable_high);
    if (source == SOURCE_CORE || source == SOURCE_PORT) {
        rule = needed != nullptr || is_enable ? "pad-gated" : "pad-follows-core";
        words = is_enable ? "that switches it, that the library file does not name and that the core drives"
                : needed != nullptr ? "that must be on for the pad to work and that the core drives"
                                    : "that the library file does not name and that the core drives";
    } else if (needed != nullptr && (source == SOURCE_ZERO || source == SOURCE_ONE) &&
               (source == SOURCE_ONE) != needed->value) {
        rule = "pad-never-works";
        words = needed->value ? "tied to 0 that must be 1 for the pad to work"
                              : "tied to 1 that must be 0 for the pad to work";
    }
    if (rule == nullptr)
        return;
    PAD_PIN_STATE &state = ports[{row.pad_class, pin}];
    // Pads of one kind may differ: the worst is told.
    if (state.rule == nullptr || (state.rule != rule && std::string_view(rule) == "pad-never-works"))
        state = {rule, words, row.pad_class, {}};
    if (state.rule == rule)
        state.ports.emplace_back(row.port_name);
}

/// An enable under the keyword of the other polarity.
void check_enables(std::vector<FINDING> &findings, const BUFFER_CELL &pad, const PAD_KIND &kind) {
    const struct {
        const char *named;
        const std::string &other;
        const char *keyword;
        const char *right;
    } enables[] = {{pad.en_l, kind.enable_high, "%EN_L", "%EN_H"},
                   {pad.en_h, kind.enable_low, "%EN_H", "%EN_L"}};
    for (const auto &enable : enables) {
        if (enable.other.empty() || !same_text_no_case(enable.named, enable.other.c_str()))
            continue;
        std::string lib = doctor_lib_file();
        FINDING finding =
            make_finding("enable-polarity", kind.cell, lib, line_of_name(lib, pad.name),
                         format_text("%s %s of pad %s is of the other polarity in %s", enable.keyword,
                                     enable.named, kind.cell.c_str(), kind.source.c_str()));
        finding.cure = format_text("%s %s;", enable.right, enable.named);
        findings.push_back(finding);
    }
}

void check_pads(std::vector<FINDING> &findings, const LIBERTY &library) {
    PAD_PIN_PORTS ports;
    KNOWN_PADS kinds;
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (row.pad == nullptr || row.pad_obj < 0 || is_bs_buffer(row.pad) || has_function(row.pad, "BUF"))
            continue;
        const PAD_KIND *kind = known_pad_kind(kinds, library, row.pad_class);
        int32_t class_id = obj_tab[row.pad_obj].class_id;
        for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
            int32_t pin = class_tab[class_id].first_pin + i;
            std::string name = chip_pin_name(pin);
            if (chip_pin_direction(pin) == SDB_INPUT && !kit_is_power_name(name) &&
                !pad_describes(*row.pad, name))
                look_at_pin(row, kind, name, ports);
        }
    }
    for (const auto &[cell, kind] : kinds)
        if (const BUFFER_CELL *pad = get_buffer(cell.c_str()); pad != nullptr)
            check_enables(findings, *pad, kind);
    std::map<PAD_PIN_STATE, std::vector<std::string>> pins; // that share their state
    for (const auto &[place, state] : ports)
        pins[state].push_back(place.second);
    std::string lib = doctor_lib_file();
    for (const auto &[state, names] : pins) {
        const BUFFER_CELL *pad = get_buffer(state.cell.c_str());
        findings.push_back(make_finding(
            state.rule, state.cell + "/" + names[0], lib, line_of_name(lib, pad != nullptr ? pad->name : ""),
            format_text("pad %s has %s %s %s: %s", state.cell.c_str(), names.size() > 1 ? "pins" : "pin",
                        few_of(names).c_str(), state.words, few_of(state.ports).c_str())));
    }
}

void check_tdo(std::vector<FINDING> &findings) {
    auto table = rows(OPIN_TAB);
    auto row = std::find_if(table.begin(), table.end(), [](const OPIN_ROW &candidate) {
        return same_text(candidate.port_name, without_minus(GLOBAL_TDO));
    });
    if (GLOBAL_TDO == nullptr || row == table.end() || row->pad == nullptr || TAP_CONTR == nullptr)
        return;
    const PIN_ENTRY *pin = PIN_TABLE[row->pin_index];
    bool has_enable = chosen_enable_pin(row->pad, pin, nullptr) != nullptr;
    if (has_enable && TAP_CONTR->tdo_en != nullptr)
        return;
    findings.push_back(make_finding(
        "tdo-release", row->port_name, doctor_pin_file(), pin->line,
        has_enable ? format_text("the TAP has no %%TDO_EN for the enable of pad %s of TDO", row->pad_class)
                   : format_text("pad %s of TDO has no enable", row->pad_class)));
}

/// The words between the quotes behind "port" at the end of a message.
std::string traced_port(const std::string &text) {
    constexpr std::string_view WORD = "port '";
    size_t at = text.find("while tracing ");
    at = at == text.npos ? at : text.find(WORD, at);
    return at == text.npos
               ? ""
               : text.substr(at + WORD.size(), text.find('\'', at + WORD.size()) - at - WORD.size());
}

/// The object next to a port, or -1.
int32_t object_at_port(const std::string &name) {
    int32_t port = SDB_nl_search_port(name.c_str());
    int32_t node = port < 0 ? -1 : find_adjacent_node(port_tab[port].node);
    return node < 0 ? -1 : node_tab[node].obj;
}

/// A cell whose name the library has in another case, or one with no way into the core.
void refine_undescribed(FINDING &finding) {
    for (const BUFFER_CELL *buffer : rows(BUFFER_TAB))
        if (same_text_no_case(buffer->name, finding.object.c_str())) {
            std::string lib = doctor_lib_file();
            finding.rule = "name-case";
            finding.file = lib;
            finding.line = line_of_name(lib, buffer->name);
            finding.cure = format_text("%%BUFFER %s instead of %s", finding.object.c_str(), buffer->name);
            return;
        }
    int32_t obj = object_at_port(traced_port(finding.text));
    int32_t class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        if (chip_pin_direction(pin) != SDB_BIDIRECTIONAL && !kit_is_power_name(chip_pin_name(pin)))
            return;
    }
    if (class_id < 0)
        return;
    FINDING bond = make_finding("bond-pad", finding.object, finding.file, finding.line, finding.text);
    bond.cure = traced_port(finding.text) + " among the %SKIP_SIGNAL_NAMES of " + doctor_bsc_file();
    finding = bond;
}

/// A bidirectional port that stands on the one way of its pad: the switch of kalmverin that cures it.
void refine_inout(FINDING &finding, const std::string &name) {
    int32_t obj = object_at_port(name), port = SDB_nl_search_port(name.c_str());
    const BUFFER_CELL *pad = obj < 0 ? nullptr : get_buffer(object_class_name(obj));
    if (pad == nullptr)
        return;
    const char *pin = node_pin_name(find_adjacent_node(port_tab[port].node));
    bool is_input = same_text_no_case(pin, pad->input);
    if (!is_input && !same_text_no_case(pin, pad->output))
        return;
    std::string file = doctor_pin_file();
    finding = make_finding("inout-on-one-way-pad", name, file, line_of_name(file, name), finding.text);
    finding.cure = format_text("read the netlist with kalmverin -as_%s %s", is_input ? "input" : "output",
                               kit_bit(name).base.c_str());
}

} // namespace

void check_design(std::vector<FINDING> &findings, const LIBERTY &library) {
    check_names(findings);
    check_test_ports(findings);
    check_power(findings);
    check_pads(findings, library);
    check_tdo(findings);
}

void refine_finding(FINDING &finding) {
    if (finding.rule == "pin-without-port") {
        if (std::string port = port_in_other_case(finding.object); !port.empty()) {
            finding.rule = "name-case";
            finding.cure = "write " + port + " in the row of " + finding.object;
        }
    } else if (finding.rule == "undescribed-cell") {
        refine_undescribed(finding);
    } else if (finding.rule == "inout-on-one-way-pad") {
        refine_inout(finding, finding.object);
    } else if (finding.rule == "pad-lacks-pin") {
        refine_inout(finding, traced_port(finding.text));
    }
}
