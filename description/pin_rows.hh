// What the pin file's parser does with what it reads, and the state of one reading.
//
// A row is built column by column, with each check at its column, and stored at its end. PIN_FLAG tells
// where: in PIN_TABLE's buckets for %PIN_LIST, in the current PACKAGE_ENTRY for %PACKAGE_LIST.
#pragma once

#include "description/tables.hh"

/// Values of PIN_FLAG.
enum PIN_MODE : int32_t { PIN_IDLE = -1, PIN_OF_PACKAGE = 0, PIN_OF_LIST = 1 };

extern int32_t PIN_FLAG;                ///< set by save_pin_list and save_package_list
extern PACKAGE_ENTRY *current_packageL; ///< the entry that takes the rows in package mode

/// Forget the pin numbers of earlier readings; bsdft_init calls it.
void clear_pin_numbers();
/// Starts and ends a file: forgets the names seen in it.
void clear_pin_names();

/// A new record with its number, in a bucket of its own. Ends the run when an earlier pin has the number.
PIN_ENTRY *save_pin(const char *number, int32_t line);

/// 1 when the package name, or the top name, was seen in this file; else records it and returns 0. INTERNAL,
/// OBSERVE and OBSERVE_ONLY mark rows of internal cells: as package names they are never recorded.
int32_t exist_io_pin(const char *name);
int32_t exist_v_pin(const char *name);

/// Checks that the index of a name with brackets is a number; ends the run when it is not.
void parse_pin_name(const char *name, int32_t line);

/// Warns of each allowed name that no row of PIN_TABLE has as its package name.
void exist_multiple_pin();

// Actions of the grammar, in the order of a row. A null name is a '*'.
void pin_begin_row(const char *number, int32_t line);
void pin_package_column(const char *name);
void pin_top_column(const char *name);
void pin_direction_column(const char *name);
void pin_bsc_name(const char *name);
void pin_bsc_item(const char *key, const char *cell);
void pin_pad_name(const char *name);
void pin_pad_item(const char *key, const char *port);
void pin_pad_enable(int32_t level);
void pin_end_row();

// The statements between the rows.
void pin_package_type(const char *name, int32_t count);
void pin_clear_allowed();
void pin_allow(const char *name);
