#include "description/tables.hh"
#include "guide/save.hh"
#include "support/run_state.hh"
#include "support/template_text.hh"
#include "support/text.hh"

namespace {

// The letters stand for: 1 to 5 the test port, I the identification code, U the user code, S a scan cell, 6
// to 9 and 0 the roles, P the pin file, K signals to skip, N instructions (T one of them), C the capture
// patterns, D, G and V the disable, guard and private instructions.
constexpr const char *bsc_template = R"(
      |/* Global Signals */
      |
    1 |%GLOBAL_TDI      <GLOBAL_TDI>;
    2 |%GLOBAL_TDO      <GLOBAL_TDO>;
    3 |%GLOBAL_TMS      <GLOBAL_TMS>;
    4 |%GLOBAL_TCK      <GLOBAL_TCK>;
    5 |%GLOBAL_TRST     <GLOBAL_TRST>;
      |
      |
      |/* TAP controller to be used */
      |
      |%TAP_MODULE
      | {
      |    %MODULE_NAME      <TAP_MODULE>;
      |    %INSTANCE_NAME    <TAP_INSTANCE>;
      | }
      |
      |
      |
      |/* Test Date Register */
      |
    I |%IDCODE_REGISTER  <IDCODE>;
    I |
    U |%USERCODE_REGISTER  <USERCODE>;
    U |
    S |%SCAN_CELLS
    S | {
    6 |    %INPUT_SCAN     <INPUT_SCAN>;
    7 |    %OUTPUT_SCAN    <OUTPUT_SCAN>;
    8 |    %CONTROL_SCAN    <CONTROL_SCAN>;
    9 |    %BIDIR_SCAN      <BIDIR_SCAN>;
    0 |    %CLOCK_SCAN      <CLOCK_SCAN>;
    S | }
    S |
    P |/* Pin List File */
    P |
    P |%PIN_LIST
    P | {
    P |    %FILE_NAME  <PIN_FILE>;
    P | }
    P |
    K |/* Signal names that will be skipped from searching */
    K |
    K |%SKIP_SIGNAL_NAMES
    K | {
    K |<SKIPPED>;
    K | }
    K |
    N |/* Instruction Table */
    N |
    N |%INSTRUCTION_TABLE
    N | {
    T |    %INSTRUCTION  <NAME> = (<OPCODES>)<ACCESS>;
    N |}
    N |
    C |%INSTRUCTION_CAPTURE  (<CAPTURE>);
    C |
    D |%INSTRUCTION_DISABLE   <DISABLE>;
    D |
    G |%INSTRUCTION_GUARD     <GUARD>;
    G |
    V |%INSTRUCTION_PRIVATE   <PRIVATE>;
    V |
)";

/// A text that stands in the file when it is set.
struct BSC_TEXT {
    char letter;
    const char *name;
    const char **text;
};

const BSC_TEXT bsc_texts[] = {
    {'1', "GLOBAL_TDI", &GLOBAL_TDI},     {'2', "GLOBAL_TDO", &GLOBAL_TDO},
    {'3', "GLOBAL_TMS", &GLOBAL_TMS},     {'4', "GLOBAL_TCK", &GLOBAL_TCK},
    {'5', "GLOBAL_TRST", &GLOBAL_TRST},   {'I', "IDCODE", &IDCODE_REG},
    {'6', "INPUT_SCAN", &INPUT_SCAN},     {'7', "OUTPUT_SCAN", &OUTPUT_SCAN},
    {'8', "CONTROL_SCAN", &CONTROL_SCAN}, {'9', "BIDIR_SCAN", &BIDIR_SCAN},
    {'0', "CLOCK_SCAN", &CLOCK_SCAN},     {'P', "PIN_FILE", &PIN_FILE},
    {'D', "DISABLE", &INST_DISABLE},      {'G', "GUARD", &INST_GUARD},
};

/// A list that stands in the file when it has rows; rows behind the first start in the given column.
struct BSC_LIST {
    char letter;
    const char *name;
    const char ***list;
    size_t column;
};

const BSC_LIST bsc_lists[] = {
    {'U', "USERCODE", &USERCODE_REG, 19},
    {'C', "CAPTURE", &INST_CAPTURE, 23},
    {'V', "PRIVATE", &INST_PRIVATE, 23},
};

constexpr size_t opcode_column = 37;

/// One row to a line.
std::string joined(const char **list, size_t column) {
    std::string text;
    for (const char *row : rows(list)) {
        if (!text.empty())
            text += ",\n" + std::string(column, ' ');
        text += row;
    }
    return text;
}

/// Four names to a line.
std::string skipped_names() {
    std::string text;
    for (int32_t row = 0; row < DYNA_count(SKIP_SIGNAL_TAB); ++row) {
        if (row > 0)
            text += row % 4 == 0 ? ",\n" : ",";
        text += format_text("%15s", SKIP_SIGNAL_TAB[row]->name);
    }
    return text;
}

/// The module name that was given, else that of the only TAP described; a design without one gets it under
/// its own name.
std::string tap_module() {
    if (TAP_MODULE_NAME != nullptr)
        return TAP_MODULE_NAME;
    std::vector<std::string> named;
    for (const TAP_CELL *cell : rows(TAP_CELL_TAB))
        if (cell->name != nullptr)
            named.emplace_back(cell->name);
    return named.size() == 1 ? named[0] : format_text("%s_TAP", TOP_MODULE);
}

/// An instruction without an opcode, which a file may hold, is as good as deleted: no file could be read with
/// it.
std::vector<TEMPLATE_NAMES> instruction_rows() {
    std::vector<TEMPLATE_NAMES> lines;
    for (const INSTRUCTION &row : rows(INSTRUCTIONS)) {
        if (DYNA_count(row.patterns) == 0)
            continue;
        lines.push_back(
            {{"NAME", format_text("%15s", row.name)},
             {"OPCODES", joined(row.patterns, opcode_column)},
             {"ACCESS", row.register_name == nullptr ? std::string()
                                                     : format_text("  ACCESS  %s", row.register_name)}});
    }
    return lines;
}

} // namespace

std::string bsc_text() {
    TEMPLATE_VALUES values;
    for (const BSC_TEXT &one : bsc_texts)
        if (*one.text != nullptr) {
            values.letters += one.letter;
            values.names[one.name] = *one.text;
        }
    for (const BSC_LIST &one : bsc_lists)
        if (DYNA_count(*one.list) > 0) {
            values.letters += one.letter;
            values.names[one.name] = joined(*one.list, one.column);
        }
    if (values.letters.find_first_of("67890") != std::string::npos)
        values.letters += 'S';
    if (DYNA_count(SKIP_SIGNAL_TAB) > 0) {
        values.letters += 'K';
        values.names["SKIPPED"] = skipped_names();
    }
    auto &instructions = values.lists['T'];
    instructions = instruction_rows();
    if (!instructions.empty())
        values.letters += 'N';
    values.names["TAP_MODULE"] = tap_module();
    values.names["TAP_INSTANCE"] =
        TAP_INSTANCE_NAME != nullptr ? TAP_INSTANCE_NAME : format_text("%s_tap", TOP_MODULE);
    return expand_template(bsc_template, values);
}
