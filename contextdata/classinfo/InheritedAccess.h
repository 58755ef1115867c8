#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "host/Members.h"

namespace KCOSContextData {

/// The access levels with which the superclasses are asked: without the first private one. Only that one: whoever lists the
/// level twice means the superclasses' private members too.
inline void dropFirstPrivateLevel(std::vector<std::int32_t>& levels) {
  const auto first = std::ranges::find(levels, std::int32_t{kcos::PrivateAccess});
  if (first != levels.end()) levels.erase(first);
}

}  // namespace KCOSContextData
