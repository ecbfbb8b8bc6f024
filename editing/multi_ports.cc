// The standard ports of a chip whose pads lie in several modules.
#include "editing/multi_modules.hh"

#include "editing/pad_sides.hh"
#include "editing/tap_top.hh"
#include "planning/open_design.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The row of MULTI_IO_TAB of each level of the row's pad, innermost first.
std::vector<int32_t> modules_of(const OPIN_ROW &row, STANDARD_PORT port) {
    constexpr const char *words[STANDARD_PORT_COUNT] = {"TDI", "TDO", "TMS", "TCK", "TRST"};
    std::vector<int32_t> modules;
    for (int32_t module = row.io_module; module > 0; module = MULTI_IO_TAB[module].parent)
        modules.push_back(module);
    if (static_cast<int32_t>(modules.size()) != DYNA_count(row.hier_classes))
        console_fail("ERROR: Can not find the parent module for traceing %s(%s) in %s PAD.\n", words[port],
                     row.port_name, row.pad_instance);
    return modules;
}

/// The signal stops at a level: it is freed there of what the design has on it, and gets a port on that level
/// and on all above.
void bs_add_tap_port_to_cmd_file(STANDARD_SIGNAL signal, const char *port,
                                 const std::vector<int32_t> &modules) {
    const SIGNAL_ROUTE &route = SIGNALS[signal].route;
    const ROUTE_STEP &stop = route.steps[route.stop];
    SIGNAL_PLACE from = stop.place;
    if (stop.cut)
        take_pin_for_tap(MULTI_IO_TAB[modules[route.stop]].file, from);
    for (size_t level = route.stop; level < modules.size(); level++) {
        record_port(modules[level], port, SIGNALS[signal].to_pad ? EDIT_INPUT : EDIT_OUTPUT);
        record_connection(modules[level], from, {nullptr, port});
        from = {MULTI_IO_TAB[modules[level]].inst_name, port};
    }
}

/// Leads a signal up to the top module, and sees what that has on the pin that the TAP is to drive.
void search_signal(STANDARD_SIGNAL signal) {
    const OPIN_ROW &row = *signal_row(signal);
    SIGNAL_ROUTE &route = SIGNALS[signal].route;
    int32_t levels = levels_of(signal);
    route.start = 0;
    route.steps.resize(levels);
    // A TAP that stands in the design already is wired there.
    follow({&signal, 1}, row, 0, levels, option(OPT_ADD_TAP) ? LEVELS_EDITED : LEVELS_LOOKED);
    if (route.stop >= 0) {
        const char *port = keep_text(new_port_name(signal));
        if (option(OPT_ADD_TAP))
            bs_add_tap_port_to_cmd_file(signal, port, modules_of(row, SIGNALS[signal].port));
        route.top = {{row.hier_instances[levels - 1], port}, false};
        return;
    }
    bool looked_at_by_planning = signal == SIGNAL_TDO_EN && levels == 0;
    if (!SIGNALS[signal].to_pad || (!option(OPT_ADD_TAP) && !looked_at_by_planning))
        return;
    OPEN_DESIGN top(MODULE_SDB);
    route.top.cut = is_taken_in_top(signal, *SIGNALS[signal].found);
    if (route.top.cut)
        MULTI_IO_TAB[0].file->taken_pins.push_back(route.top.place);
}

} // namespace

void bs_hier_search_tap_ports() {
    begin_routes(0);
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER)
        if (signal_row(signal) != nullptr && SIGNALS[signal].route.top.place.pin != nullptr)
            search_signal(signal);
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER)
        show_route_in_row(signal);
}

void connect_standard_ports_in_top(EDIT_FILE *top_file) {
    for (STANDARD_SIGNAL signal : TRST_FIRST_ORDER) {
        const ROUTE_STEP &top = SIGNALS[signal].route.top;
        if (!port_is_used(SIGNALS[signal].port))
            continue;
        if (signal_row(signal) != nullptr && top.place.pin != nullptr)
            free_and_join(top_file, top, pin_of(top_file->tap, signal_tap_pin(signal)));
        else if (signal_row(signal) == nullptr && signal != SIGNAL_TDO_EN)
            add_standard_port(top_file, signal);
    }
}
