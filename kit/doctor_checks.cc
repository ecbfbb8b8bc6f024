#include "kit/doctor_checks.hh"

#include "description/lookups.hh"
#include "kit/doctor_rules.hh"
#include "kit/files.hh"
#include "planning/control_signals.hh"
#include "planning/open_design.hh"
#include "planning/port_table.hh"
#include "planning/tap_state.hh"
#include "sdb/navigation.hh"
#include "siblings/tool.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <filesystem>
#include <set>
#include <unistd.h>

namespace {

constexpr size_t ID_LENGTH = 32;
/// Beyond so many loads an output of the TAP is worth a tree.
constexpr int32_t MANY_CELLS = 32;

// Instructions.

const INSTRUCTION *find_instruction(const char *name) {
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        if (same_text_no_case(instruction.name, name))
            return &instruction;
    return nullptr;
}

bool is_all(const char *pattern, char digit) {
    return std::string_view(pattern).find_first_not_of(digit) == std::string_view::npos;
}

bool has_opcode_of_ones(const INSTRUCTION &instruction) {
    for (const char *pattern : rows(instruction.patterns))
        if (is_all(pattern, '1'))
            return true;
    return false;
}

void check_instructions(std::vector<FINDING> &findings) {
    std::string bsc = doctor_bsc_file();
    const INSTRUCTION *bypass = find_instruction("BYPASS");
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS)) {
        bool is_bypass = &instruction == bypass;
        if (DYNA_count(instruction.patterns) == 0 || has_opcode_of_ones(instruction) == is_bypass)
            continue;
        std::string name = instruction.name, ones(std::string_view(instruction.patterns[0]).size(), '1');
        findings.push_back(make_finding("bypass-opcode", name, bsc, line_of_name(bsc, name),
                                        is_bypass ? "the opcode of BYPASS is not all ones"
                                                  : "the opcode of " + name + " is all ones, that of BYPASS",
                                        {ones}));
    }
}

void check_idcode(std::vector<FINDING> &findings) {
    std::string code = text_or_empty(IDCODE_REG), bsc = doctor_bsc_file();
    auto add = [&](const std::string &text, const std::string &cure) {
        FINDING finding = make_finding("idcode", code, bsc, line_of_name(bsc, code), text);
        finding.cure = cure;
        findings.push_back(finding);
    };
    const INSTRUCTION *reader = find_instruction("IDCODE");
    if (code.empty() && reader != nullptr && !option(OPT_EXTERNAL_IDCODE)) {
        FINDING finding = make_finding("idcode", "IDCODE", bsc, line_of_name(bsc, "IDCODE"),
                                       "there is an instruction IDCODE, but no %IDCODE_REGISTER");
        finding.cure =
            "%IDCODE_REGISTER 32 digits; in " + bsc + ": version (4), part (16), manufacturer (11), 1";
        findings.push_back(finding);
    }
    if (code.size() != ID_LENGTH || option(OPT_EXTERNAL_IDCODE))
        return;
    if (reader == nullptr)
        add("no instruction IDCODE reads the register",
            "%INSTRUCTION IDCODE = (OPCODE) ACCESS IDCODE; in " + bsc);
    if (is_all(code.c_str(), '0'))
        add("the IDCODE is all zeros", "version, part number and manufacturer, and a last 1");
    else if (code.back() != '1')
        add("the last bit of the IDCODE is not 1, by which a tester knows that there is one",
            "%IDCODE_REGISTER " + code.substr(0, ID_LENGTH - 1) + "1;");
    if (code.substr(20, 11) == "00001111111")
        add("manufacturer 00001111111 is reserved: a tester reads the end of the chain there",
            "the maker's own number in the bits 11 to 1");
}

// The TAP.

void check_group_size(std::vector<FINDING> &findings, int32_t cells) {
    if (TAP_CONTR == nullptr)
        return;
    std::string lib = doctor_lib_file();
    const struct {
        const char *keyword;
        int32_t size;
        const char *buffer;
    } sizes[] = {{"%GROUP_SIZE", TAP_CONTR->group_size, TAP_CONTR->signal_buffer},
                 {"%DF_GROUP_SIZE", TAP_CONTR->df_group_size, TAP_CONTR->df_signal_buffer}};
    bool any = false;
    for (const auto &row : sizes) {
        any |= row.size > 0;
        if (row.size == 1)
            findings.push_back(make_finding("group-size", row.keyword, lib, line_of_name(lib, row.keyword),
                                            std::string(row.keyword) + " 1: groups of one make no tree"));
        else if (row.size > cells && cells > 0)
            findings.push_back(make_finding("group-size-idle", row.keyword, lib,
                                            line_of_name(lib, row.keyword),
                                            format_text("%s %d is larger than the %d cells of the register",
                                                        row.keyword, row.size, cells)));
    }
    if (!any && cells > MANY_CELLS)
        findings.push_back(make_finding(
            "group-size-idle", TAP_CONTR->name, lib, line_of_name(lib, TAP_CONTR->name),
            format_text("%d cells hang on each control signal, and the TAP has no %%GROUP_SIZE", cells)));
}

// The boundary cells.

