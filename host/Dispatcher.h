#pragma once

// The dispatcher: functions, the scopes in which code is running, class numbers, folders and built-ins; and
// the object system next to it. Everything is owned by the host and borrowed for one query. No operation here
// runs Korval code; each may throw.

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <vector>

#include "host/Export.h"
#include "host/SearchPath.h"

/// A function of the interpreter: what a class name is resolved in the scope of.
struct Kfh_KORVAL_fn;

/// One of the scopes in which code is active, innermost first.
class KORVAL_HOST_API KactiveScope {
 public:
  virtual ~KactiveScope();
  /// May names be resolved in this scope? Asked from the head of the chain up to the first yes.
  virtual bool isEligible() const = 0;
  /// The function of the scope; may be null, which then stands for no scope.
  virtual const Kfh_KORVAL_fn* getFunction() const = 0;
  /// The scope that called this one, or null.
  virtual const KactiveScope* getNext() const = 0;
};

/// The numbers by which classes of every object system are known.
class KORVAL_HOST_API KclassRegistry {
 public:
  virtual ~KclassRegistry();
  /// The number of the class of that name; for an unknown name one for which isA() is false.
  virtual int getClassNumber(const std::string& className) const = 0;
  /// Is the first class the second one, or derived from it?
  virtual bool isA(int classNumber, int baseNumber) const = 0;
};

class KORVAL_HOST_API Kdispatcher {
 public:
  virtual ~Kdispatcher();

  /// The dispatcher of the process; never null.
  static Kdispatcher* getDispatcher();

  /// The function or file of that name, or null. The empty name is asked too (null).
  virtual const Kfh_KORVAL_fn* findFunction(const std::u16string& name) const = 0;

  /// Is there an execution stack that can be queried? Only then the next operation is asked.
  virtual bool hasQueryableExecutionStack() const = 0;
  /// The function that is executing, or null.
  virtual const Kfh_KORVAL_fn* GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack() const = 0;
  /// The innermost active scope, or null.
  virtual const KactiveScope* getActiveScopes() const = 0;

  // Never null:

  virtual const KclassRegistry* getClassRegistry() const = 0;
  virtual const KcurrentWorkingFolder* GetCurrentWorkingFolder() const = 0;
  /// The search path, shared so that a change during a visit does not pull it away.
  virtual boost::shared_ptr<const KsearchPath> GetCurrentPath() const = 0;

  /// The names of the documented built-in functions; may repeat.
  virtual std::vector<std::u16string> getDocumentedBuiltins() const = 0;
};

/// The object system's identifier of a class.
class KclassIdentifier;

class KORVAL_HOST_API KobjectSystem {
 public:
  virtual ~KobjectSystem();
  /// The identifier of the class of that name, or null (which precedes nothing).
  virtual const KclassIdentifier* getClassIdentifier(const std::string& className) const = 0;
  /// Does the first class take precedence over the second one?
  virtual bool precedes(const KclassIdentifier* first, const KclassIdentifier* second) const = 0;
};

/// The object system; never null.
KORVAL_HOST_API const KobjectSystem* kdGetObjectSystem();
