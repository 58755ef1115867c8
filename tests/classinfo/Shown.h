#pragma once

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Text.h"
#include "tests/support/World.h"

/// A record by the identity of its class.
struct Record : KCOSContextData::ClassInfo {
  explicit Record(const std::string& id)
      : ClassInfo(KCOSContextData::ResolvedClassID::fromKnownResolvedClassID(id)) {}
};

/// Numbers that blanks part.
inline std::vector<std::int32_t> levelsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::int32_t>(words), {}};
}

/// Everything but the name: type, [size], {functions}, kind and values, and the flags that are not as usual.
std::string shownType(const KCOSContextData::PropertyInfo& property);
