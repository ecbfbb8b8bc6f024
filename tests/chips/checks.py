"""What is tried on a chip, and what has to come out of it."""


def values(answers, pins):
    """The value of a pin at a step, of the answers of a player; a constant is its own value."""
    place = {pin: index for index, pin in enumerate(pins)}
    return lambda step, pin: pin[-1] if pin.startswith("1'b") else answers[step][place[pin]]


def is_driven(value, probed, port):
    return (value(probed[0], port), value(probed[1], port)) != ("0", "1")


class Trials:
    """Adds the steps of each trial to the session, and to found what is to be checked: functions of the values of
    the new and of the old chip that give the faults they see. What to expect is told from the pins alone; a chip
    whose nets are known has a class of its own that tells more."""

    direct = ()     # pins that the core reads past the register in INTEST

    def __init__(self, chip, session, plan, rng):
        self.chip, self.session, self.plan, self.rng, self.found = chip, session, plan, rng, []
        self.inputs, self.clocks = self.ports("input"), self.ports("clock")
        self.weak = self.ports("output3", "bidir")      # pins that the chip may leave alone
        self.moving = self.ports("output2", "output3", "bidir")
        self.tdo = chip.test_ports["tdo"]

    def ports(self, *kinds):
        return [cell.port for cell in self.chip.cells if cell.kind in kinds]

    # ---- stimulus ---------------------------------------------------------------------------------------

    def set_pins(self):
        """New random values on all inputs, and on all pins that the chip may leave alone."""
        for pin in self.inputs:
            if pin not in self.plan["resets"]:
                self.session.pins[pin] = "1" if self.rng.random() < self.plan.get("ones", {}).get(pin, 0.5) else "0"
        for pin in self.weak:
            self.session.pins[pin] = self.rng.choice("01")

    def clock(self):
        for value in "01":
            self.session.pins.update({pin: value for pin in self.clocks})
            self.session.step()
        self.session.pins.update({pin: "0" for pin in self.clocks})

    def reset_core(self):
        resets = self.plan["resets"]
        self.session.pins.update(resets)
        self.clock()
        self.clock()
        self.session.pins.update({pin: "1" if value == "0" else "0" for pin, value in resets.items()})

    def run_core(self, cycles):
        for _ in range(cycles):
            self.set_pins()
            self.clock()
        self.session.step()

    def start(self):
        """The TAP in reset and the core past its own, as a board brings them up."""
        self.session.diverging = True                   # nothing is known before the first reset
        self.session.reset_by_tms()
        self.reset_core()
        self.clock()
        self.session.diverging = False

    def probe(self):
        """Two steps, with 0 and with 1 on all weak pins: a released pin follows, a driven one does not."""
        steps = []
        for value in "01":
            self.session.pins.update({pin: value for pin in self.weak})
            steps.append(self.session.step())
        return steps

    def random_bits(self, count=None):
        return [self.rng.choice("01") for _ in range(count or len(self.chip.cells))]

    # ---- what to expect ---------------------------------------------------------------------------------

    def captured(self, cell, step, probed, new, old, pattern):
        """The value that a cell has to take at a step, or None when the pins do not tell. pattern is what the
        register holds while it has the pins."""
        if cell.kind in ("input", "clock", "bidir"):
            value = new(step, cell.port)
        elif pattern:
            return None
        elif cell.kind == "control":
            states = {data.on if is_driven(new, probed, data.port) else 1 - data.on
                      for data in self.chip.cells if data.control is cell}
            if len(states) != 1:
                return "one state of all its pads"
            value = str(states.pop())
        else:
            value = new(step, cell.port) if cell.kind == "output2" or is_driven(new, probed, cell.port) else None
        return value if value in ("0", "1") else None

    def answered(self, cell, step, probed, old, pattern):
        """The value of the old chip's core that a cell takes in INTEST."""
        return None if cell.kind in ("input", "clock", "bidir") else self.captured(cell, step, probed, old, old, None)

    def shown(self, pattern):
        """What the pins read against a weak 0 and a weak 1 while the register has them; None is a register that
        releases all that can be."""
        reads = {}
        for cell in self.chip.cells:
            if cell.control and (pattern is None or int(pattern[cell.control.index]) != cell.on):
                reads[cell.port] = "01"
            elif pattern and (cell.control or cell.kind == "output2"):
                reads[cell.port] = 2 * pattern[cell.index]
        return reads

    def shown_after_reset(self):
        """Pads whose control cell has a reset are off until something is loaded into it. One that serves pads of
        both polarities can't turn them all off."""
        mixed = {cell.control.index for cell in self.chip.cells if cell.control and cell.on != cell.control.on}
        return {cell.port: "01" for cell in self.chip.cells
                if cell.control and cell.control.resets and cell.control.index not in mixed}

    def shown_in_highz(self):
        return self.shown(None)

    def patterns(self):
        """What the register is loaded with in EXTEST before it gets random bits."""
        on = {cell.index: str(cell.on) for cell in self.chip.cells if cell.kind == "control"}
        return [[value] * len(self.chip.cells) for value in "01"] + [
            [on.get(index, value) for index in range(len(self.chip.cells))] for value in "01"]

    def released(self):
        """A pattern that turns all pads off."""
        return [str(1 - cell.on) if cell.kind == "control" else "0" for cell in self.chip.cells]

    # ---- the trials -------------------------------------------------------------------------------------

    def expect_pins(self, reads):
        steps, label = self.probe(), self.session.label
        def check(new, _old):
            for port, want in reads.items():
                seen = new(steps[0], port) + new(steps[1], port)
                if seen != want:
                    yield f"{label}: {port} reads {seen} against a weak 0 and 1, should be {want}"
        self.found.append(check)

    def expect_capture(self, scanned, probed, pattern=None):
        (step, where), label = scanned, self.session.label
        def check(new, old):
            for cell in self.chip.cells:
                want, got = self.captured(cell, step, probed, new, old, pattern), new(where[cell.index], self.tdo)
                if want is not None and got != want:
                    yield (f"{label}: cell {cell.index} ({cell.kind} {cell.port or cell.instance}) captured {got}, "
                           f"should be {want}")
        self.found.append(check)

    def resets(self):
        """After a reset the current instruction is IDCODE where there is one, else BYPASS."""
        session = self.session
        code = self.chip.idcode if "IDCODE" in self.chip.opcodes else None
        expected = list(code[::-1]) if code else ["0"]
        session.label = "IDCODE after reset"
        session.scan("0" * len(expected), expected)
        trst = [session.reset_by_trst] if "trst" in self.chip.test_ports else []
        for name, reset in [("TMS", session.reset_by_tms)] + [("TRST", r) for r in trst]:
            for path in ((1, 0, 0, 0), (1, 1, 0, 0, 0)):    # from Shift-DR and from Shift-IR
                session.label = f"reset by {name} from {'Shift-DR' if len(path) == 4 else 'Shift-IR'}"
                session.load("BYPASS")
                session.walk(*path)
                reset()
                session.scan("0" * len(expected), expected)

    def registers(self):
        session, cells = self.session, len(self.chip.cells)
        bits, width = self.random_bits(24), len(self.chip.ir_capture)
        unlisted = next((code for code in (format(number, f"0{width}b") for number in range(1 << width))
                         if code not in self.chip.opcodes.values()), "BYPASS")
        for name in ("BYPASS", unlisted):
            session.label = f"bypass register, {name}"
            session.load(name)
            session.scan(bits, ["0"] + bits[:-1], pause_at=7)
        if self.chip.idcode and "IDCODE" in self.chip.opcodes:
            session.label = "IDCODE"
            session.load("IDCODE")
            session.scan(self.random_bits(40), list(self.chip.idcode[::-1]) + [None] * 8)
        session.label = "length of the boundary register"
        session.load("SAMPLE")
        bits = self.random_bits(cells + 40)
        for pause in (None, 5, cells):
            session.scan(bits, [None] * cells + bits[:40], pause)

    def sample(self, rounds):
        """The core runs on between the rounds, and the comparison with the old chip goes on through the scans."""
        for number in range(rounds):
            self.session.label = f"SAMPLE {number}"
            self.run_core(40)
            self.session.load("SAMPLE")
            self.set_pins()
            probed = self.probe()
            self.expect_capture(self.session.scan(self.random_bits()), probed)

    def extest(self, rounds):
        session, opcodes = self.session, self.chip.opcodes
        session.label = "EXTEST after a reset"
        session.load("SAMPLE")
        session.scan(["0"] * len(self.chip.cells))
        session.reset_by_tms()
        session.diverging = True
        session.load("EXTEST")
        self.expect_pins(self.shown_after_reset())
        session.load("SAMPLE")

        pattern = self.random_bits()
        session.label = "PRELOAD"
        session.scan(pattern)
        session.load("EXTEST")
        for number, following in enumerate(self.patterns() + [self.random_bits() for _ in range(rounds)]):
            session.label = f"EXTEST {number}"
            self.set_pins()
            session.pins.update({pin: self.rng.choice("01") for pin in self.plan["resets"]})    # the core has no say
            self.expect_pins(self.shown(pattern))
            self.set_pins()
            session.step()
            self.expect_capture(session.scan(following), None, pattern)
            pattern = following
        if "CLAMP" in opcodes:
            session.label = "CLAMP"
            session.load("CLAMP")
            self.expect_pins(self.shown(pattern))
            bits = self.random_bits(9)
            session.scan(bits, ["0"] + bits[:-1])
            if not self.plan.get("vhdl"):               # the TAP in VHDL does not hold the update stages here
                self.expect_pins(self.shown(pattern))
        if "HIGHZ" in opcodes:
            session.label = "HIGHZ"
            session.load("HIGHZ")
            self.expect_pins(self.shown_in_highz())
        session.reset_by_tms()
        self.reset_core()
        session.diverging = False

    def whole(self):
        self.start()
        self.session.label = "TAP in reset"
        self.run_core(self.plan["cycles"])
        self.resets()
        self.registers()
        self.sample(16)
        self.extest(10)
        self.session.label = "after EXTEST"
        self.run_core(200)


