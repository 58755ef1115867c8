#pragma once

// Names as they come from the class system, and as it takes them.

#include <stdexcept>
#include <string>

#include "host/Names.h"
#include "host/Text.h"

/// Narrow text by the ASCII conversion.
inline std::string toAscii(const std::u16string& text) {
  return fl::i18n::to_string(text, fl::i18n::codecvt_ustring_to_ascii());
}

/// The interned form of a name; the null name for an empty one, which the class system does not intern.
inline kcos::COSInternedName internedName(const std::string& name) {
  return name.empty() ? kcos::COSInternedName() : kcos::internal::makeInterned(name);
}

/// A name that the class system hands out and keeps; a missing one is an error. Raised here, because what happens when a
/// string is made from a null pointer is not to be left to whoever wrote the string.
inline const char* memberName(const char* name) {
  if (name == nullptr) throw std::logic_error("basic_string: construction from null is not valid");
  return name;
}

/// A name in UTF-16, by the ASCII conversion, which an empty name does not need: the host is not asked then.
inline std::u16string asciiName(const std::string& name,
                                const fl::i18n::codecvt_ascii_to_ustring& converter) {
  return name.empty() ? std::u16string() : fl::i18n::to_ustring(name, converter);
}

/// The same of a name that the class system hands out.
inline std::u16string asciiMemberName(const char* name, const fl::i18n::codecvt_ascii_to_ustring& converter) {
  return asciiName(memberName(name), converter);
}
