#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "tests/snapshot/Faults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/World.h"

/// What a session of that description saves.
inline std::string saved(const embedded::Description& description) {
  return embedded::snapshotText(embedded::Host(description).describe());
}

/// What `say` says in a child, whose limits, memory and end are its own; "ended by a signal" when it does not come to that.
template <class Say>
std::string inChild(Say say) {
  const TempFolder folder;
  const pid_t child = fork();
  if (child == 0) {
    std::ofstream(folder / "said") << say() << std::flush;
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? "ended by a signal" : contentsOf(folder / "said");
}
