#pragma once

// What an editor shows about a name.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/SignatureHelp.h"

namespace frontend {

/// What is known of one name.
struct Hover {
  Outcome outcome;
  /// The range of the text that is described, in UTF-16 code units.
  std::size_t begin = 0;
  std::size_t end = 0;
  /// Nothing is known of it.
  bool isUnknown = true;
  /// What the name is by itself, with all its details; the label is the whole dotted name as typed.
  Candidate subject;
  /// Of functions and methods with declared arguments.
  std::optional<Signature> signature = {};
  /// Of classes, and of objects: the classes it derives from, nearest first.
  std::vector<std::u16string> superclasses = {};
  /// The values that a property may take; the members of an enumeration.
  std::vector<std::u16string> possibleValues = {};
  std::vector<std::u16string> validators = {};
};

/// What stands at the offset: the dotted name there, up to the end of the part that the offset is in. Members are described
/// whoever may use them, and hidden ones, operators and constructors too.
Hover describe(Session& session, const std::u16string& text, std::size_t offset, const Scope& scope,
               const Options& options = {});

}  // namespace frontend
