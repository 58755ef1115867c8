#include "host/Exceptions.h"

#include <utility>

namespace foundation::core::except {

IException::~IException() = default;

IInternalException::~IInternalException() = default;

Exception::Exception(std::string messageId, std::string message)
    : messageId_(std::move(messageId)), message_(std::move(message)) {}
Exception::~Exception() = default;
std::unique_ptr<IException> Exception::clone() const { return std::make_unique<Exception>(*this); }
void Exception::rethrow() const { throw Exception(*this); }

}  // namespace foundation::core::except

using foundation::core::except::IException;

namespace Tamsix::System {

InterruptException::~InterruptException() = default;
std::unique_ptr<IException> InterruptException::clone() const {
  return std::make_unique<InterruptException>(*this);
}
void InterruptException::rethrow() const { throw InterruptException(*this); }

}  // namespace Tamsix::System

namespace KORVAL::string {

MissingNotSupported::MissingNotSupported()
    : Exception("KORVAL:string:MissingNotSupported", "A missing string has no text.") {}
MissingNotSupported::~MissingNotSupported() = default;
std::unique_ptr<IException> MissingNotSupported::clone() const {
  return std::make_unique<MissingNotSupported>(*this);
}
void MissingNotSupported::rethrow() const { throw MissingNotSupported(*this); }

MustBeStringScalarOrCharacterVector::MustBeStringScalarOrCharacterVector()
    : Exception("KORVAL:string:MustBeStringScalarOrCharacterVector",
                "The value must be a string scalar or a row of characters.") {}
MustBeStringScalarOrCharacterVector::~MustBeStringScalarOrCharacterVector() = default;
std::unique_ptr<IException> MustBeStringScalarOrCharacterVector::clone() const {
  return std::make_unique<MustBeStringScalarOrCharacterVector>(*this);
}
void MustBeStringScalarOrCharacterVector::rethrow() const {
  throw MustBeStringScalarOrCharacterVector(*this);
}

}  // namespace KORVAL::string

namespace kcos {

ENoElements::~ENoElements() = default;
std::unique_ptr<IException> ENoElements::clone() const { return std::make_unique<ENoElements>(*this); }
void ENoElements::rethrow() const { throw ENoElements(*this); }

}  // namespace kcos
