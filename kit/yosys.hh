// Questions to Yosys: one preparation of a design, then proofs that it makes or refutes.
#pragma once

#include <string>
#include <vector>

struct YOSYS_TASK {
    std::vector<std::string> files; ///< Verilog, read when a module of them is needed
    std::string text;               ///< Verilog of the caller's own, with the module `top`
    std::string top;
    std::string preparation;            ///< commands behind `hierarchy`, a line each
    std::vector<std::string> questions; ///< what follows `sat` on its line
};

struct YOSYS_ANSWERS {
    std::string why_not;    ///< why there are none; empty when all are there
    std::vector<bool> held; ///< by question: proven
};

/// Asks all questions in one run.
YOSYS_ANSWERS ask_yosys(const YOSYS_TASK &task);

/// A file name as a word of a Yosys script.
std::string yosys_word(const std::string &path);

/// Runs a script. Its console goes to `log`; an empty text, or what Yosys took exception to.
std::string run_yosys(const std::string &script, std::string &log);
