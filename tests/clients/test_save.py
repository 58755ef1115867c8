"""A saved session: its file, and that the reloaded one answers every query as the live one does."""
import itertools
import json
import os
import random
import re
import subprocess
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from Command import HANG, SESSION, SOURCE, CommandTest, environment, run
from test_schema import EVERYTHING, VALIDATOR, without_comments

SAVE = os.environ["CONTEXTDATA_SAVE"]
GENERATED = 8
MOST = 12  # requests of an operation about each world; each world draws others
LEVELS = ["public", "protected", "private", "immutable", "listed", "constant"]


def world_of(text):
    """A world from the text of a fixture. Code that never ends would run into the limit of steps at every question."""
    return json.loads(without_comments(text.replace("while true, end", "0")))


def fixtures():
    """(name, world): every world that is a file of the examples or of the tests, and those of the clients' tests."""
    for file in sorted([*(SOURCE / "examples").glob("*.json"), *(SOURCE / "tests").glob("*/*.json")]):
        yield file.name, world_of(file.read_text(encoding="utf-8"))
    yield "session", SESSION
    yield "everything", EVERYTHING


def generated(seed):
    """A world with some of everything, that a seed stands for."""
    chance = random.Random(seed)
    names = [f"{chance.choice(['', 'lab.', 'lab.inner.'])}C{at}" for at in range(chance.randint(2, 7))]

    def flags(*keys):
        return {key: True for key in keys if chance.random() < 0.2}

    def access():
        level = chance.choice(LEVELS[:4])
        return chance.choice([level, level, [chance.choice(names)], {"level": level, "classes": [chance.choice(names)]}])

    def value(depth=0):
        simple = [chance.choice([0.5, -3, "NaN", "Inf"]), True, "t\u00e4xt", [], [1, 2.5, "-Inf"], {"string": None}]
        nested = [] if depth > 2 else [
            {"cell": [value(depth + 1), None]}, {"struct": {"a": value(depth + 1), "b": value(depth + 1)}},
            {"structs": [{"f": value(depth + 1)}, {"f": value(depth + 1)}], "size": [2, 1]}, {"tall": value(depth + 1)},
            {"opaque": "far.Thing", "fields": {"x": value(depth + 1)},
             "methods": {"go": value(depth + 1), "methods": {"cell": ["go"]}, "fail": None},
             "dimensions": chance.choice(["full", "compact", "lazy"])}]
        others = [{"object": chance.choice(names)}, {"class": chance.choice(names)}, {"handle": "lab.tune"},
                  {"strings": ["a", None]}, {"char": "abcd", "size": [2, 2]}, {"foreign": "far.Kind", "member": "Fast"},
                  {"double": [1, 2, 3, 4], "size": [2, 2]}, {"struct": {"a": 1}, "class": "Older"}]
        return chance.choice([if_number(one) for one in simple] + nested + others)

    def if_number(one):
        return [one] if one in ("NaN", "Inf") else one

    def prop(at):
        writing = chance.choice([{}, {"access": access()}, {"get": access(), "set": access()}, {"constant": True}])
        return {"name": f"p{at}", **writing, **flags("hidden", "dependent"),
                **chance.choice([{}, {"type": "double", "values": [1, 2]}, {"value": value()}, {"getter": "7"},
                                 {"validation": {"class": "double", "size": [1, ":"], "functions": ["positive"]}},
                                 {"optimized": {"customGetter": True}, "attributes": [{"name": "A", "value": True}]}])}

    def method(at):
        return {"name": f"m{at}", "access": access(), **flags("hidden", "static"),
                **chance.choice([{}, {"code": "obj"}, {"visible": False}])}

    classes = [{"name": name, **({"component": "core"} if chance.random() < 0.3 else {}),
                "superclasses": chance.sample(names[:at], min(at, chance.randint(0, 2))),
                "order": chance.choice(["own-first", "inherited-first"]), **flags("hidden", "flag", "enumeration"),
                "aliases": [f"old.{name}"] if chance.random() < 0.3 else [],
                "properties": [prop(chance.randint(0, 4)) for _ in range(chance.randint(0, 4))],
                "methods": [method(chance.randint(0, 4)) for _ in range(chance.randint(0, 4))],
                "members": ["Idle", {"name": "Test", "hidden": True}] if chance.random() < 0.3 else []}
               for at, name in enumerate(names)]
    return {"format": 1, "components": chance.random() < 0.7, "classes": classes, "namespaces": ["idle.space"],
            "functions": [{"name": "lab.tune", "imports": [names[0], "lab.*"], "code": "3",
                           "arguments": {"inputs": [{"name": "x", "class": "double"}]}}, {"name": "main"}],
            "packages": [{"name": "old", "classes": ["A", "B"], "functions": ["f"]}],
            "foreignClasses": [{"name": "far.Kind", "members": ["Fast"]}], "builtins": ["sum", "sin"],
            "workspace": [{"name": f"v{at}", "value": value()} for at in range(8)],
            "scopes": {"queryable": True, "active": [{"function": "lab.tune"}, {"function": "main", "eligible": False}],
                       **chance.choice([{}, {"debugger": {"focus": "main", "first": 1}}, {"bridge": False}])}}


