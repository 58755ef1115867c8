#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "embedded/Description.h"
#include "embedded/Host.h"

namespace embedded {

/// Which names a session has beside its variables, for clients that list them.
class KnownNames {
 public:
  explicit KnownNames(const Description& description);

  // These look at the folders of the path anew.
  std::vector<KnownName> functions() const;
  std::vector<KnownName> classes() const;
  const std::vector<KnownName>& packages() const noexcept { return packages_; }

 private:
  void addPackage(const std::filesystem::path& folder);

  std::vector<std::filesystem::path> folders_;
  std::vector<KnownName> functions_;
  std::vector<KnownName> classes_;
  std::vector<KnownName> packages_;
};

}  // namespace embedded
