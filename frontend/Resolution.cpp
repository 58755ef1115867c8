#include "frontend/Resolution.h"

#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Evaluation.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "frontend/Access.h"
#include "frontend/CandidateDetails.h"
#include "frontend/NameOffers.h"
#include "frontend/Text.h"
#include "syntax/Brackets.h"
#include "syntax/Tokenizer.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using ValuePtr = boost::intrusive_ptr<kxArray_tag>;

/// A part of a dotted expression with the bracketed groups after it: "levels", "(3)".
struct Part {
  std::u16string name;
  bool isCalled = false;
  bool isUnpacked = false;
};

/// Nobody types longer chains; what they resolve to is looked for prefix by prefix.
constexpr std::size_t mostParts = 100;

/// Does the name of a member begin here that stands in parentheses and quotes?
bool isQuotedMember(const std::vector<syntax::Token>& tokens, std::size_t at) {
  using enum syntax::Symbol;
  using enum syntax::TokenKind;
  return at > 0 && at + 2 < tokens.size() && tokens[at - 1].is(Dot) && tokens[at].is(OpenParen) &&
         (tokens[at + 1].is(Text) || tokens[at + 1].is(String)) && tokens[at + 2].is(CloseParen);
}

/// Empty when the expression is no such chain, or too long.
std::vector<Part> partsOf(const std::u16string& expression) {
  std::vector<Part> parts;
  std::size_t depth = 0;
  const auto tokens = syntax::tokensOf(expression, 0, expression.size());
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    const syntax::Token& token = tokens[at];
    if (depth == 0 && isQuotedMember(tokens, at)) {
      // "obj.('any name')" is a part like others; the dot has been read.
      parts.push_back({syntax::contentOf(tokens[at + 1], expression)});
      at += 2;
    } else if (syntax::isCloser(token.symbol)) {
      if (depth-- == 0) return {};
    } else if (syntax::isOpener(token.symbol)) {
      // "obj.(name)" is no code.
      if (parts.empty() || (depth == 0 && tokens[at - 1].is(syntax::Symbol::Dot))) return {};
      const bool calls = token.is(syntax::Symbol::OpenParen);
      if (depth++ == 0) (calls ? parts.back().isCalled : parts.back().isUnpacked) = true;
    } else if (depth == 0 && token.isWord()) {
      parts.push_back({std::u16string(token.in(expression))});
    } else if (depth == 0 && (token.is(syntax::TokenKind::Number) || expression[token.begin] != u'.')) {
      return {};
    }
  }
  return parts.size() > mostParts ? std::vector<Part>() : parts;
}

bool isPlain(const std::vector<Part>& parts) {
  return std::ranges::none_of(parts, [](const Part& part) { return part.isCalled || part.isUnpacked; });
}

Resolution declared(const RequestContext& request, const std::u16string& className) {
  if (const auto id = classNamed(request, className)) return {Resolution::Object, {}, id, className};
  return {};
}

/// What a member of an object or a class resolves to by what the class declares.
Resolution declaredMember(RequestContext& request, const ResolvedClassID& id, const std::u16string& name) {
  const ClassInfo record(id);
  // Hidden ones too: whoever has typed the name of one means it.
  const auto property = usableProperty(request, record, name);
  return property ? declared(request, property->type) : Resolution();
}

Resolution declaredPath(RequestContext& request, Resolution from, const std::vector<Part>& parts,
                        std::size_t at) {
  for (; at < parts.size() && from.id; ++at) from = declaredMember(request, *from.id, parts[at].name);
  return from;
}

/// A field of a scalar structure, without running code.
ValuePtr fieldOf(const kxArray_tag* value, const std::u16string& name) {
  if (!isStructure(value) || !kxIsScalar(value)) return {};
  return ValuePtr(kxGetField(value, 0, narrow(name).c_str()));
}

/// Follows the parts through structures as long as these hold them, and through declarations from there on.
Resolution walk(RequestContext& request, ValuePtr value, const std::vector<Part>& parts) {
  std::size_t at = 1;
  while (at < parts.size() && !parts[at - 1].isUnpacked) {
    ValuePtr field = fieldOf(value.get(), parts[at].name);
    if (!field) break;
    value = std::move(field);
    ++at;
  }
  Resolution resolution{Resolution::Value, value};
  const bool isElement = parts[at - 1].isCalled || parts[at - 1].isUnpacked;
  if (at == parts.size() && !isElement) return resolution;
  // The declared class says what an object is, not what is in a cell.
  if (parts[at - 1].isUnpacked) return {};
  // An element of a structure array has the fields of the array.
  if (at == parts.size() && isStructure(value.get())) return resolution;
  resolution.id = classOf(resolution);
  if (!resolution.id) return {};
  Resolution object{Resolution::Object, {}, resolution.id};
  return declaredPath(request, std::move(object), parts, at);
}

