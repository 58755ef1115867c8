#pragma once

// Which members of a class code of a scope may use.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "frontend/RequestContext.h"

namespace frontend {

/// The names of properties or methods.
template <class Infos>
std::unordered_set<std::u16string> namesOf(const Infos& infos) {
  std::unordered_set<std::u16string> names;
  names.reserve(infos.size());
  for (const auto& info : infos) names.insert(info.name);
  return names;
}

/// The access levels at which code of the caller may use members of the class: public, to code of the class and of those
/// that derive from it, or share an ancestor with it, protected; to its own code private.
std::vector<std::int32_t> usableLevels(const KCOSContextData::ClassInfo* caller,
                                       const KCOSContextData::ClassInfo& asked);

/// The properties of the class, own and inherited, that code of the scope may read or write; hidden ones among them when
/// they are requested. In the library's order, each name once; last what is private to the code of an ancestor that asks.
std::vector<KCOSContextData::PropertyInfo> usableProperties(RequestContext& request,
                                                            const KCOSContextData::ClassInfo& asked,
                                                            bool includeHidden);

/// The same for methods that are completed in this context. Of one that is defined anew it is the new one.
std::vector<KCOSContextData::MethodInfo> usableMethods(RequestContext& request,
                                                       const KCOSContextData::ClassInfo& asked,
                                                       KCOSContextData::MethodInfo::GetContext context,
                                                       bool includeHidden);

}  // namespace frontend
