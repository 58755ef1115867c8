#pragma once

// The exceptions that cross the boundary between a host and its clients.
//
// A handler that treats the user's interrupt differently names Tamsix::System::InterruptException before any
// base of it, and rethrows it with `throw;`, so that a type derived from it keeps its dynamic type. None of
// these types is a std::exception; hosts may also throw std::exceptions and other types from any operation
// that is not `noexcept`.

#include <memory>
#include <string>

#include "host/Export.h"

namespace foundation::core::except {

/// Base of the host's exception framework.
class KORVAL_HOST_API IException {
 public:
  virtual ~IException();

  /// A new copy of this exception, with its dynamic type, on the heap; the caller owns it.
  virtual std::unique_ptr<IException> clone() const = 0;

  /// Throws a copy of this exception, with its dynamic type.
  [[noreturn]] virtual void rethrow() const = 0;

 protected:
  IException() = default;
  IException(const IException&) = default;
  IException& operator=(const IException&) = default;
};

/// Base of exceptions that a component throws and catches itself; they carry no message for the user.
class KORVAL_HOST_API IInternalException : public IException {
 public:
  ~IInternalException() override;
};

/// An exception with a message for the user.
class KORVAL_HOST_API Exception : public IException {
 public:
  /// `messageId`: group and name, joined by ":", for instance "KORVAL:string:MissingNotSupported".
  Exception(std::string messageId, std::string message);
  ~Exception() override;

  std::unique_ptr<IException> clone() const override;
  [[noreturn]] void rethrow() const override;

  const std::string& messageId() const noexcept { return messageId_; }
  const std::string& message() const noexcept { return message_; }

 private:
  std::string messageId_;
  std::string message_;
};

}  // namespace foundation::core::except

namespace Tamsix::System {

/// The user asked to stop. Raised by any operation that is not `noexcept` and undoes nothing (see README.md).
class KORVAL_HOST_API InterruptException : public foundation::core::except::IException {
 public:
  ~InterruptException() override;

  std::unique_ptr<foundation::core::except::IException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

}  // namespace Tamsix::System

namespace KORVAL::string {

/// Text was asked of a missing string. Message identifier "KORVAL:string:MissingNotSupported".
class KORVAL_HOST_API MissingNotSupported : public foundation::core::except::Exception {
 public:
  MissingNotSupported();
  ~MissingNotSupported() override;
  std::unique_ptr<foundation::core::except::IException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

/// Text was asked of something that is neither a string scalar nor a row of characters. Message identifier
/// "KORVAL:string:MustBeStringScalarOrCharacterVector".
class KORVAL_HOST_API MustBeStringScalarOrCharacterVector : public foundation::core::except::Exception {
 public:
  MustBeStringScalarOrCharacterVector();
  ~MustBeStringScalarOrCharacterVector() override;
  std::unique_ptr<foundation::core::except::IException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

}  // namespace KORVAL::string

namespace kcos {

/// An enumeration was asked for an element that it does not have.
class KORVAL_HOST_API ENoElements : public foundation::core::except::IException {
 public:
  ~ENoElements() override;
  std::unique_ptr<foundation::core::except::IException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

}  // namespace kcos
