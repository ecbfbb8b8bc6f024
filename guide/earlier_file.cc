#include "guide/earlier_file.hh"

#include "support/console.hh"
#include "support/whole_file.hh"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <vector>

namespace {

std::vector<struct stat> read_files; ///< as they were then

bool was_read(const struct stat &file) {
    auto same = [&file](const struct stat &known) {
        return known.st_dev == file.st_dev && known.st_ino == file.st_ino && known.st_size == file.st_size &&
               known.st_mtim.tv_sec == file.st_mtim.tv_sec && known.st_mtim.tv_nsec == file.st_mtim.tv_nsec;
    };
    return std::any_of(read_files.begin(), read_files.end(), same);
}

} // namespace

void note_read_file(const char *path) {
    struct stat file {};
    if (path != nullptr && ::stat(path, &file) == 0)
        read_files.push_back(file);
}

void keep_earlier_file(const std::string &path) {
    struct stat file {};
    if (::stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode) || was_read(file))
        return;
    std::string copy = path + "~";
    std::error_code none;
    if (std::filesystem::is_symlink(copy, none)) // what it leads to is not ours to write over
        std::filesystem::remove(copy, none);
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    bool whole = text.size() == static_cast<size_t>(file.st_size);
    if (!whole || !write_text_file(copy, text))
        console_fail("Can't open %s to write\n", copy.c_str());
    ::chmod(copy.c_str(), file.st_mode & 07777);
}
