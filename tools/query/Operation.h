#pragma once

#include <string>
#include <vector>

#include "tools/query/Question.h"

namespace tools::query {

/// One exported operation under the name of its op.
struct Operation {
  std::string name;
  void (*answer)(Question& question);
};

// The operations of each exported header.
std::vector<Operation> identifierOperations();
std::vector<Operation> gatewayOperations();
std::vector<Operation> tableOperations();
std::vector<Operation> memberNameOperations();
std::vector<Operation> classRecordOperations();
std::vector<Operation> memberRecordOperations();
std::vector<Operation> visitorOperations();
std::vector<Operation> objectOperations();
std::vector<Operation> namespaceOperations();
std::vector<Operation> valueOperations();
std::vector<Operation> evaluationOperations();
std::vector<Operation> frameOperations();
std::vector<Operation> searchPathOperations();

/// All of them.
const std::vector<Operation>& operations();

/// The operation of that name, or null.
const Operation* findOperation(const std::string& name);

}  // namespace tools::query
