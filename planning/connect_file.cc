// Each line of a block is one call, in the order of the file; a line is written when its value is there.
#include "planning/connect_file.hh"

#include "description/tables.hh"
#include "dftlang/scan_interface.hh"
#include "planning/tap_state.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/dyna.hh"
#include "support/run_state.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <vector>

namespace {

constexpr const char *memory_file = "mbist_rimweave.cnt";
constexpr const char *logic_file = "lbist_rimweave.cnt";

/// Lines of one %REPLACE block at most. Cores that share files multiply with every level of the design.
constexpr size_t most_replace_lines = 1000000;

/// The file being made, and what lasts from block to block.
struct CONNECT_TEXT {
    std::string text;
    int32_t width = 0; ///< bits of the selection register seen last
};

void add_line(CONNECT_TEXT &out, const char *format, ...) __attribute__((format(printf, 2, 3)));
void add_line(CONNECT_TEXT &out, const char *format, ...) {
    va_list values;
    va_start(values, format);
    out.text += format_list(format, values);
    va_end(values);
}

/// A name that was not given prints as nothing.
const char *shown(const char *text) {
    return text == nullptr ? "" : text;
}

/// Rows of INSTRUCTIONS that bear the name, whatever its case.
std::vector<const INSTRUCTION *> instructions_named(const char *name) {
    std::vector<const INSTRUCTION *> found;
    for (const INSTRUCTION &row : rows(INSTRUCTIONS)) {
        if (name != nullptr && ::strcasecmp(shown(row.name), name) == 0)
            found.push_back(&row);
    }
    return found;
}

const char *opcode(const INSTRUCTION &instruction) {
    return DYNA_count(instruction.patterns) > 0 ? shown(instruction.patterns[0]) : "";
}

/// The register's name without its index.
std::string register_of(const INSTRUCTION &instruction) {
    std::string text = shown(instruction.register_name);
    return text.substr(0, text.find('['));
}

/// Bits of a selection register. One without a width, and a width of 0, is one bit.
int32_t register_width(const INSTRUCTION &instruction) {
    const char *open = std::strchr(shown(instruction.register_name), '[');
    if (open == nullptr || std::strchr(open, ']') == nullptr)
        return 1;
    long width = std::strtol(open + 1, nullptr, 10);
    if (width < 0 || width > INT32_MAX)
        console_fail("ERROR: the width of the register '%s' is out of range.\n", instruction.register_name);
    return width == 0 ? 1 : static_cast<int32_t>(width);
}

enum ENABLES { PLAIN_ENABLES, GATED_ENABLES };

/// The lines of one instruction in a block. A keyword stands with the blanks behind it; null for no line.
struct INSTRUCTION_LINES {
    const char *instruction, *in, *out;
    ENABLES wanted; ///< the enables that have a line each
    const char *enable;
};
constexpr INSTRUCTION_LINES MEMORY_SELECTION = {"SEL_INSTRUCTION  ", "GROUP_SEL_I    ", "GROUP_SEL_O    ",
                                                GATED_ENABLES, "SEL_EN    "};
constexpr INSTRUCTION_LINES LOGIC_SELECTION = {"SEL_INSTRUCTION    ", "GROUP_SEL_I    ", "GROUP_SEL_O    ",
                                               GATED_ENABLES, "SEL_EN    "};
constexpr INSTRUCTION_LINES SELECTION_ALONE = {"SEL_INSTRUCTION    ", "GROUP_SEL_I     ", "GROUP_SEL_O     ",
                                               PLAIN_ENABLES, "SEL_EN    "};
constexpr INSTRUCTION_LINES SCAN = {"SCAN_INSTRUCTION    ", nullptr, nullptr, PLAIN_ENABLES, "DIAG_EN    "};
constexpr INSTRUCTION_LINES DIAGNOSIS = {"DIAG_INSTRUCTION    ", "SCAN_TDI    ", "SCAN_TDO    ",
                                         PLAIN_ENABLES, "DUMP_EN    "};
constexpr INSTRUCTION_LINES LOGIC = {nullptr, "TDI    ", "TDO    ", PLAIN_ENABLES, "BIST_EN    "};
constexpr INSTRUCTION_LINES LOGIC_ALONE = {"LBIST_INSTRUCTION    ", "LBIST_TDI     ", "LBIST_TDO     ",
                                           PLAIN_ENABLES, "LBIST_EN    "};
constexpr INSTRUCTION_LINES DEBUG = {"DEBUG_INSTRUCTION    ", nullptr, nullptr, PLAIN_ENABLES,
                                     "DEBUG_EN    "};
constexpr INSTRUCTION_LINES DIAGNOSIS_ALONE = {"INSTRUCTION    ", "TDI           ", "TDO           ",
                                               PLAIN_ENABLES, "DIAG_EN       "};

bool is_gated(const INSTRUCTION &instruction, int32_t enable) {
    return instruction.gate_kinds[enable] != GATE_NONE;
}

void add_ports(CONNECT_TEXT &out, const INSTRUCTION &instruction, const char *in_keyword,
               const char *out_keyword) {
    std::string name = register_of(instruction);
    add_line(out, "     %%%s%s_in;\n", in_keyword, name.c_str());
    add_line(out, "     %%%s%s_out;\n", out_keyword, name.c_str());
}

void add_instruction(CONNECT_TEXT &out, const INSTRUCTION &instruction, const INSTRUCTION_LINES &lines) {
    if (lines.instruction != nullptr)
        add_line(out, "     %%%s'%s';\n", lines.instruction, opcode(instruction));
    if (lines.in != nullptr)
        add_ports(out, instruction, lines.in, lines.out);
    for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); i++)
        if (is_gated(instruction, i) == (lines.wanted == GATED_ENABLES))
            add_line(out, "     %%%s%s;\n", lines.enable, shown(instruction.enable_pins[i]));
}

