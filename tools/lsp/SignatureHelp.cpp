#include "tools/lsp/SignatureHelp.h"

#include <string>

#include "frontend/Hover.h"
#include "tools/lsp/Outcome.h"
#include "tools/lsp/Params.h"
#include "tools/lsp/Spot.h"

namespace tools::lsp {

namespace {

using frontend::Argument;
using frontend::Signature;

std::string listed(const std::vector<std::u16string>& texts) {
  std::string list;
  for (const std::u16string& text : texts) list += (list.empty() ? "" : ", ") + utf8Of(text);
  return list;
}

/// "1x: double; checked by: mustBePositive; values: 1, 2"
std::string describe(const Argument& argument) {
  std::string text = utf8Of(argument.size);
  if (!argument.className.empty()) text += (text.empty() ? "" : " ") + utf8Of(argument.className);
  const auto add = [&](const char* what, const std::vector<std::u16string>& texts) {
    if (!texts.empty()) text += (text.empty() ? "" : "; ") + (what + listed(texts));
  };
  add("checked by: ", argument.validators);
  add("values: ", argument.values);
  return text;
}

/// The arguments stand in the text one after the other, behind the parenthesis.
Json parametersOf(const Signature& signature, const std::u16string& text, bool offsets) {
  Json parameters = Json::array();
  std::size_t from = text.find(u'(') + 1;
  for (const Argument& argument : signature.inputs) {
    const std::size_t begin = text.find(argument.name, from);
    Json parameter = {{"label", utf8Of(argument.name)}};
    if (begin != std::u16string::npos) {
      from = begin + argument.name.size();
      if (offsets) parameter["label"] = {begin, from};
    }
    if (const std::string description = describe(argument); !description.empty()) {
      parameter["documentation"] = description;
    }
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

}  // namespace

Json signatureHelp(Context& context, const Json& params) {
  const auto spot = spotOf(context, params);
  if (!spot) return nullptr;
  const auto answer = frontend::signatureHelp(context.session.session(), spot->text, spot->cursor,
                                              spot->place, context.abilities.options());
  logOutcome(context.client, "signatureHelp", answer.outcome);
  if (!answer.signature) return nullptr;
  const std::u16string text = answer.signature->text();
  const Json parameters = parametersOf(*answer.signature, text, context.abilities.parameterOffsets);
  const Json signature = {{"label", utf8Of(text)}, {"parameters", parameters}};
  // One behind the last means none.
  const std::size_t active = answer.activeArgument.value_or(parameters.size());
  return {{"signatures", Json::array({signature})}, {"activeSignature", 0}, {"activeParameter", active}};
}

}  // namespace tools::lsp
