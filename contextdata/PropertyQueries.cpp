#include <contextdata/KCOSContextData/ClassInfo.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>

#include "contextdata/Inherited.h"
#include "host/Classes.h"
#include "host/Exceptions.h"

namespace KCOSContextData {

namespace {

using Properties = std::vector<PropertyInfo>;

/// Removes the inherited properties that an own one replaces.
void shadow(Properties& inherited, const PropertyVisitorMutable& own) {
  if (inherited.empty()) return;
  std::unordered_set<std::u16string_view> names;
  names.reserve(own.properties.size() + own.hiddenProperties.size());
  for (const PropertyInfo& property : own.properties) names.insert(property.name);
  for (const PropertyInfo& property : own.hiddenProperties) names.insert(property.name);
  std::erase_if(inherited, [&](const PropertyInfo& property) { return names.contains(property.name); });
}

/// A superclass that cannot answer adds nothing.
Properties propertiesOrNone(const ClassInfo& superclass, const PropertyInfo::GetOptions& options) {
  try {
    return superclass.getProperties(options);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

}  // namespace

void ClassInfo::collectProperties(const PropertyInfo::GetOptions& options) const {
  propertyVisitor.clear(options);
  kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr || cls->checkClass(false) == nullptr || cls->isEnumeration()) return;
  cls->visitProperties(propertyVisitor);
}

std::vector<PropertyInfo> ClassInfo::getProperties(const PropertyInfo::GetOptions& options) const {
  try {
    collectProperties(options);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
  Properties all = getPropertiesOfSuperclasses(options);
  shadow(all, propertyVisitor);
  Properties& own = propertyVisitor.properties;
  all.reserve(all.size() + own.size());
  std::ranges::move(own, std::back_inserter(all));
  own.clear();
  return all;
}

std::vector<PropertyInfo> ClassInfo::getProperties(const std::vector<std::int32_t>& accessLevels,
                                                   const ClassInfo* accessingClass) const {
  PropertyInfo::GetOptions options;
  options.accessLevels = accessLevels;
  options.accessingClass = accessingClass;
  return getProperties(options);
}

std::vector<PropertyInfo> ClassInfo::getPropertiesOfSuperclasses(
    const PropertyInfo::GetOptions& options) const {
  PropertyInfo::GetOptions inheritedOptions = options;
  dropFirstPrivateLevel(inheritedOptions.accessLevels);
  Properties all;
  for (const auto& superclass : structure.superclasses) {
    append(all, propertiesOrNone(*superclass, inheritedOptions));
  }
  return all;
}

}  // namespace KCOSContextData
