#pragma once

// Why a name is not offered, by where it was looked for. Each asks the running request otherwise and looks whether the name
// comes then. All take a position where nothing is typed, and a name that is not
// offered there.

#include <string>
#include <vector>

#include "frontend/CursorContext.h"
#include "frontend/Explanation.h"
#include "frontend/Resolution.h"

namespace frontend {

using Reasons = std::vector<Reason>;

/// Where members of a class are completed.
enum class AccessForm {
  Object,    ///< behind an object
  Class,     ///< behind the class itself
  BeforeDot  ///< as a function that an object is the first argument of
};

/// Empty when no class of its tree has the name. Asks nothing that could run code.
Reasons whyNoMember(const RequestContext& request, const Resolution& resolution, AccessForm form,
                    const std::u16string& name);

/// Of a position behind a dot.
Reasons whyNotBehindDot(RequestContext& request, const CursorContext& context, const std::u16string& name);
/// Of a position where a name begins, or a text.
Reasons whyNotAsName(RequestContext& request, const CursorContext& context, const std::u16string& name);

/// Is the name among what the running request, asked with these options at this place, offers at the position?
bool isOfferedAt(const RequestContext& request, const CursorContext& context, const Scope& scope, bool hidden,
                 const std::u16string& name);

}  // namespace frontend
