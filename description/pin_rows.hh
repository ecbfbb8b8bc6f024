// One reading of a pin file: the parser's actions build its rows, column by column, with each check at its
// column. What becomes of the rows is said in description/pin_lists.cc.
#pragma once

#include "description/tables.hh"

#include "support/flat_table.hh"

#include <string>
#include <vector>

/// Names of which equal ones are one address, as the scanners keep them.
class NAME_SET {
  public:
    /// False when the name is there already.
    bool insert(const char *name);
    bool contains(const char *name) const;

  private:
    struct TRAITS {
        static bool is_free(const char *name) {
            return name == nullptr;
        }
        static size_t hash_of(const char *name);
    };
    flat_table<const char *, TRAITS> names;
};

/// A row as the file has it.
struct PIN_ROW {
    PIN_ENTRY *pin;
    const char *bsc_text; ///< of a package: the items of the BSC clause as written, or its name; else null
};

struct PIN_READING {
    // What the reader of the file gives.
    const char *file = nullptr;             ///< its name for the messages
    const PACKAGE_ENTRY *package = nullptr; ///< what a file of %PACKAGE_LIST fills; null for %PIN_LIST
    NAME_SET numbers = {};                  ///< pin numbers that may not come again, for %PIN_LIST only

    // What the file gives; a value that it does not give stays.
    std::vector<PIN_ROW> rows = {};
    const char *package_type = nullptr;
    int32_t package_pins = 0;
    const char **allowed = nullptr; ///< names that may repeat, a DYNA table

    NAME_SET package_names = {}; ///< seen in this file
    NAME_SET top_names = {};     ///< seen in this file
    std::string bsc_text = {};   ///< of the row
    // The cells of the row's BSC list, one slot per key; cleared after each row.
    const char *bsc_c = nullptr, *bsc_i = nullptr, *bsc_o = nullptr;
    const char *bsc_io = nullptr, *bsc_i_only = nullptr, *bsc_o_only = nullptr;
};

// Actions of the grammar, in the order of a row. A null name is a '*'.
void pin_begin_row(PIN_READING &reading, const char *number, int32_t line);
void pin_package_column(PIN_READING &reading, const char *name);
void pin_top_column(PIN_READING &reading, const char *name);
void pin_direction_column(PIN_READING &reading, const char *name);
void pin_bsc_name(PIN_READING &reading, const char *name);
void pin_bsc_item(PIN_READING &reading, const char *key, const char *cell);
void pin_pad_name(PIN_READING &reading, const char *name);
void pin_pad_item(PIN_READING &reading, const char *key, const char *port);
void pin_pad_enable(PIN_READING &reading, int32_t level);
void pin_end_row(PIN_READING &reading);

// The statements between the rows.
void pin_package_type(PIN_READING &reading, const char *name, int32_t count);
void pin_clear_allowed(PIN_READING &reading);
void pin_allow(PIN_READING &reading, const char *name);
