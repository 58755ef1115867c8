#include <contextdata/KCOSContextData/MethodInfo.h>
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
  std::erase_if(methods, [&](const std::u16string& method) {
    // A name with a dot cannot be typed after an object and a dot: it would be read as two.
    return method == name || KCOSContextData::MethodInfo::isOperatorOverload(method) ||
           method.find(u'.') != std::u16string::npos;
  });
  return methods;
}
