#pragma once

#include <deque>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/Class.h"
#include "embedded/model/ClassNames.h"
#include "embedded/model/Routine.h"

namespace embedded {

class Value;

/// The classes and namespaces of one session.
class ClassSystem {
 public:
  explicit ClassSystem(const Description& description);

  /// The class that a name means (ClassNames.h); null when there is none.
  Class* find(std::string_view name) const;
  Class* find(kcos::COSInternedName name) const { return find(std::string_view(name.text())); }

  /// What code of that component means by a whole name. Of the classes that a user knows by it: its component's,
  /// else one without a component, else the first; of none, what find() finds.
  Class* findFor(std::string_view component, std::string_view dottedName) const;

  Namespace* findNamespace(kcos::COSInternedName dottedName) const;
  /// The names of all namespaces, in ascending order.
  std::vector<std::string> namespaceNames() const;

  /// The class of that number, or null.
  const Class* numbered(int number) const;

  /// Is the value of that class, or of one that derives from it? Also of the kinds "opaque", "java", "tall",
  /// "numeric", "float".
  bool isOfClass(const Value& value, std::string_view className) const;

  const TypeRepository& types() const noexcept { return types_; }

 private:
  using Handle = const std::string*;  // of an interned name: equal names have one

  void addClass(const ClassDescription& description);
  void addFunction(const FunctionDescription& description);
  void completeClass(Class& oneClass, const ClassDescription& description);
  Namespace* makeNamespace(std::string_view dottedName);
  PossibleValues valuesOf(const PropertyDescription& description);
  static std::shared_ptr<const Routine> routineOf(const Class& oneClass, const MethodDescription& method);
  static std::shared_ptr<const Routine> routineOf(const Class& oneClass, const std::string& member,
                                                  const std::string& code, Routine::Receiver receiver);
  PropertyContent contentOf(const Class& oneClass, const PropertyDescription& description);
  kcos::COSExtendedAccess accessOf(const Access& access) const;

  std::vector<std::unique_ptr<Class>> classes_;
  ClassNames names_;
  std::unordered_map<Handle, std::vector<Class*>> byDottedName_;
  std::unordered_map<Handle, std::unique_ptr<Namespace>> namespaces_;
  TypeRepository types_;
  /// What properties of an enumeration may hold, for those enumerations that are the type of any.
  std::unordered_map<const Class*, PossibleValues> membersOf_;
  std::deque<Method> functions_;
};

}  // namespace embedded
