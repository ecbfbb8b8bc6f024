// The five ports of the TAP: those that the design has, and names for those that it lacks.
#include "kit/command.hh"
#include "kit/ports.hh"
#include "support/text.hh"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace {

struct TEST_NAMES {
    const char *word;  ///< on the command line
    const char *added; ///< name of a new port
    std::vector<std::string> stems;
};
const TEST_NAMES TEST_PORTS[TEST_PORT_COUNT] = {
    {"tdi", "tdi", {"tdi"}}, {"tms", "tms", {"tms"}},
    {"tck", "tck", {"tck"}}, {"trst", "trst_n", {"trst", "trstn", "ntrst", "trstb"}},
    {"tdo", "tdo", {"tdo"}},
};

/// What remains of a name without case, underscores, and the words that names of pads and ports carry.
std::string bare_name(const std::string &name) {
    std::string low = lower_case(name), bare;
    for (size_t at = 0; at <= low.size();) {
        size_t end = std::min(low.find('_', at), low.size());
        std::string word = low.substr(at, end - at);
        for (std::string_view extra : {"pad", "jtag", "i", "o", "in", "out", "pin", "p"})
            if (word == extra)
                word.clear();
        bare += word;
        at = end + 1;
    }
    return bare;
}

int32_t test_port_of(const std::string &word) {
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i)
        if (word == TEST_PORTS[i].word)
            return i;
    kit_usage_fault(format_text("--test-ports knows tck, tms, tdi, tdo and trst, not '%s'", word.c_str()));
}

/// "tck=A,tms=B": the names by port.
void take_given_names(CHIP_PLAN &plan, const std::string &names) {
    for (size_t at = 0; at < names.size();) {
        size_t end = std::min(names.find(',', at), names.size());
        std::string word = names.substr(at, end - at);
        size_t equals = word.find('=');
        if (equals == word.npos || equals + 1 == word.size())
            kit_usage_fault(
                format_text("--test-ports takes NAME=PORT words with commas, not '%s'", word.c_str()));
        plan.tests[static_cast<size_t>(test_port_of(word.substr(0, equals)))].name = word.substr(equals + 1);
        at = end + 1;
    }
}

void find_usual_names(CHIP_PLAN &plan) {
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i)
        for (const PORT_PLAN &port : plan.ports) {
            const std::vector<std::string> &stems = TEST_PORTS[i].stems;
            if (plan.tests[i].name.empty() &&
                std::find(stems.begin(), stems.end(), bare_name(port.name)) != stems.end())
                plan.tests[i].name = port.name;
        }
}

} // namespace

void plan_test_ports(CHIP_PLAN &plan, const std::string &names) {
    plan.tests = {};
    take_given_names(plan, names);
    find_usual_names(plan);
    bool has_some = std::any_of(plan.tests.begin(), plan.tests.end(), [&](const TEST_PORT_PLAN &test) {
        return find_port_plan(plan, test.name) != nullptr;
    });
    for (int32_t i = 0; i < TEST_PORT_COUNT; ++i) {
        TEST_PORT_PLAN &test = plan.tests[i];
        // A chip with a test port of its own and no reset for it has none.
        if (test.name.empty() && !(has_some && i == TEST_TRST))
            test.name = TEST_PORTS[i].added;
        test.is_added = !test.name.empty() && find_port_plan(plan, test.name) == nullptr;
        if (PORT_PLAN *port = find_port_plan(plan, test.name); port != nullptr) {
            port->use = PORT_TEST;
            port->reason = "test port";
            port->is_clock = false;
            port->doubt.clear();
            port->direction = i == TEST_TDO ? "OUT" : "IN";
        }
    }
}
