#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <utility>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/Names.h"
#include "host/Classes.h"
#include "host/Components.h"
#include "host/Dispatcher.h"
#include "host/Interpreter.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Tamsix::KorvalComponents::ComponentFeature;

bool canNameClass(const std::string& name) { return !name.empty() && name.front() != '.'; }

const Kfh_KORVAL_fn* firstEligibleScope(const Kdispatcher& dispatcher) {
  for (const KactiveScope* scope = dispatcher.getActiveScopes(); scope != nullptr; scope = scope->getNext()) {
    if (scope->isEligible()) return scope->getFunction();
  }
  return nullptr;
}

/// The function of that name, or the best guess at who is asking. Each place is asked only when those before
/// it name no function: hosts see the order.
const Kfh_KORVAL_fn* findScope(const std::u16string& context) {
  const Kdispatcher& dispatcher = *Kdispatcher::getDispatcher();
  if (const Kfh_KORVAL_fn* function = dispatcher.findFunction(context)) return function;
  // Empty without a focus; hosts see that the dispatcher is asked all the same.
  const std::u16string focus = ResolvedClassID::GetDebuggerFocus().name;
  if (const Kfh_KORVAL_fn* function = dispatcher.findFunction(focus)) return function;
  if (dispatcher.hasQueryableExecutionStack()) {
    const Kfh_KORVAL_fn* executing = dispatcher.GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack();
    // A stack without a function of its own leaves the active scopes to be asked.
    if (executing != nullptr) return executing;
  }
  return firstEligibleScope(dispatcher);
}

kcos::COSInternedName resolve(const std::string& name, const Kfh_KORVAL_fn* scope) {
  return internedName(kcos::nameresolution::omResolveAnyClass(name, scope));
}

}  // namespace

ResolvedClassID::ResolvedClassID(const kxArray_tag* object) : id(omGetCOSClassID(object)) {}

ResolvedClassID::ResolvedClassID(const std::u16string& context, const std::u16string& className) {
  const std::string name = fl::i18n::to_string(className);
  if (!canNameClass(name)) return;
  try {
    // The switch is asked inside the handler: without an answer the name as it is typed is the best that is
    // known.
    id = ComponentFeature::IsOn() ? resolve(name, findScope(context)) : kcos::internal::makeInterned(name);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    id = kcos::internal::makeInterned(name);
  }
}

// The switch is asked outside the handler: here its failures are the caller's, unlike in the constructor
// above.
ResolvedClassID::ResolvedClassID(const Kfh_KORVAL_fn* scope, const std::u16string& className) {
  const std::string name = fl::i18n::to_string(className);
  if (!canNameClass(name)) return;
  if (!ComponentFeature::IsOn()) {
    id = kcos::internal::makeInterned(name);
    return;
  }
  try {
    id = resolve(name, scope);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    id = kcos::internal::makeInterned(name);
  }
}

ResolvedClassID ResolvedClassID::fromKnownResolvedClassID(const std::string& name) {
  return ResolvedClassID(internedName(name));
}

ResolvedClassID ResolvedClassID::fromKnownResolvedClassID(const std::u16string& name) {
  return fromKnownResolvedClassID(toAscii(name));
}

ResolvedClassID ResolvedClassID::fromLegacyString(const std::string& name) {
  kcos::COSClass* cls = kcos::COSClass::getClass(internedName(name));
  if (!isValid(cls)) throw BadClassNameException(name);
  // Not the name that was given: the class may have been found by an alias.
  return ResolvedClassID(cls->getID());
}

ResolvedClassID ResolvedClassID::fromLegacyString(const std::u16string& name) {
  return fromLegacyString(toAscii(name));
}

bool ResolvedClassID::isAlreadyResolved(const std::string& name) {
  return kcos::nameresolution::isPackageQualifiedName(name);
}

bool ResolvedClassID::isAlreadyResolved(const std::u16string& name) {
  return isAlreadyResolved(toAscii(name));
}

std::u16string ResolvedClassID::getComponentQualifiedName() const {
  if (id.isNull()) return {};
  return fl::i18n::to_ustring(id.text());
}

std::u16string ResolvedClassID::getNonComponentQualifiedName() const {
  if (id.isNull()) return {};
  return fl::i18n::to_ustring(kcos::nameresolution::getUserVisibleClassName(id.text()));
}

ResolvedClassID::DebuggerFocus ResolvedClassID::GetDebuggerFocus() {
  DebuggerFocus focus;
  const IInterpreterBridge* bridge = IInterpreter::GetInterpreterBridge();
  if (bridge == nullptr || !bridge->hasDebuggerFocus()) return focus;
  // Not asked without a focus: name and position then stay those of none.
  focus.name = bridge->getDebuggerFocus(focus.first, focus.second);
  return focus;
}

ResolvedClassID::BadClassNameException::BadClassNameException(std::string name)
    : className(std::move(name)) {}

ResolvedClassID::BadClassNameException::~BadClassNameException() noexcept = default;

std::unique_ptr<foundation::core::except::IException> ResolvedClassID::BadClassNameException::clone() const {
  return std::make_unique<BadClassNameException>(*this);
}

void ResolvedClassID::BadClassNameException::rethrow() const { throw BadClassNameException(*this); }

}  // namespace KCOSContextData
