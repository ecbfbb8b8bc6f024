#!/usr/bin/env python3
"""Makes each call of a run of the example chip fail, one after the other, and looks at what is left.

    python3 tests/faults/faults.py --build build

tries all of them, which takes an hour or two: each call that asks for memory, writes, opens, renames or starts a
command fails, once or with all that follow, and the run is killed at each of the last four kinds. --points N tries
about N calls of each walk, evenly spread. A walk is a part of the example, the folder that it starts from, a kind of
call and what happens to it; --walk "insert earlier write once" --at 123 tries one call and leaves its folder.

After each run:
  - the inputs are as they were,
  - every output is the whole new file, the whole earlier one, or absent where there was none,
  - status 0 comes with all outputs, the whole console text and the whole report; a failure is status 255 and says why,
  - nothing lies about that has no business there,
  - a plain second run in the same folder ends well, with the same bytes and nothing else as a run that met no fault.
"""

import argparse
import collections
import concurrent.futures
import itertools
import os
import re
import shutil
import struct
import subprocess
import sys
from pathlib import Path

EXAMPLE = Path(__file__).resolve().parents[2] / "examples/uart_chip"
KINDS = {"malloc": 1, "write": 2, "open": 4, "rename": 8, "fork": 16, "any": 30}  # as in faults.cc
MODES = ["count", "once", "lasting", "kill"]
CONTROL = struct.Struct("=IIQQ64s")
WALKS = [(kind, mode) for kind in ("malloc", "write", "open", "rename", "fork") for mode in ("once", "lasting")]
WALKS.append(("any", "kill"))

# What a run leaves beside its outputs: texts about itself, and the copy of the design that is edited.
ABOUT_THE_RUN = re.compile(r".*\.(rpt|log)|chip_jtag\.sdb")
TEMPORARY = re.compile(r"(.*/)?\.rw-[A-Za-z0-9]{6}")
VARYING = [(rb"[A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d [\d:]{8} \d{4}", b"<time>"), (rb"Usage \.+ \w+\.", b"<memory>"),
           (rb"(CPU TIME =|Elapsed \.+) [\d:]+", b"<seconds>")]


def steady(data):
    """The bytes without the times and sizes of one run."""
    for pattern, text in VARYING:
        data = re.sub(pattern, text, data)
    return data


def files_below(folder, known=()):
    """Name to (inode, time of the last change, content). Files that `known` has are not read again."""
    files = {}
    for place, _, names in os.walk(folder):
        for path in (os.path.join(place, name) for name in names):
            name, state = os.path.relpath(path, folder), os.stat(path)
            mark = state.st_ino, state.st_mtime_ns
            if name not in known or known[name][:2] != mark:
                with open(path, "rb") as file:
                    mark += (file.read() if name.endswith(".sdb") else steady(file.read()),)
            files[name] = mark if len(mark) == 3 else known[name]
    return files


def contents(files):
    return {name: content for name, (_, _, content) in files.items()}


def link_or_copy(source, target):
    """Programs write beside a file and rename; what a run says is written as it stands."""
    return (shutil.copy if source.endswith((".rpt", ".log")) else os.link)(source, target)


# A part of the example: its commands, and changes of its inputs that give the earlier outputs to write over.
Part = collections.namedtuple("Part", "name commands changes")
PARTS = {part.name: part for part in (
    Part("read", ["kalmverin -lib cells.v -opath lib", "kalmverin chip.v"],
         [("cells.v", r"^(module \w+ \([^)]*)\);", r"\1, EARLIER); input EARLIER;"),
          ("chip.v", r"^endmodule", "wire earlier; INV u_earlier (earlier); endmodule")]),
    Part("insert", ["rimweave chip -add_tap"],
         [("chip.lib", r"%GROUP_SIZE +6", "%GROUP_SIZE 4"), ("chip.bsc", r"(%IDCODE_REGISTER +)0", r"\g<1>1")]))}
STARTS = ("fresh", "earlier")


