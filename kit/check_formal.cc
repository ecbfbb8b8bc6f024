// Rules about the TAP's text that Yosys proves: its states against the diagram of IEEE 1149.1, the way to
// Test-Logic-Reset from any value of its registers, and the decoder for all opcodes.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "kit/engines.hh"
#include "kit/patterns.hh"
#include "kit/tap_diagram.hh"
#include "kit/yosys.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_words.hh"
#include "support/text.hh"

#include <algorithm>
#include <sstream>

namespace {

// With -verify Yosys ends before it shows the values of a proof that failed.
constexpr const char *FAILED = "proof did fail", *REFUTED = "model found: FAIL",
                     *NO_SIGNAL = "Failed to parse";

/// A circuit around the TAP, what Yosys does with it, and what a failed proof means.
struct PROOF {
    std::string verilog, commands, finding;
    std::string why; ///< why there is no proof
};

/// The TAP beside the diagram, which has the codes of a generated TAP.
std::string states_text(const CHECK_CHIP &chip) {
    std::string arcs, pins;
    for (const DIAGRAM_STATE &state : TAP_DIAGRAM)
        arcs += format_text("            4'b%s: want <= tms ? 4'b%s : 4'b%s;\n", state.code,
                            TAP_DIAGRAM[state.next[1]].code, TAP_DIAGRAM[state.next[0]].code);
    for (const auto &[field, wire] : {std::pair{&TAP_CELL::tck, "tck"}, std::pair{&TAP_CELL::tms, "tms"},
                                      std::pair{&TAP_CELL::tdi, "1'b0"}, std::pair{&TAP_CELL::trst, "1'b1"}})
        if (std::string pin = tap_pin_name(*chip.found.tap, field);
            walk_pin(chip.found.tap_obj, pin.c_str()) >= 0)
            pins += (pins.empty() ? "." : ", .") + VLOG_identifier(pin) + "(" + wire + ")";
    return "module rimkit_proof (input tck, tms);\n    (* keep *) reg [3:0] want;\n"
           "    always @(posedge tck)\n        case (want)\n" +
           arcs + "        endcase\n    " +
           VLOG_identifier(chip_class_name(obj_tab[chip.found.tap_obj].class_id)) + " dut (" + pins +
           ");\nendmodule\n";
}

constexpr const char *STATE = "dut.TAP.STATE";

PROOF states_proof(const CHECK_CHIP &chip) {
    const char *reset = TAP_DIAGRAM[TAP_RESET_STATE].code;
    return {states_text(chip),
            format_text(
                "sat -tempinduct -maxsteps 12 -set-init %s 4'b%s -set-init want 4'b%s -prove %s want -verify",
                STATE, reset, reset, STATE),
            "the TAP does not follow the state diagram: some arc leads elsewhere", ""};
}

PROOF five_ones_proof(const CHECK_CHIP &chip) {
    return {states_text(chip),
            format_text("sat -seq 6 -prove-skip 5 -set tms 1 -prove %s 4'b%s -verify", STATE,
                        TAP_DIAGRAM[TAP_RESET_STATE].code),
            "from some values of the TAP's registers five TCK with TMS at 1 do not lead to Test-Logic-Reset",
            ""};
}

/// A port of the decoder, with its range as it is declared.
struct DECODER_PORT {
    std::string name, range;
    bool is_input = false;
};

/// The ports of the decoder of a generated TAP; none when the text has none.
std::vector<DECODER_PORT> decoder_ports(const std::string &text) {
    std::vector<DECODER_PORT> ports;
    size_t at = text.find("IR_dec (");
    at = at == text.npos ? at : text.find(");", at);
    size_t end = text.find("endmodule", std::min(at, text.size()));
    if (end == text.npos)
        return ports;
    std::istringstream body(text.substr(at + 2, end - at - 2));
    for (std::string line; std::getline(body, line, ';');) {
        line.erase(0, line.find_first_not_of(" \t\n"));
        bool is_input = line.starts_with("input");
        if (!is_input && !line.starts_with("output"))
            continue;
        size_t open = line.find('['), close = line.find(']');
        size_t name = line.find_last_of(" \t\n]") + 1;
        ports.push_back(
            {line.substr(name), open == line.npos ? "" : line.substr(open, close + 1 - open), is_input});
    }
    return ports;
}

/// Two decoders, one with any opcode, one with that of BYPASS: they agree unless an instruction has the
/// opcode.
PROOF opcodes_proof(const CHECK_CHIP &chip) {
    std::vector<DECODER_PORT> ports = decoder_ports(TOOL_read_file(run_file(chip.run, "_TAP.v")));
    if (ports.empty())
        return {"", "", "", "the TAP has no decoder as rimweave writes it"};
    bool selects_alone =
        std::any_of(rows(INSTRUCTIONS).begin(), rows(INSTRUCTIONS).end(), [](const INSTRUCTION &row) {
            return same_text_no_case(row.name, "BYPASS") && DYNA_count(row.enable_pins) > 0;
        });
    std::string wires, pins[2], same, listed;
    int32_t length = chip.play.instructions.instruction_length;
    for (const DECODER_PORT &port : ports)
        for (int side = 0; side < 2; ++side) {
            std::string wire = format_text("%s_%d", port.name.c_str(), side);
            pins[side] += (pins[side].empty() ? "." : ", .") + port.name + "(" +
                          (!port.is_input ? wire
                           : side == 0    ? "code"
                                          : format_text("{%d{1'b1}}", length)) +
                          ")";
            if (!port.is_input)
                wires += "    wire " + port.range + " " + wire + ";\n";
            if (!port.is_input && side == 0 && (!selects_alone || port.name == "DR_SELECT"))
                same += (same.empty() ? "" : " && ") +
                        format_text("%s_0 == %s_1", port.name.c_str(), port.name.c_str());
        }
    for (const BSDL_INSTRUCTION &row : chip.play.instructions.instructions)
        for (const std::string &opcode : row.opcodes)
            listed += format_text("code == %d'b%s || ", length, opcode.c_str());
    return {format_text("module rimkit_proof (input [%d:0] code);\n", length - 1) + wires +
                "    IR_dec one (" + pins[0] + ");\n    IR_dec bypass (" + pins[1] +
                ");\n    (* keep *) wire right = " + listed + "(" + same + ");\nendmodule\n",
            "setundef -zero; sat -prove right 1 -show code",
            "an opcode that no instruction has does not select BYPASS", ""};
}

/// The value that a failed proof shows for the signal.
std::string counterexample(const std::string &log, const std::string &signal) {
    std::istringstream lines(log);
    for (std::string line, word; std::getline(lines, line);) {
        std::istringstream words(line);
        if (words >> word && word == "\\" + signal) {
            while (words >> word)
                ;
            return ": " + word;
        }
    }
    return "";
}

/// Empty when the proof was made or has failed, which `finding` tells; else why there is none.
std::string prove(const CHECK_CHIP &chip, const PROOF &proof, std::string &finding) {
    SCRATCH_FOLDER folder;
    std::string circuit = folder.path + "/proof.v", log;
    TOOL_write_file(circuit, proof.verilog);
    std::string fault =
        run_yosys("read_verilog " + yosys_word(run_file(chip.run, "_TAP.v")) + " " + yosys_word(circuit) +
                      "\nhierarchy -top rimkit_proof\nproc\nflatten\nsetattr -set keep 1 "
                      "w:*STATE\nopt\nasync2sync\nopt\ndffunmap\n" +
                      proof.commands + " rimkit_proof\n",
                  log);
    if (log.find(FAILED) != log.npos || log.find(REFUTED) != log.npos) {
        finding = proof.finding + counterexample(log, "code");
        return "";
    }
    if (fault.empty())
        return "";
    return log.find(NO_SIGNAL) != log.npos ? "the TAP has no state register as rimweave writes it" : fault;
}

struct PROOF_OF_RULE {
    int32_t rule;
    PROOF (*make)(const CHECK_CHIP &chip);
};
constexpr PROOF_OF_RULE PROOFS[] = {
    {RULE_STATES, states_proof}, {RULE_FIVE_ONES, five_ones_proof}, {RULE_UNLISTED, opcodes_proof}};

} // namespace

bool check_by_proof(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open) {
    std::string &why = open.why;
    const PROOF_OF_RULE *row =
        std::find_if(std::begin(PROOFS), std::end(PROOFS),
                     [&rule](const PROOF_OF_RULE &known) { return known.rule == rule.number; });
    if (row == std::end(PROOFS))
        return check_by_rest_proof(chip, rule, open);
    why = verilog_obstacle(run_text(chip.run, "_TAP"));
    if (why.empty())
        why = engine_obstacle("yosys", "yosys");
    PROOF proof;
    if (why.empty()) {
        proof = row->make(chip);
        why = proof.why;
    }
    std::string finding;
    if (why.empty())
        why = prove(chip, proof, finding);
    if (!finding.empty())
        add_check(chip, rule.number, {chip.found.tap_obj, -1, -1}, finding);
    return why.empty();
}
