// Whose names stand in a module of the generated text: while the text is made, each name that the tables give
// (a port, an enable pin, a register) stands between two marks, and what has none is the templates' own. So
// the names that a port can't have follow from the templates themselves, per module and language.
#pragma once

#include "rtl/decode_terms.hh"

#include <set>
#include <string>
#include <string_view>

/// A name of the tables as it is put into the text, marked.
std::string table_name(std::string_view name);

/// The text as it is written, without marks.
std::string without_marks(std::string text);

/// `name` in the one spelling that stands for all that the language takes for the same.
std::string name_key(std::string_view name, RTL_LANGUAGE language);

/// The identifiers of one module, by their keys.
struct MODULE_NAMES {
    std::set<std::string> given; ///< whole names of the tables
    /// Everything else: what the module declares, and what it takes from outside. Words of the language are
    /// among them; macros, numbers and characters are not.
    std::set<std::string> own;
};
MODULE_NAMES module_names(std::string_view marked_text, RTL_LANGUAGE language);
