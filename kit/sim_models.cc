#include "kit/sim_models.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_scan.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace {

/// A module as it stands in a file that was given.
struct GIVEN_MODULE {
    size_t file;
    bool has_behaviour = false;
    bool is_here = true;                    ///< in the file itself, not in one that it includes
    size_t end = 0;                         ///< where its `endmodule` begins
    std::vector<size_t> inouts{};           ///< where the word stands
    std::vector<std::string> inout_names{}; ///< of each of these, between blanks
};

struct MODEL_MAKER {
    const NETLIST_WALK &walk;
    std::vector<std::string> texts{}; ///< of the given files
    std::unordered_map<std::string, GIVEN_MODULE> modules{};
    std::unordered_map<std::string, int32_t> class_of_name{};
    std::vector<std::map<size_t, std::string>> insertions{}; ///< by file: what goes in, and where
    std::string made{};                                      ///< modules that no file has
};

bool only_declares(const std::vector<std::string> &words) {
    static const std::unordered_set<std::string> DECLARES = {
        "module",  "macromodule", "input",     "output",     "inout", "tri",
        "supply0", "supply1",     "parameter", "localparam", "reg",   "specparam"};
    return DECLARES.contains(words[0]) ||
           (words[0] == "wire" && std::find(words.begin(), words.end(), "=") == words.end());
}

/// The words of one file, cut into statements.
void scan_file(MODEL_MAKER &maker, size_t file, const SIM_GIVEN &given) {
    NL_NAMES names;
    VSCAN scan{names};
    scan.include_directories = given.folders;
    for (const std::string &macro : given.macros) {
        size_t equals = std::min(macro.find('='), macro.size());
        VSCAN_define(scan, macro.substr(0, equals),
                     std::string_view(macro).substr(std::min(equals + 1, macro.size())));
    }
    VSCAN_open(scan, given.cells[file]);
    const char *begin = scan.sources.back().at;
    maker.texts.push_back(scan.texts.back());
    auto place = [&](const VSCAN_TOKEN &token) { return static_cast<size_t>(token.text.data() - begin); };
    GIVEN_MODULE *module = nullptr;
    std::vector<std::string> words;
    bool after_inout = false;
    for (VSCAN_next(scan); scan.token.kind != TOKEN_END; VSCAN_next(scan)) {
        bool is_symbol = scan.token.kind == TOKEN_SYMBOL;
        std::string word = is_symbol ? std::string(1, scan.token.symbol) : std::string(scan.token.text);
        bool is_here = scan.sources.size() == 1 && place(scan.token) < maker.texts[file].size();
        if (word == "endmodule") {
            if (module != nullptr) {
                module->end = place(scan.token);
                module->is_here = module->is_here && is_here;
            }
            module = nullptr;
            words.clear();
            continue;
        }
        if (words.size() == 1 && (words[0] == "module" || words[0] == "macromodule")) {
            module = &maker.modules[word];
            *module = {.file = file, .is_here = is_here};
        }
        if (word == "inout" && module != nullptr) {
            module->inouts.push_back(place(scan.token));
            module->inout_names.emplace_back(" ");
        }
        after_inout = word == "inout" ||
                      (after_inout && word != "input" && word != "output" && word != ";" && word != ")");
        if (after_inout && module != nullptr && scan.token.kind != TOKEN_SYMBOL)
            module->inout_names.back() += word + " ";
        if (word != ";") {
            words.push_back(std::move(word));
            continue;
        }
        if (module != nullptr && !words.empty() && !only_declares(words))
            module->has_behaviour = true;
        words.clear();
    }
}

/// A name as Verilog has it.
std::string verilog_name(const std::string &name) {
    bool is_plain = !name.empty() && std::isdigit(static_cast<unsigned char>(name[0])) == 0 &&
                    std::all_of(name.begin(), name.end(),
                                [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; });
    return is_plain ? name : "\\" + name + " ";
}

std::string verilog_bit(const std::string &name) {
    KIT_BIT bit = kit_bit(name);
    return bit.index < 0 ? verilog_name(name) : verilog_name(bit.base) + format_text("[%ld]", bit.index);
}

/// The class' pin of that name, as the netlist spells it; empty for none.
std::string pin_of(int32_t class_id, const char *name) {
    for (int32_t i = 0; name != nullptr && i < class_tab[class_id].pin_count; ++i)
        if (std::string pin = chip_pin_name(class_tab[class_id].first_pin + i);
            same_text_no_case(pin.c_str(), name))
            return verilog_bit(pin);
    return "";
}

