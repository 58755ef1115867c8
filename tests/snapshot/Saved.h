#pragma once

#include <optional>
#include <string>

#include "embedded/Host.h"

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
