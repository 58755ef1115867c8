#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/CompletionTables.h>

#include <algorithm>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <optional>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/Names.h"
#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Value = boost::intrusive_ptr<kxArray_tag>;

void addText(const Value& value, PropertyInfo& property) {
  // A text does not go among numbers: the kind that came first stays.
  if (property.possibleValuesKind == PropertyInfo::NumericPossibleValues) return;
  property.possibleValuesKind = PropertyInfo::TextPossibleValues;
  const std::size_t length = kxGetNumberOfElements(value.get());
  property.possibleValues.push_back(length == 0 ? std::u16string()
                                                : std::u16string(kxGetCharacters(value.get()), length));
}

/// A number without its fraction; none when 32 bits do not hold that.
std::optional<std::int32_t> truncated(double number) {
  // Without its fraction a number just beyond either limit fits; NaN fails both comparisons.
  if (!(number > -2147483649.0 && number < 2147483648.0)) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

void addNumber(const Value& value, PropertyInfo& property) {
  if (property.possibleValuesKind == PropertyInfo::TextPossibleValues) return;
  if (kxGetNumberOfElements(value.get()) != 1) return;
  // The kind is that of any number: only the text of one that 32 bits do not hold is left out.
  property.possibleValuesKind = PropertyInfo::NumericPossibleValues;
  if (const std::optional<std::int32_t> number = truncated(*kxGetDoubles(value.get())))
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
  // The element comes with a reference for the caller, which the holder takes over.
  const Value object(omGetArrayElement(value.get(), 0), false);
  const kcos::COSClass* cls = kcos::COSClass::getClass(omGetCOSClassID(object.get()));
  const bool isMember = cls != nullptr && cls->isEnumeration();
  // Noted before the kind changes: after numbers even members of enumerations are written by their
  // conversion.
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

/// Fills the possible values and their kind, when the data type allows finitely many. What the host throws
/// propagates, except from the text conversion of an object.
void collectPossibleValues(const kcos::COSDataTypePtr& dataType, PropertyInfo& property) {
  // Asked first: other types have no values to enumerate.
  if (!dataType->isPossibleValuesFinite()) return;
  // Possible values are no values of the workspace yet; the conversion to "any" makes such of them.
  const kcos::COSInternedName any = kcos::internal::makeInterned("any");
  const kcos::COSConversion* conversion = kcos::COSTypeRepository::getConversion(any, dataType.getID());
  if (conversion == nullptr) return;
  kcos::COSEnumeration<const kcos::COSPossibleValue*> values = dataType->getPossibleValues();
  while (values.hasMoreElements()) add(Value(conversion->convert(values.nextElement()), false), property);
}

std::u16string sizeText(const kcos::COSValidationDimension& dimension) {
  if (const char16_t* character = std::get_if<char16_t>(&dimension)) return std::u16string(1, *character);
  return fl::i18n::to_ustring(std::to_string(std::get<std::uint64_t>(dimension)));
}

/// Fills size and validation functions; returns the class that the validation names.
std::string collectValidation(const kcos::COSValidationType& validation, PropertyInfo& property) {
  std::string className = validation.getClassName();
  auto dimensions = validation.getDimensions();
  while (dimensions.hasMoreElements()) property.sizeStrings.push_back(sizeText(dimensions.nextElement()));
  auto functions = validation.getFunctions();
  while (functions.hasMoreElements()) {
    property.validationFunctions.push_back(fl::i18n::to_ustring(functions.nextElement().name));
  }
  return className;
}

/// Fills everything that follows from the data type.
void collectType(const kcos::COSDataTypePtr& dataType, PropertyInfo& property, std::string& type) {
  if (const kcos::COSValidationType* validation = kcos::COSValidationType::get(dataType))
    type = collectValidation(*validation, property);
  if (type.empty()) type = dataType.getID().text();
  // A value that the type allows may be refused by a validation function, so with these none is listed.
  if (property.validationFunctions.empty()) collectPossibleValues(dataType, property);
}

bool hasTrueAttribute(kcos::COSInterfacePtr member, const kcos::COSInternedName& name) {
  const kcos::COSAttribute* attribute = member->findAttribute(name);
  if (attribute == nullptr) return false;
  const kcos::COSDataTypePtr dataType = attribute->getDataType();
  // Attributes of other types have no yes or no to read.
  if (!dataType || dataType.getID().text() != "logical scalar") return false;
  return member->getAttributeValue(name, COSGetPublicClient());
}

bool optimizedFlag(const kcos::COSOptimizedPropInfo* optimized) {
  try {
    return optimized == nullptr || optimized->getOptimizedFlag();
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return true;
  }
}

}  // namespace

PropertyVisitorMutable::PropertyVisitorMutable(const ClassInfo* ownerRecord)
    : owner(ownerRecord),
      accessLevels{kcos::PublicAccess},
      accessorKinds{PropertyInfo::GetOptions::Read, PropertyInfo::GetOptions::Write},
      accessingClass(nullptr),
      includeHidden(false) {}

PropertyVisitorMutable::~PropertyVisitorMutable() = default;

void PropertyVisitorMutable::clear() {
  properties.clear();
  hiddenProperties.clear();
  walk_ = {};
}

void PropertyVisitorMutable::clear(const PropertyInfo::GetOptions& options) {
  clear();
  accessLevels = options.accessLevels;
  accessorKinds = options.accessorKinds;
  accessingClass = options.accessingClass;
  includeHidden = options.includeHidden;
}

void PropertyVisitorMutable::visit(kcos::COSInterface* member) {
  visit(kcos::COSInterfacePtr(member), kcos::cosiToProp(member));
}

void PropertyVisitorMutable::visit(kcos::COSInterfacePtr member, kcos::COSPropInfo* property) {
  // The name is read first: a missing one is an error also of a property that another class defines. Those are most of what
  // a deep class is visited with, so that nothing else is done for them.
  const char* name = memberName(property->getName());
  if (isDefinedBy(member.get(), owner->classId, walk_.met)) collect(member, *property, name);
}

void PropertyVisitorMutable::collect(kcos::COSInterfacePtr member, kcos::COSPropInfo& property,
                                     const char* name) {
  if (!qualifies(property)) return;
  if (onlyDecides) {
    isAccepted = true;
    return;
  }

  // Where it belongs if it is not hidden, which is asked last.
  PropertyInfo& record = properties.emplace_back();
  try {
    fill(record, member, property, name);
    if (includeHidden || property.isVisible()) return;
    hiddenProperties.push_back(std::move(record));
  } catch (...) {
    properties.pop_back();
    throw;
  }
  properties.pop_back();
}

void PropertyVisitorMutable::fill(PropertyInfo& record, kcos::COSInterfacePtr member,
                                  kcos::COSPropInfo& property, const char* name) {
  type_.clear();
  if (const kcos::COSDataTypePtr dataType = property.getDataType()) collectType(dataType, record, type_);
  record.name = fl::i18n::to_ustring(name_ = name);
  record.type = fl::i18n::to_ustring(type_);
  record.isDependent = property.isDependent();
  // The wider record is optional: without it the flag counts as set, and only attributes tell of a get
  // method.
  const auto* optimized = optimizedRecord(property);
  record.hasCustomGetter = hasCustomGetter(member, optimized);
  record.optimizedPropertyFlag = optimizedFlag(optimized);
}

const kcos::COSOptimizedPropInfo* PropertyVisitorMutable::optimizedRecord(const kcos::COSPropInfo& property) {
  const std::type_info* type = &typeid(property);
  if (type == walk_.otherType) return nullptr;
  if (type == walk_.optimizedType) return static_cast<const kcos::COSOptimizedPropInfo*>(&property);
  const auto* optimized = dynamic_cast<const kcos::COSOptimizedPropInfo*>(&property);
  if (optimized == nullptr) {
    walk_.otherType = type;
  } else if (optimized == static_cast<const kcos::COSOptimizedPropInfo*>(&property)) {
    // Only then: a record may have the wider one beside this part of itself.
    walk_.optimizedType = type;
  }
  return optimized;
}

/// Does reading run code? When in doubt, yes.
bool PropertyVisitorMutable::hasCustomGetter(kcos::COSInterfacePtr member,
                                             const kcos::COSOptimizedPropInfo* optimized) {
  try {
    if (optimized != nullptr && optimized->hasCustomGetter()) return true;
    const std::vector<std::string>& names = getAttributesToTreatAsHavingCustomGetters();
    for (std::size_t at = 0; at < names.size(); ++at) {
      if (at == walk_.getterAttributes.size()) walk_.getterAttributes.push_back(internedName(names[at]));
      if (hasTrueAttribute(member, walk_.getterAttributes[at])) return true;
    }
    return false;
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return true;
  }
}

bool PropertyVisitorMutable::hasAccessingClass(kcos::COSPropInfo* property) const {
  return accessingClass != nullptr && (isGranted(property->getExtendedGetAccess(), *accessingClass) ||
                                       isGranted(property->getExtendedSetAccess(), *accessingClass));
}

bool PropertyVisitorMutable::qualifies(kcos::COSPropInfo& property) const {
  const auto isListed = [this](std::int32_t level) {
    return std::ranges::find(accessLevels, level) != accessLevels.end();
  };
  bool isOfLevel = false;
  // In the order of the kinds, and once per mention, whatever the others say: hosts see which level is asked for, and how
  // often.
  for (const std::int32_t kind : accessorKinds) {
    if (kind == PropertyInfo::GetOptions::Read && isListed(property.getMemberGetAccess())) isOfLevel = true;
    if (kind == PropertyInfo::GetOptions::Write && isListed(property.getMemberSetAccess())) isOfLevel = true;
  }
  return isOfLevel || hasAccessingClass(&property);
}

}  // namespace KCOSContextData
