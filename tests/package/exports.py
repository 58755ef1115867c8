"""What the linked library exports and asks for, held against the marks in the headers and the list of operations."""
import os
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

source = Path(os.environ["CONTEXTDATA_SOURCE"])
sys.path.insert(0, str(source / "packaging"))
from declarations import Reader, marked_declarations  # noqa: E402
from symbols import of_library  # noqa: E402

RUNTIME_VERSIONS = ("GLIBC_", "GLIBCXX_", "CXXABI_", "GCC_")
# Weak references of the compiler's start files, which may stay without a definition.
START_FILES = {"__gmon_start__", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable"}


def overloads(symbols):
    """How many functions of each name there are; the two symbols of one constructor demangle alike."""
    return Counter(symbol.name for symbol in {symbol.demangled: symbol for symbol in symbols}.values()
                   if symbol.isFunction)


def wrong_exports(library, declarations):
    exported = [symbol for symbol in of_library(library) if symbol.defined]
    marked = {found.name for found in declarations}
    wrong = [f"exported, not marked: {symbol.demangled}" for symbol in exported if symbol.name not in marked]
    there, needed = overloads(exported), Counter(found.name for found in declarations
                                                 if found.kind == "function" and found.needsSymbol)
    wrong += [f"marked, not exported: {name}" for name, count in needed.items() if there[name] < count]
    demangled = {symbol.demangled for symbol in exported}
    data = [f"{what} for {found.name}" for found in declarations if found.kind == "polymorphic class"
            for what in ("vtable", "typeinfo", "typeinfo name")]
    data += [found.name for found in declarations if found.kind == "variable"]
    return wrong + [f"marked, not exported: {name}" for name in data if name not in demangled]


def wrong_references(library, host_library, host_declarations):
    declared = {found.name for found in host_declarations}
    instantiated = {found.name for found in host_declarations if found.kind == "instantiation"}
    host = {symbol.mangled for symbol in of_library(host_library)
            if symbol.defined and (symbol.name in declared or symbol.name.rpartition("::")[0] in instantiated)}
    return [f"neither host nor runtime: {symbol.demangled}" for symbol in of_library(library)
            if not symbol.defined and symbol.mangled not in host | START_FILES
            and not symbol.version.startswith(RUNTIME_VERSIONS)]


def unasked(library, host_declarations):
    """Operations of the host that the library does not refer to; what holders and thrown types are made of is not meant."""
    asked = {symbol.name for symbol in of_library(library) if not symbol.defined}
    operations = [found.name for found in host_declarations if found.kind == "function" and found.needsSymbol]
    return sorted({name for name in operations if name not in asked and not is_special(*name.split("::")[-2:])})


def is_special(scope, last=""):
    return last in ("clone", "rethrow", scope, "~" + scope)


def is_operation(symbol):
    """Destructors, operators and what belongs to a thrown type come with their class."""
    *scopes, last = symbol.name.split("::")
    return symbol.isFunction and not last.startswith(("~", "operator")) \
        and not any(scope.endswith("Exception") for scope in scopes)


def wrong_operations(library, listed):
    exported = {symbol.name for symbol in of_library(library) if symbol.defined and is_operation(symbol)}
    return [f"exported, not in the list: {name}" for name in sorted(exported - set(listed))] + \
        [f"in the list, not exported: {name}" for name in sorted(set(listed) - exported)]


def listed_operations():
    lines = (source / "packaging/operations.txt").read_text(encoding="utf-8").splitlines()
    return [line for line in lines if line and not line.startswith("#")]


class ContextDataLibrary(unittest.TestCase):
    maxDiff = None
    library = os.environ["CONTEXTDATA_LIBRARY"]
    host_library = os.environ["CONTEXTDATA_HOST_LIBRARY"]

    def test_exports_exactly_what_the_headers_mark(self):
        self.assertEqual([], wrong_exports(self.library, marked_declarations(source / "include", "CONTEXTDATA_API")))

    def test_asks_for_host_and_runtime_only(self):
        declared = marked_declarations(source / "host", "KORVAL_HOST_API")
        self.assertEqual([], wrong_references(self.library, self.host_library, declared))

    def test_asks_for_every_operation_of_the_host(self):
        declared = marked_declarations(source / "host", "KORVAL_HOST_API")
        # How a host's own text accessor tells texts apart, and where its streams write.
        self.assertEqual(["Tamsix::String::getString", "Tamsix::String::isString", "services::io::KLStringSink::write"],
                         unasked(self.library, declared))

    def test_refers_to_the_version_of_the_host_contract(self):
        self.assertIn("contextdata_host_abi_1",
                      [symbol.mangled for symbol in of_library(self.library) if not symbol.defined])

    def test_exports_exactly_the_listed_operations(self):
        operations = listed_operations()
        self.assertEqual([], [name for name, count in Counter(operations).items() if count > 1])
        self.assertEqual([], wrong_operations(self.library, operations))


class Plants(unittest.TestCase):
    """The checks above find what is planted in a small library."""
    maxDiff = None

    HOST = """
    #define MARK __attribute__((visibility("default")))
    namespace h {
    template <class T> struct Walk { virtual ~Walk(); };
    template <class T> Walk<T>::~Walk() {}
    template class MARK Walk<int*>;
    MARK void asked() {}
    MARK void undeclared() {}
    }
    """
    LIBRARY = """
    #include <string>
    #define MARK __attribute__((visibility("default")))
    namespace h {
    template <class T> struct Walk { virtual ~Walk(); };
    extern template class MARK Walk<int*>;
    void asked();
    void undeclared();
    }
    namespace a {
    struct MARK Shape { virtual ~Shape(); virtual void draw(); operator const std::string&() const; };
    Shape::~Shape() {}
    void Shape::draw() {}
    Shape::operator const std::string&() const { static std::string text; return text; }
    MARK std::string plain(int) { h::asked(); h::Walk<int*> walk; return {}; }
    MARK void unmarked() { h::undeclared(); }
    }
    """
    HEADER = """
    namespace a {
    class API Shape : public Base<int> {
     public:
      virtual ~Shape();
      virtual void draw(int = f({1, 2}));
      virtual int pure() const = 0;
      operator const std::string&() const;
      int inlined() { return 1; }
     private:
      void inside();
      int field;
    };
    API std::string plain(int);  // API void commented();
    API std::function<void(int)> plain(double);
    API std::string absent();
    class API Round { virtual void roll(); };
    void local();
    extern API int shared;
    }
    """

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.host, cls.library = (cls.build(name, text) for name, text in (("host", cls.HOST), ("library", cls.LIBRARY)))
        cls.declarations = Reader(cls.HEADER, "API").read()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def build(cls, name, text):
        output = f"{cls.folder.name}/lib{name}.so"
        command = [os.environ["CXX"], "-O1", "-shared", "-fPIC", "-fvisibility=hidden", "-x", "c++", "-", "-o", output]
        subprocess.run(command, input=text, text=True, check=True)
        return output

    def test_wrong_exports_are_found(self):
        # "Round" has no key function here, so that all of its symbols are missing.
        self.assertEqual(
            ["exported, not marked: a::unmarked()", "marked, not exported: a::plain", "marked, not exported: a::absent",
             "marked, not exported: a::Round::roll", "marked, not exported: vtable for a::Round",
             "marked, not exported: typeinfo for a::Round", "marked, not exported: typeinfo name for a::Round",
             "marked, not exported: a::shared"],
            [line for line in wrong_exports(self.library, self.declarations) if "std::" not in line])

    def test_exports_of_the_standard_library_are_found(self):
        leak = self.build("leak", "#include <vector>\nvoid f(std::vector<long>& v) { v.push_back(1); }")
        self.assertTrue([line for line in wrong_exports(leak, []) if "std::" in line])

    def test_wrong_references_are_found(self):
        declared = Reader("namespace h { API void asked(); extern template class API Walk<int*>; }", "API").read()
        self.assertEqual(["neither host nor runtime: h::undeclared()"],
                         wrong_references(self.library, self.host, declared))

    def test_operations_that_nobody_asks_for_are_found(self):
        declared = Reader("namespace h { API void asked(); API void other(); class API Thrown { Thrown(); ~Thrown(); }; }",
                          "API").read()
        self.assertEqual(["h::other"], unasked(self.library, declared))

    def test_wrong_operations_are_found(self):
        self.assertEqual(["exported, not in the list: a::unmarked", "in the list, not exported: a::absent"],
                         wrong_operations(self.library, ["a::plain", "a::absent", "a::Shape::draw"]))

