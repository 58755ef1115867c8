#include <contextdata/KCOSIntrospection.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

constexpr const char* call = "inCallFcn";
constexpr const char* results = "results in their slots";
constexpr const char* conversion = "fl::i18n::to_ustring(codecvt_ascii_to_ustring)";
using Names = std::vector<std::u16string>;

std::string propertyNames(const std::string& name) {
  Names names;
  KCOSIntrospection::getObjectPropertyNames(variable(name).get(), names);
  return shownList(names);
}

}  // namespace

std::vector<Question> objectQuestions() {
  using namespace KCOSIntrospection;
  const std::string n = "KCOSIntrospection::";
  return {
      {n + "callFunctionOnObject",
       "",
       [](Answer& a) {
         a.result = shown(callFunctionOnObject(variable("own").get(), "properties", a.names));
       },
       {{call, swallowed("false")}, {results, swallowed("false")}, {"*", passes}}},
      {n + "getObjectPropertyNames",
       "own answer",
       [](Answer& a) { a.result = propertyNames("own"); },
       {{call, swallowed("p")}, {results, swallowed("p")}, {"*", passes}}},
      // The names of the class are listed whatever becomes of the call, but not when looking the class up fails.
      {n + "getObjectPropertyNames",
       "class walk",
       [](Answer& a) { getObjectPropertyNames(variable("failing").get(), a.names); },
       {{call, ignored},
        {"kcos::internal::makeInterned", swallowed(""), 1},
        {"kcos::COSClass::getClass", swallowed("")},
        {"*", passes}},
       conversion},
      {n + "isNoDotMethodClass",
       "",
       [](Answer& a) { a.result = shown(isNoDotMethodClass(variable("far").get())); },
       {{"*", passes}}},
  };
}

}  // namespace faults
