#include "run/banner.hh"

#include "support/console.hh"
#include "support/program.hh"
#include "support/text.hh"

#include <ctime>
#include <string>

namespace {

constexpr size_t banner_width = 78;

std::string w_directory; ///< empty for the working directory

int current_year() {
    std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

/// The report's second name: the design's without its extensions, below the write directory.
std::string second_report_name(std::string name) {
    for (std::string_view extension : {".sdb", ".x"})
        if (name.size() > extension.size() && name.ends_with(extension))
            name.erase(name.size() - extension.size());
    return (w_directory.empty() ? "" : w_directory + "/") + name + ".rpt";
}

} // namespace

void top_set_w_directory(const char *dir) {
    w_directory = dir == nullptr ? "" : dir;
}

void top_print_copyright() {
    // The date is the release's, set with the version: two builds of one state are equal to the byte.
    std::string title = " RIMWEAVE " RW_BUILD_TEXT " ";
    std::string rule(title.size() < banner_width ? (banner_width - title.size()) / 2 : 0, '=');
    print_out_str("\n" + rule + title + rule + "\n\n");
    print_out_str(
        format_text("Copyright (c) %d The rimweave developers. All rights reserved.\n", current_year()));
    print_out_str(format_text("\nTIME: %s\n", get_time_string()));
}

void top_direct_output(const char *design) {
    if (fd == nullptr) {
        std::string name = second_report_name(design);
        fd = open_stream(name.c_str(), "we");
        if (fd == nullptr)
            vmr_fail("\n\nCan not open output report filename '%s'!\n\n", name.c_str());
    }
    top_print_copyright();
}
