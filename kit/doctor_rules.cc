#include "kit/doctor_rules.hh"

#include "description/tables.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>

namespace {

constexpr FINDING_SEVERITY ERROR = FINDING_ERROR, WARNING = FINDING_WARNING, NOTE = FINDING_NOTE;

constexpr DOCTOR_RULE RULES[] = {
    // Files
    {"missing-file", ERROR, "the run can't begin",
     "write it (`rimkit start {design}` drafts .lib, .bsc and .pin), or add its folder to VELMORA_DIRS"},
    {"missing-sdb", ERROR, "what it holds can't be looked at or wired",
     "kalmverin -lib CELLS.v -opath lib for a cell, kalmverin {design}.v for the design"},
    {"damaged-sdb", ERROR, "the design can't be read", "read the netlist again: kalmverin {design}.v"},
    {"unwritable-folder", ERROR, "the run ends: it can't write what it makes",
     "make the folder, or its permissions such that it can be written"},
    {"stale-sdb", WARNING, "the cells go into the chip as it was, not as it is",
     "kalmverin {design}.v, with the switches of the first time"},
    {"syntax", ERROR, "the reading of this file ends here; what stands behind it has not been looked at",
     "write the line as docs/file_formats.md shows it; a block ends with }, a statement with ;"},
    {"settings", WARNING, "the setting has no effect, or swallows the next one", "end it with ;"},
    {"unreadable-liberty", ERROR, "the pads are judged without it", "name a Liberty library by --liberty"},
    // The pin file and the ports
    {"pin-without-port", ERROR, "the run ends: a cell would have no port",
     "write a port of the design in row {object}, or * for a pin of the package that is no signal"},
    {"port-without-row", WARNING, "the port gets no boundary cell: a board test can't see or drive it",
     "a row NUMBER NAME {object} DIRECTION in {pin}, or {object} among the %SKIP_SIGNAL_NAMES of {bsc}"},
    {"name-case", ERROR, "the two are different names: what was meant is not found", ""},
    {"pin-twice", ERROR, "the run ends: one pin can't stand at two places of the chain",
     "change one of the two rows, or list the name in %ALLOWED_MULTIPLE of the pin file"},
    {"package-count", NOTE, "the package has pins that no row tells of; no cell depends on it",
     "rows NUMBER NAME * * for pins without a signal"},
    {"multiple-unused", NOTE, "none", "take the name out of %ALLOWED_MULTIPLE"},
    {"pin-list-missing", ERROR, "the run ends: no port would get a cell",
     "%PIN_LIST { %FILE_NAME {design}.pin; } in {bsc}"},
    {"no-cells", ERROR, "the run ends: the boundary register would be empty",
     "rows of ports in the pin file that are not among the %SKIP_SIGNAL_NAMES"},
    {"power-in-chain", WARNING, "a cell cuts the supply, which is no logic level",
     "{object} among the %SKIP_SIGNAL_NAMES of {bsc}, and * in its row of {pin}"},
    {"shared-wire", ERROR, "the run ends: two cells would cut one wire",
     "one of {1} and {2} among the %SKIP_SIGNAL_NAMES of {bsc}"},
    {"merged-port", NOTE, "one cell serves both ports", "none is needed when the core is not in between"},
    {"internal-pin", ERROR, "the run ends: the cell of an inner signal has no place",
     "INSTANCE{PIN} with names of the flat design in the pin file"},
    // Pads
    {"undescribed-cell", ERROR, "the run ends: nothing tells where the core side of this pad is",
     "%BUFFER {object} { %INPUT ...; %OUTPUT ...; } in {lib}, with %FUNCTION inout, %INOUT and %EN_L or "
     "%EN_H for "
     "a bidirectional pad"},
    {"bond-pad", ERROR, "the run ends: an analog or bond pad has no core side where a cell could stand",
     "the port among the %SKIP_SIGNAL_NAMES of {bsc}"},
    {"floating-pad", ERROR, "there is nothing that a cell could be put between",
     "connect it in the netlist, or list the port in %SKIP_SIGNAL_NAMES of {bsc}"},
    {"open-pad-side", NOTE, "this side of the pad gets no boundary cell: a board test can't use it",
     "connect the pin in the netlist, or leave it when the core has no use for it"},
    {"direct-port", NOTE, "the boundary cell stands at the border of the pad's module", "none is needed"},
    {"pad-lacks-pin", ERROR, "the run ends: it can't tell how the pad is driven or read",
     "add the pin to the block of {object} in {lib}"},
    {"pad-pin-unknown", ERROR, "the run ends: the cell in the netlist has no such pin on a net",
     "write the pin as the cell has it, in the block in {lib}"},
    {"pad-pin-direction", ERROR, "the run ends: the cell would stand on the wrong side of the pad",
     "exchange the pins in the block of {object} in {lib}"},
    {"inout-on-one-way-pad", ERROR, "the run ends: the port is bidirectional, its pad is not",
     "read the netlist with kalmverin -as_input or -as_output {object}, or give the pad %FUNCTION inout"},
    {"two-enables", WARNING, "the core can switch the pad while the register should hold it",
     "PAD_EN_L or PAD_EN_H in the row of {object} in {pin}"},
    {"pad-follows-core", NOTE, "what the core does there decides in a test whether the pad works",
     "see \"Pads that the core turns on\" in docs/users_guide.md"},
    {"pad-gated", WARNING, "the pad reads or drives only as long as the core lets it, also in EXTEST",
     "wrap the pad so that the register's mode holds the pin: \"Pads that the core turns on\" in "
     "docs/users_guide.md"},
    {"pad-never-works", WARNING, "the pad can't read or drive: its cell sees or moves nothing",
     "tie the pin to its other value, or list the port in %SKIP_SIGNAL_NAMES of {bsc}"},
    {"enable-polarity", ERROR, "the register switches the pad off where it should drive, and on where not",
     ""},
    {"highz-polarity", ERROR, "HIGHZ turns the pad on instead of off",
     "a %HIGHZ_COMMAND with a leading '-' in {lib}"},
    {"add-pad", ERROR, "the run ends: there is no pad that it could add", "{keyword} CELL; in {bsc}"},
    // Cells
    {"role-missing", ERROR, "the run ends: a port needs a cell of this role",
     "{keyword} CELL; among the %SCAN_CELLS of {bsc}"},
    {"role-cell-unknown", ERROR, "the run ends: nothing tells what the cell is",
     "%SCAN_CELL {object} { ... } in {lib}, or another cell in %SCAN_CELLS of {bsc}"},
    {"cell-lacks-pin", ERROR, "the cell would hang in the chain without this pin",
     "{keyword} PIN; in the block of {object} in {lib}"},
    {"cell-clock-form", WARNING,
     "the TAP gates the clocks of cells that wait for TCK: the register does not shift",
     "rimweave {design} -add_tap -synch; or cells for gated clocks, in {lib}"},
    {"cell-pin-unknown", ERROR, "the wire to this pin is refused or goes nowhere: the chain is broken",
     "write the pin as the cell's Verilog has it"},
    {"cell-mode", WARNING, "the cell can't hold its pad, or its mode pin stays open",
     "see the block of the cell in {lib}"},
    // The TAP
    {"tap-lacks-pin", ERROR, "the cells need a signal that the TAP does not have",
     "{keyword} PORT; in %TAP_CONTROLLER of {lib}", true},
    {"tap-default-name", NOTE, "the TAP's port gets the usual name", "name it in %TAP_CONTROLLER of {lib}",
     true},
    {"tap-name", ERROR, "no tool would read the TAP's RTL", "another name in %TAP_CONTROLLER of {lib}", true},
    {"tap-buffer", ERROR, "the trees of the control signals can't be built",
     "a %BUFFER with %INPUT and %OUTPUT in {lib} for the TAP's %SIGNAL_BUFFER or %INV_BUFFER", true},
    {"tap-polarity", WARNING, "the signal reaches the cells upside down", "the name without '-' in {lib}",
     true},
    {"tap-instance", ERROR, "the run ends: there is no place for the TAP", "see %INSTANCE_NAME in {bsc}",
     true},
    {"test-port-undeclared", ERROR, "the run ends: the TAP would have no such pin",
     "{keyword} PORT; in {bsc}"},
    {"unlisted-test-port", WARNING, "the port is in the design, but the TAP is not wired to its pad",
     "a row NUMBER NAME {object} DIRECTION in {pin}, and {object} among the %SKIP_SIGNAL_NAMES of {bsc}"},
    {"test-port-in-chain", WARNING, "the test port gets a boundary cell, which cuts it off",
     "{object} among the %SKIP_SIGNAL_NAMES of {bsc}"},
    {"tdo-release", WARNING,
     "TDO drives all the time: it must let go outside of the Shift states, where chips share a line",
     "a pad with an enable on TDO, its %EN_L or %EN_H in {lib}, and %TDO_EN in %TAP_CONTROLLER"},
    {"group-size", ERROR, "the trees of the control signals can't be built",
     "%GROUP_SIZE 8; in %TAP_CONTROLLER of {lib}: 2 at least, or no such line"},
    {"group-size-idle", NOTE, "one output of the TAP drives all cells without a tree", ""},
    // Instructions
    {"instruction-missing", ERROR, "the run ends: IEEE 1149.1 asks for this instruction",
     "%INSTRUCTION NAME = (OPCODE) ACCESS REGISTER; in %INSTRUCTION_TABLE of {bsc}", true},
    {"instruction-register", ERROR, "the instruction would put the wrong register between TDI and TDO",
     "another register behind ACCESS in {bsc}", true},
    {"opcode", ERROR, "the decoder can't be made", "opcodes of equal length, two bits at least, of 0 and 1",
     true},
    {"opcode-collision", WARNING, "the second instruction can't be reached", "another opcode in {bsc}", true},
    {"opcode-open", WARNING, "no value of the register decodes to this instruction",
     "the opcodes without X, with commas between them", true},
    {"bypass-opcode", WARNING, "a chip that is left alone by TDI at 1 does not go to its bypass register",
     "all ones for BYPASS alone: %INSTRUCTION BYPASS = ({1}) ACCESS BYPASS; in {bsc}", true},
    {"capture-value", WARNING, "a tester that looks for 01 takes the chain for broken",
     "a pattern that ends in 01 behind %INSTRUCTION_CAPTURE in {bsc}", true},
    {"capture-default", NOTE, "the usual value is captured", "%INSTRUCTION_CAPTURE (...01); in {bsc}", true},
    {"code-length", ERROR, "the register can't be made", "a pattern of that length in {bsc}", true},
    {"idcode", WARNING, "a tester takes the chip for another, or for one without IDCODE", "", true},
    {"highz-missing", ERROR, "the pads' high-impedance pins would be open",
     "%INSTRUCTION HIGHZ = (OPCODE) ACCESS BYPASS; in {bsc}"},
    {"register-undriven", WARNING, "the instruction shifts out zeros", "see the register in {bsc}", true},
    {"enable-pin", NOTE, "the pin of the TAP may not do what its name says", "see the instruction in {bsc}",
     true},
    {"extra-pin", WARNING, "the cells' extra pin has no source", "write its logic, or take %EXTRA away"},
    // Runs
    {"rewired", NOTE, "a constant in the netlist gives way to the TAP or a cell", "none when that is meant"},
    {"run-failed", ERROR, "the run does not reach its end", "see the message"},
    {"run-error", ERROR, "the run ends here", "see the message"},
    {"run-warning", WARNING, "see the message", ""},
};

enum MESSAGE_PLACE {
    IN_ITS_FILE, ///< the file that the message names
    IN_PIN_FILE,
    IN_LIB_FILE,
    IN_BSC_FILE,
    AT_TDO,  ///< the row of TDO, which is the object
    IS_FILE, ///< the object is a file
};

/// A message of a run from its first word behind the severity and the file; `*` stands for any words. What
/// the text goes on with does not matter.
struct MESSAGE_ROW {
    const char *pattern;
    const char *rule;
    int object; ///< which `*` is the object, from 1; 0 for none
    MESSAGE_PLACE place = IN_ITS_FILE;
};

constexpr MESSAGE_ROW MESSAGES[] = {
    {"can't find SDB file '*'", "missing-sdb", 1, IS_FILE},
    {"Can't find file *.sdb", "missing-sdb", 1},
    {"Can not find \"*\" file", "missing-sdb", 1, IS_FILE},
    {"can't find * file '*' in default", "missing-file", 2, IS_FILE},
    {"Can't open * file *", "missing-file", 2, IS_FILE},
    {"can't open pin file '*'", "missing-file", 1, IN_BSC_FILE},
    {"can't open SDB file '*'", "damaged-sdb", 1, IS_FILE},
    {"SDB *: (./*) ", "damaged-sdb", 2, IS_FILE},
    {"SDB *'*'", "damaged-sdb", 2, IS_FILE},
    {"SDB *", "damaged-sdb", 0},
    {"Syntax *rror at *", "syntax", 0},
    {"yacc stack overflow", "syntax", 0},
    {"Missing '*/'", "syntax", 0},
    {"Number '*' is too large", "syntax", 0},
    {"a description file can't be read", "syntax", 0},
    {"input buffer overflow", "syntax", 0},
    {"token too large", "syntax", 0},
    {"setting '*' doesn't end", "settings", 1},
    {"line *: setting '*'", "settings", 2},
    {"can't find port '*' in SDB '*' for SCAN_CELL '*'", "cell-pin-unknown", 3},
    {"can't find port '*' in SDB", "pin-without-port", 1},
    {"can't find port '*' in the pin list", "port-without-row", 1},
    {"pin number * mutiple", "pin-twice", 1},
    {"pin name * mutiple", "pin-twice", 1},
    {"package pin number", "package-count", 0},
    {"%ALLOWED_MULTIPLE '*'", "multiple-unused", 1},
    {"Please specify the following field: %PIN_LIST", "pin-list-missing", 0},
    {"empty file. Can't find non skip pin", "pin-list-missing", 0},
    {"no port of '*' gets a boundary cell", "no-cells", 0, IN_BSC_FILE},
    {"'*' and '*' need a boundary scan cell", "shared-wire", 1, IN_PIN_FILE},
    {"Input Pad '*' connect to output port", "direct-port", 1},
    {"'*' connect to * port '*' directly", "direct-port", 1, IN_PIN_FILE},
    {"*port '*' connects to *", "merged-port", 2, IN_PIN_FILE},
    {"can not get instance name or pin name in '*'", "internal-pin", 1, IN_PIN_FILE},
    {"can not find instance '*'", "internal-pin", 1, IN_PIN_FILE},
    {"can not find port '*' in instance '*'", "internal-pin", 2, IN_PIN_FILE},
    {"instance '*' of pin file is ambiguous", "internal-pin", 1, IN_PIN_FILE},
    {"can't find the definition of buffer '*' while tracing port '*'", "undescribed-cell", 1, IN_PIN_FILE},
    {"port '*' is floating", "floating-pad", 1, IN_PIN_FILE},
    {"%OUTPUT * and %INPUT * in %BUFFER * are both floating. Can't insert boundary scan on port '*'",
     "floating-pad", 4, IN_PIN_FILE},
    {"* of %BUFFER * which connects to port '*' is floating", "open-pad-side", 3, IN_PIN_FILE},
    {"* specified in * can't be found in file '*' while tracing port '*'", "pad-pin-unknown", 4, IN_PIN_FILE},
    {"* specified in * is floating in file '*' while tracing port '*'", "floating-pad", 4, IN_PIN_FILE},
    {"* specified in %BUFFER *. can't be found", "pad-pin-unknown", 2},
    {"the * pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER *", "pad-pin-unknown", 2,
     IN_LIB_FILE},
    {"'*' is * of '*'. But it was declared as", "pad-pin-direction", 3, IN_LIB_FILE},
    {"bidir port '*' doesn't connect to bidir pad", "inout-on-one-way-pad", 1, IN_PIN_FILE},
    {"* '*' is a bidirectional pad, which -add_pad", "add-pad", 2},
    {"option -add_pad requires to declare *", "add-pad", 0, IN_BSC_FILE},
    {"'*' is a mux * pad because", "pad-lacks-pin", 1},
    {"enable '*' of pad '*' of port '*' stays on", "two-enables", 3, IN_PIN_FILE},
    {"%EN_H * of pad '*'(*) is driven by %HIGHZ_COMMAND '*'. The pad of port '*'", "highz-polarity", 5,
     IN_PIN_FILE},
    {"Can't find Cell *.", "role-cell-unknown", 1},
    {"can't find %SCAN_CELL '*' for %BS_BUFFER", "role-cell-unknown", 1, IN_LIB_FILE},
    {"can't find scan cell * '*' in", "role-cell-unknown", 2, IN_BSC_FILE},
    {"can't find the scan cells for port '*'", "role-missing", 0},
    {"can't find * in file '*'. Need * to connect to * port '*'", "role-missing", 1, IN_BSC_FILE},
    {"can't find %CONTROL_SCAN", "role-missing", 0, IN_BSC_FILE},
    {"Please specify %CONTROL_OE_SCAN", "role-missing", 0, IN_BSC_FILE},
    {"can't find %MODE signals in * '*'", "cell-mode", 2},
    {"%MODE signals in * '*'", "cell-mode", 2},
    {"can't find * in %SCAN_CELL *.", "cell-lacks-pin", 2},
    {"can't find %OE_MODE in * *.", "cell-lacks-pin", 2},
    {"can't find %INPUT in %BUFFER *.", "pad-lacks-pin", 1},
    {"can't find * in %BUFFER *, while tracing bidirectional port '*'", "pad-lacks-pin", 2},
    {"can't find * in %BUFFER *.", "pad-lacks-pin", 2},
    {"can't find * in %BUFFER *", "pad-lacks-pin", 2},
    {"can't find * in DIFFERENTIAL BUFFER *", "pad-lacks-pin", 2},
    {"can't find %*INSTANCE_NAME in %TAP_MODULE. Using", "tap-default-name", 0},
    {"can't find %MODULE_NAME in %TAP_MODULE. Using", "tap-default-name", 0},
    {"can't find * in %TAP_MODULE", "tap-instance", 1},
    {"can't find * in %TAP_CONTROLLER *. Using default name", "tap-default-name", 1},
    {"can't find %INV_BUFFER of %TAP_CONTROLLER", "tap-buffer", 0},
    {"can't find *BUFFER* in %TAP_CONTROLLER", "tap-buffer", 0},
    {"void declare *", "tap-buffer", 0},
    {"can't find * in %TAP_CONTROLLER *.", "tap-lacks-pin", 1},
    {"scan cell has more extra pins", "tap-lacks-pin", 0},
    {"low active in *", "tap-polarity", 0},
    {"* of %TAP_CONTROLLER * is active low", "tap-polarity", 1},
    {"TAP %INSTANCE_NAME '*'", "tap-instance", 1},
    {"can't find TAP %INSTANCE_NAME '*'", "tap-instance", 1},
    {"%TAP_MODULE_NAME '*'", "tap-instance", 1},
    {"can't find %GLOBAL_* in file", "test-port-undeclared", 0, IN_BSC_FILE},
    {"TDO pin use 2-output PAD", "tdo-release", 0, AT_TDO},
    {"Can't group *", "group-size", 0, IN_LIB_FILE},
    {"-add_tap option required INSTRUCTION", "instruction-missing", 0},
    {"INSTRUCTION * must access *", "instruction-register", 1},
    {"INSTRUCTION '*' has no opcode", "opcode", 1},
    {"'*' is no opcode of INSTRUCTION '*'", "opcode", 2},
    {"opcode '*' of INSTRUCTION '*' is not * bits long", "opcode", 2},
    {"an opcode must have two bits", "opcode", 0},
    {"opcode '*' of INSTRUCTION '*' collides", "opcode-collision", 2},
    {"opcode '*' of INSTRUCTION '*' is compared", "opcode-open", 2},
    {"%INSTRUCTION_CAPTURE '*' doesn't end", "capture-value", 1},
    {"can't find %INSTRUCTION_CAPTURE", "capture-default", 0},
    {"pattern '*' of * is not a pattern of", "code-length", 2},
    {"INSTRUCTION * needs a %USERCODE_REGISTER", "code-length", 1},
    {"the scan cells have %HIGHZ", "highz-missing", 0},
    {"nothing drives register '*'", "register-undriven", 1},
    {"nothing drives extra pin '*'", "extra-pin", 1},
    {"'*' is no value of enable pin '*'", "opcode", 2},
    {"enable pin '*' of INSTRUCTION '*'", "enable-pin", 1},
    {"can't find signal '*' in the TAP module", "enable-pin", 1},
    {"the dafault value of enable pin '*'", "enable-pin", 1},
    {"CLAMP doesn't block", "enable-pin", 0},
    {"'*' can't be a name in", "tap-name", 1},
    {"TAP module '*' has the name of", "tap-name", 1},
    {"port '*' of TAP module '*' has", "tap-name", 1},
    {"Pin * was connected to", "rewired", 0},
    {"Pin * connected to *. * will be disconnected", "rewired", 1},
};

/// A file in the working directory is shown without "./".
std::string without_here(const std::string &file) {
    return file.starts_with("./") ? file.substr(2) : file;
}

/// The value of a word between the braces of a rule's text.
std::string value_of(const std::string &word, const FINDING &finding, const std::vector<std::string> &words) {
    const struct {
        const char *word;
        std::string name, otherwise;
    } files[] = {{"lib", doctor_lib_file(), ".lib"},
                 {"bsc", doctor_bsc_file(), ".bsc"},
                 {"pin", doctor_pin_file(), ".pin"}};
    if (word == "object")
        return finding.object;
    if (word == "design")
        return TOP_MODULE;
    if (word == "keyword") {
        size_t mark = finding.text.find('%');
        return mark == finding.text.npos
                   ? ""
                   : finding.text.substr(mark, finding.text.find_first_of(" ,.;", mark) - mark);
    }
    for (const auto &file : files)
        if (word == file.word)
            return file.name.empty() ? TOP_MODULE + file.otherwise : file.name;
    size_t number = word.size() == 1 && word[0] >= '1' && word[0] <= '9' ? word[0] - '0' : 0;
    return number > 0 && number <= words.size() ? words[number - 1] : "{" + word + "}";
}

std::string filled(const char *text, const FINDING &finding, const std::vector<std::string> &words) {
    std::string result;
    for (const char *at = text; *at != '\0'; ++at) {
        const char *end = *at == '{' ? std::strchr(at, '}') : nullptr;
        if (end == nullptr) {
            result += *at;
            continue;
        }
        result += value_of(std::string(at + 1, end), finding, words);
        at = end;
    }
    return result;
}

/// True when the text begins as the pattern has it; `words` gets what stands for each `*`.
bool fits(std::string_view pattern, std::string_view text, std::vector<std::string> &words) {
    if (pattern.empty())
        return true;
    if (pattern[0] != '*')
        return !text.empty() && text[0] == pattern[0] && fits(pattern.substr(1), text.substr(1), words);
    for (size_t length = pattern.size() == 1 ? text.size() : 0; length <= text.size(); ++length) {
        std::vector<std::string> rest;
        if (!fits(pattern.substr(1), text.substr(length), rest))
            continue;
        words.emplace_back(text.substr(0, length));
        words.insert(words.end(), rest.begin(), rest.end());
        return true;
    }
    return false;
}

/// A message, taken apart.
struct MESSAGE {
    FINDING_SEVERITY severity;
    std::string file;
    int32_t line = 0;
    std::string text;
};

/// Takes "FILE" and line off the front of the text, in the forms that the programs use.
void take_place(MESSAGE &message) {
    constexpr const char *FORMS[] = {"\"*\", line *: *", "'*' line *: *", "(*) line *: *", "(*) *",
                                     "\"*\", *"};
    for (const char *form : FORMS) {
        std::vector<std::string> words;
        if (!fits(form, message.text, words) || words[0].find_first_of(" '\"") != std::string::npos)
            continue;
        message.file = words[0];
        if (words.size() == 3)
            message.line = std::atoi(words[1].c_str());
        message.text = words.back();
        return;
    }
}

FINDING finding_of_message(MESSAGE message) {
    take_place(message);
    const MESSAGE_ROW *row = nullptr;
    std::vector<std::string> words;
    for (const MESSAGE_ROW &candidate : MESSAGES) {
        words.clear();
        if (fits(candidate.pattern, message.text, words)) {
            row = &candidate;
            break;
        }
    }
    if (row == nullptr) {
        const char *rule = message.severity == ERROR ? "run-error" : "run-warning";
        return make_finding(rule, "", message.file, message.line, message.text);
    }
    std::string object = row->object > 0 ? words[static_cast<size_t>(row->object) - 1] : "";
    switch (row->place) {
    case IN_ITS_FILE:
        break;
    case IN_PIN_FILE:
        message.file = doctor_pin_file();
        break;
    case IN_LIB_FILE:
        message.file = doctor_lib_file();
        break;
    case IN_BSC_FILE:
        message.file = doctor_bsc_file();
        break;
    case IS_FILE:
        message.file = object;
        break;
    case AT_TDO:
        message.file = doctor_pin_file();
        object = GLOBAL_TDO != nullptr ? GLOBAL_TDO : "";
    }
    std::string sought = object;
    if (std::string_view(row->rule) == "undescribed-cell") // the row of the port: the cell has no line yet
        sought = words[1];
    if (message.line == 0 && !message.file.empty() && !sought.empty())
        message.line = line_of_name(message.file, sought);
    FINDING finding = make_finding(row->rule, object, message.file, message.line, message.text, words);
    if (message.severity == ERROR)
        finding.severity = ERROR;
    else if (finding.severity == ERROR)
        finding.severity = WARNING; // the run goes on
    return finding;
}

/// A line that begins a message, without its blanks: the words behind the severity, else null.
const char *message_start(const char *line, FINDING_SEVERITY &severity) {
    constexpr struct {
        const char *word;
        FINDING_SEVERITY severity;
    } HEADS[] = {{"ERROR:", ERROR},     {"FATAL:", ERROR},     {"FATAL ", ERROR},      {"Error:", ERROR},
                 {"Error :", ERROR},    {"WARNING:", WARNING}, {"WARNING :", WARNING}, {"Warning:", WARNING},
                 {"SDB FATAL:", ERROR}, {"SDB ERROR:", ERROR}};
    for (const auto &head : HEADS)
        if (std::strncmp(line, head.word, std::strlen(head.word)) == 0) {
            severity = head.severity;
            line += std::strncmp(line, "SDB ", 4) == 0 ? 0 : std::strlen(head.word);
            return line + std::strspn(line, " ");
        }
    severity = ERROR;
    std::vector<std::string> words;
    for (const char *form : {"\"*\", ", "'*' line *: ", "SDB ("})
        if (fits(form, line, words))
            return line;
    return nullptr;
}

} // namespace

