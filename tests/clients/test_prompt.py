"""The subcommand `prompt` at a terminal: a pseudo-terminal with a screen, on which somebody types."""
import os
import re
import signal
import termios
import unittest

from Command import COMMAND, CommandTest, environment
from Terminal import Terminal

WORLD = {
    "format": 1,
    "classes": [
        {"name": "lab.Pump", "methods": ["start", {"name": "vent", "hidden": True}],
         "properties": [{"name": "Flow", "type": "double", "value": 12.5}, {"name": "Floor", "value": "low"}, "Mode",
                        {"name": "Calibration", "hidden": True, "value": 7}]},
        {"name": "lab.Rig", "properties": [
            {"name": "Noisy", "dependent": True, "getter": "disp('NOISE'); fprintf('MORE'); lab.Pump()"},
            {"name": "Endless", "dependent": True, "getter": "while true, end\n1"}]},
        {"name": "lab.Many", "properties": [f"Property{index:03}" for index in range(1000)]},
        {"name": "lab.Words", "properties": ["getClassInfo", "getCallId", "Alpha", "aLPHAbet"]},
        {"name": "lab.Odd", "properties": ["one\u001b[2Jtwo", "three\u007f"]},
    ],
    "builtins": ["sizeAsDouble"],
    "workspace": [
        {"name": "pump", "value": {"object": "lab.Pump"}},
        {"name": "rig", "value": {"object": "lab.Rig"}},
        {"name": "many", "value": {"object": "lab.Many"}},
        {"name": "words", "value": {"object": "lab.Words"}},
        {"name": "odd", "value": {"object": "lab.Odd"}},
        {"name": "number", "value": 3},
    ],
}
PROMPT = "korval> "


class PromptTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.world = self.snapshot(WORLD, "world.json")

    def start(self, *options, columns=80, rows=24, env=None, history=False):
        """A terminal that shows its first prompt."""
        options = options if history else (*options, "--no-history")
        if "--timeout" not in options:
            options = (*options, "--timeout", "0")  # the usual limit is for people, on machines of any speed
        env = {**environment(), "TERM": "xterm", "HOME": str(self.folder), **(env or {})}
        terminal = Terminal([COMMAND, "prompt", "--snapshot", self.world, *options], env, columns, rows)
        self.addCleanup(terminal.kill)
        terminal.wait(lambda screen: "".join(screen.lines()) == PROMPT.rstrip(), "the prompt")
        return terminal

    def quit(self, terminal, text=":quit\r"):
        terminal.send(text)
        self.assertEqual(terminal.close(), 0)

    def ask(self, terminal, text, *answer):
        """Types a line, and waits for the lines of its answer and a new prompt."""
        terminal.send(text + "\r")
        terminal.expect("\n".join([re.escape(text), *map(re.escape, answer), "korval>$"]))

    def test_tab_inserts_what_is_certain_and_lists_the_rest(self):
        terminal = self.start()
        terminal.send("pu\t")
        terminal.line(PROMPT + "pump")
        terminal.send(".F\t")
        terminal.expect(r"^Flow +1x1 double +Floor +1x3 char$")
        terminal.line(PROMPT + "pump.Flo")
        terminal.send("w\t")
        terminal.expect(r"^Flow +1x1 double$")
        terminal.send(" * 2\r")
        terminal.expect(r"^25$")
        self.quit(terminal)

    def test_tab_replaces_what_was_typed_in_other_words(self):
        terminal = self.start()
        for typed, completed in (("x = pump.fLoW", "x = pump.Flow"), ("[pump.St", "[pump.start"), ("sizeAsD", "sizeAsDouble"),
                                 ("words.gClI", "words.getClassInfo"), ("words.gCI", "words.gCI"), ("words.al", "words.al")):
            terminal.send(typed + "\t")
            terminal.line(PROMPT + completed)
            terminal.send("\x15")
            terminal.line(PROMPT)
        terminal.send("pump.M = 1" + "\x1b[D" * 4 + "\t")  # the cursor stands behind "M"
        terminal.wait(lambda screen: screen.lines()[-1] == PROMPT + "pump.Mode = 1", "Mode in the middle")
        self.quit(terminal, "\x15:quit\r")

    def test_a_second_tab_shows_hidden_names_and_only_then(self):
        terminal = self.start()
        terminal.send("pump.\t")
        terminal.expect(r"start +method of lab.Pump\n(?:.*\n)*korval> pump\.")
        self.assertNotIn("Calibration", str(terminal.screen))
        terminal.send("\t")
        terminal.expect(r"Calibration +1x1 double, hidden")
        terminal.expect(r"vent +method of lab.Pump, hidden\n(?:.*\n)*korval> pump\.")
        before = str(terminal.screen).count("Calibration")
        terminal.send("M\t")
        terminal.line(PROMPT + "pump.Mode")
        terminal.send("\b\b\b\b\t")
        terminal.expect(r"Flow(?:.*\n)*korval> pump\.")
        self.assertEqual(str(terminal.screen).count("Calibration"), before)
        terminal.send("Ca\t")
        terminal.line(PROMPT + "pump.Ca")
        terminal.send("\t")
        terminal.line(PROMPT + "pump.Calibration")
        self.quit(terminal, "\x15:quit\r")

    def test_enter_runs_exactly_what_was_typed(self):
        terminal = self.start()
        terminal.send("numbe\r")
        terminal.expect(r'^input:1:1: "numbe" is no variable')
        terminal.send("numb\x1b[D\x1b[D\x1b[Dx\r")
        terminal.expect(r'"nxumb" is no variable')
        terminal.send("number\r")
        terminal.expect(r"^number = 3$")
        self.quit(terminal)

    def test_statements_change_the_workspace(self):
        terminal = self.start()
        self.ask(terminal, "fresh = [1 2 3];")
        self.ask(terminal, "numel(fresh)", "3")
        self.ask(terminal, "pump.Flow = 3;")
        self.ask(terminal, "pump.Flow", "3")
        terminal.send("fre\t")
        terminal.line(PROMPT + "fresh")
        terminal.send(" \r")
        terminal.expect(r"^fresh = \[1 2 3\]$")
        terminal.send("fprintf('no end')\r")
        terminal.expect(r"^no end\nkorval>$")
        self.quit(terminal)

    def test_statements_of_several_lines(self):
        terminal = self.start()
        for line in ("for i = 1:2", "\tif i > 1", "disp('seen')"):
            terminal.send(line + "\r")
            terminal.expect(r"^   \.\.\.>$")
        self.assertIn("   ...>   if i > 1", terminal.screen.lines())  # a TAB indents there
        terminal.send("num\t\b\b\b\b\b\bpump.Fl\t")
        terminal.line("   ...> pump.Flo")
        terminal.send("\x15end\r")
        terminal.expect(r"^   \.\.\.> end\n   \.\.\.>$")
        terminal.send("end\r")
        terminal.expect(r"end\nseen\nkorval>")
        terminal.send("x = 1 + ...\r2\r")
        terminal.expect(r"^x = 3$")
        self.quit(terminal)

    def test_errors_have_a_caret_under_their_place(self):
        terminal = self.start(columns=300)
        terminal.send("a = [1, gone]\r")
        terminal.expect(r'^  a = \[1, gone\]\n          \^\ninput:1:9: "gone" .* \[KORVAL:code:UndefinedName\]$')
        terminal.send("x = '\u00fc\u00e9', 'open\r")
        terminal.expect(r"^  x = '\u00fc\u00e9', 'open\n            \^\ninput:1:11: ")
        terminal.send(f"x = '{'long ' * 50}'; + gone\r")
        terminal.expect(r"^  \.\.\.[long ';+]+gone\n +\^\ninput:1:261: ")
        self.quit(terminal)

    def test_ctrl_c_stops_code_and_the_session_lives_on(self):
        terminal = self.start()
        terminal.send("number = 4; disp('running'); while true, end\r")
        terminal.expect(r"^running$")
        terminal.send("\x03")
        terminal.expect(r"^(\^C)?interrupted$")
        terminal.send("number\r")
        terminal.expect(r"^number = 4$")
        self.quit(terminal)

    def test_ctrl_c_stops_a_completion(self):
        terminal = self.start("--code", "allowed")
        terminal.send("rig.Endless.\t")
        terminal.work(0.5)  # Ctrl-C before the completion has begun would drop the TAB
        terminal.send("\x03")
        terminal.expect(r"^interrupted")
        terminal.line(PROMPT + "rig.Endless.")
        terminal.send("\x15number\r")
        terminal.expect(r"^number = 3$")
        self.quit(terminal)

    def test_a_completion_has_a_deadline_and_says_so(self):
        terminal = self.start("--code", "allowed", "--timeout", "50")
        terminal.send("rig.Endless.\t")
        terminal.expect(r"^timed-out: ")
        terminal.line(PROMPT + "rig.Endless.")
        self.quit(terminal, "\x15:quit\r")

    def test_refused_code_is_told(self):
        terminal = self.start()
        terminal.send("rig.Noisy.\t")
        terminal.expect(r"^refused-code: ")
        terminal.line(PROMPT + "rig.Noisy.")
        self.assertIn(b"\x1b[2mrefused-code", terminal.raw)
        self.assertNotIn("NOISE", str(terminal.screen))
        self.quit(terminal, "\x15:quit\r")

    def test_what_code_prints_during_a_completion_is_not_shown(self):
        terminal = self.start("--code", "allowed")
        terminal.send("rig.Noisy.Flo\t")
        terminal.expect(r"Floor +1x3 char")
        terminal.line(PROMPT + "rig.Noisy.Flo")
        terminal.send("w\r")
        terminal.expect(r"^NOISE\nMORE12.5$")
        self.assertEqual(terminal.raw.count(b"NOISE"), 1)
        self.quit(terminal)

    def test_ctrl_c_at_the_prompt_drops_the_line(self):
        terminal = self.start()
        terminal.send("gone")
        terminal.line(PROMPT + "gone")
        terminal.send("\x03")
        terminal.line(PROMPT)
        terminal.send("if true\r")
        terminal.line("   ...> ")
        terminal.send("gone")
        terminal.line("   ...> gone")
        terminal.send("\x03")
        terminal.line(PROMPT)
        terminal.send("number\r")
        terminal.expect(r"^korval> number\nnumber = 3$")
        self.assertNotIn("no variable", str(terminal.screen))
        self.quit(terminal)

    def test_control_characters_in_names_are_replaced(self):
        terminal = self.start()
        terminal.send("odd.\t")
        terminal.expect("one\ufffd\\[2Jtwo")
        terminal.expect("three\ufffd")
        self.quit(terminal, "\x15:quit\r")

    def test_long_lists_have_pages_and_say_what_is_left_out(self):
        terminal = self.start(columns=40, rows=10)
        terminal.send("many.\t")
        terminal.expect(r"192 more lines: space shows")
        self.assertNotIn("Property009 ", str(terminal.screen))
        terminal.send(" ")
        terminal.expect(r"^Property010 ")
        terminal.expect(r"183 more lines")
        self.assertIn("Property009  property of lab.Many", terminal.screen.lines())
        terminal.send("\x03")
        terminal.line(PROMPT + "many.Property")
        self.assertNotIn("Property020 ", str(terminal.screen))
        terminal.send("007\r")
        terminal.expect(r"^\[\]$")
        self.quit(terminal)
        terminal = self.start("--limit", "5", rows=30)
        terminal.send("many.P\t")
        terminal.expect(r"^limited: the first 5 of 1000$")
        terminal.line(PROMPT + "many.Property")
        self.quit(terminal, "\x15:quit\r")

    def test_lists_fit_the_terminal(self):
        for columns, lines in ((80, ["Flow   1x1 double   Floor  1x3 char"]), (38, ["Flow   1x1 double   Floor  1x3 char"]),
                               (37, ["Flow   1x1 double", "Floor  1x3 char"]), (18, ["Flow   1x1 double", "Floor  1x3 char"]),
                               (16, ["Flow   1x1 dou\u2026", "Floor  1x3 char"]), (13, ["Flow", "Floor"]), (5, ["Flow", "Flo\u2026"]),
                               (1, ["\u2026", "\u2026"])):
            terminal = self.start(columns=columns, rows=20)
            terminal.send("pump.Flo\t\x15:quit\r")
            self.assertEqual(terminal.close(), 0, columns)
            self.assertIn("\n" + "\n".join(lines) + "\n", str(terminal.screen), columns)

    def test_a_terminal_that_becomes_narrow(self):
        terminal = self.start()
        terminal.resize(20)
        terminal.process.send_signal(signal.SIGWINCH)
        terminal.send("pump.Flo\t")
        terminal.expect(r"^Flow   1x1 double\nFloor  1x3 char$")
        self.quit(terminal, "\x15:quit\r")

    def test_a_session_that_was_stopped_goes_on(self):
        terminal = self.start()
        terminal.send("pump.F")
        terminal.line(PROMPT + "pump.F")
        terminal.process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, terminal.process.pid, os.WSTOPPED)
        modes = termios.tcgetattr(terminal.master)
        modes[3] |= termios.ICANON | termios.ECHO  # as a shell does
        termios.tcsetattr(terminal.master, termios.TCSANOW, modes)
        terminal.process.send_signal(signal.SIGCONT)
        terminal.wait(lambda screen: str(screen).count("pump.F") == 2 or not termios.tcgetattr(terminal.master)[3] & termios.ICANON,
                      "the line again")
        terminal.send("lo\t")
        terminal.expect(r"^Flow   1x1 double   Floor  1x3 char$")
        self.quit(terminal, "\x15:quit\r")

    def test_a_search_through_the_history(self):
        terminal = self.start()
        self.ask(terminal, "number", "number = 3")
        self.ask(terminal, "1 + 1", "2")
        terminal.send("\x12num\r")
        terminal.expect(r"number = 3\nkorval>$")
        terminal.send("\x12num")
        terminal.expect(r"number\nbck:num$")
        terminal.send("\x03")
        terminal.wait(lambda screen: screen.lines()[screen.row] == "korval>" and screen.row > terminal.seen[0], "a new prompt")
        self.ask(terminal, "1 + 2", "3")
        self.quit(terminal)

    def test_a_dumb_terminal(self):
        terminal = self.start(env={"TERM": "dumb"})
        terminal.send("pump.F\t")
        terminal.expect(r"Flow +1x1 double")
        terminal.send("w\r")
        terminal.expect(r"^12\.5$")
        self.assertNotIn(b"\x1b", terminal.raw)
        self.quit(terminal)

    def test_a_long_line(self):
        terminal = self.start()
        terminal.send("numel('" + "x" * 5000 + "')\r")
        terminal.expect(r"^5000$")
        terminal.send("[" * 300 + "\r")
        terminal.expect("NestingLimit")
        self.quit(terminal)

    def test_text_beyond_ascii(self):
        for locale in ("C", "C.UTF-8", "xx_YY"):
            terminal = self.start(env={"LC_ALL": locale})
            terminal.send("'gr\u00fc\u00dfe \U0001d11e'\b\b\u20ac'\r")
            terminal.expect("^'gr\u00fc\u00dfe \u20ac'$")
            self.quit(terminal)

    def test_the_end_of_the_input(self):
        terminal = self.start()
        terminal.send("if true\r")
        terminal.line("   ...> ")
        terminal.send("\x04")
        terminal.line(PROMPT)
        self.quit(terminal, "\x04")

    def test_history_is_kept(self):
        state = self.folder / "state"
        env = {"XDG_STATE_HOME": str(state)}
        terminal = self.start(env=env, history=True)
        terminal.send("number\r")
        terminal.expect("^number = 3$")
        terminal.send("'gr\u00fcn'\r")
        terminal.expect("^'gr\u00fcn'\nkorval>$")
        terminal.send("\x1b[A\x1b[A")
        terminal.line(PROMPT + "number")
        self.quit(terminal, "\x15:quit\r")
        kept = state / "contextdata" / "history"
        self.assertEqual(kept.read_text(encoding="utf-8"), "number\n'gr\u00fcn'\n:quit\n")
        self.assertEqual(kept.stat().st_mode & 0o777, 0o600)
        terminal = self.start(env=env, history=True)
        terminal.send("\x1b[A\x1b[A")
        terminal.line(PROMPT + "'gr\u00fcn'")
        self.quit(terminal, "\x15\x04")
        self.assertEqual(kept.read_text(encoding="utf-8").count("\n"), 3)
        named = self.folder / "named"
        named.write_text("".join(f"x{index};\n" for index in range(3000)), encoding="utf-8")
        terminal = self.start("--history", str(named), history=True)
        terminal.send("\x1b[A")
        terminal.line(PROMPT + "x2999;")
        self.quit(terminal, "\x15\x04")
        self.assertEqual(named.read_text(encoding="utf-8").split()[0], "x2000;")

    def test_no_history_is_no_failure(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        binary = self.folder / "binary"
        binary.write_bytes(b"\xff\x00\x1b[2J\n" * 10)
        for options, env in ((["--no-history"], {"XDG_STATE_HOME": str(self.folder / "none")}), ([], {"XDG_STATE_HOME": "/dev/null"}),
                             (["--history", "/proc/none/x"], {}), (["--history", str(pipe)], {}), (["--history", str(self.folder)], {}),
                             (["--history", str(binary)], {}), ([], {"HOME": "", "XDG_STATE_HOME": ""})):
            terminal = self.start(*options, env=env, history=True)
            terminal.send("number\r")
            terminal.expect("^number = 3$")
            self.quit(terminal)
        self.assertFalse((self.folder / "none").exists())

    def test_a_name_is_described(self):
        terminal = self.start()
        self.ask(terminal, "?pump", "pump: variable, 1x1 lab.Pump")
        self.ask(terminal, "?pump.Flow", "pump.Flow: property of lab.Pump, 1x1 double")
        self.ask(terminal, " ? pump.Calibration", "pump.Calibration: property of lab.Pump, 1x1 double, hidden")
        self.ask(terminal, "?gone", "nothing is known of 'gone' [prompt.unknown-name]")
        self.ask(terminal, ":gone", "there is no ':gone'; :help shows what there is [prompt.unknown-command]")
        self.quit(terminal)

    def test_explain(self):
        terminal = self.start()
        for name, answer in (("pump.Calibration", r"Calibration is not offered\nhidden "), ("pump.Flow", r"Flow is offered\noffered "),
                             ("number", r"number is offered"), ("pump.gone", r"gone is not offered\nnot-in-this-class ")):
            terminal.send(f":explain {name}\r")
            terminal.expect("^" + answer)
        self.quit(terminal)

    def test_trace(self):
        terminal = self.start("--code", "allowed")
        terminal.send(":trace on\r")
        terminal.expect("^trace is on\nkorval>$")
        terminal.send("pump.F\t")
        terminal.expect(r"^trace: \d+ host calls, no Korval code ran$")
        terminal.send("\x15rig.Noisy.F\t")
        terminal.expect(r"^trace: \d+ host calls, Korval code ran\n(  \d+ x .+\n)+")
        terminal.send("\x15number;\r")
        terminal.expect(r"^trace: \d+ host calls, Korval code ran\n  1 x inEvalExp$")
        terminal.send(":trace off\r")
        terminal.expect("^trace is off$")
        terminal.send("number\r")
        terminal.expect(r"^number = 3\nkorval>$")
        terminal.send(":trace\r")
        terminal.expect(r"\[prompt.usage\]")
        self.quit(terminal)


if __name__ == "__main__":
    unittest.main()
