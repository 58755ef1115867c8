#include "embedded/host/CurrentFolder.h"

#include "embedded/host/Gate.h"

foundation::storage::vfs::Folder embedded::CurrentFolder::get() const {
  enter<Operation::workingFolderGet>();
  return folder_;
}

KcurrentWorkingFolder::~KcurrentWorkingFolder() = default;
