// The search list: what of the base directories, and of the subdirectories below each, is there when the list
// is set. Start-up sets it and nothing changes it later; a directory that appears during the run is not
// searched.
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

std::vector<std::string> search_path; ///< the directories that a lookup walks; CMD_set_path writes it

bool is_directory(const std::string &name) {
    struct stat state;
    return ::stat(name.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

/// The base directories while a list is set, each of them once. Links are followed once for each entry, and
/// not before two entries with different texts meet.
struct base_directories {
    std::vector<const char *> entries;
    std::unordered_map<std::string, const char *> by_text;
    std::unordered_map<std::string, const char *> by_target;
    size_t resolved = 0; ///< entries that stand in by_target

    /// The entry that names the same directory, or null.
    const char *find(const char *entry) {
        if (auto known = by_text.find(entry); known != by_text.end())
            return known->second;
        if (entries.empty())
            return nullptr;
        for (; resolved < entries.size(); ++resolved)
            by_target.emplace(FNM_get_link(entries[resolved]), entries[resolved]);
        auto same = by_target.find(FNM_get_link(entry));
        return same == by_target.end() ? nullptr : same->second;
    }

    /// The stored text of one directory of a list, new or known; null when its user is unknown.
    const char *add(std::string_view text) {
        const char *entry = keep_text(text);
        if (entry[0] == '~')
            entry = FNM_get_home(entry);
        if (entry == nullptr)
            return nullptr;
        if (std::strlen(entry) >= FNM_NAME_ROOM)
            MSG_fatal("A directory of the search path is longer than %zu characters: '%.60s...'.\n",
                      FNM_NAME_ROOM - 1, entry);
        if (const char *known = find(entry); known != nullptr)
            return known;
        entries.push_back(entry);
        by_text.emplace(entry, entry);
        return entry;
    }

    /// Adds the directories of a list. Returns the first; null for a list that is empty or begins with a
    /// blank, which stands for the working directory.
    const char *add_list(std::string_view list) {
        if (list.empty() || list[0] == ' ') {
            add(".");
            return nullptr;
        }
        const char *first = add(cut_entry(list));
        while (!list.empty())
            add(cut_entry(list));
        return first;
    }

    /// One entry cut off the front of a list: up to the next ':', without one up to the next blank.
    static std::string_view cut_entry(std::string_view &list) {
        size_t end = list.find(':');
        if (end == std::string_view::npos)
            end = list.find(' ');
        std::string_view entry = list.substr(0, end);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
        return entry;
    }
};

bool same_directory(const std::string &left, const std::string &right) {
    return left == right || FNM_get_link(left.c_str()) == FNM_get_link(right.c_str());
}

std::vector<std::string> subdirectories(std::string_view list) {
    constexpr std::string_view separators = " ,:\t";
    std::vector<std::string> names;
    while (true) {
        list.remove_prefix(std::min(list.find_first_not_of(separators), list.size()));
        if (list.empty())
            return names;
        std::string name(list.substr(0, list.find_first_of(separators)));
        list.remove_prefix(name.size());
        if (std::none_of(names.begin(), names.end(),
                         [&](const std::string &known) { return same_directory(name, known); }))
            names.push_back(name);
    }
}

} // namespace

const char *CMD_set_path(const char *env, const char *default_list, const char *subdirs) {
    base_directories bases;
    if (default_list != nullptr)
        bases.add_list(default_list);
    const char *first = env != nullptr ? bases.add_list(env) : nullptr;
    std::vector<std::string> below = subdirectories(subdirs != nullptr ? subdirs : "");
    search_path.clear();
    for (const char *base : bases.entries) {
        if (!is_directory(base))
            continue;
        search_path.emplace_back(base);
        std::string prefix = std::string(base) + (std::string_view(base).ends_with('/') ? "" : "/");
        for (const std::string &name : below)
            if (is_directory(prefix + name))
                search_path.push_back(prefix + name);
    }
    return first;
}

const char *FNM_search(const char *name, int mode, int flag) {
    if (name[0] == '~')
        name = FNM_get_home(name);
    if (name == nullptr || std::strlen(name) >= FNM_NAME_ROOM)
        return nullptr;
    if (flag == FNM_HERE)
        return ::access(name, mode) == 0 ? keep_text(name) : nullptr;
    if (flag != FNM_ON_SEARCH_PATH)
        return nullptr;
    for (const std::string &directory : search_path) {
        std::string candidate = directory + "/" + name;
        if (candidate.size() < FNM_NAME_ROOM && ::access(candidate.c_str(), mode) == 0)
            return keep_text(candidate);
    }
    return nullptr;
}

const char *FNM_find_input(const std::string &name) {
    return FNM_search(name.c_str(), 0, FNM_ON_SEARCH_PATH);
}

std::string FNM_list_with_folder(const std::string &folder) {
    std::string below, list;
    for (const std::string &directory : search_path) {
        std::string candidate = directory + "/" + folder;
        if (candidate.size() < FNM_NAME_ROOM && is_directory(candidate))
            below += candidate + ":";
        // Behind the last one too: without any further ':' a list is parted at its blanks.
        list += directory + ":";
    }
    return below + list;
}
