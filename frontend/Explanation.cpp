#include "frontend/Explanation.h"

#include <algorithm>
#include <array>

#include "frontend/CursorContext.h"
#include "frontend/MemberReasons.h"
#include "frontend/NameOffers.h"
#include "frontend/Resolution.h"
#include "frontend/Text.h"
#include "syntax/Keywords.h"

namespace frontend {

namespace {

/// Is the name among what the running request, asked with these options in this scope, offers at the position?
bool isOfferedAt(const RequestContext& request, const CursorContext& context, const Scope& scope, bool hidden,
                 const std::u16string& name) {
  Options options = request.options();
  options.hidden = hidden;
  RequestContext varied(request, scope, options, {});
  Completion completion;
  offerAt(varied, context, everyName, completion);
  return std::ranges::any_of(completion.candidates,
                             [&](const Candidate& candidate) { return candidate.label == name; });
}

std::u16string quoted(const std::u16string& text) { return u"'" + text + u"'"; }

bool isKnown(const std::vector<SessionName>& names, const std::u16string& name) {
  return std::ranges::any_of(names, [&](const SessionName& known) {
    return known.name == name || known.name.starts_with(name + u".");
  });
}

CursorContext memberContext(const std::u16string& base) {
  CursorContext context;
  context.kind = CursorContext::Member;
  context.base = base;
  return context;
}

class NameReasons {
 public:
  NameReasons(RequestContext& request, const CursorContext& context, const std::u16string& name)
      : request_(request), cursorContext_(context), name_(name) {}

  Reasons ofName() {
    if (isOfferedHidden()) return {{Rule::Hidden, quoted(name_) + u" is hidden"}};
    if (isExcluded(name_)) return {excludedNamespace(name_)};
    if (auto found = asMethod(); !found.empty()) return found;
    // The nearest first, because only one is told.
    for (const Reason& reason : {asPlainName(), asVariable(), asInner()}) {
      if (!reason.detail.empty()) return {reason};
    }
    if (!name_.empty() && !isName(name_))
      return {{Rule::NotOfferedHere, quoted(name_) + u" is no name that code can write"}};
    return {{Rule::Unknown, u"no variable, function, class or namespace is called " + quoted(name_)}};
  }

  Reasons ofNamespace() {
    if (isOfferedHidden()) return {{Rule::Hidden, quoted(name_) + u" is hidden"}};
    const std::u16string whole = cursorContext_.base + u"." + name_;
    if (isExcluded(whole)) return {excludedNamespace(whole)};
    return {{Rule::Unknown, quoted(cursorContext_.base) + u" holds nothing that is called " + quoted(name_)}};
  }

 private:
  bool isOfferedHidden() const {
    return isOfferedAt(request_, cursorContext_, request_.scope(), true, name_);
  }

  bool isExcluded(const std::u16string& whole) const {
    return isExcludedNamespace(whole) && isKnown(request_.session().namespaceNames(), whole);
  }

  static Reason excludedNamespace(const std::u16string& whole) {
    return {Rule::ExclusionTable, u"graphics namespaces: " + quoted(whole)};
  }

  /// Of the first argument of the call whose name it would be.
  Reasons asMethod() {
    if (cursorContext_.following.empty()) return {};
    const Resolution argument = resolve(request_, cursorContext_.following);
    const auto id = classOf(argument);
    if (!id || argument.kind == Resolution::Class) return {};
    return whyNoMember(request_, argument, *id, AccessForm::BeforeDot, name_);
  }

  /// What is a name elsewhere: a variable after "@", anything inside a text.
  Reason asPlainName() const {
    if (syntax::keywordOf(name_) != syntax::Keyword::None)
      return {Rule::Position, quoted(name_) + u" is a keyword, offered where a statement begins"};
    if (cursorContext_.kind == CursorContext::Name) return {};
    CursorContext plain;
    plain.kind = CursorContext::Name;
    if (!isOfferedAt(request_, plain, request_.scope(), request_.options().hidden, name_)) return {};
    return {Rule::Position, cursorContext_.kind == CursorContext::Handle
                                ? quoted(name_) + u" is a variable, which no handle is made of"
                                : quoted(name_) + u" is a name, offered outside of texts"};
  }

