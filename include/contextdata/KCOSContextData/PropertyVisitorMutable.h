#pragma once

// Collects the properties that one class itself defines, under the options of one query.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>

#include <cstdint>
#include <vector>

#include "host/Enumeration.h"
#include "host/Members.h"

namespace KCOSContextData {

/// Part of a ClassInfo, which has the class system walk the class with it. Slot order: the destructor, then
/// the two visits. A visit appends one record or none; what the class system throws propagates, and then
/// nothing is appended, except that a failing query whether reading runs code counts as yes (the interrupt
/// propagates), that a failing second flag counts as true (the interrupt propagates), and that a possible
/// value whose text conversion fails, for whatever reason, is left out. No Korval code runs.
class CONTEXTDATA_API PropertyVisitorMutable : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  explicit PropertyVisitorMutable(const ClassInfo* owner);
  ~PropertyVisitorMutable() override;

  /// Forgets the collected records, keeps the options.
  void clear();
  /// Forgets the collected records and takes new options.
  void clear(const PropertyInfo::GetOptions& options);

  void visit(kcos::COSInterface* member) override;
  virtual void visit(kcos::COSInterfacePtr member, kcos::COSPropInfo* property);

  /// Does the property grant access, for reading or for writing, to the accessing class or to one that it
  /// derives from?
  bool hasAccessingClass(kcos::COSPropInfo* property) const;

  const ClassInfo* owner;
  std::vector<std::int32_t> accessLevels;
  std::vector<std::int32_t> accessorKinds;
  const ClassInfo* accessingClass;
  bool includeHidden;
  /// In visiting order.
  std::vector<PropertyInfo> properties;
  /// Filled only while hidden properties are not included like others.
  std::vector<PropertyInfo> hiddenProperties;
};

}  // namespace KCOSContextData
