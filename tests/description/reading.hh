// A reading of description files in a process of its own, so that a test sees its streams and exit status,
// and the tables of a reading in the test's own process.
#pragma once

#include "description/hash_tables.hh"
#include "description/lookups.hh"
#include "description/reader.hh"
#include "description/reading.hh"
#include "support/text.hh"
#include "tests/support/scratch.hh"

/// The shortest files that the readers accept: one cell, and one word that means nothing.
inline const char *const SHORT_LIB = "%SCAN_CELL BC { %TDI si; }\n%TAP_CONTROLLER TAP { %TDI tdi; }\n";
inline const char *const SHORT_BSC = "nothing\n";

/// The line counters go on counting from reading to reading; a test that looks at lines starts them anew.
inline void restart_line_counters() {
    lib_yylineno = bsc_yylineno = pin_yylineno = 1;
}

/// Reads chip.lib and chip.bsc of the scratch folder in a child.
inline run_result read_in_child(const scratch_folder &scratch) {
    return run_child(scratch, [] {
        restart_line_counters();
        bsdft_init();
        get_bs_dft_file("chip.lib", "chip.bsc", 0);
    });
}

/// Reads the texts into the tables of this process. The pin file is named by its full name.
struct loaded_tables {
    scratch_folder scratch;

    explicit loaded_tables(const std::string &lib, const std::string &bsc = SHORT_BSC) {
        restart_line_counters();
        bsdft_init();
        get_bs_dft_file(scratch.write("chip.lib", lib).c_str(), scratch.write("chip.bsc", bsc).c_str(), 0);
    }
};

/// A text for comparing, "-" for null, and those of a DYNA table.
inline std::string shown(const char *text) {
    return text != nullptr ? text : "-";
}
inline std::string shown(const char **table) {
    std::string result;
    for (const char *text : rows(table))
        result += (result.empty() ? "" : ",") + shown(text);
    return "[" + result + "]";
}

/// All of them, with blanks between.
template <class... TEXTS> std::string line(TEXTS... texts) {
    std::string result = ((shown(texts) + " ") + ...);
    result.back() = '\n';
    return result;
}
