// The checks that stand between the hand-written description files and everything after them. A run reports
// every missing field that it can reach and ends after the last of them.
#pragma once

#include "description/tables.hh"

/// Prints a fault that does not end the run at once. True, so that a check can end with it.
bool report_fault(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Reports a missing name of the TAP's module or instance. True when one is missing.
bool check_tap_names();
/// Splits a dotted TAP_INSTANCE_NAME into the path of a hierarchical TAP.
void rwv_check_hier_tap_ctrl_instance();
/// The instance of a TAP that the open design holds: by its name, else, for one down a path, by the whole
/// path; -1 for none.
int32_t find_tap_instance();
/// Checks every declared scan cell role and begins the list of what the chain needs of the TAP. Ends the run
/// on a fault.
void check_scan_cells();
/// Warns of the pins that the chain needs and the chosen cells lack: those of pins inside the core and inside
/// pads play no role that is checked. A pin that is missing gets no wire, or one that the editor refuses.
void warn_of_missing_pins();
/// Looks at the pads of the design for the TAP's sake: mode pins, TDO enable. Opens
/// MODULE_C_SDB and sets it aside for planning.
void check_connect_pad();
/// A buffer that the TAP cell names; null, with the message printed, when the library has none of that name.
const BUFFER_CELL *declared_tap_buffer(const char *keyword, const char *name);
/// Holds the TAP's signal and inverting buffers against their SDB cells. Ends the run on a fault.
void check_pin_signal_inv_buf();
/// Checks the .bsc file, the TAP cell and the pad buffers, and fills the TAP pin names. Ends the run on a
/// fault. The design must be open.
void check_necessary_fields();

/// The roles of pads that -add_pad adds.
enum PAD_ROLE { PAD_INPUT, PAD_OUTPUT, PAD_INOUT };
/// The pad cell that the pin file names for the pin, which is checked, else the default one, null for none.
/// `pin` is null for a port that the pin file does not name. Ends the run on a fault.
const char *pad_to_add(PAD_ROLE role, const PIN_ENTRY *pin);
