#include <contextdata/KCOSContextData/PropertyInfo.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "host/Text.h"

namespace KCOSContextData {

namespace {

constexpr std::size_t anyExtent = std::numeric_limits<std::size_t>::max();

bool isNamePart(char16_t unit) {
  return fl::i18n::is_ascii_letter(unit) || fl::i18n::is_ascii_digit(unit) || unit == u'_';
}

bool isName(const std::u16string& text) {
  return !text.empty() && fl::i18n::is_ascii_letter(text.front()) && std::ranges::all_of(text, isNamePart);
}

std::size_t parseExtent(const std::u16string& text) {
  const std::u16string digits = fl::i18n::trim(text, u"\t\n\v\f\r ");
  if (digits.empty()) throw std::invalid_argument("Empty");
  if (!std::ranges::all_of(digits, fl::i18n::is_ascii_digit)) throw std::invalid_argument("Non number");
  // Digits only, so nothing but a number that is too big can fail here, which throws as the two above do.
  return std::stoul(fl::i18n::to_string(digits, fl::i18n::codecvt_ustring_to_ascii()));
}

}  // namespace

std::vector<std::size_t> PropertyInfo::castSizeStringToIntegers(
    const std::vector<std::u16string>& sizeStrings) {
  std::vector<std::size_t> extents;
  try {
    extents.reserve(sizeStrings.size());
    for (const std::u16string& text : sizeStrings) {
      extents.push_back(text == u":" || isName(text) ? anyExtent : parseExtent(text));
    }
  } catch (...) {
    // All or nothing: a size with some of its extents would be read as another size.
    extents.clear();
  }
  return extents;
}

}  // namespace KCOSContextData
