#!/usr/bin/python3
"""Writes the linker's version script: what the exported headers mark is global, everything else is local.

Called as: make-version-script.py <include folder> <version> <output> <object>... A symbol is global when the compiler left it
visible and its name belongs to a marked declaration, so that visible template instantiations of the standard
library, of Boost and of the host's headers stay local.
"""
import sys
from pathlib import Path

from declarations import marked_declarations
from symbols import visible_in_objects


def main():
    include, version, output, *objects = sys.argv[1:]
    marked = {found.name for found in marked_declarations(Path(include), "CONTEXTDATA_API")}
    names = [symbol.mangled for symbol in visible_in_objects(objects) if symbol.name in marked]
    if not names:
        sys.exit("make-version-script: no marked symbol in the objects")
    lines = "".join(f"    {name};\n" for name in names)
    Path(output).write_text(f"{version} {{\n  global:\n{lines}  local: *;\n}};\n")


if __name__ == "__main__":
    main()
