#include "editing/tap_place.hh"

int32_t rwv_hier_same_instance_tapG = -1;
int32_t rwv_hier_same_instance_iopadG = -1;
int32_t rwv_hier_instance_matchG = MATCH_NONE;

bool tap_is_beside_cells() {
    return PAD_MODULE_EXIST == 0 ||
           (rwv_hier_same_instance_iopadG == 0 && rwv_hier_instance_matchG == MATCH_HERE);
}

EDIT_OPERAND tap_signal(const char *pin) {
    return tap_is_beside_cells() ? pin_of(TAP_INSTANCE_NAME, pin) : port_net(pin);
}
