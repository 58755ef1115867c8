#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using KCOSContextData::MethodInfo;
using KCOSContextData::PropertyInfo;

void castSizeStringToIntegers(Question& question) {
  const std::vector<std::u16string> sizeStrings = question.arguments.texts("sizeStrings");
  question.ask([&] { return PropertyInfo::castSizeStringToIntegers(sizeStrings); });
}

void isOperatorOverload(Question& question) {
  askByName(question, [](const auto& name) { return MethodInfo::isOperatorOverload(name); });
}

template <bool (*takesPart)(kcos::COSInternedName)>
void answerForClass(Question& question) {
  const kcos::COSInternedName classId = question.arguments.identifier("classId");
  question.ask([&] { return takesPart(classId); });
}

}  // namespace

std::vector<Operation> memberRecordOperations() {
  return {{"castSizeStringToIntegers", castSizeStringToIntegers},
          {"isOperatorOverload", isOperatorOverload},
          {"isClassToCompleteMethodsForBeforeDot",
           answerForClass<&MethodInfo::isClassToCompleteMethodsForBeforeDot>},
          {"isClassToCompleteMethodsForAfterDot",
           answerForClass<&MethodInfo::isClassToCompleteMethodsForAfterDot>}};
}

}  // namespace tools::query
