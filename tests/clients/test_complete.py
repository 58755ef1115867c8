"""The subcommand `complete`: the shared cases, JSON, places and options, errors."""
import json
import subprocess
import unittest

import Cases
from Command import COMMAND, HANG, SOURCE, CommandTest, cpu_seconds, run

WORLD = SOURCE / "tests/cases/world.json"
KINDS = {"value", "argument-name", "variable", "property", "field", "constant", "enumeration-member", "method",
         "static-method", "function", "code-file", "class-folder", "class", "namespace", "package",
         "built-in-function", "keyword"}


class CompleteTest(CommandTest):
    def complete(self, text, *options, snapshot=WORLD):
        return run("complete", text, "--snapshot", str(snapshot), *options)

    def json_of(self, done):
        self.assertEqual((done.stderr, done.stdout.count(b"\n")), (b"", 1))
        return json.loads(done.stdout)

    def answer(self, text, *options, **named):
        done = self.complete(text, *options, "--json", **named)
        self.assertEqual(done.returncode, 0, done)
        return self.json_of(done)

    def labels(self, *arguments, **named):
        return [candidate["label"] for candidate in self.answer(*arguments, **named)["candidates"]]

    def test_cases(self):
        cases = Cases.read(SOURCE / "tests/cases/completion.txt")
        self.assertGreater(len(cases), 90)
        for case in cases:
            with self.subTest(case.place, text=case.text):
                done = self.complete(case.text, "--cursor", str(case.cursor), *Cases.options_of(case))
                rows = [Cases.row_of(line) for line in done.stdout.decode().splitlines()]
                self.assertEqual(rows, case.rows)
                notice = done.stderr.decode().removeprefix("contextdata: ").split(":")[0]
                self.assertEqual((done.returncode, notice.startswith("nothing completes")),
                                 (0, not rows and case.status == "complete"))
                if case.status != "complete":
                    self.assertEqual(notice, case.status)

    def test_json(self):
        answer = self.answer("y = pump.F")
        self.assertEqual([answer[key] for key in ("status", "begin", "end", "total", "neededPolicy")],
                         ["complete", 9, 10, 1, "stored-values"])
        self.assertEqual(answer["candidates"], [
            {"label": "Flow", "insertion": "Flow", "kind": "property", "match": "prefix", "order": 2,
             "declaringClass": "lab.Pump", "access": "public", "type": "double", "size": "1x1"}])
        unit = self.answer("pump.Unit = it")["candidates"]
        self.assertEqual(unit, [])
        self.assertEqual([candidate["insertion"] for candidate in self.answer("pump.Unit = ")["candidates"][:3]],
                         ["'l/min'", "'m3/h'", "'it''s'"])
        self.assertEqual(self.answer("lab.control.tune(pump, 'slow', L")["candidates"][0]["insertion"], "Label=")
        seen = {candidate["kind"] for text in ("", "pump.", "lab.Pump.", "lab.Mode.", "settings.", "pump.Mode = ",
                                               "lab.control.tune(") for candidate in self.answer(text)["candidates"]}
        self.assertEqual(seen, KINDS)

    def test_facts_of_members(self):
        def facts(text, *options):
            return {candidate["label"]: {key for key in ("static", "constant", "hidden", "readRunsCode")
                                         if key in candidate} | {candidate["access"]}
                    for candidate in self.answer(text, *options)["candidates"] if "access" in candidate}
        found = facts("pump.", "--class", "lab.Pump", "--hidden")
        self.assertEqual({name: found[name] for name in ("Flow", "Max", "Pressure", "Notes", "Valve", "Line")},
                         {"Flow": {"public"}, "Max": {"public", "constant"}, "Pressure": {"public", "readRunsCode"},
                          "Notes": {"public", "hidden"}, "Valve": {"private"}, "Line": {"protected"}})
        self.assertEqual(facts("pump.", "--in", "lab.Pump.start", "--hidden"), found, "code of a method is code of its class")
        self.assertNotIn("Valve", facts("pump.", "--in", "lab.Pump.start", "--class", "lab.Device", "--hidden"))
        self.assertEqual(facts("lab.Pump."), {"Max": {"public", "constant"}, "Best": {"public", "constant"},
                                              "create": {"public", "static", "readRunsCode"}})

    def test_what_was_needed(self):
        for text, policy, needed in (("pump.Gauge.", "never", "stored-values"), ("pump.Gauge.", "stored-values", "stored-values"),
                                     ("pump.Pressure.", "stored-values", "allowed"), ("socket.", "never", "allowed"),
                                     ("pump.Pressure.", "allowed", "allowed"), ("pump.", "never", "never")):
            with self.subTest(text=text, policy=policy):
                answer = self.answer(text, "--code", policy)
                self.assertEqual(answer["neededPolicy"], needed)
                self.assertEqual("reason" in answer, needed != policy)

    def test_what_code_prints_is_kept_apart(self):
        answer = self.answer("pump.Pressure.", "--code", "allowed")
        self.assertEqual((answer["printed"], len(answer["candidates"])), ("read\n", 3))
        self.assertNotIn(b"read\n", self.complete("pump.Pressure.", "--code", "allowed").stdout)

    def test_a_deadline(self):
        session = {"format": 1, "classes": [{"name": "C", "properties": [{"name": "p", "getter": "while true, properties(obj); end"}]}],
                   "workspace": [{"name": "c", "value": {"object": "C"}}]}
        answer = self.answer("c.p.", "--code", "allowed", "--timeout", "50", snapshot=self.snapshot(session))
        self.assertEqual((answer["status"], answer["candidates"]), ("timed-out", []))

    def test_cursors(self):
        for cursor, labels in (("0", None), ("5", 13), ("6", 1), ("999999", 1)):
            found = self.labels("pump.F", "--cursor", cursor)
            self.assertEqual(len(found), labels or 82, cursor)
        # The cursor counts characters, the answer UTF-16 code units.
        answer = self.answer("'\U0001F600' + pump.F", "--cursor", "12")
        self.assertEqual((answer["begin"], answer["end"]), (12, 13))

    def test_names_beyond_ascii_and_control_characters(self):
        names = ["ab", "a\u001b[2J\u007f"]
        session = self.snapshot({"format": 1, "classes": [{"name": "C", "properties": names}],
                                 "workspace": [{"name": "c", "value": {"object": "C"}}]})
        self.assertEqual(self.labels("c.", snapshot=session), names)
        self.assertNotIn(b"\x1b", self.complete("c.", snapshot=session).stdout)

    def test_huge_and_odd_lines(self):
        usual = cpu_seconds("complete", "pump.", "--snapshot", str(WORLD))
        for text in ("x" * 100000 + ".", "(" * 50000, "pump." * 20000, "'" * 9999, "pump(" * 5000 + "pu", "." * 100000, "a." * 20000, "\u0301.", "[" * 1000 + "pump.F"):
            with self.subTest(text=text[:10]):
                self.assertLess(cpu_seconds("complete", text, "--code", "never", "--snapshot", str(WORLD)), 20 * usual)

    def test_text_that_is_no_utf8(self):
        done = subprocess.run([COMMAND, "complete", b"pump.\xff", "--snapshot", str(WORLD)], capture_output=True,
                              timeout=HANG, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(b"[complete.not-utf8]\n"))

    def test_bad_snapshots(self):
        self.check_bad_snapshots("complete", "pump.")

    def test_usage(self):
        self.check_usage(["complete"], ["complete", "pump."], ["complete", "--snapshot", self.session],
                         ["complete", "a.", "b.", "--snapshot", self.session],
                         ["complete", "a.", "--snapshot", self.session, "--code", "sometimes"],
                         ["complete", "a.", "--snapshot", self.session, "--cursor", "-1"],
                         ["complete", "a.", "--snapshot", self.session, "--timeout", str(2 ** 63 - 1)])


if __name__ == "__main__":
    unittest.main()
