#pragma once

// Which members of a class the code at a place may use.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "frontend/RequestContext.h"

namespace frontend {

/// A record without superclasses, which answers for its class alone.
class LoneRecord : public KCOSContextData::ClassInfo {
 public:
  explicit LoneRecord(const KCOSContextData::ClassInfo& record);
};

/// The access levels at which code of the caller may use members of the class: public, to code of the class and of those
/// that derive from it, or share an ancestor with it, protected; to its own code private.
std::vector<std::int32_t> usableLevels(const KCOSContextData::ClassInfo* caller,
                                       const KCOSContextData::ClassInfo& asked);

/// The properties of the class, own and inherited, that code of the place may read or write; hidden ones among them when
/// they are wanted. In the library's order, each name once; last what is private to the code of an ancestor that asks.
std::vector<KCOSContextData::PropertyInfo> usableProperties(RequestContext& request,
                                                            const KCOSContextData::ClassInfo& asked,
                                                            bool includeHidden);

/// The same for methods that are completed in this context. Of one that is defined anew it is the new one.
std::vector<KCOSContextData::MethodInfo> usableMethods(RequestContext& request,
                                                       const KCOSContextData::ClassInfo& asked,
                                                       KCOSContextData::MethodInfo::GetContext context,
                                                       bool includeHidden);

/// Which class of a record's tree declares a property that the record offers.
class DeclaringClasses {
 public:
  /// Under these options; the record outlives this.
  DeclaringClasses(const KCOSContextData::ClassInfo& record,
                   KCOSContextData::PropertyInfo::GetOptions options);
  /// The nearest one whose property qualifies; null when none does.
  const KCOSContextData::ClassInfo* of(const std::u16string& property) const;

 private:
  bool declares(const KCOSContextData::ClassInfo& record, const kcos::COSInternedName& property,
                const std::vector<std::int32_t>& levels) const;
  const KCOSContextData::ClassInfo* find(const KCOSContextData::ClassInfo& record,
                                         const kcos::COSInternedName& property,
                                         const std::vector<std::int32_t>& levels) const;

  const KCOSContextData::ClassInfo& record_;
  const KCOSContextData::PropertyInfo::GetOptions options_;
  /// Knows whom a property grants access.
  KCOSContextData::PropertyVisitorMutable grants_;
};

}  // namespace frontend
