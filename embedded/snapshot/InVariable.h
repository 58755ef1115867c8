#pragma once

#include <string>

#include "embedded/Host.h"
#include "embedded/snapshot/Place.h"

namespace embedded::snapshot {

/// What goes wrong meanwhile goes wrong in that variable: the reason names it.
template <class Action>
void inVariable(const std::string& name, Action action) {
  try {
    action();
  } catch (const SnapshotError& error) {
    throw SnapshotError(error.code(), error.file(), error.pointer(),
                        "the variable " + inQuotes(name) + ": " + error.reason());
  }
}

}  // namespace embedded::snapshot
