#include "embedded/host/Session.h"
#include "embedded/model/Value.h"

using embedded::enter;
using embedded::Operation;
using embedded::valueOf;

int kxGetClassNumber(const kxArray_tag* value) {
  enter<Operation::getClassNumber>(value);
  return embedded::session().dispatcher.classNumbers().numberOf(valueOf(value));
}

bool kxIsOpaque(const kxArray_tag* value) {
  enter<Operation::isOpaque>(value);
  return valueOf(value).opaque() != nullptr;
}

bool kxIsObject(const kxArray_tag* value) {
  enter<Operation::isObject>(value);
  const embedded::Value& found = valueOf(value);
  if (const auto* structures = found.as<embedded::Structures>()) return !structures->className.empty();
  if (found.as<embedded::Objects>()) return found.opaque() == nullptr;
  return found.object() != nullptr;
}

bool kxIsScalar(const kxArray_tag* value) {
  enter<Operation::isScalar>(value);
  return valueOf(value).elementCount() == 1;
}

bool kxIsLogicalScalarTrue(const kxArray_tag* value) {
  enter<Operation::isLogicalScalarTrue>(value);
  const auto* elements = valueOf(value).as<std::vector<bool>>();
  return elements != nullptr && elements->size() == 1 && elements->front();
}

bool kxIsEmpty(const kxArray_tag* value) {
  enter<Operation::isEmpty>(value);
  return valueOf(value).elementCount() == 0;
}
