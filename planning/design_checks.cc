// The looks at the design that the descriptions are held against: the pads that it has, and the cells of the
// TAP's buffers.
#include "planning/validation.hh"

#include "description/lookups.hh"
#include "planning/open_design.hh"
#include "planning/tap_needs.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <string>

namespace {

// One of the TAP's buffers held against the cell in its SDB file. Every fault ends the run.
void check_buffer_cell(const char *keyword, const char *name) {
    if (name == nullptr)
        return;
    const BUFFER_CELL *buffer = declared_tap_buffer(keyword, name);
    if (buffer == nullptr)
        end_run();
    const char *path = find_design_file(format_text("%s.sdb", name));
    if (path == nullptr)
        vmr_fail("ERROR: can't find SDB file '%s%s.sdb' in default searching path.\n\n", PATH, name);
    const struct {
        const char *keyword, *pin;
    } pins[] = {{"%OUTPUT", buffer->output}, {"%INPUT", buffer->input}};
    for (const auto &pin : pins)
        if (pin.pin == nullptr)
            vmr_fail("ERROR: (%s) can't find %s in %s.\n", JTAG_LIB_FILE, pin.keyword, name);
    OPEN_DESIGN cell(path);
    for (const auto &pin : pins)
        if (SDB_nl_search_port(pin.pin) == -1)
            vmr_fail("ERROR: (%s) %s %s specified in %%BUFFER %s.\n       can't be found in file '%s'.\n",
                     JTAG_LIB_FILE, pin.keyword, pin.pin, name, path);
}

// Notes an active-low enable on the TDO port's pad, which -add_pad adds when the design has no such port.
// `pin` is null for a port that the pin file does not name.
void look_at_tdo_pad(const PIN_ENTRY *pin) {
    const BUFFER_CELL *buffer = nullptr;
    int32_t port = SDB_nl_search_port(without_minus(GLOBAL_TDO));
    if (port >= 0 && pin != nullptr)
        buffer = get_buffer(object_class_name(node_tab[get_node_connected_to_portnode(port)].obj));
    else if (port < 0 && option(OPT_ADD_PAD))
        buffer = get_buffer(pin != nullptr && pin->pad_name != nullptr ? pin->pad_name : OUTPUT_BUFFER);
    bool is_low = false;
    if (buffer != nullptr && chosen_enable_pin(buffer, pin, &is_low) != nullptr)
        TDO_EN_LOW = is_low;
}

} // namespace

void check_connect_pad() {
    open_sdb_file(MODULE_C_SDB);
    TDO_EN_LOW = 0;
    const PIN_ENTRY *tdo = nullptr;
    each_apart(rows(PIN_TABLE), [&tdo](const PIN_ENTRY *pin) {
        const char *name = pin->top_name;
        if (name == nullptr || bs_internal_word(pin->package_name))
            return;
        if (same_text(name, GLOBAL_TDO))
            tdo = pin;
        if (skip_signal(name))
            return;
        int32_t node = get_node_connected_to_portnode(find_iport(name));
        if (const BUFFER_CELL *pad = get_buffer(object_class_name(node_tab[node].obj)); pad != nullptr)
            note_needs_of_pad(*pad);
    });
    if (GLOBAL_TDO != nullptr)
        look_at_tdo_pad(tdo);
    set_sdb_file_aside();
}

void check_pin_signal_inv_buf() {
    if (TAP_CONTR == nullptr)
        TAP_CONTR = get_tap_cell(TAP_MODULE_NAME);
    if (TAP_CONTR == nullptr) {
        check_tap_names();
        vmr_fail("\n");
    }
    each_apart({[] { check_buffer_cell("%SIGNAL_BUFFER", TAP_CONTR->signal_buffer); },
                [] { check_buffer_cell("%INV_BUFFER", TAP_CONTR->inv_buffer); }});
}