/// What a pad or buffer does by its %BUFFER block; empty for one with a multiplexer inside.
std::string buffer_behaviour(int32_t class_id, const WALK_CLASS &row) {
    const BUFFER_CELL &buffer = *row.buffer;
    if (buffer.mux_in1 != nullptr || buffer.mux_in2 != nullptr || buffer.mux_in3 != nullptr)
        return "";
    std::string input = pin_of(class_id, buffer.input), output = pin_of(class_id, buffer.output),
                both = pin_of(class_id, buffer.inout), enable;
    if (std::string high = pin_of(class_id, buffer.en_h); !high.empty())
        enable = high;
    if (std::string low = pin_of(class_id, buffer.en_l); !low.empty())
        enable += (enable.empty() ? "!" : " & !") + low;
    auto drive = [&](const std::string &pin, const std::string &value) {
        return "    assign " + pin + " = " +
               (enable.empty() ? value : "(" + enable + ") ? " + value + " : 1'bz") + ";\n";
    };
    std::string text;
    const std::string &pad = !both.empty() ? both : output;
    if (!pad.empty() && !input.empty())
        text += drive(pad, (row.inverts ? "!" : "") + input);
    if (!both.empty() && !output.empty())
        text += "    assign " + output + " = " + both + ";\n";
    if (std::string minus = pin_of(class_id, buffer.output_m); !minus.empty() && !input.empty())
        text += drive(minus, "!" + input);
    for (bool up : {false, true})
        if ((up ? buffer.pull_1 + buffer.weak_1 : buffer.pull_0 + buffer.weak_0) > 0 && !both.empty())
            text += std::string(up ? "    pullup (" : "    pulldown (") + both + ");\n";
    return text;
}

/// A module of the class' pins, for one that no file has.
std::string made_module(int32_t class_id, const std::string &behaviour) {
    struct PORT {
        SDB_DIRECTION direction;
        long low, high;
    };
    std::vector<std::string> order;
    std::map<std::string, PORT> ports;
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        KIT_BIT bit = kit_bit(chip_pin_name(pin));
        auto [place, is_new] =
            ports.try_emplace(bit.base, PORT{chip_pin_direction(pin), bit.index, bit.index});
        if (is_new)
            order.push_back(bit.base);
        place->second.low = std::min(place->second.low, bit.index);
        place->second.high = std::max(place->second.high, bit.index);
    }
    std::string list;
    for (const std::string &name : order) {
        const PORT &port = ports[name];
        const char *word = port.direction == SDB_INPUT    ? "input"
                           : port.direction == SDB_OUTPUT ? "output"
                                                          : "inout";
        std::string range = port.high < 0 ? "" : format_text(" [%ld:%ld]", port.high, port.low);
        list += (list.empty() ? "" : ", ") + std::string(word) + range + " " + verilog_name(name);
    }
    return "module " + verilog_name(chip_class_name(class_id)) + " (" + list + ");\n" + behaviour +
           "endmodule\n\n";
}

/// Gives a module without behaviour one. Its ports that are not driven both ways become inputs: a simulator
/// joins all that is on an inout of each of ten thousand cells, which takes minutes for a power net.
void edit_module(MODEL_MAKER &maker, const GIVEN_MODULE &module, const BUFFER_CELL *buffer,
                 const std::string &behaviour) {
    std::string &text = maker.texts[module.file];
    for (size_t i = 0; i < module.inouts.size(); ++i) {
        bool is_pad = false;
        for (const char *name :
             {buffer != nullptr ? buffer->inout : nullptr, buffer != nullptr ? buffer->output : nullptr,
              buffer != nullptr ? buffer->output_m : nullptr})
            is_pad = is_pad || (name != nullptr && module.inout_names[i].find(" " + std::string(name) +
                                                                              " ") != std::string::npos);
        if (!is_pad)
            text.replace(module.inouts[i], 5, "input");
    }
    maker.insertions[module.file][module.end] = behaviour;
}

