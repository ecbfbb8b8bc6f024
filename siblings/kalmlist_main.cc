// kalmlist -verilog|-vhdl -hierarchy -o OUT FILE.sdb [-add_path DIR]: an SDB design as one netlist.
#include "siblings/list_program.hh"
#include "siblings/tool.hh"

int main(int argc, char **argv) {
    return TOOL_run(LIST_main, argc, argv);
}
