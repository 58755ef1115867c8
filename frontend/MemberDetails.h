#pragma once

// What a candidate says of a member beside its name.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <optional>
#include <string>

#include "frontend/Access.h"
#include "frontend/Completion.h"
#include "frontend/RequestContext.h"

namespace frontend {

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
