#pragma once

// Where a class and its ancestors declare a name, as the class system has it.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <string>
#include <vector>

namespace frontend {

/// One class's own member of the name. An enumeration member counts as public and static.
struct Declaration {
  const KCOSContextData::ClassInfo* record = nullptr;
  /// "property", "method", "enumeration member"
  std::u16string what = {};
  /// Who may read or call it.
  std::int32_t level = 0;
  /// Who may use it whatever the level says, by identity.
  std::vector<std::u16string> classes = {};
  bool isStatic = false;
};

/// Those of the record's whole tree, nearest first. The record has to outlive them.
std::vector<Declaration> declarationsOf(const KCOSContextData::ClassInfo& record, const std::u16string& name);

/// "public", "protected", ..., or the number of a level that only the host knows.
std::u16string wordOfLevel(std::int32_t level);

}  // namespace frontend