def name_of(entry):
    return entry if isinstance(entry, str) else entry["name"]


def statements(world):
    """What somebody might type: new values, changed ones, objects of each class with changed properties."""
    yield from ("n1 = 5; n1(3) = -0.25;", "c1 = {n1, 'a'; \"b\", {}}; c1{3, 2} = n1';", "s1(2).a.b = {1};", "z1 = -n1 * 0;",
                "h1 = @lab.tune;", "p1 = findpackage('old');", "a1 = korval.metadata.Namespace.getAllNamespaces();",
                "k1 = far.Kind.Fast;", "e1 = ['ab'; 'cd'] == 'a';")
    for at, variable in enumerate(world.get("workspace", [])):
        yield f"again{at} = {{{variable['name']}, {variable['name']}}};"
    for at, one in enumerate(world.get("classes", [])):
        yield f"o{at} = {one['name']}();"
        yield f"both{at} = [o{at}, o{at}];"
        for member in one.get("members", []):
            yield f"e{at} = {one['name']}.{name_of(member)};"
        for prop in one.get("properties", []):
            yield f"o{at}.{name_of(prop)} = {{{at}, \"changed\"}};"


def requests(world):
    """Each op about each thing of the world, or about some when there are many."""
    chance = random.Random(json.dumps(world, sort_keys=True))
    classes = world.get("classes", [])
    members = [member for one in classes for kind in ("properties", "methods", "members") for member in one.get(kind, [])]
    names = sorted({name_of(member) or "" for member in members} | {"nothing"})
    known = [name for one in classes for name in [one["name"], *one.get("aliases", [])]]
    known += [f"{one['component']}:{one['name']}" for one in classes if one.get("component")] + ["no.such", "double"]
    spaces = sorted({name.rpartition(".")[0] for name in known} | {"idle.space", "lab"} - {""})
    variables = [variable["name"] for variable in world.get("workspace", [])]
    variables += sorted({word for text in statements(world) for word in re.findall(r"^\w+", text)})
    functions = [function["name"] for function in world.get("functions", [])]
    here = [{"variable": name} for name in variables]
    things = [*here, None]
    records = [{"id": name} for name in known] + [{"value": value} for value in here]
    accessing = [None, *({"id": name} for name in known[:3])]
    of_properties = [{"accessLevels": levels, "accessingClass": who, "includeHidden": hidden}
                     for levels in ([0], [0, 2, 4]) for who in accessing for hidden in (False, True)]
    of_methods = [{"access": levels, "accessingClass": who, "context": context, "includeHidden": who is None}
                  for levels in ([0], [0, 2, 4]) for who in accessing for context in ("any", "before-dot", "after-dot")]
    contexts = [*functions, ""]
    texts = [*names, *known, *variables]
    packages = [package["name"] for package in world.get("packages", [])] + ["none"]
    by_class = [("id", known), ("className", known)]
    table = [
        *((op, {key: pool}) for key, pool in by_class
          for op in ("getClassConstantPropertyNames", "getClassPropertyNames", "getClassStaticMethodNames",
                     "getClassMethodNames", "getClassEnumerationNames", "getCOSClass", "isKCOSClass")),
        *((op, {"name": known}) for op in ("fromKnownResolvedClassID", "fromLegacyString", "isAlreadyResolved")),
        *((op, {}) for op in ("getKCOSMethodsExcludeSet", "getVX2KorvalNamespacesExcludeSet",
                              "getVX2NamespacesExcludeSet", "getNoDotMethodClassesExcludeSet",
                              "getAttributesToTreatAsHavingCustomGetters", "GetDebuggerFocus", "getKCOSAllNamespaces",
                              "getBuiltinFunctionNames", "AutoPushingExecutionFrame")),
        *((op, {"value": here}) for op in ("getClassName", "isNoDotMethodClass", "isObjectOrIsOpaque",
                                           "getOpaqueObjectProperties", "getOpaqueObjectMethods", "getStructFieldNames")),
        *((op, {"value": things}) for op in ("isKCOSObject", "makeSharedPtr", "getStringsFromKxarray",
                                             "getSizeFromKxArray")),
        *((op, {"record": records}) for op in ("getAttributes", "getDefaultAccessibility", "getSuperclasses")),
        *((op, {"ns": spaces}) for op in ("getNamespaceFunctionNames", "getNamespaceClassNames",
                                          "getNamespaceNamespaceNames")),
        *((op, {"namespaceName": spaces}) for op in ("isKCOSNamespace", "getNamespaceInterface")),
        *((op, {"record": records, "options": of_properties}) for op in ("getProperties", "getPropertiesOfSuperclasses")),
        *((op, {"record": records, "options": of_methods}) for op in ("getMethods", "getMethodsOfSuperclasses")),
        *((op, {"record": records, key: names}) for op in ("visit", "clear", "hasAccessingClass")
          for key in ("property", "method")),
        *((op, {"owner": [*records, None]}) for op in ("PropertyVisitorMutable", "MethodVisitorMutable")),
        *((op, {"function": [*functions, None]}) for op in ("FunctionExecutionFrame", "accept")),
        *((op, {"classId": known}) for op in ("isClassToCompleteMethodsForBeforeDot", "isClassToCompleteMethodsForAfterDot")),
        *((op, {"id": [*known, *({"object": value} for value in here)]})
          for op in ("getComponentQualifiedName", "getNonComponentQualifiedName")),
        ("ResolvedClassID", {"context": contexts, "className": known}), ("ResolvedClassID", {"object": things}),
        ("ResolvedClassID", {"scope": [*functions, None], "className": known}),
        ("getCOSClass", {"object": things}), ("getConstructorName", {"className": known}),
        ("hasMethod", {"object": things, "methodName": names}), ("hasMethod", {"id": known, "methodName": names}),
        ("hasProperty", {"object": things, "propertyName": names}),
        ("isKCOSClassDerivedFrom", {"derived": known, "base": known}),
        ("ClassInfo", {"id": known}), ("ClassInfo", {"value": things}), ("isA", {"record": records, "className": known}),
        ("castSizeStringToIntegers", {"sizeStrings": [["1", ":"]]}), ("isOperatorOverload", {"name": names}),
        ("callFunctionOnObject", {"object": here, "functionName": ["fieldnames", "properties", *names]}),
        ("getObjectPropertyNames", {"object": here}),
        ("getMethodsForWSVariable", {"name": variables, "value": here}),
        ("getArgumentBlockMetadata", {"functionReference": contexts, "functionName": contexts}),
        ("IsPKXPackage", {"name": packages}), ("getPackageStrings", {"package": packages}),
        ("EvalcExpSuccessful", {"expression": [*variables, *(f"class({name})" for name in variables),
                                               *(f"{name}(1)" for name in variables)], "nlhs": [1]}),
        ("GetValueFromCurrentWorkspace", {"expression": [*texts, *(f"{name}.{field}" for name in variables
                                                                   for field in (*names, "a", "Name"))]}),
        ("getSharedProperty", {"object": here, "name": [*names, "a"]}),
        ("GetClassPrecedence", {"classA": known, "classB": known}), ("IsJavaFunction", {"name": [*known, "far.Kind.Fast"]}),
        ("getWhatList", {"folder": ["", ".", "path", "tools"], "kind": [".k", "classes", "packages", ".kex"]}),
    ]
    for op, pools in table:
        every = list(itertools.product(*pools.values()))
        for arguments in every if len(every) <= MOST else chance.sample(every, MOST):
            yield {"op": op, **dict(zip(pools, arguments))}


