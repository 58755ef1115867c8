#include "tools/render/Description.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "tools/render/OwnMembers.h"

namespace tools::description {

namespace {

using namespace KCOSContextData;

/// The classes of a record's tree, each once.
class Collector {
 public:
  explicit Collector(const Options& options) : options_(options) {
    const std::int32_t privateLevel = kcos::PrivateAccess;
    inheritedLevels_ = options.levels;
    std::erase(inheritedLevels_, privateLevel);
  }

  std::size_t collect(const ClassInfo& record) {
    const auto [place, isNew] = places_.emplace(record.classId, classes_.size());
    const std::size_t at = place->second;
    if (!isNew) return at;
    classes_.push_back(at == 0 ? alone(record, options_.levels) : inherited(record));
    for (const auto& superclass : record.structure.superclasses) {
      const std::size_t found = collect(*superclass);
      classes_[at].superclasses.push_back(found);
    }
    return at;
  }

  std::vector<ClassDescription> take() { return std::move(classes_); }

 private:
  static ClassDescription alone(const ClassInfo& record, const std::vector<std::int32_t>& levels) {
    ClassDescription description;
    description.name = record.structure.name;
    description.classId = record.classId.text();
    const ResolvedClassID id = ResolvedClassID::fromKnownResolvedClassID(description.classId);
    kcos::COSClass* cls = KCOSIntrospection::getCOSClass(id);
    description.isValid = cls != nullptr && cls->checkClass(false) != nullptr;
    description.isEnumeration = cls != nullptr && cls->isEnumeration();
    bool classFlag = false;
    getClassEnumerationNames(id, description.enumerationMembers, classFlag);
    description.properties = ownProperties(record, levels);
    description.methods = ownMethods(record, levels);
    return description;
  }

  ClassDescription inherited(const ClassInfo& record) const {
    ClassDescription description = alone(record, inheritedLevels_);
    std::erase_if(description.methods, [](const Method& method) { return method.isConstructor; });
    return description;
  }

  const Options& options_;
  std::vector<std::int32_t> inheritedLevels_;
  std::map<kcos::COSInternedName, std::size_t> places_;
  std::vector<ClassDescription> classes_;
};

using Classes = std::vector<ClassDescription>;
using Places = std::set<std::size_t>;

/// Whose members of one name come through to the first class, when the classes at `stops` let none through from
/// above.
std::vector<bool> comingThrough(const Classes& classes, const Places& stops) {
  std::vector<bool> reached(classes.size());
  std::vector<std::size_t> waiting{0};
  while (!waiting.empty()) {
    const std::size_t at = waiting.back();
    waiting.pop_back();
    if (reached[at]) continue;
    reached[at] = true;
    if (stops.contains(at)) continue;
    waiting.insert(waiting.end(), classes[at].superclasses.begin(), classes[at].superclasses.end());
  }
  return reached;
}

/// Drops the members of every class that do not come through because `stops`, by name, tells which classes are
/// in their way.
template <class Member>
void dropReplaced(Classes& classes, std::vector<Member> ClassDescription::*members,
                  const std::map<std::u16string, Places>& stops) {
  std::map<std::u16string, std::vector<bool>> offered;
  for (const auto& [name, places] : stops) offered.emplace(name, comingThrough(classes, places));
  for (std::size_t at = 0; at < classes.size(); ++at) {
    std::erase_if(classes[at].*members, [&](const Member& member) {
      const auto found = offered.find(member.info.name);
      return found != offered.end() && !found->second[at];
    });
  }
}

/// An own property replaces the inherited ones of its name, hidden or not.
void dropReplacedProperties(Classes& classes) {
  std::map<std::u16string, Places> stops;
  for (std::size_t at = 0; at < classes.size(); ++at) {
    for (const Property& property : classes[at].properties) stops[property.info.name].insert(at);
  }
  std::erase_if(stops, [](const auto& entry) { return entry.second.size() < 2; });
  dropReplaced(classes, &ClassDescription::properties, stops);
}

/// A hidden method masks the inherited ones of its name; a visible one stands beside them.
void dropMaskedMethods(Classes& classes) {
  std::map<std::u16string, Places> stops;
  for (std::size_t at = 0; at < classes.size(); ++at) {
    for (const Method& method : classes[at].methods) {
      if (method.isHidden) stops[method.info.name].insert(at);
    }
  }
  dropReplaced(classes, &ClassDescription::methods, stops);
}

void dropHidden(Classes& classes) {
  const auto isHidden = [](const auto& member) { return member.isHidden; };
  for (ClassDescription& description : classes) {
    std::erase_if(description.properties, isHidden);
    std::erase_if(description.methods, isHidden);
  }
}

}  // namespace

Description describe(const ResolvedClassID& id, const Options& options) {
  Collector collector(options);
  collector.collect(ClassInfo(id));
  Classes classes = collector.take();
  dropReplacedProperties(classes);
  if (!options.includeHidden) {
    dropMaskedMethods(classes);
    dropHidden(classes);
  }
  return {std::move(classes)};
}

}  // namespace tools::description
