#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include "contextdata/internal/Dimensions.h"
#include "contextdata/internal/Names.h"
#include "contextdata/internal/ResultSlot.h"
#include "host/Classes.h"
#include "host/Interpreter.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Names = std::vector<std::u16string>;
using Value = boost::intrusive_ptr<kxArray_tag>;

/// What an iterator yields becomes an offered element, or null when it is of another kind or kept back.
const kcos::COSMethodInfo* offeredFunction(kcos::COSInterface* element) {
  const kcos::COSMethodInfo* function = kcos::cosiToMethod(element);
  return function != nullptr && !function->isHidden() && function->isVisible() ? function : nullptr;
}

const kcos::COSClass* offeredClass(kcos::COSInterface* element) {
  const kcos::COSClass* cls = kcos::cosiToClass(element);
  return cls != nullptr && !cls->isHidden() ? cls : nullptr;
}

const char* nameInNamespace(const kcos::COSMethodInfo& function) { return function.getName(); }
const char* nameInNamespace(const kcos::COSClass& cls) { return cls.getSimpleName(); }
const char* nameInNamespace(const kcos::COSNamespace& inner) { return inner.getSimpleName(); }

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
    if (element != nullptr) names.push_back(asciiMemberName(nameInNamespace(*element), converter));
  }
  return names.size() != before;
}

Value emptyCell() {
  const std::size_t dimensions[] = {0, 0};
  return makeSharedPtr(kxCreateCell(2, dimensions));
}

Value nameValue(const kxArray_tag* metadata, std::size_t index) {
  // A namespace without a name keeps its place, so that indices stay those of the metadata.
  Value name = makeSharedPtr(kxGetTypeProperty(metadata, index, "Name"));
  return name ? name : emptyCell();
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

boost::intrusive_ptr<kxArray_tag> getKCOSAllNamespaces() {
  const auto function = makeSharedPtr(kxCreateString("korval.metadata.Namespace.getAllNamespaces"));
  kxArray_tag* arguments[] = {function.get()};
  ResultSlot metadata;
  // Called as it is, not silently as an evaluation: what the function prints is seen, and what it throws
  // propagates.
  inFullFevalFcn(1, metadata.address(), 1, arguments);
  if (metadata.get() == nullptr) return emptyCell();
  const std::vector<unsigned long> dimensions = ownDimensions(metadata.get());
  auto names = makeSharedPtr(kxCreateCell(dimensions.size(), dimensions.data()));
  const std::size_t count = kxGetNumberOfElements(metadata.get());
  for (std::size_t index = 0; index < count; ++index) {
    // The cell takes the reference over, also when storing it fails.
    kxSetCell(names.get(), index, nameValue(metadata.get(), index).detach());
  }
  return names;
}

}  // namespace KCOSContextData
