#include "tests/rtl/tap_reference.hh"

#include <array>
#include <map>
#include <random>

namespace {

enum state {
    TLR,
    RTI,
    SEL_DR,
    CAP_DR,
    SH_DR,
    EX1_DR,
    PAU_DR,
    EX2_DR,
    UPD_DR,
    SEL_IR,
    CAP_IR,
    SH_IR,
    EX1_IR,
    PAU_IR,
    EX2_IR,
    UPD_IR
};

// Figure 6-1 of the standard: the next state for TMS 0 and 1.
constexpr int NEXT[16][2] = {{RTI, TLR},       {RTI, SEL_DR},    {CAP_DR, SEL_IR}, {SH_DR, EX1_DR},
                             {SH_DR, EX1_DR},  {PAU_DR, UPD_DR}, {PAU_DR, EX2_DR}, {SH_DR, UPD_DR},
                             {RTI, SEL_DR},    {CAP_IR, TLR},    {SH_IR, EX1_IR},  {SH_IR, EX1_IR},
                             {PAU_IR, UPD_IR}, {PAU_IR, EX2_IR}, {SH_IR, UPD_IR},  {RTI, SEL_DR}};

enum data_register { BYPASS, BOUNDARY, IDCODE, USERCODE, MYREG, USERDR };

/// What an instruction of LARGE_TABLE selects and raises.
struct meaning {
    data_register selects = BYPASS;
    std::set<int> raises;
};

const std::map<std::string, meaning> MEANINGS = {
    {"0000", {BOUNDARY, {OUT_MODE1, OUT_MODE3}}},
    {"1000", {BOUNDARY, {OUT_MODE1, OUT_MODE3}}},
    {"0001", {BOUNDARY, {OUT_MODE3}}},
    {"0010", {BOUNDARY, {OUT_MODE1, OUT_MODE2}}},
    {"0011", {IDCODE, {}}},
    {"1011", {IDCODE, {}}},
    {"0100", {USERCODE, {}}},
    {"0101", {BYPASS, {OUT_HIGHZ}}},
    {"0110", {BYPASS, {OUT_MODE1, OUT_MODE3}}},
    {"0111", {MYREG, {OUT_MODE1}}},
    {"1001", {MYREG, {OUT_CHIP_TEST}}},
    {"1010", {BYPASS, {OUT_TEST_MODE}}},
    {"1100", {USERDR, {OUT_EN_A, OUT_EN_B2, OUT_EN_B0, OUT_EN_C}}},
    {"1101", {USERDR, {OUT_EN_A, OUT_EN_B1}}},
};
constexpr const char *CLAMP_OPCODE = "0110";
const std::string CAPTURED = "0001", AFTER_RESET = "0011", ID_TEXT = "00010010001101000101011001111001";

struct reference_tap {
    bool has_trst, clamp_holds;
    int at = TLR;
    bool known = false; ///< a reset has come
    std::string instruction = AFTER_RESET, ir = CAPTURED, id = ID_TEXT;
    char bypass = '0';
    std::mt19937 random{20010614}; // fixed, so that every run is the same
    reference_run run{};

    char bit() {
        return random() % 2 ? '1' : '0';
    }

    meaning decoded() const {
        auto found = MEANINGS.find(instruction);
        return found == MEANINGS.end() ? meaning{} : found->second;
    }

    /// The rising edge: registers take what the state tells, then the state moves.
    void rise(bool tms, char tdi) {
        if (at == CAP_IR)
            ir = CAPTURED;
        if (at == SH_IR)
            ir = tdi + ir.substr(0, ir.size() - 1);
        if (at == CAP_DR) {
            bypass = '0';
            id = ID_TEXT;
        }
        if (at == SH_DR) {
            bypass = tdi;
            id = tdi + id.substr(0, id.size() - 1);
        }
        if (known)
            run.arcs.insert({at, tms});
        at = NEXT[at][tms];
    }

