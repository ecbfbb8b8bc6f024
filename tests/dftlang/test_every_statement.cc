// tests/dftlang/every holds every statement of the five kinds of file, with the trees and the warnings
// that are made of them.
#include "tests/dftlang/dft_case.hh"

#include <string>

namespace {

void show_names(const char *field, const char *const *names) {
    std::printf("%s:", field);
    for (const char *name : rows(names))
        std::printf(" %s", name);
    std::printf("\n");
}

void show_object() {
    const DFT_CONFIGURATION &made = *DFT_OBJECT;
    std::printf("top %s file %s map %s\n", made.top_module, made.file_name, made.read_map);
    for (const CORE_ENTRY &row : rows(made.cores))
        std::printf("core: %s line %d dft '%s' lbist '%s'\n", row.name, row.line, row.dft_file,
                    row.lbist_file);
    for (const ATPG_MODE &mode : made.atpg_constraints)
        std::printf("mode: %s given %zu legal %zu\n", mode.mode, mode.given.size(), mode.legal.size());
    show_names("dont_fault", made.dont_fault);
    show_names("must_fault", made.must_fault);
    for (const SIDE_FILE &file : rows(made.side_files))
        std::printf("side file: %s\n", file.name);
}

run_result read_every(const scratch_folder &scratch, int debug, const std::function<void()> &show) {
    std::filesystem::copy(RW_SOURCE_DIR "/tests/dftlang/every", scratch.dir);
    return run_child(scratch, [&] {
        scan_interface("every.dft", debug, "hier_dft");
        show();
    });
}

} // namespace

/// The tree with its leaves, which have a value, on the line of what stands before them, behind their depth.
static std::string folded(const std::string &tree) {
    std::istringstream lines(tree);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const size_t blanks = line.find_first_not_of(' ');
        const bool leaf = line.find('[') != std::string::npos;
        text += leaf ? " " + std::to_string(blanks / 4) + ":" + line.substr(blanks) : "\n" + line;
    }
    return text + "\n";
}

TEST(EveryStatement, MakesItsTree) {
    scratch_folder scratch;
    run_result result = read_every(scratch, 1, [] {});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, scratch.read("every.err"));
    EXPECT_EQ(folded(result.out), scratch.read("every.tree"));
}

TEST(EveryStatement, MakesItsRecords) {
    scratch_folder scratch;
    run_result result = read_every(scratch, 0, show_object);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "top n73 file every.dft map every.map\n"
                          "core: n33 line 292 dft 'core.dft' lbist 's 11'\n"
                          "mode: s 10 given 2 legal 1\n"
                          "dont_fault: n43 n44 n45 u1/a u2/b u3\n"
                          "must_fault: n49 n50 n51 u1/a u2/b u3\n"
                          "side file: every.map\n"
                          "side file: every.path\n"
                          "side file: every.false\n"
                          "side file: every.inst\n"
                          "side file: every.inst\n"
                          "side file: every.inst\n"
                          "side file: every.latch\n");
}
