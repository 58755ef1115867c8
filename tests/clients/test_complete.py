"""The subcommand `complete`: both forms, prefixes, the table and JSON, errors."""
import json
import os
import pty
import signal
import subprocess
import time
import unittest

from Command import COMMAND, SOURCE, CommandTest, environment, run

# (text, [(name, kind)])
COMPLETIONS = [
    ("pump.", [("Flow", "property"), ("MaxFlow", "property"), ("Serial", "property"), ("start", "method"),
               ("stop", "method"), ("reset", "method")]),
    ("pump.s", [("start", "method"), ("stop", "method")]),
    ("pump.S", [("Serial", "property")]),
    ("pump.start", [("start", "method")]),
    ("pump.plus", []),
    ("pump.gr\u00fcn", []),
    ("empty.", []),
    ("lab.Pump.", [("MaxFlow", "constant"), ("create", "static method"), ("list", "static method")]),
    ("lab.OldPump.l", [("list", "static method")]),
    ("lab.Mode.", [("Idle", "enumeration member"), ("Running", "enumeration member")]),
    ("lab.Mode.R", [("Running", "enumeration member")]),
]

# (text, code)
ERRORS = [
    ("pump", "complete.no-dot"),
    ("", "complete.no-dot"),
    (".", "complete.unknown-name"),
    ("gone.", "complete.unknown-name"),
    ("lab.", "complete.unknown-name"),
    ("lab.Gone.x", "complete.unknown-name"),
    ("Pump.", "complete.unknown-name"),
    ("pump.Flow.", "complete.unknown-name"),
    (".pump.", "complete.unknown-name"),
    ("gr\u00fcn.", "complete.unknown-name"),
    ("x" * 100000 + ".", "complete.unknown-name"),
    ("n.", "complete.no-object"),
    ("broken.", "complete.no-object"),
    ("nameless.", "complete.failed"),
]


