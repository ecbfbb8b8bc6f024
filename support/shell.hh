// Commands given to the shell.
#pragma once

#include <string>
#include <string_view>

/// The file `name` as one word of a shell command: as it stands when it is plain, quoted when it holds a
/// blank or a character that the shell reads, and with "./" in front when it begins with '-'.
std::string shell_word(std::string_view name);

/// Flushes the streams, runs the command as `system` does, with an empty standard input, so that it can ask
/// nobody, and returns its result; 0 is success. A command that could not be started, or that a signal ended,
/// is told on the error stream. A program with plain words is started without a shell, unless only a shell
/// can find it or say why not.
int run_shell(const std::string &command);

/// Appends the folder of the running executable to PATH, so that the bundled tools serve where the user has
/// none.
void add_own_folder_to_path();
