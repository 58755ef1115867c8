#include <algorithm>

#include "frontend/Completion.h"

namespace frontend {

namespace {

bool isUpper(char16_t character) { return character >= u'A' && character <= u'Z'; }
bool isDigit(char16_t character) { return character >= u'0' && character <= u'9'; }
char16_t lower(char16_t character) {
  return isUpper(character) ? static_cast<char16_t>(character - u'A' + u'a') : character;
}

bool beginsIgnoringCase(const std::u16string& name, const std::u16string& typed) {
  return typed.size() <= name.size() &&
         std::equal(typed.begin(), typed.end(), name.begin(),
                    [](auto left, auto right) { return lower(left) == lower(right); });
}

/// A hump begins a word of the name: "getClassInfo", "get_class", "level2".
bool isHump(const std::u16string& name, std::size_t at) {
  if (at == 0) return true;
  if (isUpper(name[at])) return !isUpper(name[at - 1]) || (at + 1 < name.size() && !isUpper(name[at + 1]));
  if (isDigit(name[at])) return !isDigit(name[at - 1]);
  return name[at - 1] == u'_' || name[at - 1] == u'.';
}

/// Each typed character is the next one of the name, or begins a later hump.
bool fitsHumps(const std::u16string& typed, std::size_t done, const std::u16string& name, std::size_t at) {
  if (done == typed.size()) return true;
  if (at < name.size() && lower(typed[done]) == lower(name[at]) && fitsHumps(typed, done + 1, name, at + 1)) {
    return true;
  }
  for (std::size_t hump = at + 1; hump < name.size(); ++hump) {
    if (isHump(name, hump) && lower(typed[done]) == lower(name[hump]) &&
        fitsHumps(typed, done + 1, name, hump + 1)) {
      return true;
    }
  }
  return false;
}

/// What is typed is short against this; longer texts are no humps, so that trying all ways stays cheap.
constexpr std::size_t mostHumps = 12;

}  // namespace

Match matchOf(const std::u16string& typed, const std::u16string& name) {
  if (typed == name) return Match::Exact;
  if (name.starts_with(typed)) return Match::Prefix;
  if (beginsIgnoringCase(name, typed)) return Match::PrefixIgnoringCase;
  const bool begins = !typed.empty() && !name.empty() && lower(typed[0]) == lower(name[0]);
  const bool fits = begins && typed.size() <= mostHumps && fitsHumps(typed, 1, name, 1);
  return fits ? Match::Humps : Match::None;
}

}  // namespace frontend
