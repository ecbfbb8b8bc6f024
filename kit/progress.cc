#include "kit/progress.hh"

#include "support/console.hh"
#include "support/text.hh"

#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {

// Read by the handler; it is set while no alarm is due.
char line[256];
volatile sig_atomic_t is_shown = 0;

void show_line(int) {
    is_shown = 1;
    if (::write(STDERR_FILENO, line, std::strlen(line)) < 0)
        is_shown = 0;
}

} // namespace

KIT_PROGRESS::KIT_PROGRESS(const std::string &what) {
    if (::isatty(STDERR_FILENO) == 0)
        return;
    std::snprintf(line, sizeof line, "\r%.200s ...", what.c_str());
    struct sigaction action = {};
    action.sa_handler = show_line;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGALRM, &action, nullptr);
    ::alarm(1);
}

KIT_PROGRESS::~KIT_PROGRESS() {
    ::alarm(0);
    if (is_shown != 0 && ::write(STDERR_FILENO, "\r\033[K", 4) > 0)
        is_shown = 0;
}

void kit_note(const char *format, ...) {
    va_list values;
    va_start(values, format);
    error_printf("rimkit: %s\n", format_list(format, values).c_str());
    va_end(values);
}

void kit_warn(const char *format, ...) {
    va_list values;
    va_start(values, format);
    error_printf("%s %s\n", kit_coloured(KIT_YELLOW, "WARNING:", STDERR_FILENO).c_str(),
                 format_list(format, values).c_str());
    va_end(values);
}

std::string kit_coloured(KIT_COLOUR colour, const std::string &text, int descriptor) {
    constexpr const char *CODES[] = {"\033[31m", "\033[33m", "\033[32m", "\033[1m"};
    const char *no_colour = std::getenv("NO_COLOR");
    if (::isatty(descriptor) == 0 || (no_colour != nullptr && *no_colour != '\0'))
        return text;
    return CODES[colour] + text + "\033[0m";
}
