#!/usr/bin/env python3
"""Each error and warning in the sources stands in the index of messages, or in the list of those that nobody meets.

A message is a text that is given to a function that ends the run, notes a fault or warns, that begins with ERROR, FATAL
or WARNING, or that stands in the table of the .dft reader. What is put in at run time is `...` in the index. An entry
may leave out the lines behind the first one."""
import argparse
import pathlib
import re
import sys

FOLDERS = "support sdb description dftlang planning editing rtl guide run siblings kit".split()
CALL = re.compile(r"\b(\w*(?:fail|fault|fatal|FATAL|TOOL_warn|kit_warn|refuse)\w*|sdb_log_error)\("
                  r"|= \{(?:ERROR|FATAL|WARNING)\w*, ")
LITERAL = re.compile(r'R"\((.*?)\)"|"((?:[^"\\\n]|\\.)*)"', re.S)
# Texts that are errors wherever they stand: by their first word, by a place in a file, by the hint at their end.
ERROR_TEXT = re.compile(r"""\s*(?:(?:SDB )?(?:ERROR|FATAL|Error|WARNING|Warning)\b|'%s' line %d: |"%s", line %d: )"""
                        r"|.*Please use -\? for help")
ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\", "'": "'"}


def unescaped(text):
    return re.sub(r"\\(.)", lambda found: ESCAPES.get(found[1], ""), text)


def shown(text):
    """As the index has it: without what stands before the words, and `...` for what is put in."""
    text = re.sub(r"%(%|[-+0-9.*]*(?:ll|l|z|j|t)?[a-z])", lambda found: "%" if found[1] == "%" else "...", text)
    text = re.sub(r"<[12FL]>", "...", text)
    lines = [" ".join(line.split()) for line in text.split("\n")]
    lines = [line for line in lines if line]
    if lines:
        lines[0] = re.sub(r"^(?:SDB )?(?:ERROR|FATAL|Error|WARNING|Warning) ?: *", "", lines[0])
        lines[0] = re.sub(r"^\(\.\.\.\) ", "", lines[0])
        lines[0] = re.sub(r"""^('\.\.\.' line \.\.\.|"\.\.\.", line \.\.\.|'\.\.\.', line-\.\.\.)[:,] """, "", lines[0])
        lines[0] = re.sub(r"^\((?:FA-[\d-]+)\) ", "", lines[0])
        lines[0] = re.sub(r" ?Please use -\? for help\.$", "", lines[0])
    return [line for line in lines if line]


def closing(text, at):
    """The end of the call or row whose arguments begin there."""
    depth = 1
    while at < len(text) and depth > 0:
        found = LITERAL.match(text, at)
        if found:
            at = found.end()
            continue
        if text.startswith("//", at):
            at = text.find("\n", at)
        depth += text[at] in "({"
        depth -= text[at] in ")}"
        at += 1
    return at


def joined(arguments):
    """The texts of the arguments. Pieces with nothing between them, or with values added, are one."""
    texts, end = [], None
    for found in LITERAL.finditer(re.sub(r"(?m)//[^\"\n]*$", lambda rest: " " * len(rest[0]), arguments)):
        piece = found[1] if found[1] is not None else unescaped(found[2])
        between = "," if end is None else arguments[end:found.start()]
        while re.search(r"\([^()]*\)", between):
            between = re.sub(r"\([^()]*\)", "", between)
        if not between.strip():
            texts[-1] += piece
        elif re.fullmatch(r"\s*\+[^,?:;()]*\+\s*", between.replace("::", "")):
            texts[-1] += "%s" + piece
        else:
            texts.append(piece)
        end = found.end()
    return texts


def files(sources):
    """Name and text of each source file, without comments that have a line of their own."""
    for folder in FOLDERS:
        for path in sorted((sources / folder).iterdir()):
            if path.suffix in (".cc", ".hh", ".ll", ".yy"):
                text = re.sub(r"(?m)^[ \t]*//.*$", lambda rest: " " * len(rest[0]), path.read_text())
                yield str(path.relative_to(sources)), text


def messages_of(text):
    """Lines of each message of a file, and where it stands in the file."""
    taken = -1
    for found in CALL.finditer(text):
        if found.start() < taken:
            continue
        taken = closing(text, found.end())
        for one in joined(text[found.end():taken]):
            lines = shown(one)
            if lines and re.search(r"[a-z]{2}.* ", lines[0]):
                yield lines, found.start()
    for found in LITERAL.finditer(text):
        if found[2] and ERROR_TEXT.match(unescaped(found[2])) and " " in found[2]:
            # The pieces that follow the first one belong to it.
            rest = re.match(r'(?:\s*"(?:[^"\\\n]|\\.)*")*', text[found.end():])[0]
            lines = shown(joined(found[0] + rest)[0])
            if lines:
                yield lines, found.start()


def messages(sources):
    """Lines, file and line of each message."""
    for name, text in files(sources):
        for lines, at in messages_of(text):
            yield lines, f"{name}:{text.count(chr(10), 0, at) + 1}"


def all_literals(sources):
    for _, text in files(sources):
        yield from (unescaped(found[2]) for found in LITERAL.finditer(text) if found[2])


def index(page):
    """The heads of the entries."""
    heads = re.findall(r'^\.It "((?:[^"]|"")*)"$', page.read_text(), re.M)
    return {head.replace('""', '"').replace("\\e", "\\").replace("\\&", "") for head in heads}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    parser.add_argument("--list", action="store_true", help="print all messages with their places")
    options = parser.parse_args()
    beside = pathlib.Path(__file__).parent / "unreachable_messages.txt"
    known = index(options.sources / "docs/man/rimweave-messages.7")
    known |= {line.split("\t")[0] for line in beside.read_text().splitlines()}
    used, missing = set(), {}
    for lines, place in messages(options.sources):
        if options.list:
            print(place, " ".join(lines), sep="\t")
        found = {" ".join(lines[:count]) for count in range(1, len(lines) + 1)} & known
        used |= found
        if not found:
            missing[" ".join(lines)] = place
    if options.list:
        return 0
    for text, place in missing.items():
        print(f"{place}: not in the index of messages: {text}")
    # An entry may be a text that another message ends in.
    literals = {" ".join(shown(one)) for one in all_literals(options.sources)}
    stale = [text for text in sorted(known - used) if text not in literals]
    for text in stale:
        print(f"in the index, and in no source: {text}")
    return 1 if missing or stale else 0


if __name__ == "__main__":
    sys.exit(main())