class Driver:
    def __init__(self, build):
        self.bin, self.library = build / "bin", build / "tests/faults/librw_faults.so"
        self.work = build / "tests/faults/work"
        self.proven = set()  # folders from which a second run was seen to end well
        self.known = {}      # contents of the start folders and of the finished one, by part and folder
        self.marks = {}      # the same as files_below gives it

    def run(self, part, folder, kind="any", mode="count", at=0, plain=False):
        """Runs the part's commands until one fails: status, console, error stream, calls, place of the failed call."""
        control, console = folder.with_name("control"), folder.with_name("console")
        control.write_bytes(CONTROL.pack(KINDS[kind], MODES.index(mode), at, 0, b""))
        environment = {"PATH": f"{self.bin}:/usr/bin:/bin", "LC_ALL": "C"}
        if not plain:
            environment.update(LD_PRELOAD=str(self.library), RW_FAULTS=str(control))
        status, errors = 0, b""
        with open(console, "wb") as output:
            for command in part.commands:
                run = subprocess.run([self.bin / command.split()[0], *command.split()[1:]], cwd=folder, timeout=120,
                                     env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                     stderr=subprocess.PIPE, start_new_session=True)
                status, errors = run.returncode, errors + run.stderr
                if status != 0:
                    break
        _, _, _, calls, where = CONTROL.unpack(control.read_bytes())
        return status, steady(console.read_bytes()), errors, calls, where.rstrip(b"\0").decode(errors="replace")

    def prepare(self):
        """Makes the start folders of each part, and the folder and the console text of a run that meets no fault."""
        shutil.rmtree(self.work, ignore_errors=True)
        for part in PARTS.values():
            home = self.work / part.name
            if part.name == "read":
                (home / "fresh/lib").mkdir(parents=True)
                for path in EXAMPLE.glob("*.*"):
                    shutil.copy(path, home / "fresh")
            else:
                shutil.copytree(self.work / "read/done", home / "fresh")
            for name, changes in (("done", []), ("earlier", part.changes)):
                folder = shutil.copytree(home / "fresh", home / name)
                for file, pattern, text in changes:
                    content = (folder / file).read_text()
                    (folder / file).write_text(re.sub(pattern, text, content, flags=re.M))
                status, console, errors, _, _ = self.run(part, folder, plain=True)
                if status != 0:
                    sys.exit(f"faults: the plain run of {part.name} {name} fails\n{(console + errors).decode()}")
                (home / f"{name}.console").write_bytes(console)
                for file, _, _ in changes:
                    shutil.copy(home / "fresh" / file, folder)

    def load(self):
        for part in PARTS:
            for name in (*STARTS, "done"):
                files = files_below(self.work / part / name)
                self.known[part, name], self.marks[part, name] = contents(files), files
            self.known[part, "console"] = (self.work / part / "done.console").read_bytes()
            made = self.known[part, "done"].keys() - self.known[part, "fresh"].keys()
            self.known[part, "outputs"] = {name for name in made if not ABOUT_THE_RUN.fullmatch(name)}

    def faults_of_files(self, part, start, mode, after):
        before, done, outputs = (self.known[part.name, name] for name in (start, "done", "outputs"))
        faults = [f"the input {name} is changed" for name in self.known[part.name, "fresh"]
                  if after.get(name) != before[name]]
        faults += [f"{name} is not whole" for name in outputs if after.get(name) not in (before.get(name), done[name])]
        faults += [f"{name} lies about" for name in after.keys() - before.keys() - outputs
                   if not ABOUT_THE_RUN.fullmatch(name) and not (mode == "kill" and TEMPORARY.fullmatch(name))]
        return faults

    def faults_of_words(self, part, kind, mode, result, after):
        status, console, errors, _, _ = result
        done, whole = self.known[part.name, "done"], self.known[part.name, "console"]
        if status == 0:
            faults = [f"status 0 without {name}" for name in self.known[part.name, "outputs"]
                      if after.get(name) != done[name]]
            if not console.endswith(whole):
                faults.append("status 0 without all of the console text")
            if part.name == "insert" and done["chip.rwv.rpt"] not in (after.get("chip.rwv.rpt"), after.get("chip.rpt")):
                faults.append("status 0 without the whole report")
            return faults
        if mode == "kill" and status == -9:
            return []
        if status != 255:
            return [f"status {status}"]
        if kind == "malloc" and b"Not enough memory" not in errors:
            return ["status 255 without 'Not enough memory'"]
        return [] if errors.strip() or not whole.startswith(console) else ["status 255 without a word"]

    def faults_of_second_run(self, part, folder, left):
        state = part.name, hash(tuple(sorted(left.items())))
        if state in self.proven:
            return []
        status, console, errors, _, _ = self.run(part, folder, plain=True)
        done, after = self.known[part.name, "done"], contents(files_below(folder))
        faults = [] if status == 0 else [f"a second run ends with {status}: {(console + errors).decode()[-300:]}"]
        faults += [f"{name} differs after a second run" for name in done if after.get(name) != done[name]]
        faults += [f"{name} is there after a second run" for name in after.keys() - done.keys() if name != "chip.rpt"]
        if not faults:
            self.proven.add(state)
        return faults

    def start_folder(self, part, start):
        folder = self.work / f"try.{os.getpid()}/folder"
        shutil.rmtree(folder.parent, ignore_errors=True)
        return shutil.copytree(self.work / part.name / start, folder, copy_function=link_or_copy)

    def count_calls(self, part, start, kind):
        folder = self.start_folder(part, start)
        result = self.run(part, folder, kind)
        if result[0] != 0 or self.faults_of_words(part, kind, "count", result, contents(files_below(folder))):
            sys.exit(f"faults: the library disturbs {part.name} {start}, status {result[0]}\n{result[2].decode()}")
        return result[3]

    def try_call(self, part, start, kind, mode, at):
        """One run with a fault: what is wrong with it, as text; empty when nothing is."""
        folder = self.start_folder(part, start)
        result = self.run(part, folder, kind, mode, at)
        after = contents(files_below(folder, self.marks[part.name, start]))
        faults = self.faults_of_files(part, start, mode, after) + self.faults_of_words(part, kind, mode, result, after)
        faults += self.faults_of_second_run(part, folder, after)
        if result[3] < at:
            faults.append("the run has no such call")
        if not faults:
            return ""
        said = ["  | " + line for line in result[2].decode(errors="replace").splitlines()[-4:]]
        head = f'--walk "{part.name} {start} {kind} {mode}" --at {at}: {result[4]}, status {result[0]}'
        return "\n".join([head, *("    " + fault for fault in faults), *said])


