// kalmedit -nologo -b DIR/NAME: carries out the edit command file DIR/NAME.cmd.
#include "siblings/edit_program.hh"
#include "siblings/tool.hh"

int main(int argc, char **argv) {
    return TOOL_run(EDIT_main, argc, argv);
}
