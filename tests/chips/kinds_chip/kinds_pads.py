"""The nets that feed the output pads of the kinds chip, by port: data and enable."""

OUTPUTS = {
    "q0": ("s[0]", None), "q1": ("s[1]", None), "q2": ("q2_i", None), "t0": ("s[2]", "s[8]"), "t1": ("s[3]", "s[8]"),
    "th": ("s[4]", "s[9]"), "tp": ("s[12]", "s[10]"), "tk": ("s[5]", None), "od": ("s[6]", None), "os": ("s[7]", None),
    "io0": ("s[0]", "s[11]"), "io1": ("s[1]", "s[11]"), "ioh": ("s[2]", "s[12]"), "iof": ("s[3]", "s[11]"),
    "dop": ("s[4]", None), "dtp": ("s[5]", "s[13]"), "bst": ("s[6]", "s[14]"), "mxo": ("s[7]", None),
    "mxt": ("s[8]", "s[9]"), "fto": ("fti", None), "dup": ("s[6]", "s[13]"), "mxb": ("s[9]", "s[15]"),
    "mxc": ("s[10]", "s[15]"), "bsb": ("s[7]", "s[1]"),
}
PORT_OF_PAD = {"do": "dop", "dt": "dtp", "du": "dup"}
INPUT_NETS = ["x[0]", "x[1]", "x[2]", "x[3]", "x[4]", "x[5]", "x[11]"]     # the core sides of input pads
