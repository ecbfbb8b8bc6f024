// Compiler directives: macros, conditions, included files. The others are passed over with their line.
#include "siblings/tool.hh"
#include "siblings/verilog_scan.hh"

#include <cstring>
#include <iterator>

namespace {

constexpr size_t MACRO_DEPTH_LIMIT = 64;
// All macros of a run together: a few lines of macros that use each other can stand for any amount of text.
constexpr size_t MADE_TEXT_LIMIT = size_t{1} << 26;

std::string_view read_word(VSCAN_SOURCE &source) {
    const char *first = source.at;
    while (source.at < source.end && VSCAN_is(*source.at, CHAR_IN_NAME))
        source.at++;
    return {first, static_cast<size_t>(source.at - first)};
}

void skip_line_blanks(VSCAN_SOURCE &source) {
    while (source.at < source.end && (*source.at == ' ' || *source.at == '\t'))
        source.at++;
}

std::string_view read_macro_name(VSCAN &scan, VSCAN_SOURCE &source, const char *directive) {
    skip_line_blanks(source);
    std::string_view name = read_word(source);
    if (name.empty())
        TOOL_fail(VSCAN_file(scan), source.line, "`%s needs a name.", directive);
    return name;
}

void skip_line(VSCAN_SOURCE &source) {
    const void *end = std::memchr(source.at, '\n', static_cast<size_t>(source.end - source.at));
    source.at = end != nullptr ? static_cast<const char *>(end) : source.end;
}

// The rest of the line, and of the lines behind a '\' at a line's end; a // comment is no part of it.
std::string_view read_macro_body(VSCAN &scan, VSCAN_SOURCE &source) {
    std::string body;
    while (source.at < source.end && *source.at != '\n') {
        const char *at = source.at;
        if (*at == '\\' && at + 1 < source.end && (at[1] == '\n' || at[1] == '\r')) {
            source.at += at[1] == '\r' && at + 2 < source.end && at[2] == '\n' ? 3 : 2;
            source.line += source.counts;
            body += ' ';
        } else if (*at == '/' && at + 1 < source.end && at[1] == '/') {
            skip_line(source);
        } else {
            body += *source.at++;
        }
    }
    scan.texts.push_back(std::move(body));
    return scan.texts.back();
}

void define_macro(VSCAN &scan, VSCAN_SOURCE &source) {
    std::string name(read_macro_name(scan, source, "define"));
    VSCAN_MACRO macro{{}, false, {}};
    if (source.at < source.end && *source.at == '(') {
        macro.has_formals = true;
        source.at++;
        for (;;) {
            skip_line_blanks(source);
            macro.formals.emplace_back(read_macro_name(scan, source, "define"));
            skip_line_blanks(source);
            char c = source.at < source.end ? *source.at++ : '\0';
            if (c == ')')
                break;
            if (c != ',')
                TOOL_fail(VSCAN_file(scan), source.line, "the arguments of `define %s are not closed.",
                          name.c_str());
        }
    }
    macro.body = read_macro_body(scan, source);
    scan.macros[name] = std::move(macro);
}

// The arguments of a macro's use, split at commas outside of brackets and strings.
std::vector<std::string> read_arguments(VSCAN &scan, VSCAN_SOURCE &source, const std::string &name) {
    std::vector<std::string> arguments(1);
    int first_line = source.line;
    if (!VSCAN_skip_blanks(scan, source) || *source.at != '(')
        TOOL_fail(VSCAN_file(scan), first_line, "the macro `%s needs arguments.", name.c_str());
    source.at++;
    int depth = 0;
    bool in_string = false;
    for (; source.at < source.end; source.at++) {
        char c = *source.at;
        if (c == '\n')
            source.line += source.counts;
        if (c == '"')
            in_string = !in_string;
        if (!in_string) {
            if (c == ')' && depth == 0) {
                source.at++;
                return arguments;
            }
            if (c == ',' && depth == 0) {
                arguments.emplace_back();
                continue;
            }
            depth += (c == '(' || c == '[' || c == '{') - (c == ')' || c == ']' || c == '}');
        }
        arguments.back() += c;
    }
    TOOL_fail(VSCAN_file(scan), first_line, "the arguments of the macro `%s are not closed.", name.c_str());
}

std::string substitute(const VSCAN_MACRO &macro, const std::vector<std::string> &arguments) {
    std::string made;
    std::string_view body = macro.body;
    for (size_t at = 0; at < body.size();) {
        if (!VSCAN_is(body[at], CHAR_STARTS_NAME)) {
            made += body[at++];
            continue;
        }
        size_t end = at;
        while (end < body.size() && VSCAN_is(body[end], CHAR_IN_NAME))
            end++;
        std::string_view word = body.substr(at, end - at);
        at = end;
        size_t formal = 0;
        while (formal < macro.formals.size() && macro.formals[formal] != word)
            formal++;
        if (formal < macro.formals.size())
            made += arguments[formal];
        else
            made += word;
    }
    return made;
}

void use_macro(VSCAN &scan, VSCAN_SOURCE &source, const std::string &name) {
    auto found = scan.macros.find(name);
    if (found == scan.macros.end())
        TOOL_fail(VSCAN_file(scan), source.line, "the macro `%s is not defined.", name.c_str());
    const VSCAN_MACRO &macro = found->second;
    std::string_view text = macro.body;
    if (macro.has_formals) {
        std::vector<std::string> arguments = read_arguments(scan, source, name);
        if (arguments.size() != macro.formals.size())
            TOOL_fail(VSCAN_file(scan), source.line, "the macro `%s takes %zu arguments, not %zu.",
                      name.c_str(), macro.formals.size(), arguments.size());
        scan.texts.push_back(substitute(macro, arguments));
        text = scan.texts.back();
    }
    scan.made_size += text.size() + 1;
    if (scan.sources.size() >= MACRO_DEPTH_LIMIT || scan.made_size > MADE_TEXT_LIMIT)
        TOOL_fail(VSCAN_file(scan), source.line, "the macro `%s stands for itself or for too much.",
                  name.c_str());
    VSCAN_SOURCE made = {text.data(), text.data() + text.size(), source.line, source.file, false, 0};
    scan.sources.push_back(made);
}

// Beside the file that asks for it, then as the name stands, then in the directories of the command line.
std::string find_included(const VSCAN &scan, const std::string &name) {
    if (name.empty() || name[0] == '/')
        return name;
    std::vector<std::string> directories = {TOOL_directory(VSCAN_file(scan)), ""};
    directories.insert(directories.end(), scan.include_directories.begin(), scan.include_directories.end());
    for (const std::string &directory : directories)
        if (std::string path = TOOL_join(directory, name); TOOL_exists(path))
            return path;
    return name;
}

void include_file(VSCAN &scan, VSCAN_SOURCE &source) {
    skip_line_blanks(source);
    char close = source.at < source.end && *source.at == '<' ? '>' : '"';
    if (source.at >= source.end || (*source.at != '"' && *source.at != '<'))
        TOOL_fail(VSCAN_file(scan), source.line, "`include needs a file name in quotes.");
    const char *first = ++source.at;
    while (source.at < source.end && *source.at != close && *source.at != '\n')
        source.at++;
    if (source.at >= source.end || *source.at != close)
        TOOL_fail(VSCAN_file(scan), source.line, "the file name of `include is not closed.");
    std::string name(first, source.at++);
    VSCAN_open(scan, find_included(scan, name));
}

// Passes text over up to the directive that ends or turns the condition. Comments and strings hide a '`'.
void skip_inactive(VSCAN &scan, VSCAN_SOURCE &source) {
    while (VSCAN_skip_blanks(scan, source)) {
        char c = *source.at++;
        if (c == '`')
            return;
        if (c == '"') {
            while (source.at < source.end && *source.at != '"' && *source.at != '\n')
                source.at += *source.at == '\\' && source.at + 1 < source.end ? 2 : 1;
            if (source.at < source.end && *source.at == '"')
                source.at++;
        }
    }
    TOOL_fail(VSCAN_file(scan), scan.conditions.back().line, "`ifdef without `endif.");
}

void open_condition(VSCAN &scan, VSCAN_SOURCE &source, bool wanted) {
    int line = source.line;
    bool outer = scan.conditions.empty() || scan.conditions.back().active;
    bool defined = scan.macros.contains(std::string(read_macro_name(scan, source, "ifdef")));
    bool active = outer && defined == wanted;
    scan.conditions.push_back({active, active, outer, false, line});
}

void turn_condition(VSCAN &scan, VSCAN_SOURCE &source, std::string_view directive) {
    if (scan.conditions.size() <= source.if_depth)
        TOOL_fail(VSCAN_file(scan), source.line, "`%s without `ifdef.", std::string(directive).c_str());
    VSCAN_CONDITION &condition = scan.conditions.back();
    if (directive == "endif") {
        scan.conditions.pop_back();
        return;
    }
    if (condition.else_passed)
        TOOL_fail(VSCAN_file(scan), source.line, "`%s behind `else.", std::string(directive).c_str());
    bool wanted = true;
    if (directive == "else")
        condition.else_passed = true;
    else
        wanted = scan.macros.contains(std::string(read_macro_name(scan, source, "elsif")));
    condition.active = condition.outer && !condition.was_active && wanted;
    condition.was_active |= condition.active;
}

// True when `word` is a directive of conditions, which is then carried out.
bool condition_directive(VSCAN &scan, VSCAN_SOURCE &source, std::string_view word) {
    if (word == "ifdef" || word == "ifndef")
        open_condition(scan, source, word == "ifdef");
    else if (word == "else" || word == "elsif" || word == "endif")
        turn_condition(scan, source, word);
    else
        return false;
    return true;
}

constexpr std::string_view bare_directives[] = {"celldefine", "endcelldefine", "resetall",
                                                "nounconnected_drive", "end_keywords"};
constexpr std::string_view line_directives[] = {"timescale",
                                                "unconnected_drive",
                                                "line",
                                                "pragma",
                                                "begin_keywords",
                                                "default_decay_time",
                                                "default_trireg_strength",
                                                "delay_mode_path",
                                                "delay_mode_distributed",
                                                "delay_mode_unit",
                                                "delay_mode_zero",
                                                "suppress_faults",
                                                "nosuppress_faults",
                                                "enable_portfaults",
                                                "disable_portfaults",
                                                "protect",
                                                "endprotect"};

bool is_one_of(std::string_view word, const std::string_view *first, const std::string_view *last) {
    for (; first != last; first++)
        if (*first == word)
            return true;
    return false;
}

} // namespace

void VSCAN_define(VSCAN &scan, const std::string &name, std::string_view text) {
    scan.texts.emplace_back(text);
    scan.macros[name] = {{}, false, scan.texts.back()};
}

void VSCAN_directive(VSCAN &scan) {
    VSCAN_SOURCE &source = scan.sources.back();
    std::string_view word = read_word(source);
    if (condition_directive(scan, source, word)) {
        while (!scan.conditions.empty() && !scan.conditions.back().active) {
            skip_inactive(scan, source);
            condition_directive(scan, source, read_word(source));
        }
    } else if (word == "define") {
        define_macro(scan, source);
    } else if (word == "undef") {
        scan.macros.erase(std::string(read_macro_name(scan, source, "undef")));
    } else if (word == "include") {
        include_file(scan, source);
    } else if (word == "default_nettype") {
        scan.no_implicit_nets = read_macro_name(scan, source, "default_nettype") == "none";
    } else if (is_one_of(word, std::begin(line_directives), std::end(line_directives))) {
        skip_line(source);
    } else if (!is_one_of(word, std::begin(bare_directives), std::end(bare_directives))) {
        use_macro(scan, source, std::string(word));
    }
}
