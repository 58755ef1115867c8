"""Runs the contextdata command the way its users do."""
import json
import os
import re
import resource
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

COMMAND = os.environ["CONTEXTDATA_COMMAND"]
SOURCE = Path(os.environ["CONTEXTDATA_SOURCE"])
HANG = 600  # seconds: nothing takes that long on any machine, so whatever waits in vain for them waits for ever

# A session with one of everything that the clients meet.
SESSION = {
    "format": 1,
    "namespaces": ["idle.space"],
    "classes": [
        {"name": "lab.Device", "component": "core",
         "properties": ["Serial", {"name": "Secret", "access": "private"}],
         "methods": ["Device", "reset", {"name": "list", "static": True}]},
        {"name": "lab.Pump", "component": "core", "aliases": ["lab.OldPump"], "superclasses": ["lab.Device"],
         "flag": True,
         "properties": ["Flow", {"name": "MaxFlow", "constant": True}, "Serial", {"name": "Inner", "hidden": True}],
         "methods": ["Pump", "start", "stop", {"name": "create", "static": True}, "plus", "subsref"]},
        {"name": "lab.Mode", "enumeration": True,
         "members": ["Idle", "Running", {"name": "Debug", "hidden": True}, "Idle"]},
        {"name": "lab.Broken", "broken": True, "properties": ["P"], "methods": ["m"]},
        {"name": "lab.Nameless", "properties": ["First", {"name": None}, "Last"]},
        {"name": "lab.Empty"},
        {"name": "rig.Base", "attributeNames": [{"names": ["One"], "further": ["Uno"]}, {"names": ["Two"]},
                                                {"names": []}, {"names": ["Four"]}],
         "properties": ["Shared", {"name": "Guarded", "set": "private", "get": ["rig.Friend"]},
                        {"name": "Low", "access": "private"}],
         "methods": ["Base", "run", "vent", {"name": "guard", "access": ["rig.Friend"]},
                     {"name": "low", "access": "private"}]},
        {"name": "rig.Left", "superclasses": ["rig.Base"]},
        {"name": "rig.Right", "superclasses": ["rig.Base"], "properties": [{"name": "Shared", "hidden": True}]},
        {"name": "rig.Top", "superclasses": ["rig.Left", "rig.Right"],
         "attributeNames": [{"names": ["One", "Top"]}, {"names": []}, {"names": []}, {"names": []}],
         "properties": [
             {"name": "Size", "validation": {"class": "double", "size": [2, ":"], "functions": ["mustBePositive"]},
              "dependent": True, "set": "private"},
             {"name": "Level", "type": "double", "values": [1, 2.9]},
             {"name": "Inner", "hidden": True},
             {"name": "Secret", "access": "private", "optimized": {"customGetter": True}}],
         "methods": ["Top", "start", {"name": "make", "static": True}, "plus", {"name": "vent", "hidden": True},
                     {"name": "secret", "access": "private"}]},
        {"name": "rig.Friend"},
        {"name": "rig.Aide", "superclasses": ["rig.Friend"]},
        {"name": "kit.Tool", "precedence": ["kit.inner.Bit"],
         "properties": [{"name": "Age", "dependent": True, "getter": "40 + 2"}, {"name": "Kind", "value": "saw"}],
         "methods": ["cut", {"name": "fieldnames", "code": "{'Tip', 'Haft'}"}]},
        {"name": "kit.inner.Bit"},
        {"name": "Odd", "properties": ["rate-now", "plain", {"name": "max-rate", "constant": True, "value": 9}],
         "methods": [{"name": "re-set", "static": True}]},
    ],
    "functions": [{"name": "tune", "imports": ["lab.*"]}, {"name": "bare"},
                  {"name": "kit.clean", "arguments": {"inputs": [{"name": "dirt", "class": "double", "size": [1, ":"]}]}}],
    "packages": [{"name": "signal", "classes": ["Wave"], "functions": ["smooth"]}],
    "foreignClasses": [{"name": "far.Away", "members": ["reach"]}],
    "builtins": ["sum", "numel"],
    "workspace": [
        {"name": "pump", "value": {"object": "lab.Pump"}},
        {"name": "broken", "value": {"object": "lab.Broken"}},
        {"name": "nameless", "value": {"object": "lab.Nameless"}},
        {"name": "empty", "value": {"object": "lab.Empty"}},
        {"name": "top", "value": {"object": "rig.Top"}},
        {"name": "n", "value": 3},
        {"name": "tool", "value": {"object": "kit.Tool"}},
        {"name": "s", "value": {"struct": {"a": {"struct": {"b": 7}}, "t": "text"}}},
        {"name": "texts", "value": {"cell": ["one", {"string": "two"}]}},
        {"name": "holes", "value": {"cell": [None, 1]}},
        {"name": "far", "value": {"opaque": "far.Away", "fields": {"x": 1},
                                  "methods": {"fieldnames": {"cell": ["x", "y"]}, "methods": {"cell": ["go", "plus"]}}}},
    ],
    "scopes": {"debugger": {"focus": "lost", "first": 3, "second": 4}},
}


