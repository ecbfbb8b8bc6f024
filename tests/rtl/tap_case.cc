#include "tests/rtl/tap_case.hh"

#include "description/hash_tables.hh"
#include "description/tables.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_build.hh"
#include "rtl/tap_rtl.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

const char *const SMALL_TABLE = "EXTEST 000 boundary\n"
                                "SAMPLE 001 boundary\n"
                                "BYPASS 111 bypass\n";

const char *const LARGE_TABLE = "EXTEST 0000,1000 BOUNDARY\n"
                                "SAMPLE 0001 BOUNDARY\n"
                                "INTEST 0010 BOUNDARY\n"
                                "IDCODE 0011,1011 IDCODE\n"
                                "USERCODE 0100 USERCODE\n"
                                "BYPASS 1111,1110 BYPASS\n"
                                "HIGHZ 0101 BYPASS\n"
                                "CLAMP 0110 BYPASS\n"
                                "RUNBIST 0111 MYREG[5]\n"
                                "CHIP_TEST 1001 MYREG[5]\n"
                                "VELMORA_ATPG 1010 BYPASS\n"
                                "MYINST 1100 USERDR[8] en_a en_b=101 en_c:AND:SHIFT_DR\n"
                                "MYINST2 1101 USERDR[8] en_a=1 en_b=010\n";

namespace {

std::vector<std::string> split(const std::string &text, char between) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, between);)
        parts.push_back(part);
    return parts;
}

void add_enable(INSTRUCTION &row, const std::string &text) {
    const std::vector<std::string> gates = {"AND", "NAND", "OR", "NOR", "XOR", "XNOR"};
    std::vector<std::string> parts = split(text, ':');
    std::vector<std::string> pin = split(parts[0], '=');
    append_row<const char *>(row.enable_pins, keep_text(pin[0]));
    append_row<const char *>(row.enable_values, pin.size() > 1 ? keep_text(pin[1]) : nullptr);
    int32_t kind = GATE_NONE;
    if (parts.size() > 2)
        kind =
            GATE_AND + static_cast<int32_t>(std::find(gates.begin(), gates.end(), parts[1]) - gates.begin());
    append_row<const char *>(row.gate_signals, parts.size() > 2 ? keep_text(parts[2]) : nullptr);
    append_row(row.gate_kinds, kind);
}

/// Starts a table anew. The old one stays reachable: its rows may hold tables of their own.
template <class T> void start_anew(T *&table) {
    static auto &kept = *new std::vector<T *>; // never destroyed
    kept.push_back(table);
    table = nullptr;
}

void set_instructions(const std::string &text) {
    start_anew(INSTRUCTIONS);
    for (const std::string &line : split(text, '\n')) {
        std::istringstream words(line);
        std::string name, opcodes, reg;
        words >> name >> opcodes >> reg;
        INSTRUCTION &row = append_row(INSTRUCTIONS);
        row.name = keep_text(name);
        row.register_name = keep_text(reg);
        for (const std::string &opcode : split(opcodes, ','))
            if (opcode != "-")
                append_row<const char *>(row.patterns, keep_text(opcode));
        for (std::string enable; words >> enable;)
            add_enable(row, enable);
    }
}

void clear_run() {
    std::fill(std::begin(JTAG_OPTION), std::end(JTAG_OPTION), 0);
    std::fill(std::begin(BCELL_HAS), std::end(BCELL_HAS), 0);
    std::fill(std::begin(TAP_PIN), std::end(TAP_PIN), nullptr);
    BCELL_EXTRA = TDO_EN_LOW = rwv_hier_tap_ctrlG = 0;
    TAP_TDO_EN_PIN = TAP_HIZ_PIN = GLOBAL_TRST = IDCODE_REG = org_tap_instance_nameG = nullptr;
    start_anew(TAP_EXTRA_PIN);
    start_anew(USERCODE_REG);
    start_anew(INST_CAPTURE);
    for (STANDARD_PORT_STATE &port : TAP_PORT)
        port.tap_pin = nullptr;
    TOP_MODULE = "chip";
    OPATH = ".";
    JTAG_LIB_FILE = "chip.lib";
    JTAG_BSC_FILE = "chip.bsc";
    TAP_INSTANCE_NAME = "TAP";
    TAP_MODULE_NAME = "chip_tap";
}

/// A TAP cell that names every port, so that no default is needed.
TAP_CELL &named_cell() {
    TAP_CELL &cell = *new_record<TAP_CELL>();
    cell.name = "chip_tap";
    cell.tdi = "TDI", cell.tdo = "TDO", cell.tms = "TMS", cell.tck = "TCK", cell.trst = "-TRST";
    cell.shift_dr = "SHIFT_DR", cell.clock_dr = "CLOCK_DR", cell.update_dr = "UPDATE_DR";
    cell.first_bcell = "first_Bcell", cell.last_bcell = "BOUNDARY_out";
    cell.highz_command = "HIGHZ", cell.tap_reset = "-RESET";
    cell.mode_1 = "MODE1", cell.mode_2 = "MODE2", cell.mode_3 = "MODE3";
    return cell;
}

} // namespace

