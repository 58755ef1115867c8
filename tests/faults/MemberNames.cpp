#include <contextdata/KCOSContextData/MemberNames.h>

#include "tests/faults/FaultLoop.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using KCOSContextData::ResolvedClassID;
using Names = std::vector<std::u16string>;

struct MemberList {
  const char* name;
  const char* id;
  const char16_t* className;
  bool (*byIdentifier)(const ResolvedClassID&, Names&, bool&);
  bool (*byName)(const std::u16string&, Names&, bool&);
  /// What precedes the listing of a name, and the setting of the flag.
  const char* appendsAfter;
  const char* setsFlagAfter;
};

constexpr const char* conversion = "fl::i18n::to_ustring(codecvt_ascii_to_ustring)";
constexpr const char* methodAccess = "kcos::COSMethodInfo::getMemberAccess";
constexpr const char* classFlag = "kcos::COSClass::getClassFlag";

const std::vector<MemberList>& memberLists() {
  using namespace KCOSContextData;
  static const std::vector<MemberList> all{
      {"getClassConstantPropertyNames", "plant:lab.Pump", u"lab.Pump", getClassConstantPropertyNames,
       getClassConstantPropertyNames, conversion, classFlag},
      {"getClassPropertyNames", "plant:lab.Pump", u"lab.Pump", getClassPropertyNames, getClassPropertyNames,
       conversion, classFlag},
      {"getClassStaticMethodNames", "plant:lab.Pump", u"lab.Pump", getClassStaticMethodNames,
       getClassStaticMethodNames, methodAccess, ""},
      {"getClassMethodNames", "plant:lab.Pump", u"lab.Pump", getClassMethodNames, getClassMethodNames,
       methodAccess, ""},
      {"getClassEnumerationNames", "lab.Mode", u"lab.Mode", getClassEnumerationNames,
       getClassEnumerationNames, conversion, ""}};
  return all;
}

}  // namespace

std::vector<Question> memberNameQuestions() {
  std::vector<Question> all;
  for (const MemberList& list : memberLists()) {
    const std::string operation = std::string("KCOSContextData::") + list.name;
    all.push_back({operation,
                   "identifier",
                   [list, id = ResolvedClassID::fromKnownResolvedClassID(list.id)](Answer& a) {
                     a.result = shown(list.byIdentifier(id, a.names, a.flag));
                   },
                   {{"kcos::COSClass::getClass", swallowedButInterrupt("false")}, {"*", passes}},
                   list.appendsAfter,
                   list.setsFlagAfter});
    all.push_back({operation,
                   "name",
                   [list](Answer& a) { a.result = shown(list.byName(list.className, a.names, a.flag)); },
                   {{"*", swallowed("false")}},
                   list.appendsAfter,
                   list.setsFlagAfter});
  }
  return all;
}

}  // namespace faults
