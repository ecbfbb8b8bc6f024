#include "kit/boundary_cells.hh"

#include "kit/files.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <unordered_set>

namespace {

/// A block of a library file: its text as it stands there, and what it holds.
struct LIB_BLOCK {
    std::string head, name, text;
    std::unordered_set<std::string> items;
};

bool is_word(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '%';
}

/// The next word or single character behind blanks and comments; empty at the end. The readers of the library
/// file proper keep no text, and a draft shows each block as its author wrote it.
std::string next_word(const std::string &text, size_t &at) {
    while (at < text.size()) {
        if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
            ++at;
        } else if (text.compare(at, 2, "//") == 0) {
            at = std::min(text.find('\n', at), text.size());
        } else if (text.compare(at, 2, "/*") == 0) {
            size_t end = text.find("*/", at + 2);
            at = end == text.npos ? text.size() : end + 2;
        } else {
            break;
        }
    }
    size_t first = at;
    while (at < text.size() && is_word(text[at]))
        ++at;
    if (at == first && at < text.size())
        ++at;
    return text.substr(first, at - first);
}

std::vector<LIB_BLOCK> read_blocks(const std::string &path) {
    std::string text = TOOL_read_file(path);
    std::vector<LIB_BLOCK> blocks;
    for (size_t at = 0;;) {
        size_t before = at;
        LIB_BLOCK block;
        block.head = next_word(text, at);
        if (block.head.empty())
            return blocks;
        size_t first = at - block.head.size();
        block.name = next_word(text, at);
        for (std::string word = "{"; !word.empty() && word != "}";) {
            word = next_word(text, at);
            if (word.size() > 1 && word[0] == '%')
                block.items.insert(word);
        }
        // The comment above a block belongs to it, as far as it follows the block before without a blank
        // line.
        size_t above = text.rfind("\n\n", first);
        if (above != text.npos && above >= before && text.compare(above + 2, 2, "//") == 0)
            first = above + 2;
        block.text = text.substr(first, at - first) + "\n";
        blocks.push_back(std::move(block));
    }
}

struct ROLE_NEEDS {
    const char *words;
    std::vector<const char *> with, without;
};
const ROLE_NEEDS INPUT_ROLE = {
    "an input cell", {"%DATA_IN", "%DATA_OUT", "%MODE_2"}, {"%MODE_1", "%SYS_PIN", "%RST", "%OE_MODE"}};
const ROLE_NEEDS CLOCK_ROLE = {"a cell that only observes", {"%DATA_IN"}, {"%DATA_OUT", "%SYS_PIN"}};
const ROLE_NEEDS OUTPUT_ROLE = {
    "an output cell", {"%DATA_IN", "%DATA_OUT", "%MODE_1"}, {"%SYS_PIN", "%RST", "%OE_MODE", "%HIGHZ"}};
const ROLE_NEEDS CONTROL_ROLE = {"a control cell with %RST",
                                 {"%DATA_IN", "%DATA_OUT", "%MODE_1", "%RST"},
                                 {"%SYS_PIN", "%OE_MODE", "%HIGHZ"}};
const ROLE_NEEDS HIGHZ_ROLE = {"a control cell with %RST and %HIGHZ",
                               {"%DATA_IN", "%DATA_OUT", "%MODE_1", "%RST", "%HIGHZ"},
                               {"%SYS_PIN", "%OE_MODE"}};

/// The blocks that fit a role, in file order.
std::vector<const LIB_BLOCK *> fitting(const std::vector<LIB_BLOCK> &blocks, const ROLE_NEEDS &role,
                                       bool synchronous) {
    std::vector<const LIB_BLOCK *> found;
    for (const LIB_BLOCK &block : blocks) {
        auto has = [&block](const char *item) { return block.items.contains(item); };
        if (block.head == "%SCAN_CELL" && has("%TCK") == synchronous && has("%TDI") && has("%TDO") &&
            std::all_of(role.with.begin(), role.with.end(), has) &&
            std::none_of(role.without.begin(), role.without.end(), has))
            found.push_back(&block);
    }
    return found;
}

const LIB_BLOCK &needed(const std::vector<const LIB_BLOCK *> &found, const ROLE_NEEDS &role,
                        const std::string &path) {
    if (found.empty())
        TOOL_fail(path, 0, "there is no %%SCAN_CELL that can be %s.", role.words);
    return *found.front();
}

/// Of several control cells the one whose name holds the value that it resets to.
const LIB_BLOCK &control_cell(const std::vector<const LIB_BLOCK *> &found, int off, const std::string &path,
                              std::string &doubt) {
    const LIB_BLOCK &first = needed(found, CONTROL_ROLE, path);
    for (const LIB_BLOCK *block : found) {
        size_t digit = block->name.find_last_of("01");
        if (digit != block->name.npos && found.size() > 1 && block->name[digit] - '0' == off)
            return *block;
    }
    doubt = format_text("%s has to reset to %d, which turns the pads off", first.name.c_str(), off);
    return first;
}

} // namespace

std::string own_cells_folder() {
    std::string installed = own_folder() + "../share/rimweave/cells/";
    for (const std::string &folder : {installed, std::string(RW_CELLS_DIR "/")})
        if (TOOL_exists(folder + "boundary_cells.lib"))
            return folder;
    TOOL_fail("", 0, "the boundary cells are not in %s: give others by --boundary-cells.", installed.c_str());
}

CELL_CHOICE choose_boundary_cells(const CHIP_PLAN &plan, const std::string &given) {
    std::string path = given.empty() ? own_cells_folder() + "boundary_cells.lib" : given;
    std::vector<LIB_BLOCK> blocks = read_blocks(path);
    CELL_CHOICE cells;
    cells.source = TOOL_base_name(path);
    std::vector<const LIB_BLOCK *> chosen;
    auto take = [&](const LIB_BLOCK &block) {
        chosen.push_back(&block);
        return block.name;
    };
    cells.input = take(needed(fitting(blocks, INPUT_ROLE, plan.synchronous), INPUT_ROLE, path));
    cells.clock = take(needed(fitting(blocks, CLOCK_ROLE, plan.synchronous), CLOCK_ROLE, path));
    cells.output = take(needed(fitting(blocks, OUTPUT_ROLE, plan.synchronous), OUTPUT_ROLE, path));
    bool mixed = false;
    int off = plan_off_value(plan, mixed);
    if (off >= 0) {
        auto releasing = fitting(blocks, HIGHZ_ROLE, plan.synchronous);
        cells.has_highz = plan_releases_all(plan) && !mixed && !releasing.empty();
        auto found = cells.has_highz ? releasing : fitting(blocks, CONTROL_ROLE, plan.synchronous);
        cells.control = take(control_cell(found, off, path, cells.doubt));
        cells.has_reset = true;
    }
    for (const LIB_BLOCK &block : blocks)
        if (cells.tree_buffer.empty() && block.head == "%BUFFER" && block.items.contains("%INPUT") &&
            block.items.contains("%OUTPUT") && !block.items.contains("%EN_L") &&
            !block.items.contains("%EN_H") && !block.items.contains("%INOUT"))
            cells.tree_buffer = take(block);
    for (const LIB_BLOCK *block : chosen)
        cells.blocks += block->text + "\n";
    return cells;
}

std::vector<std::string> cell_names(const CELL_CHOICE &cells) {
    std::vector<std::string> names;
    for (const std::string &name : {cells.input, cells.clock, cells.output, cells.control, cells.tree_buffer})
        if (!name.empty())
            names.push_back(name);
    return names;
}
