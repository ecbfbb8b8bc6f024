// kalmflat -cellonly -keepempty DIR/NAME -opath D: an SDB design expanded to library cells.
#include "siblings/flat_program.hh"

int main(int argc, char **argv) {
    return FLAT_main(argc, argv);
}
