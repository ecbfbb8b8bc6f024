// A real JTAG client on the generated TAP: OpenOCD over remote_bitbang, served by the simulation itself.
#include "tests/rtl/tap_case.hh"
#include "tests/support/scratch.hh"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// The TAP with a boundary register of eight bits that captures C3. Commands come in and bits go out on the
/// standard streams: '0' to '7' are TCK, TMS and TDI, 'R' asks for TDO, 'r' to 'u' drive the reset, 'Q' ends.
const char *const BENCH = R"(`timescale 1ns/1ns
module bench;
    reg tck, tms, tdi, trst;
    reg [7:0] boundary;
    wire tdo, first, shift, clock;
    integer c;
    chip_tap dut (.TMS(tms), .TDI(tdi), .TCK(tck), .TRST(trst), .TDO(tdo), .first_Bcell(first),
                  .BOUNDARY_out(boundary[0]), .SHIFT_DR(shift), .CLOCK_DR(clock));
    always @(posedge clock) boundary <= shift ? {first, boundary[7:1]} : 8'hc3;
    initial begin
        {tck, tms, tdi, trst} = 4'b0001;
        c = 0;
        while (c != "Q" && c != -1) begin
            c = $fgetc(32'h8000_0000);
            if (c >= "0" && c <= "7") {tck, tms, tdi} = c;
            if (c >= "r" && c <= "u") trst = c < "t";
            if (c == "R") begin
                $write("%0d", tdo === 1'b1);
                $fflush;
            end
            #10;
        end
        $finish;
    end
endmodule
)";

const char *const SCRIPT =
    "adapter driver remote_bitbang\n"
    "remote_bitbang port 0\n"
    "remote_bitbang host jtag.sock\n"
    "reset_config trst_only\n"
    "jtag newtap chip tap -irlen 4 -ircapture 0x1 -irmask 0x3 -expected-id 0x12345679\n"
    "init\n"
    "irscan chip.tap 1\n"
    "echo \"boundary [drscan chip.tap 16 0x0f5a]\"\n"
    "irscan chip.tap 15\n"
    "echo \"bypass [drscan chip.tap 8 0xa5]\"\n"
    "shutdown\n";

/// Serves one client: the simulation's standard streams become the connection.
pid_t serve(const std::string &dir) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::string name = dir + "/jtag.sock";
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    bool ready = ::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
                 ::listen(listener, 1) == 0;
    EXPECT_TRUE(ready);
    pid_t child = ::fork();
    if (child == 0) {
        int connection = ::accept(listener, nullptr, nullptr);
        ::dup2(connection, 0);
        ::dup2(connection, 1);
        ::execlp("vvp", "vvp", "-n", (dir + "/bench.vvp").c_str(), nullptr);
        ::_exit(127);
    }
    ::close(listener);
    return child;
}

TEST(tap_rtl, openocd_finds_the_tap_and_shifts_its_registers) {
    scratch_folder scratch;
    if (scratch.run("command -v openocd").status != 0)
        GTEST_SKIP() << "openocd is not installed";
    scratch.write("tap.v", rtl_of({"", LARGE_TABLE, "trst idcode usercode"}));
    scratch.write("bench.v", BENCH);
    scratch.write("chip.cfg", SCRIPT);
    ASSERT_EQ(scratch.run("iverilog -g2001 -o bench.vvp bench.v tap.v").status, 0);
    pid_t simulation = serve(scratch.dir.string());
    run_result result = scratch.run("timeout 30 openocd -f chip.cfg");
    ::kill(simulation, SIGKILL);
    ::waitpid(simulation, nullptr, 0);
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    std::string said = result.out + result.err;
    EXPECT_NE(said.find("tap/device found: 0x12345679"), std::string::npos) << said;
    EXPECT_NE(said.find("boundary 5ac3"), std::string::npos) << said;
    EXPECT_NE(said.find("bypass 4a"), std::string::npos) << said;
    EXPECT_EQ(said.find("Error"), std::string::npos) << said;
}

} // namespace
