// Hierarchical names: rows of a prefix table to text and back.
//
// A table is bound to its symbols by PREFIX_init. The first lookup builds the table's index: a hash of
// (parent, component) whose chains are arrays of row numbers, the newest row first. So a lookup takes a step
// or two for each component, however often a component's name stands in the design.
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/dyna.hh"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

struct prefix_binding {
    const SDB_PREFIX *table;
    SYM_TABLE *symbols;
    std::vector<int32_t> heads; // newest row of each hash value, -1 none; empty until the first lookup
    std::vector<int32_t> older; // by row: the next older row of the same hash value
    std::vector<int32_t> names; // by row: the symbol of its component
};

std::vector<prefix_binding> bindings; // one for each table that is open, rarely more than two
char prefix_charL = '.';

constexpr size_t name_buffer_size = 4096;
constexpr std::ptrdiff_t most_components = 64;

prefix_binding *find_binding(const SDB_PREFIX *table) {
    for (prefix_binding &binding : bindings)
        if (binding.table == table)
            return &binding;
    return nullptr;
}

/// The symbol that a row's name leads to, or -1 when the way there ends in an illegal value.
int32_t resolved_symbol(const SDB_PREFIX *table, int32_t row) {
    int32_t count = DYNA_count(table);
    int32_t name = row >= 0 && row < count ? table[row].name : -1;
    for (int32_t steps = 0; name <= SDB_ENTRY_BASE && steps < count; steps++) {
        row = SDB_entry_row(name);
        name = row < count ? table[row].name : -1;
    }
    return name < 0 ? -1 : name;
}

/// The same for all rows at once, in one step a row, however long the chains of redirections are.
std::vector<int32_t> resolved_symbols(const SDB_PREFIX *table) {
    constexpr int32_t open = -2; // not known yet, or on the chain that is being followed
    auto count = static_cast<size_t>(DYNA_count(table));
    std::vector<int32_t> symbols(count, open);
    std::vector<size_t> chain;
    for (size_t first = 0; first < count; first++) {
        int32_t name = SDB_ENTRY_BASE - static_cast<int32_t>(first);
        while (name <= SDB_ENTRY_BASE && chain.size() <= count) {
            auto row = static_cast<size_t>(SDB_entry_row(name));
            if (row >= count || symbols[row] != open) {
                name = row < count ? symbols[row] : -1;
                break;
            }
            chain.push_back(row);
            name = table[row].name;
        }
        for (size_t row : chain)
            symbols[row] = name < 0 ? -1 : name;
        chain.clear();
    }
    return symbols;
}

size_t hash_place(const prefix_binding &binding, int32_t parent, int32_t symbol) {
    uint64_t key =
        (static_cast<uint64_t>(static_cast<uint32_t>(parent)) << 32) | static_cast<uint32_t>(symbol);
    key *= 0x9E3779B97F4A7C15ULL;
    return static_cast<size_t>(key >> 32) & (binding.heads.size() - 1);
}

void build_index(prefix_binding &binding) {
    auto count = static_cast<size_t>(DYNA_count(binding.table));
    size_t size = 16;
    while (size < count)
        size *= 2;
    binding.heads.assign(size, -1);
    binding.older.assign(count, -1);
    binding.names = resolved_symbols(binding.table);
    for (size_t row = 0; row < count; row++) {
        int32_t &head = binding.heads[hash_place(binding, binding.table[row].parent, binding.names[row])];
        binding.older[row] = head;
        head = static_cast<int32_t>(row);
    }
}

constexpr int32_t any_kind = INT32_MIN; // no kind that a caller names

/// True for a target of that kind of PREFIX_lookup.
bool suits(int32_t target, int32_t kind) {
    bool is_object = target >= 0 && (target & SDB_OBJ_TARGET) != 0;
    bool is_class = target <= SDB_ENTRY_BASE;
    switch (kind) {
    case any_kind:
        return true;
    case 0:
        return target >= 0 && (target & SDB_NOT_NET_TARGET) == 0;
    case 1:
        return is_object;
    case 2:
        return is_class;
    default:
        return is_object || is_class;
    }
}

/// The newest row of that component below `parent` that suits, or -1.
int32_t find_row(const prefix_binding &binding, int32_t parent, int32_t symbol, int32_t kind) {
    if (symbol < 0)
        return -1;
    int32_t row = binding.heads[hash_place(binding, parent, symbol)];
    for (; row >= 0; row = binding.older[static_cast<size_t>(row)]) {
        const SDB_PREFIX &entry = binding.table[row];
        if (entry.parent == parent && binding.names[static_cast<size_t>(row)] == symbol &&
            suits(entry.target, kind))
            return row;
    }
    return -1;
}

/// The binding of a table that has rows, with its index; null without one.
prefix_binding *indexed_binding(const SDB_PREFIX *table) {
    prefix_binding *binding = find_binding(table);
    if (binding == nullptr || DYNA_count(table) == 0)
        return nullptr;
    if (binding->heads.empty())
        build_index(*binding);
    return binding;
}

int32_t symbol_of(const prefix_binding &binding, std::string_view component) {
    return SYM_lookup(binding.symbols, std::string(component).c_str());
}

