#!/usr/bin/env python3
"""Inserts the boundary register into a chip with one pad of each kind, and proves the result in simulation.

    kinds_proof.py --variant three_levels --bin build/bin --work DIR

What each pad does stands in kinds_pads.py; where its cells stand in the register comes from the .bso file. The values inside the core come from the chip before the insertion, which plays the same steps: the
flip-flops of both take the same values as long as the clock pins do.

Proven per variant: resets, IDCODE, BYPASS, the length of the register; in SAMPLE and EXTEST every cell
captures what its place in the chip has; EXTEST and CLAMP drive every pad as the register says; INTEST runs
the core on the register; in all other time the chip does, step by step, what it did before.
"""

import argparse
import pathlib
import random
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import checks  # noqa: E402
import proof  # noqa: E402
from chip_files import Cell, Chip, ProofError, read_bsc  # noqa: E402
from kinds_pads import (BOTH_WAYS, INPUT_NETS, INPUTS, INTERNALS, INVERTED, LOW, OF_OUTPUT_SCAN,  # noqa: E402
                        OUTPUTS, WEAK)
from kinds_register import Register  # noqa: E402
from kinds_variants import VARIANTS, Variant, build, random_variant  # noqa: E402
from player import Player  # noqa: E402
from tap_driver import Session  # noqa: E402


# ---- the trials -----------------------------------------------------------------------------------------

class Trials:
    def __init__(self, chip, register, session, rng):
        self.chip, self.register, self.session, self.rng = chip, register, session, rng
        self.found = []             # functions of the answers of the new and the old chip that give faults
        self.pins = chip.ports

    def set_pins(self):
        for pin in INPUTS + WEAK + ["mxe"]:
            self.session.pins[pin] = self.rng.choice("01")
        self.session.pins["dim"] = INVERTED[self.session.pins["dip"]]

    def clock(self):
        for value in "10":
            self.session.pins["clk"] = value
            self.session.step()

    def reset(self):
        self.session.pins["rst_n"] = "0"
        self.set_pins()
        self.clock()
        self.session.pins["rst_n"] = "1"

    def run_core(self, cycles):
        for _ in range(cycles):
            self.set_pins()
            self.session.step()
            self.clock()

    def random_bits(self):
        return [self.rng.choice("01") for _ in self.register.cells]

    def probe(self):
        steps = []
        for value in "01":
            self.session.pins.update({pin: value for pin in WEAK + ["mxe"]})
            steps.append(self.session.step())
        return steps

    def expect_pins(self, pattern, label):
        steps = self.probe()
        def check(new, _old):
            for port in [port for port in WEAK if port not in self.register.left]:
                seen = new(steps[0], port) + new(steps[1], port)
                shown = self.register.shown(port, pattern)
                want = "01" if shown == "z" else 2 * shown
                if seen != want:
                    yield f"{label}: {port} reads {seen} against a weak 0 and 1, should be {want}"
        self.found.append(check)

    def expect_capture(self, scanned, label, pattern=None):
        """pattern is what the register holds while it has the pins."""
        captured, where = scanned
        inside = [self.register.of_port[name]["internal"] for name in ("u_glue{Z}", "u_mix{B}")
                  if name in self.register.of_port]
        inner = pattern and inside and str(int(pattern[inside[0]]) ^ int(pattern[inside[1]]))
        def check(new, old):
            for index, (role, name) in self.register.cells.items():
                if role in ("in", "both"):
                    want = new(captured, name)
                    want = INVERTED[want] if name == "dn" and self.register.inverts else want
                elif role == "control":
                    want = old(captured, name.split()[0])
                elif role == "internal":
                    want = old(captured, INTERNALS[name])
                else:
                    want = inner if inner and OUTPUTS[name][1] == "q2_i" else old(captured, OUTPUTS[name][1])
                got = new(where[index], "tdo")
                if got != want:
                    yield f"{label}: cell {index} ({role} {name}) captured {got}, should be {want}"
        self.found.append(check)

    def sample(self, rounds):
        for number in range(rounds):
            self.session.label = f"SAMPLE {number}"
            self.run_core(9)
            self.session.load("SAMPLE")
            self.set_pins()
            self.session.step()
            self.expect_capture(self.session.scan(self.random_bits()), self.session.label)

    def extest(self, rounds):
        session = self.session
        size = len(self.register.cells)
        patterns = [["0"] * size, ["1"] * size, self.register.off_values("0"), self.register.off_values("1")]
        patterns += [self.random_bits() for _ in range(rounds)]
        session.label = "EXTEST without a preload"
        session.load("SAMPLE")
        session.scan(patterns[0])
        session.reset_by_tms()
        session.diverging = True
        session.load("EXTEST")                      # the reset has set the control cells
        self.expect_pins([str(int(self.register.cells[index][0] == "control")) for index in range(size)],
                         session.label)
        session.label = "PRELOAD"
        session.load("SAMPLE")
        session.scan(patterns[0])
        session.load("EXTEST")
        for pattern, following in zip(patterns, patterns[1:] + patterns[:1]):
            session.label = f"EXTEST of {''.join(pattern)}"
            self.set_pins()
            self.expect_pins(pattern, session.label)
            self.set_pins()
            session.step()
            self.expect_capture(session.scan(following), session.label, pattern)
        for name in ("CLAMP", "EXTEST"):
            session.label = name
            session.scan(patterns[1])
            session.load(name)
            self.expect_pins(patterns[1], name)
            if name == "CLAMP":
                session.scan("0110100", list("0011010"))
                self.expect_pins(patterns[1], name)
                session.load("EXTEST")
        if "HIGHZ" in self.chip.opcodes:
            session.label = "HIGHZ"
            session.load("HIGHZ")
            steps = self.probe()
            def check(new, _old):
                for port, want in self.released().items():
                    if new(steps[0], port) + new(steps[1], port) != want:
                        yield f"HIGHZ: {port} reads not {want} against a weak 0 and 1"
            self.found.append(check)
        session.reset_by_tms()
        session.diverging = False

    def released(self):
        """What HIGHZ does: the pad without an enable hangs on it, and cells with a pin for it go to rest."""
        if not self.register.highz_cells:
            return {"tk": "01"}
        at_rest = {port: "00" for port in OF_OUTPUT_SCAN}
        return at_rest | {port: "01" for port, (shows, _, net) in OUTPUTS.items()
                          if port == "tk" or (shows is LOW and net and port not in self.register.left)}

    def whole(self):
        session = self.session
        session.diverging = True
        session.reset_by_tms()
        self.reset()
        session.diverging = False
        self.run_core(300)
        checks.try_resets(self.chip, session)
        checks.try_registers(self.chip, session, self.rng)
        self.sample(16)
        self.extest(24)
        self.run_core(100)


