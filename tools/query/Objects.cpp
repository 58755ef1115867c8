// What an object says about itself, and what a variable offers behind a dot.

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using Names = std::vector<std::u16string>;

void callFunctionOnObject(Question& question) {
  const auto object = question.arguments.existingValue("object");
  const std::string function = question.arguments.narrowText("functionName");
  Names names = question.arguments.textsOrNone("names");
  question.ask([&] { return KCOSIntrospection::callFunctionOnObject(object.get(), function, names); });
  question.tell("names", names);
}

/// An operation that appends to the names and answers nothing else.
template <void (*append)(const kxArray_tag*, Names&)>
void appendNames(Question& question, const std::string& argument) {
  const auto value = question.arguments.existingValue(argument);
  Names names = question.arguments.textsOrNone("names");
  question.ask([&] { return append(value.get(), names), nullptr; });
  question.tell("names", names);
}

void getObjectPropertyNames(Question& question) {
  appendNames<KCOSIntrospection::getObjectPropertyNames>(question, "object");
}

void getOpaqueProperties(Question& question) { appendNames<getOpaqueObjectProperties>(question, "value"); }

void getOpaqueMethods(Question& question) { appendNames<getOpaqueObjectMethods>(question, "value"); }

void isNoDotMethodClass(Question& question) {
  const auto value = question.arguments.existingValue("value");
  question.ask([&] { return KCOSIntrospection::isNoDotMethodClass(value.get()); });
}

void isObject(Question& question) {
  const auto value = question.arguments.existingValue("value");
  question.ask([&] { return isObjectOrIsOpaque(value.get()); });
}

void methodsForVariable(Question& question) {
  const std::u16string name = question.arguments.text("name");
  const boost::intrusive_ptr<const kxArray_tag> value = question.arguments.existingValue("value");
  question.ask([&] { return getMethodsForWSVariable(name, value); });
}

}  // namespace

std::vector<Operation> objectOperations() {
  return {
      {"callFunctionOnObject", callFunctionOnObject},     {"getObjectPropertyNames", getObjectPropertyNames},
      {"isNoDotMethodClass", isNoDotMethodClass},         {"isObjectOrIsOpaque", isObject},
      {"getOpaqueObjectProperties", getOpaqueProperties}, {"getOpaqueObjectMethods", getOpaqueMethods},
      {"getMethodsForWSVariable", methodsForVariable}};
}

}  // namespace tools::query
