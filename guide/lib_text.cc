#include "description/keywords.hh"
#include "guide/save.hh"
#include "support/text.hh"

#include <span>

namespace {

/// What the blocks of one kind of cell look like.
template <class RECORD> struct LIB_SECTION {
    const char *comment;
    const char *head;                         ///< keyword of a block, with the blanks ahead of the name
    int keyword_width;                        ///< the values of a block stand in one column
    const char *RECORD::*LIB_KEYWORD::*field; ///< what a keyword fills in such a block
    std::span<const char *const> keywords;
};

constexpr const char *tap_keywords[] = {
    "%TDI",        "%TDO",       "%TMS",           "%TCK",           "%TRST",      "%FIRST_BCELL",
    "%LAST_BCELL", "%SHIFT_DR",  "%CLOCK_DR",      "%UPDATE_DR",     "%MODE_1",    "%MODE_2",
    "%MODE_3",     "%TAP_RESET", "%HIGHZ_COMMAND", "%SIGNAL_BUFFER", "%INV_BUFFER"};
constexpr const char *scan_keywords[] = {"%SYS_PIN",  "%DATA_IN",  "%DATA_OUT",  "%TDI",
                                         "%TDO",      "%MODE_1",   "%MODE_2",    "%MODE_3",
                                         "%SHIFT_DR", "%CLOCK_DR", "%UPDATE_DR", "%RST"};
constexpr const char *buffer_keywords[] = {"%FUNCTION", "%INOUT", "%INPUT", "%OUTPUT", "%EN_L", "%EN_H"};

constexpr LIB_SECTION<TAP_CELL> tap_section = {"/* Description of TAP controller */", "%TAP_CONTROLLER   ",
                                               15, &LIB_KEYWORD::tap, tap_keywords};
constexpr LIB_SECTION<SCAN_CELL> scan_section = {"/* Description of Boundary Scan Cells */",
                                                 "%SCAN_CELL      ", 13, &LIB_KEYWORD::scan, scan_keywords};
constexpr LIB_SECTION<BUFFER_CELL> buffer_section = {"/* Description of Pads */", "%BUFFER        ", 12,
                                                     &LIB_KEYWORD::buffer, buffer_keywords};

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
        for (const char *name : section.keywords) {
            const auto &keyword = static_cast<const LIB_KEYWORD &>(*lib_keyword_lookup(name));
            if (const char *value = cell->*(keyword.*section.field); value != nullptr)
                text += format_text("  %-*s %s;\n", section.keyword_width, name, value);
        }
        text += other_lines(*cell) + " }\n\n";
    }
    return text;
}

} // namespace

std::string lib_text() {
    return section_text(tap_section, TAP_CELL_TAB) + section_text(scan_section, SCAN_CELL_TAB) +
           section_text(buffer_section, BUFFER_TAB);
}