/// The same for each instruction of that name.
void add_instructions(CONNECT_TEXT &out, const char *name, const INSTRUCTION_LINES &lines) {
    for (const INSTRUCTION *instruction : instructions_named(name))
        add_instruction(out, *instruction, lines);
}

/// The enables of a block's own instruction, in table order.
void add_block_enables(CONNECT_TEXT &out, const INSTRUCTION &instruction) {
    for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); i++)
        add_line(out, "     %%%s    %s;\n", is_gated(instruction, i) ? "BIST_RESULT_EN" : "BIST_EN",
                 shown(instruction.enable_pins[i]));
}

/// A line of several values; none without values.
void add_list(CONNECT_TEXT &out, const char *keyword, const std::vector<std::string> &values,
              const char *between = ", ") {
    for (size_t i = 0; i < values.size(); i++)
        out.text += (i == 0 ? "     %" + std::string(keyword) : between) + values[i];
    if (!values.empty())
        out.text += ";\n";
}

void add_order(CONNECT_TEXT &out, const int32_t *ctrl_order) {
    std::vector<std::string> numbers;
    for (int32_t number : rows(ctrl_order))
        numbers.push_back(std::to_string(number));
    add_list(out, "BISTCTRL_ORDER    ", numbers);
}

void add_count_files(CONNECT_TEXT &out, const char *const *cnt_files) {
    if (DYNA_count(cnt_files) == 0)
        out.text += "     %CNT_FILE   \"lbist.cnt\";\n";
    std::vector<std::string> files;
    for (const char *file : rows(cnt_files))
        files.push_back(format_text("\"%s\"", shown(file)));
    add_list(out, "CNT_FILE    ", files, ",\n                  ");
}

void add_tests(CONNECT_TEXT &out, const char *const *tests) {
    std::vector<std::string> patterns;
    for (const char *test : rows(tests)) {
        if (static_cast<int64_t>(std::strlen(shown(test))) != out.width)
            console_fail("ERROR: the length of data register does not match for %%TESTS and "
                         "%%SEL_INSTRUCTION.\n");
        patterns.push_back(format_text("'%s'", shown(test)));
    }
    add_list(out, "TESTS    ", patterns);
}

/// The TAP's clock under the keyword.
void add_clock(CONNECT_TEXT &out, const char *keyword) {
    add_line(out, "     %%%s    %s;\n", keyword, shown(TAP_PORT[PORT_TCK].tap_pin));
}

void add_memory_block(CONNECT_TEXT &out, const MBIST_ENTRY &entry, const INSTRUCTION &own) {
    out.text += "%MEMORY_BIST\n{\n";
    add_line(out, "     %%INST_NAME    %s;\n", shown(own.name));
    add_line(out, "     %%INSTRUCTION '%s';\n", opcode(own));
    add_block_enables(out, own);
    add_clock(out, "BCLK");
    add_ports(out, own, "TDI    ", "TDO    ");
    add_instructions(out, entry.sel_instruction, MEMORY_SELECTION);
    add_order(out, entry.ctrl_order);
    if (entry.cnt_file != nullptr)
        add_line(out, "     %%CNT_FILE    \"%s\";\n", entry.cnt_file);
    out.text += "}\n";
}

/// A %REPLACE block being made, and the configurations of the cores between the top and the core at hand.
struct REPLACE_TEXT {
    std::string &text;
    const char *instance_name;
    size_t lines = 0;
    std::vector<const DFT_CONFIGURATION *> way{};
};

