#!/usr/bin/python3
"""Holds every #include of the repository against the table of rooms, and finds cycles between files.

Called as: check-includes.py <source folder>. Reports a planted violation of each kind to itself first.
"""
import re
import sys
from pathlib import Path

# The session and what it tells tests stand above all storeys; of the other headers each storey has its own.
DESCRIPTIONS = ["embedded/Description.h", "embedded/ValueDescription.h"]
HEADERS = [*DESCRIPTIONS, "embedded/CodePolicy.h", "embedded/Host.h", "embedded/Inspection.h", "embedded/Outline.h",
           "embedded/Snapshot.h"]

TOOLS = ["include/contextdata/", "host/", "syntax/", "embedded/Host.h", "frontend/", "tools/"]

# Room -> what it may include from this repository (a folder, or one file).
REPOSITORY = {
    "host": ["host/"],
    # Tokens of Korval text, for whoever reads some.
    "syntax": ["syntax/"],
    # The host that ships, in storeys: no arrow runs up, and only the uppermost asks for the active session.
    "embedded/model": ["host/", "syntax/Characters.h", *DESCRIPTIONS, "embedded/model/"],
    "embedded/language": ["host/", "syntax/", *DESCRIPTIONS, "embedded/CodePolicy.h", "embedded/Outline.h",
                          "embedded/model/", "embedded/language/"],
    "embedded/snapshot": ["host/", "syntax/", *DESCRIPTIONS, "embedded/Outline.h", "embedded/Snapshot.h", "embedded/model/",
                          "embedded/snapshot/"],
    "embedded/host": ["host/", "syntax/", "embedded/"],
    "embedded": ["host/", "syntax/Position.h", *HEADERS],
    "include/contextdata": ["include/contextdata/", "host/"],
    "contextdata": ["include/contextdata/", "host/", "contextdata/"],
    "contextdata/internal": ["include/contextdata/", "host/", "contextdata/internal/"],
    "frontend": ["include/contextdata/", "host/Arrays.h", "host/Members.h", "host/Text.h", "syntax/", "frontend/"],
    "tools": TOOLS,
    # A room of its own because it alone reads the command line, and no JSON.
    "tools/commands": TOOLS,
    "tests": ["include/contextdata/", "host/", "syntax/", "embedded/", "contextdata/", "frontend/", "tools/", "tests/"],
    "examples": ["include/contextdata/", "host/", "embedded/Host.h", "examples/"],
}

# Room -> libraries besides the standard library, POSIX and Boost, by the start of the include.
LIBRARIES = {
    "embedded/model": ["utf8"],
    "embedded/snapshot": ["nlohmann/", "utf8"],
    "tools": ["nlohmann/", "histedit.h"],
    "tools/commands": ["CLI/"],
    "tests": ["nlohmann/", "gtest/", "gmock/"],
}

SYSTEM = re.compile(r"[a-z_0-9]+$|(sys/)?[a-z_0-9]+\.h$|boost/")
NOT_SYSTEM = ("editline", "histedit", "readline", "utf8")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)


def room_of(path):
    return next((room for room in sorted(REPOSITORY, key=len, reverse=True) if path.startswith(room + "/")), None)


def target_of(bracket, name, files):
    """The repository file that an include names, or None when it names something else."""
    if bracket == "<" and name.startswith("contextdata/"):
        return "include/" + name
    if bracket == '"' or name in files:
        return name
    return None


def complaint(path, bracket, name, files):
    room = room_of(path)
    target = target_of(bracket, name, files)
    if target is None:
        libraries = tuple(LIBRARIES.get(room, []))
        is_system = SYSTEM.match(name) and not name.startswith(NOT_SYSTEM)
        return None if is_system or name.startswith(libraries) else f"{room}/ may not include <{name}>"
    if target not in files:
        return f'"{name}" is no file of the repository, counted from its root (<contextdata/...>: from include/)'
    if not any(target == allowed or target.startswith(allowed) and allowed.endswith("/")
               for allowed in REPOSITORY[room]):
        return f"{room}/ may not include {target}"
    return None


def node_of(path):
    """In the library a source and its header count as one file, so that no two of them need each other."""
    return re.sub(r"\.(h|cpp)$", "", path) if path.startswith("contextdata/") else path


def cycle_in(edges):
    """One cycle of the graph as a list of nodes, or an empty list."""
    done, trail = set(), []

    def visit(node):
        if node in trail:
            return trail[trail.index(node):] + [node]
        if node in done:
            return []
        trail.append(node)
        for following in sorted(edges.get(node, ())):
            if found := visit(following):
                return found
        trail.pop()
        done.add(node)
        return []

    return next((found for node in sorted(edges) if (found := visit(node))), [])


def check(files):
    """files: path -> text. Returns the list of violations."""
    problems, edges = [], {}
    for path, text in sorted(files.items()):
        for bracket, name in INCLUDE.findall(text):
            if problem := complaint(path, bracket, name, files):
                problems.append(f"{path}: {problem}")
            target = target_of(bracket, name, files)
            if target in files and node_of(target) != node_of(path):
                edges.setdefault(node_of(path), set()).add(node_of(target))
    if cycle := cycle_in(edges):
        problems.append("cycle: " + " -> ".join(cycle))
    return problems


