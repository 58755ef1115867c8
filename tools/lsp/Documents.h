#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "embedded/Host.h"
#include "tools/lsp/Document.h"
#include "tools/lsp/Message.h"

namespace tools::lsp {

struct OpenDocument {
  Document content;
  std::int64_t version = 0;
  /// Is it Korval code?
  bool isCode = false;
  /// Its diagnostics have been told.
  bool isChecked = false;
  std::optional<embedded::CodeOutline> keptOutline = {};

  /// What it says about itself in its present state.
  const embedded::CodeOutline& outline();
};

/// What the editor has open, kept up to date by its notifications.
class Documents {
 public:
  void setEncoding(PositionEncoding encoding) noexcept { encoding_ = encoding; }

  // Each takes the parameters of the notification of that name; throws ResponseError for those that are none.

  void didOpen(const Json& params);
  void didChange(const Json& params);
  /// Answers the URI.
  std::string didClose(const Json& params);

  /// The document, or null.
  OpenDocument* find(const std::string& uri);
  std::map<std::string, OpenDocument>& all() noexcept { return documents_; }

 private:
  PositionEncoding encoding_ = PositionEncoding::Utf16;
  std::map<std::string, OpenDocument> documents_;
};

}  // namespace tools::lsp
