"""The subcommand `prompt` without a terminal: lines of a script, exit codes, saving."""
import json
import os
import re
import select
import signal
import subprocess
import unittest

from Command import COMMAND, HANG, SOURCE, CommandTest, environment, run

# (script, output, the beginning of each line of the errors that is no line of the script, exit code)
SCRIPTS = [
    ("n\n", "n = 3\n", [], 0),
    ("n", "n = 3\n", [], 0),
    ("", "", [], 0),
    ("\n  \n% remark\n", "", [], 0),
    ("n\r\nx = 2\r\n", "n = 3\nx = 2\n", [], 0),
    ("gone\nn\n", "n = 3\n", ["input:1:1: "], 1),
    ("n;\n  x = [1, gone]\n", "", ["input:2:11: "], 1),
    ("if n > 2\n  disp('big')\nend\nn\n", "big\nn = 3\n", [], 0),
    ("for i = 1:2\n  while true\n    if i == 2, disp(i), end\n    break\n  end\nend\n", "2\n", [], 0),
    ("if n > 2\n  gone\nend\nn\n", "n = 3\n", ["input:2:3: "], 1),
    ("n\nif n > 2\n", "n = 3\n", ["input:3:1: "], 1),
    ("x = [1 2\n3 4]\n", "x = [1 2; 3 4]\n", [], 0),
    ("x = {1, ...\n2}\n", "x = {1, 2}\n", [], 0),
    ("x = 1 ...\n+ 2\n", "x = 3\n", [], 0),
    ("x = 1 + ... remark\n\n", "", ["input:2:1: "], 1),
    ("x = 1; % ...\nx\n", "x = 1\n", [], 0),
    ("disp('a...')\n", "a...\n", [], 0),
    ("x = (1\n", "", ["input:1:7: "], 1),
    ("x = 'open\nn\n", "n = 3\n", ["input:1:5: "], 1),
    ("end\n", "", ["input:1:1: "], 1),
    ("x = )\n", "", ["input:1:5: "], 1),
    (":quit\nn\n", "", [], 0),
    ("gone\n:quit\n", "", ["input:1:1: "], 1),
    (":nothing\nn\n", "n = 3\n", ["there is no ':nothing'"], 1),
    (":\n", "", ["there is no ':'"], 1),
    (":trace maybe\n", "", [":trace on, or :trace off [prompt.usage]"], 1),
    (":explain\n", "", [":explain needs a name [prompt.usage]"], 1),
    (":save\n", "", [":save needs a file [prompt.usage]"], 1),
    ("?\n", "", ["? needs a name [prompt.usage]"], 1),
    ("?gone\n", "", ["nothing is known of 'gone' [prompt.unknown-name]"], 1),
    ("if true\n:quit\nend\n", "", ["input:2:1: ", "input:3:1: "], 1),
    ("fprintf('%s', 'no end')\n", "no end\n", [], 0),
    ("tool.Age\n", "42\n", [], 0),
    ("error('my:own', 'No\x1b[2J')\n", "", ["input:1:1: No\ufffd[2J [my:own]"], 1),
    ("x = '\u00fc\U0001d11e', gone\n", "x = '\u00fc\U0001d11e'\n", ["input:1:12: "], 1),
    ("[" * 200 + "\nn\n", "n = 3\n", ["input:1:102: "], 1),
]


