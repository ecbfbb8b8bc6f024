// Symbol tables.
//
// A table holds the address of each symbol's text. The texts of a file stay in the bytes that were read;
// texts that are added lie in blocks of the table's own. Lookups go through the trees of the file as long as
// they are few, so that a table of millions of symbols is asked for a thousand without work on all of them. A
// file's trees may be as deep as it has symbols, and in a wrong order: so the steps are counted, a text that
// is not found in its tree is looked for among all, and from a certain number of steps on an open hash of the
// table's own answers. Files are written with balanced trees.
#include "sdb/symbols.hh"

#include "sdb/byte_stream.hh"
#include "support/text.hh"

#include <algorithm>
#include <functional>
#include <memory>
#include <memory_resource>
#include <unordered_set>
#include <vector>

namespace {

constexpr size_t text_block_size = size_t{64} * 1024;
constexpr uint64_t block_start_size = 24; ///< of a symbol block in a file: all that lies before its buckets

uint32_t text_hash(std::string_view text) {
    uint64_t hash = std::hash<std::string_view>{}(text);
    return static_cast<uint32_t>(hash ^ (hash >> 32));
}

/// The hash that places a symbol in a bucket of a file: rotate left by three and add the character.
uint32_t file_hash(std::string_view text) {
    uint32_t hash = 0;
    for (char c : text)
        hash = ((hash << 3) | (hash >> 29)) + static_cast<uint32_t>(static_cast<signed char>(c));
    return hash;
}

} // namespace

struct SYM_TABLE {
    /// One place of the open hash; id -1 is a free one.
    struct hash_slot {
        uint32_t hash;
        int32_t id;
    };
    uint32_t hash_size;
    std::vector<const char *> texts;
    const unsigned char *buckets = nullptr;        // in the file; null without trees of this machine's order
    size_t steps = 0;                              // taken in the file's trees and texts
    std::unordered_set<std::string> missing_texts; // looked for in vain in these
    std::vector<hash_slot> slots;                  // empty until lookups are many; its size is a power of two
    std::pmr::monotonic_buffer_resource own_texts{text_block_size}; // those that were added
};

