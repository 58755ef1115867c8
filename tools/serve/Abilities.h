#pragma once

#include "tools/serve/Document.h"
#include "tools/serve/Message.h"

namespace tools::serve {

/// What the client has told about itself.
struct Abilities {
  PositionEncoding encoding = PositionEncoding::Utf16;
  bool versionedDiagnostics = false;
  bool hierarchicalSymbols = false;
  bool markdownHover = false;
  bool markdownDocumentation = false;
  /// Its process, which the server does not outlive; 0 when it tells none.
  int process = 0;
};

/// From the parameters of `initialize`.
Abilities abilitiesOf(const Json& params);

/// What the server tells about itself: the result of `initialize`.
Json serverAbilities(const Abilities& client);

}  // namespace tools::serve
