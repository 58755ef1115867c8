#include "tools/lsp/Documents.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>
#include <utility>

#include "host/Text.h"

namespace tools::lsp {

namespace {

const std::string uriPointer = "/textDocument/uri";
const std::string versionPointer = "/textDocument/version";

using fl::i18n::is_high_surrogate;
using fl::i18n::is_low_surrogate;

/// How many units the character has that begins at the offset.
std::size_t unitsAt(std::u16string_view text, std::size_t at) {
  return is_high_surrogate(text[at]) && at + 1 < text.size() && is_low_surrogate(text[at + 1]) ? 2 : 1;
}

std::size_t bytesOf(char16_t unit, std::size_t units) {
  if (units == 2) return 4;
  return unit < 0x80 ? 1 : (unit < 0x800 ? 2 : 3);
}

std::size_t offsetIn(std::u16string_view line, std::uint64_t character, PositionEncoding encoding) {
  std::size_t offset = 0;
  for (std::uint64_t counted = 0; offset < line.size();) {
    const std::size_t units = unitsAt(line, offset);
    counted += encoding == PositionEncoding::Utf8 ? bytesOf(line[offset], units) : units;
    // A position inside a character is that before it.
    if (counted > character) break;
    offset += units;
  }
  return offset;
}

std::size_t charactersOf(std::u16string_view text, PositionEncoding encoding) {
  if (encoding == PositionEncoding::Utf16) return text.size();
  std::size_t bytes = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t units = unitsAt(text, at);
    bytes += bytesOf(text[at], units);
    at += units;
  }
  return bytes;
}

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

Document::Document(std::u16string text, PositionEncoding encoding)
    : encoding_(encoding), text_(std::move(text)) {
  findLines();
}

void Document::findLines() {
  lineStarts_ = {0};
  codeLineStarts_ = {0};
  for (std::size_t at = text_.find_first_of(u"\r\n"); at != std::u16string::npos;
       at = text_.find_first_of(u"\r\n", at)) {
    at += text_[at] == u'\r' && at + 1 < text_.size() && text_[at + 1] == u'\n' ? 2 : 1;
    lineStarts_.push_back(at);
    // To the protocol "\r" alone ends a line, to the language it does not.
    if (text_[at - 1] == u'\n') codeLineStarts_.push_back(at);
  }
}

std::size_t Document::lineNumberAt(std::size_t offset) const noexcept {
  const auto after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  return static_cast<std::size_t>(after - lineStarts_.begin()) - 1;
}

std::u16string_view Document::line(std::size_t number) const {
  const std::size_t start = lineStarts_[number];
  const std::size_t next = number + 1 < lineStarts_.size() ? lineStarts_[number + 1] : text_.size();
  std::u16string_view line = std::u16string_view(text_).substr(start, next - start);
  if (line.ends_with(u'\n')) line.remove_suffix(1);
  if (line.ends_with(u'\r')) line.remove_suffix(1);
  return line;
}

std::size_t Document::offsetOf(const ProtocolPosition& position) const {
  // The protocol lets positions be beyond the end, and takes them for the end.
  if (position.line >= lineStarts_.size()) return text_.size();
  const auto number = static_cast<std::size_t>(position.line);
  return lineStarts_[number] + offsetIn(line(number), position.character, encoding_);
}

ProtocolPosition Document::positionOf(std::size_t offset) const {
  const std::size_t number = lineNumberAt(offset);
  const std::u16string_view whole = line(number);
  std::size_t length = std::min(offset - lineStarts_[number], whole.size());
  if (length > 0 && length < whole.size() && is_high_surrogate(whole[length - 1]) &&
      is_low_surrogate(whole[length]))
    --length;
  return {number, charactersOf(whole.substr(0, length), encoding_)};
}

std::size_t Document::offsetInCode(const syntax::Position& position) const {
  const auto number = static_cast<std::size_t>(position.line) - 1;
  if (number >= codeLineStarts_.size()) return text_.size();
  return std::min(codeLineStarts_[number] + static_cast<std::size_t>(position.column) - 1, text_.size());
}

void Document::replace(std::u16string text) {
  text_ = std::move(text);
  findLines();
}

void Document::replace(const Range& range, std::u16string_view text) {
  // A range may be given from its end.
  const auto [begin, end] = std::minmax({offsetOf(range.start), offsetOf(range.end)});
  text_.replace(begin, end - begin, text);
  findLines();
}

const embedded::CodeOutline& OpenDocument::outline() {
  if (!keptOutline) keptOutline = embedded::outlineOf(content.text());
  return *keptOutline;
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
  for (const Json* change : listAt(params, "/contentChanges")) {
    if (hasAt(*change, "/range"))
      document->content.replace(rangeAt(*change, "/range"), wideTextAt(*change, "/text"));
    else
      document->content.replace(wideTextAt(*change, "/text"));
  }
  document->isChecked = false;
  document->keptOutline.reset();
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
