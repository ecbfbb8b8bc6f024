// DESIGN.pin: the package pins in the order of the boundary register.
#include "kit/drafts.hh"
#include "kit/names.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_map>

namespace {

/// Package names that stand on several pins.
std::string repeated_names(const CHIP_PLAN &plan) {
    std::unordered_map<std::string, int> counts;
    std::vector<std::string> repeated;
    for (const PIN_PLAN &pin : plan.pins)
        if (++counts[pin.package_name] == 2)
            repeated.push_back(pin.package_name);
    std::string text;
    for (const std::string &name : repeated)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string comment_of(const CHIP_PLAN &plan, const PIN_PLAN &pin) {
    const PORT_PLAN *port = find_port_plan(plan, pin.port);
    if (port == nullptr)
        return pin.port.empty() ? "no signal" : "added test port";
    std::string text = port->pad_instance;
    if (!port->reason.empty())
        text += (text.empty() ? "" : "; ") + port->reason;
    if (!port->doubt.empty())
        text += "; please check: " + port->doubt;
    return text;
}

/// True when the port's pad serves other ports that are no clocks, so that the cell is named in its row.
bool needs_clock_cell(const CHIP_PLAN &plan, const PORT_PLAN &port) {
    return port.is_clock &&
           std::any_of(plan.ports.begin(), plan.ports.end(), [&port](const PORT_PLAN &other) {
               return other.pad == port.pad && other.use == PORT_SCANNED && !other.is_clock;
           });
}

} // namespace

std::string draft_pin(const CHIP_PLAN &plan, const CELL_CHOICE &cells) {
    std::string text = "// Pin file of " + plan.design +
                       ", drafted by rimkit. The register follows the rows, from TDO on.\n"
                       "// Order: " +
                       plan.order_source + ".\n\n";
    text += format_text("%%PACKAGE_TYPE %s %zu;\n", plan.package.c_str(), plan.pins.size());
    if (std::string repeated = repeated_names(plan); !repeated.empty())
        text += "%ALLOWED_MULTIPLE { " + repeated + " ; }\n";
    text += "\n// number, package pin, port, direction\n";
    for (const PIN_PLAN &pin : plan.pins) {
        std::string line = format_text("%-5s %-22s %-22s %s", pin.number.c_str(), pin.package_name.c_str(),
                                       pin.port.empty() ? "*" : pin.port.c_str(), pin.direction);
        if (const PORT_PLAN *port = find_port_plan(plan, pin.port);
            port != nullptr && port->use == PORT_SCANNED) {
            if (needs_clock_cell(plan, *port))
                line += " BSC(" + cells.clock + ")";
            if (!port->pad_word.empty())
                line += " " + port->pad_word;
        }
        std::string comment = comment_of(plan, pin);
        text += comment.empty() ? line + "\n" : format_text("%-60s // %s\n", line.c_str(), comment.c_str());
    }
    return text;
}
