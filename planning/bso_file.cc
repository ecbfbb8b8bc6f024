// The boundary order file: every port in chain order with its pad, net, function and cell, and for each
// control cell the range of outputs that it governs.
#include "planning/report.hh"

#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/port_table.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int32_t LAST_CELL_KEY = 9998; // above it, `order` marks a row without a cell

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

// A row with a cell shows its place in the chain; the sort keys of the other rows are no places.
bool shows_order(const OPIN_ROW &row) {
    uint32_t order = static_cast<uint32_t>(row.order);
    return order <= LAST_CELL_KEY ||
           (row.scan_cell != nullptr && row.order < DYNA_count(SCAN_TAB) && row.order >= 0);
}

void append_port_lines(std::string &text, const OPIN_ROW &row) {
    bool known = row.kind >= 0 && row.kind < CELL_KIND_COUNT;
    text += shows_order(row) ? format_text(" %4d  ", row.order) : "    *  ";
    text +=
        format_text("%4s %-13s %-20s %-9s %-11s %-11s\n", text_or(row.pin_num, "*"),
                    text_or(row.port_name, "*"), text_or(row.net_name, "*"), text_or(row.pad_instance, "  *"),
                    known ? CELL_KINDS[row.kind].bso_word : "  *", text_or(row.scan_cell_name, "  *"));
    if (row.pad_class == nullptr)
        return;
    std::string pad = row.pad_class;
    text.append(43, ' ');
    text += "   [" + pad + "]";
    text.append(pad.size() < 20 ? 20 - pad.size() : 0, ' ');
    text += "[" + cell_type(row) + "]\n";
}

// The control cell stands in the chain right behind the first of its ports.
void append_control_block(std::string &text, const CONTR_PIN_ROW &entry) {
    int32_t first = entry.orders[0];
    int32_t last = entry.orders[DYNA_count(entry.orders) - 1];
    if (first < -1 || first + 1 >= DYNA_count(SCAN_TAB) || SCAN_TAB[first + 1].inst == nullptr)
        return;
    const CONTROL_ROW *control = nullptr;
    if (entry.control > 0)
        control = &CONTROL_TAB[entry.control - 1];
    else if (entry.oe_control > 0)
        control = &CONTROL_OE_TAB[entry.oe_control - 1];
    const char *function = control != nullptr ? text_or(control->bsdl_type, "*") : "*";
    const char *cell = control != nullptr && control->scan_cell != nullptr ? control->scan_cell->name : "*";
    const char *net = control != nullptr ? text_or(control->net_name, "*") : "*";
    // The place of a port whose cell is inside its pad is none: the cell's own name is right all the same.
    const char *inst = control != nullptr ? text_or(control->inst, SCAN_TAB[first + 1].inst) : "*";
    text += format_text("   [CONTROL SCAN CELL]    %-22s %-6c  %-11s %-11s\n", net, '*', function, inst);
    if (DYNA_count(entry.orders) == 1)
        text += format_text("   [OE RANGE] %3d                   ", first);
    else
        text += format_text("   [OE RANGE] %3d:%3d               ", first, last);
    text += format_text("             *                  [%s]\n", cell);
}

/// The row of CONTR_PIN for each control cell: plain ones by their CONTROL_TAB reference, OE ones behind
/// them.
std::vector<const CONTR_PIN_ROW *> entries_by_control() {
    int32_t plain = DYNA_count(CONTROL_TAB);
    std::vector<const CONTR_PIN_ROW *> entries(plain + DYNA_count(CONTROL_OE_TAB));
    for (const CONTR_PIN_ROW &entry : rows(CONTR_PIN))
        if (DYNA_count(entry.orders) > 0)
            entries[entry.control > 0 ? entry.control - 1 : plain + entry.oe_control - 1] = &entry;
    return entries;
}

std::string boundary_order_text() {
    std::string text = HEADER;
    std::vector<const CONTR_PIN_ROW *> entries = entries_by_control();
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        append_port_lines(text, row);
        if (row.control <= 0 && row.oe_control <= 0)
            continue;
        int32_t control = row.control > 0 ? row.control - 1 : DYNA_count(CONTROL_TAB) + row.oe_control - 1;
        const int32_t *orders = entries[control]->orders;
        if (row.order == orders[DYNA_count(orders) - 1])
            append_control_block(text, *entries[control]);
    }
    return text;
}

void release_contr_pin() {
    for (CONTR_PIN_ROW &entry : rows(CONTR_PIN))
        DYNA_free(&entry.orders);
    if (CONTR_PIN != nullptr)
        DYNA_free(&CONTR_PIN);
    CONTR_PIN = nullptr;
}

// A cell inside an input or bidirectional pad keeps the sort key of its port as its order, which is no place
// in the chain and can hide the blocks of control cells. Who reads the file has to know.
void warn_of_cells_in_pads(const std::string &name) {
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (is_bs_buffer(row.pad) && row.chain_place >= 0 && row.order != row.chain_place)
            vmr_printf("WARNING: (%s) the scan cell of port '%s' is inside its pad '%s'.\n"
                       "         Its place in the chain is %d, not its scan order %d.\n\n",
                       name.c_str(), row.port_name, text_or(row.pad_instance, "*UNDEF*"), row.chain_place,
                       row.order);
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
    sort_pin_with_control();
    bool written = write_text_file(name, boundary_order_text());
    release_contr_pin();
    if (!written) {
        ask_to_continue(name);
        BSO_FILE = nullptr;
        return;
    }
    warn_of_cells_in_pads(name);
}
