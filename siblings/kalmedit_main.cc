// kalmedit -nologo -b DIR/NAME: carries out the edit command file DIR/NAME.cmd.
#include "siblings/edit_program.hh"

int main(int argc, char **argv) {
    return EDIT_main(argc, argv);
}
