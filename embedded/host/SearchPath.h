#pragma once

#include <vector>

#include "embedded/Description.h"
#include "embedded/host/Files.h"
#include "host/SearchPath.h"

namespace embedded {

class PathItem final : public KpathItem {
 public:
  explicit PathItem(const PathItemDescription& description);

  int kind() const noexcept { return kind_; }

  int getKind() const override;
  foundation::storage::vfs::CanonicalAbsoluteIRI getLocation() const override;
  const KnameComparer* getService(int selector) const override;

 private:
  int kind_;
  foundation::storage::vfs::CanonicalAbsoluteIRI location_;
};

class SearchPath final : public KsearchPath {
 public:
  explicit SearchPath(const std::vector<PathItemDescription>& items) : items_(items.begin(), items.end()) {}

  void visitItems(const std::vector<int>& kinds, KpathItemVisitor& visitor) const override;

 private:
  std::vector<PathItem> items_;
};

class CurrentFolder final : public KcurrentWorkingFolder {
 public:
  /// The process's current folder for an empty path.
  explicit CurrentFolder(const std::string& path) : folder_(folderName(path.empty() ? "." : path)) {}

  foundation::storage::vfs::Folder get() const override;

 private:
  foundation::storage::vfs::Folder folder_;
};

}  // namespace embedded
