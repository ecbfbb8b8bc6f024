// Commands given to the shell, and files written whole.
#pragma once

#include <string>
#include <string_view>

/// The file `name` as one word of a shell command: as it stands when it is plain, quoted when it holds a
/// blank or a character that the shell reads, and with "./" in front when it begins with '-'.
std::string shell_word(std::string_view name);

/// Flushes the streams, runs the command through `system` with an empty standard input, so that it can ask
/// nobody, and returns its result; 0 is success.
int run_shell(const std::string &command);

/// Appends the folder of the running executable to PATH, so that the bundled tools serve where the user has
/// none.
void add_own_folder_to_path();

/// Writes `text` as the file `path`: first beside it under a temporary name, then renamed, so that an earlier
/// file is never lost and none is left half written. False when the file cannot be created; a failed write or
/// rename prints one error with the name and the reason and ends the run.
bool write_text_file(const std::string &path, std::string_view text);
