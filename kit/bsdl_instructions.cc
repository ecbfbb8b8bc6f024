// Instructions, their opcodes and registers, and the codes of the chip.
#include "kit/bsdl_file.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

constexpr size_t CODE_LENGTH = 32;
constexpr long LONGEST_REGISTER = 1000000; // bits; a typing error is longer

void fault(BOUNDARY_REGISTER &found, const std::string &text) {
    found.faults.push_back({"instruction", text, "", "", ""});
}

bool is_binary(const std::string &text, std::string_view letters) {
    return text.find_first_not_of(letters) == text.npos;
}

std::string upper_x(std::string text) {
    std::replace(text.begin(), text.end(), 'x', 'X');
    return text;
}

/// The standard register that an instruction selects; empty for one of the user's. The TAP holds a code's
/// register only when the code and its instruction are there.
std::string standard_access(const INSTRUCTION &row) {
    std::string name = row.register_name != nullptr ? lower_case(row.register_name) : "bypass";
    name = name.substr(0, name.find('['));
    if (name == "boundary" || name == "bypass")
        return name == "boundary" ? "BOUNDARY" : "BYPASS";
    return (name == "idcode" || name == "usercode") && IDCODE_REG != nullptr ? "DEVICE_ID" : "";
}

/// Fills in the register and its length. One of the user's stands outside the TAP: it needs a length,
/// "NAME[5]" in the BSC file, and something that drives the TAP's pin NAME_out. Without these `access` stays
/// empty.
void take_access(const BOUNDARY_REGISTER &found, const INSTRUCTION &row, BSDL_INSTRUCTION &taken) {
    taken.access = standard_access(row);
    if (!taken.access.empty() || row.register_name == nullptr)
        return;
    KIT_BIT name = kit_bit(row.register_name);
    std::string pin = name.base + "_out";
    WALK_END end = walk_back(found.walk, walk_pin(found.tap_obj, pin.c_str())).end;
    if (name.index < 1 || name.index > LONGEST_REGISTER || end == WALK_NONE || end == WALK_OPEN ||
        end == WALK_ZERO || end == WALK_ONE)
        return;
    taken.access = bsdl_legal_name(name.base);
    taken.length = static_cast<int32_t>(name.index);
}

void take_opcodes(BSDL_FILE &file, BOUNDARY_REGISTER &found, const INSTRUCTION &row,
                  BSDL_INSTRUCTION &taken) {
    for (const char *pattern : rows(row.patterns)) {
        std::string code = pattern;
        if (file.instruction_length == 0)
            file.instruction_length = static_cast<int32_t>(code.size());
        if (static_cast<int32_t>(code.size()) != file.instruction_length || !is_binary(code, "01Xx"))
            fault(found, format_text("'%s' is no opcode of instruction %s", pattern, row.name));
        else if (is_binary(code, "01"))
            taken.opcodes.push_back(code);
        else
            file.warnings.push_back("Opcode " + upper_x(code) + " of instruction " + taken.name +
                                    " decodes to nothing and is left out.");
    }
}

bool is_named_private(const char *name) {
    for (const char *word : rows(INST_PRIVATE))
        if (same_text_no_case(word, name))
            return true;
    return false;
}

/// What must be true of an instruction for a tester to use it; the reason why it is private, or null.
const char *reason_for_private(const BSDL_FILE &file, const INSTRUCTION &row, const BSDL_INSTRUCTION &taken) {
    if (is_named_private(row.name))
        return "";
    if (taken.access.empty())
        return "its register is the user's own, without a length in the BSC file or a source at the TAP";
    if (taken.name == "RUNBIST" && file.runbist_signature.empty())
        return "RUNBIST needs a signature that nobody gives (--runbist)";
    if ((taken.name == "IDCODE" || taken.name == "USERCODE") && taken.access != "DEVICE_ID")
        return "there is no %IDCODE_REGISTER";
    bool is_needed = taken.name == "EXTEST" || taken.name == "SAMPLE" || taken.name == "PRELOAD" ||
                     taken.name == "BYPASS" ||
                     taken.name == "RUNBIST"; // these are public whatever they do besides
    if (DYNA_count(row.enable_pins) > 0 && !is_needed)
        return "it drives pins of the TAP that the standard does not know";
    return nullptr;
}

/// True when every driver on a port is off under the TAP's high-impedance command.
bool highz_reaches(const BOUNDARY_REGISTER &found, const REGISTER_ROW &row) {
    auto from_tap = [&found](int32_t cell) {
        return cell >= 0 && found.cells[static_cast<size_t>(cell)].signals[SIG_HIGHZ].source.end == WALK_TAP;
    };
    if (row.kind == ROW_OUTPUT3 || row.kind == ROW_BIDIR || row.kind == ROW_OPEN)
        return from_tap(row.control);
    if (row.kind != ROW_OUTPUT2)
        return true;
    if (row.pad < 0)
        return false;
    const WALK_PAD_ROW &pad = found.walk.pads[static_cast<size_t>(row.pad)];
    for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
        if (walk_back(found.walk, walk_pin(pad.obj, pin)).end == WALK_TAP)
            return true;
    return false;
}

