// rimkit doctor: all that a run would trip over, and what it would build that no one wants, at once.
//
// The steps of a run are tried one by one up to the first that writes a file. A step that would end the run
// ends alone (support/faults.hh), so that the steps that do not depend on it are tried, too. What they print
// is taken apart into findings, and the doctor's own checks add theirs.
#include "kit/doctor.hh"

#include "description/reader.hh"
#include "description/tables.hh"
#include "editing/insertion.hh"
#include "kit/doctor_checks.hh"
#include "kit/doctor_rules.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/input_files.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "rtl/tap_build.hh"
#include "rtl/tap_checks.hh"
#include "sdb/sdb.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/shell.hh"

#include <algorithm>
#include <utility>

namespace {

constexpr KIT_OPTION DOCTOR_OPTIONS[] = {
    {"liberty", "FILE",
     "Liberty library of the pads, plain or .gz: tells which pins\na pad needs; may be repeated", true},
    {"netlist", "FILE", "Verilog netlist, DESIGN.v otherwise, for its age; may be\nrepeated", true},
    {"no-run", nullptr, "leave out the trial of the run in a scratch folder"},
};

/// The faults so far as findings; the collector is empty then.
void take_findings(FAULT_COLLECTOR &faults, std::vector<FINDING> &findings) {
    std::vector<FINDING> found = findings_in_output(faults.text);
    findings.insert(findings.end(), found.begin(), found.end());
    faults.text.clear();
}

/// Tries a step. One that ended may have left a design open.
template <class STEP> bool try_on_design(const STEP &step) {
    bool whole = try_step(step);
    if (sdb != nullptr)
        set_sdb_file_aside();
    return whole;
}

/// The steps of the TAP, then those of the cells. False when the tables are not ready for more.
void try_planning(bool with_design) {
    try_on_design(rwv_check_hier_tap_ctrl_instance);
    try_on_design(check_scan_cells);
    if (with_design)
        try_on_design(check_connect_pad);
    try_on_design(jtag_init);
    if (TAP_CONTR == nullptr)
        return;
    if (try_step(refuse_broken_rtl))
        try_step(warn_about_rtl);
    if (!with_design)
        return;
    try_on_design(plan_cells);
}

void read_liberty(const std::vector<std::string> &files, LIBERTY &library, std::vector<FINDING> &findings) {
    for (const std::string &file : files) {
        KIT_PROGRESS progress("reading " + file);
        FAULT_COLLECTOR faults;
        if (!try_step([&] { liberty_read(library, file); }))
            findings.push_back(make_finding("unreadable-liberty", file, file, 0,
                                            faults.text.substr(0, faults.text.find('\n'))));
    }
}

/// Checks of one design while its flat form is open.
void look_at_design(const LIBERTY &library, std::vector<FINDING> &findings) {
    open_sdb_file(MODULE_C_SDB);
    check_design(findings, library);
    for (FINDING &finding : findings)
        refine_finding(finding);
}

/// False when too little could be read for a look at the rest.
bool read_descriptions(FAULT_COLLECTOR &faults, std::vector<FINDING> &findings) {
    bsdft_init();
    if (try_step([] { get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0); }))
        return true;
    take_findings(faults, findings);
    auto is_unread = [](const FINDING &finding) {
        return finding.rule == "syntax" || finding.rule == "missing-file" || finding.rule == "run-error";
    };
    bool lib_is_unread = std::any_of(findings.begin(), findings.end(), [&](const FINDING &finding) {
        return is_unread(finding) && finding.file != doctor_bsc_file() && finding.file != doctor_pin_file();
    });
    if (lib_is_unread) // what the .bsc file names can stand behind the fault
        std::erase_if(findings, [](const FINDING &finding) { return finding.rule == "role-cell-unknown"; });
    return DYNA_count(PIN_TABLE) > 0 && std::none_of(findings.begin(), findings.end(), is_unread);
}

