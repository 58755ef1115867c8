#pragma once

// A position in a document, as the front end takes it.

#include <cstddef>
#include <optional>
#include <string>

#include "frontend/Request.h"
#include "tools/lsp/Server.h"

namespace tools::lsp {

struct Spot {
  OpenDocument* document = nullptr;
  /// The lines of the statement at the position, up to the end of its line.
  std::u16string text;
  /// Where they begin in the document.
  std::size_t start = 0;
  /// The position, in them.
  std::size_t cursor = 0;
  frontend::Scope place;

  /// A range of the text as the client counts.
  Range rangeOf(std::size_t begin, std::size_t end) const {
    return document->content.rangeOf(start + begin, start + end);
  }
};

/// What "textDocument" and "position" of a request mean; nothing for a document that is not open. Throws ResponseError
/// for what is no position.
std::optional<Spot> spotOf(Context& context, const Json& params);

/// Whose code a document is, as far as its name and its text tell. Variables count that have been given a value before
/// the statement, which begins at the offset.
frontend::Scope placeIn(frontend::Session& session, const std::string& uri, OpenDocument& document,
                        std::size_t statement);

}  // namespace tools::lsp
