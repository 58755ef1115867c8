#include "frontend/Completion.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "frontend/CandidateList.h"
#include "frontend/MemberOffers.h"
#include "frontend/NameOffers.h"
#include "frontend/Resolution.h"
#include "frontend/Text.h"
#include "frontend/ValueOffers.h"
#include "syntax/Characters.h"

namespace frontend {

namespace {

using syntax::isDigit;

bool isUpper(char16_t character) { return character >= u'A' && character <= u'Z'; }
char16_t lower(char16_t character) {
  return isUpper(character) ? static_cast<char16_t>(character - u'A' + u'a') : character;
}

bool beginsIgnoringCase(std::u16string_view name, std::u16string_view typed) {
  return typed.size() <= name.size() &&
         std::equal(typed.begin(), typed.end(), name.begin(),
                    [](auto left, auto right) { return lower(left) == lower(right); });
}

/// A hump begins a word of the name: "getClassInfo", "get_class", "level2".
bool isHump(std::u16string_view name, std::size_t at) {
  if (at == 0) return true;
  if (isUpper(name[at])) return !isUpper(name[at - 1]) || (at + 1 < name.size() && !isUpper(name[at + 1]));
  if (isDigit(name[at])) return !isDigit(name[at - 1]);
  return name[at - 1] == u'_' || name[at - 1] == u'.';
}

/// Each typed character is the next one of the name, or begins a later hump; the first one is the name's first.
bool fitsHumps(std::u16string_view typed, std::u16string_view name) {
  if (typed.empty() || typed.size() > name.size() || lower(typed[0]) != lower(name[0])) return false;
  // All readings are followed at once, for there may be exponentially many: after which characters of the name what has
  // been read so far can end.
  std::vector<char> ends(name.size() + 1), next(name.size() + 1);
  ends[1] = 1;
  for (std::size_t done = 1; done < typed.size(); ++done) {
    bool isAfter = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
      const bool isNext = ends[at] != 0 || (isAfter && isHump(name, at));
      next[at + 1] = isNext && lower(typed[done]) == lower(name[at]) ? 1 : 0;
      isAfter = isAfter || ends[at] != 0;
    }
    std::swap(ends, next);
  }
  return std::ranges::count(ends, 1) > 0;
}

/// In a text with a folder in it, the part after the folder is typed.
std::u16string splitFolder(CursorContext& context) {
  const std::size_t slash = context.typed.rfind(u'/');
  if (slash == std::u16string::npos) return {};
  std::u16string folder = context.typed.substr(0, slash);
  context.begin += slash + 1;
  context.typed.erase(0, slash + 1);
  return folder;
}

void offerInText(RequestContext& request, CursorContext& context, const Extent& extent,
                 Completion& completion) {
  CandidateList values(request, context.typed, CandidateList::Place::Text);
  offerTargetValues(request, context, values);
  // What is assigned or compared inside a call is no argument of it.
  if (context.target.empty()) offerArguments(request, context, values);
  values.finish(extent, completion);
  // Most texts name no file: folders are looked at only where a function may want one.
  if (completion.total > 0 || !context.call) return;
  const std::u16string folder = splitFolder(context);
  completion.begin = context.begin;
  CandidateList files(request, context.typed, CandidateList::Place::Text);
  offerFilesInText(folder, files);
  files.finish(extent, completion);
}

void offer(RequestContext& request, const CursorContext& context, CandidateList& candidates) {
  switch (context.kind) {
    case CursorContext::Member:
      offerMembers(request, resolve(request, context.base), candidates);
      break;
    case CursorContext::Handle:
      offerFunctions(request, candidates);
      break;
    case CursorContext::Name:
      offerTargetValues(request, context, candidates);
      // What begins a statement is no argument, whatever call is still open before it.
      if (!context.beginsStatement) offerArguments(request, context, candidates);
      if (!context.following.empty()) {
        offerMethodsBeforeDot(request, resolve(request, context.following), candidates);
      }
      offerNames(request, candidates);
      if (context.beginsStatement) offerKeywords(candidates);
      break;
    case CursorContext::Nothing:
    case CursorContext::Text:
      break;
  }
}

}  // namespace

Completion complete(Session& session, const std::u16string& text, std::size_t cursor, const Scope& scope,
                    const Options& options) {
  Completion completion;
  completion.outcome = answer(session, scope, options, [&](RequestContext& request) {
    offerAt(request, contextAt(text, cursor), {options.limit}, completion);
  });
  // Any other status says already that there may be more, and why.
  if (completion.outcome.status == Status::Complete && completion.total > completion.candidates.size()) {
    completion.outcome.status = Status::Limited;
    completion.outcome.reason =
        u"the first " + decimal(completion.candidates.size()) + u" of " + decimal(completion.total);
  }
  return completion;
}

void offerAt(RequestContext& request, CursorContext context, const Extent& extent, Completion& completion) {
  completion.begin = context.begin;
  completion.end = context.end;
  if (context.kind == CursorContext::Nothing) return;
  if (context.kind == CursorContext::Text) return offerInText(request, context, extent, completion);
  using Place = CandidateList::Place;
  CandidateList candidates(request, context.typed,
                           context.kind == CursorContext::Member ? Place::Member : Place::Name);
  try {
    offer(request, context, candidates);
  } catch (...) {
    // Details ask the library again, which has just failed or is to stop.
    // What has been found is not lost: it is offered with the status that the exception becomes.
    candidates.finish({extent.limit, false}, completion);
    throw;
  }
  candidates.finish(extent, completion);
}

Match matchOf(std::u16string_view typed, std::u16string_view name) {
  // From the best on: a text that begins a name also fits its humps.
  if (typed == name) return Match::Exact;
  if (name.starts_with(typed)) return Match::Prefix;
  if (beginsIgnoringCase(name, typed)) return Match::PrefixIgnoringCase;
  return fitsHumps(typed, name) ? Match::Humps : Match::None;
}

const char* nameOf(Match match) {
  switch (match) {
    case Match::Exact:
      return "exact";
    case Match::Prefix:
      return "prefix";
    case Match::PrefixIgnoringCase:
      return "prefix-ignoring-case";
    case Match::Humps:
      return "humps";
    case Match::None:
      return "none";
  }
  return "";
}

const char* nameOf(Kind kind) {
  switch (kind) {
    case Kind::Value:
      return "value";
    case Kind::ArgumentName:
      return "argument-name";
    case Kind::Variable:
      return "variable";
    case Kind::Property:
      return "property";
    case Kind::Field:
      return "field";
    case Kind::Constant:
      return "constant";
    case Kind::EnumerationMember:
      return "enumeration-member";
    case Kind::Method:
      return "method";
    case Kind::StaticMethod:
      return "static-method";
    case Kind::Function:
      return "function";
    case Kind::CodeFile:
      return "code-file";
    case Kind::ClassFolder:
      return "class-folder";
    case Kind::Class:
      return "class";
    case Kind::Namespace:
      return "namespace";
    case Kind::Package:
      return "package";
    case Kind::BuiltinFunction:
      return "built-in-function";
    case Kind::Keyword:
      return "keyword";
  }
  return "";
}

}  // namespace frontend
