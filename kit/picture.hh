// rimkit picture: the boundary register of a finished run for the eye.
//
// picture_read.cc takes from the final netlist what is shown, as plain records with clean UTF-8 texts;
// picture_findings.cc what check and doctor say, each at its place; picture_layout.cc gives each pad and cell
// its place; picture_svg.cc and picture_page.cc write. Ids are indexes of the vectors here; -1 is none.
#pragma once

#include "kit/check.hh"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// How a pad or a cell is drawn. A row of PICTURE_KINDS each.
enum PICTURE_KIND : uint8_t {
    PICTURE_INPUT,
    PICTURE_CLOCK,
    PICTURE_OBSERVE,
    PICTURE_OUTPUT,
    PICTURE_BIDIR,
    PICTURE_CONTROL,
    PICTURE_INTERNAL,
    PICTURE_TAP,
    PICTURE_SKIPPED,
    PICTURE_KIND_COUNT
};

/// The colours keep apart for colour-blind eyes, the letters in print without colour.
struct PICTURE_KIND_INFO {
    const char *word;  ///< a word of CSS too
    const char *label; ///< for the legend
    const char *letter;
    const char *fill, *ink;
};
extern const PICTURE_KIND_INFO PICTURE_KINDS[PICTURE_KIND_COUNT];

/// A pad: a row of the pin file, or a port that has none.
struct PICTURE_PAD {
    std::string port{}; ///< empty for a row of the pin file without one
    std::string pin{};  ///< number of the pin
    std::string package_name{}, direction{};
    std::string instance{}, class_name{}; ///< of the pad cell
    PICTURE_KIND kind = PICTURE_SKIPPED;
    std::string reason{};         ///< why no cell serves it
    std::vector<int32_t> cells{}; ///< that serve it, by number
    int8_t tap_port = -1;         ///< STANDARD_PORT
    int8_t side = -1;             ///< of the ring, as PICTURE_BOX has it, where a placement tells it
    int32_t row = 0;              ///< line of the pin file; 0 for a port without one
};

struct PICTURE_CELL {
    PICTURE_KIND kind = PICTURE_INTERNAL;
    std::string function{}; ///< "input", "output3", ...
    std::string instance{}, class_name{};
    std::vector<int32_t> pads{};
    int32_t control = -1;                                    ///< the cell that holds its pad's enable
    int32_t disable = -1;                                    ///< value of that cell that turns the pad off
    std::vector<int32_t> held{};                             ///< pads of a control cell
    std::vector<std::string> bsdl_rows{};                    ///< as DESIGN.bsd has them
    std::vector<std::pair<std::string, std::string>> nets{}; ///< pin and net
};

/// The pads of the test port, by STANDARD_PORT.
constexpr const char *PICTURE_TEST_WORDS[STANDARD_PORT_COUNT] = {"TDI", "TDO", "TMS", "TCK", "TRST"};

/// What rimkit check or doctor says, and where it stands: one that is about a kind of cell has many places,
/// one about a file none.
struct PICTURE_FINDING {
    FINDING_SEVERITY severity = FINDING_NOTE;
    std::string verb{}, rule{}, text{}, effect{}, cure{};
    std::string file{}; ///< with its line
    std::string instance{}, net{}, port{};
    std::vector<int32_t> cells{}, pads{};
    bool is_at_tap = false;
};

/// A place where a control signal branches: the TAP's pin, or a buffer.
struct PICTURE_BRANCH {
    std::string instance{}, class_name{};
    int32_t parent = -1, level = 0; ///< level: buffers up to here
    std::vector<int32_t> cells{};   ///< that hang right on it
    int32_t others = 0;             ///< pins of pads and of the core on it
};

struct PICTURE_TREE {
    std::string signal{}, pin{};
    std::vector<PICTURE_BRANCH> branches{}; ///< the first is the TAP's pin; parents stand before children
    int32_t levels = 0;                     ///< buffers on the longest path
    int32_t loads = 0;                      ///< cells and others at all branches
};

struct PICTURE {
    bool is_whole = false; ///< false when the chain ends before TDO: cells up to there, counted from there
    std::string design{}, package{};
    std::string tap_instance{}, tap_class{};
    std::vector<PICTURE_PAD> pads{};   ///< in the order of the pin file
    std::vector<PICTURE_CELL> cells{}; ///< by number; 0 stands next to TDO
    std::vector<PICTURE_TREE> trees{};
    std::vector<int32_t> ring{}; ///< all pads in their order counter-clockwise, from the upper left corner
    std::vector<PICTURE_FINDING> findings{};
    std::vector<std::string> unchecked{}; ///< what the check left out, a sentence each
};

/// Reads the design that check_chip left open.
void read_picture(PICTURE &picture, const FINISHED_RUN &run);
/// Sides and order of the pads from a DEF file. Those that it does not place come last on the sides with the
/// fewest.
void place_picture(PICTURE &picture, const std::string &def_file);

/// What is asked of the check and the doctor.
struct PICTURE_WORDS {
    std::vector<std::string> liberty, switches; ///< switches of the run, for the doctor
    bool has_engines = false;
};

/// What rimkit doctor says of the next run, from a process of its own that ends before this one reads a
/// design.
std::vector<FINDING> picture_doctor(const FINISHED_RUN &run, const PICTURE_WORDS &words);
/// Adds what both say, the check first, and what the check could not look at.
void take_picture_findings(PICTURE &picture, const CHECK_RESULT &checked, bool has_engines,
                           const std::vector<FINDING> &doctor);

/// Names may hold any byte; what is no character of XML shows as the replacement character.
std::string clean_text(const std::string &text);

/// Markup of a text: what XML gives a meaning is written as an entity.
std::string xml_text(const std::string &text);

/// The style of the ring, as CSS.
const char *picture_style();

struct PICTURE_LAYOUT;
/// The ring as an SVG element; `id` is its own, and its style stands in it where it is `alone` in a file.
std::string picture_svg(const PICTURE &picture, const PICTURE_LAYOUT &layout, const char *id, bool alone);
/// The HTML page with both layouts, the ring and the one with buses as one pad each.
std::string picture_page(const PICTURE &picture, const PICTURE_LAYOUT &whole, const PICTURE_LAYOUT &folded);