void set_up_tap(const tap_case &tap) {
    clear_run();
    set_instructions(tap.instructions);
    TAP_CELL &cell = named_cell();
    std::istringstream stream(tap.needs);
    std::set<std::string> needs;
    for (std::string word; stream >> word;)
        needs.insert(word);
    auto needed = [&](const char *word) { return needs.contains(word) ? 1 : 0; };
    JTAG_OPTION[OPT_SYNCH] = needed("synch");
    JTAG_OPTION[OPT_VHDL] = needed("vhdl");
    JTAG_OPTION[OPT_EXTERNAL_IDCODE] = needed("external");
    GLOBAL_TRST = needed("trst") ? "TRSTN" : nullptr;
    cell.tdo_en = needed("tdo_en") ? "TDO_EN" : nullptr;
    TDO_EN_LOW = needed("tdo_en_low");
    for (auto [signal, word] : {std::pair(SIG_UPDATE, "update"),
                                {SIG_RST, "rst"},
                                {SIG_HIGHZ, "highz"},
                                {SIG_MODE1, "mode1"},
                                {SIG_MODE2, "mode2"},
                                {SIG_MODE3, "mode3"}})
        BCELL_HAS[signal] = needed(word);
    IDCODE_REG = needed("idcode") ? "00010010001101000101011001111001" : nullptr;
    if (needed("usercode"))
        append_row<const char *>(USERCODE_REG, "11001010111111101011101010111110");
    if (!needed("nocapture"))
        append_row<const char *>(
            INST_CAPTURE, keep_text(std::string_view("00000001")
                                        .substr(8 - std::string_view(INSTRUCTIONS[0].patterns[0]).size())));
    rwv_hier_tap_ctrlG = needed("hier");
    for (const std::string &word : needs) {
        if (word.starts_with("extra"))
            BCELL_EXTRA = word.back() - '0';
        if (word.starts_with("tdi="))
            cell.tdi = keep_text(word.substr(4));
        if (word.starts_with("shared_highz"))
            cell.highz_command = keep_format("MODE%c", word.back());
    }
    start_anew(TAP_CELL_HASH_TAB);
    add_record(TAP_CELL_HASH_TAB, &cell);
}

std::string rtl_of(const tap_case &tap) {
    set_up_tap(tap);
    jtag_init();
    return get_TAP_in_RTL();
}

std::string quiet_rtl_of(const tap_case &tap) {
    testing::internal::CaptureStdout();
    std::string text = rtl_of(tap);
    testing::internal::GetCapturedStdout();
    return text;
}

const std::vector<tap_case> &tool_cases() {
    static const std::string modes = " update mode1 mode2 mode3 idcode usercode ";
    static const std::string two_codes = "EXTEST 000 boundary\nSAMPLE 001 boundary\nBYPASS 111 bypass\n"
                                         "IDCODE 010 idcode\nUSERCODE 011 idcode\n";
    static const std::vector<tap_case> cases = {
        {"smallest", SMALL_TABLE, ""},
        {"synch_no_update", SMALL_TABLE, "synch"},
        {"synch_trst", SMALL_TABLE, "synch trst update rst tdo_en tdo_en_low"},
        {"two_codes_synch", two_codes, "synch update idcode usercode"},
        {"two_codes_external", two_codes, "external update idcode usercode tdo_en"},
        {"one_code_external", "EXTEST 00 boundary\nSAMPLE 01 boundary\nBYPASS 11 bypass\nIDCODE 10 IdCode\n",
         "external synch idcode"},
        {"idcode_without_register", two_codes, "update"},
        {"mixed_spelling",
         "EXTEST 000 Boundary\nSAMPLE 001 BOUNDARY\nBYPASS 111 Bypass\nidcode 010 idCODE\n"
         "MINE 011 myReg[3]\nMINE2 100 MYREG\n",
         "idcode update nocapture"},
        {"large", LARGE_TABLE, "trst rst highz" + modes},
        {"large_synch", LARGE_TABLE, "synch tdo_en" + modes},
        {"highz_in_mode1", LARGE_TABLE, "shared_highz1 trst" + modes},
        {"highz_in_mode3", LARGE_TABLE, "shared_highz3" + modes},
        {"highz_in_unused_mode", LARGE_TABLE, "shared_highz2 highz update mode1 idcode usercode"},
        {"gates",
         "EXTEST 000 boundary a:AND:SHIFT_DR b:NAND:CLOCK_DR c:OR:TDI\nSAMPLE 001 boundary d:NOR:UPDATE_DR "
         "e:XOR:RESET f:XNOR:MODE1\nBYPASS 111 bypass g=0 h:AND:g\nHIGHZ 010 bypass i=0:OR:HIGHZ\n"
         "VELMORA_ATPG 011 bypass j:AND:velmora_test_mode\n",
         "trst rst update mode1"},
        {"wide_pins",
         "EXTEST 000 boundary a=00 b=10\nSAMPLE 001 boundary a=10 b=01\nBYPASS 111 bypass a=01\n"
         "MINE 010 r[4] a=11 b=00 c d e f g\n",
         "update"},
        {"open_opcode", "EXTEST 0x0 boundary\nSAMPLE 001 boundary\nBYPASS 1XX bypass\n", "update"},
        {"colliding", "EXTEST 000 boundary\nSAMPLE 001 boundary\nBYPASS 111 bypass\nMINE 001 bypass\n",
         "update"},
    };
    return cases;
}