const std::span<const DOCTOR_RULE> doctor_rules = RULES;

std::string doctor_lib_file() {
    return JTAG_LIB_FILE != nullptr ? without_here(JTAG_LIB_FILE) : "";
}

std::string doctor_bsc_file() {
    return JTAG_BSC_FILE != nullptr ? without_here(JTAG_BSC_FILE) : "";
}

std::string doctor_pin_file() {
    return PIN_FILE != nullptr ? without_here(PIN_FILE) : "";
}

const DOCTOR_RULE *find_doctor_rule(std::string_view name) {
    auto found = std::find_if(std::begin(RULES), std::end(RULES),
                              [name](const DOCTOR_RULE &rule) { return rule.name == name; });
    return found != std::end(RULES) ? found : nullptr;
}

FINDING make_finding(const char *rule, const std::string &object, const std::string &found, int32_t line,
                     const std::string &text, const std::vector<std::string> &words) {
    std::string file = without_here(found);
    const DOCTOR_RULE *known = find_doctor_rule(rule);
    if (known == nullptr)
        return {ERROR, rule, file, line, object, text};
    FINDING finding = {known->severity, rule, file, line, object, text};
    finding.effect = filled(known->effect, finding, words);
    finding.cure = filled(known->cure, finding, words);
    return finding;
}

