// kalmflat -cellonly -keepempty DIR/NAME -opath D: an SDB design expanded to library cells.
#include "siblings/flat_program.hh"
#include "siblings/tool.hh"

int main(int argc, char **argv) {
    return TOOL_run(FLAT_main, argc, argv);
}
