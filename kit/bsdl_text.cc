// The text of a BSDL file (IEEE 1149.1-2001, annex B): each part in its order, one row to a line.
#include "kit/bsdl_file.hh"

#include "kit/chip.hh"
#include "support/text.hh"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char *MODE_WORDS[] = {"in", "out", "inout", "buffer", "linkage"};
constexpr size_t COMMENT_WIDTH = 110;

std::string joined(const std::vector<std::string> &words, const char *between) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

/// The lines as one string of VHDL: each in its own quotes, `separator` inside, the last closed by a ';'.
std::string string_lines(const std::vector<std::string> &lines, const char *separator = ",") {
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i)
        text += "\n    \"" + lines[i] + (i + 1 < lines.size() ? std::string(separator) + "\" &" : "\";");
    return text + "\n";
}

std::string attribute(const BSDL_FILE &file, const char *name, const std::string &value) {
    return format_text("  attribute %s of %s : entity is", name, file.entity.c_str()) + value;
}

std::string string_attribute(const BSDL_FILE &file, const char *name, const std::string &text) {
    return attribute(file, name, " \"" + text + "\";\n");
}

/// 1e7 as "10.0e6": a mantissa with a point, an exponent that is a multiple of three.
std::string real_text(double value) {
    int exponent = value > 0 ? static_cast<int>(std::floor(std::log10(value) / 3 + 1e-9)) * 3 : 0;
    std::string mantissa = format_text("%.9g", value / std::pow(10, exponent));
    return mantissa + (mantissa.find('.') == mantissa.npos ? ".0" : "") + format_text("e%d", exponent);
}

/// A comment in lines of readable width; what a file gave stands there without line ends.
std::string comment_lines(const std::string &text) {
    std::string lines, line = "--";
    for (size_t at = 0; at < text.size();) {
        size_t end = std::min(text.find(' ', at), text.size());
        if (line.size() + end - at > COMMENT_WIDTH) {
            lines += line + "\n";
            line = "--  ";
        }
        line += " ";
        for (char c : text.substr(at, end - at))
            line += c < ' ' || c > '~' ? '?' : c;
        at = end + 1;
    }
    return lines + line + "\n";
}

std::string head_text(const BSDL_FILE &file) {
    std::string text =
        "-- BSDL of " + bsdl_legal_name(file.design) + ", written by rimkit from the final netlist.\n";
    for (const BSDL_NAMES::RENAMED &row : file.names.renamed)
        text += comment_lines("'" + row.from + "' is called " + row.to + " here.");
    for (const std::string &comment : file.comments)
        text += comment_lines(comment);
    return text + "\n";
}

std::string entity_text(const BSDL_FILE &file) {
    std::string text = "entity " + file.entity + " is\n\n  generic (PHYSICAL_PIN_MAP : string := \"" +
                       file.package + "\");\n\n  port (\n";
    for (const BSDL_PORT &port : file.ports) {
        std::string type = port.is_vector ? format_text("bit_vector(%d %s %d)", port.left,
                                                        port.left <= port.right ? "to" : "downto", port.right)
                                          : "bit";
        text += format_text("    %s : %s %s%s\n", port.name.c_str(), MODE_WORDS[port.mode], type.c_str(),
                            &port == &file.ports.back() ? "" : ";");
    }
    text += "  );\n\n  use STD_1149_1_2001.all;\n";
    if (!file.own_cells.empty())
        text += "  use " + file.cell_package + ".all;\n";
    return text + "\n" + string_attribute(file, "COMPONENT_CONFORMANCE", "STD_1149_1_2001") + "\n";
}

std::string pin_map_text(const BSDL_FILE &file) {
    std::vector<std::string> lines;
    for (const BSDL_PORT &port : file.ports)
        lines.push_back(port.name + " : " +
                        (port.is_vector ? "(" + joined(port.pins, ", ") + ")" : joined(port.pins, "")));
    return attribute(file, "PIN_MAP", " PHYSICAL_PIN_MAP;\n\n") + "  constant " + file.package +
           " : PIN_MAP_STRING :=" + string_lines(lines) + "\n";
}

std::string grouping_text(const BSDL_FILE &file) {
    std::vector<std::string> groups;
    for (const auto &[word, pairs] : {std::pair{"DIFFERENTIAL_VOLTAGE", &file.voltage_pairs},
                                      std::pair{"DIFFERENTIAL_CURRENT", &file.current_pairs}}) {
        if (pairs->empty())
            continue;
        for (size_t i = 0; i < pairs->size(); ++i) {
            std::string head = i == 0 ? std::string(word) + " (" : std::string("  ");
            groups.push_back(head + (*pairs)[i] + (i + 1 < pairs->size() ? "" : ")"));
        }
    }
    return file.basic || groups.empty() ? "" : attribute(file, "PORT_GROUPING", string_lines(groups)) + "\n";
}

std::string tap_text(const BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    const struct {
        STANDARD_PORT port;
        const char *word;
    } rows[] = {{PORT_TDI, "TAP_SCAN_IN"},
                {PORT_TMS, "TAP_SCAN_MODE"},
                {PORT_TDO, "TAP_SCAN_OUT"},
                {PORT_TCK, "TAP_SCAN_CLOCK"},
                {PORT_TRST, "TAP_SCAN_RESET"}};
    std::string text;
    for (const auto &row : rows) {
        int32_t port = found.test_ports[row.port];
        if (port < 0)
            continue;
        std::string value = row.port == PORT_TCK ? "(" + real_text(file.frequency) + ", BOTH)" : "true";
        text += format_text("  attribute %s of %s : signal is %s;\n", row.word,
                            file.word_of_port[static_cast<size_t>(port)].c_str(), value.c_str());
    }
    if (!file.compliance_ports.empty())
        text += "\n" + string_attribute(file, "COMPLIANCE_PATTERNS",
                                        "(" + joined(file.compliance_ports, ", ") + ") (" +
                                            file.compliance_values + ")");
    return text + "\n";
}

