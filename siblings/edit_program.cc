#include "siblings/edit_program.hh"

#include "siblings/definitions.hh"
#include "siblings/edit_netlist.hh"
#include "siblings/tool.hh"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct EDITOR {
    std::string file; // the command file, for messages
    int line = 0;
    std::vector<std::string> directories{""}; // where definitions are searched first: here, then each `path`
    std::string name{};                       // of the design that is open; empty before `edit`
    EDIT_NETLIST netlist{};
    bool changed = false; // since `edit`
    bool saved = false;
    bool ended = false;
};

using WORDS = std::vector<std::string>;

[[noreturn]] void fail(const EDITOR &editor, const std::string &what) {
    TOOL_fail(editor.file, editor.line, "%s", what.c_str());
}

// An operand is a pin, name{pin}, or the name of a port, constant or net.
EDIT_PLACE operand(EDITOR &editor, const std::string &text) {
    EDIT_PLACE place;
    size_t open = text.rfind('{');
    if (open == std::string::npos || text.back() != '}') {
        bool reserved = text == "GND" || text == "VCC" || text == NL_UNKNOWN_NET;
        if ((reserved || !EDIT_find_port(editor.netlist, text, place)) &&
            !EDIT_find_net(editor.netlist, text, place))
            fail(editor, "the design has no port or net '" + text + "'.");
        return place;
    }
    std::string name = text.substr(0, open);
    std::string pin = text.substr(open + 1, text.size() - open - 2);
    int32_t instance = EDIT_find_instance(editor.netlist, name);
    if (instance == NL_NONE)
        fail(editor, "the design has no instance '" + name + "'.");
    if (!EDIT_find_pin(editor.netlist, instance, pin, place))
        fail(editor, "the instance '" + name + "' has no pin '" + pin + "'.");
    return place;
}

// The module or cell of that name with its ports, from the design itself or from its SDB file.
int32_t definition(EDITOR &editor, const std::string &name) {
    NL_DESIGN &design = editor.netlist.design;
    int32_t def = NL_module(design, NL_name(design.names, name));
    if (def == editor.netlist.module)
        fail(editor, "the module '" + name + "' can't contain itself.");
    NL_MODULE &module = design.modules[static_cast<size_t>(def)];
    if (!module.defined && !DEF_read_ports(design, module, editor.directories))
        fail(editor,
             "the cell or module '" + name + "' is unknown: no '" + name + ".sdb' on the search path.");
    return def;
}

void do_edit(EDITOR &editor, const WORDS &words) {
    if (!editor.name.empty())
        fail(editor, "a design is being edited already.");
    if (!TOOL_exists(words[1] + ".sdb"))
        fail(editor, "there is no file '" + words[1] + ".sdb' to edit.");
    editor.name = words[1];
    EDIT_open(editor.netlist, editor.name);
}

void do_path(EDITOR &editor, const WORDS &words) {
    editor.directories.push_back(words[1]);
}

void do_add(EDITOR &editor, const WORDS &words) {
    bool is_input = words[2] == "input";
    if (is_input || words[2] == "output") {
        if (!EDIT_add_port(editor.netlist, words[1], is_input ? NL_INPUT : NL_OUTPUT))
            fail(editor, "the design has a port '" + words[1] + "' already.");
        return;
    }
    int32_t def = definition(editor, words[2]);
    if (!EDIT_add_instance(editor.netlist, words[1], def))
        fail(editor, "the design has an instance '" + words[1] + "' already.");
}

void do_disconnect(EDITOR &editor, const WORDS &words) {
    EDIT_PLACE place = operand(editor, words[1]);
    if (place.net == nullptr)
        fail(editor, "'" + words[1] + "' is a net; only a pin or a port can be disconnected.");
    EDIT_disconnect(editor.netlist, place);
}

