// What a run leaves, which its own status does not tell: the tools that it starts may fail silently.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "kit/files.hh"
#include "planning/tap_state.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <sys/stat.h>

namespace {

bool is_name_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}

/// True when the text has the name as a word of its own.
bool has_word(const std::string &text, const std::string &name) {
    for (size_t at = 0; !name.empty() && (at = text.find(name, at)) != text.npos; ++at) {
        bool begins = at == 0 || !is_name_character(text[at - 1]);
        bool ends = at + name.size() == text.size() || !is_name_character(text[at + name.size()]);
        if (begins && ends)
            return true;
    }
    return false;
}

void add_file(CHECK_CHIP &chip, const std::string &file, const std::string &text) {
    add_check(chip, 0, {}, text);
    chip.findings.back().file = file;
}

/// True when a source is younger by a second at least: a copy of the folder mixes up what lies closer.
bool is_older(const std::string &file, const std::vector<std::string> &sources) {
    struct stat made, source;
    if (::stat(file.c_str(), &made) != 0)
        return false;
    return std::any_of(sources.begin(), sources.end(), [&](const std::string &path) {
        return ::stat(path.c_str(), &source) == 0 && source.st_mtime > made.st_mtime;
    });
}

/// A netlist that lost its TAP or its last cell on the way out of the database.
void check_netlist(CHECK_CHIP &chip, const std::string &file) {
    if (!TOOL_exists(file) || chip.found.tap_obj < 0)
        return;
    std::string text = TOOL_read_file(file);
    std::string tap = chip_class_name(obj_tab[chip.found.tap_obj].class_id);
    if (!has_word(text, tap))
        add_file(chip, file, format_text("the netlist has no instance of the TAP '%s'", tap.c_str()));
    if (chip.found.cells.empty())
        return;
    std::string last = chip.found.cells.front().instance;
    last = last.substr(last.find_last_of("./") + 1);
    if (!has_word(text, last))
        add_file(chip, file,
                 format_text("the netlist lacks the boundary cell next to TDO, '%s'", last.c_str()));
}

} // namespace

void check_written_files(CHECK_CHIP &chip) {
    std::vector<std::string> inputs;
    for (const char *ending : {".lib", ".bsc", ".sdb", ".c.sdb"})
        inputs.push_back(chip.run.design + ending);
    if (PIN_FILE != nullptr)
        inputs.emplace_back(PIN_FILE);
    std::string netlist = run_text(chip.run, "_jtag");
    std::vector<std::string> outputs = {run_file(chip.run, "_jtag.c.sdb"), chip.run.design + ".bso", netlist};
    std::string rtl = run_text(chip.run, "_TAP");
    if (TOOL_exists(chip.run.design + "_TAP_empty.v")) // a chip that had a TAP gets none
        outputs.push_back(rtl);
    for (const std::string &file : outputs) {
        if (!TOOL_exists(file))
            add_file(chip, file, "the run has not written this file");
        else if (is_older(file, inputs))
            add_file(chip, file, "this file is older than what it is made from");
    }
    check_netlist(chip, netlist);
    add_faults(chip, 0, {"the netlist has no instance"});
}
