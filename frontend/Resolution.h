#pragma once

// What a dotted expression before a dot resolves to: a value, a declared class, or what holds names.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <optional>
#include <string>

#include "frontend/RequestContext.h"
#include "host/Arrays.h"

namespace frontend {

struct Resolution {
  enum Kind {
    Unknown,
    Value,   ///< a value that can be looked at
    Object,  ///< a value of a known class, which cannot be looked at
    Class,
    Namespace,
    Package
  };
  Kind kind = Unknown;
  boost::intrusive_ptr<kxArray_tag> value = {};
  /// Of an object or a class.
  std::optional<KCOSContextData::ResolvedClassID> id = {};
  /// Of a class, a namespace or a package, as typed.
  std::u16string name = {};
};

/// Variables come before classes, these before namespaces, and these before packages. What the library throws propagates.
Resolution resolve(RequestContext& request, const std::u16string& expression);

/// The class that code of the scope means by the name, when there is one.
std::optional<KCOSContextData::ResolvedClassID> classNamed(const RequestContext& request,
                                                           const std::u16string& name);

/// The value's class, when it is an object of the class system.
std::optional<KCOSContextData::ResolvedClassID> classOf(const Resolution& resolution);

}  // namespace frontend
