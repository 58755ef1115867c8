#pragma once

// What an editor has open: texts, positions in them, and the URIs that name them.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/Host.h"
#include "syntax/Position.h"
#include "tools/lsp/EditedText.h"
#include "tools/lsp/Message.h"
#include "tools/lsp/VariableIndex.h"

namespace tools::lsp {

/// The file that a "file:" URI names; empty for other URIs.
std::filesystem::path pathOf(const std::string& uri);
/// The URI of a file.
std::string uriOf(const std::filesystem::path& file);

/// Offsets are UTF-16 code units. A line ends with "\n", "\r\n" or "\r", as editors see it.
class Document {
 public:
  Document(const std::u16string& text, PositionEncoding encoding);

  const std::u16string& text() const { return text_.whole(); }
  std::size_t size() const noexcept { return text_.size(); }
  std::u16string slice(std::size_t begin, std::size_t end) const { return text_.slice(begin, end); }
  /// The number of the line that the offset is in, from 0.
  std::size_t lineNumberAt(std::size_t offset) const { return text_.lineNumberAt(offset); }
  std::size_t lineCount() const noexcept { return text_.lineCount(); }
  /// A line without its end.
  std::u16string line(std::size_t number) const { return slice(lineStart(number), lineEnd(number)); }
  std::size_t lineStart(std::size_t number) const { return text_.lineStart(number); }
  std::size_t lineEnd(std::size_t number) const { return text_.lineEnd(number); }

  /// A position after the end of a line is that end, and one after the last line the end of the text. Inside a
  /// character it is the start of the character.
  std::size_t offsetOf(const ProtocolPosition& position) const;
  /// An offset after the end of the text is that end, one inside the end of a line the end of the line, and one
  /// inside a surrogate pair before it.
  ProtocolPosition positionOf(std::size_t offset) const;
  /// Is a position as code counts it, but for the first number, the same to the protocol?
  bool isPlain() const noexcept { return text_.isPlain(); }
  /// The offset of a position as code counts it: from 1, and lines end with "\n" only.
  std::size_t offsetInCode(const syntax::Position& position) const;
  /// The other way round.
  syntax::Position positionInCode(std::size_t offset) const;
  Range rangeOf(std::size_t begin, std::size_t end) const { return {positionOf(begin), positionOf(end)}; }

  void replace(const std::u16string& text);
  /// The ends of the range may be swapped.
  void replace(const Range& range, std::u16string_view text);

 private:
  PositionEncoding encoding_;
  EditedText text_;
};

struct OpenDocument {
  Document content;
  std::int64_t version = 0;
  /// Is it Korval code?
  bool isCode = false;
  /// Its diagnostics have been told.
  bool isChecked = false;
  std::optional<embedded::CodeOutline> keptOutline = {};
  /// The kept outline is that of a state before; its positions have moved with the text.
  bool isOutlineOld = false;

  /// Of the variables that have been looked for last, by whose they are in the kept outline.
  std::optional<std::pair<const VariableIndex::Variables*, VariableIndex>> keptIndex = {};

  /// So long that reading all of it takes longer than a key may.
  bool isLong() const noexcept { return content.size() > std::size_t{64} << 10; }
  /// What it says about itself in its present state.
  const embedded::CodeOutline& outline();
  /// The same, or what a long document has said before the latest changes.
  const embedded::CodeOutline& outlineAtHand();
  /// Of very many variables of the outline at hand those that can be meant (VariableIndex::fitting); else all.
  VariableIndex::Variables variablesFor(const VariableIndex::Variables& all,
                                        const std::vector<std::string>& words, const std::string& typed,
                                        std::size_t most);
  /// One change of the editor.
  void change(const Range& range, const std::u16string& text);
};

/// What the editor has open, kept up to date by its notifications.
class Documents {
 public:
  void setEncoding(PositionEncoding encoding) noexcept { encoding_ = encoding; }

  // Each reads the parameters of the notification of that name; throws ResponseError for those that are none.

  void didOpen(const Json& params);
  void didChange(const Json& params);
  /// Returns the URI.
  std::string didClose(const Json& params);

  /// The document, or null.
  OpenDocument* find(const std::string& uri);
  std::map<std::string, OpenDocument>& all() noexcept { return documents_; }

 private:
  PositionEncoding encoding_ = PositionEncoding::Utf16;
  std::map<std::string, OpenDocument> documents_;
};

}  // namespace tools::lsp
