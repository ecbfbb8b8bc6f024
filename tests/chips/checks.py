"""What is tried on a chip. Each trial adds its steps to the session and gives checks for later: functions
that take the answers of a run and give the faults that they see."""

import random

from tap_driver import Session


def ring_inputs(chip):
    return [cell.port for cell in chip.cells if cell.kind == "input"]


def ring_clocks(chip):
    return [cell.port for cell in chip.cells if cell.kind == "clock"]


def weak_pins(chip):
    return [cell.port for cell in chip.cells if cell.kind in ("output3", "bidir")]


def set_inputs(chip, session, plan, rng):
    """New random values on all inputs, and on all pins that the chip may leave alone."""
    for pin in ring_inputs(chip):
        if pin not in plan["resets"]:
            session.pins[pin] = "1" if rng.random() < plan.get("ones", {}).get(pin, 0.5) else "0"
    for pin in weak_pins(chip):
        session.pins[pin] = rng.choice("01")


def clock(chip, session):
    for value in "01":
        for pin in ring_clocks(chip):
            session.pins[pin] = value
        session.step()
    for pin in ring_clocks(chip):
        session.pins[pin] = "0"


def reset_core(chip, session, plan):
    session.pins.update(plan["resets"])
    clock(chip, session)
    clock(chip, session)
    session.pins.update({pin: "1" if value == "0" else "0" for pin, value in plan["resets"].items()})


def run_core(chip, session, plan, rng, cycles):
    for _ in range(cycles):
        set_inputs(chip, session, plan, rng)
        clock(chip, session)
    session.step()


def probe(chip, session):
    """Two steps, with 0 and with 1 on all weak pins: a released pin follows, a driven one does not."""
    steps = []
    for value in "01":
        for pin in weak_pins(chip):
            session.pins[pin] = value
        steps.append(session.step())
    return steps


def is_driven(answers, place, steps, port):
    return (answers[steps[0]][place[port]], answers[steps[1]][place[port]]) != ("0", "1")


def expected_capture(chip, answers, place, cell, captured, probed):
    """The value that a cell has to take at a step, or None when the pins do not tell."""
    if cell.kind in ("input", "clock", "output2", "bidir"):
        value = answers[captured][place[cell.port]]
    elif cell.kind == "control":
        served = [data for data in chip.cells if data.control is cell]
        values = {data.on if is_driven(answers, place, probed, data.port) else 1 - data.on for data in served}
        if len(values) != 1:
            return "one state of all its pads"
        value = str(values.pop())
    else:
        value = answers[captured][place[cell.port]] if is_driven(answers, place, probed, cell.port) else None
    return value if value in ("0", "1") else None


def capture_check(chip, kinds, captured, where, probed, label):
    def check(answers, place):
        faults = []
        for cell, step in zip(chip.cells, where):
            if cell.kind not in kinds:
                continue
            want = expected_capture(chip, answers, place, cell, captured, probed)
            got = answers[step][place[chip.test_ports["tdo"]]]
            if want is not None and got != want:
                faults.append(f"{label}: cell {cell.index} ({cell.kind} {cell.port or cell.instance}) "
                              f"captured {got}, should be {want}")
        return faults
    return check


def pins_check(chip, pattern, probed, label):
    """The pins stand as the boundary register says; pattern is a bit per cell, None for all released."""
    def check(answers, place):
        faults = []
        for cell in chip.cells:
            if cell.kind not in ("output2", "output3", "bidir") or (pattern is None and not cell.control):
                continue
            if cell.kind != "output2" and not cell.control:
                continue
            seen = answers[probed[0]][place[cell.port]] + answers[probed[1]][place[cell.port]]
            off = cell.control and (pattern is None or int(pattern[cell.control.index]) != cell.on)
            want = "01" if off else 2 * pattern[cell.index]
            if seen != want:
                faults.append(f"{label}: {cell.port} reads {seen} against a weak 0 and 1, should be {want}")
        return faults
    return check


