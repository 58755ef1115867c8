#pragma once

// Which members of a class code of a scope may use.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Declarations.h"
#include "frontend/OfferedMembers.h"
#include "frontend/RequestContext.h"

namespace frontend {

class UsableMembers {
 public:
  /// Members of the class, own and inherited, that code of the scope may use; with a name, those of that name. Request and
  /// record outlive this.
  UsableMembers(RequestContext& request, const KCOSContextData::ClassInfo& asked,
                const std::u16string& only = {});

  /// What it may read or write; hidden ones among them when they are requested. In the library's order, each name once;
  /// last what is private to the code of an ancestor that asks.
  OfferedProperties properties(bool includeHidden);
  /// The same for methods that are completed in this context. Of one that is defined anew it is the new one.
  OfferedMethods methods(KCOSContextData::MethodInfo::GetContext context, bool includeHidden);

  /// What everybody may write only once: constants are written by nobody, which is a level of its own.
  OfferedProperties constants();
  /// Public methods of any context, but constructors and operators, hidden ones among them.
  OfferedMethods publicMethods();

  const MemberNames& names() const noexcept { return names_; }

 private:
  /// What the asking class itself declares, asked without its superclasses.
  OfferedMembers& ofCaller();
  bool takesPart(KCOSContextData::MethodInfo::GetContext context);

  RequestContext& request_;
  const KCOSContextData::ClassInfo& asked_;
  const std::string only_;
  MemberNames names_;
  OfferedMembers offered_;
  std::optional<LoneRecord> caller_;
  std::optional<OfferedMembers> ofCaller_;
};

/// The record of the property of that name, hidden or not, that code of the scope may use; none when there is none, or when
/// it cannot be read.
std::optional<KCOSContextData::PropertyInfo> usableProperty(RequestContext& request,
                                                            const KCOSContextData::ClassInfo& asked,
                                                            const std::u16string& name);

}  // namespace frontend
