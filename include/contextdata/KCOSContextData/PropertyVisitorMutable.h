#pragma once

// Collects the properties that one class itself defines, under the options of one query.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>

#include <cstdint>
#include <string>
#include <typeinfo>
#include <vector>

#include "host/Enumeration.h"
#include "host/Members.h"
#include "host/Names.h"

namespace KCOSContextData {

/// Of the classes whose members a walk has met: the one that it is about, and the last other one.
struct DefiningClasses {
  const kcos::COSClass* own = nullptr;
  const kcos::COSClass* other = nullptr;
};

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
  /// A visit makes no record; it sets `isAccepted` when it would make one, and never resets it. For whoever needs the
  /// records of few properties only.
  bool onlyDecides = false;
  bool isAccepted = false;

 private:
  bool qualifies(kcos::COSPropInfo& property) const;
  void collect(kcos::COSInterfacePtr member, kcos::COSPropInfo& property, const char* name);
  void fill(PropertyInfo& record, kcos::COSInterfacePtr member, kcos::COSPropInfo& property,
            const char* name);
  const kcos::COSOptimizedPropInfo* optimizedRecord(const kcos::COSPropInfo& property);
  bool hasCustomGetter(kcos::COSInterfacePtr member, const kcos::COSOptimizedPropInfo* optimized);

  /// What one walk finds out once for all its properties.
  struct Walk {
    DefiningClasses met = {};
    /// The dynamic types that were found last to be optimised and not to be; a class system has two or three.
    const std::type_info* optimizedType = nullptr;
    const std::type_info* otherType = nullptr;
    /// The attributes that count as a get method; empty before the first property that is asked for them.
    std::vector<kcos::COSInternedName> getterAttributes = {};
  };

  Walk walk_;
  // Kept from property to property for their room: many texts are longer than a string holds in itself.
  std::string name_;
  std::string type_;
};

}  // namespace KCOSContextData
