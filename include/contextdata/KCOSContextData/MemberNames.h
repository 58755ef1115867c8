#pragma once

// The names of a class's members, as plain lists: quick, without building records.
//
//   std::vector<std::u16string> names{u"kept"};
//   bool flag = false;
//   getClassEnumerationNames(ResolvedClassID::fromLegacyString("lab.Mode"), names, flag);   // true
//   // names: kept, Manual, Automatic
//
// What is listed: public members that are visible, own and inherited, in the order in which the class system
// walks them. A property counts as public when reading it or writing it is public. Of methods each name
// occurs once per call, decided by the first method of that name, constructors aside, that the walk meets;
// constructors are never listed.
//
// All operations append to `names` and return whether this call appended anything. `classFlag` receives the
// class's own yes/no answer in the two property lists, before any name is appended, also when nothing is
// listed; it stays untouched when there is no such class, and in the other three operations always.
//
// The forms that take an identifier return false for the null identifier and for an unknown class, and let
// every exception of the flag, the check and the walk propagate; of the look-up of the class only the
// interrupt. Properties and enumeration members are listed of classes that fail their check, too; methods are
// not.
//
// The forms that take a name look the class up as ResolvedClassID::fromLegacyString does (ASCII conversion),
// so that a class that fails its check is unknown to all of them. Nothing propagates, not even the interrupt:
// after an exception the answer is false, and what had been appended stays.
//
// A member without a name is an exception (std::logic_error), once it is the turn of its name: for properties
// only when they would be listed, for methods always.
//
// No operation runs Korval code.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <string>
#include <vector>

namespace KCOSContextData {

/// Properties that are constants of the class.
CONTEXTDATA_API bool getClassConstantPropertyNames(const ResolvedClassID& id,
                                                   std::vector<std::u16string>& names, bool& classFlag);
CONTEXTDATA_API bool getClassConstantPropertyNames(const std::u16string& className,
                                                   std::vector<std::u16string>& names, bool& classFlag);

/// All properties; repeated as often as classes define them.
CONTEXTDATA_API bool getClassPropertyNames(const ResolvedClassID& id, std::vector<std::u16string>& names,
                                           bool& classFlag);
CONTEXTDATA_API bool getClassPropertyNames(const std::u16string& className,
                                           std::vector<std::u16string>& names, bool& classFlag);

/// Static methods.
CONTEXTDATA_API bool getClassStaticMethodNames(const ResolvedClassID& id, std::vector<std::u16string>& names,
                                               bool& classFlag);
CONTEXTDATA_API bool getClassStaticMethodNames(const std::u16string& className,
                                               std::vector<std::u16string>& names, bool& classFlag);

/// All methods, static or not.
CONTEXTDATA_API bool getClassMethodNames(const ResolvedClassID& id, std::vector<std::u16string>& names,
                                         bool& classFlag);
CONTEXTDATA_API bool getClassMethodNames(const std::u16string& className, std::vector<std::u16string>& names,
                                         bool& classFlag);

/// Members of an enumeration class that are not hidden; a repeated member is listed as often as it occurs.
CONTEXTDATA_API bool getClassEnumerationNames(const ResolvedClassID& id, std::vector<std::u16string>& names,
                                              bool& classFlag);
CONTEXTDATA_API bool getClassEnumerationNames(const std::u16string& className,
                                              std::vector<std::u16string>& names, bool& classFlag);

}  // namespace KCOSContextData
