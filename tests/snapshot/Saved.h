#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>

#include "embedded/Host.h"
#include "tests/support/TempFolder.h"
#include "tests/support/World.h"

/// What a session of that description saves.
inline std::string saved(const embedded::Description& description) {
  return embedded::snapshotText(embedded::Host(description).describe());
}

/// The fault of saving what `make` describes, or nothing.
template <class Make>
std::optional<embedded::SnapshotError> faultOfSaving(Make make) {
  try {
    embedded::snapshotText(make());
  } catch (const embedded::SnapshotError& fault) {
    return fault;
  }
  return std::nullopt;
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
