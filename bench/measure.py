#!/usr/bin/python3
"""What answers cost, against what their own strings cost: one line per row.

    bench/measure.py PROGRAM [FILTER]    after the release build of contextdata_bench; FILTER is a regular expression

Times are medians of interleaved repetitions by processor time, and change with the machine. Instructions and allocations do
not: these decide, and a row that misses its goal in bench/goals.txt makes the exit status 1. Each row is measured in
processes of its own, because what one leaves on the heap makes the next one dearer.
"""
import json
import math
import re
import subprocess
import sys
import tempfile
from pathlib import Path

GOALS = Path(__file__).with_name("goals.txt")
# Under callgrind a session of this many members takes a minute to make, and says nothing that a smaller one does not.
LARGEST_COUNTED = 4096
HEADINGS = ("work", "members", "depth", "time", "instructions", "per entry", "allocations", "before", "goal", "")


def goals():
    table = {}
    for line in GOALS.read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        row, *figures = line.split()
        table[row] = [None if figure == "-" else float(figure) for figure in figures]
    return table


def run(command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def times(program, row):
    """The median seconds of processor time of the answer and of the bound."""
    report = json.loads(run([program, f"--benchmark_filter=^{row}/(answer|bound)$", "--benchmark_format=json",
                             "--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=9",
                             "--benchmark_min_time=0.02", "--benchmark_report_aggregates_only=true"]))
    medians = {entry["run_name"].rsplit("/", 1)[1]: entry["cpu_time"] * 1e-9
               for entry in report["benchmarks"] if entry["aggregate_name"] == "median"}
    return medians["answer"], medians["bound"]


def counts(program, row, with_instructions):
    """Entries, allocations of answer and bound, and the instructions of both."""
    with tempfile.TemporaryDirectory() as folder:
        under = ["valgrind", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={folder}/out"]
        told = run((under if with_instructions else []) + [program, "--count", row])
        entries, answer, bound = map(int, re.search(r"entries (\d+) allocations (\d+) (\d+)", told).groups())
        instructions = {}
        for dump in Path(folder).iterdir():
            for part in re.split(r"(?m)^(?=part: )", dump.read_text(encoding="utf-8")):
                trigger = re.search(r"Trigger: Client Request: (\w+)", part)
                total = re.search(r"(?m)^(?:summary|totals): (\d+)", part)
                if trigger and total:
                    instructions[trigger.group(1)] = int(total.group(1))
    return entries, answer, bound, instructions


def measured(program, row, goal):
    """The cells of a row's line, the seconds of its answer, and whether a goal is missed."""
    work, members, depth = row.split("/")
    before, most, most_allocations = goal
    answer_time, bound_time = times(program, row)
    entries, answer, bound, instructions = counts(program, row, int(members) <= LARGEST_COUNTED)
    ratio = instructions["answer"] / instructions["bound"] if instructions else None
    allocations = (answer - bound) / entries
    missed = (most is not None and ratio is not None and ratio > most) or (
        most_allocations is not None and allocations > most_allocations)
    cells = (work, members, depth, f"{answer_time / bound_time:.2f}", f"{ratio:.2f}" if ratio else "",
             f"{instructions['answer'] / entries:.0f}" if instructions else "", f"{allocations:+.2f}",
             f"{before:.2f}" if before else "", f"{most:.2f}" if most else "", "missed" if missed else "")
    return cells, answer_time, missed


def growth(seconds):
    """By which power of the members the time grows, for each work and depth of which there are several sizes."""
    sizes = {}
    for row, time in seconds.items():
        work, members, depth = row.split("/")
        if int(members) >= 256:
            sizes.setdefault((work, depth), []).append((int(members), time))
    for (work, depth), points in sorted(sizes.items()):
        (few, first), (many, last) = min(points), max(points)
        if many >= 16 * few:
            yield work, depth, few, many, math.log(last / first) / math.log(many / few)


def main():
    program, pattern = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else ""
    known = goals()
    rows = [row for row in run([program, "--list"]).splitlines() if re.search(pattern, row)]
    if not rows:
        sys.exit(f"no row matches {pattern!r}")
    widths = (30, 7, 5, 6, 12, 9, 11, 6, 5, 6)
    line = " ".join(["{:<%d}" % widths[0]] + ["{:>%d}" % width for width in widths[1:]])
    print(line.format(*HEADINGS), flush=True)
    seconds, failed = {}, False
    for row in rows:
        cells, seconds[row], missed = measured(program, row, known.get(row, (None, None, None)))
        failed |= missed
        print(line.format(*cells), flush=True)
    for work, depth, few, many, exponent in growth(seconds):
        print(f"{work}, depth {depth}: time grows with the members to the power of {exponent:.2f} ({few} to {many})")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
