#pragma once

#include <boost/algorithm/string/replace.hpp>
#include <optional>
#include <string>

#include "embedded/Host.h"

/// The part again and again with commas between, "#" being its number and "@" the next one.
inline std::string repeated(const std::string& part, std::size_t count) {
  std::string text;
  for (std::size_t number = 0; number < count; ++number) {
    const std::string made = boost::replace_all_copy(part, "#", std::to_string(number));
    text += (number > 0 ? "," : "") + boost::replace_all_copy(made, "@", std::to_string(number + 1));
  }
  return text;
}

/// What is wrong with a text, or nothing.
inline std::optional<embedded::SnapshotError> faultOfText(const std::string& text) {
  try {
    embedded::readSnapshotText(text, "world.json");
  } catch (const embedded::SnapshotError& fault) {
    return fault;
  }
  return std::nullopt;
}
