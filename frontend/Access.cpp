#include "frontend/Access.h"

#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <iterator>

#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

bool sharesAncestor(const ClassInfo& caller, const ClassInfo& asked) {
  return caller.isA(asked.classId) ||
         std::ranges::any_of(asked.structure.superclasses,
                             [&](const auto& superclass) { return sharesAncestor(caller, *superclass); });
}

bool isWider(const std::vector<std::int32_t>& levels) { return levels.size() > 1; }

/// The access levels at which code of the caller may use members of the class: public, to code of the class and of those
/// that derive from it, or share an ancestor with it, protected; to its own code private.
std::vector<std::int32_t> usableLevels(const ClassInfo* caller, const ClassInfo& asked) {
  if (caller == nullptr || asked.classId.isNull()) return {kcos::PublicAccess};
  if (caller->classId == asked.classId)
    return {kcos::PublicAccess, kcos::ProtectedAccess, kcos::PrivateAccess};
  if (sharesAncestor(*caller, asked)) return {kcos::PublicAccess, kcos::ProtectedAccess};
  return {kcos::PublicAccess};
}

/// Code of a class that shares an ancestor with the class, but does not derive from it, may use what both inherit.
bool isBystander(const ClassInfo* caller, const ClassInfo& asked, const std::vector<std::int32_t>& levels) {
  return isWider(levels) && !caller->isA(asked.classId);
}

/// What code of a class may use although others may not, also of objects of classes that derive from it.
std::vector<std::int32_t> ownLevels() {
  return {kcos::PrivateAccess, kcos::ImmutableAccess, kcos::ListedAccess, kcos::ConstantAccess};
}

bool isOwnCode(const ClassInfo* caller, const ClassInfo& asked) {
  return caller != nullptr && !asked.classId.isNull() && asked.isA(caller->classId);
}

/// Without what is listed only where hidden ones are.
template <class Members>
Members listed(Members members, bool includeHidden) {
  if (!includeHidden)
    std::erase_if(members, [](const auto& member) { return member.isHidden || member.isMasked; });
  return members;
}

/// Which names are among the members.
template <class Members>
std::vector<bool> namesOf(const Members& members, const MemberNames& names) {
  std::vector<bool> among(names.size());
  for (const auto& member : members) among[member.name] = true;
  return among;
}

void dropRepeated(OfferedProperties& properties, const MemberNames& names) {
  // An ancestor that is inherited in several ways has its members listed once for each.
  std::vector<bool> seen(names.size());
  std::erase_if(properties, [&](const OfferedProperty& property) {
    const bool isRepeated = seen[property.name];
    seen[property.name] = true;
    return isRepeated;
  });
}

/// Which of two classes derives from the other. Members of one class come together, so that the last answer often serves.
class Derivation {
 public:
  bool holds(const ClassInfo* derived, const ClassInfo* base) {
    if (derived == derived_ && base == base_) return holds_;
    derived_ = derived;
    base_ = base;
    const kcos::COSClass* cls = kcos::COSClass::getClass(derived->classId);
    return holds_ = cls != nullptr && cls->isDerivedFrom(base->classId);
  }

 private:
  const ClassInfo* derived_ = nullptr;
  const ClassInfo* base_ = nullptr;
  bool holds_ = false;
};

/// Of methods that are defined anew the new one stays, where the first one stood.
void dropRepeated(OfferedMethods& methods, const MemberNames& names) {
  std::vector<OfferedMethod*> kept(names.size());
  Derivation derivation;
  auto end = methods.begin();
  for (OfferedMethod& method : methods) {
    OfferedMethod*& known = kept[method.name];
    if (known == nullptr) {
      *end = method;
      known = &*end++;
    } else if (derivation.holds(method.declares, known->declares)) {
      *known = method;
    }
  }
  methods.erase(end, methods.end());
}

template <class Members>
void addUnknown(const Members& more, const MemberNames& names, Members& members) {
  const auto known = namesOf(members, names);
  std::ranges::copy_if(more, std::back_inserter(members),
                       [&](const auto& member) { return !known[member.name]; });
}

