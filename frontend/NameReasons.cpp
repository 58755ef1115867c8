#include <algorithm>
#include <limits>

#include "frontend/Namespaces.h"
#include "frontend/Offers.h"
#include "frontend/Reasons.h"

namespace frontend {

namespace {

std::u16string quoted(const std::u16string& text) { return u"'" + text + u"'"; }

bool isKnown(const std::vector<SessionName>& names, const std::u16string& name) {
  return std::ranges::any_of(names, [&](const SessionName& known) {
    return known.name == name || known.name.starts_with(name + u".");
  });
}

CursorContext behindDot(const std::u16string& base) {
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
    for (const Reason& reason : {asPlainName(), asVariable(), asInner()}) {
      if (!reason.detail.empty()) return {reason};
    }
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
    if (!classOf(argument) || argument.kind == Resolution::Class) return {};
    return whyNoMember(request_, argument, AccessForm::BeforeDot, name_);
  }

  /// What is a name elsewhere: a variable behind "@", anything inside a text.
  Reason asPlainName() const {
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
    scope.workspace = true;
    if (!isOfferedAt(request_, cursorContext_, scope, request_.options().hidden, name_)) return {};
    return {Rule::Position, quoted(name_) + u" is a variable of the workspace, offered at a prompt"};
  }

  /// What is offered behind a dot.
  Reason asInner() const {
    for (const std::u16string& base : namespacesOf()) {
      const std::u16string last = name_.substr(name_.rfind(u'.') + 1);
      if (isOfferedAt(request_, behindDot(base), request_.scope(), request_.options().hidden, last))
        return {Rule::Position, quoted(last) + u" is offered behind " + quoted(base + u".")};
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
    return namespaces;
  }

  RequestContext& request_;
  const CursorContext& cursorContext_;
  const std::u16string& name_;
};

AccessForm formOf(const Resolution& resolution) {
  return resolution.kind == Resolution::Class ? AccessForm::Class : AccessForm::Object;
}

}  // namespace

bool isOfferedAt(const RequestContext& request, const CursorContext& context, const Scope& scope, bool hidden,
                 const std::u16string& name) {
  Options options = request.options();
  options.hidden = hidden;
  RequestContext varied(request, scope, options, {});
  Completion completion;
  offerAt(varied, context, {std::numeric_limits<std::size_t>::max(), false}, completion);
  return std::ranges::any_of(completion.candidates,
                             [&](const Candidate& candidate) { return candidate.label == name; });
}

Reasons whyNotBehindDot(RequestContext& request, const CursorContext& context, const std::u16string& name) {
  const Resolution resolution = resolve(request, context.base);
  if (resolution.kind == Resolution::Unknown)
    return {{Rule::UnknownBase, u"nothing that is known is called " + quoted(context.base)}};
  if (resolution.kind == Resolution::Namespace || resolution.kind == Resolution::Package)
    return NameReasons(request, context, name).ofNamespace();
  const auto id = classOf(resolution);
  if (!id) return {{Rule::NotInThisClass, quoted(context.base) + u" has no such member"}};
  auto reasons = whyNoMember(request, resolution, formOf(resolution), name);
  if (!reasons.empty()) return reasons;
  return {{Rule::NotInThisClass, id->getNonComponentQualifiedName() + u" has no such member"}};
}

Reasons whyNotAsName(RequestContext& request, const CursorContext& context, const std::u16string& name) {
  return NameReasons(request, context, name).ofName();
}

}  // namespace frontend
