#pragma once

// What functions declare about their arguments.

#include <optional>
#include <string>

#include "frontend/CursorContext.h"
#include "frontend/Hover.h"
#include "frontend/RequestContext.h"

namespace frontend {

/// The signature of the function of that name; none when it declares nothing. What the library lets out passes, but for
/// functions that the host does not know.
std::optional<Signature> signatureOf(const std::u16string& function);

/// The signature that a call means: of the method when the object whose member it is, or its first argument, has one.
std::optional<Signature> signatureOf(RequestContext& request, const Call& call);

/// The argument of the signature that the call is in; none when there are no more.
std::optional<std::size_t> activeArgument(const Signature& signature, const Call& call);

}  // namespace frontend
