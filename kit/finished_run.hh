// The files of a finished run, as the verbs behind it read them.
#pragma once

#include <initializer_list>
#include <string>

/// Ends the program, naming the verb, when one of the design's files with these endings is missing.
void need_run_files(const std::string &design, const char *verb, std::initializer_list<const char *> endings);

/// Fills the description tables and opens the flat edited design `edited`; false when there is no such file.
bool open_finished_run(const std::string &design, const std::string &edited);
