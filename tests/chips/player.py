"""Plays a chip before the insertion and the same chip after it side by side, under Icarus Verilog.

The core runs on random pins in both, and the pins of both have to be the same at each edge of its clock, while the test
port of the new one is in reset, in BYPASS and in SAMPLE, with scans of random bits under way, and again behind EXTEST.
In INTEST the new core gets through the register what the old one has at its pins, and its answers come out through it.
Pins that the chip may leave alone have weak drivers. What the test logic does on its own, the bench of rimkit proves.
"""

import re
import subprocess

from chip_files import ProofError, plain, read_ports

BENCH = """`timescale 1ns / 1ps
module bench;
    localparam PINS = {pins}, CELLS = {cells}, BITS = {bits}, CYCLES = {cycles};
    localparam [BITS-1:0] SAMPLE = {SAMPLE}, EXTEST = {EXTEST}, INTEST = {INTEST}, BYPASS = ~0;
    localparam [PINS-1:0] RESETS = {resets}, AT_RESET = {at_reset}, CLOCKS = {clocks}, MOVING = {moving},
                          HELD = {held}, DIRECT = {direct};  // in INTEST: pins at 0, and those that the core reads itself
    localparam [CELLS-1:0] REST = {rest};                 // turns the pads off
    reg tck, tms, tdi, trst, bit_out;
    wire tdo;
    reg [PINS-1:0] drive, others, was_0, was_1, answers;  // others: of the new chip in INTEST, when its pins don't count
    reg watch, hold, pause;                               // compare the pins; the core in reset; the core stands
    wire [PINS-1:0] old, seen;
    wire [PINS-1:0] new_drive = pause ? others & ~CLOCKS | drive & CLOCKS : drive;
    integer odds [0:PINS-1];                              // of a 1 on the pin, in percent; -1 for none that is random
    integer reader [0:CELLS-1], writer [0:CELLS-1];       // pin that the cell gives to the core, or shows; or -1
    integer control [0:CELLS-1];                          // cell of the enable, or -1; it is off at `off`
    reg off [0:CELLS-1];
    integer cycle, i, round, faults, compared, answered;
    reg [CELLS-1:0] put, got;
{wires}
    {old_top} before ({old_ports});
    {new_top} after ({new_ports});

    task random_pins;
        begin
            for (i = 0; i < PINS; i = i + 1)
                if (odds[i] >= 0) drive[i] = {{$random}} % 100 < odds[i];
            drive = hold ? drive & ~RESETS | AT_RESET : drive & ~RESETS | RESETS & ~AT_RESET;
        end
    endtask

    task compare;
        if (watch) begin
            compared = compared + 1;
            was_0 = was_0 | ~old & ~(old ^ old);          // an unknown value is neither
            was_1 = was_1 | old & ~(old ^ old);
            if (old !== seen)
                for (i = 0; i < PINS; i = i + 1)
                    if (old[i] !== seen[i]) begin
                        faults = faults + 1;
                        if (faults < 12) $display("FAULT: cycle %0d: pin %0d was %b, is %b", cycle, i, old[i], seen[i]);
                    end
        end
    endtask

    task tick;
        input next_tms, next_tdi;
        begin
            tms = next_tms; tdi = next_tdi;
            #30 bit_out = tdo;
            tck = 1'b1;
            #30 tck = 1'b0;
        end
    endtask

    // From Run-Test/Idle and back; bit k of the instruction, or of `put`, is shifted as the k-th.
    task scan;
        input is_code;
        input [BITS-1:0] code;
        integer k, count;
        begin
            count = is_code ? BITS : CELLS;
            tick(1, 1);
            if (is_code) tick(1, 1);
            tick(0, 1);
            tick(0, 1);
            for (k = 0; k < count; k = k + 1) begin
                tick(k + 1 == count, is_code ? code[k] : put[k]);
                if (!is_code) got[k] = bit_out;
            end
            tick(1, 1);
            tick(0, 1);
        end
    endtask

    task random_scan;
        begin
            for (round = 0; round < CELLS; round = round + 1) put[round] = $random;
            scan(0, 0);
        end
    endtask

    task reset;
        begin
            repeat (5) tick(1, 1);
            tick(0, 1);
        end
    endtask

    task restart;      // the core, by its own pins
        begin
            watch = 0;
            hold = 1;
            #500 watch = 1;
            hold = 0;
        end
    endtask

    task clock_core;
        begin
            #50 drive = drive | CLOCKS;
            #50 drive = drive & ~CLOCKS;
            #50;
        end
    endtask

    // The old chip's pins go into the new one through the register; a bidirectional one as the old chip shows it.
    task try_intest;
        begin
            pause = 1;
            hold = 1;
            #200 drive = drive & ~CLOCKS;
            for (round = 0; round < 64; round = round + 1) begin
                hold = round < 2;
                random_pins;
                drive = drive & ~HELD;
                #20;
                for (i = 0; i < CELLS; i = i + 1) put[i] = reader[i] < 0 ? REST[i] : old[reader[i]];
                if (round == 0) begin
                    scan(1, SAMPLE);
                    scan(0, 0);
                    scan(1, INTEST);
                end
                scan(0, 0);
                for (i = 0; i < CELLS; i = i + 1)
                    if (round > 1 && writer[i] >= 0 && (control[i] < 0 || got[control[i]] !== off[i])) begin
                        answered = answered + 1;
                        if (got[i] !== answers[writer[i]]) begin
                            faults = faults + 1;
                            if (faults < 12)
                                $display("FAULT: INTEST %0d: cell %0d captured %b, the old chip has %b", round, i, got[i],
                                         answers[writer[i]]);
                        end
                    end
                for (i = 0; i < PINS; i = i + 1) others[i] = DIRECT[i] ? old[i] : $random;
                clock_core;
                answers = old;
            end
            reset;
            pause = 0;
        end
    endtask

    initial begin : core
        for (cycle = 0; cycle < CYCLES; cycle = cycle + 1) begin
            while (pause || !watch && !hold) #50;
            random_pins;
            drive = drive & ~CLOCKS;
            #50 compare;
            drive = drive | CLOCKS;
            #50 compare;
        end
        for (i = 0; i < PINS; i = i + 1)
            if (MOVING[i] && !(was_0[i] && was_1[i])) begin
                faults = faults + 1;
                $display("FAULT: pin %0d never moves while the core has the pins", i);
            end
        if (faults == 0) $display("SAME %0d times, %0d answers in INTEST", compared, answered);
        $finish;
    end

    initial begin : test
        faults = 0; compared = 0; answered = 0; was_0 = 0; was_1 = 0; drive = 0; others = 0; put = 0;
        watch = 0; hold = 1; pause = 1; tck = 0; tms = 1; tdi = 1; trst = 0;
{tables}
        #7 trst = 1;
        reset;
        pause = 0;
        restart;
        #1000 if ({has_intest}) begin
            watch = 0;
            try_intest;
            restart;
        end
        while (1) begin
            scan(1, SAMPLE);
            random_scan;
            random_scan;
            scan(1, BYPASS);
            random_scan;
            reset;
            #1000 watch = 0;
            scan(1, SAMPLE);
            random_scan;
            scan(1, EXTEST);
            random_scan;
            reset;
            restart;
        end
    end
endmodule
"""


