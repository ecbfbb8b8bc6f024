// The banner, and the report under its second name.
#pragma once

/// Stores the directory of the report's second name; null for the working directory.
void top_set_w_directory(const char *dir);

/// Prints the banner on the console and, when it is open, into the report.
void top_print_copyright();

/// Makes sure that a report is open: one that is not is tried as `design` without its extensions and with
/// `.rpt`, and the run ends when that fails too. Then prints the banner.
void top_direct_output(const char *design);