void judge_highz(BSDL_FILE &file, const BOUNDARY_REGISTER &found, BSDL_INSTRUCTION &taken) {
    size_t left = 0;
    std::string first;
    for (const REGISTER_ROW &row : found.rows)
        if (row.port >= 0 && !highz_reaches(found, row)) {
            first = first.empty() ? file.word_of_port[static_cast<size_t>(row.port)] : first;
            ++left;
        }
    if (left == 0)
        return;
    taken.is_private = true;
    file.warnings.push_back(format_text("HIGHZ leaves %zu outputs on, port %s among them, so it is private.",
                                        left, first.c_str()));
}

void take_instruction(BSDL_FILE &file, BOUNDARY_REGISTER &found, const INSTRUCTION &row) {
    BSDL_INSTRUCTION taken;
    std::string name = row.name;
    bool is_standard = bsdl_standard_instruction(name);
    taken.name = is_standard ? name : bsdl_legal_name(name);
    if (taken.name != row.name && !is_standard)
        file.names.renamed.push_back({row.name, taken.name});
    take_access(found, row, taken);
    for (const BSDL_INSTRUCTION &other : file.instructions)
        if (lower_case(other.name) == lower_case(taken.name)) {
            fault(found, "instruction " + taken.name + " is there twice");
            return;
        }
    take_opcodes(file, found, row, taken);
    const char *reason = reason_for_private(file, row, taken);
    taken.is_private = reason != nullptr;
    if (taken.name == "HIGHZ" && !taken.is_private)
        judge_highz(file, found, taken);
    if (reason == nullptr && DYNA_count(row.enable_pins) > 0)
        file.warnings.push_back("Instruction " + taken.name +
                                " also drives pins of the TAP outside the standard.");
    if (reason != nullptr && *reason != '\0')
        file.warnings.push_back("Instruction " + taken.name + " is private: " + reason + ".");
    if (!taken.opcodes.empty())
        file.instructions.push_back(std::move(taken));
    else if (taken.name == "EXTEST" || taken.name == "SAMPLE")
        fault(found, "instruction " + taken.name + " has no opcode without X");
}

BSDL_INSTRUCTION *find_instruction(BSDL_FILE &file, std::string_view name) {
    for (BSDL_INSTRUCTION &row : file.instructions)
        if (row.name == name)
            return &row;
    return nullptr;
}

/// All ones select BYPASS, also where the table does not say so: the TAP gives every opcode that is not
/// listed to it.
void complete_bypass(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    std::string ones(static_cast<size_t>(file.instruction_length), '1');
    if (find_instruction(file, "BYPASS") == nullptr)
        file.instructions.push_back({"BYPASS", {}, "BYPASS", false});
    for (const BSDL_INSTRUCTION &row : file.instructions)
        if (std::find(row.opcodes.begin(), row.opcodes.end(), ones) != row.opcodes.end()) {
            if (row.name != "BYPASS")
                fault(found, "the opcode of all ones belongs to BYPASS, not to " + row.name);
            return;
        }
    find_instruction(file, "BYPASS")->opcodes.push_back(ones);
}

void refuse_instructions(const BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    const struct {
        const char *name, *access;
    } needed[] = {{"EXTEST", "BOUNDARY"}, {"SAMPLE", "BOUNDARY"}, {"PRELOAD", "BOUNDARY"},
                  {"BYPASS", "BYPASS"},   {"INTEST", "BOUNDARY"}, {"CLAMP", "BYPASS"},
                  {"HIGHZ", "BYPASS"}};
    for (const auto &row : needed) {
        const BSDL_INSTRUCTION *instruction = bsdl_instruction(file, row.name);
        bool is_optional = &row >= needed + 4;
        if (instruction == nullptr ? !is_optional
                                   : !instruction->is_private && instruction->access != row.access)
            fault(found, format_text("instruction %s on register %s is needed", row.name, row.access));
        if (instruction != nullptr && instruction->is_private && !is_optional)
            fault(found, format_text("instruction %s can't be private", row.name));
    }
    std::unordered_map<std::string, std::string> owner;
    for (const BSDL_INSTRUCTION &row : file.instructions)
        for (const std::string &code : row.opcodes) {
            auto [place, is_new] = owner.emplace(code, row.name);
            bool may_share = row.name == "PRELOAD" || row.name == "SAMPLE";
            if (!is_new && !(may_share && (place->second == "SAMPLE" || place->second == "PRELOAD")))
                fault(found, "opcode " + code + " is that of " + row.name + " and of " + place->second);
        }
}

/// The signature is as long as the register that RUNBIST leaves it in.
void refuse_runbist(const BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    const BSDL_INSTRUCTION *runbist = bsdl_instruction(file, "RUNBIST");
    if (file.runbist_signature.empty())
        return;
    if (runbist == nullptr || runbist->is_private) {
        fault(found, "--runbist: there is no public instruction RUNBIST");
        return;
    }
    size_t length = runbist->access == "BOUNDARY"    ? found.cells.size()
                    : runbist->access == "BYPASS"    ? 1
                    : runbist->access == "DEVICE_ID" ? CODE_LENGTH
                                                     : static_cast<size_t>(runbist->length);
    if (length != file.runbist_signature.size())
        fault(found, format_text("--runbist: a signature of %zu digits, and register %s has %zu",
                                 file.runbist_signature.size(), runbist->access.c_str(), length));
}

