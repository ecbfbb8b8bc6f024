#include "kit/cell_trials.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "kit/verilog_model.hh"
#include "planning/tap_state.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

namespace {

/// Cells that are alike: class and control pins. One of them is tried, behind the control cell that tells it
/// of its pad where there is one.
struct TRIAL_KIND {
    int32_t cell;         ///< number of the one that is tried
    int32_t control = -1; ///< number of the cell that drives its %OE_MODE pin, or -1
    int8_t disable = -1;  ///< value of the control cell that turns the pad off
};

/// One capture: what stood there, and what each kind had in its shift stage and at its output then.
struct TRIAL_CASE {
    CAPTURE_INSTRUCTION instruction;
    bool core, pin, update, second, enable;
    std::string captured, shown;
};

/// What the simulation said.
struct TRIAL_RESULTS {
    std::vector<TRIAL_CASE> cases;
    std::string reset[2]; ///< outputs in EXTEST behind a reset, with 0 and with 1 loaded before
};

std::string signal_key(const REGISTER_SIGNAL &signal) {
    return signal.source.end == WALK_NONE
               ? "-"
               : format_text("%d%s%s,", signal.source.end, signal.is_inverted ? "~" : "",
                             signal.tap_pin.c_str());
}

/// The cell whose pin drives the cell's %OE_MODE, or -1.
int32_t oe_driver(const BOUNDARY_REGISTER &found, const REGISTER_CELL &cell,
                  const std::map<int32_t, int32_t> &number_of_obj) {
    if (cell.oe_mode.source.end != WALK_CELL)
        return -1;
    auto number = number_of_obj.find(cell.oe_mode.source.row);
    return number != number_of_obj.end() &&
                   walk_is_pin(cell.oe_mode.source.node,
                               found.cells[static_cast<size_t>(number->second)].cell->oe_mode)
               ? number->second
               : -1;
}

std::string wiring_key(const REGISTER_CELL &cell) {
    std::string key = cell.class_name + ":";
    for (const REGISTER_SIGNAL &signal : cell.signals)
        key += signal_key(signal);
    for (const REGISTER_SIGNAL &signal : cell.extras)
        key += signal_key(signal);
    return key;
}

std::vector<TRIAL_KIND> find_kinds(const BOUNDARY_REGISTER &found, const std::set<std::string> &modules,
                                   CELL_TYPES &types) {
    std::map<int32_t, int32_t> number_of_obj;
    for (size_t i = 0; i < found.cells.size(); ++i)
        number_of_obj[found.cells[i].obj] = static_cast<int32_t>(i);
    std::vector<int8_t> disable(found.cells.size(), -1);
    for (const REGISTER_ROW &row : found.rows)
        if (row.control >= 0)
            disable[static_cast<size_t>(row.cell)] = row.disable;
    std::vector<TRIAL_KIND> kinds;
    std::set<std::string> met;
    types.kind_of_cell.assign(found.cells.size(), "");
    for (size_t i = 0; i < found.cells.size(); ++i) {
        const REGISTER_CELL &cell = found.cells[i];
        bool is_pad = found.walk.pad_of_obj[static_cast<size_t>(cell.obj)] >= 0;
        if (is_pad || !modules.contains(cell.class_name))
            continue;
        TRIAL_KIND kind{static_cast<int32_t>(i), oe_driver(found, cell, number_of_obj), disable[i]};
        std::string key = wiring_key(cell);
        if (kind.control >= 0)
            key +=
                format_text("%d", kind.disable) + wiring_key(found.cells[static_cast<size_t>(kind.control)]);
        types.kind_of_cell[i] = key;
        if (met.insert(key).second)
            kinds.push_back(kind);
    }
    return kinds;
}

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

/// One cell. `index` and `part` make the names of its nets: part s is the control cell.
std::string cell_text(const REGISTER_CELL &row, size_t index, char part, const std::string &serial_in,
                      const std::string &core, const std::string &oe_mode) {
    const SCAN_CELL &cell = *row.cell;
    std::string pins, name = format_text("%c%zu", part, index);
    connect(pins, cell.tdi, serial_in);
    connect(pins, cell.tdo, name + "_so");
    connect(pins, cell.data_in, core);
    connect(pins, cell.data_out, name + "_do");
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
        return cell_text(cell, index, 'c', first, "core", format_text("c%zu_oe", index));
    return cell_text(found.cells[static_cast<size_t>(kind.control)], index, 's', first, "enable",
                     format_text("s%zu_oe", index)) +
           cell_text(cell, index, 'c', format_text("s%zu_so", index), "core", format_text("s%zu_oe", index));
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
    const std::map<std::string, std::string> drivers = {{tap_pin_name(*found.tap, &TAP_CELL::tdi), "tdi"},
                                                        {tap_pin_name(*found.tap, &TAP_CELL::tms), "tms"},
                                                        {tap_pin_name(*found.tap, &TAP_CELL::tck), "tck"},
                                                        {tap_pin_name(*found.tap, &TAP_CELL::trst), "1'b1"}};
    std::string wires, list;
    for (const auto &[name, row] : pins) {
        auto driver = drivers.find(name);
        std::string width = row.first < 0 ? "" : format_text("[%ld:0] ", row.first);
        wires += "  wire " + width + escaped("tap." + name) + (row.second ? ";\n" : " = ") +
                 (row.second ? "" : (driver != drivers.end() ? driver->second : "0") + ";\n");
        list += (list.empty() ? "." : ", .") + escaped(name) + "(" + escaped("tap." + name) + ")";
    }
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
    begin tms = mode; tdi = data; #50 tck = 1; #50 tck = 0; end
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
    auto load = [&file](const char *name) {
        const BSDL_INSTRUCTION *row = bsdl_instruction(file, name);
        return format_text("load_instruction(%d'b%s); ", file.instruction_length, row->opcodes[0].c_str());
    };
    text += "  initial begin\n    reset;\n    for (code = 0; code < 32; code = code + 1) begin\n";
    constexpr const char *NAMES[] = {"EXTEST", "SAMPLE", "INTEST"};
    for (int i = 0; i < CAPTURE_INSTRUCTIONS; ++i)
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

// ---- running it ---------------------------------------------------------------------------------------

/// The modules that the files define.
std::set<std::string> modules_of(const std::vector<std::string> &files) {
    std::set<std::string> modules;
    for (const std::string &file : files) {
        std::istringstream text(TOOL_read_file(file));
        for (std::string word; text >> word;)
            if (word == "module" && text >> word)
                modules.insert(word.substr(word[0] == '\\' ? 1 : 0, word.find_first_of("(;#")));
    }
    return modules;
}

/// A folder of its own, gone at the end of its scope.
struct SCRATCH_FOLDER {
    std::string path;
    SCRATCH_FOLDER() {
        std::string name = (std::filesystem::temp_directory_path() / "rimkit-XXXXXX").string();
        const char *made = ::mkdtemp(name.data());
        path = made != nullptr ? made : "";
    }
    ~SCRATCH_FOLDER() {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    SCRATCH_FOLDER(const SCRATCH_FOLDER &) = delete;
    SCRATCH_FOLDER &operator=(const SCRATCH_FOLDER &) = delete;
};

std::string run_bench(const std::string &bench, const std::vector<std::string> &files, std::string &output) {
    SCRATCH_FOLDER folder;
    if (folder.path.empty())
        return "there is no folder for a simulation";
    TOOL_write_file(folder.path + "/bench.v", bench);
    std::string line = "iverilog -g2012 -s rimkit_trial -o " + shell_word(folder.path + "/bench.vvp") + " " +
                       shell_word(folder.path + "/bench.v");
    for (const std::string &file : files)
        line += " " + shell_word(file);
    std::string log = shell_word(folder.path + "/log"), out = folder.path + "/out";
    if (run_shell(line + " >" + log + " 2>&1") != 0) {
        std::string text = TOOL_read_file(folder.path + "/log");
        return "iverilog refuses the models: " + text.substr(0, text.find('\n'));
    }
    if (run_shell("vvp -n " + shell_word(folder.path + "/bench.vvp") + " >" + shell_word(out) + " 2>&1") != 0)
        return "the simulation broke off";
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
        } else if (word == "RESET" && resets < 2) {
            text >> results.reset[resets++];
        } else if (word == "CASE") {
            int instruction = 0;
            std::string code, captured;
            text >> instruction >> code >> captured;
            results.cases.push_back({static_cast<CAPTURE_INSTRUCTION>(instruction), code[0] == '1',
                                     code[1] == '1', code[2] == '1', code[3] == '1', code[4] == '1', captured,
                                     shown});
        }
    }
    return results;
}

// ---- what it means ------------------------------------------------------------------------------------

/// A cell alone holds the bit that was shifted last; one behind a control cell the first.
bool update_of(const TRIAL_KIND &kind, const TRIAL_CASE &at) {
    return kind.control < 0 ? at.second : at.update;
}

/// The state of the pad in a case; both count where the cell does not know it.
bool is_in_context(const TRIAL_KIND &kind, const TRIAL_CASE &at, CELL_CONTEXT context) {
    if (kind.control < 0 || (context != AS_BIDIR_IN && context != AS_BIDIR_OUT))
        return true;
    return at.second == at.enable && (at.second == (kind.disable == 1)) == (context == AS_BIDIR_IN);
}

uint8_t sources_in_case(const SCAN_CELL &cell, const TRIAL_CASE &at, CELL_CONTEXT context, bool update,
                        bool captured) {
    bool reads_pin = context == AS_BIDIR_IN || (context == AS_INPUT && cell.sys_pin != nullptr);
    bool drives = context == AS_OUTPUT2 || context == AS_OUTPUT3 || context == AS_BIDIR_OUT;
    uint8_t sources = 0;
    if ((reads_pin ? at.pin : at.core) == captured)
        sources |= FROM_PI;
    if (drives && cell.sys_pin != nullptr && at.pin == captured)
        sources |= FROM_PO;
    if (update == captured)
        sources |= FROM_UPD;
    return sources | (captured ? FROM_ONE : FROM_ZERO);
}

CAPTURES captures_of(const TRIAL_KIND &kind, const SCAN_CELL &cell, size_t index, CELL_CONTEXT context,
                     const TRIAL_RESULTS &results) {
    CAPTURES captures = {FROM_ANY & ~FROM_CAP, FROM_ANY & ~FROM_CAP, FROM_ANY & ~FROM_CAP};
    for (const TRIAL_CASE &at : results.cases) {
        char bit = at.captured[index];
        if (!is_in_context(kind, at, context))
            continue;
        uint8_t sources = bit != '0' && bit != '1'
                              ? 0
                              : sources_in_case(cell, at, context, update_of(kind, at), bit == '1');
        captures[at.instruction] &= sources;
    }
    return captures;
}

/// In EXTEST the pad shows the update stage, in SAMPLE what the core gives.
std::string output_fault(const TRIAL_KIND &kind, size_t index, const TRIAL_RESULTS &results) {
    for (const TRIAL_CASE &at : results.cases) {
        bool expected = at.instruction == IN_EXTEST ? update_of(kind, at) : at.core;
        if (at.instruction != IN_INTEST && at.shown[index] != (expected ? '1' : '0'))
            return at.instruction == IN_EXTEST ? "in EXTEST the cell does not give out what was loaded"
                                               : "in SAMPLE the cell does not give out what the core gives";
    }
    return "";
}

/// True for a cell that stands between the core and a pad's data or enable.
std::vector<bool> drivers(const BOUNDARY_REGISTER &found) {
    std::vector<bool> drives(found.cells.size());
    for (const REGISTER_ROW &row : found.rows)
        if (row.kind >= ROW_OUTPUT2 && row.kind <= ROW_CONTROL)
            drives[static_cast<size_t>(row.cell)] =
                found.cells[static_cast<size_t>(row.cell)].cell->update_dr_out == nullptr;
    return drives;
}

void take_results(BOUNDARY_REGISTER &found, const std::vector<TRIAL_KIND> &kinds,
                  const TRIAL_RESULTS &results, CELL_TYPES &types) {
    std::map<std::string, std::string> fault_of_kind;
    for (size_t i = 0; i < kinds.size(); ++i) {
        const TRIAL_KIND &kind = kinds[i];
        const SCAN_CELL &cell = *found.cells[static_cast<size_t>(kind.cell)].cell;
        const std::string &key = types.kind_of_cell[static_cast<size_t>(kind.cell)];
        CELL_TYPES::MEASURED &measured = types.of_kind[key];
        for (int context = 0; context < CELL_CONTEXTS; ++context) {
            auto as = static_cast<CELL_CONTEXT>(context);
            measured.captures[as] = captures_of(kind, cell, i, as, results);
        }
        char reset = results.reset[0][i];
        if (reset == results.reset[1][i] && (reset == '0' || reset == '1'))
            measured.reset_value = reset == '1' ? 1 : 0;
        if (cell.data_out != nullptr)
            fault_of_kind[key] = output_fault(kind, i, results);
    }
    std::vector<bool> drives = drivers(found);
    for (size_t i = 0; i < found.cells.size(); ++i)
        if (const std::string &text = fault_of_kind[types.kind_of_cell[i]]; drives[i] && !text.empty())
            found.faults.push_back(
                {"cell", text + ": look at its mode pins and its model", found.cells[i].instance, "", ""});
}

} // namespace

