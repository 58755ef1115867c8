#include <contextdata/Workspace/VariableMethods.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

constexpr const char* interning = "kcos::internal::makeInterned";
constexpr const char* lookUp = "kcos::COSClass::getClass";

Question methodsOf(const std::string& name, std::vector<Rule> rules) {
  return {"getMethodsForWSVariable", name,
          [name](Answer& a) { a.result = shownList(getMethodsForWSVariable(u"Pump", variable(name))); },
          std::move(rules)};
}

}  // namespace

std::vector<Question> variableMethodQuestions() {
  // An object whose class cannot be looked up is asked itself; one whose class is gone a moment later has no methods.
  const std::string asked = "start make stop Device reset list";
  return {methodsOf("pump", {{interning, swallowed(asked), 1},
                             {interning, swallowed(""), 2},
                             {lookUp, swallowed(asked), 1},
                             {lookUp, swallowed(""), 2},
                             {"*", passes}}),
          methodsOf("far", {{interning, ignored},
                            {lookUp, ignored},
                            {"inCallFcn", swallowed("")},
                            {"results in their slots", swallowed("")},
                            {"*", passes}})};
}

}  // namespace faults
