#include "tools/lsp/Documents.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>
#include <utility>

namespace tools::lsp {

namespace {

const std::string uriPointer = "/textDocument/uri";
const std::string versionPointer = "/textDocument/version";

constexpr std::string_view scheme = "file://";
constexpr char digits[] = "0123456789ABCDEF";

bool standsForItself(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 ||
         // "@" and "+" are not escaped, because folders of classes and packages begin with them.
         std::string_view("-._~/@+").find(character) != std::string_view::npos;
}

}  // namespace

std::filesystem::path pathOf(const std::string& uri) {
  if (!uri.starts_with(scheme)) return {};
  const std::size_t start = uri.find('/', scheme.size());  // after the name of a machine
  std::string path;
  for (std::size_t at = start; at < uri.size(); ++at) {
    const char* const digits = uri.data() + at + 1;
    unsigned char byte = 0;
    const bool isEscape = uri[at] == '%' && at + 2 < uri.size() &&
                          std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
    path += isEscape ? static_cast<char>(byte) : uri[at];
    if (isEscape) at += 2;
  }
  return path;
}

std::string uriOf(const std::filesystem::path& file) {
  std::string uri(scheme);
  for (const char character : std::filesystem::absolute(file).lexically_normal().string()) {
    if (standsForItself(character)) {
      uri += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      uri += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
  }
  return uri;
}

Document::Document(const std::u16string& text, PositionEncoding encoding)
    : encoding_(encoding), text_(text) {}

std::size_t Document::offsetOf(const ProtocolPosition& position) const {
  // The protocol lets positions be beyond the end, and takes them for the end.
  if (position.line >= lineCount()) return text_.size();
  const auto number = static_cast<std::size_t>(position.line);
  const std::size_t start = lineStart(number), end = lineEnd(number);
  if (encoding_ == PositionEncoding::Utf8) return text_.offsetAfterBytes(start, end, position.character);
  const std::size_t offset = start + std::min<std::uint64_t>(position.character, end - start);
  // A position inside a character is that before it.
  return text_.isInsidePair(offset) ? offset - 1 : offset;
}

ProtocolPosition Document::positionOf(std::size_t offset) const {
  const std::size_t number = lineNumberAt(offset), start = lineStart(number);
  offset = std::min(offset, lineEnd(number));
  if (text_.isInsidePair(offset)) --offset;
  return {number, encoding_ == PositionEncoding::Utf8 ? text_.bytesBetween(start, offset) : offset - start};
}

std::size_t Document::offsetInCode(const syntax::Position& position) const {
  const std::size_t start = text_.codeLineStart(static_cast<std::size_t>(position.line) - 1);
  return std::min(start + static_cast<std::size_t>(position.column) - 1, text_.size());
}

syntax::Position Document::positionInCode(std::size_t offset) const {
  const std::size_t line = text_.codeLineNumberAt(offset);
  return {static_cast<int>(line) + 1, static_cast<int>(offset - text_.codeLineStart(line)) + 1};
}

void Document::replace(const std::u16string& text) { text_ = EditedText(text); }

void Document::replace(const Range& range, std::u16string_view text) {
  // A range may be given from its end.
  const auto [begin, end] = std::minmax({offsetOf(range.start), offsetOf(range.end)});
  text_.replace(begin, end, text);
}

namespace {

/// Calls the action with each position of an outline.
template <class Action>
void eachPosition(embedded::CodeOutline& outline, Action action) {
  for (embedded::CodeVariable& variable : outline.variables) action(variable.at);
  for (embedded::CodeFunction& function : outline.functions) {
    for (syntax::Position* at : {&function.begin, &function.nameAt, &function.end}) action(*at);
    for (embedded::CodeVariable& variable : function.variables) action(variable.at);
  }
}

/// More of them than this are no typing: the outline is made anew.
constexpr std::size_t mostMovingChanges = 100;

}  // namespace

const embedded::CodeOutline& OpenDocument::outline() {
  if (!keptOutline || isOutlineOld) {
    keptIndex.reset();
    keptOutline = embedded::outlineOf(content.text());
  }
  isOutlineOld = false;
  return *keptOutline;
}

const embedded::CodeOutline& OpenDocument::outlineAtHand() {
  return keptOutline && isLong() ? *keptOutline : outline();
}

VariableIndex::Variables OpenDocument::variablesFor(const VariableIndex::Variables& all,
                                                    const std::vector<std::string>& words,
                                                    const std::string& typed, std::size_t most) {
  // An index is worth it only where it is used by the next key, too.
  if (!isLong() || all.size() <= 2 * most) return all;
  if (!keptIndex || keptIndex->first != &all) keptIndex.emplace(&all, all);
  return keptIndex->second.fitting(all, words, typed, most);
}

void OpenDocument::change(const Range& range, const std::u16string& text) {
  if (keptOutline && isLong()) {
    const auto [begin, end] = std::minmax({content.offsetOf(range.start), content.offsetOf(range.end)});
    const int first = content.positionInCode(begin).line;
    const int last = content.positionInCode(end).line;
    const int lines = static_cast<int>(std::ranges::count(text, u'\n')) - (last - first);
    // Most keys move nothing.
    if (lines != 0)
      eachPosition(*keptOutline, [&](syntax::Position& at) {
        if (at.line > last) at.line += lines;
      });
    isOutlineOld = true;
  } else {
    keptOutline.reset();
  }
  content.replace(range, text);
}

void Documents::didOpen(const Json& params) {
  const std::string uri = textAt(params, uriPointer);
  const bool isCode =
      pathOf(uri).extension() == ".k" || isTextAt(params, "/textDocument/languageId", "korval");
  Document content(wideTextAt(params, "/textDocument/text"), encoding_);
  documents_.insert_or_assign(uri,
                              OpenDocument{std::move(content), integerAt(params, versionPointer), isCode});
}

void Documents::didChange(const Json& params) {
  const std::string uri = textAt(params, uriPointer);
  OpenDocument* document = find(uri);
  if (document == nullptr) throw ResponseError{ErrorCode::InvalidParams, uri + " is not open"};
  // One after the other: ranges refer to the text that the changes before have left.
  const auto changes = listAt(params, "/contentChanges");
  if (changes.size() > mostMovingChanges) document->keptOutline.reset();
  for (const Json* change : changes) {
    if (hasAt(*change, "/range")) {
      document->change(rangeAt(*change, "/range"), wideTextAt(*change, "/text"));
    } else {
      document->content.replace(wideTextAt(*change, "/text"));
      document->keptOutline.reset();
    }
  }
  document->isChecked = false;
  // Older clients leave it out.
  if (hasAt(params, versionPointer)) document->version = integerAt(params, versionPointer);
}

std::string Documents::didClose(const Json& params) {
  std::string uri = textAt(params, uriPointer);
  documents_.erase(uri);
  return uri;
}

OpenDocument* Documents::find(const std::string& uri) {
  const auto found = documents_.find(uri);
  return found == documents_.end() ? nullptr : &found->second;
}

}  // namespace tools::lsp
