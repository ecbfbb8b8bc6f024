#include "rtl/tap_rtl.hh"

#include "rtl/module_names.hh"
#include "rtl/tap_ports.hh"
#include "rtl/tap_values.hh"
#include "rtl/templates.hh"

#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// The modules in the order of the file, and in the order of the component declarations.
constexpr const TAP_PART *FILE_ORDER[] = {&TAP_CONTROLLER, &BYPASS_REG, &ID_REG,    &IR_REG,
                                          &IR_DEC,         &DR_MUX,     &IR_DR_MUX, &TDO_REG};
constexpr const TAP_PART *COMPONENT_ORDER[] = {&TAP_CONTROLLER, &BYPASS_REG, &IR_REG,    &ID_REG,
                                               &IR_DEC,         &DR_MUX,     &IR_DR_MUX, &TDO_REG};

bool is_needed(const TAP_PART *part) {
    return part != &ID_REG || has_id_register();
}

std::string declared(const char *direction, const TAP_MODULE_PORT &port) {
    std::string range = port.width == 0 ? "" : format_text("[%d:0]", port.width - 1);
    // A user register's input has two blanks where the others have one.
    const char *gap = port.role == ROLE_USER_REGISTER && !port.is_output ? "  " : " ";
    return std::string(8, ' ') + direction + range + gap + table_name(port.name) + ";\n";
}

/// The header of the TAP module and the declarations of its ports; the port-only module ends here.
std::string make_declaration_of_v() {
    save_hier_tap_ports();
    std::string module = TAP_MODULE_NAME;
    std::string text = "module  " + table_name(module) + (option(OPT_SYNCH) ? "( " : " ( ");
    std::string indent(module.size() + 11, ' ');
    bool first = true;
    for (const TAP_MODULE_PORT &port : tap_ports(VERILOG)) {
        if (!first)
            text += ",\n" + indent.substr(port.role == ROLE_CHIP_TEST ? 1 : 0);
        text += table_name(port.name);
        first = false;
    }
    text += " );\n\n";
    std::vector<TAP_MODULE_PORT> ports = sorted_ports(&TAP_MODULE_PORT::declare_place, VERILOG);
    for (const TAP_MODULE_PORT &port : ports)
        if (port.is_output)
            text += declared("output", port);
    text += "\n";
    for (const TAP_MODULE_PORT &port : ports)
        if (!port.is_output)
            text += declared("input", port);
    return text + (option(OPT_PSEUDO_TAP) ? "\n\nendmodule\n" : "\n");
}

std::vector<RTL_MODULE> make_verilog() {
    TEMPLATE_VALUES values = tap_values(VERILOG);
    std::vector<RTL_MODULE> modules = {{"", make_declaration_of_v() + expand_template(TOP_V.text, values)}};
    for (const TAP_PART *part : FILE_ORDER)
        if (is_needed(part))
            modules.push_back({"", expand_template(part->verilog.text, values)});
    return modules;
}

std::string vhdl_head(const RTL_TEMPLATE &library, const std::string &entity) {
    return expand_template(library.text, {}) + "entity " + entity + " is\n";
}

std::string vhdl_port(const TAP_MODULE_PORT &port) {
    std::string type =
        port.width == 0 ? "std_logic" : format_text("std_logic_vector(%d downto 0)", port.width - 1);
    return "        " + table_name(port.name) + (port.is_output ? ": out " : ": in ") + type;
}

/// The TAP's port clause: a ';' behind every port but the last, and the closing parenthesis on the last one's
/// line.
std::string vhdl_output_io_interface_of_TAP() {
    std::string text = "    port (\n";
    bool first = true;
    for (const TAP_MODULE_PORT &port : sorted_ports(&TAP_MODULE_PORT::vhdl_place, VHDL)) {
        text += (first ? "" : ";\n") + vhdl_port(port);
        first = false;
    }
    return text + "    );\n";
}

constexpr const char COMPONENT_VHDL[] = R"(
    |    component  <NAME>
    |<PORTS>    end component;
    |    for all: <NAME> use entity work.<NAME>(BEHAVIOR);
    |
)";

std::string include_vhdl_component_into_TAP(const TEMPLATE_VALUES &values) {
    std::string text;
    for (const TAP_PART *part : COMPONENT_ORDER)
        if (is_needed(part)) {
            TEMPLATE_VALUES component;
            component.names = {{"NAME", part->name},
                               {"PORTS", expand_template(part->vhdl_ports.text, values)}};
            text += expand_template(COMPONENT_VHDL, component);
        }
    return text;
}

RTL_MODULE make_entity_TAP_of_vhdl(const TEMPLATE_VALUES &values) {
    std::string name = TAP_MODULE_NAME;
    return {vhdl_head(LIBRARY_VHDL, name), vhdl_output_io_interface_of_TAP() + "end " + table_name(name) +
                                               ";\narchitecture STRUCTURE of " + table_name(name) +
                                               " is\n\n" + include_vhdl_component_into_TAP(values) +
                                               expand_template(TOP_VHDL.text, values)};
}

std::vector<RTL_MODULE> make_vhdl() {
    TEMPLATE_VALUES values = tap_values(VHDL);
    std::vector<RTL_MODULE> modules;
    for (const TAP_PART *part : FILE_ORDER)
        if (is_needed(part))
            modules.push_back(
                {vhdl_head(part == &TAP_CONTROLLER ? TAP_CONTROLLER_LIBRARY_VHDL : LIBRARY_VHDL, part->name),
                 expand_template(part->vhdl_ports.text, values) + "end " + part->name + ";\n" +
                     expand_template(part->vhdl_body.text, values)});
    modules.push_back(make_entity_TAP_of_vhdl(values));
    return modules;
}

} // namespace

bool is_name_of_part(std::string_view name, RTL_LANGUAGE language) {
    return std::any_of(std::begin(FILE_ORDER), std::end(FILE_ORDER), [&](const TAP_PART *part) {
        return name_key(part->name, language) == name_key(name, language);
    });
}

std::vector<RTL_TEMPLATE> tap_templates() {
    std::vector<RTL_TEMPLATE> all = {TOP_V, TOP_VHDL, LIBRARY_VHDL, TAP_CONTROLLER_LIBRARY_VHDL};
    for (const TAP_PART *part : FILE_ORDER)
        all.insert(all.end(), {part->verilog, part->vhdl_ports, part->vhdl_body});
    return all;
}

std::vector<RTL_MODULE> tap_modules(RTL_LANGUAGE language) {
    return language == VHDL ? make_vhdl() : make_verilog();
}

std::string rtl_text(const std::vector<RTL_MODULE> &modules) {
    std::string text;
    for (const RTL_MODULE &module : modules)
        text += module.head + module.text;
    return without_marks(std::move(text));
}

std::string get_TAP_in_RTL() {
    if (option(OPT_PSEUDO_TAP))
        return without_marks(make_declaration_of_v());
    return rtl_text(tap_modules(option(OPT_VHDL) ? VHDL : VERILOG));
}
