#include "embedded/host/Session.h"

namespace matrix {

ErrorMode getErrorMode() {
  embedded::enter<embedded::Operation::getErrorMode>();
  return embedded::session().interpreter.errorMode;
}

void setErrorMode(ErrorMode mode) {
  embedded::enter<embedded::Operation::setErrorMode>(static_cast<unsigned long>(mode));
  embedded::session().interpreter.errorMode = mode;
}

}  // namespace matrix