# ---- the core on the register ---------------------------------------------------------------------------

def fresh(chip, register, rng):
    session = Session(chip)
    trials = Trials(chip, register, session, rng)
    session.reset_by_tms()
    trials.reset()
    return trials


def intest(chip, register, rng, look_before, play_new):
    """The old chip goes first. What its pins show before each clock goes into the register of the new one."""
    old = fresh(chip, register, rng)
    seen = []
    for _ in range(30):
        old.set_pins()
        before = old.session.step()
        old.clock()
        seen.append((before, old.session.step()))
    answers = look_before(old.session.steps)

    new = fresh(chip, register, rng)
    direct = ["dn", "dim", "mck", "bf", "fti", *register.merged] + (["mxb"] if "in" in register.of_port["mxb"] else [])
    new.session.load("SAMPLE")
    new.session.label = "INTEST"
    scans = []
    def load(step):
        pattern = register.off_values(rng.choice("01"))
        for port in INPUTS + BOTH_WAYS + ["iog", "rst_n"]:
            cells = register.of_port.get(port, {})
            place = cells.get("in", cells.get("both"))
            if place is not None:
                pattern[place] = answers(step, port) if port != "rst_n" else "1"
        scans.append((new.session.scan(pattern), pattern))
    load(seen[0][0])
    new.session.load("INTEST")
    for number, (before, _) in enumerate(seen):
        if number:
            load(before)
        new.set_pins()
        new.session.pins.update({port: answers(before, port) for port in direct})
        new.session.step()
        new.clock()
        new.session.step()
    load(seen[0][0])
    found = play_new(new.session.steps)

    inside = [register.of_port.get(name, {}).get("internal") for name in ("u_glue{Z}", "u_mix{B}")]
    for (_, rest), ((_, where), _), (_, pattern) in zip(seen, scans[1:], scans):
        for index, (role, name) in register.cells.items():
            if role == "in":
                continue
            if role == "control":
                want = answers(rest, name.split()[0])
            elif role == "internal":
                want = answers(rest, INTERNALS[name])
            elif OUTPUTS[name][1] == "q2_i" and inside[0] is not None:
                want = str(int(pattern[inside[0]]) ^ int(pattern[inside[1]]))
            else:
                want = answers(rest, OUTPUTS[name][1])
            got = found(where[index], "tdo")
            if got != want:
                yield f"INTEST: cell {index} ({role} {name}) captured {got}, should be {want}"


