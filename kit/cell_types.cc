#include "kit/cell_types.hh"

namespace {

constexpr uint8_t NONE = 0; ///< the type does not say

/// One line of CELL_INFO of the standard package: type and context, then what is captured in EXTEST, SAMPLE
/// and INTEST (IEEE 1149.1-2001). In the order in which types are tried.
struct TYPE_ROW {
    std::string_view type;
    CELL_CONTEXT context;
    CAPTURES captures;
};
constexpr CAPTURES PI3 = {FROM_PI, FROM_PI, FROM_PI};
constexpr CAPTURES PI_PI_UPD = {FROM_PI, FROM_PI, FROM_UPD};
constexpr CAPTURES UPD_PI_PI = {FROM_UPD, FROM_PI, FROM_PI};
constexpr CAPTURES PO_PI_PI = {FROM_PO, FROM_PI, FROM_PI};
constexpr CAPTURES PO_PO = {FROM_PO, FROM_PO, NONE};
constexpr CAPTURES PI_PI = {FROM_PI, FROM_PI, NONE};

constexpr TYPE_ROW TYPES[] = {
    {"BC_1", AS_INPUT, PI3},          {"BC_1", AS_OUTPUT2, PI3},        {"BC_1", AS_OUTPUT3, PI3},
    {"BC_1", AS_CONTROL, PI3},        {"BC_1", AS_CONTROLR, PI3},       {"BC_1", AS_INTERNAL, PI3},
    {"BC_2", AS_INPUT, PI_PI_UPD},    {"BC_2", AS_OUTPUT2, UPD_PI_PI},  {"BC_2", AS_OUTPUT3, UPD_PI_PI},
    {"BC_2", AS_CONTROL, UPD_PI_PI},  {"BC_2", AS_CONTROLR, UPD_PI_PI}, {"BC_2", AS_INTERNAL, PI_PI_UPD},
    {"BC_4", AS_INPUT, PI_PI},        {"BC_4", AS_CLOCK, PI3},          {"BC_4", AS_OBSERVE_ONLY, PI3},
    {"BC_3", AS_INPUT, PI3},          {"BC_3", AS_INTERNAL, PI3},       {"BC_7", AS_BIDIR_IN, PI_PI_UPD},
    {"BC_7", AS_BIDIR_OUT, PO_PI_PI}, {"BC_8", AS_BIDIR_IN, PI_PI},     {"BC_8", AS_BIDIR_OUT, PO_PO},
    {"BC_9", AS_OUTPUT2, PO_PI_PI},   {"BC_9", AS_OUTPUT3, PO_PI_PI},   {"BC_10", AS_OUTPUT2, PO_PO},
    {"BC_10", AS_OUTPUT3, PO_PO},     {"BC_5", AS_INPUT, PI_PI_UPD},    {"BC_5", AS_CONTROL, PI_PI_UPD},
};

const TYPE_ROW *find_row(std::string_view type, CELL_CONTEXT context) {
    for (const TYPE_ROW &row : TYPES)
        if (row.type == type && row.context == context)
            return &row;
    return nullptr;
}

} // namespace

std::vector<CELL_CONTEXT> contexts_of(ROW_KIND kind, bool resets) {
    switch (kind) {
    case ROW_INPUT:
        return {AS_INPUT};
    case ROW_CLOCK:
        return {AS_CLOCK};
    case ROW_OBSERVE:
        return {AS_OBSERVE_ONLY};
    case ROW_OUTPUT2:
    case ROW_OPEN:
        return {AS_OUTPUT2};
    case ROW_OUTPUT3:
        return {AS_OUTPUT3};
    case ROW_BIDIR:
        return {AS_BIDIR_IN, AS_BIDIR_OUT};
    case ROW_CONTROL:
        return {resets ? AS_CONTROLR : AS_CONTROL};
    case ROW_INTERNAL:
        break;
    }
    return {AS_INTERNAL};
}

bool type_has(std::string_view type, CELL_CONTEXT context, bool with_intest) {
    const TYPE_ROW *row = find_row(type, context);
    return row != nullptr && (!with_intest || row->captures[IN_INTEST] != NONE);
}

bool type_fits(std::string_view type, CELL_CONTEXT context, const CAPTURES &captures, bool with_intest) {
    const TYPE_ROW *row = find_row(type, context);
    if (row == nullptr)
        return false;
    for (size_t i = 0; i < (with_intest ? 3U : 2U); ++i)
        if ((row->captures[i] & captures[i]) == 0)
            return false;
    return true;
}

std::string first_fit(const std::map<CELL_CONTEXT, CAPTURES> &captures, bool with_intest) {
    for (const char *type : {"BC_1", "BC_2", "BC_4", "BC_3", "BC_7", "BC_8", "BC_9", "BC_10", "BC_5"}) {
        bool fits = true;
        for (const auto &[context, sources] : captures)
            fits = fits && type_fits(type, context, sources, with_intest);
        if (fits)
            return type;
    }
    return "";
}
