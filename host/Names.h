#pragma once

// Interned names: the class system's identities of classes, members and data types.

#include <compare>
#include <string>

#include "host/Export.h"

struct Kfh_KORVAL_fn;

namespace kcos {

namespace internal {

/// The policy of names whose null value is the shared empty string.
struct IdEmptyPolicy;

/// The shared empty interned string that every null name points at. One object in the process, in the host;
/// usable before `main`, without an active host, and until the process ends.
extern KORVAL_HOST_API const std::string& nullValue;

}  // namespace internal

/// A handle of an interned narrow string, one pointer wide. Copying copies the handle; the string lives for
/// the process. Two handles are equal when they are the same handle; the host hands out one handle per text,
/// so that this is equality of texts. The order is that of the texts, byte by byte.
template <class EmptyPolicy>
class COSInternedBase {
 public:
  /// The null name. Never a null pointer inside: it points at `internal::nullValue`.
  COSInternedBase() noexcept : text_(&internal::nullValue) {}

  /// For hosts: the handle of a string that the host has interned and keeps for the process.
  static COSInternedBase ofInterned(const std::string& interned) noexcept {
    return COSInternedBase(&interned);
  }

  bool isNull() const noexcept { return text_ == &internal::nullValue; }

  /// The name; empty for the null name.
  const std::string& text() const noexcept { return *text_; }
  operator const std::string&() const noexcept { return *text_; }

  friend bool operator==(COSInternedBase left, COSInternedBase right) noexcept {
    return left.text_ == right.text_;
  }
  friend std::strong_ordering operator<=>(COSInternedBase left, COSInternedBase right) noexcept {
    if (left.text_ == right.text_) return std::strong_ordering::equal;
    return left.text() <=> right.text();
  }

 private:
  explicit COSInternedBase(const std::string* interned) noexcept : text_(interned) {}

  const std::string* text_;
};

/// The one kind of interned name that crosses this boundary.
using COSInternedName = COSInternedBase<internal::IdEmptyPolicy>;

namespace internal {

/// The handle of a non-empty name. Called for every name of a class, member, attribute or data type that the
/// library has as text; never with an empty one. Equal texts give equal handles, from any thread and before
/// `main`. May throw on behalf of the active host. Runs no Korval code. Cost: one hash look-up.
KORVAL_HOST_API COSInternedName makeInterned(std::string name);

}  // namespace internal

namespace nameresolution {

/// The resolved name of the class that `name`, typed as code of `scope` would write it, means there
/// (imports, namespaces, components); empty when nothing resolves. `scope` may be null: no imports apply.
/// Called once per typed name. May throw. Runs no Korval code.
KORVAL_HOST_API std::string omResolveAnyClass(const std::string& name, const Kfh_KORVAL_fn* scope);

/// The name by which a user knows the class of a resolved name; a name that no class has is returned without
/// its component. Never asked for an empty name. May throw. Runs no Korval code.
KORVAL_HOST_API std::string getUserVisibleClassName(const std::string& resolvedName);

/// Is the name package-qualified already: exactly one that omResolveAnyClass() returns for some class? Empty names are
/// asked too (false). May throw. Runs no Korval code.
KORVAL_HOST_API bool isPackageQualifiedName(const std::string& name);

}  // namespace nameresolution

}  // namespace kcos
