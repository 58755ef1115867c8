#include "tools/lsp/Completion.h"

#include <algorithm>
#include <string>

#include "frontend/Completion.h"
#include "tools/render/FrontEnd.h"
#include "tools/lsp/Outcome.h"
#include "tools/lsp/Params.h"
#include "tools/lsp/Spot.h"

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

Json itemOf(const Context& context, const Candidate& candidate, std::size_t index, const Json& range) {
  const ItemKind kind = itemKindOf(candidate.kind);
  const std::string label = utf8Of(candidate.label);
  const std::string insertion = utf8Of(candidate.insertion);
  const std::string details = detailsOf(candidate);
  Json item = {{"label", label},
               {"kind", static_cast<int>(context.abilities.newKinds ? kind : oldKindOf(kind))},
               {"detail", details.empty() ? kindOf(candidate) : kindOf(candidate) + ": " + details},
               {"sortText", sortKey(index)},
               {"textEdit", {{"range", range}, {"newText", insertion}}},
               {"data", {{"answer", context.completion.number}, {"index", index}}}};
  if (insertion != label) item["filterText"] = insertion;
  return item;
}

}  // namespace

Json completion(Context& context, const Json& params) {
  const auto spot = spotOf(context, params);
  if (!spot) return {{"isIncomplete", false}, {"items", Json::array()}};
  auto answer = frontend::complete(context.session.session(), spot->text, spot->cursor, spot->place,
                                   context.abilities.options());
  logOutcome(context.client, "completion", answer.outcome);
  const Json range = jsonOf(spot->rangeOf(answer.begin, answer.end));
  ++context.completion.number;
  Json items = Json::array();
  for (const Candidate& candidate : answer.candidates) {
    items.push_back(itemOf(context, candidate, items.size(), range));
  }
  const Status status = answer.outcome.status;
  context.completion.before = spot->text.substr(0, answer.begin);
  context.completion.place = spot->place;
  context.completion.candidates = std::move(answer.candidates);
  return {{"isIncomplete", status == Status::Limited || status == Status::TimedOut},
          {"items", std::move(items)}};
}

}  // namespace tools::lsp
