// Runs that leave nothing behind. All that the readers consist of is one shared library, so that the writable
// memory of the programs is one place, apart from the fuzzer's: behind every run it is put back to what it
// was at the start, what the run still holds of the heap is freed, and its open files are closed. A call of
// exit unwinds the stack.
#include "tests/fuzz/fuzz.hh"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <link.h>
#include <pwd.h>
#include <sanitizer/allocator_interface.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

extern const char *const fuzz_reader_name; // of the program
extern char _end __attribute__((visibility("hidden")));

namespace {

namespace fs = std::filesystem;

/// What outlasts the runs; on the heap, for the memory of the library is put back with all that it holds.
struct KEPT {
    const FUZZ_READER *reader = nullptr;
    fs::path folder;   ///< of the input's files
    fs::path prepared; ///< what is in it at the start
    bool running = false;
    bool has_printed = false;
    std::set<std::FILE *> open_files;
    std::vector<const void *> blocks; ///< that the run has taken from the heap
    char *image = nullptr;            ///< the library's writable memory, whole pages
    size_t image_size = 0;
    int image_file = -1; ///< its first state
};
KEPT &kept = *new KEPT;
char *counters, *counters_end; ///< of covered code, in the midst of that memory; set before all else

struct RUN_END {
    int status;
};

void stop(const char *reason, int status) {
    std::fprintf(stderr, "fuzz: %s (exit status %d)\n", reason, status);
    std::abort();
}

// Called inside malloc.
void note_block(const volatile void *block, size_t) {
    if (!std::exchange(kept.running, false))
        return;
    kept.blocks.push_back(const_cast<const void *>(block));
    kept.running = true;
}

std::FILE *note_file(std::FILE *file) {
    bool outer = std::exchange(kept.running, false);
    if (file != nullptr)
        kept.open_files.insert(file);
    kept.running = outer;
    return file;
}

void free_blocks() {
    for (const void *block : kept.blocks) // a place may have been given out twice
        if (__sanitizer_get_ownership(block) != 0)
            std::free(const_cast<void *>(block));
    kept.blocks.clear();
}

/// What the linker alone writes is closed by now and ends at a page; the variables come behind it.
int find_image(dl_phdr_info *library, size_t, void *) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    bool is_ours = false;
    for (const ElfW(Phdr) *part = library->dlpi_phdr; part < library->dlpi_phdr + library->dlpi_phnum;
         part++) {
        char *from = reinterpret_cast<char *>(library->dlpi_addr + part->p_vaddr);
        char *to = from + part->p_memsz;
        is_ours = is_ours || (part->p_type == PT_LOAD && from < &_end && &_end <= to);
        if (part->p_type == PT_GNU_RELRO)
            kept.image = to;
    }
    kept.image_size = (static_cast<size_t>(&_end - kept.image) + page - 1) / page * page;
    return is_ours ? 1 : 0;
}

// Calls of the system pass the red zones between the variables, which are no error here.
void take_image() {
    if (syscall(SYS_pwrite64, kept.image_file, kept.image, kept.image_size, 0) < 0)
        stop("no image", 0);
}

/// Only pages that the run has changed cost anything.
void put_image_back() {
    const std::string counted(counters, counters_end);
    if (syscall(SYS_mmap, kept.image, kept.image_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED,
                kept.image_file, 0) == -1)
        stop("no image", 0);
    std::copy(counted.begin(), counted.end(), counters);
}

void write_parts(std::string_view input) {
    constexpr std::string_view line = "\n====\n";
    for (const char *file : kept.reader->files) {
        bool last = file == kept.reader->files.back();
        size_t end = last ? std::string_view::npos : input.find(line);
        std::string_view part = input.substr(0, end);
        if (!part.empty() || file == kept.reader->files.front()) {
            fs::remove(file); // else a prepared file of that name changes too
            std::ofstream(file, std::ios::binary) << part;
        }
        input = end == std::string_view::npos ? std::string_view() : input.substr(end + line.size());
    }
}

} // namespace

