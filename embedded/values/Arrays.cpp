#include "host/Arrays.h"

#include "embedded/gate/Gate.h"
#include "embedded/values/Value.h"
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

bool kxIsScalar(const kxArray_tag* value) {
  enter<Operation::isScalar>(value);
  return valueOf(value).elementCount() == 1;
}

std::size_t kxGetNumberOfElements(const kxArray_tag* value) {
  enter<Operation::getNumberOfElements>(value);
  return valueOf(value).elementCount();
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
