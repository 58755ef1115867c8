#include "embedded/model/Validation.h"

#include "embedded/model/DataType.h"
#include "embedded/model/ListEnumerator.h"

namespace embedded {

std::string Validation::getClassName() const {
  enter<Operation::validationGetClassName>();
  return description_.className;
}

kcos::COSEnumeration<kcos::COSValidationDimension> Validation::getDimensions() const {
  enter<Operation::validationGetDimensions>();
  if (description_.size.empty()) return {};
  std::vector<kcos::COSValidationDimension> dimensions;
  for (const std::optional<std::size_t>& extent : description_.size) {
    if (extent)
      dimensions.emplace_back(std::uint64_t{*extent});
    else
      dimensions.emplace_back(u':');
  }
  return enumerate(std::move(dimensions));
}

kcos::COSEnumeration<kcos::COSValidationFunction> Validation::getFunctions() const {
  enter<Operation::validationGetFunctions>();
  if (description_.functions.empty()) return {};
  std::vector<kcos::COSValidationFunction> functions;
  for (const std::string& name : description_.functions) functions.push_back({name});
  return enumerate(std::move(functions));
}

}  // namespace embedded

namespace kcos {

COSValidationType::~COSValidationType() = default;

const COSValidationType* COSValidationType::get(const COSDataTypePtr& dataType) {
  embedded::enter<embedded::Operation::validationGet>();
  return dataType ? static_cast<const embedded::DataType*>(dataType.get())->validation() : nullptr;
}

}  // namespace kcos
