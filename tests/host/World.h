#pragma once

// What the conformance suite needs of the host that it tests: a world after a plan, that can be activated and
// released. Whoever ports the library implements testedHost() and runs the suite over it.

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace world {

/// What a host may be unable to build. The rows that need it are then printed and counted, not run.
enum class Capability {
  Aliases,               // names that stand for a class beside its own
  Components,            // identities that differ from the name that users know
  BrokenClasses,         // classes that fail their check
  MissingNames,          // members without a name
  Overloads,             // several methods of one name in one class
  Optimized,             // optimised property records
  CountsValues,          // liveValues()
  Validations,           // declared sizes, classes and functions of properties
  FiniteValues,          // data types with a finite set of values
  ArgumentDeclarations,  // functions that declare their arguments
  Precedence,            // classes that take precedence over others
  GetMethods,            // properties whose reading runs Korval code
  Imports,               // functions that declare what they import
  CodeOfFunctions,       // functions with Korval code, whose text imports
  CodeFiles,             // functions that are files of the search path
  ScopesOfMethods,       // methods, with code or without, that are scopes by their dotted names
};

struct PlannedValidation {
  std::string className;                         // empty: none
  std::vector<std::optional<std::size_t>> size;  // without a value: ":"
  std::vector<std::string> functions;
};

/// A possible value: a number, a text, or an object with the text that it shows for itself; an object that names an
/// enumeration member is that member.
struct PlannedObject {
  std::string className;
  std::string member = "";
  std::optional<std::u16string> text = {};
  bool failing = false;
};
using PlannedValue = std::variant<double, std::u16string, PlannedObject>;

struct PlannedProperty {
  std::optional<std::string> name;
  int getAccess = 0;
  int setAccess = 0;
  bool hidden = false;
  bool dependent = false;
  std::string type = "";  // empty: no data type
  std::vector<std::string> grantedTo = {};
  std::optional<bool> customGetter = {};  // with a value, the record is optimised
  std::optional<PlannedValidation> validation = {};
  std::optional<std::vector<PlannedValue>> values = {};
  bool conversion = true;
  std::string getter = "";  // Korval code; empty: reading returns what is stored
};

struct PlannedMethod {
  std::optional<std::string> name;
  bool isStatic = false;
  bool hidden = false;
  std::string code = "";  // Korval code; empty: none
};

/// A function in no namespace.
struct PlannedFunction {
  std::string name;
  std::vector<std::string> imports = {};
  std::string code = "";
  bool isFile = false;  // a code file, in a folder of the path
};

struct PlannedClass {
  std::string name;
  std::string component = "";
  std::vector<std::string> aliases = {};
  std::vector<std::string> superclasses = {};
  bool broken = false;
  bool flag = false;
  std::vector<std::string> precedence = {};
  std::vector<PlannedProperty> properties = {};
  std::vector<PlannedMethod> methods = {};
  /// Names of enumeration members; the ones that begin with "~" are hidden. Not empty: an enumeration.
  std::vector<std::string> members = {};
};

struct Plan {
  std::vector<PlannedClass> classes;
  /// Dotted names.
  std::vector<std::string> functions;
  std::vector<PlannedFunction> importing;
  /// A function "lab.declared" takes "x", of class double and size [: 3] with the validators f and g, and "mode", by
  /// name, on or off; and it gives further outputs.
  bool declaresArguments = false;
  /// Variables that hold a scalar object of the class, and one named "number" that holds 1x3 doubles.
  std::vector<std::pair<std::string, std::string>> objects;
};

/// A world that has been built; released by its destructor.
class World {
 public:
  virtual ~World() = default;
  /// For the calling thread.
  virtual void activate() = 0;
  virtual void deactivate() = 0;
};

class TestedHost {
 public:
  virtual ~TestedHost() = default;
  virtual std::set<Capability> capabilities() const = 0;
  virtual std::unique_ptr<World> build(const Plan& plan) = 0;
  /// How many values the process holds.
  virtual std::int64_t liveValues() const = 0;
};

/// Defined by the host under test.
TestedHost& testedHost();

}  // namespace world
