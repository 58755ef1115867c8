#include "frontend/OfferedMembers.h"

#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace frontend {

using namespace KCOSContextData;

namespace {

void infoOf(kcos::COSInterface* member, kcos::COSPropInfo*& info) { info = kcos::cosiToProp(member); }
void infoOf(kcos::COSInterface* member, kcos::COSMethodInfo*& info) { info = kcos::cosiToMethod(member); }

void walk(const kcos::COSClass& cls, MemberWalks<kcos::COSPropInfo>& visitor) {
  cls.visitProperties(visitor);
}
void walk(const kcos::COSClass& cls, MemberWalks<kcos::COSMethodInfo>& visitor) { cls.visitMethods(visitor); }

/// Whether the library's visitor would make a record of the member, hidden or not.
template <class Visitor>
bool isAccepted(Visitor& visitor, kcos::COSInterface* member) {
  visitor.includeHidden = true;
  visitor.isAccepted = false;
  visitor.visit(member);
  return visitor.isAccepted;
}

/// One query over the tree of a record. `Rules` are what properties and methods do not have in common.
template <class Rules>
class Query {
 public:
  using Info = typename Rules::Info;
  using Options = typename Rules::Options;

  Query(MemberWalks<Info>& walks, const MemberNames& names) : walks_(walks), names_(names) {}

  /// `isWalked`: a class below has been walked, and with it this one.
  void add(const ClassInfo& record, const Options& options, bool isWalked) {
    auto& visitor = Rules::visitorOf(record);
    visitor.clear(options);
    if (!Rules::takesPart(record, options)) return;
    const std::size_t begin = own_.size();
    const std::size_t beginStops = stops_.size();
    try {
      isWalked = addOwn(record, options, isWalked);
    } catch (const Tamsix::System::InterruptException&) {
      throw;
    } catch (...) {
      // Own members that cannot be read hide the superclasses', as in the library.
      own_.resize(begin);
      stops_.resize(beginStops);
      return;
    }
    for (std::size_t at = beginStops; at < stops_.size(); ++at) ++stopped_[stops_[at]];
    addSuperclasses(record, options, isWalked);
    for (; stops_.size() > beginStops; stops_.pop_back()) --stopped_[stops_.back()];
    for (std::size_t at = begin; at < own_.size(); ++at)
      Rules::append(own_[at], isStopped(own_[at].name), all_);
    own_.resize(begin);
  }

  std::vector<Offered<Info>> take() { return std::move(all_); }

 private:
  bool addOwn(const ClassInfo& record, const Options& options, bool isWalked) {
    kcos::COSClass* cls = kcos::COSClass::getClass(record.classId);
    if (cls == nullptr || cls->checkClass(false) == nullptr || cls->isEnumeration()) return isWalked;
    if (!isWalked) walks_.read(*cls);
    stopped_.resize(names_.size());
    auto& visitor = Rules::visitorOf(record);
    visitor.onlyDecides = true;
    walks_.forEachOwn(record.classId, [&](const typename MemberWalks<Info>::Member& member) {
      const bool isHidden = !member.info->isVisible();
      if (Rules::replacesInherited && isStopped(member.name)) return;
      if (Rules::isHiddenStop(visitor, member.member, isHidden)) stops_.push_back(member.name);
      if (!isAccepted(visitor, member.member)) return;
      if (Rules::replacesInherited) stops_.push_back(member.name);
      if (!isLeftOut(options, member.name))
        own_.push_back({&record, member.member, member.info, member.name, isHidden, false});
    });
    return true;
  }

  void addSuperclasses(const ClassInfo& record, const Options& options, bool isWalked) {
    const auto& levels = Rules::levelsOf(options);
    const auto found = std::ranges::find(levels, std::int32_t{kcos::PrivateAccess});
    if (found == levels.end()) {
      for (const auto& superclass : record.structure.superclasses) add(*superclass, options, isWalked);
      return;
    }
    // Superclasses are asked without the first private level, and only without that.
    Options inherited = options;
    auto& rest = Rules::levelsOf(inherited);
    rest.erase(rest.begin() + (found - levels.begin()));
    for (const auto& superclass : record.structure.superclasses) add(*superclass, inherited, isWalked);
  }

  static bool isLeftOut(const PropertyInfo::GetOptions& /*options*/, std::uint32_t /*name*/) { return false; }

  /// Operators are told here: the visitor would convert every name for it.
  bool isLeftOut(const MethodInfo::GetOptions& options, std::uint32_t number) {
    // Most names are longer than any operator's, and need no text of their own to be asked with.
    static const std::size_t longest =
        std::ranges::max(getKCOSMethodsExcludeSet(), {}, &std::u16string::size).size();
    const std::u16string_view name = names_[number];
    if (options.includeOperatorOverloads || name.size() > longest) return false;
    name_ = name;
    return MethodInfo::isOperatorOverload(name_);
  }

  bool isStopped(std::uint32_t name) const { return stopped_[name] > 0; }

  MemberWalks<Info>& walks_;
  const MemberNames& names_;
  /// How many classes below the one that is being read let no member of the name through, by name.
  std::vector<std::uint32_t> stopped_;
  std::vector<std::uint32_t> stops_;
  /// Those of the classes on the way to the one that is being read: they come after what they inherit.
  std::vector<Offered<Info>> own_;
  std::vector<Offered<Info>> all_;
  /// The name that is looked at: one text for all of them.
  std::u16string name_;
};

/// A property replaces the inherited ones of its name, hidden or not.
struct PropertyRules {
  using Info = kcos::COSPropInfo;
  using Options = PropertyInfo::GetOptions;
  static constexpr bool replacesInherited = true;

