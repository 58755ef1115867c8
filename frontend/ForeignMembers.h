#pragma once

// What stands behind the dot of values that are no objects of the class system.

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "frontend/CandidateList.h"
#include "host/Arrays.h"

namespace frontend {

/// The fields of a structure; with type and size when it is a scalar.
void offerFields(const RequestContext& request, const boost::intrusive_ptr<kxArray_tag>& structure,
                 CandidateList& candidates);

/// What an object of another object system answers itself, when the policy lets it.
void offerForeignObject(RequestContext& request, const boost::intrusive_ptr<kxArray_tag>& value,
                        CandidateList& candidates);

}  // namespace frontend
