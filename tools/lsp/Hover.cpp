// hover, signatureHelp, contentOf: see Requests.h

#include "frontend/Hover.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tools/lsp/Requests.h"
#include "tools/lsp/StatementAtCursor.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

using frontend::Argument;
using frontend::Hover;
using frontend::Signature;

/// What code would write: a signature, or the name with its class.
std::string headOf(const Hover& hover) {
  if (hover.signature) return narrow(hover.signature->text());
  return narrow(hover.subject.label);
}

std::vector<std::string> linesOf(const Hover& hover) {
  const std::string details = detailsOf(hover.subject);
  std::vector<std::string> lines = {kindOf(hover.subject) + (details.empty() ? "" : ": " + details)};
  const auto add = [&](const char* what, const std::vector<std::u16string>& texts) {
    if (!texts.empty()) lines.push_back(what + listed(texts));
  };
  add("derives from: ", hover.superclasses);
  add("values: ", hover.possibleValues);
  add("checked by: ", hover.validators);
  return lines;
}

/// Markdown shows it as it is.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (std::string_view("\\`*_{}[]<>#|~").find(character) != std::string_view::npos) result += '\\';
    result += character;
  }
  return result;
}

/// "1x: double; checked by: mustBePositive; values: 1, 2"
std::string documentationOf(const Argument& argument) {
  std::string text = narrow(argument.size);
  if (!argument.className.empty()) text += (text.empty() ? "" : " ") + narrow(argument.className);
  const auto add = [&](const char* what, const std::vector<std::u16string>& texts) {
    if (!texts.empty()) text += (text.empty() ? "" : "; ") + (what + listed(texts));
  };
  add("checked by: ", argument.validators);
  add("values: ", argument.values);
  return text;
}

/// The arguments stand in the text one after the other, after the parenthesis.
Json parametersOf(const Signature& signature, const std::u16string& text, bool offsets) {
  Json parameters = Json::array();
  std::size_t from = text.find(u'(') + 1;
  for (const Argument& argument : signature.inputs) {
    const std::size_t begin = text.find(argument.name, from);
    Json parameter = {{"label", narrow(argument.name)}};
    if (begin != std::u16string::npos) {
      // The next one is looked for after it: one name may be part of another.
      from = begin + argument.name.size();
      if (offsets) parameter["label"] = {begin, from};
    }
    if (const std::string description = documentationOf(argument); !description.empty()) {
      parameter["documentation"] = description;
    }
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

}  // namespace

Json contentOf(const Hover& hover, bool markdown) {
  std::string text = markdown ? "```korval\n" + headOf(hover) + "\n```\n" : headOf(hover) + "\n";
  for (const std::string& line : linesOf(hover)) text += "\n" + (markdown ? escaped(line) + "\n" : line);
  return {{"kind", markdown ? "markdown" : "plaintext"}, {"value", text}};
}

Json hover(Context& context, const Json& params) {
  const auto statement = statementAtCursor(context, params);
  if (!statement) return nullptr;
  const Hover answer = ask(context, "hover", *statement, frontend::describe);
  if (answer.isUnknown) return nullptr;
  return {{"contents", contentOf(answer, context.abilities.markdownHover)},
          {"range", jsonOf(statement->rangeOf(answer.begin, answer.end))}};
}

Json signatureHelp(Context& context, const Json& params) {
  const auto statement = statementAtCursor(context, params);
  if (!statement) return nullptr;
  const auto answer = ask(context, "signatureHelp", *statement, frontend::signatureHelp);
  if (!answer.signature) return nullptr;
  const std::u16string text = answer.signature->text();
  const Json parameters = parametersOf(*answer.signature, text, context.abilities.parameterOffsets);
  const Json signature = {{"label", narrow(text)}, {"parameters", parameters}};
  // One after the last means none.
  const std::size_t active = answer.activeArgument.value_or(parameters.size());
  return {{"signatures", Json::array({signature})}, {"activeSignature", 0}, {"activeParameter", active}};
}

}  // namespace tools::lsp
