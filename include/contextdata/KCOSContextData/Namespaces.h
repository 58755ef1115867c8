#pragma once

// What namespaces hold, and which there are.

#include <contextdata/Export.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "host/Arrays.h"

namespace KCOSContextData {

/// Append the names of what a namespace holds directly, in the order in which the class system has them, and
/// return whether anything was appended: functions that are visible and not hidden, classes that are not
/// hidden, inner namespaces. False for an unknown namespace and for one without any. ASCII conversion. A
/// missing name is a std::logic_error. Every exception propagates; names appended before it stay. No Korval
/// code runs.
CONTEXTDATA_API bool getNamespaceFunctionNames(const std::u16string& ns, std::vector<std::u16string>& names);
CONTEXTDATA_API bool getNamespaceClassNames(const std::u16string& ns, std::vector<std::u16string>& names);
CONTEXTDATA_API bool getNamespaceNamespaceNames(const std::u16string& ns, std::vector<std::u16string>& names);

/// A new cell with the names of all namespaces, of the dimensions of what the interpreter returns (0 by 0
/// when it returns nothing); a namespace without a name has an empty cell there. Runs Korval code
/// ("korval.metadata.Namespace.getAllNamespaces"), without capturing what it prints. Every exception
/// propagates.
CONTEXTDATA_API boost::intrusive_ptr<kxArray_tag> getKCOSAllNamespaces();

}  // namespace KCOSContextData