Resolution ofVariable(RequestContext& request, const ValuePtr& value, const std::vector<Part>& parts,
                      const std::u16string& expression) {
  if (parts.size() == 1 && isPlain(parts)) return {Resolution::Value, value};
  const Resolution walked = walk(request, value, parts);
  if (walked.kind == Resolution::Value && isPlain(parts)) return walked;
  // From here on the library looks into objects and may evaluate; code that the policy forbids the session
  // refuses.
  if (!request.mayUse(CodePolicy::StoredValues, expression)) return walked;
  if (ValuePtr found = GetValueFromCurrentWorkspace(expression)) return {Resolution::Value, found};
  return walked;
}

std::u16string joined(const std::vector<Part>& parts, std::size_t count) {
  std::u16string name = parts[0].name;
  for (std::size_t at = 1; at < count; ++at) name += u"." + parts[at].name;
  return name;
}

/// A class, an object made by calling it, or what one of its constants and enumeration members resolves to.
Resolution ofClass(RequestContext& request, const ResolvedClassID& id, const std::vector<Part>& parts,
                   std::size_t count) {
  Resolution object{Resolution::Object, {}, id};
  if (parts[count - 1].isCalled) return declaredPath(request, std::move(object), parts, count);
  if (count == parts.size()) return {Resolution::Class, {}, id, joined(parts, count)};
  std::vector<std::u16string> members;
  bool classFlag = false;
  getClassEnumerationNames(id, members, classFlag);
  if (std::ranges::count(members, parts[count].name) > 0) {
    return declaredPath(request, std::move(object), parts, count + 1);
  }
  return declaredPath(request, std::move(object), parts, count);
}

Resolution ofName(RequestContext& request, const std::vector<Part>& parts) {
  // The longest name that is a class, because classes and namespaces may begin alike.
  for (std::size_t count = parts.size(); count > 0; --count) {
    const bool isBroken = std::any_of(parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(count) - 1,
                                      [](const Part& part) { return part.isCalled || part.isUnpacked; });
    // A name with brackets in the middle is no name of a class.
    if (isBroken || parts[count - 1].isUnpacked) continue;
    if (const auto id = classNamed(request, joined(parts, count))) return ofClass(request, *id, parts, count);
  }
  if (!isPlain(parts)) return {};
  const std::u16string name = joined(parts, parts.size());
  const bool isNamespace = KCOSIntrospection::isKCOSNamespace(name) || holdsFunctions(request, name);
  if (isNamespace) return {Resolution::Namespace, {}, {}, name};
  for (const SessionName& package : request.session().packageNames()) {
    if (package.name == name) return {Resolution::Package, {}, {}, name};
  }
  return {};
}

}  // namespace

std::optional<ResolvedClassID> classNamed(const RequestContext& request, const std::u16string& name) {
  if (name.empty()) return {};
  ResolvedClassID id(request.scope().function, name);
  if (!KCOSIntrospection::isKCOSClass(id)) return {};
  return id;
}

std::optional<ResolvedClassID> classOf(const Resolution& resolution) {
  if (resolution.id) return resolution.id;
  if (!resolution.value || !KCOSIntrospection::isKCOSObject(resolution.value.get())) return {};
  return ResolvedClassID(resolution.value.get());
}

Resolution resolve(RequestContext& request, const std::u16string& expression) {
  const std::vector<Part> parts = partsOf(expression);
  if (parts.empty()) return {};
  // They hide variables of the workspace.
  for (const LocalName& local : request.scope().locals) {
    if (local.name != parts[0].name) continue;
    // What is in a cell of a variable that does not exist yet, nobody can know.
    if (parts[0].isUnpacked) return {};
    return declaredPath(request, declared(request, local.className), parts, 1);
  }
  if (request.scope().workspace) {
    if (const ValuePtr value = request.session().variable(parts[0].name)) {
      return ofVariable(request, value, parts, expression);
    }
  }
  return ofName(request, parts);
}

}  // namespace frontend
