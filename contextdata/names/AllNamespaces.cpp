#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/Workspace/Values.h>

#include "contextdata/workspace/Dimensions.h"
#include "contextdata/workspace/ResultSlot.h"
#include "host/Interpreter.h"

namespace KCOSContextData {

boost::intrusive_ptr<kxArray_tag> getKCOSAllNamespaces() {
  const auto function = makeSharedPtr(kxCreateString("korval.metadata.Namespace.getAllNamespaces"));
  kxArray_tag* arguments[] = {function.get()};
  ResultSlot metadata;
  inFullFevalFcn(1, metadata.address(), 1, arguments);
  const std::vector<unsigned long> dimensions =
      metadata.get() != nullptr ? ownDimensions(metadata.get()) : std::vector<unsigned long>{0, 0};
  auto names = makeSharedPtr(kxCreateCell(dimensions.size(), dimensions.data()));
  const std::size_t count = metadata.get() != nullptr ? kxGetNumberOfElements(metadata.get()) : 0;
  for (std::size_t index = 0; index < count; ++index) {
    kxSetCell(names.get(), index, kxGetTypeProperty(metadata.get(), index, "Name"));
  }
  return names;
}

}  // namespace KCOSContextData
