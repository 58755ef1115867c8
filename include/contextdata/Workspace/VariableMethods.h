#pragma once

#include <contextdata/Export.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "host/Arrays.h"

/// The methods to offer after a variable and a dot: for an object of a valid class its public, visible
/// methods that are not static, in the order of the walk; for any other value what it returns for "methods".
/// Without names that equal `name` (the variable's or its class's: the caller's choice), operator names, and
/// names with a dot in them.
///
/// Runs Korval code for every value for which isKCOSObject() is false; what that call throws is swallowed.
/// What reading its answer throws propagates, and so does what isKCOSObject(), getCOSClass() and the walk let
/// propagate.
CONTEXTDATA_API std::vector<std::u16string> getMethodsForWSVariable(
    const std::u16string& name, const boost::intrusive_ptr<const kxArray_tag>& value);