int fuzz_run(const std::function<void()> &program) {
    int status = 0;
    const int first_descriptor = dup(STDIN_FILENO); // the lowest that is free: the run's own begin behind it
    kept.has_printed = false;
    kept.running = true;
    try {
        program();
    } catch (const RUN_END &end) {
        status = end.status & 0xFF;
    }
    kept.running = false;
    for (std::FILE *file : std::exchange(kept.open_files, {}))
        std::fclose(file);
    close_range(static_cast<unsigned>(first_descriptor), ~0U, 0);
    free_blocks();
    put_image_back();
    constexpr int token_too_long = 2;
    if (status != 0 && status != 255 && status != token_too_long)
        stop("no run ends so", status);
    if (status == 255 && !kept.has_printed)
        stop("the run ends without a word", status);
    return status;
}

// The linker leads the programs' calls to these.
extern "C" {
std::FILE *__real_fopen(const char *path, const char *mode);
std::FILE *__real_fdopen(int descriptor, const char *mode);
int __real_fclose(std::FILE *file);
size_t __real_fwrite(const void *bytes, size_t size, size_t count, std::FILE *file);
int __real___cxa_atexit(void (*call)(void *), void *value, void *library);
void __real___sanitizer_cov_8bit_counters_init(char *from, char *to);

[[noreturn]] void __wrap_exit(int status) {
    throw RUN_END{status};
}

std::FILE *__wrap_fopen(const char *path, const char *mode) {
    return note_file(__real_fopen(path, mode));
}

std::FILE *__wrap_fdopen(int descriptor, const char *mode) {
    return note_file(__real_fdopen(descriptor, mode));
}

int __wrap_fclose(std::FILE *file) {
    kept.open_files.erase(file);
    return __real_fclose(file);
}

size_t __wrap_fwrite(const void *bytes, size_t size, size_t count, std::FILE *file) {
    if (file != stdout && file != stderr)
        return __real_fwrite(bytes, size, count, file);
    kept.has_printed = true;
    return count;
}

int __wrap_system(const char *) {
    return 0;
}

int __wrap___cxa_atexit(void (*)(void *), void *, void *) {
    return 0; // a run's own objects are given up with its memory
}

void __wrap___sanitizer_cov_8bit_counters_init(char *from, char *to) {
    counters = from;
    counters_end = to;
    __real___sanitizer_cov_8bit_counters_init(from, to);
}

int LLVMFuzzerInitialize(int *, char ***) {
    fs::path home = fs::current_path();
    std::string name = (fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()) / "rw_fuzz_XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        stop("no folder for the inputs", 0);
    __real___cxa_atexit([](void *) { fs::remove_all(kept.folder.parent_path()); }, nullptr, nullptr);
    unsetenv("VELMORA");
    unsetenv("VELMORA_DIRS");
    getpwnam("nobody has this name"); // the system library keeps what its first calls have read
    getpwuid(0);
    kept.reader = &fuzz_reader(fuzz_reader_name);
    kept.folder = name + "/input";
    kept.prepared = name + "/prepared";
    fs::create_directory(kept.prepared);
    fs::current_path(kept.prepared);
    __sanitizer_install_malloc_and_free_hooks(note_block, [](const volatile void *) {});
    kept.image_file = memfd_create("image", MFD_CLOEXEC);
    dl_iterate_phdr(find_image, nullptr);
    take_image();
    if (kept.reader->prepare != nullptr)
        kept.reader->prepare();
    take_image();
    fs::current_path(home);
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fs::path home = fs::current_path();
    fs::remove_all(kept.folder);
    fs::create_directory(kept.folder);
    for (const auto &entry : fs::directory_iterator(kept.prepared)) {
        fs::path place = kept.folder / entry.path().filename();
        entry.is_directory() ? fs::create_symlink(entry, place) : fs::create_hard_link(entry, place);
    }
    fs::current_path(kept.folder);
    write_parts({reinterpret_cast<const char *>(data), size});
    kept.reader->read();
    fs::current_path(home);
    return 0;
}
}