namespace {

/// The slot that holds `text`, or the free one where it belongs.
SYM_TABLE::hash_slot &find_slot(SYM_TABLE *table, std::string_view text, uint32_t hash) {
    size_t mask = table->slots.size() - 1;
    for (size_t place = hash & mask;; place = (place + 1) & mask) {
        SYM_TABLE::hash_slot &slot = table->slots[place];
        if (slot.id < 0 || (slot.hash == hash && text == table->texts[static_cast<size_t>(slot.id)]))
            return slot;
    }
}

/// Of equal texts the id that was entered first stays.
void enter_symbol(SYM_TABLE *table, int32_t id) {
    std::string_view text = table->texts[static_cast<size_t>(id)];
    uint32_t hash = text_hash(text);
    SYM_TABLE::hash_slot &slot = find_slot(table, text, hash);
    if (slot.id < 0)
        slot = {hash, id};
}

/// Makes the hash for `count` symbols and enters all of them.
void build_slots(SYM_TABLE *table, size_t count) {
    size_t size = 16;
    while (size < count + count / 2)
        size *= 2;
    table->slots.assign(size, SYM_TABLE::hash_slot{0, -1});
    for (int32_t id = 0; id < SYM_count(table); id++)
        enter_symbol(table, id);
}

/// True while lookups are so few that the hash of all symbols would cost more.
bool lookups_are_few(const SYM_TABLE *table) {
    return table->slots.empty() && table->buckets != nullptr && table->steps < table->texts.size() / 8;
}

/// The first of the symbols of that text in its bucket, or -1. The bucket is passed as a whole, which holds
/// two symbols where the file is ours: so nothing hangs on the order of a tree.
int32_t find_in_bucket(SYM_TABLE *table, const std::string &text) {
    auto word_at = [](const void *bytes) {
        int32_t word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    };
    int32_t found = -1;
    std::vector<int32_t> open = {
        word_at(table->buckets + size_t{file_hash(text) % table->hash_size} * sizeof(int32_t))};
    while (!open.empty()) { // the links have been checked: they are in range and form trees
        int32_t id = open.back();
        open.pop_back();
        if (id < 0)
            continue;
        table->steps++;
        const char *name = table->texts[static_cast<size_t>(id)];
        if (text == name && (found < 0 || id < found))
            found = id;
        const char *links = name + std::strlen(name) + 1;
        open.push_back(word_at(links));
        open.push_back(word_at(links + sizeof id));
    }
    return found;
}

/// The same among all symbols, for a text that its bucket does not have. What none has is remembered.
int32_t find_among_all(SYM_TABLE *table, const std::string &text) {
    constexpr size_t texts_per_step = 16; // they are passed in their order
    if (table->missing_texts.contains(text))
        return -1;
    table->steps += table->texts.size() / texts_per_step;
    auto place = std::find_if(table->texts.begin(), table->texts.end(),
                              [&text](const char *name) { return text == name; });
    if (place != table->texts.end())
        return static_cast<int32_t>(place - table->texts.begin());
    table->missing_texts.insert(text);
    return -1;
}

int32_t find_symbol(SYM_TABLE *table, std::string_view text) {
    if (lookups_are_few(table)) {
        std::string plain(text);
        int32_t id = find_in_bucket(table, plain);
        return id >= 0 ? id : find_among_all(table, plain);
    }
    if (table->slots.empty())
        build_slots(table, table->texts.size());
    return find_slot(table, text, text_hash(text)).id;
}

const char *store_text(SYM_TABLE *table, std::string_view text) {
    auto *place = static_cast<char *>(table->own_texts.allocate(text.size() + 1, 1));
    std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return place;
}

/// Appends a symbol. Room for it in the hash is made before, so that `text` may be entered at once.
int32_t append_symbol(SYM_TABLE *table, std::string_view text) {
    int32_t id = SYM_count(table);
    table->texts.push_back(store_text(table, text));
    if (table->texts.size() + table->texts.size() / 4 > table->slots.size())
        build_slots(table, table->texts.size() * 2);
    else
        enter_symbol(table, id);
    return id;
}

/// Marks one link of the trees. A record that two links reach would close a cycle or merge two trees.
bool mark_link(int32_t link, int32_t count, std::vector<bool> &reached) {
    if (link == -1)
        return true;
    if (link < 0 || link >= count || reached[static_cast<size_t>(link)])
        return false;
    reached[static_cast<size_t>(link)] = true;
    return true;
}

bool read_buckets(byte_reader &reader, uint32_t buckets, std::vector<int32_t> &heads, std::string *fault) {
    if (!reader.has(uint64_t{buckets} * 4 + 4))
        return false;
    if (buckets == 0) {
        *fault = "the symbol table has no buckets";
        return false;
    }
    heads.resize(buckets);
    for (int32_t &head : heads)
        head = reader.number();
    return true;
}

/// Reads the records; their links and the buckets' must form trees.
bool read_records(byte_reader &reader, SYM_TABLE *table, const std::vector<int32_t> &heads,
                  std::string *fault) {
    constexpr uint64_t least_record = 4 + 1 + 8;
    int32_t count = reader.number();
    if (count < 0 || !reader.has(least_record * static_cast<uint64_t>(count)))
        return false;
    std::vector<bool> reached(static_cast<size_t>(count));
    for (size_t i = 0; i < heads.size(); i++) {
        if (!mark_link(heads[i], count, reached)) {
            *fault = format_text("symbol table, bucket %zu: record %d is out of range or in two trees", i,
                                 heads[i]);
            return false;
        }
    }
    table->texts.resize(static_cast<size_t>(count));
    for (int32_t id = 0; id < count; id++) {
        uint32_t length = reader.word();
        const auto *text = reinterpret_cast<const char *>(reader.take(length));
        if (text == nullptr)
            return false;
        if (length == 0 || text[length - 1] != '\0') {
            *fault = format_text("symbol table, record %d: the text has no end", id);
            return false;
        }
        if (std::memchr(text, '\0', length) != text + length - 1)
            table->buckets = nullptr; // the links can't be found behind a text that ends before its record
        table->texts[static_cast<size_t>(id)] = text;
        int32_t left = reader.number();
        int32_t right = reader.number();
        if (reader.failed)
            return false;
        if (!mark_link(left, count, reached) || !mark_link(right, count, reached)) {
            *fault = format_text("symbol table, record %d: its links %d and %d do not form a tree", id, left,
                                 right);
            return false;
        }
    }
    return true;
}

/// Trees of a block to be written. A bucket's symbols first hang on its head as a chain of right links.
struct symbol_trees {
    std::vector<int32_t> heads;
    std::vector<int32_t> left;
    std::vector<int32_t> right;
};

/// Links ids, which are in the order of their texts, into a balanced tree; returns its root.
int32_t link_balanced(symbol_trees &trees, const int32_t *ids, size_t count) {
    if (count == 0)
        return -1;
    size_t middle = count / 2;
    auto root = static_cast<size_t>(ids[middle]);
    trees.left[root] = link_balanced(trees, ids, middle);
    trees.right[root] = link_balanced(trees, ids + middle + 1, count - middle - 1);
    return ids[middle];
}

symbol_trees build_trees(const SYM_TEXTS &texts, uint32_t buckets) {
    auto count = static_cast<size_t>(texts.count);
    symbol_trees trees{std::vector<int32_t>(buckets, -1), std::vector<int32_t>(count, -1),
                       std::vector<int32_t>(count)};
    for (int32_t id = 0; id < texts.count; id++) {
        int32_t &head = trees.heads[file_hash(texts.text(texts.owner, id)) % buckets];
        trees.right[static_cast<size_t>(id)] = head;
        head = id;
    }
    std::vector<int32_t> ids; // of one bucket
    for (int32_t &head : trees.heads) {
        if (head < 0 || trees.right[static_cast<size_t>(head)] < 0)
            continue;
        ids.clear();
        for (int32_t id = head; id >= 0; id = trees.right[static_cast<size_t>(id)])
            ids.push_back(id);
        std::sort(ids.begin(), ids.end(), [&](int32_t a, int32_t b) {
            int order = texts.text(texts.owner, a).compare(texts.text(texts.owner, b));
            return order != 0 ? order < 0 : a < b;
        });
        head = link_balanced(trees, ids.data(), ids.size());
    }
    return trees;
}

template <class T> char *put_value(char *at, T value) {
    std::memcpy(at, &value, sizeof value);
    return at + sizeof value;
}

void put_symbol(whole_file &file, std::string_view text, int32_t left, int32_t right) {
    size_t length = text.size() + 1;
    if (length > whole_file_piece / 2) { // longer than any name of a design
        put_word(file, static_cast<uint32_t>(length));
        put_bytes(file, text.data(), text.size());
        put_bytes(file, "", 1);
        put_number(file, left);
        put_number(file, right);
        return;
    }
    char *at = put_room(file, length + 3 * sizeof(int32_t));
    at = put_value(at, static_cast<uint32_t>(length));
    at = std::copy(text.begin(), text.end(), at);
    *at++ = '\0';
    at = put_value(at, left);
    put_value(at, right);
}

/// Gives a table enough buckets for its symbols. Those of the file it came from are of no use for more.
void settle_buckets(SYM_TABLE *table) {
    uint32_t buckets = SYM_buckets(SYM_count(table), table->hash_size);
    if (buckets != table->hash_size)
        table->buckets = nullptr;
    table->hash_size = buckets;
}

SYM_TEXTS texts_of(const SYM_TABLE *table) {
    return {table, SYM_count(table), [](const void *owner, int32_t id) {
                return std::string_view(
                    static_cast<const SYM_TABLE *>(owner)->texts[static_cast<size_t>(id)]);
            }};
}

} // namespace

