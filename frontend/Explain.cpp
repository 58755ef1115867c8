#include <algorithm>
#include <array>
#include <limits>

#include "frontend/Explanation.h"
#include "frontend/Offers.h"
#include "frontend/Reasons.h"

namespace frontend {

namespace {

/// Rules after which nothing else is worth saying.
bool endsThere(const Reasons& reasons) {
  static constexpr std::array<Rule, 4> last = {Rule::UnknownBase, Rule::Unknown, Rule::NotInThisClass,
                                               Rule::NotOfferedHere};
  return reasons.empty() || std::ranges::count(last, reasons.front().rule) > 0;
}

std::u16string number(std::size_t count) { return wide(std::to_string(count)); }

/// The position as if nothing had been typed; in a text its folder stays.
CursorContext withoutTyped(CursorContext context) {
  const std::size_t slash =
      context.kind == CursorContext::Text ? context.typed.rfind(u'/') : std::u16string::npos;
  context.typed.resize(slash == std::u16string::npos ? 0 : slash + 1);
  return context;
}

class Explaining {
 public:
  Explaining(RequestContext& request, const CursorContext& context, Explanation& explanation)
      : request_(request), cursorContext_(context), explanation_(explanation) {}

  void run() {
    if (cursorContext_.kind == CursorContext::Nothing) {
      return add(Rule::NoPosition, u"no name is typed at the cursor");
    }
    Completion offered;
    offerAt(request_, cursorContext_, {std::numeric_limits<std::size_t>::max(), false}, offered);
    const auto found = std::ranges::find(offered.candidates, explanation_.name, &Candidate::label);
    if (found == offered.candidates.end()) return explainAbsence();
    explainRank(*found, static_cast<std::size_t>(found - offered.candidates.begin()), offered.total);
  }

 private:
  void add(Rule rule, const std::u16string& detail) { explanation_.reasons.push_back({rule, detail}); }

  void explainRank(const Candidate& candidate, std::size_t rank, std::size_t total) {
    const std::size_t limit = request_.options().limit;
    explanation_.isOffered = rank < limit;
    const std::u16string place = u"number " + number(rank + 1) + u" of " + number(total);
    if (!explanation_.isOffered) return add(Rule::BeyondLimit, place + u", the limit is " + number(limit));
    std::u16string why = wide(nameOf(candidate.kind)) + u", " + wide(nameOf(candidate.match)) + u" match";
    if (candidate.isHidden) why += u", hidden";
    add(Rule::Offered, place + u": " + why);
  }

  void explainAbsence() {
    const CursorContext empty = withoutTyped(cursorContext_);
    const Scope& scope = request_.scope();
    const bool fits =
        matchOf(cursorContext_.typed.substr(empty.typed.size()), explanation_.name) != Match::None;
    Reasons reasons;
    if (fits || !isOfferedAt(request_, empty, scope, request_.options().hidden, explanation_.name))
      reasons = whyNot(empty);
    const bool isOnlyTyped = !fits && (reasons.empty() || !endsThere(reasons));
    if (isOnlyTyped)
      add(Rule::NoMatch,
          u"'" + cursorContext_.typed.substr(empty.typed.size()) + u"' is typed, which does not fit");
    explanation_.reasons.insert(explanation_.reasons.end(), reasons.begin(), reasons.end());
  }

  Reasons whyNot(const CursorContext& empty) {
    if (empty.kind == CursorContext::Member) return whyNotBehindDot(request_, empty, explanation_.name);
    return whyNotAsName(request_, empty, explanation_.name);
  }

  RequestContext& request_;
  const CursorContext& cursorContext_;
  Explanation& explanation_;
};

/// What was not looked at may hold the name, whatever else has been found out.
void considerRefusals(Explanation& explanation) {
  if (explanation.isOffered || explanation.outcome.status != Status::RefusedCode) return;
  if (!endsThere(explanation.reasons)) return;
  explanation.reasons = {{Rule::RefusedCode, explanation.outcome.reason}};
}

}  // namespace

Explanation explain(Session& session, const std::u16string& text, std::size_t cursor,
                    const std::u16string& name, const Scope& scope, const Options& options) {
  Explanation explanation{.outcome = {}, .name = name, .reasons = {}};
  explanation.outcome = answer(session, scope, options, [&](RequestContext& request) {
    Explaining(request, contextAt(text, cursor), explanation).run();
  });
  considerRefusals(explanation);
  if (explanation.reasons.empty())
    explanation.reasons.push_back({Rule::NotOfferedHere, explanation.outcome.reason});
  return explanation;
}

const char* nameOf(Rule rule) {
  static constexpr const char* names[] = {
      "offered",      "no-position",  "unknown-base",    "unknown",         "not-in-this-class",
      "access-level", "access-list",  "hidden",          "shadowed-by",     "operator",
      "constructor",  "position",     "mixin",           "exclusion-table", "no-match",
      "beyond-limit", "refused-code", "not-offered-here"};
  return names[static_cast<int>(rule)];
}

}  // namespace frontend
