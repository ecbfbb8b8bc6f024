#include "description/reading.hh"

#include "support/console.hh"
#include "support/message.hh"

#include <cerrno>
#include <cstdlib>
#include <cstring>

const char *current_file = nullptr;
const int *current_line = nullptr;

void begin_file(const char *name, std::FILE *file, void (*restart)(std::FILE *file), const int &line) {
    current_file = name;
    current_line = &line;
    restart(file);
}

void error_msg(const char *file, int32_t line, READER_ERROR code, const char *text) {
    switch (code) {
    case MISSING_COMMENT_END:
        console_printf("'%s' line %d: Missing '*/'.\n", file, line);
        break;
    case NO_SUCH_CELL:
        console_printf("'%s' line %d: Can't find Cell %s.\n", file, line, text);
        break;
    case PIN_NUMBER_REPEATED:
        console_printf("'%s' line %d: pin number %s mutiple defined.\n", file, line, text);
        break;
    case PIN_NAME_REPEATED:
        console_printf("'%s' line %d: pin name %s mutiple defined.\n", file, line, text);
        break;
    }
}

void print_syntax_error(const char *file, int32_t line, const char *text) {
    console_printf("\"%s\", line %d: Syntax Error at '%s'\n", file, line, text);
}

void bad_character(int32_t line, char character) {
    const char text[] = {character, '\0'};
    print_syntax_error(current_file, line, character == '\0' ? "\\0" : text);
    end_run();
}

void parser_error(int32_t line, const char *reason, const char *token) {
    if (std::strncmp(reason, "syntax error", 12) != 0)
        console_fail("\"%s\", line %d: yacc stack overflow\n", current_file, line);
    print_syntax_error(current_file, line, token);
    end_run();
}

void missing_comment_end(int32_t line) {
    error_msg(current_file, line, MISSING_COMMENT_END, nullptr);
    end_run();
}

void scanner_failed(const char *reason) {
    if (std::strncmp(reason, "out of dynamic memory", 21) == 0)
        MSG_fatal_error(MSG_NO_MEMORY);
    if (std::strncmp(reason, "input in", 8) == 0)
        error_fail("ERROR: a description file can't be read (%s).\n", std::strerror(errno));
    error_printf("%s\n", reason);
    end_run(2);
}

int32_t number_value(const char *file, int32_t line, const char *digits) {
    errno = 0;
    long value = std::strtol(digits, nullptr, 10);
    if (errno != 0 || value > INT32_MAX)
        console_fail("\"%s\", line %d: Number '%s' is too large\n", file, line, digits);
    return static_cast<int32_t>(value);
}
