// Buffer trees of the control signals, and their lines in the report.
//
// A balanced tree limits the fan-out of every buffer to %GROUP_SIZE. Its leaves are level `depth`; the
// buffers of a level are numbered from 1. The chain of -df_speed is one buffer behind the other, each with
// its own group of pins.
#pragma once

#include "editing/edit_commands.hh"

/// Writes the tree over `group` (a table of leaf loads, null for none) and returns its depth; 0 when the TAP
/// cell has no %GROUP_SIZE, so that no tree is built. `tap_pin` feeds it; `prefix` starts the names of its
/// buffers.
int32_t build_buffer_balance_tree(EDIT_FILE *fp, const int32_t *group, const char *tap_pin,
                                  const char *prefix, const BUFFER_CELL *buffer);
/// Writes the chain over `group` and returns 1; 0 when no chain is built.
int32_t build_dfspeed_buffer_balance_tree(EDIT_FILE *fp, const int32_t *group, const char *tap_pin,
                                          const char *prefix, const BUFFER_CELL *buffer);

/// Names of the buffers.
std::string tree_buffer_name(const char *prefix, int32_t level, int32_t number);
std::string chain_buffer_name(const char *prefix, int32_t number);
/// Appends a line to BUFFER_REPORT.
void report_buffer_line(const char *line);
