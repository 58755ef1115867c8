#pragma once

// The embedded host: a small, real implementation of everything that the library asks of a host, for those
// who have no other. It knows classes, namespaces, functions, scopes and values, from a snapshot file or from
// a Description.
//
//   auto host = embedded::Host::load("lab.json");
//   embedded::Activation active(*host);
//   // from here on, on this thread, every query of the library is answered by this host
//
// One object per session; several can exist side by side, and activations nest. Only the thread that has
// activated a host may ask it: without an active host on the calling thread, every operation throws a
// foundation::core::except::Exception with the message identifier "KORVAL:host:NotActive", except that text
// conversion and interning work, and that values can be released. Objects of the class system live as long as
// their host, values as long as somebody holds a reference, interned names as long as the process.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/CodePolicy.h"
#include "embedded/Description.h"
#include "embedded/Inspection.h"
#include "embedded/Outline.h"
#include "embedded/Snapshot.h"
#include "host/Arrays.h"
#include "host/Export.h"

class IExecutionFrame;
struct Kfh_KORVAL_fn;

namespace embedded {

/// What Korval code prints: to the output or to the error stream.
enum class OutputKind { Output, Error };
using Output = std::function<void(OutputKind kind, std::u16string_view text)>;

/// A name of a session, dotted when it is in a namespace.
struct KnownName {
  std::string name;
  bool hidden = false;
};

/// An operation of the host that could not answer: a planned fault, or a folder that cannot be read. What the rules of the
/// host let an operation throw instead of an answer (a value that is no text, a function that declares nothing), errors of
/// code, a refusal of code and the user's interrupt are none.
struct HostFailure {
  /// Its qualified name, as a log shows it.
  std::string operation;
  /// For people.
  std::string message;
  /// It ended in an interrupt that nobody has requested of the host.
  bool isInterrupt = false;
};

/// A session. What it tells tests about itself stands in its base.
class KORVAL_HOST_API Host : public Inspection {
 public:
  /// Throws SnapshotError for a description that names unknown classes or functions, repeats names, or has a
  /// cycle of superclasses.
  explicit Host(const Description& description);
  ~Host();

  /// A host from a snapshot file; throws SnapshotError.
  static std::unique_ptr<Host> load(const std::filesystem::path& file, const LoadProgress& progress = {});

  // The user's interrupt. While it is requested, every operation that may throw and undoes nothing raises it,
  // again and again: a handler that swallows it does not lose it. Whoever begins a request clears it before,
  // looks at it afterwards, and reports "interrupted" when it is set, whatever the answer was.

  /// From any thread, and from a signal handler.
  void requestInterrupt() noexcept;
  void clearInterrupt() noexcept;
  bool interruptRequested() const noexcept;

  // What a client of the library would not learn otherwise, because the library swallows it by its rules.

  /// The first failure of an operation since it was last forgotten.
  const std::optional<HostFailure>& failure() const noexcept;
  void clearFailure() noexcept;

  // Korval code.

  void setCodePolicy(CodePolicy policy) noexcept;
  const CodeRecord& codeRecord() const noexcept;
  /// Forgets what codeFailure() returns, too.
  void clearCodeRecord();
  void setCodeLimits(const CodeLimits& limits) noexcept;
  /// The error that the latest evaluation reported, or the latest trapped call; cleared by the next one.
  std::optional<CodeFailure> codeFailure() const;

  /// Where text goes that reaches no pushed sink. Without an output the host keeps the first MiB of it.
  void setOutput(Output output);
  /// What the host has kept.
  std::u16string takeOutput();

  // The session's state, for whoever owns it. These ask for no activation.

  /// The variable, or null.
  boost::intrusive_ptr<kxArray_tag> variable(const std::string& name) const;
  /// In the order of their making.
  std::vector<std::string> variableNames() const;
  /// Those of the description, and the code files that the folders of the path hold now, package folders in them included.
  std::vector<KnownName> functionNames() const;
  /// Those of the description, and the class folders in the folders of the path.
  std::vector<KnownName> classNames() const;
  /// In ascending order.
  std::vector<KnownName> namespaceNames() const;
  /// Functions that Korval code has without anybody defining them; the description's `builtins` are those that the
  /// session documents.
  static std::vector<std::string> builtinNames();
  /// Of the older object system.
  std::vector<KnownName> packageNames() const;
  void setComponents(bool on) noexcept;
  /// Whether expressions can be evaluated now.
  void setInterpreterAvailable(bool available) noexcept;
  /// The session as it is now, of which another host can be made that answers every query the same: what this host
  /// was made of, with the variables as they are, and with folders that no longer depend on the process. What a client
  /// has set up for its own work is no part of it: policy, limits, interrupt, log, fault plan, output, error mode, frames
  /// that have been pushed. Values have no identity: what variables share, each has for itself afterwards. Throws
  /// SnapshotError when a variable, which the reason names, holds what no description says: values that are nested
  /// too deep ("snapshot.too-deep") or too many ("snapshot.too-big").
  Description describe() const;
  /// The execution frames that have been pushed, innermost first.
  std::vector<const IExecutionFrame*> frames() const;
  /// Whose scope that name is, or null: a function (of several the first, unless the name has the component in front), a
  /// method or getter ("lab.Pump.start"), a code file of the path.
  const Kfh_KORVAL_fn* function(const std::string& name) const;
  /// What an editor has open of that code, in its present state: until the next call these imports count for the scope of
  /// that name, instead of those in the code that the host has. What is open may be no scope of the host yet. An empty name:
  /// nothing is open.
  void openCode(const std::string& name, const std::vector<std::string>& imports);
  /// The identity of the class whose method or getter that is; empty for everything else.
  std::string classOfFunction(const std::string& name) const;

 private:
  friend class Activation;
  Host(std::unique_ptr<Session> session, Description fixed);

  /// What the session was made of, without the variables.
  Description fixed_;
};

/// Makes a host the calling thread's own for as long as it lives, and then gives the thread back what it had
/// before.
class KORVAL_HOST_API Activation {
 public:
  explicit Activation(Host& host) noexcept;
  ~Activation();
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;

 private:
  Session* before_;
};

// The source is host/Host.cpp.

}  // namespace embedded
