// Sessions with the guide in a scratch folder. `clear` is replaced by a script that leaves a mark, so that
// each screen of a transcript starts with a line of its own.
#pragma once

#include "tests/support/expected_file.hh"

#include <initializer_list>

struct guide_folder {
    scratch_folder scratch;
    scratch_folder tools;

    guide_folder() {
        tools.write("clear", "#!/bin/sh\necho '----- clear'\n");
        std::filesystem::permissions(tools.path("clear"), std::filesystem::perms::owner_all);
    }

    /// The command line of a run with the replaced `clear`.
    std::string command(const std::string &options) const {
        return "PATH='" + tools.dir.string() +
               "':$PATH; timeout --foreground 60 " RW_BIN_DIR "/rimweave chip -guideline " + options;
    }
    run_result session(std::string_view input, const std::string &options = "-add_tap_only") const {
        return scratch.run(command(options), input);
    }
    /// The same with the answers given one by one.
    run_result answer(std::initializer_list<const char *> answers) const {
        std::string input;
        for (const char *one : answers)
            input.append(one).append("\n");
        return session(input);
    }
};

/// A file beside the tests.
inline std::string beside_the_tests(const std::string &name) {
    return read_whole(RW_SOURCE_DIR "/tests/guide/sessions/" + name);
}

/// The screens of a run: what stands from the first mark on.
inline std::string screens(const run_result &result) {
    size_t first = result.out.find("----- clear");
    return first == std::string::npos ? "" : result.out.substr(first);
}

inline bool holds(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}