/// Adds the rows below `parent` that the rest of a name can mean. A component ends at any separator, so each
/// one is tried; a row has one name only, so no row is met twice.
void add_readings(const prefix_binding &binding, std::string_view rest, char separator, int32_t parent,
                  int32_t kind, std::vector<int32_t> &found) {
    for (size_t end = rest.find(separator); end != rest.npos; end = rest.find(separator, end + 1))
        if (int32_t row = find_row(binding, parent, symbol_of(binding, rest.substr(0, end)), any_kind);
            row >= 0)
            add_readings(binding, rest.substr(end + 1), separator, row, kind, found);
    if (int32_t row = find_row(binding, parent, symbol_of(binding, rest), kind); row >= 0)
        found.push_back(row);
}

} // namespace

SDB_PREFIX *PREFIX_init(SDB_PREFIX *table, SYM_TABLE *symbols) {
    if (table == nullptr)
        table = DYNA_init<SDB_PREFIX>();
    PREFIX_release(table);
    bindings.push_back({table, symbols, {}, {}, {}});
    return table;
}

void PREFIX_release(const SDB_PREFIX *table) {
    std::erase_if(bindings, [&](const prefix_binding &binding) { return binding.table == table; });
}

void PREFIX_set_dot(char separator) {
    prefix_charL = separator;
}

int32_t PREFIX_symbol(const SDB_PREFIX *table, int32_t row) {
    int32_t symbol = resolved_symbol(table, row);
    if (symbol < 0) {
        sdb_log_error(1, "(FA-02-0026) Encountered an illegal object id.");
        end_run();
    }
    return symbol;
}

const char *PREFIX_get(const SDB_PREFIX *table, int32_t row) {
    static char buffer[name_buffer_size];
    prefix_binding *binding = find_binding(table);
    SYM_TABLE *symbols = binding == nullptr ? nullptr : binding->symbols;
    char *start = buffer + name_buffer_size - 1;
    *start = '\0';
    do {
        const char *text = SYM_get(symbols, PREFIX_symbol(table, row));
        if (text == nullptr || *text == '\0') {
            sdb_log_error(1, "(FA-02-0027) Hierarchical name contains blank id.");
            end_run();
        }
        size_t length = std::strlen(text);
        if (length + 1 > static_cast<size_t>(start - buffer)) {
            sdb_log_error(
                1,
                "(FA-02-0044) Encountered a long instance/pin name. The size of the name has exceeded the "
                "internal limit ( %s%ld ). Program aborts.",
                "", static_cast<long>(name_buffer_size));
            end_run();
        }
        start -= length;
        std::memcpy(start, text, length);
        *--start = prefix_charL;
        row = table[row].parent;
    } while (row >= 0);
    return start + 1;
}

int32_t PREFIX_lookup(const SDB_PREFIX *table, const char *name, int32_t kind, int32_t parent) {
    prefix_binding *binding = indexed_binding(table);
    if (binding == nullptr || name == nullptr || *name == '\0')
        return -1;
    std::string_view rest = name;
    if (std::ranges::count(rest, prefix_charL) >= most_components)
        return -1;
    for (;;) {
        size_t dot = rest.find(prefix_charL);
        bool is_last = dot == rest.npos;
        parent =
            find_row(*binding, parent, symbol_of(*binding, rest.substr(0, dot)), is_last ? kind : any_kind);
        if (is_last || parent < 0)
            return parent;
        rest.remove_prefix(dot + 1);
    }
}

int32_t PREFIX_child(const SDB_PREFIX *table, int32_t symbol, int32_t kind, int32_t parent) {
    if (symbol < 0) // needs no index
        return -1;
    prefix_binding *binding = indexed_binding(table);
    return binding == nullptr ? -1 : find_row(*binding, parent, symbol, kind);
}

std::vector<int32_t> PREFIX_readings(const SDB_PREFIX *table, std::string_view name, int32_t kind,
                                     char separator) {
    std::vector<int32_t> found;
    if (prefix_binding *binding = indexed_binding(table))
        add_readings(*binding, name, separator, -1, kind, found);
    return found;
}

std::vector<std::string> PREFIX_components(const SDB_PREFIX *table, int32_t row) {
    std::vector<std::string> components;
    for (prefix_binding *binding = find_binding(table); binding != nullptr && row >= 0;
         row = table[row].parent)
        components.emplace_back(SYM_get(binding->symbols, PREFIX_symbol(table, row)));
    std::reverse(components.begin(), components.end());
    return components;
}

std::string PREFIX_join_marked(const std::vector<std::string> &components, char separator) {
    std::string name;
    for (const std::string &component : components) {
        if (&component != &components.front())
            name += separator;
        for (char c : component)
            name += c == separator ? std::string{'\\', c} : std::string{c};
    }
    return name;
}

std::vector<std::string> PREFIX_split_marked(std::string_view name, char separator) {
    std::vector<std::string> components(1);
    for (size_t at = 0; at < name.size(); at++) {
        if (name[at] == separator) {
            components.emplace_back();
            continue;
        }
        if (name[at] == '\\' && at + 1 < name.size() && name[at + 1] == separator)
            at++;
        components.back() += name[at];
    }
    return components;
}
