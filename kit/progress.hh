// What stands on the error stream while work goes on.
#pragma once

#include <string>

/// Shows a line on a terminal while the work of its scope takes longer than a second, and removes it then.
class KIT_PROGRESS {
  public:
    explicit KIT_PROGRESS(const std::string &what);
    ~KIT_PROGRESS();
    KIT_PROGRESS(const KIT_PROGRESS &) = delete;
    KIT_PROGRESS &operator=(const KIT_PROGRESS &) = delete;
};

/// A line of diagnostics on the error stream: "rimkit: text", "WARNING: text".
void kit_note(const char *format, ...) __attribute__((format(printf, 1, 2)));
void kit_warn(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// The text in colour where the stream is a terminal and NO_COLOR is not set. `descriptor` is 1 or 2.
enum KIT_COLOUR { KIT_RED, KIT_YELLOW, KIT_GREEN, KIT_BOLD };
std::string kit_coloured(KIT_COLOUR colour, const std::string &text, int descriptor);
