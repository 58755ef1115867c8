#include "embedded/language/CodeError.h"

namespace embedded {

using foundation::core::except::IException;

CodeError::~CodeError() = default;
std::unique_ptr<IException> CodeError::clone() const { return std::make_unique<CodeError>(*this); }
void CodeError::rethrow() const { throw CodeError(*this); }

}  // namespace embedded
