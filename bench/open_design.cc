// Opens design files one after the other, as a run does: the measure that bench_flow holds planning against.
//
//   open_design FILE.sdb ...
#include "sdb/navigation.hh"

#include <cstdio>

int main(int argc, char **argv) {
    for (int i = 1; i < argc; i++) {
        SDB_HANDLE *design = SDB_setup(SDB_open(argv[i], "r", 0));
        if (design == nullptr) {
            std::fprintf(stderr, "open_design: %s can't be opened\n", argv[i]);
            return 255;
        }
        SDB_close(design, 0);
        SDB_clear_current();
    }
    return 0;
}
