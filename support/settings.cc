// Reader of the settings file.
//
// A statement is a key, delimiters and a value that ends with ';'; a value may run over several lines. The
// reader reports no syntax errors: what makes no sense becomes a key that nobody asks for. Only a ';' that is
// missing is warned of, since the setting then has no effect, or takes the next one into its value.
#include "support/settings.hh"

#include "support/console.hh"
#include "support/dyna.hh"
#include "support/fnm.hh"
#include "support/program.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

struct rc_entry {
    const char *name;    ///< in upper case
    const char **values; ///< null, or the values in the order of the file
};

rc_entry *rc_tab = nullptr;
std::unordered_map<std::string, int32_t> rc_index; ///< row of rc_tab by name, the lowest of equal names

constexpr const char *RC_EXT = ".def";
constexpr int line_room = 512;
constexpr size_t mask_room = 1024;
constexpr std::string_view delimiters = " =:\t\r\n";
constexpr std::string_view list_separators = " ,;\t\r\n";
constexpr std::string_view comment_marks = "#!@$%^&/~";

std::string upper_case(std::string_view text) {
    std::string upper(text);
    for (char &c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

/// Length of the expression that the pattern stands for, with its anchors: the measure of its work area.
size_t mask_length(std::string_view pattern) {
    size_t length = 2;
    for (char c : pattern)
        length += c == '*' ? 7 : std::string_view("$().[]^{}").find(c) != std::string_view::npos ? 2 : 1;
    return length;
}

/// One element at the front of a list; moves past it. Quoted text may hold separators.
std::string_view cut_element(std::string_view &rest) {
    char first = rest.front();
    if (first == '\'' || first == '"') {
        size_t end = 1;
        while (end < rest.size() && (rest[end] != first || rest[end - 1] == '\\'))
            end++;
        std::string_view inside = rest.substr(1, end - 1);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        return inside.substr(
            0, inside.find(first)); // an escaped quote holds the element together, yet ends its value
    }
    size_t end = first == '(' ? rest.find(')') : rest.find_first_of(list_separators);
    if (first == '(' && end != std::string_view::npos)
        end++; // the bracket stays
    std::string_view element = rest.substr(0, end);
    rest.remove_prefix(element.size());
    return element;
}

std::vector<std::string_view> make_list(std::string_view value) {
    if (value.empty())
        return {};
    if (value.front() != '(')
        return {value};
    value.remove_prefix(1);
    std::string_view rest = value.substr(0, value.rfind(')'));
    std::vector<std::string_view> elements;
    while (true) {
        rest.remove_prefix(std::min(rest.find_first_not_of(list_separators), rest.size()));
        if (rest.empty())
            return elements;
        elements.push_back(cut_element(rest));
    }
}

/// Row of the first stored key that the key as written matches; -1 for none.
int32_t find_key(const std::string &key) {
    if (key.find_first_of("*?") == std::string::npos && mask_length(key) < mask_room) {
        auto known = rc_index.find(key);
        return known == rc_index.end() ? -1 : known->second;
    }
    for (const rc_entry &entry : rows(rc_tab))
        if (STR_match(key.c_str(), entry.name) == 0)
            return static_cast<int32_t>(&entry - rc_tab);
    return -1;
}

void RC_add(const std::string &key, std::string_view value) {
    int32_t row = find_key(key);
    if (row < 0) {
        std::string name = upper_case(key);
        row = DYNA_count(rc_tab);
        append_row(rc_tab, rc_entry{keep_text(name), nullptr});
        rc_index.emplace(name, row);
    }
    rc_entry &entry = rc_tab[row];
    for (std::string_view one : make_list(value))
        append_row(entry.values, keep_text(one));
}

/// The statement that is being read.
struct statement {
    bool open = false;
    int32_t line = 0; ///< of its key, counted as the editor counts them
    std::string key;
    std::string value;
};

/// The file that is being read, for messages.
struct settings_source {
    const char *path;
    const char *section;
    int32_t line = 1;
};

void warn_of_missing_end(const settings_source &source, const statement &current, const char *effect) {
    vmr_printf("WARNING: (%s) line %d: setting '%s' doesn't end with ';' %s.\n\n", source.path, current.line,
               current.key.c_str(), effect);
}

void finish_statement(statement &current, const char *section) {
    current.value.pop_back();
    std::string_view key = current.key;
    current.open = false;
    if (section != nullptr && !key.starts_with('.') && key.find('.') != std::string_view::npos) {
        if (!key.starts_with(section))
            return;
        key.remove_prefix(std::min(std::strlen(section) + 1, key.size()));
    }
    if (key.starts_with('.'))
        key.remove_prefix(1);
    RC_add(std::string(key), current.value);
}

void read_line(std::string_view line, statement &current, const settings_source &source) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\n\v\f\r"), line.size()));
    if (line.empty() || comment_marks.find(line.front()) != std::string_view::npos)
        return;
    if (!current.open) {
        size_t end = std::min(line.find_first_of(delimiters), line.size());
        current = {true, source.line, std::string(line.substr(0, end)), ""};
        line.remove_prefix(end);
    } else if (line.find('=') != line.npos) {
        warn_of_missing_end(source, current, "and takes the next line into its value");
    }
    line.remove_prefix(std::min(line.find_first_not_of(delimiters), line.size()));
    line = line.substr(0, line.find_last_not_of(" \t\n\v\f\r") + 1);
    current.value += line;
    if (current.value.ends_with(';'))
        finish_statement(current, source.section);
    else if (!current.value.empty())
        current.value.back() = '\n'; // a value that goes on loses its last character on each line
}

const char *lookup_file(const char *name) {
    const char *found = FNM_find_input(format_text(".%s%s", name, RC_EXT));
    return found != nullptr ? found : FNM_find_input(format_text("%s%s", name, RC_EXT));
}

} // namespace

