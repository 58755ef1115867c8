#!/usr/bin/python3
"""Runs tests and fails when one of them did not run.

run-counted.py program <GoogleTest program> <source>...   every TEST of the sources must be in the program's report
run-counted.py script <unittest file>                     the file must run at least one test
"""
import json
import re
import subprocess
import sys
import tempfile
import unittest
from importlib.util import module_from_spec, spec_from_file_location
from pathlib import Path

TEST = re.compile(r"^(?:TYPED_)?TEST(?:_[FP])?\(", re.MULTILINE)


def tests_in(source):
    """(file name, line) of each test that a source holds. A program's sources are of one folder; where that is, the
    program says as the compiler was told, and a compiler cache may have changed that."""
    text = Path(source).read_text(encoding="utf-8")
    return {(Path(source).name, text.count("\n", 0, found.start()) + 1) for found in TEST.finditer(text)}


def run_program(program, sources):
    with tempfile.NamedTemporaryFile(suffix=".json") as report:
        status = subprocess.run([program, f"--gtest_output=json:{report.name}"], check=False).returncode
        if status != 0:
            sys.exit(status if status > 0 else f"run-counted: ended by signal {-status}")
        suites = json.loads(Path(report.name).read_text(encoding="utf-8"))["testsuites"]
    ran = [test for suite in suites for test in suite["testsuite"] if test["result"] == "COMPLETED"]
    places = {(Path(test["file"]).name, test["line"]) for test in ran}
    missing = sorted(set().union(*map(tests_in, sources)) - places)
    for file, line in missing:
        print(f"{file}:{line}: this test did not run", file=sys.stderr)
    return len(ran), bool(missing)


def run_script(script):
    sys.path.insert(0, str(Path(script).parent))
    spec = spec_from_file_location(Path(script).stem, script)
    module = module_from_spec(spec)
    spec.loader.exec_module(module)
    suite = unittest.defaultTestLoader.loadTestsFromModule(module)
    result = unittest.TextTestRunner(verbosity=1).run(suite)
    return result.testsRun - len(result.skipped), not result.wasSuccessful()


def main():
    kind, target, *sources = sys.argv[1:]
    ran, failed = run_program(target, sources) if kind == "program" else run_script(target)
    print(f"run-counted: {ran} tests ran")
    if ran == 0:
        sys.exit("run-counted: no test ran")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
