#include "rtl/module_names.hh"

#include "support/text.hh"

#include <cctype>

namespace {

constexpr char OPEN = '\1', CLOSE = '\2';

bool is_mark(char c) {
    return c == OPEN || c == CLOSE;
}

bool is_word_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || is_mark(c);
}

/// True for a word that is one name of the tables and nothing beside it: "<TDI>", but not "<TDI>_net".
bool is_table_name(std::string_view word) {
    return word.front() == OPEN && word.find(CLOSE) == word.size() - 1;
}

/// True for a word that is no identifier: a number, or what follows the character before it. `macro,
/// 4'b0101 and 'Z', "X01".
bool is_no_name(std::string_view word, char before) {
    return std::isdigit(static_cast<unsigned char>(word.front())) != 0 ||
           std::string_view("`'\"").find(before) != std::string_view::npos;
}

/// Names of architectures: they stand behind the entity that they belong to, and meet no name inside.
bool is_architecture(std::string_view word) {
    return word == "BEHAVIOR" || word == "STRUCTURE";
}

} // namespace

std::string table_name(std::string_view name) {
    return name.empty() ? std::string() : OPEN + std::string(name) + CLOSE;
}

std::string without_marks(std::string text) {
    std::erase_if(text, is_mark);
    return text;
}

std::string name_key(std::string_view name, RTL_LANGUAGE language) {
    return language == VHDL ? lower_case(name) : std::string(name);
}

MODULE_NAMES module_names(std::string_view marked_text, RTL_LANGUAGE language) {
    MODULE_NAMES names;
    std::string_view last;
    for (size_t start = 0; start < marked_text.size();) {
        if (!is_word_character(marked_text[start])) {
            ++start;
            continue;
        }
        size_t end = start;
        while (end < marked_text.size() && is_word_character(marked_text[end]))
            ++end;
        std::string_view word = marked_text.substr(start, end - start);
        bool is_macro = last == "define";
        if (!is_macro && !is_architecture(word) &&
            !is_no_name(word, start == 0 ? ' ' : marked_text[start - 1]))
            (is_table_name(word) ? names.given : names.own)
                .insert(name_key(without_marks(std::string(word)), language));
        last = word;
        start = end;
    }
    return names;
}
