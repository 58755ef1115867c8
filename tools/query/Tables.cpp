#include <contextdata/KCOSContextData/CompletionTables.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

template <auto table>
void answerTable(Question& question) {
  question.ask([] { return table(); });
}

}  // namespace

std::vector<Operation> tableOperations() {
  using namespace KCOSContextData;
  return {
      {"getKCOSMethodsExcludeSet", answerTable<&getKCOSMethodsExcludeSet>},
      {"getVX2KorvalNamespacesExcludeSet", answerTable<&getVX2KorvalNamespacesExcludeSet>},
      {"getVX2NamespacesExcludeSet", answerTable<&getVX2NamespacesExcludeSet>},
      {"getNoDotMethodClassesExcludeSet", answerTable<&getNoDotMethodClassesExcludeSet>},
      {"getAttributesToTreatAsHavingCustomGetters", answerTable<&getAttributesToTreatAsHavingCustomGetters>}};
}

}  // namespace tools::query
