// The TAP's outputs at rest. Its Verilog is flattened; all registers but the instruction register, and all
// inputs, may have any value: what is proven is true of each state of the controller.
#include "kit/prove.hh"

#include "kit/chip.hh"
#include "kit/finished_run.hh"
#include "kit/yosys.hh"
#include "support/text.hh"

#include <algorithm>
#include <set>

namespace {

constexpr std::string_view QUIET[] = {"SAMPLE", "PRELOAD", "BYPASS", "IDCODE", "USERCODE"};
/// What each proof of one step begins with: the registers keep whatever they hold.
constexpr const char *ONE_STEP = "-seq 1 -set ";
constexpr const char *IN_RESET = "u.TAP.RESET_reg 0";

bool is_quiet(const char *name) {
    for (std::string_view word : QUIET)
        if (same_text_no_case(name, std::string(word).c_str()))
            return true;
    return false;
}

/// The opcodes of an instruction; one with X decodes to nothing.
std::vector<std::string> opcodes_of(const INSTRUCTION &row) {
    std::vector<std::string> codes;
    for (const char *pattern : rows(row.patterns))
        if (std::string_view(pattern).find_first_not_of("01") == std::string_view::npos)
            codes.emplace_back(pattern);
    return codes;
}

/// "1" in Verilog for each opcode on the instruction that is one of them; "0" without any.
std::string is_one_of(const std::vector<std::string> &codes) {
    std::string text = "1'b0";
    for (const std::string &code : codes)
        text += format_text(" | code == %zu'b%s", code.size(), code.c_str());
    return "(" + text + ")";
}

/// One set of opcodes that is asked about, as a bit of the module around the TAP.
struct CODE_SET {
    std::string bit, text;
};

struct TAP_QUESTIONS {
    YOSYS_TASK task;
    std::vector<std::string> pins, quiet;
    size_t instruction_length = 0;
    std::vector<CODE_SET> sets; ///< EXTEST, then each quiet instruction and what is not listed
};

void take_code_sets(TAP_QUESTIONS &asked) {
    std::vector<std::string> extest, listed;
    std::vector<CODE_SET> single;
    for (const INSTRUCTION &row : rows(INSTRUCTIONS)) {
        std::vector<std::string> codes = opcodes_of(row);
        for (const std::string &code : codes)
            asked.instruction_length = std::max(asked.instruction_length, code.size());
        listed.insert(listed.end(), codes.begin(), codes.end());
        if (is_quiet(row.name)) {
            asked.quiet.emplace_back(row.name);
            single.push_back({format_text("only%zu", single.size()), is_one_of(codes)});
        }
        if (same_text_no_case(row.name, "EXTEST"))
            extest = codes;
    }
    asked.quiet.emplace_back("opcodes that are not listed");
    single.push_back({format_text("only%zu", single.size()), "~" + is_one_of(listed)});
    asked.sets = {{"extest", is_one_of(extest)}};
    asked.sets.insert(asked.sets.end(), single.begin(), single.end());
}

/// The pins are asked for one by one: 0, then 1, in reset and under each set of opcodes.
void take_questions(TAP_QUESTIONS &asked, const std::string &module) {
    std::string ports = format_text("input [%zu:0] code", asked.instruction_length - 1), text;
    for (const CODE_SET &set : asked.sets) {
        ports += ", output " + set.bit;
        text += "  assign " + set.bit + " = " + set.text + ";\n";
    }
    asked.task.top = "rimkit_prove";
    asked.task.text =
        "module rimkit_prove (" + ports + ");\n  \\" + module + " u ();\n" + text + "endmodule\n";
    asked.task.preparation = "proc\nflatten\nasync2sync\ndffunmap\n";
    asked.task.questions = {"-seq 2 -set-at 1 u.TAP.STATE 4 -prove-skip 1 -prove " + std::string(IN_RESET)};
    for (const std::string &pin : asked.pins)
        for (const char *value : {" 0", " 1"}) {
            std::string proof = " -prove u." + pin + value;
            asked.task.questions.push_back(std::string(ONE_STEP) + IN_RESET + proof);
            for (const CODE_SET &set : asked.sets)
                asked.task.questions.push_back(std::string(ONE_STEP) + "u.INST code -set " + set.bit + " 1" +
                                               proof);
        }
}

int8_t value_of(const std::vector<bool> &held, size_t zero, size_t one) {
    return held[zero] && held[one] ? -1 : held[zero] ? 0 : held[one] ? 1 : -1;
}

void take_answers(const TAP_QUESTIONS &asked, const std::vector<bool> &held, const REST_VALUES &declared,
                  PROVEN_TAP &tap) {
    tap.reset_holds = held[0];
    size_t stride = asked.sets.size() + 1;
    for (size_t i = 0; i < asked.pins.size(); ++i) {
        size_t zero = 1 + 2 * i * stride, one = zero + stride;
        TAP_OUTPUT row{asked.pins[i], -1, value_of(held, zero, one), value_of(held, zero + 1, one + 1), {}};
        auto known = declared.find(row.pin);
        row.at_rest = known == declared.end() ? row.in_reset : known->second ? int8_t{1} : int8_t{0};
        for (size_t set = 1; set < asked.sets.size() && row.at_rest >= 0; ++set)
            if (!held[(row.at_rest == 0 ? zero : one) + 1 + set])
                row.disturbing.push_back(asked.quiet[set - 1]);
        tap.outputs.push_back(std::move(row));
    }
}

/// The outputs that may decide what a cell or a pad shows: all but those that work in each scan.
std::vector<std::string> output_pins(const BOUNDARY_REGISTER &found) {
    std::set<std::string> moving = {BCELL_TCK};
    for (const char *TAP_CELL::*field :
         {&TAP_CELL::tdo, &TAP_CELL::tdo_en, &TAP_CELL::first_bcell, &TAP_CELL::shift_dr, &TAP_CELL::clock_dr,
          &TAP_CELL::update_dr, &TAP_CELL::tap_reset})
        moving.insert(tap_pin_name(*found.tap, field));
    std::vector<std::string> pins;
    int32_t class_id = obj_tab[found.tap_obj].class_id;
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        if (chip_pin_direction(pin) == SDB_OUTPUT && !moving.contains(chip_pin_name(pin)))
            pins.push_back(chip_pin_name(pin));
    }
    return pins;
}

} // namespace

PROVEN_TAP prove_tap(const BOUNDARY_REGISTER &found, const std::string &tap_file) {
    PROVEN_TAP tap;
    TAP_QUESTIONS asked;
    take_code_sets(asked);
    tap.why_not = verilog_obstacle(tap_file);
    if (tap.why_not.empty() && asked.instruction_length == 0)
        tap.why_not = "there is no instruction table";
    if (!tap.why_not.empty())
        return tap;
    asked.pins = output_pins(found);
    asked.task.files = {tap_file};
    take_questions(asked, chip_class_name(obj_tab[found.tap_obj].class_id));
    YOSYS_ANSWERS answers = ask_yosys(asked.task);
    tap.why_not = answers.why_not;
    tap.quiet = asked.quiet;
    if (tap.why_not.empty())
        take_answers(asked, answers.held, declared_rest_values(*found.tap), tap);
    return tap;
}

REST_VALUES proven_rest_values(const PROVEN_TAP &tap) {
    REST_VALUES values;
    for (const TAP_OUTPUT &row : tap.outputs)
        if (row.at_rest >= 0)
            values[row.pin] = row.at_rest == 1;
    return values;
}
