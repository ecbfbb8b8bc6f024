#include "editing/added_pads.hh"

#include "description/lookups.hh"
#include "planning/open_design.hh"
#include "planning/tracing.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

/// By cell: its pins, in their order, and whether one of its pads has the pin open.
struct ADDED_PIN {
    std::string name;
    bool open;
};
std::map<std::string, std::vector<ADDED_PIN>> added_pads;

/// The pins of a cell, from its file; none where there is no such file, which the editor reports.
std::vector<ADDED_PIN> pins_of_cell(const char *cell) {
    std::vector<ADDED_PIN> pins;
    const char *path = FNM_find_input(std::string(PATH) + cell + ".sdb");
    if (path == nullptr)
        return pins;
    OPEN_DESIGN pad(path);
    for (int32_t port = 0; port < port_count; ++port)
        pins.push_back({SYM_get(sym_tab, port_tab[port].name), false});
    return pins;
}

} // namespace

ADDED_PAD added_pad_cell(PAD_ROLE role, const PIN_ENTRY *pin) {
    const char *cell = pad_to_add(role, pin);
    ADDED_PAD pad = {cell, get_buffer(cell)};
    if (pad.buffer != nullptr)
        pad.enable = chosen_enable_pin(pad.buffer, pin, &pad.is_low);
    return pad;
}

void note_added_pad(const char *cell, std::initializer_list<const char *> connected) {
    auto [known, is_new] = added_pads.try_emplace(cell);
    if (is_new)
        known->second = pins_of_cell(cell);
    for (ADDED_PIN &pin : known->second)
        pin.open |= std::none_of(connected.begin(), connected.end(), [&pin](const char *name) {
            return same_text_no_case(name, pin.name.c_str());
        });
}

void warn_of_open_pad_pins() {
    std::string lines;
    for (const auto &[cell, pins] : added_pads) {
        std::string open;
        for (const ADDED_PIN &pin : pins)
            if (pin.open)
                open += (open.empty() ? "" : ", ") + pin.name;
        if (!open.empty())
            lines += "         " + cell + ": " + open + "\n";
    }
    added_pads.clear();
    if (!lines.empty())
        vmr_printf("WARNING: these pins of added pads are not connected:\n%s"
                   "         Please connect them in the netlist, or wrap the pad in a module that does.\n\n",
                   lines.c_str());
}