SYM_TABLE *SYM_init(uint32_t hash_size) {
    auto *table = new SYM_TABLE{};
    table->hash_size = hash_size == 0 ? SYM_NEW_HASH_SIZE : hash_size;
    append_symbol(table, SYM_undefined_text);
    return table;
}

int32_t SYM_lookup(SYM_TABLE *table, const char *text) {
    return table == nullptr || text == nullptr ? -1 : find_symbol(table, text);
}

int32_t SYM_install(SYM_TABLE *table, const char *text) {
    return append_symbol(table, text);
}

int32_t SYM_setup(SYM_TABLE *table, std::string_view text) {
    int32_t id = find_symbol(table, text);
    return id >= 0 ? id : append_symbol(table, text);
}

const char *SYM_get(const SYM_TABLE *table, int32_t id) {
    return table != nullptr && id >= 0 && id < SYM_count(table) ? table->texts[static_cast<size_t>(id)]
                                                                : nullptr;
}

int32_t SYM_count(const SYM_TABLE *table) {
    return table == nullptr ? 0 : static_cast<int32_t>(table->texts.size());
}

void SYM_free(SYM_TABLE *table) {
    delete table;
}

SYM_TABLE *SYM_read(const unsigned char *bytes, size_t size, size_t position, bool swapped,
                    std::string *fault) {
    byte_reader reader{bytes, size, position, swapped};
    fault->clear();
    uint32_t length = reader.word();
    const unsigned char *magic = reader.take(length);
    if (magic == nullptr || length < 3 || std::memcmp(magic, "SYM", 3) != 0 ||
        (length > 3 && magic[3] != '\0'))
        return nullptr;
    reader.word(); // the format word, of any value
    uint32_t buckets = reader.word();
    reader.take(8); // two stored pointers
    auto table = std::make_unique<SYM_TABLE>();
    table->hash_size = buckets;
    if (!swapped)
        table->buckets = reader.bytes + reader.position;
    std::vector<int32_t> heads;
    if (!read_buckets(reader, buckets, heads, fault) || !read_records(reader, table.get(), heads, fault))
        return nullptr;
    return table.release();
}

