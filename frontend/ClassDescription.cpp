#include "frontend/ClassDescription.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "host/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Levels = std::vector<std::int32_t>;
using Classes = std::vector<ClassDescription>;
using Positions = std::set<std::size_t>;

/// What the class's own objects say of its members of one name. Several of a name count together, for they are one entry:
/// the widest level, and visible when one of those that qualify is.
struct Declared {
  Level read;
  Level write;
  bool isVisible = false;
};

/// Reads the levels of all own members in one walk of the class.
class OwnMembers final : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  OwnMembers(const kcos::COSInternedName& owner, const Levels& levels) : owner_(owner), levels_(levels) {}

  void visit(kcos::COSInterface* member) override {
    // The walk of a class passes inherited members, too.
    if (kcos::cosiClassOfMember(member)->getID() != owner_) return;
    if (const kcos::COSPropInfo* property = kcos::cosiToProp(member))
      add(*property, property->getMemberGetAccess(), property->getMemberSetAccess());
    else if (const kcos::COSMethodInfo* method = kcos::cosiToMethod(member))
      add(*method, method->getMemberAccess(), method->getMemberAccess());
  }

  const Declared& operator[](const std::u16string& name) { return byName_[name]; }

 private:
  template <class Member>
  void add(const Member& member, std::int32_t read, std::int32_t write) {
    Declared& declared = byName_[fl::i18n::to_ustring(member.getName())];
    widen(declared.read, read);
    widen(declared.write, write);
    const bool qualifies = std::ranges::count(levels_, read) + std::ranges::count(levels_, write) > 0;
    declared.isVisible = declared.isVisible || (qualifies && member.isVisible());
  }

  static void widen(Level& level, std::int32_t found) {
    if (!kcos::accessWord(found).empty()) level = std::min(level.value_or(found), found);
  }

  const kcos::COSInternedName owner_;
  const Levels& levels_;
  std::unordered_map<std::u16string, Declared> byName_;
};

std::vector<PropertyDescription> ownProperties(const ClassInfo& record, const kcos::COSClass& owner,
                                               const Levels& levels) {
  using Options = PropertyInfo::GetOptions;
  const auto infos =
      LoneRecord(record).getProperties({levels, {Options::Read, Options::Write}, nullptr, true});
  std::vector<PropertyDescription> properties;
  // None are offered of a broken class, and of one with a member that has no name: there is nothing to ask then.
  if (infos.empty()) return properties;
  OwnMembers declared(record.classId, levels);
  owner.visitProperties(declared);
  for (const PropertyInfo& info : infos) {
    const Declared& found = declared[info.name];
    properties.push_back({info, found.read, found.write, !found.isVisible});
  }
  return properties;
}

std::vector<MethodDescription> ownMethods(const ClassInfo& record, const kcos::COSClass& owner,
                                          const Levels& levels) {
  const auto infos =
      LoneRecord(record).getMethods({levels, nullptr, MethodInfo::GetContext::Any, true, true, true});
  std::vector<MethodDescription> methods;
  if (infos.empty()) return methods;
  OwnMembers declared(record.classId, levels);
  owner.visitMethods(declared);
  std::set<std::u16string> seen;
  for (const MethodInfo& info : infos) {
    if (!seen.insert(info.name).second) continue;
    const Declared& found = declared[info.name];
    methods.push_back({info, found.read, !found.isVisible,
                       info.name == KCOSIntrospection::getConstructorName(info.definingClass),
                       MethodInfo::isOperatorOverload(info.name)});
  }
  return methods;
}

ClassDescription ownDescription(const ClassInfo& record, const Levels& levels) {
  ClassDescription description;
  description.name = record.structure.name;
  description.classId = record.classId.text();
  kcos::COSClass* owner = classObjectOf(record);
  description.isValid = owner != nullptr && owner->checkClass(false) != nullptr;
  description.isEnumeration = owner != nullptr && owner->isEnumeration();
  bool classFlag = false;
  const auto id = ResolvedClassID::fromKnownResolvedClassID(description.classId);
  getClassEnumerationNames(id, description.enumerationMembers, classFlag);
  if (owner == nullptr) return description;
  description.properties = ownProperties(record, *owner, levels);
  description.methods = ownMethods(record, *owner, levels);
  return description;
}