/// Appends the lines of the cores in the current configuration, which is that of `core_name` or, where that
/// is null, of the top, and of those below them at all depths. The same configuration is current again at the
/// end.
void rwv_replace_lbist_module(REPLACE_TEXT &out, const char *core_name, bool ocd) {
    for (int32_t i = 0; i < SL_core_name_countG(); i++) {
        const CORE_ENTRY core = *set_current_core_name(i);
        if (core.lbist_file == nullptr)
            continue;
        if (++out.lines > most_replace_lines)
            console_fail("ERROR: the cores of the design give more than %zu lines in %%REPLACE.\n",
                         most_replace_lines);
        out.text += format_text("       %s.u%s.%s =>", shown(out.instance_name),
                                shown(DFT_OBJECT->top_module), core.name);
        DFT_inst_setup(core.name);
        out.text += format_text(" TOP_Lb_%s%s;\n", shown(DFT_OBJECT->top_module), ocd ? "_OCD" : "");
        if (std::find(out.way.begin(), out.way.end(), DFT_OBJECT) != out.way.end())
            console_fail("ERROR: the core '%s' contains itself in the DFT configuration.\n", core.name);
        out.way.push_back(DFT_OBJECT);
        rwv_replace_lbist_module(out, core.name, false);
        out.way.pop_back();
        if (core_name == nullptr)
            DFT_setup(SL_TOP_DFT_TREE);
        else
            DFT_inst_setup(core_name);
    }
}

void add_replace_block(CONNECT_TEXT &out, const LBIST_ENTRY &entry, bool ocd, const char *preposition) {
    if (entry.instance_name == nullptr)
        console_fail("ERROR: Please specify the %%INSTANCE_NAME of the core %s %%LOGIC_BIST.\n", preposition);
    scan_interface(entry.dft_file, 0, "hier_dft");
    out.text += "     %REPLACE\n      {\n";
    add_line(out, "       %s => TOP_Lb_%s%s;\n", entry.instance_name, shown(DFT_OBJECT->top_module),
             ocd ? "_OCD" : "");
    REPLACE_TEXT replaced = {out.text, entry.instance_name};
    rwv_replace_lbist_module(replaced, nullptr, ocd);
    out.text += "      }\n";
}

/// The groups of a logic block that stand between its shift pin and its last clock. `diag` is 1 when the
/// block is diagnosed through instructions of its own.
void add_logic_groups(CONNECT_TEXT &out, const LBIST_ENTRY &entry, bool &diag) {
    diag = diag || !instructions_named(entry.scan_instruction).empty();
    add_instructions(out, entry.scan_instruction, SCAN);
    const char *first = DYNA_count(entry.diag_instructions) > 0 ? entry.diag_instructions[0] : nullptr;
    add_instructions(out, first, DIAGNOSIS);
    if (diag)
        add_instructions(out, entry.lbist_instruction, LOGIC);
}

void add_logic_selection(CONNECT_TEXT &out, const LBIST_ENTRY &entry, const INSTRUCTION_LINES &lines) {
    for (const INSTRUCTION *select : instructions_named(entry.sel_instruction)) {
        add_instruction(out, *select, lines);
        out.width = register_width(*select);
    }
}

void add_logic_block(CONNECT_TEXT &out, const LBIST_ENTRY &entry, const INSTRUCTION &own, bool &diag) {
    diag = diag || DYNA_count(entry.diag_instructions) > 0;
    out.text += "%LOGIC_BIST\n{\n";
    add_line(out, "     %%INST_NAME    %s;\n", shown(own.name));
    if (entry.scan_instruction == nullptr)
        add_line(out, "     %%SCAN_INSTRUCTION    '%s';\n", opcode(own));
    if (diag)
        add_instruction(out, own, {nullptr, nullptr, nullptr, PLAIN_ENABLES, "DIAG_EN    "});
    else
        add_block_enables(out, own);
    add_clock(out, "BCLK");
    if (!diag)
        add_ports(out, own, "TDI    ", "TDO    ");
    add_order(out, entry.ctrl_order);
    add_count_files(out, entry.cnt_files);
    add_line(out, "     %%SHIFT_DR    %s;\n", shown(TAP_PIN[SIG_SHIFT]));
    add_logic_groups(out, entry, diag);
    add_clock(out, "GCLK");
    add_logic_selection(out, entry, LOGIC_SELECTION);
    if (entry.dft_file != nullptr)
        add_replace_block(out, entry, diag, "for");
    add_tests(out, entry.tests);
    out.text += "}\n";
}

bool is_null_word(const char *text) {
    return text == nullptr || ::strcasecmp(text, "null") == 0;
}

