// A file read from front to back, plain or compressed by gzip, with a small buffer however large it is.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>

struct z_stream_s;

/// An open file. Faults of the file end the program with a message that names it: it can't be opened or read,
/// is a folder or a device, or its compressed data are damaged or end too early.
struct BYTE_SOURCE {
    /// `from_file` and `from_line` say who asked for the file, empty and 0 for the command line.
    explicit BYTE_SOURCE(const std::string &path, std::string_view from_file = {}, int from_line = 0);
    ~BYTE_SOURCE();
    BYTE_SOURCE(const BYTE_SOURCE &) = delete;
    BYTE_SOURCE &operator=(const BYTE_SOURCE &) = delete;

    std::string path;
    dev_t device = 0; ///< with `inode`: the same file under whatever name
    ino_t inode = 0;

    // What bytes_read works with.
    std::FILE *stream = nullptr;
    std::unique_ptr<z_stream_s> inflater{}; ///< null for a plain file
    std::unique_ptr<char[]> packed{};       ///< what was read last, and of it what is still to be handed out
    size_t packed_at = 0, packed_end = 0;
    bool at_end = false; ///< all parts are unpacked
};

/// The next bytes, as many as there are up to `size`; 0 at the end of the file alone.
size_t bytes_read(BYTE_SOURCE &source, char *to, size_t size);
