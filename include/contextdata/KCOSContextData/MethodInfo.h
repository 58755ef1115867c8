#pragma once

// What is known of one method, which methods a query asks for, and which classes and names take part in
// completion at all.

#include <contextdata/Export.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/Names.h"

namespace KCOSContextData {

class ClassInfo;

/// One method that a class offers. A plain record.
struct MethodInfo {
  std::u16string name;
  /// The class that defines the method: its namespace, ".", and its name; the name alone without a namespace.
  std::u16string definingClass;
  bool isStatic = false;

  /// Where the method's name is being typed. Other values let no class take part.
  enum class GetContext : std::int32_t {
    None = 0,       ///< nowhere: every query returns an empty list
    BeforeDot = 1,  ///< as a function, which the object will be an argument of
    AfterDot = 2,   ///< after an object and a dot
    Any = 3         ///< anywhere: every class takes part
  };

  /// Which methods a query asks for.
  struct GetOptions {
    /// The access levels that qualify a method; 0 is public. Level 2 is not inherited: its first entry is
    /// dropped when a query goes on to the superclasses.
    std::vector<std::int32_t> access{0};
    /// The class whose code asks, or null. A method that grants access to it, or to a class that it derives
    /// from, qualifies whatever its access level is. Borrowed for the query.
    const ClassInfo* accessingClass = nullptr;
    GetContext context = GetContext::None;
    bool includeConstructors = false;
    bool includeOperatorOverloads = false;
    /// Whether hidden methods are included like others. Otherwise they only mask inherited ones of the same
    /// name.
    bool includeHidden = false;
  };

  /// Does a method of that name overload an operator or indexing ("plus", "subsref", ...)? Exact and
  /// case-sensitive. The narrow form converts with the general conversion, and what that throws propagates.
  CONTEXTDATA_API static bool isOperatorOverload(const std::u16string& name);
  CONTEXTDATA_API static bool isOperatorOverload(const std::string& name);

  /// Do the methods of that class take part before the dot? Those of the built-in types do not. The class
  /// need not exist; only its name counts. Asks nothing of the host.
  CONTEXTDATA_API static bool isClassToCompleteMethodsForBeforeDot(kcos::COSInternedName classId);

  /// Do the methods of that class take part after the dot? Neither those of the built-in types do, nor those
  /// of the classes in getNoDotMethodClassesExcludeSet().
  CONTEXTDATA_API static bool isClassToCompleteMethodsForAfterDot(kcos::COSInternedName classId);
};

}  // namespace KCOSContextData