    char serial_out(const std::string &inputs) const {
        if (at == SH_IR)
            return ir.back();
        switch (decoded().selects) {
        case BYPASS:
            return bypass;
        case BOUNDARY:
            return inputs[3];
        case IDCODE:
            return id.back();
        case USERCODE:
            return '0';
        case MYREG:
            return inputs[4];
        case USERDR:
            return inputs[5];
        }
        return '0';
    }

    void clock(bool tms, char tdi, bool trst = true) {
        std::string inputs = {tms ? '1' : '0', tdi, trst ? '1' : '0', bit(), bit(), bit()};
        rise(tms, tdi);
        bool reset = has_trst && !trst;
        if (reset) {
            at = TLR;
            known = true;
        }
        bool shifting = at == SH_DR || at == SH_IR;
        char tdo = serial_out(inputs); // before the instruction moves: at the same falling edge
        if (at == UPD_IR)
            instruction = ir;
        if (at == TLR)
            instruction = AFTER_RESET;
        std::array<char, OUTPUT_COUNT> value{}, mask{};
        value.fill('0');
        mask.fill(known ? '1' : '0');
        auto set = [&value](int output, bool high) { value[output] = high ? '1' : '0'; };
        for (int output : decoded().raises)
            set(output, true);
        set(OUT_TDO_DRIVEN, shifting);
        value[OUT_TDO] = tdo;
        mask[OUT_TDO] = known && shifting ? '1' : '0';
        set(OUT_SHIFT_DR, at == SH_DR);
        set(OUT_CLOCK_ACTIVE, at == CAP_DR || at == SH_DR);
        set(OUT_UPDATE_DR, at == UPD_DR && !(clamp_holds && instruction == CLAMP_OPCODE));
        set(OUT_RESET, at != TLR);
        if (at != SH_DR)
            value[OUT_EN_C] = '0'; // gated with SHIFT_DR
        set(OUT_SCAN_MODE, value[OUT_TEST_MODE] == '1' && tms);
        value[OUT_CHAIN] = tdi;
        run.vectors +=
            inputs + std::string(value.begin(), value.end()) + std::string(mask.begin(), mask.end()) + "\n";
        ++run.cycles;
    }

    void walk(const std::string &tms) {
        for (char bit_of_tms : tms)
            clock(bit_of_tms == '1', bit());
    }

    void five_ones() {
        walk("11111");
        known = true;
        at = TLR;
    }

    /// From Run-Test/Idle through a shift of `bits`, first bit first, back to Run-Test/Idle; pauses on the
    /// way.
    void scan(const std::string &way_to_shift, const std::string &bits) {
        walk(way_to_shift);
        for (size_t i = 0; i < bits.size(); ++i) {
            bool last = i + 1 == bits.size();
            bool pause = !last && random() % 8 == 0;
            clock(last || pause, bits[i]);
            if (pause)
                walk("0010");
        }
        walk("10");
    }

    void scan_instruction(const std::string &opcode) {
        scan("1100", std::string(opcode.rbegin(), opcode.rend()));
    }

    void scan_data(size_t length) {
        std::string bits;
        while (bits.size() < length)
            bits += bit();
        scan("100", bits);
    }
};

} // namespace

reference_run make_reference_run(bool has_trst, bool clamp_holds) {
    reference_tap tap{has_trst, clamp_holds};
    if (has_trst)
        tap.clock(true, '0', false);
    else
        tap.five_ones();
    tap.walk("00");
    tap.scan_data(40); // the identification code is there without any instruction
    for (int opcode = 0; opcode < 16; ++opcode) {
        std::string text;
        for (int i = 3; i >= 0; --i)
            text += (opcode >> i) & 1 ? '1' : '0';
        tap.scan_instruction(text);
        tap.scan_data(36);
        tap.scan_data(1 + opcode);
    }
    for (int i = 0; i < 1500; ++i)
        tap.clock(tap.random() % 2, tap.bit(), tap.random() % 64 != 0 || !has_trst);
    for (int steps = 1; steps < 40; ++steps) { // five ones from wherever the walk stands
        for (int i = 0; i < steps; ++i)
            tap.clock(tap.random() % 3 == 0, tap.bit());
        tap.walk("11111");
    }
    return tap.run;
}
