#include "embedded/dispatcher/CurrentFolder.h"

#include "embedded/gate/Gate.h"

foundation::storage::vfs::Folder embedded::CurrentFolder::get() const {
  enter<Operation::workingFolderGet>();
  return folder_;
}

KcurrentWorkingFolder::~KcurrentWorkingFolder() = default;
