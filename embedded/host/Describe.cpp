#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

/// Control characters, which would break the lines of a log, as "\x.." escapes.
std::string quoted(const std::string& text) {
  constexpr char digits[] = "0123456789abcdef";
  std::string result = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') result += '\\';
    if (byte < 0x20 || byte == 0x7f)
      result += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
    else
      result += character;
  }
  return result + '"';
}

}  // namespace

std::string describe(const std::string& text) { return quoted(text); }
std::string describe(const std::u16string& text) { return quoted(narrowed(text)); }
std::string describe(const char* text) { return text == nullptr ? "null" : quoted(text); }
std::string describe(const kcos::COSInternedName& name) {
  return name.isNull() ? "null" : quoted(name.text());
}
std::string describe(bool value) { return value ? "true" : "false"; }
std::string describe(int value) { return std::to_string(value); }
std::string describe(unsigned long value) { return std::to_string(value); }

}  // namespace embedded
