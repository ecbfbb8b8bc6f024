// The verbs that deliver a finished run, called one after the other behind it.
#pragma once

#include <string>
#include <vector>

/// What a verb said of the run.
struct DELIVERED {
    std::string verb;
    std::string log;     ///< its whole output
    std::string summary; ///< the last line of it, or why the verb did not end
    int status;          ///< KIT_STATUS
};

/// Where the verbs find what the run had.
struct DELIVERY_PLAN {
    std::string design, opath;
    std::vector<std::string> cells;    ///< Verilog models
    std::vector<std::string> liberty;  ///< libraries of the pads
    std::string def;                   ///< placement, or empty
    std::vector<std::string> switches; ///< of the run
};

/// Runs `rimkit check`, `bsdl`, `patterns`, `prove` and `picture` in the working folder. Each is a process of
/// its own, as each reads a design into the tables of its process. Their output goes to DESIGN.VERB.log.
std::vector<DELIVERED> deliver_run(const DELIVERY_PLAN &plan);
