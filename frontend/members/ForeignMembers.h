#pragma once

// What stands behind the dot of values that are no objects of the class system.

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "frontend/candidates/Gathering.h"
#include "host/Arrays.h"

namespace frontend {

/// The fields of a structure; with type and size when it is a scalar.
void offerFields(const Inquiry& inquiry, const boost::intrusive_ptr<kxArray_tag>& structure,
                 Gathering& gathering);

/// What an object of another object system answers itself, when the policy lets it.
void offerForeignObject(Inquiry& inquiry, const boost::intrusive_ptr<kxArray_tag>& value,
                        Gathering& gathering);

}  // namespace frontend
