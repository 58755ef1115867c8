#pragma once

// Results of the library as JSON. Some are asked of the host: render only when the query is over.

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <set>
#include <string>
#include <vector>

#include "host/Classes.h"
#include "tools/Text.h"

namespace tools::query {

Json render(bool answer);
Json render(const std::u16string& text);
Json render(const std::vector<std::u16string>& texts);
Json render(const std::vector<std::string>& texts);
Json render(const std::set<std::u16string>& texts);
/// The component-qualified name; "" for the null identifier.
Json render(const KCOSContextData::ResolvedClassID& id);
Json render(const KCOSContextData::ResolvedClassID::DebuggerFocus& focus);
/// The identity of the class, or null.
Json render(kcos::COSClass* found);
/// The dotted name of the namespace, or null.
Json render(kcos::COSInterface* found);

}  // namespace tools::query
