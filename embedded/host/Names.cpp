#include "host/Names.h"

#include "embedded/host/Session.h"

namespace embedded {

namespace {

/// Names are asked for before main() and after it, so the empty text is never destroyed, and is there before the
/// first initialiser runs: as a constant where the standard library's strings can be one for the compiler, and by
/// the priority where they cannot.
union EmptyText {
  std::string text;
  constexpr EmptyText() : text() {}
  ~EmptyText() {}  // NOLINT(modernize-use-equals-default): the default would be deleted
};
__attribute__((init_priority(101))) EmptyText emptyText;

constexpr auto none = std::string_view::npos;

const Class* resolve(const std::string& name, const Kfh_KORVAL_fn* scope) {
  const ClassSystem& classes = session().classes;
  if (name.empty()) return nullptr;
  if (scope == nullptr) return classes.findFor("", name);
  return session().scopes.meaningIn(*scope, name, [&](const std::string& full) -> const Class* {
    return classes.findFor(scope->component, full);
  });
}

/// Where the component of a name ends; `none` when it has none.
std::size_t endOfComponent(std::string_view name) {
  const auto colon = name.find(':');
  return colon == 0 ? none : colon;
}

}  // namespace

}  // namespace embedded

using embedded::asked;
using embedded::Operation;

namespace kcos::internal {

constinit const std::string& nullValue = embedded::emptyText.text;

// Taken by value as it is declared: hosts that keep the text move it.
COSInternedName makeInterned(std::string name) {  // NOLINT(performance-unnecessary-value-param)
  return asked<Operation::makeInterned>(name).answer([&name] { return embedded::interned(name); });
}

}  // namespace kcos::internal

namespace kcos::nameresolution {

std::string omResolveAnyClass(const std::string& name, const Kfh_KORVAL_fn* scope) {
  return asked<Operation::resolveAnyClass>(name, scope).answer([&name, scope] {
    const embedded::Class* found = embedded::resolve(name, scope);
    return found == nullptr ? std::string() : found->names().id.text();
  });
}

std::string getUserVisibleClassName(const std::string& resolvedName) {
  return asked<Operation::getUserVisibleClassName>(resolvedName).answer([&resolvedName] {
    const embedded::Class* found = embedded::session().classes.find(resolvedName);
    if (found != nullptr) return found->names().dotted.text();
    // A class that does not exist has a name for users all the same.
    const auto colon = embedded::endOfComponent(resolvedName);
    return colon == embedded::none ? resolvedName : resolvedName.substr(colon + 1);
  });
}

bool isPackageQualifiedName(const std::string& name) {
  return asked<Operation::isPackageQualifiedName>(name).answer([&name] {
    // Only what omResolveAnyClass() returns: a colon alone tells nothing, and classes without a component have none.
    const embedded::Class* found = embedded::session().classes.find(name);
    return found != nullptr && found->names().id.text() == name;
  });
}

}  // namespace kcos::nameresolution