std::vector<FINDING> findings_in_output(const std::string &output) {
    std::vector<MESSAGE> messages;
    std::string last_line;
    bool goes_on = false;
    for (size_t at = 0; at < output.size();) {
        size_t end = std::min(output.find('\n', at), output.size());
        std::string line = output.substr(at, end - at);
        at = end + 1;
        size_t blanks = line.find_first_not_of(" \t\r");
        FINDING_SEVERITY severity = ERROR;
        if (blanks == line.npos) {
            goes_on = false;
        } else if (line == END_MARK) {
            if (!last_line.empty())
                messages.push_back({ERROR, "", 0, last_line});
            last_line.clear();
        } else if (const char *start = message_start(line.c_str() + blanks, severity); start != nullptr) {
            messages.push_back({severity, "", 0, start});
            goes_on = true;
            last_line.clear();
        } else if (goes_on && blanks > 0 && line[blanks] != '-' && line[blanks] != '.') {
            messages.back().text += " " + line.substr(blanks);
        } else {
            goes_on = false; // what is being done: " - Synthesizing ...", "    .Editing ..."
            last_line = line[blanks] == '-' || line[blanks] == '.' ? "" : line.substr(blanks);
        }
    }

    std::vector<FINDING> findings;
    for (MESSAGE &message : messages) {
        std::string text; // one blank between words
        for (char c : message.text)
            if (c != ' ' || (!text.empty() && text.back() != ' '))
                text += c;
        while (!text.empty() && text.back() == ' ')
            text.pop_back();
        message.text = text.substr(0, 1000); // a name may be as long as a file
        findings.push_back(finding_of_message(message));
    }
    return findings;
}
