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

/// The names of the cores that lie between the top and the core at hand, and the lines written so far.
struct REPLACE_STATE {
    std::vector<const DFT_CONFIGURATION *> way;
    size_t lines = 0;
};
REPLACE_STATE replace_state;

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

/// One line per enable of the wanted sort; `format` takes the pin.
void add_enables(CONNECT_TEXT &out, const INSTRUCTION &instruction, ENABLES wanted, const char *keyword) {
    for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); i++) {
        bool gated = instruction.gate_kinds[i] != GATE_NONE;
        if (gated == (wanted == GATED_ENABLES))
            add_line(out, "     %%%s    %s;\n", keyword, shown(instruction.enable_pins[i]));
    }
}

/// The enables of a block's own instruction, in table order.
void add_block_enables(CONNECT_TEXT &out, const INSTRUCTION &instruction) {
    for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); i++) {
        bool gated = instruction.gate_kinds[i] != GATE_NONE;
        add_line(out, "     %%%s    %s;\n", gated ? "BIST_RESULT_EN" : "BIST_EN",
                 shown(instruction.enable_pins[i]));
    }
}

void add_ports(CONNECT_TEXT &out, const INSTRUCTION &instruction, const char *in_format,
               const char *out_format) {
    std::string name = register_of(instruction);
    out.text += "     " + std::string(in_format) + name + "_in;\n";
    out.text += "     " + std::string(out_format) + name + "_out;\n";
}

void add_order(CONNECT_TEXT &out, const int32_t *ctrl_order) {
    const char *before = "     %BISTCTRL_ORDER    ";
    for (int32_t number : rows(ctrl_order)) {
        add_line(out, "%s%d", before, number);
        before = ", ";
    }
    if (DYNA_count(ctrl_order) > 0)
        out.text += ";\n";
}

void add_count_files(CONNECT_TEXT &out, const char *const *cnt_files) {
    if (DYNA_count(cnt_files) == 0) {
        out.text += "     %CNT_FILE   \"lbist.cnt\";\n";
        return;
    }
    const char *before = "     %CNT_FILE    ";
    for (const char *file : rows(cnt_files)) {
        add_line(out, "%s\"%s\"", before, shown(file));
        before = ",\n                  ";
    }
    out.text += ";\n";
}

void add_tests(CONNECT_TEXT &out, const char *const *tests) {
    const char *before = "     %TESTS    ";
    for (const char *test : rows(tests)) {
        if (static_cast<int64_t>(std::strlen(shown(test))) != out.width)
            console_fail("ERROR: the length of data register does not match for %%TESTS and "
                         "%%SEL_INSTRUCTION.\n");
        add_line(out, "%s'%s'", before, shown(test));
        before = ", ";
    }
    if (DYNA_count(tests) > 0)
        out.text += ";\n";
}

void add_memory_block(CONNECT_TEXT &out, const MBIST_ENTRY &entry, const INSTRUCTION &own) {
    out.text += "%MEMORY_BIST\n{\n";
    add_line(out, "     %%INST_NAME    %s;\n", shown(own.name));
    add_line(out, "     %%INSTRUCTION '%s';\n", opcode(own));
    add_block_enables(out, own);
    add_line(out, "     %%BCLK    %s;\n", shown(TAP_PORT[PORT_TCK].tap_pin));
    add_ports(out, own, "%TDI    ", "%TDO    ");
    for (const INSTRUCTION *select : instructions_named(entry.sel_instruction)) {
        add_line(out, "     %%SEL_INSTRUCTION  '%s';\n", opcode(*select));
        add_ports(out, *select, "%GROUP_SEL_I    ", "%GROUP_SEL_O    ");
        add_enables(out, *select, GATED_ENABLES, "SEL_EN");
    }
    add_order(out, entry.ctrl_order);
    if (entry.cnt_file != nullptr)
        add_line(out, "     %%CNT_FILE    \"%s\";\n", entry.cnt_file);
    out.text += "}\n";
}

