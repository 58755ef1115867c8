#include "embedded/model/DataType.h"

#include "embedded/model/ListEnumerator.h"

namespace embedded {

bool DataType::isPossibleValuesFinite() const {
  enter<Operation::isPossibleValuesFinite>(id_);
  return values_.has_value();
}

kcos::COSEnumeration<const kcos::COSPossibleValue*> DataType::getPossibleValues() const {
  enter<Operation::getPossibleValues>(id_);
  if (!values_ || values_->empty()) return {};
  std::vector<const kcos::COSPossibleValue*> all;
  for (const kcos::COSPossibleValue& value : *values_) all.push_back(&value);
  return enumerate(std::move(all));
}

}  // namespace embedded

namespace kcos {

COSDataType::~COSDataType() = default;

COSInternedName COSDataTypePtr::getID() const {
  const COSInternedName id = static_cast<const embedded::DataType*>(type_)->id();
  embedded::enter<embedded::Operation::dataTypeGetID>(id);
  return id;
}

}  // namespace kcos
