#pragma once

// What a class offers, as its members' own objects and where they come from. The library makes a record of each property and
// method, for which it asks the class system much; here one is made for the few that are shown or looked for.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "frontend/MemberNames.h"
#include "host/Members.h"

namespace frontend {

/// Classes that derive from this one offer no methods after the dot.
inline const std::u16string noDotMethodsMixin =
    u"korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// One member that a class offers. All it points to is borrowed.
template <class Info>
struct Offered {
  /// The class that declares it, in the tree of the one that was asked.
  const KCOSContextData::ClassInfo* declares;
  kcos::COSInterface* member;
  Info* info;
  /// Its number among the names.
  std::uint32_t name;
  bool isHidden;
  /// A method: a hidden one of its name, further down, is in its way where hidden ones are left out.
  bool isMasked;
};
using OfferedProperty = Offered<kcos::COSPropInfo>;
using OfferedMethod = Offered<kcos::COSMethodInfo>;
using OfferedProperties = std::vector<OfferedProperty>;
using OfferedMethods = std::vector<OfferedMethod>;

/// The members of classes as the class system walks them, by the classes that define them: one walk of a class serves all
/// its ancestors.
template <class Info>
class MemberWalks final : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  struct Member {
    kcos::COSInterface* member;
    Info* info;
    std::uint32_t name;
  };

  /// Members of another name than `only`, unless that is empty, are passed over.
  MemberWalks(MemberNames& names, std::string only) : names_(names), only_(std::move(only)) {}

  /// Adds the members of the class and its ancestors, once. When that fails, nothing.
  void read(const kcos::COSClass& cls);

  void visit(kcos::COSInterface* member) override;

  template <class Action>
  void forEachOwn(const kcos::COSInternedName& classId, Action action) const {
    const auto found = runsByClass_.find(&classId.text());
    if (found == runsByClass_.end()) return;
    for (const Run& run : found->second)
      for (std::size_t at = run.begin; at < run.end; ++at) action(members_[at]);
  }

 private:
  /// Members that a walk has met one after the other.
  struct Run {
    std::size_t begin;
    std::size_t end;
    /// The first member of its walk.
    std::size_t walk;
  };

  void beginRun(const kcos::COSClass* owner);

  MemberNames& names_;
  const std::string only_;
  /// The classes that have been walked.
  std::vector<const kcos::COSClass*> read_;
  std::vector<Member> members_;
  /// By the identity, of which there is one object per text.
  std::unordered_map<const std::string*, std::vector<Run>> runsByClass_;
  std::size_t walk_ = 0;
  const kcos::COSClass* owner_ = nullptr;
  /// Null where an earlier walk has met the owner's members.
  Run* run_ = nullptr;
};

class OfferedMembers {
 public:
  /// What the record, which outlives this, offers; with a name, its members of that name.
  OfferedMembers(const KCOSContextData::ClassInfo& record, MemberNames& names, const std::string& only);

  /// By the rules of ClassInfo::getProperties() and in its order, but for hidden ones, which are always among them.
  OfferedProperties properties(const KCOSContextData::PropertyInfo::GetOptions& options);
  /// The same for ClassInfo::getMethods().
  OfferedMethods methods(const KCOSContextData::MethodInfo::GetOptions& options);

 private:
  const KCOSContextData::ClassInfo& record_;
  MemberNames& names_;
  MemberWalks<kcos::COSPropInfo> properties_;
  MemberWalks<kcos::COSMethodInfo> methods_;
};

/// The library's record of a member that is offered; none when it cannot be read. The interrupt propagates.
std::optional<KCOSContextData::PropertyInfo> recordOf(const OfferedProperty& property);
std::optional<KCOSContextData::MethodInfo> recordOf(const OfferedMethod& method);

}  // namespace frontend
