#include "embedded/classes/DataType.h"

#include "embedded/gate/Gate.h"

namespace kcos {

COSDataType::~COSDataType() = default;

COSInternedName COSDataTypePtr::getID() const {
  const COSInternedName id = static_cast<const embedded::DataType*>(type_)->id();
  embedded::enter<embedded::Operation::dataTypeGetID>(id);
  return id;
}

}  // namespace kcos
