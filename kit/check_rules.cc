// The rules, as one table. docs/rimkit_check.md has a section of each.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "sdb/navigation.hh"

namespace {

constexpr FINDING_SEVERITY ERROR = FINDING_ERROR, WARNING = FINDING_WARNING, NOTE = FINDING_NOTE;

constexpr CHECK_RULE RULES[] = {
    {0, "outputs", "N", ERROR, "the run has left its files, each younger than what it was made from",
     "what is looked at, or built, is not the chip of these descriptions",
     "rimweave once more (rimkit run), and look at its console", NEED_NOTHING, check_written_files},
    {1, "tap-states", "F, S", ERROR, "the TAP has the 16 states and their 32 arcs",
     "no tester can lead the chip", "the TAP as it is generated, read by the synthesis tool without changes",
     NEED_TAP},
    {2, "five-ones", "F", ERROR, "five TCK with TMS at 1 lead to Test-Logic-Reset from everywhere",
     "a tester that joins late can't bring the chip to rest",
     "the state register without encodings of its own", NEED_TAP},
    {3, "trst", "S", ERROR, "TRST resets the TAP while TCK stands low or high",
     "the board can't free the pins without a running TCK",
     "an asynchronous reset from TRST to each flop of the TAP", NEED_CHAIN},
    {4, "power-up", "N", WARNING, "something resets the TAP at power-up",
     "the chip may wake up in EXTEST, with the register at its pins",
     "a TRST port, or a power-on reset at the TAP's %TRST", NEED_TAP, check_power_up},
    {5, "open-inputs", "S", ERROR, "TMS, TDI and TRST read 1 when open",
     "a broken wire on the board does not bring the chip to rest", "pads with a pull-up at these ports",
     NEED_CHAIN},
    {6, "instruction-capture", "S", ERROR,
     "the instruction register has two bits at least, captures 01 in the last two, and updates on the "
     "falling edge of TCK",
     "a tester takes the chain for broken", "a pattern that ends in 01 behind %INSTRUCTION_CAPTURE",
     NEED_CHAIN},
    {7, "reset-instruction", "S", ERROR, "reset selects IDCODE where there is one, else BYPASS",
     "a tester that reads the codes of a board gets wrong ones",
     "IDCODE and %IDCODE_REGISTER in the .bsc file", NEED_CHAIN},
    {8, "bypass", "S", ERROR, "all ones select BYPASS, a register of one bit that captures 0",
     "the chain of the board has the wrong length", "all ones for BYPASS in %INSTRUCTION_TABLE", NEED_CHAIN},
    {9, "unlisted-opcodes", "F", ERROR, "opcodes that no instruction has select BYPASS",
     "a wrong bit in a scan starts something unknown", "the decoder as it is generated", NEED_TAP},
    {10, "idcode", "S", ERROR, "IDCODE gives 32 bits, the last 1, with a legal manufacturer",
     "a tester takes the chip for another", "%IDCODE_REGISTER in the .bsc file", NEED_CHAIN},
    {11, "tdo", "S, N", ERROR,
     "TDO changes behind the falling edge of TCK and drives in the Shift states alone",
     "the chip disturbs others on one line, or a tester reads between two bits",
     "%TDO_EN in %TAP_CONTROLLER and a pad with %EN_L or %EN_H on TDO", NEED_TAP, check_tdo_release},
    {12, "flush", "S", ERROR, "each register passes what is shifted in, in its length, without inversion",
     "each test through that register fails", "look at the register's cells and wires", NEED_CHAIN},
    {13, "chain", "N", ERROR,
     "the chain leads through each boundary cell once, in the order of the .bso file",
     "bits reach other pins than the tester thinks, or none",
     "rimweave once more; a netlist that was changed by hand or by a layout tool must keep the chain",
     NEED_TAP, check_chain},
    {14, "unselected-registers", "S", WARNING, "registers that are not selected keep what they hold",
     "what PRELOAD has put into the cells is lost by a scan of another register",
     "PRELOAD, then EXTEST at once, with no scan of data under another instruction in between", NEED_CHAIN},
    {15, "cell-per-port", "N", ERROR, "each signal port but the test port has its cells",
     "a board test can't see or drive the port",
     "a row of the port in the pin file, or the port among the %SKIP_SIGNAL_NAMES", NEED_CHAIN,
     check_cell_of_each_port},
    {16, "wire-to-pad", "N", ERROR, "nothing but wires and declared buffers between a cell and its pad",
     "the tester sees or drives something else than the pin",
     "no logic there: the cell next to the pad; a '-' before a port in the pin file declares an inverter",
     NEED_CHAIN, check_wires_to_pads},
    {17, "enables", "N", ERROR, "each enable of a pad hangs on its control cell and on nothing else",
     "EXTEST can't switch the pad on or off",
     "a control cell right before the enable, PAD_EN_L or PAD_EN_H in the pin file "
     "for a pad with two",
     NEED_CHAIN, check_enables},
    {18, "off-values", "N, S", ERROR, "reset and safe bit of a control cell turn its pads off",
     "pads fight each other on the board before the first test",
     "a control cell of its own for the pads of each polarity (-dont_share_control), one that resets to "
     "their off value",
     NEED_CHAIN, check_off_values},
    {19, "extest-pads", "S", ERROR,
     "in EXTEST each pin drives what was preloaded, 0, 1 and off, and captures what it has",
     "a test of the board's wires fails or passes wrongly", "look at the cell of the port", NEED_CHAIN},
    {20, "extest-isolation", "F", ERROR, "in EXTEST no way leads from the core to a pin",
     "what the core does disturbs the test of the board", "the cell's mode pin on the TAP's mode",
     NEED_CHAIN},
    {21, "non-invasive", "F", ERROR, "SAMPLE, PRELOAD, BYPASS and IDCODE leave the chip at work",
     "a look at the running chip changes it", "mode pins off in these instructions", NEED_CHAIN},
    {22, "reset-restores", "F", ERROR,
     "in Test-Logic-Reset, and behind EXTEST, the chip works as without a register",
     "the chip does not work in its system", "the TAP's reset on the mode logic", NEED_CHAIN},
    {23, "clamp", "S", ERROR, "CLAMP selects BYPASS and holds the pins over scans",
     "a guarded neighbour is disturbed", "CLAMP with ACCESS BYPASS in %INSTRUCTION_TABLE", NEED_CHAIN},
    {24, "highz", "S", ERROR, "HIGHZ selects BYPASS and turns each output off",
     "a tester drives against the chip",
     "%HIGHZ_COMMAND on the control cells or pads, with the '-' that their polarity asks for", NEED_CHAIN},
    {25, "intest", "S", ERROR, "INTEST drives the core's inputs from the cells, step by step",
     "the core can't be tested through the register", "cells with %MODE_2 at the inputs", NEED_CHAIN},
    {26, "runbist", "S", WARNING, "RUNBIST works in Run-Test/Idle alone and holds the pins",
     "the result of the self test depends on the tester", "a register and a signature of its own for RUNBIST",
     NEED_CHAIN},
    {27, "pad-follows-core", "N", WARNING,
     "no other pin of a pad decides in a test whether and how the pad works",
     "what the core happens to do there decides whether the test sees or drives the pin",
     "wrap the pad so that the register's mode holds the pin: \"Pads that the core turns on\" in "
     "docs/users_guide.md",
     NEED_CHAIN, check_pad_pins},
    {28, "open-pins", "N", ERROR, "each pin of a cell, a pad or the TAP has the signal that it needs",
     "the cell or the TAP does not work; a pad works as its open pin falls",
     "connect the pin; for a pin that rimweave should connect, name it in the library file", NEED_CHAIN,
     check_open_pins},
    {29, "test-clocks", "N", ERROR,
     "each cell of the register is clocked by the TAP, all by the same edges, and no flop of the core by "
     "test clocks",
     "cells lose bits, or the core changes while the tester shifts",
     "the clock pin on the TAP's clock through buffers that the library file names (a %BUFFER for those of a "
     "layout tool); the core on clocks of its own",
     NEED_CHAIN, check_clocks},
    {30, "same-edge", "N", ERROR, "no cell updates and captures on one edge",
     "what is captured depends on delays", "%CLOCK_DR and %UPDATE_DR on different pins of the TAP",
     NEED_CHAIN, check_edges},
    {31, "trees", "N", NOTE,
     "no output of the TAP and no buffer of its trees drives more than %GROUP_SIZE pins",
     "slow edges on control signals",
     "let the layout tool buffer the net, or run rimweave with another %GROUP_SIZE", NEED_CHAIN, check_trees},
    {32, "tap-inputs", "N", ERROR, "nothing but ports, pads and buffers in front of TCK, TMS, TDI and TRST",
     "the core can stop or reset the TAP, and the test with it",
     "the port, through its pad, straight at the TAP", NEED_TAP, check_tap_inputs},
    {33, "compliance", "S", NOTE, "with the values of the compliance pins all other rules hold",
     "the tester must know a value that the description does not tell",
     "the value in parentheses behind the port in %SKIP_SIGNAL_NAMES", NEED_CHAIN},
    {34, "private-opcodes", "N", WARNING,
     "instructions for the maker alone are declared private, and all can be reached",
     "a tester that tries the instruction may harm the chip, or reaches nothing",
     "%INSTRUCTION_PRIVATE NAME; in the .bsc file, opcodes of 0 and 1, a source for each pin", NEED_TAP,
     check_opcodes},
};

} // namespace

