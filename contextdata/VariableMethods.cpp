#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>

#include "contextdata/internal/NameVisitors.h"

std::vector<std::u16string> getMethodsForWSVariable(const std::u16string& name,
                                                    const boost::intrusive_ptr<const kxArray_tag>& value) {
  std::vector<std::u16string> methods;
  if (KCOSIntrospection::isKCOSObject(value.get())) {
    appendMethodNames(KCOSIntrospection::getCOSClass(value.get()), methods, KCOSMethodNameVisitor::NonStatic);
  } else {
    getOpaqueObjectMethods(value.get(), methods);
  }
  const std::set<std::u16string> operators = KCOSContextData::getKCOSMethodsExcludeSet();
  std::erase_if(methods,
                [&](const std::u16string& method) { return method == name || operators.contains(method); });
  // Such a name cannot be typed after an object and a dot: it would be read as two.
  std::erase_if(methods,
                [](const std::u16string& method) { return method.find(u'.') != std::u16string::npos; });
  return methods;
}
