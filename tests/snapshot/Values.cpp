#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "embedded/Host.h"

namespace {

using embedded::ValueDescription;

std::string shown(const ValueDescription& value);
std::string shown(const std::u16string& text) {
  std::string units;
  for (const char16_t unit : text) units += (units.empty() ? "" : " ") + std::to_string(unit);
  return units;
}

template <class List, class Show>
std::string joined(const List& list, Show show) {
  std::string text;
  for (const auto& element : list) text += (text.empty() ? "" : ",") + std::string(show(element));
  return text;
}

std::string sizeOf(const std::vector<std::size_t>& size) {
  return joined(size, [](std::size_t dimension) { return std::to_string(dimension); });
}

/// A value in one line: kind(size)[contents].
struct Shown {
  std::string operator()(const embedded::DoubleArray& array) const {
    const auto number = [](double element) {
      std::ostringstream text;
      text << element;
      return text.str();
    };
    return "double(" + sizeOf(array.size) + ")[" + joined(array.elements, number) + "]";
  }
  std::string operator()(const embedded::LogicalArray& array) const {
    return "logical(" + sizeOf(array.size) + ")[" +
           joined(array.elements, [](bool element) { return element ? "t" : "f"; }) + "]";
  }
  std::string operator()(const embedded::CharacterRow& row) const { return "char[" + shown(row.text) + "]"; }
  std::string operator()(const embedded::StringScalar& string) const {
    return "string[" + (string.text ? shown(*string.text) : "missing") + "]";
  }
  std::string operator()(const embedded::CellArray& array) const {
    const auto element = [](const auto& value) { return value ? shown(*value) : "absent"; };
    return "cell(" + sizeOf(array.size) + ")[" + joined(array.elements, element) + "]";
  }
  std::string operator()(const embedded::StructureArray& array) const {
    return "struct(" + sizeOf(array.size) + ")[" +
           joined(array.fields, [](const auto& field) { return field; }) + ":" +
           joined(array.values, [](const auto& value) { return shown(value); }) + "]" + array.className;
  }
  std::string operator()(const embedded::ObjectValue& object) const {
    const auto property = [](const auto& stored) { return stored.name + "=" + shown(stored.value); };
    return object.className + "[" + joined(object.properties, property) + "]" + object.member;
  }
  std::string operator()(const embedded::StringArray& array) const {
    const auto element = [](const auto& text) { return text ? shown(*text) : "missing"; };
    return "strings(" + sizeOf(array.size) + ")[" + joined(array.elements, element) + "]";
  }
  std::string operator()(const embedded::CharacterArray& array) const {
    return "char(" + sizeOf(array.size) + ")[" + shown(array.elements) + "]";
  }
  std::string operator()(const embedded::ObjectArray& array) const {
    return "objects(" + sizeOf(array.size) + ")" + array.className + "[" +
           joined(array.elements, [](const auto& object) { return shown(object); }) + "]" +
           (array.foreign ? "foreign" : "");
  }
  std::string operator()(const embedded::OpaqueObject& object) const {
    const auto field = [](const auto& stored) { return stored.name + "=" + shown(stored.value); };
    const auto method = [](const auto& known) {
      return known.name + (known.answer ? "=" + shown(*known.answer) : "");
    };
    return "opaque " + object.className + "[" + joined(object.fields, field) + "|" +
           joined(object.methods, method) + "]" + (object.java ? "java" : "") +
           std::to_string(static_cast<int>(object.dimensions));
  }
  std::string operator()(const embedded::FunctionHandleValue& handle) const { return "@" + handle.function; }
  std::string operator()(const embedded::ClassReferenceValue& reference) const {
    return "?" + reference.className;
  }
  std::string operator()(const embedded::ForeignMemberValue& member) const {
    return "foreign " + member.className + "." + member.member;
  }
  std::string operator()(const embedded::TallValue& tall) const { return "tall " + shown(tall.inside.at(0)); }
};
std::string shown(const ValueDescription& value) { return std::visit(Shown{}, value.content); }

TEST(SnapshotValues, AreWhatTheTextSays) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"3", "double()[3]"},
      {"-0.5e1", "double()[-5]"},
      {"18446744073709551615", "double()[1.84467e+19]"},
      {"true", "logical()[t]"},
      {"false", "logical()[f]"},
      {R"("")", "char[]"},
      {R"("aä😀")", "char[97 228 55357 56832]"},
      {R"("\u0000\n")", "char[0 10]"},
      {"[]", "double()[]"},
      {"[1, 2, 3]", "double()[1,2,3]"},
      {R"([1, "NaN", "Inf", "-Inf"])", "double()[1,nan,inf,-inf]"},
      {R"({"double": []})", "double()[]"},
      {R"({"double": [], "size": [0, 0]})", "double(0,0)[]"},
      {R"({"double": [], "size": [3, 0, 18446744073709]})", "double(3,0,18446744073709)[]"},
      {R"({"double": [1, 2, 3, 4, 5, 6], "size": [1, 2, 3]})", "double(1,2,3)[1,2,3,4,5,6]"},
      {R"({"logical": [true, false], "size": [2, 1]})", "logical(2,1)[t,f]"},
      {R"({"string": "a"})", "string[97]"},
      {R"({"string": ""})", "string[]"},
      {R"({"string": null})", "string[missing]"},
      {R"({"cell": [1, null, "a", {"cell": []}]})", "cell()[double()[1],absent,char[97],cell()[]]"},
      {R"({"cell": [null, null], "size": [2, 1]})", "cell(2,1)[absent,absent]"},
      {R"({"struct": {"b": 1, "a": true}})", "struct()[b,a:double()[1],logical()[t]]"},
      {R"({"struct": {}})", "struct(1,1)[:]"},
      {R"({"structs": [{"a": 1}]})", "struct(1,1)[a:double()[1]]"},
      {R"({"structs": [{"a": 1, "b": 2}, {"b": 4, "a": 3}]})",
       "struct(1,2)[a,b:double()[1],double()[2],double()[3],double()[4]]"},
      {R"({"structs": [{"a": 1}, {"a": 2}], "size": [2, 1]})", "struct(2,1)[a:double()[1],double()[2]]"},
      {R"({"structs": []})", "struct(1,0)[:]"},
      {R"({"structs": [], "size": [0, 0], "fields": ["a", "b"]})", "struct(0,0)[a,b:]"},
      {R"({"structs": [], "size": [2, 2]})", "struct(2,2)[:]"},
      {R"({"structs": [{"a": {"structs": [{"a": 1}, {"a": 2}]}}, {"a": 3}]})",
       "struct(1,2)[a:struct(1,2)[a:double()[1],double()[2]],double()[3]]"},
      {R"({"object": "P"})", "P[]"},
      {R"({"object": "c:P", "properties": {"q": 1, "inherited": {"object": "Alias"}}})",
       "c:P[q=double()[1],inherited=Alias[]]"},
      {R"({"object": "P", "member": "On"})", "P[]On"},
      {R"({"strings": ["a", null], "size": [2, 1]})", "strings(2,1)[97,missing]"},
      {R"({"char": "ab", "size": [2, 1]})", "char(2,1)[97 98]"},
      {R"({"objects": [{"object": "P"}, {"object": "c:P"}], "class": "P"})", "objects()P[P[],c:P[]]"},
      {R"({"objects": [], "class": "P", "size": [0, 0]})", "objects(0,0)P[]"},
      {R"({"opaque": "F", "fields": {"a": 1}, "methods": {"m": 2, "n": null}, "java": true})",
       "opaque F[a=double()[1]|m=double()[2],n]java0"},
      {R"({"opaque": "F", "dimensions": "lazy"})", "opaque F[|]2"},
      {R"({"handle": "f.g"})", "@f.g"},
      {R"({"class": "P"})", "?P"},
      {"-0", "double()[-0]"},
      {R"({"objects": [{"opaque": "F"}], "class": "F", "foreign": true})", "objects()F[opaque F[|]0]foreign"},
      {R"({"foreign": "x.Y", "member": "m"})", "foreign x.Y.m"},
      {R"({"tall": [1, 2]})", "tall double()[1,2]"},
      {R"({"struct": {"a": 1}, "class": "Older"})", "struct()[a:double()[1]]Older"},
      {R"({"structs": [{"a": 1}], "class": "Older"})", "struct(1,1)[a:double()[1]]Older"},
  };
  for (const auto& [text, expected] : rows) {
    const auto world = embedded::readSnapshotText(
        R"({"format": 1, "workspace": [{"name": "x", "value": )" + text + R"(}], "classes": [
            {"name": "P", "component": "c", "superclasses": ["Base"], "properties": ["q"], "members": ["On"]},
            {"name": "Base", "aliases": ["Alias"], "properties": ["inherited"]}],
            "foreignClasses": [{"name": "x.Y", "members": ["m"]}]})",
        "");
    EXPECT_EQ(shown(world.workspace.at(0).value), expected) << text;
    EXPECT_EQ(world.workspace[0].name, "x");
  }
}

}  // namespace