const std::span<const CHECK_RULE> check_rules = RULES;

const CHECK_RULE &check_rule(int32_t number) {
    return RULES[number];
}

void add_check(CHECK_CHIP &chip, int32_t rule, const CHECK_PLACE &place, const std::string &text) {
    bool is_worse = rule == 14 && chip.is_strict;
    add_check(chip, rule, place, text, is_worse ? FINDING_ERROR : check_rule(rule).severity);
}

void add_check(CHECK_CHIP &chip, int32_t rule, const CHECK_PLACE &place, const std::string &text,
               FINDING_SEVERITY severity) {
    int32_t net = place.node < 0 ? -1 : node_tab[place.node].net;
    const char *name = net < 0 ? nullptr : SDB_net_name(sdb, net);
    chip.findings.push_back({&check_rule(rule), severity, text, "",
                             place.obj < 0 ? "" : chip_instance_name(place.obj), name != nullptr ? name : "",
                             place.port < 0 ? "" : chip_port_name(place.port)});
}

void add_fault(CHECK_CHIP &chip, int32_t rule, const REGISTER_FAULT &fault) {
    chip.findings.push_back({&check_rule(rule), check_rule(rule).severity, fault.text, "", fault.instance,
                             fault.net, fault.port});
}

void add_faults(CHECK_CHIP &chip, int32_t rule, std::initializer_list<std::string_view> words) {
    for (const REGISTER_FAULT &fault : chip.found.faults)
        for (std::string_view word : words)
            if (fault.rule == word || fault.text.starts_with(word)) {
                add_fault(chip, rule, fault);
                break;
            }
}
