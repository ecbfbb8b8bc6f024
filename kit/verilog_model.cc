#include "kit/verilog_model.hh"

#include "siblings/verilog_scan.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_set>

namespace {

using WORDS = std::vector<std::string>; // the tokens of a statement, without its ';'

/// True for 1'bz and the like.
bool is_released(const WORDS &words, size_t first, size_t last) {
    return last - first == 1 && words[first].find('\'') != std::string::npos &&
           words[first].find_first_of("zZ") != std::string::npos;
}

/// An expression in the words of Liberty; empty when it holds an operator that Liberty does not have.
std::string liberty_words(const WORDS &words, size_t first, size_t last) {
    std::string text;
    for (size_t i = first; i < last; ++i) {
        const std::string &word = words[i];
        if (word == "~")
            text += "!";
        else if ((word == "&" || word == "|") && !text.empty() && i > first && words[i - 1] == word)
            continue; // && and ||
        else if (word.find('\'') != std::string::npos && (word.back() == '0' || word.back() == '1'))
            text += word.back();
        else if (word == "?" || word == ":" || word == "{" || word == "=" || word == "<" || word == ">" ||
                 word == "+" || word == "-" || word == "$" || word.find('\'') != std::string::npos)
            return "";
        else if (word == "[")
            text += "["; // an index belongs to its name
        else
            text += (text.empty() || text.back() == '[' || word == "]" || word == "[" ? "" : " ") + word;
    }
    return text;
}

void add_driver(VERILOG_MODEL &model, const std::string &net, MODEL_DRIVER driver) {
    auto [known, is_new] = model.drivers.try_emplace(net, driver);
    if (!is_new)
        known->second.is_single = false;
}

/// `assign NET = EXPRESSION`, where the expression may choose between a value and the released state.
void take_assign(VERILOG_MODEL &model, const WORDS &words, int32_t line) {
    size_t equals = static_cast<size_t>(std::find(words.begin(), words.end(), "=") - words.begin());
    if (equals + 1 >= words.size())
        return;
    std::string net;
    for (size_t i = 1; i < equals; ++i)
        net += words[i];
    size_t first = equals + 1, last = words.size();
    while (last - first > 2 && words[first] == "(" && words[last - 1] == ")" &&
           std::count(words.begin() + static_cast<std::ptrdiff_t>(first),
                      words.begin() + static_cast<std::ptrdiff_t>(last), "(") == 1) {
        ++first;
        --last;
    }
    auto at = [&](const char *word) {
        return static_cast<size_t>(std::find(words.begin() + static_cast<std::ptrdiff_t>(first),
                                             words.begin() + static_cast<std::ptrdiff_t>(last), word) -
                                   words.begin());
    };
    size_t question = at("?"), colon = at(":");
    if (question == last) {
        add_driver(model, net, {liberty_words(words, first, last), "", line});
        return;
    }
    std::string condition = liberty_words(words, first, question);
    if (colon == last || condition.empty())
        return;
    if (is_released(words, colon + 1, last))
        add_driver(model, net, {liberty_words(words, question + 1, colon), "!(" + condition + ")", line});
    else if (is_released(words, question + 1, colon))
        add_driver(model, net, {liberty_words(words, colon + 1, last), condition, line});
}

/// A gate with its output first: `bufif1 name (PAD, A, OE)`.
void take_gate(VERILOG_MODEL &model, const WORDS &words, int32_t line) {
    struct GATE {
        const char *name, *between;
        bool inverts;
        const char
            *off; ///< what stands in front of the enable where it releases the output; null without one
    };
    constexpr GATE GATES[] = {
        {"buf", "", false, nullptr}, {"not", "", true, nullptr},   {"and", "&", false, nullptr},
        {"or", "|", false, nullptr}, {"xor", "^", false, nullptr}, {"nand", "&", true, nullptr},
        {"nor", "|", true, nullptr}, {"bufif1", "", false, "!"},   {"bufif0", "", false, ""},
        {"notif1", "", true, "!"},   {"notif0", "", true, ""}};
    const GATE *gate = std::find_if(std::begin(GATES), std::end(GATES),
                                    [&](const GATE &row) { return words[0] == row.name; });
    if (gate == std::end(GATES) || words.back() != ")")
        return;
    size_t open = words.size();
    for (size_t i = 1; i < words.size(); ++i) // the last parenthesis on the first level holds the connections
        if (words[i] == "(")
            open = i;
    std::vector<std::string> nets(1);
    for (size_t i = open + 1; i + 1 < words.size(); ++i) {
        if (words[i] == ",")
            nets.emplace_back();
        else
            nets.back() += words[i] == "~" ? "!" : words[i];
    }
    size_t inputs = nets.size() - (gate->off != nullptr ? 1 : 0);
    if (inputs < 2)
        return;
    std::string function;
    for (size_t i = 1; i < inputs; ++i)
        function += (i > 1 ? gate->between : "") + ("(" + nets[i] + ")");
    if (gate->inverts)
        function = "!(" + function + ")";
    add_driver(model, nets[0],
               {function, gate->off != nullptr ? gate->off + ("(" + nets.back() + ")") : "", line});
}

/// The expression with nets inside the cell replaced by what drives them.
std::string expanded(const std::string &expression, const VERILOG_MODEL &model,
                     const std::unordered_set<std::string> &pins, int depth) {
    constexpr size_t LONGEST = 4096;
    std::string text;
    for (size_t at = 0; at < expression.size();) {
        size_t end = at;
        while (end < expression.size() &&
               (std::isalnum(static_cast<unsigned char>(expression[end])) != 0 || expression[end] == '_' ||
                expression[end] == '[' || expression[end] == ']'))
            ++end;
        if (end == at) {
            text += expression[at++];
            continue;
        }
        std::string name = expression.substr(at, end - at);
        auto inner = model.drivers.find(name);
        bool opens =
            !pins.contains(name) && inner != model.drivers.end() && depth > 0 && text.size() < LONGEST;
        text += opens ? "(" + expanded(inner->second.function, model, pins, depth - 1) + ")" : name;
        at = end;
    }
    return text;
}

/// Takes a statement in; `model` is that of the module it stands in, null ahead of the first.
void take_statement(std::unordered_map<std::string, VERILOG_MODEL> &models, VERILOG_MODEL *&model,
                    const WORDS &words, const std::string &file, int32_t line) {
    if (words.size() > 1 && (words[0] == "module" || words[0] == "macromodule")) {
        model = &models[words[1]];
        model->file = file;
    } else if (model != nullptr && words.size() > 2) {
        bool assigns = words[0] == "wire" && std::find(words.begin(), words.end(), "=") != words.end();
        if (words[0] == "assign" || assigns)
            take_assign(*model, words, line);
        else
            take_gate(*model, words, line);
    }
}

void read_file(std::unordered_map<std::string, VERILOG_MODEL> &models, VSCAN &scan, const std::string &file) {
    VERILOG_MODEL *model = nullptr;
    WORDS words;
    int32_t line = 0;
    for (VSCAN_next(scan); scan.token.kind != TOKEN_END; VSCAN_next(scan)) {
        if (words.empty())
            line = scan.token.line;
        bool is_symbol = scan.token.kind == TOKEN_SYMBOL;
        std::string word = is_symbol ? std::string(1, scan.token.symbol) : std::string(scan.token.text);
        if (word == ";")
            take_statement(models, model, words, file, line);
        else if (word != "endmodule" && word != "endspecify" && word != "endprimitive") {
            words.push_back(std::move(word));
            continue;
        }
        words.clear();
    }
}

} // namespace

