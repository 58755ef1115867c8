#pragma once

// The members that one class defines itself.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <vector>

#include "tools/render/Description.h"

namespace tools::description {

/// Those that qualify at these access levels, hidden ones too.
std::vector<Property> ownProperties(const KCOSContextData::ClassInfo& record,
                                    const std::vector<std::int32_t>& levels);
std::vector<Method> ownMethods(const KCOSContextData::ClassInfo& record,
                               const std::vector<std::int32_t>& levels);

}  // namespace tools::description
