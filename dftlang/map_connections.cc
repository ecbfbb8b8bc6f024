// %CONNECT_SCAN and %CONNECT_BIST with the instance files that they name, and the fault lists with theirs.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/side_files.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstring>
#include <string>

namespace {

/// Those of the clocks inside it are looked at too, and first.
void check_clock_polarity(SCAN_AST *clock) {
    for (SCAN_AST &inner : scan_children(clock)) {
        if (inner.kind == CLOCK_NODE)
            check_clock_polarity(&inner);
    }
    SCAN_AST *statement = SCAN_FIND_CHILD(clock, CLOCK_POLARITY_NODE);
    const char *word = value_text(statement);
    if (word != nullptr && std::strcmp(word, "POSITIVE") != 0 && std::strcmp(word, "NEGATIVE") != 0)
        error_handler(in_file_name, statement->line, MESSAGE_CLOCK_POLARITY);
}

void map_connection(SCAN_AST &block, SCAN_KIND clocks, SCAN_KIND instance_files) {
    SCAN_AST *violation = SCAN_FIND_CHILD(&block, MS_VIOLATION);
    if (violation != nullptr && static_cast<uint32_t>(value_number(violation)) > 1)
        scan_fail("MS_VIOLATION value must be 1 or 0 in dft file!\n ");
    for (SCAN_AST &file : scan_children(SCAN_FIND_CHILD(&block, instance_files))) {
        const char *name = value_text(&file);
        read_side_file(std::strncmp(name, "./", 2) == 0 ? name + 2 : name, INSTANCE_FILE_KIND);
    }
    for (SCAN_AST &clock : scan_children(SCAN_FIND_CHILD(&block, clocks)))
        check_clock_polarity(&clock);
}

/// Adds the words of a fault file, cut at 1023 characters.
void append_file_words(const char *file, const char **&words) {
    constexpr size_t longest_word = 1023;
    const char *name = resolve_side_file(DFT_OBJECT->path, file);
    std::FILE *stream = FNM_open(name);
    if (stream == nullptr) {
        error_printf("WARNING : Can not open input file - '%s'.\n", name);
        return;
    }
    std::string word;
    bool any = false;
    int c;
    do {
        c = std::fgetc(stream);
        bool inside = c != EOF && c != '\0' && std::strchr(" \t\n,;", c) == nullptr;
        if (inside && word.size() < longest_word)
            word += static_cast<char>(c);
        if (!inside && !word.empty()) {
            append_row(words, keep_text(word));
            any = true;
            word.clear();
        }
    } while (c != EOF);
    std::fclose(stream);
    if (!any)
        error_printf("WARNING : '%s' file is empty file.\n", name);
}

struct FAULT_LIST {
    SCAN_KIND names;
    SCAN_KIND file;
    const char **DFT_CONFIGURATION::*list;
};

constexpr FAULT_LIST fault_lists[] = {
    {DONT_FAULT_NODE, DONT_FAULT_FILE_NODE, &DFT_CONFIGURATION::dont_fault},
    {MUST_FAULT_NODE, MUST_FAULT_FILE_NODE, &DFT_CONFIGURATION::must_fault},
};

} // namespace

void map_connections(SCAN_AST *list) {
    bool is_bist = list->kind == CONNECT_BIST_LIST_NODE;
    for (SCAN_AST &block : scan_children(list))
        map_connection(block, is_bist ? BIST_CLOCK_LIST_NODE : SCAN_CLOCK_LIST_NODE,
                       is_bist ? BIST_INSTANCES_FILE_NODE : SCAN_INSTANCES_FILE_NODE);
}

void map_select_fault(SCAN_AST *block) {
    for (const FAULT_LIST &row : fault_lists) {
        for (const char *name : scan_names(SCAN_FIND_CHILD(block, row.names)))
            append_row(DFT_OBJECT->*row.list, name);
        if (SCAN_AST *file = SCAN_FIND_CHILD(block, row.file))
            append_file_words(value_text(file), DFT_OBJECT->*row.list);
    }
}
