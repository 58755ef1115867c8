"""The subcommand `describe`: what is shown of a class in its three forms, agreement with the queries, errors."""
import json
import random
import re
import signal
import subprocess
import time
import unittest

from Command import COMMAND, HANG, SOURCE, CommandTest, environment, pauses, run

LEVELS = ["public", "protected", "private", "immutable", "listed", "constant"]

TOP_TEXT = """\
rig.Top
  rig.Left
    rig.Base
  rig.Right
    rig.Base

properties of rig.Top
  Size   double  2 x :  public, write: private  dependent; checked by: mustBePositive
  Level  double         public                  values: 1, 2

properties of rig.Base
  Shared  public

methods of rig.Top
  Top    public  constructor
  start  public
  make   public  static
  plus   public  operator

methods of rig.Base
  run  public
"""

TOP_DOT = """\
digraph "rig.Top" {
  rankdir=BT;
  node [shape=record];
  edge [arrowhead=empty];
  class0 [label="{rig.Top|Size: double 2 x :\\lLevel: double\\l|Top()\\lstart()\\lmake()\\lplus()\\l}"];
  class1 [label="{rig.Left}"];
  class2 [label="{rig.Base|Shared\\l|run()\\l}"];
  class3 [label="{rig.Right}"];
  class0 -> class1;
  class0 -> class3;
  class1 -> class2;
  class3 -> class2;
}
"""

# (class, options, {name of a class that shows something: (its properties, its methods)})
MEMBERS = [
    ("rig.Top", [], {"rig.Top": ("Size Level", "Top start make plus"), "rig.Base": ("Shared", "run")}),
    ("rig.Top", ["--hidden"],
     {"rig.Top": ("Size Level Inner", "Top start make plus vent"), "rig.Base": ("Shared", "run vent"),
      "rig.Right": ("Shared", "")}),
    ("rig.Top", ["--access", "private"], {"rig.Top": ("Size Secret", "secret")}),
    ("rig.Left", ["--access", "all"], {"rig.Base": ("Shared Guarded", "run vent guard")}),
    ("rig.Base", ["--access", "private,listed"], {"rig.Base": ("Guarded Low", "guard low")}),
    ("rig.Base", ["--access", "private", "--access", "listed"], {"rig.Base": ("Guarded Low", "guard low")}),
    ("lab.OldPump", ["--access", "constant"], {"lab.Pump": ("MaxFlow", "")}),
    ("core:lab.Pump", ["--access", "constant"], {"lab.Pump": ("MaxFlow", "")}),
    ("lab.Pump", ["--access", "private"], {}),
    ("lab.Broken", ["--access", "all"], {}),
    ("lab.Mode", [], {}),
]