uint32_t SYM_buckets(int32_t count, uint32_t buckets) {
    constexpr uint64_t crowded = 2; // symbols in a bucket, beyond which a file gets more buckets
    auto symbols = static_cast<uint32_t>(count);
    return symbols > crowded * buckets ? symbols | 1U : buckets;
}

uint64_t SYM_block_size(int32_t count, uint64_t text_bytes, uint32_t buckets) {
    constexpr uint64_t record_size = 3 * sizeof(int32_t) + 1; // beside its text
    return block_start_size + uint64_t{buckets} * sizeof(int32_t) + sizeof(int32_t) + text_bytes +
           static_cast<uint64_t>(count) * record_size;
}

void SYM_put(whole_file &file, const SYM_TEXTS &texts, uint32_t buckets) {
    symbol_trees trees = build_trees(texts, buckets);
    put_word(file, 4);
    put_bytes(file, "SYM", 4);
    put_number(file, SYM_FORMAT_WORD);
    put_word(file, buckets);
    put_word(file, 0);
    put_word(file, 0);
    put_bytes(file, trees.heads.data(), trees.heads.size() * sizeof(int32_t));
    put_number(file, texts.count);
    for (int32_t id = 0; id < texts.count; id++)
        put_symbol(file, texts.text(texts.owner, id), trees.left[static_cast<size_t>(id)],
                   trees.right[static_cast<size_t>(id)]);
}

uint64_t SYM_saved_size(SYM_TABLE *table) {
    settle_buckets(table);
    uint64_t text_bytes = 0;
    for (const char *text : table->texts)
        text_bytes += std::strlen(text);
    return SYM_block_size(SYM_count(table), text_bytes, table->hash_size);
}

void SYM_save(whole_file &file, SYM_TABLE *table) {
    settle_buckets(table);
    SYM_put(file, texts_of(table), table->hash_size);
}
