#pragma once

// What functions declare about their arguments, and what an editor shows about the call around a cursor.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Request.h"

namespace frontend {

struct Call;
class RequestContext;

/// One of a function's declared arguments.
struct Argument {
  enum Kind { Positional, Optional, Repeating, NameValue };
  std::u16string name;
  Kind kind = Positional;
  std::u16string className = {};
  /// "1x:", or empty.
  std::u16string size = {};
  std::vector<std::u16string> validators = {};
  std::vector<std::u16string> values = {};
};

/// A function and what it declares about its arguments.
struct Signature {
  std::u16string name;
  std::vector<Argument> inputs;
  std::vector<Argument> outputs;
  bool furtherInputs = false;
  bool furtherOutputs = false;
  /// "[a, b] = name(x, y, Key=value, ...)"
  std::u16string text() const;
};

struct SignatureHelp {
  Outcome outcome;
  std::optional<Signature> signature = {};
  /// The argument that is being typed, an index into the inputs; none when there are no more.
  std::optional<std::size_t> activeArgument = {};
};

/// The function whose call is around the cursor.
SignatureHelp signatureHelp(Session& session, const std::u16string& text, std::size_t cursor,
                            const Scope& scope, const Options& options = {});

/// The signature of the function of that name; none when it declares nothing. What the library throws propagates,
/// but for what it says of functions that the host does not know.
std::optional<Signature> signatureOf(const std::u16string& function);

/// The signature that a call means: of the method when the object whose member it is, or its first argument, has one.
std::optional<Signature> signatureOf(RequestContext& request, const Call& call);

/// The argument of the signature that the call is in; none when there are no more.
std::optional<std::size_t> activeArgument(const Signature& signature, const Call& call);

}  // namespace frontend