/// Drops what neither everybody may use nor code of the caller because of its own ancestors.
template <class Members>
void dropOthers(const ClassInfo& caller, const Members& forEverybody, const MemberNames& names,
                Members& members) {
  const auto others = namesOf(forEverybody, names);
  std::erase_if(members, [&](const auto& member) {
    return !others[member.name] && !caller.isA(member.declares->classId);
  });
}

}  // namespace

UsableMembers::UsableMembers(RequestContext& request, const ClassInfo& asked, const std::u16string& only)
    : request_(request), asked_(asked), only_(narrow(only)), offered_(asked, names_, only_) {}

OfferedProperties UsableMembers::properties(bool includeHidden) {
  using Options = PropertyInfo::GetOptions;
  const ClassInfo* caller = request_.caller();
  Options options{usableLevels(caller, asked_), {Options::Read, Options::Write}, caller, true};
  OfferedProperties properties = listed(offered_.properties(options), includeHidden);
  // Before it is asked who declares it: the first of a name counts.
  dropRepeated(properties, names_);
  if (isBystander(caller, asked_, options.accessLevels)) {
    // What is offered to everybody stays, wherever it is declared.
    options.accessLevels = {kcos::PublicAccess};
    dropOthers(*caller, listed(offered_.properties(options), includeHidden), names_, properties);
  }
  if (isOwnCode(caller, asked_)) {
    // The library does not list what is private in a superclass, but code of that superclass may use it.
    options.accessLevels = ownLevels();
    const OfferedProperties own = listed(ofCaller().properties(options), includeHidden);
    addUnknown(own, names_, properties);
    dropRepeated(properties, names_);
  }
  return properties;
}

OfferedMethods UsableMembers::methods(MethodInfo::GetContext context, bool includeHidden) {
  const ClassInfo* caller = request_.caller();
  const Lenience& lenience = request_.lenience();
  if (lenience.anyContext) context = MethodInfo::GetContext::Any;
  MethodInfo::GetOptions options{usableLevels(caller, asked_), caller, context, lenience.constructors,
                                 lenience.operators,           true};
  OfferedMethods methods = listed(offered_.methods(options), includeHidden);
  if (isBystander(caller, asked_, options.access)) {
    options.access = {kcos::PublicAccess};
    dropOthers(*caller, listed(offered_.methods(options), includeHidden), names_, methods);
  }
  if (isOwnCode(caller, asked_) && takesPart(context)) {
    options.access = ownLevels();
    const OfferedMethods own = listed(ofCaller().methods(options), includeHidden);
    addUnknown(own, names_, methods);
  }
  dropRepeated(methods, names_);
  return methods;
}

OfferedProperties UsableMembers::constants() {
  return offered_.properties({{kcos::ConstantAccess}, {PropertyInfo::GetOptions::Write}, nullptr, true});
}

OfferedMethods UsableMembers::publicMethods() {
  return offered_.methods({{kcos::PublicAccess}, nullptr, MethodInfo::GetContext::Any, false, false, true});
}

OfferedMembers& UsableMembers::ofCaller() {
  if (!ofCaller_) ofCaller_.emplace(caller_.emplace(*request_.caller()), names_, only_);
  return *ofCaller_;
}

/// A class whose methods are not completed in this context offers none to its own code either.
bool UsableMembers::takesPart(MethodInfo::GetContext context) {
  const std::vector<std::int32_t> every = {kcos::PublicAccess,  kcos::ProtectedAccess,
                                           kcos::PrivateAccess, kcos::ImmutableAccess,
                                           kcos::ListedAccess,  kcos::ConstantAccess};
  return !offered_.methods({every, nullptr, context, true, true, true}).empty();
}

std::optional<PropertyInfo> usableProperty(RequestContext& request, const ClassInfo& asked,
                                           const std::u16string& name) {
  // No members at all without a name, which would ask for all of them.
  if (name.empty()) return {};
  // On a line of its own: what is offered points into it.
  UsableMembers usable(request, asked, name);
  const OfferedProperties properties = usable.properties(true);
  return properties.empty() ? std::nullopt : recordOf(properties.front());
}

}  // namespace frontend
