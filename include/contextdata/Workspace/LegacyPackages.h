#pragma once

#include <contextdata/Export.h>

#include <string>

/// Is there a package of that name in the older object system? Evaluates silently
/// "isa(findpackage('name'), 'opaque');" with the name as it stands, so it runs Korval code. False when the
/// evaluation reports an error; what it throws propagates.
CONTEXTDATA_API bool IsPKXPackage(const std::u16string& name);