/// The pins that may stand in a block, and the direction that the cell must have there.
struct CELL_PIN {
    const char *keyword;
    const char *SCAN_CELL::*field;
    SDB_DIRECTION direction;
};
constexpr CELL_PIN CELL_PINS[] = {
    {"%TDI", &SCAN_CELL::tdi, SDB_INPUT},
    {"%TDO", &SCAN_CELL::tdo, SDB_OUTPUT},
    {"%DATA_IN", &SCAN_CELL::data_in, SDB_INPUT},
    {"%DATA_OUT", &SCAN_CELL::data_out, SDB_OUTPUT},
    {"%TCK", &SCAN_CELL::tck, SDB_INPUT},
    {"%HIGHZ", &SCAN_CELL::highz, SDB_INPUT},
    {"%CLOCK_DR", &SCAN_CELL::clock_dr, SDB_INPUT},
    {"%SHIFT_DR", &SCAN_CELL::shift_dr, SDB_INPUT},
    {"%UPDATE_DR", &SCAN_CELL::update_dr, SDB_INPUT},
    {"%RST", &SCAN_CELL::rst, SDB_INPUT},
    {"%MODE_1", &SCAN_CELL::mode_1, SDB_INPUT},
    {"%MODE_2", &SCAN_CELL::mode_2, SDB_INPUT},
    {"%MODE_3", &SCAN_CELL::mode_3, SDB_INPUT},
};

void check_pins_of_cell(std::vector<FINDING> &findings, const SCAN_CELL &cell, const char *path) {
    std::string lib = doctor_lib_file();
    OPEN_DESIGN design(path);
    for (const CELL_PIN &row : CELL_PINS) {
        std::string pin = text_or_empty(without_minus(cell.*row.field));
        if (pin.empty())
            continue;
        int32_t port = SDB_nl_search_port(pin.c_str());
        std::string text = format_text("%s %s of cell %s ", row.keyword, pin.c_str(), cell.name), cure;
        if (port < 0) {
            text += format_text("is no port of it in %s", path);
            for (int32_t i = 0; i < port_count; ++i)
                if (const char *name = SYM_get(sym_tab, port_tab[i].name);
                    same_text_no_case(name, pin.c_str()))
                    cure = format_text("%s %s;", row.keyword, name);
        } else if (int32_t found = port_tab[port].flags & SDB_DIRECTION_MASK; found != row.direction) {
            text += row.direction == SDB_INPUT ? "is no input of it" : "is no output of it";
        } else {
            continue;
        }
        FINDING finding = make_finding("cell-pin-unknown", std::string(cell.name) + "/" + pin, lib,
                                       line_of_name(lib, cell.name), text);
        if (!cure.empty())
            finding.cure = cure;
        findings.push_back(finding);
    }
}

} // namespace

void check_files(std::vector<FINDING> &findings, const std::vector<std::string> &netlists) {
    std::vector<std::string> sources = netlists;
    if (sources.empty() && TOOL_exists(std::string(PATH) + TOP_MODULE + ".v"))
        sources.push_back(std::string(PATH) + TOP_MODULE + ".v");
    for (const std::string &source : sources)
        if (!TOOL_exists(source))
            findings.push_back(make_finding("missing-file", source, source, 0, "there is no such netlist"));
    for (const char *file : {MODULE_SDB, MODULE_C_SDB})
        if (file != nullptr && is_outdated(file, sources))
            findings.push_back(
                make_finding("stale-sdb", file, file, 0, "it is older than the netlist it was made from"));
}

void check_folders(std::vector<FINDING> &findings, const std::string &opath) {
    for (const std::string &folder :
         {std::string("."), std::string("lib"), std::string(RIMWEAVE_OPATH), opath}) {
        bool is_optional = folder == "lib" || folder == RIMWEAVE_OPATH; // there, or made by the run
        std::error_code missing;
        bool exists = std::filesystem::exists(folder, missing);
        if (folder.empty() || (is_optional && !exists))
            continue;
        if (!std::filesystem::is_directory(folder, missing) || ::access(folder.c_str(), W_OK | X_OK) != 0)
            findings.push_back(
                make_finding("unwritable-folder", folder, folder, 0,
                             exists ? "this folder can't be written" : "there is no such folder"));
    }
}

void check_tables(std::vector<FINDING> &findings) {
    check_instructions(findings);
    check_idcode(findings);
    int32_t cells = 0;
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        cells += row_gets_cells(row) ? 1 : 0;
    check_group_size(findings, cells);
    if (PACKAGE_PIN_NUMBER > BS_PIN_COUNT && BS_PIN_COUNT > 0)
        findings.push_back(make_finding("package-count", text_or_empty(PACKAGE_TYPE), doctor_pin_file(),
                                        line_of_name(doctor_pin_file(), "%PACKAGE_TYPE"),
                                        format_text("the package has %d pins, and the file rows for %d",
                                                    PACKAGE_PIN_NUMBER, BS_PIN_COUNT)));
}

void check_cell_pins(std::vector<FINDING> &findings) {
    std::set<std::string> names;
#define TAKE_ROLE(role) names.insert(text_or_empty(role));
    FOR_EACH_CELL_ROLE(TAKE_ROLE)
#undef TAKE_ROLE
    for (const PIN_ENTRY *pin : rows(PIN_TABLE))
        for (const char *name : {pin->bsc_name, pin->bsc_c, pin->bsc_i, pin->bsc_o, pin->bsc_io})
            names.insert(text_or_empty(name));
    for (const std::string &name : names) {
        const SCAN_CELL *cell = get_scan_cell(name.c_str());
        if (cell != nullptr && cell->tck != nullptr && !option(OPT_SYNCH))
            findings.push_back(make_finding(
                "cell-clock-form", name, doctor_lib_file(), line_of_name(doctor_lib_file(), name),
                format_text("cell %s has a %%TCK pin, which stays open without -synch", name.c_str())));
        const char *path = cell != nullptr ? find_design_file(name + ".sdb") : nullptr;
        if (path != nullptr)
            check_pins_of_cell(findings, *cell, path);
    }
}
