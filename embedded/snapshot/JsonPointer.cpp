#include "embedded/snapshot/JsonPointer.h"

namespace embedded::snapshot {

void appendStep(std::string& pointer, std::string_view step) {
  pointer += '/';
  for (const char character : step) {
    if (character == '~') {
      pointer += "~0";
    } else if (character == '/') {
      pointer += "~1";
    } else {
      pointer += character;
    }
  }
}

std::string inQuotes(std::string_view name) {
  constexpr std::size_t longest = 80;
  if (name.size() <= longest) return '"' + std::string(name) + '"';
  std::size_t end = longest;
  while (end > 0 && (name[end] & 0xC0) == 0x80) --end;  // not in the middle of a character
  return '"' + std::string(name.substr(0, end)) + "...\"";
}

std::string JsonPointer::text() const {
  if (outer_ == nullptr) return {};
  std::string text = outer_->text();
  const auto* index = std::get_if<std::size_t>(&step_);
  appendStep(text, index ? std::to_string(*index) : std::string(std::get<std::string_view>(step_)));
  return text;
}

}  // namespace embedded::snapshot
