#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "contextdata/internal/ClassRules.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Superclasses = std::vector<std::shared_ptr<ClassInfo>>;
using Properties = std::vector<PropertyInfo>;
using Methods = std::vector<MethodInfo>;
using NameSet = std::set<std::u16string>;

void appendWithAncestors(const ClassStructureInfo& structure, std::vector<std::u16string>& names) {
  if (structure.name.empty()) return;
  names.push_back(structure.name);
  // Not made unique: an ancestor is named once per way to it, as the tree has it.
  for (const auto& superclass : structure.superclasses) appendWithAncestors(superclass->structure, names);
}

/// The access levels with which the superclasses are asked: without the first private one. Only that one:
/// whoever lists the level twice means the superclasses' private members too.
void dropFirstPrivateLevel(std::vector<std::int32_t>& levels) {
  const auto first = std::ranges::find(levels, std::int32_t{kcos::PrivateAccess});
  if (first != levels.end()) levels.erase(first);
}

/// Appends the records of one superclass; takes over a first list as it is, for there may be many.
template <class Record>
void append(std::vector<Record>& all, std::vector<Record> more) {
  if (all.empty())
    all = std::move(more);
  else
    std::ranges::move(more, std::back_inserter(all));
}

/// Removes the inherited properties that an own one replaces.
void shadow(Properties& inherited, const PropertyVisitorMutable& own) {
  if (inherited.empty()) return;
  std::unordered_set<std::u16string_view> names;
  // Hidden own properties replace inherited ones too, although they are not listed themselves.
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

/// Classes that derive from this one offer no methods after the dot.
constexpr const char16_t* noDotMethodsMixin =
    u"korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// Removes the inherited methods that an own hidden one masks. An own visible one masks nothing.
void mask(Methods& inherited, const Methods& hidden) {
  if (inherited.empty()) return;
  std::unordered_set<std::u16string_view> names;
  names.reserve(hidden.size());
  for (const MethodInfo& method : hidden) names.insert(method.name);
  std::erase_if(inherited, [&](const MethodInfo& method) { return names.contains(method.name); });
}

NameSet converted(const std::vector<std::string>& names) {
  static const fl::i18n::codecvt_ascii_to_ustring converter;
  NameSet all;
  for (const std::string& name : names) all.insert(fl::i18n::to_ustring(name, converter));
  return all;
}

AttributeSets ownAttributes(const kcos::COSClass& cls, bool argument) {
  AttributeSets own;
  own.attributeList1 = converted(cls.getAttributeNames1(argument));
  own.attributeList2 = converted(cls.getAttributeNames2(argument));
  own.attributeList3 = converted(cls.getAttributeNames3(argument));
  own.attributeList4 = converted(cls.getAttributeNames4(argument));
  return own;
}

void unite(AttributeSets& all, AttributeSets more) {
  all.attributeList1.merge(more.attributeList1);
  all.attributeList2.merge(more.attributeList2);
  all.attributeList3.merge(more.attributeList3);
  all.attributeList4.merge(more.attributeList4);
}

}  // namespace

std::vector<std::u16string> ClassStructureInfo::getSuperclasses() const {
  std::vector<std::u16string> names;
  appendWithAncestors(*this, names);
  return names;
}

Superclasses ClassInfo::readSuperclasses(const kcos::COSInternedName& classId) {
  Superclasses superclasses;
  const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr) return superclasses;
  kcos::COSEnumeration<kcos::COSInternedName> names = cls->getSuperclasses();
  while (names.hasMoreElements()) {
    const kcos::COSClass* superclass = kcos::COSClass::getClass(names.nextElement());
    // A superclass that the class system does not know has nothing to hand down.
    if (superclass == nullptr) continue;
    // By its own identity: the class may be listed under a name that only stands for it.
    superclasses.push_back(std::make_shared<ClassInfo>(ResolvedClassID(superclass->getID())));
  }
  return superclasses;
}

