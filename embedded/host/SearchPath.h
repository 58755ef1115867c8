#pragma once

#include <string>
#include <vector>

#include "embedded/Description.h"
#include "embedded/host/Files.h"
#include "host/SearchPath.h"

namespace embedded {

class PathItem final : public KpathItem {
 public:
  PathItem(int kind, std::string folder)
      : kind_(kind), folder_(std::move(folder)), location_(namedFolder(folder_)) {}

  int kind() const noexcept { return kind_; }
  const std::string& folder() const noexcept { return folder_; }
  const foundation::storage::vfs::CanonicalAbsoluteIRI& location() const noexcept { return location_; }

  int getKind() const override;
  foundation::storage::vfs::CanonicalAbsoluteIRI getLocation() const override;
  const KnameComparer* getService(int selector) const override;

 private:
  int kind_;
  std::string folder_;
  foundation::storage::vfs::CanonicalAbsoluteIRI location_;
};

class SearchPath final : public KsearchPath {
 public:
  explicit SearchPath(const std::vector<PathItemDescription>& items) {
    for (const PathItemDescription& item : items) items_.emplace_back(item.kind, item.folder);
  }

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
