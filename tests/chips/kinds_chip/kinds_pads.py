"""What each pad of the kinds chip does, by port, and which nets feed it before the insertion."""

# Output pads: what a pad shows for data d and enable e, then the nets that feed both before the insertion.
TWO = lambda d, e: d                                # noqa: E731
LOW = lambda d, e: d if e == "0" else "z"           # noqa: E731
HIGH = lambda d, e: d if e == "1" else "z"          # noqa: E731
INVERTED = {"0": "1", "1": "0", "z": "z"}
OUTPUTS = {
    "q0": (TWO, "s[0]", None), "q1": (TWO, "s[1]", None), "q2": (TWO, "q2_i", None),
    "t0": (LOW, "s[2]", "s[8]"), "t1": (LOW, "s[3]", "s[8]"), "th": (HIGH, "s[4]", "s[9]"),
    "tp": (HIGH, "s[12]", "s[10]"), "tk": (TWO, "s[5]", None),
    "od": (lambda d, e: "0" if d == "0" else "z", "s[6]", None),
    "os": (lambda d, e: "1" if d == "1" else "z", "s[7]", None),
    "io0": (LOW, "s[0]", "s[11]"), "io1": (LOW, "s[1]", "s[11]"), "ioh": (HIGH, "s[2]", "s[12]"),
    "iof": (LOW, "s[3]", "s[11]"), "dop": (TWO, "s[4]", None), "dtp": (LOW, "s[5]", "s[13]"),
    "bst": (LOW, "s[6]", "s[14]"), "mxo": (TWO, "s[7]", None), "mxt": (LOW, "s[8]", "s[9]"),
    "fto": (TWO, "fti", None), "dup": (LOW, "s[6]", "s[13]"), "mxb": (LOW, "s[9]", "s[15]"),
    "mxc": (LOW, "s[10]", "s[15]"), "bsb": (LOW, "s[7]", "s[1]"),
}
OF_OUTPUT_SCAN = ["q0", "q1", "q2", "t0", "t1", "th", "tp", "tk", "fto", "dop"]
PORT_OF_PAD = {"do": "dop", "dt": "dtp", "du": "dup"}
MINUS_LEGS = {"dom": "dop", "dtm": "dtp", "dum": "dup"}
INPUTS = ["d0", "d1", "dn", "bf", "fti", "dip", "bsi", "mxi", "mck"]
INSIDE = {"bst": "out", "bsb": "both", "bsi": "in"}
BOTH_WAYS = ["io0", "io1", "ioh", "mxb", "mxc", "bsb"]
WEAK = [port for port in OUTPUTS] + ["iog", "dom", "dtm", "dum"]
INTERNALS = {"u_glue{Z}": "glue", "u_mix{B}": "s[14]", "u_glue{A}": "s[3]"}
INPUT_NETS = ["x[0]", "x[1]", "x[2]", "x[3]", "x[4]", "x[5]", "x[11]"]     # the core sides of input pads
WITHOUT_CELL = {"mck", "mxe", "bf", "fti", "dim", "dom", "dtm", "dum", "tdi", "tms", "tck", "trst_n", "tdo"}
