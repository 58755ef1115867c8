"""What binutils say about the symbols of objects and shared libraries."""
import re
import subprocess
from dataclasses import dataclass

DATA_OF_A_CLASS = re.compile(r"(vtable|VTT|typeinfo|typeinfo name) for ")
THUNK = re.compile(r"(non-virtual thunk|virtual thunk|covariant return thunk) to ")


@dataclass(frozen=True)
class Symbol:
    mangled: str
    demangled: str
    defined: bool
    version: str  # of the providing library, for instance "GLIBC_2.34"; or empty

    @property
    def isFunction(self):
        return "(" in self.demangled and not DATA_OF_A_CLASS.match(self.demangled)

    @property
    def name(self):
        """The qualified name that declared it, or empty for what is local to a function."""
        text = DATA_OF_A_CLASS.sub("", THUNK.sub("", self.demangled))
        text = re.sub(r"\[abi:\w+\]", "", text).replace("(anonymous namespace)", "{anonymous}")
        if conversion := re.match(r"([\w:]+::operator) (?!new|delete)[\w:]", text):
            return conversion[1] + " conversion"
        name, rest = split_at_parameters(text)
        return "" if "::" in rest else name


def split_at_parameters(text):
    """("a::b", " const") of "a<int>::b(int, c) const"."""
    operator = re.search(r"operator(\(\)|<=>|->\*?|<<=?|>>=?|[<>]=?)", text)
    protected = text[operator.end():] if operator and "<" not in text[:operator.start()] else text
    name = text[:len(text) - len(protected)]
    angles = 0
    for at, character in enumerate(protected):
        if character == "(" and angles == 0:
            return name, after_parenthesis(protected[at:])
        angles += character == "<"
        name += character if angles == 0 else ""
        angles -= character == ">"
    return name, ""


def after_parenthesis(text):
    depth = 0
    for at, character in enumerate(text):
        depth += (character == "(") - (character == ")")
        if depth == 0:
            return text[at + 1:]
    return ""


def run(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def demangle(names):
    return run("c++filt", text="\n".join(names)).splitlines()


def symbols(rows):
    """rows: (mangled, defined, version)."""
    demangled = demangle(row[0] for row in rows)
    return [Symbol(mangled, plain, defined, version)
            for (mangled, defined, version), plain in zip(rows, demangled, strict=True)]


def visible_in_objects(objects):
    """The defined symbols of object files that the compiler left visible."""
    rows = set()
    for line in run("readelf", "--wide", "--syms", *objects).splitlines():
        fields = line.split()
        if len(fields) == 8 and fields[4] in ("GLOBAL", "WEAK", "UNIQUE") and fields[5] == "DEFAULT" \
                and fields[6] != "UND":
            rows.add((fields[7], True, ""))
    return symbols(sorted(rows))


def of_library(library):
    """The dynamic symbols of a shared library."""
    rows = []
    for line in run("nm", "--dynamic", library).splitlines():
        kind, name = line.split()[-2:]
        mangled, _, version = name.partition("@")
        if kind != "A":  # the name of a version
            rows.append((mangled, kind not in "Uvw" or len(line.split()) == 3, version.lstrip("@")))
    if not rows:
        raise SystemExit(f"no dynamic symbols in {library}")
    return symbols(rows)