driver = None


def start_worker(build):
    global driver
    driver = Driver(build)
    driver.load()


def try_calls(part, start, kind, mode, calls):
    return [driver.try_call(PARTS[part], start, kind, mode, at) for at in calls]


def chosen_calls(count, wanted):
    if wanted == 0 or wanted >= count:
        return list(range(1, count + 1))
    return sorted({1 + i * (count - 1) // (wanted - 1) for i in range(wanted)})


def walk(pool, jobs, words, arguments):
    """Tries the calls of one walk; the number of those that had faults."""
    part, start, kind, _ = words
    count = driver.count_calls(PARTS[part], start, kind)
    calls = [arguments.at] if arguments.at else chosen_calls(count, arguments.points)
    pieces = [calls[i::jobs * 4] for i in range(jobs * 4)]
    tried = pool.map(try_calls, *zip(*((*words, piece) for piece in pieces)))
    faulty = [text for texts in tried for text in texts if text]
    for text in faulty[:20]:
        print(text)
    print(f"{' '.join(words):32}{len(calls):6} of {count} calls, {len(faulty)} with faults", flush=True)
    return len(faulty)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", required=True, type=Path, help="build folder")
    parser.add_argument("--points", type=int, default=0, help="calls of each walk that are tried; 0 for all")
    parser.add_argument("--walk", default="", help="words that the walks have: part, start, kind, mode")
    parser.add_argument("--at", type=int, default=0, help="the one call to try")
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()
    build = arguments.build.resolve()
    if b"__asan_init" in (build / "bin/rimweave").read_bytes():
        print("faults: skipped: a sanitizer has a malloc of its own, which can't be made to fail")
        return 77
    Driver(build).prepare()
    start_worker(build)
    faulty = 0
    with concurrent.futures.ProcessPoolExecutor(arguments.jobs, initializer=start_worker, initargs=(build,)) as pool:
        for part, start, (kind, mode) in itertools.product(PARTS, STARTS, WALKS):
            words = part, start, kind, mode
            if set(arguments.walk.split()) <= set(words):
                faulty += walk(pool, arguments.jobs, words, arguments)
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
