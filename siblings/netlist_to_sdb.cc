// Writing modules as SDB files.
//
// The tables of a file are not made: what stands in them is known from the module, so that it is counted
// first and then written row by row. What takes memory is the symbols' numbers and the order of the nodes.
#include "sdb/sdb_file.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/node_order.hh"
#include "siblings/sdb_marks.hh"
#include "siblings/tool.hh"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>

namespace {

struct CONSTANT_SOURCE {
    const char *class_name;
    const char *object;
};
// In the order of the constant nets.
constexpr CONSTANT_SOURCE constant_sources[] = {{NL_SOURCE_CLASS_0, "_FORCED_0"},
                                                {NL_SOURCE_CLASS_1, "_FORCED_1"}};
constexpr int32_t SOURCE_COUNT = std::size(constant_sources);

// The symbols of a file in the order of their first use. The names of a design are different texts, so that
// only the writer's own texts may be among them already.
struct SYMBOLS {
    const NL_NAMES &names;
    std::vector<int32_t> of_name{};            // by name: its symbol and one more, 0 for none
    std::vector<int32_t> texts{};              // by symbol: a name, or -1 less the place of one of the next
    std::vector<std::string_view> own_texts{}; // each asked for once
    uint64_t bytes = 0;                        // of all texts
};

// The file in work.
struct SDB_WRITER {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    SYMBOLS symbols;
    int32_t source_objects[SOURCE_COUNT] = {};
    std::vector<int32_t> class_of_def{};
    std::vector<SDB_CLASS> classes{};
    std::vector<SDB_PIN> pins{};
    std::vector<int32_t> port_order{}; // ports of the module in the order of the file, by direction
    std::vector<int32_t> marks{};
    uint64_t scoped_nets = 0;
    uint64_t counts[SDB_TAB_COUNT] = {}; // of the records of each table
};

std::string_view symbol_text(const void *owner, int32_t symbol) {
    const SYMBOLS &symbols = *static_cast<const SYMBOLS *>(owner);
    int32_t text = symbols.texts[static_cast<size_t>(symbol)];
    return text >= 0 ? NL_text(symbols.names, text) : symbols.own_texts[static_cast<size_t>(-1 - text)];
}

int32_t add_symbol(SYMBOLS &symbols, int32_t text) {
    auto symbol = static_cast<int32_t>(symbols.texts.size());
    symbols.texts.push_back(text);
    symbols.bytes += symbol_text(&symbols, symbol).size();
    return symbol;
}

inline int32_t symbol_of(SYMBOLS &symbols, int32_t name) {
    int32_t place = symbols.of_name[static_cast<size_t>(name)];
    if (place > 0)
        return place - 1;
    int32_t symbol = add_symbol(symbols, name);
    symbols.of_name[static_cast<size_t>(name)] = symbol + 1;
    return symbol;
}

int32_t symbol_of_own(SYMBOLS &symbols, std::string_view text) {
    int32_t name = NL_find_name(symbols.names, text);
    if (name != NL_NONE)
        return symbol_of(symbols, name);
    symbols.own_texts.push_back(text);
    return add_symbol(symbols, -static_cast<int32_t>(symbols.own_texts.size()));
}

int32_t known_symbol(const SDB_WRITER &writer, int32_t name) {
    return writer.symbols.of_name[static_cast<size_t>(name)] - 1;
}

// A class whose last pins are the last of the table.
void add_class(SDB_WRITER &writer, int32_t name, int32_t type, size_t pin_count) {
    auto count = static_cast<int32_t>(pin_count);
    auto first = static_cast<int32_t>(writer.pins.size()) - count;
    writer.classes.push_back({name, type, first, count, 1, 0, 0, count - 1});
}

void add_class_of(SDB_WRITER &writer, const NL_MODULE &def) {
    for (const NL_PORT &port : def.ports)
        writer.pins.push_back({symbol_of(writer.symbols, port.name), port.direction});
    add_class(writer, symbol_of(writer.symbols, def.name), def.is_cell ? SDB_KIND_CELL : SDB_KIND_DESIGN,
              def.ports.size());
}

void add_sources(SDB_WRITER &writer) {
    int32_t pin = symbol_of_own(writer.symbols, "Q");
    for (int32_t i = 0; i < SOURCE_COUNT; i++) {
        writer.pins.push_back({pin, SDB_OUTPUT});
        add_class(writer, symbol_of_own(writer.symbols, constant_sources[i].class_name),
                  SDB_find_class_kind("FUNCT"), 1);
        writer.source_objects[i] = symbol_of_own(writer.symbols, constant_sources[i].object);
    }
}

void add_ports(SDB_WRITER &writer) {
    const auto &ports = writer.module.ports;
    for (const NL_PORT &port : ports)
        symbol_of(writer.symbols, port.name);
    writer.port_order.resize(ports.size());
    std::iota(writer.port_order.begin(), writer.port_order.end(), 0);
    std::stable_sort(writer.port_order.begin(), writer.port_order.end(), [&](int32_t a, int32_t b) {
        return ports[static_cast<size_t>(a)].direction < ports[static_cast<size_t>(b)].direction;
    });
}

const NL_MODULE &module_of(const SDB_WRITER &writer, const NL_INSTANCE &instance) {
    return writer.design.modules[static_cast<size_t>(instance.def)];
}

// Calls `take` for each instance with the scope that it stands for, or NL_NONE.
template <class TAKE> void each_instance(const SDB_WRITER &writer, TAKE take) {
    const NL_MODULE &module = writer.module;
    size_t scope = 0;
    for (size_t i = 0; i < module.instances.size(); i++) {
        bool is_scope =
            scope < module.scopes.size() && module.scopes[scope].instance == static_cast<int32_t>(i);
        take(module.instances[i], is_scope ? static_cast<int32_t>(scope) : NL_NONE);
        scope += is_scope;
    }
}

// All that is counted before the first byte is written; symbols get their numbers.
void add_design(SDB_WRITER &writer) {
    const NL_MODULE &module = writer.module;
    add_sources(writer);
    for (const NL_SCOPE &scope : module.scopes)
        symbol_of(writer.symbols, scope.name);
    for (const NL_NET &net : module.nets) {
        symbol_of(writer.symbols, net.name);
        writer.scoped_nets += net.scope != NL_NONE;
    }
    add_ports(writer);
    uint64_t scoped_instances = 0;
    uint64_t pins = 0;
    each_instance(writer, [&](const NL_INSTANCE &instance, int32_t scope) {
        int32_t &class_id = writer.class_of_def[static_cast<size_t>(instance.def)];
        if (class_id < 0) {
            class_id = static_cast<int32_t>(writer.classes.size());
            add_class_of(writer, module_of(writer, instance));
        }
        symbol_of(writer.symbols, instance.name);
        pins += module_of(writer, instance).ports.size();
        scoped_instances += scope == NL_NONE && instance.scope != NL_NONE;
    });
    writer.counts[SDB_OBJ_TAB] = writer.counts[SDB_SOBJ_TAB] = SOURCE_COUNT + module.instances.size();
    writer.counts[SDB_NET_TAB] = writer.counts[SDB_SNET_TAB] = module.nets.size();
    writer.counts[SDB_NODE_TAB] = SOURCE_COUNT + pins;
    writer.counts[SDB_PREFIX_TAB] = module.scopes.size() + writer.scoped_nets + scoped_instances;
}

int32_t symbol_count(const SDB_WRITER &writer) {
    return static_cast<int32_t>(writer.symbols.texts.size());
}

uint32_t buckets(const SDB_WRITER &writer) {
    return SYM_buckets(symbol_count(writer), SYM_NEW_HASH_SIZE);
}

// Fills the counts and gives the size of the file.
uint64_t count_records(SDB_WRITER &writer) {
    writer.symbols.of_name.assign(writer.design.names.texts.size(), 0);
    writer.class_of_def.assign(writer.design.modules.size(), -1);
    symbol_of_own(writer.symbols, SYM_undefined_text);
    if (writer.module.is_cell) {
        add_class_of(writer, writer.module);
        add_ports(writer);
    } else {
        add_design(writer);
    }
    writer.marks = MARKS_words(writer.module, [&](int32_t name) { return known_symbol(writer, name); });
    uint64_t ports = writer.module.ports.size();
    writer.counts[SDB_CLASS_TAB] = writer.classes.size();
    writer.counts[SDB_PIN_TAB] = writer.pins.size();
    writer.counts[SDB_PORT_TAB] = writer.counts[SDB_XPORT_TAB] = ports;
    writer.counts[SDB_NODE_TAB] += ports;
    writer.counts[SDB_PROP_TAB] = writer.marks.size();
    return SDB_file_size(writer.counts,
                         SYM_block_size(symbol_count(writer), writer.symbols.bytes, buckets(writer)));
}

// Rows of the tables, in the order of the tables.

// The rows of one table on their way into the file, whose number is known: each takes its place in room for
// many.
template <class ROW> struct ROWS {
    whole_file &file;
    uint64_t left; // rows for which there is no room yet
    char *at = nullptr;
    char *end = nullptr;
};

template <class ROW> ROWS<ROW> begin_rows(whole_file &file, uint64_t count) {
    return {file, count};
}

template <class ROW> inline void put(ROWS<ROW> &rows, const ROW &row) {
    constexpr uint64_t at_once = 1024;
    if (rows.at == rows.end) {
        uint64_t count = std::min(rows.left, at_once);
        rows.at = put_room(rows.file, count * sizeof(ROW));
        rows.end = rows.at + count * sizeof(ROW);
        rows.left -= count;
    }
    std::memcpy(rows.at, &row, sizeof row);
    rows.at += sizeof row;
}

template <class T> void put_all(whole_file &file, const std::vector<T> &rows) {
    put_bytes(file, rows.data(), rows.size() * sizeof(T));
}

// Node of the module's first port.
int32_t first_port_node(const SDB_WRITER &writer) {
    return writer.module.is_cell ? 0 : SOURCE_COUNT;
}

void put_ports(whole_file &file, const SDB_WRITER &writer) {
    auto rows = begin_rows<SDB_PORT>(file, writer.counts[SDB_PORT_TAB]);
    for (int32_t place : writer.port_order) {
        const NL_PORT &port = writer.module.ports[static_cast<size_t>(place)];
        int32_t node = first_port_node(writer) + place;
        put(rows, {known_symbol(writer, port.name), port.direction, node, 0});
    }
}

void put_objects(whole_file &file, const SDB_WRITER &writer) {
    auto rows = begin_rows<SDB_OBJ>(file, writer.counts[SDB_OBJ_TAB]);
    int32_t node = 0;
    for (; node < SOURCE_COUNT; node++)
        put(rows, {node, node, 0});
    node += static_cast<int32_t>(writer.module.ports.size());
    for (const NL_INSTANCE &instance : writer.module.instances) {
        int32_t class_id = writer.class_of_def[static_cast<size_t>(instance.def)];
        int32_t pins = writer.classes[static_cast<size_t>(class_id)].pin_count;
        put(rows, {class_id, pins > 0 ? node : -1, 0});
        node += pins;
    }
}

void put_nets(whole_file &file, const SDB_WRITER &writer, const NODE_ORDER &order) {
    auto rows = begin_rows<SDB_NET>(file, writer.counts[SDB_NET_TAB]);
    for (NODE_ORDER::LIST list : order.nets)
        put(rows, {list.first, 0});
}

void put_port_nodes(ROWS<SDB_NODE> &rows, const SDB_WRITER &writer, const NODE_ORDER &order) {
    const auto &ports = writer.module.ports;
    std::vector<int32_t> place_of_port(ports.size());
    for (size_t i = 0; i < ports.size(); i++)
        place_of_port[static_cast<size_t>(writer.port_order[i])] = static_cast<int32_t>(i);
    auto node = static_cast<size_t>(first_port_node(writer));
    for (size_t i = 0; i < ports.size(); i++, node++) {
        bool connected = !writer.module.is_cell;
        put(rows,
            {-1, place_of_port[i], connected ? ports[i].net : NL_NONE, connected ? order.next[node] : -1, 0});
    }
}

void put_instance_nodes(ROWS<SDB_NODE> &rows, const SDB_WRITER &writer, const NODE_ORDER &order) {
    const int32_t *next = order.next.data() + SOURCE_COUNT + writer.module.ports.size();
    const int32_t *pins = writer.module.pins.data();
    int32_t obj = SOURCE_COUNT;
    for (const NL_INSTANCE &instance : writer.module.instances) {
        const SDB_CLASS &row =
            writer.classes[static_cast<size_t>(writer.class_of_def[static_cast<size_t>(instance.def)])];
        const int32_t *nets = instance.first_pin == NL_NONE ? nullptr : pins + instance.first_pin;
        int32_t end = row.first_pin + row.pin_count;
        for (int32_t pin = row.first_pin; pin < end; pin++)
            put(rows, {obj, pin, nets != nullptr ? *nets++ : NL_NONE, *next++, 0});
        obj++;
    }
}

void put_nodes(whole_file &file, const SDB_WRITER &writer, const NODE_ORDER &order) {
    auto rows = begin_rows<SDB_NODE>(file, writer.counts[SDB_NODE_TAB]);
    for (int32_t i = 0; i < SOURCE_COUNT && !writer.module.is_cell; i++)
        put(rows,
            {i, writer.classes[static_cast<size_t>(i)].first_pin, i, order.next[static_cast<size_t>(i)], 0});
    put_port_nodes(rows, writer, order);
    if (!writer.module.is_cell)
        put_instance_nodes(rows, writer, order);
}

void put_object_names(whole_file &file, const SDB_WRITER &writer) {
    auto rows = begin_rows<int32_t>(file, writer.counts[SDB_SOBJ_TAB]);
    for (int32_t symbol : writer.source_objects)
        put(rows, symbol);
    auto row = static_cast<int32_t>(writer.module.scopes.size() + writer.scoped_nets);
    each_instance(writer, [&](const NL_INSTANCE &instance, int32_t scope) {
        if (scope != NL_NONE)
            put(rows, SDB_prefix_name(scope));
        else if (instance.scope != NL_NONE)
            put(rows, SDB_prefix_name(row++));
        else
            put(rows, known_symbol(writer, instance.name));
    });
}

void put_net_names(whole_file &file, const SDB_WRITER &writer) {
    auto rows = begin_rows<int32_t>(file, writer.counts[SDB_SNET_TAB]);
    auto row = static_cast<int32_t>(writer.module.scopes.size());
    for (const NL_NET &net : writer.module.nets)
        put(rows, net.scope != NL_NONE ? SDB_prefix_name(row++) : known_symbol(writer, net.name));
}

// Rows of the scopes stand in front of all others, so that a scope is its row.
void put_prefixes(whole_file &file, const SDB_WRITER &writer) {
    const NL_MODULE &module = writer.module;
    auto rows = begin_rows<SDB_PREFIX>(file, writer.counts[SDB_PREFIX_TAB]);
    auto target_of = [](size_t instance) {
        return (SOURCE_COUNT + static_cast<int32_t>(instance)) | SDB_OBJ_TARGET;
    };
    for (const NL_SCOPE &scope : module.scopes)
        put(rows,
            {known_symbol(writer, scope.name), scope.parent, target_of(static_cast<size_t>(scope.instance))});
    for (size_t i = 0; i < module.nets.size(); i++)
        if (module.nets[i].scope != NL_NONE)
            put(rows,
                {known_symbol(writer, module.nets[i].name), module.nets[i].scope, static_cast<int32_t>(i)});
    size_t index = 0;
    each_instance(writer, [&](const NL_INSTANCE &instance, int32_t scope) {
        if (scope == NL_NONE && instance.scope != NL_NONE)
            put(rows, {known_symbol(writer, instance.name), instance.scope, target_of(index)});
        index++;
    });
}

void put_port_names(whole_file &file, const SDB_WRITER &writer) {
    auto rows = begin_rows<int32_t>(file, writer.counts[SDB_XPORT_TAB]);
    for (const NL_PORT &port : writer.module.ports)
        put(rows, known_symbol(writer, port.name));
}

void put_tables(whole_file &file, const SDB_WRITER &writer) {
    NODE_ORDER order;
    if (!writer.module.is_cell)
        order = NL_order_nodes(writer.design, writer.module, writer.counts[SDB_NODE_TAB]);
    put_all(file, writer.classes);
    put_ports(file, writer);
    if (!writer.module.is_cell) {
        put_objects(file, writer);
        put_nets(file, writer, order);
    }
    put_nodes(file, writer, order);
    order = {};
    put_all(file, writer.pins);
    if (!writer.module.is_cell) {
        put_object_names(file, writer);
        put_net_names(file, writer);
        put_prefixes(file, writer);
    }
    put_port_names(file, writer);
    put_all(file, writer.marks);
}

void put_file(whole_file &file, const SDB_WRITER &writer) {
    SDB_TABLE tables[SDB_TAB_COUNT] = {};
    SDB_name_tables(tables);
    for (size_t i = 0; i < SDB_TAB_COUNT; i++)
        tables[i].count = static_cast<int32_t>(writer.counts[i]);
    SDB_place_tables(tables, SYM_block_size(symbol_count(writer), writer.symbols.bytes, buckets(writer)));
    SDB_put_start(file, tables, SDB_VERSION);
    SYM_put(file, {&writer.symbols, symbol_count(writer), symbol_text}, buckets(writer));
    put_tables(file, writer);
}

// What no file of the module is larger than, from counts alone: as if each name of the design were a symbol
// of it, each net and instance stood in a scope, and each module were a class.
uint64_t size_bound(const NL_DESIGN &design, const NL_MODULE &module) {
    constexpr uint64_t small = 8192; // what does not grow with the design: start, buckets, sources
    constexpr uint64_t symbol_size = 5 * sizeof(int32_t) + 1;
    uint64_t size = small;
    for (std::string_view name : design.names.texts)
        size += symbol_size + name.size();
    for (const NL_MODULE &def : design.modules)
        size += sizeof(SDB_CLASS) + def.ports.size() * sizeof(SDB_PIN);
    uint64_t nodes = module.ports.size();
    for (const NL_INSTANCE &instance : module.instances)
        nodes += design.modules[static_cast<size_t>(instance.def)].ports.size();
    constexpr uint64_t name_size = sizeof(int32_t) + sizeof(SDB_PREFIX);
    constexpr uint64_t mark_size = 2 * sizeof(int32_t);
    return size + nodes * sizeof(SDB_NODE) +
           module.ports.size() * (sizeof(SDB_PORT) + sizeof(int32_t) + mark_size) +
           module.instances.size() * (sizeof(SDB_OBJ) + name_size) +
           module.nets.size() * (sizeof(SDB_NET) + name_size + mark_size) +
           module.assigns.size() * 2 * mark_size;
}

void refuse_above(const std::string &path, uint64_t size, uint64_t limit) {
    if (size > limit)
        TOOL_fail(path, 0, "this file would have %llu bytes; %llu are possible. %s",
                  static_cast<unsigned long long>(size), static_cast<unsigned long long>(limit),
                  NL_SMALLER_DESIGN);
}

} // namespace

uint64_t NL_sdb_size(const NL_DESIGN &design, const NL_MODULE &module) {
    SDB_WRITER writer{design, module, SYMBOLS{design.names}};
    return count_records(writer);
}

void NL_check_sdb_size(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path,
                       uint64_t limit) {
    if (size_bound(design, module) > limit)
        refuse_above(path, NL_sdb_size(design, module), limit);
}

void NL_write_sdb(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path) {
    SDB_WRITER writer{design, module, SYMBOLS{design.names}};
    refuse_above(path, count_records(writer), SDB_FILE_LIMIT);
    whole_file file;
    bool written = begin_file(file, path);
    if (written) {
        put_file(file, writer);
        written = finish_file(file);
    }
    if (!written)
        TOOL_fail(path, 0, "this file can't be written: %s.", std::strerror(errno));
}
