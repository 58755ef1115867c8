#include <algorithm>

#include "embedded/host/Session.h"
#include "embedded/language/Members.h"
#include "embedded/model/Interning.h"

namespace embedded {

namespace {

const ForeignClassDescription* foreignClass(const std::string& name) {
  const auto& all = session().foreignClasses;
  const auto found = std::ranges::find(all, name, &ForeignClassDescription::name);
  return found == all.end() ? nullptr : &*found;
}

ValuePtr foreignMember(const ForeignClassDescription& foreign, const std::string& name) {
  if (std::ranges::find(foreign.members, name) == foreign.members.end()) return nullptr;
  return newValue({1, 1}, ForeignMember{foreign.name, name});
}

/// What everybody can have of a class without an object: a constant, an enumeration member, a method as its handle.
ValuePtr memberOf(const Class& oneClass, const std::string& name) {
  const Property* property = oneClass.property(alreadyInterned(name));
  if (property == nullptr || mayUse(property->content().get, *property->definingClass(), nullptr))
    if (ValuePtr constant = classConstant(oneClass, name, nullptr)) return constant;
  if (oneClass.method(alreadyInterned(name)) == nullptr) return nullptr;
  return newValue({1, 1}, FunctionHandle{oneClass.names().dotted.text() + "." + name});
}

}  // namespace

}  // namespace embedded

using namespace embedded;

kxArray_tag* kxCreateClassArray(const std::string& className) {
  enter<Operation::createClassArray>(className);
  const Class* found = session().classes.find(className);
  if (found == nullptr && foreignClass(className) == nullptr) return nullptr;
  const std::string& name = found == nullptr ? className : found->names().dotted.text();
  return newValue({1, 1}, ClassReference{name}).detach();
}

kxArray_tag* kxFindTypeMember(const kxArray_tag* classReference, const std::string& name) {
  enter<Operation::findTypeMember>(classReference, name);
  const std::string& className = std::get<ClassReference>(valueOf(classReference).content()).className;
  if (const Class* found = session().classes.find(className)) return memberOf(*found, name).detach();
  const ForeignClassDescription* foreign = foreignClass(className);
  return foreign == nullptr ? nullptr : foreignMember(*foreign, name).detach();
}
