// Generated text as data: templates that stand whole in the source, expanded by one small engine.
//
// A template is a raw string. Each of its lines has a margin, up to and including the first '|', that is not
// written; what follows is written as it stands, blanks at the end included. A line without '|' is layout of
// the source (the ends of the raw string) and is passed over.
//
//     R"(
//         |module BYPASS_reg ( BYPASS_out,
//     S   |                    <TCK>,
//     s   |    -- no clock of its own
//     R   |        input <REGISTER>_out;
//     )"
//
// The margin holds condition letters; a line is written when all of them hold. A capital letter or digit
// holds when it is among `letters`, a small letter when its capital is not. A letter that names a list
// repeats its line once per row of the list; neighbouring lines of one list repeat together, as a block.
// <NAME> stands for the text of that name, taken from the row first. A name that nobody gives is no
// placeholder and stays as it stands.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The texts of some names, in the order in which they came. The names are literals: they live to the exit.
class TEMPLATE_NAMES {
  public:
    using ROW = std::pair<std::string_view, std::string>;

    TEMPLATE_NAMES() = default;
    TEMPLATE_NAMES(std::initializer_list<ROW> given) : rows(given) {}

    /// The text of a name, a new one where it has none.
    std::string &operator[](std::string_view name);
    /// The text of a name, or null.
    const std::string *find(std::string_view name) const;

  private:
    std::vector<ROW> rows; // few, so that a search from the first to the last is the fastest
};

/// What a template is expanded with.
struct TEMPLATE_VALUES {
    std::string letters;                               ///< capital letters and digits that hold
    TEMPLATE_NAMES names;                              ///< <NAME>; a text may hold line ends
    std::map<char, std::vector<TEMPLATE_NAMES>> lists; ///< rows per list letter
};

/// The expanded text; each written line ends in a line end.
std::string expand_template(std::string_view text, const TEMPLATE_VALUES &values);
