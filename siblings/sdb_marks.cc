#include "siblings/sdb_marks.hh"

namespace {

constexpr int32_t FIRST_WORD = 0x4B4C4D31;
constexpr int32_t MARKS = 0xFF; // in the first word of a pair, the rest of which is the kind

} // namespace

std::vector<int32_t> MARKS_words(const NL_MODULE &module, const std::function<int32_t(int32_t)> &symbol_of) {
    std::vector<int32_t> words;
    auto put = [&](MARK_KIND kind, uint8_t marks, int32_t id) {
        if (words.empty())
            words.push_back(FIRST_WORD);
        words.insert(words.end(), {kind | marks, id});
    };
    for (const NL_PORT &port : module.ports)
        if ((port.marks & NL_MARK_WHOLE) != 0)
            put(MARK_OF_PORT, NL_MARK_WHOLE, symbol_of(port.name));
    for (size_t i = 0; i < module.nets.size() && !module.is_cell; i++)
        if (module.nets[i].marks != 0)
            put(MARK_OF_NET, module.nets[i].marks, static_cast<int32_t>(i));
    for (const NL_ASSIGN &assign : module.assigns) {
        put(MARK_ASSIGN_LEFT, 0, assign.left);
        put(MARK_ASSIGN_RIGHT, 0, assign.right);
    }
    return words;
}

void MARKS_read(const SDB_HANDLE *file,
                const std::function<void(MARK_KIND kind, int32_t id, uint8_t marks)> &take) {
    const int32_t *words = SDB_table<int32_t>(file, SDB_PROP_TAB);
    int32_t count = SDB_table_count(file, SDB_PROP_TAB);
    if (count == 0 || words[0] != FIRST_WORD)
        return;
    for (int32_t i = 1; i + 1 < count; i += 2)
        take(static_cast<MARK_KIND>(words[i] & ~MARKS), words[i + 1], static_cast<uint8_t>(words[i] & MARKS));
}
