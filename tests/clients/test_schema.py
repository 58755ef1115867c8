"""The schema of snapshots: valid, strict, accepts every example, and refuses what the reader refuses."""
import copy
import json
import os
import re
import subprocess
import unittest
from pathlib import Path

from Command import HANG
from jsonschema import Draft202012Validator

SOURCE = Path(os.environ["CONTEXTDATA_SOURCE"])
READER = os.environ.get("CONTEXTDATA_READER", "")
SCHEMA = json.loads((SOURCE / "share/contextdata/snapshot.schema.json").read_text(encoding="utf-8"))
VALIDATOR = Draft202012Validator(SCHEMA)

STRING_OR_COMMENT = re.compile(r'"(?:\\.|[^"\\])*"|//[^\n]*|/\*.*?\*/', re.DOTALL)

# Faults that a schema cannot express.
BEYOND = {"unknown-class", "unknown-function", "unknown-property", "unknown-member", "duplicate-class",
          "duplicate-function", "duplicate-argument", "conflicting-precedence", "duplicate-variable", "superclass-cycle", "wrong-size", "wrong-class", "bad-code", "kind-first",
          "different-fields"}

# Every key, and every kind of value.
EVERYTHING = {
    "format": 1, "$schema": "s", "components": True, "namespaces": ["n.m"],
    "classes": [
        {"name": "A", "component": "c", "aliases": ["a.b"], "superclasses": ["B"], "order": "own-first",
         "hidden": True, "broken": False, "flag": True, "enumeration": True,
         "properties": [
             "p", {"name": "q", "access": ["B"]},
             {"name": None, "get": "private", "set": {"level": "public", "classes": ["B"]}, "hidden": True,
              "dependent": True, "type": "double", "optimized": {"customGetter": True, "flag": False}, "value": {"string": None},
              "getter": "1",
              "attributes": [{"name": "a", "type": "char", "value": True}]},
             {"name": "r", "constant": True},
             {"name": "s", "validation": {"class": "double", "size": [1, ":"], "functions": ["f"]}},
             {"name": "t", "conversion": False, "values": [
                 1, "a", {"object": "A", "member": "e"}, {"object": "A", "text": "b"}, {"object": "A", "text": None},
                 {"object": "A", "failing": True}]}],
         "methods": ["m", {"name": "m", "access": "listed", "static": True, "hidden": True, "visible": True,
                           "code": "1"}],
         "members": ["e", {"name": "f", "hidden": True}],
         "attributeNames": [{"names": ["x"], "further": ["y"]}, {}, {}, {}], "precedence": ["B", "x.Y", "double"]},
        {"name": "B"}],
    "functions": [{"name": "f.g", "component": "c", "imports": ["n.*"], "hidden": True, "visible": False, "code": "",
                   "arguments": {"inputs": [{"name": "x", "kind": "name-value", "class": "C", "size": [1, ":"],
                                             "validators": ["f"], "values": [""]}],
                                 "outputs": [{"name": "y"}], "furtherInputs": True, "furtherOutputs": False}}],
    "packages": [{"name": "p", "classes": ["C"], "functions": ["f"]}],
    "foreignClasses": [{"name": "x.Y", "members": ["m"]}],
    "workspace": [
        {"name": "number", "value": 1.5}, {"name": "text", "value": "text"}, {"name": "row", "value": [1, "Inf"]},
        {"name": "double", "value": {"double": [1], "size": [1, 1]}},
        {"name": "logical", "value": {"logical": [True], "size": [1, 1]}},
        {"name": "string", "value": {"string": "s"}},
        {"name": "cell", "value": {"cell": [1, None], "size": [2, 1]}},
        {"name": "one", "value": {"struct": {"a": True}}},
        {"name": "two", "value": {"structs": [{"a": 1}, {"a": 2}], "size": [2, 1]}},
        {"name": "none", "value": {"structs": [], "fields": ["a"]}},
        {"name": "object", "value": {"object": "A", "properties": {"p": 1}, "member": "e"}},
        {"name": "strings", "value": {"strings": ["a", None], "size": [2, 1]}},
        {"name": "char", "value": {"char": "ab", "size": [2, 1]}},
        {"name": "objects", "value": {"objects": [{"object": "A"}], "class": "A", "size": [1, 1]}},
        {"name": "opaque", "value": {"opaque": "F", "fields": {"a": 1}, "methods": {"m": None}, "java": True,
                                     "dimensions": "lazy"}},
        {"name": "handle", "value": {"handle": "f.g"}}, {"name": "class", "value": {"class": "A"}},
        {"name": "tall", "value": {"tall": [1]}},
        {"name": "old", "value": {"struct": {"a": True}, "class": "O"}},
        {"name": "olds", "value": {"structs": [{"a": 1}], "class": "O"}},
        {"name": "opaques", "value": {"objects": [{"opaque": "F"}], "class": "F", "foreign": True}},
        {"name": "member", "value": {"foreign": "x.Y", "member": "m"}}],
    "scopes": {"queryable": True, "executing": "f.g", "active": [{"function": "f.g", "eligible": False}],
               "bridge": True, "debugger": {"focus": "x", "first": 1, "second": -1}},
    "path": [{"folder": "a", "kind": "class"}], "currentFolder": "b", "builtins": ["sin"],
}

