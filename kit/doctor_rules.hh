// The rules of the doctor: what a finding does to the chip and what cures it, and which message of a run
// belongs to which rule.
#pragma once

#include "kit/findings.hh"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A rule: a section of docs/rimkit_doctor.md. Its texts may hold {object}, {design}, {lib}, {bsc} and {pin}
/// for names, {1}, {2} ... for the words of a message, and {keyword} for the first %WORD in it.
struct DOCTOR_RULE {
    const char *name;
    FINDING_SEVERITY severity; ///< of a finding that is no error of a run
    const char *effect;
    const char *cure;
    bool about_tap = false; ///< it names the TAP or its instructions, and neither a cell nor a pad
};
extern const std::span<const DOCTOR_RULE> doctor_rules;

/// The rule of that name, or null.
const DOCTOR_RULE *find_doctor_rule(std::string_view name);

/// A finding of a rule about an object at a place, its effect and cure filled in. `words` are those of a
/// message.
FINDING make_finding(const char *rule, const std::string &object, const std::string &file, int32_t line,
                     const std::string &text, const std::vector<std::string> &words = {});

/// The description files as findings name them; empty before they are known.
std::string doctor_lib_file();
std::string doctor_bsc_file();
std::string doctor_pin_file();

/// The line of a name in a description file: where its block begins, else where it stands first; for a port
/// in the pin file that of its row. 0 when it does not stand there.
int32_t line_of_name(const std::string &file, const std::string &name);

/// The findings in what steps of a run have printed. A line in front of an END_MARK (support/faults.hh) is an
/// error also where it does not call itself one.
std::vector<FINDING> findings_in_output(const std::string &output);
