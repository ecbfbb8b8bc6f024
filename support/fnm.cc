// File names taken apart and put together. The search list stands in search_path.cc.
#include "support/fnm.hh"

#include "support/message.hh"
#include "support/text.hh"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

const char *part_or_null(std::string_view part) {
    return part.empty() ? nullptr : keep_text(part);
}

/// Text of the link `name`; false when it is none or its text does not fit a name.
bool read_link(const std::string &name, std::string &target) {
    char text[FNM_NAME_ROOM];
    ssize_t length = ::readlink(name.c_str(), text, sizeof text);
    if (length < 0)
        return false;
    if (length == static_cast<ssize_t>(sizeof text))
        MSG_fatal("The link '%s' points to a name that is longer than %zu characters.\n", name.c_str(),
                  FNM_NAME_ROOM - 1);
    target.assign(text, static_cast<size_t>(length));
    return true;
}

/// The name that a link text stands for, seen from the folder that holds the link.
std::string link_target(const std::string &current, const std::string &text) {
    FNM_NAME from = FNM_parse(current.c_str());
    FNM_NAME to = FNM_parse(text.c_str());
    bool in_root = text.starts_with('/') && to.path == nullptr; // "/lib" has no path, yet it is complete
    if (in_root)
        return text;
    if (to.path == nullptr && from.path != nullptr)
        to.path = from.path;
    else if (to.path != nullptr && from.path != nullptr && ::access(text.c_str(), F_OK) != 0)
        to.path = keep_format("%s/%s", from.path, to.path);
    return FNM_make(&to);
}

std::string working_directory() {
    char directory[PATH_MAX];
    if (::getcwd(directory, sizeof directory) == nullptr)
        MSG_fatal("Can not get current working directory!. Please check file server.\n");
    return directory;
}

} // namespace

FNM_NAME FNM_parse(const char *name) {
    FNM_NAME parsed = {nullptr, nullptr, nullptr, nullptr};
    std::string_view rest = name;
    if (size_t colon = rest.find(':'); colon != std::string_view::npos)
        parsed.volume = part_or_null(rest.substr(0, colon));
    if (size_t slash = rest.rfind('/'); slash != std::string_view::npos) {
        parsed.path = part_or_null(rest.substr(0, slash));
        rest.remove_prefix(slash + 1);
    }
    size_t dot = rest.rfind('.');
    parsed.name = part_or_null(rest.substr(0, dot));
    if (dot != std::string_view::npos)
        parsed.ext = part_or_null(rest.substr(dot + 1));
    if (parsed.name == nullptr && parsed.ext != nullptr) // ".foo" is a name, not an extension
        parsed.name = keep_format(".%s", std::exchange(parsed.ext, nullptr));
    return parsed;
}

std::string FNM_make(FNM_NAME *parsed) {
    std::string text;
    if (parsed->path != nullptr && parsed->path[0] != '\0') {
        if (parsed->path[0] == '~') {
            const char *home = FNM_get_home(parsed->path);
            if (home != nullptr)
                parsed->path = home;
        }
        text = parsed->path;
        if (!text.ends_with('/'))
            text += '/';
    }
    if (parsed->name != nullptr)
        text += parsed->name;
    if (parsed->ext != nullptr) {
        if (parsed->ext[0] != '.')
            text += '.';
        text += parsed->ext;
    }
    return text;
}

std::string FNM_break(const char *name, const char *parts) {
    FNM_NAME wanted = FNM_parse(name);
    auto keep = [parts](char letter, const char *&part) {
        if (std::strchr(parts, letter) == nullptr)
            part = nullptr;
    };
    keep('v', wanted.volume);
    keep('p', wanted.path);
    keep('b', wanted.name);
    keep('e', wanted.ext);
    return FNM_make(&wanted);
}

std::string FNM_build(const char *dir, const char *name, const char *ext) {
    FNM_NAME parsed = FNM_parse(name);
    if (dir != nullptr)
        parsed.path = dir;
    if (ext != nullptr)
        parsed.ext = ext;
    return FNM_make(&parsed);
}

std::string FNM_append_ext(const char *name, const char *ext) {
    std::string text = name;
    size_t dot = text.rfind('.');
    if (ext == nullptr)
        return text.substr(0, dot);
    if (dot != std::string::npos && text.compare(dot, std::string::npos, ext) == 0)
        return text;
    return text + ext;
}

std::FILE *FNM_open(const char *name) {
    int descriptor = ::open(name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); // a pipe is not waited for
    if (descriptor < 0)
        return nullptr;
    struct stat known;
    std::FILE *file = nullptr;
    if (::fstat(descriptor, &known) == 0 && S_ISREG(known.st_mode))
        file = ::fdopen(descriptor, "r");
    if (file == nullptr && errno == ENOMEM)
        MSG_fatal_error(MSG_NO_MEMORY);
    if (file == nullptr)
        ::close(descriptor);
    return file;
}

const char *FNM_get_home(const char *name) {
    std::string_view rest = name;
    if (rest.starts_with('~'))
        rest.remove_prefix(1);
    std::string user(rest.substr(0, rest.find('/')));
    rest.remove_prefix(user.size());
    errno = 0;
    const passwd *entry = user.empty() ? ::getpwuid(::getuid()) : ::getpwnam(user.c_str());
    if (entry == nullptr && errno == ENOMEM)
        MSG_fatal_error(MSG_NO_MEMORY);
    if (entry == nullptr || entry->pw_dir == nullptr)
        return nullptr;
    return keep_text(std::string(entry->pw_dir).append(rest));
}

std::string FNM_get_link(const char *name) {
    if (name[0] == '\0' || same_text(name, "."))
        return working_directory();
    std::string current = name;
    if (name[0] == '~')
        if (const char *home = FNM_get_home(name); home != nullptr)
            current = home;
    std::string chain = current;
    std::set<std::pair<dev_t, ino_t>> visited;
    struct stat state;
    if (::lstat(current.c_str(), &state) == 0)
        visited.emplace(state.st_dev, state.st_ino);
    for (std::string target; read_link(current, target);) {
        current = link_target(current, target);
        chain += "->" + target;
        if (::lstat(current.c_str(), &state) == 0 && !visited.emplace(state.st_dev, state.st_ino).second) {
            MSG_inform("\n");
            MSG_fatal("Please remove self-link '%s' before proceeding!\n\n", chain.c_str());
        }
    }
    return current;
}
