// The records of an SDB file and its constants.
//
// An SDB file is close to a memory image: a header, the symbol block, and the records of each table as arrays
// of 32-bit words. The structs here are those records, word for word, so that a table is read as one run of
// bytes. An id is an index into the table that its field names; -1 means none.
#pragma once

#include <array>
#include <cstdint>

/// Index of each table in the header of a file.
enum SDB_TABLE_INDEX : int32_t {
    SDB_CLASS_TAB = 0,
    SDB_PORT_TAB = 1,
    SDB_OBJ_TAB = 2,
    SDB_NET_TAB = 3,
    SDB_NODE_TAB = 4,
    SDB_PIN_TAB = 5,
    SDB_SOBJ_TAB = 6,
    SDB_SNET_TAB = 7,
    SDB_XPIN_TAB = 8,
    SDB_XNODE_TAB = 9,
    SDB_PREFIX_TAB = 10,
    SDB_XPORT_TAB = 11,
    SDB_PROP_TAB = 12,
    SDB_FIRST_USER_TAB = 16,
    SDB_TAB_COUNT = 32
};

/// Direction codes of ports and pins, in the two low bits of SDB_PORT.flags and SDB_PIN.direction.
enum SDB_DIRECTION : int32_t { SDB_OUTPUT = 0, SDB_BIDIRECTIONAL = 1, SDB_INPUT = 2 };
constexpr int32_t SDB_DIRECTION_MASK = 3;

/// The constant nets of every design.
constexpr int32_t SDB_NET_GND = 0;
constexpr int32_t SDB_NET_VCC = 1;

/// Bit of a prefix row's target that marks an object id.
constexpr int32_t SDB_OBJ_TARGET = 0x40000000;
/// Bit of a prefix row's target that no net has.
constexpr int32_t SDB_NOT_NET_TARGET = 0x20000000;
/// Names and targets below -5 count from here: -6 is row or symbol 0.
constexpr int32_t SDB_ENTRY_BASE = -6;

/// The row or symbol id that an entry below -5 stands for. For every 32-bit entry below -5 the result is not
/// negative.
constexpr int32_t SDB_entry_row(int32_t entry) {
    return SDB_ENTRY_BASE - entry;
}
/// The way back: the name entry of a row of the prefix table.
constexpr int32_t SDB_prefix_name(int32_t row) {
    return SDB_ENTRY_BASE - row;
}

/// A cell type that the design uses.
struct SDB_CLASS {
    int32_t name;      ///< symbol id
    int32_t type;      ///< class kind, an index into sdb_class_kind
    int32_t first_pin; ///< the class's first row in the pin table
    int32_t pin_count;
    int32_t word4;    ///< 1 in a new record
    int32_t word5;    ///< 0 in a new record
    int32_t word6;    ///< 0 in a new record
    int32_t last_pin; ///< pin_count less one in a new record
};

struct SDB_PORT {
    int32_t name;       ///< symbol id
    int32_t flags;      ///< the two low bits are the direction
    int32_t node;       ///< the port's own node, -1 none
    int32_t attributes; ///< flag word, kept for the sibling tools
};

/// An instance. Its name is in the table of object names under the same index.
struct SDB_OBJ {
    int32_t class_id;   ///< -1 none
    int32_t first_node; ///< the first of the object's consecutive nodes, -1 none
    int32_t flags;
};

/// A net. Its name is in the table of net names under the same index.
struct SDB_NET {
    int32_t first_node; ///< start of the list of the net's nodes, -1 none
    int32_t flags;
};

/// A connection point: a pin of an object, or a port.
struct SDB_NODE {
    int32_t obj;  ///< -1 for a port's own node
    int32_t pin;  ///< pin id; on a port node the port id
    int32_t net;  ///< -1 when not connected
    int32_t next; ///< next node on the same net, -1 at the end
    int32_t flags;
};

/// A pin of a class.
struct SDB_PIN {
    int32_t name;      ///< symbol id
    int32_t direction; ///< direction code in the low bits
};

/// One part of a hierarchical name. The row of a child lies behind the row of its parent.
struct SDB_PREFIX {
    int32_t name;   ///< symbol id; below -5 the name of row -6 - name is meant
    int32_t parent; ///< row of the enclosing instance, -1 at the top
    int32_t target; ///< object id + 0x40000000, or net id; below -5 the symbol -6 - target of a class name
};

static_assert(sizeof(SDB_CLASS) == 32 && sizeof(SDB_PORT) == 16 && sizeof(SDB_OBJ) == 12);
static_assert(sizeof(SDB_NET) == 8 && sizeof(SDB_NODE) == 20 && sizeof(SDB_PIN) == 8);
static_assert(sizeof(SDB_PREFIX) == 12);

/// What a new table gets, by index 0 to 15.
struct SDB_TABLE_LAYOUT {
    const char *name;    ///< short name in the file, up to four characters
    int32_t record_size; ///< in bytes
    int32_t capacity;    ///< records at first
    int32_t growth;      ///< records that a growing step adds
};
constexpr int32_t SDB_FIXED_TAB_COUNT = 16;
extern const SDB_TABLE_LAYOUT sdb_table_layout[SDB_FIXED_TAB_COUNT];

/// Names of the class kinds by index; null where an index has no kind.
constexpr int32_t SDB_CLASS_KIND_COUNT = 192;
extern const std::array<const char *, SDB_CLASS_KIND_COUNT> sdb_class_kind;
enum SDB_CLASS_KIND : int32_t { SDB_KIND_DESIGN = 0, SDB_KIND_CELL = 1 };

/// Name of a class kind, or null.
const char *SDB_class_kind_name(int32_t type);
/// Index of a class kind name, or -1.
int32_t SDB_find_class_kind(const char *name);
/// True for a class with a pin range of its own: a kind below 16, or from 0x1000 to 0x2FFF.
constexpr bool SDB_is_user_class(int32_t type) {
    return (type >= 0 && type < 16) || (type >= 0x1000 && type <= 0x2FFF);
}

constexpr int32_t SDB_HEADER_BLOCK_SIZE = 732;
constexpr int32_t SDB_FORMAT_WORD = 300;
constexpr int32_t SDB_VERSION = 300;
constexpr int32_t SYM_FORMAT_WORD = 100;
constexpr uint32_t SYM_NEW_HASH_SIZE = 1023;
