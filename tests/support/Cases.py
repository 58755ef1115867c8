"""Blocks of lines in files, and the short text cases of the front end that they hold: tests/cases/*.txt. The one reader of
them, also for the tests in C++, which get the cases of a file as JSON: `Cases.py completion.txt`.

A case is a block of lines; blocks are parted by empty lines, "#" begins a comment line.

    pump.Fl‸oo               the text, "‸" is the cursor, "\\n" a line break
    : class lab.Controller   a setting: class NAME and in FUNCTION are the scope; code POLICY, hidden and limit N are
                             options; name NAME is what an explanation is asked about
    -> limited               how it ends; "complete" when there is no such line
    Flow  property of lab.Pump  1x1 double

What is expected is what the command prints for people, two or more blanks between its columns.
"""
import json
import re
import sys
from collections import namedtuple
from pathlib import Path

Case = namedtuple("Case", "place text cursor settings status rows")
CURSOR = "‸"
SETTINGS = {"class", "in", "code", "hidden", "limit", "name"}


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
            if settings[-1][0] not in SETTINGS:
                raise ValueError(f"{place}: there is no setting {settings[-1][0]}")
        elif line.startswith("-> "):
            status = line[3:]
        else:
            rows.append(row_of(line))
    return Case(place, text.replace(CURSOR, ""), text.index(CURSOR), settings, status, rows)


def blocks(file):
    """(the place, [line]) of each block of a file."""
    block, start = [], 0
    for number, line in enumerate([*Path(file).read_text(encoding="utf-8").splitlines(), ""], 1):
        if line.startswith("#"):
            continue
        if line.strip():
            start = start if block else number
            block.append(line)
        elif block:
            yield f"{Path(file).name}:{start}", block
            block = []


def read(file):
    """Every case of a file."""
    return [parse(block, place) for place, block in blocks(file)]


def main():
    folder = Path(__file__).parent.parent / "cases"
    json.dump([{"place": case.place, "before": case.text[:case.cursor], "after": case.text[case.cursor:],
                "settings": {name: "".join(value) for name, *value in case.settings}, "status": case.status,
                "rows": ["  ".join(row) for row in case.rows]} for case in read(folder / sys.argv[1])], sys.stdout)


if __name__ == "__main__":
    main()
