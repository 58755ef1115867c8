#include "host/DataTypes.h"

#include "embedded/host/Enumeration.h"
#include "embedded/host/Session.h"

namespace embedded {

std::string Validation::getClassName() const {
  return asked<Operation::validationGetClassName>().answer([this] { return description_.className; });
}

kcos::COSEnumeration<kcos::COSValidationDimension> Validation::getDimensions() const {
  return asked<Operation::validationGetDimensions>().answer(
      [this]() -> kcos::COSEnumeration<kcos::COSValidationDimension> {
        // Absent, not empty, here and below: clients have to cope with both.
        if (description_.size.empty()) return {};
        return enumerate<kcos::COSValidationDimension>(description_.size.size(), [this](std::size_t at) {
          const std::optional<std::size_t>& extent = description_.size[at];
          return extent ? kcos::COSValidationDimension(std::uint64_t{*extent}) : u':';
        });
      });
}

kcos::COSEnumeration<kcos::COSValidationFunction> Validation::getFunctions() const {
  return asked<Operation::validationGetFunctions>().answer(
      [this]() -> kcos::COSEnumeration<kcos::COSValidationFunction> {
        if (description_.functions.empty()) return {};
        return enumerate<kcos::COSValidationFunction>(description_.functions.size(), [this](std::size_t at) {
          return kcos::COSValidationFunction{description_.functions[at]};
        });
      });
}

bool DataType::isPossibleValuesFinite() const {
  return asked<Operation::isPossibleValuesFinite>(id_).answer([this] { return values_ != nullptr; });
}

kcos::COSEnumeration<const kcos::COSPossibleValue*> DataType::getPossibleValues() const {
  return asked<Operation::getPossibleValues>(id_).answer(
      [this]() -> kcos::COSEnumeration<const kcos::COSPossibleValue*> {
        if (!values_ || values_->empty()) return {};
        return enumerate<const kcos::COSPossibleValue*>(values_->size(),
                                                        [this](std::size_t at) { return &(*values_)[at]; });
      });
}

namespace {

/// One object is an array of objects with one element: possible values have no other form of objects.
OwnedValue possibleValue(const ValueDescription& description) {
  OwnedValue value = makeValue(description, session().classes);
  if (value->object() == nullptr) return value;
  const kcos::COSInternedName identity = value->classId();
  return newValue({1, 1}, Objects{{std::move(value)}, {}, identity, true});
}

/// It knows every kind of value, so that one serves all types.
class Conversion final : public kcos::COSConversion {
 public:
  kxArray_tag* convert(const kcos::COSPossibleValue* value) const override {
    return asked<Operation::convert>().answer(
        [value] { return possibleValue(value->description()).detach(); });
  }
};

}  // namespace

}  // namespace embedded

using embedded::asked;
using embedded::Operation;

namespace kcos {

COSDataType::~COSDataType() = default;
COSConversion::~COSConversion() = default;
COSValidationType::~COSValidationType() = default;

COSInternedName COSDataTypePtr::getID() const {
  const COSInternedName id = static_cast<const embedded::DataType*>(type_)->id();
  return asked<Operation::dataTypeGetID>(id).answer([id] { return id; });
}

const COSConversion* COSTypeRepository::getConversion(const COSInternedName& to,
                                                      const COSInternedName& from) {
  // One for all sessions: it asks the active one when it converts.
  static const embedded::Conversion conversion;
  return asked<Operation::getConversion>(to, from).answer([&to, &from] {
    const bool found =
        to.text() == embedded::anyType && embedded::session().classes.types().isConvertible(from);
    return found ? &conversion : nullptr;
  });
}

const COSValidationType* COSValidationType::get(const COSDataTypePtr& dataType) {
  return asked<Operation::validationGet>().answer([&dataType] {
    return dataType ? static_cast<const embedded::DataType*>(dataType.get())->validation() : nullptr;
  });
}

}  // namespace kcos
