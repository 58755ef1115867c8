#include "embedded/host/Gate.h"
#include "embedded/model/Value.h"
#include "host/Exceptions.h"

namespace embedded {

namespace {

/// The value, whose dimensions must not be held in that form any more.
const Value& heldOtherwise(const kxArray_tag* value, std::initializer_list<DimensionForm> forms) {
  for (const DimensionForm form : forms)
    if (valueOf(value).dimensionForm() == form)
      throw foundation::core::except::Exception("KORVAL:host:DimensionForm",
                                                "The value does not hold its dimensions in this form.");
  return valueOf(value);
}

}  // namespace

}  // namespace embedded

using embedded::DimensionForm;
using embedded::enter;
using embedded::Operation;
using embedded::valueOf;

bool kxHasLazyDimensions(const kxArray_tag* value) {
  enter<Operation::hasLazyDimensions>(value);
  return valueOf(value).dimensionForm() == DimensionForm::Lazy;
}

void kxCompleteDimensions(const kxArray_tag* value) {
  enter<Operation::completeDimensions>(value);
  valueOf(value).completeDimensions();
}

bool kxHasCompactDimensions(const kxArray_tag* value) {
  enter<Operation::hasCompactDimensions>(value);
  return valueOf(value).dimensionForm() == DimensionForm::Compact;
}

std::size_t kxGetRowCount(const kxArray_tag* value) {
  enter<Operation::getRowCount>(value);
  return embedded::heldOtherwise(value, {DimensionForm::Lazy}).rows();
}

std::size_t kxGetColumnCount(const kxArray_tag* value) {
  enter<Operation::getColumnCount>(value);
  return embedded::heldOtherwise(value, {DimensionForm::Lazy}).columns();
}

std::size_t kxGetNumberOfDimensions(const kxArray_tag* value) {
  enter<Operation::getNumberOfDimensions>(value);
  return embedded::heldOtherwise(value, {DimensionForm::Lazy}).size().size();
}

const std::size_t* kxGetDimensions(const kxArray_tag* value) {
  enter<Operation::getDimensions>(value);
  return embedded::heldOtherwise(value, {DimensionForm::Lazy, DimensionForm::Compact}).size().data();
}
