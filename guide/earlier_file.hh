// Files that the guide writes over without having read them: what they hold is in no menu, so it is kept.
#pragma once

#include <string>

/// Notes the file as one that the guide has read, as it is now. A missing one, or null, is passed over.
void note_read_file(const char *path);

/// Keeps a file that the guide has not read, or that was changed since, as "<path>~". A missing file and one
/// that is no regular file are left alone. Ends the run when the copy cannot be written; the file itself is
/// never touched.
void keep_earlier_file(const std::string &path);
