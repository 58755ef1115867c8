#include "tests/snapshot/BrokenTexts.h"

std::string world(const std::string& content) { return R"({"format": 1, )" + content + "}"; }
std::string oneClass(const std::string& content) {
  return world(R"("classes": [{"name": "lab.Pump", )" + content + "}]");
}
std::string property(const std::string& content) {
  return oneClass(R"("properties": [{"name": "Flow", )" + content + "}]");
}
std::string value(const std::string& content) {
  return world(R"("workspace": [{"name": "x", "value": )" + content + "}]");
}
std::string object(const std::string& content) {
  return world(R"("classes": [{"name": "P", "properties": ["a"], "members": ["m"]}], )"
               R"("workspace": [{"name": "x", "value": {"object": "P", )" +
               content + "}}]");
}
std::string nested(std::size_t depth) {
  std::string text = "1";
  for (std::size_t level = 0; level < depth; ++level) text = R"({"cell": [)" + text + "]}";
  return value(text);
}

const std::vector<BrokenText> brokenShapes{
    {"", "snapshot.empty", "", "nothing"},
    {" \n\t", "snapshot.empty", "", "nothing"},
    {"\xEF\xBB\xBF\n", "snapshot.empty", "", "nothing"},

    {"// only a comment\n", "snapshot.truncated", "", "ends"},
    {"tru", "snapshot.truncated", "", "ends"},

    {R"({"format": )", "snapshot.truncated", "/format", "ends"},
    {R"({"format": 1, "classes": [{"name": "A)", "snapshot.truncated", "/classes/0/name", "ends"},
    {R"({"format": 1, "classes": [{"name": "A"}, )", "snapshot.truncated", "/classes/0", "ends"},
    {R"({"format": 1} /* no end)", "snapshot.syntax", "", "comment"},
    {R"({"format": 1} {})", "snapshot.syntax", "", "line 1, column 15"},
    {"{\"format\": 1,\n  \"classes\": [,]}", "snapshot.syntax", "/classes", "line 2, column 15"},
    {"{\"format\": 1,\n\n \"components\": yes}", "snapshot.syntax", "/components", "line 3, column 16"},
    {R"({"format": 1, })", "snapshot.syntax", "/format", "unexpected '}'"},
    {R"({'format': 1})", "snapshot.syntax", "", "line 1, column 2"},
    {R"({"format": 1x})", "snapshot.syntax", "/format", "column 13"},
    {value(R"("\ud800")"), "snapshot.syntax", "/workspace/0/value", "surrogate"},
    {"{\"format\": 1, \"name\nspaces\": []}", "snapshot.syntax", "/format", "line 1"},
    {std::string("{\"format\": 1\0}", 14), "snapshot.syntax", "/format", "column 13"},

    {"{\"format\": 1, \"namespaces\": [\"l\xFF\"]}", "snapshot.not-utf8", "", "line 1, column 32"},
    {"{\"format\": 1}\n// caf\xE9\n", "snapshot.not-utf8", "", "line 2, column 7"},
    {"{\"format\": 1}\n// \xC3", "snapshot.not-utf8", "", "line 2, column 4"},
    {std::string("\xFF\xFE{\0}\0", 6), "snapshot.not-utf8", "", "line 1, column 1"},

    {nested(100), "snapshot.too-deep", "", "200 levels"},
    {nested(50000), "snapshot.too-deep", "", "200 levels"},

    {R"({"format": 2})", "snapshot.newer-format", "/format", "older ones"},
    {R"({"format": 0})", "snapshot.out-of-range", "/format", "from 1"},
    {R"({"format": 1.5})", "snapshot.wrong-type", "/format", "whole number"},
    {R"({"format": "1"})", "snapshot.wrong-type", "/format", "found a text"},
    {R"({"classes": []})", "snapshot.missing-key", "", "\"format\""},
    {"[]", "snapshot.wrong-type", "", "expected a snapshot, found a list"},
    {"1", "snapshot.wrong-type", "", "found a number"},
    {"null", "snapshot.wrong-type", "", "found null"},

    {world(R"("clases": [])"), "snapshot.unknown-key", "/clases", "\"clases\""},
    {world(R"("classes": [], "classes": [])"), "snapshot.duplicate-key", "/classes", "twice"},
    {world(R"("classes": {})"), "snapshot.wrong-type", "/classes", "expected a list, found an object"},
    {world(R"("classes": [{"name": "A"}, "B"])"), "snapshot.wrong-type", "/classes/1", "expected a class"},
    {world(R"("classes": [{"hidden": true}])"), "snapshot.missing-key", "/classes/0", "\"name\""},
    {oneClass(R"("hidden": 1)"), "snapshot.wrong-type", "/classes/0/hidden", "true or false"},
    {oneClass(R"("supers": [])"), "snapshot.unknown-key", "/classes/0/supers", "superclasses"},
    {oneClass(R"("a/b~c": 1)"), "snapshot.unknown-key", "/classes/0/a~1b~0c", "a/b~c"},
    {oneClass(R"("name": "B")"), "snapshot.duplicate-key", "/classes/0/name", "twice"},
    {world(R"("classes": [{"name": null}])"), "snapshot.wrong-type", "/classes/0/name", "found null"},
    {oneClass(R"("superclasses": "A")"), "snapshot.wrong-type", "/classes/0/superclasses", "a list"},
    {oneClass(R"("order": "depth-first")"), "snapshot.unknown-word", "/classes/0/order", "inherited-first"},
    {oneClass(R"("attributeNames": [{}, {}, {}])"), "snapshot.wrong-size", "/classes/0/attributeNames",
     "four"},
    {oneClass(R"("attributeNames": [{}, {}, {}, {}, {}])"), "snapshot.wrong-size",
     "/classes/0/attributeNames/4", "four"},
    {oneClass(R"("properties": [{"hidden": true}])"), "snapshot.missing-key", "/classes/0/properties/0",
     "name"},
    {oneClass(R"("properties": [null])"), "snapshot.wrong-type", "/classes/0/properties/0", "a property"},
    {oneClass(R"("methods": [{"name": "m", "set": 1}])"), "snapshot.unknown-key", "/classes/0/methods/0/set",
     "static"},
    {oneClass(R"("methods": [{"name": "m", "visible": null}])"), "snapshot.wrong-type",
     "/classes/0/methods/0/visible", "true or false"},
    {oneClass(R"("members": [{"name": 3}])"), "snapshot.wrong-type", "/classes/0/members/0/name", "or null"},

    {property(R"("access": "secret")"), "snapshot.bad-level", "/classes/0/properties/0/access", "\"secret\""},
    {property(R"("get": 2)"), "snapshot.wrong-type", "/classes/0/properties/0/get", "a level"},
    {property(R"("get": {"classes": []})"), "snapshot.missing-key", "/classes/0/properties/0/get", "level"},
    {property(R"("get": {"level": 2})"), "snapshot.wrong-type", "/classes/0/properties/0/get/level",
     "a text"},
    {property(R"("access": "public", "get": "public")"), "snapshot.conflicting-keys",
     "/classes/0/properties/0/get", "\"access\""},
    {property(R"("set": "public", "access": "public")"), "snapshot.conflicting-keys",
     "/classes/0/properties/0/access", "\"set\""},
    {property(R"("constant": false, "set": "public")"), "snapshot.conflicting-keys",
     "/classes/0/properties/0/set", "\"constant\""},
    {property(R"("optimized": true)"), "snapshot.wrong-type", "/classes/0/properties/0/optimized", "storage"},
    {property(R"("attributes": ["a"])"), "snapshot.wrong-type", "/classes/0/properties/0/attributes/0",
     "an attribute"},

    {property(R"("validation": {"size": ["n"]})"), "snapshot.unknown-word",
     "/classes/0/properties/0/validation/size/0", "\"n\""},
    {property(R"("validation": {"size": [null]})"), "snapshot.wrong-type",
     "/classes/0/properties/0/validation/size/0", "one of :"},
    {property(R"("validation": {"size": [-1]})"), "snapshot.out-of-range",
     "/classes/0/properties/0/validation/size/0", ""},
    {property(R"("validation": {"type": "double"})"), "snapshot.unknown-key",
     "/classes/0/properties/0/validation/type", "class, size, functions"},
    {property(R"("values": [null])"), "snapshot.wrong-type", "/classes/0/properties/0/values/0", "a value"},
    {property(R"("values": [{"object": "lab.Pump", "failing": true, "text": null}])"),
     "snapshot.conflicting-keys", "/classes/0/properties/0/values/0/text", "\"failing\""},
    {property(R"("conversion": null)"), "snapshot.wrong-type", "/classes/0/properties/0/conversion",
     "true or false"},

    {value("null"), "snapshot.wrong-type", "/workspace/0/value", "a value"},
    {value("[1, null]"), "snapshot.wrong-type", "/workspace/0/value/1", "found null"},
    {value("[1, true]"), "snapshot.wrong-type", "/workspace/0/value/1", "found true or false"},
    {value(R"([1, "nan"])"), "snapshot.unknown-word", "/workspace/0/value/1", "NaN, Inf, -Inf"},
    {value("1e999"), "snapshot.out-of-range", "/workspace/0/value", "too big"},
    {value("{}"), "snapshot.missing-key", "/workspace/0/value", "double"},
    {value(R"({"size": [1, 1], "double": [1]})"), "snapshot.kind-first", "/workspace/0/value/size", "double"},
    {value(R"({"matrix": [1]})"), "snapshot.kind-first", "/workspace/0/value/matrix", "\"matrix\""},
    {value(R"({"double": [1], "cell": []})"), "snapshot.unknown-key", "/workspace/0/value/cell", "size"},
    {value(R"({"double": [1], "double": []})"), "snapshot.duplicate-key", "/workspace/0/value/double", ""},
    {value(R"({"double": [1, 2], "size": [2, 2]})"), "snapshot.wrong-size", "/workspace/0/value/size",
     "2 el"},
    {value(R"({"double": [1], "size": [1]})"), "snapshot.wrong-size", "/workspace/0/value/size", "two dim"},
    {value(R"({"double": [1], "size": []})"), "snapshot.wrong-size", "/workspace/0/value/size", "two dim"},
    {value(R"({"double": [1], "size": [-1, -1]})"), "snapshot.out-of-range", "/workspace/0/value/size/0", ""},
    {value(R"({"double": [], "size": [4294967296, 4294967296, 5]})"), "snapshot.wrong-size",
     "/workspace/0/value/size", "0 elements"},
    {value(R"({"logical": [1]})"), "snapshot.wrong-type", "/workspace/0/value/logical/0", "true or false"},
    {value(R"({"string": 1})"), "snapshot.wrong-type", "/workspace/0/value/string", "a text"},
    {value(R"({"cell": [[1], {"cell": [null, {"cel": 1}]}]})"), "snapshot.kind-first",
     "/workspace/0/value/cell/1/cell/1/cel", "\"cel\""},
    {value(R"({"struct": {"a": 1, "a": 2}})"), "snapshot.duplicate-key", "/workspace/0/value/struct/a", ""},
    {value(R"({"struct": {"": 1}})"), "snapshot.bad-name", "/workspace/0/value", "empty"},
    {value(R"({"struct": []})"), "snapshot.wrong-type", "/workspace/0/value/struct", "fields"},
    {value(R"({"struct": {"a": null}})"), "snapshot.wrong-type", "/workspace/0/value/struct/a", "found null"},
    {value(R"({"structs": [{"a": 1}, {"b": 1}]})"), "snapshot.different-fields",
     "/workspace/0/value/structs/1/b", "\"b\""},
    {value(R"({"structs": [{"a": 1, "b": 2}, {"b": 1}]})"), "snapshot.different-fields",
     "/workspace/0/value/structs/1", "\"a\""},
    {value(R"({"structs": [{"a": 1}, {"a": 1, "a": 2}]})"), "snapshot.duplicate-key",
     "/workspace/0/value/structs/1/a", ""},
    {value(R"({"structs": [{}]})"), "snapshot.missing-key", "/workspace/0/value/structs", "without fields"},
    {value(R"({"structs": [{"a": 1}], "size": [2, 1]})"), "snapshot.wrong-size", "/workspace/0/value/size",
     "1 "},
    {value(R"({"structs": [{"a": 1}], "fields": ["a"]})"), "snapshot.conflicting-keys",
     "/workspace/0/value/fields", ""},
    {value(R"({"structs": [], "fields": ["a", "a"]})"), "snapshot.duplicate-field", "/workspace/0/value",
     "\"a\""},
    {value(R"({"object": 1})"), "snapshot.wrong-type", "/workspace/0/value/object", "a text"},
    {world(R"("workspace": [{"name": "x"}])"), "snapshot.missing-key", "/workspace/0", "\"value\""},
    {world(R"("scopes": [])"), "snapshot.wrong-type", "/scopes", "object of scopes"},
    {world(R"("scopes": {"debugger": null})"), "snapshot.wrong-type", "/scopes/debugger", "a debugger"},
    {world(R"("scopes": {"debugger": {"focus": "", "first": 3000000000}})"), "snapshot.out-of-range",
     "/scopes/debugger/first", ""},
    {world(R"("path": [{"folder": "a", "kind": "private"}])"), "snapshot.unknown-word", "/path/0/kind",
     "package"},
};
