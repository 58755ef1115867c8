#include <contextdata/KCOSIntrospection.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using KCOSContextData::ResolvedClassID;
using namespace KCOSIntrospection;

constexpr const char* makeInterned = "kcos::internal::makeInterned";
constexpr const char* getClass = "kcos::COSClass::getClass";

std::string shownClass(const kcos::COSClass* cls) { return cls != nullptr ? "a class" : "null"; }
ResolvedClassID pumpID() { return ResolvedClassID::fromKnownResolvedClassID("plant:lab.Pump"); }
ResolvedClassID deviceID() { return ResolvedClassID::fromKnownResolvedClassID("plant:lab.Device"); }

/// Looking up a class that must be valid swallows what interning its name and the look-up throw, and nothing else.
std::vector<Rule> validLookUp(const std::string& answer) {
  return {{makeInterned, swallowed(answer), 1}, {getClass, swallowed(answer)}, {"*", passes}};
}

/// Identifiers are made before the question is asked, so that only the question is logged.
template <class Ask>
std::function<void(Answer&)> withIdentifiers(Ask ask) {
  return [ask, pump = pumpID(), device = deviceID()](Answer& answer) { ask(answer, pump, device); };
}

std::vector<Question> classLookUps() {
  const std::string n = "KCOSIntrospection::";
  const std::vector<Rule> ofIdentifier{{"*", swallowedButInterrupt("null")}};
  return {
      {n + "getCOSClass", "identifier", withIdentifiers([](Answer& a, const auto& pump, const auto&) {
         a.result = shownClass(getCOSClass(pump));
       }),
       ofIdentifier},
      {n + "getCOSClass", "value",
       [](Answer& a) { a.result = shownClass(getCOSClass(variable("pump").get())); }, validLookUp("null")},
      {n + "getCOSClass", "name",
       [](Answer& a) { a.result = shownClass(getCOSClass(std::u16string(u"lab.Pump"))); },
       validLookUp("null")},
      {n + "isKCOSClass",
       "identifier",
       withIdentifiers([](Answer& a, const auto& pump, const auto&) { a.result = shown(isKCOSClass(pump)); }),
       {{"*", swallowedButInterrupt("false")}}},
      {n + "isKCOSClass", "name",
       [](Answer& a) { a.result = shown(isKCOSClass(std::u16string(u"lab.Pump"))); }, validLookUp("false")},
      {n + "isKCOSObject", "", [](Answer& a) { a.result = shown(isKCOSObject(variable("pump").get())); },
       validLookUp("false")},
  };
}

std::vector<Question> memberLookUps() {
  const std::string n = "KCOSIntrospection::";
  return {
      {n + "hasMethod", "value",
       [](Answer& a) { a.result = shown(hasMethod(variable("pump").get(), "start")); }, validLookUp("false")},
      {n + "hasProperty", "",
       [](Answer& a) { a.result = shown(hasProperty(variable("pump").get(), "Flow")); },
       validLookUp("false")},
      {n + "hasMethod",
       "identifier",
       withIdentifiers([](Answer& a, const auto& pump, const auto&) {
         a.result = shown(hasMethod(pump, "make", a.flag));
       }),
       {{getClass, swallowedButInterrupt("false")}, {"*", passes}}},
      {n + "hasMethod",
       "name",
       [](Answer& a) { a.result = shown(hasMethod(std::u16string(u"lab.Pump"), "make", a.flag)); },
       {{"*", swallowedButInterrupt("false")}}},
  };
}

std::vector<Question> otherQuestions() {
  const std::string n = "KCOSIntrospection::";
  return {
      {n + "isKCOSClassDerivedFrom",
       "identifiers",
       withIdentifiers([](Answer& a, const auto& pump, const auto& device) {
         a.result = shown(isKCOSClassDerivedFrom(pump, device));
       }),
       {{getClass, swallowedButInterrupt("false")}, {"*", passes}}},
      {n + "isKCOSClassDerivedFrom", "names",
       [](Answer& a) {
         a.result = shown(isKCOSClassDerivedFrom(std::u16string(u"lab.Pump"), u"lab.Device"));
       },
       validLookUp("false")},
      {n + "getClassName",
       "",
       [](Answer& a) { a.result = shown(getClassName(variable("pump").get())); },
       {{"*", passes}}},
      {n + "getConstructorName",
       "",
       [](Answer& a) { a.result = shown(getConstructorName(u"lab.Pump")); },
       {}},
      {n + "getNamespaceInterface",
       "",
       [](Answer& a) { a.result = getNamespaceInterface(u"lab") != nullptr ? "a namespace" : "null"; },
       {{"*", passes}}},
      {n + "isKCOSNamespace",
       "",
       [](Answer& a) { a.result = shown(isKCOSNamespace(u"lab")); },
       {{"*", passes}}},
  };
}

}  // namespace

std::vector<Question> gatewayQuestions() {
  std::vector<Question> all = classLookUps();
  for (const auto& questions : {memberLookUps(), otherQuestions()}) {
    all.insert(all.end(), questions.begin(), questions.end());
  }
  return all;
}

}  // namespace faults
