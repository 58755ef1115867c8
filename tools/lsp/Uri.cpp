#include "tools/lsp/Uri.h"

#include <cctype>
#include <string_view>

namespace tools::lsp {

namespace {

constexpr std::string_view scheme = "file://";
constexpr char digits[] = "0123456789ABCDEF";

bool isHex(char character) { return std::isxdigit(static_cast<unsigned char>(character)) != 0; }

int valueOf(char digit) { return digit <= '9' ? digit - '0' : (digit | 32) - 'a' + 10; }

bool standsForItself(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 ||
         std::string_view("-._~/@+").find(character) != std::string_view::npos;
}

}  // namespace

std::filesystem::path pathOf(const std::string& uri) {
  if (!uri.starts_with(scheme)) return {};
  const std::size_t start = uri.find('/', scheme.size());  // behind the name of a machine
  std::string path;
  for (std::size_t at = start; at < uri.size(); ++at) {
    if (uri[at] == '%' && at + 2 < uri.size() && isHex(uri[at + 1]) && isHex(uri[at + 2])) {
      path += static_cast<char>(valueOf(uri[at + 1]) * 16 + valueOf(uri[at + 2]));
      at += 2;
    } else {
      path += uri[at];
    }
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
