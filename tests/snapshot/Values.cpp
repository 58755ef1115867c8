#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "embedded/Host.h"
#include "tests/support/Table.h"

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
    return object.className + "[" + joined(object.properties, property) + "]" + object.member +
           (object.text ? "'" + shown(*object.text) + "'" : "") + (object.failing ? "!" : "");
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
    return "opaque " + object.className + "[" + joined(object.fields, field) + ";" +
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
  for (const auto& [text, expected] : rowsOf<2>("tests/snapshot/values.rows", "read")) {
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