void add_diagnosis_list(CONNECT_TEXT &out, const LBIST_ENTRY &entry) {
    std::vector<std::string> names;
    for (const char *name : rows(entry.diag_instructions))
        names.push_back(format_text(names.empty() ? "\"%s\"" : "\"%s\" ", is_null_word(name) ? "*" : name));
    add_list(out, "DIAG_INSTRUCTION    ", names);
}

void add_diagnosis_blocks(CONNECT_TEXT &out, const LBIST_ENTRY &entry) {
    if (DYNA_count(entry.diag_instructions) != DYNA_count(entry.diag_cnt_files))
        console_fail(
            "ERROR: The number of %%DIAG_INSTRUCTION is not equal to the number of %%DIAG_CNT_FILE.\n");
    for (int32_t i = 0; i < DYNA_count(entry.diag_instructions); i++) {
        const char *name = entry.diag_instructions[i];
        if (is_null_word(name))
            continue;
        std::vector<const INSTRUCTION *> found = instructions_named(name);
        if (found.empty())
            console_fail("ERROR: Can not find the instruction '%s' in %%DIAG_INSTRUCTION.\n", name);
        add_line(out, "\n%%LBIST_DIAG  %s\n{\n", shown(found[0]->name));
        add_instruction(out, *found[0], DIAGNOSIS_ALONE);
        if (entry.diag_cnt_files[i] != nullptr)
            add_line(out, "     %%CNT_FILE      \"%s\";\n", entry.diag_cnt_files[i]);
        out.text += "}\n";
    }
}

void add_logic_block_alone(CONNECT_TEXT &out, const LBIST_ENTRY &entry) {
    out.text += "%LOGIC_BIST\n{\n";
    add_instructions(out, entry.lbist_instruction, LOGIC_ALONE);
    add_count_files(out, entry.cnt_files);
    add_line(out, "     %%SHIFT_DR    %s;\n", shown(TAP_PIN[SIG_SHIFT]));
    add_clock(out, "BCLK");
    add_clock(out, "GCLK");
    add_order(out, entry.ctrl_order);
    if (entry.dft_file != nullptr)
        add_replace_block(out, entry, DYNA_count(entry.diag_cnt_files) > 0, "in");
    add_logic_selection(out, entry, SELECTION_ALONE);
    add_tests(out, entry.tests);
    add_instructions(out, entry.debug_instruction, DEBUG);
    add_diagnosis_list(out, entry);
    out.text += "}\n";
    add_diagnosis_blocks(out, entry);
}

CONNECT_TEXT start_file() {
    const char *instance = org_tap_instance_nameG != nullptr ? org_tap_instance_nameG : TAP_INSTANCE_NAME;
    CONNECT_TEXT out;
    add_line(out, "%%TAP_INSTANCE    %s.%s;\n", shown(TOP_MODULE), shown(instance));
    return out;
}

std::string path_of(const char *name) {
    return option(OPT_OPATH) ? format_text("%s/%s", OPATH, name) : std::string(name);
}

[[noreturn]] void cannot_open(const std::string &path) {
    vmr_fail("ERROR: can't open file '%s'.\n\n", path.c_str());
}

/// Refuses a file that cannot be written, before anything is.
void check_writable(const char *name) {
    std::string path = path_of(name);
    if (!can_write_file(path))
        cannot_open(path);
}

void write_file(const char *name, const CONNECT_TEXT &out) {
    std::string path = path_of(name);
    if (!write_text_file(path, out.text))
        cannot_open(path);
}

void write_memory_file() {
    CONNECT_TEXT out = start_file();
    for (const MBIST_ENTRY &entry : rows(BL_MBIST_TAB)) {
        for (const INSTRUCTION *own : instructions_named(entry.instruction))
            add_memory_block(out, entry, *own);
    }
    write_file(memory_file, out);
}

void write_logic_file() {
    CONNECT_TEXT out = start_file();
    for (const LBIST_ENTRY &entry : rows(BL_LBIST_TAB)) {
        bool diag = false;
        if (entry.instruction == nullptr)
            add_logic_block_alone(out, entry);
        for (const INSTRUCTION *own : instructions_named(entry.instruction))
            add_logic_block(out, entry, *own, diag);
    }
    write_file(logic_file, out);
}

} // namespace

void rwv_write_connect_file() {
    sdb = nullptr;
    if (DYNA_count(BL_LBIST_TAB) > 0)
        check_writable(logic_file);
    if (DYNA_count(BL_MBIST_TAB) > 0)
        check_writable(memory_file);
    if (DYNA_count(BL_MBIST_TAB) > 0)
        write_memory_file();
    if (DYNA_count(BL_LBIST_TAB) > 0)
        write_logic_file();
}