/// A line of the %REPLACE block, for the current configuration's core `core`; makes the core's own
/// configuration current.
void add_replace_line(const CORE_ENTRY &core, const char *instance_name, bool ocd, std::string &text) {
    if (++replace_state.lines > most_replace_lines)
        console_fail("ERROR: the cores of the design give more than %zu lines in %%REPLACE.\n",
                     most_replace_lines);
    text +=
        format_text("       %s.u%s.%s =>", shown(instance_name), shown(DFT_OBJECT->top_module), core.name);
    DFT_inst_setup(core.name);
    text += format_text(" TOP_Lb_%s%s;\n", shown(DFT_OBJECT->top_module), ocd ? "_OCD" : "");
}

void add_replace_block(CONNECT_TEXT &out, const LBIST_ENTRY &entry, bool ocd, const char *preposition) {
    if (entry.instance_name == nullptr)
        console_fail("ERROR: Please specify the %%INSTANCE_NAME of the core %s %%LOGIC_BIST.\n", preposition);
    scan_interface(entry.dft_file, 0, "hier_dft");
    replace_state = REPLACE_STATE();
    out.text += "     %REPLACE\n      {\n";
    add_line(out, "       %s => TOP_Lb_%s%s;\n", entry.instance_name, shown(DFT_OBJECT->top_module),
             ocd ? "_OCD" : "");
    for (int32_t i = 0; i < SL_core_name_countG(); i++) {
        const CORE_ENTRY core = *set_current_core_name(i);
        if (core.lbist_file == nullptr)
            continue;
        add_replace_line(core, entry.instance_name, ocd, out.text);
        rwv_replace_lbist_module(core.name, entry.instance_name, out.text);
        DFT_setup(SL_TOP_DFT_TREE);
    }
    out.text += "      }\n";
}

/// The groups of a logic block that stand between its shift pin and its last clock. `diag` is 1 when the
/// block is diagnosed through instructions of its own.
void add_logic_groups(CONNECT_TEXT &out, const LBIST_ENTRY &entry, bool &diag) {
    for (const INSTRUCTION *scan : instructions_named(entry.scan_instruction)) {
        diag = true;
        add_line(out, "     %%SCAN_INSTRUCTION    '%s';\n", opcode(*scan));
        add_enables(out, *scan, PLAIN_ENABLES, "DIAG_EN");
    }
    const char *first = DYNA_count(entry.diag_instructions) > 0 ? entry.diag_instructions[0] : nullptr;
    for (const INSTRUCTION *diagnosis : instructions_named(first)) {
        add_line(out, "     %%DIAG_INSTRUCTION    '%s';\n", opcode(*diagnosis));
        add_ports(out, *diagnosis, "%SCAN_TDI    ", "%SCAN_TDO    ");
        add_enables(out, *diagnosis, PLAIN_ENABLES, "DUMP_EN");
    }
    for (const INSTRUCTION *lbist : instructions_named(entry.lbist_instruction)) {
        if (!diag)
            continue;
        add_ports(out, *lbist, "%TDI    ", "%TDO    ");
        add_enables(out, *lbist, PLAIN_ENABLES, "BIST_EN");
    }
}

