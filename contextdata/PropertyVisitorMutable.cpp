#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/CompletionTables.h>

#include <algorithm>

#include "contextdata/InternedName.h"
#include "contextdata/MemberName.h"
#include "contextdata/PossibleValues.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Levels = std::vector<std::int32_t>;

bool isDefinedBy(const kcos::COSInterfacePtr& member, const kcos::COSInternedName& classId) {
  const kcos::COSClass* definingClass = kcos::cosiClassOfMember(member.get());
  return definingClass != nullptr && definingClass->getID() == classId;
}

Levels levelsOf(const kcos::COSPropInfo& property, const Levels& accessorKinds) {
  Levels levels;
  for (const std::int32_t kind : accessorKinds) {
    if (kind == PropertyInfo::GetOptions::Read) levels.push_back(property.getMemberGetAccess());
    if (kind == PropertyInfo::GetOptions::Write) levels.push_back(property.getMemberSetAccess());
  }
  return levels;
}

std::u16string sizeText(const kcos::COSValidationDimension& dimension) {
  if (const char16_t* character = std::get_if<char16_t>(&dimension)) return std::u16string(1, *character);
  return fl::i18n::to_ustring(std::to_string(std::get<std::uint64_t>(dimension)));
}

/// Fills size and validation functions; answers the class that the validation names.
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

/// Fills everything that follows from the data type; answers the type's name.
std::string collectType(const kcos::COSDataTypePtr& dataType, PropertyInfo& property) {
  std::string type;
  if (const kcos::COSValidationType* validation = kcos::COSValidationType::get(dataType)) {
    type = collectValidation(*validation, property);
  }
  if (type.empty()) type = dataType.getID().text();
  if (property.validationFunctions.empty()) collectPossibleValues(dataType, property);
  return type;
}

bool hasTrueAttribute(const kcos::COSInterfacePtr& member, const std::string& attributeName) {
  const kcos::COSInternedName name = internedName(attributeName);
  const kcos::COSAttribute* attribute = member->findAttribute(name);
  if (attribute == nullptr) return false;
  const kcos::COSDataTypePtr dataType = attribute->getDataType();
  if (!dataType || dataType.getID().text() != "logical scalar") return false;
  return member->getAttributeValue(name, COSGetPublicClient());
}

/// Does reading run code? When in doubt, yes.
bool hasCustomGetter(const kcos::COSInterfacePtr& member, const kcos::COSOptimizedPropInfo* optimized) {
  try {
    if (optimized != nullptr && optimized->hasCustomGetter()) return true;
    return std::ranges::any_of(getAttributesToTreatAsHavingCustomGetters(),
                               [&](const std::string& name) { return hasTrueAttribute(member, name); });
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return true;
  }
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

PropertyVisitorMutable::PropertyVisitorMutable(const ClassInfo* ownerRecord) : owner(ownerRecord) {
  clear({});
}

PropertyVisitorMutable::~PropertyVisitorMutable() = default;

void PropertyVisitorMutable::clear() {
  properties.clear();
  hiddenProperties.clear();
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
  const std::string name = memberName(property->getName());
  if (!isDefinedBy(member, owner->classId)) return;
  const Levels levels = levelsOf(*property, accessorKinds);
  if (std::ranges::find_first_of(levels, accessLevels) == levels.end() && !hasAccessingClass(property))
    return;

  PropertyInfo record;
  std::string type;
  if (const kcos::COSDataTypePtr dataType = property->getDataType()) type = collectType(dataType, record);
  record.name = fl::i18n::to_ustring(name);
  record.type = fl::i18n::to_ustring(type);
  record.isDependent = property->isDependent();
  const auto* optimized = dynamic_cast<const kcos::COSOptimizedPropInfo*>(property);
  record.hasCustomGetter = hasCustomGetter(member, optimized);
  record.optimizedPropertyFlag = optimizedFlag(optimized);
  std::vector<PropertyInfo>& list = includeHidden || property->isVisible() ? properties : hiddenProperties;
  list.push_back(std::move(record));
}

bool PropertyVisitorMutable::hasAccessingClass(kcos::COSPropInfo* property) const {
  if (accessingClass == nullptr) return false;
  const auto isGranted = [this](const kcos::COSExtendedAccess& access) {
    return std::ranges::any_of(access.classes,
                               [this](const auto& granted) { return accessingClass->isA(granted); });
  };
  return isGranted(property->getExtendedGetAccess()) || isGranted(property->getExtendedSetAccess());
}

}  // namespace KCOSContextData
