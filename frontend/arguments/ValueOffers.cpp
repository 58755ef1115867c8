#include "frontend/arguments/ValueOffers.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/Workspace/SearchPath.h>

#include <algorithm>
#include <vector>

#include "frontend/arguments/Metadata.h"
#include "frontend/inquiry/Denotation.h"
#include "frontend/members/Access.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;

std::u16string escaped(const std::u16string& text, char16_t quote) {
  std::u16string result;
  for (const char16_t unit : text) {
    result += unit;
    if (unit == quote) result += quote;
  }
  return result;
}

/// Texts with quotes where none are typed yet; inside a text only texts fit.
void offerTexts(const Names& texts, const Position& position, const std::u16string& type,
                Gathering& gathering) {
  const bool isInText = position.kind == Position::Text;
  std::size_t order = 0;
  for (const std::u16string& text : texts) {
    const std::u16string inserted =
        isInText ? escaped(text, position.quote) : u"'" + escaped(text, u'\'') + u"'";
    gathering.add(
        {.label = isInText ? text : inserted, .insertion = inserted, .kind = Kind::Value, .order = order++},
        [type](Candidate& candidate) { candidate.type = type; });
  }
}

/// As they are typed outside of texts. Members of enumerations are also found by their own name.
void offerLiterals(const Names& values, const std::u16string& prefix, const std::u16string& type,
                   Gathering& gathering) {
  std::size_t order = 0;
  for (const std::u16string& value : values) {
    const bool isWhole = matchOf(gathering.typed(), prefix + value) != Match::None;
    gathering.add({.label = isWhole ? prefix + value : value,
                   .insertion = prefix + value,
                   .kind = Kind::Value,
                   .order = order++},
                  [type](Candidate& candidate) { candidate.type = type; });
  }
}

bool isEnumeration(const Inquiry& inquiry, const std::u16string& type) {
  const auto id = classNamed(inquiry, type);
  Names members;
  bool classFlag = false;
  return id && getClassEnumerationNames(*id, members, classFlag);
}

void offerValuesOf(const Inquiry& inquiry, const PropertyInfo& property, const Position& position,
                   Gathering& gathering) {
  const bool isInText = position.kind == Position::Text;
  if (property.possibleValuesKind == PropertyInfo::NumericPossibleValues) {
    if (!isInText) offerLiterals(property.possibleValues, u"", property.type, gathering);
  } else if (isEnumeration(inquiry, property.type)) {
    if (!isInText) offerLiterals(property.possibleValues, property.type + u".", property.type, gathering);
  } else {
    offerTexts(property.possibleValues, position, property.type, gathering);
  }
}

bool isNumber(const std::u16string& text) {
  return !text.empty() && text.find_first_not_of(u"0123456789.+-eE") == std::u16string::npos;
}

void offerValuesOf(const Inquiry& inquiry, const Argument& argument, const Position& position,
                   Gathering& gathering) {
  const bool isInText = position.kind == Position::Text;
  if (isEnumeration(inquiry, argument.className)) {
    if (!isInText) offerLiterals(argument.values, argument.className + u".", argument.className, gathering);
  } else if (!argument.values.empty() && std::ranges::all_of(argument.values, isNumber)) {
    if (!isInText) offerLiterals(argument.values, u"", argument.className, gathering);
  } else {
    offerTexts(argument.values, position, argument.className, gathering);
  }
}

void offerArgumentNames(const Signature& signature, const Position& position, Gathering& gathering) {
  const bool isInText = position.kind == Position::Text;
  std::size_t order = 0;
  for (const Argument& argument : signature.inputs) {
    if (argument.kind != Argument::NameValue) continue;
    gathering.add({.label = argument.name,
                   .insertion = isInText ? argument.name : argument.name + u"=",
                   .kind = Kind::ArgumentName,
                   .order = order++},
                  [argument](Candidate& candidate) {
                    candidate.type = argument.className;
                    candidate.size = argument.size;
                  });
  }
}

}  // namespace

void offerTargetValues(Inquiry& inquiry, const Position& position, Gathering& gathering) {
  const std::size_t dot = position.target.rfind(u'.');
  if (dot == std::u16string::npos) return;
  const std::u16string name = position.target.substr(dot + 1);
  const Denotation object = denote(inquiry, position.target.substr(0, dot));
  const auto id = classOf(object);
  if (!id || object.kind == Denotation::Class) return;
  for (const PropertyInfo& property : usableProperties(inquiry, ClassInfo(*id), true)) {
    if (property.name == name) return offerValuesOf(inquiry, property, position, gathering);
  }
}

void offerArguments(Inquiry& inquiry, const Position& position, Gathering& gathering) {
  if (!position.call) return;
  const auto signature = signatureOf(inquiry, *position.call);
  if (!signature) return;
  if (const auto active = activeArgument(*signature, *position.call)) {
    offerValuesOf(inquiry, signature->inputs[*active], position, gathering);
  }
  const bool isNamed = std::ranges::any_of(signature->inputs, [&](const Argument& argument) {
    return argument.kind == Argument::NameValue && argument.name == position.call->name;
  });
  if (!isNamed) offerArgumentNames(*signature, position, gathering);
}

void offerFilesInText(const std::u16string& folder, Gathering& gathering) {
  for (const std::string& kind : {std::string(".k"), std::string(".kex")}) {
    Names files;
    getWhatList(folder, files, kind);
    gathering.addNames(files, Kind::CodeFile);
  }
  Names classes;
  getWhatList(folder, classes, "classes");
  for (std::u16string& name : classes) name.insert(0, u"@");
  gathering.addNames(classes, Kind::ClassFolder);
}

}  // namespace frontend
