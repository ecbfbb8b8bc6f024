// The steps as a bench in Verilog-2001, for Icarus Verilog and Verilator (--binary --timing) alike.
//
// The steps are tables, and one loop plays them: a simulator that expands each call of a task would make a
// program of each scan. Each pin is a wire of its own, since weak drivers on bits of a vector are not
// resolved everywhere. A pin that may be released is looked at twice, against a weak 0 and a weak 1.
#include "kit/patterns.hh"

#include "kit/chip.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/verilog_words.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {

const char *const HEAD = R"(// Bench of @DESIGN_jtag, made by rimkit from the final netlist: @STEPS steps.
//
//   $ iverilog -g2005 -s bench -o bench.vvp @DESIGN_bench.v @DESIGN_jtag.v @DESIGN_TAP.v CELLS.v && vvp -n bench.vvp
//   $ verilator --binary --timing -Wno-fatal --top-module bench @DESIGN_bench.v @DESIGN_jtag.v @DESIGN_TAP.v CELLS.v
//
// The last line is `BENCH PASS n checks` or `BENCH FAIL m of n checks`.
`timescale 1ns / 1ps

module bench;
    localparam PINS = @PINS, CELLS = @CELLS, STEPS = @STEPS, BITS = @BITS; // BITS: longest scan
    localparam TDO_RELEASES = @RELEASES; // the TDO pad is off outside the shift states
    localparam QUARTER = @QUARTER;       // of a period of TCK, in ns
    localparam SHOWN = @SHOWN;             // faults that are told one by one

    // What the steps are: 0 reset by TMS, 1 by TRST, 2 scan of the instruction, 3 of the data register, 4 pins,
    // 5 walk through the states, `tdi` is TMS then and `want` tells the shift states, 6 open TDI, TMS and TRST.
    reg [2:0] kind [0:STEPS-1];
    reg [8*@REASON:1] reason [0:STEPS-1];
    reg is_note [0:STEPS-1];                // what is found is told, and no fault
    integer size [0:STEPS-1];               // bits of a scan, the first in bit 0
    integer pause [0:STEPS-1];              // bits before a stop in Pause-DR; TRST behind a walk, 2 with TCK high
    reg [BITS-1:0] tdi [0:STEPS-1];
    reg [BITS-1:0] care [0:STEPS-1];        // bits that must be those of `want`
    reg [BITS-1:0] want [0:STEPS-1];
    reg [BITS-1:0] as_pin [0:STEPS-1];      // bits that must be what their pins have at Capture-DR
    reg [BITS-1:0] as_enabled [0:STEPS-1];  // the same, while the captured enable is on
    reg [BITS-1:0] frees [0:STEPS-1];       // cells whose pin is free while the captured enable is off
    reg [BITS-1:0] as_before [0:STEPS-1];   // bits that must be what the scan before had
    reg [PINS-1:0] value [0:STEPS-1];       // for the pins,
    reg [PINS-1:0] driven [0:STEPS-1];      // driven or just pulled
    reg [PINS-1:0] care_0 [0:STEPS-1];      // pins that must be `want_0` against a weak 0
    reg [PINS-1:0] want_0 [0:STEPS-1];
    reg [PINS-1:0] care_1 [0:STEPS-1];      // the same against a weak 1
    reg [PINS-1:0] want_1 [0:STEPS-1];
    reg [PINS-1:0] care_driven [0:STEPS-1]; // pins that must be the same against both
    reg [PINS-1:0] care_same [0:STEPS-1];   // pins that must be as at the step before that had this
    integer checked [0:STEPS-1];            // number of bits or pins that the step compares

    reg [8*@CELL_NAME:1] cell_name [0:CELLS-1];
    integer cell_pin [0:CELLS-1];           // -1 for none
    integer cell_control [0:CELLS-1];       // the cell of its enable, -1 for none; it is off at `cell_off`
    reg cell_off [0:CELLS-1];
    reg cell_turns [0:CELLS-1];             // the cell has the inverted pin
    reg [8*@PIN_NAME:1] pin_name [0:PINS-1];

    reg [PINS-1:0] drive, on, pull;
    wire [PINS-1:0] seen;
    reg tck, tms, tdi_bit, trst, let_go;
)";

const char *const BODY = R"(
    integer step, i, checks, faults, tdo_faults, edge_faults, edge_pin, i_pin;
    integer planted, last_planted, stride; // the fault that is on in a netlist with switches, 0 for none
    reg is_graded;
    integer pins; // PINS; a loop with a constant bound may be written out by a compiler, which takes it long
    integer k, cells; // CELLS, as `pins`
    reg [PINS-1:0] at_capture, is_free, seen_0, seen_1, kept_0, kept_1, wrong, before_edge;
    localparam [PINS-1:0] ONE_PIN = 1, NO_TCK = ~(ONE_PIN << @TCK), NO_TDO = ~(ONE_PIN << @TDO);
    reg is_kept;
    reg [BITS-1:0] got, got_before;
    reg out_0, out_1;
    reg guard, right, told, tms_bit;
    reg [2:0] place; // in a scan
    localparam IDLE = 0, SELECT = 1, CAPTURE = 2, SHIFT = 3, EXIT1 = 4, PAUSE = 5, EXIT2 = 6, UPDATE = 7;

    // The head of a message; the caller tells the rest. `told` is 1 when it is to be told at all.
    task fault;
        begin
            faults = faults + !is_note[step];
            told = faults <= SHOWN && !is_graded;
            if (told)
                $write("%0s: step %0d, %0s: ", is_note[step] ? "NOTE" : "FAULT", step, reason[step]);
            if (faults == SHOWN + 1 && !is_graded)
                $display("more faults are not told");
        end
    endtask

    // One period of TCK. TDO is read at the end of the low phase, against a weak 0 and a weak 1.
    task tick;
        input next_tms, next_tdi, may_drive;
        begin
            tck = 1'b0;
            tms = next_tms;
            tdi_bit = next_tdi;
            pull[@TDO] = 1'b0;
            #QUARTER out_0 = seen[@TDO];
            pull[@TDO] = 1'b1;
            #QUARTER out_1 = seen[@TDO];
            before_edge = seen;
            if (place == CAPTURE)
                at_capture = seen;
            if (!may_drive && TDO_RELEASES) begin
                checks = checks + 1;
                if (out_0 !== 1'b0 || out_1 !== 1'b1)
                    tdo_faults = tdo_faults + 1;
            end
            tck = 1'b1;
            #QUARTER;
            #QUARTER;
            look_at_edge(NO_TCK);
        end
    endtask

    // Pins change behind the falling edge of TCK.
    task look_at_edge;
        input [PINS-1:0] watched;
        if ((kind[step] == 2 || kind[step] == 3) && (seen & watched) !== (before_edge & watched)) begin
            edge_faults = edge_faults + 1;
            for (i_pin = 0; edge_faults == 1 && i_pin < pins; i_pin = i_pin + 1)
                if (watched[i_pin] && seen[i_pin] !== before_edge[i_pin])
                    edge_pin = i_pin;
        end
    endtask

    task settle;
        begin
            tck = 1'b0;
            #QUARTER;
            #QUARTER;
        end
    endtask

    task check_bit; // bit i of the scan that was made against `right`
        begin
            checks = checks + 1;
            if (got[i] !== right) begin
                fault;
                if (told && kind[step] == 3 && size[step] >= CELLS && i < CELLS)
                    $display("%0s came out as %b, should be %b", cell_name[i], got[i], right);
                else if (told)
                    $display("bit %0d came out as %b, should be %b", i, got[i], right);
            end
        end
    endtask

    // Bits that are known ahead are compared at once; each by itself where one is wrong, and in SAMPLE.
    task check_scan;
        if (as_pin[step] == 0 && as_enabled[step] == 0 && frees[step] == 0 &&
            (((got ^ want[step]) & care[step]) | ((got ^ got_before) & as_before[step])) === {BITS{1'b0}})
            checks = checks + checked[step];
        else
            for (i = 0; i < size[step]; i = i + 1) begin
                guard = care[step][i] || as_before[step][i] || as_pin[step][i];
                right = as_before[step][i] ? got_before[i] : want[step][i];
                if (as_pin[step][i] || as_enabled[step][i])
                    right = at_capture[cell_pin[i]] ^ cell_turns[i];
                if (as_enabled[step][i])
                    guard = got[cell_control[i]] === !cell_off[i];
                if (guard)
                    check_bit;
                if (frees[step][i] && (^got[cell_control[i]]) !== 1'bx) begin
                    checks = checks + 1;
                    if ((got[cell_control[i]] === cell_off[i]) !== is_free[cell_pin[i]]) begin
                        fault;
                        if (told)
                            $display("%0s: its enable came out as %b, but the pin is %0s", cell_name[i],
                                     got[cell_control[i]], is_free[cell_pin[i]] ? "free" : "driven");
                    end
                end
            end
    endtask

    // A pin that nobody drives follows a weak value. Each is tried alone, since others may follow through the core.
    task probe_pins;
        for (k = 0; k < cells; k = k + 1)
            if (frees[step][k]) begin
                pull[cell_pin[k]] = !pull[cell_pin[k]];
                #QUARTER is_free[cell_pin[k]] = seen[cell_pin[k]] === pull[cell_pin[k]];
                pull[cell_pin[k]] = !pull[cell_pin[k]];
                #QUARTER if (seen[cell_pin[k]] !== pull[cell_pin[k]]) is_free[cell_pin[k]] = 1'b0;
            end
    endtask

    // From Run-Test/Idle through the columns of the state diagram and back.
    task scan;
        begin
            got_before = got;
            got = {BITS{1'b0}};
            place = SELECT;
            i = 0;
            tick(1'b1, 1'b1, 1'b0);
            if (kind[step] == 2)
                tick(1'b1, 1'b1, 1'b0);
            while (place != IDLE) begin
                case (place)
                    SHIFT: tms_bit = i + 1 == size[step] || i + 1 == pause[step];
                    EXIT1: tms_bit = i == size[step];
                    PAUSE, EXIT2: tms_bit = place == PAUSE || i == size[step];
                    default: tms_bit = 1'b0;
                endcase
                if (place == CAPTURE && frees[step] != 0)
                    probe_pins;
                tick(tms_bit, place == SHIFT ? tdi[step][i] : 1'b1, place == SHIFT);
                if (place == SHIFT) begin
                    got[i] = out_0 === out_1 ? out_0 : 1'bx;
                    i = i + 1;
                end
                if (place == CAPTURE)
                    on = on & ~MAY_TURN_ON; // the update may turn these pads on
                case (place)
                    SELECT: place = CAPTURE;
                    CAPTURE: place = SHIFT;
                    SHIFT: place = tms_bit ? EXIT1 : SHIFT;
                    EXIT1: place = tms_bit ? UPDATE : PAUSE;
                    PAUSE: place = EXIT2;
                    EXIT2: place = SHIFT;
                    default: place = IDLE;
                endcase
            end
            before_edge = seen;
            settle;
            look_at_edge(NO_TCK & NO_TDO); // an update that is late by half a period
            check_scan;
        end
    endtask

    // Through the states by TMS; with TRST at the end, in whatever state that is.
    task walk;
        begin
            for (i = 0; i < size[step]; i = i + 1) begin
                tick(tdi[step][i], 1'b1, want[step][i]);
                if (TDO_RELEASES && want[step][i] && out_0 !== out_1)
                    tdo_faults = tdo_faults + 1;
            end
            if (pause[step] == 1)
                settle;
            if (pause[step] != 0) begin
                #QUARTER trst = 1'b0;
                #QUARTER;
                #QUARTER trst = 1'b1;
                #QUARTER tick(1'b0, 1'b1, 1'b0);
            end
            settle;
        end
    endtask

    // What the pads make of open inputs.
    task open_inputs;
        begin
            let_go = 1'b1;
            settle;
            for (i = 0; i < pins; i = i + 1)
                if (care_0[step][i] && seen[i] !== 1'b1) begin
                    fault;
                    if (told)
                        $display("pin %0s reads %b, should read 1", pin_name[i], seen[i]);
                end
            let_go = 1'b0;
            settle;
        end
    endtask

    // The pins that are checked are pulled, all others have what the step gives them.
    task set_pins;
        begin
            drive = value[step];
            on = driven[step] & ~MAY_TURN_ON;
            pull = {PINS{1'b0}};
            #QUARTER seen_0 = seen;
            pull = {PINS{1'b1}};
            #QUARTER seen_1 = seen;
            pull = value[step];
            on = driven[step];
            #QUARTER;
            wrong = ((seen_0 ^ want_0[step]) & care_0[step]) | ((seen_1 ^ want_1[step]) & care_1[step]) |
                    ((seen_0 ^ seen_1) & care_driven[step]);
            if (care_same[step] != 0) begin
                if (is_kept)
                    wrong = wrong | (((seen_0 ^ kept_0) | (seen_1 ^ kept_1)) & care_same[step]);
                is_kept = 1'b1;
                kept_0 = seen_0;
                kept_1 = seen_1;
            end
            checks = checks + checked[step];
            for (i = 0; wrong !== {PINS{1'b0}} && i < pins; i = i + 1)
                if (wrong[i] !== 1'b0) begin
                    fault;
                    if (told && (care_0[step][i] || care_1[step][i]))
                        $display("pin %0s reads %b against a weak 0 and %b against a weak 1, should read %b and %b",
                                 pin_name[i], seen_0[i], seen_1[i], care_0[step][i] ? want_0[step][i] : 1'bx,
                                 care_1[step][i] ? want_1[step][i] : 1'bx);
                    else if (told)
                        $display("pin %0s reads %b against a weak 0 and %b against a weak 1, should %0s", pin_name[i],
                                 seen_0[i], seen_1[i], care_same[step][i] ? "be as it was" : "be driven");
                end
        end
    endtask

    task reset;
        begin
            if (kind[step] == 1) begin
                settle;
                trst = 1'b0;
                settle;
                tms = 1'b1;
                settle;
                trst = 1'b1;
                settle;
            end
            // Before the first reset the state is unknown.
            for (i = kind[step] == 1 ? 5 : 0; i < 6; i = i + 1)
                tick(i < 5, 1'b1, step == FIRST_RESET && i < 5);
            settle;
        end
    endtask

    // Once, or once for each planted fault of a range, where the netlist has switches; up to the first step that finds
    // it then.
    initial begin
        pins = PINS;
        cells = CELLS;
        is_graded = $value$plusargs("first=%d", planted);
        if (!is_graded)
            planted = 0;
        if (!$value$plusargs("last=%d", last_planted))
            last_planted = planted;
        if (!$value$plusargs("stride=%d", stride))
            stride = 1;
        while (planted <= last_planted) begin
            checks = 0;
            faults = 0;
            drive = {PINS{1'b0}};
            on = {PINS{1'b0}};
            pull = {PINS{1'b0}};
            got = {BITS{1'b0}};
            is_kept = 1'b0;
            place = IDLE;
            tck = 1'b0;
            tms = 1'b1;
            tdi_bit = 1'b1;
            trst = 1'b1;
            let_go = 1'b0;
            settle;
            for (step = 0; step < STEPS && !(is_graded && faults > 0); step = step + 1) begin
                tdo_faults = 0;
                edge_faults = 0;
                case (kind[step])
                    0, 1: reset;
                    2, 3: scan;
                    4: set_pins;
                    5: walk;
                    default: open_inputs;
                endcase
                if (edge_faults > 0) begin
                    fault;
                    if (told)
                        $display("pin %0s changes at another time than behind the falling edge of TCK", pin_name[edge_pin]);
                end
                if (tdo_faults > 0) begin
                    fault;
                    if (told)
                        $display("TDO is driven outside the shift states or off in them, in %0d periods of TCK", tdo_faults);
                end
            end
            if (is_graded)
                $display("PLANTED %0d %0d", planted, faults == 0 ? -1 : step - 1);
            else if (faults == 0)
                $display("BENCH PASS %0d checks", checks);
            else
                $display("BENCH FAIL %0d of %0d checks", faults, checks);
            planted = planted + stride;
        end
        $finish;
    end
)";

std::string replaced(std::string text, const std::vector<std::pair<std::string, std::string>> &words) {
    for (const auto &[word, value] : words)
        for (size_t at = 0; (at = text.find(word, at)) != text.npos; at += value.size())
            text.replace(at, word.size(), value);
    return text;
}

/// A constant with a bit for each letter that is one of `ones`, the first in bit 0; empty when all are 0.
std::string constant(const std::string &bits, const std::string &ones) {
    std::string digits;
    bool any = false;
    for (size_t at = 0; at < bits.size(); at += 4) {
        int value = 0;
        for (size_t i = 0; i < 4 && at + i < bits.size(); ++i)
            value |= ones.find(bits[at + i]) != ones.npos ? 1 << i : 0;
        digits += "0123456789abcdef"[value];
        any = any || value != 0;
    }
    std::reverse(digits.begin(), digits.end());
    return any ? format_text("%zu'h%s", bits.size(), digits.c_str()) : "";
}

std::string quoted(const std::string &text) {
    std::string safe;
    for (char c : text)
        safe += c == '"' || c == '\\' || c < ' ' || c > '~' ? '?' : c;
    return "\"" + safe + "\"";
}

size_t longest(size_t least, const std::string &text) {
    return std::max(least, text.size());
}

std::string head_text(const PATTERN_LIST &list) {
    size_t bits = list.cells.size(), reason = 1, cell = 1, pin = 1;
    for (const PATTERN_STEP &step : list.steps) {
        bits = std::max(bits, step.tdi.size());
        reason = longest(reason, step.reason);
    }
    for (const PATTERN_CELL &row : list.cells)
        cell = longest(cell, row.name);
    for (const PATTERN_PIN &row : list.pins)
        pin = longest(pin, row.name);
    return replaced(HEAD, {{"@DESIGN", list.design},
                           {"@STEPS", std::to_string(list.steps.size())},
                           {"@PINS", std::to_string(list.pins.size())},
                           {"@CELLS", std::to_string(list.cells.size())},
                           {"@BITS", std::to_string(bits)},
                           {"@SHOWN", std::to_string(list.told_faults)},
                           {"@RELEASES", list.tdo_releases ? "1" : "0"},
                           {"@QUARTER", format_text("%.3f", 1e9 / list.frequency / 4)},
                           {"@REASON", std::to_string(reason)},
                           {"@CELL_NAME", std::to_string(cell)},
                           {"@PIN_NAME", std::to_string(pin)}});
}

/// The wires, their drivers, and what is seen on them.
std::string pin_text(const PATTERN_LIST &list) {
    const char *const signals[STANDARD_PORT_COUNT] = {"tdi_bit", nullptr, "tms", "tck", "trst"};
    std::string text, all, turns_on;
    for (size_t i = 0; i < list.pins.size(); ++i) {
        const PATTERN_PIN &pin = list.pins[i];
        const char *signal = nullptr;
        for (size_t port = 0; port < STANDARD_PORT_COUNT; ++port)
            if (list.test_ports[port] == static_cast<int32_t>(i))
                signal = signals[port];
        text += format_text("    wire p%zu; // %s\n", i, pin.name.c_str());
        if (signal != nullptr && std::string_view(signal) != "tck")
            text += format_text("    assign p%zu = let_go ? 1'bz : %s;\n", i, signal);
        else if (signal != nullptr)
            text += format_text("    assign p%zu = %s;\n", i, signal);
        else if (pin.role == PIN_DRIVEN)
            text += format_text("    assign p%zu = drive[%zu];\n", i, i);
        else if (pin.is_pulled)
            text += format_text("    assign (weak1, weak0) p%zu = pull[%zu];\n", i, i);
        if (pin.role == PIN_BOTH)
            text += format_text("    assign p%zu = on[%zu] ? drive[%zu] : 1'bz;\n", i, i, i);
        all = format_text("p%zu", i) + (all.empty() ? "" : ", ") + all;
        turns_on += pin.role == PIN_BOTH ? '1' : '0';
    }
    text += "    assign seen = {" + all + "};\n";
    std::string mask = constant(turns_on, "1");
    text += format_text("    localparam [PINS-1:0] MAY_TURN_ON = %s;\n", mask.empty() ? "0" : mask.c_str());
    size_t first = 0;
    while (first < list.steps.size() && list.steps[first].kind != STEP_RESET)
        ++first;
    return text + format_text("    localparam FIRST_RESET = %zu;\n", first);
}

/// The instance, its ports as the module has them.
std::string instance_text(const PATTERN_LIST &list) {
    std::string text;
    for (const CHIP_PORT_GROUP &group : chip_port_groups()) {
        std::string wires;
        for (int32_t port : group.ports)
            wires +=
                (wires.empty() ? "" : ", ") + (port < 0 ? std::string("1'bz") : format_text("p%d", port));
        text += (text.empty() ? "" : ",\n        ") +
                format_text(group.ports.size() > 1 ? ".%s({%s})" : ".%s(%s)",
                            VLOG_identifier(group.name).c_str(), wires.c_str());
    }
    return "    " + VLOG_identifier(list.design + "_jtag") + " dut (\n        " + text + ");\n";
}

std::string names_text(const PATTERN_LIST &list) {
    std::string text = "\n    initial begin\n";
    for (size_t i = 0; i < list.pins.size(); ++i)
        text += format_text("        pin_name[%zu] = %s;\n", i, quoted(list.pins[i].name).c_str());
    for (size_t i = 0; i < list.cells.size(); ++i) {
        const PATTERN_CELL &cell = list.cells[i];
        text += format_text("        cell_name[%zu] = %s; cell_pin[%zu] = %d; cell_control[%zu] = %d; "
                            "cell_off[%zu] = %d; cell_turns[%zu] = %d;\n",
                            i, quoted(cell.name).c_str(), i, cell.pin, i, cell.control, i, cell.disable == 1,
                            i, cell.inverted);
    }
    return text + "    end\n";
}

std::string count_of(const std::string &text, const char *letters) {
    auto count = std::count_if(text.begin(), text.end(),
                               [letters](char c) { return std::strchr(letters, c) != nullptr; });
    return count > 0 ? std::to_string(count) : "";
}

std::string step_text(size_t number, const PATTERN_STEP &step) {
    std::string text = format_text("        kind[%zu] = %d; reason[%zu] = %s;", number, step.kind, number,
                                   quoted(step.reason).c_str());
    auto add = [&text, number](const char *name, const std::string &value) {
        if (!value.empty())
            text += format_text(" %s[%zu] = %s;", name, number, value.c_str());
    };
    const std::string &driven = step.driven.empty() ? step.tdo : step.driven;
    add("is_note", step.is_note ? "1" : "");
    if (step.kind == STEP_WALK) {
        add("size", std::to_string(step.tdi.size()));
        add("pause", step.pause > 0 ? std::to_string(step.pause) : "");
        add("tdi", constant(step.tdi, "1"));
        add("want", constant(step.tdo, "1"));
    } else if (step.kind == STEP_IR || step.kind == STEP_DR) {
        add("size", std::to_string(step.tdi.size()));
        add("pause", step.pause > 0 ? std::to_string(step.pause) : "");
        add("tdi", constant(step.tdi, "1"));
        add("care", constant(driven, "01"));
        add("want", constant(driven, "1"));
        add("as_pin", constant(driven, "pb"));
        add("as_enabled", constant(driven, "co"));
        add("frees", constant(driven, "cb"));
        add("as_before", constant(driven, "="));
        add("checked", count_of(driven, "01="));
    } else if (step.kind == STEP_PINS || step.kind == STEP_OPEN) {
        add("value", constant(step.drive, "1u"));
        add("driven", constant(step.drive, "01"));
        add("care_0", constant(step.shown, "01zl"));
        add("want_0", constant(step.shown, "1"));
        add("care_1", constant(step.shown, "01zh"));
        add("want_1", constant(step.shown, "1zh"));
        add("care_driven", constant(step.shown, "d"));
        add("care_same", constant(step.shown, "s"));
        add("checked", count_of(step.shown, "01zhlds"));
    }
    return text + "\n";
}

/// The tables, zero where nothing is said. They stand in blocks of moderate size, outside of the one that
/// waits: a compiled simulator takes long for a long one.
std::string steps_text(const PATTERN_LIST &list) {
    std::string zeros = "        last = LAST;\n        for (k = FIRST; k < last; k = k + 1) begin\n", text;
    for (const char *name :
         {"is_note", "size", "pause", "tdi", "care", "want", "as_pin", "as_enabled", "frees", "as_before",
          "value", "driven", "care_0", "want_0", "care_1", "want_1", "care_driven", "care_same", "checked"})
        zeros += format_text("            %s[k] = 0;\n", name);
    zeros += "        end\n";
    constexpr size_t block = 32;
    for (size_t first = 0; first < list.steps.size(); first += block) {
        size_t last = std::min(first + block, list.steps.size());
        text += format_text("\n    initial begin : steps_%zu\n        integer k, last;\n", first) +
                replaced(zeros, {{"FIRST", std::to_string(first)}, {"LAST", std::to_string(last)}});
        for (size_t i = first; i < last; ++i)
            text += step_text(i, list.steps[i]);
        text += "    end\n";
    }
    return text;
}

} // namespace

std::string pattern_bench(const PATTERN_LIST &list) {
    std::string tdo = std::to_string(list.test_ports[PORT_TDO]),
                tck = std::to_string(list.test_ports[PORT_TCK]);
    return head_text(list) + pin_text(list) + instance_text(list) +
           replaced(BODY, {{"@TDO", tdo}, {"@TCK", tck}}) + names_text(list) + steps_text(list) +
           "endmodule\n";
}
