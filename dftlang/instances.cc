// %CONNECT_SCAN and %CONNECT_BIST with their instances, and the fault lists: what is in the DFT file and in
// the files that it names.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/side_files.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstdlib>
#include <cstring>
#include <string>
#include <strings.h>
#include <utility>

namespace {

struct WORD_CODE {
    const char *word;
    int32_t code;
};

constexpr WORD_CODE control_codes[] = {
    {"CONTROL", 0},           {"CONTROL_WEIGHT0", 1}, {"CONTROL_WEIGHT0_A", 5},
    {"CONTROL_WEIGHT0_B", 6}, {"CONTROL_WEIGHT1", 2}, {"CONTROL_WEIGHT1_A", 7},
    {"CONTROL_WEIGHT1_B", 8}, {"OBSERVE", 3},         {"OBSERVE_BLOCK", 4},
};

int32_t word_code(const char *word) {
    for (const WORD_CODE &row : control_codes) {
        if (::strcasecmp(row.word, word) == 0)
            return row.code;
    }
    return -1;
}

/// The names of a tail, in order; true when one of them stands in braces.
bool take_tail(SCAN_AST &tail, INSTANCE_ELEMENT &element) {
    size_t count = 0;
    bool in_braces = false;
    for (SCAN_AST &part : scan_children(&tail)) {
        bool braced = part.kind == PSO_PORT_NAME_NODE;
        element.tail[count++] = braced ? value_text(&part) : scan_text(&part);
        in_braces = in_braces || braced;
    }
    return in_braces;
}

void take_point_place(SCAN_AST &place, INSTANCE_ELEMENT &element) {
    if (take_tail(place, element))
        element.tail_form = 1;
    else
        element.name = std::exchange(element.tail[0], nullptr); // a bare name is no tail
}

INSTANCE_ELEMENT NEW_INSTANCE_ELEMENT() {
    INSTANCE_ELEMENT element = {};
    element.count = element.control = element.observe = element.transition = element.pipeline = -1;
    element.capture1 = element.group = -1;
    return element;
}

INSTANCE_ELEMENT instance_element(SCAN_AST &node) {
    INSTANCE_ELEMENT element = NEW_INSTANCE_ELEMENT();
    for (SCAN_AST &part : scan_children(&node)) {
        switch (part.kind) {
        case NUMBER_NODE:
            element.count = static_cast<int32_t>(std::strtol(scan_text(&part), nullptr, 10));
            break;
        case IDENT_NODE:
            element.name = scan_text(&part);
            break;
        case PSO_COMPLEMENT_NODE:
            element.inverted = 1;
            break;
        case PSO_INVERSE1_NODE:
            element.bang_before = 1;
            break;
        case PSO_INVERSE2_NODE:
            element.bang_after = 1;
            break;
        case SYMBOL_NODE:
            element.capture1 = 1;
            break;
        case PSO_CONTROL_NODE:
            element.control = word_code(value_text(&part));
            break;
        case PSO_OBSERVE_NODE:
            element.observe = word_code(value_text(&part));
            break;
        case PSO_TRANSITION_NODE:
            element.transition = 9;
            break;
        case PSO_PIPELINE_NODE:
            element.pipeline = 10;
            break;
        case PIN_NODE:
            if (element.name == nullptr)
                take_point_place(part, element);
            else
                take_tail(part, element);
            break;
        default:
            break;
        }
    }
    return element;
}

bool is_group(const SCAN_AST &part) {
    return part.kind == GROUP_NODE || part.kind == IDENT_LIST_NODE;
}

/// Appends the elements of a list or of a group in it; groups count on from `group`.
void append_elements(const SCAN_AST *list, std::vector<INSTANCE_ELEMENT> &elements, int32_t &group) {
    int32_t count = -1;
    for (SCAN_AST &part : scan_children(list)) {
        if (part.kind == NUMBER_NODE) { // stands in front of the statement's first element
            count = static_cast<int32_t>(std::strtol(scan_text(&part), nullptr, 10));
        } else if (part.kind == IDENT_NODE) {
            elements.push_back(NEW_INSTANCE_ELEMENT());
            elements.back().name = scan_text(&part);
        } else if (part.kind == INSTANCE_ELEMENT_NODE) {
            INSTANCE_ELEMENT &element = elements.emplace_back(instance_element(part));
            if (count >= 0 || element.count < 0)
                element.count = std::exchange(count, -1);
        } else if (is_group(part)) {
            size_t first = elements.size();
            append_elements(&part, elements, group);
            for (size_t i = first; i < elements.size(); i++)
                elements[i].group = group;
            group++;
        }
    }
}

/// Notes a list; its groups are counted from `group` on.
void add_list(INSTANCE_LIST *&lists, SCAN_AST *list, int32_t &group) {
    append_row(lists, {list, group});
    for (SCAN_AST &part : scan_children(list))
        group += is_group(part) ? 1 : 0;
}

PAD_RECORD pad_record(SCAN_AST *node) {
    return {scan_text(SCAN_FIND_CHILD(node, IDENT_NODE)),
            SCAN_FIND_CHILD(node, PSO_COMPLEMENT_NODE) != nullptr,
            SCAN_FIND_CHILD(node, PSO_INVERSE1_NODE) != nullptr,
            SCAN_FIND_CHILD(node, PSO_INVERSE2_NODE) != nullptr};
}

/// The instances of one instance file. A file that is not there holds none.
void CONVERT_FILE_INSTANCES(const char *file, INSTANCE_LISTS &lists, int32_t &group) {
    const char *plain = std::strncmp(file, "./", 2) == 0 ? file + 2 : file;
    const char *name = resolve_side_file(plain);
    int32_t had_map_file = std::exchange(has_map_file, 1);
    bool found = parse_file_if_there(name, name, INSTANCE_FILE_KIND);
    has_map_file = had_map_file;
    SCAN_AST *root = scan_root[INSTANCE_FILE_KIND];
    if (!found || root == nullptr) // not there, or without a statement
        return;
    for (SCAN_AST &list : scan_children(SCAN_FIND_CHILD(root, PSO_MUST_SCAN_LIST_NODE)))
        add_list(lists.elements, &list, group);
    for (SCAN_AST &list : scan_children(SCAN_FIND_CHILD(root, PSO_FS_SCAN_LIST_NODE)))
        add_list(lists.fs_scan, &list, group);
    if (SCAN_AST *pad = SCAN_FIND_CHILD(root, SCAN_IN_PAD_NODE))
        lists.scan_in_pad = pad_record(pad);
    if (SCAN_AST *pad = SCAN_FIND_CHILD(root, SCAN_OUT_PAD_NODE))
        lists.scan_out_pad = pad_record(pad);
    append_row<const SCAN_AST *>(lists.files, root);
}

/// The instances of a block: those of its files when it names files, else those of its list.
INSTANCE_LISTS block_instances(SCAN_AST *list, SCAN_AST *files) {
    INSTANCE_LISTS made = {};
    int32_t group = 0;
    if (files == nullptr && list != nullptr)
        add_list(made.elements, list, group);
    for (SCAN_AST &file : scan_children(files))
        CONVERT_FILE_INSTANCES(value_text(&file), made, group);
    fit_rows(made.elements);
    return made;
}

/// The polarity of a clock; those of the clocks inside it are looked at too.
int32_t clock_polarity(SCAN_AST *clock) {
    for (SCAN_AST &inner : scan_children(clock)) {
        if (inner.kind == CLOCK_NODE)
            clock_polarity(&inner);
    }
    SCAN_AST *statement = SCAN_FIND_CHILD(clock, CLOCK_POLARITY_NODE);
    if (statement == nullptr)
        return POLARITY_NONE;
    const char *word = value_text(statement);
    if (std::strcmp(word, "POSITIVE") == 0)
        return POLARITY_POSITIVE;
    if (std::strcmp(word, "NEGATIVE") != 0)
        error_handler(in_file_name, statement->line, MESSAGE_CLOCK_POLARITY);
    return POLARITY_NEGATIVE;
}

/// The kinds that differ between %CONNECT_SCAN and %CONNECT_BIST.
struct CONNECT_KINDS {
    SCAN_KIND clocks;
    SCAN_KIND instances;
    SCAN_KIND instance_files;
};

constexpr CONNECT_KINDS scan_kinds = {SCAN_CLOCK_LIST_NODE, SCAN_INSTANCES_NODE, SCAN_INSTANCES_FILE_NODE};
constexpr CONNECT_KINDS bist_kinds = {BIST_CLOCK_LIST_NODE, BIST_INSTANCES_NODE, BIST_INSTANCES_FILE_NODE};

CONNECT_ROW connect_row(SCAN_AST &block, const CONNECT_KINDS &kinds) {
    CONNECT_ROW row = {};
    row.first = value_text(&block);
    row.second = scan_text(scan_child(&block)->sibling);
    row.line = block.line;
    SCAN_AST *violation = SCAN_FIND_CHILD(&block, MS_VIOLATION);
    row.ms_violation = value_number(violation);
    if (violation != nullptr && static_cast<uint32_t>(row.ms_violation) > 1)
        scan_fail("MS_VIOLATION value must be 1 or 0 in dft file!\n ");
    row.instances = block_instances(SCAN_FIND_CHILD(&block, kinds.instances),
                                    SCAN_FIND_CHILD(&block, kinds.instance_files));
    for (SCAN_AST &clock : scan_children(SCAN_FIND_CHILD(&block, kinds.clocks)))
        append_row(row.clocks, {value_text(&clock), clock_polarity(&clock)});
    fit_rows(row.clocks);
    row.block = &block;
    return row;
}

/// Adds the words of a fault file, cut at 1023 characters.
void append_file_words(const char *file, const char **&words) {
    constexpr size_t longest_word = 1023;
    const char *name = resolve_side_file(file);
    std::FILE *stream = FNM_open(name);
    if (stream == nullptr) {
        error_printf("WARNING : Can not open input file - '%s'.\n", name);
        has_error = 1;
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
    if (!any) {
        error_printf("WARNING : '%s' file is empty file.\n", name);
        has_error = 1;
    }
}

} // namespace

void CONVERT_SCAN_INSTANCES(const INSTANCE_LIST &list, std::vector<INSTANCE_ELEMENT> &elements) {
    int32_t group = list.first_group;
    append_elements(list.list, elements, group);
}

void map_connect_scans(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list))
        append_row(DFT_OBJECT->connect_scans, connect_row(block, scan_kinds));
}

void map_connect_bists(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list))
        append_row(DFT_OBJECT->connect_bists, connect_row(block, bist_kinds));
}

void map_select_fault(SCAN_AST *block) {
    DFT_OBJECT->select_fault = block;
    append_names(SCAN_FIND_CHILD(block, DONT_FAULT_NODE), DFT_OBJECT->dont_fault);
    append_names(SCAN_FIND_CHILD(block, MUST_FAULT_NODE), DFT_OBJECT->must_fault);
    if (SCAN_AST *file = SCAN_FIND_CHILD(block, DONT_FAULT_FILE_NODE))
        append_file_words(value_text(file), DFT_OBJECT->dont_fault);
    if (SCAN_AST *file = SCAN_FIND_CHILD(block, MUST_FAULT_FILE_NODE))
        append_file_words(value_text(file), DFT_OBJECT->must_fault);
}
