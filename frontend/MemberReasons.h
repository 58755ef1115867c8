#pragma once

// Why a member of a class is not offered. The running request is asked otherwise, with all relaxed that can be, and each
// relaxation without which the name comes as well is taken back: those that are left are the reasons.

#include <string>
#include <vector>

#include "frontend/Explanation.h"
#include "frontend/Resolution.h"

namespace frontend {

using Reasons = std::vector<Reason>;

/// Where members of a class are completed.
enum class AccessForm {
  Object,    ///< after an object
  Class,     ///< after the class itself
  BeforeDot  ///< as a function that an object is the first argument of
};

/// Of a position where nothing is typed, and a name that is not offered there. Empty when no class of its tree has the name.
/// Asks nothing that could run code. `id` is the resolution's class: whoever asked for it hands it on, because the class
/// system may fail to tell it a second time.
Reasons whyNoMember(const RequestContext& request, const Resolution& resolution,
                    const KCOSContextData::ResolvedClassID& id, AccessForm form, const std::u16string& name);

}  // namespace frontend
