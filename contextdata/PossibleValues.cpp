#include "contextdata/PossibleValues.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <optional>

#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Value = boost::intrusive_ptr<kxArray_tag>;

void addText(const Value& value, PropertyInfo& property) {
  if (property.possibleValuesKind == PropertyInfo::NumericPossibleValues) return;
  property.possibleValuesKind = PropertyInfo::TextPossibleValues;
  const std::size_t length = kxGetNumberOfElements(value.get());
  property.possibleValues.push_back(length == 0 ? std::u16string()
                                                : std::u16string(kxGetCharacters(value.get()), length));
}

/// A number without its fraction; none when 32 bits do not hold that.
std::optional<std::int32_t> truncated(double number) {
  if (!(number > -2147483649.0 && number < 2147483648.0)) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

void addNumber(const Value& value, PropertyInfo& property) {
  if (property.possibleValuesKind == PropertyInfo::TextPossibleValues) return;
  if (kxGetNumberOfElements(value.get()) != 1) return;
  const std::optional<std::int32_t> number = truncated(*kxGetDoubles(value.get()));
  if (!number) return;
  property.possibleValuesKind = PropertyInfo::NumericPossibleValues;
  property.possibleValues.push_back(fl::i18n::to_ustring(std::to_string(*number)));
}

/// A value whose text conversion fails, for whatever reason, is left out.
void addConverted(const Value& object, PropertyInfo& property) {
  try {
    std::optional<std::u16string> text = omGetStringConversion(object.get());
    if (text) property.possibleValues.push_back(std::move(*text));
  } catch (...) {
  }
}

void addObject(const Value& value, PropertyInfo& property) {
  const Value object(omGetArrayElement(value.get(), 0), false);
  const kcos::COSClass* cls = kcos::COSClass::getClass(omGetCOSClassID(object.get()));
  const bool isMember = cls != nullptr && cls->isEnumeration();
  const bool hasNumbers = property.possibleValuesKind == PropertyInfo::NumericPossibleValues;
  property.possibleValuesKind = PropertyInfo::TextPossibleValues;
  if (isMember && !hasNumbers) {
    property.possibleValues.push_back(fl::i18n::to_ustring(cls->getEnumerationMemberName(object.get())));
  } else {
    addConverted(object, property);
  }
}

void add(const Value& value, PropertyInfo& property) {
  switch (kxGetClassID(value.get())) {
    case StorageCode::CharacterArray:
      return addText(value, property);
    case StorageCode::DoubleArray:
      return addNumber(value, property);
    case StorageCode::ObjectArray:
      return addObject(value, property);
    default:
      return;
  }
}

}  // namespace

void collectPossibleValues(const kcos::COSDataTypePtr& dataType, PropertyInfo& property) {
  if (!dataType->isPossibleValuesFinite()) return;
  const kcos::COSInternedName any = kcos::internal::makeInterned("any");
  const kcos::COSConversion* conversion = kcos::COSTypeRepository::getConversion(any, dataType.getID());
  if (conversion == nullptr) return;
  kcos::COSEnumeration<const kcos::COSPossibleValue*> values = dataType->getPossibleValues();
  while (values.hasMoreElements()) add(Value(conversion->convert(values.nextElement()), false), property);
}

}  // namespace KCOSContextData