class CompleteTest(CommandTest):
    def complete(self, text, *options, snapshot=None):
        return run("complete", text, "--snapshot", snapshot or self.session, *options)

    def json_of(self, done):
        self.assertEqual((done.stderr, done.stdout.count(b"\n")), (b"", 1))
        return json.loads(done.stdout)

    def candidates(self, text, snapshot=None):
        done = self.complete(text, "--json", snapshot=snapshot)
        self.assertEqual(done.returncode, 0)
        answer = self.json_of(done)
        self.assertEqual(answer.keys(), {"candidates"})
        return [(candidate["name"], candidate["kind"]) for candidate in answer["candidates"]]

    def test_candidates(self):
        for text, expected in COMPLETIONS:
            with self.subTest(text=text):
                self.assertEqual(self.candidates(text), expected)
                done = self.complete(text)
                rows = [tuple(row.split("  ", 1)) for row in done.stdout.decode().splitlines()]
                self.assertEqual([(name, kind.strip()) for name, kind in rows], expected)
                self.assertEqual((done.returncode, b"no members" in done.stderr), (0, not expected))

    def test_the_columns_of_the_table_are_aligned(self):
        self.assertEqual(self.complete("pump.").stdout.decode(),
                         "Flow     property\nMaxFlow  property\nSerial   property\n"
                         "start    method\nstop     method\nreset    method\n")

    def test_a_variable_wins_over_a_class_of_the_same_name(self):
        session = {"format": 1, "classes": [{"name": "Pump", "properties": ["Flow", {"name": "Max", "constant": True}]}],
                   "workspace": [{"name": "Pump", "value": {"object": "Pump"}}]}
        both = self.snapshot(session, "both.json")
        self.assertEqual(self.candidates("Pump.", both), [("Flow", "property"), ("Max", "property")])
        alone = self.snapshot({**session, "workspace": []}, "alone.json")
        self.assertEqual(self.candidates("Pump.", alone), [("Max", "constant")])

    def test_a_name_is_listed_once_under_its_first_kind(self):
        twice = {"name": "Twice", "enumeration": True, "members": ["A", "B"],
                 "properties": [{"name": "A", "constant": True}, "p"],
                 "methods": [{"name": "B", "static": True}, "p", "q", "q"]}
        session = self.snapshot({"format": 1, "classes": [twice],
                                 "workspace": [{"name": "t", "value": {"object": "Twice"}}]})
        self.assertEqual(self.candidates("Twice.", session), [("A", "constant"), ("B", "static method")])
        self.assertEqual(self.candidates("t.", session), [("A", "property"), ("p", "property"), ("q", "method")])

    def test_names_beyond_ascii_and_control_characters(self):
        names = ["ab", "a\u001b[2J\u007f"]
        session = self.snapshot({"format": 1, "classes": [{"name": "C", "properties": names}],
                                 "workspace": [{"name": "c", "value": {"object": "C"}}]})
        self.assertEqual([name for name, _ in self.candidates("c.", session)], names)
        self.assertEqual(self.complete("c.", snapshot=session).stdout.decode(),
                         "ab      property\na\ufffd[2J\ufffd  property\n")

    def test_errors(self):
        for text, code in ERRORS:
            with self.subTest(text=text[:20]):
                done = self.complete(text)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertTrue(done.stderr.startswith(b"contextdata: "))
                self.assertTrue(done.stderr.endswith(f" [{code}]\n".encode()), done.stderr[-200:])
                done = self.complete(text, "--json")
                error = self.json_of(done)["error"]
                self.assertEqual((done.returncode, error["code"]), (1, code))
                self.assertNotEqual(error["message"], "")
        error = self.json_of(self.complete("nameless.", "--json"))["error"]
        self.assertEqual(error["exception"]["type"], "std::logic_error")

    def test_text_that_is_no_utf8(self):
        for text in (b"pu\xffmp.", b"pump.\xff"):
            done = subprocess.run([COMMAND, "complete", text, "--snapshot", self.session, "--json"],
                                  capture_output=True, timeout=60, check=False)
            answer = self.json_of(done)
            if text.startswith(b"pump"):
                self.assertEqual((done.returncode, answer), (0, {"candidates": []}))
            else:
                self.assertEqual((done.returncode, answer["error"]["code"]), (1, "complete.unknown-name"))

    def test_bad_snapshots(self):
        for file, code in self.bad_snapshots():
            with self.subTest(code=code):
                done = self.complete("pump.", snapshot=file)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertTrue(done.stderr.endswith(f" [{code}]\n".encode()), done.stderr)
                done = self.complete("pump.", "--json", snapshot=file)
                error = self.json_of(done)["error"]
                self.assertEqual(done.returncode, 1)
                self.assertEqual((error["code"], error["file"]), (code, file))
                self.assertEqual(error.keys(), {"code", "file", "pointer", "message"})

    def test_the_pointer_of_a_snapshot_error(self):
        file = self.snapshot({"format": 1, "classes": [{"name": "C", "colour": 1}]}, "colour.json")
        error = self.json_of(self.complete("C.", "--json", snapshot=file))["error"]
        self.assertEqual((error["code"], error["pointer"]), ("snapshot.unknown-key", "/classes/0/colour"))
        self.assertTrue(self.complete("C.", snapshot=file).stderr.decode().startswith(
            f"contextdata: {file}: /classes/0/colour: "))

    def test_usage(self):
        for arguments in (["complete"], ["complete", "pump."], ["complete", "--snapshot", self.session],
                          ["complete", "a.", "b.", "--snapshot", self.session],
                          ["complete", "a.", "--snapshot", self.session, "--trace"]):
            done = run(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, b""), arguments)
            self.assertIn(b"[command.usage]", done.stderr, arguments)
        self.assertEqual(run("complete", "--help").returncode, 0)

    def test_the_example_in_the_documentation(self):
        page = (SOURCE / "docs/command.md").read_text(encoding="utf-8")
        shown = page.split("```text\n")[1].split("```")[0]
        lab = str(SOURCE / "examples/lab.json")
        commands = "".join(f"$ contextdata complete '{text}' --snapshot examples/lab.json\n"
                           + self.complete(text, snapshot=lab).stdout.decode() for text in ("pump.", "lab.Pump."))
        self.assertEqual(shown, commands)

    def test_an_interrupt_while_loading(self):
        pipe = self.folder / "pipe.json"
        os.mkfifo(pipe)
        with subprocess.Popen([COMMAND, "complete", "pump.", "--snapshot", str(pipe)], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, env=environment()) as process:
            writer = os.open(pipe, os.O_WRONLY)
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(60), 130)
            os.close(writer)
            self.assertEqual(process.stdout.read(), b"")

    def stderr_on_a_terminal(self, file, pause_after=None):
        """What a terminal gets on standard error, when the command is stopped for more than a second meanwhile."""
        terminal, end_of_command = pty.openpty()
        self.addCleanup(os.close, terminal)
        with subprocess.Popen([COMMAND, "complete", "gone.", "--snapshot", file, "--json"],
                              stdout=subprocess.DEVNULL, stderr=end_of_command, env=environment()) as process:
            os.close(end_of_command)
            if pause_after is not None:
                time.sleep(pause_after)
                process.send_signal(signal.SIGSTOP)
                time.sleep(1.1)
                process.send_signal(signal.SIGCONT)
            self.assertEqual(process.wait(60), 1)
        os.set_blocking(terminal, False)
        try:
            return os.read(terminal, 1 << 16)
        except OSError:
            return b""

    def test_a_terminal_shows_the_progress_of_slow_loading_only(self):
        slow = self.snapshot('{"format": 1' + " " * (40 << 20) + "}", "slow.json")
        self.assertEqual(self.stderr_on_a_terminal(self.session), b"")
        for attempt in range(10):
            shown = self.stderr_on_a_terminal(slow, pause_after=0.03 * (1 + attempt))
            if shown:
                self.assertRegex(shown, rb"\A(\rloading \[#* *\] \d+ %)+\r\x1b\[K\Z")
                return
        self.fail("no progress was shown")

    def test_the_documentation_names_every_code(self):
        page = (SOURCE / "docs/command.md").read_text(encoding="utf-8")
        for code in {code for _, code in ERRORS} | {"complete.interrupted", "command.usage", "command.output"}:
            self.assertIn(f"`{code}`", page)


if __name__ == "__main__":
    unittest.main()
