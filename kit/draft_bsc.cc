// DESIGN.bsc: the test port, the cells by their roles, the instructions.
#include "kit/drafts.hh"
#include "kit/names.hh"
#include "support/text.hh"

namespace {

std::string statement(const char *keyword, const std::string &value, const std::string &comment = {}) {
    if (value.empty())
        return "";
    std::string line = format_text("%-17s %s;", keyword, value.c_str());
    return comment.empty() ? line + "\n" : format_text("%-34s // %s\n", line.c_str(), comment.c_str());
}

std::string test_ports(const CHIP_PLAN &plan) {
    constexpr const char *KEYWORDS[TEST_PORT_COUNT] = {"%GLOBAL_TDI", "%GLOBAL_TMS", "%GLOBAL_TCK",
                                                       "%GLOBAL_TRST", "%GLOBAL_TDO"};
    std::string text = "// The test port.\n";
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i)
        text += statement(KEYWORDS[i], plan.tests[i].name,
                          plan.tests[i].is_added ? "the netlist has none: a port without a pad is added"
                                                 : "a port of the netlist");
    if (plan.tests[TEST_TRST].name.empty())
        text += "// please check: no port for TRST: the chip needs a reset of the TAP at power-up\n";
    return text + "\n";
}

std::string skipped_ports(const CHIP_PLAN &plan) {
    struct SKIPPED {
        std::string name, reason;
    };
    std::vector<SKIPPED> rows;
    for (const TEST_PORT_PLAN &test : plan.tests)
        if (!test.name.empty())
            rows.push_back({test.name, "test port"});
    for (const PORT_PLAN &port : plan.ports)
        if (port.use == PORT_SKIPPED)
            rows.push_back(
                {port.name, port.reason + (port.doubt.empty() ? "" : "; please check: " + port.doubt)});
    std::string text = "// Ports without a boundary cell.\n%SKIP_SIGNAL_NAMES\n{\n";
    for (size_t i = 0; i < rows.size(); ++i) {
        std::string line = "  " + rows[i].name + (i + 1 < rows.size() ? "," : ";");
        if (!kit_port_name_fits(rows[i].name)) // no row can name it either: the run warns of the port
            line = "  // " + rows[i].name + " can't be written here";
        text += format_text("%-34s // %s\n", line.c_str(), rows[i].reason.c_str());
    }
    return text + "}\n\n";
}

/// The test logic's opcodes differ from each other in two bits at least, so that no single wrong bit turns
/// one instruction into another: words of even parity. IEEE 1149.1 gives all ones to BYPASS; all zeros are
/// EXTEST by long custom.
std::string instructions(const CHIP_PLAN &plan, const CELL_CHOICE &cells) {
    struct ROW {
        const char *name, *opcode, *access, *comment;
        bool present;
    };
    const ROW rows[] = {
        {"EXTEST", "0000", "BOUNDARY", "", true},
        {"SAMPLE", "0011", "BOUNDARY", "", true},
        {"PRELOAD", "0101", "BOUNDARY", "", true},
        {"IDCODE", "0110", "IDCODE", "", !plan.idcode.empty()},
        {"CLAMP", "1001", "BYPASS", "", true},
        {"HIGHZ", "1010", "BYPASS", "every output has an enable", cells.has_highz},
        {"INTEST", "1100", "BOUNDARY", "", plan.with_intest},
        {"BYPASS", "1111", "BYPASS", "", true},
    };
    std::string text = "// Opcodes differ in two bits at least: no single wrong bit makes one out of "
                       "another.\n%INSTRUCTION_TABLE\n{\n";
    for (const ROW &row : rows)
        if (row.present) {
            std::string line =
                format_text("  %%INSTRUCTION %-8s = (%s) ACCESS %s;", row.name, row.opcode, row.access);
            text += *row.comment != '\0' ? format_text("%s // %s\n", line.c_str(), row.comment) : line + "\n";
        }
    return text + "}\n%INSTRUCTION_CAPTURE (0001);\n\n";
}

std::string identification(const CHIP_PLAN &plan) {
    if (plan.idcode.empty())
        return "// please check: no IDCODE register, since --idcode did not give its parts\n";
    const std::string &id = plan.idcode;
    return "// version " + id.substr(0, 4) + ", part " + id.substr(4, 16) + ", manufacturer " +
           id.substr(20, 11) + "\n" + statement("%IDCODE_REGISTER", id);
}

} // namespace

std::string draft_bsc(const CHIP_PLAN &plan, const CELL_CHOICE &cells) {
    std::string text = "// BSC file of " + plan.design + ", drafted by rimkit: what is to be built.\n\n";
    text += test_ports(plan) + skipped_ports(plan);
    text += "%TAP_MODULE\n{\n  %MODULE_NAME   jtag_tap;\n  %INSTANCE_NAME u_tap;\n}\n\n";
    text += "// The cell for each kind of port. A bidirectional port has an input and an output "
            "cell.\n%SCAN_CELLS\n{\n";
    const struct {
        const char *keyword;
        const std::string &cell;
    } roles[] = {{"%INPUT_SCAN", cells.input},
                 {"%CLOCK_SCAN", cells.clock},
                 {"%OUTPUT_SCAN", cells.output},
                 {"%CONTROL_SCAN", cells.control}};
    for (const auto &role : roles)
        if (!role.cell.empty())
            text += format_text("  %-14s %s;\n", role.keyword, role.cell.c_str());
    bool mixed = false;
    int off = plan_off_value(plan, mixed);
    if (mixed)
        text += format_text("  // please check: most pads are off at %d, to which the control cells reset, "
                            "but some at %d: these are on\n"
                            "  // when EXTEST begins without a PRELOAD\n",
                            off, 1 - off);
    text += "}\n\n%PIN_LIST\n{\n  %FILE_NAME " + plan.design + ".pin;\n}\n\n";
    return text + identification(plan) + "\n" + instructions(plan, cells);
}