# (place, what stands there instead): refused by both. A missing value stands for a removed key.
REMOVED = object()
BROKEN = [
    ([], []), (["format"], REMOVED), (["format"], 2), (["format"], 0), (["format"], "1"),
    (["classes", 0, "name"], REMOVED), (["classes", 0, "name"], None), (["classes", 0, "name"], "a."),
    (["classes", 0, "aliases", 0], "a..b"), (["classes", 0, "aliases", 0], "a\u0000"),
    (["classes", 0, "order"], "depth-first"), (["classes", 0, "attributeNames"], [{}, {}, {}]),
    (["classes", 0, "properties", 0], ""), (["classes", 0, "properties", 1, "access"], "secret"),
    (["classes", 0, "properties", 1, "set"], "public"), (["classes", 0, "properties", 1, "get"], "public"),
    (["classes", 0, "properties", 3, "set"], "public"), (["classes", 0, "properties", 2, "set", "level"], REMOVED),
    (["classes", 0, "methods", 1, "constant"], True), (["classes", 0, "members", 1, "name"], REMOVED),
    (["classes", 0, "properties", 4, "validation", "size", 1], "n"),
    (["classes", 0, "properties", 5, "values", 4, "failing"], True), (["classes", 0, "properties", 5, "values", 0], None),
    (["workspace", 0, "value"], REMOVED), (["workspace", 2, "value"], [1, "nan"]),
    (["workspace", 3, "value", "size"], [1]), (["workspace", 3, "value", "size", 0], -1),
    (["workspace", 3, "value", "cell"], []), (["workspace", 7, "value", "struct"], {"": 1}),
    (["workspace", 8, "value", "structs"], [{}]), (["workspace", 8, "value", "fields"], ["a"]),
    (["scopes", "debugger", "first"], 3000000000), (["path", 0, "kind"], "private"), (["path", 0, "folder"], REMOVED),
]

INSTEAD = [None, True, 7, -1, 1.5, "", "word", "a..b", [], ["word"], {}, {"word": 1}]


def without_comments(text):
    return STRING_OR_COMMENT.sub(lambda found: found[0] if found[0].startswith('"') else " ", text)


def places(node, place=()):
    """Every place of a document, the whole first."""
    yield place
    children = node.items() if isinstance(node, dict) else enumerate(node) if isinstance(node, list) else ()
    for step, child in children:
        yield from places(child, (*place, step))


def changed(place, value):
    """EVERYTHING with something else at one place. Variables that the place is not in are numbers: their values take most
    of the time of a validation and say nothing of the place."""
    if not place:
        return value
    variables = [one if tuple(place[:2]) == ("workspace", at) else {**one, "value": 0}
                 for at, one in enumerate(EVERYTHING["workspace"])]
    document = copy.deepcopy({**EVERYTHING, "workspace": variables})
    *way, last = place
    node = document
    for step in way:
        node = node[step]
    if value is REMOVED:
        del node[last]
    else:
        node[last] = value
    return document


