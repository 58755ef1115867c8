#pragma once

// Members of classes: properties, methods, enumeration members, and the interface by which the class system
// hands out any of its parts. Everything here is owned by the class system and borrowed for one query.
//
// Names are narrow and null-terminated. A missing name is a null pointer: a broken class can have one, and
// the library throws an exception of its own for it. No query here runs Korval code, and each may throw.

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>

#include "host/DataTypes.h"
#include "host/Export.h"
#include "host/Names.h"

namespace kcos {

class COSClass;
class COSNamespace;

/// On whose behalf an attribute's value is read.
class COSClient;

/// An attribute that a member carries beside those of the records below.
class KORVAL_HOST_API COSAttribute {
 public:
  virtual ~COSAttribute();
  /// Its data type; may be null.
  virtual COSDataTypePtr getDataType() const = 0;
};

/// A part of the class system: a member, a class or a namespace.
class KORVAL_HOST_API COSInterface {
 public:
  virtual ~COSInterface();

  /// The attribute of that name, or null. Asked at most once per attribute name and property.
  virtual const COSAttribute* findAttribute(const COSInternedName& name) const = 0;

  /// The value of an attribute that findAttribute() has found, as `client` sees it.
  virtual bool getAttributeValue(const COSInternedName& name, const COSClient* client) const = 0;
};

/// A nullable observer of an interface. Making one from a raw pointer takes over nothing.
class COSInterfacePtr {
 public:
  COSInterfacePtr() noexcept = default;
  COSInterfacePtr(COSInterface* interface) noexcept : interface_(interface) {}

  COSInterface* get() const noexcept { return interface_; }
  COSInterface* operator->() const noexcept { return interface_; }
  explicit operator bool() const noexcept { return interface_ != nullptr; }

 private:
  COSInterface* interface_ = nullptr;
};

/// Who may use a member. To the library itself only public, private and constant mean something. A host may
/// have further levels.
enum MemberAccess : std::int32_t {
  PublicAccess = 0,
  ProtectedAccess = 1,  ///< the class and its subclasses
  PrivateAccess = 2,    ///< never visible from a subclass
  ImmutableAccess = 3,  ///< anybody reads it, only code of the class sets it
  ListedAccess = 4,     ///< nobody but the classes of the extended access
  ConstantAccess = 5,   ///< the set access of a constant property
};

/// The words by which people know the levels.
struct AccessWord {
  MemberAccess level;
  std::string_view word;
};

inline constexpr std::array<AccessWord, 6> accessWords{{{PublicAccess, "public"},
                                                        {ProtectedAccess, "protected"},
                                                        {PrivateAccess, "private"},
                                                        {ImmutableAccess, "immutable"},
                                                        {ListedAccess, "listed"},
                                                        {ConstantAccess, "constant"}}};

/// The word of a level; empty for one that only the host knows.
constexpr std::string_view accessWord(std::int32_t level) noexcept {
  for (const AccessWord& known : accessWords) {
    if (known.level == level) return known.word;
  }
  return {};
}

/// The level of a word, or none.
constexpr std::optional<MemberAccess> accessLevel(std::string_view word) noexcept {
  for (const AccessWord& known : accessWords) {
    if (known.word == word) return known.level;
  }
  return std::nullopt;
}

/// An access level together with the classes that may use the member whatever the level says.
struct COSExtendedAccess {
  MemberAccess level = PublicAccess;
  std::set<COSInternedName> classes;
};

/// What every property record can be asked.
class KORVAL_HOST_API COSPropT {
 public:
  virtual ~COSPropT();
  virtual const char* getName() const = 0;
  virtual COSDataTypePtr getDataType() const = 0;
  /// Not asked by queries that want hidden properties like others.
  virtual bool isVisible() const = 0;
  virtual bool isDependent() const = 0;
  virtual MemberAccess getMemberGetAccess() const = 0;
  virtual MemberAccess getMemberSetAccess() const = 0;
};

/// A property of a class. The base says that nobody is granted extended access.
class KORVAL_HOST_API COSPropInfo : public COSPropT {
 public:
  ~COSPropInfo() override;
  virtual COSExtendedAccess getExtendedGetAccess() const { return {getMemberGetAccess(), {}}; }
  virtual COSExtendedAccess getExtendedSetAccess() const { return {getMemberSetAccess(), {}}; }
};

/// A property whose storage the class system has optimised. Found by its dynamic type.
class KORVAL_HOST_API COSOptimizedPropInfo : public COSPropInfo {
 public:
  ~COSOptimizedPropInfo() override;
  /// Does reading the property run a get method?
  virtual bool hasCustomGetter() const = 0;
  /// The record's second yes/no answer, which the library hands on as it is.
  virtual bool getOptimizedFlag() const = 0;
};

/// What everything callable has.
class KORVAL_HOST_API COSMethodBase {
 public:
  virtual ~COSMethodBase();
  virtual const char* getName() const = 0;
};

/// A method of a class or a function of a namespace. The base says that nobody is granted extended access.
class KORVAL_HOST_API COSMethodInfo : public COSMethodBase {
 public:
  ~COSMethodInfo() override;
  virtual bool isStatic() const = 0;
  virtual bool isVisible() const = 0;
  /// Declared hidden. A query of its own beside isVisible(); namespace listings ask both.
  virtual bool isHidden() const = 0;
  virtual MemberAccess getMemberAccess() const = 0;
  virtual COSExtendedAccess getExtendedAccess() const { return {getMemberAccess(), {}}; }
};

/// A member of an enumeration class.
class KORVAL_HOST_API COSEnumInfo {
 public:
  virtual ~COSEnumInfo();
  virtual const char* getName() const = 0;
  virtual bool isHidden() const = 0;
};

// What an interface is. Each bears a null interface and returns null when the interface is of another kind,
// except that inside a property walk cosiToProp(), inside a method walk cosiToMethod(), and inside either
// cosiClassOfMember() never return null; nor does cosiToMethod() for an element of COSClass::findMethods().

KORVAL_HOST_API COSPropInfo* cosiToProp(COSInterface* interface);
KORVAL_HOST_API COSMethodInfo* cosiToMethod(COSInterface* interface);
KORVAL_HOST_API COSEnumInfo* cosiToEnum(COSInterface* interface);
KORVAL_HOST_API COSClass* cosiToClass(COSInterface* interface);
KORVAL_HOST_API COSNamespace* cosiToNamespace(COSInterface* interface);

/// The class that defines the member.
KORVAL_HOST_API COSClass* cosiClassOfMember(COSInterface* member);

}  // namespace kcos

/// The client that stands for everybody. Never null; may throw.
KORVAL_HOST_API const kcos::COSClient* COSGetPublicClient();
