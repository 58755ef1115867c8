#include <contextdata/Workspace/SearchPath.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

std::string builtins() {
  const auto names = getBuiltinFunctionNames();
  return names.size() == 2 && names.contains(u"sin") && names.contains(u"cos") ? "sin and cos" : "others";
}

Question listing(const std::string& form, const std::u16string& folder, std::vector<Rule> rules) {
  return {"getWhatList", form, [folder](Answer& a) { getWhatList(folder, a.names, ".k"); }, std::move(rules)};
}

}  // namespace

std::vector<Question> searchPathQuestions() {
  return {listing("current folder", u"", {{"*", passes}}),
          // Only getting the path stands before the visit.
          listing("folder on the path", u"@old",
                  {{"Kdispatcher::getDispatcher", passes, 1},
                   {"Kdispatcher::GetCurrentPath", passes},
                   {"*", swallowedButInterrupt("")}}),
          {"getBuiltinFunctionNames", "", [](Answer& a) { a.result = builtins(); }, {{"*", passes}}}};
}

}  // namespace faults
