// What the four programs share around their work: errors, the search list, command line words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Ends the program with "ERROR: file:line: text" on the error stream and status 255; the line is left out
/// when it is 0, the file when it is empty.
[[noreturn]] void TOOL_fail(std::string_view file, int line, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/// Says "WARNING: file:line: text" on the error stream.
void TOOL_warn(std::string_view file, int line, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/// Starts the program, does its work and gives the status to end with. A fault that nothing else tells is
/// told on the error stream.
int TOOL_run(int (*work)(int argc, char **argv), int argc, char **argv);

/// Sets the search list of input files from the environment, as the main program does.
void TOOL_set_search_path();

/// Reads a whole file; a fault ends the program. `from_file` and `from_line` say who asked for it, empty and
/// 0 for the command line.
std::string TOOL_read_file(const std::string &path, std::string_view from_file = {}, int from_line = 0);

/// Saves a file whole; a fault ends the program.
void TOOL_write_file(const std::string &path, std::string_view text);

/// The word behind a switch; ends the program when there is none.
const char *TOOL_value(int argc, char **argv, int &at);

/// `path` without its directory, and the directory with its '/' or empty.
std::string TOOL_base_name(const std::string &path);
std::string TOOL_directory(const std::string &path);

/// True when something of that name is there.
bool TOOL_exists(const std::string &path);

/// `dir/name`; the name alone in an empty directory.
std::string TOOL_join(std::string_view dir, std::string_view name);