# ---- the proof -----------------------------------------------------------------------------------------

def values(answers, place):
    return lambda step, name: name[-1] if name.startswith("1'b") else answers[step][place[name]]


def prove(variant, work, cells, output, tap):
    register = Register(work / "kinds.bso", output)
    register.highz_cells = "highz_cells.v" in cells
    register.inverts = "-no_pad" not in variant.options      # a cell at the port itself gets no inverter
    kinds = {"in": "input", "out": "output2", "both": "bidir", "control": "control", "internal": "internal"}
    chip = Chip(cells=[Cell(i, kinds[register.cells[i][0]], "", register.cells[i][1])
                       for i in range(len(register.cells))])
    chip.ports = register.ports
    read_bsc(work / "kinds.bsc", chip)
    nets = [f"s[{i}]" for i in range(16)] + INPUT_NETS + ["glue", "q2_i"]
    pins = chip.ports + nets
    place = {pin: index for index, pin in enumerate(pins)}
    plan = {"design": "kinds", "cells": cells}
    netlists = ["kinds_jtag.v", "kinds_jtag_flat.v"]
    proof.accept(plan, netlists, work)

    session = Session(chip)
    trials = Trials(chip, register, session, random.Random(1))
    trials.whole()
    before = Player(work, "before", ["kinds.v", *tap, *cells], "kinds", pins,
                    probes={net: f"dut.{net}" for net in nets})
    old = before.play(session.steps)
    faults = []
    for netlist in netlists:
        player = Player(work, pathlib.Path(netlist).stem, [netlist, "kinds_TAP.v", *cells], "kinds_jtag", pins)
        new = player.play(session.steps)
        found = proof.check_tdo(session, new, place["tdo"])
        for check in trials.found:
            found += check(values(new, place), values(old, place))
        found += [f"step {step} ({session.labels[step]}): {pin} was {values(old, place)(step, pin)}, "
                  f"is {values(new, place)(step, pin)}"
                  for step, diverges in enumerate(session.diverges) if not diverges
                  for pin in chip.ports if pin != "tdo" and old[step][place[pin]] != new[step][place[pin]]]
        found += intest(chip, register, random.Random(2), lambda steps: values(before.play(steps), place),
                        lambda steps: values(player.play(steps), place))
        faults += [f"{netlist}: {fault}" for fault in found]
    still = [pin for pin in OUTPUTS if not OUTPUTS[pin][1].startswith("1'b") and not
             {"0", "1"} <= {answer[place[pin]] for answer, diverges in zip(old, session.diverges) if not diverges}]
    return faults + [f"stimulus: {pin} never moves" for pin in still], len(register.cells), len(session.steps)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    options.add_argument("--variant", required=True, help="random:N, or one of: " + " ".join(VARIANTS))
    options.add_argument("--work", required=True, type=pathlib.Path, help="scratch folder, emptied first")
    given = options.parse_args()
    name, _, seed = given.variant.partition(":")
    variant = random_variant(int(seed)) if seed else Variant(name, *VARIANTS[name], internals="in_ring" not in name)
    try:
        cells, output, tap = build(variant, given.bin.resolve(), given.work)
        faults, count, steps = prove(variant, given.work.resolve(), cells, output, tap)
    except ProofError as fault:
        sys.exit(f"PROOF FAILED: {fault}")
    for fault in faults[:proof.FAULTS_SHOWN]:
        print(fault)
    if faults:
        sys.exit(f"PROOF FAILED: {len(faults)} faults")
    print(f"PROOF PASSED: kinds, {given.variant}: {count} boundary cells, {steps} steps")


if __name__ == "__main__":
    main()
