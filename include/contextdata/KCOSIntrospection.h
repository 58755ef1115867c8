#pragma once

// The way into the class system: from an identifier, a name or a value to the class, and yes/no questions
// about it.
//
//   KCOSIntrospection::isKCOSClass(u"lab.Pump")                                  true
//   KCOSIntrospection::isKCOSClassDerivedFrom(u"lab.Pump", u"lab.Device")        true
//   bool isStatic = false;
//   KCOSIntrospection::hasMethod(u"lab.Pump", "start", isStatic)                 true; the flag says which
//
// Class names are taken as they stand; no scope plays a part (see ResolvedClassID for typed names). Names of
// classes that are given are converted with the general conversion, names of namespaces with the ASCII one.
// Method and property names are narrow, as the class system has them; an empty one names nothing.
//
// A valid class is one that passes its check. Which questions demand validity differs, and which exceptions
// propagate differs; each operation says so. All run on the interpreter thread; those that run Korval code
// say so. Class objects and interfaces are borrowed from the class system; nothing here is to be released.
// An argument may live in the result of its operation.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <string>
#include <vector>

#include "host/Classes.h"
#include "host/Members.h"

class kxArray_tag;

namespace KCOSIntrospection {

/// The class of an identifier, valid or not; null when there is none. The interrupt propagates; any other
/// exception of the look-up results in null.
CONTEXTDATA_API kcos::COSClass* getCOSClass(const KCOSContextData::ResolvedClassID& id);

/// The valid class of an object; null for a class that fails its check, for a value that is no class-system
/// object, and for a null value. Exceptions of interning and looking up, the interrupt among them, are
/// turned into null; those of asking the value for its class, and of the check, propagate.
CONTEXTDATA_API kcos::COSClass* getCOSClass(const kxArray_tag* object);

/// The valid class of that name, or null. Exceptions of interning and looking up, the interrupt among them,
/// result in null; those of converting the name, and of the check, propagate.
CONTEXTDATA_API kcos::COSClass* getCOSClass(const std::u16string& className);

/// The class name of a value, which is not null, as the array API reports it (ASCII conversion); may be empty.
/// Every exception propagates.
CONTEXTDATA_API std::u16string getClassName(const kxArray_tag* value);

/// What a constructor of that class is called: the part after the last "." ("C" for "a.b.C", "" for "a.b.").
/// Asks nothing of the host.
CONTEXTDATA_API std::u16string getConstructorName(const std::u16string& className);

/// The interface of a namespace, or null. Every exception propagates.
CONTEXTDATA_API kcos::COSInterface* getNamespaceInterface(const std::u16string& namespaceName);

/// Does the object's class, if it is valid, have a method of that name? Exceptions propagate as
/// getCOSClass(object) says, and so do those of the look-up of the method.
CONTEXTDATA_API bool hasMethod(const kxArray_tag* object, const std::string& methodName);

/// Does the class, if it is valid, have a method of that name, and is the first one static? `isStatic` stays
/// untouched when the answer is false. Exceptions propagate as getCOSClass(id) says, and so do those of the
/// check and of the look-up of the method.
CONTEXTDATA_API bool hasMethod(const KCOSContextData::ResolvedClassID& id, const std::string& methodName,
                               bool& isStatic);

/// The same for the class of that name. The interrupt propagates; any other exception results in false.
CONTEXTDATA_API bool hasMethod(const std::u16string& className, const std::string& methodName,
                               bool& isStatic);

/// Does the object's class, if it is valid, have a property of that name? Exceptions propagate as for
/// hasMethod(object).
CONTEXTDATA_API bool hasProperty(const kxArray_tag* object, const std::string& propertyName);

/// Is there such a class? By identifier, whether it is valid or not; by name only when it is valid.
/// Exceptions propagate as getCOSClass() says.
CONTEXTDATA_API bool isKCOSClass(const KCOSContextData::ResolvedClassID& id);
CONTEXTDATA_API bool isKCOSClass(const std::u16string& className);

/// Is the value an object of a valid class? Exceptions propagate as getCOSClass(object) says.
CONTEXTDATA_API bool isKCOSObject(const kxArray_tag* value);

/// Is there such a namespace? Every exception propagates.
CONTEXTDATA_API bool isKCOSNamespace(const std::u16string& namespaceName);

/// Does one class derive from another, as the class system sees it? The base need not exist. By identifier
/// `derived` may be invalid, by name it must be valid. Exceptions propagate as getCOSClass() says for
/// `derived`, and so do all others.
CONTEXTDATA_API bool isKCOSClassDerivedFrom(const KCOSContextData::ResolvedClassID& derived,
                                            const KCOSContextData::ResolvedClassID& base);
CONTEXTDATA_API bool isKCOSClassDerivedFrom(const std::u16string& derived, const std::u16string& base);

/// Calls a function of one argument on an object and appends the texts of the cell that it returns; true when
/// all were appended. Otherwise, also when the answer is no cell of texts, false and nothing is appended.
/// Runs Korval code; whatever the call throws, the interrupt too, results in false. What reading the answer
/// throws propagates.
CONTEXTDATA_API bool callFunctionOnObject(const kxArray_tag* object, const std::string& functionName,
                                          std::vector<std::u16string>& names);

/// Appends the names of an object's properties: what it returns for "properties", even nothing at all; where
/// it cannot answer, the visible properties of its class that are public to read or to write. To be asked
/// only of values for which isKCOSObject() holds. Runs Korval code; what reading the answer, getCOSClass()
/// and the walk throw propagates.
CONTEXTDATA_API void getObjectPropertyNames(const kxArray_tag* object, std::vector<std::u16string>& names);

/// Is the value, which is not null, of a class that completes no methods after the dot, or of one derived from
/// it? Also for values that are no class-system objects. Every exception propagates. Runs no Korval code.
CONTEXTDATA_API bool isNoDotMethodClass(const kxArray_tag* value);

}  // namespace KCOSIntrospection