std::string instruction_text(const BSDL_FILE &file) {
    std::vector<std::string> opcodes, privates;
    for (const BSDL_INSTRUCTION &row : file.instructions) {
        opcodes.push_back(row.name + " (" + joined(row.opcodes, ", ") + ")");
        if (row.is_private)
            privates.push_back(row.name);
    }
    std::string text = attribute(file, "INSTRUCTION_LENGTH", format_text(" %d;\n", file.instruction_length));
    text += attribute(file, "INSTRUCTION_OPCODE", string_lines(opcodes));
    text += string_attribute(file, "INSTRUCTION_CAPTURE", file.capture);
    if (!privates.empty())
        text += attribute(file, "INSTRUCTION_PRIVATE", string_lines(privates));
    return text + "\n";
}

/// Version, part, manufacturer, 1: a string each.
std::vector<std::string> code_parts(const std::string &code) {
    return {code.substr(0, 4), code.substr(4, 16), code.substr(20, 11), code.substr(31)};
}

std::string code_text(const BSDL_FILE &file) {
    std::string text;
    if (!file.idcode.empty())
        text += attribute(file, "IDCODE_REGISTER", string_lines(code_parts(file.idcode), ""));
    if (!file.usercodes.empty())
        text += attribute(file, "USERCODE_REGISTER", string_lines(file.usercodes));
    std::vector<std::string> names = {"BOUNDARY", "BYPASS", "DEVICE_ID"}, registers;
    for (const BSDL_INSTRUCTION &row : file.instructions)
        if (std::find(names.begin(), names.end(), row.access) == names.end())
            names.push_back(row.access);
    for (const std::string &name : names) {
        std::vector<std::string> users;
        int32_t length = 0;
        for (const BSDL_INSTRUCTION &row : file.instructions)
            if (!row.is_private && row.access == name) {
                users.push_back(row.name);
                length = row.length;
            }
        if (!users.empty())
            registers.push_back(name + (length > 0 ? format_text("[%d]", length) : "") + " (" +
                                joined(users, ", ") + ")");
    }
    return text + attribute(file, "REGISTER_ACCESS", string_lines(registers)) + "\n";
}

std::string register_text(const BSDL_FILE &file, size_t length) {
    std::vector<std::string> lines;
    for (const BSDL_ROW &row : file.rows) {
        std::string line = format_text("%d (%s, %s, %s, %s", row.number, row.type.c_str(), row.port.c_str(),
                                       row.function.c_str(), row.safe.c_str());
        if (row.control >= 0)
            line += format_text(", %d, %s, %s", row.control, row.disable.c_str(), row.result.c_str());
        lines.push_back(line + ")");
    }
    return attribute(file, "BOUNDARY_LENGTH", format_text(" %zu;\n", length)) +
           attribute(file, "BOUNDARY_REGISTER", string_lines(lines)) + "\n";
}

std::string end_text(const BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    std::string text, tck;
    if (int32_t port = found.test_ports[PORT_TCK]; port >= 0)
        tck = file.word_of_port[static_cast<size_t>(port)];
    if (!file.basic && !file.runbist_signature.empty() && !tck.empty())
        text +=
            attribute(file, "RUNBIST_EXECUTION",
                      string_lines({"WAIT_DURATION (" + tck + format_text(" %d)", file.runbist_cycles),
                                    "OBSERVING BOUNDARY AT_PINS", "EXPECT_DATA " + file.runbist_signature})) +
            "\n";
    const BSDL_INSTRUCTION *intest = bsdl_instruction(file, "INTEST");
    if (!file.basic && intest != nullptr && !intest->is_private && !tck.empty())
        text += attribute(file, "INTEST_EXECUTION",
                          string_lines({"WAIT_DURATION (" + tck + " 1)", "OBSERVING BOUNDARY AT_PINS"})) +
                "\n";
    if (!file.basic && !file.warnings.empty())
        text += attribute(file, "DESIGN_WARNING", string_lines(file.warnings, " ")) + "\n";
    return text + "end " + file.entity + ";\n";
}

} // namespace

std::string bsdl_text(const BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    return head_text(file) + entity_text(file) + pin_map_text(file) + grouping_text(file) +
           tap_text(file, found) + instruction_text(file) + code_text(file) +
           register_text(file, found.cells.size()) + end_text(file, found);
}

std::string bsdl_package_text(const BSDL_FILE &file) {
    const std::string &name = file.cell_package;
    std::string text = "-- Cell types of " + file.entity +
                       ", by what the cells were seen to capture, written by rimkit.\n\npackage " + name +
                       " is\n  use STD_1149_1_2001.all;\n";
    for (const BSDL_CELL_INFO &cell : file.own_cells)
        text += "  constant " + cell.name + " : CELL_INFO;\n";
    text += "end " + name + ";\n\npackage body " + name + " is\n  use STD_1149_1_2001.all;\n";
    for (const BSDL_CELL_INFO &cell : file.own_cells) {
        text += "  constant " + cell.name + " : CELL_INFO := (";
        for (const std::string &capture : cell.captures)
            text += (&capture == cell.captures.data() ? "\n    (" : ",\n    (") + capture + ")";
        text += ");\n";
    }
    return text + "end " + name + ";\n";
}
