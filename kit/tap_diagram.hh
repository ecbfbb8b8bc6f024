// The state diagram of IEEE 1149.1, as the checks know it: written by hand beside the table that the TAP is
// made from, so that a fault there can't hide.
#pragma once

#include <array>
#include <cstddef>

struct DIAGRAM_STATE {
    const char *name, *code;
    std::array<size_t, 2> next; ///< by TMS
    bool shifts = false;        ///< TDO drives
};

constexpr DIAGRAM_STATE TAP_DIAGRAM[] = {
    {"Test-Logic-Reset", "0100", {1, 0}}, {"Run-Test/Idle", "1100", {1, 2}},
    {"Select-DR-Scan", "0000", {3, 9}},   {"Capture-DR", "0001", {4, 5}},
    {"Shift-DR", "0011", {4, 5}, true},   {"Exit1-DR", "0010", {6, 8}},
    {"Pause-DR", "0110", {6, 7}},         {"Exit2-DR", "0111", {4, 8}},
    {"Update-DR", "0101", {1, 2}},        {"Select-IR-Scan", "1000", {10, 0}},
    {"Capture-IR", "1001", {11, 12}},     {"Shift-IR", "1011", {11, 12}, true},
    {"Exit1-IR", "1010", {13, 15}},       {"Pause-IR", "1110", {13, 14}},
    {"Exit2-IR", "1111", {11, 15}},       {"Update-IR", "1101", {1, 2}},
};
constexpr size_t TAP_RESET_STATE = 0, TAP_IDLE_STATE = 1;
