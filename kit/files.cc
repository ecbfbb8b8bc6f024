#include "kit/files.hh"

#include "kit/progress.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

std::string own_folder() {
    char self[PATH_MAX];
    ssize_t length = ::readlink("/proc/self/exe", self, sizeof self);
    return length <= 0 ? "" : TOOL_directory(std::string(self, static_cast<size_t>(length)));
}

bool is_outdated(const std::string &target, const std::vector<std::string> &sources) {
    struct stat made, source;
    if (::stat(target.c_str(), &made) != 0)
        return true;
    for (const std::string &path : sources)
        if (::stat(path.c_str(), &source) == 0 &&
            (source.st_mtim.tv_sec != made.st_mtim.tv_sec ? source.st_mtim.tv_sec > made.st_mtim.tv_sec
                                                          : source.st_mtim.tv_nsec > made.st_mtim.tv_nsec))
            return true;
    return false;
}

std::string command_line(const std::vector<std::string> &words) {
    std::string line;
    // A switch is a dash and a word; whatever else begins with a dash is a name and quoted like one.
    auto is_switch = [](const std::string &word) {
        return word.size() > 1 && word[0] == '-' &&
               std::all_of(word.begin(), word.end(),
                           [](unsigned char c) { return std::isalnum(c) != 0 || c == '-' || c == '_'; });
    };
    for (const std::string &word : words)
        line += (line.empty() ? "" : " ") + (is_switch(word) ? word : shell_word(word));
    return line;
}

void run_step(const std::vector<std::string> &words) {
    std::string line = command_line(words);
    kit_note("$ %s", line.c_str());
    KIT_PROGRESS progress(words[0]);
    int status = run_shell(line);
    if (status != 0)
        TOOL_fail("", 0, "%s ended with status %d; to repeat it: %s", words[0].c_str(),
                  WIFEXITED(status) ? WEXITSTATUS(status) : status, line.c_str());
}

bool write_draft(const std::string &path, const std::string &text, bool force) {
    if (TOOL_exists(path)) {
        if (!force) {
            kit_note("%s is there already and stays as it is; --force keeps it as %s~ and writes a new one",
                     path.c_str(), path.c_str());
            return false;
        }
        if (std::rename(path.c_str(), (path + "~").c_str()) != 0)
            TOOL_fail("", 0, "can't rename '%s' to '%s~': %s.", path.c_str(), path.c_str(),
                      std::strerror(errno));
    }
    TOOL_write_file(path, text);
    return true;
}