def prove():
    """Each planted violation must be reported, and a clean tree must not be."""
    clean = {
        "host/Arrays.h": "#include <string>\n#include <boost/any.hpp>",
        "host/Names.h": '#include "host/Arrays.h"',
        "include/contextdata/K.h": '#include "host/Names.h"',
        "contextdata/internal/N.h": "#include <contextdata/K.h>",
        "contextdata/M.h": '#include "contextdata/internal/N.h"',
        "contextdata/internal/I.h": "#include <vector>",
        "contextdata/internal/I.cpp": '#include "contextdata/internal/I.h"\n#include "contextdata/internal/N.h"',
        "syntax/Token.h": "#include <string>",
        "syntax/Tokenizer.cpp": '#include "syntax/Token.h"',
        "embedded/Description.h": "",
        "embedded/Host.h": '#include "embedded/Description.h"',
        "embedded/model/Value.h": '#include "host/Names.h"\n#include "embedded/Description.h"\n#include <utf8.h>',
        "embedded/language/Evaluator.h": '#include "embedded/model/Value.h"\n#include "syntax/Token.h"',
        "embedded/Snapshot.h": '#include "embedded/Description.h"',
        "embedded/snapshot/Shape.h": '#include "embedded/Snapshot.h"\n#include <nlohmann/json.hpp>',
        "embedded/host/Session.h": '#include "embedded/language/Evaluator.h"\n#include "embedded/snapshot/Shape.h"',
        "frontend/F.h": '#include "host/Arrays.h"',
        "tools/commands/main.cpp": '#include "embedded/Host.h"\n#include <CLI/CLI.hpp>',
    }
    planted = {
        "host/X.h": "#include <contextdata/K.h>",
        "include/contextdata/X.h": '#include "contextdata/internal/N.h"',
        "syntax/X.cpp": '#include "embedded/model/Value.h"',
        "syntax/Y.cpp": '#include "host/Names.h"',
        "syntax/Z.cpp": "#include <utf8.h>",
        "embedded/host/X.cpp": '#include "contextdata/internal/N.h"',
        "embedded/host/Y.cpp": "#include <contextdata/K.h>",
        "embedded/host/Z.cpp": "#include <nlohmann/json.hpp>",
        "embedded/model/X.cpp": '#include "embedded/host/Session.h"',
        "embedded/model/Y.cpp": '#include "embedded/language/Evaluator.h"',
        "embedded/model/Z.cpp": '#include "embedded/Host.h"',
        "embedded/language/X.cpp": '#include "embedded/host/Session.h"',
        "embedded/language/Y.cpp": '#include "embedded/snapshot/Shape.h"',
        "embedded/language/Z.cpp": '#include "embedded/Host.h"',
        "embedded/language/W.cpp": '#include "embedded/Snapshot.h"',
        "embedded/snapshot/W.cpp": '#include "embedded/Host.h"',
        "embedded/snapshot/X.cpp": '#include "embedded/language/Evaluator.h"',
        "embedded/snapshot/Y.cpp": '#include "embedded/host/Session.h"',
        "embedded/X.h": '#include "embedded/model/Value.h"',
        "contextdata/V.cpp": '#include "syntax/Token.h"',
        "contextdata/X.cpp": '  #  include "embedded/Host.h"',
        "contextdata/Y.cpp": "#include <contextdata/internal/N.h>",
        "contextdata/Z.cpp": "#include <nlohmann/json.hpp>",
        "contextdata/internal/X.cpp": '#include "contextdata/M.h"',
        "contextdata/internal/N.cpp": '#include "contextdata/internal/I.h"',
        "frontend/X.cpp": '#include "host/Names.h"',
        "frontend/Y.cpp": "#include <histedit.h>",
        "tools/X.cpp": '#include "embedded/model/Value.h"',
        "tools/Y.cpp": "#include <utf8.h>",
        "tools/Z.cpp": '#include "Missing.h"',
        "tools/lsp/X.cpp": "#include <CLI/CLI.hpp>",
        "tools/commands/X.cpp": "#include <nlohmann/json.hpp>",
    }
    if problems := check(clean):
        sys.exit(f"check-includes: a clean tree was reported: {problems}")
    for path, text in planted.items():
        if not check({**clean, path: text}):
            sys.exit(f"check-includes: the planted violation in {path} was not reported: {text}")


def main():
    prove()
    root = Path(sys.argv[1])
    files = {}
    for room in REPOSITORY:
        for path in (root / room).rglob("*"):
            if path.suffix in (".h", ".cpp", ".def"):
                files[str(path.relative_to(root))] = path.read_text(encoding="utf-8")
    if not files:
        sys.exit("check-includes: no file inspected")
    problems = check(files)
    for problem in problems:
        print(f"check-includes: {problem}", file=sys.stderr)
    print(f"check-includes: {len(files)} files, {len(problems)} violations")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
