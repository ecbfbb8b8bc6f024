#include "planning/report.hh"

#include "planning/cell_choice.hh"
#include "planning/tap_state.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <initializer_list>

namespace {

constexpr const char *RULE = "  ---------------------------------------\n";
constexpr const char *DOUBLE_RULE = "====================================================\n";

// A line of the TAP block: printed when `shown`.
struct REPORT_LINE {
    const char *label;
    const char *value;
    bool shown;
};

void print_lines(std::initializer_list<REPORT_LINE> lines) {
    for (const REPORT_LINE &line : lines)
        if (line.shown)
            vmr_printf("     %s: %s\n", line.label, line.value);
}

void print_global_ports() {
    vmr_printf("  ** Add Global Ports:\n%s", RULE);
    print_lines({
        {"Global tdi      ", GLOBAL_TDI, GLOBAL_TDI != nullptr},
        {"Global tdo      ", GLOBAL_TDO, GLOBAL_TDO != nullptr},
        {"Global tms      ", GLOBAL_TMS, GLOBAL_TMS != nullptr},
        {"Global tck      ", GLOBAL_TCK, GLOBAL_TCK != nullptr},
        {"Global trst     ", GLOBAL_TRST, GLOBAL_TRST != nullptr},
    });
    vmr_printf("%s", RULE);
}

void print_tap_pins() {
    vmr_printf("  ** Add a TAP module: %s\n%s", TAP_MODULE_NAME, RULE);
    print_lines({
        {"TAP tdi         ", TAP_PORT[PORT_TDI].tap_pin, true},
        {"TAP tdo         ", TAP_PORT[PORT_TDO].tap_pin, true},
        {"TAP tms         ", TAP_PORT[PORT_TMS].tap_pin, true},
        {"TAP tck         ", TAP_PORT[PORT_TCK].tap_pin, true},
        {"TAP trst        ", TAP_PORT[PORT_TRST].tap_pin, GLOBAL_TRST != nullptr},
        {"TAP first_bcell ", TAP_CONTR->first_bcell, true},
        {"TAP last_bcell  ", TAP_CONTR->last_bcell, true},
        {"TAP shift_dr    ", TAP_PIN[SIG_SHIFT], true},
        {"TAP clock_dr    ", TAP_PIN[SIG_CLOCK], true},
        {"TAP update_dr   ", TAP_PIN[SIG_UPDATE], BCELL_HAS[SIG_UPDATE] != 0},
        {"TAP highz_command ", TAP_PIN[SIG_HIGHZ], BCELL_HAS[SIG_HIGHZ] != 0},
        {"TAP mode1       ", TAP_PIN[SIG_MODE1], BCELL_HAS[SIG_MODE1] != 0},
        {"TAP mode2       ", TAP_PIN[SIG_MODE2], BCELL_HAS[SIG_MODE2] != 0},
        {"TAP mode3       ", TAP_PIN[SIG_MODE3], BCELL_HAS[SIG_MODE3] != 0},
        {"TAP reset       ", TAP_PIN[SIG_RST], BCELL_HAS[SIG_RST] != 0},
        {"TAP highz       ", TAP_HIZ_PIN, TAP_CONTR->highz_command != nullptr},
        {"TAP BCELL_TCK   ", BCELL_TCK, option(OPT_SYNCH)},
    });
    vmr_printf("%s", RULE);
}

// The sections of the report, in order.
struct CELL_SECTION {
    CELL_COUNTER counter;
    const char *word;
};

const CELL_SECTION SECTIONS[] = {
    {COUNT_CLOCK, "CLOCK"},
    {COUNT_INPUT, "INPUT"},
    {COUNT_INPUT_MUX, "INPUT MUX"},
    {COUNT_OUTPUT, "OUTPUT"},
    {COUNT_OUTPUT_MUX, "OUTPUT MUX"},
    {COUNT_BIDIR, "BIDIRECTIONAL"},
    {COUNT_BIDIR_MUX, "BIDIRECTIONAL MUX"},
    {COUNT_CONTROL, "CONTROL"},
    {COUNT_CONTROL_OE, "CONTROL OE"},
    {COUNT_INTERNAL, "INTERNAL"},
};

// A role that is not declared shows the cell that the pin file named for it.
const SCAN_CELL *cell_of_section(const CELL_SECTION &section) {
    if (const SCAN_CELL *cell = declared_cell(section.counter).cell; cell != nullptr)
        return cell;
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (row.scan_cell != nullptr && row.counter == section.counter)
            return row.scan_cell;
    return nullptr;
}

/// Prints the pins that a scan cell declares.
void print_various_scan_cell(const SCAN_CELL *cell) {
    static const struct {
        const char *label;
        const char *SCAN_CELL::*field;
    } lines[] = {
        {"%DATA_IN        ", &SCAN_CELL::data_in},       {"%DATA_OUT       ", &SCAN_CELL::data_out},
        {"%UPDATE_DR_OUT  ", &SCAN_CELL::update_dr_out}, {"%TDI            ", &SCAN_CELL::tdi},
        {"%TDO            ", &SCAN_CELL::tdo},           {"%TCK            ", &SCAN_CELL::tck},
        {"%SHIFT_DR       ", &SCAN_CELL::shift_dr},      {"%CLOCK_DR       ", &SCAN_CELL::clock_dr},
        {"%UPDATE_DR      ", &SCAN_CELL::update_dr},     {"%HIGHZ          ", &SCAN_CELL::highz},
        {"%MODE_1         ", &SCAN_CELL::mode_1},        {"%MODE_2         ", &SCAN_CELL::mode_2},
        {"%MODE_3         ", &SCAN_CELL::mode_3},        {"%RST            ", &SCAN_CELL::rst},
        {"%SYS_PIN        ", &SCAN_CELL::sys_pin},       {"%SYS_IN         ", &SCAN_CELL::sys_in},
        {"%MUX_DATA_IN    ", &SCAN_CELL::mux_data_in},   {"%OE_MODE        ", &SCAN_CELL::oe_mode},
    };
    vmr_printf("  .......................................\n");
    for (const auto &line : lines)
        if (cell->*line.field != nullptr)
            vmr_printf("    %s: %s\n", line.label, cell->*line.field);
    for (int32_t n = 0; n < DYNA_count(cell->extras); ++n)
        if (cell->extras[n] != nullptr)
            vmr_printf("    %%EXTRA_PIN_%d    : %s\n", n, cell->extras[n]);
}

void print_cell_section(const CELL_SECTION &section) {
    const SCAN_CELL *cell = cell_of_section(section);
    vmr_printf("%s  ** Add %d %s SCAN Cells: %s\n", RULE, SCAN_COUNT[section.counter], section.word,
               cell != nullptr ? cell->name : "*");
    if (cell != nullptr)
        print_various_scan_cell(cell);
}

} // namespace

void print_report() {
    vmr_printf("\n\n%s                 RIMWEAVE   Report\n%s", DOUBLE_RULE, DOUBLE_RULE);
    if (option(OPT_ADD_TAP)) {
        print_global_ports();
        print_tap_pins();
    }
    vmr_printf("\n  ** Add total %3d Boundary Scan Cells:\n", DYNA_count(SCAN_TAB));
    for (const CELL_SECTION &section : SECTIONS)
        if (SCAN_COUNT[section.counter] != 0)
            print_cell_section(section);
    if (DYNA_count(BUFFER_REPORT) > 0) {
        vmr_printf("\n  -----------------------------------------------\n");
        for (const char *line : rows(BUFFER_REPORT))
            vmr_printf("%s", line);
    }
    vmr_printf("%s\n", DOUBLE_RULE);
}