def read(documents):
    """The reader's code for each document, without its prefix; empty when it is accepted."""
    lines = "".join(json.dumps(document) + "\n" for document in documents)
    done = subprocess.run([READER], input=lines.encode(), capture_output=True, timeout=HANG, check=True)
    codes = [line.removeprefix("snapshot.") for line in done.stdout.decode().splitlines()]
    if len(codes) != len(documents):
        raise AssertionError(f"{len(codes)} answers for {len(documents)} documents")
    return codes


class SchemaTest(unittest.TestCase):
    def test_the_schema_is_valid(self):
        Draft202012Validator.check_schema(SCHEMA)

    def test_objects_have_no_other_keys_and_every_definition_is_used(self):
        objects = [node for place in places(SCHEMA) if isinstance(node := at(SCHEMA, place), dict)]
        fixed = [node for node in objects if node.get("type") == "object" and "properties" in node]
        self.assertGreater(len(fixed), 15)
        for node in fixed:
            self.assertIs(node["additionalProperties"], False, node["description"])
            self.assertLessEqual(set(node.get("required", [])), set(node["properties"]))
        used = {node["$ref"] for node in objects if isinstance(node.get("$ref"), str)}
        self.assertEqual(used, {f"#/$defs/{name}" for name in SCHEMA["$defs"]})

    def test_every_key_is_on_the_page(self):
        page = (SOURCE / "docs/snapshot.md").read_text(encoding="utf-8")
        for place in places(SCHEMA):
            if place[-2:-1] == ("properties",) and at(SCHEMA, place[:-2]).get("type") == "object":
                self.assertRegex(page, r"\b" + re.escape(place[-1].lstrip("$")) + r"\b")

    def test_every_example_validates(self):
        examples = sorted((SOURCE / "examples").glob("*.json"))
        self.assertTrue(examples)
        for example in examples:
            document = json.loads(without_comments(example.read_text(encoding="utf-8")))
            self.assertEqual([error.message for error in VALIDATOR.iter_errors(document)], [], example.name)
        VALIDATOR.validate(EVERYTHING)

    def test_the_page_example_validates(self):
        page = (SOURCE / "docs/snapshot.md").read_text(encoding="utf-8")
        VALIDATOR.validate(json.loads(without_comments(page.split("```json\n")[1].split("```")[0])))

    def test_unknown_keys_are_refused_in_every_object(self):
        open_objects = {"struct", "structs", "properties", "fields", "methods"}
        closed = [place for place in places(EVERYTHING) if isinstance(at(EVERYTHING, place), dict)
                  and not (place and place[0] == "workspace" and open_objects & set(place))]
        self.assertGreater(len(closed), 20)
        for place in closed:
            self.assertFalse(VALIDATOR.is_valid(changed((*place, "surprise"), 1)), place)

    def test_broken_documents_are_refused(self):
        for place, value in BROKEN:
            self.assertFalse(VALIDATOR.is_valid(changed(place, value)), (place, value))


class AgreementTest(unittest.TestCase):
    """The schema and the reader of the command."""

    def compare(self, documents):
        codes = read([document for _, document in documents])
        for (name, document), code in zip(documents, codes):
            accepted = VALIDATOR.is_valid(document)
            self.assertIn(code, {"", *BEYOND} if accepted else set(codes) - {""}, (name, accepted, code))
        return codes

    def test_good_documents_are_read(self):
        examples = [json.loads(without_comments(example.read_text(encoding="utf-8")))
                    for example in (SOURCE / "examples").glob("*.json")]
        self.assertEqual(set(read([EVERYTHING, *examples])), {""})

    def test_broken_documents_are_refused_by_both(self):
        codes = self.compare([((place, value), changed(place, value)) for place, value in BROKEN])
        self.assertNotIn("", codes)

    def test_something_else_at_every_place(self):
        documents = [((place, value), changed(place, value))
                     for at_place, place in enumerate(places(EVERYTHING))
                     for at_value, value in enumerate(INSTEAD) if (at_place + at_value) % 3 == 0]
        codes = self.compare(documents)
        self.assertGreater(len(codes), 1000)
        self.assertGreater(codes.count(""), 100)


def at(node, place):
    for step in place:
        node = node[step]
    return node


if __name__ == "__main__":
    unittest.main()
