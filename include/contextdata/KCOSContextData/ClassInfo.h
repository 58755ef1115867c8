#pragma once

// What a class offers, to whom: the record of a class with all its superclasses, and its queries.
//
//   ClassInfo pump(u"lab.control.tune", u"Pump");           // as code of that function means it
//   for (const PropertyInfo& property : pump.getProperties({})) ...   // public ones, inherited ones first
//
//   ClassInfo controller(u"", u"lab.Controller");
//   pump.getProperties({0, 1}, &controller)                 // what code of lab.Controller may use of it
//
// The tree of superclasses is read when the record is made and does not change afterwards; a shared ancestor
// has one record per way to it. Members are read by each query. A query refills the record's visitors,
// although it is const: two queries must not use one record at the same time, and accessing classes are
// borrowed only while it runs.
//
// No operation runs Korval code. All run on the interpreter thread.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/MethodVisitorMutable.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>
#include <contextdata/KCOSContextData/PropertyVisitorMutable.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/Names.h"

namespace KCOSContextData {

class ClassInfo;

/// The attribute names that a class and its ancestors use: the class system's four lists, kept apart.
struct AttributeSets {
  std::set<std::u16string> attributeList1;
  std::set<std::u16string> attributeList2;
  std::set<std::u16string> attributeList3;
  std::set<std::u16string> attributeList4;
};

/// A class's place among the classes.
struct ClassStructureInfo {
  std::u16string name;
  /// The direct superclasses in the order of their declaration.
  std::vector<std::shared_ptr<ClassInfo>> superclasses;

  /// The class itself and all its ancestors, depth first: {C, A, R, B, R} when A and B derive from R. Empty
  /// for an empty record. Asks nothing of the host.
  CONTEXTDATA_API std::vector<std::u16string> getSuperclasses() const;
};

/// The record of one class. Cannot be copied or moved, because its visitors point back at it; meant to be
/// derived from where a query is to answer otherwise.
///
/// A record is empty (no name, null identity, no superclasses) when it is made of a null identifier or of a
/// value that is no object of a valid class. Every query of an empty record returns an empty list.
class CONTEXTDATA_API ClassInfo {
 public:
  /// The class of an identifier, named as users know it. For a class that does not exist the record has this
  /// name and the identity, but nothing else. What getting the name throws propagates; of reading the
  /// superclasses only the interrupt propagates, any other exception leaves the record without superclasses.
  explicit ClassInfo(const ResolvedClassID& id);

  /// The class that `className` means in the function or file named `context`: see ResolvedClassID.
  ClassInfo(const std::u16string& context, const std::u16string& className);

  /// The class of an object, named by its identity itself. What asking the value throws propagates, except
  /// that a failing look-up of its class, an interrupt too, leaves the record empty; for the superclasses see
  /// above.
  explicit ClassInfo(const kxArray_tag* value);

  virtual ~ClassInfo();
  ClassInfo(const ClassInfo&) = delete;
  ClassInfo& operator=(const ClassInfo&) = delete;

  /// The properties that the class offers under these options: those of the superclasses, in their order and
  /// as often as they are inherited, then its own. An own property that qualifies replaces the inherited ones
  /// of its name, also when it is hidden and thus not listed itself. A class that is unknown, fails its check
  /// or is an enumeration has no own ones. The interrupt propagates; when reading the own properties fails
  /// otherwise, the answer is empty.
  virtual std::vector<PropertyInfo> getProperties(const PropertyInfo::GetOptions& options) const;

  /// The methods that the class offers under these options: those of the superclasses, then its own. A hidden
  /// own method removes the inherited ones of its name; a visible one stands beside them. Empty when the
  /// class takes no part in the context, and after the dot when it is one of those that complete no methods
  /// there. A class that is unknown, fails its check or is an enumeration has no own ones. The interrupt
  /// propagates; when reading the own methods fails otherwise, the answer is empty.
  virtual std::vector<MethodInfo> getMethods(const MethodInfo::GetOptions& options) const;

  /// The attribute names of the class and all its ancestors; `argument` goes to the class system as it is.
  /// The interrupt propagates; when reading the class's own lists fails otherwise, the four sets are empty.
  virtual AttributeSets getAttributes(bool argument) const;

  /// Is this the class of that name, as the record has it, or does it derive from it? Exact and
  /// case-sensitive. Asks nothing of the host.
  virtual bool isA(const std::u16string& className) const;
  /// The same by identity.
  virtual bool isA(kcos::COSInternedName identity) const;

  /// The access levels of a query for public members: {0}. One list for all records.
  virtual const std::vector<std::int32_t>& getDefaultAccessibility() const;

  /// The properties of these access levels, for reading or writing, that are not hidden.
  std::vector<PropertyInfo> getProperties(const std::vector<std::int32_t>& accessLevels,
                                          const ClassInfo* accessingClass) const;
  /// What the direct superclasses answer to these options, without the first access level 2. A superclass
  /// whose query throws, which only one that is specialised does, adds nothing; the interrupt propagates.
  std::vector<PropertyInfo> getPropertiesOfSuperclasses(const PropertyInfo::GetOptions& options) const;

  /// The methods of these access levels, without constructors, operators and hidden ones.
  std::vector<MethodInfo> getMethods(const std::vector<std::int32_t>& access,
                                     const MethodInfo::GetContext& context,
                                     const ClassInfo* accessingClass) const;
  /// What the direct superclasses answer to these options, without the first access level 2. What the query
  /// of a specialised one throws propagates.
  std::vector<MethodInfo> getMethodsOfSuperclasses(const MethodInfo::GetOptions& options) const;

  ClassStructureInfo structure;
  kcos::COSInternedName classId;
  mutable PropertyVisitorMutable propertyVisitor;
  mutable MethodVisitorMutable methodVisitor;

 private:
  static std::vector<std::shared_ptr<ClassInfo>> readSuperclasses(const kcos::COSInternedName& classId);
  static std::vector<std::shared_ptr<ClassInfo>> superclassesOrNone(const kcos::COSInternedName& classId);
};

}  // namespace KCOSContextData
