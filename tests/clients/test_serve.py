"""The subcommand `serve`: short exchanges from files, and what needs files, signals and time."""
import json
import os
import subprocess
import time
import unittest
from pathlib import Path

import Cases
from Command import COMMAND, HANG, SOURCE, CommandTest, environment, run
from LanguageClient import LanguageClient, frame

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
    """(name, [line]) of each exchange of a file; Exchange has the words that lines begin with."""
    for _, (head, *lines) in Cases.blocks(file):
        yield head, lines


def utf16_length(text):
    return len(text.encode("utf-16-le", "surrogatepass")) // 2


def uri_of(settings):
    """A file whose folders say what a place says."""
    if "class" in settings:
        *packages, name = settings["class"].split(".")
        return "file:///" + "".join(f"+{package}/" for package in packages) + f"%40{name}/any.k"
    *packages, name = settings.get("in", "").split(".")
    return "file:///" + "".join(f"+{package}/" for package in packages) + f"{name}.k" if name else "untitled:case"


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
        last = self.client.arrived.get(timeout=HANG)
        self.test.assertIsInstance(last, EOFError, last)
        self.test.assertEqual(self.client.kept, [])
        for thread in self.client.threads:
            thread.join()
        self.test.assertIn(text.encode(), self.client.errors)
        if not text:
            self.test.assertEqual(self.client.errors, b"")


