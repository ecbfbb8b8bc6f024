// The doctor as other verbs call it.
#pragma once

#include "kit/findings.hh"

#include <string>
#include <vector>

struct DOCTOR_CALL {
    std::string design;                ///< with its folder, as rimweave takes it
    std::vector<std::string> switches; ///< of the run; -add_tap is added where none chooses the flow
    std::vector<std::string> liberty;
    std::vector<std::string> netlists; ///< DESIGN.v otherwise
    bool tries_run = true;             ///< where nothing was found, a run in a scratch folder proves it
};

/// All findings, sorted. It reads the design into the tables of the process: one call per process.
std::vector<FINDING> doctor_findings(const DOCTOR_CALL &call);

/// Runs rimweave on the design in a scratch folder, which it removes, and adds what that run says. The tables
/// must hold the descriptions.
void try_run(std::vector<FINDING> &findings, const std::vector<std::string> &switches);
