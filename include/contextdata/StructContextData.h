#pragma once

// The namespace StructContextData: what completion asks about structures.
//
//   std::vector<std::u16string> names;
//   StructContextData::getStructFieldNames(settings, names);   // interval, verbose, levels

#include <contextdata/Export.h>

#include <string>
#include <vector>

#include "host/Arrays.h"

namespace StructContextData {

/// Appends the field names of a structure, which is not null, in field order (ASCII conversion). A missing
/// name is a std::logic_error; the names before it stay. Every exception propagates. Runs no Korval code.
CONTEXTDATA_API void getStructFieldNames(const kxArray_tag* value, std::vector<std::u16string>& names);

}  // namespace StructContextData
