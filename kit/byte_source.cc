#include "kit/byte_source.hh"

#include "siblings/tool.hh"
#include "support/program.hh"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <zlib.h>

namespace {

constexpr size_t CHUNK = 1 << 16;

// Reads the next chunk of the file itself. False at its end.
bool fill(BYTE_SOURCE &source) {
    source.packed_at = 0;
    source.packed_end = std::fread(source.packed.get(), 1, CHUNK, source.stream);
    if (source.packed_end == 0 && std::ferror(source.stream) != 0)
        TOOL_fail("", 0, "can't read file '%s': %s.", source.path.c_str(), std::strerror(errno));
    return source.packed_end > 0;
}

bool has_magic(const BYTE_SOURCE &source) {
    return source.packed_end - source.packed_at >= 2 && source.packed[source.packed_at] == '\x1f' &&
           source.packed[source.packed_at + 1] == '\x8b';
}

// Behind one compressed part there may be another, or zeros up to the end of a block. False at the end.
bool begin_part(BYTE_SOURCE &source) {
    if (source.packed_at == source.packed_end && !fill(source))
        return false;
    if (source.packed[source.packed_at] == '\x1f') {
        inflateReset(source.inflater.get());
        return true;
    }
    do {
        const char *at = source.packed.get() + source.packed_at;
        const char *end = source.packed.get() + source.packed_end;
        if (std::any_of(at, end, [](char byte) { return byte != '\0'; }))
            TOOL_fail(source.path, 0, "this file is damaged: other bytes stand behind its compressed data.");
    } while (fill(source));
    return false;
}

size_t inflate_bytes(BYTE_SOURCE &source, char *to, size_t size) {
    z_stream_s &inflater = *source.inflater;
    inflater.next_out = reinterpret_cast<Bytef *>(to);
    inflater.avail_out = static_cast<uInt>(size);
    while (inflater.avail_out == size) {
        if (source.packed_at == source.packed_end && !fill(source))
            TOOL_fail(source.path, 0, "this file is damaged: its compressed data end too early.");
        inflater.next_in = reinterpret_cast<Bytef *>(source.packed.get() + source.packed_at);
        inflater.avail_in = static_cast<uInt>(source.packed_end - source.packed_at);
        int state = inflate(&inflater, Z_NO_FLUSH);
        source.packed_at = source.packed_end - inflater.avail_in;
        if (state == Z_STREAM_END) {
            source.at_end = !begin_part(source);
            if (source.at_end)
                break;
        } else if (state == Z_MEM_ERROR) {
            TOOL_fail("", 0, "there is no memory to unpack '%s'.", source.path.c_str());
        } else if (state != Z_OK && state != Z_BUF_ERROR) {
            TOOL_fail(source.path, 0, "this file is damaged: its compressed data can't be unpacked (%s).",
                      inflater.msg != nullptr ? inflater.msg : "no reason known");
        }
    }
    return size - inflater.avail_out;
}

} // namespace

BYTE_SOURCE::BYTE_SOURCE(const std::string &file, std::string_view from_file, int from_line) : path(file) {
    struct stat info {};
    // A folder can't be read, and a device may have no end.
    if (stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISFIFO(info.st_mode))
        TOOL_fail(from_file, from_line, "can't read file '%s': it is a %s.", path.c_str(),
                  S_ISDIR(info.st_mode) ? "directory" : "device");
    stream = open_stream(path.c_str(), "rb");
    if (stream == nullptr)
        TOOL_fail(from_file, from_line, "can't open file '%s': %s.", path.c_str(), std::strerror(errno));
    std::setvbuf(stream, nullptr, _IONBF, 0);
    device = info.st_dev;
    inode = info.st_ino;
    packed = std::make_unique<char[]>(CHUNK);
    fill(*this);
    if (!has_magic(*this))
        return;
    inflater = std::make_unique<z_stream_s>();
    constexpr int gzip_header = 16; // added to the size of the window
    if (inflateInit2(inflater.get(), MAX_WBITS + gzip_header) != Z_OK)
        TOOL_fail("", 0, "there is no memory to unpack '%s'.", path.c_str());
}

BYTE_SOURCE::~BYTE_SOURCE() {
    if (inflater != nullptr)
        inflateEnd(inflater.get());
    if (stream != nullptr)
        std::fclose(stream);
}

size_t bytes_read(BYTE_SOURCE &source, char *to, size_t size) {
    if (size == 0)
        return 0;
    size = std::min<size_t>(size, 1U << 30);
    if (source.inflater != nullptr)
        return source.at_end ? 0 : inflate_bytes(source, to, size);
    if (source.packed_at == source.packed_end && !fill(source))
        return 0;
    size_t count = std::min(size, source.packed_end - source.packed_at);
    std::memcpy(to, source.packed.get() + source.packed_at, count);
    source.packed_at += count;
    return count;
}
