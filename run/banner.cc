#include "run/banner.hh"

#include "support/console.hh"
#include "support/program.hh"
#include "support/text.hh"

#include <cctype>
#include <ctime>
#include <string>

namespace {

constexpr size_t banner_width = 78;

std::string prog_name;
std::string version_num;
std::string w_directory; ///< empty for the working directory

int current_year() {
    std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

/// The report's second name: the design's without `extension`, below the write directory.
std::string second_report_name(std::string name, std::string_view extension) {
    if (name.size() > extension.size() && name.ends_with(extension))
        name.resize(name.size() - extension.size());
    if (extension == ".sdb" && name.size() > 2 && name.ends_with(".x"))
        name.resize(name.size() - 2);
    if (!w_directory.empty())
        name = w_directory + "/" + name;
    return name + ".rpt";
}

} // namespace

const char *get_make_date() {
    // The date is the release's, set with the version: two builds of one state are equal to the byte.
    return RW_BUILD_TEXT;
}

void top_print_prog_name_and_version_num(const char *name, const char *version) {
    prog_name = name;
    version_num = version;
    for (char &c : prog_name)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

void top_set_w_directory(const char *dir) {
    w_directory = dir == nullptr ? "" : dir;
}

void top_print_copyright() {
    std::string title = format_text(" %s %s ", prog_name.c_str(), get_make_date());
    std::string rule(title.size() < banner_width ? (banner_width - title.size()) / 2 : 0, '=');
    print_out_str("\n" + rule + title + rule + "\n\n");
    print_out_str(
        format_text("Copyright (c) %d The rimweave developers. All rights reserved.\n", current_year()));
    print_out_str(format_text("\nTIME: %s\n", get_time_string()));
}

void top_direct_output(const char *filename, std::string_view extension, int restart_flag) {
    if (fd == nullptr) {
        std::string name = second_report_name(filename, extension);
        fd = open_stream(name.c_str(), restart_flag != 0 ? "ae" : "we");
        if (fd == nullptr)
            vmr_fail("\n\nCan not open output report filename '%s'!\n\n", name.c_str());
    }
    if (restart_flag == 0)
        top_print_copyright();
}
