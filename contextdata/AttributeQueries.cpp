#include <contextdata/KCOSContextData/ClassInfo.h>

#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using NameSet = std::set<std::u16string>;

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

AttributeSets ClassInfo::getAttributes(bool argument) const {
  AttributeSets all;
  if (structure.name.empty()) return all;
  try {
    const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
    if (cls != nullptr) all = ownAttributes(*cls, argument);
    for (const auto& superclass : structure.superclasses) unite(all, superclass->getAttributes(argument));
    return all;
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

}  // namespace KCOSContextData
