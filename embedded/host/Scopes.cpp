#include "embedded/host/Scopes.h"

#include "embedded/Outline.h"
#include "embedded/language/CodeError.h"
#include "embedded/snapshot/JsonPointer.h"

namespace embedded {

const Kfh_KORVAL_fn* Scopes::find(const std::string& name) {
  if (open_ && openName_ == name) return &*open_;
  // In the order in which code finds what it calls: files come last.
  if (const Kfh_KORVAL_fn* found = world_.functions.find(name); found != nullptr) return found;
  if (const Kfh_KORVAL_fn* found = member(name); found != nullptr) return found;
  return file(name);
}

void Scopes::open(const std::string& name, const std::vector<std::string>& imports) {
  // By address: the next one will have the same.
  if (open_) imports_.erase(&*open_);
  open_.reset();
  openName_ = name;
  if (name.empty()) return;
  const Class* ownClass = world_.classes.find(namespaceOf(name));
  if (const Kfh_KORVAL_fn* known = find(name); known != nullptr) {
    open_.emplace(*known);
    // Its imports count no longer, and nobody runs the code of a scope.
    open_->routine.reset();
  } else if (ownClass != nullptr) {
    open_.emplace(name, *ownClass);
  } else {
    open_.emplace(FunctionDescription{.name = name});
  }
  open_->imports.insert(open_->imports.end(), imports.begin(), imports.end());
}

void Scopes::require(const ScopesDescription& described, const std::string& file) {
  using snapshot::JsonPointer;
  const auto requireOne = [&](const std::string& name, const JsonPointer& pointer) {
    if (find(name) == nullptr)
      throw SnapshotError("snapshot.unknown-function", file, pointer.text(),
                          snapshot::inQuotes(name) + " is no function, method or code file of this session");
  };
  const JsonPointer pointer(snapshot::root, "scopes");
  if (!described.executing.empty()) requireOne(described.executing, {pointer, "executing"});
  snapshot::forEach(described.active, pointer, "active",
                    [&](const ActiveScopeDescription& scope, const JsonPointer& here) {
                      requireOne(scope.function, {here, "function"});
                    });
}

const Kfh_KORVAL_fn* Scopes::member(const std::string& name) {
  const Class* oneClass = world_.classes.find(namespaceOf(name));
  if (oneClass == nullptr) return nullptr;
  const kcos::COSInternedName simpleName = alreadyInterned(simpleNameOf(name));
  if (const Property* property = oneClass->property(simpleName); property != nullptr) {
    const auto& getter = property->content().getter;
    return getter == nullptr ? nullptr : scopeOf(name, *getter);
  }
  const Method* method = oneClass->method(simpleName);
  if (method == nullptr) return nullptr;
  if (const auto& routine = method->content().routine; routine != nullptr) return scopeOf(name, *routine);
  auto& known = withoutCode_[name];
  if (known == nullptr) known = std::make_unique<const Kfh_KORVAL_fn>(name, *method->definingClass());
  return known.get();
}

const Kfh_KORVAL_fn* Scopes::file(const std::string& name) {
  // Names of files may hold anything, but no name leads out of the folders of the path.
  if (!isDottedName(name)) return nullptr;
  try {
    const Routine* found = files_.function(name);
    if (found == nullptr && name.find('.') != std::string::npos)
      found = files_.method(std::string(namespaceOf(name)), std::string(simpleNameOf(name)));
    return found == nullptr ? nullptr : scopeOf(name, *found);
  } catch (const CodeError&) {
    // A file that cannot be read is no scope: who asks for a scope runs no code that could fail.
    return nullptr;
  }
}

const Kfh_KORVAL_fn* Scopes::scopeOf(const std::string& name, const Routine& routine) {
  auto& known = byRoutine_[&routine];
  if (known == nullptr) known = std::make_unique<const Kfh_KORVAL_fn>(name, routine);
  return known.get();
}

const std::vector<std::string>& Scopes::importsOf(const Kfh_KORVAL_fn& scope) {
  const auto [found, isNew] = imports_.try_emplace(&scope, scope.imports);
  if (isNew && scope.routine != nullptr) {
    // Read as it stands, not parsed: code that is broken somewhere imports all the same.
    std::vector<std::string> inCode = outlineOf(scope.routine->text()).imports;
    found->second.insert(found->second.end(), inCode.begin(), inCode.end());
  }
  return found->second;
}

}  // namespace embedded
