#include "kit/package_list.hh"

#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace {

struct RECORD {
    std::vector<std::string> fields;
    int32_t line;
};

std::string trimmed(std::string_view text) {
    size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
    return first == std::string_view::npos ? std::string()
                                           : std::string(text.substr(first, last - first + 1));
}

/// The separator is the one of the first line that is no comment.
char separator_of(std::string_view text) {
    size_t at = 0;
    while (at < text.size() && (text[at] == '#' || text[at] == '\n' || text[at] == '\r'))
        at = std::min(text.find('\n', at), text.size() - 1) + 1;
    bool quoted = false;
    for (; at < text.size() && (quoted || text[at] != '\n'); ++at) {
        if (text[at] == '"')
            quoted = !quoted;
        else if (!quoted && (text[at] == ',' || text[at] == ';' || text[at] == '\t'))
            return text[at];
    }
    return ',';
}

/// Lines, fields and quotes of RFC 4180; quotes may hold line ends.
struct CSV_READING {
    const std::string &path;
    std::string_view text;
    char separator;
    size_t at = 0;
    int32_t line = 1;

    bool is_at(char character) const {
        return at < text.size() && text[at] == character;
    }
    bool is_line_end() const {
        return at >= text.size() || text[at] == '\n' || text.substr(at, 2) == "\r\n";
    }

    std::string quoted_field() {
        std::string field;
        const int32_t start = line;
        for (++at; at < text.size(); ++at) {
            if (text[at] == '"' && text.substr(at + 1, 1) != "\"") {
                ++at;
                while (is_at(' '))
                    ++at;
                if (!is_line_end() && !is_at(separator))
                    TOOL_fail(path, line, "text stands behind the closing quote of a field.");
                return field;
            }
            at += text[at] == '"' ? 1 : 0;
            line += text[at] == '\n' ? 1 : 0;
            field += text[at];
        }
        TOOL_fail(path, start, "this quote is not closed.");
    }

    std::string field() {
        while (is_at(' '))
            ++at;
        if (is_at('"'))
            return quoted_field();
        size_t start = at;
        while (!is_line_end() && !is_at(separator))
            ++at;
        return trimmed(text.substr(start, at - start));
    }

    /// The next line with a field that is not empty; none at the end.
    std::optional<RECORD> next() {
        while (at < text.size()) {
            RECORD record{{}, line};
            bool is_comment = is_at('#');
            if (is_comment)
                at = std::min(text.find('\n', at), text.size());
            while (!is_comment) {
                record.fields.push_back(field());
                if (!is_at(separator))
                    break;
                ++at;
            }
            at += text.substr(at, 2) == "\r\n" ? 2 : 1;
            ++line;
            if (std::any_of(record.fields.begin(), record.fields.end(),
                            [](const std::string &field) { return !field.empty(); }))
                return record;
        }
        return {};
    }
};

constexpr size_t COLUMNS = 3;
constexpr const char *TITLES[COLUMNS] = {"number", "port or pad", "name"};

/// Words of a title, in the order in which they tell: "pad number" is a number, "signal name" a port, "pin
/// name" a name and "pin" alone a number.
constexpr struct {
    const char *word;
    size_t column;
} TITLE_WORDS[] = {{"number", 0},   {"no", 0},       {"no.", 0},  {"num", 0},
                   {"position", 0}, {"port", 1},     {"pad", 1},  {"net", 1},
                   {"signal", 1},   {"instance", 1}, {"name", 2}, {"function", 2},
                   {"label", 2},    {"pin", 0},      {"ball", 0}, {"lead", 0}};

std::optional<size_t> column_titled(const std::string &title) {
    std::string words = " " + lower_case(title) + " ";
    std::replace_if(
        words.begin(), words.end(),
        [](char letter) { return letter == '_' || letter == '-' || letter == '/'; }, ' ');
    for (const auto &row : TITLE_WORDS)
        if (words.find(" " + std::string(row.word) + " ") != std::string::npos)
            return row.column;
    return {};
}

/// The place of each column, when the line consists of titles: a pin has a digit in its number, and one of
/// these words could be the name of a port as well.
std::optional<std::array<size_t, COLUMNS>> columns_titled(const std::string &path, const RECORD &record) {
    std::array<size_t, COLUMNS> places;
    places.fill(SIZE_MAX);
    size_t known = 0;
    for (size_t at = 0; at < record.fields.size(); ++at) {
        if (record.fields[at].find_first_of("0123456789") != std::string::npos)
            return {};
        if (auto column = column_titled(record.fields[at]); column && places[*column] == SIZE_MAX) {
            places[*column] = at;
            ++known;
        }
    }
    if (known < 2)
        return {};
    for (size_t column : {size_t{0}, size_t{1}})
        if (places[column] == SIZE_MAX)
            TOOL_fail(path, record.line, "the column '%s' is missing.", TITLES[column]);
    return places;
}

} // namespace

std::vector<PACKAGE_LIST_ROW> package_list_read(const std::string &path) {
    const std::string text = TOOL_read_file(path);
    std::string_view whole = text;
    if (whole.starts_with("\xEF\xBB\xBF")) // what spreadsheets write before UTF-8
        whole.remove_prefix(3);
    CSV_READING reading{path, whole, separator_of(whole)};
    std::array<size_t, COLUMNS> places = {0, 1, 2};
    std::vector<PACKAGE_LIST_ROW> pins;
    std::unordered_map<std::string, int32_t> lines;
    for (bool is_first = true; auto record = reading.next(); is_first = false) {
        if (auto titled = is_first ? columns_titled(path, *record) : std::nullopt) {
            places = *titled;
            continue;
        }
        auto field = [&](size_t column) {
            return places[column] < record->fields.size() ? record->fields[places[column]] : std::string();
        };
        if (places[1] >= record->fields.size())
            TOOL_fail(path, record->line, "the column '%s' is missing.", TITLES[1]);
        if (field(0).empty())
            TOOL_fail(path, record->line, "this pin has no number.");
        auto [row, is_new] = lines.emplace(field(0), record->line);
        if (!is_new)
            TOOL_fail(path, record->line, "the pin number '%s' stands in line %d too.", field(0).c_str(),
                      row->second);
        pins.push_back({field(0), field(1), field(2), record->line});
    }
    if (pins.empty())
        TOOL_fail(path, 0, "there are no pins in this file.");
    return pins;
}
