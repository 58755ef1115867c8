#pragma once

// Classes and namespaces of the class system, and the way from a value to its class. Everything is owned by
// the class system and borrowed for one query. No query here runs Korval code; each may throw.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/Enumeration.h"
#include "host/Export.h"
#include "host/Members.h"
#include "host/Names.h"

class kxArray_tag;

namespace kcos {

/// A class.
class KORVAL_HOST_API COSClass {
 public:
  virtual ~COSClass();

  /// The class of that name, or null; null for the null name. A class is found by its own identity, and also
  /// to names that stand for it (an alias, the name a user knows it by), so that its getID() can differ from
  /// `name`. The most frequent question of all: it should cost one look-up.
  static COSClass* getClass(const COSInternedName& name);

  /// Is the class usable as it stands? A class (callers test it for null and go on with the one they have),
  /// or null. The library always passes false. The base returns the class itself.
  virtual COSClass* checkClass(bool /*complete*/) { return this; }

  /// The canonical identity of the class.
  virtual COSInternedName getID() const = 0;
  /// The last part of the class's name.
  virtual const char* getSimpleName() const = 0;
  /// The whole name with its namespaces, without a component. Never missing for a class that defines a
  /// member.
  virtual const char* getDottedName() const = 0;
  /// The namespace that holds the class, or null.
  virtual COSNamespace* getNamespace() const = 0;

  /// Is the class an enumeration? The base returns no.
  virtual bool isEnumeration() const { return false; }
  /// Asked by listings of namespaces only.
  virtual bool isHidden() const = 0;
  /// A yes/no answer about the class as a whole, which the library hands on as it is.
  virtual bool getClassFlag() const = 0;

  /// The methods of that name, own and inherited, in the order of the method walk; a fresh pass at each call.
  /// Without elements for the null name.
  virtual COSIterator findMethods(const COSInternedName& name) const = 0;
  /// The property of that name, own or inherited, or null.
  virtual COSInterfacePtr findProperty(const COSInternedName& name) const = 0;
  /// Does the class derive from the class of that name? False for unknown names and for the null name.
  /// Whether a class derives from itself is the host's choice.
  virtual bool isDerivedFrom(const COSInternedName& base) const = 0;
  /// The direct superclasses in the order of their declaration, as names that getClass() takes; perhaps no
  /// sequence. The graph has no cycle.
  virtual COSEnumeration<COSInternedName> getSuperclasses() const = 0;

  /// Calls the visitor once per property, own and inherited, in class order. What the visitor throws
  /// propagates.
  virtual void visitProperties(COSVisitor<COSInterface*>& visitor) const = 0;
  /// Calls the visitor once per method, own and inherited, in class order. What the visitor throws
  /// propagates.
  virtual void visitMethods(COSVisitor<COSInterface*>& visitor) const = 0;

  /// The members of an enumeration class in the order of their declaration, hidden and repeated ones
  /// included; without elements for other classes.
  virtual COSIterator getEnumerationMembers() const = 0;
  /// The name of the enumeration member that a value of this class holds.
  virtual std::string getEnumerationMemberName(const kxArray_tag* value) const = 0;

  /// Four lists of attribute names, in ASCII; each is asked with the same argument.
  virtual std::vector<std::string> getAttributeNames1(bool argument) const = 0;
  virtual std::vector<std::string> getAttributeNames2(bool argument) const = 0;
  virtual std::vector<std::string> getAttributeNames3(bool argument) const = 0;
  virtual std::vector<std::string> getAttributeNames4(bool argument) const = 0;
};

/// A namespace.
class KORVAL_HOST_API COSNamespace {
 public:
  virtual ~COSNamespace();

  /// The namespace of that dotted name, or null; null for the null name. The interface stays valid after the
  /// observer is gone.
  static COSInterfacePtr getNamespaceInterface(const COSInternedName& name);

  /// The last part of the namespace's name: what a listing shows.
  virtual const char* getSimpleName() const = 0;
  /// The whole name: what qualifies a class.
  virtual const char* getDottedName() const = 0;

  /// What the namespace holds directly. Elements of another kind may be among them; callers skip those.
  virtual COSIterator getFunctions() const = 0;
  virtual COSIterator getClasses() const = 0;
  virtual COSIterator getNamespaces() const = 0;
};

}  // namespace kcos

/// The identity of the class of a class-system object; null for every other value and for a null pointer.
KORVAL_HOST_API kcos::COSInternedName omGetCOSClassID(const kxArray_tag* value);

/// Is the value a class-system object? False for a null pointer.
KORVAL_HOST_API bool omIsKCOS(const kxArray_tag* value);

/// One element of an object array, as an object, with one reference for the caller. `index` counts from 0;
/// beyond the elements the operation throws. Never null.
KORVAL_HOST_API kxArray_tag* omGetArrayElement(const kxArray_tag* array, std::size_t index);

/// The text that an object shows for itself, or none. Runs no Korval code.
KORVAL_HOST_API std::optional<std::u16string> omGetStringConversion(const kxArray_tag* object);
