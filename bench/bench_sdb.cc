// What opening a design costs beside reading its bytes, in time and in memory.
//
//   bench_sdb [instances] [pads] [runs] [folder]
//
// Each run is a child process of its own that does one thing and tells its time and its largest resident
// size. The two kinds of runs alternate, and medians are printed.
#include "bench/chip_generator.hh"
#include "sdb/navigation.hh"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct measurement {
    double seconds;
    double bytes; ///< largest resident size above that of the process before the work
};

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double peak_bytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

/// Does the work in a child process. A failed child ends the benchmark.
template <class Work> measurement measure(Work work) {
    int ends[2];
    if (pipe(ends) != 0)
        std::exit(1);
    pid_t child = fork();
    if (child == 0) {
        double before = peak_bytes();
        double start = now();
        bool done = work();
        measurement result{now() - start, peak_bytes() - before};
        bool told = write(ends[1], &result, sizeof result) == static_cast<ssize_t>(sizeof result);
        _exit(done && told ? 0 : 1);
    }
    close(ends[1]);
    measurement result{};
    ssize_t got = read(ends[0], &result, sizeof result);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (got != static_cast<ssize_t>(sizeof result) || status != 0) {
        std::fprintf(stderr, "bench_sdb: a run failed\n");
        std::exit(1);
    }
    return result;
}

bool read_bytes(const std::string &path) {
    size_t size = std::filesystem::file_size(path);
    auto *bytes = static_cast<char *>(std::malloc(size));
    int file = open(path.c_str(), O_RDONLY);
    size_t got = 0;
    for (ssize_t n = 1; bytes != nullptr && n > 0 && got<size; got += n> 0 ? static_cast<size_t>(n) : 0)
        n = read(file, bytes + got, size - got);
    close(file);
    std::free(bytes);
    return got == size;
}

bool open_design(const std::string &path) {
    SDB_HANDLE *design = SDB_setup(SDB_open(path.c_str(), "r", 0));
    SDB_close(design, 0);
    return design != nullptr;
}

/// Opening, and the first lookup of each kind, which builds the indices.
bool open_and_look_up(const std::string &path) {
    SDB_HANDLE *design = SDB_setup(SDB_open(path.c_str(), "r", 0));
    bool found = design != nullptr && SDB_nl_search_port("in0") >= 0 && SDB_lookup_obj("pad_in0") >= 0 &&
                 (prefix_count == 0 || SDB_lookup_obj("u_core.U0") >= 0);
    SDB_close(design, 0);
    return found;
}

double median(std::vector<measurement> &runs, double measurement::*field) {
    std::sort(runs.begin(), runs.end(),
              [&](const measurement &a, const measurement &b) { return a.*field < b.*field; });
    return runs[runs.size() / 2].*field;
}

/// Measures each kind of work on the files one after the other.
void report(const char *what, const std::vector<std::string> &paths, int32_t runs) {
    double size = 0;
    double largest = 0; // one file is in memory at a time
    for (const std::string &path : paths) {
        auto file_size = static_cast<double>(std::filesystem::file_size(path));
        size += file_size;
        largest = std::max(largest, file_size);
    }
    struct kind_of_work {
        const char *what;
        bool (*work)(const std::string &path);
        std::vector<measurement> results;
    };
    kind_of_work kinds[] = {{"reading the bytes", read_bytes, {}},
                            {"opening", open_design, {}},
                            {"opening, first lookups", open_and_look_up, {}}};
    for (int32_t run = 0; run <= runs; run++) {
        for (kind_of_work &kind : kinds) {
            measurement result = measure([&] { return std::all_of(paths.begin(), paths.end(), kind.work); });
            if (run > 0) // the first run brings the files into the cache
                kind.results.push_back(result);
        }
    }
    double base = median(kinds[0].results, &measurement::seconds);
    std::printf("%s: %.1f MB\n", what, size / 1e6);
    for (kind_of_work &kind : kinds) {
        double seconds = median(kind.results, &measurement::seconds);
        std::printf("  %-24s %9.2f ms  %5.2f x reading   peak memory %5.2f x larger file\n", kind.what,
                    seconds * 1e3, seconds / base, median(kind.results, &measurement::bytes) / largest);
    }
}

} // namespace

int main(int argc, char **argv) {
    auto number = [&](int index, int32_t value) { return argc > index ? std::atoi(argv[index]) : value; };
    chip_size size{number(2, 2000), number(1, 1000000), false};
    int32_t runs = std::max(number(3, 9), 1);
    std::string folder = argc > 4 ? argv[4] : std::filesystem::temp_directory_path().string();
    if (size.pads < 2 || size.instances <= size.pads) {
        std::fprintf(stderr,
                     "usage: bench_sdb [instances] [pads] [runs] [folder]; more instances than pads\n");
        return 255;
    }
    std::string top = folder + "/chip.sdb";
    std::string flat = folder + "/chip.c.sdb";
    for (bool in_module : {false, true}) {
        size.in_module = in_module;
        measurement building =
            measure([&] { return write_top_chip(top, size) == 0 && write_flat_chip(flat, size) == 0; });
        std::printf("%d instances in %s, %d pads, medians of %d runs; building and writing took %.2f s\n",
                    size.instances, in_module ? "a module" : "the top module", size.pads, runs,
                    building.seconds);
        report("chip.sdb and chip.c.sdb", {top, flat}, runs);
    }
    std::filesystem::remove(top);
    std::filesystem::remove(flat);
    return 0;
}
