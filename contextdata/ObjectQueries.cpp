#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>

#include "contextdata/KCOSPropertyNameVisitor.h"
#include "contextdata/ResultSlot.h"
#include "host/Dispatcher.h"
#include "host/Interpreter.h"
#include "host/Text.h"

namespace KCOSIntrospection {

bool callFunctionOnObject(const kxArray_tag* object, const std::string& functionName,
                          std::vector<std::u16string>& names) {
  ResultSlot result;
  // The interpreter's arguments are not constant, although it does not change them.
  kxArray_tag* argument = const_cast<kxArray_tag*>(object);
  try {
    inCallFcn(1, result.address(), 1, &argument, functionName.c_str());
  } catch (...) {
    return false;
  }
  return getStringsFromKxarray(result.get(), names);
}

void getObjectPropertyNames(const kxArray_tag* object, std::vector<std::u16string>& names) {
  if (callFunctionOnObject(object, "properties", names)) return;
  const kcos::COSClass* cls = getCOSClass(object);
  if (cls == nullptr) return;
  KCOSPropertyNameVisitor visitor(&names, nullptr, KCOSPropertyNameVisitor::All);
  cls->visitProperties(visitor);
}

bool isNoDotMethodClass(const kxArray_tag* value) {
  const int classNumber = kxGetClassNumber(value);
  const KclassRegistry& registry = *Kdispatcher::getDispatcher()->getClassRegistry();
  const std::set<std::u16string> names = KCOSContextData::getNoDotMethodClassesExcludeSet();
  return std::ranges::any_of(names, [&](const std::u16string& name) {
    const std::string narrow = fl::i18n::to_string(name, fl::i18n::codecvt_ustring_to_ascii());
    return registry.isA(classNumber, registry.getClassNumber(narrow));
  });
}

}  // namespace KCOSIntrospection
