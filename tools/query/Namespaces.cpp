// What namespaces and packages hold, and what functions declare.

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/PKXContextData.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using Names = std::vector<std::u16string>;

template <bool (*append)(const std::u16string&, Names&)>
void appendNames(Question& question, const std::string& argument) {
  const std::u16string holder = question.arguments.text(argument);
  Names names = question.arguments.textsOrNone("names");
  question.ask([&] { return append(holder, names); });
  question.tell("names", names);
}

template <bool (*append)(const std::u16string&, Names&)>
void namesOfNamespace(Question& question) {
  appendNames<append>(question, "ns");
}

void getAllNamespaces(Question& question) { question.ask(KCOSContextData::getKCOSAllNamespaces); }

void getMetadata(Question& question) {
  const std::u16string reference = question.arguments.text("functionReference");
  const std::u16string name = question.arguments.text("functionName");
  question.ask([&] { return KCOSContextData::getArgumentBlockMetadata(reference, name); });
}

void isPackage(Question& question) {
  const std::u16string name = question.arguments.text("name");
  question.ask([&] { return IsPKXPackage(name); });
}

void getPackageStrings(Question& question) {
  appendNames<PKXContextData::getPackageStrings>(question, "package");
}

}  // namespace

std::vector<Operation> namespaceOperations() {
  using namespace KCOSContextData;
  return {{"getNamespaceFunctionNames", namesOfNamespace<getNamespaceFunctionNames>},
          {"getNamespaceClassNames", namesOfNamespace<getNamespaceClassNames>},
          {"getNamespaceNamespaceNames", namesOfNamespace<getNamespaceNamespaceNames>},
          {"getKCOSAllNamespaces", getAllNamespaces},
          {"getArgumentBlockMetadata", getMetadata},
          {"IsPKXPackage", isPackage},
          {"getPackageStrings", getPackageStrings}};
}

}  // namespace tools::query