def environment():
    return {**os.environ, "LC_ALL": "C"}


def run(*arguments, stdin=b""):
    """The finished process, its output as bytes."""
    return subprocess.run([COMMAND, *arguments], input=stdin, capture_output=True, timeout=HANG, check=False,
                          env=environment())


def cpu_seconds(*arguments):
    """What the command takes of a processor to answer with exit code 0, whatever else the machine does."""
    def used():
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        return usage.ru_utime + usage.ru_stime
    before = used()
    run(*arguments).check_returncode()
    return used() - before


def pauses():
    """Ever longer ones, before a signal that must arrive while something runs: on each machine some of them are right."""
    pause = 0.001
    while pause < HANG:
        yield pause
        pause *= 1.25


class CommandTest(unittest.TestCase):
    """A test with a folder for its files, among them a snapshot of SESSION."""
    maxDiff = None

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.session = self.snapshot(SESSION)

    def snapshot(self, session, name="session.json"):
        """The path of a new file that holds the session, or text in its place."""
        path = self.folder / name
        path.write_text(session if isinstance(session, str) else json.dumps(session), encoding="utf-8")
        return str(path)

    def bad_snapshots(self):
        """(file, code of the error): everything that is no snapshot."""
        whole = json.dumps(SESSION)
        unreadable = self.folder / "loop.json"
        unreadable.symlink_to(unreadable)
        pipe = self.folder / "pipe.json"
        if not pipe.exists():
            os.mkfifo(pipe)
        cycle = {"format": 1, "classes": [{"name": "A", "superclasses": ["B"]}, {"name": "B", "superclasses": ["A"]}]}
        return [
            (str(self.folder / "missing.json"), "snapshot.missing-file"),
            (str(self.folder), "snapshot.directory"),
            (str(unreadable), "snapshot.unreadable"),
            (str(pipe), "snapshot.unreadable"),
            ("/dev/zero", "snapshot.unreadable"),
            (self.snapshot("", "empty.json"), "snapshot.empty"),
            (self.snapshot(whole[:len(whole) // 2], "half.json"), "snapshot.truncated"),
            (self.snapshot("[]", "list.json"), "snapshot.wrong-type"),
            (self.snapshot('{"format": 1, "format": 1}', "twice.json"), "snapshot.duplicate-key"),
            (self.snapshot('{"format": 1, "klasses": []}', "unknown.json"), "snapshot.unknown-key"),
            (self.snapshot(cycle, "cycle.json"), "snapshot.superclass-cycle"),
            (self.snapshot({"format": 1, "scopes": {"executing": "gone"}}, "scope.json"), "snapshot.unknown-function"),
        ]

    def check_bad_snapshots(self, *arguments, stdin=b""):
        """The command says in one line what is wrong with each, and with --json, where it has that, in one object."""
        for file, code in self.bad_snapshots():
            with self.subTest(code=code):
                done = run(*arguments, "--snapshot", file, stdin=stdin)
                self.assertEqual((done.returncode, done.stdout, done.stderr.count(b"\n")), (1, b"", 1))
                self.assertRegex(done.stderr.decode(), rf"^contextdata: {re.escape(file)}: .* \[{re.escape(code)}\]\n$")
                if not stdin:
                    done = run(*arguments, "--json", "--snapshot", file)
                    error = json.loads(done.stdout)["error"]
                    self.assertEqual((done.returncode, done.stderr, done.stdout.count(b"\n")), (1, b"", 1))
                    self.assertEqual((error["code"], error["file"]), (code, file))

    def check_usage(self, *wrong):
        """Each list of arguments is refused."""
        for arguments in wrong:
            done = run(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, b""), arguments)
            self.assertIn(b"[command.usage]", done.stderr, arguments)