int RC_load(const char *name, const char *section) {
    const char *path = lookup_file(name);
    std::FILE *file = path == nullptr ? nullptr : FNM_open(path);
    if (file == nullptr)
        return -1;
    statement current;
    settings_source source = {path, section};
    char line[line_room];
    while (std::fgets(line, sizeof line, file) != nullptr) {
        read_line(line, current, source);
        source.line += std::strchr(line, '\n') != nullptr ? 1 : 0;
    }
    if (current.open)
        warn_of_missing_end(source, current, "and is ignored");
    std::fclose(file);
    return 0;
}

const char *RC_sget(const char *pattern, const char *default_value) {
    const char **values = RC_search(pattern);
    return values != nullptr && DYNA_count(values) > 0 ? values[0] : default_value;
}

const char **RC_search(const char *pattern) {
    std::string upper = upper_case(pattern);
    for (const rc_entry &entry : rows(rc_tab))
        if (STR_match(upper.c_str(), entry.name) == 0)
            return entry.values;
    return nullptr;
}

// All places of the pattern that the text read so far can have reached are carried along together, so that no
// pattern, however many runs it holds, takes more than its length times the text's.
int STR_match(const char *pattern, const char *text) {
    std::string_view mask = pattern;
    if (mask_length(mask) >= mask_room)
        return 1;
    std::vector<char> reached(mask.size() + 1, 0);
    std::vector<char> next(mask.size() + 1, 0);
    auto skip_empty_runs = [&](std::vector<char> &places) {
        for (size_t i = 0; i < mask.size(); i++)
            if (places[i] != 0 && mask[i] == '*')
                places[i + 1] = 1;
    };
    reached[0] = 1;
    skip_empty_runs(reached);
    for (const char *at = text; *at != '\0'; at++) {
        std::fill(next.begin(), next.end(), 0);
        for (size_t i = 0; i < mask.size(); i++) {
            if (reached[i] == 0)
                continue;
            if (mask[i] == '*' && std::strchr("><?", *at) == nullptr)
                next[i] = 1;
            else if (mask[i] != '*' && (mask[i] == '?' || mask[i] == *at))
                next[i + 1] = 1;
        }
        skip_empty_runs(next);
        reached.swap(next);
    }
    return reached[mask.size()] != 0 ? 0 : 1;
}