class PromptScriptTest(CommandTest):
    def prompt(self, script, *options, snapshot=None):
        text = script if isinstance(script, bytes) else script.encode()
        return run("prompt", "--snapshot", snapshot or self.session, "--timeout", "0", *options, stdin=text)

    def test_scripts(self):
        for script, output, errors, code in SCRIPTS:
            with self.subTest(script=script[:60]):
                done = self.prompt(script)
                told = [line for line in done.stderr.decode().splitlines() if not line.startswith("  ")]
                self.assertEqual((done.stdout.decode(), done.returncode), (output, code), told)
                self.assertEqual([line[:len(start)] for line, start in zip(told, errors)], errors)
                self.assertEqual(len(told), len(errors), told)

    def test_lines_that_cannot_be_read(self):
        for line, code in ((b"'\xff'", "prompt.not-utf8"), (b"x" * (4 * 2**20 + 1), "prompt.too-long")):
            done = self.prompt(b"n;\n" + line + b"\nn\n")
            self.assertEqual((done.returncode, done.stdout), (1, b"n = 3\n"))
            self.assertRegex(done.stderr.decode(), rf"\Ainput:2: .* \[{code}\]\n\Z")
        done = self.prompt("numel('" + "x" * 900000 + "')\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"9e+05\n", b""))

    def test_a_bad_snapshot(self):
        for file, code in self.bad_snapshots():
            done = self.prompt("1\n", snapshot=file)
            self.assertEqual((done.returncode, done.stdout), (1, b""), code)
            self.assertTrue(done.stderr.decode().endswith(f" [{code}]\n"), done.stderr)

    def test_usage(self):
        for options in ((), ("--snapshot", self.session, "--history", "x", "--no-history"),
                        ("--snapshot", self.session, "--code", "maybe"), ("--snapshot", self.session, "--timeout", "soon")):
            self.assertEqual(run("prompt", *options).returncode, 2, options)
        self.assertIn(b"--history", run("prompt", "--help").stdout)

    def test_what_was_saved_answers_the_same(self):
        saved, again = self.folder / "saved.json", self.folder / "again.json"
        questions = "".join(f"{line}\n" for line in (
            "n", "fresh", "kept.Kind", "tool.Age", "texts", "holes", "list", "s.a.b", "?tool", "?kept.Age", ":explain top.Secret",
            ":explain kept.Kind", ":explain fresh", "far", "numel(list)"))
        done = self.prompt("n = 4; fresh = {1, 'two', [3 4]}; kept = tool; kept.Kind = 'axe';\nlist = s; list.a.b = 8;\n"
                           f":save {saved}\n" + questions)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        head, _, live = done.stdout.decode().partition(f"saved {saved}\n")
        self.assertEqual(head, "")
        self.assertIn("axe", live)
        reloaded = self.prompt(questions, snapshot=str(saved))
        self.assertEqual((reloaded.stdout.decode(), reloaded.stderr, reloaded.returncode), (live, b"", 0))
        self.prompt(f":save {again}\n", snapshot=str(saved))
        self.assertEqual(again.read_bytes(), saved.read_bytes())
        before = run("complete", "tool.", "--snapshot", self.session, "--json")
        self.assertEqual(run("complete", "kept.", "--snapshot", str(saved), "--json").stdout, before.stdout)

    def test_a_file_that_cannot_be_written(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        kept = self.folder / "kept.json"
        kept.write_text("old", encoding="utf-8")
        kept.chmod(0o444)
        for file, code in ((self.folder / "none/x.json", b"unwritable"), (pipe, b"unwritable"), ("/dev/null", b"unwritable"),
                           (self.folder, b"directory"), (kept, b"unwritable")):
            with self.subTest(file=file):
                done = self.prompt(f":save {file}\nn\n")
                self.assertEqual((done.returncode, done.stdout), (1, b"n = 3\n"))
                self.assertIn(b"[snapshot." + code + b"]", done.stderr)
        self.assertEqual(kept.read_text(encoding="utf-8"), "old")

    def test_an_interrupt_ends_a_script(self):
        with subprocess.Popen([COMMAND, "prompt", "--snapshot", self.session], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment()) as process:
            self.addCleanup(process.kill)
            process.stdin.write(b"disp('running'); while true, end\nn\n")
            process.stdin.close()
            self.assertTrue(select.select([process.stdout], [], [], HANG)[0], "output does not come before the code ends")
            self.assertEqual(process.stdout.readline(), b"running\n")
            process.send_signal(signal.SIGINT)
            self.assertEqual((process.stdout.read(), process.stderr.read()), (b"", b"interrupted\n"))
            self.assertEqual(process.wait(HANG), 130)

    def test_output_and_errors_come_as_they_are_made(self):
        reader, writer = os.pipe()
        with subprocess.Popen([COMMAND, "prompt", "--snapshot", self.session], stdin=subprocess.PIPE, stdout=writer,
                              stderr=writer, env=environment()) as process:
            self.addCleanup(process.kill)
            os.close(writer)
            with os.fdopen(reader, "rb") as output:
                for line, answer in ((b"n\n", [b"n = 3\n"]), (b"disp(1), gone\n", [b"1\n", b"  disp(1), gone\n", b"           ^\n"])):
                    process.stdin.write(line)
                    process.stdin.flush()
                    self.assertEqual([output.readline() for _ in answer], answer)
                process.stdin.close()
            self.assertEqual(process.wait(HANG), 1)

    def test_no_code_runs_under_the_policy_never(self):
        done = self.prompt(":trace on\n?tool.Age\n:explain tool.Age\n", "--code", "never")
        self.assertEqual(done.stdout.count(b"no Korval code ran"), 2, done.stdout)

    def test_the_example_in_the_documentation(self):
        page = (SOURCE / "docs/prompt.md").read_text(encoding="utf-8")
        shown = page.split("```text\n")[1].split("```")[0]
        lines = [line[len("korval> "):] for line in shown.splitlines() if line.startswith("korval> ")]
        done = self.prompt("".join(line + "\n" for line in lines), snapshot=str(SOURCE / "examples/lab.json"))
        answers = [line + "\n" for line in shown.splitlines() if not line.startswith("korval> ")]
        told = re.sub(r"^input:\d+:", "input:1:", done.stderr.decode(), flags=re.MULTILINE)  # each line for itself, as at a terminal
        self.assertEqual(done.stdout.decode() + told, "".join(answers))
        for code in ("not-utf8", "too-long", "unknown-command", "unknown-name", "usage"):
            self.assertIn(f"`prompt.{code}`", page)


if __name__ == "__main__":
    unittest.main()
