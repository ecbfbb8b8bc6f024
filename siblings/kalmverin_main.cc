// kalmverin [-lib] FILE.v ... [-top NAME] [-opath DIR]: Verilog netlists into SDB files.
#include "siblings/tool.hh"
#include "siblings/verilog_to_sdb.hh"

int main(int argc, char **argv) {
    return TOOL_run(VTOS_main, argc, argv);
}
