#include "frontend/Access.h"

#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "frontend/Declarations.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

bool sharesAncestor(const ClassInfo& caller, const ClassInfo& asked) {
  return caller.isA(asked.classId) ||
         std::ranges::any_of(asked.structure.superclasses,
                             [&](const auto& superclass) { return sharesAncestor(caller, *superclass); });
}

bool isWider(const std::vector<std::int32_t>& levels) { return levels.size() > 1; }

void dropRepeated(std::vector<PropertyInfo>& properties) {
  // An ancestor that is inherited in several ways has its members listed once for each.
  std::unordered_set<std::u16string> seen;
  seen.reserve(properties.size());
  std::erase_if(properties, [&](const PropertyInfo& property) { return !seen.insert(property.name).second; });
}

/// Of methods that are defined anew the new one stays, where the first one stood.
void dropRepeated(std::vector<MethodInfo>& methods) {
  std::unordered_map<std::u16string, MethodInfo*> kept;
  std::vector<MethodInfo> first;
  kept.reserve(methods.size());
  // Room for all, because `kept` points into it.
  first.reserve(methods.size());
  for (MethodInfo& method : methods) {
    MethodInfo*& known = kept[method.name];
    if (known == nullptr)
      known = &first.emplace_back(std::move(method));
    else if (KCOSIntrospection::isKCOSClassDerivedFrom(method.definingClass, known->definingClass))
      *known = std::move(method);
  }
  methods = std::move(first);
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

template <class Infos>
void addUnknown(const Infos& more, Infos& infos) {
  const auto known = namesOf(infos);
  std::ranges::copy_if(more, std::back_inserter(infos),
                       [&](const auto& info) { return !known.contains(info.name); });
}

/// A class whose methods are not completed in this context offers none to its own code either.
bool takesPart(const ClassInfo& asked, MethodInfo::GetContext context) {
  const std::vector<std::int32_t> every = {kcos::PublicAccess,  kcos::ProtectedAccess,
                                           kcos::PrivateAccess, kcos::ImmutableAccess,
                                           kcos::ListedAccess,  kcos::ConstantAccess};
  return !asked.getMethods({every, nullptr, context, true, true, true}).empty();
}

}  // namespace

std::vector<std::int32_t> usableLevels(const ClassInfo* caller, const ClassInfo& asked) {
  if (caller == nullptr || asked.classId.isNull()) return {kcos::PublicAccess};
  if (caller->classId == asked.classId)
    return {kcos::PublicAccess, kcos::ProtectedAccess, kcos::PrivateAccess};
  if (sharesAncestor(*caller, asked)) return {kcos::PublicAccess, kcos::ProtectedAccess};
  return {kcos::PublicAccess};
}

std::vector<PropertyInfo> usableProperties(RequestContext& request, const ClassInfo& asked,
                                           bool includeHidden) {
  using Options = PropertyInfo::GetOptions;
  const ClassInfo* caller = request.caller();
  Options options{usableLevels(caller, asked), {Options::Read, Options::Write}, caller, includeHidden};
  std::vector<PropertyInfo> properties = asked.getProperties(options);
  if (isBystander(caller, asked, options.accessLevels)) {
    const DeclaringClasses declaring(asked, options);
    // What is offered to everybody stays, wherever it is declared.
    options.accessLevels = {kcos::PublicAccess};
    const auto others = namesOf(asked.getProperties(options));
    std::erase_if(properties, [&](const PropertyInfo& property) {
      if (others.contains(property.name)) return false;
      const ClassInfo* declares = declaring.of(property.name);
      return declares == nullptr || !caller->isA(declares->classId);
    });
  }
  if (isOwnCode(caller, asked)) {
    // The library does not list what is private in a superclass, but code of that superclass may use it.
    options.accessLevels = ownLevels();
    addUnknown(LoneRecord(*caller).getProperties(options), properties);
  }
  dropRepeated(properties);
  return properties;
}

std::vector<MethodInfo> usableMethods(RequestContext& request, const ClassInfo& asked,
                                      MethodInfo::GetContext context, bool includeHidden) {
  const ClassInfo* caller = request.caller();
  const Lenience& lenience = request.lenience();
  if (lenience.anyContext) context = MethodInfo::GetContext::Any;
  MethodInfo::GetOptions options{usableLevels(caller, asked), caller,       context, lenience.constructors,
                                 lenience.operators,          includeHidden};
  std::vector<MethodInfo> methods = asked.getMethods(options);
  if (isBystander(caller, asked, options.access)) {
    options.access = {kcos::PublicAccess};
    const auto others = namesOf(asked.getMethods(options));
    std::erase_if(methods, [&](const MethodInfo& method) {
      return !others.contains(method.name) && !caller->isA(method.definingClass);
    });
  }
  if (isOwnCode(caller, asked) && takesPart(asked, context)) {
    options.access = ownLevels();
    addUnknown(LoneRecord(*caller).getMethods(options), methods);
  }
  dropRepeated(methods);
  return methods;
}

}  // namespace frontend
