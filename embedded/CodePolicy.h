#pragma once

// Whether Korval code may run in a session, how far, and what has become of it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/Outline.h"

namespace embedded {

/// What becomes of Korval code that a client's query, or the library for it, is about to run.
enum class CodePolicy {
  Allowed,
  /// It raises a foundation::core::except::Exception with the identifier "KORVAL:host:CodeRefused".
  Refused
};

/// What has become of it so far. A query whose code was refused may still have succeeded: look here, not there.
struct CodeRecord {
  std::uint64_t runs = 0;
  std::uint64_t refusals = 0;
  /// What was refused, the first hundred times.
  std::vector<std::string> refused;
  /// The first error of code that an expression ran: of a get method, a method, a function. An error of the expression
  /// itself is not here, because what it asks for may just not be there; Host::codeFailure() tells of both.
  std::optional<CodeFailure> failure;
};

/// How far one run of Korval code may go. Whatever goes beyond is an error of the code.
struct CodeLimits {
  std::uint64_t steps = 10'000'000;
  /// Levels of expressions, blocks and calls inside each other. A level takes up to 4 KiB of the thread's stack.
  std::size_t depth = 1000;
  /// Elements of one array, each of its extents, values of one list, characters of one text.
  std::size_t elements = 1'000'000;
  /// Bytes of all values that the run has made and that still live.
  std::size_t memory = std::size_t{48} << 20U;
};

}  // namespace embedded
