// The edit command language: the one place that writes it.
//
// A netlist is never changed directly. Each module that has to change gets a file of commands, which kalmedit
// carries out on a copy of the module's SDB. A file is kept in memory and written whole by edit_end_file,
// behind its `save` and `quit`; so a run that ends early leaves no half a file.
//
// Operands are pins (`inst{pin}`), nets (a bare name, which is a port of the edited module) and the
// constants. The editor joins the operands of `connect` whatever their order; the order here is the order in
// the line.
#pragma once

#include "planning/port_table.hh"

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// One side of a command.
struct EDIT_OPERAND {
    enum KIND { PIN, NET, CONSTANT } kind;
    std::string instance; ///< empty but for a pin
    std::string name;     ///< pin, port or net
};

/// Pin `pin` of instance `instance`. A null text stands for an unknown name and reads "*UNDEF*".
EDIT_OPERAND pin_of(const char *instance, const char *pin);
EDIT_OPERAND pin_of(const std::string &instance, const char *pin);
/// A port of the edited module.
EDIT_OPERAND port_net(const char *name);
/// A net by the name that the design has for it; nets 0 and 1 are the constants.
EDIT_OPERAND design_net(int32_t net);
EDIT_OPERAND constant_one();
EDIT_OPERAND constant_zero();
/// The net of a bit whose value is free.
EDIT_OPERAND free_net();

/// Blanks of a line beyond the plain form. The editor reads all alike.
enum EDIT_BLANKS {
    EDIT_PLAIN,          ///< "connect a b"
    EDIT_LEADING_BLANK,  ///< " connect a b": ports handed on to the level above
    EDIT_TRAILING_BLANK, ///< "connect a b ": connections recorded for a module
    EDIT_WIDE,           ///< "connect  a  b", "disconnect  a": some lines of the cells in one module
    EDIT_WIDE_SECOND,    ///< "connect a  b": others of them
};

/// Where a signal is: a pin of an instance, or a port when `instance` is null. A null pin is no place.
struct SIGNAL_PLACE {
    const char *instance = nullptr;
    const char *pin = nullptr;
};

/// A module that is edited: its command file that is being written, and what is to be known of the module.
struct EDIT_FILE {
    std::string path;               ///< where it goes, "./rimweave_lib/chip_jtag.cmd"
    std::string text;               ///< the lines so far
    const char *sdb_path = nullptr; ///< the module as it was given
    /// The instance in this module that is the TAP or leads to it. Null where there is none: the TAP's
    /// signals then come in by ports that have the names of its pins.
    const char *tap = nullptr;
    /// A pad that stands on a port directly is warned of. In a module below the top, a port is the way to the
    /// core.
    bool warns_of_ports = false;

    /// By node: what took the place of a pin that a cell has cut off its net.
    std::unordered_map<int32_t, EDIT_OPERAND> cut_pins = {};
    /// Pins that the TAP takes off their nets before the cells are written: none leads to its net any more.
    std::vector<SIGNAL_PLACE> taken_pins = {};
    std::set<int32_t> highz_buffers = {}; ///< groups whose buffer is in the file

    // Of one of several modules with pads: the names of its ports, the new ones included, and the lines that
    // other modules have asked for, which go behind all others.
    std::unordered_set<std::string> ports = {};
    std::string added_ports = {}, added_conns = {};
};

/// The TAP's signal in the module: the TAP's pin, or the port that carries it in.
EDIT_OPERAND tap_signal(const EDIT_FILE *file, const char *pin);

/// A new file with its `edit <module>` line, and a `path` line for the library directory when `with_path` is
/// set. Null when the file can't be created at `path`: the caller has the message.
EDIT_FILE *edit_begin_file(const std::string &path, const std::string &module, bool with_path);
/// Adds `save` and `quit`, writes the file and sets the handle to null. Ends the run when it can't be
/// written.
void edit_end_file(EDIT_FILE *&file);

// The verbs. Each appends one line. A name that holds white space can't be said in the language: the run ends
// with an error that shows it.
void edit_add_instance(EDIT_FILE *file, const std::string &instance, const char *cell);
enum EDIT_PORT : int32_t { EDIT_INPUT, EDIT_OUTPUT };
void edit_add_port(EDIT_FILE *file, const char *name, EDIT_PORT direction);
void edit_disconnect(EDIT_FILE *file, const EDIT_OPERAND &operand, EDIT_BLANKS blanks = EDIT_PLAIN);
void edit_connect(EDIT_FILE *file, const EDIT_OPERAND &a, const EDIT_OPERAND &b,
                  EDIT_BLANKS blanks = EDIT_PLAIN);
void edit_replace(EDIT_FILE *file, const char *instance, const std::string &module);
