#!/usr/bin/env python3
"""Installs the build into a prefix, moves the prefix, and works there as a user does: a run on the installed example, the
manual, the completions."""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True
import links  # noqa: E402

PROGRAMS = ["rimweave", "rimkit", "kalmverin", "kalmedit", "kalmlist", "kalmflat"]
faults = []


def expect(good, text):
    if not good:
        faults.append(text)


def output_of(words, **more):
    return subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **more)


def check_run(prefix, work):
    """The cells of the prefix are in use, not those of the sources: one is marked."""
    marked = prefix / "share/rimweave/cells/verilog/RIM_BC_1_IN.v"
    marked.write_text("// of the moved prefix\n" + marked.read_text())
    work.mkdir()
    example = prefix / "share/doc/rimweave/examples/uart_chip"
    for name in ["chip.v", "cells.v", "pads.liberty"]:
        shutil.copy(example / name, work)
    done = output_of([prefix / "bin/rimkit", "run", "--liberty", "pads.liberty", "--cells", "cells.v",
                      "--idcode", "1,0x5c3,0x7e", "chip"], cwd=work, env={"PATH": "/usr/bin:/bin"})
    expect(done.returncode == 0, "rimkit run:\n" + done.stdout)
    for name in ["chip_jtag.v", "chip_TAP.v", "chip.bso"]:
        expect((work / name).exists(), name + " is missing")
    cells = work / "chip_cells.v"
    expect(cells.exists() and "// of the moved prefix" in cells.read_text(), "the cells are not those of the prefix")
    shutil.copytree(example, work / "own", dirs_exist_ok=True)
    done = output_of([prefix / "bin/rimkit", "run", "--cells", "cells.v", "chip"], cwd=work / "own",
                     env={"PATH": "/usr/bin:/bin"})
    expect(done.returncode == 0, "rimkit run with the example's own descriptions:\n" + done.stdout)


def check_manual(prefix, sources):
    """A page of each program; each page without a warning, and each page that another one names is there."""
    pages = {path.name for path in (sources / "docs/man").iterdir()}
    packed = {path.name[:-3] for path in (prefix / "share/man").glob("man?/*.gz")}
    expect(pages == packed, f"pages: {sorted(pages ^ packed)}")
    for program in PROGRAMS:
        expect(program + ".1" in pages, f"no page of {program}")
    for name in pages:
        for line in (sources / "docs/man" / name).read_text().splitlines():
            words = line.split()
            if words[:1] == [".Xr"] and words[1].startswith(("rim", "kalm")):
                expect(f"{words[1]}.{words[2]}" in pages, f"{name}: {line}")
    # What the help texts list, the pages tell of.
    for page, words, pattern in [("rimkit.1", ["rimkit", "--help"], r"^  ([a-z]+)  "),
                                 ("rimweave.1", ["rimweave", "-help"], r"^  -([a-z_]+)"),
                                 ("kalmverin.1", ["kalmverin", "-help"], r"^  -([a-zA-Z_]+)")]:
        text = (sources / "docs/man" / page).read_text()
        listed = re.findall(pattern, output_of([prefix / "bin" / words[0]] + words[1:]).stdout, re.M)
        missing = [word for word in listed if not re.search(rf"(Ic |Fl |[^\w]-){word}\b", text)]
        expect(listed and not missing, f"{page} lacks {missing}")
    if shutil.which("mandoc"):
        # Without -Wstyle: there a page of another system is missing in every mandoc.
        done = output_of(["mandoc", "-Tlint", "-Wwarning"] + [sources / "docs/man" / name for name in sorted(pages)])
        expect(done.returncode == 0, done.stdout)


def check_books(prefix, run):
    """Links lead somewhere; the HTML of the manual, and the page of the picture, are clean to `tidy` where it is installed."""
    faults.extend(links.faults_in(prefix / "share/doc"))
    pages = [*sorted((prefix / "share/doc/rimweave/html").glob("*.html")), run / "chip.html"]
    for page in pages if shutil.which("tidy") else []:
        done = output_of(["tidy", "-q", "-e", page])
        expect(done.returncode == 0, f"{page.name}: {done.stdout[:1000]}")


def completed(prefix, *words):
    """What bash offers for the last of the words."""
    script = f"""
        source {prefix}/share/bash-completion/completions/{words[0]}
        COMP_WORDS=({prefix}/bin/{words[0]} {' '.join(repr(word) for word in words[1:])}) COMP_CWORD={len(words) - 1}
        _rimweave "${{COMP_WORDS[0]}}" "${{COMP_WORDS[-1]}}" "${{COMP_WORDS[-2]}}"
        printf '%s\\n' "${{COMPREPLY[@]}}" """
    return set(output_of(["bash", "-c", script], cwd=prefix / "share/doc/rimweave/examples/uart_chip").stdout.split())


def check_completion(prefix):
    for words, offered, not_offered in [
            (["rimkit", ""], {"start", "doctor", "run", "--help"}, {"Usage:"}),
            (["rimkit", "bsdl", "--"], {"--basic", "--frequency", "--json"}, {"--liberty"}),
            (["rimkit", "start", "--cells", "ce"], {"cells.v"}, set()),
            (["rimkit", "run", "c"], {"chip", "cells"}, {"chip.v"}),
            (["rimkit", "start", "--include", ""], {"rtl"}, {"chip.v"}),
            (["rimkit", "start", "--idcode", ""], set(), {"chip"}),
            (["rimweave", "-"], {"-add_tap", "-add_tap_only", "-no_expand", "-opath"}, {"-add_tap_only:"}),
            (["rimweave", "ch"], {"chip"}, {"chip.bsc"}),
            (["rimweave", "-opath", ""], {"synth"}, {"chip"}),
            (["kalmverin", "-"], {"-lib", "-top", "-as_input"}, {"-nologo"}),
            (["kalmedit", "-"], {"-nologo", "-b"}, {"-lib"}),
            (["kalmlist", "-"], {"-verilog", "-vhdl", "-hierarchy", "-o", "-add_path"}, set()),
            (["kalmflat", "-opath", ""], {"rtl"}, {"chip.v"})]:
        found = completed(prefix, *words)
        expect(offered <= found and not not_offered & found, f"completion of {words}: {sorted(found)}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    parser.add_argument("--work", type=pathlib.Path, required=True)
    paths = parser.parse_args()
    shutil.rmtree(paths.work, ignore_errors=True)
    done = output_of(["cmake", "--install", paths.build, "--prefix", paths.work / "first"])
    expect(done.returncode == 0, done.stdout)
    prefix = paths.work / "moved"
    os.rename(paths.work / "first", prefix)
    check_run(prefix, paths.work / "run")
    check_manual(prefix, paths.sources)
    check_books(prefix, paths.work / "run")
    check_completion(prefix)
    print("\n".join(faults) or "installed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
