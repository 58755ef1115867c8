#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include "host/Members.h"

namespace KCOSContextData {

/// The access levels with which the superclasses are asked: without the first private one. Only that one: whoever lists the
/// level twice means the superclasses' private members too.
inline void dropFirstPrivateLevel(std::vector<std::int32_t>& levels) {
  const auto first = std::ranges::find(levels, std::int32_t{kcos::PrivateAccess});
  if (first != levels.end()) levels.erase(first);
}

/// Appends the records of one superclass; takes over a first list as it is, for there may be many.
template <class Record>
void append(std::vector<Record>& all, std::vector<Record> more) {
  if (all.empty())
    all = std::move(more);
  else
    std::ranges::move(more, std::back_inserter(all));
}

}  // namespace KCOSContextData
