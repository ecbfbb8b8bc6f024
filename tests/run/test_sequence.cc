// The order of a run: what is looked for, what is read, what closes it.
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>
#include <regex>
#include <string>

namespace {

const std::string program = RW_BIN_DIR "/rimweave";

/// The example chip's description files and its cells, enough to write a TAP.
void lay_out_chip(const scratch_folder &scratch) {
    std::string chip = RW_SOURCE_DIR "/examples/uart_chip/";
    run_result result =
        scratch.run("mkdir lib; cp " + chip + "chip.lib " + chip + "chip.bsc " + chip + "chip.pin .; " +
                    RW_BIN_DIR "/kalmverin -lib " + chip + "cells.v -opath lib; rm -f *.log lib/*.log");
    ASSERT_EQ(result.status, 0) << result.out << result.err;
}

} // namespace

TEST(Sequence, WholeRunWithItsClosingLines) {
    scratch_folder scratch;
    lay_out_chip(scratch);
    // The bundled tools serve without being on PATH.
    run_result result = scratch.run("PATH=/usr/bin:/bin " + program + " -add_tap_only chip");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    expect_part(result.out, "Selected option:  -add_tap_only.\n\n\n - Reading input files ...\n"
                            "    ./chip.bsc,  ./chip.lib.\n\n\n");
    const std::regex closing(
        "\nCPU TIME = \\d+:\\d\\d:\\d\\d\n\nEND TIME : \\w{3} \\w{3} [ \\d]\\d [\\d:]{8} \\d{4}\n\n"
        "\n\\[System Info\\]  - Peak Memory Usage \\.{10} \\d+[KMG]\\.\n"
        "\\[System Info\\]  - CPU Time Elapsed \\.{8} \\d+:\\d\\d:\\d\\d\\.\n\n$");
    EXPECT_TRUE(std::regex_search(result.out, closing)) << result.out;
    EXPECT_TRUE(std::regex_search(scratch.read("chip.rwv.rpt"), closing));
    EXPECT_TRUE(scratch.has("chip_TAP.v"));
}

TEST(Sequence, WhereFilesAreLookedFor) {
    scratch_folder scratch;
    for (const char *name : {"here/chip.lib", "here/chip.bsc", "here/designs/chip.sdb", "here/lib/chip.c.sdb",
                             "a/chip.bsc", "b/chip.bsc", "b/chip.lib", "b/designs/chip.sdb", "b/chip.c.sdb"})
        scratch.write(name, "");
    struct {
        const char *environment, *arguments, *says;
    } const cases[] = {
        {"", "chip", "    ./designs/chip.sdb,  ./lib/chip.c.sdb,\n    ./chip.bsc,  ./chip.lib.\n\n\n"},
        {"VELMORA_DIRS=", "chip.sdb", "    ./designs/chip.sdb,  ./lib/chip.c.sdb,\n"},
        {"VELMORA=../b", "designs/chip", "ERROR: can't find SDB file 'designs/chip.c.sdb'"},
        {"VELMORA_DIRS=../a:../b VELMORA=.", "chip",
         "ERROR: can't find SDB file 'chip.sdb' in default searching path.\n\n"}, // no subdirectories
        {"VELMORA_DIRS=../a:../b:designs", "chip",
         "    designs/chip.sdb,  ../b/chip.c.sdb,\n    ../a/chip.bsc,  ../b/chip.lib.\n\n\n"},
    };
    for (const auto &one : cases) {
        run_result result =
            scratch.run(std::string("cd here; ") + one.environment + " " + program + " " + one.arguments);
        expect_part(result.out, one.says);
        EXPECT_EQ(result.status, 255);
    }
}

TEST(Sequence, MemoryFaultIsToldInBothSinks) {
    scratch_folder scratch;
    lay_out_chip(scratch);
    scratch.write("bin/kalmverin", R"sh(#!/bin/bash
pid=$PPID
while [ "$(cat /proc/$pid/comm)" != rimweave ]; do pid=$(awk '{print $4}' /proc/$pid/stat); done
kill -SEGV $pid
)sh");
    run_result result =
        scratch.run("chmod +x bin/kalmverin; PATH=$PWD/bin:$PATH " + program + " -add_tap_only chip");
    EXPECT_EQ(result.status, 255);
    expect_part(result.out, "\nInternal Error:\nPlease contact");
    expect_part(scratch.read("chip.rwv.rpt"), "\nInternal Error:\nPlease contact");
}
