#include <algorithm>
#include <utility>
#include <vector>

#include "frontend/Completion.h"
#include "syntax/Characters.h"

namespace frontend {

namespace {

using syntax::isDigit;

bool isUpper(char16_t character) { return character >= u'A' && character <= u'Z'; }
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

/// Each typed character is the next one of the name, or begins a later hump; the first one is the name's first.
bool fitsHumps(const std::u16string& typed, const std::u16string& name) {
  if (typed.empty() || typed.size() > name.size() || lower(typed[0]) != lower(name[0])) return false;
  // Behind which characters of the name what has been read so far can end.
  std::vector<char> ends(name.size() + 1), next(name.size() + 1);
  ends[1] = 1;
  for (std::size_t done = 1; done < typed.size(); ++done) {
    bool isBehind = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
      const bool isNext = ends[at] != 0 || (isBehind && isHump(name, at));
      next[at + 1] = isNext && lower(typed[done]) == lower(name[at]) ? 1 : 0;
      isBehind = isBehind || ends[at] != 0;
    }
    std::swap(ends, next);
  }
  return std::ranges::count(ends, 1) > 0;
}

}  // namespace

Match matchOf(const std::u16string& typed, const std::u16string& name) {
  if (typed == name) return Match::Exact;
  if (name.starts_with(typed)) return Match::Prefix;
  if (beginsIgnoringCase(name, typed)) return Match::PrefixIgnoringCase;
  return fitsHumps(typed, name) ? Match::Humps : Match::None;
}

}  // namespace frontend
