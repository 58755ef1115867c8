"""The subcommand `serve`: short exchanges from files, and what needs files, signals and time."""
import json
import re
import unittest

from Command import SOURCE, CommandTest
from LanguageClient import PATIENCE, LanguageClient, frame

CASES = sorted((SOURCE / "tests/clients/serve").glob("*.txt"))


def unescaped(text):
    return text.encode("latin-1", "backslashreplace").decode("unicode_escape")


def fits(wanted, given):
    """Objects may have more keys than wanted, lists no more elements."""
    if isinstance(wanted, dict):
        return isinstance(given, dict) and all(key in given and fits(wanted[key], given[key]) for key in wanted)
    if isinstance(wanted, list):
        return isinstance(given, list) and len(wanted) == len(given) and all(map(fits, wanted, given))
    return wanted == given and isinstance(wanted, bool) == isinstance(given, bool)


def cases_in(file):
    """(name, [line]) of each exchange of a file; the first one's comment says how they are written."""
    for block in re.split(r"\n\s*\n", file.read_text(encoding="utf-8").strip()):
        head, *lines = [line for line in block.splitlines() if not line.startswith("#")] or [""]
        if head:
            yield head, lines


class Exchange:
    """Plays the lines of one case."""

    def __init__(self, test, client):
        self.test, self.client = test, client

    def play(self, line):
        word, _, rest = line.strip().partition(" ")
        getattr(self, {"->": "send", "<-": "take"}.get(word, word))(rest)

    def start(self, rest):
        self.client.start(**json.loads(rest or "{}"))

    def open(self, rest):
        name, _, text = rest.partition(" ")
        self.client.open(f"file:///{name}", unescaped(text))

    def send(self, rest):
        self.client.send(json.loads(rest))

    def bytes(self, rest):
        self.client.send_bytes(unescaped(rest).encode("latin-1"))

    def body(self, rest):
        self.client.send_bytes(frame(unescaped(rest).encode("latin-1")))

    def take(self, rest):
        wanted = json.loads(rest)
        key = "method" if "method" in wanted else "id"
        given = self.client.take(lambda message: key in message and message[key] == wanted[key]
                                 and ("method" in wanted or "method" not in message))
        self.test.assertTrue(fits(wanted, given), f"{json.dumps(given)}\ndoes not fit\n{json.dumps(wanted)}")

    def close(self, _):
        self.client.process.stdin.close()

    def end(self, rest):
        """The exit code, and what standard error holds; no message is left over."""
        code, _, text = rest.partition(" ")
        self.test.assertEqual(self.client.end(), int(code), self.client.errors)
        last = self.client.arrived.get(timeout=PATIENCE)
        self.test.assertIsInstance(last, EOFError, last)
        self.test.assertEqual(self.client.kept, [])
        for thread in self.client.threads:
            thread.join()
        self.test.assertIn(text.encode(), self.client.errors)
        if not text:
            self.test.assertEqual(self.client.errors, b"")


class ServeTest(CommandTest):
    def serve(self, snapshot=None, *options):
        client = LanguageClient(snapshot or self.session, *options)
        self.addCleanup(client.__exit__)
        return client

    def test_exchanges(self):
        played = 0
        for file in CASES:
            for name, lines in cases_in(file):
                with self.subTest(file=file.stem, case=name), LanguageClient(self.session) as client:
                    exchange = Exchange(self, client)
                    for line in lines:
                        exchange.play(line)
                    played += 1
        self.assertGreater(played, 20)


if __name__ == "__main__":
    unittest.main()
