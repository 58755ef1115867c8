#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/NameVisitors.h"
#include "contextdata/internal/Names.h"
#include "contextdata/internal/ResultSlot.h"
#include "host/Arrays.h"
#include "host/Dispatcher.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "host/Text.h"

using KCOSContextData::isValid;
using KCOSContextData::ResolvedClassID;

namespace KCOSIntrospection {

namespace {

/// The class of a name as it stands, valid or not. Whatever goes wrong here, an interrupt too, means that
/// there is none.
kcos::COSClass* lookUp(const std::string& name) {
  try {
    return kcos::COSClass::getClass(internedName(name));
  } catch (...) {
    return nullptr;
  }
}

/// The check stands outside the look-up's handler: what it throws is the caller's.
kcos::COSClass* lookUpValid(const std::string& name) {
  kcos::COSClass* cls = lookUp(name);
  return isValid(cls) ? cls : nullptr;
}

}  // namespace

kcos::COSClass* getCOSClass(const ResolvedClassID& id) {
  try {
    return kcos::COSClass::getClass(id);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return nullptr;
  }
}

kcos::COSClass* getCOSClass(const kxArray_tag* object) { return lookUpValid(omGetCOSClassID(object).text()); }

kcos::COSClass* getCOSClass(const std::u16string& className) {
  return lookUpValid(fl::i18n::to_string(className));
}

std::u16string getClassName(const kxArray_tag* value) {
  const std::string name = kxGetClassName(value);
  if (name.empty()) return {};
  return fl::i18n::to_ustring(name, fl::i18n::codecvt_ascii_to_ustring());
}

std::u16string getConstructorName(const std::u16string& className) {
  const std::size_t dot = className.rfind(u'.');
  return dot == std::u16string::npos ? className : className.substr(dot + 1);
}

// No handler, unlike for classes: a namespace that cannot be looked up is an error for whoever asks.
kcos::COSInterface* getNamespaceInterface(const std::u16string& namespaceName) {
  return kcos::COSNamespace::getNamespaceInterface(internedName(toAscii(namespaceName))).get();
}

// getCOSClass(object) has checked the class already; the second check is part of the question.
bool hasMethod(const kxArray_tag* object, const std::string& methodName) {
  kcos::COSClass* cls = getCOSClass(object);
  return isValid(cls) && cls->findMethods(internedName(methodName)).hasMoreElements();
}

bool hasMethod(const ResolvedClassID& id, const std::string& methodName, bool& isStatic) {
  kcos::COSClass* cls = getCOSClass(id);
  if (!isValid(cls)) return false;
  const kcos::COSInternedName method = internedName(methodName);
  // isStatic stays as it is when there is no such method.
  if (!cls->findMethods(method).hasMoreElements()) return false;
  // A second walk, because a pass that has been asked for its elements is no fresh one.
  isStatic = kcos::cosiToMethod(cls->findMethods(method).nextElement().get())->isStatic();
  return true;
}

bool hasMethod(const std::u16string& className, const std::string& methodName, bool& isStatic) {
  try {
    return hasMethod(ResolvedClassID::fromLegacyString(fl::i18n::to_string(className)), methodName, isStatic);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return false;
  }
}

bool hasProperty(const kxArray_tag* object, const std::string& propertyName) {
  kcos::COSClass* cls = getCOSClass(object);
  return isValid(cls) && static_cast<bool>(cls->findProperty(internedName(propertyName)));
}

bool isKCOSClass(const ResolvedClassID& id) { return getCOSClass(id) != nullptr; }

bool isKCOSClass(const std::u16string& className) { return getCOSClass(className) != nullptr; }

bool isKCOSObject(const kxArray_tag* value) { return getCOSClass(value) != nullptr; }

bool isKCOSNamespace(const std::u16string& namespaceName) {
  return getNamespaceInterface(namespaceName) != nullptr;
}

bool isKCOSClassDerivedFrom(const ResolvedClassID& derived, const ResolvedClassID& base) {
  const kcos::COSClass* cls = getCOSClass(derived);
  return cls != nullptr &&
         cls->isDerivedFrom(internedName(static_cast<const kcos::COSInternedName&>(base).text()));
}

bool isKCOSClassDerivedFrom(const std::u16string& derived, const std::u16string& base) {
  const kcos::COSClass* cls = getCOSClass(derived);
  // The base is not looked up: a name that the class system does not know is one that nothing derives from.
  return cls != nullptr && cls->isDerivedFrom(internedName(fl::i18n::to_string(base)));
}

bool callFunctionOnObject(const kxArray_tag* object, const std::string& functionName,
                          std::vector<std::u16string>& names) {
  ResultSlot result;
  // The interpreter's arguments are not constant, although it does not change them.
  auto* argument = const_cast<kxArray_tag*>(object);
  try {
    inCallFcn(1, result.address(), 1, &argument, functionName.c_str());
  } catch (...) {
    return false;
  }
  // Outside the handler: a result that cannot be read is the caller's affair, unlike a call that fails.
  return getStringsFromKxarray(result.get(), names);
}

void getObjectPropertyNames(const kxArray_tag* object, std::vector<std::u16string>& names) {
  // What the object itself says holds, even nothing at all; its class is asked only when the call fails.
  if (callFunctionOnObject(object, "properties", names)) return;
  const kcos::COSClass* cls = getCOSClass(object);
  if (cls == nullptr) return;
  KCOSPropertyNameVisitor visitor(&names, nullptr, KCOSPropertyNameVisitor::All);
  // No check of the class, which getCOSClass(object) has made.
  cls->visitProperties(visitor);
}

bool isNoDotMethodClass(const kxArray_tag* value) {
  const int classNumber = kxGetClassNumber(value);
  const KclassRegistry& registry = *Kdispatcher::getDispatcher()->getClassRegistry();
  const std::set<std::u16string> names = KCOSContextData::getNoDotMethodClassesExcludeSet();
  return std::ranges::any_of(names, [&](const std::u16string& name) {
    return registry.isA(classNumber, registry.getClassNumber(toAscii(name)));
  });
}

}  // namespace KCOSIntrospection
