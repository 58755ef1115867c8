#include "embedded/model/DottedName.h"

#include <algorithm>

namespace embedded {

namespace {

bool isLetter(unsigned char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte >= 0x80;
}
bool isLetterOrDigit(unsigned char byte) { return isLetter(byte) || (byte >= '0' && byte <= '9'); }

bool isName(std::string_view part) {
  return !part.empty() && isLetter(part.front()) && std::all_of(part.begin(), part.end(), isLetterOrDigit);
}

}  // namespace

bool isDottedName(std::string_view name) noexcept {
  for (auto dot = name.find('.'); dot != std::string_view::npos; dot = name.find('.')) {
    if (!isName(name.substr(0, dot))) return false;
    name.remove_prefix(dot + 1);
  }
  return isName(name);
}

}  // namespace embedded
