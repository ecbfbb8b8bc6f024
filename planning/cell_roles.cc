#include "planning/cell_roles.hh"

namespace {

constexpr PIN_NEED DATA_OUT = {"%DATA_OUT", &SCAN_CELL::data_out};
constexpr PIN_NEED UPDATE_DR = {"%UPDATE_DR", &SCAN_CELL::update_dr};
constexpr PIN_NEED UPDATE_DR_OUT = {"%UPDATE_DR_OUT", &SCAN_CELL::update_dr_out};
constexpr PIN_NEED SYS_PIN = {"%SYS_PIN", &SCAN_CELL::sys_pin};

constexpr CELL_ROLE control_role(const char **declared) {
    return {declared, "%CONTROL_SCAN", {DATA_IN, DATA_OUT, UPDATE_DR}, WARN_NO_MODE, "CONTORL SCAN"};
}

constexpr CELL_ROLE oe_role(const char **declared, const char *keyword, const char *oe_keyword) {
    return {declared, keyword, {DATA_IN, UPDATE_DR, DATA_OUT}, NO_WARNING, nullptr, oe_keyword};
}

} // namespace

const CELL_ROLE CELL_ROLES[CELL_COUNTER_COUNT] = {
    {&INPUT_SCAN, "%INPUT_SCAN", {DATA_IN}},
    {&CLOCK_SCAN, "%CLOCK_SCAN", {DATA_IN}},
    {&OUTPUT_SCAN, "%OUTPUT_SCAN", {DATA_IN, DATA_OUT, UPDATE_DR}, WARN_NO_MODE},
    {&BIDIR_SCAN, "%BIDIR_SCAN", {DATA_IN, DATA_OUT, UPDATE_DR, SYS_PIN}, WARN_NO_MODE},
    control_role(&CONTROL_SCAN),
    control_role(&CONTROL_LOW_SCAN),
    control_role(&CONTROL_HIGH_SCAN),
    {&INPUT_MUX_SCAN, "%INPUT_MUX_SCAN", {DATA_IN, UPDATE_DR_OUT, UPDATE_DR}, WARN_ANY_MODE},
    {&CLOCK_MUX_SCAN, "%CLOCK_MUX_SCAN", {DATA_IN, UPDATE_DR_OUT, UPDATE_DR}, WARN_ANY_MODE},
    {&OUTPUT_MUX_SCAN, "%OUTPUT_MUX_SCAN", {UPDATE_DR, UPDATE_DR_OUT}, WARN_ANY_MODE},
    {&BIDIR_MUX_SCAN, "%BIDIR_MUX_SCAN", {SYS_PIN, UPDATE_DR, UPDATE_DR_OUT}},
    {&CONTROL_MUX_SCAN, "%CONTROL_MUX_SCAN", {DATA_IN, UPDATE_DR, UPDATE_DR_OUT}, WARN_ANY_MODE},
    oe_role(&CONTROL_OE_SCAN, "%CONTROL_OE_SCAN", "%CONRTOL_OE_SCAN"),
    oe_role(&CONTROL_OE_LOW_SCAN, "%CONTROL_OE_LOW_SCAN", "%CONRTOL_OE_LOW_SCAN"),
    oe_role(&CONTROL_OE_HIGH_SCAN, "%CONTROL_OE_HIGH_SCAN", "%CONRTOL_OE_HIGH_SCAN"),
    {&INTERNAL_SCAN, "%INTERNAL_SCAN", {}},
};
