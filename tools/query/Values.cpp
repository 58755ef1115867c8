#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include <limits>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

/// The library adopts a reference, which is made for it.
void adopt(Question& question) {
  boost::intrusive_ptr<kxArray_tag> value = question.arguments.value("value");
  question.ask([&] { return makeSharedPtr(value.detach()); });
}

void readProperty(Question& question) {
  const auto object = question.arguments.existingValue("object");
  const std::string name = question.arguments.narrowText("name");
  const unsigned long index = question.arguments.count("index", std::numeric_limits<std::int32_t>::max());
  question.ask([&] { return getSharedProperty(object.get(), name, index); });
}

void getStrings(Question& question) {
  const auto value = question.arguments.value("value");
  std::vector<std::u16string> strings = question.arguments.textsOrNone("strings");
  question.ask([&] { return getStringsFromKxarray(value.get(), strings); });
  question.tell("strings", strings);
}

void getSize(Question& question) {
  const auto value = question.arguments.value("value");
  question.ask([&] { return getSizeFromKxArray(value.get()); });
}

void getFieldNames(Question& question) {
  const auto value = question.arguments.existingValue("value");
  std::vector<std::u16string> names = question.arguments.textsOrNone("names");
  question.ask([&] { return StructContextData::getStructFieldNames(value.get(), names), nullptr; });
  question.tell("names", names);
}

void getPrecedence(Question& question) {
  const std::u16string classA = question.arguments.text("classA");
  const std::u16string classB = question.arguments.text("classB");
  question.ask([&] { return GetClassPrecedence(classA, classB); });
}

void isForeignFunction(Question& question) {
  const std::u16string name = question.arguments.text("name");
  question.ask([&] { return IsJavaFunction(name); });
}

}  // namespace

std::vector<Operation> valueOperations() {
  return {{"makeSharedPtr", adopt},
          {"getSharedProperty", readProperty},
          {"getStringsFromKxarray", getStrings},
          {"getSizeFromKxArray", getSize},
          {"getStructFieldNames", getFieldNames},
          {"GetClassPrecedence", getPrecedence},
          {"IsJavaFunction", isForeignFunction}};
}

}  // namespace tools::query
