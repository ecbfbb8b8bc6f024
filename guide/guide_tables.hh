// The rows that the guide adds to the description tables, takes out of them and looks for.
#pragma once

#include "description/hash_tables.hh"
#include "description/tables.hh"

/// Length of every opcode and capture pattern. The guide's only value of its own; the guide alone writes it.
extern int32_t G_INST_LEN;

/// Prepares the tables: at least one TAP page and one scan cell page, the instruction length of an existing
/// table, and the blank pad row.
void initialize();

/// The row of that name, compared without regard to case; appended, with no opcode and no register, when
/// there is none.
int32_t check_inst_name(const char *name);
void delete_instruction(int32_t row);

/// The blank row, last in BUFFER_TAB, is the one to edit for a kind of pad of which no row exists. Its
/// function is a single blank until it gets a name.
bool is_blank_pad(const BUFFER_CELL *pad);
void append_blank_pad();

/// Deletes the rows that were left without a name. Row 0 goes last, so that the table never becomes empty.
template <class RECORD> void delete_unnamed(RECORD **&table) {
    for (int32_t row = DYNA_count(table) - 1; row >= 1; --row)
        if (table[row]->name == nullptr)
            DYNA_delete(&table, row);
    if (DYNA_count(table) > 1 && table[0]->name == nullptr)
        DYNA_delete(&table, 0);
}
