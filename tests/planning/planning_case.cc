#include "tests/planning/planning_case.hh"

#include "description/lookups.hh"
#include "description/reader.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/text.hh"
#include "tests/planning/design_builder.hh"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::string_view SCAN_PINS = "%TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck;";

constexpr std::string_view LIBRARY = R"(
%SCAN_CELL BC_IN  { $ %DATA_IN di; %DATA_OUT do; }
%SCAN_CELL BC_CLK { $ %DATA_IN di; }
%SCAN_CELL BC_OUT { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; }
%SCAN_CELL BC_HZ  { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; %HIGHZ hz; }
%SCAN_CELL BC_OE  { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; %OE_MODE oe; }
%SCAN_CELL BC_OEHZ { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; %OE_MODE oe; %HIGHZ hz; }
%SCAN_CELL BC_BI  { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; %SYS_PIN sp; %SYS_IN sy; }
%SCAN_CELL BC_CTL { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %MODE_1 m; %RST r; }
%SCAN_CELL BC_COE { $ %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %OE_MODE oe; }
%SCAN_CELL BC_MI  { $ %DATA_IN di; %UPDATE_DR up; %UPDATE_DR_OUT uo; }
%SCAN_CELL BC_MO  { $ %UPDATE_DR up; %UPDATE_DR_OUT uo; }
%SCAN_CELL BC_MB  { $ %SYS_PIN sp; %UPDATE_DR up; %UPDATE_DR_OUT uo; }
%BUFFER IBUF { %INPUT PAD; %OUTPUT C; }
%BUFFER CBUF { %FUNCTION clock; %INPUT PAD; %OUTPUT C; }
%BUFFER OBUF { %INPUT I; %OUTPUT PAD; }
%BUFFER TBUF { %INPUT i; %OUTPUT PAD; %EN_L OEN; %EN_H EN; }
%BUFFER SAME { %INPUT I; %OUTPUT PAD; %EN_L I; }
%BUFFER HBUF { %INPUT I; %OUTPUT PAD; %EN_H EN; }
%BUFFER EBUF { %OUTPUT PAD; %EN_L OEN; }
%BUFFER BBUF { %INPUT I; %OUTPUT C; %INOUT PAD; %EN_L OEN; }
%DIFFERENTIAL_VOLTAGE DINP { %INPUT_P PP; %INPUT_M PM; %OUTPUT C; }
%DIFFERENTIAL_CURRENT DOUT { %INPUT I; %OUTPUT_P PP; %OUTPUT_M PM; }
%BS_BUFFER BSIN { $ %INPUT PAD; %OUTPUT C; %DATA_IN di; %MODE_2 m2; }
%BS_BUFFER BSIO { $ %INPUT I; %OUTPUT C; %EN_L OEN; %DATA_IN di; %DATA_OUT do; %UPDATE_DR up; %SYS_PIN sp;
                  %MODE_1 m; }
%BUFFER MUXI { %INPUT PAD; %OUTPUT C; %MUX_IN2 T; %MODE_2 S; }
%BUFFER MUXC { %FUNCTION CLOCK; %INPUT PAD; %OUTPUT C; %MUX_IN2 T; %MODE_2 S; }
%BUFFER MUXO { %INPUT I; %OUTPUT PAD; %MUX_IN1 T; %MODE_1 S; }
%BUFFER MUXT { %INPUT I; %OUTPUT PAD; %EN_L OEN; %MUX_IN1 T; %MODE_1 S; }
%BUFFER MUXE { %OUTPUT PAD; %EN_L OEN; %MUX_IN1 T; %MODE_1 S; }
%BUFFER MXB1 { %INPUT I; %OUTPUT C; %INOUT PAD; %EN_L OEN; %MUX_IN1 T; %MODE_1 S; }
%BUFFER MXB2 { %INPUT I; %OUTPUT C; %INOUT PAD; %EN_L OEN; %MUX_IN1 T; %MODE_1 S; %MUX_IN2 T2; %MODE_2 S2; }
%BUFFER PLAIN { %INPUT A; %OUTPUT Z; }
%BUFFER FEED  { %FUNCTION BUF; %INPUT A; %OUTPUT Z; }
)";

constexpr std::string_view USUAL_ROLES = R"(
    %INPUT_SCAN BC_IN; %CLOCK_SCAN BC_CLK; %OUTPUT_SCAN BC_OUT; %BIDIR_SCAN BC_BI; %CONTROL_SCAN BC_CTL;
    %CONTROL_OE_SCAN BC_COE; %INPUT_MUX_SCAN BC_MI; %OUTPUT_MUX_SCAN BC_MO; %BIDIR_MUX_SCAN BC_MB;
    %INTERNAL_SCAN BC_IN; %OBSERVE_ONLY_SCAN BC_CLK;
)";

std::string with_scan_pins(std::string_view text) {
    std::string whole(text);
    for (size_t at; (at = whole.find('$')) != whole.npos;)
        whole.replace(at, 1, SCAN_PINS);
    return whole;
}

