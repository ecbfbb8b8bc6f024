// Shows that reading a DFT configuration grows with its file: ratios of time and memory between files of one
// shape.
//
// Each file is read in a child of its own, so that its peak memory is its own too.
#include "dftlang/scan_interface.hh"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct MEASURE {
    double seconds;
    double megabytes; ///< peak
};

MEASURE read_file(const std::string &path) {
    auto start = std::chrono::steady_clock::now();
    pid_t child = fork();
    if (child == 0) {
        scan_interface(path.c_str(), 0, "hier_dft");
        _exit(0);
    }
    int status = 0;
    rusage used = {};
    wait4(child, &status, 0, &used);
    std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    if (status != 0)
        std::printf("  a file was refused: status %d\n", status);
    return {time.count(), static_cast<double>(used.ru_maxrss) / 1024};
}

/// Sequences with forces, and instructions that name them.
std::string statements(size_t count) {
    std::string text = "%TOP_MODULE = chip;\n";
    for (size_t i = 0; i < count / 5; i++) {
        std::string n = std::to_string(i);
        text += "%SEQUENCE seq" + n + " { %FORCE pin" + n + " = '0'; %CLOCK clk = '1'; }\n";
        text += "%INSTRUCTION inst" + n + " { %PREAMBLE = seq" + n + "; }\n";
    }
    return text;
}

/// A few statements and much white space and comment between them.
std::string mostly_comment(size_t bytes) {
    std::string text = "%TOP_MODULE = chip;\n";
    const std::string line = "// the netlist of this block was made from revision 17; see the notes\n";
    while (text.size() < bytes)
        text += line;
    return text;
}

/// One list of instances.
std::string long_list(size_t bytes) {
    std::string text = "%DEF_INFO { %PARTITION ";
    for (size_t i = 0; text.size() < bytes; i++)
        text += "u_core/u_block_" + std::to_string(i) + "/q_reg[3],\n";
    return text + "last; }\n";
}

/// Scan chains, each with its ports, a clock and an instance.
std::string chains(size_t bytes) {
    std::string text = "%INSTRUCTION i { %MODE = \"m\"; }\n";
    for (size_t i = 0; text.size() < bytes; i++) {
        std::string n = std::to_string(i);
        text += "%CONNECT_SCAN c" + n + " s" + n + " { %SCAN_PORT { %SCAN_IN = a; %SCAN_OUT = b; } " +
                "%SCAN_CLOCK { %CLOCK = ck; } %SCAN_INSTANCES { u" + n + "; } " +
                "%SCAN_INSTRUCTION { %INSTRUCTION = i; } }\n";
    }
    return text;
}

struct SHAPE_ROW {
    const char *name;
    std::string (*make)(size_t);
    size_t small;
    size_t large;
};

const SHAPE_ROW shapes[] = {
    {"statements, 100,000 to 1,000,000", statements, 100000, 1000000},
    {"comment, 10 MB to 100 MB", mostly_comment, 10000000, 100000000},
    {"one list, 10 MB to 100 MB", long_list, 10000000, 100000000},
    {"%CONNECT_SCAN, 10 MB to 100 MB", chains, 10000000, 100000000},
};

} // namespace

int main() {
    char folder[] = "/tmp/rw-bench-XXXXXX";
    if (mkdtemp(folder) == nullptr)
        return EXIT_FAILURE;
    std::printf("tenfold file; a linear reader shows time ratios near 10\n\n");
    for (const SHAPE_ROW &shape : shapes) {
        MEASURE measured[2];
        const size_t sizes[2] = {shape.small, shape.large};
        for (int i = 0; i < 2; i++) {
            std::string path = std::string(folder) + "/bench.dft";
            std::ofstream(path) << shape.make(sizes[i]);
            measured[i] = read_file(path);
        }
        std::printf("%-34s time %6.2f s -> %6.2f s, ratio %5.1f; peak %7.1f MB -> %7.1f MB, ratio %5.1f\n",
                    shape.name, measured[0].seconds, measured[1].seconds,
                    measured[1].seconds / measured[0].seconds, measured[0].megabytes, measured[1].megabytes,
                    measured[1].megabytes / measured[0].megabytes);
    }
    std::filesystem::remove_all(folder);
    return EXIT_SUCCESS;
}
