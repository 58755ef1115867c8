#include "host/Arrays.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Value.h"
#include "host/Classes.h"

using embedded::enter;
using embedded::Operation;
using embedded::valueOf;

int kxGetClassID(const kxArray_tag* value) {
  enter<Operation::getClassIdentifier>(value);
  return valueOf(value).classCode();
}

std::string kxGetClassName(const kxArray_tag* value) {
  enter<Operation::getClassName>(value);
  return valueOf(value).className();
}

std::size_t kxGetNumberOfElements(const kxArray_tag* value) {
  enter<Operation::getNumberOfElements>(value);
  return valueOf(value).elementCount();
}

const double* kxGetDoubles(const kxArray_tag* value) {
  enter<Operation::getDoubles>(value);
  return std::get<std::vector<double>>(valueOf(value).content()).data();
}

const char16_t* kxGetCharacters(const kxArray_tag* value) {
  enter<Operation::getCharacters>(value);
  return std::get<std::u16string>(valueOf(value).content()).data();
}

kcos::COSInternedName omGetCOSClassID(const kxArray_tag* value) {
  enter<Operation::getCOSClassID>(value);
  const embedded::Object* object = value == nullptr ? nullptr : valueOf(value).object();
  return object == nullptr ? kcos::COSInternedName() : object->classId;
}

bool omIsKCOS(const kxArray_tag* value) {
  enter<Operation::isKCOS>(value);
  return value != nullptr && valueOf(value).object() != nullptr;
}

kxArray_tag* omGetArrayElement(const kxArray_tag* array, std::size_t index) {
  enter<Operation::getArrayElement>(array, index);
  return embedded::ValuePtr(std::get<embedded::Objects>(valueOf(array).content()).elements.at(index))
      .detach();
}

std::optional<std::u16string> omGetStringConversion(const kxArray_tag* object) {
  enter<Operation::getStringConversion>(object);
  const embedded::Object* found = valueOf(object).object();
  if (found != nullptr && found->failing)
    throw foundation::core::except::Exception("KORVAL:class:NoTextConversion",
                                              "The object cannot be converted to text.");
  return found == nullptr ? std::nullopt : found->text;
}
