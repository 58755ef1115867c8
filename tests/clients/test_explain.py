"""The subcommand `explain`: the shared cases, JSON, errors."""
import json
import signal
import subprocess
import time
import unittest

import Cases
from Command import COMMAND, HANG, SOURCE, CommandTest, environment, pauses, run

WORLD = SOURCE / "tests/cases/world.json"
EXAMPLE = SOURCE / "examples/lab.json"


class ExplainTest(CommandTest):
    def explain(self, *arguments, snapshot=WORLD):
        return run("explain", *arguments, "--snapshot", str(snapshot))

    def test_cases(self):
        cases = Cases.read(SOURCE / "tests/cases/explanation.txt")
        self.assertGreater(len(cases), 50)
        for case in cases:
            with self.subTest(case.place, text=case.text):
                name = next(value for key, *value in case.settings if key == "name")[0]
                done = self.explain(case.text, name, "--cursor", str(case.cursor), *Cases.options_of(case))
                first, *rows = done.stdout.decode().splitlines()
                self.assertEqual([Cases.row_of(row) for row in rows], case.rows)
                self.assertEqual(first, f"{name} is offered" if case.rows[0][0] == "offered" else f"{name} is not offered")
                self.assertEqual((done.returncode, done.stderr == b""), (0, case.status == "complete"))

    def test_json(self):
        done = self.explain("pump.Mo", "defaults", "--json", snapshot=EXAMPLE)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(json.loads(done.stdout), {
            "status": "complete", "neededPolicy": "stored-values", "name": "defaults", "isOffered": False,
            "reasons": [{"rule": "no-match", "detail": "'Mo' is typed, which does not fit"},
                        {"rule": "position", "detail": "static: offered after lab.Pump and a dot"},
                        {"rule": "access-level", "detail": "private in lab.Pump"}]})

    def test_bad_snapshots(self):
        self.check_bad_snapshots("explain", "pump.", "Flow")

    def test_an_interrupt(self):
        # Listing members until the limit of steps takes a thousand times what loading takes: one of the pauses is right.
        session = self.snapshot({"format": 1, "workspace": [{"name": "c", "value": {"object": "C"}}],
                                 "classes": [{"name": "C", "properties": [{"name": "p", "getter": "while true, properties(obj); end"},
                                                                          *(f"q{number}" for number in range(50))]}]})
        command = [COMMAND, "explain", "c.p.", "x", "--code", "allowed", "--snapshot", session]
        for pause in pauses():
            with subprocess.Popen(command, stderr=subprocess.PIPE, env=environment()) as process:
                self.addCleanup(process.kill)
                time.sleep(pause)
                process.send_signal(signal.SIGINT)
                errors = process.communicate(timeout=HANG)[1]
            # One that comes before the code runs ends the command without a word, or is forgotten when the request begins.
            if errors == b"contextdata: interrupted [explain.interrupted]\n":
                self.assertEqual(process.returncode, 130)
                return
        self.fail("no explanation was interrupted")

    def test_errors(self):
        for arguments, code, status in [((b"pump.\xff", "a"), "explain.not-utf8", 1),
                                        (("pump.", b"\xff"), "explain.not-utf8", 1),
                                        (("pump.",), "command.usage", 2)]:
            with self.subTest(arguments=arguments):
                done = self.explain(*arguments)
                self.assertEqual((done.returncode, done.stdout), (status, b""))
                self.assertIn(f"[{code}]".encode(), done.stderr)


if __name__ == "__main__":
    unittest.main()
