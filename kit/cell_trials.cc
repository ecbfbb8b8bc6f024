#include "kit/cell_trials.hh"
#include "kit/engines.hh"
#include "kit/finished_run.hh"
#include "kit/trial_bench.hh"

#include "siblings/tool.hh"
#include "support/text.hh"

#include <map>
#include <set>

namespace {

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

/// True for a cell inside a bidirectional pad: what it sees hangs on an enable that it may hold itself.
bool goes_both_ways(const BOUNDARY_REGISTER &found, const REGISTER_CELL &cell) {
    int32_t pad = found.walk.pad_of_obj[static_cast<size_t>(cell.obj)];
    if (pad < 0)
        return false;
    const WALK_PAD_ROW &row = found.walk.pads[static_cast<size_t>(pad)];
    return row.core_in != nullptr && row.core_out != nullptr;
}

std::vector<TRIAL_KIND> find_kinds(const BOUNDARY_REGISTER &found, const VERILOG_MODULES &modules,
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
        if (goes_both_ways(found, cell) || !modules.contains(cell.class_name))
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
        if (at.instruction == TRIAL_CLAMP || !is_in_context(kind, at, context))
            continue;
        uint8_t sources = bit != '0' && bit != '1'
                              ? 0
                              : sources_in_case(cell, at, context, update_of(kind, at), bit == '1');
        captures[static_cast<size_t>(at.instruction)] &= sources;
    }
    return captures;
}

/// In SAMPLE the pad shows what the core gives, under the others the update stage.
std::string output_fault(const TRIAL_KIND &kind, size_t index, const TRIAL_RESULTS &results) {
    constexpr const char *NAMES[] = {"EXTEST", "SAMPLE", "INTEST", "CLAMP"};
    for (const TRIAL_CASE &at : results.cases) {
        bool is_sample = at.instruction == IN_SAMPLE;
        bool expected = is_sample ? at.core : update_of(kind, at);
        if (at.shown[index] != (expected ? '1' : '0'))
            return format_text("in %s the cell does not give out what %s", NAMES[at.instruction],
                               is_sample ? "the core gives" : "was loaded");
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
        bool is_pad =
            found.walk.pad_of_obj[static_cast<size_t>(found.cells[static_cast<size_t>(kind.cell)].obj)] >= 0;
        if (cell.data_out != nullptr || is_pad)
            fault_of_kind[key] = output_fault(kind, i, results);
    }
    std::vector<bool> drives = drivers(found);
    for (size_t i = 0; i < found.cells.size(); ++i)
        if (const std::string &text = fault_of_kind[types.kind_of_cell[i]]; drives[i] && !text.empty())
            found.faults.push_back(
                {"cell", text + ": look at its mode pins and its model", found.cells[i].instance, "", ""});
}

bool agrees(const std::string &told, const std::string &seen) {
    bool same = told.size() == seen.size();
    for (size_t i = 0; same && i < told.size(); ++i)
        same = told[i] == seen[i] || told[i] == 'X';
    return same;
}

/// The TAP's text has to be that of the description: opcodes, codes and registers.
void refuse_tap(const BSDL_FILE &file, BOUNDARY_REGISTER &found, const TRIAL_RESULTS &results) {
    auto fault = [&found](const std::string &text) {
        found.faults.push_back({"tap", text + "; is the run older than its BSC file?", "", "", ""});
    };
    bool is_external = walk_pin(found.tap_obj, "IDCODE[0]") >= 0;
    if (!file.idcode.empty() && !is_external && !agrees(file.idcode, results.idcode))
        fault("the TAP's IDCODE is " + results.idcode);
    if (!agrees(file.capture, results.capture))
        fault("the TAP's instruction register captures " + results.capture);
    for (size_t i = 0; i < file.instructions.size(); ++i) {
        const BSDL_INSTRUCTION &row = file.instructions[i];
        bool is_outside = row.access == "BOUNDARY" || row.length > 0;
        int32_t length = is_outside ? TRIAL_BOUNDARY : row.access == "BYPASS" ? 1 : 32;
        if (!row.is_private && results.lengths[i] != length)
            fault("instruction " + row.name + " does not select register " + row.access);
    }
}

} // namespace

CELL_TYPES try_cells(const BSDL_FILE &file, BOUNDARY_REGISTER &found, const std::vector<std::string> &models,
                     const std::string &tap_file) {
    CELL_TYPES types;
    if (models.empty())
        types.why_not = "there are no Verilog models of the boundary cells (--cells)";
    else if (!found.faults.empty())
        types.why_not = "the register has faults";
    else
        types.why_not = verilog_obstacle(tap_file) + engine_obstacle("iverilog", "iverilog");
    if (!types.why_not.empty())
        return types;
    std::vector<TRIAL_KIND> kinds = find_kinds(found, modules_of(models), types);
    if (kinds.empty()) {
        types.why_not = "the models (--cells) hold none of the boundary cells";
        return types;
    }
    std::vector<std::string> files = models;
    files.push_back(tap_file);
    TRIAL_RESULTS results;
    types.why_not = play_trials(file, found, kinds, files, results);
    if (types.why_not.empty())
        refuse_tap(file, found, results);
    if (types.why_not.empty())
        take_results(found, kinds, results, types);
    return types;
}