def intest(make_trials, play_old, play_new):
    """The core runs on values that come through the register, and its answers leave through it. The old chip
    goes first: what its pins show before each clock is what the register of the new one takes."""
    old, new = make_trials(), make_trials()
    old.start()
    rounds = []
    for _ in range(24):
        old.set_pins()
        old.session.pins.update(old.plan.get("intest_hold", {}))
        before = old.session.step()
        old.clock()
        rounds.append((before, old.session.step(), old.probe()))
    shows = play_old(old.session.steps)

    def load(step):
        pattern = new.released()
        for cell in new.chip.cells:
            if cell.kind in ("input", "bidir"):
                pattern[cell.index] = "1" if shows(step, cell.port) == "1" else "0"
        return new.session.scan(pattern), pattern

    new.start()
    new.session.label = "INTEST"
    new.session.load("SAMPLE")
    load(rounds[0][0])
    new.session.load("INTEST")
    scans = []
    for before, _, _ in rounds:
        scans.append(load(before))
        new.set_pins()
        new.session.pins.update({pin: shows(before, pin) for pin in new.direct})
        new.clock()
        new.session.step()
    scans.append(load(0))

    answers = play_new(new.session.steps)
    for (_, rest, probed), ((_, where), _), (_, pattern) in zip(rounds, scans[1:], scans):
        for cell in new.chip.cells:
            want, got = old.answered(cell, rest, probed, shows, pattern), answers(where[cell.index], new.tdo)
            if want is not None and got != want:
                yield (f"INTEST: cell {cell.index} ({cell.kind} {cell.port or cell.instance}) captured {got}, "
                       f"the old chip has {want}")
