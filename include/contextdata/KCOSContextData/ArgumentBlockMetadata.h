#pragma once

#include <contextdata/Export.h>

#include <string>

#include "host/FunctionMetadata.h"

namespace KCOSContextData {

/// What a function declares about its arguments: the host's record as it is, whose arrays belong to the
/// caller. With component-aware resolution on, and the dispatcher knowing `functionReference`, the function is
/// the one that `functionName` (general conversion) means there, for an empty name that function itself; in
/// every other case the host resolves the name by itself. Every exception propagates. No Korval code runs.
CONTEXTDATA_API FunctionMetadata getArgumentBlockMetadata(const std::u16string& functionReference,
                                                          const std::u16string& functionName);

}  // namespace KCOSContextData
