#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>

#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

using Superclasses = std::vector<std::shared_ptr<ClassInfo>>;

Superclasses ClassInfo::readSuperclasses(const kcos::COSInternedName& classId) {
  Superclasses superclasses;
  const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr) return superclasses;
  kcos::COSEnumeration<kcos::COSInternedName> names = cls->getSuperclasses();
  while (names.hasMoreElements()) {
    const kcos::COSClass* superclass = kcos::COSClass::getClass(names.nextElement());
    if (superclass == nullptr) continue;
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

ClassInfo::ClassInfo(const ResolvedClassID& id) : classId(id), propertyVisitor(this), methodVisitor(this) {
  if (classId.isNull()) return;
  structure.name = fl::i18n::to_ustring(kcos::nameresolution::getUserVisibleClassName(classId));
  structure.superclasses = superclassesOrNone(classId);
}

ClassInfo::ClassInfo(const std::u16string& context, const std::u16string& className)
    : ClassInfo(ResolvedClassID(context, className)) {}

ClassInfo::ClassInfo(const kxArray_tag* value) : propertyVisitor(this), methodVisitor(this) {
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

}  // namespace KCOSContextData
