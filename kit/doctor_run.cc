// The proof of a clean bill: rimweave itself, in a folder of its own.
//
// The run finds the user's files by a search list of full names, and the pin files, which are not looked for,
// by links. It writes into its working directory alone, so that nothing of the user's is touched.
#include "description/tables.hh"
#include "kit/doctor.hh"
#include "kit/doctor_rules.hh"
#include "kit/progress.hh"
#include "siblings/tool.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;

struct SCRATCH_FOLDER {
    fs::path path;

    SCRATCH_FOLDER() {
        std::error_code fault;
        std::string name = (fs::temp_directory_path(fault) / "rimkit-XXXXXX").string();
        if (fault || ::mkdtemp(name.data()) == nullptr)
            TOOL_fail("", 0, "no scratch folder can be made as '%s': %s.", name.c_str(),
                      std::strerror(errno));
        path = name;
    }
    ~SCRATCH_FOLDER() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    SCRATCH_FOLDER(const SCRATCH_FOLDER &) = delete;
    SCRATCH_FOLDER &operator=(const SCRATCH_FOLDER &) = delete;
};

/// The directories of the search list by their full names; in front of them the scratch folder and, where the
/// list has it, the lib folder there, into which the run has the TAP's own cell read.
std::string full_search_list(const fs::path &scratch) {
    std::string list = scratch.string() + ":", own_library = fs::absolute("lib").string() + ":";
    std::string relative = FNM_list_with_folder(PATH);
    for (size_t at = 0; at < relative.size();) {
        size_t end = std::min(relative.find(':', at), relative.size());
        std::string folder = fs::absolute(relative.substr(at, end - at)).lexically_normal().string();
        folder.erase(folder.find_last_not_of('/') + 1);
        folder += ":";
        if (folder == own_library)
            list += (scratch / "lib").string() + ":";
        if (end > at)
            list += folder;
        at = end + 1;
    }
    return list;
}

/// The pin files at the places where the .bsc file names them.
void link_pin_files(const fs::path &scratch) {
    std::vector<const char *> names = {PIN_FILE};
    for (const PACKAGE_ENTRY *package = PACKAGE_TABLE; package != nullptr; package = package->next)
        names.push_back(package->file);
    for (const char *name : names) {
        if (name == nullptr || fs::path(name).is_absolute())
            continue;
        fs::path place = (scratch / name).lexically_normal();
        if (!place.string().starts_with(scratch.string() + "/"))
            place = scratch / fs::path(name).filename(); // ../x: the run says that it is not there
        std::error_code fault;
        fs::create_directories(place.parent_path(), fault);
        fs::create_symlink(fs::absolute(name), place, fault);
    }
}

/// The names in the text as the user knows them.
std::string with_user_names(std::string text, const fs::path &scratch) {
    std::string here = fs::current_path().string() + "/";
    for (const std::string &prefix : {scratch.string() + "/", here})
        for (size_t at = 0; (at = text.find(prefix, at)) != text.npos;)
            text.erase(at, prefix.size());
    return text;
}

} // namespace

void try_run(std::vector<FINDING> &findings, const std::vector<std::string> &switches) {
    KIT_PROGRESS progress("trying the run");
    SCRATCH_FOLDER scratch;
    link_pin_files(scratch.path);
    std::error_code fault;
    if (fs::is_directory("lib", fault)) // where the TAP's own cell goes then
        fs::create_directory(scratch.path / "lib", fault);
    std::string words;
    for (const std::string &word : switches)
        words += " " + word;
    int status = run_shell("cd " + shell_word(scratch.path.string()) +
                           " && VELMORA_DIRS=" + shell_word(full_search_list(scratch.path)) + " rimweave " +
                           shell_word(TOP_MODULE) + words + " > .output 2>&1");
    std::string output = with_user_names(TOOL_read_file((scratch.path / ".output").string()), scratch.path);
    std::vector<FINDING> said = findings_in_output(output);
    bool has_error = false;
    for (const FINDING &finding : said)
        has_error |= finding.severity == FINDING_ERROR;
    findings.insert(findings.end(), said.begin(), said.end());
    if (status != 0 && !has_error)
        findings.push_back(
            make_finding("run-failed", "", "", 0,
                         format_text("rimweave%s ends with status %d", words.c_str(),
                                     WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status))));
}
