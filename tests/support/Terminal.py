"""A pseudo-terminal with a program in it, and the screen that it shows."""
import codecs
import fcntl
import os
import pty
import re
import select
import struct
import subprocess
import termios
import time
import unicodedata
from pathlib import Path

from Command import HANG

SEQUENCE = re.compile(r"\x1b(?:\[([?0-9;]*)([@-~])|[=>]|[()][A-Z0-9])")


class Screen:
    """Rows of characters, as many as it takes, and a cursor; of what terminals obey it knows what line editing uses."""

    def __init__(self, columns):
        self.columns, self.rows, self.row, self.column, self.rest = columns, [[]], 0, 0, ""

    def write(self, text):
        text, at = self.rest + text, 0
        self.rest = ""
        while at < len(text):
            if text[at] != "\x1b":
                self.put(text[at])
                at += 1
            elif found := SEQUENCE.match(text, at):
                self.obey(found[1] or "", found[2] or "")
                at = found.end()
            elif len(text) - at < 16:
                self.rest = text[at:]
                return
            else:
                raise AssertionError(f"unknown sequence {text[at:at + 16]!r}")

    def put(self, character):
        if character == "\r":
            self.column = 0
        elif character == "\n":
            self.move_to_row(self.row + 1)
        elif character == "\b":
            self.column = max(0, min(self.column, self.columns) - 1)
        elif character == "\t":
            self.column = min(self.columns - 1, self.column // 8 * 8 + 8)
        elif character == "\a":
            pass
        elif character < " " or "\x7f" <= character < "\xa0":
            raise AssertionError(f"the control character {character!r} was sent")
        else:
            self.show(character)

    def show(self, character):
        if self.column >= self.columns:
            self.column = 0
            self.move_to_row(self.row + 1)
        row = self.rows[self.row]
        row.extend(" " * (self.column + 1 - len(row)))
        row[self.column] = character
        if unicodedata.east_asian_width(character) in "WF":
            raise AssertionError("no wide characters here")
        self.column += 1

    def move_to_row(self, row):
        self.row = max(0, row)
        while len(self.rows) <= self.row:
            self.rows.append([])

    def obey(self, parameters, command):
        first = parameters.split(";")[0]
        count = int(first) if first.isdigit() else 1
        row = self.rows[self.row]
        if command == "A":
            self.move_to_row(self.row - count)
        elif command == "B":
            self.move_to_row(self.row + count)
        elif command == "C":
            self.column = min(self.columns - 1, self.column + count)
        elif command == "D":
            self.column = max(0, min(self.column, self.columns - 1) - count)
        elif command == "G":
            self.column = count - 1
        elif command in "KJ" and first in ("", "0"):
            del row[self.column:]
            if command == "J":
                del self.rows[self.row + 1:]
        elif command == "P":
            del row[self.column:self.column + count]
        elif command == "@":
            row[self.column:self.column] = " " * count
        elif command not in "mhl" and command:
            raise AssertionError(f"unknown command {parameters}{command}")

    def lines(self):
        return ["".join(row).rstrip() for row in self.rows]

    def __str__(self):
        return "\n".join(self.lines())


class Terminal:
    """Waits for what is expected, never for time to pass."""

    def __init__(self, arguments, env, columns=80, rows=24):
        self.master, slave = pty.openpty()
        self.resize(columns, rows)
        self.screen = Screen(columns)
        self.decoder = codecs.getincrementaldecoder("utf-8")()
        self.raw = b""
        self.seen = (0, 0)  # row and column after what was expected last
        self.process = subprocess.Popen(arguments, stdin=slave, stdout=slave, stderr=slave, env=env,
                                        start_new_session=True,
                                        preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        os.close(slave)

    def resize(self, columns, rows=24):
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def send(self, text):
        data = text.encode()
        while data:
            self.read(0)
            data = data[os.write(self.master, data[:512]):]

    def read(self, timeout):
        """False when nothing came in time, or the program has ended."""
        if not select.select([self.master], [], [], timeout)[0]:
            return False
        try:
            data = os.read(self.master, 65536)
        except OSError:
            return False
        self.raw += data
        self.screen.write(self.decoder.decode(data))
        return bool(data)

    def wait(self, holds, what, pause=HANG):
        """Until it holds of the screen; looks when that changes, and after the pause."""
        end = time.monotonic() + HANG
        while not holds(self.screen):
            if time.monotonic() > end:
                raise AssertionError(f"{what} did not come; the screen:\n{self.screen}\n{self.raw[-2000:]!r}")
            self.read(max(0, min(pause, end - time.monotonic())))

    def work(self, seconds):
        """Until the program has kept a processor busy for so long: it is in the middle of code that does not end."""
        def used():
            fields = Path(f"/proc/{self.process.pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
            return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")  # user and system time
        enough = used() + seconds
        self.wait(lambda _: used() >= enough, "work", pause=0.05)

    def expect(self, pattern):
        """Until the screen has a text after what was expected before; the match."""
        found = []
        row, column = self.seen

        def holds(screen):
            lines = screen.lines()
            text = "\n".join([lines[row].ljust(column)[column:], *lines[row + 1:]])
            if match := re.compile(pattern, re.MULTILINE).search(text):
                found[:] = [match, text[:match.end()]]
            return found
        self.wait(holds, f"/{pattern}/")
        match, text = found
        self.seen = (row + text.count("\n"), len(text) - text.rfind("\n") - 1 + (0 if "\n" in text else column))
        return match

    def line(self, text):
        """Until the cursor stands after this text, in its row."""
        self.wait(lambda screen: screen.lines()[screen.row] == text.rstrip() and screen.column == len(text), f"{text!r}")

    def close(self):
        """The exit code."""
        try:
            while self.read(HANG):
                pass
            return self.process.wait(HANG)
        finally:
            os.close(self.master)

    def kill(self):
        self.process.kill()
        self.process.wait()
