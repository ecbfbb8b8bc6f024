#include "description/tables.hh"
#include "guide/save.hh"
#include "support/text.hh"

#include <span>

namespace {

template <class RECORD> struct LIB_LINE {
    const char *keyword;
    const char *RECORD::*field;
};

/// What the blocks of one kind of cell look like.
template <class RECORD> struct LIB_SECTION {
    const char *comment;
    const char *head;  ///< keyword of a block, with the blanks ahead of the name
    int keyword_width; ///< the values of a block stand in one column
    std::span<const LIB_LINE<RECORD>> lines;
};

constexpr LIB_LINE<TAP_CELL> tap_lines[] = {
    {"%TDI", &TAP_CELL::tdi},
    {"%TDO", &TAP_CELL::tdo},
    {"%TMS", &TAP_CELL::tms},
    {"%TCK", &TAP_CELL::tck},
    {"%TRST", &TAP_CELL::trst},
    {"%FIRST_BCELL", &TAP_CELL::first_bcell},
    {"%LAST_BCELL", &TAP_CELL::last_bcell},
    {"%SHIFT_DR", &TAP_CELL::shift_dr},
    {"%CLOCK_DR", &TAP_CELL::clock_dr},
    {"%UPDATE_DR", &TAP_CELL::update_dr},
    {"%MODE_1", &TAP_CELL::mode_1},
    {"%MODE_2", &TAP_CELL::mode_2},
    {"%MODE_3", &TAP_CELL::mode_3},
    {"%TAP_RESET", &TAP_CELL::tap_reset},
    {"%HIGHZ_COMMAND", &TAP_CELL::highz_command},
    {"%SIGNAL_BUFFER", &TAP_CELL::signal_buffer},
    {"%INV_BUFFER", &TAP_CELL::inv_buffer},
};

constexpr LIB_LINE<SCAN_CELL> scan_lines[] = {
    {"%SYS_PIN", &SCAN_CELL::sys_pin},
    {"%DATA_IN", &SCAN_CELL::data_in},
    {"%DATA_OUT", &SCAN_CELL::data_out},
    {"%TDI", &SCAN_CELL::tdi},
    {"%TDO", &SCAN_CELL::tdo},
    {"%MODE_1", &SCAN_CELL::mode_1},
    {"%MODE_2", &SCAN_CELL::mode_2},
    {"%MODE_3", &SCAN_CELL::mode_3},
    {"%SHIFT_DR", &SCAN_CELL::shift_dr},
    {"%CLOCK_DR", &SCAN_CELL::clock_dr},
    {"%UPDATE_DR", &SCAN_CELL::update_dr},
    {"%RST", &SCAN_CELL::rst},
};

constexpr LIB_LINE<BUFFER_CELL> buffer_lines[] = {
    {"%FUNCTION", &BUFFER_CELL::function}, {"%INOUT", &BUFFER_CELL::inout}, {"%INPUT", &BUFFER_CELL::input},
    {"%OUTPUT", &BUFFER_CELL::output},     {"%EN_L", &BUFFER_CELL::en_l},   {"%EN_H", &BUFFER_CELL::en_h},
};

constexpr LIB_SECTION<TAP_CELL> tap_section = {"/* Description of TAP controller */", "%TAP_CONTROLLER   ",
                                               15, tap_lines};
constexpr LIB_SECTION<SCAN_CELL> scan_section = {"/* Description of Boundary Scan Cells */",
                                                 "%SCAN_CELL      ", 13, scan_lines};
constexpr LIB_SECTION<BUFFER_CELL> buffer_section = {"/* Description of Pads */", "%BUFFER        ", 12,
                                                     buffer_lines};

/// Lines of a block that are no texts.
std::string other_lines(const TAP_CELL &cell) {
    return cell.group_size > 0 ? format_text("  %-15s %d;\n", "%GROUP_SIZE", cell.group_size) : std::string();
}

template <class RECORD> std::string other_lines(const RECORD &) {
    return {};
}

/// The comment stands even when no row has a name.
template <class RECORD> std::string section_text(const LIB_SECTION<RECORD> &section, RECORD **table) {
    if (DYNA_count(table) == 0)
        return {};
    std::string text = format_text("%s\n\n", section.comment);
    for (const RECORD *cell : rows(table)) {
        if (cell->name == nullptr)
            continue;
        text += format_text("%s%s\n {\n", section.head, cell->name);
        for (const LIB_LINE<RECORD> &line : section.lines)
            if (cell->*line.field != nullptr)
                text += format_text("  %-*s %s;\n", section.keyword_width, line.keyword, cell->*line.field);
        text += other_lines(*cell) + " }\n\n";
    }
    return text;
}

} // namespace

std::string lib_text() {
    return section_text(tap_section, TAP_CELL_TAB) + section_text(scan_section, SCAN_CELL_TAB) +
           section_text(buffer_section, BUFFER_TAB);
}
