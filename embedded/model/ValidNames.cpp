#include "embedded/host/Gate.h"
#include "host/Arrays.h"

namespace {

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isNameCharacter(char character) {
  return isLetter(character) || (character >= '0' && character <= '9') || character == '_';
}

}  // namespace

int kxIsValidKorvalNameCount(const char* text) {
  embedded::enter<embedded::Operation::isValidNameCount>(text);
  if (!isLetter(*text)) return 0;
  const char* end = text + 1;
  while (isNameCharacter(*end)) ++end;
  return static_cast<int>(end - text);
}
