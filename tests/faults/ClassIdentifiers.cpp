#include <contextdata/KCOSContextData.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using KCOSContextData::ResolvedClassID;

std::string shownIdentifier(const ResolvedClassID& id) {
  return static_cast<const kcos::COSInternedName&>(id).text();
}

constexpr const char* isOn = "Tamsix::KorvalComponents::ComponentFeature::IsOn";
constexpr const char* toString = "fl::i18n::to_string";

std::vector<Question> constructors() {
  return {
      {"KCOSContextData::ResolvedClassID::ResolvedClassID",
       "context",
       [](Answer& a) { a.result = shownIdentifier(ResolvedClassID(u"nowhere", u"Pump")); },
       {{toString, passes}, {"*", swallowedButInterrupt("Pump")}}},
      {"KCOSContextData::ResolvedClassID::ResolvedClassID",
       "context, switch off",
       [](Answer& a) {
         activeWorld()->setComponents(false);
         const struct Restore {
           ~Restore() { activeWorld()->setComponents(true); }
         } restore;
         a.result = shownIdentifier(ResolvedClassID(u"nowhere", u"Pump"));
       },
       {{toString, passes}, {"*", swallowedButInterrupt("Pump")}}},
      {"KCOSContextData::ResolvedClassID::ResolvedClassID",
       "scope",
       [](Answer& a) {
         a.result = shownIdentifier(ResolvedClassID(activeWorld()->function("lab.tune"), u"Pump"));
       },
       {{toString, passes}, {isOn, passes}, {"*", swallowedButInterrupt("Pump")}}},
      {"KCOSContextData::ResolvedClassID::ResolvedClassID",
       "scope, switch off",
       [](Answer& a) {
         activeWorld()->setComponents(false);
         const struct Restore {
           ~Restore() { activeWorld()->setComponents(true); }
         } restore;
         a.result = shownIdentifier(ResolvedClassID(activeWorld()->function("lab.tune"), u"Pump"));
       },
       {{"*", passes}}},
      {"KCOSContextData::ResolvedClassID::ResolvedClassID",
       "object",
       [](Answer& a) { a.result = shownIdentifier(ResolvedClassID(variable("pump").get())); },
       {{"*", passes}}},
  };
}

template <class Text>
std::vector<Question> factories(const std::string& form, const Text& name) {
  const std::string type = "KCOSContextData::ResolvedClassID::";
  return {
      {type + "fromKnownResolvedClassID",
       form,
       [name](Answer& a) { a.result = shownIdentifier(ResolvedClassID::fromKnownResolvedClassID(name)); },
       {{"*", passes}}},
      {type + "fromLegacyString",
       form,
       [name](Answer& a) { a.result = shownIdentifier(ResolvedClassID::fromLegacyString(name)); },
       {{"*", passes}}},
      {type + "isAlreadyResolved",
       form,
       [name](Answer& a) { a.result = shown(ResolvedClassID::isAlreadyResolved(name)); },
       {{"*", passes}}},
  };
}

std::vector<Question> names() {
  const std::string type = "KCOSContextData::ResolvedClassID::";
  const ResolvedClassID pump = ResolvedClassID::fromKnownResolvedClassID("plant:lab.Pump");
  return {
      {type + "getComponentQualifiedName",
       "",
       [pump](Answer& a) { a.result = shown(pump.getComponentQualifiedName()); },
       {{"*", passes}}},
      {type + "getNonComponentQualifiedName",
       "",
       [pump](Answer& a) { a.result = shown(pump.getNonComponentQualifiedName()); },
       {{"*", passes}}},
      {type + "GetDebuggerFocus",
       "",
       [](Answer& a) { a.result = shown(ResolvedClassID::GetDebuggerFocus().name); },
       {{"*", passes}}},
  };
}

}  // namespace

std::vector<Question> classIdentifierQuestions() {
  std::vector<Question> all = constructors();
  for (const auto& questions :
       {factories("narrow", std::string("Pumpe")), factories("UTF-16", std::u16string(u"Pumpe")), names()}) {
    all.insert(all.end(), questions.begin(), questions.end());
  }
  return all;
}

}  // namespace faults
