#include "kit/engines.hh"

#include "kit/files.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_scan.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <string_view>
#include <sys/wait.h>

namespace {

constexpr const char *TIME_LIMIT = "1800"; // seconds
constexpr int STATUS_OF_TIMEOUT = 124;

} // namespace

std::string engine_obstacle(const char *program, const char *package) {
    return run_shell(format_text("command -v %s >/dev/null 2>&1", program)) == 0
               ? ""
               : format_text("there is no %s on PATH (Debian package %s)", program, package);
}

std::string run_engine(const std::vector<std::string> &words, const std::string &log) {
    int status = run_shell("timeout -k 5 " + std::string(TIME_LIMIT) + " " + command_line(words) + " >" +
                           shell_word(log) + " 2>&1");
    if (status == 0)
        return "";
    if (WIFEXITED(status) && WEXITSTATUS(status) == STATUS_OF_TIMEOUT)
        return words[0] + " took more than " + TIME_LIMIT + " seconds";
    std::string text = TOOL_exists(log) ? TOOL_read_file(log) : "";
    size_t at = text.find("rror"); // warnings may stand in front
    size_t begin = at == text.npos ? 0 : text.rfind('\n', at) + 1;
    return words[0] + " ended with a fault: " + text.substr(begin, text.find('\n', begin) - begin);
}

SCRATCH_FOLDER::SCRATCH_FOLDER() {
    const char *place = std::getenv("TMPDIR");
    std::string name = std::string(place != nullptr && *place != '\0' ? place : "/tmp") + "/rimkit-XXXXXX";
    const char *made = ::mkdtemp(name.data());
    if (made == nullptr)
        TOOL_fail("", 0, "can't make a folder for an engine's files, '%s': %s.", name.c_str(),
                  std::strerror(errno));
    path = made;
}

SCRATCH_FOLDER::~SCRATCH_FOLDER() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

VERILOG_MODULES modules_of(const std::vector<std::string> &files) {
    static const std::set<std::string_view> DECLARES = {
        "input",   "output",    "inout",      "tri", "tri0",      "tri1",    "supply0",
        "supply1", "parameter", "localparam", "reg", "specparam", "integer", "real"};
    VERILOG_MODULES modules;
    for (const std::string &file : files) {
        NL_NAMES names;
        VSCAN scan{names};
        VSCAN_open(scan, file);
        bool *behaves = nullptr; // of the module that is read
        std::string_view first;  // word of the statement
        bool assigns = false;
        for (VSCAN_next(scan); scan.token.kind != TOKEN_END; VSCAN_next(scan)) {
            std::string_view word = scan.token.text;
            if (word == "endmodule") {
                behaves = nullptr;
                first = {};
            } else if (scan.token.symbol == ';') {
                bool only_declares = DECLARES.contains(first) || (first == "wire" && !assigns);
                if (behaves != nullptr && first != "module" && !only_declares)
                    *behaves = true;
                first = {};
            } else if (first.empty()) {
                first = word;
                assigns = false;
            } else if (first == "module" && behaves == nullptr) {
                behaves = &modules[std::string(word)];
            }
            assigns = assigns || scan.token.symbol == '=';
        }
    }
    return modules;
}

bool has_model(const VERILOG_MODULES &modules, const std::string &name) {
    auto module = modules.find(name);
    return module != modules.end() && module->second;
}

std::vector<std::string> cell_models(const KIT_CALL &call, const std::string &design) {
    std::vector<std::string> files = kit_values(call, "cells");
    for (const std::string &file : files)
        if (!TOOL_exists(file))
            TOOL_fail("", 0, "there is no file '%s' of cell models.", file.c_str());
    std::string drafted = design + "_cells.v";
    if (!TOOL_exists(drafted) || std::find(files.begin(), files.end(), drafted) != files.end())
        return files;
    VERILOG_MODULES given = modules_of(files), more = modules_of({drafted});
    if (std::none_of(more.begin(), more.end(),
                     [&given](const auto &module) { return given.contains(module.first); }))
        files.push_back(drafted);
    return files;
}