/// `gap` follows the port keywords.
void add_logic_selection(CONNECT_TEXT &out, const LBIST_ENTRY &entry, const char *gap, ENABLES wanted) {
    for (const INSTRUCTION *select : instructions_named(entry.sel_instruction)) {
        add_line(out, "     %%SEL_INSTRUCTION    '%s';\n", opcode(*select));
        add_ports(out, *select, (std::string("%GROUP_SEL_I") + gap).c_str(),
                  (std::string("%GROUP_SEL_O") + gap).c_str());
        add_enables(out, *select, wanted, "SEL_EN");
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
        add_enables(out, own, PLAIN_ENABLES, "DIAG_EN");
    else
        add_block_enables(out, own);
    add_line(out, "     %%BCLK    %s;\n", shown(TAP_PORT[PORT_TCK].tap_pin));
    if (!diag)
        add_ports(out, own, "%TDI    ", "%TDO    ");
    add_order(out, entry.ctrl_order);
    add_count_files(out, entry.cnt_files);
    add_line(out, "     %%SHIFT_DR    %s;\n", shown(TAP_PIN[SIG_SHIFT]));
    add_logic_groups(out, entry, diag);
    add_line(out, "     %%GCLK    %s;\n", shown(TAP_PORT[PORT_TCK].tap_pin));
    add_logic_selection(out, entry, "    ", GATED_ENABLES);
    if (entry.dft_file != nullptr)
        add_replace_block(out, entry, diag, "for");
    add_tests(out, entry.tests);
    out.text += "}\n";
}

bool is_null_word(const char *text) {
    return text == nullptr || ::strcasecmp(text, "null") == 0;
}

void add_diagnosis_list(CONNECT_TEXT &out, const LBIST_ENTRY &entry) {
    for (int32_t i = 0; i < DYNA_count(entry.diag_instructions); i++) {
        const char *name = entry.diag_instructions[i];
        const char *written = is_null_word(name) ? "*" : name;
        if (i == 0)
            add_line(out, "     %%DIAG_INSTRUCTION    \"%s\"", written);
        else
            add_line(out, ", \"%s\" ", written);
    }
    if (DYNA_count(entry.diag_instructions) > 0)
        out.text += ";\n";
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
        const INSTRUCTION &diagnosis = *found[0];
        add_line(out, "\n%%LBIST_DIAG  %s\n{\n", shown(diagnosis.name));
        add_line(out, "     %%INSTRUCTION    '%s';\n", opcode(diagnosis));
        add_ports(out, diagnosis, "%TDI           ", "%TDO           ");
        add_enables(out, diagnosis, PLAIN_ENABLES, "DIAG_EN   ");
        if (entry.diag_cnt_files[i] != nullptr)
            add_line(out, "     %%CNT_FILE      \"%s\";\n", entry.diag_cnt_files[i]);
        out.text += "}\n";
    }
}

void add_logic_block_alone(CONNECT_TEXT &out, const LBIST_ENTRY &entry) {
    bool ocd = DYNA_count(entry.diag_cnt_files) > 0;
    out.text += "%LOGIC_BIST\n{\n";
    for (const INSTRUCTION *lbist : instructions_named(entry.lbist_instruction)) {
        add_line(out, "     %%LBIST_INSTRUCTION    '%s';\n", opcode(*lbist));
        add_ports(out, *lbist, "%LBIST_TDI     ", "%LBIST_TDO     ");
        add_enables(out, *lbist, PLAIN_ENABLES, "LBIST_EN");
    }
    add_count_files(out, entry.cnt_files);
    add_line(out, "     %%SHIFT_DR    %s;\n", shown(TAP_PIN[SIG_SHIFT]));
    add_line(out, "     %%BCLK    %s;\n", shown(TAP_PORT[PORT_TCK].tap_pin));
    add_line(out, "     %%GCLK    %s;\n", shown(TAP_PORT[PORT_TCK].tap_pin));
    add_order(out, entry.ctrl_order);
    if (entry.dft_file != nullptr)
        add_replace_block(out, entry, ocd, "in");
    add_logic_selection(out, entry, "     ", PLAIN_ENABLES);
    add_tests(out, entry.tests);
    for (const INSTRUCTION *debug : instructions_named(entry.debug_instruction)) {
        add_line(out, "     %%DEBUG_INSTRUCTION    '%s';\n", opcode(*debug));
        add_enables(out, *debug, PLAIN_ENABLES, "DEBUG_EN");
    }
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

void rwv_replace_lbist_module(const char *core_name, const char *instance_name, std::string &text) {
    const DFT_CONFIGURATION *own = DFT_OBJECT;
    for (const DFT_CONFIGURATION *above : replace_state.way) {
        if (above == own)
            console_fail("ERROR: the core '%s' contains itself in the DFT configuration.\n", core_name);
    }
    replace_state.way.push_back(own);
    for (int32_t i = 0; i < SL_core_name_countG(); i++) {
        const CORE_ENTRY core = *set_current_core_name(i);
        if (core.lbist_file == nullptr)
            continue;
        add_replace_line(core, instance_name, false, text);
        rwv_replace_lbist_module(core.name, instance_name, text);
        DFT_inst_setup(core_name);
    }
    replace_state.way.pop_back();
}

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
