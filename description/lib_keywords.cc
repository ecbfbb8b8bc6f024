// The keywords of the .lib language.
#include "description/keywords.hh"

#include "lib_parser.hh"

namespace {

using T = TAP_CELL;
using S = SCAN_CELL;
using B = BUFFER_CELL;
constexpr std::nullptr_t none = nullptr;

constexpr LIB_KEYWORD flag(const char *name, int32_t B::*field) {
    LIB_KEYWORD keyword{{name, LIB_FLAG_KEY}, PAD_BLOCKS};
    keyword.flag = field;
    return keyword;
}

constexpr LIB_KEYWORD size(const char *name, int32_t T::*field) {
    LIB_KEYWORD keyword{{name, LIB_SIZE_KEY}, TAP_BLOCK};
    keyword.size = field;
    return keyword;
}

constexpr LIB_KEYWORD names(const char *name, const char **S::*field) {
    LIB_KEYWORD keyword{{name, LIB_NAMES_KEY}, SCAN_BLOCK};
    keyword.names = field;
    return keyword;
}

// clang-format off
constexpr LIB_KEYWORD lib_words[] = {
    {{"%BUFFER", LIB_BUFFER_HEAD, BUFFER_CELL_NODE}},
    {{"%BS_BUFFER", LIB_BUFFER_HEAD, BS_BUFFER_NODE}},
    {{"%DIFFERENTIAL_VOLTAGE", LIB_BUFFER_HEAD, DIFF_V_BUFFER_CELL_NODE}},
    {{"%DIFFERENTIAL_CURRENT", LIB_BUFFER_HEAD, DIFF_I_BUFFER_CELL_NODE}},
    {{"%SCAN_CELL", LIB_CELL_HEAD, SCAN_CELL_NODE}},
    {{"%TAP_CONTROLLER", LIB_CELL_HEAD, TAP_CELL_NODE}},
    {{"%BCELL", LIB_NAME_KEY}, BS_BLOCK, none, none, &B::bcell},
    {{"%CLOCK_DR", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::clock_dr, &S::clock_dr},
    {{"%CONTROL_BCELL", LIB_NAME_KEY}, BS_BLOCK, none, none, &B::control_bcell},
    {{"%CONTROL_IN", LIB_NAME_KEY}, SCAN_BLOCK, none, &S::control_in},
    {{"%DATA_IN", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::data_in},
    {{"%DATA_OUT", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::data_out},
    {{"%EN_L", LIB_NAME_KEY}, SCAN_BLOCK | PAD_BLOCKS, none, &S::en_l, &B::en_l},
    {{"%EN_H", LIB_NAME_KEY}, SCAN_BLOCK | PAD_BLOCKS, none, &S::en_h, &B::en_h},
    {{"%EXTRA_", LIB_EXTRA, EXTRA_NODE}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK},
    {{"%FIRST_BCELL", LIB_NAME_KEY}, TAP_BLOCK, &T::first_bcell},
    {{"%FUNCTION", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::function},
    {{"%GROUP_METHOD", LIB_NAME_KEY}, TAP_BLOCK, &T::group_method},
    size("%GROUP_SIZE", &T::group_size),
    size("%DF_GROUP_SIZE", &T::df_group_size),
    {{"%HIGHZ_COMMAND", LIB_NAME_KEY}, TAP_BLOCK, &T::highz_command},
    {{"%HIGHZ", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::highz},
    {{"%IN_BCELL", LIB_NAME_KEY}, BS_BLOCK, none, none, &B::in_bcell},
    {{"%INOUT", LIB_NAME_KEY}, BUFFER_BLOCK | BS_BLOCK, none, none, &B::inout},
    {{"%INPUT", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::input},
    {{"%INPUT_P", LIB_NAME_KEY}, DIFF_BLOCK, none, none, &B::input},
    {{"%INPUT_M", LIB_NAME_KEY}, DIFF_BLOCK, none, none, &B::input_m},
    {{"%INSTANCE_NAME", LIB_NAME_KEY}, TAP_BLOCK, &T::instance_name},
    {{"%INV_BUFFER", LIB_INV_BUFFER, BUFFER_CELL_NODE}, TAP_BLOCK, &T::inv_buffer},
    flag("%KEEPER", &B::keeper),
    {{"%LAST_BCELL", LIB_NAME_KEY}, TAP_BLOCK, &T::last_bcell},
    {{"%LASTTDO", LIB_NAME_KEY}, TAP_BLOCK, &T::lasttdo},
    {{"%MODE_1", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | PAD_BLOCKS, &T::mode_1, &S::mode_1, &B::mode_1},
    {{"%MODE_2", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | PAD_BLOCKS, &T::mode_2, &S::mode_2, &B::mode_2},
    {{"%MODE_3", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | PAD_BLOCKS, &T::mode_3, &S::mode_3, &B::mode_3},
    {{"%MUX_DATA_IN", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::mux_data_in},
    {{"%MUX_IN1", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::mux_in1},
    {{"%MUX_IN2", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::mux_in2},
    {{"%MUX_IN3", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::mux_in3},
    {{"%MUX_OUT", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::mux_out},
    {{"%OE_MODE", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::oe_mode},
    names("%ORDER", &S::order),
    {{"%OUT_BCELL", LIB_NAME_KEY}, BS_BLOCK, none, none, &B::out_bcell},
    {{"%OUTPUT", LIB_NAME_KEY}, PAD_BLOCKS, none, none, &B::output},
    {{"%OUTPUT_P", LIB_NAME_KEY}, DIFF_BLOCK, none, none, &B::output},
    {{"%OUTPUT_M", LIB_NAME_KEY}, DIFF_BLOCK, none, none, &B::output_m},
    flag("%PULL_0", &B::pull_0),
    flag("%PULL_1", &B::pull_1),
    {{"%RST", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::rst},
    {{"%SHIFT_DR", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::shift_dr, &S::shift_dr},
    {{"%SIGNAL_BUFFER", LIB_NAME_KEY}, TAP_BLOCK, &T::signal_buffer},
    {{"%DF_SIGNAL_BUFFER", LIB_NAME_KEY}, TAP_BLOCK, &T::df_signal_buffer},
    names("%STD_NAME", &S::std_names),
    {{"%SYS_IN", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::sys_in},
    {{"%SYS_PIN", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::sys_pin},
    {{"%TAP_RESET", LIB_NAME_KEY}, TAP_BLOCK, &T::tap_reset},
    {{"%TDI", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::tdi, &S::tdi},
    {{"%TDO", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::tdo, &S::tdo},
    {{"%TDO_EN", LIB_NAME_KEY}, TAP_BLOCK, &T::tdo_en},
    {{"%TMS", LIB_NAME_KEY}, TAP_BLOCK, &T::tms},
    {{"%TCK", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::tck, &S::tck},
    {{"%TRST", LIB_NAME_KEY}, TAP_BLOCK, &T::trst},
    {{"%UPDATE_DR", LIB_NAME_KEY}, TAP_BLOCK | SCAN_BLOCK | BS_BLOCK, &T::update_dr, &S::update_dr},
    {{"%UPDATE_DR_OUT", LIB_NAME_KEY}, SCAN_BLOCK | BS_BLOCK, none, &S::update_dr_out},
    flag("%WEAK_0", &B::weak_0),
    flag("%WEAK_1", &B::weak_1),
};
// clang-format on

} // namespace

const KEYWORD *lib_keyword_lookup(const char *text) {
    static const auto &hash = *new KEYWORD_HASH(load_keywords(lib_words));
    return find_keyword(hash, text);
}