  template <class Asked>
  static auto& levelsOf(Asked& options) {
    return options.accessLevels;
  }
  static PropertyVisitorMutable& visitorOf(const ClassInfo& record) { return record.propertyVisitor; }
  static bool takesPart(const ClassInfo& /*record*/, const Options& /*options*/) { return true; }
  static bool isHiddenStop(PropertyVisitorMutable& /*visitor*/, kcos::COSInterface* /*member*/,
                           bool /*isHidden*/) {
    return false;  // all of them are
  }
  static void append(const OfferedProperty& own, bool /*isStopped*/, OfferedProperties& all) {
    all.push_back(own);
  }
};

/// A hidden method masks the inherited ones of its name, whatever it is called; a visible one stands beside them.
struct MethodRules {
  using Info = kcos::COSMethodInfo;
  using Options = MethodInfo::GetOptions;
  static constexpr bool replacesInherited = false;

  template <class Asked>
  static auto& levelsOf(Asked& options) {
    return options.access;
  }
  static MethodVisitorMutable& visitorOf(const ClassInfo& record) { return record.methodVisitor; }
  static bool takesPart(const ClassInfo& record, const Options& options) {
    using enum MethodInfo::GetContext;
    if (record.classId.isNull()) return false;
    if (options.context == BeforeDot) return MethodInfo::isClassToCompleteMethodsForBeforeDot(record.classId);
    if (options.context != AfterDot) return options.context == Any;
    return MethodInfo::isClassToCompleteMethodsForAfterDot(record.classId) && !record.isA(noDotMethodsMixin);
  }
  static bool isHiddenStop(MethodVisitorMutable& visitor, kcos::COSInterface* member, bool isHidden) {
    visitor.includeOperatorOverloads = true;
    if (!isHidden) return false;
    visitor.includeHidden = false;
    visitor.isHiddenAccepted = false;
    visitor.visit(member);
    return visitor.isHiddenAccepted;
  }
  static void append(OfferedMethod own, bool isStopped, OfferedMethods& all) {
    own.isMasked = isStopped;
    all.push_back(own);
  }
};

}  // namespace

template <class Info>
void MemberWalks<Info>::read(const kcos::COSClass& cls) {
  if (std::ranges::find(read_, &cls) != read_.end()) return;
  walk_ = members_.size();
  owner_ = nullptr;
  try {
    walk(cls, *this);
  } catch (...) {
    members_.resize(walk_);
    for (auto& [id, runs] : runsByClass_)
      std::erase_if(runs, [&](const Run& run) { return run.begin >= walk_; });
    throw;
  }
  read_.push_back(&cls);
}

template <class Info>
void MemberWalks<Info>::visit(kcos::COSInterface* member) {
  Info* info = nullptr;
  infoOf(member, info);
  // First, as the library does: a missing name is an error also of a member that is not offered.
  const char* name = info->getName();
  if (name == nullptr) throw std::logic_error("a member has no name");
  if (!only_.empty() && only_ != name) return;
  const kcos::COSClass* owner = kcos::cosiClassOfMember(member);
  if (owner == nullptr) return;
  // A walk meets the members of a class one after the other, so that its identity is asked for once for all of them.
  if (std::exchange(owner_, owner) != owner) beginRun(owner);
  if (run_ == nullptr) return;
  members_.push_back({member, info, names_.numberOf(name)});
  run_->end = members_.size();
}

template <class Info>
void MemberWalks<Info>::beginRun(const kcos::COSClass* owner) {
  std::vector<Run>& runs = runsByClass_[&owner->getID().text()];
  const bool isKnown = !runs.empty() && runs.front().walk != walk_;
  run_ = isKnown ? nullptr : &runs.emplace_back(Run{members_.size(), members_.size(), walk_});
}

OfferedMembers::OfferedMembers(const ClassInfo& record, MemberNames& names, const std::string& only)
    : record_(record), names_(names), properties_(names, only), methods_(names, only) {}

OfferedProperties OfferedMembers::properties(const PropertyInfo::GetOptions& options) {
  Query<PropertyRules> query(properties_, names_);
  query.add(record_, options, false);
  return query.take();
}

OfferedMethods OfferedMembers::methods(const MethodInfo::GetOptions& options) {
  Query<MethodRules> query(methods_, names_);
  query.add(record_, options, false);
  return query.take();
}

std::optional<PropertyInfo> recordOf(const OfferedProperty& property) {
  PropertyVisitorMutable& visitor = property.declares->propertyVisitor;
  try {
    // Only what lets this one through is set: what the visitor has found out about its class stays.
    visitor.accessLevels.assign(1, property.info->getMemberGetAccess());
    visitor.accessorKinds.assign(1, PropertyInfo::GetOptions::Read);
    visitor.includeHidden = true;
    visitor.onlyDecides = false;
    visitor.properties.clear();
    visitor.visit(property.member);
    if (!visitor.properties.empty()) return std::move(visitor.properties.back());
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    // As where the library lists properties: what cannot be read is not there.
  }
  return {};
}

std::optional<MethodInfo> recordOf(const OfferedMethod& method) {
  MethodVisitorMutable& visitor = method.declares->methodVisitor;
  try {
    visitor.access.assign(1, method.info->getMemberAccess());
    visitor.includeHidden = visitor.includeConstructors = visitor.includeOperatorOverloads = true;
    visitor.onlyDecides = false;
    visitor.methods.clear();
    visitor.visit(method.member);
    if (!visitor.methods.empty()) return std::move(visitor.methods.back());
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    // As above.
  }
  return {};
}

}  // namespace frontend
