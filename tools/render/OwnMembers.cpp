#include "tools/render/OwnMembers.h"

#include <contextdata/KCOSIntrospection.h>

#include <map>
#include <set>
#include <string>
#include <utility>

namespace tools::description {

namespace {

using namespace KCOSContextData;

/// A record without superclasses, which answers for its class alone.
class LoneRecord : public ClassInfo {
 public:
  explicit LoneRecord(const ClassInfo& record)
      : ClassInfo(ResolvedClassID::fromKnownResolvedClassID(std::string())) {
    structure.name = record.structure.name;
    classId = record.classId;
  }
};

std::vector<PropertyInfo> ask(const ClassInfo& record, std::vector<std::int32_t> levels,
                              std::vector<std::int32_t> accessorKinds, bool includeHidden) {
  return record.getProperties({std::move(levels), std::move(accessorKinds), nullptr, includeHidden});
}

std::vector<MethodInfo> ask(const ClassInfo& record, std::vector<std::int32_t> levels, bool includeHidden) {
  return record.getMethods(
      {std::move(levels), nullptr, MethodInfo::GetContext::Any, true, true, includeHidden});
}

template <class Infos>
std::set<std::u16string> namesOf(const Infos& infos) {
  std::set<std::u16string> names;
  for (const auto& info : infos) names.insert(info.name);
  return names;
}

/// The level of each name, found by asking for one level after the other until all names have one.
template <class AskLevel>
std::map<std::u16string, std::int32_t> levelsOf(const std::set<std::u16string>& names, AskLevel askLevel) {
  std::map<std::u16string, std::int32_t> levels;
  for (std::int32_t level = 0; level <= highestLevel && levels.size() < names.size(); ++level) {
    for (const auto& info : askLevel(level)) {
      if (names.contains(info.name)) levels.emplace(info.name, level);
    }
  }
  return levels;
}

Level levelOf(const std::map<std::u16string, std::int32_t>& levels, const std::u16string& name) {
  const auto found = levels.find(name);
  return found == levels.end() ? Level() : found->second;
}

}  // namespace

std::vector<Property> ownProperties(const ClassInfo& record, const std::vector<std::int32_t>& levels) {
  using Options = PropertyInfo::GetOptions;
  const LoneRecord lone(record);
  const auto infos = ask(lone, levels, {Options::Read, Options::Write}, true);
  const auto names = namesOf(infos);
  const auto visible = namesOf(ask(lone, levels, {Options::Read, Options::Write}, false));
  const auto levelsFor = [&](std::int32_t accessor) {
    return levelsOf(names, [&](std::int32_t level) { return ask(lone, {level}, {accessor}, true); });
  };
  const auto readLevels = levelsFor(Options::Read);
  const auto writeLevels = levelsFor(Options::Write);
  std::vector<Property> properties;
  for (const PropertyInfo& info : infos) {
    properties.push_back({info, levelOf(readLevels, info.name), levelOf(writeLevels, info.name),
                          !visible.contains(info.name)});
  }
  return properties;
}

std::vector<Method> ownMethods(const ClassInfo& record, const std::vector<std::int32_t>& levels) {
  const LoneRecord lone(record);
  const auto infos = ask(lone, levels, true);
  const auto visible = namesOf(ask(lone, levels, false));
  const auto levelsFor =
      levelsOf(namesOf(infos), [&](std::int32_t level) { return ask(lone, {level}, true); });
  std::vector<Method> methods;
  std::set<std::u16string> seen;
  for (const MethodInfo& info : infos) {
    if (!seen.insert(info.name).second) continue;
    methods.push_back({info, levelOf(levelsFor, info.name), !visible.contains(info.name),
                       info.name == KCOSIntrospection::getConstructorName(info.definingClass),
                       MethodInfo::isOperatorOverload(info.name)});
  }
  return methods;
}

}  // namespace tools::description
