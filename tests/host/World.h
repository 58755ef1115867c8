#pragma once

// What the conformance suite needs of the host that it tests: a world after a plan, that can be activated and
// released. Whoever ports the library implements testedHost() and runs the suite over it.

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "embedded/Description.h"

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

/// What a host is to build: plain data, and nothing that needs the host which ships.
struct Plan {
  embedded::Description world;
  /// Code files in a folder of the path: the function's name, and its code.
  std::vector<std::pair<std::string, std::string>> files;
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
