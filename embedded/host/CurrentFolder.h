#pragma once

#include "embedded/host/FolderName.h"
#include "host/SearchPath.h"

namespace embedded {

class CurrentFolder final : public KcurrentWorkingFolder {
 public:
  /// The process's current folder for an empty path.
  explicit CurrentFolder(const std::string& path) : folder_(folderName(path.empty() ? "." : path)) {}

  foundation::storage::vfs::Folder get() const override;

 private:
  foundation::storage::vfs::Folder folder_;
};

}  // namespace embedded
