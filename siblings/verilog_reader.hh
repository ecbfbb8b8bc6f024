// The reader of Verilog netlists: modules with their ports, nets and instances, from the tokens of the
// scanner.
//
// Reading goes in two steps. VLOG_read takes the files in; what an instance connects to is kept by name or
// place, as its module may stand further on. VLOG_link then looks every module and pin up.
#pragma once

#include "siblings/netlist.hh"
#include "siblings/verilog_scan.hh"
#include "siblings/verilog_words.hh"

#include <functional>
#include <unordered_map>
#include <unordered_set>

/// One connection of an instance: `count` of its bits, the leftmost first.
struct VLOG_CONNECTION {
    int32_t pin;       ///< name, or NL_NONE when connected by place
    int32_t first_bit; ///< of those of the instance
    int32_t count;     ///< 0 when left open
    bool sized;        ///< false for a number without a size, which fits any width
    bool operator==(const VLOG_CONNECTION &) const = default;
};

/// What is known of an instance beside its record in the module, under the same index.
struct VLOG_INSTANCE {
    int32_t first_connection; ///< instances of one module that are connected alike share them
    int32_t connection_count;
    int32_t first_bit; ///< of VLOG_MODULE::bits
    int32_t file;
    int line;
    bool parameters;    ///< they were passed over
    int32_t array_size; ///< instances of its array, 0 when it stands alone
    int32_t place;      ///< in the array, from the right, which has the low bits
};

/// Two nets that an assign or a supply makes one.
struct VLOG_JOIN {
    int32_t left;
    int32_t right;
    int32_t file;
    int line;
};

/// A name declared in the module that is being read.
struct VLOG_DECLARATION {
    int32_t name;
    int32_t direction; ///< NL_NONE unless it is a port with a direction
    int32_t first_net; ///< of the leftmost bit
    bool vector;
    bool implicit; ///< never declared, only used
    int32_t left;
    int32_t right;
    int line;
};

struct VLOG_MODULE {
    int32_t module; ///< in the design
    int32_t file;
    int line;
    int64_t assign_count = 0;
    std::vector<VLOG_INSTANCE> instances;
    std::vector<VLOG_CONNECTION> connections;
    std::vector<int32_t> bits; ///< nets, or NL_NONE for a bit left open
    std::vector<VLOG_JOIN> joined;
};

/// Scratch of the module that is being read. The searches by name id need no clearing between modules: an
/// entry counts when the row that it leads to has that name.
struct VLOG_SCRATCH {
    std::vector<VLOG_DECLARATION> declarations;
    std::vector<int32_t> declaration_of_name;
    std::vector<int32_t> instance_of_name;
    std::vector<int32_t> instance_of_def;     ///< the last one of each module of the design
    std::vector<int32_t> port_order;          ///< names in the header
    std::unordered_set<int32_t> header_names; ///< the same, for lookups
    std::unordered_map<int32_t, int64_t> parameters;
    std::vector<bool> assigned;
    std::vector<std::pair<int32_t, int>> defparams; ///< instances that one names, with its line
};

struct VLOG {
    NL_DESIGN &design;
    VSCAN &scan;
    bool library;         ///< ports alone; bodies are passed over
    bool drop_parameters; ///< of instances of cells; else they are refused
    std::deque<VLOG_MODULE> modules;
    VLOG_SCRATCH scratch{};
    NL_MODULE *module = nullptr; ///< the module that is being read
    VLOG_MODULE *record = nullptr;
};

/// Reads one file. The names table of the design holds the reserved words (VLOG_put_words).
void VLOG_read(VLOG &reader, const std::string &path);

/// Finds the module of every instance and connects the pins. `find_cell` fills a module that no file defines
/// and returns false when there is none. Of parameters that are left away it warns once for each cell.
void VLOG_link(VLOG &reader, const std::function<bool(NL_MODULE &)> &find_cell);

// Between the files of the reader.

constexpr int64_t VLOG_WIDTH_LIMIT = 1 << 20; ///< bits of one vector or expression

/// Ends the program when a module has more of something than ids can count.
void VLOG_check_count(const VLOG &reader, size_t count, const char *what, int line);

/// A name as messages show it.
std::string VLOG_shown_name(const VLOG &reader, int32_t name);

inline bool VLOG_is_word(const VLOG &reader, int32_t word) {
    return reader.scan.token.kind == TOKEN_NAME && reader.scan.token.id == word;
}
inline bool VLOG_is_symbol(const VLOG &reader, char symbol) {
    return reader.scan.token.symbol == symbol;
}
/// True at an identifier that is no reserved word.
inline bool VLOG_is_name(const VLOG &reader) {
    return reader.scan.token.kind == TOKEN_ESCAPED ||
           (reader.scan.token.kind == TOKEN_NAME && reader.scan.token.id >= VLOG_word_count);
}
void VLOG_expect_symbol(VLOG &reader, char symbol, const char *where);
int32_t VLOG_take_name(VLOG &reader, const char *what);

/// A constant expression of numbers and parameters.
int64_t VLOG_constant(VLOG &reader);
/// `[left:right]`; false when no range stands here.
bool VLOG_range(VLOG &reader, int32_t &left, int32_t &right);
/// Appends the nets of an expression, leftmost bit first. Returns false for a number without a size.
bool VLOG_expression(VLOG &reader, std::vector<int32_t> &bits);

VLOG_DECLARATION *VLOG_find_declaration(VLOG &reader, int32_t name);
VLOG_DECLARATION &VLOG_declare(VLOG &reader, int32_t name, bool vector, int32_t left, int32_t right,
                               bool implicit);
inline int32_t VLOG_width(const VLOG_DECLARATION &declaration) {
    int32_t span = declaration.left - declaration.right;
    return (span < 0 ? -span : span) + 1;
}
/// A new net that nothing drives. Its name is made unlike all others when the module is linked.
int32_t VLOG_unknown_net(NL_DESIGN &design, NL_MODULE &module);
/// The net itself, or a new one when it is such a net: no two pins share it.
int32_t VLOG_own_net(NL_DESIGN &design, NL_MODULE &module, int32_t net);

/// Statements of a module's body. Each starts at its first token and ends behind its ';'.
void VLOG_instances(VLOG &reader);
void VLOG_assign(VLOG &reader);
void VLOG_defparam(VLOG &reader);
/// Marks the instances that the module's defparams name.
void VLOG_close_defparams(VLOG &reader);
/// Makes two nets one, by what stands on that line.
void VLOG_join_nets(VLOG &reader, int32_t left, int32_t right, int line);
/// Joins the nets of an assignment whose left side is `left`.
void VLOG_join(VLOG &reader, const std::vector<int32_t> &left, std::vector<int32_t> &right, bool sized,
               int line);
