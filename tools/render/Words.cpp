#include "tools/render/Words.h"

#include <boost/algorithm/string/join.hpp>

#include "tools/render/JsonText.h"
#include "tools/render/Rendering.h"

namespace tools::description {

namespace {

std::string word(const Level& level) { return level ? levelWords().at(*level) : "unknown"; }

std::string listOf(const std::vector<std::u16string>& texts, const std::string& separator) {
  std::vector<std::string> list;
  for (const std::u16string& text : texts) list.push_back(printable(text));
  return joined(list, separator);
}

}  // namespace

const std::vector<std::string>& levelWords() {
  static const std::vector<std::string> words{"public",    "protected", "private",
                                              "immutable", "listed",    "constant"};
  return words;
}

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  return boost::algorithm::join(texts, separator);
}

std::string title(const ClassDescription& described) {
  const std::string name = printable(described.name);
  const std::string identity = printable(described.classId);
  return identity == name ? name : name + " (" + identity + ")";
}

std::string size(const KCOSContextData::PropertyInfo& info) { return listOf(info.sizeStrings, " x "); }

std::string access(const Property& property) {
  const std::string read = word(property.readLevel);
  const std::string write = word(property.writeLevel);
  return read == write ? read : read + ", write: " + write;
}

std::string access(const Method& method) { return word(method.level); }

std::vector<std::string> notes(const Property& property) {
  std::vector<std::string> notes;
  if (property.isHidden) notes.push_back("hidden");
  if (property.info.isDependent) notes.push_back("dependent");
  if (property.info.hasCustomGetter) notes.push_back("reading runs code");
  const auto& functions = property.info.validationFunctions;
  if (!functions.empty()) notes.push_back("checked by: " + listOf(functions, ", "));
  const auto& values = property.info.possibleValues;
  if (!values.empty()) notes.push_back("values: " + listOf(values, ", "));
  return notes;
}

std::vector<std::string> notes(const Method& method) {
  std::vector<std::string> notes;
  if (method.isConstructor) notes.push_back("constructor");
  if (method.info.isStatic) notes.push_back("static");
  if (method.isOperatorOverload) notes.push_back("operator");
  if (method.isHidden) notes.push_back("hidden");
  return notes;
}

}  // namespace tools::description
