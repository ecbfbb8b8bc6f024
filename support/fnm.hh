// File names and the one search list on which every input file of a run is looked up.
//
// Only start-up writes the list. Names are text up to a fixed work area of 1024 bytes; a longer name is found
// nowhere and is refused with a message where it would be used.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

constexpr size_t FNM_NAME_ROOM = 1024; ///< work area of one name, with its closing zero

/// A file name taken apart; a part that is absent or empty is null. Texts are kept to the exit.
struct FNM_NAME {
    const char *volume; ///< text before the first ':'
    const char *path;   ///< text before the last '/'; the volume is not removed from it
    const char *name;   ///< text behind the last '/', up to the last '.'
    const char *ext;    ///< text behind that '.'
};

FNM_NAME FNM_parse(const char *name);
/// Path, name and extension put together; the volume is never written. A path that starts with '~' is
/// replaced in the record by its home expansion.
std::string FNM_make(FNM_NAME *parsed);
/// The parts named by the letters `v`, `p`, `b`, `e` only: FNM_break("dir/chip.sdb", "p") is "dir/".
std::string FNM_break(const char *name, const char *parts);
/// `name` with its path replaced by `dir` and its extension by `ext`, where those are not null.
std::string FNM_build(const char *dir, const char *name, const char *ext);
/// `name` with `ext` (which carries its dot) appended unless it ends with it; cut at its last '.' when null.
std::string FNM_append_ext(const char *name, const char *ext);

constexpr int FNM_HERE = 0;              ///< flag of FNM_search: the name as it stands
constexpr int FNM_ON_SEARCH_PATH = 0xff; ///< flag of FNM_search: below each directory of the search list

/// The name as found, kept to the exit, or null. `mode` is the mode of access(), 0 for existence.
const char *FNM_search(const char *name, int mode, int flag);
/// Shorthand for FNM_search(name, 0, FNM_ON_SEARCH_PATH).
const char *FNM_find_input(const std::string &name);

/// Opens a regular file, or a link to one, for reading. Null when that fails, and for anything else of that
/// name: a directory holds no text, a pipe or a device may have no end.
std::FILE *FNM_open(const char *name);

/// Home directory of the user that a name starting with '~' speaks of, with the rest of the name; null for an
/// unknown user. Kept to the exit.
const char *FNM_get_home(const char *name);
/// End of the chain of links that starts at `name`. Ends the run on a chain that comes back to itself.
std::string FNM_get_link(const char *name);

/// Sets the search list: `default_list`, then `env`, each directory with its subdirectories of `subdirs`
/// (null for none). Returns the first directory of `env`, or null.
const char *CMD_set_path(const char *env, const char *default_list, const char *subdirs);
/// The directories that a lookup walks, as a value of VELMORA_DIRS; in front of them `folder`, which ends in
/// '/', below each that has it.
std::string FNM_list_with_folder(const std::string &folder);
