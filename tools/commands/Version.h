#pragma once

#include <contextdata/Version.h>

#include <string>

namespace tools {

inline std::string version() {
  return std::to_string(CONTEXTDATA_VERSION_MAJOR) + "." + std::to_string(CONTEXTDATA_VERSION_MINOR) + "." +
         std::to_string(CONTEXTDATA_VERSION_PATCH);
}

}  // namespace tools
