// Where a name stands in a description file, which the tables do not keep.
#include "kit/doctor_rules.hh"

#include "description/tables.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cctype>
#include <memory>
#include <unordered_map>

namespace {

constexpr size_t LONGEST_FILE = size_t{64} << 20;

/// The file's text with its comments blanked out; empty for one that can't be read. Kept, since many names
/// are looked for in one file.
const std::string &text_of_file(const std::string &path) {
    static std::unordered_map<std::string, std::string> known;
    auto [place, is_new] = known.try_emplace(path);
    std::string &text = place->second;
    if (!is_new)
        return text;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(
        FNM_open(path.c_str()), [](std::FILE *open) { return open != nullptr ? std::fclose(open) : 0; });
    char piece[65536];
    for (size_t got;
         file && text.size() < LONGEST_FILE && (got = std::fread(piece, 1, sizeof piece, file.get())) > 0;)
        text.append(piece, got);
    for (size_t at = 0; (at = text.find('/', at)) != text.npos; ++at) {
        bool is_line = text.compare(at, 2, "//") == 0;
        if (!is_line && text.compare(at, 2, "/*") != 0)
            continue;
        size_t end = is_line ? text.find('\n', at) : text.find("*/", at + 2);
        end = end == text.npos ? text.size() : end + (is_line ? 0 : 2);
        for (; at < end; ++at)
            if (text[at] != '\n')
                text[at] = ' ';
        --at;
    }
    return text;
}

bool is_word_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// True when the text in front of a name is the head of its block: a keyword, and names of the same head.
bool begins_block(const std::string &text, size_t at) {
    size_t mark = text.find_last_of("%{};", at == 0 ? 0 : at - 1);
    if (mark == text.npos || text[mark] != '%')
        return false;
    for (const char *head : {"%SCAN_CELL", "%BUFFER", "%TAP_CONTROLLER", "%DIFFERENTIAL", "%BS_BUFFER",
                             "%INV_BUFFER", "%INSTRUCTION "})
        if (text.compare(mark, std::char_traits<char>::length(head), head) == 0)
            return text.compare(mark, 11, "%SCAN_CELLS") != 0;
    return false;
}

/// The line of a port's row in the pin file; 0 for none. The rows are indexed as they come in.
int32_t line_of_pin(const std::string &name) {
    static std::unordered_map<std::string, int32_t> lines;
    static int32_t indexed = 0;
    for (; indexed < DYNA_count(PIN_TABLE); ++indexed)
        if (const char *port = without_minus(PIN_TABLE[indexed]->top_name); port != nullptr)
            lines.try_emplace(port, PIN_TABLE[indexed]->line);
    auto found = lines.find(without_minus(name.c_str()));
    return found != lines.end() ? found->second : 0;
}

} // namespace

int32_t line_of_name(const std::string &file, const std::string &name) {
    if (PIN_FILE != nullptr && file == PIN_FILE)
        if (int32_t line = line_of_pin(name); line > 0)
            return line;
    const std::string &text = text_of_file(file);
    int32_t line = 1, first = 0;
    size_t counted = 0;
    for (size_t at = 0; !name.empty() && (at = text.find(name, at)) != text.npos; at += name.size()) {
        size_t end = at + name.size();
        if ((at > 0 && is_word_character(name[0]) && is_word_character(text[at - 1])) ||
            (end < text.size() && is_word_character(name.back()) && is_word_character(text[end])))
            continue;
        for (; counted < at; ++counted)
            line += text[counted] == '\n' ? 1 : 0;
        if (begins_block(text, at))
            return line;
        if (first == 0)
            first = line;
    }
    return first;
}
