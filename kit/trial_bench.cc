#include "kit/trial_bench.hh"

#include "kit/chip.hh"
#include "kit/engines.hh"
#include "kit/names.hh"
#include "planning/tap_state.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <sstream>

namespace {

// ---- the test bench -----------------------------------------------------------------------------------

/// A name of Verilog whatever characters it has.
std::string escaped(const std::string &name) {
    return "\\" + name + " ";
}

std::string net_of_tap(const std::string &pin) {
    KIT_BIT bit = kit_bit(pin);
    return bit.index < 0 ? escaped("tap." + pin)
                         : escaped("tap." + bit.base) + format_text("[%ld]", bit.index);
}

/// What stands at a control pin; empty for one that stays open.
std::string signal_net(const REGISTER_SIGNAL &signal) {
    std::string inverter = signal.is_inverted ? "~" : "";
    switch (signal.source.end) {
    case WALK_TAP:
        return inverter + net_of_tap(signal.tap_pin);
    case WALK_ZERO:
    case WALK_ONE:
        return inverter + (signal.source.end == WALK_ONE ? "1'b1" : "1'b0");
    case WALK_PAD:
    case WALK_PORT:
        return inverter + "tck"; // of the ports TCK alone reaches a cell
    default:
        return "";
    }
}

void connect(std::string &pins, const char *pin, const std::string &net) {
    if (pin != nullptr && !net.empty())
        pins += (pins.empty() ? "." : ", .") + escaped(without_minus(pin)) + "(" + net + ")";
}

/// The data pins of a pad with the cell inside: it is always on, and `core` stands at the side that it reads.
void connect_pad(std::string &pins, const WALK_PAD_ROW &pad, const std::string &core,
                 const std::string &shown) {
    bool is_input = pad.core_out != nullptr;
    connect(pins, pad.pin, is_input ? core : shown);
    connect(pins, is_input ? pad.core_out : pad.core_in, is_input ? shown : core);
    connect(pins, pad.buffer->en_l, "1'b0");
    connect(pins, pad.buffer->en_h, "1'b1");
}

/// One cell. `index` and `part` make the names of its nets: part s is the control cell.
std::string cell_text(const BOUNDARY_REGISTER &found, const REGISTER_CELL &row, size_t index, char part,
                      const std::string &serial_in, const std::string &core, const std::string &oe_mode) {
    const SCAN_CELL &cell = *row.cell;
    std::string pins, name = format_text("%c%zu", part, index);
    connect(pins, cell.tdi, serial_in);
    connect(pins, cell.tdo, name + "_so");
    if (int32_t pad = found.walk.pad_of_obj[static_cast<size_t>(row.obj)]; pad >= 0) {
        connect_pad(pins, found.walk.pads[static_cast<size_t>(pad)], core, name + "_do");
    } else {
        connect(pins, cell.data_in, core);
        connect(pins, cell.data_out, name + "_do");
    }
    connect(pins, cell.sys_pin, "pin");
    connect(pins, cell.oe_mode, oe_mode);
    for (int32_t signal = 0; signal < SIGNAL_COUNT; ++signal)
        connect(pins, cell.*CONTROL_SIGNALS[signal].cell_pin, signal_net(row.signals[signal]));
    for (size_t i = 0; i < row.extras.size(); ++i)
        connect(pins, cell.extras[i], signal_net(row.extras[i]));
    return format_text("  wire %s_so, %s_do, %s_oe;\n  %s %s (%s);\n", name.c_str(), name.c_str(),
                       name.c_str(), escaped(row.class_name).c_str(), name.c_str(), pins.c_str());
}

std::string kind_text(const BOUNDARY_REGISTER &found, const TRIAL_KIND &kind, size_t index) {
    const REGISTER_CELL &cell = found.cells[static_cast<size_t>(kind.cell)];
    std::string first = net_of_tap(tap_pin_name(*found.tap, &TAP_CELL::first_bcell));
    if (kind.control < 0)
        return cell_text(found, cell, index, 'c', first, "core", format_text("c%zu_oe", index));
    return cell_text(found, found.cells[static_cast<size_t>(kind.control)], index, 's', first, "enable",
                     format_text("s%zu_oe", index)) +
           cell_text(found, cell, index, 'c', format_text("s%zu_so", index), "core",
                     format_text("s%zu_oe", index));
}

/// The TAP with all its pins: the test port's from here, other inputs at 0.
std::string tap_text(const BOUNDARY_REGISTER &found) {
    std::map<std::string, std::pair<long, bool>> pins; // the highest bit, or -1; an output
    int32_t class_id = obj_tab[found.tap_obj].class_id;
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        KIT_BIT bit = kit_bit(chip_pin_name(pin));
        auto &row =
            pins.emplace(bit.base, std::pair{bit.index, chip_pin_direction(pin) == SDB_OUTPUT}).first->second;
        row.first = std::max(row.first, bit.index);
    }
    std::map<std::string, std::string> drivers = {{tap_pin_name(*found.tap, &TAP_CELL::tdi), "tdi"},
                                                  {tap_pin_name(*found.tap, &TAP_CELL::tms), "tms"},
                                                  {tap_pin_name(*found.tap, &TAP_CELL::tck), "tck"},
                                                  {tap_pin_name(*found.tap, &TAP_CELL::trst), "1'b1"},
                                                  {tap_pin_name(*found.tap, &TAP_CELL::last_bcell), "~tdi"}};
    for (const INSTRUCTION &row : rows(INSTRUCTIONS)) // the way back of the user's registers
        if (row.register_name != nullptr)
            drivers.emplace(kit_bit(row.register_name).base + "_out", "~tdi");
    std::string wires, list;
    for (const auto &[name, row] : pins) {
        auto driver = drivers.find(name);
        std::string width = row.first < 0 ? "" : format_text("[%ld:0] ", row.first);
        wires += "  wire " + width + escaped("tap." + name) + (row.second ? ";\n" : " = ") +
                 (row.second ? "" : (driver != drivers.end() ? driver->second : "0") + ";\n");
        list += (list.empty() ? "." : ", .") + escaped(name) + "(" + escaped("tap." + name) + ")";
    }
    wires += "  wire tdo = " + net_of_tap(tap_pin_name(*found.tap, &TAP_CELL::tdo)) + ";\n";
    return wires + "  " + escaped(chip_class_name(class_id)) + "rimkit_tap (" + list + ");\n";
}

