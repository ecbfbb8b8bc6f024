// Names and sizes of the tables of a file, and the names of the class kinds.
#include "sdb/sdb_format.hh"

#include <array>
#include <cstring>

const SDB_TABLE_LAYOUT sdb_table_layout[SDB_FIXED_TAB_COUNT] = {
    {"CLAS", 32, 512, 256},   {"PORT", 16, 1024, 512}, {"OBJ", 12, 5120, 5120}, {"NET", 8, 5120, 5120},
    {"NODE", 20, 5120, 5120}, {"PIN", 8, 5120, 2048},  {"SOBJ", 4, 5120, 5120}, {"SNET", 4, 5120, 5120},
    {"XPIN", 4, 1024, 256},   {"XNOD", 4, 1024, 256},  {"PREF", 12, 512, 5120}, {"XPOR", 4, 512, 128},
    {"PROP", 4, 1024, 512},   {"S13", 0, 128, 64},     {"S14", 0, 128, 64},     {"S15", 732, 128, 32},
};

namespace {

/// A run of kinds: the index of the first and the names from there on.
struct kind_run {
    int32_t first;
    const char *names[26];
};

constexpr kind_run kind_runs[] = {
    {0, {"DESIGN", "CELL", "PLA", "FUNCT", "BOOL", "C", "CUDP"}},
    {16, {"BUF", "INV",  "AND",    "NAND",   "OR",     "NOR",    "XOR",    "XNOR", "MUX",
          "ALU", "MPY",  "FORCE0", "FORCE1", "FORCEX", "FORCEZ", "FORCEB", "DOT",  "WAND",
          "WOR", "WIRE", "DOT0",   "DOT1",   "DOTX",   "DOTZ",   "DOTQ"}},
    {45,
     {"REPEATER", "PULLDOWN", "PULLUP", "TBUF", "TINV", "CMOS", "NMOS", "PMOS", "BUF0", "BUF1", "INV0",
      "INV1", "TDFF", "TDFFS", "TDFFR", "TDFFSR", "TDFFRS", "TDFFX"}},
    {65, {"DELAY", "LAT", "LATS", "LATR", "LATSR", "LATRS", "LATX"}},
    {80, {"DFF", "DFFS", "DFFR", "DFFSR", "DFFRS", "DFFX"}},
    {96,
     {"MDFF", "MDFFS", "MDFFR", "MDFFX", "DFF2", "DFF2S", "DFF2R", "DFF2X", "LSSD", "LSSDS", "LSSDR", "LSSDX",
      "SDFF"}},
    {112, {"MLAT", "MLATS", "MLATR", "MLATX", "LAT2", "LAT2S", "LAT2R", "LAT2X", "SLAT", "SUDP"}},
    {128, {"RAM", "ROM", "FIFO", "RAM2", "MEMPORT"}},
    {144, {"TFAULT", "MUX21", "MUX41", "TBUF0", "TINV0", "LAT0"}},
    {152, {"POS",     "SOP",     "IPOS",    "ISOP",     "ADDS",   "ADDC",   "CNOR",    "CNAND", "RSENSOR",
           "FSENSOR", "ESENSOR", "TOGGLE",  "COMPARE",  "XGND",   "XPOWER", "XZ",      "WEAK",  "SMARTDRV",
           "TRANCTL", "XDETECT", "DELAY10", "DELAY100", "RDELAY", "FDELAY", "DELAYCTL"}},
};

} // namespace

const std::array<const char *, SDB_CLASS_KIND_COUNT> sdb_class_kind = [] {
    std::array<const char *, SDB_CLASS_KIND_COUNT> kinds{};
    for (const kind_run &run : kind_runs)
        for (size_t i = 0; i < std::size(run.names) && run.names[i] != nullptr; i++)
            kinds[static_cast<size_t>(run.first) + i] = run.names[i];
    return kinds;
}();

const char *SDB_class_kind_name(int32_t type) {
    return type >= 0 && type < SDB_CLASS_KIND_COUNT ? sdb_class_kind[static_cast<size_t>(type)] : nullptr;
}

int32_t SDB_find_class_kind(const char *name) {
    for (int32_t type = 0; name != nullptr && type < SDB_CLASS_KIND_COUNT; type++) {
        const char *kind = SDB_class_kind_name(type);
        if (kind != nullptr && std::strcmp(kind, name) == 0)
            return type;
    }
    return -1;
}
