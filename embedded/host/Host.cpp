#include "embedded/Host.h"

#include <utility>

#include "embedded/host/Session.h"
#include "embedded/language/Builtins.h"
#include "embedded/snapshot/Checks.h"
#include "embedded/snapshot/DescribeValue.h"
#include "embedded/snapshot/JsonPointer.h"
#include "host/Abi.h"

void contextdata_host_abi_1() noexcept {}

namespace embedded {

namespace {

/// Of a description that is right but for its scopes, which may be code files: only a session knows them.
std::unique_ptr<Session> sessionOf(const Description& description, const std::string& file) {
  auto session = std::make_unique<Session>(description);
  session->scopes.require(description.scopes, file);
  return session;
}

std::unique_ptr<Session> checkedSessionOf(const Description& description) {
  // Before the session is made, which relies on every name in it.
  checkDescription(description, "");
  return sessionOf(description, "");
}

std::string fixedFolder(const std::string& path) {
  return std::filesystem::absolute(path).lexically_normal().string();
}

/// Without the variables, and with folders that stay what they are when the process goes elsewhere.
Description fixedPart(Description description) {
  description.workspace.clear();
  for (PathItemDescription& item : description.path) item.folder = fixedFolder(item.folder);
  const std::string& current = description.currentFolder;
  description.currentFolder = fixedFolder(current.empty() ? "." : current);
  return description;
}

}  // namespace

Host::Host(const Description& description) : Host(checkedSessionOf(description), fixedPart(description)) {}

Host::Host(std::unique_ptr<Session> session, Description fixed)
    : Inspection(std::move(session)), fixed_(std::move(fixed)) {}

Host::~Host() = default;

/// Reading has checked what the file says.
std::unique_ptr<Host> Host::load(const std::filesystem::path& file, const LoadProgress& progress) {
  Description description = readSnapshot(file, progress);
  auto session = sessionOf(description, file.string());
  return std::unique_ptr<Host>(new Host(std::move(session), fixedPart(std::move(description))));
}

void Host::requestInterrupt() noexcept { session_->requestInterrupt(); }
void Host::clearInterrupt() noexcept { session_->clearInterrupt(); }
bool Host::interruptRequested() const noexcept { return session_->interruptRequested(); }
const std::optional<HostFailure>& Host::failure() const noexcept { return session_->failure(); }
void Host::clearFailure() noexcept { session_->clearFailure(); }

void Host::setCodePolicy(CodePolicy policy) noexcept { session_->interpreter.guard.setPolicy(policy); }
const CodeRecord& Host::codeRecord() const noexcept { return session_->interpreter.guard.record(); }
void Host::clearCodeRecord() {
  session_->interpreter.guard.clearRecord();
  session_->interpreter.lastFailure.reset();
}
void Host::setCodeLimits(const CodeLimits& limits) noexcept { session_->interpreter.limits = limits; }
std::optional<CodeFailure> Host::codeFailure() const { return session_->interpreter.lastFailure; }
void Host::setOutput(Output output) { session_->streams.host.setOutput(std::move(output)); }
std::u16string Host::takeOutput() { return session_->streams.host.take(); }

boost::intrusive_ptr<kxArray_tag> Host::variable(const std::string& name) const {
  // The reference that is handed out is the one that the pointer holds.
  return {handedOut(session_->workspace.find(name)), false};
}

std::vector<std::string> Host::variableNames() const { return session_->workspace.names(); }

std::vector<KnownName> Host::functionNames() const { return session_->names.functions(); }
std::vector<KnownName> Host::classNames() const { return session_->names.classes(); }
std::vector<KnownName> Host::packageNames() const { return session_->names.packages(); }

std::vector<KnownName> Host::namespaceNames() const {
  std::vector<KnownName> names;
  for (std::string& name : session_->classes.namespaceNames()) names.push_back({std::move(name)});
  return names;
}

std::vector<std::string> Host::builtinNames() { return embedded::builtinNames(); }

void Host::setComponents(bool on) noexcept { session_->componentsOn = on; }
void Host::setInterpreterAvailable(bool available) noexcept { session_->interpreterIsAvailable = available; }
std::vector<const IExecutionFrame*> Host::frames() const { return session_->frames.frames(); }

Description Host::describe() const {
  // Made of what cannot change and of what can: code changes variables, and clients the switch.
  Description description = fixed_;
  description.components = session_->componentsOn;
  ValueDescriber describer(session_->classes);
  for (const std::string& name : session_->workspace.names()) {
    const ValuePtr value = session_->workspace.find(name);
    snapshot::inVariable(name, [&] { description.workspace.push_back({name, describer.describe(*value)}); });
  }
  return description;
}

const Kfh_KORVAL_fn* Host::function(const std::string& name) const { return session_->scopes.find(name); }

void Host::openCode(const std::string& name, const std::vector<std::string>& imports) {
  session_->scopes.open(name, imports);
}

std::string Host::classOfFunction(const std::string& name) const {
  const Kfh_KORVAL_fn* found = function(name);
  return found == nullptr || found->ownClass == nullptr ? std::string() : found->ownClass->names().id.text();
}

Activation::Activation(Host& host) noexcept : before_(activeGate == &withoutHost ? nullptr : &session()) {
  activeGate = host.session_.get();
}

Activation::~Activation() { activeGate = before_ == nullptr ? &withoutHost : before_; }

}  // namespace embedded
