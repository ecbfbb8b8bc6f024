// The names of the TAP's ports: from the library where it gives them, else the defaults, with a warning for
// each.
#include "planning/planning.hh"
#include "planning/tap_needs.hh"
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

void warn_default_name(const std::string &keyword, const std::string &name) {
    vmr_printf("WARNING: (%s) can't find %s in %%TAP_CONTROLLER %s.\n"
               "         Using default name -> %s.\n\n",
               JTAG_LIB_FILE, keyword.c_str(), TAP_CONTR->name, name.c_str());
}

void resolve_name(int32_t id) {
    if (!tap_pin_is_wanted(id))
        return;
    const TAP_PIN_ROW &row = TAP_PIN_ROWS[id];
    const char *&field = TAP_CONTR->*row.field;
    if (field == nullptr) {
        warn_default_name(row.keyword, row.fallback);
        field = row.fallback;
    }
    // A chain port is a plain port: it has no active level.
    if (row.name == nullptr && is_active_low(field)) {
        vmr_printf("WARNING: low active in %s is of no sence.\n         '-' will be eliminated!\n\n",
                   row.keyword);
        field = without_minus(field);
    }
    if (row.name != nullptr)
        *row.name = without_minus(field);
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
    for (int32_t id = 0; id < TAP_COMMAND; ++id)
        resolve_name(id);
    resolve_extra_names();
    if (has_instruction(KNOWN_HIGHZ)) {
        resolve_name(TAP_COMMAND);
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