/// All superclasses, or none when one of them cannot be read.
Superclasses ClassInfo::superclassesOrNone(const kcos::COSInternedName& classId) {
  try {
    return readSuperclasses(classId);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

// The visitors only keep the pointer to a record that is still being made; it is used by walks.
ClassInfo::ClassInfo(const ResolvedClassID& id) : classId(id), propertyVisitor(this), methodVisitor(this) {
  if (classId.isNull()) return;
  // Outside any handler: a record may lack its superclasses, but not its name.
  structure.name = fl::i18n::to_ustring(kcos::nameresolution::getUserVisibleClassName(classId));
  structure.superclasses = superclassesOrNone(classId);
}

ClassInfo::ClassInfo(const std::u16string& context, const std::u16string& className)
    : ClassInfo(ResolvedClassID(context, className)) {}

ClassInfo::ClassInfo(const kxArray_tag* value) : propertyVisitor(this), methodVisitor(this) {
  // Whether it is an object at all is asked first: of other values no class is looked up.
  if (value == nullptr || !omIsKCOS(value) || !KCOSIntrospection::isKCOSObject(value)) return;
  classId = ResolvedClassID(value);
  structure.name = fl::i18n::to_ustring(classId.text());
  structure.superclasses = superclassesOrNone(classId);
}

ClassInfo::~ClassInfo() = default;

bool ClassInfo::isA(const std::u16string& className) const {
  return className == structure.name ||
         std::ranges::any_of(structure.superclasses,
                             [&](const auto& superclass) { return superclass->isA(className); });
}

bool ClassInfo::isA(kcos::COSInternedName identity) const {
  return identity == classId || std::ranges::any_of(structure.superclasses, [&](const auto& superclass) {
           return superclass->isA(identity);
         });
}

const std::vector<std::int32_t>& ClassInfo::getDefaultAccessibility() const {
  static const std::vector<std::int32_t> levels{kcos::PublicAccess};
  return levels;
}

void ClassInfo::collectProperties(const PropertyInfo::GetOptions& options) const {
  // First, so that a class without properties of its own keeps none of the query before.
  propertyVisitor.clear(options);
  kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (!isValid(cls) || cls->isEnumeration()) return;
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
  // After the own ones: when these cannot be read, the superclasses are not asked at all.
  Properties all = getPropertiesOfSuperclasses(options);
  shadow(all, propertyVisitor);
  Properties& own = propertyVisitor.properties;
  all.reserve(all.size() + own.size());
  std::ranges::move(own, std::back_inserter(all));
  own.clear();  // moved from: no half-empty records are left where a visitor's lists can be seen
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

void ClassInfo::collectMethods() const {
  kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (!isValid(cls) || cls->isEnumeration()) return;
  cls->visitMethods(methodVisitor);
}

std::vector<MethodInfo> ClassInfo::getMethods(const MethodInfo::GetOptions& options) const {
  // Before anything is decided: the visitor's lists can be seen, and are those of this query also when it is
  // refused.
  methodVisitor.clear(options);
  if (classId.isNull() || !isClassToCompleteMethodsFor(classId, options.context)) return {};
  if (options.context == MethodInfo::GetContext::AfterDot && isA(noDotMethodsMixin)) return {};
  try {
    collectMethods();
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
  // Unlike the properties, the methods stay in the visitor, whose lists can be seen after a query.
  Methods all = getMethodsOfSuperclasses(options);
  // With hidden methods included the visitor files them as visible ones, and visible ones mask nothing.
  if (!options.includeHidden) mask(all, methodVisitor.hiddenMethods);
  all.insert(all.end(), methodVisitor.methods.begin(), methodVisitor.methods.end());
  return all;
}

std::vector<MethodInfo> ClassInfo::getMethods(const std::vector<std::int32_t>& access,
                                              const MethodInfo::GetContext& context,
                                              const ClassInfo* accessingClass) const {
  MethodInfo::GetOptions options;
  options.access = access;
  options.context = context;
  options.accessingClass = accessingClass;
  return getMethods(options);
}

std::vector<MethodInfo> ClassInfo::getMethodsOfSuperclasses(const MethodInfo::GetOptions& options) const {
  MethodInfo::GetOptions inheritedOptions = options;
  dropFirstPrivateLevel(inheritedOptions.access);
  Methods all;
  for (const auto& superclass : structure.superclasses) {
    // No handler as for properties: what the query of a specialised superclass throws propagates.
    append(all, superclass->getMethods(inheritedOptions));
  }
  return all;
}

AttributeSets ClassInfo::getAttributes(bool argument) const {
  AttributeSets all;
  if (structure.name.empty()) return all;
  try {
    const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
    // No check of the class here: attributes are listed of classes that fail it, too.
    if (cls != nullptr) all = ownAttributes(*cls, argument);
    // Virtual, so a specialised superclass may throw here; then the sets that were read are dropped as well.
    for (const auto& superclass : structure.superclasses) unite(all, superclass->getAttributes(argument));
    return all;
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

}  // namespace KCOSContextData