  /// Of the workspace, which does not count in a function's own code.
  Reason asVariable() const {
    Scope scope = request_.scope();
    // Asked as if it were typed at a prompt.
    scope.workspace = true;
    if (!isOfferedAt(request_, cursorContext_, scope, request_.options().hidden, name_)) return {};
    return {Rule::Position, quoted(name_) + u" is a variable of the workspace, offered at a prompt"};
  }

  /// What is offered after a dot.
  Reason asInner() const {
    for (const std::u16string& base : namespacesOf()) {
      const std::u16string last = name_.substr(name_.rfind(u'.') + 1);
      if (isOfferedAt(request_, memberContext(base), request_.scope(), request_.options().hidden, last))
        return {Rule::Position, quoted(last) + u" is offered after " + quoted(base + u".")};
    }
    return {};
  }

  /// Where the name may be inside, by the names that the session knows.
  std::vector<std::u16string> namespacesOf() const {
    if (const auto dot = name_.rfind(u'.'); dot != std::u16string::npos) return {name_.substr(0, dot)};
    std::vector<std::u16string> namespaces;
    Session& session = request_.session();
    for (const auto& names : {session.classNames(), session.functionNames(), session.namespaceNames()}) {
      for (const SessionName& known : names) {
        if (known.name.ends_with(u"." + name_))
          namespaces.push_back(known.name.substr(0, known.name.size() - name_.size() - 1));
      }
    }
    for (const std::u16string& builtin : session.builtinNames()) {
      if (builtin.ends_with(u"." + name_))
        namespaces.push_back(builtin.substr(0, builtin.size() - name_.size() - 1));
    }
    return namespaces;
  }

  RequestContext& request_;
  const CursorContext& cursorContext_;
  const std::u16string& name_;
};

Reasons whyNoMemberAt(RequestContext& request, const Resolution& resolution, AccessForm form,
                      const CursorContext& context, const std::u16string& name) {
  const auto id = classOf(resolution);
  if (!id) return {{Rule::NotInThisClass, quoted(context.base) + u" has no such member"}};
  auto reasons = whyNoMember(request, resolution, *id, form, name);
  if (!reasons.empty()) return reasons;
  return {{Rule::NotInThisClass, id->getNonComponentQualifiedName() + u" has no such member"}};
}

Reasons whyNotAfterDot(RequestContext& request, const CursorContext& context, const std::u16string& name) {
  const Resolution resolution = resolve(request, context.base);
  switch (resolution.kind) {
    case Resolution::Unknown:
      return {{Rule::UnknownBase, u"nothing that is known is called " + quoted(context.base)}};
    case Resolution::Value:
    case Resolution::Object:
      return whyNoMemberAt(request, resolution, AccessForm::Object, context, name);
    case Resolution::Class:
      return whyNoMemberAt(request, resolution, AccessForm::Class, context, name);
    case Resolution::Namespace:
    case Resolution::Package:
      return NameReasons(request, context, name).ofNamespace();
  }
  return {};
}

Reasons whyNotAsName(RequestContext& request, const CursorContext& context, const std::u16string& name) {
  return NameReasons(request, context, name).ofName();
}

/// Rules after which nothing else is worth saying.
bool endsThere(const Reasons& reasons) {
  static constexpr std::array<Rule, 4> last = {Rule::UnknownBase, Rule::Unknown, Rule::NotInThisClass,
                                               Rule::NotOfferedHere};
  return reasons.empty() || std::ranges::count(last, reasons.front().rule) > 0;
}

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
    // Without a limit, so that a name beyond the limit is told with its number.
    offerAt(request_, cursorContext_, everyName, offered);
    const auto found = std::ranges::find(offered.candidates, explanation_.name, &Candidate::label);
    if (found == offered.candidates.end()) return explainAbsence();
    explainRank(*found, static_cast<std::size_t>(found - offered.candidates.begin()), offered.total);
  }

 private:
  void add(Rule rule, const std::u16string& detail) { explanation_.reasons.push_back({rule, detail}); }

