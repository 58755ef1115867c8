"""Reads from headers which functions, classes and variables carry an export mark.

No C++ parser: it follows scopes and the shape of declarations as the headers of this repository are written.
A mark that it fails to see shows as an unexpected symbol in the symbol check, and one that it sees where there is
none as a missing symbol.
"""
import re
from dataclasses import dataclass

TOKEN = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|\w+|::|->|\[\[|\]\]|\S')
NO_SYMBOL = {"inline", "constexpr", "consteval", "template", "friend", "using", "typedef", "static_assert"}
NOT_A_NAME = {"alignas", "decltype", "noexcept", "explicit", "requires", "__attribute__"}


@dataclass(frozen=True)
class Declaration:
    name: str  # qualified; "X::operator conversion" for every conversion operator
    kind: str  # "function", "class", "polymorphic class", "instantiation" of a class template, or "variable"
    needsSymbol: bool  # False for what is inline, pure, deleted or a template


@dataclass
class Scope:
    kind: str  # "namespace", "class" or "C"
    name: str
    marked: bool = False
    template: bool = False
    polymorphic: bool = False
    private: bool = False  # what follows in the class


def tokens_of(text):
    text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.DOTALL)
    text = re.sub(r"^[ \t]*#(?:[^\n\\]|\\.|\\\n)*", " ", text, flags=re.MULTILINE)
    return TOKEN.findall(text)


def without_attributes(head):
    kept, depth = [], 0
    for token in head:
        depth += token == "[["
        if depth == 0:
            kept.append(token)
        depth -= token == "]]"
    return kept


def parameters_at(head):
    """Index of the "(" that opens the parameter list, or None: no function."""
    if "operator" in head:
        at = head.index("operator") + 1
        return at + 2 if head[at:at + 2] == ["(", ")"] else head.index("(", at)
    angles = parentheses = 0
    for at, token in enumerate(head):
        if token == "=" and angles == parentheses == 0:
            return None
        if token == "(" and angles == parentheses == 0 and at and re.match(r"\w", head[at - 1]) \
                and head[at - 1] not in NOT_A_NAME:
            return at
        angles += (token == "<") - (token == ">")
        parentheses += (token == "(") - (token == ")")
    return None


def function_name(head, parameters):
    if "operator" in head:
        symbol = head[head.index("operator") + 1:parameters]
        is_conversion = re.match(r"[A-Za-z_]|::", symbol[0]) and symbol[0] not in ("new", "delete")
        return "operator conversion" if is_conversion else "operator" + "".join(symbol)
    start = parameters - 1
    while start >= 2 and head[start - 1] == "::" and re.match(r"\w", head[start - 2]):
        start -= 2
    if start and head[start - 1] == "~":
        return "~" + head[start]
    return "".join(head[start:parameters])


def class_keyword_at(head):
    """Index of class or struct when the head defines a class, else None."""
    angles = 0
    for at, token in enumerate(head):
        angles += (token == "<") - (token == ">")
        if angles == 0 and token in ("class", "struct", "union"):
            return at
        if angles == 0 and token in ("(", "=", "enum"):
            return None
    return None


class Reader:
    def __init__(self, text, mark):
        self.tokens, self.mark, self.at = tokens_of(text), mark, 0
        self.scopes, self.found = [], []

    def qualified(self, name):
        if any(scope.kind == "C" for scope in self.scopes):
            return name
        return "::".join([scope.name for scope in self.scopes if scope.name] + [name])

    def is_marked(self, head):
        return self.mark in head or any(scope.marked for scope in self.scopes)

    def skip_braces(self):
        depth = 1
        while depth:
            depth += {"{": 1, "}": -1}.get(self.tokens[self.at], 0)
            self.at += 1

    def read(self):
        head, parentheses = [], 0
        while self.at < len(self.tokens):
            token = self.tokens[self.at]
            self.at += 1
            parentheses += (token == "(") - (token == ")")
            if parentheses == 0 and token == "{":
                self.open(without_attributes(head))
                head = []
            elif parentheses == 0 and token in (";", "}"):
                self.declare(without_attributes(head), has_body=False)
                head = []
                if token == "}":
                    self.close()
            elif token == ":" and head in (["public"], ["protected"], ["private"]):
                self.scopes[-1].private = head == ["private"]
                head = []
            else:
                head.append(token)
        return self.found

    def open(self, head):
        if "namespace" in head:
            self.scopes.append(Scope("namespace", "".join(head[head.index("namespace") + 1:])))
        elif head and head[0] == "extern" and head[-1].startswith('"'):
            self.scopes.append(Scope("C", ""))
        elif "enum" not in head and class_keyword_at(head) is not None:
            self.open_class(head)
        else:
            self.skip_braces()
            self.declare(head, has_body=True)

    def open_class(self, head):
        names = [token for token in head[class_keyword_at(head) + 1:head.index(":") if ":" in head else None]
                 if re.match(r"\w", token) and token not in (self.mark, "final")]
        self.scopes.append(Scope("class", names[0] if names else "", self.is_marked(head), "template" in head))

    def close(self):
        scope = self.scopes.pop()
        if scope.kind == "class" and scope.marked:
            kind = "polymorphic class" if scope.polymorphic else "class"
            self.found.append(Declaration(self.qualified(scope.name), kind,
                                          scope.polymorphic and not scope.template))

    def declare(self, head, has_body):
        inside_class = bool(self.scopes) and self.scopes[-1].kind == "class"
        if inside_class and {"virtual", "override"} & set(head):
            self.scopes[-1].polymorphic = True
        if not self.is_marked(head) or {"friend", "using", "typedef", "static_assert"} & set(head):
            return
        if head[:3] == ["extern", "template", "class"]:
            self.found.append(Declaration(self.qualified(head[head.index("<") - 1]), "instantiation", False))
            return
        parameters = parameters_at(head)
        if parameters is None:
            self.declare_variable(head, inside_class)
            return
        if inside_class and self.scopes[-1].private and "virtual" not in head:
            return  # no client can call it
        name = function_name(head, parameters)
        is_c = head[0] == "extern" and head[1].startswith('"')
        ends_inline = head[-2:] in (["=", "0"], ["=", "default"], ["=", "delete"])
        is_template = any(scope.template for scope in self.scopes)
        self.found.append(Declaration(name if is_c else self.qualified(name), "function",
                                      not (has_body or ends_inline or is_template or NO_SYMBOL & set(head))))

    def declare_variable(self, head, inside_class):
        is_shared = "static" in head if inside_class else "extern" in head
        if is_shared and not NO_SYMBOL & set(head):
            self.found.append(Declaration(self.qualified(head[-1]), "variable", True))


def marked_declarations(folder, mark):
    """The marked declarations of all headers in a folder and below it."""
    headers = sorted(folder.rglob("*.h"))
    if not headers:
        raise SystemExit(f"no headers in {folder}")
    return [found for header in headers for found in Reader(header.read_text(encoding="utf-8"), mark).read()]