const char *const BENCH_HEAD = R"(`timescale 1ns / 1ps
module rimkit_trial;
  reg tck = 0, tms = 1, tdi = 0, core = 0, pin = 0, enable = 0;
)";

/// The walk through the states of the TAP, from Run-Test/Idle and back to it.
const char *const BENCH_TASKS = R"(
  integer n, code, instruction;
  task clock (input mode, input data);
    begin tms = mode; tdi = data; #50 tck = 1; #50 tck = 0; #10; end
  endtask
  task load_instruction (input [LENGTH-1:0] opcode);
    begin
      clock(1, 0); clock(1, 0); clock(0, 0); clock(0, 0);
      for (n = 0; n < LENGTH; n = n + 1) clock(n == LENGTH - 1, opcode[n]);
      clock(1, 0); clock(0, 0);
    end
  endtask
  task load_data (input first, input last);
    begin
      clock(1, 0); clock(0, 0); clock(0, 0);
      clock(0, first); clock(1, last); clock(1, 0); clock(0, 0);
    end
  endtask
  task capture;
    begin
      #20;
      clock(1, 0);
      $write("SHOWN ");  show_outputs;
      clock(0, 0); clock(0, 0);
      $write("CASE %0d %b ", instruction, code[4:0]); show_captured;
      clock(1, 0); clock(1, 0); clock(0, 0);
    end
  endtask
  task show_tap;
    begin
      $write("IDCODE ");
      clock(1, 0); clock(0, 0); clock(0, 0);
      for (n = 0; n < 32; n = n + 1) begin $write("%b", tdo); clock(n == 31, 0); end
      clock(1, 0); clock(0, 0);
      $write("\nCAPTURE ");
      clock(1, 0); clock(1, 0); clock(0, 0); clock(0, 0);
      for (n = 0; n < LENGTH; n = n + 1) begin $write("%b", tdo); clock(n == LENGTH - 1, 1); end
      clock(1, 0); clock(0, 0);
      $write("\n");
    end
  endtask
  // The way back of the boundary register is the inverse of TDI, so that it shows whatever is shifted.
  task show_length;
    begin
      clock(1, 0); clock(0, 0); clock(0, 0);
      for (n = 0; n < 40; n = n + 1) clock(0, 0);
      code = tdo === 1 ? -1 : 1;
      if (code > 0) begin
        clock(0, 1);
        while (tdo !== 1 && code < 40) begin clock(0, 0); code = code + 1; end
      end
      $display("LENGTH %0d", code);
      clock(1, 0); clock(1, 0); clock(0, 0);
    end
  endtask
  task reset;
    begin for (n = 0; n < 6; n = n + 1) clock(1, 0); clock(0, 0); end
  endtask
)";

