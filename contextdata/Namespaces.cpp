#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>

#include "contextdata/MemberName.h"
#include "host/Classes.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Names = std::vector<std::u16string>;

/// What an iterator yields becomes an offered element, or null when it is of another kind or kept back.
const kcos::COSMethodInfo* offeredFunction(kcos::COSInterface* element) {
  const kcos::COSMethodInfo* function = kcos::cosiToMethod(element);
  return function != nullptr && !function->isHidden() && function->isVisible() ? function : nullptr;
}

const kcos::COSClass* offeredClass(kcos::COSInterface* element) {
  const kcos::COSClass* cls = kcos::cosiToClass(element);
  return cls != nullptr && !cls->isHidden() ? cls : nullptr;
}

const char* nameOf(const kcos::COSMethodInfo& function) { return function.getName(); }
const char* nameOf(const kcos::COSClass& cls) { return cls.getSimpleName(); }
const char* nameOf(const kcos::COSNamespace& inner) { return inner.getSimpleName(); }

template <class Offered>
bool listMembers(const std::u16string& ns, Names& names,
                 kcos::COSIterator (kcos::COSNamespace::*open)() const, Offered offered) {
  const std::size_t before = names.size();
  const kcos::COSNamespace* space = kcos::cosiToNamespace(KCOSIntrospection::getNamespaceInterface(ns));
  if (space == nullptr) return false;
  const fl::i18n::codecvt_ascii_to_ustring converter;
  kcos::COSIterator elements = (space->*open)();
  while (elements.hasMoreElements()) {
    const auto* element = offered(elements.nextElement().get());
    if (element != nullptr) names.push_back(asciiMemberName(nameOf(*element), converter));
  }
  return names.size() != before;
}

}  // namespace

bool getNamespaceFunctionNames(const std::u16string& ns, Names& names) {
  return listMembers(ns, names, &kcos::COSNamespace::getFunctions, offeredFunction);
}

bool getNamespaceClassNames(const std::u16string& ns, Names& names) {
  return listMembers(ns, names, &kcos::COSNamespace::getClasses, offeredClass);
}

bool getNamespaceNamespaceNames(const std::u16string& ns, Names& names) {
  return listMembers(ns, names, &kcos::COSNamespace::getNamespaces, kcos::cosiToNamespace);
}

}  // namespace KCOSContextData
