#pragma once

// Packages of the older object system, which are no namespaces of the class system.
//
//   if (IsPKXPackage(u"signal")) PKXContextData::getPackageStrings(u"signal", names);

#include <contextdata/Export.h>
#include <contextdata/Workspace/LegacyPackages.h>

#include <string>
#include <vector>

namespace PKXContextData {

/// Appends the names of the package's classes, then of its functions, as the package object has them, then
/// the code files, compiled files and class folders in its "@" folders on the search path; returns whether
/// anything was appended. Names can repeat. The folders are listed whether or not there is such a package.
///
/// `package` may be an element of `names`. Runs Korval code ("findpackage", properties of the package). Properties that cannot be read are left out,
/// also for the interrupt; whatever else is thrown propagates, for the folders as getWhatList() says.
CONTEXTDATA_API bool getPackageStrings(const std::u16string& package, std::vector<std::u16string>& names);

}  // namespace PKXContextData
