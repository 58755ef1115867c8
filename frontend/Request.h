#pragma once

// What every request to the front end has: a scope, its limits, and how it ended.

#include <cstddef>
#include <string>
#include <vector>

#include "frontend/Session.h"

namespace frontend {

/// A name that the code around the cursor makes, for instance an argument of the function.
struct LocalName {
  std::u16string name;
  /// The class of its value as users name it, when the code says so; or empty.
  std::u16string className = {};
};

/// Where something is typed.
struct Scope {
  /// The function or file whose code it is, which decides what short class names mean; empty: a prompt.
  std::u16string function = {};
  /// The class whose code it is, as users name it: it may use members that others may not. Empty: of no class.
  std::u16string className = {};
  /// They hide variables of the workspace.
  std::vector<LocalName> locals = {};
  /// Variables of the workspace count. They do not in a function's own code.
  bool workspace = true;
};

struct Options {
  CodePolicy policy = CodePolicy::StoredValues;
  Deadline deadline = {};
  /// How many candidates are returned at most.
  std::size_t limit = 200;
  /// Hidden members and names are included like others. Otherwise they come once their whole name is typed.
  bool hidden = false;
};

/// How a request ended. Whatever it says, what is returned is right; it may not be all.
enum class Status {
  Complete,
  Limited,      ///< there is more than was asked for
  RefusedCode,  ///< there may be more: looking further would have gone beyond the policy
  FailedCode,   ///< there may be more: code that was run to look at it has failed
  TimedOut,     ///< the deadline passed
  Interrupted,  ///< somebody asked it to stop
  Failed        ///< the class system or the session failed
};

constexpr const char* nameOf(Status status) {
  switch (status) {
    case Status::Complete:
      return "complete";
    case Status::Limited:
      return "limited";
    case Status::RefusedCode:
      return "refused-code";
    case Status::FailedCode:
      return "failed-code";
    case Status::TimedOut:
      return "timed-out";
    case Status::Interrupted:
      return "interrupted";
    case Status::Failed:
      return "failed";
  }
  return "";
}

constexpr const char* nameOf(CodePolicy policy) {
  switch (policy) {
    case CodePolicy::Never:
      return "never";
    case CodePolicy::StoredValues:
      return "stored-values";
    case CodePolicy::Allowed:
      return "allowed";
  }
  return "";
}

struct Outcome {
  Status status = Status::Complete;
  /// For people, one line; empty when it is complete.
  std::u16string reason = {};
  /// The policy under which nothing would have been left out; the request's own when that was enough.
  CodePolicy neededPolicy = CodePolicy::Never;
  /// What code has printed meanwhile.
  std::u16string printed = {};
};

}  // namespace frontend