/// The classes of a record's tree, each once.
class Collector {
 public:
  explicit Collector(const Levels& levels) : levels_(levels), inheritedLevels_(levels) {
    // What is private in a superclass is not inherited.
    std::erase(inheritedLevels_, kcos::PrivateAccess);
  }

  /// The record's class first, then the ancestors as they are met on the way up.
  void collect(const ClassInfo& record) {
    struct Step {
      const ClassInfo* record;
      std::size_t at;
      std::size_t nextSuperclass = 0;
    };
    // Not by recursion: a tree can be deeper than the stack.
    std::vector<Step> way{{&record, add(record)}};
    while (!way.empty()) {
      Step& step = way.back();
      const auto& superclasses = step.record->structure.superclasses;
      if (step.nextSuperclass == superclasses.size()) {
        way.pop_back();
        continue;
      }
      const ClassInfo& superclass = *superclasses[step.nextSuperclass++];
      const auto known = positions_.find(superclass.classId);
      const bool isNew = known == positions_.end();
      const std::size_t found = isNew ? add(superclass) : known->second;
      classes_[step.at].superclasses.push_back(found);
      if (isNew) way.push_back({&superclass, found});
    }
  }

  Classes take() { return std::move(classes_); }

 private:
  std::size_t add(const ClassInfo& record) {
    const std::size_t at = classes_.size();
    positions_.emplace(record.classId, at);
    classes_.push_back(ownDescription(record, at == 0 ? levels_ : inheritedLevels_));
    // Constructors are not inherited.
    if (at > 0) {
      std::erase_if(classes_[at].methods,
                    [](const MethodDescription& method) { return method.isConstructor; });
    }
    return at;
  }

  const Levels& levels_;
  Levels inheritedLevels_;
  std::map<kcos::COSInternedName, std::size_t> positions_;
  Classes classes_;
};

/// Whose members of one name reach the first class, when the classes at `stops` let none through from above.
std::vector<bool> reaching(const Classes& classes, const Positions& stops) {
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

/// Drops the members that do not reach the first class, because a member that stops those of its name is in the way. The
/// library lists what reaches it without saying from which class, and a name can come from several.
template <class Member, class IsStop>
void dropUnreached(Classes& classes, std::vector<Member> ClassDescription::*members, IsStop isStop) {
  std::map<std::u16string, Positions> stops;
  for (std::size_t at = 0; at < classes.size(); ++at) {
    for (const Member& member : classes[at].*members) {
      if (isStop(member)) stops[member.info.name].insert(at);
    }
  }
  std::map<std::u16string, std::vector<bool>> reached;
  for (const auto& [name, positions] : stops) reached.emplace(name, reaching(classes, positions));
  for (std::size_t at = 0; at < classes.size(); ++at) {
    std::erase_if(classes[at].*members, [&](const Member& member) {
      const auto found = reached.find(member.info.name);
      return found != reached.end() && !found->second[at];
    });
  }
}

}  // namespace

ClassTree describeClass(const ResolvedClassID& id, const Levels& levels, bool includeHidden) {
  Collector collector(levels);
  collector.collect(ClassInfo(id));
  Classes classes = collector.take();
  // A property replaces the inherited ones of its name, hidden or not. Of methods only a hidden one masks them, and only
  // where hidden ones are left out: a visible one stands beside them.
  dropUnreached(classes, &ClassDescription::properties, [](const PropertyDescription&) { return true; });
  if (includeHidden) return {std::move(classes)};
  const auto isHidden = [](const auto& member) { return member.isHidden; };
  dropUnreached(classes, &ClassDescription::methods, isHidden);
  for (ClassDescription& description : classes) {
    std::erase_if(description.properties, isHidden);
    std::erase_if(description.methods, isHidden);
  }
  return {std::move(classes)};
}

}  // namespace frontend
