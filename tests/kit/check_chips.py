#!/usr/bin/env python3
"""What `rimkit check` says of whole chips that work: no errors but those that are true of them.

    check_chips.py --chip uart|drafts|ring|kinds:VARIANT|real:NAME --bin build/bin --work DIR [--chips DIR]
"""

import json
import sys

sys.dont_write_bytecode = True
import bsdl_chips  # noqa: E402
from bsdl_chips import Failed  # noqa: E402

# Pads that the insertion has no cells for, and two that some variants leave to the core.
KINDS, SOME_KINDS = {(15, "mxe"), (15, "bf")}, {(15, "mck"), (17, "dup")}


class Judged(Exception):
    pass


class Bench(bsdl_chips.Bench):
    """Makes the chips of the BSDL tests, and checks each where these describe it."""

    def judge(self, design, *_):
        wanted, allowed = (KINDS, SOME_KINDS) if design == "kinds" else (set(), set())
        found = json.loads(self.run("rimkit", "check", "--json", design, status=1 if wanted else 0))
        errors = {(row["number"], row["port"]) for row in found["findings"] if row["severity"] == "error"}
        if errors - allowed != wanted:
            raise Failed(json.dumps([row for row in found["findings"] if row["severity"] == "error"], indent=1))
        checked = set(range(1, 35)) - {row["number"] for row in found["not_checked"]}
        if checked != {4, 13, 15, 16, 17, 27, 28, 29, 30, 31, 32, 34} or found["checked"] != 14:
            raise Failed(f"checked: {sorted(checked)}")
        raise Judged


if __name__ == "__main__":
    bsdl_chips.Bench = Bench
    try:
        sys.exit(bsdl_chips.main())
    except Judged:
        print("PASSED")
