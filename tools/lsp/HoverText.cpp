#include "tools/lsp/HoverText.h"

#include <string>
#include <vector>

#include "tools/render/FrontEnd.h"
#include "tools/lsp/Params.h"

namespace tools::lsp {

namespace {

using frontend::Hover;

std::string listed(const std::vector<std::u16string>& texts) {
  std::string list;
  for (const std::u16string& text : texts) list += (list.empty() ? "" : ", ") + utf8Of(text);
  return list;
}

/// What code would write: a signature, or the name with its class.
std::string headOf(const Hover& hover) {
  if (hover.signature) return utf8Of(hover.signature->text());
  return utf8Of(hover.subject.label);
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

}  // namespace

Json contentOf(const Hover& hover, bool markdown) {
  std::string text = markdown ? "```korval\n" + headOf(hover) + "\n```\n" : headOf(hover) + "\n";
  for (const std::string& line : linesOf(hover)) text += "\n" + (markdown ? escaped(line) + "\n" : line);
  return {{"kind", markdown ? "markdown" : "plaintext"}, {"value", text}};
}

}  // namespace tools::lsp
