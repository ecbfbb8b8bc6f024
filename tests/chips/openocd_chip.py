#!/usr/bin/env python3
"""OpenOCD, a real JTAG client, on the simulated example chip after the insertion.

    openocd_chip.py --bin build/bin --plan tests/chips/uart_chip/plan.json --work DIR

The simulation of chip_jtag.v serves OpenOCD's remote_bitbang protocol on its standard streams. OpenOCD must find the
TAP by its IDCODE, shift a pattern through the whole boundary register and one through the bypass register. Ends with
status 0 and one line, with 77 where OpenOCD is not installed, or with status 1 and what OpenOCD said.
"""

import argparse
import pathlib
import re
import shutil
import socket
import subprocess
import sys

sys.dont_write_bytecode = True
import proof  # noqa: E402
from chip_files import read_chip  # noqa: E402
from player import run  # noqa: E402

# '0' to '7' are TCK, TMS and TDI, 'R' asks for TDO, 'r' to 'u' drive the reset, 'Q' ends.
BENCH = """`timescale 1ns/1ns
module bench;
    reg tck = 0, tms = 1, tdi = 0, trst = 1;
    wire tdo;
    integer c;
    {design}_jtag dut (.{tck}(tck), .{tms}(tms), .{tdi}(tdi), .{trst}(trst), .{tdo}(tdo));
    initial begin
        c = 0;
        while (c != "Q" && c != -1) begin
            c = $fgetc(32'h8000_0000);
            if (c >= "0" && c <= "7") {{tck, tms, tdi}} = c;
            if (c >= "r" && c <= "u") trst = c < "t";
            if (c == "R") begin
                $write("%0d", tdo === 1'b1);
                $fflush;
            end
            #100;
        end
        $finish;
    end
endmodule
"""

SCRIPT = """adapter driver remote_bitbang
remote_bitbang port 0
remote_bitbang host jtag.sock
reset_config trst_only
jtag newtap chip tap -irlen {irlen} -ircapture 0x1 -irmask 0x3 -expected-id 0x{idcode:08x}
init
irscan chip.tap 0x{sample:x}
echo "boundary [drscan chip.tap {bits} 0x5ac3]"
irscan chip.tap 0x{bypass:x}
echo "bypass [drscan chip.tap 8 0xa5]"
shutdown
"""


def serve(work):
    """The simulation with one client's connection as its standard streams, and the process that waits for it."""
    listener = socket.socket(socket.AF_UNIX)
    (work / "jtag.sock").unlink(missing_ok=True)
    listener.bind(str(work / "jtag.sock"))
    listener.listen(1)
    client = subprocess.Popen(["timeout", "120", "openocd", "-f", "chip.cfg"], cwd=work, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    listener.settimeout(30)
    connection, _ = listener.accept()
    simulation = subprocess.Popen(["vvp", "-n", "openocd.vvp"], cwd=work, stdin=connection, stdout=connection)
    connection.close()
    said, _ = client.communicate()
    simulation.kill()
    simulation.wait()
    return client.returncode, said


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", required=True, type=pathlib.Path)
    options.add_argument("--plan", required=True, type=pathlib.Path)
    options.add_argument("--work", required=True, type=pathlib.Path)
    given = options.parse_args()
    if shutil.which("openocd") is None:
        print("openocd is not installed")
        return 77
    plan = proof.read_plan(given.plan)
    work = given.work.resolve()
    proof.build(plan, given.bin.resolve(), work)
    design = plan["design"]
    chip = read_chip(work / f"{design}.bso", work / f"{design}.bsc", work / f"{design}.lib")
    cells, idcode = len(chip.cells), int(chip.idcode, 2)
    sample, bypass = (chip.opcodes[name] for name in ("SAMPLE", "BYPASS"))
    (work / "openocd.v").write_text(BENCH.format(design=design, **chip.test_ports))
    (work / "chip.cfg").write_text(SCRIPT.format(irlen=len(sample), idcode=idcode, sample=int(sample, 2),
                                                 bypass=int(bypass, 2), bits=cells + 16))
    run(["iverilog", "-g2001", "-o", "openocd.vvp", "-s", "bench", "openocd.v", f"{design}_jtag.v",
         f"{design}_TAP.v", *plan["cells"]], work, "iverilog")
    status, said = serve(work)
    shifted = re.search(r"boundary ([0-9a-fA-F]+)", said)
    right = (status == 0 and f"tap/device found: 0x{idcode:08x}" in said and "Error" not in said and shifted and
             int(shifted.group(1), 16) >> cells == 0x5ac3 and "bypass 4a" in said)
    print(f"OpenOCD: IDCODE 0x{idcode:08x}, {cells} boundary cells shifted" if right else said)
    return 0 if right else 1


if __name__ == "__main__":
    sys.exit(main())
