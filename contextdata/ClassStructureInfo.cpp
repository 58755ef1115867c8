#include <contextdata/KCOSContextData/ClassInfo.h>

namespace KCOSContextData {

namespace {

void appendWithAncestors(const ClassStructureInfo& structure, std::vector<std::u16string>& names) {
  if (structure.name.empty()) return;
  names.push_back(structure.name);
  for (const auto& superclass : structure.superclasses) appendWithAncestors(superclass->structure, names);
}

}  // namespace

std::vector<std::u16string> ClassStructureInfo::getSuperclasses() const {
  std::vector<std::u16string> names;
  appendWithAncestors(*this, names);
  return names;
}

}  // namespace KCOSContextData
