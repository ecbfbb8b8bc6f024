// The banner, and the report under its second name.
#pragma once

#include <string_view>

/// Version, build date and platform, one constant text.
const char *get_make_date();

/// Stores the program's name, in upper case, and its version. Prints nothing.
void top_print_prog_name_and_version_num(const char *name, const char *version);

/// Stores the directory of the report's second name; null for the working directory.
void top_set_w_directory(const char *dir);

/// Prints the banner on the console and, when it is open, into the report.
void top_print_copyright();

/// Makes sure that a report is open: one that is not is tried as `filename` without `extension` and with
/// `.rpt`, and the run ends when that fails too. Then prints the banner, unless `restart_flag` is set, which
/// also appends to an earlier report.
void top_direct_output(const char *filename, std::string_view extension, int restart_flag);
