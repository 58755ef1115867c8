#include "tools/lsp/Diagnostics.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

#include "syntax/Characters.h"

namespace tools::lsp {

namespace {

/// A file of more is refused by whoever runs it.
constexpr std::size_t longestCode = std::size_t{4} << 20;

Json diagnostic(const Range& range, const std::string& code, const std::string& message) {
  return {{"range", jsonOf(range)},
          {"severity", static_cast<int>(Severity::Error)},
          {"code", code},
          {"source", "contextdata"},
          {"message", message}};
}

/// Letters of other languages, which code must not have in names, are reported with the word that they are in.
bool isWord(char16_t unit) { return syntax::isNamePart(unit) || unit >= 0x80; }

/// What stands at the offset: a word, another character, or nothing at the end of a line.
Range rangeAt(const Document& content, std::size_t offset) {
  const std::u16string& text = content.text();
  std::size_t end = offset;
  while (end < text.size() && isWord(text[end])) ++end;
  if (end == offset && end < text.size() && text[end] != u'\n' && text[end] != u'\r') ++end;
  return content.rangeOf(offset, end);
}

Json problemsOf(const Document& content) {
  const std::u16string& text = content.text();
  if (text.size() > longestCode) {
    return {diagnostic({}, "KORVAL:code:UnreadableFile", "a file of code has at most 4 MiB")};
  }
  const auto failure = embedded::checkCode(text);
  if (!failure) return Json::array();
  const Range range = rangeAt(content, content.offsetInCode({failure->line, failure->column}));
  return Json::array({diagnostic(range, failure->id, failure->message)});
}

void publish(Client& client, Json params) {
  client.notify("textDocument/publishDiagnostics", std::move(params));
}

}  // namespace

void publishDiagnostics(Client& client, const std::string& uri, OpenDocument& document, bool withVersion) {
  document.isChecked = true;
  // Marked as checked before, so that it is not looked at again.
  if (!document.isCode) return;
  Json params = {{"uri", uri}, {"diagnostics", problemsOf(document.content)}};
  if (withVersion) params["version"] = document.version;
  publish(client, std::move(params));
}

void clearDiagnostics(Client& client, const std::string& uri) {
  publish(client, {{"uri", uri}, {"diagnostics", Json::array()}});
}

void publishFailure(Client& client, const std::string& uri, const embedded::SnapshotError& error) {
  const std::string place = error.pointer().empty() ? "" : error.pointer() + ": ";
  publish(client, {{"uri", uri},
                   {"diagnostics", Json::array({diagnostic({}, error.code(), place + error.reason())})}});
}

}  // namespace tools::lsp