def run(command, directory, what):
    done = subprocess.run(command, cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode:
        raise ProofError(f"{what}: status {done.returncode} of: {' '.join(command)}\n{done.stdout}")
    return done.stdout


def bits_of(name, port):
    """The port's bits, the last one first in a connection."""
    _, msb, lsb = port
    if msb is None:
        return [name]
    step = 1 if msb >= lsb else -1
    return [f"{name}[{i}]" for i in range(msb, lsb - step, -step)]


class Side:
    """One of the two chips: wires with their drivers, its connections, and the wire of each pin."""

    def __init__(self, side, ports, place, tests):
        self.lines, self.connections, self.wire_of = [], [], {}
        for number, (name, port) in enumerate(ports.items()):
            bits = bits_of(name, port)
            self.lines.append(f"    wire [{len(bits) - 1}:0] {side}_{number};")
            self.connections.append(f".\\{name} ({side}_{number})")
            for at, bit in enumerate(reversed(bits)):
                self.wire_of[bit] = f"{side}_{number}[{at}]"
                weak = "" if port[0] == "input" else "(weak1, weak0) "
                drive = "new_drive" if side == "new" else "drive"
                source = tests.get(bit) or (f"{drive}[{place[bit]}]" if bit in place else None)
                if source:
                    self.lines.append(f"    assign {weak}{self.wire_of[bit]} = {source};")

    def all_of(self, names):
        return ", ".join(self.wire_of[name] for name in reversed(names))


def play_both(work, chip, plan, old_sources, new_sources, models):
    """Gives what the bench says. `chip` is what chip_files tells of the register and the test port; sources are files of
    the folder, of which the modules of the old chip get names of their own."""
    old_text = "".join((work / name).read_text() for name in old_sources)
    for name in set(re.findall(r"\bmodule\s+(\w+)", old_text)):
        old_text = re.sub(rf"\b{name}\b", f"before_{name}", old_text)
    (work / "before.v").write_text(old_text)
    old_top, new_top = f"before_{plan['design']}", f"{plan['design']}_jtag"
    new_ports = read_ports([work / name for name in new_sources], new_top)
    old_ports = {name: (new_ports[name][0], *port[1:])
                 for name, port in read_ports([work / "before.v"], old_top).items()}
    tests = {chip.test_ports[role]: role for role in chip.test_ports if role != "tdo"}
    names = [bit for name, port in old_ports.items() for bit in bits_of(name, port)
             if bit not in chip.test_ports.values() and bit not in chip.skipped]
    place = {name: index for index, name in enumerate(names)}
    place_of = {plain(name): index for name, index in place.items()}
    clocks = [name for name in names if plain(name) in plan.get("clocks", chip.clocks)]
    old = Side("old", old_ports, place, tests)
    new = Side("new", new_ports, place, tests)
    ways = {bit: port[0] for name, port in old_ports.items() for bit in bits_of(name, port)}
    odds = {name: round(100 * plan.get("ones", {}).get(name, .5)) for name in names}
    odds.update({name: -1 for name in [*plan["resets"], *clocks]})
    rows = [f"odds[{place[name]}] = {value};" for name, value in odds.items()]
    for i, cell in enumerate(chip.cells):
        writer = place_of.get(cell.writer, -1) if cell.writer not in plan.get("unanswered", ()) else -1
        rows.append(f"reader[{i}] = {place_of.get(cell.reader, -1)}; writer[{i}] = {writer}; "
                    f"control[{i}] = {cell.control}; off[{i}] = {cell.off};")
    rest = {cell.control: cell.off for cell in chip.cells}
    read = {cell.reader for cell in chip.cells}
    chosen = {"resets": plan["resets"], "at_reset": [name for name, value in plan["resets"].items() if value == "1"],
              "clocks": clocks, "held": plan.get("intest_hold", ()),
              "direct": {*plan.get("direct", ()), *(name for name in names if ways[name] == "input" and plain(name) not in read)},
              "moving": {name for name in names if ways[name] != "input"} - set(plan.get("still", ()))}
    text = BENCH.format(
        pins=len(names), cells=len(chip.cells), bits=len(chip.opcodes["SAMPLE"]), cycles=plan["cycles"],
        **{name: f"{len(code)}'b{code}" for name in ("SAMPLE", "EXTEST", "INTEST")
           for code in [chip.opcodes.get(name, chip.opcodes["SAMPLE"])]},
        **{word: f"{len(names)}'b" + "".join(str(int(name in some)) for name in reversed(names))
           for word, some in chosen.items()},
        rest=f"{len(chip.cells)}'b" + "".join(str(rest.get(i, 0)) for i in reversed(range(len(chip.cells)))),
        has_intest=int("INTEST" in chip.opcodes), tables="\n".join("        " + row for row in rows),
        wires="\n".join([*old.lines, *new.lines, f"    assign old = {{{old.all_of(names)}}}, seen = {{{new.all_of(names)}}};",
                         f"    assign tdo = {new.wire_of[chip.test_ports['tdo']]};"]),
        old_top=old_top, new_top=new_top, old_ports=", ".join(old.connections), new_ports=", ".join(new.connections))
    (work / "both.v").write_text(text)
    run(["iverilog", "-g2005", "-s", "bench", "-o", "both.vvp", "both.v", "before.v", *new_sources, *models], work, "both")
    said = run(["vvp", "-n", "both.vvp"], work, "both")
    return re.sub(r"\bpin (\d+)", lambda found: f"pin {names[int(found[1])]}", said)
