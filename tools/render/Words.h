#pragma once

// The parts of a description in words, for the forms that people read.

#include <string>
#include <vector>

#include "tools/render/Description.h"

namespace tools::description {

/// "lab.Recorder", or with an identity that differs "lab.Recorder (logging:lab.Recorder)".
std::string title(const ClassDescription& described);
/// "1 x :", or nothing.
std::string size(const KCOSContextData::PropertyInfo& info);
/// "public", or where the two differ "public, write: private".
std::string access(const Property& property);
std::string access(const Method& method);
/// "hidden", "reading runs code", "values: 1, 2", ...
std::vector<std::string> notes(const Property& property);
std::vector<std::string> notes(const Method& method);

std::string joined(const std::vector<std::string>& texts, const std::string& separator);

}  // namespace tools::description
