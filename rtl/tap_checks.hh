// What stands between the instruction table and RTL that works: tables that no tool would accept, or that
// would give silently wrong logic, are refused before any file is written; what works otherwise than its
// author may expect is told.
#pragma once

#include "rtl/tap_rtl.hh"

/// Ends the run with one error when the tables cannot give RTL that tools accept. Returns the modules that
/// have been looked at, in the language of the run.
std::vector<RTL_MODULE> refuse_broken_rtl();

/// Prints the warnings of the RTL that is being written, and the defaults of enable pins of several bits.
void warn_about_rtl();

/// True when `word` cannot name a port in the language: not an identifier of it, or one of its words.
bool is_unusable_name(const std::string &word, RTL_LANGUAGE language);
