#include "tools/lsp/Uri.h"

#include <cctype>
#include <charconv>
#include <string_view>

namespace tools::lsp {

namespace {

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

}  // namespace tools::lsp