void examine(const DOCTOR_CALL &call, bool with_design, const LIBERTY &library,
             std::vector<FINDING> &findings) {
    FAULT_COLLECTOR faults;
    find_description_files();
    try_step([&] { find_input_files(with_design); });
    bool is_read =
        JTAG_LIB_FILE != nullptr && JTAG_BSC_FILE != nullptr && read_descriptions(faults, findings);
    bool has_design = with_design && MODULE_SDB != nullptr && MODULE_C_SDB != nullptr;
    if (has_design)
        for (const char *file : {MODULE_SDB, MODULE_C_SDB})
            has_design = try_on_design([file] { open_sdb_file(file); }) && has_design;
    if (is_read)
        try_planning(has_design);
    take_findings(faults, findings);
    check_files(findings, call.netlists);
    if (!is_read)
        return;
    check_tables(findings);
    try_on_design([&] { check_cell_pins(findings); });
    if (has_design)
        try_on_design([&] { look_at_design(library, findings); });
    take_findings(faults, findings);
}

/// Sets the switches. Those that only say where files go are left out of `kept`.
void take_switches(const std::vector<std::string> &switches, std::vector<std::string> &kept,
                   std::string &opath) {
    for (size_t i = 0; i < switches.size(); ++i) {
        const RUN_SWITCH *known = find_switch(switches[i].c_str() + 1);
        if (known == nullptr || known->index == OPT_GUIDELINE)
            kit_usage_fault("rimweave has no switch '" + switches[i] + "' for a run that could be looked at");
        JTAG_OPTION[known->index] = known->index == OPT_OPATH ? 0 : 1;
        if (known->index != OPT_OPATH)
            kept.push_back(switches[i]);
        else if (++i < switches.size())
            opath = switches[i];
        else
            kit_usage_fault(switches[i - 1] + " takes a folder");
    }
    if (!option(OPT_ADD_TAP) && !option(OPT_ADD_TAP_ONLY) && !option(OPT_ADD_BCM)) {
        JTAG_OPTION[OPT_ADD_TAP] = 1;
        kept.insert(kept.begin(), "-add_tap");
    }
}

/// The names of the call: one design, and switches of rimweave with the directory that belongs to -opath.
DOCTOR_CALL call_of(const KIT_CALL &call) {
    DOCTOR_CALL doctor;
    std::vector<std::string> designs;
    for (size_t i = 0; i < call.names.size(); ++i) {
        bool is_switch = call.names[i][0] == '-';
        (is_switch ? doctor.switches : designs).push_back(call.names[i]);
        const RUN_SWITCH *known = is_switch ? find_switch(call.names[i].c_str() + 1) : nullptr;
        if (known != nullptr && known->index == OPT_OPATH && ++i < call.names.size())
            doctor.switches.push_back(call.names[i]);
    }
    if (designs.size() != 1)
        kit_usage_fault("one DESIGN, the name of the top module, is needed");
    doctor.design = designs[0];
    doctor.liberty = kit_values(call, "liberty");
    doctor.netlists = kit_values(call, "netlist");
    doctor.tries_run = !kit_has(call, "no-run");
    return doctor;
}

int run_doctor(const KIT_CALL &call) {
    std::vector<FINDING> findings = doctor_findings(call_of(call));
    std::string text = kit_has(call, "json") ? findings_json(findings) : findings_text(findings);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return findings_status(findings);
}

} // namespace

std::vector<FINDING> doctor_findings(const DOCTOR_CALL &call) {
    std::vector<FINDING> findings;
    std::vector<std::string> switches;
    std::string opath;
    take_switches(call.switches, switches, opath);
    take_design(call.design.c_str());
    add_own_folder_to_path();
    std::FILE *log = std::exchange(sdb_log_stream, nullptr);
    set_up_search();
    LIBERTY library;
    read_liberty(call.liberty, library, findings);
    examine(call, !option(OPT_ADD_TAP_ONLY), library, findings);
    check_folders(findings, opath);
    sdb_log_stream = log;
    bool has_error = std::any_of(findings.begin(), findings.end(),
                                 [](const FINDING &finding) { return finding.severity == FINDING_ERROR; });
    if (!has_error && call.tries_run)
        try_run(findings, switches);
    sort_findings(findings);
    return findings;
}

const KIT_VERB kit_doctor = {
    "doctor",
    "Lists all that stands in the way of a run, or of a chip that works, at once.",
    "[options] DESIGN [rimweave switches]",
    DOCTOR_OPTIONS,
    "  rimkit doctor chip -vhdl\n\n"
    "Status: 0 nothing but notes, 1 errors or warnings, 2 usage, 255 fault. Each rule has its section in\n"
    "docs/rimkit_doctor.md.\n",
    true,
    run_doctor,
};
