// The boundary order file: every port in chain order with its pad, net, function and cell, and for each
// control cell the range of outputs that it governs.
#include "planning/report.hh"

#include "planning/port_pad.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unordered_map>

namespace {

constexpr int32_t LAST_CELL_KEY = 9998; // above it, a sort key marks a row without a cell

constexpr const char *HEADER =
    R"(// ---------------------------------------------------------------------------
//SCAN  Pin Signal Name   Signal Name          IO BUF    SIGNAL      SCAN CELL
//ORDER Num at the Pin    at the Core          NAME      FUNCTION    NAME
//                                            [TYPE]                [TYPE]
// ---------------------------------------------------------------------------
)";

const char *text_or(const char *text, const char *none) {
    return text != nullptr ? text : none;
}

std::string cell_type(const OPIN_ROW &row) {
    if (row.scan_cell == nullptr)
        return "*";
    if (row.input_cell.cell != nullptr)
        return format_text("%s,%s", row.input_cell.cell->name, row.scan_cell->name);
    return row.scan_cell->name;
}

// What the file shows of a row's order: its place in the chain, or the sort key of a row that has none there.
int32_t shown_order(const OPIN_ROW &row) {
    return row.order >= 0 ? row.order : row.sort_key;
}

// A row with a cell shows its place; the sort keys of the other rows are no places.
bool shows_order(const OPIN_ROW &row) {
    int32_t order = shown_order(row);
    return static_cast<uint32_t>(order) <= LAST_CELL_KEY ||
           (row.scan_cell != nullptr && order < DYNA_count(SCAN_TAB) && order >= 0);
}

// The inserted cells; of a row that got none, the cell that the pin file wanted for it and that it did not
// take.
const char *cell_names(const OPIN_ROW &row) {
    if (row.is_named || row.scan_cell_name != nullptr)
        return row.scan_cell_name;
    return PIN_TABLE[row.pin_index]->bsc_name;
}

void append_port_lines(std::string &text, const OPIN_ROW &row) {
    const char *instance = row.shown_pad.is_set ? row.shown_pad.instance : row.pad_instance;
    const char *pad_class = row.shown_pad.class_name != nullptr ? row.shown_pad.class_name : row.pad_class;
    bool known = row.kind >= 0 && row.kind < CELL_KIND_COUNT;
    text += shows_order(row) ? format_text(" %4d  ", shown_order(row)) : "    *  ";
    text += format_text("%4s %-13s %-20s %-9s %-11s %-11s\n", text_or(row.pin_num, "*"),
                        text_or(row.port_name, "*"), text_or(row.net_name, "*"), text_or(instance, "  *"),
                        known ? CELL_KINDS[row.kind].bso_word : "  *", text_or(cell_names(row), "  *"));
    if (pad_class == nullptr)
        return;
    std::string pad = pad_class;
    text.append(43, ' ');
    text += "   [" + pad + "]";
    text.append(pad.size() < 20 ? 20 - pad.size() : 0, ' ');
    text += "[" + cell_type(row) + "]\n";
}

// The ports of one control cell, by the orders that they show.
struct OE_RANGE {
    int32_t first = INT32_MAX, last = INT32_MIN, ports = 0;
};
using OE_RANGES = std::unordered_map<const CONTROL_ROW *, OE_RANGE>;

const CONTROL_ROW *control_of(const OPIN_ROW &row) {
    for (const CONTROL_KIND &kind : CONTROL_KINDS)
        if (row.*kind.field > 0)
            return &(*kind.table)[row.*kind.field - 1];
    return nullptr;
}

OE_RANGES ranges_of_controls() {
    OE_RANGES ranges;
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        const CONTROL_ROW *control = control_of(row);
        if (control == nullptr)
            continue;
        OE_RANGE &range = ranges[control];
        range.first = std::min(range.first, shown_order(row));
        range.last = std::max(range.last, shown_order(row));
        ++range.ports;
    }
    return ranges;
}

// The control cell stands in the chain right behind the first of its ports.
void append_control_block(std::string &text, const CONTROL_ROW &control, const OE_RANGE &range) {
    int32_t first = range.first;
    if (first < -1 || first + 1 >= DYNA_count(SCAN_TAB) || SCAN_TAB[first + 1].inst == nullptr)
        return;
    const char *cell = control.scan_cell != nullptr ? control.scan_cell->name : "*";
    // The place of a port whose cell is inside its pad is none: the cell's own name is right all the same.
    const char *inst = text_or(control.inst, SCAN_TAB[first + 1].inst);
    text += format_text("   [CONTROL SCAN CELL]    %-22s %-6c  %-11s %-11s\n", text_or(control.net_name, "*"),
                        '*', text_or(control.bsdl_type, "*"), inst);
    if (range.ports == 1)
        text += format_text("   [OE RANGE] %3d                   ", first);
    else
        text += format_text("   [OE RANGE] %3d:%3d               ", first, range.last);
    text += format_text("             *                  [%s]\n", cell);
}

std::string boundary_order_text() {
    std::string text = HEADER;
    OE_RANGES ranges = ranges_of_controls();
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        append_port_lines(text, row);
        const CONTROL_ROW *control = control_of(row);
        if (control != nullptr && shown_order(row) == ranges[control].last)
            append_control_block(text, *control, ranges[control]);
    }
    return text;
}

// A cell inside an input or bidirectional pad keeps the sort key of its port as its order, which is no place
// in the chain and can hide the blocks of control cells. Who reads the file has to know.
void warn_of_cells_in_pads(const std::string &name) {
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (is_bs_buffer(row.pad) && row.chain_place >= 0 && shown_order(row) != row.chain_place)
            vmr_printf("WARNING: (%s) the scan cell of port '%s' is inside its pad '%s'.\n"
                       "         Its place in the chain is %d, not its scan order %d.\n\n",
                       name.c_str(), row.port_name, text_or_undefined(row.pad_instance), row.chain_place,
                       shown_order(row));
}

// The file cannot be written: the user says whether the run goes on without it.
void ask_to_continue(const std::string &name) {
    vmr_printf("WARNING: can't open file '%s' to output information of pins.\n\n", name.c_str());
    console_printf("         Continue excuting? (y/n) : ");
    char answer[256];
    if (std::fgets(answer, sizeof answer, stdin) == nullptr || (answer[0] != 'y' && answer[0] != 'Y') ||
        (answer[1] != '\n' && answer[1] != '\0'))
        end_run();
}

} // namespace

void print_bso_file() {
    std::string name = std::string(TOP_MODULE) + ".bso";
    BSO_FILE = keep_text(name);
    if (!write_text_file(name, boundary_order_text())) {
        ask_to_continue(name);
        BSO_FILE = nullptr;
        return;
    }
    warn_of_cells_in_pads(name);
}
