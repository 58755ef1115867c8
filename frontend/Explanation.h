#pragma once

// Why a name is offered, or is not.
//
//   Explanation answer = explain(session, u"pump.", 5, u"Calibration", {});
//   answer.isOffered          // false
//   answer.reasons[0].rule    // Rule::Hidden

#include <cstddef>
#include <string>
#include <vector>

#include "frontend/Completion.h"

namespace frontend {

enum class Rule {
  Offered,         ///< nothing is in the way; the detail says where it ranks
  NoPosition,      ///< nothing is completed at the cursor: a comment, a number
  UnknownBase,     ///< what stands before the dot is nothing that is known
  Unknown,         ///< there is no such name
  NotInThisClass,  ///< the class has no such member
  AccessLevel,     ///< protected or private, and this is not the code of a class that may use it
  AccessList,      ///< only for the code of the classes that it names
  Hidden,
  ShadowedBy,  ///< a class in between has a member of that name
  Operator,    ///< it overloads an operator or indexing
  Constructor,
  Position,  ///< it is offered elsewhere: static and constant members after the class, others after objects
  Mixin,     ///< the class derives from one that lets it offer no methods after the dot
  ExclusionTable,  ///< completion leaves the name out on purpose
  NoMatch,         ///< it does not fit what was typed
  BeyondLimit,     ///< it would be offered if more candidates were asked for
  RefusedCode,     ///< finding out would go beyond the policy
  FailedCode,      ///< code that was run to find out has failed
  NotOfferedHere   ///< none of the above can be told apart
};

/// "offered", "access-level", "not-in-this-class", ...
const char* nameOf(Rule rule);

struct Reason {
  Rule rule = Rule::NotOfferedHere;
  /// One line for people: which class, which level, ...
  std::u16string detail = {};
};

struct Explanation {
  Outcome outcome;
  std::u16string name;
  bool isOffered = false;
  /// Each of them is in the way, or the one that says that nothing is. Never empty.
  std::vector<Reason> reasons;
};

/// Why `complete(session, text, cursor, scope, options)` offers the name, or does not.
Explanation explain(Session& session, const std::u16string& text, std::size_t cursor,
                    const std::u16string& name, const Scope& scope, const Options& options = {});

}  // namespace frontend
