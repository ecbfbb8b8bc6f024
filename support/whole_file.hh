// Files saved whole: the one way in which the programs write what they leave behind.
//
// The bytes go into a temporary file beside their place (support/temporary_file.hh), which takes the place of
// an earlier file when all of them are there. So an earlier file is never lost and none is left half written.
// The temporary file is called `.rw-XXXXXX`, with six characters that nobody can foretell; it is made anew,
// so that it follows no link.
//
// A file that is replaced keeps its permissions, a link stays a link, and a file that may not be written is
// refused even where its folder would permit the renaming. Devices and pipes are written as they stand.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>

/// Bytes that are collected for one call of the system: as many as stay in a processor's cache until they are
/// written.
constexpr size_t whole_file_piece = size_t{256} << 10;

/// A file in the making. Two at a time, one of which may be finished while the other is written.
struct whole_file {
    std::string target{};              ///< where the bytes go in the end, behind a link
    std::string temporary{};           ///< where they are until then; empty for a device or pipe
    std::unique_ptr<char[]> pending{}; ///< a piece of bytes that are not yet handed to the system
    size_t pending_size = 0;
    char *listed = nullptr; ///< its entry among the unfinished files
    mode_t mode = 0;        ///< permissions in the end
    int descriptor = -1;
    int reason = 0; ///< errno of the first failure; what is put behind it is passed over
};

/// Begins the file `path`. False when there can be none, for a folder or a file that may not be written for
/// instance; `reason` and errno then say why.
bool begin_file(whole_file &file, const std::string &path);
/// Adds bytes; a failure shows when the file is finished.
void put_bytes(whole_file &file, const void *bytes, size_t size);
/// Hands the bytes that were collected to the system.
void write_pending(whole_file &file);
/// Room for the next `size` bytes, at most a piece, which the caller fills before it puts any others.
inline char *put_room(whole_file &file, size_t size) {
    if (file.pending == nullptr || size > whole_file_piece - file.pending_size)
        write_pending(file);
    char *room = file.pending.get() + file.pending_size;
    file.pending_size += size;
    return room;
}
/// Puts the file in its place. False, with `reason` and errno, when not all of it could be written: the
/// earlier file is then as it was, and the temporary one is gone.
bool finish_file(whole_file &file);

/// True when begin_file would find nothing against the file `path`; else errno says what. Touches nothing.
bool can_write_file(const std::string &path);

/// Removes the temporary files of the files in the making. Allocates nothing and may be called
/// in a signal handler.
void discard_unfinished_files();

/// Writes `text` as the file `path`. False when the file cannot be begun; a failure behind that prints one
/// error with the name and the reason on the console and the report, and ends the run.
bool write_text_file(const std::string &path, std::string_view text);