void do_connect(EDITOR &editor, const WORDS &words) {
    EDIT_PLACE a = operand(editor, words[1]);
    EDIT_PLACE b = operand(editor, words[2]);
    const char *fault = EDIT_connect(editor.netlist, a, b);
    if (fault != nullptr)
        fail(editor, "'" + words[1] + "' and '" + words[2] + "': " + fault);
}

void do_replace(EDITOR &editor, const WORDS &words) {
    int32_t instance = EDIT_find_instance(editor.netlist, words[1]);
    if (instance == NL_NONE)
        fail(editor, "the design has no instance '" + words[1] + "'.");
    EDIT_replace(editor.netlist, instance, definition(editor, words[2]));
}

void do_save(EDITOR &editor, const WORDS &) {
    EDIT_save(editor.netlist, editor.name);
    editor.saved = true;
}

void do_quit(EDITOR &editor, const WORDS &) {
    if (editor.changed && !editor.saved)
        fail(editor, "the changes have not been saved.");
    editor.ended = true;
}

struct VERB {
    const char *word;
    size_t operands;
    void (*run)(EDITOR &, const WORDS &);
    bool changes; // may not stand before `edit` or behind `save`
};
constexpr VERB VERBS[] = {
    {"edit", 1, do_edit, false},      {"path", 1, do_path, false},
    {"add", 2, do_add, true},         {"disconnect", 1, do_disconnect, true},
    {"connect", 2, do_connect, true}, {"replace", 2, do_replace, true},
    {"save", 0, do_save, true},       {"quit", 0, do_quit, false},
};

void run_line(EDITOR &editor, const WORDS &words) {
    for (const VERB &verb : VERBS) {
        if (words[0] != verb.word)
            continue;
        if (words.size() != verb.operands + 1)
            fail(editor, "'" + words[0] + "' takes " + std::to_string(verb.operands) + " operands.");
        if (verb.changes && editor.name.empty())
            fail(editor, "no design is being edited; 'edit' has to come first.");
        if (verb.changes && editor.saved)
            fail(editor, "the design has been saved; only 'quit' may follow.");
        // What a lookup that found nothing is called; a design may not get it as a name.
        for (const std::string &word : words)
            if (word.find("*UNDEF*") != std::string::npos)
                fail(editor, "'" + word + "' names nothing.");
        verb.run(editor, words);
        editor.changed |= verb.changes;
        return;
    }
    fail(editor, "unknown command '" + words[0].substr(0, 80) + "'.");
}

WORDS split(std::string_view line) {
    WORDS words;
    constexpr const char *BLANKS = " \t\r";
    for (size_t at = line.find_first_not_of(BLANKS); at != std::string_view::npos;) {
        size_t end = line.find_first_of(BLANKS, at);
        words.emplace_back(line.substr(at, end - at));
        at = end == std::string_view::npos ? end : line.find_first_not_of(BLANKS, end);
    }
    return words;
}

void run_file(EDITOR &editor) {
    std::string text = TOOL_read_file(editor.file);
    std::string_view rest = text;
    while (!rest.empty() && !editor.ended) {
        size_t end = rest.find('\n');
        editor.line++;
        WORDS words = split(rest.substr(0, end));
        if (!words.empty())
            run_line(editor, words);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    if (!editor.ended)
        fail(editor, "the file ends without 'quit'.");
}

} // namespace

int EDIT_main(int argc, char **argv) {
    EDITOR editor;
    for (int i = 1; i < argc; i++) {
        std::string_view word = argv[i];
        if (word == "-nologo")
            continue;
        if (word != "-b" || !editor.file.empty())
            TOOL_fail("", 0, "usage: kalmedit -nologo -b DIR/NAME");
        editor.file = std::string(TOOL_value(argc, argv, i)) + ".cmd";
    }
    if (editor.file.empty())
        TOOL_fail("", 0, "usage: kalmedit -nologo -b DIR/NAME");
    TOOL_set_search_path();
    run_file(editor);
    return 0;
}
