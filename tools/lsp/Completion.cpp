// completion, resolve, explain: see Requests.h

#include "frontend/Completion.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "frontend/Explanation.h"
#include "frontend/Hover.h"
#include "tools/lsp/Requests.h"
#include "tools/lsp/StatementAtCursor.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

using frontend::Candidate;
using frontend::Kind;
using frontend::Status;

enum class ItemKind {
  Method = 2,
  Function = 3,
  Field = 5,
  Variable = 6,
  Class = 7,
  Module = 9,
  Property = 10,
  Value = 12,
  Enum = 13,
  Keyword = 14,
  File = 17,
  Folder = 19,
  EnumMember = 20,
  Constant = 21
};

ItemKind itemKindOf(Kind kind) {
  switch (kind) {
    case Kind::Value:
      return ItemKind::Value;
    case Kind::ArgumentName:
      return ItemKind::Field;
    case Kind::Variable:
      return ItemKind::Variable;
    case Kind::Property:
      return ItemKind::Property;
    case Kind::Field:
      return ItemKind::Field;
    case Kind::Constant:
      return ItemKind::Constant;
    case Kind::EnumerationMember:
      return ItemKind::EnumMember;
    case Kind::Method:
    case Kind::StaticMethod:
      return ItemKind::Method;
    case Kind::Function:
    case Kind::BuiltinFunction:
      return ItemKind::Function;
    case Kind::Keyword:
      return ItemKind::Keyword;
    case Kind::CodeFile:
      return ItemKind::File;
    case Kind::ClassFolder:
      return ItemKind::Folder;
    case Kind::Class:
      return ItemKind::Class;
    case Kind::Namespace:
    case Kind::Package:
      return ItemKind::Module;
  }
  return ItemKind::Value;
}

/// For clients that know the first kinds of the protocol only.
ItemKind oldKindOf(ItemKind kind) {
  if (kind == ItemKind::Folder) return ItemKind::File;
  if (kind == ItemKind::EnumMember) return ItemKind::Enum;
  return kind == ItemKind::Constant ? ItemKind::Value : kind;
}

/// Its alphabetical order is the order of the candidates.
std::string sortKey(std::size_t index) {
  const std::string digits = std::to_string(index);
  return std::string(8 - std::min<std::size_t>(digits.size(), 8), '0') + digits;
}

/// What an item replaces, written as it is sent.
struct Ranges {
  std::string typed;
  /// With the dot before it.
  std::string withDot;
};

/// Keys are in the order of the alphabet, as in all other answers.
std::string itemOf(const Context& context, const Candidate& candidate, std::size_t index,
                   const Ranges& ranges) {
  const ItemKind kind = itemKindOf(candidate.kind);
  const std::string label = narrow(candidate.label);
  const std::string insertion = narrow(candidate.insertion);
  const std::string details = detailsOf(candidate);
  std::string item = "{\"data\":{\"answer\":" + std::to_string(context.completion.number) +
                     ",\"index\":" + std::to_string(index) + "},\"detail\":";
  item += quotedText(details.empty() ? kindOf(candidate) : kindOf(candidate) + ": " + details);
  // Clients filter by what is in the range, which is the beginning of what is inserted, but for members in quotes.
  if (candidate.replacesDot)
    item += ",\"filterText\":" + quotedText("." + label);
  else if (insertion != label)
    item += ",\"filterText\":" + quotedText(insertion);
  item +=
      ",\"kind\":" + std::to_string(static_cast<int>(context.abilities.newKinds ? kind : oldKindOf(kind)));
  item += ",\"label\":" + quotedText(label) + ",\"sortText\":" + quotedText(sortKey(index));
  item += ",\"textEdit\":{\"newText\":" + quotedText(insertion);
  return item + ",\"range\":" + (candidate.replacesDot ? ranges.withDot : ranges.typed) + "}}";
}

}  // namespace

std::string completion(Context& context, const Json& params) {
  const auto statement = statementAtCursor(context, params);
  if (!statement) return textOf({{"isIncomplete", false}, {"items", Json::array()}});
  auto answer = ask(context, "completion", *statement, frontend::complete);
  const std::size_t dot = answer.begin - std::min<std::size_t>(answer.begin, 1);
  const Ranges ranges{textOf(jsonOf(statement->rangeOf(answer.begin, answer.end))),
                      textOf(jsonOf(statement->rangeOf(dot, answer.end)))};
  // Items carry the number, so that one of an older answer is not looked up in this one.
  ++context.completion.number;
  const Status status = answer.outcome.status;
  std::string text = "{\"isIncomplete\":";
  text += status == Status::Limited || status == Status::TimedOut ? "true" : "false";
  text += ",\"items\":[";
  for (std::size_t index = 0; index < answer.candidates.size(); ++index) {
    if (index > 0) text += ',';
    text += itemOf(context, answer.candidates[index], index, ranges);
  }
  context.completion.before = statement->text.substr(0, answer.begin);
  context.completion.scope = statement->scope;
  context.completion.imports = statement->imports;
  context.completion.candidates = std::move(answer.candidates);
  return text + "]}";
}

Json resolve(Context& context, const Json& item) {
  const LatestCompletion& latest = context.completion;
  const Json& index = valueAt(item, "/data/index");
  // Only the last answer is kept; an item of an older one goes back as it came.
  if (valueAt(item, "/data/answer") != latest.number || !index.is_number_unsigned() ||
      index >= latest.candidates.size()) {
    return item;
  }
  const Candidate& candidate = latest.candidates[index.get<std::size_t>()];
  // As if the candidate had been accepted, which is the position that is described.
  const std::size_t kept = latest.before.size() - (candidate.replacesDot ? 1 : 0);
  const std::u16string text = latest.before.substr(0, kept) + candidate.insertion;
  // Another document may have been asked about meanwhile.
  openScope(context, latest.scope, latest.imports);
  const auto hover = frontend::describe(context.session.session(), text, text.size(), latest.scope,
                                        context.abilities.options());
  context.client.logOutcome("resolve", hover.outcome);
  Json resolved = item;
  if (!hover.isUnknown) resolved["documentation"] = contentOf(hover, context.abilities.markdownDocumentation);
  return resolved;
}

Json explain(Context& context, const Json& params) {
  const std::u16string name = wideTextAt(params, "/name");
  const auto statement = statementAtCursor(context, params);
  if (!statement) return nullptr;
  return tools::jsonOf(frontend::explain(context.session.session(), statement->text, statement->cursor, name,
                                         statement->scope, context.abilities.options()));
}

}  // namespace tools::lsp