void write_descriptions(const scratch_folder &scratch, const PLANNING_CASE &planned) {
    scratch.write("chip.lib", with_scan_pins(LIBRARY) + with_scan_pins(planned.library) +
                                  "%TAP_CONTROLLER my_tap { %MODE_1 mode1; %MODE_2 mode2; %UPDATE_DR upd; " +
                                  planned.tap_items + " }\n");
    scratch.write("chip.bsc",
                  std::string("%GLOBAL_TDI tdi; %GLOBAL_TDO tdo;\n%TAP_MODULE { %MODULE_NAME my_tap; "
                              "%INSTANCE_NAME u_tap; }\n%SCAN_CELLS {") +
                      (planned.roles != nullptr ? planned.roles : std::string(USUAL_ROLES).c_str()) +
                      "}\n%SKIP_SIGNAL_NAMES { tdi, tdo, skip; }\n%PIN_LIST { %FILE_NAME chip.pin; }\n" +
                      planned.settings);
    scratch.write("chip.pin", std::string("%PACKAGE_TYPE chip 99;\n") + planned.pins);
    design_builder design(scratch.path("chip.c.sdb"));
    design.add(planned.netlist);
    design.save();
    for (const char *cell : {"BC_IN", "BC_OUT", "BC_HZ", "BC_OE", "BC_BI", "BC_MO", "BSIO"}) {
        design_builder library_cell(scratch.path(std::string(cell) + ".sdb"));
        library_cell.add("in oe");
        library_cell.save();
    }
}

void set_the_run_up(const PLANNING_CASE &planned) {
    for (int each : planned.options)
        JTAG_OPTION[each] = 1;
    // Other tests of the program may have left roles set.
    for (const char **role : {&INPUT_SCAN, &CLOCK_SCAN, &OUTPUT_SCAN, &BIDIR_SCAN, &CONTROL_SCAN,
                              &CONTROL_OE_SCAN, &INPUT_MUX_SCAN, &CLOCK_MUX_SCAN, &OUTPUT_MUX_SCAN,
                              &BIDIR_MUX_SCAN, &INTERNAL_SCAN, &OBSERVE_ONLY_SCAN})
        *role = nullptr;
    CMD_set_path(nullptr, ".", nullptr);
    TOP_MODULE = "chip";
    JTAG_LIB_FILE = "chip.lib";
    JTAG_BSC_FILE = "chip.bsc";
    MODULE_C_SDB = "chip.c.sdb";
    bsdft_init();
    get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0);
    TAP_CONTR = get_tap_cell(TAP_MODULE_NAME);
    if (TAP_CONTR->highz_command != nullptr)
        HIZ_BUF = get_buffer(TAP_CONTR->signal_buffer);
    init_multi_io_tables();
    open_sdb_file(MODULE_C_SDB);
    rimweave_init();
}

const char *text(const char *value) {
    return value != nullptr ? value : "-";
}

/// "a kind 1 BC_IN net n_a pins -/C", with what is not plain behind it.
std::string show_row(const OPIN_ROW &row) {
    std::string line = format_text("%s kind %d %s net %s pins %s/%s", row.port_name, row.kind,
                                   row.scan_cell != nullptr ? row.scan_cell->name : "-", text(row.net_name),
                                   text(row.pad_input), text(row.pad_output));
    if (row.control != 0)
        line += format_text(" control %d", row.control);
    if (row.oe_control != 0)
        line += format_text(" oe_control %d", row.oe_control);
    if (row.inverted != 0)
        line += " inverted";
    const int32_t traced[] = {row.mode_net[0], row.mode_net[1], row.mux_in1_net, row.mux_in2_net};
    for (int i = 0; i < 4; ++i)
        if (traced[i] >= 0)
            line += format_text(" %s %d", std::vector{"mode1", "mode2", "mux1", "mux2"}[i], traced[i]);
    return line + "\n";
}

/// "a 0 BC_IN", and who makes which control.
std::string show_order(const OPIN_ROW &row) {
    std::string line = format_text("%s %d", row.port_name, row.order);
    if (row.control > 0 || row.oe_control > 0)
        line += format_text(" %s%d", row.control > 0 ? "c" : "oe", row.control + row.oe_control);
    if (row.control < 0 || row.oe_control < 0)
        line += format_text(" highz%d", row.highz_group);
    return line + (row.control_driver != 0 ? " makes it\n" : "\n");
}

std::string show_modules() {
    std::string text = format_text("several %d\n", multi_io_module_flagG);
    for (const MULTI_IO_ROW &row : rows(MULTI_IO_TAB))
        text += format_text("%s %s copy %d parent %d\n", row.class_name, row.inst_name, row.copy, row.parent);
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        text += format_text("%s in %d control %d\n", row.port_name, row.io_module, row.control);
    return text;
}

std::string plan(PLANNING_STAGE stage) {
    produce_opin_control_tab();
    if (stage == PLANNING_STAGE::MODULES)
        return show_modules();
    std::string result;
    if (stage == PLANNING_STAGE::CHAIN) {
        arrange_opin_tab_from_tdo();
        setup_driving_control_cell_and_highz_buf();
        bs_reset_standard_port_ptr_of_TAP();
    }
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        result += stage == PLANNING_STAGE::ROWS ? show_row(row) : show_order(row);
    return result;
}

} // namespace

planning_result run_planning(const PLANNING_CASE &planned, PLANNING_STAGE stage) {
    scratch_folder scratch;
    write_descriptions(scratch, planned);
    std::fflush(nullptr);
    pid_t child = fork();
    if (child == 0) {
        if (chdir(scratch.dir.c_str()) != 0 || freopen("console", "w", stdout) == nullptr)
            _exit(99);
        set_the_run_up(planned);
        scratch.write("rows", plan(stage));
        free_planning_tables();
        std::fflush(stdout);
        _exit(0);
    }
    int raw = 0;
    waitpid(child, &raw, 0);
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : 1000 + WTERMSIG(raw), scratch.read("console"),
            scratch.read("rows")};
}
