#include "guide/guide_menus.hh"
#include "guide/guide_tables.hh"
#include "guide/menu.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <utility>

namespace {

constexpr const char *instruction_screen = R"(
    |
    |
    |      ****   Instruction Register Menu   ****
    |
   E|<ENTRY>
    |      =======================================
    |
    |          Enter command :
)";

constexpr int prompt_indent = 10;

std::vector<std::string> length_values(const MENU_PAGE &) {
    return {std::to_string(G_INST_LEN)};
}

std::vector<std::string> instruction_names(const MENU_PAGE &) {
    std::vector<std::string> names;
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        names.emplace_back(instruction.name);
    return names;
}

MENU_STEP ask_instruction_length(MENU_PAGE &) {
    return ask_number(G_INST_LEN, {prompt_indent, "Enter instruction length : "}, "Instruction length");
}

/// True for a pattern of G_INST_LEN characters 0, 1, x or X.
bool check_inst(const std::string &text) {
    return std::cmp_equal(text.size(), G_INST_LEN) && text.find_first_not_of("01xX") == std::string::npos;
}

template <int INDENT> bool accept_code(const std::string &token) {
    if (!check_inst(token))
        error_wait("%*sinvalid instruction '%s'\n", INDENT, "", token.c_str());
    return check_inst(token);
}

bool accept_any(const std::string &) {
    return true;
}

MENU_STEP ask_capture(MENU_PAGE &) {
    return ask_list(INST_CAPTURE, {prompt_indent, "Enter INSTRUCTION_CAPTURE : "}, accept_code<15>);
}

MENU_STEP ask_private(MENU_PAGE &) {
    return ask_list(INST_PRIVATE, {prompt_indent, "Enter INSTRUCTION_PRIVATE : "}, accept_any);
}

constexpr const char *opcode_screen = R"(
    |********     Instruction Opcode Table     ********
    | Instruction name     Access Register     Opcode
    |--------------------------------------------------
   R|<ROW>
    |==================================================
    |    Enter Instrcuction name to start editing or
    |    press <Enter> return to previous menu :
)";

/// Each opcode behind the first takes a line of its own.
std::string opcode_row(const INSTRUCTION &instruction) {
    const char *accessed = instruction.register_name == nullptr ? " " : instruction.register_name;
    std::string text = format_text(" %-16s     %-15s     ", instruction.name, accessed);
    bool first = true;
    for (const char *opcode : rows(instruction.patterns)) {
        text += first ? opcode : format_text("\n %40s %s", "...", opcode);
        first = false;
    }
    return text;
}

void print_INST_opcode_menu() {
    TEMPLATE_VALUES values;
    auto &lines = values.lists['R'];
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        lines.push_back({{"ROW", opcode_row(instruction)}});
    print_screen(opcode_screen, values);
}

enum OPCODE_END { OPCODES_THERE, ROW_DELETED, INPUT_ENDED };

/// Asks for the opcodes of a row. A row that has none in the end is deleted.
OPCODE_END ask_opcodes(int32_t row, const PROMPT &prompt) {
    ANSWER answer = ask(prompt);
    if (answer && answer->empty())
        empty_list(INSTRUCTIONS[row].patterns);
    else if (answer)
        append_tokens(INSTRUCTIONS[row].patterns, *answer, accept_code<6>);
    bool deleted = DYNA_count(INSTRUCTIONS[row].patterns) == 0;
    if (deleted)
        delete_instruction(row);
    if (!answer)
        return INPUT_ENDED;
    return deleted ? ROW_DELETED : OPCODES_THERE;
}

/// One instruction of the table; MENU_LEAVE when the input ends on the way.
MENU_STEP edit_instruction(const std::string &name, int indent) {
    int32_t row = check_inst_name(name.c_str());
    OPCODE_END end = ask_opcodes(row, {indent, "Enter Instruction opcode : "});
    if (end != OPCODES_THERE)
        return end == INPUT_ENDED ? MENU_LEAVE : MENU_STAY;
    return ask_value({indent, "Enter Access Register : "}, [row](const std::string &accessed) {
        INSTRUCTIONS[row].register_name = field_text(accessed);
        return MENU_STAY;
    });
}

void INST_opcode_menu() {
    for (;;) {
        print_INST_opcode_menu();
        ANSWER name = ask({0, ""});
        if (!name || name->empty() || edit_instruction(*name, 4) == MENU_LEAVE)
            return;
    }
}

/// The first instruction is asked for without the table's screen.
MENU_STEP edit_opcode_table(MENU_PAGE &) {
    if (DYNA_count(INSTRUCTIONS) == 0)
        return ask_value({prompt_indent, "Enter Instruction name : "},
                         [](const std::string &name) { return edit_instruction(name, 15); });
    INST_opcode_menu();
    return MENU_STAY;
}

constexpr MENU_ENTRY instruction_entries[] = {
    {.entry = "specify instruction length", .action = ask_instruction_length, .values = length_values},
    {.entry = "edit instruction opcode table", .action = edit_opcode_table, .values = instruction_names},
    {.entry = "edit INSTRUCTION_CAPTURE", .action = ask_capture, .values = list_values<&INST_CAPTURE>},
    {.entry = "edit INSTRUCTION_DISABLE",
     .text = global_text<&INST_DISABLE>,
     .prompt = "Enter INSTRUCTION_DISABLE : "},
    {.entry = "edit INSTRUCTION_GUARD",
     .text = global_text<&INST_GUARD>,
     .prompt = "Enter INSTRUCTION_GAURD : "},
    {.entry = "edit INSTRUCTION_PRIVATE", .action = ask_private, .values = list_values<&INST_PRIVATE>},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU INST_menu = {.screen = instruction_screen,
                                  .indent = 5,
                                  .gap = 1,
                                  .value_column = 42,
                                  .dots = "........ ",
                                  .data_prompt = {prompt_indent, ""},
                                  .entries = instruction_entries};
