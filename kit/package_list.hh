// The pins of a package as a table with commas, semicolons or tabs: what the number of a pin has bonded to
// it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PACKAGE_LIST_ROW {
    std::string number; ///< of the pin or ball, such as "12" or "A4"
    std::string target; ///< the port of the chip or the instance of the pad; empty for a pin without a bond
    std::string name;   ///< of the pin of the package; empty where the list gives none
    int32_t line = 0;
};

/// Reads a list in its order: the columns are number, port or pad, name, or, behind a line of titles, what
/// these say. A field may stand in quotes (RFC 4180); a line that begins with # is a comment. A fault ends
/// the program with "ERROR: FILE:LINE: text" and status 255: a number that comes twice, a column that is
/// missing.
std::vector<PACKAGE_LIST_ROW> package_list_read(const std::string &path);
