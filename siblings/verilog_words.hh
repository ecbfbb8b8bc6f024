// The reserved words of IEEE 1364 that the netlist reader and writer know.
#pragma once

#include "siblings/names.hh"

#include <cstdint>
#include <string_view>

/// Words with a meaning to the reader; in a names table that was opened with VLOG_put_words their ids are
/// these.
enum VLOG_WORD : int32_t {
    WORD_MODULE,
    WORD_MACROMODULE,
    WORD_ENDMODULE,
    WORD_INPUT,
    WORD_OUTPUT,
    WORD_INOUT,
    WORD_WIRE,
    WORD_TRI,
    WORD_SUPPLY0,
    WORD_SUPPLY1,
    WORD_REG,
    WORD_SIGNED,
    WORD_INTEGER,
    WORD_ASSIGN,
    WORD_PARAMETER,
    WORD_LOCALPARAM,
    WORD_PRIMITIVE,
    WORD_ENDPRIMITIVE,
    WORD_FUNCTION,
    WORD_ENDFUNCTION,
    WORD_TASK,
    WORD_ENDTASK,
    WORD_SPECIFY,
    WORD_ENDSPECIFY,
    WORD_CONFIG,
    WORD_ENDCONFIG,
    WORD_DEFPARAM,
    WORD_OTHERS ///< the first of the words that only are reserved
};

/// Number of reserved words.
extern const int32_t VLOG_word_count;

/// Puts the words into an empty table, so that a word is told by its id.
void VLOG_put_words(NL_NAMES &names);

/// True for a reserved word of IEEE 1364, or of IEEE 1800 where a reader of today would stumble over it.
bool VLOG_is_reserved(std::string_view text);

/// True for an identifier that needs no escape.
bool VLOG_is_plain(std::string_view text);

/// `text` as an identifier: as it stands, or escaped, with the blank that ends it.
std::string VLOG_identifier(std::string_view text);
