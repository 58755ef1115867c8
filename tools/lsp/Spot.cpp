#include "tools/lsp/Spot.h"

#include "tools/lsp/Params.h"

namespace tools::lsp {

namespace {

/// Statements of more lines are taken for broken ones.
constexpr std::size_t mostLines = 100;

/// The first line of the statement that a line belongs to: those before it end with "...".
std::size_t firstLineOf(const Document& content, std::size_t line) {
  std::size_t first = line;
  while (first > 0 && line - first < mostLines &&
         content.line(first - 1).find(u"...") != std::u16string_view::npos) {
    --first;
  }
  return first;
}

}  // namespace

std::optional<Spot> spotOf(Context& context, const Json& params) {
  const std::string uri = textAt(params, Path("/textDocument/uri"));
  const Position position = positionAt(params, Path("/position"));
  OpenDocument* document = context.documents.find(uri);
  if (document == nullptr) return {};
  const Document& content = document->content;
  const std::size_t offset = content.offsetOf(position);
  const std::size_t line = content.lineOf(offset);
  Spot spot;
  spot.document = document;
  spot.start = content.lineStart(firstLineOf(content, line));
  spot.text =
      content.text().substr(spot.start, content.lineStart(line) + content.line(line).size() - spot.start);
  spot.cursor = offset - spot.start;
  spot.place = placeIn(context.session.session(), uri, *document, spot.start);
  return spot;
}

}  // namespace tools::lsp
