#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "embedded/model/DataType.h"

namespace embedded {

/// The data types of one session, and the conversions from them.
class TypeRepository {
 public:
  using Values = std::optional<std::vector<ValueDescription>>;

  /// The type of that name that allows every value; null for an empty name.
  DataType* named(const std::string& name);
  /// The type of a property that may hold these values. It may have no name of its own.
  DataType* typeOf(const PropertyDescription& property, const Values& values);

  /// The name of a property's data type: its type, or else the class that its validation names, or else "any" when it
  /// says anything about its values; empty when it has none.
  static const std::string& nameOfType(const PropertyDescription& property);

  /// Null when there is no such type, and when it cannot be converted.
  const kcos::COSConversion* conversionFrom(kcos::COSInternedName type) const;

 private:
  using Handle = const std::string*;  // of an interned name: equal names have one

  std::unordered_map<Handle, std::unique_ptr<DataType>> byName_;
  std::vector<std::unique_ptr<DataType>> ofOneProperty_;
  std::unordered_set<Handle> withoutConversion_;
};

}  // namespace embedded
