// Memory and time figures of the run: samples on the virtual timer, and the closing lines.
#pragma once

#include <cstdint>
#include <cstdio>

/// Starts the sampling of /proc/<pid>/statm every 2 seconds of this process's own computing. Returns 0; ends
/// the run when the system offers no such figures.
int uti_prepare_system_info();

/// Takes a last sample and prints the peak-memory and CPU lines, on the console when `console` is not 0 and
/// to `stream` when it is not null. Returns the peak total size in kilobytes.
int32_t uti_report_system_info(std::FILE *stream, int console);

/// A number of kilobytes as a short text: 9999K, 10M, 12G. One of eight buffers that are used in turn.
const char *format_k(int64_t kilobytes);