/// What the netlist defines, and the cells that it has instances of beside these, in their order.
std::vector<std::string> cells_of_netlist(const std::string &netlist) {
    static const std::unordered_set<std::string> NO_CELLS = {"module", "input",   "output",  "inout", "wire",
                                                             "tri",    "supply0", "supply1", "assign"};
    NL_NAMES names;
    VSCAN scan{names};
    VSCAN_open(scan, netlist);
    std::unordered_set<std::string> defined, known;
    std::vector<std::string> cells;
    std::string first;
    for (VSCAN_next(scan); scan.token.kind != TOKEN_END; VSCAN_next(scan)) {
        bool is_name = scan.token.kind == TOKEN_NAME || scan.token.kind == TOKEN_ESCAPED;
        if (scan.token.symbol == ';' || (is_name && scan.token.text == "endmodule")) {
            first.clear();
            continue;
        }
        if (!is_name)
            continue;
        if (first == "module")
            defined.emplace(scan.token.text);
        if (first.empty() && !NO_CELLS.contains(std::string(scan.token.text)) &&
            known.emplace(scan.token.text).second)
            cells.emplace_back(scan.token.text);
        first = first.empty() ? scan.token.text : "-";
    }
    std::erase_if(cells, [&defined](const std::string &cell) { return defined.contains(cell); });
    return cells;
}

/// Sees to it that the cell has a model; a text when it can't.
std::string take_cell(MODEL_MAKER &maker, const std::string &name) {
    auto given = maker.modules.find(name);
    if (given != maker.modules.end() && given->second.has_behaviour)
        return "";
    // Cells that stand inside modules of the netlist alone are no classes of the design.
    auto known = maker.class_of_name.find(name);
    int32_t class_id = known != maker.class_of_name.end() ? known->second : -1;
    const WALK_CLASS row = class_id < 0 ? WALK_CLASS{} : maker.walk.classes[static_cast<size_t>(class_id)];
    if (row.is_tap)
        return "";
    if (row.cell != nullptr)
        return "there is no Verilog model of the boundary cell '" + name + "'; --cells names its file";
    if (class_id < 0 && given == maker.modules.end())
        return "there is no Verilog model of '" + name + "'; --cells names its file";
    std::string behaviour;
    if (row.buffer != nullptr) {
        behaviour = buffer_behaviour(class_id, row);
        if (behaviour.empty())
            return "there is no Verilog model of the pad '" + name + "'; --cells names its file";
    }
    if (given == maker.modules.end())
        maker.made += made_module(class_id, behaviour);
    else if (given->second.is_here)
        edit_module(maker, given->second, row.buffer, behaviour);
    return "";
}

/// The file's text with what goes into it.
std::string edited_text(const std::string &text, const std::map<size_t, std::string> &insertions) {
    std::string edited;
    size_t done = 0;
    for (const auto &[at, behaviour] : insertions) {
        edited.append(text, done, at - done);
        edited += "\n" + behaviour;
        done = at;
    }
    return edited.append(text, done, text.npos) + "\n";
}

} // namespace

SIM_GIVEN sim_given(const KIT_CALL &call) {
    return {kit_values(call, "cells"), kit_values(call, "define"), kit_values(call, "include")};
}

SIM_MODELS simulation_models(const NETLIST_WALK &walk, const std::string &design, const std::string &netlist,
                             SIM_GIVEN given) {
    std::vector<std::string> &cells = given.cells;
    for (const std::string &file : cells)
        if (!TOOL_exists(file))
            TOOL_fail("", 0, "there is no file '%s' of Verilog models.", file.c_str());
    std::string drafted = design + "_cells.v";
    if (TOOL_exists(drafted) && std::find(cells.begin(), cells.end(), drafted) == cells.end())
        cells.push_back(drafted);
    MODEL_MAKER maker{.walk = walk};
    maker.insertions.resize(cells.size());
    for (size_t file = 0; file < cells.size(); ++file)
        scan_file(maker, file, given);
    for (int32_t id = 0; id < class_count; ++id)
        maker.class_of_name.emplace(chip_class_name(id), id);
    SIM_MODELS models;
    for (const std::string &macro : given.macros)
        models.words.insert(models.words.end(), {"-D", macro});
    for (const std::string &folder : given.folders)
        models.words.insert(models.words.end(), {"-I", folder});
    for (const std::string &cell : cells_of_netlist(netlist))
        if (models.why_not = take_cell(maker, cell); !models.why_not.empty())
            return models;
    std::string text = maker.made;
    for (size_t file = 0; file < cells.size(); ++file)
        if (maker.insertions[file].empty())
            models.words.push_back(cells[file]);
        else
            text += edited_text(maker.texts[file], maker.insertions[file]);
    if (!text.empty()) {
        models.words.push_back(design + "_models.v");
        TOOL_write_file(models.words.back(), text);
    }
    return models;
}
