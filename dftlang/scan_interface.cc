// The order in which the files of a design are read, and which configuration is current.
#include "dftlang/scan_interface.hh"

#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/side_files.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstring>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <unordered_map>
#include <utility>
#include <vector>

DFT_CONFIGURATION *DFT_OBJECT = nullptr;
SL_CORE_ROW *SL_CORE_LIST = nullptr;
DFT_TREE *SL_TOP_DFT_TREE = nullptr;
CORE_ENTRY *current_core_name = nullptr;

namespace {

/// Rows of SL_CORE_LIST that one configuration has added.
struct CORE_ROWS {
    int32_t first;
    int32_t behind_last;
};

/// The read under way: what scan_interface knows of the files and cores met so far.
struct READ_STATE {
    std::unordered_map<std::string, DFT_CONFIGURATION *>
        by_file;                                      ///< by name without regard to case, and by inode
    std::unordered_map<std::string, int32_t> by_core; ///< first row of a core name, in lower case
    std::unordered_map<const DFT_CONFIGURATION *, CORE_ROWS> cores;
    int32_t noted_rows = 0; ///< rows of SL_CORE_LIST that stand in by_core
};
READ_STATE state;

/// What tells a file from others whatever name it is reached by; empty when it is not there.
std::string file_identity(const char *name) {
    struct stat known;
    if (::stat(name, &known) != 0)
        return {};
    return format_text("\n%llu %llu", static_cast<unsigned long long>(known.st_dev),
                       static_cast<unsigned long long>(known.st_ino));
}

void remember_file(const char *name) {
    state.by_file.try_emplace(lower_case(name), DFT_OBJECT);
    state.by_file.try_emplace(file_identity(name), DFT_OBJECT);
}

DFT_CONFIGURATION *known_file(const char *name) {
    auto found = state.by_file.find(lower_case(name));
    if (found == state.by_file.end())
        found = state.by_file.find(file_identity(name));
    return found == state.by_file.end() ? nullptr : found->second;
}

void initial_scan(const char *dft_file) {
    set_log_file(dft_file);
    DFT_OBJECT = nullptr;
    in_file_name = dft_file;
}

/// Makes the tree of a file DFT_OBJECT. Its cores join the list, with the directory that their file names
/// mean.
void make_configuration(SCAN_AST *tree, const char *file_name, const std::string &directory) {
    int32_t first = DYNA_count(SL_CORE_LIST);
    if (tree == nullptr)
        scan_fail("ERROR : The dft file '%s' is empty.\n", in_file_name);
    DFT_OBJECT = new DFT_CONFIGURATION();
    DFT_OBJECT->file_name = file_name;
    DFT_OBJECT->path = directory.empty() ? nullptr : keep_text(directory);
    DFT_OBJECT->file = tree;
    MAP_AST_2_OBJECT();
    state.cores[DFT_OBJECT] = {first, DYNA_count(SL_CORE_LIST)};
    remember_file(file_name);
    // The top file's own row stands last in a look-up: a core may bear its name.
    for (; state.noted_rows < DYNA_count(SL_CORE_LIST); state.noted_rows++) {
        if (state.noted_rows > 0)
            state.by_core.try_emplace(lower_case(SL_CORE_LIST[state.noted_rows].core_name), state.noted_rows);
    }
}

void read_lockup_latch_file() {
    SCAN_AST *block = SCAN_FIND_CHILD(DFT_OBJECT->file, LOCKUP_LATCH_FILE_NODE);
    if (scan_child(block) != nullptr)
        read_side_file(value_text(scan_child(block)), LOCKUP_FILE_KIND);
}

/// Leaves the configuration of a core's file in DFT_OBJECT.
void sl_find_and_parser_dft_file(const SL_CORE_ROW &row) {
    const char *name = resolve_side_file(row.named_in, row.dft_file);
    DFT_OBJECT = known_file(name);
    if (DFT_OBJECT != nullptr)
        return;
    initial_scan(row.dft_file);
    SCAN_AST *tree = parse_file(name, row.dft_file, DFT_FILE_KIND);
    make_configuration(tree, name, FNM_break(name, "p"));
}

void read_core(int32_t place) {
    SL_CORE_ROW row = SL_CORE_LIST[place]; // the list grows while the file is read
    sl_find_and_parser_dft_file(row);
    SL_CORE_LIST[place].configuration = DFT_OBJECT;
}

/// A configuration on the way down from the top, and how far its cores have been looked at.
struct STEP_DOWN {
    DFT_CONFIGURATION *configuration;
    int32_t next_row;
};

/// A design cannot hold itself: ends the run when a file is reached from its own cores.
void refuse_cycles() {
    enum COLOUR { NEW, OPEN, DONE };
    std::unordered_map<DFT_CONFIGURATION *, COLOUR> colours;
    std::vector<STEP_DOWN> way;
    DFT_CONFIGURATION *top = SL_CORE_LIST[0].configuration;
    way.push_back({top, state.cores[top].first});
    colours[top] = OPEN;
    while (!way.empty()) {
        STEP_DOWN &step = way.back();
        if (step.next_row == state.cores[step.configuration].behind_last) {
            colours[step.configuration] = DONE;
            way.pop_back();
            continue;
        }
        const SL_CORE_ROW &row = SL_CORE_LIST[step.next_row++];
        DFT_CONFIGURATION *below = row.configuration;
        if (colours[below] == OPEN)
            error_handler(in_file_name, 0, MESSAGE_CYCLE, below->file_name, row.core_name);
        if (colours[below] == NEW) {
            colours[below] = OPEN;
            way.push_back({below, state.cores[below].first});
        }
    }
}

/// Row of a core name in SL_CORE_LIST, or -1.
int32_t core_row(const char *core_name) {
    auto found = state.by_core.find(lower_case(core_name));
    if (found != state.by_core.end())
        return found->second;
    bool is_top = DYNA_count(SL_CORE_LIST) > 0 && ::strcasecmp(SL_CORE_LIST[0].core_name, core_name) == 0;
    return is_top ? 0 : -1;
}

/// The name by which the top file is opened. Ends the run when it is not there.
const char *top_file_name(const char *path, const std::string &base, const std::string &directory) {
    if (!directory.empty())
        return keep_text(path);
    const char *name = keep_format("%s.dft", base.c_str());
    if (FNM_search(name, 0, FNM_HERE) == nullptr)
        error_handler(in_file_name, 0, MESSAGE_CANNOT_OPEN, name);
    return name;
}

} // namespace

