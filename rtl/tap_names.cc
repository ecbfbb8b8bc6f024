// The names of the TAP's ports: from the library where it gives them, else the defaults, with a warning for
// each.
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_build.hh"
#include "rtl/tap_model.hh"

#include "description/hash_tables.hh"
#include "description/lookups.hh"
#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// A chain port is a plain port: it has no active level, and its name is used from the record itself.
enum NAME_RULE { NAME_PLAIN, NAME_CHAIN_PORT };

/// One port of the TAP. `needed` is null for a port that is always there.
struct TAP_NAME {
    const char *keyword;
    const char *TAP_CELL::*field;
    const char **global; ///< null when the record's own field is used
    const char *fallback;
    bool (*needed)();
    NAME_RULE rule;
};

template <CONTROL_SIGNAL signal> bool cells_need() {
    return BCELL_HAS[signal] != 0;
}

bool chip_has_trst() {
    return GLOBAL_TRST != nullptr;
}

const TAP_NAME TAP_NAMES[] = {
    {"%TDI", &TAP_CELL::tdi, &TAP_PORT[PORT_TDI].tap_pin, "TDI", nullptr, NAME_PLAIN},
    {"%TDO", &TAP_CELL::tdo, &TAP_PORT[PORT_TDO].tap_pin, "TDO", nullptr, NAME_PLAIN},
    {"%TMS", &TAP_CELL::tms, &TAP_PORT[PORT_TMS].tap_pin, "TMS", nullptr, NAME_PLAIN},
    {"%TCK", &TAP_CELL::tck, &TAP_PORT[PORT_TCK].tap_pin, "TCK", nullptr, NAME_PLAIN},
    {"%TRST", &TAP_CELL::trst, &TAP_PORT[PORT_TRST].tap_pin, "-TRST", chip_has_trst, NAME_PLAIN},
    {"%SHIFT_DR", &TAP_CELL::shift_dr, &TAP_PIN[SIG_SHIFT], "SHIFT_DR", nullptr, NAME_PLAIN},
    {"%CLOCK_DR", &TAP_CELL::clock_dr, &TAP_PIN[SIG_CLOCK], "CLOCK_DR", nullptr, NAME_PLAIN},
    {"%FIRST_BCELL", &TAP_CELL::first_bcell, nullptr, "first_Bcell", nullptr, NAME_CHAIN_PORT},
    {"%LAST_BCELL", &TAP_CELL::last_bcell, nullptr, "BOUNDARY_out", nullptr, NAME_CHAIN_PORT},
    {"%UPDATE_DR", &TAP_CELL::update_dr, &TAP_PIN[SIG_UPDATE], "UPDATE_DR", cells_need<SIG_UPDATE>,
     NAME_PLAIN},
    {"%HIGHZ_COMMAND", &TAP_CELL::highz_command, &TAP_PIN[SIG_HIGHZ], "HIGHZ", cells_need<SIG_HIGHZ>,
     NAME_PLAIN},
    {"%TAP_RESET", &TAP_CELL::tap_reset, &TAP_PIN[SIG_RST], "-RESET", cells_need<SIG_RST>, NAME_PLAIN},
    {"%MODE_1", &TAP_CELL::mode_1, &TAP_PIN[SIG_MODE1], "MODE1", cells_need<SIG_MODE1>, NAME_PLAIN},
    {"%MODE_2", &TAP_CELL::mode_2, &TAP_PIN[SIG_MODE2], "MODE2", cells_need<SIG_MODE2>, NAME_PLAIN},
    {"%MODE_3", &TAP_CELL::mode_3, &TAP_PIN[SIG_MODE3], "MODE3", cells_need<SIG_MODE3>, NAME_PLAIN},
};

const TAP_NAME HIGHZ_COMMAND_NAME = {
    "%HIGHZ_COMMAND", &TAP_CELL::highz_command, &TAP_HIZ_PIN, "HIGHZ", nullptr, NAME_PLAIN};

void warn_default_name(const std::string &keyword, const std::string &name) {
    vmr_printf("WARNING: (%s) can't find %s in %%TAP_CONTROLLER %s.\n"
               "         Using default name -> %s.\n\n",
               JTAG_LIB_FILE, keyword.c_str(), TAP_CONTR->name, name.c_str());
}

void resolve_name(const TAP_NAME &row) {
    if (row.needed != nullptr && !row.needed())
        return;
    const char *&field = TAP_CONTR->*row.field;
    if (field == nullptr) {
        warn_default_name(row.keyword, row.fallback);
        field = row.fallback;
    }
    if (row.rule == NAME_CHAIN_PORT && is_active_low(field)) {
        vmr_printf("WARNING: low active in %s is of no sence.\n         '-' will be eliminated!\n\n",
                   row.keyword);
        field = without_minus(field);
    }
    if (row.global != nullptr)
        *row.global = without_minus(field);
}

void resolve_module_and_instance() {
    if (TAP_INSTANCE_NAME == nullptr) {
        vmr_printf("WARNING: (%s) can't find %%INSTANCE_NAME in %%TAP_MODULE.\n"
                   "         Using default name -> TAP.\n\n",
                   JTAG_BSC_FILE);
        TAP_INSTANCE_NAME = "TAP";
    }
    if (TAP_MODULE_NAME == nullptr) {
        vmr_printf("WARNING: (%s) can't find %%MODULE_NAME in %%TAP_MODULE.\n"
                   "         Using default name -> vmr_tap.\n\n",
                   JTAG_BSC_FILE);
        TAP_MODULE_NAME = "vmr_tap";
    }
    TAP_CONTR = get_tap_cell(TAP_MODULE_NAME);
    if (TAP_CONTR == nullptr) {
        TAP_CONTR = new_record<TAP_CELL>();
        TAP_CONTR->name = TAP_MODULE_NAME;
        TAP_CONTR->extras = DYNA_init<const char *>();
    }
}

/// Each %EXTRA_n that the cells have and the library does not name takes its default, also one in the middle.
void resolve_extra_names() {
    for (int32_t n = 1; n <= BCELL_EXTRA; ++n) {
        if (DYNA_count(TAP_CONTR->extras) < n)
            append_row<const char *>(TAP_CONTR->extras, nullptr);
        if (TAP_CONTR->extras[n - 1] != nullptr)
            continue;
        const char *name = keep_format("EXTRA%d", n);
        warn_default_name(format_text("%%EXTRA_%d", n), name);
        TAP_CONTR->extras[n - 1] = name;
    }
}

void resolve_names() {
    resolve_module_and_instance();
    if (TAP_CONTR->tdo_en != nullptr)
        TAP_TDO_EN_PIN = without_minus(TAP_CONTR->tdo_en);
    if (!BCELL_HAS[SIG_RST])
        TAP_PIN[SIG_RST] = "RESET";
    for (const TAP_NAME &row : TAP_NAMES)
        resolve_name(row);
    resolve_extra_names();
    if (has_instruction(KNOWN_HIGHZ)) {
        resolve_name(HIGHZ_COMMAND_NAME);
        HIZ_OVERLAP = check_hiz_signal();
    }
    DYNA_free(&TAP_EXTRA_PIN);
    TAP_EXTRA_PIN = DYNA_init<const char *>();
    for (int32_t n = 0; n < BCELL_EXTRA; ++n)
        append_row(TAP_EXTRA_PIN, without_minus(TAP_CONTR->extras[n]));
}

} // namespace

void jtag_init() {
    each_apart({set_up_various_flags, resolve_names});
}