  void explainRank(const Candidate& candidate, std::size_t rank, std::size_t total) {
    const std::size_t limit = request_.options().limit;
    explanation_.isOffered = rank < limit;
    const std::u16string rankText = u"number " + decimal(rank + 1) + u" of " + decimal(total);
    if (!explanation_.isOffered)
      return add(Rule::BeyondLimit, rankText + u", the limit is " + decimal(limit));
    std::u16string why = wide(nameOf(candidate.kind)) + u", " + wide(nameOf(candidate.match)) + u" match";
    if (candidate.isHidden) why += u", hidden";
    add(Rule::Offered, rankText + u": " + why);
  }

  void explainAbsence() {
    const CursorContext empty = withoutTyped(cursorContext_);
    const Scope& scope = request_.scope();
    const bool fits =
        matchOf(cursorContext_.typed.substr(empty.typed.size()), explanation_.name) != Match::None;
    Reasons reasons;
    // When only what is typed is in the way, there is no other reason to look for.
    if (fits || !isOfferedAt(request_, empty, scope, request_.options().hidden, explanation_.name))
      reasons = whyNot(empty);
    const bool isOnlyTyped = !fits && (reasons.empty() || !endsThere(reasons));
    if (isOnlyTyped)
      add(Rule::NoMatch,
          u"'" + cursorContext_.typed.substr(empty.typed.size()) + u"' is typed, which does not fit");
    explanation_.reasons.insert(explanation_.reasons.end(), reasons.begin(), reasons.end());
  }

  Reasons whyNot(const CursorContext& empty) {
    if (empty.kind == CursorContext::Member) return whyNotAfterDot(request_, empty, explanation_.name);
    return whyNotAsName(request_, empty, explanation_.name);
  }

  RequestContext& request_;
  const CursorContext& cursorContext_;
  Explanation& explanation_;
};

/// What was not looked at may hold the name, whatever else has been found out.
void considerCode(Explanation& explanation) {
  const Status status = explanation.outcome.status;
  if (explanation.isOffered || (status != Status::RefusedCode && status != Status::FailedCode)) return;
  // Other rules hold whatever code would have told.
  if (!endsThere(explanation.reasons)) return;
  const Rule rule = status == Status::RefusedCode ? Rule::RefusedCode : Rule::FailedCode;
  explanation.reasons = {{rule, explanation.outcome.reason}};
}

}  // namespace

Explanation explain(Session& session, const std::u16string& text, std::size_t cursor,
                    const std::u16string& name, const Scope& scope, const Options& options) {
  Explanation explanation{.outcome = {}, .name = name, .reasons = {}};
  explanation.outcome = answer(session, scope, options, [&](RequestContext& request) {
    Explaining(request, contextAt(text, cursor), explanation).run();
  });
  considerCode(explanation);
  if (explanation.reasons.empty())
    explanation.reasons.push_back({Rule::NotOfferedHere, explanation.outcome.reason});
  return explanation;
}

const char* nameOf(Rule rule) {
  switch (rule) {
    case Rule::Offered:
      return "offered";
    case Rule::NoPosition:
      return "no-position";
    case Rule::UnknownBase:
      return "unknown-base";
    case Rule::Unknown:
      return "unknown";
    case Rule::NotInThisClass:
      return "not-in-this-class";
    case Rule::AccessLevel:
      return "access-level";
    case Rule::AccessList:
      return "access-list";
    case Rule::Hidden:
      return "hidden";
    case Rule::ShadowedBy:
      return "shadowed-by";
    case Rule::Operator:
      return "operator";
    case Rule::Constructor:
      return "constructor";
    case Rule::Position:
      return "position";
    case Rule::Mixin:
      return "mixin";
    case Rule::ExclusionTable:
      return "exclusion-table";
    case Rule::NoMatch:
      return "no-match";
    case Rule::BeyondLimit:
      return "beyond-limit";
    case Rule::RefusedCode:
      return "refused-code";
    case Rule::FailedCode:
      return "failed-code";
    case Rule::NotOfferedHere:
      return "not-offered-here";
  }
  return "";
}

}  // namespace frontend
