#include "tools/query/Operation.h"

#include <algorithm>

namespace tools::query {

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all = [] {
    std::vector<Operation> joined;
    for (const auto& part :
         {identifierOperations(), gatewayOperations(), tableOperations(), memberNameOperations(),
          classRecordOperations(), memberRecordOperations(), visitorOperations(), objectOperations(),
          namespaceOperations(), valueOperations(), evaluationOperations(), frameOperations(),
          searchPathOperations()}) {
      joined.insert(joined.end(), part.begin(), part.end());
    }
    return joined;
  }();
  return all;
}

const Operation* findOperation(const std::string& name) {
  const auto found = std::find_if(operations().begin(), operations().end(),
                                  [&](const Operation& operation) { return operation.name == name; });
  return found == operations().end() ? nullptr : &*found;
}

}  // namespace tools::query
