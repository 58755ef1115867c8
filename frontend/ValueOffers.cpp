#include "frontend/ValueOffers.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/Workspace/SearchPath.h>

#include <algorithm>
#include <vector>

#include "frontend/Access.h"
#include "frontend/Resolution.h"
#include "frontend/SignatureHelp.h"
#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;

/// Texts with quotes where none are typed yet; inside a text only texts fit.
void offerTexts(const Names& texts, const CursorContext& context, const std::u16string& type,
                CandidateList& candidates) {
  const bool isInText = context.kind == CursorContext::Text;
  std::size_t order = 0;
  for (const std::u16string& text : texts) {
    const std::u16string inserted =
        isInText ? escaped(text, context.quote) : u"'" + escaped(text, u'\'') + u"'";
    candidates.add(
        {.label = isInText ? text : inserted, .insertion = inserted, .kind = Kind::Value, .order = order++},
        [type](Candidate& candidate) { candidate.type = type; });
  }
}

/// Numbers, as they are typed outside of texts.
void offerNumbers(const Names& values, const std::u16string& type, CandidateList& candidates) {
  std::size_t order = 0;
  for (const std::u16string& value : values) {
    candidates.add({.label = value, .insertion = value, .kind = Kind::Value, .order = order++},
                   [type](Candidate& candidate) { candidate.type = type; });
  }
}

/// Members of an enumeration, after the name of their class; they are also found by their own name.
void offerMembersOf(const std::u16string& type, const Names& values, CandidateList& candidates) {
  // Code cannot write the name of every class, nor that of every member as it stands.
  if (!isDottedName(type)) return;
  std::size_t order = 0;
  for (const std::u16string& value : values) {
    const std::u16string whole = type + u"." + value;
    const bool isWhole = matchOf(candidates.typed(), whole) != Match::None;
    candidates.add({.label = isWhole ? whole : value,
                    .insertion = isMemberName(value) ? whole : type + u".('" + escaped(value, u'\'') + u"')",
                    .kind = Kind::Value,
                    .order = order++},
                   [type](Candidate& candidate) { candidate.type = type; });
  }
}

bool isEnumeration(const RequestContext& request, const std::u16string& type) {
  const auto id = classNamed(request, type);
  Names members;
  bool classFlag = false;
  return id && getClassEnumerationNames(*id, members, classFlag);
}

void offerValuesOf(const RequestContext& request, const PropertyInfo& property, const CursorContext& context,
                   CandidateList& candidates) {
  const bool isInText = context.kind == CursorContext::Text;
  if (property.possibleValuesKind == PropertyInfo::NumericPossibleValues) {
    // A number typed with quotes would be a text.
    if (!isInText) offerNumbers(property.possibleValues, property.type, candidates);
  } else if (isEnumeration(request, property.type)) {
    if (!isInText) offerMembersOf(property.type, property.possibleValues, candidates);
  } else {
    offerTexts(property.possibleValues, context, property.type, candidates);
  }
}

bool isNumber(const std::u16string& text) {
  return !text.empty() && text.find_first_not_of(u"0123456789.+-eE") == std::u16string::npos;
}

void offerValuesOf(const RequestContext& request, const Argument& argument, const CursorContext& context,
                   CandidateList& candidates) {
  const bool isInText = context.kind == CursorContext::Text;
  if (isEnumeration(request, argument.className)) {
    if (!isInText) offerMembersOf(argument.className, argument.values, candidates);
  } else if (!argument.values.empty() && std::ranges::all_of(argument.values, isNumber)) {
    if (!isInText) offerNumbers(argument.values, argument.className, candidates);
  } else {
    offerTexts(argument.values, context, argument.className, candidates);
  }
}

void offerArgumentNames(const Signature& signature, const CursorContext& context, CandidateList& candidates) {
  const bool isInText = context.kind == CursorContext::Text;
  std::size_t order = 0;
  for (const Argument& argument : signature.inputs) {
    if (argument.kind != Argument::NameValue) continue;
    const std::u16string outside =
        isName(argument.name) ? argument.name + u"=" : u"'" + escaped(argument.name, u'\'') + u"', ";
    candidates.add({.label = argument.name,
                    .insertion = isInText ? argument.name : outside,
                    .kind = Kind::ArgumentName,
                    .order = order++},
                   // A copy: the signature may be gone when details are read.
                   [argument](Candidate& candidate) {
                     candidate.type = argument.className;
                     candidate.size = argument.size;
                   });
  }
}

}  // namespace

void offerTargetValues(RequestContext& request, const CursorContext& context, CandidateList& candidates) {
  const std::size_t dot = context.target.rfind(u'.');
  if (dot == std::u16string::npos) return;
  const std::u16string name = context.target.substr(dot + 1);
  const Resolution object = resolve(request, context.target.substr(0, dot));
  const auto id = classOf(object);
  // Of a class itself only constants are there, to which nothing is assigned.
  if (!id || object.kind == Resolution::Class) return;
  if (const auto property = usableProperty(request, ClassInfo(*id), name))
    offerValuesOf(request, *property, context, candidates);
}

void offerArguments(RequestContext& request, const CursorContext& context, CandidateList& candidates) {
  if (!context.call) return;
  const auto signature = signatureOf(request, *context.call);
  if (!signature) return;
  if (const auto active = activeArgument(*signature, *context.call)) {
    offerValuesOf(request, signature->inputs[*active], context, candidates);
  }
  const bool isNamed = std::ranges::any_of(signature->inputs, [&](const Argument& argument) {
    return argument.kind == Argument::NameValue && argument.name == context.call->name;
  });
  if (!isNamed) offerArgumentNames(*signature, context, candidates);
}

void offerFilesInText(const std::u16string& folder, CandidateList& candidates) {
  for (const std::string& kind : {std::string(".k"), std::string(".kex")}) {
    Names files;
    getWhatList(folder, files, kind);
    candidates.addNames(files, Kind::CodeFile);
  }
  Names classes;
  getWhatList(folder, classes, "classes");
  // The listing drops the "@", which the folder is typed with.
  for (std::u16string& name : classes) name.insert(0, u"@");
  candidates.addNames(classes, Kind::ClassFolder);
}

}  // namespace frontend
