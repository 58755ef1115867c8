#include "embedded/model/DataTypes.h"

#include "embedded/model/Names.h"

namespace embedded {

std::string_view TypeRepository::nameOfType(const PropertyDescription& property) {
  if (!property.type.empty()) return property.type;
  if (property.validation && !property.validation->className.empty()) return property.validation->className;
  return property.validation || property.values ? anyType : std::string_view();
}

DataType* TypeRepository::named(std::string_view name) {
  if (name.empty()) return nullptr;
  const kcos::COSInternedName id = interned(name);
  std::unique_ptr<DataType>& type = byName_[&id.text()];
  if (type == nullptr) type = std::make_unique<DataType>(id);
  return type.get();
}

DataType* TypeRepository::typeOf(const PropertyDescription& property, PossibleValues values) {
  DataType* plain = named(nameOfType(property));
  if (plain == nullptr) return nullptr;
  // Conversions belong to types, not to properties: one property without makes it so for all of that type.
  if (!property.conversion) withoutConversion_.insert(&plain->id().text());
  // Types of that name are one object, as long as a property adds nothing of its own.
  if (!property.validation && values == nullptr) return plain;
  std::optional<Validation> validation;
  if (property.validation) validation.emplace(*property.validation);
  ofOneProperty_.push_back(std::make_unique<DataType>(plain->id(), std::move(validation), std::move(values)));
  return ofOneProperty_.back().get();
}

bool TypeRepository::isConvertible(kcos::COSInternedName type) const {
  return byName_.contains(&type.text()) && !withoutConversion_.contains(&type.text());
}

}  // namespace embedded
