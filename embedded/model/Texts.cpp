#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"
#include "embedded/model/Value.h"
#include "host/Exceptions.h"

namespace embedded {

namespace {

/// The text of a row of characters (or an empty array of them) or of a string scalar.
std::u16string scalarText(const kxArray_tag* value) {
  if (value != nullptr) {
    const Value& found = valueOf(value);
    const auto* characters = found.as<std::u16string>();
    if (characters != nullptr && (characters->empty() || (found.size().size() == 2 && found.rows() == 1)))
      return *characters;
    if (const auto* strings = found.as<Strings>(); strings != nullptr && found.elementCount() == 1) {
      if (!strings->elements.front()) throw KORVAL::string::MissingNotSupported();
      return *strings->elements.front();
    }
  }
  throw KORVAL::string::MustBeStringScalarOrCharacterVector();
}

bool hasScalarText(const kxArray_tag* value) {
  const Value& found = valueOf(value);
  const auto* characters = found.as<std::u16string>();
  if (characters != nullptr) return characters->empty() || (found.size().size() == 2 && found.rows() == 1);
  const auto* strings = found.as<Strings>();
  return strings != nullptr && found.elementCount() == 1 && strings->elements.front().has_value();
}

}  // namespace

}  // namespace embedded

using embedded::enter;
using embedded::Operation;

kxArray_tag* kxCreateString(const char* text) {
  enter<Operation::createString>(text);
  return embedded::newString(embedded::widened(text)).detach();
}

namespace matrix {

kxArray_tag* create(const std::u16string& text) {
  enter<Operation::createText>(text);
  return embedded::newString(text).detach();
}

std::u16string get_ustring(const kxArray_tag* value) {
  enter<Operation::getUstring>(value);
  return embedded::scalarText(value);
}

}  // namespace matrix

namespace Tamsix::String {

bool isString(const kxArray_tag* value) {
  enter<Operation::isString>(value);
  return embedded::valueOf(value).as<embedded::Strings>() != nullptr;
}

std::u16string getString(const kxArray_tag* value) {
  enter<Operation::getString>(value);
  if (embedded::valueOf(value).as<embedded::Strings>() == nullptr)
    throw KORVAL::string::MustBeStringScalarOrCharacterVector();
  return embedded::scalarText(value);
}

bool isNonMissingScalarText(const kxArray_tag* value) {
  enter<Operation::isNonMissingScalarText>(value);
  return embedded::hasScalarText(value);
}

std::u16string getScalarText(const kxArray_tag* value) {
  enter<Operation::getScalarText>(value);
  return embedded::scalarText(value);
}

}  // namespace Tamsix::String
