#pragma once

// A position in a document, as the front end asks about it.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Request.h"
#include "tools/lsp/Requests.h"

namespace tools::lsp {

struct StatementAtCursor {
  OpenDocument* document = nullptr;
  /// The lines of the statement at the position, up to the end of its line.
  std::u16string text;
  /// Where they begin in the document.
  std::size_t start = 0;
  /// The position, in them.
  std::size_t cursor = 0;
  /// Whose code it is, and what that has given values to before the statement.
  frontend::Scope scope;
  /// Of the document as it is now, whatever has been saved.
  std::vector<std::string> imports;

  /// A range of the text as the client counts.
  Range rangeOf(std::size_t begin, std::size_t end) const {
    return document->content.rangeOf(start + begin, start + end);
  }
};

/// What "textDocument" and "position" of a request mean; nothing for a document that is not open. Throws ResponseError
/// for what is no position.
std::optional<StatementAtCursor> statementAtCursor(Context& context, const Json& params);

/// The host resolves names in that scope by these imports from now on.
void openScope(Context& context, const frontend::Scope& scope, const std::vector<std::string>& imports);

/// Asks the front end about it, in the name of the request. The client's log tells why an answer is not all there is.
template <class Answer>
Answer ask(Context& context, const std::string& request, const StatementAtCursor& statement,
           Answer (*question)(frontend::Session&, const std::u16string&, std::size_t, const frontend::Scope&,
                              const frontend::Options&)) {
  Answer answer = question(context.session.session(), statement.text, statement.cursor, statement.scope,
                           context.abilities.options());
  context.client.logOutcome(request, answer.outcome);
  return answer;
}

}  // namespace tools::lsp
