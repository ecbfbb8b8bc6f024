"""What IEEE 1149.1 says about the cell types, written down apart from the cells.

PI is the cell's parallel input, PO its parallel output as the pin really shows it, UPD the update stage. None: the type
does not know the instruction.
"""

# Type and function: what the shift stage takes in EXTEST, in SAMPLE, in INTEST.
CAPTURES = {
    ("BC_1", "input"):     ("PI", "PI", "PI"),
    ("BC_1", "output"):    ("PI", "PI", "PI"),
    ("BC_1", "control"):   ("PI", "PI", "PI"),
    ("BC_2", "input"):     ("PI", "PI", "UPD"),
    ("BC_2", "output"):    ("UPD", "PI", "PI"),
    ("BC_2", "control"):   ("UPD", "PI", "PI"),
    ("BC_4", "observe"):   ("PI", "PI", "PI"),
    ("BC_7", "bidir_in"):  ("PI", "PI", "UPD"),
    ("BC_7", "bidir_out"): ("PO", "PI", "PI"),
    ("BC_8", "bidir_in"):  ("PI", "PI", None),
    ("BC_8", "bidir_out"): ("PO", "PO", None),
    ("BC_9", "watching"):  ("PO", "PI", "PI"),
    ("BC_10", "watching"): ("PO", "PO", None),
}

# Function: the pin that is PI, and the pin that is PO where it is not behind a driver.
SIDES = {"input": ("DI", None), "output": ("DI", None), "control": ("DI", None), "observe": ("DI", None),
         "bidir_in": ("SP", None), "bidir_out": ("DI", "SP"), "watching": ("DI", "SP")}

# Instruction: the modes and HZ of the TAP, whether the pads, and whether the core, get the update stage.
INSTRUCTIONS = {
    "EXTEST": ({"M1": 1, "M2": 0, "HZ": 0}, True, False),
    "SAMPLE": ({"M1": 0, "M2": 0, "HZ": 0}, False, False),
    "INTEST": ({"M1": 1, "M2": 1, "HZ": 0}, True, True),
    "CLAMP":  ({"M1": 1, "M2": 0, "HZ": 0}, True, False),
    "HIGHZ":  ({"M1": 0, "M2": 0, "HZ": 1}, False, False),
}

# The end of a cell's name, behind its type, to its function.
FUNCTIONS = {"IN": "input", "OUT": "output", "CTL0": "control", "CTL1": "control", "OE0": "control", "OE1": "control",
             "CTL0Z": "control", "CTL1Z": "control", "OE0Z": "control", "OE1Z": "control"}
UNNAMED = {"BC_4": "observe", "BC_7": "bidir", "BC_8": "bidir", "BC_9": "watching", "BC_10": "watching"}
