#include "tools/lsp/Diagnostics.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "syntax/Characters.h"

namespace tools::lsp {

namespace {

/// A file of more is refused by whoever runs it.
constexpr std::size_t longestCode = std::size_t{4} << 20;

/// Letters of other languages, which code must not have in names, are reported with the word that they are in.
bool isWord(char16_t unit) { return syntax::isNamePart(unit) || unit >= 0x80; }

/// What stands at the offset: a word, another character, or nothing at the end of a line.
Range rangeOfProblem(const Document& content, std::size_t offset) {
  const std::u16string& text = content.text();
  std::size_t end = offset;
  while (end < text.size() && isWord(text[end])) ++end;
  if (end == offset && end < text.size() && text[end] != u'\n' && text[end] != u'\r') ++end;
  return content.rangeOf(offset, end);
}

std::vector<Diagnostic> problemsOf(const Document& content) {
  const std::u16string& text = content.text();
  if (text.size() > longestCode) {
    return {{{}, "KORVAL:code:UnreadableFile", "a file of code has at most 4 MiB"}};
  }
  const auto failure = embedded::checkCode(text);
  if (!failure) return {};
  const Range range = rangeOfProblem(content, content.offsetInCode({failure->line, failure->column}));
  return {{range, failure->id, failure->message}};
}

}  // namespace

void publishDiagnostics(Client& client, const std::string& uri, OpenDocument& document, bool withVersion) {
  document.isChecked = true;
  // Marked as checked before, so that it is not looked at again.
  if (!document.isCode) return;
  client.publish(uri, problemsOf(document.content),
                 withVersion ? std::optional(document.version) : std::nullopt);
}

void publishFailure(Client& client, const std::string& uri, const embedded::SnapshotError& error) {
  const std::string pointer = error.pointer().empty() ? "" : error.pointer() + ": ";
  client.publish(uri, {{{}, error.code(), pointer + error.reason()}});
}

}  // namespace tools::lsp