def random_bits(rng, count):
    return [rng.choice("01") for _ in range(count)]


# ---- the trials -----------------------------------------------------------------------------------------

def try_resets(chip, session):
    """After a reset the current instruction is IDCODE where there is one, else BYPASS."""
    code = chip.idcode if "IDCODE" in chip.opcodes else None
    expected = list(code[::-1]) if code else ["0"]
    session.label = "IDCODE after reset"
    session.scan("0" * len(expected), expected)
    trst = [session.reset_by_trst] if "trst" in chip.test_ports else []
    for name, reset in [("TMS", session.reset_by_tms)] + [("TRST", r) for r in trst]:
        for path in ((1, 0, 0, 0), (1, 1, 0, 0, 0)):    # from Shift-DR and from Shift-IR
            session.label = f"reset by {name} from {'Shift-DR' if len(path) == 4 else 'Shift-IR'}"
            session.load("BYPASS")
            session.walk(*path)
            reset()
            session.scan("0" * len(expected), expected)


def try_registers(chip, session, rng):
    bits = random_bits(rng, 24)
    unlisted = next((format(code, f"0{len(chip.ir_capture)}b") for code in range(1 << len(chip.ir_capture))
                     if format(code, f"0{len(chip.ir_capture)}b") not in chip.opcodes.values()), "BYPASS")
    for name in ("BYPASS", unlisted):
        session.label = f"bypass register, {name}"
        session.load(name)
        session.scan(bits, ["0"] + bits[:-1], pause_at=7)
    if chip.idcode and "IDCODE" in chip.opcodes:
        session.label = "IDCODE"
        session.load("IDCODE")
        session.scan(random_bits(rng, 40), list(chip.idcode[::-1]) + [None] * 8)
    session.label = "length of the boundary register"
    session.load("SAMPLE")
    bits = random_bits(rng, len(chip.cells) + 40)
    for pause in (None, 5, len(chip.cells)):
        session.scan(bits, [None] * len(chip.cells) + bits[:40], pause)


def try_sample(chip, session, plan, rng, rounds):
    """The core runs on between the rounds, and the comparison with the old chip goes on through the scans."""
    checks = []
    for number in range(rounds):
        session.label = f"SAMPLE {number}"
        run_core(chip, session, plan, rng, 40)
        session.load("SAMPLE")
        set_inputs(chip, session, plan, rng)
        probed = probe(chip, session)
        captured, where = session.scan(random_bits(rng, len(chip.cells)))
        checks.append(capture_check(chip, ("input", "clock", "output2", "output3", "bidir", "control"), captured,
                                    where, probed, session.label))
    return checks


def try_extest(chip, session, plan, rng, rounds):
    checks = []
    session.label = "EXTEST without a preload"
    session.reset_by_tms()
    session.diverging = True
    session.load("EXTEST")
    checks.append(released_after_reset(chip, probe(chip, session), session.label))
    session.load("SAMPLE")

    cells = len(chip.cells)
    enables = {cell.index: str(cell.on) for cell in chip.cells if cell.kind == "control"}
    fixed = [["0"] * cells, ["1"] * cells, [enables.get(i, "0") for i in range(cells)],
             [enables.get(i, "1") for i in range(cells)]]
    pattern = random_bits(rng, cells)
    session.label = "PRELOAD"
    session.scan(pattern)
    session.load("EXTEST")
    for number in range(rounds + len(fixed)):
        session.label = f"EXTEST {number}"
        set_inputs(chip, session, plan, rng)
        session.pins.update({pin: rng.choice("01") for pin in plan["resets"]})      # the core has no say
        probed = probe(chip, session)
        checks.append(pins_check(chip, pattern, probed, session.label))
        set_inputs(chip, session, plan, rng)
        session.step()
        pattern = fixed[number] if number < len(fixed) else random_bits(rng, cells)
        captured, where = session.scan(pattern)
        checks.append(capture_check(chip, ("input", "clock", "bidir"), captured, where, probed, session.label))
    if "CLAMP" in chip.opcodes:
        session.label = "CLAMP"
        session.load("CLAMP")
        checks.append(pins_check(chip, pattern, probe(chip, session), session.label))
        bits = random_bits(rng, 9)
        session.scan(bits, ["0"] + bits[:-1])
        if not plan.get("vhdl"):                        # the TAP in VHDL does not hold the update stages here
            checks.append(pins_check(chip, pattern, probe(chip, session), session.label))
    if "HIGHZ" in chip.opcodes:
        session.label = "HIGHZ"
        session.load("HIGHZ")
        checks.append(pins_check(chip, None, probe(chip, session), session.label))
    session.reset_by_tms()
    reset_core(chip, session, plan)
    session.diverging = False
    return checks


