#pragma once

// Text conversion for names that the class system has in narrow text, and numbers as text. It asks nothing of the host,
// so that it can be used where the host has just failed.

#include <boost/locale/encoding_utf.hpp>
#include <cstddef>
#include <string>
#include <string_view>

namespace frontend {

/// From UTF-8 to UTF-16 and back; what cannot be converted is left out.
inline std::u16string wide(std::string_view text) {
  return boost::locale::conv::utf_to_utf<char16_t>(text.data(), text.data() + text.size());
}

inline std::string narrow(std::u16string_view text) {
  return boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size());
}

inline std::u16string decimal(std::size_t number) { return wide(std::to_string(number)); }

}  // namespace frontend
