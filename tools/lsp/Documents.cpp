#include "tools/lsp/Documents.h"

#include <utility>

#include "tools/lsp/Params.h"
#include "tools/lsp/Uri.h"

namespace tools::lsp {

namespace {

const Path uriPath("/textDocument/uri");
const Path versionPath("/textDocument/version");
const Path languagePath("/textDocument/languageId");

}  // namespace

const embedded::CodeOutline& OpenDocument::outline() {
  if (!keptOutline) keptOutline = embedded::outlineOf(content.text());
  return *keptOutline;
}

void Documents::didOpen(const Json& params) {
  const std::string uri = textAt(params, uriPath);
  const bool isCode = pathOf(uri).extension() == ".k" || valueAt(params, languagePath) == "korval";
  Document content(wideTextAt(params, Path("/textDocument/text")), encoding_);
  documents_.insert_or_assign(uri, OpenDocument{std::move(content), integerAt(params, versionPath), isCode});
}

void Documents::didChange(const Json& params) {
  const std::string uri = textAt(params, uriPath);
  OpenDocument* document = find(uri);
  if (document == nullptr) throw ResponseError{ErrorCode::InvalidParams, uri + " is not open"};
  const Json& changes = valueAt(params, Path("/contentChanges"));
  if (!changes.is_array()) throw ResponseError{ErrorCode::InvalidParams, "\"/contentChanges\" is a list"};
  for (const Json& change : changes) {
    if (valueAt(change, Path("/range")).is_null())
      document->content.replace(wideTextAt(change, Path("/text")));
    else
      document->content.replace(rangeAt(change, Path("/range")), wideTextAt(change, Path("/text")));
  }
  document->isChecked = false;
  document->keptOutline.reset();
  // Older clients leave it out.
  if (!valueAt(params, versionPath).is_null()) document->version = integerAt(params, versionPath);
}

std::string Documents::didClose(const Json& params) {
  std::string uri = textAt(params, uriPath);
  documents_.erase(uri);
  return uri;
}

OpenDocument* Documents::find(const std::string& uri) {
  const auto found = documents_.find(uri);
  return found == documents_.end() ? nullptr : &found->second;
}

}  // namespace tools::lsp