class SaveTest(CommandTest):
    def save(self, source, target, *code):
        done = subprocess.run([SAVE, source, target, *code], capture_output=True, timeout=HANG, check=False, env=environment())
        self.assertEqual((done.returncode, done.stderr), (0, b""), source)
        return Path(target).read_text(encoding="utf-8")

    def answers(self, file, asked):
        done = run("query", "--trace", "--snapshot", file, stdin="".join(json.dumps(one) + "\n" for one in asked).encode())
        self.assertEqual((done.returncode, done.stderr), (0, b""), file)
        return done.stdout.splitlines()[1:]

    def compare(self, number, name, world):
        """Ends with (op, was it an error?) of each answer that was compared, and how many statements worked."""
        file, saved, again = self.snapshot(world, f"{number}.json"), *(str(self.folder / f"{number}{end}.json") for end in "ab")
        code = list(statements(world))
        text = self.save(file, saved, *code)
        self.assertEqual(text, self.save(saved, again), name)
        self.assertEqual([error.message for error in VALIDATOR.iter_errors(json.loads(text))], [], name)
        asked = list(requests(world))
        typed = [{"op": "EvalcExpSuccessful", "expression": one, "nlhs": 0} for one in code]
        live = self.answers(file, typed + asked)
        kept = []
        for request, before, after in zip(asked, live[len(typed):], self.answers(saved, asked), strict=True):
            self.assertEqual(before, after, (name, request))
            kept.append((request["op"], b'"error":' in before))
        return kept, sum(b'"result":true' in answer for answer in live[:len(typed)])

    def test_the_reloaded_session_answers_as_the_live_one(self):
        worlds = [*fixtures(), *((f"seed {seed}", generated(seed)) for seed in range(GENERATED))]
        self.assertGreater(len(worlds), GENERATED + 16)
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(lambda row: self.compare(row[0], *row[1]), enumerate(worlds)))
        kept = [one for answers, _ in results for one in answers]
        lines = (SOURCE / "packaging/operations.txt").read_text(encoding="utf-8").splitlines()
        exported = {line.rpartition("::")[2] for line in lines if line and not line.startswith("#")}
        self.assertEqual({op for op, failed in kept if not failed}, exported)
        self.assertGreater(sum(not failed for _, failed in kept), 15000)
        self.assertGreater(sum(worked for _, worked in results), 700)

    def test_saving_fails_with_a_reason(self):
        done = subprocess.run([SAVE, self.session, str(self.folder / "none/a.json")], capture_output=True, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"[snapshot.unwritable]", done.stderr)


if __name__ == "__main__":
    unittest.main()
