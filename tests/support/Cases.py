"""Short text cases of completion, which run through the command and through the server.

A case is a block of lines; blocks are parted by empty lines, "#" begins a comment line.

    pump.Fl‸oo               the text, "‸" is the cursor
    : class lab.Controller   a place or an option: class NAME, in FUNCTION, code POLICY, hidden, limit N
    -> limited               how it ends; "complete" when there is no such line
    Flow  property of lab.Pump  1x1 double
    ...                      there are more, which do not matter

What is expected is what the command prints for people, two or more blanks between its columns.
"""
import re
from collections import namedtuple
from pathlib import Path

Case = namedtuple("Case", "place text cursor settings status rows more")
CURSOR = "‸"


def row_of(line):
    return tuple(re.split(r"\s{2,}", line.strip()))


def options_of(case):
    """The settings as options of the command; a name is an argument of its own."""
    return [part for key, *value in case.settings if key != "name" for part in (f"--{key}", *value)]


def parse(block, place):
    text = block[0].replace("\\n", "\n")
    if text.count(CURSOR) != 1:
        raise ValueError(f"{place}: the text needs one cursor")
    settings, status, rows = [], "complete", []
    for line in block[1:]:
        if line.startswith(": "):
            settings.append(line[2:].split(" ", 1))
        elif line.startswith("-> "):
            status = line[3:]
        else:
            rows.append(row_of(line))
    more = bool(rows) and rows[-1] == ("...",)
    return Case(place, text.replace(CURSOR, ""), text.index(CURSOR), settings, status, rows[:-1] if more else rows, more)


def read(file):
    """Every case of a file."""
    cases, block, start = [], [], 0
    for number, line in enumerate([*Path(file).read_text(encoding="utf-8").splitlines(), ""], 1):
        if line.startswith("#"):
            continue
        if line:
            start = start if block else number
            block.append(line)
        elif block:
            cases.append(parse(block, f"{Path(file).name}:{start}"))
            block = []
    return cases
