// The settings file `.velmora.def` or `velmora.def`: keys with lists of values.
//
// Start-up reads the first such file on the search path; the run asks it for one key, the hierarchy
// separator.
#pragma once

/// Reads the settings file with the stem `name`. With a `section`, keys of other sections are dropped; null
/// for none. 0 when a file was read, -1 when none was found or it could not be opened.
int RC_load(const char *name, const char *section);

/// First value of the first key that matches `pattern`, or `default_value`. Keys compare without regard to
/// case.
const char *RC_sget(const char *pattern, const char *default_value);

/// The values of the first key that matches `pattern`, a growable table, or null.
const char **RC_search(const char *pattern);

/// 0 when `text` as a whole matches: `*` stands for any run of characters without '>', '<' and '?', `?` for
/// one character, everything else for itself. A pattern too long for its work area of 1024 bytes matches
/// nothing.
int STR_match(const char *pattern, const char *text);
