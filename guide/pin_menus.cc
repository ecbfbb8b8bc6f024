#include "guide/guide_menus.hh"
#include "guide/guide_tables.hh"
#include "guide/menu.hh"
#include "support/text.hh"

namespace {

constexpr const char *pin_screen = R"(
    |
    |
    |
    |           *****     PIN List Menu     *****
    |
   E|<ENTRY>
    |           =================================
    |
    |                Enter Command :
)";

constexpr const char *pin_table_screen = R"(
    |************        PIN   LIST   TABLE        ************
    |Number     Name on package     Name on Core      Direction
    |----------------------------------------------------------
   R|<ROW>
    |==========================================================
    |   Press <Enter> to return to previous menu or
    |   Enter '0' to go to next page or
    |   Enter PIN Number :
)";

constexpr int32_t pins_per_page = 20;

/// What is asked of a pin, in this order.
struct PIN_COLUMN {
    const char *PIN_ENTRY::*field;
    const char *prompt;
};

constexpr PIN_COLUMN pin_columns[] = {
    {&PIN_ENTRY::package_name, "Enter pin name on package : "},
    {&PIN_ENTRY::top_name, "Enter pin name on top module : "},
    {&PIN_ENTRY::direction, "Enter pin's direction : "},
};

std::string name_column(const char *name) {
    return name == nullptr ? format_text("*%19s", "") : format_text("%-20s", name);
}

void print_PIN_table_menu(int32_t start) {
    TEMPLATE_VALUES values;
    auto &lines = values.lists['R'];
    for (int32_t row = start; row < DYNA_count(PIN_TABLE) && row < start + pins_per_page; ++row) {
        const PIN_ENTRY &pin = *PIN_TABLE[row];
        std::string direction = pin.direction == nullptr ? "*" : format_text("%-10s", pin.direction);
        lines.push_back({{"ROW", format_text("  %-7s  ", pin.number) + name_column(pin.package_name) +
                                     name_column(pin.top_name) + direction}});
    }
    print_screen(pin_table_screen, values);
}

/// The row of that number. A new pin comes last: the order of the rows is the order of the chain.
int32_t find_or_add_pin(const std::string &number) {
    for (int32_t row = 0; row < DYNA_count(PIN_TABLE); ++row)
        if (number == PIN_TABLE[row]->number)
            return row;
    PIN_ENTRY *added = new_record<PIN_ENTRY>();
    added->number = keep_text(number);
    append_row(PIN_TABLE, added);
    return DYNA_count(PIN_TABLE) - 1;
}

/// Asks for the columns of a pin; those behind an end of input stay as they were.
MENU_STEP ask_columns(PIN_ENTRY &pin, int indent) {
    for (const PIN_COLUMN &column : pin_columns) {
        ANSWER answer = ask({indent, column.prompt});
        if (!answer)
            return MENU_LEAVE;
        pin.*column.field = field_text(*answer);
    }
    return MENU_STAY;
}

/// A pin of which nothing is known is deleted.
void delete_empty_pin(int32_t row) {
    for (const PIN_COLUMN &column : pin_columns)
        if (PIN_TABLE[row]->*column.field != nullptr)
            return;
    DYNA_delete(&PIN_TABLE, row);
}

void PIN_table_menu() {
    for (int32_t start = 0;;) {
        if (start >= DYNA_count(PIN_TABLE))
            start = 0;
        print_PIN_table_menu(start);
        ANSWER number = ask({0, ""});
        if (!number || number->empty())
            return;
        if (*number == "0") {
            start += pins_per_page;
            continue;
        }
        int32_t row = find_or_add_pin(*number);
        MENU_STEP step = ask_columns(*PIN_TABLE[row], 3);
        delete_empty_pin(row);
        if (step == MENU_LEAVE)
            return;
    }
}

/// The first pin is asked for without the table's screen, and stays whatever is known of it.
MENU_STEP ask_first_pin() {
    constexpr int indent = 16;
    return ask_value({indent, "Enter pin number : "}, [](const std::string &number) {
        int32_t row = find_or_add_pin(number);
        MENU_STEP step = ask_columns(*PIN_TABLE[row], indent);
        if (step == MENU_LEAVE)
            delete_empty_pin(row);
        return step;
    });
}

MENU_STEP edit_pin_table(MENU_PAGE &) {
    if (DYNA_count(PIN_TABLE) == 0)
        return ask_first_pin();
    PIN_table_menu();
    return MENU_STAY;
}

constexpr MENU_ENTRY pin_entries[] = {
    {"specify Pin List file name", global_text<&PIN_FILE>},
    {"edit Pin List Table", nullptr, edit_pin_table},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU PIN_menu = {.screen = pin_screen,
                                 .indent = 10,
                                 .value_column = 46,
                                 .dots = "... ",
                                 .data_prompt = {16, "Enter PIN file name : "},
                                 .entries = pin_entries};
