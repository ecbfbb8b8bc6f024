#include "support/template_text.hh"

#include <algorithm>
#include <cctype>

namespace {

struct TEMPLATE_LINE {
    std::string_view margin, text;
};

/// The lines that have a margin.
std::vector<TEMPLATE_LINE> split_lines(std::string_view text) {
    std::vector<TEMPLATE_LINE> lines;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        size_t bar = line.find('|');
        if (bar != std::string_view::npos)
            lines.push_back({line.substr(0, bar), line.substr(bar + 1)});
    }
    return lines;
}

/// True when every condition letter of the margin holds; list letters are no conditions.
bool margin_holds(std::string_view margin, const TEMPLATE_VALUES &values) {
    for (char letter : margin) {
        auto code = static_cast<unsigned char>(letter);
        if (letter == ' ' || values.lists.contains(letter))
            continue;
        bool given = values.letters.find(static_cast<char>(std::toupper(code))) != std::string::npos;
        if (given == (std::islower(code) != 0))
            return false;
    }
    return true;
}

/// The list letter of the margin, or 0.
char list_letter(std::string_view margin, const TEMPLATE_VALUES &values) {
    for (char letter : margin)
        if (values.lists.contains(letter))
            return letter;
    return 0;
}

const std::string *find_name(std::string_view name, const TEMPLATE_NAMES *row, const TEMPLATE_NAMES &names) {
    const std::string *own = row == nullptr ? nullptr : row->find(name);
    return own != nullptr ? own : names.find(name);
}

void append_line(std::string &out, std::string_view text, const TEMPLATE_NAMES *row,
                 const TEMPLATE_NAMES &names) {
    for (size_t open = text.find('<'); open != std::string_view::npos; open = text.find('<', open)) {
        size_t close = text.find('>', open);
        if (close == std::string_view::npos)
            break;
        const std::string *value = find_name(text.substr(open + 1, close - open - 1), row, names);
        if (value == nullptr) { // an operator or a text of the user's language
            ++open;
            continue;
        }
        out.append(text.substr(0, open)).append(*value);
        text.remove_prefix(close + 1);
        open = 0;
    }
    out.append(text).push_back('\n');
}

} // namespace

const std::string *TEMPLATE_NAMES::find(std::string_view name) const {
    auto found = std::ranges::find(rows, name, &ROW::first);
    return found == rows.end() ? nullptr : &found->second;
}

std::string &TEMPLATE_NAMES::operator[](std::string_view name) {
    auto found = std::ranges::find(rows, name, &ROW::first);
    return found != rows.end() ? found->second : rows.emplace_back(name, std::string()).second;
}

std::string expand_template(std::string_view text, const TEMPLATE_VALUES &values) {
    std::string out;
    std::vector<TEMPLATE_LINE> lines = split_lines(text);
    for (size_t at = 0; at < lines.size();) {
        char list = list_letter(lines[at].margin, values);
        std::vector<std::string_view> block; // the lines that are written, once or for each row
        size_t end = at;
        do {
            if (margin_holds(lines[end].margin, values))
                block.push_back(lines[end].text);
            ++end;
        } while (list != 0 && end < lines.size() && list_letter(lines[end].margin, values) == list);
        auto append_block = [&](const TEMPLATE_NAMES *row) {
            for (std::string_view line : block)
                append_line(out, line, row, values.names);
        };
        if (list == 0)
            append_block(nullptr);
        else
            for (const TEMPLATE_NAMES &row : values.lists.at(list))
                append_block(&row);
        at = end;
    }
    return out;
}