class DescribeTest(CommandTest):
    def describe(self, name, *options, snapshot=None):
        return run("describe", name, "--snapshot", snapshot or self.session, *options)

    def text(self, name, *options, snapshot=None):
        done = self.describe(name, *options, snapshot=snapshot)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode()

    def classes(self, name, *options, snapshot=None):
        text = self.text(name, "--json", *options, snapshot=snapshot)
        self.assertEqual(text.count("\n"), 1)
        answer = json.loads(text)
        self.assertEqual(answer.keys(), {"classes"})
        return answer["classes"]

    def test_text(self):
        self.assertEqual(self.text("rig.Top"), TOP_TEXT)
        self.assertEqual(self.text("lab.Mode"),
                         "lab.Mode\n\nmembers of the enumeration lab.Mode\n  Idle\n  Running\n  Idle\n")
        self.assertEqual(self.text("lab.Broken"), "lab.Broken\n\nlab.Broken is broken: its own members are not known\n")
        self.assertEqual(self.text("lab.Empty"), "lab.Empty\n")
        self.assertTrue(self.text("lab.Pump").startswith("lab.Pump (core:lab.Pump)\n  lab.Device (core:lab.Device)\n"))

    def test_notes_tell_what_is_special(self):
        lines = [re.split("  +", line.strip()) for line in self.text("rig.Top", "--access", "all", "--hidden").splitlines()]
        for line in (["Secret", "private", "reading runs code"], ["Inner", "public", "hidden"],
                     ["Shared", "public", "hidden"], ["vent", "public", "hidden"], ["secret", "private"]):
            self.assertIn(line, lines)

    def test_dot(self):
        self.assertEqual(self.text("rig.Top", "--dot"), TOP_DOT)
        odd = {"format": 1, "classes": [{"name": 'a<b>|{"}\\', "properties": ["p\\l|", "tab\there"]}]}
        self.assertIn('[label="{a\\<b\\>\\|\\{\\"\\}\\\\|p\\\\l\\|\\ltab\ufffdhere\\l}"]',
                      self.text('a<b>|{"}\\', "--dot", snapshot=self.snapshot(odd, "odd.json")))

    def test_members_at_each_access_level(self):
        for name, options, expected in MEMBERS:
            with self.subTest(name=name, options=options):
                found = {described["name"]: tuple(" ".join(member["name"] for member in described[kind])
                                                  for kind in ("properties", "methods"))
                         for described in self.classes(name, *options)}
                self.assertEqual({name: members for name, members in found.items() if any(members)}, expected)

    def test_json_holds_every_field(self):
        top, left, base, right = self.classes("rig.Top", "--access", "all", "--hidden")
        self.assertEqual([top["superclasses"], left["superclasses"], base["superclasses"], right["superclasses"]],
                         [["rig.Left", "rig.Right"], ["rig.Base"], [], ["rig.Base"]])
        self.assertEqual(list(top), ["name", "classId", "isValid", "isEnumeration", "superclasses",
                                     "enumerationMembers", "properties", "methods"])
        self.assertEqual(top["properties"][0], {
            "name": "Size", "type": "double", "sizeStrings": ["2", ":"], "validationFunctions": ["mustBePositive"],
            "isDependent": True, "hasCustomGetter": False, "optimizedPropertyFlag": True, "possibleValuesKind": 0,
            "possibleValues": [], "readAccess": "public", "writeAccess": "private", "isHidden": False})
        self.assertEqual(top["methods"][3], {
            "name": "plus", "definingClass": "rig.Top", "isStatic": False, "access": "public", "isHidden": False,
            "isConstructor": False, "isOperatorOverload": True})
        by_name = {member["name"]: member for member in top["properties"] + top["methods"]}
        self.assertEqual((by_name["Secret"]["readAccess"], by_name["Secret"]["hasCustomGetter"],
                          by_name["Inner"]["isHidden"], by_name["Top"]["isConstructor"], by_name["make"]["isStatic"]),
                         ("private", True, True, True, True))
        (mode,) = self.classes("lab.Mode")
        self.assertEqual((mode["isEnumeration"], mode["enumerationMembers"]), (True, ["Idle", "Running", "Idle"]))
        (broken,) = self.classes("lab.Broken")
        self.assertEqual((broken["isValid"], broken["isEnumeration"]), (False, False))
        self.assertEqual([described["classId"] for described in self.classes("lab.Pump")],
                         ["core:lab.Pump", "core:lab.Device"])

    def test_every_level_has_its_word(self):
        levels = {"format": 1, "classes": [{"name": "C", "properties": [
            {"name": get + put, "get": get, "set": put} for get in LEVELS for put in LEVELS],
            "methods": [{"name": level, "access": level} for level in LEVELS]}]}
        (described,) = self.classes("C", "--access", "all", snapshot=self.snapshot(levels, "levels.json"))
        self.assertEqual([(member["readAccess"], member["writeAccess"]) for member in described["properties"]],
                         [(get, put) for get in LEVELS for put in LEVELS])
        self.assertEqual([member["access"] for member in described["methods"]], LEVELS)

    def random_world(self, chance):
        """Classes whose few members meet often. The type of a property tells its class."""
        def members(kind, name):
            picked = chance.sample(["a", "b", "c"], chance.randint(0, 3))
            return [{"name": member, "hidden": chance.random() < 0.3, "access": chance.choice(LEVELS[:3]),
                     **({"type": name} if kind == "properties" else {})} for member in picked]
        names = [f"C{number}" for number in range(5)]
        return names, {"format": 1, "classes": [
            {"name": name, "superclasses": chance.sample(names[:at], chance.randint(0, min(at, 2))),
             **{kind: members(kind, name) for kind in ("properties", "methods")}} for at, name in enumerate(names)]}

    def answers(self, snapshot, requests):
        stdin = "".join(json.dumps(request) + "\n" for request in requests).encode()
        done = run("query", "--snapshot", snapshot, stdin=stdin)
        return [json.loads(line)["result"] for line in done.stdout.splitlines()[1:]]

    def test_what_is_shown_is_what_the_queries_offer(self):
        seed = random.randrange(2**32)
        chance = random.Random(seed)
        for number in range(25):
            names, world = self.random_world(chance)
            snapshot = self.snapshot(world, "world.json")
            levels, hidden = chance.choice([[0], [1], [0, 1], [0, 1, 2], [2]]), chance.random() < 0.5
            options = ["--access", ",".join(LEVELS[level] for level in levels)] + ["--hidden"] * hidden
            requests = [{"op": op, "record": {"id": name}, "options": {key: levels, "includeHidden": hidden, **more}}
                        for name in names for op, key, more in (("getProperties", "accessLevels", {}),
                                                                ("getMethods", "access", {"context": "any"}))]
            offered = self.answers(snapshot, requests)
            for at, name in enumerate(names):
                with self.subTest(seed=seed, number=number, name=name, options=options):
                    classes = self.classes(name, *options, snapshot=snapshot)
                    self.assertEqual({(described["name"], member["name"], member["type"])
                                      for described in classes for member in described["properties"]},
                                     {(member["type"], member["name"], member["type"]) for member in offered[2 * at]})
                    self.assertEqual({(described["name"], member["name"])
                                      for described in classes for member in described["methods"]},
                                     {(member["definingClass"], member["name"]) for member in offered[2 * at + 1]})

    def test_deep_and_wide_trees(self):
        chain = [{"name": f"C{at}", "superclasses": [f"C{at - 1}"] if at else [], "methods": [f"m{at}"]}
                 for at in range(500)]
        lattice = [{"name": "D0", "properties": ["p"]}]
        for at in range(1, 13):
            lattice += [{"name": f"{side}{at}", "superclasses": [f"D{at - 1}"]} for side in "LR"]
            lattice += [{"name": f"D{at}", "superclasses": [f"L{at}", f"R{at}"]}]
        big = self.snapshot({"format": 1, "classes": chain + lattice}, "big.json")
        self.assertEqual([described["methods"][0]["name"] for described in self.classes("C499", snapshot=big)],
                         [f"m{at}" for at in range(499, -1, -1)])
        self.assertEqual(len(self.classes("D12", snapshot=big)), 37)
        text = self.text("D12", snapshot=big)
        self.assertEqual((text.count("properties of"), text.count("(see above)")), (1, 11))

    def test_errors(self):
        for name in ("", ".", "Pump", "pump", "lab", "no.such", "lab.Pump.", "x" * 100000, "gr\u00fcn"):
            with self.subTest(name=name[:20]):
                done = self.describe(name)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertTrue(done.stderr.endswith(b" [describe.unknown-class]\n"), done.stderr[-100:])
                done = self.describe(name, "--json")
                self.assertEqual((done.returncode, done.stderr), (1, b""))
                self.assertEqual(json.loads(done.stdout)["error"]["code"], "describe.unknown-class")
        self.assertEqual(self.describe("no.such", "--dot").stdout, b"")

    def test_a_failing_class_has_no_own_members(self):
        (nameless,) = self.classes("lab.Nameless", "--access", "all")
        self.assertEqual((nameless["isValid"], nameless["properties"]), (True, []))

    def test_bad_snapshots(self):
        self.check_bad_snapshots("describe", "lab.Pump")

    def test_usage(self):
        self.check_usage(["describe"], ["describe", "lab.Pump"], ["describe", "--snapshot", self.session],
                         ["describe", "lab.Pump", "--snapshot", self.session, "--json", "--dot"],
                         ["describe", "lab.Pump", "--snapshot", self.session, "--access", "secret"],
                         ["describe", "lab.Pump", "--snapshot", self.session, "--access"],
                         ["describe", "lab.Pump", "more", "--snapshot", self.session])
        self.assertIn(b"--access", run("describe", "--help").stdout)

    def test_an_interrupt(self):
        # Each class looks at the members of all below it: describing takes far longer than loading.
        chain = {"format": 1, "classes": [{"name": f"C{at}", "superclasses": [f"C{at - 1}"] if at else [],
                                           "properties": [f"p{at}_{number}" for number in range(200)]}
                                          for at in range(60)]}
        big = self.snapshot(chain, "chain.json")
        self.assertEqual(len(self.classes("C59", snapshot=big)), 60)
        for pause in pauses():
            with subprocess.Popen([COMMAND, "describe", "C59", "--json", "--snapshot", big], stdout=subprocess.PIPE,
                                  env=environment()) as process:
                time.sleep(pause)
                process.send_signal(signal.SIGINT)
                output, _ = process.communicate(timeout=HANG)
            if process.returncode == 130 and output:
                self.assertEqual(json.loads(output)["error"]["code"], "describe.interrupted")
                return
        self.fail("no description was interrupted")

    def test_an_answer_that_cannot_be_written(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([COMMAND, "describe", "rig.Top", "--snapshot", self.session], stdout=full,
                                  stderr=subprocess.PIPE, timeout=HANG, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"[command.output]", done.stderr)

    def test_the_examples_in_the_documentation(self):
        page = (SOURCE / "docs/command.md").read_text(encoding="utf-8")
        examples = re.findall(r"^\$ contextdata (describe .*)\n((?:(?!\$|```).*\n)+)", page, re.MULTILINE)
        self.assertGreaterEqual(len(examples), 2)
        for command, expected in examples:
            arguments = command.replace("examples/lab.json", str(SOURCE / "examples/lab.json")).split()
            self.assertEqual(run(*arguments).stdout.decode(), expected, command)
        for code in ("describe.unknown-class", "describe.failed", "describe.interrupted"):
            self.assertIn(f"`{code}`", page)


if __name__ == "__main__":
    unittest.main()
