#pragma once

// What a candidate says beside its name: what can be told of a value, of a property and of a method without running code.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/Declarations.h"
#include "frontend/RequestContext.h"
#include "host/Arrays.h"

namespace frontend {

bool isStructure(const kxArray_tag* value);

/// A value's own dimensions, in whichever form it holds them. The host refuses to tell lazy ones.
std::vector<std::size_t> heldDimensions(const kxArray_tag* value);

/// "2x3", or empty when it is not known. Objects are asked for their size when the policy lets code run.
std::u16string sizeOf(const RequestContext& request, const kxArray_tag* value);

/// Type and size of a value, as far as they can be told.
void describeValue(const RequestContext& request, const kxArray_tag* value, Candidate& candidate);

void describeMethod(const KCOSContextData::MethodInfo& method, Candidate& candidate);

/// Describes the properties of one class, or of one object of it.
class PropertyDetails {
 public:
  /// `value` may be null: then the declarations have to do.
  PropertyDetails(RequestContext& request, const KCOSContextData::ClassInfo& record,
                  boost::intrusive_ptr<kxArray_tag> value);
  void describe(const KCOSContextData::PropertyInfo& property, Candidate& candidate);

 private:
  const KCOSContextData::ClassInfo& declaring(const std::u16string& property);
  void describeStored(const KCOSContextData::PropertyInfo& property, Candidate& candidate) const;

  RequestContext& request_;
  const KCOSContextData::ClassInfo& record_;
  const boost::intrusive_ptr<kxArray_tag> value_;
  std::optional<DeclaringClasses> declaring_;
};

}  // namespace frontend
