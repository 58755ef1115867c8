#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using KCOSContextData::ResolvedClassID;

void constructor(Question& question) {
  construct(question.arguments, [&](const auto& make) { question.ask(make); });
}

void fromKnownResolvedClassID(Question& question) {
  askByName(question, [](const auto& name) { return ResolvedClassID::fromKnownResolvedClassID(name); });
}

void fromLegacyString(Question& question) {
  askByName(question, [](const auto& name) { return ResolvedClassID::fromLegacyString(name); });
}

void isAlreadyResolved(Question& question) {
  askByName(question, [](const auto& name) { return ResolvedClassID::isAlreadyResolved(name); });
}

void getComponentQualifiedName(Question& question) {
  const ResolvedClassID id = question.arguments.identifier("id");
  question.ask([&] { return id.getComponentQualifiedName(); });
}

void getNonComponentQualifiedName(Question& question) {
  const ResolvedClassID id = question.arguments.identifier("id");
  question.ask([&] { return id.getNonComponentQualifiedName(); });
}

void getDebuggerFocus(Question& question) { question.ask(&ResolvedClassID::GetDebuggerFocus); }

}  // namespace

std::vector<Operation> identifierOperations() {
  return {{"ResolvedClassID", constructor},
          {"fromKnownResolvedClassID", fromKnownResolvedClassID},
          {"fromLegacyString", fromLegacyString},
          {"isAlreadyResolved", isAlreadyResolved},
          {"getComponentQualifiedName", getComponentQualifiedName},
          {"getNonComponentQualifiedName", getNonComponentQualifiedName},
          {"GetDebuggerFocus", getDebuggerFocus}};
}

}  // namespace tools::query
