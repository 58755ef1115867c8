#include <algorithm>
#include <limits>

#include "frontend/Offers.h"
#include "frontend/explanation/Reasons.h"
#include "frontend/names/Namespaces.h"

namespace frontend {

namespace {

std::u16string quoted(const std::u16string& text) { return u"'" + text + u"'"; }

bool isKnown(const std::vector<SessionName>& names, const std::u16string& name) {
  return std::ranges::any_of(names, [&](const SessionName& known) {
    return known.name == name || known.name.starts_with(name + u".");
  });
}

Position behindDot(const std::u16string& base) {
  Position position;
  position.kind = Position::Member;
  position.base = base;
  return position;
}

class NameReasons {
 public:
  NameReasons(Inquiry& inquiry, const Position& position, const std::u16string& name)
      : inquiry_(inquiry), position_(position), name_(name) {}

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
    const std::u16string whole = position_.base + u"." + name_;
    if (isExcluded(whole)) return {excludedNamespace(whole)};
    return {{Rule::Unknown, quoted(position_.base) + u" holds nothing that is called " + quoted(name_)}};
  }

 private:
  bool isOfferedHidden() const { return isOfferedAt(inquiry_, position_, inquiry_.place(), true, name_); }

  bool isExcluded(const std::u16string& whole) const {
    return isExcludedNamespace(whole) && isKnown(inquiry_.session().namespaceNames(), whole);
  }

  static Reason excludedNamespace(const std::u16string& whole) {
    return {Rule::ExclusionTable, u"graphics namespaces: " + quoted(whole)};
  }

  /// Of the first argument of the call whose name it would be.
  Reasons asMethod() {
    if (position_.following.empty()) return {};
    const Denotation argument = denote(inquiry_, position_.following);
    if (!classOf(argument) || argument.kind == Denotation::Class) return {};
    return whyNoMember(inquiry_, argument, Spot::BeforeDot, name_);
  }

  /// What is a name elsewhere: a variable behind "@", anything inside a text.
  Reason asPlainName() const {
    if (position_.kind == Position::Name) return {};
    Position plain;
    plain.kind = Position::Name;
    if (!isOfferedAt(inquiry_, plain, inquiry_.place(), inquiry_.options().hidden, name_)) return {};
    return {Rule::Position, position_.kind == Position::Handle
                                ? quoted(name_) + u" is a variable, which no handle is made of"
                                : quoted(name_) + u" is a name, offered outside of texts"};
  }

  /// Of the workspace, which does not count in a function's own code.
  Reason asVariable() const {
    Place place = inquiry_.place();
    place.workspace = true;
    if (!isOfferedAt(inquiry_, position_, place, inquiry_.options().hidden, name_)) return {};
    return {Rule::Position, quoted(name_) + u" is a variable of the workspace, offered at a prompt"};
  }

  /// What is offered behind a dot.
  Reason asInner() const {
    for (const std::u16string& base : namespacesOf()) {
      const std::u16string last = name_.substr(name_.rfind(u'.') + 1);
      if (isOfferedAt(inquiry_, behindDot(base), inquiry_.place(), inquiry_.options().hidden, last))
        return {Rule::Position, quoted(last) + u" is offered behind " + quoted(base + u".")};
    }
    return {};
  }

  /// Where the name may be inside, by the names that the session knows.
  std::vector<std::u16string> namespacesOf() const {
    if (const auto dot = name_.rfind(u'.'); dot != std::u16string::npos) return {name_.substr(0, dot)};
    std::vector<std::u16string> namespaces;
    Session& session = inquiry_.session();
    for (const auto& names : {session.classNames(), session.functionNames(), session.namespaceNames()}) {
      for (const SessionName& known : names) {
        if (known.name.ends_with(u"." + name_))
          namespaces.push_back(known.name.substr(0, known.name.size() - name_.size() - 1));
      }
    }
    return namespaces;
  }

  Inquiry& inquiry_;
  const Position& position_;
  const std::u16string& name_;
};

Spot spotOf(const Denotation& denotation) {
  return denotation.kind == Denotation::Class ? Spot::Class : Spot::Object;
}

}  // namespace

bool isOfferedAt(const Inquiry& inquiry, const Position& position, const Place& place, bool hidden,
                 const std::u16string& name) {
  Options options = inquiry.options();
  options.hidden = hidden;
  Inquiry varied(inquiry, place, options, {});
  Completion completion;
  offerAt(varied, position, {std::numeric_limits<std::size_t>::max(), false}, completion);
  return std::ranges::any_of(completion.candidates,
                             [&](const Candidate& candidate) { return candidate.label == name; });
}

Reasons whyNotBehindDot(Inquiry& inquiry, const Position& position, const std::u16string& name) {
  const Denotation denotation = denote(inquiry, position.base);
  if (denotation.kind == Denotation::Unknown)
    return {{Rule::UnknownBase, u"nothing that is known is called " + quoted(position.base)}};
  if (denotation.kind == Denotation::Namespace || denotation.kind == Denotation::Package)
    return NameReasons(inquiry, position, name).ofNamespace();
  const auto id = classOf(denotation);
  if (!id) return {{Rule::NotInThisClass, quoted(position.base) + u" has no such member"}};
  auto reasons = whyNoMember(inquiry, denotation, spotOf(denotation), name);
  if (!reasons.empty()) return reasons;
  return {{Rule::NotInThisClass, id->getNonComponentQualifiedName() + u" has no such member"}};
}

Reasons whyNotAsName(Inquiry& inquiry, const Position& position, const std::u16string& name) {
  return NameReasons(inquiry, position, name).ofName();
}

}  // namespace frontend
