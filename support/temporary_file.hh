// Files that are written beside their place and then renamed, and what killed processes have left of them.
#pragma once

#include <string>

/// Makes an empty file `.rw-XXXXXX` in `folder` (with its '/'; empty for the working directory), open for
/// writing by the user alone, and returns its descriptor; -1 with errno when none can be made. `path` gets
/// its name. The first such file of a process in a folder is made when those that ended processes have left
/// there are gone; one that another process is still busy with stays.
int make_temporary_file(const std::string &folder, std::string &path);
