#pragma once

// From a line of text and a cursor to what can be typed there.
//
//   Completion answer = complete(session, u"pump.Fl", 7, {});
//   answer.candidates[0].label   // Flow
//   answer.begin, answer.end     // 5, 7: what the candidate replaces
//
// Nothing propagates but std::bad_alloc: a failure is an outcome. docs/completion.md has the table of positions.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/Request.h"

namespace frontend {

struct CursorContext;
class RequestContext;

/// What a candidate is. Their order is the order in which kinds are offered where the match is equally good.
enum class Kind {
  Value,         ///< a value that a property or an argument may take
  ArgumentName,  ///< the name of a name-value argument
  Variable,
  Property,
  Field,  ///< of a structure
  Constant,
  EnumerationMember,
  Method,
  StaticMethod,
  Function,
  CodeFile,
  ClassFolder,
  Class,
  Namespace,
  Package,
  BuiltinFunction,
  Keyword
};

/// "value", "argument-name", "variable", ...
const char* nameOf(Kind kind);

/// How what was typed fits a name, best first.
enum class Match {
  Exact,
  Prefix,
  PrefixIgnoringCase,
  Humps,  ///< "gCI", "gci" or "getCI" for "getClassInfo"
  None
};

/// "exact", "prefix", ...
const char* nameOf(Match match);

/// How `typed` fits `name`. Everything begins with the empty text.
Match matchOf(std::u16string_view typed, std::u16string_view name);

struct Candidate {
  std::u16string label;
  /// What replaces what was typed; differs from the label where quotes or a class name belong to it.
  std::u16string insertion;
  /// The dot before what was typed is replaced, too: code writes the name of this member as ".('any name')" only.
  bool replacesDot = false;
  Kind kind = Kind::Variable;

  // Why it stands where it stands: match, then not hidden before hidden, kind, order, label.
  Match match = Match::Prefix;
  bool isHidden = false;
  /// Its rank among those of its kind: as declared, as made, or 0 where the alphabet decides.
  std::size_t order = 0;

  // Details, which are read for the returned candidates only; empty where they do not apply or are unknown.

  /// The class that declares the member, as users name it.
  std::u16string declaringClass = {};
  /// Who may read or call it, a kcos::MemberAccess.
  std::optional<std::int32_t> access = {};
  /// Of a property: who may write it.
  std::optional<std::int32_t> writeAccess = {};
  bool isStatic = false;
  bool isConstant = false;
  /// The class of the value, or the declared one.
  std::u16string type = {};
  /// "1x3" for a value, "1x:" as declared.
  std::u16string size = {};
  /// Reading it runs Korval code.
  bool readRunsCode = false;
};

struct Completion {
  Outcome outcome;
  /// What is replaced: from, and up to, UTF-16 code units of the text.
  std::size_t begin = 0;
  std::size_t end = 0;
  /// Of all candidates, of which the first `limit` ones are here.
  std::size_t total = 0;
  std::vector<Candidate> candidates;
};

/// What can be typed at the cursor, a UTF-16 offset; one beyond the text counts as its end, and one inside a surrogate
/// pair as before it. What stands after the cursor matters only where a call follows.
Completion complete(Session& session, const std::u16string& text, std::size_t cursor, const Scope& scope,
                    const Options& options = {});

/// How much of a list is requested.
struct Extent {
  std::size_t limit = 0;
  /// Names, kinds and order alone are much quicker.
  bool details = true;
};
inline constexpr Extent everyName{std::numeric_limits<std::size_t>::max(), false};

/// What completion shows, and what an explanation compares: fills in all but the outcome of a request that is running. When
/// it is stopped, or fails, what it has found so far is there.
void offerAt(RequestContext& request, CursorContext context, const Extent& extent, Completion& completion);

}  // namespace frontend
