#pragma once

// Text conversion for names that the class system has in narrow text, and numbers as text. It asks nothing of the host,
// so that it can be used where the host has just failed.

#include <boost/locale/encoding_utf.hpp>
#include <cstddef>
#include <string>

namespace frontend {

inline std::u16string wide(const std::string& text) {
  return boost::locale::conv::utf_to_utf<char16_t>(text);
}

inline std::string narrow(const std::u16string& text) { return boost::locale::conv::utf_to_utf<char>(text); }

inline std::u16string decimal(std::size_t number) { return wide(std::to_string(number)); }

}  // namespace frontend