std::string bench_text(const BSDL_FILE &file, const BOUNDARY_REGISTER &found,
                       const std::vector<TRIAL_KIND> &kinds) {
    std::string text = BENCH_HEAD, captured, shown;
    text += format_text("  localparam LENGTH = %d;\n", file.instruction_length) + tap_text(found);
    for (size_t i = 0; i < kinds.size(); ++i) {
        text += kind_text(found, kinds[i], i);
        captured += format_text("%sc%zu_so", i > 0 ? ", " : "", i);
        shown += format_text("%sc%zu_do", i > 0 ? ", " : "", i);
    }
    text += BENCH_TASKS;
    text += "  task show_captured; $display(\"%b\", {" + captured + "}); endtask\n";
    text += "  task show_outputs; $display(\"%b\", {" + shown + "}); endtask\n";
    auto load_code = [&file](const std::string &code) {
        return format_text("load_instruction(%d'b%s); ", file.instruction_length, code.c_str());
    };
    auto load = [&file, &load_code](const char *name) {
        return load_code(bsdl_instruction(file, name)->opcodes[0]);
    };
    text += "  initial begin\n    reset; show_tap;\n";
    for (const BSDL_INSTRUCTION &row : file.instructions)
        text += "    " + load_code(row.opcodes[0]) + "show_length;\n";
    text += "    reset;\n    for (code = 0; code < 32; code = code + 1) begin\n";
    constexpr const char *NAMES[] = {"EXTEST", "SAMPLE", "INTEST", "CLAMP"};
    for (int i = 0; i <= TRIAL_CLAMP; ++i)
        if (bsdl_instruction(file, NAMES[i]) != nullptr)
            text +=
                "      " + load("SAMPLE") + "load_data(code[2], code[1]); " + load(NAMES[i]) +
                format_text("instruction = %d; {core, pin, enable} = {code[4:3], code[0]}; capture;\n", i);
    text += "    end\n    core = 0;\n";
    for (int value : {0, 1})
        text += "    " + load("SAMPLE") + format_text("load_data(%d, %d); reset; ", value, value) +
                load("EXTEST") + "$write(\"RESET \"); show_outputs;\n";
    return text + "    $finish;\n  end\nendmodule\n";
}

std::string run_bench(const std::string &bench, const std::vector<std::string> &files, std::string &output) {
    SCRATCH_FOLDER folder;
    TOOL_write_file(folder.path + "/bench.v", bench);
    std::string program = folder.path + "/bench.vvp", log = folder.path + "/log", out = folder.path + "/out";
    std::vector<std::string> words = {
        "iverilog", "-g2012", "-s", "rimkit_trial", "-o", program, folder.path + "/bench.v"};
    words.insert(words.end(), files.begin(), files.end());
    if (std::string fault = run_engine(words, log); !fault.empty())
        return "the models are refused: " + fault;
    if (std::string fault = run_engine({"vvp", "-n", program}, out); !fault.empty())
        return fault;
    output = TOOL_read_file(out);
    return "";
}

TRIAL_RESULTS read_results(const std::string &output) {
    TRIAL_RESULTS results;
    std::istringstream text(output);
    std::string word, shown;
    for (int resets = 0; text >> word;) {
        if (word == "SHOWN") {
            text >> shown;
        } else if (word == "IDCODE" || word == "CAPTURE") {
            std::string &code = word == "IDCODE" ? results.idcode : results.capture;
            text >> code;
            std::reverse(code.begin(), code.end());
        } else if (word == "LENGTH") {
            text >> results.lengths.emplace_back();
        } else if (word == "RESET" && resets < 2) {
            text >> results.reset[resets++];
        } else if (word == "CASE") {
            int instruction = 0;
            std::string code, captured;
            text >> instruction >> code >> captured;
            results.cases.push_back({instruction, code[0] == '1', code[1] == '1', code[2] == '1',
                                     code[3] == '1', code[4] == '1', captured, shown});
        }
    }
    return results;
}

} // namespace

std::string play_trials(const BSDL_FILE &file, const BOUNDARY_REGISTER &found,
                        const std::vector<TRIAL_KIND> &kinds, const std::vector<std::string> &files,
                        TRIAL_RESULTS &results) {
    std::string output, fault = run_bench(bench_text(file, found, kinds), files, output);
    if (!fault.empty())
        return fault;
    results = read_results(output);
    bool is_whole = !results.cases.empty() && results.reset[1].size() == kinds.size() &&
                    results.cases.back().captured.size() == kinds.size() &&
                    results.lengths.size() == file.instructions.size();
    return is_whole ? "" : "the simulation gave no results";
}
