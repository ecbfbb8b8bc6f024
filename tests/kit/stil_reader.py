"""Reads the STIL of a chip strictly, and holds its vectors against the tables of the bench."""

import re

from chip_files import ProofError


def take(text, pattern, what):
    found = re.match(pattern, text, re.S)
    if not found:
        raise ProofError(f"STIL: {what} expected at: {text[:60]!r}")
    return found, text[found.end():]


def read_stil(text):
    """Signals with their directions, groups, and per step the vectors: a value for each group that a vector names."""
    head, rest = take(text, r'STIL 1\.0;\nHeader \{ Title "[^"]*"; Source "[^"]*"; \}\nSignals \{\n(.*?)\}\n', "head")
    signals = dict(re.findall(r'^ {4}"([^"]+)" (In|Out|InOut);$', head[1], re.M))
    found, rest = take(rest, r"SignalGroups \{\n(.*?)\}\n", "groups")
    groups = {name: re.findall(r'"([^"]+)"', names) for name, names in re.findall(r"(\w+) = '([^']*)';", found[1])}
    _, rest = take(rest, r"Timing \{ WaveformTable (\w+) \{.*?\n\} \}\n", "timing")
    _, rest = take(rest, r"PatternBurst (\w+) \{ PatList \{ (\w+); \} \}\nPatternExec \{ PatternBurst \1; \}\n", "burst")
    _, rest = take(rest, r"Pattern tests \{\nW wave;\n", "pattern")
    steps = [[]]
    for line in rest.splitlines()[:-1]:
        if re.fullmatch(rf"Ann \{{\* step {len(steps) - 1}: .* \*\}}", line):
            steps.append([])
            continue
        if not re.fullmatch(r'V\{(?:"?[^"=;]+"?=[01PLHTX]+;)+\}', line):
            raise ProofError(f"STIL: no vector: {line}")
        steps[-1].append({name.strip('"'): value for name, value in re.findall(r'("?[^"=;{]+"?)=([01PLHTX]+);', line)})
    if rest.splitlines()[-1] != "}":
        raise ProofError("STIL: no end")
    return signals, groups, steps[1:]


def read_bench(text):
    """Per step a table of its values, with vectors as texts, bit 0 first."""
    steps = {}
    for name, step, value in re.findall(r"\b(\w+)\[(\d+)\] = (\d+(?:'h[0-9a-f]+)?);", text):
        if "'" in value:
            width, digits = value.split("'h")
            value = format(int(digits, 16), f"0{width}b")[::-1]
        steps.setdefault(int(step), {})[name] = value
    return steps


def letters_of_scan(row):
    """TDI and TDO at each shift; what the bench does not know ahead is not compared."""
    size = int(row["size"])
    bits = {name: row.get(name, "").ljust(size, "0") for name in ("tdi", "care", "want")}
    return bits["tdi"][:size], "".join("X" if bits["care"][i] == "0" else "LH"[int(bits["want"][i])] for i in range(size))


def shifts_of(row, vectors):
    """The vectors that shift: behind those that lead to Shift, without those of a stop in Pause-DR."""
    size, pause, first = int(row["size"]), int(row.get("pause", 0)), 4 if row["kind"] == "2" else 3
    stop = 3 if 0 < pause < size else 0
    tms = "1" * (first - 2) + "00" + "".join(
        str(int(i + 1 in (size, pause))) + "010" * (stop > 0 and i + 1 == pause) for i in range(size)) + "100"
    if [vector["t"][:2] for vector in vectors] != ["P" + bit for bit in tms[:-1]] + ["00"]:
        raise ProofError(f"STIL: TMS of {size} bits is not {tms}")
    return [vector for i, vector in enumerate(vectors[first:-3]) if not pause <= i < pause + stop or not stop]


def check_stil(work, design):
    signals, groups, steps = read_stil((work / f"{design}.stil").read_text())
    bench = (work / f"{design}_bench.v").read_text()
    table = read_bench(bench[bench.index("kind[0] ="):])
    if groups["t"] + [name for name in groups["all"] if name not in groups["t"] + groups["p"]] + groups["p"] != groups["all"] or \
            set(groups["all"]) != set(signals) or len(steps) != len(table):
        raise ProofError(f"STIL: groups {groups}, {len(steps)} steps for {len(table)}")
    pins = re.findall(r"^    wire p\d+; // (\S+)$", bench, flags=re.M)
    for step, vectors in enumerate(steps):
        row = table[step]
        for vector in vectors:
            if any(len(vector[name]) != len(groups[name]) for name in ("t", "p") if name in vector):
                raise ProofError(f"STIL: step {step}: {vector}")
        if row["kind"] in "23":
            said = ["".join(vector["t"][at] for vector in shifts_of(row, vectors)) for at in (2, 3)]
            if said != list(letters_of_scan(row)):
                raise ProofError(f"STIL: step {step}: {said}, the bench has {letters_of_scan(row)}")
        elif row["kind"] == "4" and "is_note" not in row:
            check_pins(step, row, dict(zip(groups["p"], vectors[0]["p"])), dict(zip(groups["p"], vectors[1]["p"])), pins)


def check_pins(step, row, free, held, pins):
    """What is compared while pins are free, and what is driven then."""
    def bit(name, place):
        return row.get(name, "").ljust(len(pins), "0")[place]
    for place, pin in enumerate(pins):
        if pin not in free:
            continue
        cares = bit("care_0", place) + bit("care_1", place)
        wants = bit("want_0", place) + bit("want_1", place)
        right = {"00": "X", "10": "L", "01": "H"}.get(cares) or {"00": "L", "11": "H", "01": "T"}[wants]
        driven = bit("driven", place) == "1"
        value = bit("value", place)
        if free[pin] not in (right, value if driven else right) or (driven and right in "TX" and held[pin] != value):
            raise ProofError(f"STIL: step {step}: {pin} is {free[pin]} and {held[pin]}, not {right}, {value}")