class ServeTest(CommandTest):
    def serve(self, snapshot=None):
        client = LanguageClient(snapshot or self.session)
        self.addCleanup(client.__exit__)
        return client

    def labels(self, client, text):
        client.open("untitled:labels", text)
        items = client.ask("textDocument/completion", {"textDocument": {"uri": "untitled:labels"},
                                                       "position": {"line": 0, "character": len(text)}})["items"]
        return [item["label"] for item in items]

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

    def test_shared_cases(self):
        """The server offers what the command offers."""
        cases = Cases.read(SOURCE / "tests/cases/completion.txt")
        self.assertGreater(len(cases), 90)
        clients = {}
        for case in cases:
            with self.subTest(case.place, text=case.text):
                settings = {name: value[0] if value else True for name, *value in case.settings}
                options = {key: int(value) if key == "limit" else value for key, value in settings.items()
                           if key in ("code", "limit", "hidden")}
                key = json.dumps(options)
                if key not in clients:
                    clients[key] = self.serve(str(SOURCE / "tests/cases/world.json"))
                    clients[key].start(options)
                self.assertEqual(*self.played(case, clients[key], uri_of(settings)))

    def played(self, case, client, uri):
        """What completion offers, as the rows of the case; what the case expects."""
        client.open(uri, case.text)
        before = case.text[:case.cursor]
        line = before.count("\n")
        items = client.ask("textDocument/completion", {
            "textDocument": {"uri": uri},
            "position": {"line": line, "character": utf16_length(before[before.rfind("\n") + 1:])}})
        rows = [tuple(part for part in (item["label"], *item["detail"].split(": ", 1))) for item in items["items"]]
        order = [item["sortText"] for item in items["items"]]
        self.assertEqual(order, sorted(set(order)))
        self.assertEqual(items["isIncomplete"], case.status == "limited")
        if case.status not in ("complete", "limited"):
            message = "printed meanwhile: "
            while message.startswith("printed meanwhile: "):
                message = client.take_notification("window/logMessage")["message"]
            self.assertIn(f"completion: {case.status}: ", message)
        logged = [message["params"]["message"] for message in client.kept if message["method"] == "window/logMessage"]
        self.assertEqual([text for text in logged if not text.startswith("printed meanwhile: ")], [])
        return rows, case.rows

    def test_a_snapshot_that_changes(self):
        path = self.snapshot({"format": 1, "workspace": [{"name": "one", "value": 1}]}, "a b.json")
        uri = Path(path).as_uri()
        client = self.serve(path)
        client.start()
        self.assertEqual(self.labels(client, "o"), ["one", "ones"])

        self.snapshot('{"format": 1, "works', "a b.json")
        failure = client.take_notification("textDocument/publishDiagnostics", lambda given: given["uri"] == uri)
        self.assertEqual([(each["code"], each["source"]) for each in failure["diagnostics"]],
                         [("snapshot.truncated", "contextdata")])
        self.assertIn("[snapshot.truncated]", client.take_notification("window/showMessage")["message"])
        self.assertEqual(self.labels(client, "o"), ["one", "ones"])

        Path(path).unlink()
        failure = client.take_notification("textDocument/publishDiagnostics", lambda given: given["uri"] == uri)
        self.assertEqual(failure["diagnostics"][0]["code"], "snapshot.missing-file")
        self.assertEqual(self.labels(client, "o"), ["one", "ones"])

        other = self.snapshot({"format": 1, "workspace": [{"name": "other", "value": 2}]}, "other.json")
        Path(other).rename(path)
        good = client.take_notification("textDocument/publishDiagnostics", lambda given: given["uri"] == uri)
        self.assertEqual(good["diagnostics"], [])
        self.assertEqual(self.labels(client, "o"), ["other", "ones"])

    def test_a_snapshot_that_is_no_file_any_more(self):
        path = Path(self.snapshot({"format": 1, "workspace": [{"name": "one", "value": 1}]}, "one.json"))
        client = self.serve(str(path))
        client.start()

        def became(code):
            return client.take_notification("textDocument/publishDiagnostics", lambda given: given["uri"] == path.as_uri() and
                                            [each["code"] for each in given["diagnostics"]] == code)
        for make, remove, code in ((os.mkfifo, os.unlink, "snapshot.unreadable"), (os.mkdir, os.rmdir, "snapshot.directory"),
                                   (lambda place: os.symlink("/dev/zero", place), os.unlink, "snapshot.unreadable")):
            with self.subTest(code=code):
                other = path.with_name("other")
                make(other)
                path.unlink()
                other.rename(path)
                became([code])
                self.assertEqual(self.labels(client, "o"), ["one", "ones"])
                remove(path)
                self.snapshot({"format": 1, "workspace": [{"name": "one", "value": 1}]}, path.name)
                became([])

    def test_code_that_is_no_file(self):
        folder = self.folder / "code"
        folder.mkdir()
        os.mkfifo(folder / "pipe.k")
        (folder / "inner.k").mkdir()
        (folder / "zero.k").symlink_to("/dev/zero")
        client = self.serve(self.snapshot({"format": 1, "currentFolder": str(folder), "workspace": [
            {"name": "c", "value": {"object": "C"}}], "classes": [{"name": "C", "properties": [
                {"name": name, "getter": name} for name in ("pipe", "inner", "zero")]}]}, "code.json"))
        client.start({"code": "allowed"})
        for name in ("pipe", "inner", "zero"):
            with self.subTest(name=name):
                self.assertEqual(self.labels(client, f"c.{name}."), [])
                self.assertIn("[KORVAL:code:UnreadableFile]", client.take_notification("window/logMessage")["message"])
                # Whose own code it is, does not matter either.
                uri = (folder / f"{name}.k").as_uri()
                client.open(uri, "import lab.*\nc.pi")
                items = client.ask("textDocument/completion", {"textDocument": {"uri": uri}, "position": {"line": 1, "character": 4}})
                self.assertEqual([item["label"] for item in items["items"]], ["pipe"])

    def test_imports_of_an_open_file_instead_of_those_on_disk(self):
        folder = self.folder / "code"
        folder.mkdir()
        (folder / "helper.k").write_text("import lab.*", encoding="utf-8")
        client = self.serve(self.snapshot({"format": 1, "currentFolder": str(folder), "classes": [
            {"name": name, "members": ["On"], "enumeration": True} for name in ("lab.Mode", "rig.State")]}, "code.json"))
        client.start()
        uri = (folder / "helper.k").as_uri()
        for text, known in (("import lab.*", "Mode"), ("import rig.State", "State"), ("% import lab.*", "")):
            for name in ("Mode", "State"):
                with self.subTest(text=text, name=name):
                    client.open(uri, f"{text}\n{name}.")
                    where = {"textDocument": {"uri": uri}, "position": {"line": 1, "character": len(name) + 1}}
                    items = client.ask("textDocument/completion", where)["items"]
                    self.assertEqual([item["label"] for item in items], ["On"] if name == known else [])

    def endless(self):
        """A server that runs code, and the parameters of a completion that takes thousands of times what a request and its
        cancellation take, on every machine: each step towards the limit lists the members of an object."""
        getter = "while true, properties(obj); end"
        client = self.serve(self.snapshot({
            "format": 1, "classes": [{"name": "C", "properties": [{"name": "p", "getter": getter}]}],
            "workspace": [{"name": "c", "value": {"object": "C"}}]}))
        client.start({"code": "allowed"})
        client.open("untitled:a", "c.p.\nc.")
        return client, {"textDocument": {"uri": "untitled:a"}, "position": {"line": 0, "character": 4}}

    def test_cancellation(self):
        client, params = self.endless()
        for pause in (0.3, 0.05, 0.01, 0, 0, 0):
            running = client.begin("textDocument/completion", params)
            waiting = client.begin("textDocument/completion", params)
            behind = client.begin("textDocument/completion", {**params, "position": {"line": 1, "character": 2}})
            time.sleep(pause)  # for cancellations at different moments; they work at any
            client.notify("$/cancelRequest", {"id": waiting})
            client.notify("$/cancelRequest", {"id": running})
            client.notify("$/cancelRequest", {"id": "unknown"})
            for number in (running, waiting):
                self.assertEqual(client.take_response(number)["error"]["code"], -32800)
            self.assertEqual([item["label"] for item in client.take_response(behind)["result"]["items"]], ["p"])
            client.notify("$/cancelRequest", {"id": behind})

    def test_a_deadline(self):
        client, params = self.endless()
        # Settings are those of the beginning: another server.
        quick = self.serve(self.folder / "session.json")
        quick.start({"code": "allowed", "timeout": 50})
        quick.open("untitled:a", "c.p.")
        answer = quick.ask("textDocument/completion", params)
        self.assertEqual(answer, {"isIncomplete": True, "items": []})
        self.assertIn("timed-out", quick.take_notification("window/logMessage")["message"])
        client.notify("exit")

    def test_changes_do_not_wait_for_diagnostics(self):
        client = self.serve()
        client.start(textDocument={"publishDiagnostics": {"versionSupport": True}})
        client.open("file:///a.k", "x" * 1000000 + " = 1;")
        for version in range(2, 102):
            client.notify("textDocument/didChange", {
                "textDocument": {"uri": "file:///a.k", "version": version},
                "contentChanges": [{"range": {"start": {"line": 0, "character": 1000000},
                                              "end": {"line": 0, "character": 1000000}}, "text": "y"}]})
        while client.take_notification("textDocument/publishDiagnostics")["version"] != 101:
            pass
        symbols = client.ask("textDocument/documentSymbol", {"textDocument": {"uri": "file:///a.k"}})
        self.assertEqual(symbols[0]["name"], "x" * 1000000 + "y" * 100)

    def test_the_end_of_the_client(self):
        with subprocess.Popen(["sleep", "600"]) as parent:
            client = self.serve()
            client.ask("initialize", {"processId": parent.pid, "capabilities": {}})
            parent.kill()
        self.assertEqual(client.process.wait(HANG), 1)
        for thread in client.threads:
            thread.join()
        self.assertIn(b"[serve.broken-input]", client.errors)

    def test_a_client_that_does_not_listen(self):
        with subprocess.Popen([COMMAND, "serve", "--snapshot", self.session], stdin=subprocess.PIPE, stderr=subprocess.PIPE,
                              stdout=subprocess.PIPE, env=environment()) as process:
            process.stdout.close()
            process.stdin.write(frame({"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {"capabilities": {}}}))
            process.stdin.flush()
            self.assertEqual(process.wait(HANG), 1)
            self.assertIn(b"[command.output]", process.stderr.read())

    def test_bad_snapshots(self):
        for file, code in self.bad_snapshots():
            with self.subTest(code=code):
                done = run("serve", "--snapshot", file)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertTrue(done.stderr.endswith(f" [{code}]\n".encode()), done.stderr)

    def test_usage(self):
        for arguments in (["serve"], ["serve", "--snapshot", self.session, "--port", "1"], ["serve", self.session]):
            done = run(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, b""), arguments)
            self.assertIn(b"[command.usage]", done.stderr, arguments)
        self.assertEqual(run("serve", "--stdio", "--snapshot", self.session).returncode, 1)


if __name__ == "__main__":
    unittest.main()
