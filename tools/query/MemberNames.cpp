#include <contextdata/KCOSContextData/MemberNames.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using KCOSContextData::ResolvedClassID;

using Names = std::vector<std::u16string>;
using ByIdentifier = bool (*)(const ResolvedClassID&, Names&, bool&);
using ByName = bool (*)(const std::u16string&, Names&, bool&);

template <ByIdentifier byIdentifier, ByName byName>
void answerNames(Question& question) {
  const Arguments& arguments = question.arguments;
  Names names = arguments.textsOrNone("names");
  bool classFlag = arguments.flag("classFlag");
  if (arguments.has("id")) {
    const ResolvedClassID id = arguments.identifier("id");
    question.ask([&] { return byIdentifier(id, names, classFlag); });
  } else {
    const std::u16string className = arguments.text("className");
    question.ask([&] { return byName(className, names, classFlag); });
  }
  question.tell("names", names);
  question.tell("classFlag", classFlag);
}

}  // namespace

std::vector<Operation> memberNameOperations() {
  using namespace KCOSContextData;
  return {{"getClassConstantPropertyNames",
           answerNames<getClassConstantPropertyNames, getClassConstantPropertyNames>},
          {"getClassPropertyNames", answerNames<getClassPropertyNames, getClassPropertyNames>},
          {"getClassStaticMethodNames", answerNames<getClassStaticMethodNames, getClassStaticMethodNames>},
          {"getClassMethodNames", answerNames<getClassMethodNames, getClassMethodNames>},
          {"getClassEnumerationNames", answerNames<getClassEnumerationNames, getClassEnumerationNames>}};
}

}  // namespace tools::query