/// Public before private, and IDCODE before any name that holds its letters: a public reader looks for those.
void order_instructions(BSDL_FILE &file) {
    std::stable_sort(file.instructions.begin(), file.instructions.end(),
                     [](const BSDL_INSTRUCTION &a, const BSDL_INSTRUCTION &b) {
                         auto rank = [](const BSDL_INSTRUCTION &row) {
                             return row.is_private
                                        ? 2
                                        : row.name.find("IDCODE") != row.name.npos && row.name != "IDCODE";
                         };
                         return rank(a) < rank(b);
                     });
}

void refuse_code(BOUNDARY_REGISTER &found, const char *keyword, const std::string &code, bool x_is_told) {
    bool x_in_version = code.find_first_of("Xx", 4) == code.npos || x_is_told;
    if (code.size() != CODE_LENGTH || !is_binary(code, "01Xx"))
        fault(found, format_text("%s is no code of 32 digits", keyword));
    else if (!x_in_version)
        fault(found, format_text("%s has an X outside its first four digits", keyword));
}

/// With -external_idcode the TAP has the code as an input: the digits that are tied are known.
std::string external_code(BSDL_FILE &file, const BOUNDARY_REGISTER &found) {
    std::string code;
    for (int bit = 31; bit >= 0; --bit) {
        int32_t node = walk_pin(found.tap_obj, format_text("IDCODE[%d]", bit).c_str());
        WALK_POINT point = walk_back(found.walk, node);
        if (node < 0)
            return "";
        bool inverted = point.inverters % 2 != 0;
        code += point.end == WALK_ZERO ? "01"[inverted] : point.end == WALK_ONE ? "10"[inverted] : 'X';
    }
    if (code.find('X') != code.npos)
        file.warnings.emplace_back("Digits X of the IDCODE come from outside the test logic.");
    return code;
}

void take_codes(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    const BSDL_INSTRUCTION *idcode = bsdl_instruction(file, "IDCODE");
    if (idcode == nullptr || idcode->is_private) {
        if (bsdl_instruction(file, "USERCODE") != nullptr && !bsdl_instruction(file, "USERCODE")->is_private)
            fault(found, "USERCODE needs an IDCODE");
        return;
    }
    std::string external = external_code(file, found);
    file.idcode = upper_x(external.empty() ? IDCODE_REG : external);
    refuse_code(found, "%IDCODE_REGISTER", file.idcode, !external.empty());
    if (file.idcode.size() == CODE_LENGTH && file.idcode[31] != '1' && file.idcode[31] != 'X')
        fault(found, "the last digit of %IDCODE_REGISTER has to be 1");
    if (file.idcode.size() == CODE_LENGTH && file.idcode.substr(20, 11) == "00001111111")
        fault(found, "manufacturer 00001111111 of %IDCODE_REGISTER is reserved by IEEE 1149.1");
    const BSDL_INSTRUCTION *usercode = bsdl_instruction(file, "USERCODE");
    if (usercode == nullptr || usercode->is_private)
        return;
    for (const char *code : rows(USERCODE_REG))
        file.usercodes.push_back(upper_x(code));
    if (file.usercodes.empty())
        fault(found, "USERCODE needs a %USERCODE_REGISTER");
    for (const std::string &code : file.usercodes)
        refuse_code(found, "%USERCODE_REGISTER", code, true);
}

} // namespace

const BSDL_INSTRUCTION *bsdl_instruction(const BSDL_FILE &file, const char *name) {
    return find_instruction(const_cast<BSDL_FILE &>(file), name);
}

void bsdl_take_instructions(BSDL_FILE &file, BOUNDARY_REGISTER &found) {
    for (const INSTRUCTION &row : rows(INSTRUCTIONS))
        take_instruction(file, found, row);
    if (const BSDL_INSTRUCTION *sample = bsdl_instruction(file, "SAMPLE");
        sample != nullptr && bsdl_instruction(file, "PRELOAD") == nullptr) {
        BSDL_INSTRUCTION preload = *sample;
        preload.name = "PRELOAD";
        file.instructions.insert(file.instructions.begin() + (sample - file.instructions.data()) + 1,
                                 preload);
    }
    complete_bypass(file, found);
    order_instructions(file);
    refuse_instructions(file, found);
    refuse_runbist(file, found);
    auto length = static_cast<size_t>(file.instruction_length);
    file.capture = DYNA_count(INST_CAPTURE) > 0 ? upper_x(INST_CAPTURE[0])
                                                : std::string(length < 2 ? 0 : length - 2, '0') + "01";
    if (length < 2 || file.capture.size() != length || file.capture.substr(length - 2) != "01" ||
        !is_binary(file.capture, "01X"))
        fault(found, "%INSTRUCTION_CAPTURE has to be as long as an opcode and to end in 01");
    take_codes(file, found);
}
