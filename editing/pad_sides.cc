#include "editing/pad_sides.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

int32_t ADD_BUF_COUNT = 0;

namespace {

const char *const PAD_WORDS[] = {"Input", "Output", "Bidirectional"};

int32_t direction_of_side(PAD_SIDE side) {
    return side == SIDE_OUTPUT ? SDB_OUTPUT : SDB_INPUT;
}

const char *keyword_of_side(PAD_SIDE side) {
    return side == SIDE_OUTPUT ? "%OUTPUT" : "%INPUT";
}

[[noreturn]] void fail_floating(const OPIN_ROW &row, const PAD_PIN &pin) {
    vmr_fail("ERROR: %s Pad '%s' is floating.\n"
             "       Please correct your SDB or specify pin '%s' as skip signal.\n\n",
             PAD_WORDS[pin.word], text_or_undefined(pin.instance), text_or_undefined(row.port_name));
}

/// True when the net of the node has pins of these two instances alone. A transparent buffer belongs to the
/// pad only then: behind it, or before it, the cell would get between other pins of that net.
bool joins_only(int32_t node, int32_t obj, int32_t other) {
    for (int32_t on_net = net_tab[node_tab[node].net].first_node; on_net >= 0; on_net = node_tab[on_net].next)
        if (node_tab[on_net].obj != obj && node_tab[on_net].obj != other)
            return false;
    return true;
}

bool is_taken(const EDIT_FILE *fp, int32_t node) {
    return std::ranges::any_of(fp->taken_pins, [node](const SIGNAL_PLACE &taken) {
        return find_place_node(taken.instance, taken.pin) == node;
    });
}

/// The first node of the list that is neither `own`, nor of the object, nor taken by the TAP; -1 for none.
int32_t first_other_node(const EDIT_FILE *fp, int32_t node, int32_t own, int32_t obj) {
    while (node >= 0 && (node == own || (obj >= 0 && node_tab[node].obj == obj) || is_taken(fp, node)))
        node = node_tab[node].next;
    return node;
}

void note_cut(EDIT_FILE *fp, int32_t node, const EDIT_OPERAND &successor) {
    if (node >= 0)
        fp->cut_pins.insert_or_assign(node, successor);
}

} // namespace

PAD_PIN pad_pin(const OPIN_ROW &row, PAD_SIDE side, PAD_WORD word) {
    return {side, row.pad_instance, side == SIDE_OUTPUT ? row.pad_output : row.pad_input, word};
}

EDIT_OPERAND pin_operand(const PAD_PIN &pin) {
    return pin_of(pin.instance, pin.pin);
}

int32_t far_end(const EDIT_FILE *fp, const char *instance, const char *pin, int32_t direction) {
    int32_t obj = SDB_instance_obj(instance);
    if (obj < 0 || pin == nullptr)
        return -1;
    int32_t net = search_inet_connected_to_obj(obj, pin, direction);
    if (net < 0)
        return -1;
    return first_other_node(fp, net_tab[net].first_node, -1, obj);
}

int32_t far_end(const EDIT_FILE *fp, const PAD_PIN &pin) {
    return far_end(fp, pin.instance, pin.pin, direction_of_side(pin.side));
}

int32_t far_end_of_pad(const EDIT_FILE *fp, const OPIN_ROW &row, const PAD_PIN &pin) {
    int32_t node = far_end(fp, pin);
    if (node < 0)
        fail_floating(row, pin);
    return node;
}

EDIT_OPERAND node_operand(const EDIT_FILE *fp, int32_t node) {
    if (is_constant_net(node))
        return design_net(node);
    if (auto cut = fp->cut_pins.find(node); cut != fp->cut_pins.end())
        return cut->second;
    if (node < 0 || is_port_node(node))
        return port_net(node_pin_name(node));
    return pin_of(SDB_obj_name(sdb, node_tab[node].obj), node_pin_name(node));
}

int32_t port_far_node(const EDIT_FILE *fp, const OPIN_ROW &row) {
    int32_t own = port_tab[find_iport(row.port_name)].node;
    int32_t net = node_tab[own].net;
    int32_t node = net < 0 ? -1 : first_other_node(fp, net_tab[net].first_node, own, -1);
    if (node < 0)
        vmr_fail("ERROR: port '%s' is floating.\n\n", row.port_name);
    return node;
}

EDIT_OPERAND port_far_operand(const EDIT_FILE *fp, const OPIN_ROW &row) {
    return node_operand(fp, port_far_node(fp, row));
}

void cut_pin(EDIT_FILE *fp, const char *instance, const char *pin, const EDIT_OPERAND &successor,
             EDIT_BLANKS blanks) {
    edit_disconnect(fp, pin_of(instance, pin), blanks);
    note_cut(fp, find_place_node(instance, pin), successor);
}

void cut_pin(EDIT_FILE *fp, const PAD_PIN &pin, const EDIT_OPERAND &successor, EDIT_BLANKS blanks) {
    cut_pin(fp, pin.instance, pin.pin, successor, blanks);
}

void cut_port(EDIT_FILE *fp, const OPIN_ROW &row, const EDIT_OPERAND &successor) {
    edit_disconnect(fp, port_net(row.port_name));
    note_cut(fp, port_tab[find_iport(row.port_name)].node, successor);
}

PAD_PIN pin_behind_buffer(const EDIT_FILE *fp, const OPIN_ROW &row, PAD_SIDE side, PAD_WORD word) {
    PAD_PIN own = pad_pin(row, side, word);
    int32_t node = far_end_of_pad(fp, row, own);
    if (is_port_node(node))
        return own;
    int32_t obj = node_tab[node].obj;
    const char *class_name = object_class_name(obj);
    if (!trans_buffer(class_name))
        return own;
    if (!joins_only(node, obj, SDB_instance_obj(row.pad_instance))) {
        vmr_printf("WARNING: transparent buffer '%s' shares its net at pad '%s' with other pins.\n"
                   "         Boundary scan cell of port '%s' will be inserted next to the pad.\n\n",
                   text_or_undefined(SDB_obj_name(sdb, obj)), text_or_undefined(row.pad_instance),
                   text_or_undefined(row.port_name));
        return own;
    }
    const BUFFER_CELL *buffer = get_buffer(class_name);
    if (buffer == nullptr)
        vmr_fail("FATAL: can't find the definition of buffer '%s' ", class_name);
    const char *keyword = keyword_of_side(side);
    const char *pin = side == SIDE_OUTPUT ? buffer->output : buffer->input;
    if (pin == nullptr)
        vmr_fail("ERROR: (%s) can't find %s in %%BUFFER %s\n\n", text_or_undefined(JTAG_LIB_FILE), keyword,
                 class_name);
    if (verify_obj_pin_name(obj, pin, direction_of_side(side)) == nullptr)
        vmr_fail("ERROR: (%s) %s %s specified in %%BUFFER %s\n       can't be found in file '%s'",
                 text_or_undefined(JTAG_LIB_FILE), keyword, pin, class_name, text_or_undefined(MODULE_C_SDB));
    return {side, keep_text_or_null(SDB_obj_name(sdb, obj)), pin, word};
}
