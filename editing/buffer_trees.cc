#include "editing/buffer_trees.hh"

#include "planning/balance_groups.hh"
#include "planning/tap_state.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

void check_buffer(const BUFFER_CELL *buffer, const char *tap_pin) {
    if (buffer == nullptr)
        vmr_fail("ERROR: (%s) no buffer cell is named in %%TAP_CONTROLLER for signal '%s'.\n\n",
                 JTAG_LIB_FILE == nullptr ? "" : JTAG_LIB_FILE, tap_pin);
}

void report_head(const BUFFER_CELL *buffer, const char *tap_pin) {
    report_buffer_line(keep_format("  ** Using buffer '%s' for signal '%s'\n", buffer->name, tap_pin));
    report_buffer_line("  ...............................................\n");
}

/// Joins the first buffer of a tree or chain to the TAP. A pin of the TAP stands first in the line, a port
/// second.
void connect_to_tap(EDIT_FILE *fp, const std::string &first, const BUFFER_CELL *buffer, const char *tap_pin) {
    EDIT_OPERAND input = pin_of(first, buffer->input);
    if (fp->tap != nullptr)
        edit_connect(fp, tap_signal(fp, tap_pin), input);
    else
        edit_connect(fp, input, tap_signal(fp, tap_pin));
}

} // namespace

std::string tree_buffer_name(const char *prefix, int32_t level, int32_t number) {
    return prefix + ("_buf_" + std::to_string(level)) + "_" + std::to_string(number);
}

std::string chain_buffer_name(const char *prefix, int32_t number) {
    return format_text("%s_df_buf_%d", prefix, number);
}

void report_buffer_line(const char *line) {
    append_row(BUFFER_REPORT, keep_text(line));
}

int32_t build_buffer_balance_tree(EDIT_FILE *fp, const int32_t *group, const char *tap_pin,
                                  const char *prefix, const BUFFER_CELL *buffer) {
    int32_t size = TAP_CONTR->group_size;
    int32_t count = DYNA_count(group);
    if (size < 1)
        return 0;
    if (count > 0)
        check_buffer(buffer, tap_pin);
    if (count <= size) {
        for (int32_t i = 1; i <= count; i++) {
            std::string name = tree_buffer_name(prefix, 1, i);
            edit_add_instance(fp, name, buffer->name);
            connect_to_tap(fp, name, buffer, tap_pin);
        }
        if (count > 0) {
            report_head(buffer, tap_pin);
            report_buffer_line(keep_format("     Level 1: TAP controller drives %2d buffers\n", count));
        }
        return 1;
    }
    // One level is not enough: the buffers of `upper` are the level above this one.
    int32_t *upper = split_into_groups(count, size);
    int32_t level = build_buffer_balance_tree(fp, upper, tap_pin, prefix, buffer);
    for (int32_t i = 1; i <= count; i++)
        edit_add_instance(fp, tree_buffer_name(prefix, level + 1, i), buffer->name);
    report_buffer_line(keep_format("     Level %d: %3d buffers    drive %3d buffers\n", level + 1,
                                   DYNA_count(upper), count));
    int32_t driven = 0;
    for (int32_t j = 0; j < DYNA_count(upper); j++)
        for (int32_t member = 0; member < upper[j]; member++)
            edit_connect(fp, pin_of(tree_buffer_name(prefix, level, j + 1), buffer->output),
                         pin_of(tree_buffer_name(prefix, level + 1, ++driven), buffer->input));
    DYNA_free(&upper);
    return level + 1;
}

int32_t build_dfspeed_buffer_balance_tree(EDIT_FILE *fp, const int32_t *group, const char *tap_pin,
                                          const char *prefix, const BUFFER_CELL *buffer) {
    if ((TAP_CONTR->group_size < 1 && TAP_CONTR->df_group_size < 1) || group == nullptr)
        return 0;
    check_buffer(buffer, tap_pin);
    int32_t count = DYNA_count(group);
    std::string name = chain_buffer_name(prefix, 1);
    edit_add_instance(fp, name, buffer->name);
    connect_to_tap(fp, name, buffer, tap_pin);
    int64_t total = count > 0 ? group[0] : 0;
    for (int32_t i = 2; i <= count; i++) {
        std::string next = chain_buffer_name(prefix, i);
        edit_add_instance(fp, next, buffer->name);
        edit_connect(fp, pin_of(name, buffer->output), pin_of(next, buffer->input));
        name = next;
        total += group[i - 1];
    }
    if (count > 0) {
        report_head(buffer, tap_pin);
        report_buffer_line(keep_format("     Using %4d buffers to drives %4lld signals\n", count,
                                       static_cast<long long>(total)));
    }
    return 1;
}
