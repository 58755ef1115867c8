#pragma once

#include <string>
#include <vector>

/// A text that is no snapshot.
struct BrokenText {
  std::string text;
  std::string code;
  std::string pointer;
  /// Stands in the reason: the culprit, or what was expected.
  std::string reason;
};

/// What the reader refuses where it meets it.
extern const std::vector<BrokenText> brokenShapes;
/// What only the whole shows.
extern const std::vector<BrokenText> brokenWorlds;

// Snapshots around something.

std::string world(const std::string& content);
std::string oneClass(const std::string& content);
std::string property(const std::string& content);
std::string value(const std::string& content);
/// An object of a class with a property and a member.
std::string object(const std::string& content);
/// Cells in cells.
std::string nested(std::size_t depth);
