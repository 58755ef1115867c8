#pragma once

// The names that completion treats specially. Fixed tables, compared exactly and case-sensitively; the sets
// are in the order of UTF-16 code units.
//
// Each table is built at its first use, may be asked from any thread, and asks nothing of the host. The sets
// are copies that belong to the caller: whoever tests many names keeps one instead of asking in a loop.
// Nothing here throws, except for want of memory.

#include <contextdata/Export.h>

#include <set>
#include <string>
#include <vector>

namespace KCOSContextData {

/// Methods through which a class overloads operators and indexing ("plus", "subsref", ...). Nobody types them
/// after an object, so completion leaves them out.
CONTEXTDATA_API std::set<std::u16string> getKCOSMethodsExcludeSet();

/// Graphics namespaces directly below the top namespace, by their last part ("ui", not "korval.ui"). For
/// front ends; no query of the library consults it.
CONTEXTDATA_API std::set<std::u16string> getVX2KorvalNamespacesExcludeSet();

/// Graphics namespaces by their whole names ("korval.ui", not "ui"). For front ends; no query of the library
/// consults it.
CONTEXTDATA_API std::set<std::u16string> getVX2NamespacesExcludeSet();

/// Classes whose methods are not completed after the dot, because the dot means something else there
/// ("table", "datetime", ...).
CONTEXTDATA_API std::set<std::u16string> getNoDotMethodClassesExcludeSet();

/// Attributes by which a property counts as one whose reading runs a get method. One shared, unchanging list.
CONTEXTDATA_API const std::vector<std::string>& getAttributesToTreatAsHavingCustomGetters();

}  // namespace KCOSContextData