int32_t scan_interface(const char *path, int32_t debug, const char *option) {
    std::string base = FNM_break(path, "b");
    std::string directory = FNM_break(path, "p");
    state = READ_STATE();
    print_scan_trees = debug;
    initial_scan(keep_text(path));
    const char *name = top_file_name(path, base, directory);
    static auto *const earlier_lists = new std::vector<SL_CORE_ROW *>; // configurations stay to the exit
    earlier_lists->push_back(std::exchange(SL_CORE_LIST, nullptr));
    append_row(SL_CORE_LIST, {in_file_name, keep_text(base), nullptr, nullptr});
    make_configuration(parse_file(name, in_file_name, DFT_FILE_KIND), name, directory);
    sl_decrypt();
    read_lockup_latch_file();
    SL_CORE_LIST[0].configuration = DFT_OBJECT;
    SL_TOP_DFT_TREE = new DFT_TREE{DFT_OBJECT};
    if (::strcasecmp(option, "hier_dft") == 0) {
        for (int32_t i = 0; i < DYNA_count(SL_CORE_LIST); i++) {
            if (SL_CORE_LIST[i].configuration == nullptr)
                read_core(i);
        }
        refuse_cycles();
    }
    close_scan();
    DFT_setup(SL_TOP_DFT_TREE);
    return 0;
}

int32_t DFT_setup(DFT_TREE *tree) {
    if (tree == nullptr || tree->configuration == nullptr)
        return 0;
    DFT_OBJECT = tree->configuration;
    return 1;
}

int32_t DFT_inst_setup(const char *core_name) {
    int32_t row = core_row(core_name);
    if (row < 0)
        return 0;
    if (SL_CORE_LIST[row].configuration == nullptr)
        read_core(row);
    DFT_OBJECT = SL_CORE_LIST[row].configuration;
    return 1;
}

int32_t SL_core_name_countG() {
    return DFT_OBJECT == nullptr ? 0 : DYNA_count(DFT_OBJECT->cores);
}

CORE_ENTRY *set_current_core_name(int32_t index) {
    bool in_range = index >= 0 && index < SL_core_name_countG();
    current_core_name = in_range ? &DFT_OBJECT->cores[index] : nullptr;
    return current_core_name;
}
