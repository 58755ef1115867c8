#pragma once

// What classes and their ancestors declare, as the class system has it: asked of the class's own objects, where the
// library's options would need one question per access level.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <cstdint>
#include <string>
#include <vector>

namespace frontend {

/// The class system's own object for the class of a record, or null.
kcos::COSClass* classObjectOf(const KCOSContextData::ClassInfo& record);

/// One class's own member of the name. An enumeration member counts as public and static.
struct Declaration {
  const KCOSContextData::ClassInfo* record = nullptr;
  /// "property", "method", "enumeration member"
  std::u16string what = {};
  /// Who may read or call it.
  std::int32_t level = kcos::PublicAccess;
  /// Who may use it whatever the level says, by identity.
  std::vector<std::u16string> classes = {};
  bool isStatic = false;
};

/// Those of the record's whole tree, nearest first. The record has to outlive them.
std::vector<Declaration> declarationsOf(const KCOSContextData::ClassInfo& record, const std::u16string& name);

/// A record without superclasses, which knows the members of its class alone.
class LoneRecord : public KCOSContextData::ClassInfo {
 public:
  explicit LoneRecord(const KCOSContextData::ClassInfo& record);
};

}  // namespace frontend
