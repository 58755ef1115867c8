"""The subcommand `eval`: output, values, errors with their place, scripts, interrupts."""
import json
import signal
import subprocess
import unittest

from Command import COMMAND, HANG, SOURCE, CommandTest, environment, run


class EvalTest(CommandTest):
    def eval(self, *arguments):
        return run("eval", "--snapshot", self.session, *arguments)

    def test_output(self):
        for text, output in (("1 + 2", "3\n"), ("1 + 2;", ""), ("x = n * 2", "x = 6\n"), ("disp('gr\u00fcn')", "gr\u00fcn\n"),
                             ("tool.Age", "42\n"), ("s.a.b", "7\n"), ("if n > 2, disp('big'), end", "big\n")):
            done = self.eval(text)
            self.assertEqual((done.returncode, done.stdout.decode(), done.stderr), (0, output, b""), text)

    def test_values(self):
        cases = [("1 + 2", 3), ("0.5", 0.5), ("[1 2; 3 4]", {"double": [1, 3, 2, 4], "size": [2, 2]}), ("[1 NaN]", [1, "NaN"]),
                 ("'text'", "text"), ('"text"', {"string": "text"}), ("missing", {"string": None}), ("true", True),
                 ("n == 4", False), ("{1, 'a'}", {"cell": [1, "a"]}), ("s.a", {"struct": {"b": 7}}),
                 ("tool", {"object": "kit.Tool"}), ("far", {"opaque": "far.Away"}), ("-Inf", ["-Inf"]),
                 ("[true false]", {"class": "logical", "size": [1, 2]}), ("zeros(0, 3)", {"double": [], "size": [0, 3]}),
                 ("zeros(400, 400)", {"class": "double", "size": [400, 400]})]
        for text, value in cases:
            done = self.eval("--json", "--", text)
            self.assertEqual(done.returncode, 0, (text, done.stdout))
            self.assertEqual(json.loads(done.stdout), {"output": "", "value": value}, text)
        done = self.eval("disp(1), n", "--json")
        self.assertEqual(json.loads(done.stdout), {"output": "1\n", "value": 3})

    def test_nothing_printed_commands_a_terminal(self):
        done = self.eval("disp(sprintf('a\\tb%s', '\x1b[2J\x9b\x7f'))")
        self.assertEqual(done.stdout.decode(), "a\tb\ufffd[2J\ufffd\ufffd\n")
        done = self.eval("error('\x1b[2J')")
        self.assertNotIn(b"\x1b", done.stderr)
        done = self.eval("'\x9b\x7f'", "--json")
        self.assertIn(b"\\u009b\\u007f", done.stdout)

    def test_values_that_are_too_deep_or_too_many_have_an_end(self):
        deep = "c = {}; for i = 1:300, c = {c}; end, c"
        wide = "c = {1}; for i = 1:60, c = {c, c}; end, c"
        for text in (deep, wide):
            done = self.eval(text, "--json")
            self.assertEqual(done.returncode, 0, text)
            self.assertIn(b'{"class":"cell","size":[1,', done.stdout, text)

    def test_errors(self):
        for text, code, line, column in (("n +", "KORVAL:code:Syntax", 1, None), ("n;\n gone", "KORVAL:code:UndefinedName", 2, 2),
                                         ("error('my:own', 'No')", "my:own", 1, None), ("x = 1", "KORVAL:code:NoValue", None, None)):
            done = self.eval(text, "--json")
            error = json.loads(done.stdout)["error"]
            self.assertEqual((done.returncode, error["code"], error["source"]), (1, code, "expression"), text)
            self.assertEqual((line or error["line"], column or error["column"]), (error["line"], error["column"]), text)
        done = self.eval("disp(1); gone")
        self.assertEqual((done.returncode, done.stdout), (1, b"1\n"))
        self.assertRegex(done.stderr.decode(), r"^contextdata: expression:1:10: .+ \[KORVAL:code:UndefinedName\]\n$")
        error = json.loads(self.eval("disp(1); gone", "--json").stdout)["error"]
        self.assertEqual((error["output"], error["line"], error["column"]), ("1\n", 1, 10))

    def test_scripts(self):
        script = self.folder / "script.k"
        script.write_text("total = 0;\nfor i = 1:4\n  total = total + i;\nend\ntotal\n", encoding="utf-8")
        self.assertEqual(self.eval("--file", str(script)).stdout, b"total = 10\n")
        self.assertEqual(json.loads(self.eval("--file", str(script), "--json").stdout), {"output": "total = 10\n"})
        script.write_text("x = 1;\n  gone\n", encoding="utf-8")
        self.assertIn(f"contextdata: {script}:2:3: ", self.eval("--file", str(script)).stderr.decode())
        long, latin = self.folder / "long.k", self.folder / "latin.k"
        long.write_bytes(b" " * (4 * 2**20 + 1))
        latin.write_bytes(b"'\xfc'")
        for file, code in ((self.folder / "gone.k", "eval.unreadable-file"), (self.folder, "eval.unreadable-file"),
                           (long, "eval.too-long"), (latin, "eval.not-utf8")):
            done = self.eval("--file", str(file))
            self.assertEqual((done.returncode, done.stdout), (1, b""), file)
            self.assertIn(f"[{code}]", done.stderr.decode(), file)

    def test_usage(self):
        command = ["eval", "--snapshot", self.session]
        self.check_usage(command, [*command, "1", "2"], [*command, "1", "--file", "x.k"], ["eval", "1"])

    def test_bad_snapshots(self):
        self.check_bad_snapshots("eval", "1")

    def test_an_interrupt_stops_code_whose_output_came_while_it_ran(self):
        # Nobody reads on before the signal: a full pipe holds the code up long before it has made as many steps as it may.
        command = [COMMAND, "eval", "disp('first'); while true, disp('more'); end", "--snapshot", self.session]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment()) as process:
            self.addCleanup(process.kill)
            self.assertEqual(process.stdout.readline(), b"first\n")
            process.send_signal(signal.SIGINT)
            errors = process.communicate(timeout=HANG)[1]
        self.assertEqual((process.returncode, errors), (130, b"contextdata: interrupted [eval.interrupted]\n"))

    def test_the_example_in_the_documentation(self):
        page = (SOURCE / "docs/command.md").read_text(encoding="utf-8")
        _, _, example = page.partition("$ contextdata eval '")
        text, _, rest = example.partition("' --snapshot examples/lab.json\n")
        done = run("eval", text, "--snapshot", str(SOURCE / "examples/lab.json"))
        self.assertEqual(done.stdout.decode(), rest.partition("```")[0])


if __name__ == "__main__":
    unittest.main()
