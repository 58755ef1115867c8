#pragma once

#include <optional>
#include <string>

#include "embedded/Host.h"

/// What is wrong with a text, or nothing.
inline std::optional<embedded::SnapshotError> faultOfText(const std::string& text) {
  try {
    embedded::readSnapshotText(text, "world.json");
  } catch (const embedded::SnapshotError& fault) {
    return fault;
  }
  return std::nullopt;
}
