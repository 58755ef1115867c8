#pragma once

#include <chrono>
#include <cstddef>

#include "frontend/Request.h"
#include "tools/lsp/Params.h"

namespace tools::lsp {

/// What the client has told about itself and what its user wants.
struct Abilities {
  PositionEncoding encoding = PositionEncoding::Utf16;
  bool versionedDiagnostics = false;
  bool hierarchicalSymbols = false;
  bool markdownHover = false;
  bool markdownDocumentation = false;
  /// Knows kinds of candidates that the protocol did not have in the beginning.
  bool newKinds = false;
  /// Knows offsets of a parameter in a signature instead of its name.
  bool parameterOffsets = false;
  /// Its process, which the server does not outlive; 0 when it tells none.
  int process = 0;
  /// How far an answer may go.
  frontend::CodePolicy policy = frontend::CodePolicy::StoredValues;
  std::size_t limit = 200;
  std::chrono::milliseconds patience{1000};
  bool hidden = false;

  /// For a request that begins now.
  frontend::Options options() const;
};

/// From the parameters of `initialize`.
Abilities abilitiesOf(const Json& params);

/// What the server tells about itself: the result of `initialize`.
Json serverAbilities(const Abilities& client);

}  // namespace tools::lsp
