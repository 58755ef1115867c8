#include <contextdata/KCOSContextData/ClassInfo.h>

#include "tools/query/Operation.h"
#include "tools/query/Records.h"

namespace tools::query {

namespace {

void constructor(Question& question) {
  constructRecord(question.arguments, [&](const auto& make) { question.ask(make); });
}

void getProperties(Question& question) {
  const Record asked = record(question.arguments, "record");
  if (question.arguments.has("accessLevels")) {
    const auto levels = question.arguments.numbers("accessLevels");
    const Record accessingClass = recordOrNone(question.arguments, "accessingClass");
    question.ask([&] { return asked->getProperties(levels, accessingClass.get()); });
  } else {
    const auto read = propertyOptions(question.arguments, "options");
    question.ask([&] { return asked->getProperties(read.options); });
  }
}

void getPropertiesOfSuperclasses(Question& question) {
  const Record asked = record(question.arguments, "record");
  const auto read = propertyOptions(question.arguments, "options");
  question.ask([&] { return asked->getPropertiesOfSuperclasses(read.options); });
}

void getMethods(Question& question) {
  const Record asked = record(question.arguments, "record");
  if (question.arguments.has("access")) {
    const auto levels = question.arguments.numbers("access");
    const auto context = completionContext(question.arguments, "context");
    const Record accessingClass = recordOrNone(question.arguments, "accessingClass");
    question.ask([&] { return asked->getMethods(levels, context, accessingClass.get()); });
  } else {
    const auto read = methodOptions(question.arguments, "options");
    question.ask([&] { return asked->getMethods(read.options); });
  }
}

void getMethodsOfSuperclasses(Question& question) {
  const Record asked = record(question.arguments, "record");
  const auto read = methodOptions(question.arguments, "options");
  question.ask([&] { return asked->getMethodsOfSuperclasses(read.options); });
}

void getAttributes(Question& question) {
  const Record asked = record(question.arguments, "record");
  const bool argument = question.arguments.flag("argument");
  question.ask([&] { return asked->getAttributes(argument); });
}

void isA(Question& question) {
  const Record asked = record(question.arguments, "record");
  if (question.arguments.has("identity")) {
    const kcos::COSInternedName identity = question.arguments.identifier("identity");
    question.ask([&] { return asked->isA(identity); });
  } else {
    const std::u16string className = question.arguments.text("className");
    question.ask([&] { return asked->isA(className); });
  }
}

void getDefaultAccessibility(Question& question) {
  const Record asked = record(question.arguments, "record");
  question.ask([&] { return asked->getDefaultAccessibility(); });
}

void getSuperclasses(Question& question) {
  const Record asked = record(question.arguments, "record");
  question.ask([&] { return asked->structure.getSuperclasses(); });
}

}  // namespace

std::vector<Operation> classRecordOperations() {
  return {{"ClassInfo", constructor},
          {"getProperties", getProperties},
          {"getPropertiesOfSuperclasses", getPropertiesOfSuperclasses},
          {"getMethods", getMethods},
          {"getMethodsOfSuperclasses", getMethodsOfSuperclasses},
          {"getAttributes", getAttributes},
          {"isA", isA},
          {"getDefaultAccessibility", getDefaultAccessibility},
          {"getSuperclasses", getSuperclasses}};
}

}  // namespace tools::query
