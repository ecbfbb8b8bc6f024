// The search list: base directories, the subdirectories tried below each, and the expanded list that a lookup
// walks.
//
// Start-up sets the list and nothing changes it later; a directory that appears during the run is not
// searched.
#include "support/dyna.hh"
#include "support/fnm.hh"
#include "support/message.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace {

constexpr size_t name_room = 1024; ///< work area of one name, with its closing zero

const char **search_path = nullptr;        ///< base directories; a null closes one call's entries
const char **search_dir = nullptr;         ///< subdirectories, or null
std::vector<std::string> search_full_path; ///< what a lookup really walks
bool full_path_is_built = false;

/// Finds the entry of search_path that names the same directory as a new one. Links are followed once for
/// each entry, and not before two entries with different texts meet.
struct directory_index {
    std::unordered_map<std::string, const char *> by_text;
    std::unordered_map<std::string, const char *> by_target;
    std::vector<const char *> unresolved;

    const char *find(const char *entry) {
        if (auto known = by_text.find(entry); known != by_text.end())
            return known->second;
        if (by_text.empty())
            return nullptr;
        for (const char *late : unresolved)
            by_target.emplace(FNM_get_link(late), late);
        unresolved.clear();
        auto same = by_target.find(FNM_get_link(entry));
        return same == by_target.end() ? nullptr : same->second;
    }
    void add(const char *entry) {
        by_text.emplace(entry, entry);
        unresolved.push_back(entry);
    }
    void clear() {
        by_text.clear();
        by_target.clear();
        unresolved.clear();
    }
};

directory_index search_index;

bool is_directory(const std::string &name) {
    struct stat state;
    return ::stat(name.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

/// One entry cut off the front of a list: up to the next ':', without one up to the next blank.
std::string_view cut_entry(std::string_view &list) {
    size_t end = list.find(':');
    if (end == std::string_view::npos)
        end = list.find(' ');
    std::string_view entry = list.substr(0, end);
    list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    return entry;
}

/// The stored text of one directory of the list, new or known; null when its user is unknown.
const char *add_directory(std::string_view text) {
    const char *entry = keep_text(text);
    if (entry[0] == '~')
        entry = FNM_get_home(entry);
    if (entry == nullptr)
        return nullptr;
    if (std::strlen(entry) >= name_room)
        MSG_fatal("A directory of the search path is longer than %zu characters: '%.60s...'.\n",
                  name_room - 1, entry);
    if (const char *known = search_index.find(entry); known != nullptr)
        return known;
    append_row(search_path, entry);
    search_index.add(entry);
    return entry;
}

} // namespace

const char *FNM_search(const char *name, int mode, int flag) {
    if (name[0] == '~')
        name = FNM_get_home(name);
    if (name == nullptr || std::strlen(name) >= name_room)
        return nullptr;
    if (flag == FNM_HERE)
        return ::access(name, mode) == 0 ? keep_text(name) : nullptr;
    if (flag != FNM_ON_SEARCH_PATH)
        return nullptr;
    if (search_path != nullptr && !full_path_is_built)
        FNM_build_full_search_path();
    for (const std::string &directory : search_full_path) {
        std::string candidate = directory + "/" + name;
        if (candidate.size() < name_room && ::access(candidate.c_str(), mode) == 0)
            return keep_text(candidate);
    }
    return nullptr;
}

const char *FNM_find_input(const std::string &name) {
    return FNM_search(name.c_str(), 0, FNM_ON_SEARCH_PATH);
}

void FNM_clear_path() {
    DYNA_free(&search_path);
    search_path = DYNA_init<const char *>();
    search_index.clear();
}

const char **FNM_search_path(const char *env, const char *default_list, const char **first) {
    if (first != nullptr)
        *first = nullptr;
    if (env == nullptr && default_list == nullptr)
        return search_path;
    if (default_list != nullptr)
        FNM_add_path(default_list);
    if (env != nullptr) {
        const char *stored = FNM_add_path(env);
        if (first != nullptr)
            *first = stored;
    }
    FNM_add_path(nullptr);
    return search_path;
}

const char *FNM_add_path(const char *list) {
    if (list == nullptr) {
        append_row<const char *>(search_path, nullptr);
        return nullptr;
    }
    if (list[0] == '\0' || list[0] == ' ') {
        add_directory(".");
        return nullptr;
    }
    std::string_view rest = list;
    const char *first = add_directory(cut_entry(rest));
    while (!rest.empty())
        add_directory(cut_entry(rest));
    return first;
}

void FNM_clear_subdir() {
    DYNA_free(&search_dir);
    search_dir = nullptr;
}

const char **FNM_search_subdir(const char *list) {
    if (search_dir == nullptr)
        search_dir = DYNA_init<const char *>();
    constexpr std::string_view separators = " ,:\t";
    std::string_view rest = list == nullptr ? "" : list;
    while (true) {
        rest.remove_prefix(std::min(rest.find_first_not_of(separators), rest.size()));
        if (rest.empty())
            return search_dir;
        std::string_view token = rest.substr(0, rest.find_first_of(separators));
        rest.remove_prefix(token.size());
        const char *entry = keep_text(token);
        if (DYNA_search(&search_dir, &entry, dir_comp) >= 0)
            continue;
        const char **free_slot = nullptr;
        for (const char *&slot : rows(search_dir))
            if (slot == nullptr && free_slot == nullptr)
                free_slot = &slot;
        if (free_slot != nullptr)
            *free_slot = entry;
        else
            append_row(search_dir, entry);
    }
}

void FNM_build_full_search_path() {
    search_full_path.clear();
    full_path_is_built = true;
    for (const char *base : rows(search_path)) {
        if (base == nullptr || !is_directory(base))
            continue;
        search_full_path.emplace_back(base);
        std::string prefix = base;
        if (!prefix.empty() && !prefix.ends_with('/'))
            prefix += '/';
        for (const char *below : rows(search_dir))
            if (below != nullptr && is_directory(prefix + below))
                search_full_path.push_back(prefix + below);
    }
}

const char *CMD_set_path(const char *env, const char *default_list, const char *subdirs) {
    const char *first = nullptr;
    FNM_clear_path();
    FNM_search_path(env, default_list, &first);
    FNM_clear_subdir();
    if (subdirs != nullptr)
        FNM_search_subdir(subdirs);
    FNM_build_full_search_path();
    return first;
}

std::string FNM_list_with_folder(const std::string &folder) {
    std::string below, list;
    for (const std::string &directory : search_full_path) {
        std::string candidate = directory + "/" + folder;
        if (candidate.size() < name_room && is_directory(candidate))
            below += candidate + ":";
        // Behind the last one too: without any further ':' a list is parted at its blanks.
        list += directory + ":";
    }
    return below + list;
}

int dir_comp(const void *a, const void *b) {
    const char *left = *static_cast<const char *const *>(a);
    const char *right = *static_cast<const char *const *>(b);
    if (left == nullptr || right == nullptr)
        return 1;
    if (same_text(left, right))
        return 0;
    return FNM_get_link(left).compare(FNM_get_link(right));
}
