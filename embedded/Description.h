#pragma once

// What an embedded host is made of, as plain data: a snapshot file holds one of these, tests and programs
// write them in code. Every list is kept in its order, which is the order in which the host walks and lists.
//
// Host's constructor checks the description; nothing here is checked while it is being written.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "embedded/ValueDescription.h"

namespace embedded {

/// A member's name. Without a value it is a missing name, which only a broken class has.
using MemberName = std::optional<std::string>;

/// Who may use a member. Levels: 0 public, 1 protected, 2 private, 3 immutable, 4 listed (only `classes`),
/// 5 constant (as set access). The classes may use the member whatever the level is.
struct Access {
  int level = 0;
  std::vector<std::string> classes = {};
};

/// An attribute of a property beside those of its record: its data type (empty: none) and its value.
struct AttributeDescription {
  std::string name = {};
  std::string type = {};
  bool value = false;
};

/// What the class system knows about a property whose storage it has optimised.
struct OptimizedStorage {
  /// Reading the property runs a get method.
  bool customGetter = false;
  /// The record's second yes/no answer.
  bool flag = false;
};

/// What a property's declaration demands of its values.
struct ValidationDescription {
  /// The declared class, which need not be one of the description; empty: none.
  std::string className = {};
  /// The declared extents, without a value where any will do; empty: no size is declared.
  std::vector<std::optional<std::size_t>> size = {};
  std::vector<std::string> functions = {};
};

struct PropertyDescription {
  MemberName name = {};
  Access get = {};
  Access set = {};
  bool hidden = false;
  bool dependent = false;
  /// The data type's name. Empty: the class that the validation names, or else "any" when there is a
  /// validation or a set of values; without them the property has no data type.
  std::string type = {};
  std::optional<ValidationDescription> validation = {};
  /// The finite set of values that the property may take. Without one, and with an enumeration class as its
  /// type or validation, these are the members that are not hidden.
  std::optional<std::vector<ValueDescription>> values = {};
  /// Whether values of its data type can be made arrays. A type of which one property says no has no conversion.
  bool conversion = true;
  std::vector<AttributeDescription> attributes = {};
  std::optional<OptimizedStorage> optimized = {};
  /// What a new object holds, and what a constant property reads as; without a value, an empty array.
  std::optional<ValueDescription> value = {};
  /// The get method: Korval code (docs/korval-code.md). Empty: reading returns what is stored.
  std::string getter = {};
};

/// A method. Several methods of one class may have the same name.
struct MethodDescription {
  MemberName name = {};
  Access access = {};
  bool isStatic = false;
  bool hidden = false;
  /// Whether the method is visible; by default, unless it is hidden.
  std::optional<bool> visible = {};
  /// Korval code. A method without code is known, but cannot be called.
  std::string code = {};
};

struct EnumerationMemberDescription {
  MemberName name = {};
  bool hidden = false;
};

/// In which order a class's members are walked: its own first and then those of each superclass, or the other
/// way round. Superclasses come in the order of their declaration, each with its own superclasses in its own
/// order; a class that is reached along several ways is walked once, where it is met first.
enum class WalkOrder { OwnFirst, InheritedFirst };

/// One of the four lists of attribute names of a class: the names that it always returns, and those that it
/// returns after them when it is asked with the argument true.
struct AttributeNames {
  std::vector<std::string> names;
  std::vector<std::string> further;
};

struct ClassDescription {
  /// The dotted name by which users know the class; its namespaces exist by being part of it.
  std::string name = {};
  /// The component that the class comes from; empty: none. The identity of the class is "component:name".
  std::string component = {};
  std::vector<std::string> aliases = {};
  /// Names of classes as code without any import would write them, or identities.
  std::vector<std::string> superclasses = {};
  WalkOrder order = WalkOrder::OwnFirst;
  bool hidden = false;
  /// The class fails its check.
  bool broken = false;
  /// The yes/no answer of the class as a whole.
  bool flag = false;
  bool enumeration = false;
  std::vector<PropertyDescription> properties = {};
  std::vector<MethodDescription> methods = {};
  std::vector<EnumerationMemberDescription> members = {};
  std::array<AttributeNames, 4> attributeNames = {};
  /// The classes over which this one takes precedence: of the description, foreign or built-in ones.
  std::vector<std::string> precedence = {};
};

/// What a function declares about one of its inputs or outputs.
struct ArgumentDescription {
  enum Kind : int { Positional, Optional, Repeating, NameValue };
  std::string name = {};
  Kind kind = Positional;
  /// Empty: any.
  std::string className = {};
  /// Without a value: any extent will do; empty: no size is declared.
  std::vector<std::optional<std::size_t>> size = {};
  std::vector<std::string> validators = {};
  std::vector<std::string> values = {};
};

struct ArgumentsDescription {
  std::vector<ArgumentDescription> inputs = {};
  std::vector<ArgumentDescription> outputs = {};
  /// More may be given, or asked for, than are declared.
  bool furtherInputs = false;
  bool furtherOutputs = false;
};

/// A function, a method's file or a script: something with imports in whose scope names are resolved. A
/// dotted name puts it into a namespace.
struct FunctionDescription {
  std::string name = {};
  std::string component = {};
  /// "lab.Pump" imports one name, "lab.*" every name of the namespace.
  std::vector<std::string> imports = {};
  bool hidden = false;
  std::optional<bool> visible = {};
  std::optional<ArgumentsDescription> arguments = {};
  /// Korval code. A function without code is known, but cannot be called.
  std::string code = {};
};

/// A package of the older object system, and the names that it reports. Its folders count for themselves.
struct PackageDescription {
  std::string name;
  std::vector<std::string> classes = {};
  std::vector<std::string> functions = {};
};

/// A class of a foreign object system: nothing but names.
struct ForeignClassDescription {
  std::string name;
  std::vector<std::string> members = {};
};

struct VariableDescription {
  std::string name;
  ValueDescription value;
};

/// One active scope: the name of a function, and whether names may be resolved in it.
struct ActiveScopeDescription {
  std::string function = {};
  bool eligible = true;
};

/// Where the debugger is stopped. The name need not be that of a function.
struct DebuggerDescription {
  std::string focus = {};
  int first = 0;
  int second = 0;
};

struct ScopesDescription {
  /// The stack of executing functions can be queried.
  bool queryable = false;
  /// The function that executes; empty: none.
  std::string executing = {};
  /// Innermost first.
  std::vector<ActiveScopeDescription> active = {};
  /// There is a bridge to the debugger.
  bool bridge = true;
  std::optional<DebuggerDescription> debugger = {};
};

/// An item of the search path: a folder on the path, a class or package folder inside one, or an item that
/// counts only while its parent is the current folder.
struct PathItemDescription {
  enum Kind : int { Path, Class, Package, Current };
  Kind kind = Path;
  std::string folder = {};
};

struct Description {
  /// Component-aware resolution is in force.
  bool components = true;
  /// Namespaces beside those that classes and functions bring along.
  std::vector<std::string> namespaces;
  std::vector<ClassDescription> classes;
  std::vector<FunctionDescription> functions;
  std::vector<PackageDescription> packages = {};
  std::vector<ForeignClassDescription> foreignClasses = {};
  std::vector<VariableDescription> workspace;
  ScopesDescription scopes;
  /// In path order. Folders here and below are taken from the process's current one unless they are absolute.
  std::vector<PathItemDescription> path;
  /// Empty: the process's own.
  std::string currentFolder;
  /// The names of the documented built-in functions; may repeat.
  std::vector<std::string> builtins;
};

}  // namespace embedded
