#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/Workspace/Values.h>

#include "contextdata/Dimensions.h"
#include "contextdata/ResultSlot.h"
#include "host/Interpreter.h"

namespace KCOSContextData {

namespace {

using Value = boost::intrusive_ptr<kxArray_tag>;

Value emptyCell() {
  const std::size_t dimensions[] = {0, 0};
  return makeSharedPtr(kxCreateCell(2, dimensions));
}

Value nameOf(const kxArray_tag* metadata, std::size_t index) {
  Value name = makeSharedPtr(kxGetTypeProperty(metadata, index, "Name"));
  return name ? name : emptyCell();
}

}  // namespace

boost::intrusive_ptr<kxArray_tag> getKCOSAllNamespaces() {
  const auto function = makeSharedPtr(kxCreateString("korval.metadata.Namespace.getAllNamespaces"));
  kxArray_tag* arguments[] = {function.get()};
  ResultSlot metadata;
  inFullFevalFcn(1, metadata.address(), 1, arguments);
  if (metadata.get() == nullptr) return emptyCell();
  const std::vector<unsigned long> dimensions = ownDimensions(metadata.get());
  auto names = makeSharedPtr(kxCreateCell(dimensions.size(), dimensions.data()));
  const std::size_t count = kxGetNumberOfElements(metadata.get());
  for (std::size_t index = 0; index < count; ++index) {
    kxSetCell(names.get(), index, nameOf(metadata.get(), index).detach());
  }
  return names;
}

}  // namespace KCOSContextData
