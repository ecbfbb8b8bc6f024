"""Builds the steps of a session on the test port, and keeps what has to come out of it.

The driver follows the sixteen states of IEEE 1149.1 on its own. TMS and TDI change while TCK is low; a
TDO bit is looked at in the same low phase, just before TCK rises, and must be z in every state but the
two shift states.
"""

NEXT = {  # state: next state for TMS 0, for TMS 1
    "reset": ("idle", "reset"), "idle": ("idle", "select-dr"),
    "select-dr": ("capture-dr", "select-ir"), "capture-dr": ("shift-dr", "exit1-dr"),
    "shift-dr": ("shift-dr", "exit1-dr"), "exit1-dr": ("pause-dr", "update-dr"),
    "pause-dr": ("pause-dr", "exit2-dr"), "exit2-dr": ("shift-dr", "update-dr"),
    "update-dr": ("idle", "select-dr"),
    "select-ir": ("capture-ir", "reset"), "capture-ir": ("shift-ir", "exit1-ir"),
    "shift-ir": ("shift-ir", "exit1-ir"), "exit1-ir": ("pause-ir", "update-ir"),
    "pause-ir": ("pause-ir", "exit2-ir"), "exit2-ir": ("shift-ir", "update-ir"),
    "update-ir": ("idle", "select-dr"),
}


class Session:
    def __init__(self, chip, tdo_always_driven=False):
        self.chip = chip
        self.tdo_always_driven = tdo_always_driven      # a TDO port without a pad has nothing to release it
        self.port = chip.test_ports
        self.pins = {pin: "0" for pin in chip.ports}    # what the bench drives now
        self.pins.update({self.port["tms"]: "1", self.port["tdi"]: "1", self.port["tck"]: "0",
                          self.port["tdo"]: "z"})
        if "trst" in self.port:
            self.pins[self.port["trst"]] = "1"
        self.state = None                               # unknown before the first reset
        self.steps, self.labels = [], []
        self.diverges = []                              # True where the register, not the core, has the pins
        self.expect = {}                                # step: value of TDO
        self.label, self.diverging = "power up", False

    def step(self):
        """One step with the pins as they stand; gives its number."""
        self.steps.append(dict(self.pins))
        self.labels.append(self.label)
        self.diverges.append(self.diverging)
        return len(self.steps) - 1

    def tick(self, tms, tdi=1):
        """One period of TCK. Gives the number of the step at whose end TCK rises: there TDO is read, and
        what the pins are at its end is what Capture-DR takes."""
        self.pins[self.port["tms"]], self.pins[self.port["tdi"]] = str(tms), str(tdi)
        self.pins[self.port["tck"]] = "0"
        low = self.step()
        if self.state and not self.state.startswith("shift") and not self.tdo_always_driven:
            self.expect[low] = "z"
        self.pins[self.port["tck"]] = "1"
        self.step()
        if self.state:
            self.state = NEXT[self.state][tms]
        return low

    def settle(self):
        """TCK falls and stays low: updates and resets take effect."""
        self.pins[self.port["tck"]] = "0"
        return self.step()

    def walk(self, *tms):
        for bit in tms:
            self.tick(bit)

    def reset_by_tms(self):
        self.walk(1, 1, 1, 1, 1)
        self.state = "reset"
        self.settle()

    def reset_by_trst(self):
        self.pins[self.port["tck"]] = "0"
        self.step()
        self.pins[self.port["trst"]] = "0"
        self.step()
        self.pins[self.port["tms"]] = "1"
        self.step()
        self.pins[self.port["trst"]] = "1"
        self.state = "reset"
        self.step()

    def to_idle(self):
        if self.state == "reset":
            self.tick(0)
        assert self.state == "idle", self.state

    def shift(self, bits, expected=None, pause_at=None):
        """From Capture: the bits go in, first bit first. expected gives a value per bit, None to ignore.
        Gives the steps at which the bits came out. Ends in Exit1, or passes Pause on the way."""
        where = []
        for place, bit in enumerate(bits):
            last = place == len(bits) - 1
            where.append(self.tick(1 if last or place + 1 == pause_at else 0, int(bit)))
            if place + 1 == pause_at and not last:      # to Pause, stay, and back
                self.walk(0, 0, 1, 0)
            if expected and expected[place] is not None:
                self.expect[where[-1]] = expected[place]
        return where

    def load(self, instruction):
        """Loads an instruction, from Run-Test/Idle to Run-Test/Idle, and checks the capture value."""
        opcode = self.chip.opcodes.get(instruction, instruction)
        capture = [bit if bit in "01" else None for bit in reversed(self.chip.ir_capture)]
        self.to_idle()
        self.walk(1, 1, 0, 0)
        self.shift(opcode[::-1], capture)
        self.walk(1, 0)
        self.settle()

    def scan(self, bits, expected=None, pause_at=None):
        """One pass through the data register, Idle to Idle. Gives the step that was captured, and the steps
        at which the bits came out."""
        self.to_idle()
        self.walk(1, 0)
        captured = self.tick(0)                         # in Capture-DR: TCK rises at the end of this step
        where = self.shift(bits, expected, pause_at)
        self.tick(1)                                    # to Update-DR
        self.settle()                                   # the update happens as TCK falls
        self.tick(0)
        self.settle()
        return captured, where
