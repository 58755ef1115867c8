#include <contextdata/KCOSContextData/CompletionTables.h>

#include "tests/faults/FaultLoop.h"

namespace faults {

// The tables ask nothing of the host: there is no call that could fail, which the loop finds out by itself.
std::vector<Question> completionTableQuestions() {
  using namespace KCOSContextData;
  const std::string n = "KCOSContextData::";
  const auto sizeOf = [](auto table) {
    return [table](Answer& answer) { answer.result = std::to_string(table().size()); };
  };
  return {{n + "getKCOSMethodsExcludeSet", "", sizeOf(getKCOSMethodsExcludeSet), {}},
          {n + "getVX2KorvalNamespacesExcludeSet", "", sizeOf(getVX2KorvalNamespacesExcludeSet), {}},
          {n + "getVX2NamespacesExcludeSet", "", sizeOf(getVX2NamespacesExcludeSet), {}},
          {n + "getNoDotMethodClassesExcludeSet", "", sizeOf(getNoDotMethodClassesExcludeSet), {}},
          {n + "getAttributesToTreatAsHavingCustomGetters",
           "",
           sizeOf(getAttributesToTreatAsHavingCustomGetters),
           {}}};
}

}  // namespace faults