def released_after_reset(chip, probed, label):
    """Pads whose control cell has a reset are off until something is loaded into it. One of pads of both
    polarities can't turn them all off."""
    mixed = {cell.control.index for cell in chip.cells if cell.control and cell.on != cell.control.on}
    def check(answers, place):
        return [f"{label}: {cell.port} is driven" for cell in chip.cells
                if cell.control and cell.control.resets and cell.control.index not in mixed and
                is_driven(answers, place, probed, cell.port)]
    return check


def start(chip, plan):
    """A session with the TAP in reset and the core past its own, as a board brings them up."""
    session = Session(chip, plan.get("tdo_always_driven", False))
    session.diverging = True
    session.reset_by_trst() if "trst" in chip.test_ports else session.reset_by_tms()
    reset_core(chip, session, plan)
    clock(chip, session)
    session.diverging = False
    return session


def whole_session(chip, session, plan, rng):
    session.diverging = True                            # nothing is known before the first reset
    session.reset_by_tms()
    reset_core(chip, session, plan)
    session.diverging = False
    session.label = "TAP in reset"
    run_core(chip, session, plan, rng, plan["cycles"])
    try_resets(chip, session)
    try_registers(chip, session, rng)
    checks = try_sample(chip, session, plan, rng, 16)
    checks += try_extest(chip, session, plan, rng, 10)
    session.label = "after EXTEST"
    run_core(chip, session, plan, rng, 200)
    return checks


def prove_intest(chip, plan, before_player, after_player, place):
    """The core runs on values that come through the register, and its answers leave through it. The old chip
    goes first: what its pins show before each clock is what the register of the new one takes."""
    rng = random.Random(plan.get("seed", 1) + 1)
    old, new = start(chip, plan), start(chip, plan)
    rounds = []
    for _ in range(24):
        set_inputs(chip, old, plan, rng)
        old.pins.update(plan.get("intest_hold", {}))
        before = old.step()
        clock(chip, old)
        rounds.append((before, old.step(), probe(chip, old)))
    seen = before_player.play(old.steps)

    def load(step):
        return new.scan([str(1 - cell.on) if cell.kind == "control" else
                         "1" if cell.kind in ("input", "bidir") and seen[step][place[cell.port]] == "1" else "0"
                         for cell in chip.cells])

    new.load("SAMPLE")
    load(rounds[0][0])
    new.load("INTEST")
    scans = []
    for before, _, _ in rounds:
        scans.append(load(before))
        clock(chip, new)
        new.step()
    scans.append(load(0))

    answers, faults = after_player.play(new.steps), []
    for (_, resting, probed), (_, where) in zip(rounds, scans[1:]):
        for cell, step in zip(chip.cells, where):
            if cell.kind not in ("output2", "output3", "control"):
                continue
            want = expected_capture(chip, seen, place, cell, resting, probed)
            got = answers[step][place[chip.test_ports["tdo"]]]
            if want is not None and got != want:
                faults.append(f"INTEST: cell {cell.index} ({cell.kind} {cell.port or cell.instance}) captured "
                              f"{got}, the old chip has {want}")
    return faults
