#include "siblings/sdb_marks.hh"

#include "support/dyna.hh"

namespace {

constexpr int32_t FIRST_WORD = 0x4B4C4D31;
constexpr int32_t OF_NET = 0x100; // added to the marks in the first word of a net's pair

} // namespace

void MARKS_write(SDB_HANDLE *file, const NL_MODULE &module,
                 const std::function<int32_t(int32_t)> &symbol_of) {
    SDB_TABLE &table = file->tables[SDB_PROP_TAB];
    int32_t *words = static_cast<int32_t *>(table.data);
    auto put = [&](int32_t kind, int32_t id) {
        if (DYNA_count(words) == 0)
            append_row(words, FIRST_WORD);
        append_row(words, kind);
        append_row(words, id);
    };
    for (const NL_PORT &port : module.ports)
        if (port.marks != 0)
            put(port.marks, symbol_of(port.name));
    for (size_t i = 0; i < module.nets.size() && !module.is_cell; i++)
        if (module.nets[i].marks != 0)
            put(OF_NET | module.nets[i].marks, static_cast<int32_t>(i));
    table.data = words;
    table.count = DYNA_count(words);
}

void MARKS_read(const SDB_HANDLE *file,
                const std::function<void(bool of_net, int32_t id, uint8_t marks)> &take) {
    const int32_t *words = SDB_table<int32_t>(file, SDB_PROP_TAB);
    int32_t count = SDB_table_count(file, SDB_PROP_TAB);
    if (count == 0 || words[0] != FIRST_WORD)
        return;
    for (int32_t i = 1; i + 1 < count; i += 2)
        take((words[i] & OF_NET) != 0, words[i + 1], static_cast<uint8_t>(words[i] & 0xFF));
}
