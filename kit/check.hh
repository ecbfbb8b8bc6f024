// rimkit check: the rules of IEEE 1149.1 that a chip with an inserted boundary register has to keep, each a
// row of one table (check_rules.cc) and, where it is checked, one function.
//
// All is read from the final netlist through the walk of the chain (kit/boundary_register.hh). A rule that no
// function checks, or whose function could not run, is reported as not checked with its reason, never as
// kept.
#pragma once

#include "kit/boundary_register.hh"
#include "kit/bsdl_file.hh"
#include "kit/findings.hh"
#include "kit/finished_run.hh"
#include "kit/liberty.hh"

#include <initializer_list>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct CHECK_RULE;

/// Where a finding is; -1 for what does not apply. The net is that of the node.
struct CHECK_PLACE {
    int32_t obj = -1, node = -1, port = -1;
};

struct CHECK_FINDING {
    const CHECK_RULE *rule;
    FINDING_SEVERITY severity;
    std::string text; ///< one sentence
    std::string file, instance, net, port;
};

/// How a port is served by the register.
struct CHECKED_PORT {
    bool is_exempt = false; ///< TAP, skipped, power, or a second name of a net
    bool is_read = false;   ///< a cell captures it
    bool is_driven = false; ///< a cell drives it
};

/// A fault that the simulation showed; cell and port are -1 where it has none.
struct PLAYED_FAULT {
    int32_t rule;
    FINDING_SEVERITY severity;
    std::string step, text;
    int32_t cell, port;
};

/// What the simulation of the chip said, once it was tried.
struct CHECK_PLAY {
    bool was_tried = false;
    std::string why;         ///< why there is nothing
    std::string why_no_core; ///< why the test logic alone was played; empty when the whole chip was
    BSDL_FILE instructions;  ///< of the instruction table
    std::set<int32_t> rules; ///< that a step was played for
    bool is_cut = false;     ///< there are more faults than `faults`
    std::string held;        ///< compliance pins and their values
    std::vector<PLAYED_FAULT> faults;
};

/// What is asked for.
struct CHECK_WORDS {
    std::vector<std::string> liberty; ///< libraries of the pads
    bool is_strict = false;
    bool has_engines = true;   ///< simulation and proof are wanted
    std::set<int32_t> rules{}; ///< these alone; empty for all
};

struct REST_PROOF;

struct CHECK_CHIP {
    FINISHED_RUN run;
    CHECK_WORDS words;
    LIBERTY library; ///< of the pads; may be empty

    BOUNDARY_REGISTER found{};
    std::vector<CHECKED_PORT> ports{};                  ///< by port id
    std::unordered_map<int32_t, bool> constant_gates{}; ///< of is_fixed
    std::vector<CHECK_FINDING> findings{};
    CHECK_PLAY play{};
    std::shared_ptr<REST_PROOF> rest{}; ///< of check_proof.cc
};

/// What a rule needs before its function can run.
enum CHECK_NEED : uint8_t {
    NEED_NOTHING,
    NEED_TAP,   ///< the edited design, with a TAP in it
    NEED_CHAIN, ///< the whole chain
};

struct CHECK_RULE {
    int32_t number;   ///< 1 to 34; 0 for what concerns the run's files
    const char *name; ///< a section of docs/rimkit_check.md together with the number
    const char *how;  ///< "N" on the netlist, "S" by simulation, "F" formally
    FINDING_SEVERITY severity;
    const char *what;   ///< what must hold
    const char *effect; ///< of a chip that breaks it
    const char *cure;
    CHECK_NEED need = NEED_NOTHING;
    void (*check)(CHECK_CHIP &chip) = nullptr;
    const char *open = nullptr; ///< what of it is not checked, and what will check it
};
extern const std::span<const CHECK_RULE> check_rules;
const CHECK_RULE &check_rule(int32_t number);
/// "15 cell-per-port"
std::string check_rule_text(const CHECK_RULE &rule);

/// A fault of the walk as a finding of a rule.
void add_fault(CHECK_CHIP &chip, int32_t rule, const REGISTER_FAULT &fault);
/// The faults of the walk whose word is among `words`, or whose text begins so, as findings of a rule.
void add_faults(CHECK_CHIP &chip, int32_t rule, std::initializer_list<std::string_view> words);
/// Adds a finding, with the severity of its rule or another.
void add_check(CHECK_CHIP &chip, int32_t rule, const CHECK_PLACE &place, const std::string &text);
void add_check(CHECK_CHIP &chip, int32_t rule, const CHECK_PLACE &place, const std::string &text,
               FINDING_SEVERITY severity);

/// A rule that was not checked, or not whole.
struct CHECK_OPEN {
    const CHECK_RULE *rule;
    std::string why;
    bool applies = true; ///< false for a rule about what the chip need not have
};

/// What all rules said, sorted by severity and number.
struct CHECK_RESULT {
    std::vector<CHECK_FINDING> findings;
    std::vector<CHECK_OPEN> open;
    int32_t checked = 0; ///< rules of which at least a part was
};

/// Checks the chip of a finished run in the working folder. It reads the design into the tables of the
/// process: one call per process. Ends the program when the descriptions or the design can't be read.
CHECK_RESULT check_chip(const FINISHED_RUN &run, const CHECK_WORDS &words);

/// One sentence on an end of a walk: "the core (instance u1)", "a constant 0", ...
std::string end_text(const CHECK_CHIP &chip, const WALK_POINT &point);

/// True for what nothing can change: a constant, also through gates that see nothing else, or an open end.
bool is_fixed(CHECK_CHIP &chip, const WALK_POINT &source);

/// What is behind gates of the core that have one input that is not constant, which are added to `gates`:
/// whatever such a gate is, nothing else can stop the signal.
WALK_POINT behind_single_gates(CHECK_CHIP &chip, WALK_POINT source, std::vector<int32_t> &gates);
/// The control pins of cells that are no clocks, for rule 28.
void check_control_pins(CHECK_CHIP &chip);
/// The pins of pads with a multiplexer inside, for rule 28: its modes, and what it shows the core in a test.
void check_mux_pins(CHECK_CHIP &chip);

/// What the simulation of the chip says of a rule: adds its findings. False when it says nothing; `why` is
/// what is not checked.
bool check_by_simulation(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open);

/// The same of a proof about the TAP's text.
bool check_by_proof(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open);
/// The same of a proof about the chip at rest and in EXTEST (kit/prove.hh).
bool check_by_rest_proof(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open);
/// Reads the instruction table; what it lacks is a finding of the rule that it breaks.
void take_instructions(CHECK_CHIP &chip);

// The functions of the rules.
void check_written_files(CHECK_CHIP &chip);
void check_power_up(CHECK_CHIP &chip);
void check_tdo_release(CHECK_CHIP &chip);
void check_chain(CHECK_CHIP &chip);
void check_cell_of_each_port(CHECK_CHIP &chip);
void check_wires_to_pads(CHECK_CHIP &chip);
void check_enables(CHECK_CHIP &chip);
void check_off_values(CHECK_CHIP &chip);
void check_pad_pins(CHECK_CHIP &chip);
void check_open_pins(CHECK_CHIP &chip);
void check_clocks(CHECK_CHIP &chip);
void check_edges(CHECK_CHIP &chip);
void check_trees(CHECK_CHIP &chip);
void check_tap_inputs(CHECK_CHIP &chip);
void check_opcodes(CHECK_CHIP &chip);