std::unordered_map<std::string, VERILOG_MODEL> read_verilog_models(const std::vector<std::string> &files,
                                                                   const std::vector<std::string> &macros,
                                                                   const std::vector<std::string> &folders) {
    std::unordered_map<std::string, VERILOG_MODEL> models;
    for (const std::string &file : files) {
        NL_NAMES names;
        VSCAN scan{names};
        scan.include_directories = folders;
        for (const std::string &macro : macros) {
            size_t equals = macro.find('=');
            VSCAN_define(scan, macro.substr(0, equals),
                         equals == macro.npos ? "" : std::string_view(macro).substr(equals + 1));
        }
        VSCAN_open(scan, file);
        read_file(models, scan, file);
    }
    return models;
}

bool take_verilog_model(LIBERTY_CELL &cell, const VERILOG_MODEL &model) {
    std::unordered_set<std::string> pins;
    for (const LIBERTY_PIN &pin : cell.pins)
        pins.insert(pin.name);
    bool shows = false;
    for (LIBERTY_PIN &pin : cell.pins) {
        auto driver = model.drivers.find(pin.name);
        if (pin.direction == LIBERTY_DIRECTION::INPUT || driver == model.drivers.end() ||
            !driver->second.is_single)
            continue;
        pin.function = expanded(driver->second.function, model, pins, 8);
        pin.three_state = expanded(driver->second.three_state, model, pins, 8);
        pin.line = driver->second.line;
        shows = shows || !pin.function.empty();
    }
    return shows;
}
