// Files and programs around the verbs: ages, places, the tools that stand beside rimkit.
#pragma once

#include <string>
#include <vector>

/// The folder of the running program, with its '/'.
std::string own_folder();

/// True when `target` is missing or older than one of the sources.
bool is_outdated(const std::string &target, const std::vector<std::string> &sources);

/// Runs a program by its words, which are shown with a '$' in front. A status that is not 0 ends the program
/// with the command as it can be typed again.
void run_step(const std::vector<std::string> &words);
/// The words as a command line.
std::string command_line(const std::vector<std::string> &words);

/// Writes a draft. A file that is there stays, with a note, unless `force` keeps it under its name with a
/// '~'. True when it was written.
bool write_draft(const std::string &path, const std::string &text, bool force);
