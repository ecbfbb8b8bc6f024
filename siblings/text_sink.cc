#include "siblings/text_sink.hh"

#include "siblings/tool.hh"

#include <cstring>
#include <sys/stat.h>

namespace {

constexpr size_t BUFFER_SIZE = size_t{1} << 16;
constexpr size_t HOLD_LIMIT = size_t{1} << 20; // a shorter text never is in a temporary file

// True for a file that takes another's place when it is finished.
bool is_replaced(const std::string &path) {
    struct stat status {};
    return !path.empty() && (::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode));
}

void pass_on(TEXT_SINK &sink, std::string_view text) {
    if (sink.in_file) {
        put_bytes(sink.file, text.data(), text.size());
        return;
    }
    sink.kept += text;
    if (sink.kept.size() < HOLD_LIMIT || sink.file.reason != 0 || !is_replaced(sink.path))
        return;
    // A file that can't be begun is told at the end, behind what is wrong with the text.
    sink.in_file = begin_file(sink.file, sink.path);
    if (sink.in_file) {
        put_bytes(sink.file, sink.kept.data(), sink.kept.size());
        sink.kept = {};
    }
}

void drain(TEXT_SINK &sink) {
    pass_on(sink, {sink.buffer.get(), sink.at});
    sink.at = sink.buffer.get();
}

} // namespace

TEXT_SINK TEXT_open(const std::string &path) {
    TEXT_SINK sink{path};
    sink.buffer = std::make_unique_for_overwrite<char[]>(BUFFER_SIZE);
    sink.at = sink.buffer.get();
    sink.end = sink.at + BUFFER_SIZE;
    return sink;
}

bool TEXT_make_room(TEXT_SINK &sink, std::string_view text) {
    drain(sink);
    if (text.size() <= BUFFER_SIZE)
        return false;
    pass_on(sink, text);
    return true;
}

void TEXT_finish(TEXT_SINK &sink) {
    drain(sink);
    if (!sink.in_file) {
        TOOL_write_file(sink.path, sink.kept);
    } else if (!finish_file(sink.file)) {
        TOOL_fail(sink.path, 0, "this file can't be written: %s.", std::strerror(sink.file.reason));
    }
}

std::string TEXT_take(TEXT_SINK &sink) {
    drain(sink);
    return std::move(sink.kept);
}
