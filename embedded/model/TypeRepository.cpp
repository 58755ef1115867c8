#include "embedded/model/TypeRepository.h"

#include "embedded/host/Session.h"
#include "embedded/model/Interning.h"

namespace embedded {

namespace {

using PossibleValues = std::vector<kcos::COSPossibleValue>;

const std::string anyType = "any";

/// One object is an array of objects with one element: possible values have no other form of objects.
ValuePtr possibleValue(const ValueDescription& description) {
  ValuePtr value = makeValue(description, session().classes);
  if (value->object() == nullptr) return value;
  return {new Value({1, 1}, Objects{{std::move(value)}, {}, true}), false};
}

/// It knows every kind of value, so that one serves all types.
class Conversion final : public kcos::COSConversion {
 public:
  kxArray_tag* convert(const kcos::COSPossibleValue* value) const override {
    enter<Operation::convert>();
    return possibleValue(value->description()).detach();
  }
};

}  // namespace

const std::string& TypeRepository::nameOfType(const PropertyDescription& property) {
  if (!property.type.empty()) return property.type;
  if (property.validation && !property.validation->className.empty()) return property.validation->className;
  return property.validation || property.values ? anyType : property.type;
}

DataType* TypeRepository::named(const std::string& name) {
  if (name.empty()) return nullptr;
  const kcos::COSInternedName id = interned(name);
  std::unique_ptr<DataType>& type = byName_[&id.text()];
  if (type == nullptr) type = std::make_unique<DataType>(id);
  return type.get();
}

DataType* TypeRepository::typeOf(const PropertyDescription& property, const Values& values) {
  DataType* plain = named(nameOfType(property));
  if (plain == nullptr) return nullptr;
  if (!property.conversion) withoutConversion_.insert(&plain->id().text());
  if (!property.validation && !values) return plain;
  std::optional<Validation> validation;
  if (property.validation) validation.emplace(*property.validation);
  std::optional<PossibleValues> possible;
  if (values) possible.emplace(values->begin(), values->end());
  ofOneProperty_.push_back(
      std::make_unique<DataType>(plain->id(), std::move(validation), std::move(possible)));
  return ofOneProperty_.back().get();
}

const kcos::COSConversion* TypeRepository::conversionFrom(kcos::COSInternedName type) const {
  static const Conversion conversion;
  const Handle handle = &type.text();
  return byName_.contains(handle) && !withoutConversion_.contains(handle) ? &conversion : nullptr;
}

}  // namespace embedded

namespace kcos {

COSConversion::~COSConversion() = default;

const COSConversion* COSTypeRepository::getConversion(const COSInternedName& to,
                                                      const COSInternedName& from) {
  embedded::enter<embedded::Operation::getConversion>(to, from);
  return to.text() == embedded::anyType ? embedded::session().classes.types().conversionFrom(from) : nullptr;
}

}  // namespace kcos
