#pragma once

#include <contextdata/KCOSContextData/PropertyInfo.h>

#include "host/DataTypes.h"

namespace KCOSContextData {

/// Fills the possible values of a property and their kind, when its data type allows finitely many. What the host throws
/// passes, except from the text conversion of an object.
void collectPossibleValues(const kcos::COSDataTypePtr& dataType, PropertyInfo& property);

}  // namespace KCOSContextData