CELL_TYPES try_cells(const BSDL_FILE &file, BOUNDARY_REGISTER &found, const std::vector<std::string> &models,
                     const std::string &tap_file) {
    CELL_TYPES types;
    if (models.empty())
        types.why_not = "there are no Verilog models of the boundary cells (--cells)";
    else if (!TOOL_exists(tap_file))
        types.why_not = "there is no " + tap_file;
    else if (run_shell("command -v iverilog >/dev/null 2>&1") != 0)
        types.why_not = "there is no iverilog on PATH (Debian package iverilog)";
    else if (!found.faults.empty())
        types.why_not = "the register has faults";
    if (!types.why_not.empty())
        return types;
    std::vector<TRIAL_KIND> kinds = find_kinds(found, modules_of(models), types);
    if (kinds.empty())
        return types;
    std::vector<std::string> files = models;
    files.push_back(tap_file);
    std::string output;
    types.why_not = run_bench(bench_text(file, found, kinds), files, output);
    TRIAL_RESULTS results = read_results(output);
    bool is_whole = !results.cases.empty() && results.reset[1].size() == kinds.size() &&
                    results.cases.back().captured.size() == kinds.size();
    if (types.why_not.empty() && !is_whole)
        types.why_not = "the simulation gave no results";
    if (types.why_not.empty())
        take_results(found, kinds, results, types);
    return types;
}
