// What the doctor looks at beyond the checks of a run.
#pragma once

#include "kit/findings.hh"
#include "kit/liberty.hh"

#include <string>
#include <vector>

/// Ages of the design's files and of its netlists.
void check_files(std::vector<FINDING> &findings, const std::vector<std::string> &netlists);
/// The folders that a run writes into; `opath` is that of -opath, or empty.
void check_folders(std::vector<FINDING> &findings, const std::string &opath);
/// The description tables alone: instructions, IDCODE, package, group sizes.
void check_tables(std::vector<FINDING> &findings);
/// The pins that the library file names in the boundary cells, against the cells.
void check_cell_pins(std::vector<FINDING> &findings);
/// Names, test ports and pads of the open flat design; behind the classification, as far as it got.
void check_design(std::vector<FINDING> &findings, const LIBERTY &library);
/// Says more of a finding of a run, where the open design tells more: a name in another case, a bond pad, the
/// way to read a port.
void refine_finding(FINDING &finding);
