#!/bin/bash
# Makes chip.v: the core mapped to gates by Yosys, and the pad ring as it was written.
set -euo pipefail
cd "$(dirname "$0")"
yosys -q -p '
    read_liberty -lib gates.liberty
    read_verilog ../rtl/uart_core.v
    synth -flatten -top uart_core
    dfflibmap -liberty gates.liberty
    abc -liberty gates.liberty
    hilomap -hicell TIE1 Z -locell TIE0 Z
    opt_clean -purge
    check -assert -mapped
    write_verilog -noattr -noexpr core.v'
{
    echo '// Made by synth/map.sh from rtl/uart_core.v and rtl/chip_ring.v: edit those.'
    echo
    grep -v '^/\*' core.v
    echo
    cat ../rtl/chip_ring.v
} > ../chip.v
rm core.v
