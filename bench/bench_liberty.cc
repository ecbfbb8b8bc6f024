// The Liberty reader against copying the same file: unpacking it with gunzip for a compressed one, cat for a
// plain one. Medians of turns taken one after the other in one run, and the most memory that the reader held.
//
//   bench_liberty [MEGABYTES [TURNS [FOLDER]]]
#include "kit/liberty.hh"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// A table of timing values, as most of a library is.
std::string values(unsigned &seed) {
    std::string text;
    for (int row = 0; row < 7; ++row) {
        text += row == 0 ? "\t\t\t\t\tvalues ( \\\n\t\t\t\t\t\t\"" : ", \\\n\t\t\t\t\t\t\"";
        for (int column = 0; column < 7; ++column) {
            seed = seed * 1664525 + 1013904223;
            char number[32];
            std::snprintf(number, sizeof number, "%s%.6f", column == 0 ? "" : ", ", (seed >> 8) * 1e-7);
            text += number;
        }
        text += "\"";
    }
    return text + ");\n";
}

void write_library(const std::string &path, size_t size) {
    std::FILE *file = std::fopen(path.c_str(), "w");
    if (file == nullptr)
        std::exit(255);
    std::fputs("library (bench) {\n\tdelay_model : table_lookup;\n", file);
    unsigned seed = 1;
    for (int cell = 0; static_cast<size_t>(std::ftell(file)) < size; ++cell) {
        std::fprintf(file,
                     "\tcell (\"CELL_%d\") {\n\t\tarea : 1.5;\n\t\tpg_pin (VDD) {\n\t\t\tpg_type : "
                     "primary_power;\n\t\t}\n",
                     cell);
        for (const char *pin : {"A", "B", "C"})
            std::fprintf(file,
                         "\t\tpin (%s) {\n\t\t\tdirection : \"input\";\n\t\t\tcapacitance : 0.0012;\n\t\t}\n",
                         pin);
        std::fputs("\t\tpin (Z) {\n\t\t\tdirection : output;\n\t\t\tfunction : \"(A*B)+C\";\n", file);
        for (const char *pin : {"A", "B", "C"}) {
            std::fprintf(file, "\t\t\ttiming () {\n\t\t\t\trelated_pin : \"%s\";\n", pin);
            for (const char *table : {"cell_rise", "rise_transition", "cell_fall", "fall_transition"})
                std::fprintf(file, "\t\t\t\t%s (delay_7x7) {\n%s\t\t\t\t}\n", table, values(seed).c_str());
            std::fputs("\t\t\t}\n", file);
        }
        std::fputs("\t\t}\n\t}\n", file);
    }
    std::fputs("}\n", file);
    std::fclose(file);
}

struct COST {
    double seconds;
    long kilobytes;
};

/// In a process of its own, so that each starts with the same memory.
COST measure(const std::function<void()> &work) {
    auto start = std::chrono::steady_clock::now();
    pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage used{};
    if (wait4(child, &status, 0, &used) != child || status != 0)
        std::exit(255);
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), used.ru_maxrss};
}

COST median(std::vector<COST> costs) {
    std::sort(costs.begin(), costs.end(), [](const COST &a, const COST &b) { return a.seconds < b.seconds; });
    return costs[costs.size() / 2];
}

void shell(const std::string &command) {
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(255);
}

void compare(const char *title, const std::string &path, const std::string &copy, int turns) {
    std::vector<COST> copies, readings;
    for (int turn = 0; turn < turns; ++turn) {
        copies.push_back(measure([&] { shell(copy); }));
        readings.push_back(measure([&] {
            LIBERTY library;
            liberty_read(library, path);
        }));
    }
    COST copied = median(copies), read = median(readings);
    std::printf("%-5s copy %.2f s, reader %.2f s and %ld MB: %.2f times the copy\n", title, copied.seconds,
                read.seconds, read.kilobytes / 1024, read.seconds / copied.seconds);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv) {
    size_t megabytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 300;
    int turns = argc > 2 ? std::atoi(argv[2]) : 5;
    std::string path = std::string(argc > 3 ? argv[3] : "/tmp") + "/bench_liberty.lib";
    write_library(path, megabytes << 20);
    measure([&] { shell("gzip -6 -c " + path + " >" + path + ".gz"); });
    compare("gzip", path + ".gz", "gunzip -c " + path + ".gz >/dev/null", turns);
    compare("plain", path, "cat " + path + " | cat >/dev/null", turns);
    std::remove(path.c_str());
    std::remove((path + ".gz").c_str());
}
