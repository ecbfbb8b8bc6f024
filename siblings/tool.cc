#include "siblings/tool.hh"

#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/program.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// "file:line: ", or as much of it as there is.
std::string shown_place(std::string_view file, int line) {
    std::string place(file);
    if (line > 0)
        place += ":" + std::to_string(line);
    return place.empty() ? place : place + ": ";
}

} // namespace

void TOOL_fail(std::string_view file, int line, const char *format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = format_list(format, args);
    va_end(args);
    error_fail("ERROR: %s%s\n", shown_place(file, line).c_str(), text.c_str());
}

void TOOL_warn(std::string_view file, int line, const char *format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = format_list(format, args);
    va_end(args);
    error_printf("WARNING: %s%s\n", shown_place(file, line).c_str(), text.c_str());
}

int TOOL_run(int (*work)(int argc, char **argv), int argc, char **argv) {
    start_program();
    // What the design database says goes to the console, which may be a log that nobody reads, or a full
    // disk.
    if (isatty(STDOUT_FILENO) == 0)
        sdb_log_stream = stderr;
    try {
        return work(argc, argv);
    } catch (const std::exception &fault) {
        TOOL_fail("", 0, "internal error (%s).", fault.what());
    }
}

void TOOL_set_search_path() {
    const char *dirs = std::getenv("VELMORA_DIRS");
    if (dirs != nullptr && *dirs != '\0')
        CMD_set_path(dirs, nullptr, nullptr);
    else
        CMD_set_path(std::getenv("VELMORA"), ".", "designs:lib:scanforge_lib");
}

std::string TOOL_read_file(const std::string &path, std::string_view from_file, int from_line) {
    struct stat info;
    std::FILE *stream = open_stream(path.c_str(), "rb");
    if (stream == nullptr)
        TOOL_fail(from_file, from_line, "can't open file '%s': %s.", path.c_str(), std::strerror(errno));
    if (fstat(fileno(stream), &info) == 0 && S_ISDIR(info.st_mode))
        TOOL_fail(from_file, from_line, "can't read file '%s': it is a directory.", path.c_str());
    if (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode))
        TOOL_fail(from_file, from_line, "can't read file '%s': it is a device.", path.c_str());
    // Room that is asked for is filled with zeros first: a short file gets little of it. The byte beyond a
    // file's size is where its end is seen.
    constexpr size_t longest_step = size_t{1} << 20;
    size_t size = S_ISREG(info.st_mode) && info.st_size > 0 ? static_cast<size_t>(info.st_size) + 1 : 0;
    std::string text;
    text.reserve(size);
    for (;;) {
        size_t had = text.size();
        size_t step = had < size ? std::min(size - had, longest_step) : longest_step;
        text.resize(had + step);
        size_t got = std::fread(text.data() + had, 1, step, stream);
        text.resize(had + got);
        if (got < step)
            break;
    }
    bool bad = std::ferror(stream) != 0;
    std::fclose(stream);
    if (bad)
        TOOL_fail(from_file, from_line, "can't read file '%s': %s.", path.c_str(), std::strerror(errno));
    return text;
}

void TOOL_write_file(const std::string &path, std::string_view text) {
    whole_file file;
    bool written = begin_file(file, path);
    if (written) {
        put_bytes(file, text.data(), text.size());
        written = finish_file(file);
    }
    if (!written)
        TOOL_fail(path, 0, "this file can't be written: %s.", std::strerror(file.reason));
}

const char *TOOL_value(int argc, char **argv, int &at) {
    if (at + 1 >= argc)
        TOOL_fail("", 0, "nothing stands behind the switch '%s'.", argv[at]);
    return argv[++at];
}

std::string TOOL_base_name(const std::string &path) {
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string TOOL_directory(const std::string &path) {
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool TOOL_exists(const std::string &path) {
    return access(path.c_str(), F_OK) == 0;
}

std::string TOOL_join(std::string_view dir, std::string_view name) {
    std::string path(dir);
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path += name;
}
